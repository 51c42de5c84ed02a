#include "filter/rich/filter_text.h"

#include "filter/file/format_commands.h"

namespace zv {

namespace {

RichCharacter characterOf(const FilterStyle& style, RichText& out) {
  RichCharacter character;
  character.bold = style.has(FilterStyle::kBold);
  character.italic = style.has(FilterStyle::kItalic);
  character.underline = style.has(FilterStyle::kUnderline);
  character.font = style.face.empty() ? out.defaultFont : out.fontNumber(style.face.str());
  // Twips to half points; a size in lines or none keeps the default.
  character.size = style.size > 0 ? (style.size + 5) / 10 : 24;
  return character;
}

RichParagraphFormat paragraphOf(const FilterStyle& style) {
  RichParagraphFormat format;
  format.leftIndent = style.leftIndent > 0 ? style.leftIndent : 0;
  format.firstIndent = style.firstIndent;
  format.spaceAfter = style.spacing > 0 ? style.spacing : 0;
  for (const FilterTab& tab : style.tabs) {
    if (format.tabs.size() >= kMaxRichTabs || tab.position < 0) continue;
    const auto kind =
        static_cast<RichTabKind>(tab.alignment >= 0 && tab.alignment <= 3 ? tab.alignment : 0);
    format.tabs.push_back(richTab(kind, static_cast<std::uint32_t>(tab.position)));
  }
  return format;
}

}  // namespace

bool parseFilterText(std::string_view source, const FilterDocument* document, RichText& out,
                     bool& rich) {
  out = RichText();
  rich = false;
  FilterStyle style = document != nullptr ? document->style : FilterStyle();
  if (!style.face.empty()) out.defaultFont = out.fontNumber(style.face.str());
  if (document != nullptr) {
    RichPage& page = out.page;
    if (document->marginLeft > 0) page.marginLeft = document->marginLeft;
    if (document->marginRight > 0) page.marginRight = document->marginRight;
    if (document->marginTop > 0) page.marginTop = document->marginTop;
    if (document->marginBottom > 0) page.marginBottom = document->marginBottom;
    page.landscape = document->landscape != 0;
    if (style.columns > 1) page.columns = style.columns;
  }
  std::size_t pos = 0;
  int lineNumber = 0;
  while (pos < source.size()) {
    std::size_t end = source.find('\n', pos);
    const std::size_t next = end == std::string_view::npos ? source.size() : end + 1;
    std::string_view line = source.substr(pos, next - pos);
    pos = next;
    ++lineNumber;
    std::string_view content = line;
    while (!content.empty() && (content.back() == '\n' || content.back() == '\r')) {
      content.remove_suffix(1);
    }
    if (!content.empty() && content.front() == '@') {
      const int command = findFormatCommand(commandWordOf(content));
      if (command != kFormatNone && isStyleCommand(command)) {
        if (applyFormatCommand(nullptr, content, nullptr, style, lineNumber) < 0) {
          out = RichText();
          return false;
        }
        rich = true;
        if (style.columns > 1) out.page.columns = style.columns;
        continue;
      }
    }
    const RichCharacter character = characterOf(style, out);
    const RichParagraphFormat paragraph = paragraphOf(style);
    out.append(content, character, paragraph);
    if (line.size() > content.size() || pos < source.size()) {
      out.append("\r\n", character, paragraph);
    }
  }
  return true;
}

}  // namespace zv
