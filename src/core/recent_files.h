#pragma once
// The recent file list: at most eight paths, the newest first, kept in section "Recent Files" as
// "File0" to "File7" and shown as menu commands 1062 to 1069.

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "core/settings.h"

namespace zv {

inline constexpr std::string_view kRecentFilesSection = "Recent Files";
inline constexpr int kFirstRecentFileCommand = 1062;
inline constexpr int kLastRecentFileCommand = 1069;
/// The disabled menu entry shown while the list is empty.
inline constexpr std::string_view kEmptyRecentFilesText = "Recent Files";

class RecentFiles {
 public:
  static constexpr size_t kCapacity = 8;

  /// Puts `path` at the front. One already in the list (compared ignoring case) moves there;
  /// otherwise, when the list is full, the oldest entry is dropped.
  void add(const std::string& path);
  /// Replaces the list by "File0".."File7" of the store, skipping empty entries.
  void load(const Settings& settings);
  /// Writes "File0".."File7", empty for unused places.
  void save(Settings& settings) const;
  void clear() { entries_.clear(); }

  const std::vector<std::string>& entries() const { return entries_; }
  size_t size() const { return entries_.size(); }
  bool empty() const { return entries_.empty(); }

  /// The menu command of the entry at `index` (0 is the newest).
  static int commandFor(size_t index) { return kFirstRecentFileCommand + static_cast<int>(index); }
  /// The index of the entry that a menu command opens; -1 for other commands.
  static int indexForCommand(int command);

  /// The text of a menu item, "&%d %s": the path relative to `workingDir` when it lies under it,
  /// shortened in the middle to `maxChars` (0: no limit), "&" doubled, at most 254 characters.
  /// The menu numbers its entries from 1.
  static std::string menuText(int number, const std::string& path,
                              const std::filesystem::path& workingDir, size_t maxChars);

 private:
  std::vector<std::string> entries_;
};

/// Shortens a text to `maxChars` by putting "..." in place of its middle. The file name at the end
/// is kept whole when it fits, with as much of the beginning as there is room for; otherwise the
/// beginning and the end are kept in equal parts.
std::string shortenInMiddle(std::string_view text, size_t maxChars);

}  // namespace zv
