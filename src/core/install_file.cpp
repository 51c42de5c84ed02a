#include "core/install_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <random>
#include <string>

#include "core/messages.h"
#include "core/text.h"

namespace zv {

namespace fs = std::filesystem;

const FileOperations& FileOperations::disk() {
  static const FileOperations operations{
      [](const fs::path& path) {
        std::error_code ignored;
        return fs::exists(fs::symlink_status(path, ignored));
      },
      [](const fs::path& path, std::error_code& error) { return fs::remove(path, error); },
      [](const fs::path& from, const fs::path& to, std::error_code& error) {
        fs::rename(from, to, error);
        return !error;
      }};
  return operations;
}

fs::path backupName(const fs::path& target) {
  fs::path backup = target;
  backup.replace_extension(".bak");
  return backup;
}

std::optional<fs::path> createTemporaryFile(const fs::path& directory, std::string_view prefix) {
  static constexpr std::string_view kCharacters =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
  // The name only has to be new; O_EXCL makes sure of that, so any seed will do.
  std::minstd_rand generator(static_cast<unsigned>(std::random_device{}()));
  std::uniform_int_distribution<size_t> pick(0, kCharacters.size() - 1);
  for (int attempt = 0; attempt < 100; ++attempt) {
    std::string name(prefix);
    for (int i = 0; i < 6; ++i)
      name += kCharacters[pick(generator)];
    fs::path candidate = directory / name;
    int descriptor = ::open(candidate.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor >= 0) {
      ::close(descriptor);
      return candidate;
    }
    if (errno != EEXIST) break;
  }
  showError("Unable to create temporary file");
  return std::nullopt;
}

namespace {

bool isSharingError(const std::error_code& error) {
  return error == std::errc::device_or_resource_busy || error == std::errc::text_file_busy;
}

}  // namespace

bool installFile(const fs::path& temporary, const fs::path& target, bool makeBackups,
                 const FileOperations& operations) {
  const fs::path backup = backupName(target);
  const std::string targetName = target.string();
  std::error_code error;
  if (makeBackups && !equalsIgnoringCase(backup.string(), targetName)) {
    if (operations.exists(backup) && !operations.remove(backup, error)) {
      showError(strprintf("Unable to destroy previous backup of %s", targetName));
      return false;
    }
    if (operations.exists(target) && !operations.rename(target, backup, error)) {
      if (isSharingError(error))
        showTitled(Severity::Error, "Unable to Make Backup",
                   strprintf("Unable to rename backup file %s. Another application or process "
                             "already has the file open.",
                             targetName));
      else
        showTitled(Severity::Error, "Unable to Make Backup",
                   strprintf("Unable to rename backup file %s. Error code: %d", targetName,
                             error.value()));
      return false;
    }
  } else if (operations.exists(target)) {
    // A failure here shows through the rename below, which can't replace what is in the way.
    operations.remove(target, error);
  }
  if (!operations.rename(temporary, target, error))
    showError(
        strprintf("Unable to rename temporary file %s to %s.", temporary.string(), targetName));
  return true;
}

}  // namespace zv
