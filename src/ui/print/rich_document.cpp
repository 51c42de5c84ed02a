#include "ui/print/rich_document.h"

#include <QAbstractTextDocumentLayout>
#include <QPaintDevice>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextFrame>
#include <algorithm>

#include "core/codepage.h"

namespace zv {

namespace {

QString qtext(std::string_view text) {
  return QString::fromStdString(windows1252ToUtf8(text));
}

QTextCharFormat charFormatOf(const RichText& rich, const RichCharacter& c) {
  QTextCharFormat format;
  std::string face = rich.fontName(c.font);
  if (face.empty()) face = rich.fontName(rich.defaultFont);
  if (face.empty()) face = "Times New Roman";
  format.setFontFamilies(QStringList{qtext(face)});
  format.setFontPointSize(c.size > 0 ? c.size / 2.0 : 12.0);
  format.setFontWeight(c.bold ? QFont::Bold : QFont::Normal);
  format.setFontItalic(c.italic);
  format.setFontUnderline(c.underline);
  return format;
}

QTextBlockFormat blockFormatOf(const RichParagraphFormat& p, double unitsPerTwip) {
  QTextBlockFormat format;
  auto units = [&](int twips) { return twips * unitsPerTwip; };
  format.setLeftMargin(units(p.leftIndent));
  format.setRightMargin(units(p.rightIndent));
  format.setTextIndent(units(p.firstIndent));
  format.setTopMargin(units(p.spaceBefore));
  format.setBottomMargin(units(p.spaceAfter));
  switch (p.justification) {
    case kJustifyRight:
      format.setAlignment(Qt::AlignRight);
      break;
    case kJustifyCentre:
      format.setAlignment(Qt::AlignHCenter);
      break;
    case kJustifyFull:
      format.setAlignment(Qt::AlignJustify);
      break;
    default:
      format.setAlignment(Qt::AlignLeft);
      break;
  }
  QList<QTextOption::Tab> tabs;
  for (std::uint32_t tab : p.tabs) {
    QTextOption::Tab stop;
    stop.position = units(static_cast<int>(tab & 0xFFFFFF));
    switch (tab >> 24) {
      case kTabCentre:
        stop.type = QTextOption::CenterTab;
        break;
      case kTabRight:
        stop.type = QTextOption::RightTab;
        break;
      case kTabDecimal:
        stop.type = QTextOption::DelimiterTab;
        stop.delimiter = QLatin1Char('.');
        break;
      default:
        stop.type = QTextOption::LeftTab;
        break;
    }
    tabs.push_back(stop);
  }
  format.setTabPositions(tabs);
  if (p.keep) format.setNonBreakableLines(true);
  return format;
}

}  // namespace

std::unique_ptr<QTextDocument> textDocumentOf(const RichText& rich, QPaintDevice& device) {
  auto document = std::make_unique<QTextDocument>();
  document->documentLayout()->setPaintDevice(&device);
  document->setDocumentMargin(0);
  document->setUndoRedoEnabled(false);
  // The layout takes indents, spacing and tab stops in units of 96 to the inch and scales them
  // to the device itself.
  const double unitsPerTwip = kLayoutUnitsPerInch / 1440.0;
  QTextCursor cursor(document.get());
  const std::string& text = rich.text;
  std::size_t start = 0;
  bool firstBlock = true;
  while (start <= text.size()) {
    std::size_t end = text.find_first_of("\r\n", start);
    if (end == std::string::npos) end = text.size();
    QTextBlockFormat block = blockFormatOf(rich.paragraphAt(start), unitsPerTwip);
    if (firstBlock)
      cursor.setBlockFormat(block);
    else
      cursor.insertBlock(block);
    firstBlock = false;
    // The paragraph's characters, a piece for each run.
    std::size_t at = start;
    while (at < end) {
      auto next = std::upper_bound(
          rich.runs.begin(), rich.runs.end(), at,
          [](std::size_t position, const RichRun& run) { return position < run.start; });
      std::size_t pieceEnd = next == rich.runs.end() ? end : std::min(end, next->start);
      cursor.insertText(qtext(std::string_view(text).substr(at, pieceEnd - at)),
                        charFormatOf(rich, rich.characterAt(at)));
      at = pieceEnd;
    }
    if (end >= text.size()) break;
    // CR LF, a lone CR or a lone LF ends the paragraph.
    start = end + (text[end] == '\r' && end + 1 < text.size() && text[end + 1] == '\n' ? 2 : 1);
    if (start >= text.size()) break;
  }
  return document;
}

RichText plainRichText(std::string_view text, std::string_view face, int pointSize) {
  RichText rich;
  RichCharacter character;
  character.font = rich.fontNumber(face);
  character.size = pointSize * 2;
  rich.defaultFont = character.font;
  rich.append(text, character, RichParagraphFormat{});
  return rich;
}

}  // namespace zv
