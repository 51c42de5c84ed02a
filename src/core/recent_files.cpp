#include "core/recent_files.h"

#include <algorithm>

#include "core/strfmt.h"
#include "core/text.h"

namespace zv {

namespace {

constexpr size_t kMenuTextLimit = 254;

std::string keyFor(size_t index) {
  return strprintf("File%d", static_cast<int>(index));
}

/// The part of `path` below `workingDir`, or `path` itself when it lies elsewhere.
std::string relativeToWorkingDir(const std::string& path, const std::filesystem::path& workingDir) {
  if (workingDir.empty()) return path;
  std::filesystem::path full = std::filesystem::path(path).lexically_normal();
  std::filesystem::path base = workingDir.lexically_normal();
  if (!full.is_absolute() || !base.is_absolute()) return path;
  std::filesystem::path relative = full.lexically_relative(base);
  if (relative.empty() || relative == ".") return path;
  if (*relative.begin() == "..") return path;
  return relative.string();
}

std::string doubleAmpersands(std::string_view text) {
  std::string out;
  for (char c : text) {
    out += c;
    if (c == '&') out += '&';
  }
  return out;
}

}  // namespace

void RecentFiles::add(const std::string& path) {
  auto same = [&](const std::string& entry) { return equalsIgnoringCase(entry, path); };
  auto found = std::find_if(entries_.begin(), entries_.end(), same);
  if (found != entries_.end()) {
    entries_.erase(found);
  } else if (entries_.size() >= kCapacity) {
    entries_.pop_back();
  }
  entries_.insert(entries_.begin(), path);
}

void RecentFiles::load(const Settings& settings) {
  entries_.clear();
  for (size_t i = 0; i < kCapacity; ++i) {
    std::string path = settings.getString(kRecentFilesSection, keyFor(i), "");
    if (path.empty()) continue;
    bool seen = std::any_of(entries_.begin(), entries_.end(), [&](const std::string& entry) {
      return equalsIgnoringCase(entry, path);
    });
    if (!seen) entries_.push_back(path);
  }
}

void RecentFiles::save(Settings& settings) const {
  for (size_t i = 0; i < kCapacity; ++i) {
    settings.setString(kRecentFilesSection, keyFor(i), i < entries_.size() ? entries_[i] : "");
  }
}

int RecentFiles::indexForCommand(int command) {
  if (command < kFirstRecentFileCommand || command > kLastRecentFileCommand) return -1;
  return command - kFirstRecentFileCommand;
}

std::string shortenInMiddle(std::string_view text, size_t maxChars) {
  static constexpr std::string_view kEllipsis = "...";
  if (maxChars == 0 || text.size() <= maxChars) return std::string(text);
  if (maxChars <= kEllipsis.size()) return std::string(kEllipsis.substr(0, maxChars));
  const size_t keep = maxChars - kEllipsis.size();
  // Keep the file name (with its separator) whole at the end when it fits; otherwise keep as
  // much of the beginning as of the end.
  size_t nameStart = text.find_last_of("/\\");
  size_t tail = keep - keep / 2;
  if (nameStart != std::string_view::npos && text.size() - nameStart <= keep) {
    tail = text.size() - nameStart;
  }
  size_t head = keep - tail;
  return std::string(text.substr(0, head)) + std::string(kEllipsis) +
         std::string(text.substr(text.size() - tail));
}

std::string RecentFiles::menuText(int number, const std::string& path,
                                  const std::filesystem::path& workingDir, size_t maxChars) {
  std::string shown = shortenInMiddle(relativeToWorkingDir(path, workingDir), maxChars);
  std::string text = strprintf("&%d ", number) + doubleAmpersands(shown);
  if (text.size() > kMenuTextLimit) {
    text.resize(kMenuTextLimit);
    // Don't leave half of a doubled "&" at the end: count the run of ampersands it ends with.
    size_t run = 0;
    while (run < text.size() && text[text.size() - 1 - run] == '&')
      ++run;
    if (run % 2 == 1) text.pop_back();
  }
  return text;
}

}  // namespace zv
