#pragma once
// Forms: a template page smaller than the paper. After each page the next form goes below it
// while it fits between the margins, then in the next column, then on a new sheet of paper.

namespace zv {

/// Device sizes of a form and of the paper's printable area; a zero form size prints one page to
/// a sheet.
struct FormLayout {
  int formWidth = 0;
  int formHeight = 0;
  int paperWidth = 0;
  int paperHeight = 0;
};

class FormPlacer {
 public:
  explicit FormPlacer(FormLayout layout) : layout_(layout) {}
  /// Where the next page goes on the paper.
  int x() const { return x_; }
  int y() const { return y_; }
  /// Whether the next page begins a new sheet of paper.
  bool startsNewSheet() const { return x_ == 0 && y_ == 0; }
  /// A page was drawn: moves to the place of the next form.
  void pageDone();

 private:
  FormLayout layout_;
  int x_ = 0;
  int y_ = 0;
};

}  // namespace zv
