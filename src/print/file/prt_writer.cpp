#include "print/file/prt_writer.h"

#include <algorithm>
#include <limits>

#include "core/atomic_file.h"
#include "core/messages.h"
#include "formats/print_template_header.h"
#include "print/file/prt_codes.h"

namespace zv {

namespace {

using namespace prt;

class TemplateWriter {
 public:
  std::string take() { return std::move(out_); }

  void u16(std::uint32_t value) {
    out_.push_back(static_cast<char>(value & 0xFF));
    out_.push_back(static_cast<char>((value >> 8) & 0xFF));
  }
  void u32(std::uint32_t value) {
    u16(value & 0xFFFF);
    u16(value >> 16);
  }
  /// A signed twips value of the 16 bits a file has room for.
  void i16(std::int32_t value) {
    value = std::clamp<std::int32_t>(value, std::numeric_limits<std::int16_t>::min(),
                                     std::numeric_limits<std::int16_t>::max());
    u16(static_cast<std::uint16_t>(static_cast<std::int16_t>(value)));
  }
  void str(std::string_view text, std::size_t limit = 0xFFFF) {
    text = text.substr(0, limit);
    u16(static_cast<std::uint32_t>(text.size()));
    out_.append(text);
  }
  void record(Pcode code) { u16(code); }
  void record(Pcode code, std::uint16_t value) {
    u16(code);
    u16(value);
  }
  void record32(Pcode code, std::uint32_t value) {
    u16(code);
    u32(value);
  }
  void recordStr(Pcode code, std::string_view text, std::size_t limit = 0xFFFF) {
    u16(code);
    str(text, limit);
  }

  void textBlock(const TextProperties& t) {
    record(kCharStyle, t.charStyle);
    recordStr(kFaceName, t.faceName, kFaceLimit);
    record(kFontHeight, t.fontHeight);
    record(kPitchFamily, t.pitchFamily);
    record(kCharset, t.charset);
    record(kWrapTabs, t.wrapTabs ? 1 : 0);
    record32(kTextColour, t.textColour);
    record(kFirstIndent, static_cast<std::uint16_t>(t.firstIndent));
    record(kLeftIndent, static_cast<std::uint16_t>(t.leftIndent));
    record(kTabWidth, t.tabWidth);
    record(kRotation, t.rotation);
    record(kColumns, t.columns);
    record(kColumnSpacing, t.columnSpacing);
    record(kLineHeight, static_cast<std::uint16_t>(t.lineHeight));
    record(kJustification, t.justification);
    if (!t.tabs.empty()) {
      std::size_t count = std::min<std::size_t>(t.tabs.size(), 0x7FFF);
      record(kTabCount, static_cast<std::uint16_t>(count));
      for (std::size_t i = 0; i < count; ++i) {
        record(kTabPosition, static_cast<std::uint16_t>(t.tabs[i].position));
        record(kTabType, t.tabs[i].type);
        record(kEndOfTab);
      }
    }
  }

  void attributes(const ObjectAttributes& a) {
    if (a.fill()) record(kFill);
    if (a.outline()) record(kOutline);
    if (a.ruleLines()) record(kRuleLines);
    record(kLineWidth, a.lineWidth);
    record32(kFillColour, a.fillColour);
    record32(kLineColour, a.lineColour);
    if (a.horizontalCells() > 1) record(kHorizontalCells, a.horizontalCells());
    if (a.verticalCells() > 1) record(kVerticalCells, a.verticalCells());
  }

