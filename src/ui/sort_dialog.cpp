#include "ui/sort_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>

namespace zv::ui {

namespace {

constexpr std::string_view kSortSection = "Sort";
constexpr int kFirstKey = static_cast<int>(SortKey::Name);
constexpr int kLastKey = static_cast<int>(SortKey::Category);

}  // namespace

SortSettings readSortSettings(const Settings& settings) {
  SortSettings choices;
  choices.reverse = settings.getInt(kSortSection, "ReverseOrder", 0) != 0;
  const long key = settings.getInt(kSortSection, "Type", kFirstKey);
  if (key >= kFirstKey && key <= kLastKey) choices.key = static_cast<SortKey>(key);
  choices.recursive = settings.getInt(kSortSection, "Recursive", 0) != 0;
  const long position = settings.getInt(kSortSection, "SublistPosition", 0);
  if (position >= 0 && position <= 2) choices.sublists = static_cast<SublistPosition>(position);
  return choices;
}

void writeSortSettings(Settings& settings, const SortSettings& choices) {
  settings.setInt(kSortSection, "ReverseOrder", choices.reverse ? 1 : 0);
  settings.setInt(kSortSection, "Type", static_cast<long>(choices.key));
  settings.setInt(kSortSection, "Recursive", choices.recursive ? 1 : 0);
  settings.setInt(kSortSection, "SublistPosition", static_cast<long>(choices.sublists));
}

std::optional<SortSettings> askSortSettings(QWidget* parent, Settings* settings) {
  SortSettings choices = settings != nullptr ? readSortSettings(*settings) : SortSettings{};
  QDialog dialog(parent);
  dialog.setObjectName("sortDlg");
  dialog.setWindowTitle(QObject::tr("Sort"));
  auto* form = new QFormLayout(&dialog);
  auto* key = new QComboBox(&dialog);
  key->setObjectName("type");
  key->addItems({QObject::tr("Name"), QObject::tr("Class"), QObject::tr("Cost"),
                 QObject::tr("Level"), QObject::tr("Category")});
  key->setCurrentIndex(static_cast<int>(choices.key) - kFirstKey);
  form->addRow(QObject::tr("Sort &by:"), key);
  auto* sublists = new QComboBox(&dialog);
  sublists->setObjectName("sublistPosition");
  sublists->addItems(
      {QObject::tr("Among the items"), QObject::tr("At the beginning"), QObject::tr("At the end")});
  sublists->setCurrentIndex(static_cast<int>(choices.sublists));
  form->addRow(QObject::tr("&Sublists:"), sublists);
  auto* reverse = new QCheckBox(QObject::tr("&Reverse order"), &dialog);
  reverse->setObjectName("reverse");
  reverse->setChecked(choices.reverse);
  form->addRow(reverse);
  auto* recursive = new QCheckBox(QObject::tr("Sort the &members of sublists too"), &dialog);
  recursive->setObjectName("recursive");
  recursive->setChecked(choices.recursive);
  form->addRow(recursive);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  form->addRow(buttons);
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  choices.key = static_cast<SortKey>(kFirstKey + key->currentIndex());
  choices.sublists = static_cast<SublistPosition>(sublists->currentIndex());
  choices.reverse = reverse->isChecked();
  choices.recursive = recursive->isChecked();
  if (settings != nullptr) writeSortSettings(*settings, choices);
  return choices;
}

}  // namespace zv::ui
