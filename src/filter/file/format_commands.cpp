#include "filter/file/format_commands.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

#include "core/fileinfo.h"
#include "core/messages.h"
#include "core/text.h"
#include "filter/file/filter_messages.h"
#include "filter/file/measure.h"
#include "filter/file/translation.h"

namespace zv {

namespace {

// Sorted, so that the command number is the place in the table.
constexpr std::array<std::string_view, kFormatCommandCount> kWords = {
    "bgcolor",   "bold",     "bolditalic",  "clipformat", "columns",   "deftab",     "description",
    "extension", "face",     "firstindent", "font",       "fontinfo",  "gamesystem", "hline",
    "italic",    "keepnext", "landscape",   "leftindent", "margins",   "need",       "parinfo",
    "plain",     "samepage", "sheettype",   "sortexp",    "sortorder", "tabs",       "tabwidth",
    "textcolor", "trans",    "vline",       "wraptab",
};

bool isBlank(char c) {
  return c == ' ' || c == '\t';
}

/// The arguments of a command line, read left to right.
class Arguments {
 public:
  explicit Arguments(std::string_view text) : text_(text) {
    while (!text_.empty() && (text_.back() == '\n' || text_.back() == '\r'))
      text_.remove_suffix(1);
  }

  void skipBlanks() {
    while (pos_ < text_.size() && isBlank(text_[pos_]))
      ++pos_;
  }
  bool atEnd() {
    skipBlanks();
    return pos_ >= text_.size();
  }
  /// The next blank-separated word; empty at the end.
  std::string_view word() {
    skipBlanks();
    std::size_t start = pos_;
    while (pos_ < text_.size() && !isBlank(text_[pos_]))
      ++pos_;
    return text_.substr(start, pos_ - start);
  }
  /// The next word as a decimal integer; nullopt (nothing consumed) when it isn't one.
  std::optional<long> integer() {
    skipBlanks();
    long value = 0;
    const char* first = text_.data() + pos_;
    const char* last = text_.data() + text_.size();
    if (first < last && *first == '+') ++first;
    auto [end, error] = std::from_chars(first, last, value);
    if (error != std::errc()) return std::nullopt;
    pos_ = static_cast<std::size_t>(end - text_.data());
    while (pos_ < text_.size() && !isBlank(text_[pos_]))
      ++pos_;
    return value;
  }
  /// The next word as a hexadecimal number, as "%x" reads it.
  std::optional<unsigned long> hex() {
    skipBlanks();
    const char* first = text_.data() + pos_;
    const char* last = text_.data() + text_.size();
    if (last - first >= 2 && first[0] == '0' && (first[1] == 'x' || first[1] == 'X')) first += 2;
    unsigned long value = 0;
    auto [end, error] = std::from_chars(first, last, value, 16);
    if (error != std::errc()) return std::nullopt;
    pos_ = static_cast<std::size_t>(end - text_.data());
    return value;
  }
  /// The rest of the line without blanks at either end.
  std::string_view rest() {
    skipBlanks();
    std::string_view out = text_.substr(pos_);
    while (!out.empty() && isBlank(out.back()))
      out.remove_suffix(1);
    pos_ = text_.size();
    return out;
  }
  /// The rest of the line exactly as it stands.
  std::string_view raw() const { return text_.substr(pos_); }
  std::size_t position() const { return pos_; }
  void advance(std::size_t count) { pos_ = std::min(text_.size(), pos_ + count); }
  char peek() const { return pos_ < text_.size() ? text_[pos_] : '\0'; }

 private:
  std::string_view text_;
  std::size_t pos_ = 0;
};

std::int16_t toShort(long value) {
  return static_cast<std::int16_t>(std::clamp(value, -32768L, 32767L));
}

/// A command's application: the arguments, where to report, and what it may change.
class Command {
 public:
  Command(const FileInfo* sheet, FilterDocument* document, FilterStyle& style,
          std::string_view arguments, int line)
      : sheet_(sheet), document_(document), style_(style), args_(arguments), line_(line) {}

  int apply(int command);

 private:
  bool fail(std::string_view text) {
    reportFilterError(text, line_);
    return false;
  }
  /// A measure that must be there: "Number missing in measure." otherwise.
  bool requiredMeasure(std::int16_t& out) {
    std::string_view w = args_.word();
    std::optional<std::int16_t> value = parseMeasure(w);
    if (!value) return fail("Number missing in measure.");
    out = *value;
    return true;
  }
  /// A measure that may be missing: false with `ok` set when there is none, `ok` clear after an
  /// error.
  bool optionalMeasure(std::int16_t& out, bool& ok) {
    ok = true;
    if (args_.atEnd()) return false;
    std::string_view w = args_.word();
    std::optional<std::int16_t> value = parseMeasure(w);
    if (!value) {
      ok = fail("Number missing in measure.");
      return false;
    }
    out = *value;
    return true;
  }
  std::uint32_t colour() {
    std::uint32_t red =
        static_cast<std::uint32_t>(std::clamp(args_.integer().value_or(0), 0L, 255L));
    std::uint32_t green =
        static_cast<std::uint32_t>(std::clamp(args_.integer().value_or(0), 0L, 255L));
    std::uint32_t blue =
        static_cast<std::uint32_t>(std::clamp(args_.integer().value_or(0), 0L, 255L));
    return red | (green << 8) | (blue << 16);
  }
  bool font();
  bool fontInfo();

