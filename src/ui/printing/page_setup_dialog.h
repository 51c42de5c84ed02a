#pragma once
// Page Setup of a filter: the margins, the default font, the tab width and the orientation its
// printed text takes, kept in the filter file itself.

#include <QDialog>

#include "filter/file/filter_document.h"
#include "print/job/measure_field.h"

class QCheckBox;
class QFontComboBox;
class QSpinBox;

namespace zv::ui {

class MeasureEdit;

class PageSetupDialog : public QDialog {
  Q_OBJECT
 public:
  PageSetupDialog(const FilterDocument& filter, const QString& filterName, MeasureUnit unit,
                  QWidget* parent = nullptr);
  /// The filter with the values given.
  const FilterDocument& filter() const { return filter_; }
  void accept() override;

 private:
  FilterDocument filter_;
  MeasureEdit* left_;
  MeasureEdit* right_;
  MeasureEdit* top_;
  MeasureEdit* bottom_;
  MeasureEdit* tabWidth_;
  QFontComboBox* face_;
  QSpinBox* size_;
  QCheckBox* landscape_;
};

}  // namespace zv::ui
