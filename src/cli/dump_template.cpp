// dump of a print template: its header values, default text and attributes, palette, and every
// page with its objects, as JSON.

#include <iostream>

#include "cli/commands.h"
#include "cli/json_writer.h"
#include "print/file/prt_reader.h"

namespace zv::cli {

namespace {

/// The recogniser's code of a print template.
constexpr int kPrintTemplateFileType = 3;

const char* kindName(std::uint16_t kind) {
  switch (kind) {
    case 1:
      return "rectangle";
    case 2:
      return "ellipse";
    case 3:
      return "line";
    case 4:
      return "horizontal line";
    case 5:
      return "vertical line";
    case 6:
      return "expanded text";
    case 7:
      return "text label";
    case 9:
      return "metafile";
    case 10:
      return "bitmap";
    case 11:
      return "picture reference";
    case 12:
      return "rounded box";
    case 14:
      return "polygon";
    default:
      return "unknown";
  }
}

const char* pageTypeName(std::uint32_t type) {
  switch (type) {
    case 0:
      return "Normal";
    case 1:
      return "Continuation";
    case 2:
      return "Optional";
    case 3:
      return "Background";
    default:
      return "unknown";
  }
}

void optionalString(JsonWriter& json, std::string_view key, const std::optional<std::string>& s) {
  if (!s) return;
  json.key(key);
  json.string(*s);
}

void writeText(JsonWriter& json, const TextProperties& t) {
  json.beginObject();
  json.key("faceName");
  json.string(t.faceName);
  json.key("fontHeight");
  json.integer(t.fontHeight);
  json.key("charStyle");
  json.integer(t.charStyle);
  json.key("pitchFamily");
  json.integer(t.pitchFamily);
  json.key("charset");
  json.integer(t.charset);
  json.key("textColour");
  json.integer(t.textColour);
  json.key("firstIndent");
  json.integer(t.firstIndent);
  json.key("leftIndent");
  json.integer(t.leftIndent);
  json.key("lineHeight");
  json.integer(t.lineHeight);
  json.key("justification");
  json.integer(t.justification);
  json.key("wrapTabs");
  json.integer(t.wrapTabs ? 1 : 0);
  json.key("columns");
  json.integer(t.columns);
  json.key("columnSpacing");
  json.integer(t.columnSpacing);
  json.key("tabWidth");
  json.integer(t.tabWidth);
  json.key("rotation");
  json.integer(t.rotation);
  json.key("tabs");
  json.beginArray();
  for (const TemplateTab& tab : t.tabs) {
    json.beginObject();
    json.key("position");
    json.integer(tab.position);
    json.key("type");
    json.integer(tab.type);
    json.endObject();
  }
  json.endArray();
  json.endObject();
}

void writeAttributes(JsonWriter& json, const ObjectAttributes& a) {
  json.beginObject();
  json.key("outline");
  json.integer(a.outline() ? 1 : 0);
  json.key("fill");
  json.integer(a.fill() ? 1 : 0);
  json.key("ruleLines");
  json.integer(a.ruleLines() ? 1 : 0);
  json.key("lineWidth");
  json.integer(a.lineWidth);
  json.key("lineColour");
  json.integer(a.lineColour);
  json.key("fillColour");
  json.integer(a.fillColour);
  json.key("horizontalCells");
  json.integer(a.horizontalCells());
  json.key("verticalCells");
  json.integer(a.verticalCells());
  json.endObject();
}

void writeObject(JsonWriter& json, const TemplateObject& o) {
  json.beginObject();
  json.key("kind");
  json.integer(o.kind);
  json.key("kindName");
  json.string(kindName(o.kind));
  json.key("rect");
  json.beginArray();
  for (std::int32_t v : {o.logical.left, o.logical.top, o.logical.right, o.logical.bottom})
    json.integer(v);
  json.endArray();
  json.key("attributes");
  writeAttributes(json, o.attributes);
  switch (o.kind) {
    case 6:
    case 7:
      optionalString(json, "text", o.text);
      json.key("textProperties");
      writeText(json, o.textProperties);
      json.key("objectId");
      json.integer(o.objectId);
      if (o.nextLink != 0) {
        json.key("nextLink");
        json.integer(o.nextLink);
      }
      if (o.previousLink != 0) {
        json.key("previousLink");
        json.integer(o.previousLink);
      }
      optionalString(json, "continuationTag", o.continuationTag);
      if (o.isContinuation) {
        json.key("isContinuation");
        json.integer(1);
      }
      break;
    case 9:
      json.key("mapMode");
      json.integer(o.mapMode);
      json.key("extent");
      json.beginArray();
      json.integer(o.extentX);
      json.integer(o.extentY);
      json.endArray();
      json.key("metafileBytes");
      json.integer(static_cast<long>(o.metafileBits.size()));
      break;
    case 10:
      json.key("pictureType");
      json.integer(o.bitmap.pictureType);
      json.key("width");
      json.integer(o.bitmap.width);
      json.key("height");
      json.integer(o.bitmap.height);
      json.key("bitsPerPixel");
      json.integer(o.bitmap.bitsPerPixel);
      json.key("dataSize");
      json.integer(static_cast<long>(o.bitmap.data.size()));
      break;
    case 11:
      json.key("referenceType");
      json.integer(o.referenceType);
      optionalString(json, "reference", o.reference);
      optionalString(json, "defaultFile", o.defaultFile);
      break;
    case 12:
      json.key("corner");
      json.beginArray();
      json.integer(o.cornerWidth);
      json.integer(o.cornerHeight);
      json.endArray();
      break;
    case 14:
      json.key("sides");
      json.integer(o.sides);
      json.key("polygonRotation");
      json.integer(o.polygonRotation);
      break;
    default:
      break;
  }
  json.endObject();
}

}  // namespace

int dumpPrintTemplate(const std::string& path) {
  std::unique_ptr<PrintTemplate> tmpl = readPrintTemplate(path);
  if (!tmpl) return 1;
  JsonWriter json;
  json.beginObject();
  json.key("gameSystem");
  json.string(tmpl->gameSystem);
  json.key("fileType");
  json.integer(kPrintTemplateFileType);
  json.key("level");
  json.integer(tmpl->level);
  json.key("sheetType");
  json.string(tmpl->sheetType);
  optionalString(json, "description", tmpl->description);
  optionalString(json, "includeFile", tmpl->includeFile);
  json.key("inhibitDetail");
  json.integer(tmpl->inhibitDetail() ? 1 : 0);
  json.key("landscape");
  json.integer(tmpl->landscape() ? 1 : 0);
  json.key("formWidth");
  json.integer(tmpl->formWidth);
  json.key("formHeight");
  json.integer(tmpl->formHeight);
  json.key("promptForMargins");
  json.integer(tmpl->promptForMargins);
  json.key("nextObjectId");
  json.integer(tmpl->nextObjectId);
  json.key("paletteColours");
  json.beginArray();
  for (std::uint32_t colour : tmpl->paletteColours)
    json.integer(colour);
  json.endArray();
  json.key("defaultText");
  writeText(json, tmpl->defaultText);
  json.key("defaultAttributes");
  writeAttributes(json, tmpl->defaultAttributes);
  json.key("pages");
  json.beginArray();
  for (std::size_t i = 0; i < tmpl->pages.size(); ++i) {
    const TemplatePage& page = *tmpl->pages[i];
    json.beginObject();
    json.key("name");
    json.string(page.displayName(i));
    json.key("pageType");
    json.string(pageTypeName(page.pageType));
    optionalString(json, "expression", page.expression);
    optionalString(json, "backgroundPage", page.backgroundPage);
    json.key("objects");
    json.beginArray();
    for (const auto& object : page.objects)
      writeObject(json, *object);
    json.endArray();
    json.endObject();
  }
  json.endArray();
  json.endObject();
  std::cout << json.text() << '\n';
  return 0;
}

}  // namespace zv::cli
