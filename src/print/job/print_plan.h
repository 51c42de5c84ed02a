#pragma once
// Which page goes where on which sheet of paper: the page range and copies of a print, the
// template's pages (forms several to a sheet when the template gives a form size) and the detail
// pages after them. Printing, the preview and the PDF all walk the same plan.

#include <vector>

namespace zv {

/// Device units.
struct PaperMargins {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;
};

/// The paper and the form, in device units. A form size of 0 prints one page to a sheet.
struct FormLayout {
  int formWidth = 0;
  int formHeight = 0;
  int paperWidth = 0;
  int paperHeight = 0;
  PaperMargins margins;
  bool printsForms() const { return formWidth > 0 && formHeight > 0; }
};

/// The pages of a print, numbered from 1 over the template's pages and then the detail pages;
/// `last` 0 means to the end.
struct PageSelection {
  int first = 1;
  int last = 0;
  int copies = 1;
};

enum class PageSource { Template, Detail };

/// One page on a sheet of paper: which page (from 0 in its source) and where its corner lies.
struct PlacedPage {
  PageSource source = PageSource::Template;
  int index = 0;
  int x = 0;
  int y = 0;
  friend bool operator==(const PlacedPage&, const PlacedPage&) = default;
};

using PaperSheet = std::vector<PlacedPage>;

/// The sheets of paper of a print. Template pages start at the margins' corner; with forms the
/// next form goes below the last while it fits above the bottom margin, then at the top of the
/// next column while that fits inside the right margin, then on a new sheet. Detail pages fill a
/// sheet each. Each copy repeats the selected pages in order.
std::vector<PaperSheet> planPaper(int templatePages, int detailPages,
                                  const PageSelection& selection, const FormLayout& layout);

}  // namespace zv
