#pragma once
// The Form Setup dialog: a template that asks for margins shows its form's size and takes the
// margins and orientation it prints with.

#include <QDialog>
#include <optional>

#include "print/job/form_setup.h"

class QCheckBox;

namespace zv::ui {

class MeasureEdit;

class FormSetupDialog : public QDialog {
  Q_OBJECT
 public:
  FormSetupDialog(const PrintTemplate& tmpl, const FormMargins& margins, MeasureUnit unit,
                  QWidget* parent = nullptr);
  /// The margins and orientation given.
  const FormMargins& margins() const { return margins_; }

  void accept() override;

 private:
  FormMargins margins_;
  MeasureEdit* left_;
  MeasureEdit* right_;
  MeasureEdit* top_;
  MeasureEdit* bottom_;
  QCheckBox* landscape_;
};

/// Asks for the form's margins when the template wants them and keeps them in the settings;
/// without the question, the template's orientation and no margins. Nullopt when cancelled.
std::optional<FormMargins> formMarginsFor(const PrintTemplate& tmpl, Settings& settings,
                                          MeasureUnit unit, QWidget* parent);

}  // namespace zv::ui
