#include "utilities/install.h"

#include <memory>
#include <string>

#include "utilities/die_roller.h"
#include "utilities/game_system_preferences.h"

namespace zv {

void wireUtilities(EngineContext& context, Settings& settings,
                   const std::filesystem::path& dataDir) {
  loadGameSystemPreferences(dataDir);
  auto store = std::make_shared<PreferenceStore>(settings);
  EngineServices& services = context.services;
  services.rollDice = [](std::string_view dice, std::string& result) {
    return evaluateDiceText(dice, result, nullptr);
  };
  services.sourceDirectory = [directory = dataDir.string()] { return directory; };
  services.configParams.read = [store](std::string_view gameSystem, std::string_view name) {
    return store->read(gameSystem, name);
  };
  services.configParams.write = [store](std::string_view gameSystem, std::string_view name,
                                        std::string_view value) {
    return store->write(gameSystem, name, value);
  };
}

}  // namespace zv
