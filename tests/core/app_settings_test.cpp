#include "core/app_settings.h"

#include <set>

#include <gtest/gtest.h>

#include "core/scratch_dir.h"

namespace zv {
namespace {

namespace fs = std::filesystem;
using test::ScratchDir;

struct Expected {
  const char* section;
  const char* key;
  const char* defaultText;
};

// The two tables of the program's settings, key by key.
const Expected kTables[] = {
    {"zarvel", "Source Directory", ""},
    {"zarvel", "screenPos", ""},
    {"zarvel", "selectItemDlgRect", ""},
    {"zarvel", "gameSystem", ""},
    {"zarvel", "MaxUndo", "50"},
    {"zarvel", "maximized", "0"},
    {"zarvel", "binary", "1"},
    {"zarvel", "editAddedOptions", "1"},
    {"zarvel", "SnapToGrid", "0"},
    {"zarvel", "ShowRuler", "1"},
    {"zarvel", "OverlappingWindows", "0"},
    {"zarvel", "PrintAssociatedFiles", "1"},
    {"zarvel", "ApplyRules", "0"},
    {"zarvel", "Measure", "-1"},
    {"zarvel", "curDir", ""},
    {"zarvel", "defTemplate", ""},
    {"zarvel", "NewFileGameSystem", ""},
    {"zarvel", "CopyrightDelay", "0"},
    {"Preferences", "showButtonBar", "1"},
    {"Preferences", "showStatusBar", "1"},
    {"Preferences", "showTipWindow", "1"},
    {"Preferences", "ShowRules", "1"},
    {"Preferences", "ConfirmMultipleDeletions", "1"},
    {"Preferences", "Short File Names", "0"},
    {"Preferences", "ShowNamesOnly", "0"},
    {"Preferences", "CheckReq", "1"},
    {"Preferences", "DisallowIfNotSatisfied", "0"},
    {"Preferences", "NoBadValueDlg", "0"},
    {"Preferences", "MakeBackups", "1"},
    {"Preferences", "ShowHourGlass", "1"},
    {"Preferences", "AskForFilters", "1"},
    {"Preferences", "UseFractions", "1"},
    {"Preferences", "setDlgBGColor", "0"},
    {"Preferences", "DlgBGColor", "-1"},
    {"Preferences", "Editor", ""},
};

TEST(AppSettings, DefaultsTableHasEveryKeyOnce) {
  const auto& table = settingDefaults();
  ASSERT_EQ(table.size(), std::size(kTables));
  for (size_t i = 0; i < table.size(); ++i) {
    EXPECT_EQ(table[i].section, kTables[i].section) << i;
    EXPECT_EQ(table[i].key, kTables[i].key) << i;
    EXPECT_EQ(table[i].defaultText, kTables[i].defaultText) << kTables[i].key;
  }
}

TEST(AppSettings, MembersStartAtTheirDefaults) {
  const AppSettings fresh;
  for (const Expected& row : kTables) {
    if (std::string_view(row.key) == "Source Directory") continue;
    EXPECT_EQ(fresh.valueText(row.section, row.key), row.defaultText) << row.key;
  }
  EXPECT_EQ(fresh.valueText("zarvel", "Recent Files"), std::nullopt);
  EXPECT_EQ(fresh.valueText("Preferences", "MaxUndo"), std::nullopt);
}

TEST(AppSettings, EmptyStoreGivesTheDefaults) {
  ScratchDir dir;
  Settings settings = Settings::fromFile(dir / "empty.ini");
  AppSettings app = AppSettings::load(settings, dir / "program");
  EXPECT_EQ(app.sourceDirectory, dir / "program");
  EXPECT_EQ(app.maxUndo, 50);
  EXPECT_TRUE(app.binary);
  EXPECT_EQ(app.measure, -1);
  EXPECT_FALSE(app.screenPos);
  EXPECT_TRUE(app.checkReq);
  EXPECT_TRUE(app.useFractions);
  EXPECT_EQ(app.setDlgBGColor, 0);
  EXPECT_EQ(app.dlgBGColor, 0xC0C0C0);  // forced while setDlgBGColor is 0
  for (const Expected& row : kTables) {
    std::string_view key = row.key;
    if (key == "Source Directory" || key == "DlgBGColor") continue;
    EXPECT_EQ(app.valueText(row.section, row.key), row.defaultText) << row.key;
  }
  EXPECT_FALSE(fs::exists(dir / "empty.ini"));  // reading writes nothing
}

TEST(AppSettings, StoredValuesOverrideEveryDefault) {
  ScratchDir dir;
  fs::path file = dir.write("s.ini",
                            "[zarvel]\n"
                            "Source Directory=/srv/zarvel data\n"
                            "screenPos=-5 10 800 600\n"
                            "selectItemDlgRect=1 2 3 4\n"
                            "gameSystem=Tiny\n"
                            "MaxUndo=7\n"
                            "maximized=1\n"
                            "binary=0\n"
                            "editAddedOptions=0\n"
                            "SnapToGrid=1\n"
                            "ShowRuler=0\n"
                            "OverlappingWindows=1\n"
                            "PrintAssociatedFiles=0\n"
                            "ApplyRules=1\n"
                            "Measure=1\n"
                            "curDir=/home/u/sheets\n"
                            "defTemplate=Tiny.cst\n"
                            "NewFileGameSystem=Tiny\n"
                            "CopyrightDelay=3000\n"
                            "[PREFERENCES]\n"
                            "showbuttonbar=0\nshowStatusBar=0\nshowTipWindow=0\nShowRules=0\n"
                            "ConfirmMultipleDeletions=0\nShort File Names=1\nShowNamesOnly=1\n"
                            "CheckReq=0\nDisallowIfNotSatisfied=1\nNoBadValueDlg=1\nMakeBackups=0\n"
                            "ShowHourGlass=0\nAskForFilters=0\nUseFractions=0\nsetDlgBGColor=1\n"
                            "DlgBGColor=16777215\nEditor=vi\n");
  AppSettings app = AppSettings::load(Settings::fromFile(file), dir / "program");
  EXPECT_EQ(app.sourceDirectory, fs::path("/srv/zarvel data"));
  EXPECT_EQ(app.screenPos, (WindowRect{-5, 10, 800, 600}));  // clamping waits for the screen
  EXPECT_EQ(app.dlgBGColor, 0xFFFFFF);
  EXPECT_EQ(app.editor, "vi");
  for (const Expected& row : kTables) {
    std::string_view key = row.key;
    if (key == "Source Directory" || key == "screenPos" || key == "selectItemDlgRect") continue;
    EXPECT_NE(app.valueText(row.section, row.key), row.defaultText) << row.key;
  }
}

TEST(AppSettings, DialogColourRule) {
  struct Case {
    const char* stored;
    long expected;
  };
  const Case cases[] = {
      {"setDlgBGColor=0\nDlgBGColor=255\n", 0xC0C0C0},
      {"setDlgBGColor=\nDlgBGColor=255\n", 0xC0C0C0},
      {"setDlgBGColor=1\nDlgBGColor=255\n", 255},
      {"setDlgBGColor=1\n", -1},
  };
  for (const auto& c : cases) {
    ScratchDir dir;
    fs::path file = dir.write("s.ini", std::string("[Preferences]\n") + c.stored);
    EXPECT_EQ(AppSettings::load(Settings::fromFile(file), dir.path()).dlgBGColor, c.expected)
        << c.stored;
  }
}

TEST(AppSettings, EmptySourceDirectoryMeansTheProgramDirectory) {
  ScratchDir dir;
  fs::path file = dir.write("s.ini", "[zarvel]\nSource Directory=\n");
  EXPECT_EQ(AppSettings::load(Settings::fromFile(file), "/opt/zarvelin").sourceDirectory,
            fs::path("/opt/zarvelin"));
}

TEST(AppSettings, NotepadCountsAsNoEditor) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},
      {"notepad.exe", ""},
      {"NOTEPAD.EXE", ""},
      {"gedit", "gedit"},
      {"notepad.exe -x", "notepad.exe -x"},
      {"/usr/bin/notepad.exe", "/usr/bin/notepad.exe"},
  };
  for (const auto& [stored, expected] : cases) {
    AppSettings app;
    app.editor = stored;
    EXPECT_EQ(app.effectiveEditor(), expected) << stored;
  }
}

