#include "print/produce/canvas.h"

namespace zv {

DeviceFont fontFor(const TextProperties& p, PixelsPerInch ppi) {
  DeviceFont font;
  font.face = p.faceName;
  font.height = twipsToDevice(p.fontHeight, ppi.y);
  font.charStyle = p.charStyle;
  font.pitchFamily = p.pitchFamily;
  font.charset = p.charset;
  return font;
}

}  // namespace zv
