#include "print/file/prt_reader.h"

#include <fstream>
#include <iterator>

#include "core/messages.h"
#include "formats/print_template_header.h"
#include "print/file/prt_codes.h"
#include "print/model/print_template.h"

namespace zv {

namespace {

using namespace prt;

/// The first fault of a read, with the text of its message.
struct ReadFailure {
  std::string message;
};

/// A reader of the records of one file, held in memory. Each sub-block loop reads pcodes until
/// one it doesn't know, which it hands back to its caller as the next pcode.
class TemplateReader {
 public:
  TemplateReader(std::string_view bytes, std::string_view fileName)
      : bytes_(bytes), fileName_(fileName) {}

  std::unique_ptr<PrintTemplate> read();

 private:
  [[noreturn]] void fail(std::string message) { throw ReadFailure{std::move(message)}; }
  [[noreturn]] void failRead() {
    fail(strprintf("Error reading print template %s (pcode %d)", fileName_, lastPcode_));
  }

  bool atEnd() const { return position_ >= bytes_.size(); }
  std::uint16_t u16() {
    if (bytes_.size() - position_ < 2) failRead();
    auto b = reinterpret_cast<const unsigned char*>(bytes_.data() + position_);
    position_ += 2;
    return static_cast<std::uint16_t>(b[0] | (b[1] << 8));
  }
  std::int16_t i16() { return static_cast<std::int16_t>(u16()); }
  std::uint32_t u32() {
    std::uint32_t low = u16();
    return low | (static_cast<std::uint32_t>(u16()) << 16);
  }
  std::string bytes(std::size_t count) {
    if (bytes_.size() - position_ < count) failRead();
    std::string out(bytes_.substr(position_, count));
    position_ += count;
    return out;
  }
  std::string str(std::size_t limit = 0xFFFF) {
    std::uint16_t length = u16();
    if (length > limit) failRead();
    return bytes(length);
  }
  std::uint16_t pcode() {
    lastPcode_ = u16();
    return lastPcode_;
  }

  TemplatePage& currentPage() { return *tmpl_->pages[current_]; }

  std::uint16_t readTextBlock(TextProperties& text);
  void readTabs(TextProperties& text);
  std::uint16_t readAttributes(ObjectAttributes& attributes);
  /// The objects of the current page; false when pcode 27 cut the list (and ended the file).
  bool readObjectList();
  std::unique_ptr<TemplateObject> readObject();
  void selectPage(std::uint16_t index);

