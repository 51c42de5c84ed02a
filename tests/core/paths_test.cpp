#include "core/paths.h"

#include <gtest/gtest.h>

#include <fstream>

#include "core/scratch_dir.h"

namespace zv {
namespace {

namespace fs = std::filesystem;
using test::ScratchDir;

TEST(Paths, FindDataFile) {
  ScratchDir dir;
  dir.write("tiny.cds", "");
  dir.write("Core.MDS", "");
  dir.write("Sub Dir/Extra.scp", "");
  dir.write("both/Same.pref", "");
  dir.write("both/same.pref", "");
  const fs::path data = dir.path();
  struct Case {
    const char* name;
    fs::path expected;
  };
  const Case cases[] = {
      {"tiny.cds", data / "tiny.cds"},
      {"Tiny.cds", data / "tiny.cds"},
      {"TINY.CDS", data / "tiny.cds"},
      {"core.mds", data / "Core.MDS"},
      {"sub dir\\extra.SCP", data / "Sub Dir" / "Extra.scp"},
      {"SUB DIR/EXTRA.scp", data / "Sub Dir" / "Extra.scp"},
      {"both\\same.pref", data / "both" / "same.pref"},  // the exact name first
      {"both\\SAME.PREF", data / "both" / "Same.pref"},  // then the first in name order
      {"C:\\Games\\Zarvel\\TINY.cds", data / "tiny.cds"},
      {"missing.cds", data / "missing.cds"},
      {"nodir\\tiny.cds", data / "nodir" / "tiny.cds"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(findDataFile(data, c.name), c.expected) << c.name;
  }
  // An absolute name stands, and is matched ignoring case as well.
  fs::path elsewhere = dir.write("elsewhere/Other.cds", "");
  EXPECT_EQ(findDataFile(data / "Sub Dir", elsewhere.string()), elsewhere);
  std::string upper = (dir.path() / "ELSEWHERE" / "other.CDS").string();
  EXPECT_EQ(findDataFile(data / "Sub Dir", upper), elsewhere);
}

TEST(Paths, TemporaryDirectoryIsMadeOnDemand) {
  ScratchDir dir;
  fs::path temp = temporaryDirectory(dir.path());
  EXPECT_EQ(temp, dir / "temp");
  EXPECT_TRUE(fs::is_directory(temp));
  EXPECT_EQ(temporaryDirectory(dir.path()), temp);  // again: already there
}

TEST(Paths, DefaultDataDirectoryOfAnInstalledProgramIsItsSharedData) {
  ScratchDir dir;
  const std::filesystem::path bin = dir.path() / "usr" / "bin";
  std::filesystem::create_directories(bin);
  // A program in a build tree (no share/ beside its folder) keeps its own directory.
  EXPECT_EQ(defaultDataDirectory(bin), bin);
  // A file of that name is not the data folder.
  std::filesystem::create_directories(dir.path() / "usr" / "share" / "zarvelin");
  std::ofstream(dir.path() / "usr" / "share" / "zarvelin" / "data") << "not a folder";
  EXPECT_EQ(defaultDataDirectory(bin), bin);
  std::filesystem::remove(dir.path() / "usr" / "share" / "zarvelin" / "data");
  std::filesystem::create_directories(dir.path() / "usr" / "share" / "zarvelin" / "data");
  EXPECT_EQ(defaultDataDirectory(bin), dir.path() / "usr" / "share" / "zarvelin" / "data");
}

TEST(Paths, ShortNamesAndExtensions) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"/home/u/Tiny.CHR", "Tiny.CHR", ".chr"},
      {"C:\\data\\Core.Cds", "Core.Cds", ".cds"},
      {"mixed/dir\\x.tar.GZ", "x.tar.GZ", ".gz"},
      {"noext", "noext", ""},
      {"/dir.d/noext", "noext", ""},
      {".hidden", ".hidden", ""},
      {"trailing.", "trailing.", "."},
      {"/dir/", "", ""},
  };
  for (const auto& [path, shortName, extension] : cases) {
    EXPECT_EQ(shortFileName(path), shortName) << path;
    EXPECT_EQ(extensionOf(path), extension) << path;
  }
  EXPECT_EQ(toNativeSeparators("a\\b/c\\"), "a/b/c/");
}

}  // namespace
}  // namespace zv
