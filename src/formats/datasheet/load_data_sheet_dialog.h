#pragma once
// The logic of the Load Data Sheet dialog: the data sheets available in the data directory, the
// loaded ones and the defaults of the start-up, and what each button does to them. The window
// shows the three lists and calls these.

#include <cstddef>
#include <string>
#include <vector>

#include "core/settings.h"

namespace zv {

class LoadDataSheetDialogModel {
 public:
  /// Reads the lists: files matching *.cds, *.chr and *.mds in the data directory that aren't
  /// loaded, the loaded data sheets of every game system, and the defaults from `settings`.
  explicit LoadDataSheetDialogModel(Settings& settings);

  const std::vector<std::string>& available() const { return available_; }
  const std::vector<std::string>& loaded() const { return loaded_; }
  const std::vector<std::string>& defaults() const { return defaults_; }
  bool defaultsChanged() const { return defaultsChanged_; }

  /// Load (or a double click in Available): loads that file. On success the lists are read
  /// again, so every loaded name, dependencies too, moves from Available to Loaded.
  bool load(std::size_t availableRow);
  /// What Unload does: unload only, or (Shift held) load the data sheet again at once.
  enum class Unload { Only, ThenLoadAgain };
  /// Unload (or a double click in Loaded).
  bool unload(std::size_t loadedRow, Unload how);
  /// Add default, from either list: the name joins the defaults unless it is there.
  void addDefault(const std::string& name);
  /// Remove default: returns the row to select afterwards (the same row, or the last one), or -1
  /// when no default is left.
  int removeDefault(std::size_t row);
  /// Close: when the defaults changed, writes them as "datasheet%d" without gaps.
  bool close();

  /// Reads the available and loaded lists again.
  void refresh();

 private:
  Settings& settings_;
  std::vector<std::string> available_;
  std::vector<std::string> loaded_;
  std::vector<std::string> defaults_;
  bool defaultsChanged_ = false;
};

}  // namespace zv
