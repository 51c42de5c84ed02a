#include "rules/value/sheet_view.h"

namespace zv {

namespace {

SheetViewHooks& installedHooks() {
  static SheetViewHooks hooks;
  return hooks;
}

}  // namespace

SheetViewHooks installSheetViewHooks(SheetViewHooks hooks) {
  SheetViewHooks previous = std::move(installedHooks());
  installedHooks() = std::move(hooks);
  return previous;
}

const SheetViewHooks& sheetViewHooks() {
  return installedHooks();
}

}  // namespace zv
