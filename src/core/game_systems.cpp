#include "core/game_systems.h"

#include <map>
#include <memory>

#include "core/text.h"

namespace zv {

namespace {

struct SheetRegistry {
  std::map<std::int32_t, FileInfo*> sheets;
  std::int32_t lastSheetId = 0;
};

SheetRegistry& sheetRegistry() {
  static SheetRegistry registry;
  return registry;
}

struct GameSystemRegistry {
  // The sheet registry is made first so that it outlives the game systems, whose embedded
  // records leave it when they are destroyed at exit.
  GameSystemRegistry() { sheetRegistry(); }

  std::vector<std::unique_ptr<GameSystem>> chain;  // newest first
  std::unique_ptr<GameSystem> builtin = std::make_unique<GameSystem>("");
  std::int32_t lastDataSheetId = 0;
};

GameSystemRegistry& gameSystemRegistry() {
  static GameSystemRegistry registry;
  return registry;
}

}  // namespace

GameSystem* findGameSystem(std::string_view name) {
  if (name.empty()) return &builtinGameSystem();
  // Names are kept to the capacity of the record, so a longer name matches its kept part.
  FixedString<kGameSystemNameCapacity> key(name);
  for (const auto& system : gameSystemRegistry().chain) {
    if (equalsIgnoringCase(system->name, key)) return system.get();
  }
  return nullptr;
}

GameSystem& findOrCreateGameSystem(std::string_view name) {
  if (GameSystem* found = findGameSystem(name)) return *found;
  auto& chain = gameSystemRegistry().chain;
  chain.insert(chain.begin(), std::make_unique<GameSystem>(name));
  return *chain.front();
}

GameSystem& builtinGameSystem() {
  return *gameSystemRegistry().builtin;
}

std::vector<GameSystem*> gameSystems() {
  std::vector<GameSystem*> result;
  for (const auto& system : gameSystemRegistry().chain)
    result.push_back(system.get());
  return result;
}

void clearGameSystems() {
  auto& registry = gameSystemRegistry();
  registry.chain.clear();
  registry.builtin = std::make_unique<GameSystem>("");
}

Category* categoryFind(const FileInfo& fileInfo, std::string_view name) {
  if (fileInfo.gameSystem == nullptr) return nullptr;
  return fileInfo.gameSystem->findCategory(name);
}

std::int32_t nextDataSheetId() {
  return ++gameSystemRegistry().lastDataSheetId;
}

std::int32_t nextSheetId() {
  return ++sheetRegistry().lastSheetId;
}

std::int32_t registerSheet(FileInfo& fileInfo) {
  if (fileInfo.sheetId == 0) fileInfo.sheetId = nextSheetId();
  sheetRegistry().sheets[fileInfo.sheetId] = &fileInfo;
  return fileInfo.sheetId;
}

FileInfo* findSheet(std::int32_t sheetId) {
  auto& sheets = sheetRegistry().sheets;
  auto found = sheets.find(sheetId);
  return found == sheets.end() ? nullptr : found->second;
}

std::vector<FileInfo*> openSheets() {
  std::vector<FileInfo*> result;
  for (const auto& [id, sheet] : sheetRegistry().sheets)
    result.push_back(sheet);
  return result;
}

void unregisterSheet(const FileInfo& fileInfo) {
  if (fileInfo.sheetId == 0) return;
  auto& sheets = sheetRegistry().sheets;
  auto found = sheets.find(fileInfo.sheetId);
  if (found != sheets.end() && found->second == &fileInfo) sheets.erase(found);
}

}  // namespace zv
