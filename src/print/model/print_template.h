#pragma once
// The print template: a graphic page description of drawn objects on named pages, some of them
// text boxes filled from a character sheet at print time. Lengths are twips (1440 to the inch),
// colours 0x00BBGGRR.

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

/// `charStyle` bits.
inline constexpr std::uint16_t kCharBold = 1;
inline constexpr std::uint16_t kCharItalic = 2;
inline constexpr std::uint16_t kCharUnderline = 4;
inline constexpr std::uint16_t kCharStrikeout = 8;

/// The default tab distance, used when `tabWidth` is 0.
inline constexpr std::uint16_t kDefaultTabWidth = 720;

enum class Justification : std::uint16_t { Left = 0, Right = 1, Centred = 2, Justified = 3 };
enum class TabType : std::uint16_t { Left = 0, Right = 1, Centred = 2, Decimal = 3 };

struct TemplateTab {
  std::int16_t position = 0;  ///< twips; negative counts from the right edge
  std::uint16_t type = 0;     ///< a TabType
  bool operator==(const TemplateTab&) const = default;
};

struct TextProperties {
  std::uint16_t charStyle = 0;
  std::string faceName;  ///< at most 31 characters
  std::uint16_t fontHeight = 0;
  std::uint8_t pitchFamily = 0;
  std::uint8_t charset = 0;
  std::uint32_t textColour = 0;
  std::int16_t firstIndent = 0;
  std::int16_t leftIndent = 0;
  std::int16_t lineHeight = 0;  ///< below 1: the font's own height
  std::uint16_t justification = 0;
  bool wrapTabs = false;
  std::uint16_t columns = 0;
  std::uint16_t columnSpacing = 0;
  std::uint16_t tabWidth = kDefaultTabWidth;
  std::vector<TemplateTab> tabs;
  std::uint16_t rotation = 0;  ///< tenths of a degree: 0, 900, 1800 or 2700

  bool operator==(const TextProperties&) const = default;
};

struct ObjectAttributes {
  std::uint32_t flags = 0;
  std::uint16_t deviceLineWidth = 0;  ///< computed
  std::uint16_t lineWidth = 0;
  std::uint32_t lineColour = 0;
  std::uint32_t fillColour = 0;

  bool outline() const { return flags & 1u; }
  bool fill() const { return flags & 2u; }
  bool ruleLines() const { return flags & 4u; }
  unsigned horizontalCells() const { return (flags >> 3) & 0xFFu; }
  unsigned verticalCells() const { return (flags >> 11) & 0xFFu; }
  void setOutline(bool on) { setBit(0, on); }
  void setFill(bool on) { setBit(1, on); }
  void setRuleLines(bool on) { setBit(2, on); }
  void setHorizontalCells(unsigned count) {
    flags = (flags & ~(0xFFu << 3)) | ((count & 0xFFu) << 3);
  }
  void setVerticalCells(unsigned count) {
    flags = (flags & ~(0xFFu << 11)) | ((count & 0xFFu) << 11);
  }

  /// Equal in what a file keeps (the device line width is computed).
  bool sameStored(const ObjectAttributes& other) const {
    return flags == other.flags && lineWidth == other.lineWidth && lineColour == other.lineColour &&
           fillColour == other.fillColour;
  }

 private:
  void setBit(unsigned bit, bool on) {
    flags = on ? (flags | (1u << bit)) : (flags & ~(1u << bit));
  }
};

enum class ObjectKind : std::uint16_t {
  Rectangle = 1,
  Ellipse = 2,
  Line = 3,
  HorizontalLine = 4,
  VerticalLine = 5,
  ExpandedText = 6,
  Label = 7,
  Metafile = 9,
  Bitmap = 10,
  PictureReference = 11,
  RoundBox = 12,
  LaidOutText = 13,
  Polygon = 14,
};

/// Whether `kind` is one an object may have in a file (1 to 7, 9 to 12, 14).
bool isStoredObjectKind(std::uint16_t kind);

struct Rect32 {
  std::int32_t left = 0;
  std::int32_t top = 0;
  std::int32_t right = 0;
  std::int32_t bottom = 0;
  std::int32_t width() const { return right - left; }
  std::int32_t height() const { return bottom - top; }
  bool operator==(const Rect32&) const = default;
};

/// The picture of a bitmap object, kept as the file gives it.
struct PictureData {
  std::uint16_t pictureType = 0;
  std::uint16_t width = 0;
  std::uint16_t height = 0;
  std::uint16_t bitsPerPixel = 0;
  std::string data;
  bool operator==(const PictureData&) const = default;
};

/// `flowFlags` of laid-out text.
inline constexpr std::uint32_t kFlowHasMore = 1;
inline constexpr std::uint32_t kFlowContinued = 2;
inline constexpr std::uint32_t kFlowStartsMidParagraph = 4;
inline constexpr std::uint32_t kFlowIsContinuation = 8;

