#include "print/produce/draw_object.h"

#include <cmath>
#include <fstream>
#include <iterator>
#include <numbers>

#include "core/dialog.h"
#include "core/fileinfo.h"
#include "core/messages.h"
#include "core/text.h"
#include "core/value.h"
#include "expr/compiler.h"
#include "expr/symbols.h"
#include "print/produce/layout_text.h"

namespace zv {

namespace {

Rect32 toDevice(const Rect32& twips, PixelsPerInch ppi) {
  return {twipsToDevice(twips.left, ppi.x), twipsToDevice(twips.top, ppi.y),
          twipsToDevice(twips.right, ppi.x), twipsToDevice(twips.bottom, ppi.y)};
}

Rect32 inset(Rect32 r, int by) {
  return {r.left + by, r.top + by, r.right - by, r.bottom - by};
}

/// The text space of a box: its rectangle, less half the line width and 1 when outlined.
Rect32 textSpace(const TemplateObject& o) {
  return o.attributes.outline() ? inset(o.device, o.attributes.deviceLineWidth / 2 + 1) : o.device;
}

std::optional<Pen> linePen(const TemplateObject& o) {
  return Pen{o.attributes.deviceLineWidth, o.attributes.lineColour};
}

void drawBox(Canvas& canvas, const TemplateObject& o, PixelsPerInch ppi) {
  const ObjectAttributes& a = o.attributes;
  const unsigned hCells = a.horizontalCells(), vCells = a.verticalCells();
  const bool pen = a.outline() || hCells > 1 || vCells > 1;
  if (!pen && !a.fill()) return;
  // The shape itself: an outline only when asked, even where cells lend the pen.
  canvas.setBrush(a.fill() ? std::optional<std::uint32_t>(a.fillColour) : std::nullopt);
  canvas.setPen(a.outline() ? linePen(o) : std::nullopt);
  if (a.outline() || a.fill()) {
    if (o.kind == 12)
      canvas.roundRect(o.device, twipsToDevice(o.cornerWidth, ppi.x),
                       twipsToDevice(o.cornerHeight, ppi.y));
    else
      canvas.rectangle(o.device);
  }
  if (hCells <= 1 && vCells <= 1) return;
  canvas.setPen(linePen(o));
  const Rect32& r = o.device;
  const int half = a.deviceLineWidth / 2;
  for (unsigned i = 1; i < hCells; ++i) {
    int x = r.left + static_cast<int>(i * static_cast<double>(r.width()) / hCells + 0.5);
    canvas.line({x, r.top}, {x, r.bottom - half});
  }
  for (unsigned i = 1; i < vCells; ++i) {
    int y = r.top + static_cast<int>(i * static_cast<double>(r.height()) / vCells + 0.5);
    canvas.line({r.left, y}, {r.right - half, y});
  }
}

void drawRuleLines(TextMetrics& metrics, Canvas& canvas, const TemplateObject& o,
                   const TextProperties& properties) {
  const Rect32 space = textSpace(o);
  const PixelsPerInch ppi = metrics.pixelsPerInch();
  ColumnGeometry g = columnGeometry(properties, space, ppi);
  if (g.count == 0) return;
  const int step = lineHeightOf(metrics, properties);
  canvas.setPen(Pen{twipsToDevice(5, ppi.y), o.attributes.lineColour});
  for (int c = 0; c < g.count; ++c) {
    int start = c * (g.width + g.gap);
    int end = c + 1 == g.count ? g.lineLength : start + g.width;
    for (int v = step; v <= g.depth; v += step)
      canvas.line(boxPoint(space, properties.rotation, start, v),
                  boxPoint(space, properties.rotation, end, v));
  }
}

void drawPlainText(TextMetrics& metrics, Canvas& canvas, const TemplateObject& o,
                   std::string_view text) {
  TextProperties state = o.textProperties;
  LayoutBox box{textSpace(o), false, true};
  layoutText(metrics, &canvas, text, box, state);
}

std::string readFileBytes(const std::filesystem::path& path) {
  std::error_code error;
  if (path.empty() || !std::filesystem::is_regular_file(path, error)) return {};
  std::ifstream in(path, std::ios::binary);
  return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

/// A file named by a sheet: in the source directory first, then as it stands.
std::string findPictureFile(std::string_view name, const std::filesystem::path& sourceDirectory) {
  if (name.empty()) return {};
  std::string bytes;
  if (!sourceDirectory.empty()) bytes = readFileBytes(sourceDirectory / std::string(name));
  if (bytes.empty()) bytes = readFileBytes(std::string(name));
  return bytes;
}

/// The field `dialog:field` of the sheet; the dialog name is cut to 31 characters.
const DlgItem* referencedField(const FileInfo& sheet, std::string_view reference) {
  auto colon = reference.find(':');
  if (colon == std::string_view::npos) return nullptr;
  std::string_view dialog = reference.substr(0, std::min<std::size_t>(colon, 31));
  std::string_view field = reference.substr(colon + 1);
  for (const auto& dlg : sheet.dlgs) {
    if (!equalsIgnoringCase(dlg->name.str(), dialog)) continue;
    for (const auto& item : dlg->items)
      if (equalsIgnoringCase(item->varName, field) || equalsIgnoringCase(item->text, field))
        return item.get();
  }
  return nullptr;
}

void drawPicture(Canvas& canvas, const Rect32& r, std::string_view bytes) {
  auto size = canvas.pictureSize(bytes);
  if (!size || size->first <= 0 || size->second <= 0) {
    canvas.setBrush(std::nullopt);
    canvas.setPen(Pen{1, 0});
    canvas.rectangle(r);
    return;
  }
  // Kept in proportion, centred in the rectangle.
  double scale = std::min(static_cast<double>(r.width()) / size->first,
                          static_cast<double>(r.height()) / size->second);
  int w = static_cast<int>(size->first * scale), h = static_cast<int>(size->second * scale);
  Rect32 place{r.left + (r.width() - w) / 2, r.top + (r.height() - h) / 2, 0, 0};
  place.right = place.left + w;
  place.bottom = place.top + h;
  canvas.picture(place, bytes);
}

void drawCentredText(TextMetrics& metrics, Canvas& canvas, const TemplateObject& o,
                     std::string_view text) {
  DeviceFont font;
  font.face = "Arial";
  font.height = twipsToDevice(200, metrics.pixelsPerInch().y);
  int w = metrics.textWidth(font, text), h = metrics.fontHeight(font);
  canvas.text(
      {o.device.left + (o.device.width() - w) / 2, o.device.top + (o.device.height() - h) / 2},
      text, font, 0, 0);
}

}  // namespace

void computeDeviceGeometry(PrintTemplate& tmpl, PixelsPerInch ppi) {
  for (auto& page : tmpl.pages)
    for (auto& object : page->objects) {
      object->device = toDevice(object->logical, ppi);
      object->attributes.deviceLineWidth =
          static_cast<std::uint16_t>(twipsToDevice(object->attributes.lineWidth, ppi.x));
    }
}

std::string pictureReferenceBytes(const FileInfo& sheet, const TemplateObject& o,
                                  const std::filesystem::path& sourceDirectory) {
  const std::string reference = o.reference.value_or("");
  std::string bytes;
  switch (o.referenceType) {
    case 0:
      if (const DlgItem* field = referencedField(sheet, reference)) {
        if (!field->pictureData.empty()) {
          bytes = field->pictureData;
        } else if (!field->pictureNames.empty()) {
          std::size_t shown = 0;
          if (field->symbol && field->symbol->value.isNumber())
            shown = static_cast<std::size_t>(
                std::max(0L, static_cast<long>(integerOf(field->symbol->value))));
          if (shown >= field->pictureNames.size()) shown = 0;
          bytes = findPictureFile(field->pictureNames[shown], sourceDirectory);
        }
      }
      break;
    case 1:
      bytes = findPictureFile(reference, sourceDirectory);
      break;
    case 2: {
      Value value;
      if (sheet.symbols && parseExp(sheet.symbols.get(), reference, value) == 0 && value.isString())
        bytes = findPictureFile(value.text(), sourceDirectory);
      break;
    }
    case 3:
      if (const DlgItem* field = referencedField(sheet, reference)) {
        std::string name = field->symbol && field->symbol->value.isString()
                               ? field->symbol->value.text()
                               : field->text;
        bytes = findPictureFile(name, sourceDirectory);
      }
      break;
    default:
      break;
  }
  if (bytes.empty() && o.defaultFile) bytes = findPictureFile(*o.defaultFile, sourceDirectory);
  return bytes;
}

bool drawObject(TextMetrics& metrics, Canvas& canvas, const FileInfo* sheet,
                const TemplateObject& o, RuleLines rules, const DrawSettings& settings) {
  const PixelsPerInch ppi = metrics.pixelsPerInch();
  const ObjectAttributes& a = o.attributes;
  switch (o.kind) {
    case 1:
    case 6:
    case 7:
    case 12:
    case 13: {
      drawBox(canvas, o, ppi);
      if (o.kind == 1 || o.kind == 12) return true;
      if (a.ruleLines() && (rules == RuleLines::Shown || settings.showRulesPreference))
        drawRuleLines(metrics, canvas, o, o.textProperties);
      if (o.kind == 6 && settings.editor && o.isContinuation && o.continuationTag) {
        drawPlainText(metrics, canvas, o, "Continuation: " + *o.continuationTag);
        return true;
      }
      if (o.kind == 13) {
        if (!o.fullText) return true;
        TextProperties state = o.textProperties;
        LayoutBox box{textSpace(o), o.startsMidParagraph(), true};
        std::string_view text = std::string_view(*o.fullText).substr(o.textStart);
        layoutText(metrics, &canvas, text, box, state);
        return true;
      }
      drawPlainText(metrics, canvas, o, o.text.value_or(""));
      return true;
    }
    case 2:
    case 14: {
      if (!a.outline() && !a.fill()) return true;
      canvas.setBrush(a.fill() ? std::optional<std::uint32_t>(a.fillColour) : std::nullopt);
      canvas.setPen(a.outline() ? linePen(o) : std::nullopt);
      if (o.kind == 2) {
        canvas.ellipse(o.device);
        return true;
      }
      const Rect32& r = o.device;
      const int sides = std::max<int>(3, o.sides);
      const double cx = (r.left + r.right) / 2.0, cy = (r.top + r.bottom) / 2.0;
      const double rx = r.width() / 2.0, ry = r.height() / 2.0;
      std::vector<DevicePoint> points;
      // The first vertex at `rotation` degrees, counted counter-clockwise from the right as on
      // paper; the others evenly round the ellipse.
      for (int i = 0; i < sides; ++i) {
        double angle = (o.polygonRotation + 360.0 * i / sides) * std::numbers::pi / 180.0;
        points.push_back({static_cast<int>(std::lround(cx + rx * std::cos(angle))),
                          static_cast<int>(std::lround(cy - ry * std::sin(angle)))});
      }
      canvas.polygon(points);
      return true;
    }
    case 3:
      canvas.setPen(linePen(o));
      canvas.line({o.device.left, o.device.top}, {o.device.right, o.device.bottom});
      return true;
    case 4:
    case 5: {
      const Rect32& r = o.device;
      const bool horizontal = o.kind == 4;
      if (a.lineWidth <= 1) {
        canvas.setPen(linePen(o));
        if (horizontal)
          canvas.line({r.left, r.top}, {r.right, r.top});
        else
          canvas.line({r.left, r.top}, {r.left, r.bottom});
        return true;
      }
      const int half = a.deviceLineWidth / 2;
      Rect32 band = horizontal ? Rect32{r.left - half, r.top - half, r.right + half,
                                        r.top - half + a.deviceLineWidth}
                               : Rect32{r.left - half, r.top - half,
                                        r.left - half + a.deviceLineWidth, r.bottom + half};
      canvas.fillRect(band, a.lineColour);
      return true;
    }
    case 9:
      // Metafiles have no player here: their place shows as a frame, and their bytes are kept.
      canvas.setBrush(std::nullopt);
      canvas.setPen(Pen{1, 0});
      canvas.rectangle(o.device);
      return true;
    case 10:
      if (!canvas.picture(o.device, o.bitmap.data)) {
        canvas.setBrush(std::nullopt);
        canvas.setPen(Pen{1, 0});
        canvas.rectangle(o.device);
      }
      return true;
    case 11:
      if (sheet == nullptr) {
        drawCentredText(metrics, canvas, o,
                        o.reference && !o.reference->empty()
                            ? std::string_view(*o.reference)
                            : std::string_view("Double-click here to set picture reference."));
        return true;
      }
      drawPicture(canvas, o.device, pictureReferenceBytes(*sheet, o, settings.sourceDirectory));
      return true;
    default:
      showError("Object type missing from drawObject");
      return false;
  }
}

}  // namespace zv
