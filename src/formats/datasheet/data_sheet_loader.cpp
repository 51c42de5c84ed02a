// Loading data sheets: reload by name, the read with its progress and copyright delay, the data
// sheets a file depends on, and the definitions that reach the game system and the open sheets.

#include "formats/datasheet/data_sheet_loader.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <iterator>
#include <memory>

#include "core/engine_context.h"
#include "core/game_systems.h"
#include "core/host.h"
#include "core/messages.h"
#include "core/paths.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "formats/datasheet/data_sheet_defines.h"
#include "formats/datasheet/data_sheet_reader.h"

namespace zv {

namespace {

/// The delay of the copyright of the first data sheet of a game system when the setting and the
/// file leave it open.
constexpr long kFirstCopyrightDelayMs = 1500;

int& loadDepth() {
  static int depth = 0;
  return depth;
}

bool readWholeFile(const std::filesystem::path& path, std::string& bytes) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  return !in.bad();
}

/// The delay of this load: the setting when it isn't 0; otherwise 1500 ms for the first data
/// sheet of the game system in this process and 0 after; a `cdelay` of the file replaces it.
long copyrightDelayFor(GameSystem& system, const DataSheetFile& file) {
  long delay = engine().dataSheets.copyrightDelay;
  if (delay == 0) delay = system.copyrightShown() ? 0 : kFirstCopyrightDelayMs;
  system.setCopyrightShown(true);
  if (file.cdelay >= 0) delay = file.cdelay;
  return delay;
}

/// The busy cursor, the progress display and the nesting count of one read.
class LoadProgress {
 public:
  LoadProgress() {
    ++loadDepth();
    host().setBusy(true);
  }
  ~LoadProgress() {
    if (shown_) host().progressEnd();
    host().setBusy(false);
    --loadDepth();
  }
  LoadProgress(const LoadProgress&) = delete;
  LoadProgress& operator=(const LoadProgress&) = delete;

  void show(const DataSheetFile& file) {
    shown_ = true;
    std::string text = file.name;
    if (!file.copyright.empty()) text += "\r\n" + file.copyright;
    host().progressBegin(file.title.empty() ? file.name : file.title, text, 0);
  }

 private:
  bool shown_ = false;
};

/// Steps 2 to 6 of a load: read, wait out the copyright, ensure the dependencies, merge the
/// definitions. A failed read is undone by its id.
bool loadFile(const std::filesystem::path& fullPath, const std::string& shortName) {
  if (shortName.empty()) {
    showError(strprintf("'%s' is a bad data sheet name", shortName));
    return false;
  }
  std::string bytes;
  if (!readWholeFile(fullPath, bytes)) {
    showError(strprintf("Cannot open data sheet '%s'.", shortName));
    return false;
  }
  DataSheetFile file;
  file.name = shortName;
  file.path = fullPath;
  bool ok = false;
  {
    LoadProgress progress;
    const bool outermost = loadDepth() == 1;
    DataSheetReadOptions options;
    options.dataDir = engine().dataSheets.dataDir;
    options.onLongBlock = [&progress](const DataSheetFile& read) { progress.show(read); };
    options.pump = [outermost] {
      if (outermost && engine().dataSheets.pumpMessages) host().pump();
    };
    const auto start = std::chrono::steady_clock::now();
    ok = readDataSheet(std::move(bytes), file, options);
    if (ok) {
      const long delay = copyrightDelayFor(*file.gameSystem, file);
      const auto elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(
                               std::chrono::steady_clock::now() - start)
                               .count();
      if (delay > elapsed) host().waitForInput(static_cast<int>(delay - elapsed));
    }
  }
  if (!ok) {
    if (file.gameSystem != nullptr) {
      removeDataSheetTraces(*file.gameSystem, file.id);
      std::erase_if(file.gameSystem->strings, [&file](const StringDef& def) {
        return std::find(file.stringsAdded.begin(), file.stringsAdded.end(), def.name) !=
               file.stringsAdded.end();
      });
    }
    return false;
  }
  GameSystem& system = *file.gameSystem;
  for (const std::string& name : file.dataFiles) {
    if (equalsIgnoringCase(dataSheetShortName(name), shortName)) continue;
    ensureDataSheet(nullptr, name, false);
  }
  addDataSheetDefinitions(system, std::move(file.defines));
  return true;
}

}  // namespace

int dataSheetLoadDepth() {
  return loadDepth();
}

std::string dataSheetShortName(std::string_view name) {
  const std::size_t cut = name.find_last_of("/\\:");
  return std::string(cut == std::string_view::npos ? name : name.substr(cut + 1));
}