struct TemplateObject {
  std::uint16_t kind = 1;
  Rect32 device;   ///< computed from `logical` for the device that draws
  Rect32 logical;  ///< twips
  ObjectAttributes attributes;

  // Text objects (kinds 6, 7 and the laid-out kind 13).
  TextProperties textProperties;
  std::optional<std::string> text;
  std::uint32_t objectId = 0;
  std::uint32_t nextLink = 0;
  std::uint32_t previousLink = 0;
  std::optional<std::string> continuationTag;
  bool isContinuation = false;

  // Metafile (kind 9): the bytes are kept as read, whatever the platform can play.
  std::uint16_t mapMode = 0;
  std::uint16_t extentX = 0;
  std::uint16_t extentY = 0;
  std::string metafileBits;

  // Bitmap (kind 10).
  PictureData bitmap;

  // Picture reference (kind 11).
  std::uint16_t referenceType = 0;
  std::optional<std::string> reference;
  std::optional<std::string> defaultFile;

  // Rounded box (kind 12).
  std::uint16_t cornerWidth = 0;
  std::uint16_t cornerHeight = 0;

  // Polygon (kind 14).
  std::uint16_t sides = 0;
  std::uint16_t polygonRotation = 0;  ///< degrees

  // Laid-out text (kind 13), made by page production only.
  TextProperties runState;                ///< the properties at the end of the layout
  const std::string* fullText = nullptr;  ///< the block the text lives in (owned by the output)
  std::size_t textStart = 0;              ///< where this box's text starts in the block
  std::optional<std::size_t> restText;    ///< where the text stopped, or none
  std::uint32_t flowFlags = 0;

  bool hasMore() const { return flowFlags & kFlowHasMore; }
  bool continued() const { return flowFlags & kFlowContinued; }
  bool startsMidParagraph() const { return flowFlags & kFlowStartsMidParagraph; }
  void setFlow(std::uint32_t flag, bool on) {
    flowFlags = on ? (flowFlags | flag) : (flowFlags & ~flag);
  }
  bool isText() const { return kind == 6 || kind == 7 || kind == 13; }

  /// Equal in what a file keeps: the device rectangle and line width are computed.
  bool sameStored(const TemplateObject& other) const;
};

enum class PageType : std::uint32_t { Normal = 0, Continuation = 1, Optional = 2, Background = 3 };

struct TemplatePage {
  std::uint32_t pageType = 0;
  std::optional<std::string> expression;
  std::optional<std::string> backgroundPage;
  std::optional<std::string> name;
  std::uint32_t selected = 0;  ///< editor only
  std::vector<std::unique_ptr<TemplateObject>> objects;

  /// The name shown and looked up: `name`, or "Page %d" with the index plus 1.
  std::string displayName(std::size_t index) const;
  bool sameStored(const TemplatePage& other) const;
};

inline constexpr std::uint32_t kTemplateChanged = 0x01;
inline constexpr std::uint32_t kTemplateNew = 0x02;
inline constexpr std::uint32_t kTemplateInhibitDetail = 0x20;
inline constexpr std::uint32_t kTemplateLandscape = 0x40;

struct PrintTemplate {
  std::uint32_t flags = 0;
  std::string path;
  std::uint16_t level = 0;
  std::string gameSystem;  ///< at most 23 characters
  std::string sheetType;   ///< at most 23; empty: any sheet type
  TextProperties defaultText;
  ObjectAttributes defaultAttributes;
  std::uint32_t paletteColours[16] = {};
  std::vector<std::unique_ptr<TemplatePage>> pages;
  std::size_t currentPageIndex = 0;
  std::optional<std::string> description;
  std::optional<std::string> includeFile;
  std::uint32_t nextObjectId = 0;
  std::uint32_t formWidth = 0;
  std::uint32_t formHeight = 0;
  std::uint32_t promptForMargins = 0;

  bool inhibitDetail() const { return flags & kTemplateInhibitDetail; }
  bool landscape() const { return flags & kTemplateLandscape; }
  void setFlag(std::uint32_t flag, bool on) { flags = on ? (flags | flag) : (flags & ~flag); }
  /// Both form sizes above 0: several template pages go on a sheet of paper.
  bool printsForms() const { return formWidth > 0 && formHeight > 0; }

  /// The page of that name ignoring case (as `displayName` gives it); null when there is none.
  TemplatePage* findPage(std::string_view pageName) const;
  /// Equal in what a file keeps.
  bool sameStored(const PrintTemplate& other) const;
};

/// A new template: one page "Page 1", the default attributes (outline and fill, line width 5,
/// black lines on white) and text ("Times New Roman" 240 twips), a white palette.
std::unique_ptr<PrintTemplate> newPrintTemplate(std::string_view gameSystem);

/// A new object of `kind` at `logical`, with the template's default attributes and text; text
/// objects take the next object id, a polygon has 6 sides.
std::unique_ptr<TemplateObject> newTemplateObject(PrintTemplate& tmpl, ObjectKind kind,
                                                  Rect32 logical);

}  // namespace zv
