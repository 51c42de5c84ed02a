#include "print/job/print_plan.h"

#include <algorithm>

namespace zv {

namespace {

/// Places forms on sheets of paper one after another.
class FormPlacer {
 public:
  explicit FormPlacer(const FormLayout& layout) : layout_(layout) { restart(); }

  /// Where the next template page goes; a new sheet is started when the last one is full.
  void place(std::vector<PaperSheet>& sheets, int index) {
    if (!open_) {
      sheets.emplace_back();
      open_ = true;
    }
    sheets.back().push_back({PageSource::Template, index, x_, y_});
    if (!layout_.printsForms()) {
      close();
      return;
    }
    y_ += layout_.formHeight;
    if (y_ + layout_.formHeight <= layout_.paperHeight - layout_.margins.bottom) return;
    y_ = layout_.margins.top;
    x_ += layout_.formWidth;
    if (x_ + layout_.formWidth <= layout_.paperWidth - layout_.margins.right) return;
    close();
  }
  /// The sheet in hand is finished (a detail page follows).
  void close() {
    open_ = false;
    restart();
  }

 private:
  void restart() {
    x_ = layout_.margins.left;
    y_ = layout_.margins.top;
  }
  const FormLayout& layout_;
  int x_ = 0;
  int y_ = 0;
  bool open_ = false;
};

}  // namespace

std::vector<PaperSheet> planPaper(int templatePages, int detailPages,
                                  const PageSelection& selection, const FormLayout& layout) {
  std::vector<PaperSheet> sheets;
  const int total = std::max(0, templatePages) + std::max(0, detailPages);
  const int first = std::max(1, selection.first);
  const int last = selection.last <= 0 ? total : std::min(total, selection.last);
  FormPlacer forms(layout);
  for (int copy = 0; copy < std::max(1, selection.copies); ++copy) {
    for (int page = first; page <= last; ++page) {
      if (page <= templatePages) {
        forms.place(sheets, page - 1);
      } else {
        forms.close();
        sheets.push_back({{PageSource::Detail, page - templatePages - 1, 0, 0}});
      }
    }
  }
  return sheets;
}

}  // namespace zv
