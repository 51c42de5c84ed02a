#pragma once
// The New File dialog: the kind of document, the game system filter, the templates with the
// description of the selected one. A double click on a template means OK.

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QListWidget>
#include <optional>
#include <string>
#include <vector>

#include "ui/new_file_choices.h"

namespace zv::ui {

struct NewFileChoice {
  int fileType = 1;          ///< 1 character sheet, 2 character template
  std::string templateName;  ///< short name in the data directory
  std::string gameSystem;    ///< the filter chosen; empty for "(All)"
};

class NewFileDialog : public QDialog {
  Q_OBJECT
 public:
  /// Starts on the last choice: `lastTemplate` selected under the filter `lastGameSystem`.
  NewFileDialog(std::vector<TemplateChoice> templates, const std::string& lastTemplate,
                const std::string& lastGameSystem, QWidget* parent = nullptr);
  /// The choice made; nullopt when nothing is selected.
  std::optional<NewFileChoice> choice() const;

 private:
  void fillTemplates(const std::string& select);
  void showDescription();

  std::vector<TemplateChoice> templates_;
  std::vector<TemplateChoice> shown_;
  QComboBox* kind_ = nullptr;
  QComboBox* gameSystem_ = nullptr;
  QListWidget* list_ = nullptr;
  QLabel* description_ = nullptr;
};

}  // namespace zv::ui
