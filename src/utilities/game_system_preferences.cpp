#include "utilities/game_system_preferences.h"

#include <algorithm>
#include <array>
#include <system_error>

#include "core/engine_context.h"
#include "core/game_systems.h"
#include "core/ini_file.h"
#include "core/strfmt.h"
#include "core/text.h"

namespace zv {

namespace {

constexpr std::array<std::string_view, 7> kParameterTypes = {
    "checkbox", "prompt", "number", "edittext", "dropdown", "listbox", "treelist"};
constexpr std::size_t kMaxPromptLength = 511;

// Where the general names live in the program's settings.
constexpr std::string_view kProgramSection = "zarvel";
constexpr std::string_view kPreferencesSection = "Preferences";
constexpr std::string_view kMeasureKey = "Measure";
// Measure: -1 takes the units from the locale, 0 is metric, 1 is U.S.
constexpr long kMeasureMetric = 0;
constexpr long kMeasureUS = 1;

bool isListType(std::string_view type) {
  return type == "dropdown" || type == "listbox" || type == "treelist";
}

const ConfigParam* findDeclared(std::string_view gameSystem, std::string_view name) {
  const GameSystem* system = findGameSystem(gameSystem);
  if (system == nullptr) return nullptr;
  for (const ConfigParam& parameter : system->preferences) {
    if (equalsIgnoringCase(parameter.name, name)) return &parameter;
  }
  return nullptr;
}

/// A text that is on unless it begins with "0".
bool onUnlessZero(std::string_view text) {
  return text.empty() || text[0] != '0';
}

}  // namespace

std::optional<PreferenceFile> parsePreferenceFile(std::string_view text) {
  IniFile ini;
  ini.parse(text);
  PreferenceFile file;
  file.gameSystem = trim(ini.get("Configuration", "GameSystem").value_or(""));
  if (file.gameSystem.empty()) return std::nullopt;
  for (const std::string& section : ini.sections()) {
    if (equalsIgnoringCase(section, "Configuration")) continue;
    std::optional<std::string> type = ini.get(section, "Type");
    std::optional<std::string> prompt = ini.get(section, "Prompt");
    if (!type || !prompt) continue;
    ConfigParam parameter;
    parameter.type = toLower(trim(*type));
    if (std::find(kParameterTypes.begin(), kParameterTypes.end(), parameter.type) ==
        kParameterTypes.end()) {
      continue;
    }
    parameter.name = section;
    parameter.prompt = prompt->substr(0, kMaxPromptLength);
    parameter.defaultValue = ini.get(section, "DefaultValue").value_or("");
    if (isListType(parameter.type)) {
      for (const std::string& choice : split(ini.get(section, "Values").value_or(""), ';')) {
        if (!choice.empty()) parameter.choices.push_back(choice);
      }
    }
    file.parameters.push_back(std::move(parameter));
  }
  return file;
}

int loadGameSystemPreferences(const std::filesystem::path& dataDir) {
  std::error_code error;
  std::vector<std::filesystem::path> files;
  for (std::filesystem::directory_iterator it(dataDir, error), end; !error && it != end;
       it.increment(error)) {
    const std::filesystem::path& path = it->path();
    if (equalsIgnoringCase(path.extension().string(), ".pref") && it->is_regular_file(error)) {
      files.push_back(path);
    }
  }
  std::sort(files.begin(), files.end());
  int taken = 0;
  for (const std::filesystem::path& path : files) {
    IniFile ini;
    if (!ini.load(path)) continue;
    std::optional<PreferenceFile> file = parsePreferenceFile(ini.text());
    if (!file) continue;
    GameSystem& system = findOrCreateGameSystem(file->gameSystem);
    for (ConfigParam& parameter : file->parameters) {
      auto same = [&parameter](const ConfigParam& known) {
        return equalsIgnoringCase(known.name, parameter.name);
      };
      auto known = std::find_if(system.preferences.begin(), system.preferences.end(), same);
      if (known != system.preferences.end()) {
        *known = std::move(parameter);
      } else {
        system.preferences.push_back(std::move(parameter));
      }
    }
    ++taken;
  }
  return taken;
}

std::string PreferenceStore::sectionOf(std::string_view gameSystem) {
  return strprintf("ConfigParams\\%s", std::string(gameSystem));
}

std::optional<std::string> PreferenceStore::read(std::string_view gameSystem,
                                                 std::string_view name) const {
  if (equalsIgnoringCase(name, "UseMetric")) {
    const long measure = settings_.getInt(kProgramSection, kMeasureKey, -1);
    return measure == kMeasureMetric ? "1" : "0";
  }
  if (equalsIgnoringCase(name, "PrintInheritedOptions")) {
    return onUnlessZero(settings_.getString(kPreferencesSection, "PrintInheritedOptions", "1"))
               ? "1"
               : "0";
  }
  if (equalsIgnoringCase(name, "UseAliases")) {
    const std::string value = settings_.getString(kPreferencesSection, "UseAliases", "");
    return !value.empty() && value[0] != '0' ? "1" : "0";
  }
  const std::string missing = "\x01";
  std::string stored = settings_.getString(sectionOf(gameSystem), name, missing);
  if (stored != missing) return stored;
  if (const ConfigParam* declared = findDeclared(gameSystem, name)) return declared->defaultValue;
  return std::nullopt;
}

bool PreferenceStore::write(std::string_view gameSystem, std::string_view name,
                            std::string_view value) {
  if (name.empty()) return false;
  if (equalsIgnoringCase(name, "UseMetric")) {
    return settings_.setInt(
        kProgramSection, kMeasureKey,
        onUnlessZero(trim(value)) && !trim(value).empty() ? kMeasureMetric : kMeasureUS);
  }
  if (equalsIgnoringCase(name, "PrintInheritedOptions")) {
    engine().preferences.printInheritedOptions = onUnlessZero(value);
    return settings_.setString(kPreferencesSection, "PrintInheritedOptions", value);
  }
  if (equalsIgnoringCase(name, "UseAliases")) {
    return settings_.setString(kPreferencesSection, "UseAliases", value);
  }
  return settings_.setString(sectionOf(gameSystem), name, value);
}

}  // namespace zv
