#include "utilities/install.h"

#include <string>

#include "expr/builtins_system.h"
#include "utilities/die_roller.h"
#include "utilities/game_system_preferences.h"

namespace zv {

namespace {

// What the installed services reach: set by the one installation of the program.
std::unique_ptr<PreferenceStore> installedStore;
std::string installedDataDir;

bool rollDice(std::string_view dice, std::string& result) {
  return evaluateDiceText(dice, result, nullptr);
}

std::string dataDirectory() {
  return installedDataDir;
}

std::optional<std::string> readParameter(std::string_view gameSystem, std::string_view name) {
  if (!installedStore) return std::nullopt;
  return installedStore->read(gameSystem, name);
}

bool writeParameter(std::string_view gameSystem, std::string_view name, std::string_view value) {
  return installedStore && installedStore->write(gameSystem, name, value);
}

}  // namespace

UtilitiesInstallation::UtilitiesInstallation(Settings& settings,
                                             const std::filesystem::path& dataDir) {
  installedStore = std::make_unique<PreferenceStore>(settings);
  installedDataDir = dataDir.string();
  loadGameSystemPreferences(dataDir);
  setDiceRoller(rollDice);
  setSourceDirectoryProvider(dataDirectory);
  setConfigParamStore(ConfigParamStore{readParameter, writeParameter});
}

UtilitiesInstallation::~UtilitiesInstallation() {
  setDiceRoller(nullptr);
  setSourceDirectoryProvider(nullptr);
  setConfigParamStore(ConfigParamStore{});
  installedStore.reset();
  installedDataDir.clear();
}

}  // namespace zv
