#include "ui/printing/measure_edit.h"

#include <QLineEdit>
#include <QLocale>

#include "ui/text_codec.h"

namespace zv::ui {

MeasureEdit::MeasureEdit(MeasureUnit unit, long maxTwips, QWidget* parent)
    : QAbstractSpinBox(parent), unit_(unit), maxTwips_(maxTwips) {
  setAccelerated(true);
  setKeyboardTracking(false);
}

void MeasureEdit::setTwips(long twips) {
  lineEdit()->setText(fromSystemText(formatMeasure(twips, unit_)));
}

std::optional<long> MeasureEdit::twips() const {
  return measureFieldValue(toSystemText(lineEdit()->text()), unit_);
}

void MeasureEdit::stepBy(int steps) {
  lineEdit()->setText(
      fromSystemText(spinMeasure(toSystemText(lineEdit()->text()), steps, 0, maxTwips_, unit_)));
}

MeasureUnit preferredMeasureUnit(long measurePreference) {
  return measureUnitOf(measurePreference,
                       QLocale::system().measurementSystem() == QLocale::MetricSystem);
}

}  // namespace zv::ui
