#include "ui/printing/page_setup_dialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFontComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QSpinBox>
#include <QVBoxLayout>

#include "ui/printing/measure_edit.h"
#include "ui/text_codec.h"

namespace zv::ui {

namespace {
constexpr long kMaxLengthTwips = 22 * 1440;
}  // namespace

PageSetupDialog::PageSetupDialog(const FilterDocument& filter, const QString& filterName,
                                 MeasureUnit unit, QWidget* parent)
    : QDialog(parent), filter_(filter) {
  setObjectName("PageSetup");
  setWindowTitle(tr("Page Setup"));
  auto* layout = new QVBoxLayout(this);
  auto* name = new QLabel(tr("Printed text of the filter %1").arg(filterName), this);
  name->setObjectName("filterName");
  layout->addWidget(name);
  auto* form = new QFormLayout;
  auto field = [&](const char* objectName, const QString& label, long twips) {
    auto* edit = new MeasureEdit(unit, kMaxLengthTwips, this);
    edit->setObjectName(objectName);
    edit->setTwips(twips);
    form->addRow(label, edit);
    return edit;
  };
  left_ = field("leftMargin", tr("&Left margin:"), filter.marginLeft);
  right_ = field("rightMargin", tr("&Right margin:"), filter.marginRight);
  top_ = field("topMargin", tr("&Top margin:"), filter.marginTop);
  bottom_ = field("bottomMargin", tr("&Bottom margin:"), filter.marginBottom);
  face_ = new QFontComboBox(this);
  face_->setObjectName("face");
  if (!filter.style.face.empty())
    face_->setCurrentFont(QFont(fromSystemText(filter.style.face.str())));
  form->addRow(tr("&Font:"), face_);
  size_ = new QSpinBox(this);
  size_->setObjectName("size");
  size_->setRange(4, 144);
  size_->setSuffix(tr(" pt"));
  size_->setValue(filter.style.size > 0 ? (filter.style.size + 10) / 20 : 12);
  form->addRow(tr("&Size:"), size_);
  tabWidth_ = field("tabWidth", tr("T&ab width:"), filter.tabWidth > 0 ? filter.tabWidth : 720);
  layout->addLayout(form);
  landscape_ = new QCheckBox(tr("L&andscape"), this);
  landscape_->setObjectName("landscape");
  landscape_->setChecked(filter.landscape != 0);
  layout->addWidget(landscape_);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  layout->addWidget(buttons);
}

void PageSetupDialog::accept() {
  FilterDocument given = filter_;
  const std::pair<MeasureEdit*, std::int16_t*> fields[] = {{left_, &given.marginLeft},
                                                           {right_, &given.marginRight},
                                                           {top_, &given.marginTop},
                                                           {bottom_, &given.marginBottom},
                                                           {tabWidth_, &given.tabWidth}};
  for (const auto& [edit, value] : fields) {
    std::optional<long> twips = edit->twips();
    if (!twips) {
      edit->setFocus();
      return;
    }
    *value = static_cast<std::int16_t>(std::clamp(*twips, 0L, kMaxLengthTwips));
  }
  given.style.face = toSystemText(face_->currentFont().family());
  given.style.size = static_cast<std::int16_t>(size_->value() * 20);
  given.landscape = landscape_->isChecked() ? 1 : 0;
  filter_ = std::move(given);
  QDialog::accept();
}

}  // namespace zv::ui