  void object(const TemplateObject& o) {
    record(kKind, o.kind);
    record(kRectangle);
    i16(o.logical.left);
    i16(o.logical.top);
    i16(o.logical.right);
    i16(o.logical.bottom);
    record(kAttributes);
    attributes(o.attributes);
    switch (o.kind) {
      case 6:
      case 7:
        if (o.text) recordStr(kString, *o.text);
        record(kTextBlock);
        textBlock(o.textProperties);
        if (o.objectId != 0) record32(kObjectId, o.objectId);
        if (o.previousLink != 0) record32(kPreviousLink, o.previousLink);
        if (o.nextLink != 0) record32(kNextLink, o.nextLink);
        if (o.continuationTag) recordStr(kContinuationTag, *o.continuationTag);
        if (o.isContinuation) record(kIsContinuation, 1);
        break;
      case 9:
        record(kMapMode, o.mapMode);
        record(kExtentX, o.extentX);
        record(kExtentY, o.extentY);
        record32(kMetafileBits, static_cast<std::uint32_t>(o.metafileBits.size()));
        out_.append(o.metafileBits);
        break;
      case 10:
        record(kPictureType, o.bitmap.pictureType);
        record(kPictureWidth, o.bitmap.width);
        record(kPictureHeight, o.bitmap.height);
        record(kBitsPerPixel, o.bitmap.bitsPerPixel);
        record32(kPictureData, static_cast<std::uint32_t>(o.bitmap.data.size()));
        out_.append(o.bitmap.data);
        break;
      case 11:
        if (o.reference) recordStr(kString, *o.reference);
        record(kReferenceType, o.referenceType);
        if (o.defaultFile) recordStr(kDefaultFile, *o.defaultFile);
        break;
      case 12:
        record(kCornerWidth, o.cornerWidth);
        record(kCornerHeight, o.cornerHeight);
        break;
      case 14:
        record(kSides, o.sides);
        record(kPolygonRotation, o.polygonRotation);
        break;
      default:
        break;
    }
    record(kEndOfObject);
  }

  void file(const PrintTemplate& t) {
    record32(kMagic, kPrintTemplateMagic);
    record(kVersionCode, kVersion);
    if (t.description) recordStr(kDescription, *t.description);
    recordStr(kGameSystem, t.gameSystem, kNameLimit);
    record(kLevel, t.level);
    recordStr(kSheetType, t.sheetType, kNameLimit);
    record(kPcodeLevelCode, kPcodeLevel);
    record(kDefaultAttributes);
    attributes(t.defaultAttributes);
    record(kDefaultText);
    textBlock(t.defaultText);
    if (t.includeFile) recordStr(kIncludeFile, *t.includeFile);
    if (t.inhibitDetail()) record(kInhibitDetail);
    if (t.landscape()) record(kLandscape);
    if (t.printsForms()) {
      record(kFormWidth, static_cast<std::uint16_t>(std::min<std::uint32_t>(t.formWidth, 0xFFFF)));
      record(kFormHeight,
             static_cast<std::uint16_t>(std::min<std::uint32_t>(t.formHeight, 0xFFFF)));
    }
    if (t.promptForMargins != 0)
      record(kPromptForMargins, static_cast<std::uint16_t>(t.promptForMargins));
    record(kColours, 16);
    for (std::uint32_t colour : t.paletteColours)
      u32(colour);
    record32(kNextObjectId, t.nextObjectId);
    record(kPageCount, static_cast<std::uint16_t>(t.pages.size()));
    for (std::size_t i = 0; i < t.pages.size(); ++i) {
      const TemplatePage& page = *t.pages[i];
      record(kPageIndex, static_cast<std::uint16_t>(i));
      record(kPageType, static_cast<std::uint16_t>(page.pageType));
      if (page.name) recordStr(kPageName, *page.name);
      if (page.backgroundPage) recordStr(kBackgroundPage, *page.backgroundPage);
      if (page.expression) recordStr(kPageExpression, *page.expression);
      record(kObjectCount, static_cast<std::uint16_t>(page.objects.size()));
      for (const auto& object : page.objects)
        this->object(*object);
    }
    record(kEndOfFile);
  }

 private:
  std::string out_;
};

}  // namespace

std::string printTemplateBytes(const PrintTemplate& tmpl) {
  TemplateWriter writer;
  writer.file(tmpl);
  return writer.take();
}

int writePrintTemplate(PrintTemplate& tmpl, const std::filesystem::path& file) {
  const std::size_t current = tmpl.currentPageIndex;
  std::string bytes = printTemplateBytes(tmpl);
  tmpl.currentPageIndex = current;
  if (!writeFileAtomically(file, bytes)) {
    showError(strprintf("Error writing print template %s", file.string()));
    return -1;
  }
  tmpl.setFlag(kTemplateChanged | kTemplateNew, false);
  tmpl.path = file.string();
  return 0;
}

}  // namespace zv
