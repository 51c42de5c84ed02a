#include "filter/rich/rich_writers.h"

#include "core/strfmt.h"

namespace zv {

namespace {

/// A font name as RTF text: braces and backslashes escaped, bytes above 127 as \'hh, and ";"
/// (which would end the entry) left out.
std::string escapedFontName(std::string_view name) {
  std::string out;
  for (char c : name) {
    const unsigned char u = static_cast<unsigned char>(c);
    if (c == '\\' || c == '{' || c == '}') {
      out += '\\';
      out += c;
    } else if (u > 127) {
      out += strprintf("\\'%02X", unsigned{u});
    } else if (c != ';' && u >= 32) {
      out += c;
    }
  }
  return out;
}

class RtfWriter {
 public:
  explicit RtfWriter(const RichText& rich) : rich_(rich) {}
  std::string run();

 private:
  /// A control word; a plain character written next needs a blank before it.
  void word(const std::string& text) {
    out_ += text;
    afterWord_ = true;
  }
  void plain(std::string_view text) {
    if (afterWord_) out_ += ' ';
    out_ += text;
    afterWord_ = false;
  }
  void paragraph(const RichParagraphFormat& format);
  void character(const RichCharacter& next);

  const RichText& rich_;
  std::string out_;
  bool afterWord_ = false;
  RichCharacter written_;
  RichParagraphFormat writtenParagraph_;
  bool paragraphWritten_ = true;  // the default format counts as written
};

void RtfWriter::paragraph(const RichParagraphFormat& format) {
  if (paragraphWritten_ && format == writtenParagraph_) return;
  word("\\pard");
  if (format.justification == kJustifyRight) word("\\qr");
  if (format.justification == kJustifyCentre) word("\\qc");
  if (format.justification == kJustifyFull) word("\\qj");
  if (format.firstIndent != 0) word(strprintf("\\fi%d", format.firstIndent));
  if (format.leftIndent != 0) word(strprintf("\\li%d", format.leftIndent));
  if (format.rightIndent != 0) word(strprintf("\\ri%d", format.rightIndent));
  if (format.keep) word("\\keep");
  if (format.spaceAfter != 0) word(strprintf("\\sa%d", format.spaceAfter));
  if (format.spaceBefore != 0) word(strprintf("\\sb%d", format.spaceBefore));
  for (std::uint32_t tab : format.tabs) {
    switch (tab >> 24) {
      case kTabCentre:
        word("\\tqc");
        break;
      case kTabRight:
        word("\\tqr");
        break;
      case kTabDecimal:
        word("\\tqdec");
        break;
      default:
        break;
    }
    word(strprintf("\\tx%u", tab & 0xFFFFFF));
  }
  writtenParagraph_ = format;
  paragraphWritten_ = true;
}

void RtfWriter::character(const RichCharacter& next) {
  if (next.font != written_.font) word(strprintf("\\f%d", next.font));
  if (next.size != written_.size) word(strprintf("\\fs%d", next.size));
  if (next.bold != written_.bold) word(next.bold ? "\\b" : "\\b0");
  if (next.italic != written_.italic) word(next.italic ? "\\i" : "\\i0");
  if (next.underline != written_.underline) word(next.underline ? "\\ul" : "\\ulnone");
  written_ = next;
}

std::string RtfWriter::run() {
  out_ = "{\\rtf\\ansi\\ansicpg1252";
  if (!rich_.fonts.empty()) {
    out_ += strprintf("\\deff%d\r\n", rich_.fonts.front().number);
    out_ += "{\\fonttbl\r\n";
    for (const RichFont& font : rich_.fonts) {
      out_ += strprintf("{\\f%d\\fnil\\fcharset0 %s;}", font.number, escapedFontName(font.name));
    }
    out_ += "}\r\n";
  }
  word("\\plain");
  written_ = RichCharacter();
  written_.font = rich_.fonts.empty() ? rich_.defaultFont : rich_.fonts.front().number;
  const std::string& text = rich_.text;
  std::size_t nextParagraph = 0;
  std::size_t nextRun = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    std::size_t last = nextParagraph;
    while (last < rich_.paragraphs.size() && rich_.paragraphs[last].start <= i)
      ++last;
    if (last > nextParagraph) {
      paragraph(rich_.paragraphs[last - 1].format);
      nextParagraph = last;
    }
    last = nextRun;
    while (last < rich_.runs.size() && rich_.runs[last].start <= i)
      ++last;
    if (last > nextRun) {
      character(rich_.runs[last - 1].character);
      nextRun = last;
    }
    const unsigned char c = static_cast<unsigned char>(text[i]);
    if (c == '\r') {
      if (i + 1 < text.size() && text[i + 1] == '\n') {
        ++i;
        out_ += "\\par\r\n";
      } else {
        out_ += "\\line\r\n";
      }
      afterWord_ = false;
    } else if (c == '\t') {
      word("\\tab");
    } else if (c == '\\' || c == '{' || c == '}') {
      out_ += '\\';
      out_ += static_cast<char>(c);
      afterWord_ = false;
    } else if (c > 127) {
      out_ += strprintf("\\'%02X", unsigned{c});
      afterWord_ = false;
    } else {
      plain(std::string_view(&text[i], 1));
    }
  }
  out_ += "\r\n}";
  return std::move(out_);
}

}  // namespace

std::string rtfOf(const RichText& rich) {
  return RtfWriter(rich).run();
}

}  // namespace zv
