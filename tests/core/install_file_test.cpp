#include "core/install_file.h"

#include <gtest/gtest.h>

#include <cctype>
#include <iterator>
#include <string>
#include <vector>

#include "core/headless_host.h"
#include "scratch_dir.h"

namespace zv {
namespace {

namespace fs = std::filesystem;
using test::ScratchDir;

class InstallFileTest : public ::testing::Test {
 protected:
  HeadlessHost headless{nullptr};
  HostInstallation installation{headless};
  ScratchDir dir;

  const std::vector<std::string>& shown() const { return headless.transcript(); }
};

TEST(BackupName, ReplacesTheExtension) {
  EXPECT_EQ(backupName("/x/hero.chr"), fs::path("/x/hero.bak"));
  EXPECT_EQ(backupName("/x/hero.cst"), fs::path("/x/hero.bak"));
  EXPECT_EQ(backupName("/x/hero"), fs::path("/x/hero.bak"));
}

struct BackupCase {
  const char* target;
  bool makeBackups;
  bool oldBackup;
  const char* expectedTarget;
  const char* expectedBackup;  ///< null: no backup file at all
};

TEST_F(InstallFileTest, BackupRule) {
  const BackupCase cases[] = {
      {"hero.chr", true, false, "new", "old"},
      {"hero.chr", true, true, "new", "old"},            // the previous backup is replaced
      {"hero.chr", false, true, "new", "older backup"},  // left alone when backups are off
      {"hero.chr", false, false, "new", nullptr},
      {"hero.bak", true, false, "new", nullptr},  // a backup name is never backed up onto itself
      {"HERO.BAK", true, false, "new", nullptr},
  };
  for (const BackupCase& c : cases) {
    SCOPED_TRACE(std::string(c.target) + (c.makeBackups ? " with backups" : " without"));
    ScratchDir here;
    fs::path target = here.write(c.target, "old");
    if (c.oldBackup) here.write("hero.bak", "older backup");
    auto temporary = createTemporaryFile(here.path(), "cc");
    ASSERT_TRUE(temporary);
    here.write(temporary->filename().string(), "new");
    ASSERT_TRUE(installFile(*temporary, target, c.makeBackups));
    EXPECT_EQ(ScratchDir::read(target), c.expectedTarget);
    fs::path backup = here / "hero.bak";
    if (c.expectedBackup) {
      EXPECT_EQ(ScratchDir::read(backup), c.expectedBackup);
    } else if (backupName(target) != target) {
      EXPECT_FALSE(fs::exists(backup));
    } else {
      // The target is its own backup name: only the new file stands there.
      EXPECT_EQ(std::distance(fs::directory_iterator(here.path()), fs::directory_iterator()), 1);
    }
    EXPECT_FALSE(fs::exists(*temporary));
  }
  EXPECT_TRUE(shown().empty());
}

TEST_F(InstallFileTest, NewTargetNeedsNoBackup) {
  auto temporary = createTemporaryFile(dir.path(), "cc");
  ASSERT_TRUE(temporary);
  dir.write(temporary->filename().string(), "first");
  ASSERT_TRUE(installFile(*temporary, dir / "new.chr", true));
  EXPECT_EQ(ScratchDir::read(dir / "new.chr"), "first");
  EXPECT_FALSE(fs::exists(dir / "new.bak"));
}

TEST_F(InstallFileTest, TemporaryNamesAreNewAndShaped) {
  auto a = createTemporaryFile(dir.path(), "cc");
  auto b = createTemporaryFile(dir.path(), "ds");
  ASSERT_TRUE(a && b);
  EXPECT_NE(*a, *b);
  for (const fs::path* p : {&*a, &*b}) {
    std::string name = p->filename().string();
    ASSERT_EQ(name.size(), 8u);
    for (char c : name.substr(2))
      EXPECT_TRUE(std::isalnum(static_cast<unsigned char>(c)));
  }
  EXPECT_EQ(a->filename().string().substr(0, 2), "cc");
  EXPECT_EQ(b->filename().string().substr(0, 2), "ds");
}

TEST_F(InstallFileTest, TemporaryInMissingDirectoryFails) {
  EXPECT_FALSE(createTemporaryFile(dir / "no" / "such", "cc"));
  EXPECT_EQ(shown(), std::vector<std::string>{"[Error] Unable to create temporary file"});
}

// Each step of the rule failing in turn, with the disk's own operations otherwise.
struct FailureCase {
  const char* name;
  bool failRemoveBackup;
  std::errc renameTargetError;  ///< std::errc{} for success
  bool failFinalRename;
  bool expectInstalled;
  std::string expectedLine;
};

TEST_F(InstallFileTest, FailingStepsKeepTheOldFiles) {
  const FailureCase cases[] = {
      {"old backup can't be deleted", true, std::errc{}, false, false,
       "[Error] Unable to destroy previous backup of %T"},
      {"target can't become the backup", false, std::errc::permission_denied, false, false,
       "[Unable to Make Backup] Unable to rename backup file %T. Error code: 13"},
      {"target is held open", false, std::errc::device_or_resource_busy, false, false,
       "[Unable to Make Backup] Unable to rename backup file %T. Another application or process "
       "already has the file open."},
      {"temporary can't be renamed", false, std::errc{}, true, true,
       "[Error] Unable to rename temporary file %P to %T."},
  };
  for (const FailureCase& c : cases) {
    SCOPED_TRACE(c.name);
    ScratchDir here;
    fs::path target = here.write("hero.chr", "old");
    here.write("hero.bak", "older");
    auto temporary = createTemporaryFile(here.path(), "cc");
    ASSERT_TRUE(temporary);
    here.write(temporary->filename().string(), "new");

    FileOperations operations = FileOperations::disk();
    auto diskRemove = operations.remove;
    auto diskRename = operations.rename;
    operations.remove = [&](const fs::path& p, std::error_code& error) {
      if (c.failRemoveBackup && p.extension() == ".bak") {
        error = std::make_error_code(std::errc::permission_denied);
        return false;
      }
      return diskRemove(p, error);
    };
    operations.rename = [&](const fs::path& from, const fs::path& to, std::error_code& error) {
      if (from == target && c.renameTargetError != std::errc{}) {
        error = std::make_error_code(c.renameTargetError);
        return false;
      }
      if (from == *temporary && c.failFinalRename) {
        error = std::make_error_code(std::errc::io_error);
        return false;
      }
      return diskRename(from, to, error);
    };
    headless.clearTranscript();
    EXPECT_EQ(installFile(*temporary, target, true, operations), c.expectInstalled);

    std::string expected = c.expectedLine;
    if (auto at = expected.find("%T"); at != std::string::npos)
      expected.replace(at, 2, target.string());
    if (auto at = expected.find("%P"); at != std::string::npos)
      expected.replace(at, 2, temporary->string());
    EXPECT_EQ(shown(), std::vector<std::string>{expected});
    // The old file is never lost; the old backup goes only once the rule has deleted it to
    // make room for the new one.
    if (!c.expectInstalled) {
      EXPECT_EQ(ScratchDir::read(target), "old");
    }
    if (c.failRemoveBackup) {
      EXPECT_EQ(ScratchDir::read(here / "hero.bak"), "older");
    }
  }
}

}  // namespace
}  // namespace zv
