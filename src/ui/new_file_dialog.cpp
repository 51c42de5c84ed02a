#include "ui/new_file_dialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QVBoxLayout>

#include "core/text.h"
#include "ui/text_codec.h"

namespace zv::ui {

NewFileDialog::NewFileDialog(std::vector<TemplateChoice> templates, const std::string& lastTemplate,
                             const std::string& lastGameSystem, QWidget* parent)
    : QDialog(parent), templates_(std::move(templates)) {
  setWindowTitle(tr("New File"));
  kind_ = new QComboBox(this);
  kind_->addItem(tr("Character sheet"), 1);
  kind_->addItem(tr("Character template"), 2);
  gameSystem_ = new QComboBox(this);
  gameSystem_->addItem(fromSystemText(kAllGameSystems));
  for (const std::string& name : templateGameSystems(templates_))
    gameSystem_->addItem(fromSystemText(name));
  int start = gameSystem_->findText(fromSystemText(lastGameSystem), Qt::MatchFixedString);
  gameSystem_->setCurrentIndex(std::max(0, start));
  list_ = new QListWidget(this);
  list_->setObjectName("templates");
  description_ = new QLabel(this);
  description_->setWordWrap(true);
  description_->setMinimumHeight(description_->fontMetrics().height() * 2);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);

  auto* form = new QFormLayout;
  form->addRow(tr("&Type:"), kind_);
  form->addRow(tr("&Game system:"), gameSystem_);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(form);
  layout->addWidget(list_);
  layout->addWidget(description_);
  layout->addWidget(buttons);

  connect(gameSystem_, &QComboBox::currentIndexChanged, this, [this] { fillTemplates({}); });
  connect(list_, &QListWidget::currentRowChanged, this, &NewFileDialog::showDescription);
  connect(list_, &QListWidget::itemDoubleClicked, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  fillTemplates(lastTemplate);
  resize(420, 360);
}

void NewFileDialog::fillTemplates(const std::string& select) {
  std::string filter =
      gameSystem_->currentIndex() <= 0 ? std::string() : toSystemText(gameSystem_->currentText());
  shown_ = templatesOf(templates_, filter);
  list_->clear();
  int selected = shown_.empty() ? -1 : 0;
  for (std::size_t i = 0; i < shown_.size(); ++i) {
    list_->addItem(fromNativePath(shown_[i].fileName));
    if (!select.empty() && equalsIgnoringCase(shown_[i].fileName, select))
      selected = static_cast<int>(i);
  }
  list_->setCurrentRow(selected);
  showDescription();
}

void NewFileDialog::showDescription() {
  int row = list_->currentRow();
  description_->setText(row >= 0 && static_cast<std::size_t>(row) < shown_.size()
                            ? fromSystemText(shown_[static_cast<std::size_t>(row)].description)
                            : QString());
}

std::optional<NewFileChoice> NewFileDialog::choice() const {
  int row = list_->currentRow();
  if (row < 0 || static_cast<std::size_t>(row) >= shown_.size()) return std::nullopt;
  NewFileChoice result;
  result.fileType = kind_->currentData().toInt();
  result.templateName = shown_[static_cast<std::size_t>(row)].fileName;
  result.gameSystem =
      gameSystem_->currentIndex() <= 0 ? std::string() : toSystemText(gameSystem_->currentText());
  return result;
}

}  // namespace zv::ui
