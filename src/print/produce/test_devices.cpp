#include "print/produce/test_devices.h"

#include "core/strfmt.h"

namespace zv {

namespace {
std::string rect(const Rect32& r) {
  return strprintf("%d %d %d %d", r.left, r.top, r.right, r.bottom);
}
}  // namespace

void RecordingCanvas::setPen(std::optional<Pen> pen) {
  calls.push_back(pen ? strprintf("pen %d %X", pen->width, pen->colour) : std::string("pen none"));
}
void RecordingCanvas::setBrush(std::optional<std::uint32_t> colour) {
  calls.push_back(colour ? strprintf("brush %X", *colour) : std::string("brush none"));
}
void RecordingCanvas::rectangle(const Rect32& r) {
  calls.push_back("rect " + rect(r));
}
void RecordingCanvas::roundRect(const Rect32& r, int w, int h) {
  calls.push_back("roundrect " + rect(r) + strprintf(" %d %d", w, h));
}
void RecordingCanvas::ellipse(const Rect32& r) {
  calls.push_back("ellipse " + rect(r));
}
void RecordingCanvas::polygon(const std::vector<DevicePoint>& points) {
  std::string call = "polygon";
  for (const DevicePoint& p : points)
    call += strprintf(" %d,%d", p.x, p.y);
  calls.push_back(call);
}
void RecordingCanvas::line(DevicePoint a, DevicePoint b) {
  calls.push_back(strprintf("line %d %d %d %d", a.x, a.y, b.x, b.y));
}
void RecordingCanvas::fillRect(const Rect32& r, std::uint32_t colour) {
  calls.push_back("fill " + rect(r) + strprintf(" %X", colour));
}
void RecordingCanvas::text(DevicePoint origin, std::string_view text, const DeviceFont&,
                           std::uint32_t, int rotation) {
  calls.push_back(strprintf("text %d %d %d '%s'", origin.x, origin.y, rotation, std::string(text)));
}
std::optional<std::pair<int, int>> RecordingCanvas::pictureSize(std::string_view bytes) {
  if (bytes.empty()) return std::nullopt;
  return pictureSizeToReport;
}
bool RecordingCanvas::picture(const Rect32& r, std::string_view bytes) {
  if (bytes.empty()) return false;
  calls.push_back("picture " + rect(r));
  return true;
}
std::vector<std::string> RecordingCanvas::texts() const {
  std::vector<std::string> out;
  for (const std::string& call : calls) {
    if (call.rfind("text ", 0) != 0) continue;
    auto open = call.find('\'');
    out.push_back(call.substr(open + 1, call.size() - open - 2));
  }
  return out;
}

}  // namespace zv
