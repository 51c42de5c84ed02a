#include "formats/datasheet/load_data_sheet_dialog.h"

#include <algorithm>
#include <filesystem>

#include "core/engine_context.h"
#include "core/game_systems.h"
#include "core/paths.h"
#include "core/text.h"
#include "formats/datasheet/data_sheet_loader.h"

namespace zv {

namespace {

bool listed(const std::vector<std::string>& names, std::string_view name) {
  return std::any_of(names.begin(), names.end(),
                     [&](const std::string& entry) { return equalsIgnoringCase(entry, name); });
}

}  // namespace

LoadDataSheetDialogModel::LoadDataSheetDialogModel(Settings& settings)
    : settings_(settings), defaults_(defaultDataSheetNames(settings)) {
  refresh();
}

void LoadDataSheetDialogModel::refresh() {
  loaded_.clear();
  for (const GameSystem* system : gameSystems())
    for (const OpenDataSheet& sheet : system->dataSheets)
      loaded_.push_back(sheet.name);
  available_.clear();
  std::error_code error;
  for (const auto& entry :
       std::filesystem::directory_iterator(engine().dataSheets.dataDir, error)) {
    if (!entry.is_regular_file(error)) continue;
    const std::string extension = extensionOf(entry.path());
    if (extension != ".cds" && extension != ".chr" && extension != ".mds") continue;
    std::string name = entry.path().filename().string();
    if (!listed(loaded_, name)) available_.push_back(std::move(name));
  }
  std::sort(available_.begin(), available_.end(), [](const std::string& a, const std::string& b) {
    return compareIgnoringCase(a, b) < 0;
  });
}

bool LoadDataSheetDialogModel::load(std::size_t availableRow) {
  if (availableRow >= available_.size()) return false;
  const std::string name = available_[availableRow];
  const bool ok = loadDataSheet(engine().dataSheets.dataDir / name, name);
  refresh();
  return ok;
}

bool LoadDataSheetDialogModel::unload(std::size_t loadedRow, Unload how) {
  if (loadedRow >= loaded_.size()) return false;
  const std::string name = loaded_[loadedRow];
  GameSystem* system = nullptr;
  OpenDataSheet* sheet = findLoadedDataSheet(name, &system);
  bool ok = sheet != nullptr && unloadDataSheetById(*system, sheet->id);
  if (ok && how == Unload::ThenLoadAgain)
    ok = loadDataSheet(findDataFile(engine().dataSheets.dataDir, name), name);
  refresh();
  return ok;
}

void LoadDataSheetDialogModel::addDefault(const std::string& name) {
  if (name.empty() || listed(defaults_, name)) return;
  defaults_.push_back(name);
  defaultsChanged_ = true;
}

int LoadDataSheetDialogModel::removeDefault(std::size_t row) {
  if (row >= defaults_.size()) return defaults_.empty() ? -1 : static_cast<int>(row);
  defaults_.erase(defaults_.begin() + static_cast<std::ptrdiff_t>(row));
  defaultsChanged_ = true;
  if (defaults_.empty()) return -1;
  return static_cast<int>(std::min(row, defaults_.size() - 1));
}

bool LoadDataSheetDialogModel::close() {
  if (!defaultsChanged_) return true;
  if (!writeDefaultDataSheetNames(settings_, defaults_)) return false;
  defaultsChanged_ = false;
  return true;
}

}  // namespace zv
