#pragma once
// Saving a document without ever harming the file it replaces: the new contents go to a
// temporary file in the target's directory, which is then installed by the backup rule (the old
// file becomes the ".bak" of the new one).

#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>
#include <system_error>

namespace zv {

/// The file operations the backup rule needs. Tests replace them to make any step fail; the
/// defaults act on the disk.
struct FileOperations {
  std::function<bool(const std::filesystem::path&)> exists;
  /// Deletes a file; false with `error` set when it can't.
  std::function<bool(const std::filesystem::path&, std::error_code& error)> remove;
  /// Renames `from` to `to`, replacing `to`; false with `error` set when it can't.
  std::function<bool(const std::filesystem::path& from, const std::filesystem::path& to,
                     std::error_code& error)>
      rename;

  /// The operations on the real file system.
  static const FileOperations& disk();
};

/// The backup name of a file: its extension replaced by ".bak" ("hero.chr" gives "hero.bak").
std::filesystem::path backupName(const std::filesystem::path& target);

/// Creates a new empty file named `prefix` followed by six letters or digits in `directory`
/// ("ccA1b2C3"), never one that exists. Shows "Unable to create temporary file" and gives
/// nullopt when it can't.
std::optional<std::filesystem::path> createTemporaryFile(const std::filesystem::path& directory,
                                                         std::string_view prefix);

/// Installs `temporary` as `target` by the backup rule. With `makeBackups`, unless the target is
/// itself a backup name, an old backup is deleted and the old target renamed to the backup;
/// otherwise the old target is deleted. Then the temporary is renamed to the target. Returns
/// false when nothing was installed (the reason has been shown and the temporary remains for the
/// caller to delete). A failure of the last rename is shown but counts as done.
bool installFile(const std::filesystem::path& temporary, const std::filesystem::path& target,
                 bool makeBackups, const FileOperations& operations = FileOperations::disk());

}  // namespace zv
