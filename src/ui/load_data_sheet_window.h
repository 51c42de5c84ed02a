#pragma once
// The Load Data Sheet dialog (LoadDataSheetDlg): the data sheets available in the data directory,
// those loaded, and the defaults loaded at start-up, with the buttons of each list. What the
// buttons do is the engine's dialog model; this window shows the lists and follows them.

#include <QDialog>

#include "core/settings.h"
#include "formats/datasheet/load_data_sheet_dialog.h"

class QListWidget;
class QPushButton;

namespace zv::ui {

class LoadDataSheetWindow : public QDialog {
  Q_OBJECT
 public:
  /// Reads the lists; the defaults are written to `settings` when the dialog closes, if they
  /// changed.
  explicit LoadDataSheetWindow(Settings& settings, QWidget* parent = nullptr);

  QListWidget* availableList() const { return available_; }
  QListWidget* loadedList() const { return loaded_; }
  QListWidget* defaultsList() const { return defaults_; }
  /// The buttons by name: "load", "unload", "addDefaultFromAvailable", "addDefaultFromLoaded",
  /// "removeDefault", "close".
  QPushButton* button(const char* name) const;

  /// Load: the selected available file (a double click there does the same).
  void loadSelected();
  /// Unload: the selected loaded data sheet; with Shift held it is loaded again at once (a double
  /// click there does the same).
  void unloadSelected();
  /// Add Default from the available or the loaded list.
  void addDefaultFrom(QListWidget* list);
  /// Remove Default: the selection stays on the same row, or the last.
  void removeSelectedDefault();

  /// Close (also Esc and the window's close box): writes the defaults when they changed.
  void done(int result) override;

 private:
  /// Shows the model's lists, keeping each list's selected row where it can.
  void showLists();
  void enableButtons();

  LoadDataSheetDialogModel model_;
  QListWidget* available_ = nullptr;
  QListWidget* loaded_ = nullptr;
  QListWidget* defaults_ = nullptr;
  QPushButton* load_ = nullptr;
  QPushButton* unload_ = nullptr;
  QPushButton* addFromAvailable_ = nullptr;
  QPushButton* addFromLoaded_ = nullptr;
  QPushButton* removeDefault_ = nullptr;
  QPushButton* close_ = nullptr;
};

}  // namespace zv::ui
