#pragma once
// Where game system data are found. Names read from data may use "\" or "/" to separate
// directories, and were often written on systems that ignore case, so a short name is looked up
// in the data directory ignoring case when the exact name isn't there.

#include <filesystem>
#include <string>
#include <string_view>

namespace zv {

/// Name of the directory under dataDir that holds temporary files.
inline constexpr std::string_view kTemporaryDirName = "temp";

/// The name with every "\" turned into "/".
std::string toNativeSeparators(std::string_view name);

/// The file that a name read from data stands for. A relative name (either separator) lies under
/// `dataDir`; an absolute one stands as it is; one with a drive letter ("C:\x\y.cds") is looked
/// for by its last component in `dataDir`. When the exact path doesn't exist, each component is
/// matched ignoring case; when nothing matches, the exact path is returned.
std::filesystem::path findDataFile(const std::filesystem::path& dataDir,
                                   std::string_view shortName);

/// Where game system data live when the setting "Source Directory" is empty: the
/// `share/zarvelin/data` of an installed program (beside its `bin` folder) when there is one,
/// else the program's own directory.
std::filesystem::path defaultDataDirectory(const std::filesystem::path& programDir);

/// dataDir/"temp", created when missing.
std::filesystem::path temporaryDirectory(const std::filesystem::path& dataDir);

/// The last component of a path, either separator counting.
std::string shortFileName(const std::filesystem::path& path);
/// The extension of the last component in lower case with its dot (".chr"), or empty.
std::string extensionOf(const std::filesystem::path& path);

}  // namespace zv