std::vector<std::string> keysWritten(const fs::path& file, std::string_view section) {
  IniFile ini;
  ini.load(file);
  return ini.keys(section);
}

TEST(AppSettings, ExitWritesItsKeysInOrder) {
  ScratchDir dir;
  Settings settings = Settings::fromFile(dir / "s.ini");
  AppSettings app;
  app.screenPos = WindowRect{10, 20, 800, 600};
  app.selectItemDlgRect = WindowRect{5, 6, 300, 200};
  app.overlappingWindows = true;
  app.measure = 1;
  app.gameSystem = "Tiny";
  app.checkReq = false;
  app.curDir = "/home/u/sheets";
  app.maxUndo = 9;  // not one of the keys written at exit
  app.saveAtExit(settings, false);

  EXPECT_EQ(
      keysWritten(settings.path(), "zarvel"),
      (std::vector<std::string>{"screenPos", "OverlappingWindows", "selectItemDlgRect", "maximized",
                                "Measure", "SnapToGrid", "ShowRuler", "gameSystem", "curDir"}));
  EXPECT_EQ(keysWritten(settings.path(), "Preferences"),
            (std::vector<std::string>{"CheckReq", "ShowNamesOnly"}));
  EXPECT_EQ(settings.getString("zarvel", "screenPos", ""), "10 20 800 600");
  EXPECT_EQ(settings.getString("zarvel", "selectItemDlgRect", ""), "5 6 300 200");
  EXPECT_EQ(settings.getInt("zarvel", "OverlappingWindows", 0), 1);
  EXPECT_EQ(settings.getInt("zarvel", "maximized", 1), 0);
  EXPECT_EQ(settings.getInt("zarvel", "Measure", -1), 1);
  EXPECT_EQ(settings.getString("zarvel", "gameSystem", ""), "Tiny");
  EXPECT_EQ(settings.getInt("Preferences", "CheckReq", 1), 0);
  EXPECT_EQ(settings.getString("zarvel", "curDir", ""), "/home/u/sheets");
  EXPECT_EQ(settings.getString("zarvel", "MaxUndo", "absent"), "absent");
}

TEST(AppSettings, MaximizedExitKeepsTheStoredFramePosition) {
  ScratchDir dir;
  fs::path file = dir.write("s.ini", "[zarvel]\nscreenPos=1 2 3 4\nmaximized=0\n");
  Settings settings = Settings::fromFile(file);
  AppSettings app = AppSettings::load(settings, dir.path());
  app.screenPos = WindowRect{100, 100, 640, 480};
  app.saveAtExit(settings, true);
  EXPECT_EQ(settings.getString("zarvel", "screenPos", ""), "1 2 3 4");
  EXPECT_EQ(settings.getInt("zarvel", "maximized", 0), 1);
  // A rectangle never known is written empty, which reads back as none.
  AppSettings unknown;
  unknown.saveAtExit(settings, false);
  EXPECT_EQ(settings.getString("zarvel", "screenPos", "x"), "");
  EXPECT_FALSE(AppSettings::load(settings, dir.path()).screenPos);
}

}  // namespace
}  // namespace zv
