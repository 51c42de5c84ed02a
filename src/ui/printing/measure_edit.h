#pragma once
// A measure field: a length typed with an optional unit, shown in the unit of the Measure
// preference, stepped by its arrows in the unit the text names.

#include <QAbstractSpinBox>
#include <optional>

#include "print/job/measure_field.h"

namespace zv::ui {

class MeasureEdit : public QAbstractSpinBox {
  Q_OBJECT
 public:
  MeasureEdit(MeasureUnit unit, long maxTwips, QWidget* parent = nullptr);

  /// Shows `twips` in the field's unit.
  void setTwips(long twips);
  /// The length typed, in twips; nullopt after its refusal was shown in a box.
  std::optional<long> twips() const;

  void stepBy(int steps) override;

 protected:
  StepEnabled stepEnabled() const override { return StepUpEnabled | StepDownEnabled; }

 private:
  MeasureUnit unit_;
  long maxTwips_;
};

/// The unit of the Measure preference, the locale's when it is -1.
MeasureUnit preferredMeasureUnit(long measurePreference);

}  // namespace zv::ui
