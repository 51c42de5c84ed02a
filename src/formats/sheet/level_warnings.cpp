#include "formats/sheet/level_warnings.h"

namespace zv {

namespace {

bool& warningsSwitch() {
  static bool on = true;
  return on;
}

}  // namespace

bool levelWarningsOn() {
  return warningsSwitch();
}

void setLevelWarningsOn(bool on) {
  warningsSwitch() = on;
}

}  // namespace zv
