#pragma once
// The choice of a print template: the sheet's own, else one of the source directory's templates
// of the sheet's game system, each offered with its description.

#include <QDialog>
#include <filesystem>
#include <vector>

#include "core/record_types.h"

class QLabel;
class QListWidget;

namespace zv::ui {

class TemplateChooserDialog : public QDialog {
  Q_OBJECT
 public:
  TemplateChooserDialog(const std::vector<std::filesystem::path>& templates,
                        const std::string& gameSystem, QWidget* parent = nullptr);
  /// The template chosen; empty when none is.
  std::filesystem::path chosen() const;

 private:
  void showDescription();

  std::vector<std::filesystem::path> templates_;
  std::vector<std::string> descriptions_;
  QListWidget* list_;
  QLabel* description_;
};

/// The template the sheet prints through: the one it names when that file exists ("Can't open
/// print template %s" when it doesn't), else the user's choice among the templates of its game
/// system. Empty when cancelled.
std::filesystem::path chooseTemplateFor(const FileInfo& sheet,
                                        const std::filesystem::path& sourceDirectory,
                                        QWidget* parent);

}  // namespace zv::ui
