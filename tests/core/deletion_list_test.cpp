#include "core/deletion_list.h"

#include <gtest/gtest.h>

#include "core/scratch_dir.h"

namespace zv {
namespace {

namespace fs = std::filesystem;
using test::ScratchDir;

TEST(DeletionList, EveryFileGoneRemovesTheList) {
  ScratchDir dir;
  fs::path temp = dir / "temp";
  fs::path a = dir.write("temp/a.tmp", "a");
  fs::path b = dir.write("other place/b.tmp", "b");
  ASSERT_TRUE(addToDeletionList(temp, a));
  ASSERT_TRUE(addToDeletionList(temp, b));
  ASSERT_TRUE(addToDeletionList(temp, dir / "never existed.tmp"));
  EXPECT_EQ(ScratchDir::read(temp / "QXDeleteFileList.txt"),
            a.string() + "\n" + b.string() + "\n" + (dir / "never existed.tmp").string() + "\n");

  EXPECT_EQ(processDeletionList(temp), 0);
  EXPECT_FALSE(fs::exists(a));
  EXPECT_FALSE(fs::exists(b));
  EXPECT_FALSE(fs::exists(temp / "QXDeleteFileList.txt"));
}

TEST(DeletionList, FailuresStayOnTheList) {
  ScratchDir dir;
  fs::path temp = dir / "temp";
  fs::path gone = dir.write("gone.tmp", "x");
  fs::path busy =
      dir.write("busy/inside.txt", "a directory with something in it can't go").parent_path();
  // A list written elsewhere, with Windows line ends and a blank line.
  dir.write("temp/QXDeleteFileList.txt", gone.string() + "\r\n\r\n" + busy.string() + "\r\n");

  EXPECT_EQ(processDeletionList(temp), 1);
  EXPECT_FALSE(fs::exists(gone));
  EXPECT_TRUE(fs::exists(busy));
  EXPECT_EQ(ScratchDir::read(temp / "QXDeleteFileList.txt"), busy.string() + "\n");

  fs::remove(busy / "inside.txt");
  EXPECT_EQ(processDeletionList(temp), 0);
  EXPECT_FALSE(fs::exists(busy));
  EXPECT_FALSE(fs::exists(temp / "QXDeleteFileList.txt"));
}

TEST(DeletionList, NoListIsNothingToDo) {
  ScratchDir dir;
  EXPECT_EQ(processDeletionList(dir / "temp"), 0);
  EXPECT_FALSE(fs::exists(dir / "temp"));
}

}  // namespace
}  // namespace zv
