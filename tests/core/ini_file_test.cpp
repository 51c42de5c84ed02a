#include "core/ini_file.h"

#include <sys/stat.h>

#include <gtest/gtest.h>

#include "core/scratch_dir.h"

namespace zv {
namespace {

namespace fs = std::filesystem;
using test::ScratchDir;

const char* const kUserFile =
    "; written by hand\n"
    "[zarvel]\n"
    "Source Directory = C:\\Games\\Zarvel Data\\\n"
    "MaxUndo=7\n"
    "\n"
    "# not an entry\n"
    "[Recent Files]\n"
    "File0=\"  quoted  \"\n"
    "File1=a,b,c\n"
    "File2=50%20off\n"
    "[Preferences]\n"
    "Editor=\n";

struct GetCase {
  const char* section;
  const char* key;
  std::optional<std::string> expected;
};

TEST(IniFile, ReadsLikeAPrivateProfileFile) {
  IniFile ini;
  ini.parse(kUserFile);
  const GetCase cases[] = {
      {"zarvel", "Source Directory", "C:\\Games\\Zarvel Data\\"},
      {"ZARVEL", "source directory", "C:\\Games\\Zarvel Data\\"},
      {" Zarvel ", "  MAXUNDO ", "7"},
      {"Recent Files", "File0", "  quoted  "},
      {"recent files", "FILE1", "a,b,c"},
      {"Recent Files", "File2", "50%20off"},
      {"Preferences", "Editor", ""},
      {"Preferences", "editor", ""},
      {"Preferences", "MaxUndo", std::nullopt},
      {"zarvel", "Source", std::nullopt},
      {"zarvel", "# not an entry", std::nullopt},
      {"Missing", "File0", std::nullopt},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ini.get(c.section, c.key), c.expected) << c.section << "/" << c.key;
  }
}

TEST(IniFile, FirstOfDuplicateEntriesWinsAndCommentsAreNoEntries) {
  IniFile ini;
  ini.parse("[a]\nk=1\n;k=0\n[b]\nk=2\n[A]\nK=3\nnew=4\n");
  EXPECT_EQ(ini.get("a", "k"), "1");
  EXPECT_EQ(ini.get("a", "new"), "4");  // a second section of that name adds to the first
  EXPECT_EQ(ini.get("b", "k"), "2");
  EXPECT_EQ(ini.sections(), (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(ini.keys("A"), (std::vector<std::string>{"k", "new"}));
}

TEST(IniFile, ChangesKeepEverythingElseInPlace) {
  IniFile ini;
  ini.parse(kUserFile);
  ASSERT_TRUE(ini.set("ZARVEL", "maxundo", "12"));
  ASSERT_TRUE(ini.set("zarvel", "gameSystem", "Tiny"));
  ASSERT_TRUE(ini.set("Preferences", "Editor", "vi"));
  ASSERT_TRUE(ini.set("GameSystems", "system0", "Tiny"));
  ASSERT_TRUE(ini.set("zarvel", "Source Directory", "/srv/data"));
  EXPECT_EQ(ini.text(),
            "; written by hand\n"
            "[zarvel]\n"
            "Source Directory = /srv/data\n"
            "MaxUndo=12\n"
            "gameSystem=Tiny\n"
            "\n"
            "# not an entry\n"
            "[Recent Files]\n"
            "File0=\"  quoted  \"\n"
            "File1=a,b,c\n"
            "File2=50%20off\n"
            "[Preferences]\n"
            "Editor=vi\n"
            "[GameSystems]\n"
            "system0=Tiny\n");
}

TEST(IniFile, ValuesReadBackAsWritten) {
  const std::string values[] = {
      "",      "plain",     "  leading",       "trailing\t", "\"quoted\"", "\"",
      "a=b=c", "C:\\dir\\", "; not a comment", "[x]",        "50% \xBD",
  };
  for (const std::string& value : values) {
    IniFile written;
    ASSERT_TRUE(written.set("S", "Key With Spaces\\and backslash", value)) << value;
    IniFile reread;
    reread.parse(written.text());
    EXPECT_EQ(reread.get("s", "key with spaces\\AND BACKSLASH"), value) << written.text();
  }
}

TEST(IniFile, RefusesNamesTheFormCannotHold) {
  struct Case {
    const char* section;
    const char* key;
    const char* value;
  };
  const Case cases[] = {
      {"S", "", "v"},   {"S", "  ", "v"},   {"S", "a=b", "v"}, {"S", "[k", "v"},  {"S", ";k", "v"},
      {"S]", "k", "v"}, {"S", "k", "a\nb"}, {"S", "k\r", "v"}, {"S\n", "k", "v"},
  };
  for (const auto& c : cases) {
    IniFile ini;
    ini.parse("[S]\nk=old\n");
    EXPECT_FALSE(ini.set(c.section, c.key, c.value)) << c.section << "/" << c.key;
    EXPECT_EQ(ini.text(), "[S]\nk=old\n");
  }
}

TEST(IniFile, RemoveTakesEveryEntryOfTheKey) {
  IniFile ini;
  ini.parse("[a]\nk=1\nj=2\n[A]\nK=3\n[b]\nk=4\n");
  EXPECT_TRUE(ini.remove("A", "k"));
  EXPECT_FALSE(ini.remove("a", "k"));
  EXPECT_EQ(ini.text(), "[a]\nj=2\n[A]\n[b]\nk=4\n");
}

TEST(IniFile, KeepsWindowsLineEnds) {
  IniFile ini;
  ini.parse("[zarvel]\r\nMaxUndo=7\r\n");
  EXPECT_EQ(ini.get("zarvel", "MaxUndo"), "7");
  ini.set("zarvel", "binary", "0");
  EXPECT_EQ(ini.text(), "[zarvel]\r\nMaxUndo=7\r\nbinary=0\r\n");
}

TEST(IniFile, LoadAndSaveFiles) {
  ScratchDir dir;
  IniFile ini;
  EXPECT_TRUE(ini.load(dir / "missing.ini"));
  EXPECT_TRUE(ini.empty());

  fs::path file = dir.write("user.ini", kUserFile);
  ASSERT_EQ(::chmod(file.c_str(), 0640), 0);
  ASSERT_TRUE(ini.load(file));
  ini.set("zarvel", "MaxUndo", "9");
  ASSERT_TRUE(ini.save(file));
  IniFile reread;
  ASSERT_TRUE(reread.load(file));
  EXPECT_EQ(reread.get("zarvel", "maxundo"), "9");
  EXPECT_EQ(reread.get("zarvel", "Source Directory"), "C:\\Games\\Zarvel Data\\");
  EXPECT_EQ(fs::status(file).permissions() & fs::perms::all,
            fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
  // No temporary file is left beside it.
  EXPECT_EQ(std::distance(fs::directory_iterator(dir.path()), fs::directory_iterator()), 1);
}

TEST(IniFile, SaveThroughALinkReplacesTheFileItNames) {
  ScratchDir dir;
  fs::path real = dir.write("real.ini", "[a]\nk=1\n");
  fs::create_symlink("real.ini", dir / "link.ini");
  IniFile ini;
  ASSERT_TRUE(ini.load(dir / "link.ini"));
  ini.set("a", "k", "2");
  ASSERT_TRUE(ini.save(dir / "link.ini"));
  EXPECT_TRUE(fs::is_symlink(dir / "link.ini"));
  EXPECT_EQ(ScratchDir::read(real), "[a]\nk=2\n");
}

TEST(IniFile, FailedSaveLeavesTheTargetAndNoTemporaryFile) {
  ScratchDir dir;
  IniFile ini;
  ini.parse("[a]\nk=1\n");
  // A directory can't be replaced by a file, so the final rename fails.
  dir.write("taken.ini/inner.txt", "keep");
  EXPECT_FALSE(ini.save(dir / "taken.ini"));
  EXPECT_EQ(ScratchDir::read(dir / "taken.ini" / "inner.txt"), "keep");
  EXPECT_EQ(std::distance(fs::directory_iterator(dir.path()), fs::directory_iterator()), 1);
  // A directory that doesn't exist fails before anything is written.
  EXPECT_FALSE(ini.save(dir / "no such dir" / "x.ini"));
}

}  // namespace
}  // namespace zv
