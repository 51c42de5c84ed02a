#include "ui/load_data_sheet_window.h"

#include <QApplication>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <algorithm>

#include "core/messages.h"
#include "ui/text_codec.h"

namespace zv::ui {

namespace {

/// Fills a list with `names`, selecting `row` (kept within the list), or nothing when empty.
void fill(QListWidget& list, const std::vector<std::string>& names, int row) {
  list.clear();
  for (const std::string& name : names)
    list.addItem(fromNativePath(name));
  if (list.count() > 0) list.setCurrentRow(std::clamp(row, 0, list.count() - 1));
}

QPushButton* makeButton(const QString& text, const char* name, QWidget* parent) {
  auto* button = new QPushButton(text, parent);
  button->setObjectName(name);
  button->setAutoDefault(false);
  return button;
}

}  // namespace

LoadDataSheetWindow::LoadDataSheetWindow(Settings& settings, QWidget* parent)
    : QDialog(parent), model_(settings) {
  setObjectName("LoadDataSheetDlg");
  setWindowTitle(tr("Load Data Sheet"));
  auto* grid = new QGridLayout(this);

  available_ = new QListWidget(this);
  available_->setObjectName("available");
  loaded_ = new QListWidget(this);
  loaded_->setObjectName("loaded");
  defaults_ = new QListWidget(this);
  defaults_->setObjectName("defaults");
  grid->addWidget(new QLabel(tr("&Available:"), this), 0, 0);
  grid->addWidget(new QLabel(tr("L&oaded:"), this), 0, 1);
  grid->addWidget(new QLabel(tr("&Defaults:"), this), 0, 2);
  grid->addWidget(available_, 1, 0);
  grid->addWidget(loaded_, 1, 1);
  grid->addWidget(defaults_, 1, 2);
  qobject_cast<QLabel*>(grid->itemAtPosition(0, 0)->widget())->setBuddy(available_);
  qobject_cast<QLabel*>(grid->itemAtPosition(0, 1)->widget())->setBuddy(loaded_);
  qobject_cast<QLabel*>(grid->itemAtPosition(0, 2)->widget())->setBuddy(defaults_);

  load_ = makeButton(tr("&Load"), "load", this);
  addFromAvailable_ = makeButton(tr("Add Default"), "addDefaultFromAvailable", this);
  unload_ = makeButton(tr("&Unload"), "unload", this);
  addFromLoaded_ = makeButton(tr("Add Default"), "addDefaultFromLoaded", this);
  removeDefault_ = makeButton(tr("&Remove Default"), "removeDefault", this);
  close_ = makeButton(tr("Close"), "close", this);
  close_->setDefault(true);
  auto column = [this](std::initializer_list<QPushButton*> buttons) {
    auto* row = new QHBoxLayout;
    for (QPushButton* button : buttons)
      row->addWidget(button);
    row->addStretch();
    return row;
  };
  grid->addLayout(column({load_, addFromAvailable_}), 2, 0);
  grid->addLayout(column({unload_, addFromLoaded_}), 2, 1);
  grid->addLayout(column({removeDefault_}), 2, 2);
  auto* bottom = new QHBoxLayout;
  bottom->addStretch();
  bottom->addWidget(close_);
  grid->addLayout(bottom, 3, 0, 1, 3);

  connect(load_, &QPushButton::clicked, this, &LoadDataSheetWindow::loadSelected);
  connect(unload_, &QPushButton::clicked, this, &LoadDataSheetWindow::unloadSelected);
  connect(addFromAvailable_, &QPushButton::clicked, this, [this] { addDefaultFrom(available_); });
  connect(addFromLoaded_, &QPushButton::clicked, this, [this] { addDefaultFrom(loaded_); });
  connect(removeDefault_, &QPushButton::clicked, this, &LoadDataSheetWindow::removeSelectedDefault);
  connect(close_, &QPushButton::clicked, this, &QDialog::accept);
  connect(available_, &QListWidget::itemDoubleClicked, this, &LoadDataSheetWindow::loadSelected);
  connect(loaded_, &QListWidget::itemDoubleClicked, this, &LoadDataSheetWindow::unloadSelected);

  showLists();
  // The defaults start on their first row.
  if (defaults_->count() > 0) defaults_->setCurrentRow(0);
  resize(std::max(sizeHint().width(), 620), std::max(sizeHint().height(), 340));
}

QPushButton* LoadDataSheetWindow::button(const char* name) const {
  return findChild<QPushButton*>(QString::fromLatin1(name));
}

void LoadDataSheetWindow::showLists() {
  fill(*available_, model_.available(), available_->currentRow());
  fill(*loaded_, model_.loaded(), loaded_->currentRow());
  fill(*defaults_, model_.defaults(), defaults_->currentRow());
  enableButtons();
}

void LoadDataSheetWindow::enableButtons() {
  load_->setEnabled(available_->count() > 0);
  addFromAvailable_->setEnabled(available_->count() > 0);
  unload_->setEnabled(loaded_->count() > 0);
  addFromLoaded_->setEnabled(loaded_->count() > 0);
  removeDefault_->setEnabled(defaults_->count() > 0);
}

void LoadDataSheetWindow::loadSelected() {
  const int row = available_->currentRow();
  if (row < 0) return;
  {
    BusyCursor busy;
    model_.load(static_cast<std::size_t>(row));
  }
  showLists();
}

void LoadDataSheetWindow::unloadSelected() {
  const int row = loaded_->currentRow();
  if (row < 0) return;
  const bool reload = QApplication::keyboardModifiers().testFlag(Qt::ShiftModifier);
  {
    BusyCursor busy;
    model_.unload(static_cast<std::size_t>(row),
                  reload ? LoadDataSheetDialogModel::Unload::ThenLoadAgain
                         : LoadDataSheetDialogModel::Unload::Only);
  }
  showLists();
}

void LoadDataSheetWindow::addDefaultFrom(QListWidget* list) {
  const int row = list->currentRow();
  if (row < 0) return;
  const std::vector<std::string>& names = list == available_ ? model_.available() : model_.loaded();
  model_.addDefault(names[static_cast<std::size_t>(row)]);
  fill(*defaults_, model_.defaults(), defaults_->currentRow());
  enableButtons();
}

void LoadDataSheetWindow::removeSelectedDefault() {
  const int row = defaults_->currentRow();
  if (row < 0) return;
  const int next = model_.removeDefault(static_cast<std::size_t>(row));
  fill(*defaults_, model_.defaults(), next);
  enableButtons();
}

void LoadDataSheetWindow::done(int result) {
  model_.close();
  QDialog::done(result);
}

}  // namespace zv::ui
