#include "filter/rich/rtf_reader.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <vector>

namespace zv {

namespace {

enum class Kind { Character, Destination, Property, Special };

enum class Action {
  // Properties.
  Bold,
  Italic,
  Underline,
  UnderlineNone,
  Font,
  FontSize,
  FirstIndent,
  LeftIndent,
  RightIndent,
  JustifyLeft,
  JustifyRight,
  JustifyCentre,
  JustifyFull,
  SpaceAfter,
  SpaceBefore,
  Keep,
  Plain,
  ParagraphDefault,
  Columns,
  Landscape,
  FacingPages,
  MarginBottom,
  MarginLeft,
  MarginRight,
  MarginTop,
  PaperHeight,
  PaperWidth,
  PageNumberDecimal,
  PageNumberLowerLetter,
  PageNumberLowerRoman,
  PageNumberUpperLetter,
  PageNumberUpperRoman,
  PageNumberStart,
  PageNumberX,
  PageNumberY,
  BreakColumn,
  BreakEven,
  BreakNone,
  BreakOdd,
  BreakPage,
  DefaultFont,
  // Destinations.
  Skip,
  FontTable,
  // Special.
  Paragraph,
  Binary,
  Hex,
  SkipUnknown,
  // Characters carry their code in the row.
  Character,
};

struct Keyword {
  std::string_view word;
  int defaultParameter;
  bool forceDefault;  ///< the default is used even when a parameter is given
  Kind kind;
  Action action;
  char character = 0;
};

// Sorted by word, for the binary search.
constexpr std::array kKeywords = std::to_array<Keyword>({
    {"'", 0, false, Kind::Special, Action::Hex},
    {"*", 0, false, Kind::Special, Action::SkipUnknown},
    {"\\", 0, false, Kind::Character, Action::Character, '\\'},
    {"author", 0, false, Kind::Destination, Action::Skip},
    {"b", 1, false, Kind::Property, Action::Bold},
    {"bin", 0, false, Kind::Special, Action::Binary},
    {"buptim", 0, false, Kind::Destination, Action::Skip},
    {"colortbl", 0, false, Kind::Destination, Action::Skip},
    {"cols", 1, false, Kind::Property, Action::Columns},
    {"comment", 0, false, Kind::Destination, Action::Skip},
    {"creatim", 0, false, Kind::Destination, Action::Skip},
    {"deff", 0, false, Kind::Property, Action::DefaultFont},
    {"doccomm", 0, false, Kind::Destination, Action::Skip},
    {"f", 0, false, Kind::Property, Action::Font},
    {"facingp", 1, true, Kind::Property, Action::FacingPages},
    {"fi", 0, false, Kind::Property, Action::FirstIndent},
    {"fonttbl", 0, false, Kind::Destination, Action::FontTable},
    {"footer", 0, false, Kind::Destination, Action::Skip},
    {"footerf", 0, false, Kind::Destination, Action::Skip},
    {"footerl", 0, false, Kind::Destination, Action::Skip},
    {"footerr", 0, false, Kind::Destination, Action::Skip},
    {"footnote", 0, false, Kind::Destination, Action::Skip},
    {"fs", 24, false, Kind::Property, Action::FontSize},
    {"ftncn", 0, false, Kind::Destination, Action::Skip},
    {"ftnsep", 0, false, Kind::Destination, Action::Skip},
    {"ftnsepc", 0, false, Kind::Destination, Action::Skip},
    {"header", 0, false, Kind::Destination, Action::Skip},
    {"headerf", 0, false, Kind::Destination, Action::Skip},
    {"headerl", 0, false, Kind::Destination, Action::Skip},
    {"headerr", 0, false, Kind::Destination, Action::Skip},
    {"i", 1, false, Kind::Property, Action::Italic},
    {"info", 0, false, Kind::Destination, Action::Skip},
    {"keep", 1, true, Kind::Property, Action::Keep},
    {"keywords", 0, false, Kind::Destination, Action::Skip},
    {"landscape", 1, true, Kind::Property, Action::Landscape},
    {"ldblquote", 0, false, Kind::Character, Action::Character, '"'},
    {"li", 0, false, Kind::Property, Action::LeftIndent},
    {"line", 0, false, Kind::Character, Action::Character, '\r'},
    {"margb", 1440, false, Kind::Property, Action::MarginBottom},
    {"margl", 1800, false, Kind::Property, Action::MarginLeft},
    {"margr", 1800, false, Kind::Property, Action::MarginRight},
    {"margt", 1440, false, Kind::Property, Action::MarginTop},
    {"operator", 0, false, Kind::Destination, Action::Skip},
    {"paperh", 15480, false, Kind::Property, Action::PaperHeight},
    {"paperw", 12240, false, Kind::Property, Action::PaperWidth},
    {"par", 0, false, Kind::Special, Action::Paragraph},
    {"pard", 0, false, Kind::Property, Action::ParagraphDefault},
    {"pgndec", 0, true, Kind::Property, Action::PageNumberDecimal},
    {"pgnlcltr", 1, true, Kind::Property, Action::PageNumberLowerLetter},
    {"pgnlcrm", 2, true, Kind::Property, Action::PageNumberLowerRoman},
    {"pgnstart", 1, false, Kind::Property, Action::PageNumberStart},
    {"pgnucltr", 3, true, Kind::Property, Action::PageNumberUpperLetter},
    {"pgnucrm", 4, true, Kind::Property, Action::PageNumberUpperRoman},
    {"pgnx", 720, false, Kind::Property, Action::PageNumberX},
    {"pgny", 720, false, Kind::Property, Action::PageNumberY},
    {"pict", 0, false, Kind::Destination, Action::Skip},
    {"plain", 0, false, Kind::Property, Action::Plain},
    {"printim", 0, false, Kind::Destination, Action::Skip},
    {"private1", 0, false, Kind::Destination, Action::Skip},
    {"qc", kJustifyCentre, true, Kind::Property, Action::JustifyCentre},
    {"qj", kJustifyFull, true, Kind::Property, Action::JustifyFull},
    {"ql", kJustifyLeft, true, Kind::Property, Action::JustifyLeft},
    {"qr", kJustifyRight, true, Kind::Property, Action::JustifyRight},
    {"rdblquote", 0, false, Kind::Character, Action::Character, '"'},
    {"revtim", 0, false, Kind::Destination, Action::Skip},
    {"ri", 0, false, Kind::Property, Action::RightIndent},
    {"rxe", 0, false, Kind::Destination, Action::Skip},
    {"sa", 0, false, Kind::Property, Action::SpaceAfter},
    {"sb", 0, false, Kind::Property, Action::SpaceBefore},
    {"sbkcol", 1, true, Kind::Property, Action::BreakColumn},
    {"sbkeven", 3, true, Kind::Property, Action::BreakEven},
    {"sbknone", 0, true, Kind::Property, Action::BreakNone},
    {"sbkodd", 4, true, Kind::Property, Action::BreakOdd},
    {"sbkpage", 2, true, Kind::Property, Action::BreakPage},
    {"stylesheet", 0, false, Kind::Destination, Action::Skip},
    {"subject", 0, false, Kind::Destination, Action::Skip},
    {"tab", 0, false, Kind::Character, Action::Character, '\t'},
    {"tc", 0, false, Kind::Destination, Action::Skip},
    {"title", 0, false, Kind::Destination, Action::Skip},
    {"txe", 0, false, Kind::Destination, Action::Skip},
    {"ul", 1, false, Kind::Property, Action::Underline},
    {"ulnone", 0, false, Kind::Property, Action::UnderlineNone},
    {"xe", 0, false, Kind::Destination, Action::Skip},
    {"{", 0, false, Kind::Character, Action::Character, '{'},
    {"}", 0, false, Kind::Character, Action::Character, '}'},
});

const Keyword* findKeyword(std::string_view word) {
  auto it = std::lower_bound(kKeywords.begin(), kKeywords.end(), word,
                             [](const Keyword& k, std::string_view w) { return k.word < w; });
  if (it == kKeywords.end() || it->word != word) return nullptr;
  return &*it;
}

enum class Destination { Normal, Skip, FontTable };
enum class ReaderState { Normal, Binary, Hex };

/// Everything a group saves and restores.
struct GroupState {
  RichCharacter character;
  RichParagraphFormat paragraph;
  RichPage page;
  Destination destination = Destination::Normal;
  ReaderState reader = ReaderState::Normal;
};

class RtfReader {
 public:
  RtfReader(std::string_view source, RichText& out) : source_(source), out_(out) {}
  int run();

