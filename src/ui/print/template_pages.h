#pragma once
// The pages of a sheet printed through a template, made for one paged device: the template's
// output pages measured on it, forms several to a sheet of paper, and the sheet's detail text
// after them unless the template inhibits it.

#include <memory>

#include "core/record_types.h"
#include "print/job/form_setup.h"
#include "print/produce/draw_object.h"
#include "print/produce/page_production.h"
#include "ui/print/paged_document.h"
#include "ui/print/text_pages.h"

namespace zv {

/// The margins of a sheet's detail pages, twips.
inline constexpr int kDetailMarginTwips = 1080;

class TemplatePages : public PagedDocument {
 public:
  /// The template and sheet outlive the pages; `margins` places the template's pages on the
  /// paper (forms between them).
  TemplatePages(PrintTemplate& tmpl, FileInfo& sheet, ProductionSettings production,
                DrawSettings drawing, FormMargins margins);
  ~TemplatePages() override;

  /// Produces (again) the pages measured on `device`, whose paper is `paper` device units, and
  /// lays the detail text out on it. False after the failure was shown.
  bool produce(QPaintDevice& device, QSize paper);

  int templatePageCount() const;
  int detailPageCount() const;
  int pageCount() const override { return templatePageCount() + detailPageCount(); }
  std::vector<PaperSheet> plan(const PageSelection& selection) const override;
  QSize paperSize() const override { return paper_; }
  void paintSheet(QPainter& painter, const PaperSheet& sheet) const override;

  /// The device the pages were measured on; null before produce.
  QPaintDevice* measuredOn() const { return device_; }
  const OutputTemplate* output() const { return output_.get(); }
  const PrintTemplate& printTemplate() const { return tmpl_; }
  const FileInfo& sheet() const { return sheet_; }

 private:
  FormLayout formLayout() const;

  PrintTemplate& tmpl_;
  FileInfo& sheet_;
  ProductionSettings production_;
  DrawSettings drawing_;
  FormMargins margins_;
  QPaintDevice* device_ = nullptr;
  QSize paper_;
  std::unique_ptr<OutputTemplate> output_;
  std::unique_ptr<TextPages> details_;
};

}  // namespace zv
