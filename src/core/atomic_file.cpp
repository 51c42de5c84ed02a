#include "core/atomic_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>
#include <vector>

namespace zv {

namespace fs = std::filesystem;

namespace {

/// The file a write to `path` should replace: the end of a chain of symbolic links.
fs::path replacementTarget(const fs::path& path) {
  std::error_code ec;
  fs::path target = path;
  for (int hops = 0; hops < 32 && fs::is_symlink(target, ec); ++hops) {
    fs::path next = fs::read_symlink(target, ec);
    if (ec) break;
    target = next.is_absolute() ? next : target.parent_path() / next;
  }
  return target;
}

bool writeAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    ssize_t written = ::write(fd, bytes.data(), bytes.size());
    if (written < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    bytes.remove_prefix(static_cast<size_t>(written));
  }
  return true;
}

}  // namespace

bool writeFileAtomically(const fs::path& path, std::string_view bytes) {
  const fs::path target = replacementTarget(path);
  fs::path directory = target.parent_path();
  if (directory.empty()) directory = ".";
  std::string hiddenName = ".";
  hiddenName += target.filename().string();
  hiddenName += ".XXXXXX";
  std::string pattern = (directory / hiddenName).string();
  std::vector<char> name(pattern.begin(), pattern.end());
  name.push_back('\0');

  int fd = ::mkstemp(name.data());
  if (fd < 0) return false;
  const fs::path temporary(name.data());

  struct stat old {};
  bool ok = writeAll(fd, bytes);
  if (ok) {
    // mkstemp makes the file private; keep the old file's mode, or give a new one the usual mode.
    mode_t mode = 0;
    if (::stat(target.c_str(), &old) == 0) {
      mode = old.st_mode & 07777;
    } else {
      mode_t mask = ::umask(0);
      ::umask(mask);
      mode = 0666 & ~mask;
    }
    ok = ::fchmod(fd, mode) == 0;
  }
  if (ok) ok = ::fsync(fd) == 0;
  if (::close(fd) != 0) ok = false;
  if (ok) ok = ::rename(temporary.c_str(), target.c_str()) == 0;
  if (!ok) {
    std::error_code ignored;
    fs::remove(temporary, ignored);
  }
  return ok;
}

}  // namespace zv
