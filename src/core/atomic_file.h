#pragma once
// Whole-file writes that never leave a damaged file behind.

#include <filesystem>
#include <string_view>

namespace zv {

/// Writes `bytes` to a temporary file in the directory of `path`, flushes it to disk and renames
/// it over `path`. A symbolic link is followed, so the file it names is the one replaced; the
/// permissions of a file already there are kept. On failure the temporary file is removed, the
/// old file is untouched and false is returned.
bool writeFileAtomically(const std::filesystem::path& path, std::string_view bytes);

}  // namespace zv