  const FileInfo* sheet_;
  FilterDocument* document_;
  FilterStyle& style_;
  Arguments args_;
  int line_;
};

bool Command::font() {
  args_.skipBlanks();
  const char quote = args_.peek();
  if (quote != '"' && quote != '\'') {
    return fail(strprintf("Unknown quoting character in @font: %c", quote == '\0' ? ' ' : quote));
  }
  args_.advance(1);
  std::string_view raw = args_.raw();
  std::size_t close = raw.find(quote);
  if (close == std::string_view::npos) return fail("Missing end quote in @font");
  std::string face(raw.substr(0, close));
  args_.advance(close + 1);
  std::int16_t size = 0;
  if (!requiredMeasure(size)) return false;
  std::uint8_t flags = 0;
  for (char c : args_.raw()) {
    switch (toLowerChar(static_cast<unsigned char>(c))) {
      case 'b':
        flags |= FilterStyle::kBold;
        break;
      case 'i':
        flags |= FilterStyle::kItalic;
        break;
      case 's':
        flags |= FilterStyle::kStrikeout;
        break;
      case 'u':
        flags |= FilterStyle::kUnderline;
        break;
      case ' ':
      case '\t':
        break;
      default:
        return fail(strprintf("Unknown font style: %c", c));
    }
  }
  style_.face = face;
  style_.size = size;
  style_.flags = flags;
  return true;
}

bool Command::fontInfo() {
  std::int16_t size = 0;
  if (!requiredMeasure(size)) return false;
  style_.size = size;
  if (auto flags = args_.hex()) {
    style_.flags = static_cast<std::uint8_t>(*flags);
    if (auto charset = args_.hex()) {
      style_.charset = static_cast<std::uint8_t>(*charset);
      if (auto pitch = args_.hex()) style_.pitch = static_cast<std::uint8_t>(*pitch);
    }
  }
  return true;
}

int Command::apply(int command) {
  // Commands that belong to the document do nothing without one.
  if (document_ == nullptr && !isStyleCommand(command)) return command;
  bool ok = true;
  switch (command) {
    case kFormatBgColor:
      if (args_.atEnd()) {
        style_.backgroundUsed = false;
      } else {
        style_.backgroundColor = colour();
        style_.backgroundUsed = true;
      }
      break;
    case kFormatBold:
      style_.flags |= FilterStyle::kBold;
      break;
    case kFormatBoldItalic:
      style_.flags |= FilterStyle::kBold | FilterStyle::kItalic;
      break;
    case kFormatClipFormat:
      document_->clipFormat = args_.rest();
      break;
    case kFormatColumns:
      if (auto count = args_.integer()) {
        style_.columns = toShort(*count);
        if (auto gap = args_.integer()) style_.columnGap = toShort(*gap);
      }
      break;
    case kFormatDefTab:
      ok = requiredMeasure(style_.defaultTab);
      break;
    case kFormatDescription:
      document_->description = std::string(args_.rest());
      break;
    case kFormatExtension:
      document_->extension = args_.word();
      break;
    case kFormatFace:
      style_.face = args_.rest();
      break;
    case kFormatFirstIndent:
      ok = requiredMeasure(style_.firstIndent);
      break;
    case kFormatFont:
      ok = font();
      break;
    case kFormatFontInfo:
      ok = fontInfo();
      break;
    case kFormatGameSystem: {
      std::string_view name = args_.rest();
      document_->gameSystem = name;
      if (sheet_ != nullptr &&
          !equalsIgnoringCase(document_->gameSystem.str(), sheet_->gameSystemName.str())) {
        ok = fail(strprintf(
            "This filter uses the %s game system. The character sheet's game system is %s.",
            document_->gameSystem.str(), sheet_->gameSystemName.str()));
      }
      break;
    }
    case kFormatHLine:
      style_.ruleWidth = 0;
      style_.ruleStart = 0;
      style_.ruleEnd = 0;
      if (auto width = args_.integer()) {
        style_.ruleWidth = toShort(*width);
        if (optionalMeasure(style_.ruleStart, ok) && ok) optionalMeasure(style_.ruleEnd, ok);
      }
      break;
    case kFormatItalic:
      style_.flags |= FilterStyle::kItalic;
      break;
    case kFormatKeepNext:
      break;
    case kFormatLandscape:
      document_->landscape = 1;
      break;
    case kFormatLeftIndent:
      ok = requiredMeasure(style_.leftIndent);
      break;
    case kFormatMargins: {
      std::int16_t* margins[] = {&document_->marginLeft, &document_->marginTop,
                                 &document_->marginRight, &document_->marginBottom};
      for (std::int16_t* margin : margins) {
        if (!optionalMeasure(*margin, ok)) break;
      }
      break;
    }
    case kFormatNeed:
      ok = requiredMeasure(style_.needed);
      break;
    case kFormatParInfo:
      ok = requiredMeasure(style_.firstIndent);
      if (ok) {
        if (auto spacing = args_.integer()) style_.spacing = toShort(*spacing);
      }
      break;
    case kFormatPlain:
      style_.flags = 0;
      break;
    case kFormatSamePage:
      document_->samePage = static_cast<std::int32_t>(args_.integer().value_or(0));
      break;
    case kFormatSheetType: {
      document_->sheetType = args_.word();
      if (sheet_ != nullptr &&
          !equalsIgnoringCase(document_->sheetType.str(), sheet_->sheetType.str())) {
        ok = fail(strprintf("This filter is of type %s. The character sheet's type is %s.",
                            document_->sheetType.str(), sheet_->sheetType.str()));
      }
      break;
    }
    case kFormatSortExp:
      document_->sortExpression = std::string(args_.rest());
      break;
    case kFormatSortOrder:
      document_->sortOrder = static_cast<std::int32_t>(args_.integer().value_or(0));
      break;
    case kFormatTabs: {
      std::vector<FilterTab> tabs;
      while (auto alignment = args_.integer()) {
        FilterTab tab;
        tab.alignment = toShort(*alignment);
        if (!optionalMeasure(tab.position, ok) || !ok) break;
        tabs.push_back(tab);
      }
      if (ok) style_.tabs = std::move(tabs);
      break;
    }
    case kFormatTabWidth:
      ok = requiredMeasure(document_->tabWidth);
      break;
    case kFormatTextColor:
      style_.textColor = colour();
      break;
    case kFormatTrans: {
      std::string_view raw = args_.raw();
      if (!raw.empty() && isBlank(raw.front())) raw.remove_prefix(1);
      if (auto entry = parseTranslation(raw)) {
        document_->translations.insert(document_->translations.begin(), std::move(*entry));
      }
      break;
    }
    case kFormatVLine: {
      std::vector<FilterVerticalLine> lines;
      FilterVerticalLine line;
      while (optionalMeasure(line.from, ok) && ok) {
        if (!optionalMeasure(line.to, ok) || !ok) break;
        lines.push_back(line);
      }
      if (ok) style_.verticalLines = std::move(lines);
      break;
    }
    case kFormatWrapTab:
      style_.wrapTab = toShort(args_.integer().value_or(0));
      break;
    default:
      ok = fail(strprintf("Unknown formatting command: %s", formatCommandWord(command)));
      break;
  }
  return ok ? command : -1;
}

}  // namespace

int findFormatCommand(std::string_view word) {
  auto it = std::lower_bound(kWords.begin(), kWords.end(), word,
                             [](std::string_view entry, std::string_view key) {
                               return compareIgnoringCase(entry, key) < 0;
                             });
  if (it == kWords.end() || !equalsIgnoringCase(*it, word)) return kFormatNone;
  return static_cast<int>(it - kWords.begin()) + 1;
}

std::string_view formatCommandWord(int command) {
  if (command < 1 || command > kFormatCommandCount) return {};
  return kWords[static_cast<std::size_t>(command - 1)];
}

bool isStyleCommand(int command) {
  switch (command) {
    case kFormatBgColor:
    case kFormatBold:
    case kFormatBoldItalic:
    case kFormatColumns:
    case kFormatDefTab:
    case kFormatFace:
    case kFormatFirstIndent:
    case kFormatFont:
    case kFormatFontInfo:
    case kFormatHLine:
    case kFormatItalic:
    case kFormatKeepNext:
    case kFormatLeftIndent:
    case kFormatNeed:
    case kFormatParInfo:
    case kFormatPlain:
    case kFormatTabs:
    case kFormatTextColor:
    case kFormatVLine:
    case kFormatWrapTab:
      return true;
    default:
      return false;
  }
}

std::string_view commandWordOf(std::string_view line) {
  if (line.empty() || line.front() != '@') return {};
  std::size_t end = 1;
  while (end < line.size() && line[end] != ' ' && line[end] != '\t' && line[end] != '\r' &&
         line[end] != '\n') {
    ++end;
  }
  return line.substr(1, end - 1);
}

int applyFormatCommand(const FileInfo* sheet, std::string_view line, FilterDocument* document,
                       FilterStyle& style, int lineNumber) {
  std::string_view word = commandWordOf(line);
  const int command = findFormatCommand(word);
  if (command == kFormatNone) return kFormatNone;
  Command action(sheet, document, style, line.substr(1 + word.size()), lineNumber);
  return action.apply(command);
}

}  // namespace zv
