#include "print/model/print_template.h"

#include <algorithm>

#include "core/strfmt.h"
#include "core/text.h"

namespace zv {

bool isStoredObjectKind(std::uint16_t kind) {
  return (kind >= 1 && kind <= 7) || (kind >= 9 && kind <= 12) || kind == 14;
}

bool TemplateObject::sameStored(const TemplateObject& o) const {
  return kind == o.kind && logical == o.logical && attributes.sameStored(o.attributes) &&
         textProperties == o.textProperties && text == o.text && objectId == o.objectId &&
         nextLink == o.nextLink && previousLink == o.previousLink &&
         continuationTag == o.continuationTag && isContinuation == o.isContinuation &&
         mapMode == o.mapMode && extentX == o.extentX && extentY == o.extentY &&
         metafileBits == o.metafileBits && bitmap == o.bitmap && referenceType == o.referenceType &&
         reference == o.reference && defaultFile == o.defaultFile && cornerWidth == o.cornerWidth &&
         cornerHeight == o.cornerHeight && sides == o.sides && polygonRotation == o.polygonRotation;
}

std::string TemplatePage::displayName(std::size_t index) const {
  if (name) return *name;
  return strprintf("Page %d", static_cast<int>(index + 1));
}

bool TemplatePage::sameStored(const TemplatePage& o) const {
  if (pageType != o.pageType || expression != o.expression || backgroundPage != o.backgroundPage ||
      name != o.name || objects.size() != o.objects.size())
    return false;
  for (std::size_t i = 0; i < objects.size(); ++i)
    if (!objects[i]->sameStored(*o.objects[i])) return false;
  return true;
}

TemplatePage* PrintTemplate::findPage(std::string_view pageName) const {
  for (std::size_t i = 0; i < pages.size(); ++i)
    if (equalsIgnoringCase(pages[i]->displayName(i), pageName)) return pages[i].get();
  return nullptr;
}

bool PrintTemplate::sameStored(const PrintTemplate& o) const {
  const std::uint32_t stored = kTemplateInhibitDetail | kTemplateLandscape;
  if ((flags & stored) != (o.flags & stored) || level != o.level || gameSystem != o.gameSystem ||
      sheetType != o.sheetType || !(defaultText == o.defaultText) ||
      !defaultAttributes.sameStored(o.defaultAttributes) ||
      !std::equal(std::begin(paletteColours), std::end(paletteColours),
                  std::begin(o.paletteColours)) ||
      description != o.description || includeFile != o.includeFile ||
      nextObjectId != o.nextObjectId || formWidth != o.formWidth || formHeight != o.formHeight ||
      promptForMargins != o.promptForMargins || pages.size() != o.pages.size())
    return false;
  for (std::size_t i = 0; i < pages.size(); ++i)
    if (!pages[i]->sameStored(*o.pages[i])) return false;
  return true;
}

std::unique_ptr<PrintTemplate> newPrintTemplate(std::string_view gameSystem) {
  auto tmpl = std::make_unique<PrintTemplate>();
  tmpl->flags = kTemplateNew;
  tmpl->gameSystem = std::string(gameSystem.substr(0, 23));
  tmpl->defaultAttributes.setOutline(true);
  tmpl->defaultAttributes.setFill(true);
  tmpl->defaultAttributes.lineWidth = 5;
  tmpl->defaultAttributes.lineColour = 0;
  tmpl->defaultAttributes.fillColour = 0xFFFFFF;
  tmpl->defaultText.faceName = "Times New Roman";
  tmpl->defaultText.fontHeight = 240;
  tmpl->defaultText.pitchFamily = 18;
  tmpl->defaultText.charStyle = 0;
  tmpl->defaultText.tabWidth = kDefaultTabWidth;
  std::fill(std::begin(tmpl->paletteColours), std::end(tmpl->paletteColours), 0xFFFFFFu);
  auto page = std::make_unique<TemplatePage>();
  page->name = "Page 1";
  tmpl->pages.push_back(std::move(page));
  return tmpl;
}

std::unique_ptr<TemplateObject> newTemplateObject(PrintTemplate& tmpl, ObjectKind kind,
                                                  Rect32 logical) {
  auto object = std::make_unique<TemplateObject>();
  object->kind = static_cast<std::uint16_t>(kind);
  object->logical = logical;
  object->attributes = tmpl.defaultAttributes;
  if (kind == ObjectKind::ExpandedText || kind == ObjectKind::Label) {
    object->textProperties = tmpl.defaultText;
    object->objectId = ++tmpl.nextObjectId;
  }
  if (kind == ObjectKind::Polygon) {
    object->sides = 6;
    object->polygonRotation = 0;
  }
  return object;
}

}  // namespace zv
