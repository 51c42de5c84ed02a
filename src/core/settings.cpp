#include "core/settings.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <system_error>

#include "core/messages.h"
#include "core/numbers.h"
#include "core/strfmt.h"

namespace zv {

namespace fs = std::filesystem;

namespace {

fs::path homeDirectory() {
  if (const char* home = std::getenv("HOME"); home && *home) return home;
  if (const passwd* entry = ::getpwuid(::getuid()); entry && entry->pw_dir) return entry->pw_dir;
  return fs::current_path();
}

/// A name read from a settings file, which may use either separator.
fs::path nativePath(std::string name) {
  for (char& c : name) {
    if (c == '\\') c = '/';
  }
  return fs::path(name);
}

}  // namespace

Settings Settings::forProgram(const fs::path& programDir) {
  const fs::path programIni = programDir / kProgramIniName;
  std::error_code ec;
  if (!fs::exists(programIni, ec)) return Settings(userSettingsPath(), false);

  IniFile redirect;
  redirect.load(programIni);
  std::string profile = redirect.get(kRedirectSection, kRedirectProfileKey).value_or("");
  if (profile.empty()) return Settings(programIni, true);
  fs::path target = nativePath(profile);
  if (target.is_relative()) target = programDir / target;
  return Settings(target, true);
}

Settings Settings::fromFile(const fs::path& file) {
  return Settings(file, true);
}

fs::path Settings::userSettingsPath() {
  fs::path base;
  // Only an absolute XDG_CONFIG_HOME counts; anything else means the default.
  if (const char* xdg = std::getenv("XDG_CONFIG_HOME"); xdg && *xdg == '/') {
    base = xdg;
  } else {
    base = homeDirectory() / ".config";
  }
  return base / "zarvelin" / "zarvelin.ini";
}

std::optional<IniFile> Settings::read() const {
  IniFile file;
  if (!file.load(path_)) return std::nullopt;
  return file;
}

bool Settings::write(const IniFile& file) const {
  std::error_code ec;
  if (!path_.parent_path().empty()) fs::create_directories(path_.parent_path(), ec);
  return file.save(path_);
}

std::string Settings::getString(std::string_view section, std::string_view name,
                                std::string_view defaultValue) const {
  std::optional<IniFile> file = read();
  std::optional<std::string> value = file ? file->get(section, name) : std::nullopt;
  return value ? *value : std::string(defaultValue);
}

long Settings::getInt(std::string_view section, std::string_view name, long defaultValue) const {
  std::optional<IniFile> file = read();
  std::optional<std::string> value = file ? file->get(section, name) : std::nullopt;
  if (!value || value->empty()) return defaultValue;
  return leadingInteger(*value);
}

bool Settings::setString(std::string_view section, std::string_view name, std::string_view value) {
  // A file that exists but can't be read is never overwritten with a nearly empty one.
  std::optional<IniFile> file = read();
  if (file && file->set(section, name, value) && write(*file)) return true;
  showError(strprintf("Error writing [%s]%s to registry", std::string(section), std::string(name)));
  return false;
}

bool Settings::setInt(std::string_view section, std::string_view name, long value) {
  return setString(section, name, strprintf("%ld", value));
}

bool Settings::remove(std::string_view section, std::string_view name) {
  std::optional<IniFile> file = read();
  if (!file) return false;
  if (!file->remove(section, name)) return true;
  return write(*file);
}

fs::path programDirectory() {
  std::error_code ec;
  fs::path executable = fs::read_symlink("/proc/self/exe", ec);
  if (ec || executable.empty()) return fs::current_path(ec);
  return executable.parent_path();
}

}  // namespace zv
