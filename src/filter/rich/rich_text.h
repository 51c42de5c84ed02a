#pragma once
// The small rich text model: the characters of a story or of rich filter output, with runs of
// character properties, paragraphs, fonts and page values. The RTF reader fills it; plain text,
// HTML and a cleaned RTF are written from it.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace zv {

/// Character properties; a new run starts where they change.
struct RichCharacter {
  bool bold = false;
  bool italic = false;
  bool underline = false;
  int font = 0;   ///< a font number of the font table
  int size = 24;  ///< half points
  friend bool operator==(const RichCharacter&, const RichCharacter&) = default;
};

struct RichRun {
  std::size_t start = 0;  ///< text position where the run starts
  RichCharacter character;
};

enum RichJustification : int {
  kJustifyLeft = 0,
  kJustifyRight = 1,
  kJustifyCentre = 2,
  kJustifyFull = 3
};

/// A tab stop: the low 24 bits its position in twips, the top byte its kind.
enum RichTabKind : std::uint32_t { kTabLeft = 0, kTabCentre = 1, kTabRight = 2, kTabDecimal = 3 };
inline constexpr std::size_t kMaxRichTabs = 32;
inline constexpr std::uint32_t richTab(RichTabKind kind, std::uint32_t position) {
  return (static_cast<std::uint32_t>(kind) << 24) | (position & 0xFFFFFF);
}

/// Paragraph properties; a new paragraph record starts where they change.
struct RichParagraphFormat {
  int leftIndent = 0;
  int rightIndent = 0;
  int firstIndent = 0;
  int justification = kJustifyLeft;
  int spaceAfter = 0;
  int spaceBefore = 0;
  bool keep = false;
  std::vector<std::uint32_t> tabs;  ///< at most 32
  friend bool operator==(const RichParagraphFormat&, const RichParagraphFormat&) = default;
};

struct RichParagraph {
  std::size_t start = 0;
  RichParagraphFormat format;
};

struct RichFont {
  int number = 0;
  std::string name;
};

/// Section and document values.
struct RichPage {
  int columns = 1;
  int pageNumberFormat =
      0;  ///< 0 decimal, 1 lower letters, 2 lower roman, 3 upper letters, 4 upper roman
  int pageNumberStart = 1;
  int pageNumberX = 720;
  int pageNumberY = 720;
  int sectionBreak = 0;  ///< 0 none, 1 column, 2 page, 3 even, 4 odd
  bool landscape = false;
  bool facingPages = false;
  int marginLeft = 1800;
  int marginRight = 1800;
  int marginTop = 1440;
  int marginBottom = 1440;
  int paperWidth = 12240;
  int paperHeight = 15480;
  friend bool operator==(const RichPage&, const RichPage&) = default;
};

struct RichText {
  std::string text;
  std::vector<RichRun> runs;
  std::vector<RichParagraph> paragraphs;
  std::vector<RichFont> fonts;
  int defaultFont = 0;  ///< the number of \deff
  RichPage page;

  /// The name of font `number`; empty for a number the table doesn't have.
  std::string fontName(int number) const;
  /// The character properties and paragraph format in force at a text position.
  RichCharacter characterAt(std::size_t position) const;
  RichParagraphFormat paragraphAt(std::size_t position) const;

  /// Appends text with the given properties, starting a run or paragraph record where they
  /// change (a record that would start where the last one starts replaces it).
  void append(std::string_view characters, const RichCharacter& character,
              const RichParagraphFormat& paragraph);
  /// The number of a font of that name, added to the table when new.
  int fontNumber(std::string_view name);
};

}  // namespace zv
