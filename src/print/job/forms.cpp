#include "print/job/forms.h"

namespace zv {

void FormPlacer::pageDone() {
  if (layout_.formWidth <= 0 || layout_.formHeight <= 0) return;
  y_ += layout_.formHeight;
  if (y_ + layout_.formHeight <= layout_.paperHeight) return;
  y_ = 0;
  x_ += layout_.formWidth;
  if (x_ + layout_.formWidth <= layout_.paperWidth) return;
  x_ = 0;
}

}  // namespace zv