OpenDataSheet* findLoadedDataSheet(std::string_view name, GameSystem** gameSystem) {
  if (name.empty()) {
    showError(strprintf("%s is a bad data sheet name", std::string(name)));
    return nullptr;
  }
  const std::string shortName = dataSheetShortName(name);
  std::vector<GameSystem*> systems = gameSystems();
  systems.push_back(&builtinGameSystem());  // data sheets that name no game system
  for (GameSystem* system : systems) {
    for (OpenDataSheet& sheet : system->dataSheets) {
      if (!equalsIgnoringCase(sheet.name, shortName)) continue;
      if (gameSystem != nullptr) *gameSystem = system;
      return &sheet;
    }
  }
  return nullptr;
}

bool loadDataSheet(const std::filesystem::path& fullPath, std::string_view shortName) {
  GameSystem* system = nullptr;
  if (!shortName.empty()) {
    if (OpenDataSheet* loaded = findLoadedDataSheet(shortName, &system))
      unloadDataSheetById(*system, loaded->id);
  }
  return loadFile(fullPath, std::string(shortName));
}

bool ensureDataSheet(FileInfo* fileInfo, std::string_view name, bool addToFileInfo) {
  const std::string shortName = dataSheetShortName(name);
  if (shortName.empty()) {
    showError(strprintf("'%s' is a bad data sheet name", std::string(name)));
    return false;
  }
  if (fileInfo != nullptr && equalsIgnoringCase(shortName, fileInfo->name.str())) return true;
  if (addToFileInfo && fileInfo != nullptr) {
    bool listed = false;
    for (const std::string& listedName : fileInfo->dataFiles)
      listed = listed || equalsIgnoringCase(listedName, name);
    if (!listed) fileInfo->dataFiles.emplace_back(name);
  }
  if (findLoadedDataSheet(shortName) != nullptr) return true;
  const std::filesystem::path path = findDataFile(engine().dataSheets.dataDir, shortName);
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) {
    showTitled(Severity::Warning, "Data Sheet Not Found",
               strprintf("The data sheet file %s cannot be found. It should be located in the "
                         "directory where the application was installed.",
                         shortName));
    return false;
  }
  return loadFile(path, shortName);
}

bool unloadDataSheet(std::string_view gameSystemName, std::string_view shortName) {
  GameSystem* system = findGameSystem(gameSystemName);
  if (system == nullptr) return false;
  const std::string wanted = dataSheetShortName(shortName);
  for (const OpenDataSheet& sheet : system->dataSheets) {
    if (equalsIgnoringCase(sheet.name, wanted)) return unloadDataSheetById(*system, sheet.id);
  }
  return false;
}

void reloadAllDataSheets() {
  std::vector<std::string> names;
  for (GameSystem* system : gameSystems()) {
    std::vector<std::int32_t> ids;
    for (const OpenDataSheet& sheet : system->dataSheets) {
      names.push_back(sheet.name);
      ids.push_back(sheet.id);
    }
    for (std::int32_t id : ids)
      unloadDataSheetById(*system, id);
    freeDataSheetSymbols(*system);
  }
  // A data sheet that came in as another's dependency is loaded already when its turn comes.
  for (const std::string& name : names) {
    if (findLoadedDataSheet(name) != nullptr) continue;
    loadFile(findDataFile(engine().dataSheets.dataDir, name), name);
  }
}

void clearAllDataSheets(const Settings& settings) {
  clearGameSystems();
  for (FileInfo* sheet : openSheets())
    sheet->gameSystem = &findOrCreateGameSystem(sheet->gameSystemName.str());
  loadDefaultDataSheets(settings);
}

namespace {
constexpr std::string_view kDataSheetsSection = "Data Sheets";
}  // namespace

std::vector<std::string> defaultDataSheetNames(const Settings& settings) {
  std::vector<std::string> names;
  for (int i = 0;; ++i) {
    std::string name = settings.getString(kDataSheetsSection, strprintf("datasheet%d", i), "");
    if (name.empty()) break;
    names.push_back(std::move(name));
  }
  return names;
}

bool writeDefaultDataSheetNames(Settings& settings, const std::vector<std::string>& names) {
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (!settings.setString(kDataSheetsSection, strprintf("datasheet%d", static_cast<int>(i)),
                            names[i]))
      return false;
  }
  return settings.setString(kDataSheetsSection,
                            strprintf("datasheet%d", static_cast<int>(names.size())), "");
}

int loadDefaultDataSheets(const Settings& settings) {
  int loaded = 0;
  for (const std::string& name : defaultDataSheetNames(settings)) {
    const std::string shortName = dataSheetShortName(name);
    if (loadDataSheet(findDataFile(engine().dataSheets.dataDir, shortName), shortName)) ++loaded;
  }
  return loaded;
}

void enableDataSheetLoading(SheetReadOptions& options) {
  options.loadData = true;
  auto tried = std::make_shared<std::vector<std::string>>();
  options.loadDataSheet = [tried](FileInfo& sheet, const std::string& name) {
    const std::string shortName = dataSheetShortName(name);
    for (const std::string& earlier : *tried)
      if (equalsIgnoringCase(earlier, shortName)) return;
    tried->push_back(shortName);
    ensureDataSheet(&sheet, name, false);
  };
}

}  // namespace zv
