#include "ui/print/template_pages.h"

#include "core/fileinfo.h"
#include "filter/rich/rtf_reader.h"
#include "ui/print/qt_print_device.h"

namespace zv {

TemplatePages::TemplatePages(PrintTemplate& tmpl, FileInfo& sheet, ProductionSettings production,
                             DrawSettings drawing, FormMargins margins)
    : tmpl_(tmpl),
      sheet_(sheet),
      production_(std::move(production)),
      drawing_(std::move(drawing)),
      margins_(margins) {}

TemplatePages::~TemplatePages() = default;

bool TemplatePages::produce(QPaintDevice& device, QSize paper) {
  device_ = &device;
  paper_ = paper;
  details_.reset();
  QtPrintDevice metrics(device);
  if (output_) {
    if (!redoPages(metrics, tmpl_, &sheet_, production_, *output_)) {
      output_.reset();
      return false;
    }
  } else {
    output_ = producePages(metrics, tmpl_, &sheet_, production_);
    if (!output_) return false;
  }
  RichText story;
  if (!tmpl_.inhibitDetail() && !sheet_.richText.empty() &&
      parseRichText(sheet_.richText, story) == kRichOk && !story.text.empty()) {
    const PaperMargins margins{kDetailMarginTwips, kDetailMarginTwips, kDetailMarginTwips,
                               kDetailMarginTwips};
    details_ = std::make_unique<TextPages>(std::move(story), margins, std::nullopt);
    details_->layOut(device, paper, PaperMargins{});
  }
  return true;
}

int TemplatePages::templatePageCount() const {
  return output_ ? static_cast<int>(output_->pages.size()) : 0;
}

int TemplatePages::detailPageCount() const {
  return details_ ? details_->pageCount() : 0;
}

FormLayout TemplatePages::formLayout() const {
  FormLayout layout;
  if (!device_) return layout;
  const int dpiX = device_->logicalDpiX(), dpiY = device_->logicalDpiY();
  if (tmpl_.printsForms()) {
    layout.formWidth = twipsToDevice(static_cast<int>(tmpl_.formWidth), dpiX);
    layout.formHeight = twipsToDevice(static_cast<int>(tmpl_.formHeight), dpiY);
  }
  layout.paperWidth = paper_.width();
  layout.paperHeight = paper_.height();
  layout.margins = {twipsToDevice(static_cast<int>(margins_.left), dpiX),
                    twipsToDevice(static_cast<int>(margins_.top), dpiY),
                    twipsToDevice(static_cast<int>(margins_.right), dpiX),
                    twipsToDevice(static_cast<int>(margins_.bottom), dpiY)};
  return layout;
}

std::vector<PaperSheet> TemplatePages::plan(const PageSelection& selection) const {
  return planPaper(templatePageCount(), detailPageCount(), selection, formLayout());
}

void TemplatePages::paintSheet(QPainter& painter, const PaperSheet& sheet) const {
  if (!device_ || !output_) return;
  QtPrintDevice canvas(*device_, &painter);
  for (const PlacedPage& page : sheet) {
    if (page.source == PageSource::Detail) {
      if (details_) details_->paintPage(painter, page.index);
      continue;
    }
    if (page.index < 0 || page.index >= templatePageCount()) continue;
    painter.save();
    painter.translate(page.x, page.y);
    for (const TemplateObject* object :
         output_->pages[static_cast<std::size_t>(page.index)].objects)
      drawObject(canvas, canvas, &sheet_, *object, RuleLines::FromPreference, drawing_);
    painter.restore();
  }
}

}  // namespace zv
