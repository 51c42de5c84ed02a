#pragma once
// Print Auxiliary Files: the documents a game system supplies, by the "*.plst" lists of the
// source directory; Open and Print hand the chosen one to the system's programs.

#include <QDialog>
#include <filesystem>
#include <string>
#include <vector>

#include "print/job/aux_files.h"

class QComboBox;
class QLabel;
class QListWidget;
class QPushButton;

namespace zv::ui {

class AuxFilesDialog : public QDialog {
  Q_OBJECT
 public:
  /// `printCommand` gets the file to print as its last argument.
  AuxFilesDialog(std::filesystem::path sourceDirectory, std::string printCommand,
                 QWidget* parent = nullptr);

  /// The list shown and the document chosen in it; null when none is.
  const AuxDocument* chosen() const;
  bool openChosen();
  bool printChosen();

 private:
  void showList(int index);

  std::filesystem::path sourceDirectory_;
  std::string printCommand_;
  std::vector<AuxFileList> lists_;
  QComboBox* choice_;
  QLabel* description_;
  QListWidget* documents_;
  QPushButton* open_;
  QPushButton* print_;
};

}  // namespace zv::ui
