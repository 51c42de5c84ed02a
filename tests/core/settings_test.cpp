#include "core/settings.h"

#include <cstdlib>

#include <gtest/gtest.h>

#include "core/headless_host.h"
#include "core/scratch_dir.h"

namespace zv {
namespace {

namespace fs = std::filesystem;
using test::ScratchDir;

/// Points the per-user store into a scratch directory for the life of the object.
class UserConfigHome {
 public:
  explicit UserConfigHome(const fs::path& home) {
    if (const char* old = std::getenv("XDG_CONFIG_HOME")) previous_ = old;
    ::setenv("XDG_CONFIG_HOME", home.c_str(), 1);
  }
  ~UserConfigHome() {
    if (previous_) {
      ::setenv("XDG_CONFIG_HOME", previous_->c_str(), 1);
    } else {
      ::unsetenv("XDG_CONFIG_HOME");
    }
  }

 private:
  std::optional<std::string> previous_;
};

TEST(Settings, ChoiceOfTheStore) {
  struct Case {
    const char* name;
    std::optional<std::string> tavlo;  ///< contents of tavlo.ini, none for no file
    const char* expectedFile;          ///< relative to the program directory; "" for per-user
    long expectedMaxUndo;
  };
  const Case cases[] = {
      {"empty Profile uses tavlo.ini itself", "[Redirect]\nProfile=\n[zarvel]\nMaxUndo=7\n",
       "tavlo.ini", 7},
      {"no Redirect section", "[zarvel]\nMaxUndo=6\n", "tavlo.ini", 6},
      {"relative Profile", "[Redirect]\nProfile=other.ini\n[zarvel]\nMaxUndo=7\n", "other.ini", 8},
      {"Profile with backslash", "[redirect]\nprofile=sub\\Other.ini\n", "sub/Other.ini", 9},
      {"no tavlo.ini", std::nullopt, "", 5},
  };
  for (const auto& c : cases) {
    ScratchDir dir;
    UserConfigHome userHome(dir / "config");
    fs::path program = dir / "bin";
    fs::create_directories(program);
    if (c.tavlo) dir.write("bin/tavlo.ini", *c.tavlo);
    dir.write("bin/other.ini", "[zarvel]\nMaxUndo=8\n");
    dir.write("bin/sub/Other.ini", "[zarvel]\nMaxUndo=9\n");
    dir.write("config/zarvelin/zarvelin.ini", "[zarvel]\nMaxUndo=5\n");

    Settings settings = Settings::forProgram(program);
    fs::path expected =
        *c.expectedFile ? program / c.expectedFile : dir / "config" / "zarvelin" / "zarvelin.ini";
    EXPECT_EQ(settings.path(), expected) << c.name;
    EXPECT_EQ(settings.iniForm(), c.tavlo.has_value()) << c.name;
    EXPECT_EQ(settings.getInt("zarvel", "MaxUndo", 50), c.expectedMaxUndo) << c.name;
  }
}

TEST(Settings, AbsoluteProfileStandsAsItIs) {
  ScratchDir dir;
  fs::path elsewhere = dir.write("elsewhere/mine.ini", "[zarvel]\nbinary=0\n");
  dir.write("bin/tavlo.ini", "[Redirect]\nProfile=" + elsewhere.string() + "\n");
  Settings settings = Settings::forProgram(dir / "bin");
  EXPECT_EQ(settings.path(), elsewhere);
  EXPECT_EQ(settings.getInt("zarvel", "binary", 1), 0);
}

TEST(Settings, UserStoreFollowsTheEnvironment) {
  ScratchDir dir;
  {
    UserConfigHome userHome(dir.path());
    EXPECT_EQ(Settings::userSettingsPath(), dir / "zarvelin" / "zarvelin.ini");
  }
  {
    UserConfigHome relativeHome("relative/dir");  // not absolute: ignored
    EXPECT_EQ(Settings::userSettingsPath().filename(), "zarvelin.ini");
    EXPECT_EQ(Settings::userSettingsPath().parent_path().parent_path().filename(), ".config");
  }
}

TEST(Settings, NumbersAndStrings) {
  ScratchDir dir;
  fs::path file = dir.write("s.ini",
                            "[zarvel]\nMaxUndo=\nMeasure=-1\nbinary=  0 \nCopyrightDelay=2500ms\n"
                            "gameSystem=Tiny\ncurDir=\nmaximized=x1\n");
  Settings settings = Settings::fromFile(file);
  EXPECT_TRUE(settings.iniForm());
  struct IntCase {
    const char* key;
    long defaultValue;
    long expected;
  };
  const IntCase ints[] = {
      {"MaxUndo", 50, 50},  // empty entry gives the default
      {"Measure", 3, -1},  {"binary", 1, 0},    {"CopyrightDelay", 0, 2500},
      {"missing", 42, 42}, {"maximized", 1, 0},  // no leading number reads as 0
  };
  for (const auto& c : ints) {
    EXPECT_EQ(settings.getInt("Zarvel", c.key, c.defaultValue), c.expected) << c.key;
  }
  EXPECT_EQ(settings.getString("zarvel", "gameSystem", "x"), "Tiny");
  EXPECT_EQ(settings.getString("zarvel", "curDir", "x"), "");  // present but empty
  EXPECT_EQ(settings.getString("zarvel", "defTemplate", "def"), "def");
}

TEST(Settings, WritesGoToTheFileAtOnce) {
  ScratchDir dir;
  fs::path file = dir.write("s.ini", "; mine\n[zarvel]\nMaxUndo=7\n");
  Settings first = Settings::fromFile(file);
  Settings second = Settings::fromFile(file);
  EXPECT_EQ(second.getInt("zarvel", "MaxUndo", 50), 7);

  ASSERT_TRUE(first.setInt("zarvel", "MaxUndo", 12));
  ASSERT_TRUE(first.setInt("zarvel", "DlgBGColor", -1));
  EXPECT_EQ(second.getInt("zarvel", "MaxUndo", 50), 12);
  ASSERT_TRUE(second.setString("Recent Files", "File0", "/home/u/R&D.chr"));
  ASSERT_TRUE(first.setString("zarvel", "Source Directory", "/srv/zarvel data"));
  EXPECT_EQ(ScratchDir::read(file),
            "; mine\n[zarvel]\nMaxUndo=12\nDlgBGColor=-1\nSource Directory=/srv/zarvel data\n"
            "[Recent Files]\nFile0=/home/u/R&D.chr\n");

  EXPECT_TRUE(first.remove("ZARVEL", "maxundo"));
  EXPECT_TRUE(first.remove("zarvel", "maxundo"));  // already gone counts as removed
  EXPECT_EQ(second.getInt("zarvel", "MaxUndo", 50), 50);
}

TEST(Settings, PerUserStoreIsCreatedOnFirstWrite) {
  ScratchDir dir;
  UserConfigHome userHome(dir / "fresh");
  Settings settings = Settings::forProgram(dir / "bin");
  EXPECT_FALSE(settings.iniForm());
  EXPECT_EQ(settings.getString("zarvel", "gameSystem", "none"), "none");
  ASSERT_TRUE(settings.setString("zarvel", "gameSystem", "Tiny"));
  EXPECT_EQ(ScratchDir::read(dir / "fresh" / "zarvelin" / "zarvelin.ini"),
            "[zarvel]\ngameSystem=Tiny\n");
}

TEST(Settings, FailedWriteIsReported) {
  ScratchDir dir;
  HeadlessHost headless(nullptr);
  HostInstallation installed(headless);
  dir.write("blocker", "a file where a directory should be");
  Settings settings = Settings::fromFile(dir / "blocker" / "s.ini");
  EXPECT_FALSE(settings.setInt("zarvel", "MaxUndo", 3));
  EXPECT_FALSE(settings.setString("Recent Files", "File0", "x"));
  // A key the file form cannot hold fails the same way.
  Settings good = Settings::fromFile(dir / "good.ini");
  EXPECT_FALSE(good.setString("zarvel", "a=b", "x"));
  EXPECT_EQ(headless.transcript(),
            (std::vector<std::string>{"[Error] Error writing [zarvel]MaxUndo to registry",
                                      "[Error] Error writing [Recent Files]File0 to registry",
                                      "[Error] Error writing [zarvel]a=b to registry"}));
}

TEST(Settings, ProgramDirectoryDoesNotFollowTheWorkingDirectory) {
  fs::path before = programDirectory();
  ASSERT_TRUE(before.is_absolute());
  ScratchDir dir;
  fs::path oldWorkingDir = fs::current_path();
  fs::current_path(dir.path());
  fs::path after = programDirectory();
  fs::current_path(oldWorkingDir);
  EXPECT_EQ(after, before);
  EXPECT_NE(after, dir.path());
}

}  // namespace
}  // namespace zv
