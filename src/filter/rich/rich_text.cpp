#include "filter/rich/rich_text.h"

#include "core/text.h"

namespace zv {

std::string RichText::fontName(int number) const {
  for (const RichFont& font : fonts) {
    if (font.number == number) return font.name;
  }
  return {};
}

RichCharacter RichText::characterAt(std::size_t position) const {
  RichCharacter found;
  found.font = defaultFont;
  for (const RichRun& run : runs) {
    if (run.start > position) break;
    found = run.character;
  }
  return found;
}

RichParagraphFormat RichText::paragraphAt(std::size_t position) const {
  RichParagraphFormat found;
  for (const RichParagraph& paragraph : paragraphs) {
    if (paragraph.start > position) break;
    found = paragraph.format;
  }
  return found;
}

void RichText::append(std::string_view characters, const RichCharacter& character,
                      const RichParagraphFormat& paragraph) {
  if (characters.empty()) return;
  const std::size_t at = text.size();
  if (runs.empty() || !(runs.back().character == character)) {
    if (!runs.empty() && runs.back().start == at) {
      runs.back().character = character;
      if (runs.size() >= 2 && runs[runs.size() - 2].character == character) runs.pop_back();
    } else {
      runs.push_back({at, character});
    }
  }
  if (paragraphs.empty() || !(paragraphs.back().format == paragraph)) {
    if (!paragraphs.empty() && paragraphs.back().start == at) {
      paragraphs.back().format = paragraph;
      if (paragraphs.size() >= 2 && paragraphs[paragraphs.size() - 2].format == paragraph) {
        paragraphs.pop_back();
      }
    } else {
      paragraphs.push_back({at, paragraph});
    }
  }
  text.append(characters);
}

int RichText::fontNumber(std::string_view name) {
  for (const RichFont& font : fonts) {
    if (equalsIgnoringCase(font.name, name)) return font.number;
  }
  const int number = fonts.empty() ? 0 : fonts.back().number + 1;
  fonts.push_back({number, std::string(name)});
  return number;
}

}  // namespace zv
