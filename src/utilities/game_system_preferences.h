#pragma once
// Game system preferences: the `.pref` files of the data directory declare parameters of a game
// system, which its expressions read by configparam and change by setconfigparam. A value is
// stored in the settings section "ConfigParams\<game system>" under the parameter's name; the
// declared default applies until one is stored. Three names belong to the program rather than a
// game system: "UseMetric" (the Measure preference), "PrintInheritedOptions" and "UseAliases".

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/game_system.h"
#include "core/settings.h"

namespace zv {

/// What one `.pref` file declares.
struct PreferenceFile {
  std::string gameSystem;  ///< [Configuration] GameSystem
  std::vector<ConfigParam> parameters;
};

/// Reads a `.pref` text. A section without Type or Prompt, or of an unknown type, is passed
/// over; nullopt for a text without a game system.
std::optional<PreferenceFile> parsePreferenceFile(std::string_view text);

/// Reads every "*.pref" of the data directory (in name order) and attaches its parameters to
/// the game system of that name, which is created when new. Bad files are passed over quietly.
/// Returns the number of files taken.
int loadGameSystemPreferences(const std::filesystem::path& dataDir);

/// The store of parameter values over a settings file.
class PreferenceStore {
 public:
  explicit PreferenceStore(Settings& settings) : settings_(settings) {}

  /// The present value: the stored one, else the declared default; nullopt for a parameter
  /// that is neither stored nor declared. The general names read their program setting.
  std::optional<std::string> read(std::string_view gameSystem, std::string_view name) const;
  /// Stores a value; a general name changes its program setting. False when the settings file
  /// can't take it.
  bool write(std::string_view gameSystem, std::string_view name, std::string_view value);

  /// The settings section of a game system's values.
  static std::string sectionOf(std::string_view gameSystem);

 private:
  Settings& settings_;
};

}  // namespace zv
