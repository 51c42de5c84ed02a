#include "core/paths.h"

#include <system_error>

#include "core/text.h"

namespace zv {

namespace fs = std::filesystem;

namespace {

bool hasDriveLetter(std::string_view name) {
  return name.size() >= 2 && name[1] == ':' && isLetterChar(static_cast<unsigned char>(name[0])) &&
         static_cast<unsigned char>(name[0]) < 0x80;
}

/// The entry of `directory` whose name equals `name` ignoring case; the first in name order when
/// several do. Empty when none does.
fs::path findIgnoringCase(const fs::path& directory, const std::string& name) {
  std::error_code ec;
  fs::path best;
  for (fs::directory_iterator it(directory, ec), end; !ec && it != end; it.increment(ec)) {
    std::string candidate = it->path().filename().string();
    if (!equalsIgnoringCase(candidate, name)) continue;
    if (best.empty() || candidate < best.filename().string()) best = it->path();
  }
  return best;
}

/// `base` followed by the components of `relative`, each found ignoring case where the exact
/// one is missing. Empty when some component can't be found.
fs::path resolveIgnoringCase(const fs::path& base, const fs::path& relative) {
  fs::path current = base;
  std::error_code ec;
  for (const fs::path& part : relative) {
    fs::path exact = current / part;
    if (part == "." || part == ".." || fs::exists(exact, ec)) {
      current = exact;
      continue;
    }
    fs::path found = findIgnoringCase(current, part.string());
    if (found.empty()) return {};
    current = found;
  }
  return current;
}

}  // namespace

std::string toNativeSeparators(std::string_view name) {
  std::string out(name);
  for (char& c : out) {
    if (c == '\\') c = '/';
  }
  return out;
}

fs::path findDataFile(const fs::path& dataDir, std::string_view shortName) {
  fs::path base = dataDir;
  fs::path relative;
  if (hasDriveLetter(shortName)) {
    relative = shortFileName(fs::path(std::string(shortName)));
  } else {
    fs::path name(toNativeSeparators(shortName));
    if (name.is_absolute()) {
      base = name.root_path();
      relative = name.relative_path();
    } else {
      relative = name;
    }
  }
  fs::path exact = base / relative;
  std::error_code ec;
  if (fs::exists(exact, ec)) return exact;
  fs::path found = resolveIgnoringCase(base, relative);
  return found.empty() ? exact : found;
}

fs::path temporaryDirectory(const fs::path& dataDir) {
  fs::path directory = dataDir / kTemporaryDirName;
  std::error_code ec;
  fs::create_directories(directory, ec);
  return directory;
}

std::string shortFileName(const fs::path& path) {
  const std::string text = path.string();
  size_t separator = text.find_last_of("/\\");
  return separator == std::string::npos ? text : text.substr(separator + 1);
}

std::string extensionOf(const fs::path& path) {
  const std::string name = shortFileName(path);
  size_t dot = name.rfind('.');
  if (dot == std::string::npos || dot == 0) return std::string();
  return toLower(std::string_view(name).substr(dot));
}

std::filesystem::path defaultDataDirectory(const std::filesystem::path& programDir) {
  const std::filesystem::path installed = programDir.parent_path() / "share" / "zarvelin" / "data";
  std::error_code error;
  if (std::filesystem::is_directory(installed, error)) return installed;
  return programDir;
}

}  // namespace zv
