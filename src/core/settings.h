#pragma once
// The settings store: one interface over its two back ends, an INI file chosen by "tavlo.ini"
// beside the program, or the per-user store. Both are INI files of the same section and key model;
// every write goes to the file at once, and every read sees the file as it is then, so two stores
// on one file (or another process) never undo each other's changes.

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "core/ini_file.h"

namespace zv {

/// The file beside the program whose presence selects the INI form of the store.
inline constexpr std::string_view kProgramIniName = "tavlo.ini";
inline constexpr std::string_view kRedirectSection = "Redirect";
inline constexpr std::string_view kRedirectProfileKey = "Profile";

class Settings {
 public:
  /// The store of the program in `programDir`: "tavlo.ini" there, or the file its [Redirect]
  /// Profile entry names when that isn't empty (relative to `programDir`), or else the per-user
  /// store (userSettingsPath()).
  static Settings forProgram(const std::filesystem::path& programDir);
  /// The store in a given INI file.
  static Settings fromFile(const std::filesystem::path& file);
  /// $XDG_CONFIG_HOME/zarvelin/zarvelin.ini, or ~/.config/zarvelin/zarvelin.ini.
  static std::filesystem::path userSettingsPath();

  /// The entry's value, or `defaultValue` when the entry is missing.
  std::string getString(std::string_view section, std::string_view name,
                        std::string_view defaultValue) const;
  /// The leading integer of the entry; `defaultValue` when it is missing or empty.
  long getInt(std::string_view section, std::string_view name, long defaultValue) const;
  /// Writes an entry to the file at once. On failure shows "Error writing [%s]%s to registry",
  /// titled "Error", and returns false.
  bool setString(std::string_view section, std::string_view name, std::string_view value);
  /// Writes a number in the form "%ld".
  bool setInt(std::string_view section, std::string_view name, long value);
  /// Deletes an entry; true when the store no longer has it.
  bool remove(std::string_view section, std::string_view name);

  /// The file that holds the settings.
  const std::filesystem::path& path() const { return path_; }
  /// True for the INI form (tavlo.ini, its redirection, or a file given explicitly); false for the
  /// per-user store.
  bool iniForm() const { return iniForm_; }

 private:
  Settings(std::filesystem::path path, bool iniForm) : path_(std::move(path)), iniForm_(iniForm) {}
  /// The file as it is now on disk (a missing file reads as empty); nullopt when it can't be read.
  std::optional<IniFile> read() const;
  /// Writes the changed file, creating its directory when needed.
  bool write(const IniFile& file) const;

  std::filesystem::path path_;
  bool iniForm_ = false;
};

/// The directory of the running executable.
std::filesystem::path programDirectory();

}  // namespace zv
