#pragma once
// Text printed in pages: a filter's output, a data sheet's print, a sheet's detail text. The
// text is laid out on the page of the device measured on, less its printable offsets and the
// text's own margins; a footer can name the sheet, the date and the page.

#include <QTextDocument>
#include <memory>
#include <optional>
#include <string>

#include "filter/rich/rich_text.h"
#include "ui/print/paged_document.h"

namespace zv {

/// What the footer of each page says: "%s: printed %s, Page %d", or "%s: Page %d" without a
/// date; in bold Arial of 6 points at the right margin, 360 twips below the bottom margin.
struct TextFooter {
  std::string sheetName;
  std::optional<std::string> date;
};

class TextPages : public PagedDocument {
 public:
  /// `margins` in twips.
  TextPages(RichText rich, PaperMargins margins, std::optional<TextFooter> footer);
  ~TextPages() override;

  /// The distance between default tab stops, twips.
  void setDefaultTabWidth(int twips) { defaultTabTwips_ = twips; }
  /// Prints `html` (Windows-1252 text) as a web page instead of the rich text.
  void setHtml(std::string html) { html_ = std::move(html); }

  /// Lays the text out on `device`, whose paper is `paper` and whose printable area begins
  /// `printable` (all device units) inside the paper's edges.
  void layOut(QPaintDevice& device, QSize paper, PaperMargins printable);

  int pageCount() const override;
  std::vector<PaperSheet> plan(const PageSelection& selection) const override;
  QSize paperSize() const override { return paper_; }
  void paintSheet(QPainter& painter, const PaperSheet& sheet) const override;
  /// Draws page `index` (from 0) with its footer.
  void paintPage(QPainter& painter, int index) const;

  /// The text area on the paper, device units.
  QRect textArea() const { return area_; }
  const QTextDocument* document() const { return document_.get(); }

 private:
  RichText rich_;
  PaperMargins margins_;
  std::optional<TextFooter> footer_;
  int defaultTabTwips_ = 0;
  std::optional<std::string> html_;
  std::unique_ptr<QTextDocument> document_;
  QPaintDevice* device_ = nullptr;
  QSize paper_;
  QRect area_;
};

}  // namespace zv
