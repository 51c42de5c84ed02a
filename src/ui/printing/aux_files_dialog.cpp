#include "ui/printing/aux_files_dialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/messages.h"
#include "ui/text_codec.h"

namespace zv::ui {

AuxFilesDialog::AuxFilesDialog(std::filesystem::path sourceDirectory, std::string printCommand,
                               QWidget* parent)
    : QDialog(parent),
      sourceDirectory_(std::move(sourceDirectory)),
      printCommand_(std::move(printCommand)),
      lists_(auxFileLists(sourceDirectory_)) {
  setObjectName("PrintAuxFiles");
  setWindowTitle(tr("Print Auxiliary Files"));
  auto* layout = new QVBoxLayout(this);
  choice_ = new QComboBox(this);
  choice_->setObjectName("lists");
  for (const AuxFileList& list : lists_)
    choice_->addItem(fromSystemText(list.description));
  layout->addWidget(choice_);
  description_ = new QLabel(this);
  description_->setObjectName("description");
  description_->setWordWrap(true);
  layout->addWidget(description_);
  documents_ = new QListWidget(this);
  documents_->setObjectName("documents");
  layout->addWidget(documents_, 1);
  auto* buttons = new QDialogButtonBox(this);
  open_ = buttons->addButton(tr("&Open"), QDialogButtonBox::ActionRole);
  open_->setObjectName("open");
  print_ = buttons->addButton(tr("&Print"), QDialogButtonBox::ActionRole);
  print_->setObjectName("print");
  QPushButton* close = buttons->addButton(QDialogButtonBox::Close);
  close->setObjectName("close");
  connect(open_, &QPushButton::clicked, this, &AuxFilesDialog::openChosen);
  connect(print_, &QPushButton::clicked, this, &AuxFilesDialog::printChosen);
  connect(close, &QPushButton::clicked, this, &QDialog::reject);
  connect(choice_, &QComboBox::currentIndexChanged, this, &AuxFilesDialog::showList);
  connect(documents_, &QListWidget::currentRowChanged, this, [this](int row) {
    open_->setEnabled(row >= 0);
    print_->setEnabled(row >= 0);
  });
  connect(documents_, &QListWidget::itemDoubleClicked, this, &AuxFilesDialog::openChosen);
  layout->addWidget(buttons);
  if (lists_.empty()) {
    description_->setText(tr("The source directory holds no lists of auxiliary files (*.plst)."));
    choice_->setEnabled(false);
  }
  showList(lists_.empty() ? -1 : 0);
  resize(460, 360);
}

void AuxFilesDialog::showList(int index) {
  documents_->clear();
  if (index >= 0 && index < static_cast<int>(lists_.size())) {
    const AuxFileList& list = lists_[static_cast<std::size_t>(index)];
    description_->setText(
        fromSystemText(list.description + " (" + list.path.filename().string() + ")"));
    for (const AuxDocument& document : list.documents)
      documents_->addItem(fromSystemText(document.caption));
  }
  if (documents_->count() > 0) documents_->setCurrentRow(0);
  open_->setEnabled(documents_->currentRow() >= 0);
  print_->setEnabled(documents_->currentRow() >= 0);
}

const AuxDocument* AuxFilesDialog::chosen() const {
  const int list = choice_->currentIndex();
  const int row = documents_->currentRow();
  if (list < 0 || list >= static_cast<int>(lists_.size()) || row < 0) return nullptr;
  const auto& documents = lists_[static_cast<std::size_t>(list)].documents;
  return row < static_cast<int>(documents.size()) ? &documents[static_cast<std::size_t>(row)]
                                                  : nullptr;
}

bool AuxFilesDialog::openChosen() {
  const AuxDocument* document = chosen();
  return document != nullptr && openAuxDocument(sourceDirectory_, document->file);
}

bool AuxFilesDialog::printChosen() {
  const AuxDocument* document = chosen();
  return document != nullptr && printAuxDocument(sourceDirectory_, document->file, printCommand_);
}

}  // namespace zv::ui
