#include "ui/printing/template_chooser.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/fileinfo.h"
#include "core/messages.h"
#include "formats/print_template_header.h"
#include "print/job/print_checks.h"
#include "ui/text_codec.h"

namespace zv::ui {

TemplateChooserDialog::TemplateChooserDialog(const std::vector<std::filesystem::path>& templates,
                                             const std::string& gameSystem, QWidget* parent)
    : QDialog(parent), templates_(templates) {
  setObjectName("ChoosePrintTemplate");
  setWindowTitle(tr("Choose a Print Template"));
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(
      new QLabel(tr("Print templates for %1:").arg(fromSystemText(gameSystem)), this));
  list_ = new QListWidget(this);
  list_->setObjectName("templates");
  for (const auto& path : templates_) {
    auto header = readPrintTemplateHeader(path);
    descriptions_.push_back(header ? header->description : std::string());
    list_->addItem(fromNativePath(path.filename().string()));
  }
  layout->addWidget(list_);
  description_ = new QLabel(this);
  description_->setObjectName("description");
  description_->setWordWrap(true);
  layout->addWidget(description_);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  QPushButton* ok = buttons->button(QDialogButtonBox::Ok);
  ok->setEnabled(false);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(list_, &QListWidget::currentRowChanged, this, [this, ok](int row) {
    ok->setEnabled(row >= 0);
    showDescription();
  });
  connect(list_, &QListWidget::itemDoubleClicked, this, &QDialog::accept);
  layout->addWidget(buttons);
  if (!templates_.empty()) list_->setCurrentRow(0);
}

void TemplateChooserDialog::showDescription() {
  const int row = list_->currentRow();
  description_->setText(row >= 0 ? fromSystemText(descriptions_[static_cast<std::size_t>(row)])
                                 : QString());
}

std::filesystem::path TemplateChooserDialog::chosen() const {
  const int row = list_->currentRow();
  return row >= 0 ? templates_[static_cast<std::size_t>(row)] : std::filesystem::path();
}

std::filesystem::path chooseTemplateFor(const FileInfo& sheet,
                                        const std::filesystem::path& sourceDirectory,
                                        QWidget* parent) {
  const std::filesystem::path named = namedTemplatePath(sheet, sourceDirectory);
  std::error_code error;
  if (!named.empty()) {
    if (std::filesystem::is_regular_file(named, error)) return named;
    showError(strprintf("Can't open print template %s", named.string()));
  }
  TemplateChooserDialog dialog(templatesFor(sheet.gameSystemName.str(), sourceDirectory),
                               sheet.gameSystemName.str(), parent);
  if (dialog.exec() != QDialog::Accepted) return {};
  return dialog.chosen();
}

}  // namespace zv::ui