  std::string_view bytes_;
  std::string fileName_;
  std::size_t position_ = 0;
  std::uint16_t lastPcode_ = 0;
  std::unique_ptr<PrintTemplate> tmpl_;
  std::size_t current_ = 0;
  std::size_t pageCount_ = 1;
};

std::uint16_t TemplateReader::readTextBlock(TextProperties& text) {
  for (;;) {
    std::uint16_t code = pcode();
    switch (code) {
      case kFaceName:
        text.faceName = str(kFaceLimit);
        break;
      case kFontHeight:
        text.fontHeight = u16();
        break;
      case kCharStyle:
        text.charStyle = u16();
        break;
      case kPitchFamily:
        text.pitchFamily = static_cast<std::uint8_t>(u16());
        break;
      case kCharset:
        text.charset = static_cast<std::uint8_t>(u16());
        break;
      case kTextColour:
        text.textColour = u32();
        break;
      case kJustification:
        text.justification = u16();
        break;
      case kFirstIndent: {
        std::int16_t value = i16();
        if (value < 0) {
          text.leftIndent = static_cast<std::int16_t>(-value);
          text.firstIndent = 0;
        } else {
          text.firstIndent = value;
        }
        break;
      }
      case kLeftIndent:
        text.leftIndent = i16();
        break;
      case kTabWidth:
        text.tabWidth = u16();
        break;
      case kTabCount:
        readTabs(text);
        break;
      case kLineHeight:
        text.lineHeight = i16();
        break;
      case kColumns:
        text.columns = u16();
        break;
      case kColumnSpacing:
        text.columnSpacing = u16();
        break;
      case kWrapTabs:
        text.wrapTabs = u16() & 1;
        break;
      case kRotation:
        text.rotation = u16();
        break;
      default:
        return code;
    }
  }
}

void TemplateReader::readTabs(TextProperties& text) {
  std::int16_t count = i16();
  text.tabs.clear();
  for (int i = 0; i < count; ++i) {
    TemplateTab tab;
    for (;;) {
      std::uint16_t code = pcode();
      if (code == kTabPosition) {
        tab.position = i16();
      } else if (code == kTabType) {
        tab.type = u16();
      } else if (code == kEndOfTab) {
        break;
      } else {
        fail("Bad pcode found in tab list.");
      }
    }
    text.tabs.push_back(tab);
  }
}

std::uint16_t TemplateReader::readAttributes(ObjectAttributes& attributes) {
  for (;;) {
    std::uint16_t code = pcode();
    switch (code) {
      case kOutline:
        attributes.setOutline(true);
        break;
      case kFill:
        attributes.setFill(true);
        break;
      case kRuleLines:
        attributes.setRuleLines(true);
        break;
      case kLineWidth:
        attributes.lineWidth = u16();
        break;
      case kLineColour:
        attributes.lineColour = u32();
        break;
      case kFillColour:
        attributes.fillColour = u32();
        break;
      case kHorizontalCells:
        attributes.setHorizontalCells(u16() & 0xFF);
        break;
      case kVerticalCells:
        attributes.setVerticalCells(u16() & 0xFF);
        break;
      default:
        return code;
    }
  }
}

std::unique_ptr<TemplateObject> TemplateReader::readObject() {
  auto object = std::make_unique<TemplateObject>();
  object->kind = u16();
  if (!isStoredObjectKind(object->kind)) failRead();
  const std::uint16_t kind = object->kind;
  const bool textKind = kind == 6 || kind == 7;
  auto guard = [&](bool allowed, const char* message) {
    if (!allowed) fail(message);
  };
  // Records that no message names for a wrong kind are refused values.
  auto guardRead = [&](bool allowed) {
    if (!allowed) failRead();
  };
  std::uint16_t code = pcode();
  for (;;) {
    switch (code) {
      case kEndOfObject:
        return object;
      case kRectangle:
        object->logical.left = i16();
        object->logical.top = i16();
        object->logical.right = i16();
        object->logical.bottom = i16();
        break;
      case kAttributes:
        code = readAttributes(object->attributes);
        continue;
      case kTextBlock:
        guard(textKind, "non-text object has text attributes");
        code = readTextBlock(object->textProperties);
        continue;
      case kString: {
        guard(textKind || kind == 11, "non-text object has string");
        std::uint16_t length = u16();
        if (bytes_.size() - position_ < length) fail("Couldn't read text object string");
        (textKind ? object->text : object->reference) = bytes(length);
        break;
      }
      case kMapMode:
        guard(kind == 9, "non-metafile has mode");
        object->mapMode = u16();
        break;
      case kExtentX:
        guard(kind == 9, "non-metafile has mode");
        object->extentX = u16();
        break;
      case kExtentY:
        guard(kind == 9, "non-metafile has mode");
        object->extentY = u16();
        break;
      case kMetafileBits: {
        guard(kind == 9, "non-metafile has mode");
        std::uint32_t size = u32();
        if (bytes_.size() - position_ < size) fail("Error reading metafile bits");
        object->metafileBits = bytes(size);
        break;
      }
      case kPictureType:
        guard(kind == 10, "non-bitmap has bitmap type");
        object->bitmap.pictureType = u16();
        break;
      case kPictureWidth:
        guard(kind == 10, "non-bitmap has bitmap type");
        object->bitmap.width = u16();
        break;
      case kPictureHeight:
        guard(kind == 10, "non-bitmap has bitmap type");
        object->bitmap.height = u16();
        break;
      case kBitsPerPixel:
        guard(kind == 10, "non-bitmap has bitmap type");
        object->bitmap.bitsPerPixel = u16();
        break;
      case kPictureData: {
        guard(kind == 10, "non-bitmap has bitmap bytes");
        std::uint32_t size = u32();
        object->bitmap.data = bytes(size);
        break;
      }
      case kReferenceType:
        guardRead(kind == 11);
        object->referenceType = u16();
        break;
      case kDefaultFile:
        guardRead(kind == 11);
        object->defaultFile = str();
        break;
      case kCornerWidth:
        guard(kind == 12, "Non round box has corner width");
        object->cornerWidth = u16();
        break;
      case kCornerHeight:
        guard(kind == 12, "Non round box has corner height");
        object->cornerHeight = u16();
        break;
      case kSides:
        guard(kind == 14, "non-polygon has number of sides.");
        object->sides = u16();
        break;
      case kPolygonRotation:
        guard(kind == 14, "non-polygon has angle.");
        object->polygonRotation = u16();
        break;
      case kObjectId:
        guardRead(textKind);
        object->objectId = u32();
        break;
      case kNextLink:
        guardRead(textKind);
        object->nextLink = u32();
        break;
      case kPreviousLink:
        guardRead(textKind);
        object->previousLink = u32();
        break;
      case kContinuationTag:
        guardRead(textKind);
        object->continuationTag = str();
        break;
      case kIsContinuation:
        guardRead(textKind);
        object->isContinuation = u16() & 1;
        break;
      default:
        fail("Missing end of object");
    }
    code = pcode();
  }
}

bool TemplateReader::readObjectList() {
  std::uint16_t count = u16();
  TemplatePage& page = currentPage();
  page.objects.clear();
  for (std::uint16_t i = 0; i < count; ++i) {
    std::uint16_t code = pcode();
    if (code == kEndOfFile) {
      showWarning("Found truncated item list");
      return false;
    }
    if (code != kKind) failRead();
    page.objects.push_back(readObject());
  }
  return true;
}

void TemplateReader::selectPage(std::uint16_t index) {
  if (index >= pageCount_) failRead();
  while (tmpl_->pages.size() <= index)
    tmpl_->pages.push_back(std::make_unique<TemplatePage>());
  current_ = index;
}

std::unique_ptr<PrintTemplate> TemplateReader::read() {
  tmpl_ = std::make_unique<PrintTemplate>();
  tmpl_->path = fileName_;
  tmpl_->pages.push_back(std::make_unique<TemplatePage>());
  std::uint16_t code = pcode();
  for (;;) {
    switch (code) {
      case kMagic:
        if (u32() != kPrintTemplateMagic) fail(strprintf("File %s not print template", fileName_));
        break;
      case kVersionCode: {
        std::uint16_t version = u16();
        if (version > kVersion) fail(strprintf("Bad version (%d) on file %s", version, fileName_));
        break;
      }
      case kPcodeLevelCode: {
        std::uint16_t level = u16();
        if (level > kPcodeLevel)
          fail(
              strprintf("This version of the application (%d) cannot read this print template (%d)",
                        kPcodeLevel, level));
        break;
      }
      case kGameSystem:
        tmpl_->gameSystem = str(kNameLimit);
        break;
      case kSheetType:
        tmpl_->sheetType = str(kNameLimit);
        break;
      case kLevel:
        tmpl_->level = u16();
        break;
      case kDescription:
        tmpl_->description = str();
        break;
      case kIncludeFile:
        tmpl_->includeFile = str();
        break;
      case kDefaultText:
        code = readTextBlock(tmpl_->defaultText);
        continue;
      case kDefaultAttributes:
        code = readAttributes(tmpl_->defaultAttributes);
        continue;
      case kColours: {
        // A count of 16 or less reads 16 colours, as every written file holds; a larger count
        // reads that many and keeps the first 16.
        std::uint16_t count = u16();
        std::size_t toRead = count <= 16 ? 16 : count;
        for (std::size_t i = 0; i < toRead; ++i) {
          std::uint32_t colour = u32();
          if (i < 16) tmpl_->paletteColours[i] = colour;
        }
        break;
      }
      case kNextObjectId:
        tmpl_->nextObjectId = u32();
        break;
      case kInhibitDetail:
        tmpl_->setFlag(kTemplateInhibitDetail, true);
        break;
      case kLandscape:
        tmpl_->setFlag(kTemplateLandscape, true);
        break;
      case kFormHeight:
        tmpl_->formHeight = u16();
        break;
      case kFormWidth:
        tmpl_->formWidth = u16();
        break;
      case kPromptForMargins:
        tmpl_->promptForMargins = u16();
        break;
      case kPageCount: {
        std::uint16_t count = u16();
        if (count > pageCount_) {
          pageCount_ = count;
          tmpl_->pages.reserve(count + count / 2);
        }
        break;
      }
      case kPageIndex:
        selectPage(u16());
        break;
      case kPageType:
        currentPage().pageType = u16();
        break;
      case kPageName:
        currentPage().name = str();
        break;
      case kPageExpression:
        currentPage().expression = str();
        break;
      case kBackgroundPage:
        currentPage().backgroundPage = str();
        break;
      case kObjectCount:
        if (!readObjectList()) code = kEndOfFile;
        if (code == kEndOfFile) {
          tmpl_->currentPageIndex = 0;
          return std::move(tmpl_);
        }
        break;
      case kEndOfFile:
        tmpl_->currentPageIndex = 0;
        return std::move(tmpl_);
      default:
        fail(strprintf("Unrecognized pcode (%d) in file %s", code, fileName_));
    }
    code = pcode();
  }
}

}  // namespace

std::unique_ptr<PrintTemplate> readPrintTemplateBytes(std::string_view bytes,
                                                      std::string_view fileName) {
  TemplateReader reader(bytes, fileName);
  try {
    return reader.read();
  } catch (const ReadFailure& failure) {
    showError(failure.message);
    return nullptr;
  }
}

std::unique_ptr<PrintTemplate> readPrintTemplate(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) {
    showError(strprintf("Can't open print template %s", file.string()));
    return nullptr;
  }
  std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  return readPrintTemplateBytes(bytes, file.string());
}

}  // namespace zv
