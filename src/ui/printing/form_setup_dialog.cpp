#include "ui/printing/form_setup_dialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "ui/printing/measure_edit.h"
#include "ui/text_codec.h"

namespace zv::ui {

namespace {
/// The largest margin the fields take: 22 inches.
constexpr long kMaxMarginTwips = 22 * 1440;
}  // namespace

FormSetupDialog::FormSetupDialog(const PrintTemplate& tmpl, const FormMargins& margins,
                                 MeasureUnit unit, QWidget* parent)
    : QDialog(parent), margins_(margins) {
  setObjectName("FormSetup");
  setWindowTitle(tr("Form Setup"));
  auto* layout = new QVBoxLayout(this);
  auto* size = new QLabel(fromSystemText(formSizeText(tmpl, unit)), this);
  size->setObjectName("formSize");
  layout->addWidget(size);
  auto* form = new QFormLayout;
  auto field = [&](const char* name, const QString& label, long twips) {
    auto* edit = new MeasureEdit(unit, kMaxMarginTwips, this);
    edit->setObjectName(name);
    edit->setTwips(twips);
    form->addRow(label, edit);
    return edit;
  };
  left_ = field("leftMargin", tr("&Left margin:"), margins.left);
  right_ = field("rightMargin", tr("&Right margin:"), margins.right);
  top_ = field("topMargin", tr("&Top margin:"), margins.top);
  bottom_ = field("bottomMargin", tr("&Bottom margin:"), margins.bottom);
  layout->addLayout(form);
  landscape_ = new QCheckBox(tr("L&andscape"), this);
  landscape_->setObjectName("landscape");
  landscape_->setChecked(margins.landscape);
  layout->addWidget(landscape_);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  layout->addWidget(buttons);
}

void FormSetupDialog::accept() {
  // A refused field keeps the dialog open, with the field to correct.
  FormMargins given;
  const std::pair<MeasureEdit*, long*> fields[] = {
      {left_, &given.left}, {right_, &given.right}, {top_, &given.top}, {bottom_, &given.bottom}};
  for (const auto& [edit, value] : fields) {
    std::optional<long> twips = edit->twips();
    if (!twips) {
      edit->setFocus();
      return;
    }
    *value = *twips;
  }
  given.landscape = landscape_->isChecked();
  margins_ = given;
  QDialog::accept();
}

std::optional<FormMargins> formMarginsFor(const PrintTemplate& tmpl, Settings& settings,
                                          MeasureUnit unit, QWidget* parent) {
  if (!tmpl.promptForMargins) return FormMargins{0, 0, 0, 0, tmpl.landscape()};
  const std::string name = formNameOf(tmpl);
  FormSetupDialog dialog(tmpl, readFormMargins(settings, name, tmpl.landscape()), unit, parent);
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  writeFormMargins(settings, name, dialog.margins());
  return dialog.margins();
}

}  // namespace zv::ui
