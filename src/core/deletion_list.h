#pragma once
// Files that could not be deleted while in use are remembered in "QXDeleteFileList.txt" in the
// temporary directory, one path a line, and deleted at exit.

#include <filesystem>
#include <string_view>

namespace zv {

inline constexpr std::string_view kDeletionListName = "QXDeleteFileList.txt";

/// Appends `path` to the list in `tempDir`. Returns false when the list can't be written.
bool addToDeletionList(const std::filesystem::path& tempDir, const std::filesystem::path& path);

/// Deletes each file on the list in `tempDir`. The list itself is deleted when every file is gone
/// (deleted now or already missing); otherwise it is rewritten with the files that remain.
/// Returns the number of files that could not be deleted.
int processDeletionList(const std::filesystem::path& tempDir);

}  // namespace zv
