#include "ui/requirements_window.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/text_codec.h"

namespace zv::ui {

RequirementsWindow::RequirementsWindow(RequirementsDialog& model, PlaceItem place, QWidget* parent)
    : QDialog(parent), model_(model), place_(std::move(place)) {
  setObjectName("requirementsDialog");
  setWindowTitle(fromSystemText(model_.title()));
  auto* layout = new QVBoxLayout(this);
  rows_ = new QListWidget;
  rows_->setObjectName("requirements");
  rows_->setSelectionMode(QAbstractItemView::NoSelection);
  rows_->setMinimumWidth(320);
  layout->addWidget(rows_, 1);
  note_ = new QLabel;
  note_->setObjectName("note");
  note_->setWordWrap(true);
  layout->addWidget(note_);
  auto* buttons = new QDialogButtonBox;
  QPushButton* ok = buttons->addButton(QDialogButtonBox::Ok);
  ok->setDefault(true);
  satisfy_ = buttons->addButton(tr("&Satisfy"), QDialogButtonBox::ActionRole);
  satisfy_->setObjectName("satisfy");
  buttons->addButton(QDialogButtonBox::Cancel);
  layout->addWidget(buttons);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(satisfy_, &QPushButton::clicked, this, &RequirementsWindow::satisfy);
  fillRows();
}

void RequirementsWindow::fillRows() {
  rows_->clear();
  for (const PrereqRow& row : model_.rows()) {
    auto* entry = new QListWidgetItem(fromSystemText(row.text), rows_);
    if (row.kind == PrereqRow::Kind::Requirement) {
      // A tick that the user can see but not change: the rules decide it.
      entry->setFlags(Qt::ItemIsEnabled);
      entry->setCheckState(row.met ? Qt::Checked : Qt::Unchecked);
    } else {
      entry->setFlags(Qt::ItemIsEnabled);
      entry->setTextAlignment(Qt::AlignCenter);
    }
  }
  std::string note = model_.note();
  note_->setText(fromSystemText(note));
  note_->setVisible(!note.empty());
  satisfy_->setEnabled(!model_.satisfied());
}

void RequirementsWindow::satisfy() {
  model_.satisfy(place_);
  fillRows();
}

PrereqDialogAnswer runRequirementsWindow(RequirementsDialog& model, const PlaceItem& place) {
  RequirementsWindow window(model, place, QApplication::activeWindow());
  return window.exec() == QDialog::Accepted ? PrereqDialogAnswer::Ok : PrereqDialogAnswer::Cancel;
}

}  // namespace zv::ui
