#pragma once
// Print Preview: one sheet of paper at a time, drawn from the same pages that print, scaled to
// the window with the paper's proportions and a shadow at its edge; "%d of %d" tells where it
// is. Next Page, Previous Page, Print and Close.

#include <QDialog>
#include <QImage>
#include <vector>

#include "ui/print/paged_document.h"

class QLabel;
class QPushButton;

namespace zv::ui {

/// The page shown by the preview (the control `printPreviewDisplay`).
class PreviewDisplay : public QWidget {
  Q_OBJECT
 public:
  explicit PreviewDisplay(const PagedDocument& document, QWidget* parent = nullptr);
  void showSheet(const PaperSheet& sheet);
  /// The paper's place in the widget.
  QRect paperRect() const;
  /// The sheet as drawn at the present size.
  const QImage& image() const { return image_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void render();
  const PagedDocument& document_;
  PaperSheet sheet_;
  QImage image_;
};

class PrintPreviewDialog : public QDialog {
  Q_OBJECT
 public:
  /// The result when the user asked to print.
  static constexpr int kPrint = 2;

  /// `heading` says what is previewed ("This print template is previewing the character sheet
  /// %s.").
  PrintPreviewDialog(const PagedDocument& document, const QString& heading,
                     QWidget* parent = nullptr);

  /// The sheet shown, from 0.
  int currentSheet() const { return current_; }
  int sheetCount() const { return static_cast<int>(sheets_.size()); }
  void showSheet(int index);
  PreviewDisplay* display() const { return display_; }

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  const PagedDocument& document_;
  std::vector<PaperSheet> sheets_;
  int current_ = 0;
  PreviewDisplay* display_;
  QLabel* status_;
  QPushButton* next_;
  QPushButton* previous_;
};

}  // namespace zv::ui
