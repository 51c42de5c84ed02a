#include "filter/rich/rich_writers.h"

#include "core/messages.h"

namespace zv {

namespace {

bool consistent(const RichText& rich) {
  std::size_t last = 0;
  for (const RichRun& run : rich.runs) {
    if (run.start < last || run.start > rich.text.size()) return false;
    last = run.start;
  }
  last = 0;
  for (const RichParagraph& paragraph : rich.paragraphs) {
    if (paragraph.start < last || paragraph.start > rich.text.size()) return false;
    last = paragraph.start;
  }
  return true;
}

class HtmlWriter {
 public:
  explicit HtmlWriter(const RichText& rich) : rich_(rich) { current_.font = rich.defaultFont; }
  std::string run();

 private:
  bool isDefaultFont(const RichCharacter& c) const {
    return c.font == rich_.defaultFont && c.size == 24;
  }
  void openParagraph(std::size_t position);
  void closeParagraph();
  void changeRun(const RichCharacter& next);
  void flag(bool was, bool now, const char* tag) {
    if (was && !now) out_ += std::string("</") + tag + ">";
    if (!was && now) out_ += std::string("<") + tag + ">";
  }

  const RichText& rich_;
  std::string out_;
  RichCharacter current_;
  bool paragraphOpen_ = false;
  int quotes_ = 0;
  std::size_t nextParagraph_ = 0;
};

void HtmlWriter::openParagraph(std::size_t position) {
  // The record in force: the last one that starts here or before (records are in order).
  while (nextParagraph_ < rich_.paragraphs.size() &&
         rich_.paragraphs[nextParagraph_].start <= position) {
    ++nextParagraph_;
  }
  static const RichParagraphFormat kPlain;
  const RichParagraphFormat& format =
      nextParagraph_ == 0 ? kPlain : rich_.paragraphs[nextParagraph_ - 1].format;
  quotes_ = format.leftIndent > 0 ? format.leftIndent / 720 : 0;
  for (int i = 0; i < quotes_; ++i)
    out_ += "<blockquote>";
  switch (format.justification) {
    case kJustifyRight:
      out_ += "<p align=\"right\">";
      break;
    case kJustifyCentre:
      out_ += "<p align=\"center\">";
      break;
    case kJustifyFull:
      out_ += "<p align=\"left\">";
      break;
    default:
      out_ += "<p>";
      break;
  }
  paragraphOpen_ = true;
}

void HtmlWriter::closeParagraph() {
  out_ += "</p>\r\n";
  for (int i = 0; i < quotes_; ++i)
    out_ += "</blockquote>";
  quotes_ = 0;
  paragraphOpen_ = false;
}

void HtmlWriter::changeRun(const RichCharacter& next) {
  flag(current_.bold, next.bold, "b");
  flag(current_.italic, next.italic, "i");
  flag(current_.underline, next.underline, "u");
  const bool fontChanged = current_.font != next.font || current_.size != next.size;
  if (fontChanged && !(isDefaultFont(current_) && isDefaultFont(next))) {
    if (!isDefaultFont(current_)) out_ += "</font>";
    if (!isDefaultFont(next)) {
      out_ += "<font";
      const int size = htmlFontSize(next.size);
      if (size != 3) out_ += strprintf(" size=\"%d\"", size);
      if (next.font != rich_.defaultFont) out_ += " face=\"" + rich_.fontName(next.font) + "\"";
      out_ += ">";
    }
  }
  current_ = next;
}

std::string HtmlWriter::run() {
  const std::string& text = rich_.text;
  std::size_t nextRun = 0;
  bool atParagraphStart = true;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const unsigned char c = static_cast<unsigned char>(text[i]);
    if (c == 0) break;
    if (atParagraphStart) {
      openParagraph(i);
      atParagraphStart = false;
    }
    // The last run that starts here or before (runs of no characters are passed over).
    std::size_t last = nextRun;
    while (last < rich_.runs.size() && rich_.runs[last].start <= i)
      ++last;
    if (last > nextRun) {
      changeRun(rich_.runs[last - 1].character);
      nextRun = last;
    }
    switch (c) {
      case '\r':
        if (i + 1 < text.size() && text[i + 1] == '\n') {
          ++i;
          closeParagraph();
          atParagraphStart = true;
        } else {
          out_ += i + 1 < text.size() ? "<br>\r\n" : "<br>";
        }
        break;
      case '\t':
        out_ += ' ';
        break;
      case '&':
        out_ += "&amp;";
        break;
      case '<':
        out_ += "&lt;";
        break;
      case '>':
        out_ += "&gt;";
        break;
      case 0xBC:
        out_ += "&frac14;";
        break;
      case 0xBD:
        out_ += "&frac12;";
        break;
      case 0xBE:
        out_ += "&frac34;";
        break;
      case 0xD7:
        out_ += "&times;";
        break;
      default:
        out_ += static_cast<char>(c);
    }
  }
  RichCharacter plain;
  plain.font = rich_.defaultFont;
  changeRun(plain);
  if (paragraphOpen_) closeParagraph();
  return std::move(out_);
}

}  // namespace

int htmlFontSize(int halfPoints) {
  if (halfPoints < 17) return 1;
  if (halfPoints < 21) return 2;
  if (halfPoints < 25) return 3;
  if (halfPoints < 29) return 4;
  if (halfPoints < 37) return 5;
  if (halfPoints <= 48) return 6;
  return 7;
}

std::string textOf(const RichText& rich) {
  return rich.text;
}

std::optional<std::string> htmlOf(const RichText& rich) {
  if (!consistent(rich)) {
    showError("Unable to emit HTML");
    return std::nullopt;
  }
  return HtmlWriter(rich).run();
}

}  // namespace zv