 private:
  int keyword();
  int apply(const Keyword& keyword, bool hasParameter, int parameter);
  int property(Action action, int value);
  void character(char c);
  void fontTableCharacter(char c);

  std::string_view source_;
  std::size_t pos_ = 0;
  RichText& out_;
  GroupState state_;
  std::vector<GroupState> stack_;
  int depth_ = 0;
  bool skipIfUnknown_ = false;
  long binaryLeft_ = 0;
  int hexValue_ = 0;
  int hexDigits_ = 0;
  // The font table entry being read.
  int fontNumber_ = -1;
  std::string fontName_;
};

void RtfReader::character(char c) {
  switch (state_.destination) {
    case Destination::Skip:
      return;
    case Destination::FontTable:
      fontTableCharacter(c);
      return;
    case Destination::Normal:
      out_.append(std::string_view(&c, 1), state_.character, state_.paragraph);
      return;
  }
}

void RtfReader::fontTableCharacter(char c) {
  if (c == ';') {
    if (fontNumber_ >= 0) {
      std::string name = fontName_;
      while (!name.empty() && name.back() == ' ')
        name.pop_back();
      bool known = false;
      for (RichFont& font : out_.fonts) {
        if (font.number == fontNumber_) {
          font.name = name;
          known = true;
        }
      }
      if (!known) out_.fonts.push_back({fontNumber_, name});
    }
    fontNumber_ = -1;
    fontName_.clear();
    return;
  }
  if (fontNumber_ >= 0 && !(fontName_.empty() && c == ' ')) fontName_ += c;
}

int RtfReader::property(Action action, int value) {
  RichCharacter& ch = state_.character;
  RichParagraphFormat& pa = state_.paragraph;
  RichPage& page = state_.page;
  switch (action) {
    case Action::Bold:
      ch.bold = value != 0;
      break;
    case Action::Italic:
      ch.italic = value != 0;
      break;
    case Action::Underline:
      ch.underline = value != 0;
      break;
    case Action::UnderlineNone:
      ch.underline = false;
      break;
    case Action::Font:
      if (state_.destination == Destination::FontTable) {
        fontNumber_ = value;
        fontName_.clear();
      } else {
        ch.font = value;
      }
      break;
    case Action::FontSize:
      ch.size = value;
      break;
    case Action::FirstIndent:
      pa.firstIndent = value;
      break;
    case Action::LeftIndent:
      pa.leftIndent = value;
      break;
    case Action::RightIndent:
      pa.rightIndent = value;
      break;
    case Action::JustifyLeft:
    case Action::JustifyRight:
    case Action::JustifyCentre:
    case Action::JustifyFull:
      pa.justification = value;
      break;
    case Action::SpaceAfter:
      pa.spaceAfter = value;
      break;
    case Action::SpaceBefore:
      pa.spaceBefore = value;
      break;
    case Action::Keep:
      pa.keep = value != 0;
      break;
    case Action::Plain:
      ch = RichCharacter();
      ch.font = out_.defaultFont;
      break;
    case Action::ParagraphDefault:
      pa = RichParagraphFormat();
      break;
    case Action::Columns:
      page.columns = value;
      break;
    case Action::Landscape:
      page.landscape = true;
      break;
    case Action::FacingPages:
      page.facingPages = true;
      break;
    case Action::MarginBottom:
      page.marginBottom = value;
      break;
    case Action::MarginLeft:
      page.marginLeft = value;
      break;
    case Action::MarginRight:
      page.marginRight = value;
      break;
    case Action::MarginTop:
      page.marginTop = value;
      break;
    case Action::PaperHeight:
      page.paperHeight = value;
      break;
    case Action::PaperWidth:
      page.paperWidth = value;
      break;
    case Action::PageNumberDecimal:
    case Action::PageNumberLowerLetter:
    case Action::PageNumberLowerRoman:
    case Action::PageNumberUpperLetter:
    case Action::PageNumberUpperRoman:
      page.pageNumberFormat = value;
      break;
    case Action::PageNumberStart:
      page.pageNumberStart = value;
      break;
    case Action::PageNumberX:
      page.pageNumberX = value;
      break;
    case Action::PageNumberY:
      page.pageNumberY = value;
      break;
    case Action::BreakColumn:
    case Action::BreakEven:
    case Action::BreakNone:
    case Action::BreakOdd:
    case Action::BreakPage:
      page.sectionBreak = value;
      break;
    case Action::DefaultFont:
      out_.defaultFont = value;
      ch.font = value;
      break;
    default:
      return kRichBadTable;
  }
  return kRichOk;
}

int RtfReader::apply(const Keyword& keyword, bool hasParameter, int parameter) {
  if (keyword.kind != Kind::Destination && keyword.action != Action::SkipUnknown) {
    skipIfUnknown_ = false;
  }
  switch (keyword.kind) {
    case Kind::Character:
      character(keyword.character);
      return kRichOk;
    case Kind::Destination:
      skipIfUnknown_ = false;
      if (state_.destination == Destination::Skip) return kRichOk;
      state_.destination =
          keyword.action == Action::FontTable ? Destination::FontTable : Destination::Skip;
      return kRichOk;
    case Kind::Property: {
      if (state_.destination == Destination::Skip) return kRichOk;
      const int value =
          keyword.forceDefault || !hasParameter ? keyword.defaultParameter : parameter;
      return property(keyword.action, value);
    }
    case Kind::Special:
      switch (keyword.action) {
        case Action::Paragraph:
          character('\r');
          character('\n');
          return kRichOk;
        case Action::Binary:
          binaryLeft_ = std::max(0, parameter);
          if (binaryLeft_ > 0) state_.reader = ReaderState::Binary;
          return kRichOk;
        case Action::Hex:
          state_.reader = ReaderState::Hex;
          hexValue_ = 0;
          hexDigits_ = 0;
          return kRichOk;
        case Action::SkipUnknown:
          skipIfUnknown_ = true;
          return kRichOk;
        default:
          return kRichBadTable;
      }
  }
  return kRichBadTable;
}

int RtfReader::keyword() {
  if (pos_ >= source_.size()) return kRichOk;
  auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
  std::string_view word;
  bool hasParameter = false;
  int parameter = 0;
  if (!isLetter(source_[pos_])) {
    // A control symbol: one character.
    word = source_.substr(pos_, 1);
    ++pos_;
  } else {
    const std::size_t start = pos_;
    while (pos_ < source_.size() && pos_ - start < 32 && isLetter(source_[pos_]))
      ++pos_;
    word = source_.substr(start, pos_ - start);
    bool negative = false;
    if (pos_ < source_.size() && source_[pos_] == '-') {
      negative = true;
      ++pos_;
    }
    long value = 0;
    while (pos_ < source_.size() && source_[pos_] >= '0' && source_[pos_] <= '9') {
      if (value < 100000000) value = value * 10 + (source_[pos_] - '0');
      hasParameter = true;
      ++pos_;
    }
    if (negative && !hasParameter) --pos_;  // a lone "-" is not part of the keyword
    parameter = static_cast<int>(negative ? -value : value);
    if (pos_ < source_.size() && source_[pos_] == ' ') ++pos_;
  }
  const Keyword* found = findKeyword(word);
  if (found == nullptr) {
    // An unknown word is passed over; after "\*" its whole destination is.
    if (skipIfUnknown_) state_.destination = Destination::Skip;
    skipIfUnknown_ = false;
    return kRichOk;
  }
  return apply(*found, hasParameter, parameter);
}

int RtfReader::run() {
  while (pos_ < source_.size()) {
    const char c = source_[pos_++];
    if (state_.reader == ReaderState::Binary) {
      if (--binaryLeft_ <= 0) state_.reader = ReaderState::Normal;
      continue;
    }
    switch (c) {
      case '{':
        if (depth_ >= kMaxRichGroupDepth) return kRichStackOverflow;
        stack_.push_back(state_);
        ++depth_;
        break;
      case '}':
        if (depth_ <= 0) return kRichStackUnderflow;
        if (state_.destination == Destination::FontTable && fontNumber_ >= 0 &&
            !fontName_.empty()) {
          fontTableCharacter(';');  // an entry that the table didn't close with ";"
        }
        // The page values of the document's own group outlast it.
        if (depth_ == 1) out_.page = state_.page;
        state_ = stack_.back();
        stack_.pop_back();
        --depth_;
        break;
      case '\\':
        if (int result = keyword(); result != kRichOk) return result;
        break;
      case '\r':
      case '\n':
        break;
      default:
        if (state_.reader == ReaderState::Hex) {
          int digit = -1;
          if (c >= '0' && c <= '9') digit = c - '0';
          if (c >= 'a' && c <= 'f') digit = c - 'a' + 10;
          if (c >= 'A' && c <= 'F') digit = c - 'A' + 10;
          if (digit < 0) return kRichInvalidHex;
          hexValue_ = hexValue_ * 16 + digit;
          if (++hexDigits_ == 2) {
            state_.reader = ReaderState::Normal;
            character(static_cast<char>(hexValue_));
          }
        } else {
          character(c);
        }
        break;
    }
  }
  if (depth_ > 0) return kRichUnmatchedBrace;
  return kRichOk;
}

}  // namespace

int parseRichText(std::string_view source, RichText& out) {
  out = RichText();
  const int result = RtfReader(source, out).run();
  if (result != kRichOk) out = RichText();
  return result;
}

int richKeywordCount() {
  return static_cast<int>(kKeywords.size());
}

}  // namespace zv
