#include <gtest/gtest.h>

#include "../core/scratch_dir.h"
#include "filter/file/filter_loader.h"
#include "filter/file/filter_save.h"
#include "filter/file/filter_scan.h"
#include "filter/file/format_commands.h"
#include "filter/file/measure.h"
#include "filter/file/translation.h"
#include "filter_test_support.h"

namespace zv {
namespace {

using test::QuietHost;
using test::ScratchDir;

TEST(FilterMeasure, UnitsGiveTwips) {
  struct Case {
    const char* word;
    int twips;
  };
  const Case cases[] = {
      {"1in", 1440}, {"1\"", 1440},   {"1i", 1440},    {"2.54cm", 1440}, {"1cm", 567},
      {"1c", 567},   {"12pt", 240},   {"12p", 240},    {"3l", -3},       {"2ln", -2},
      {"720", 720},  {"1.7", 1},      {"-1in", -1439}, {"+0.5in", 720},  {"10mm", 10},
      {"1IN", 1440}, {"0.25in", 360}, {".5in", 720},   {"99in", 32767},  {"-99in", -32768},
  };
  for (const Case& c : cases) {
    auto twips = parseMeasure(c.word);
    ASSERT_TRUE(twips.has_value()) << c.word;
    EXPECT_EQ(*twips, c.twips) << c.word;
  }
  for (const char* bad : {"", "in", "-", "x12", "."})
    EXPECT_FALSE(parseMeasure(bad)) << bad;
}

TEST(FilterTranslation, EscapesOnBothSides) {
  struct Case {
    const char* arguments;
    unsigned char code;
    const char* text;
  };
  const Case cases[] = {
      {"& &amp;", '&', "&amp;"},
      {"\\t \\\\t", 9, "\\t"},
      {"< &lt;\r\n", '<', "&lt;"},
      {"\\\\ \\b\\n\\r\\q", '\\', "\b\n\rq"},
      {"x", 'x', ""},
      {"  &nbsp;", ' ', "&nbsp;"},
      {"a b\tc", 'a', "b"},
  };
  for (const Case& c : cases) {
    auto entry = parseTranslation(c.arguments);
    ASSERT_TRUE(entry) << c.arguments;
    EXPECT_EQ(entry->code, c.code) << c.arguments;
    EXPECT_EQ(entry->text, c.text) << c.arguments;
  }
  EXPECT_FALSE(parseTranslation(""));
  EXPECT_EQ(parseTranslation(std::string(300, 'y'))->text.size(), kMaxTranslationLength);
  EXPECT_EQ(escapeTranslationText("a\b\t\n\r\\z"), "a\\b\\t\\n\\r\\\\z");
}

TEST(FilterCommands, TableIsSortedAndComplete) {
  EXPECT_EQ(findFormatCommand("bgcolor"), kFormatBgColor);
  EXPECT_EQ(findFormatCommand("WRAPTAB"), kFormatWrapTab);
  EXPECT_EQ(findFormatCommand("Trans"), kFormatTrans);
  EXPECT_EQ(findFormatCommand("foreach"), kFormatNone);
  EXPECT_EQ(findFormatCommand(""), kFormatNone);
  for (int n = 1; n <= kFormatCommandCount; ++n) {
    EXPECT_EQ(findFormatCommand(formatCommandWord(n)), n) << formatCommandWord(n);
  }
}

// Each line applied to a fresh document, then one field checked.
TEST(FilterCommands, EachCommandSetsItsValue) {
  QuietHost host;
  struct Case {
    const char* line;
    std::function<bool(const FilterDocument&)> check;
  };
  const Case cases[] = {
      {"@bgcolor 255 0 16",
       [](auto& d) { return d.style.backgroundColor == 0x1000FF && d.style.backgroundUsed; }},
      {"@bold", [](auto& d) { return d.style.flags == FilterStyle::kBold; }},
      {"@bolditalic",
       [](auto& d) { return d.style.flags == (FilterStyle::kBold | FilterStyle::kItalic); }},
      {"@clipformat HTML Format\r\n", [](auto& d) { return d.clipFormat == "HTML Format"; }},
      {"@columns 2 360", [](auto& d) { return d.style.columns == 2 && d.style.columnGap == 360; }},
      {"@deftab 0.5in", [](auto& d) { return d.style.defaultTab == 720; }},
      {"@description  A summary \r\n", [](auto& d) { return d.description == "A summary"; }},
      {"@extension html", [](auto& d) { return d.extension == "html"; }},
      {"@face Liberation Serif\n", [](auto& d) { return d.style.face == "Liberation Serif"; }},
      {"@firstindent -1cm", [](auto& d) { return d.style.firstIndent == -566; }},
      {"@font 'Arial' 12pt b\ti u",
       [](auto& d) {
         return d.style.face == "Arial" && d.style.size == 240 && d.style.flags == 7;
       }},
      {"@font \"DejaVu Sans\" 10pt",
       [](auto& d) { return d.style.face == "DejaVu Sans" && d.style.flags == 0; }},
      {"@fontinfo 200 3 0 22",
       [](auto& d) { return d.style.size == 200 && d.style.flags == 3 && d.style.pitch == 0x22; }},
      {"@gamesystem Tiny", [](auto& d) { return d.gameSystem == "Tiny"; }},
      {"@hline 2 1in 2in",
       [](auto& d) {
         return d.style.ruleWidth == 2 && d.style.ruleStart == 1440 && d.style.ruleEnd == 2880;
       }},
      {"@italic", [](auto& d) { return d.style.flags == FilterStyle::kItalic; }},
      {"@keepnext", [](auto& d) { return d.style == FilterStyle(); }},
      {"@landscape no", [](auto& d) { return d.landscape == 1; }},
      {"@leftindent 1in", [](auto& d) { return d.style.leftIndent == 1440; }},
      {"@margins 1in 1in",
       [](auto& d) {
         return d.marginLeft == 1440 && d.marginTop == 1440 && d.marginRight == 0 &&
                d.marginBottom == 0;
       }},
      {"@margins 1 2 3 4",
       [](auto& d) {
         return d.marginLeft == 1 && d.marginTop == 2 && d.marginRight == 3 && d.marginBottom == 4;
       }},
      {"@need 2l", [](auto& d) { return d.style.needed == -2; }},
      {"@parinfo 0.25in 120",
       [](auto& d) { return d.style.firstIndent == 360 && d.style.spacing == 120; }},
      {"@samepage 1", [](auto& d) { return d.samePage == 1; }},
      {"@sheettype PC", [](auto& d) { return d.sheetType == "PC"; }},
      {"@sortexp Budget - Spent", [](auto& d) { return d.sortExpression == "Budget - Spent"; }},
      {"@sortorder -1", [](auto& d) { return d.sortOrder == -1; }},
      {"@tabs 0 1in 2 3in",
       [](auto& d) {
         return d.style.tabs == std::vector<FilterTab>{{0, 1440}, {2, 4320}};
       }},
      {"@tabwidth 8p", [](auto& d) { return d.tabWidth == 160; }},
      {"@textcolor 1 2 3", [](auto& d) { return d.style.textColor == 0x030201; }},
      {"@trans & &amp;",
       [](auto& d) {
         return d.translations == std::vector<FilterTranslation>{{'&', "&amp;"}};
       }},
      {"@vline 1in 2in 3in",
       [](auto& d) {
         return d.style.verticalLines == std::vector<FilterVerticalLine>{{1440, 2880}};
       }},
      {"@wraptab 1", [](auto& d) { return d.style.wrapTab == 1; }},
  };
  for (const Case& c : cases) {
    FilterDocument document;
    auto sheet = test::tinySheetRecord();
    const int result = applyFormatCommand(sheet.get(), c.line, &document, document.style, 1);
    EXPECT_GT(result, 0) << c.line;
    EXPECT_TRUE(c.check(document)) << c.line;
  }
  EXPECT_TRUE(host.shown().empty()) << host.lastShown();
}

TEST(FilterCommands, ErrorsGiveTheirMessageAndLine) {
  QuietHost host;
  struct Case {
    const char* line;
    const char* shown;
  };
  const Case cases[] = {
      {"@font \"Arial\" 12pt x", "[Filter Error] Unknown font style: x\\n\\nLine: 7"},
      {"@font Arial 12pt", "[Filter Error] Unknown quoting character in @font: A\\n\\nLine: 7"},
      {"@font \"Arial 12pt", "[Filter Error] Missing end quote in @font\\n\\nLine: 7"},
      {"@font \"Arial\"", "[Filter Error] Number missing in measure.\\n\\nLine: 7"},
      {"@deftab", "[Filter Error] Number missing in measure.\\n\\nLine: 7"},
      {"@margins 1in x", "[Filter Error] Number missing in measure.\\n\\nLine: 7"},
      {"@gamesystem Other",
       "[Filter Error] This filter uses the Other game system. The character sheet's game system "
       "is Tiny.\\n\\nLine: 7"},
      {"@sheettype NPC",
       "[Filter Error] This filter is of type NPC. The character sheet's type is PC.\\n\\nLine: 7"},
  };
  for (const Case& c : cases) {
    host.clear();
    FilterDocument document;
    auto sheet = test::tinySheetRecord();
    EXPECT_EQ(applyFormatCommand(sheet.get(), c.line, &document, document.style, 7), -1) << c.line;
    EXPECT_EQ(host.lastShown(), c.shown) << c.line;
  }
}

TEST(FilterCommands, WithoutDocumentOnlyStyleCommandsAct) {
  QuietHost host;
  FilterStyle style;
  EXPECT_EQ(applyFormatCommand(nullptr, "@bold", nullptr, style, 1), kFormatBold);
  EXPECT_EQ(applyFormatCommand(nullptr, "@margins 1in", nullptr, style, 1), kFormatMargins);
  EXPECT_EQ(applyFormatCommand(nullptr, "@gamesystem Other", nullptr, style, 1), kFormatGameSystem);
  EXPECT_EQ(applyFormatCommand(nullptr, "@leftindent 1in", nullptr, style, 1), kFormatLeftIndent);
  EXPECT_EQ(applyFormatCommand(nullptr, "@foreach(Skills)", nullptr, style, 1), kFormatNone);
  EXPECT_EQ(applyFormatCommand(nullptr, "@boldly", nullptr, style, 1), kFormatNone);
  EXPECT_EQ(style.flags, FilterStyle::kBold);
  EXPECT_EQ(style.leftIndent, 1440);
  // Without a document there is nothing to compare the game system with.
  EXPECT_TRUE(host.shown().empty());
  // The font style letters replace the flags.
  applyFormatCommand(nullptr, "@font \"A\" 10pt u", nullptr, style, 1);
  EXPECT_EQ(style.flags, FilterStyle::kUnderline);
  applyFormatCommand(nullptr, "@plain", nullptr, style, 1);
  EXPECT_EQ(style.flags, 0);
  applyFormatCommand(nullptr, "@bgcolor", nullptr, style, 1);
  EXPECT_FALSE(style.backgroundUsed);
}

TEST(FilterLoader, HeaderAndBody) {
  QuietHost host;
  struct Case {
    const char* text;
    const char* body;
    int headerLines;
    std::uint8_t flags;
  };
  const Case cases[] = {
      // An indented command stays in the body.
      {"@gamesystem Tiny\n @bold\nX\n", " @bold\nX\n", 1, 0},
      // A comment in the header goes to the body; the header goes on behind it.
      {"@gamesystem Tiny\n# c\n@bold\nX\n", "# c\nX\n", 2, FilterStyle::kBold},
      // A blank line ends the header: later commands are body text.
      {"@gamesystem Tiny\n\n@bold\nX\n", "\n@bold\nX\n", 1, 0},
      // A body command ends the header.
      {"@gamesystem Tiny\n@foreach(Skills)\n@bold\n", "@foreach(Skills)\n@bold\n", 1, 0},
      // Comments and blank lines before the first command.
      {"\n# about\n\n@gamesystem Tiny\r\nBody\r\n", "# about\nBody\r\n", 3, 0},
      // Only a header.
      {"@gamesystem Tiny\n@italic\n", "", 2, FilterStyle::kItalic},
      // An unknown @word ends the header.
      {"@gamesystem Tiny\n@Skills = 3\n", "@Skills = 3\n", 1, 0},
  };
  for (const Case& c : cases) {
    FilterDocument document;
    auto sheet = test::tinySheetRecord();
    ASSERT_TRUE(loadFilterText(sheet.get(), c.text, "t.flt", document, FilterLoadMode::Whole))
        << c.text;
    EXPECT_EQ(document.body, c.body) << c.text;
    EXPECT_EQ(document.headerLines, c.headerLines) << c.text;
    EXPECT_EQ(document.style.flags, c.flags) << c.text;
  }
  EXPECT_TRUE(host.shown().empty()) << host.lastShown();
}

TEST(FilterLoader, RefusesWhatIsNoFilter) {
  QuietHost host;
  auto sheet = test::tinySheetRecord();
  struct Case {
    const char* text;
    const char* shown;
  };
  const Case cases[] = {
      {"# note\nHello\n", "[Error] t.flt is not a print/copy filter file."},
      {" @bold\n", "[Error] t.flt is not a print/copy filter file."},
      {"", "[Error] t.flt is not a print/copy filter file."},
      {"# only\n\n", "[Error] t.flt is not a print/copy filter file."},
      {"@gamesystem Tiny\n@font \"Arial\" 12pt x\nBody\n",
       "[Filter Error] Unknown font style: x\\n\\nLine: 2"},
      {"@gamesystem Other\n",
       "[Filter Error] This filter uses the Other game system. The character sheet's game system "
       "is Tiny.\\n\\nLine: 1"},
  };
  for (const Case& c : cases) {
    host.clear();
    FilterDocument document;
    document.body = "old";
    EXPECT_FALSE(loadFilterText(sheet.get(), c.text, "t.flt", document, FilterLoadMode::Whole));
    EXPECT_EQ(host.lastShown(), c.shown) << c.text;
    EXPECT_TRUE(document.body.empty());
  }
}

TEST(FilterLoader, HeaderOnlyAndWithoutSheet) {
  QuietHost host;
  FilterDocument document;
  // No sheet at hand: the game system is kept, not checked (Page Setup).
  ASSERT_TRUE(loadFilterText(nullptr, "@gamesystem Other\n@margins 1in\nBody\n", "t.flt", document,
                             FilterLoadMode::HeaderOnly));
  EXPECT_EQ(document.gameSystem, "Other");
  EXPECT_EQ(document.marginLeft, 1440);
  EXPECT_EQ(document.body, "");
  EXPECT_EQ(document.headerLines, 2);
}

TEST(FilterLoader, LongLinesAreReadInPieces) {
  QuietHost host;
  FilterDocument document;
  std::string text = "@gamesystem Tiny\n" + std::string(3000, 'x') + "\n";
  ASSERT_TRUE(loadFilterText(nullptr, text, "t.flt", document, FilterLoadMode::Whole));
  EXPECT_EQ(document.body, std::string(3000, 'x') + "\n");
}

TEST(FilterLoader, MissingFile) {
  QuietHost host;
  ScratchDir dir;
  FilterDocument document;
  EXPECT_FALSE(loadFilter(nullptr, dir / "none.flt", document, FilterLoadMode::Whole));
  EXPECT_EQ(host.lastShown(),
            "[File Not Found] The file '" + (dir / "none.flt").string() + "' does not exist.");
}

TEST(FilterSave, ExactLinesInOrder) {
  QuietHost host;
  FilterDocument document;
  ASSERT_TRUE(loadFilterText(nullptr,
                             "@gamesystem Tiny\r\n@margins 1in 1in 1in 1in\r\n@trans & &amp;\r\n"
                             "@trans \\t \\\\t\r\n@description Summary\r\n@sheettype PC\r\n"
                             "@font \"Arial\" 12pt bu\r\n@tabwidth 0.5in\r\n@columns 2 360\r\n"
                             "@parinfo 100 40\r\n@leftindent 1cm\r\n@deftab 720\r\n"
                             "@clipformat HTML Format\r\n@landscape\r\n@extension htm\r\n"
                             "@sortexp Spent\r\n@sortorder 1\r\n@tabs 2 1in 0 2in\r\nBody\n",
                             "t.flt", document, FilterLoadMode::Whole));
  EXPECT_EQ(filterFileText(document),
            "@gamesystem Tiny\r\n"
            "@description Summary\r\n"
            "@sheettype PC\r\n"
            "@margins 1440 1440 1440 1440\r\n"
            "@tabwidth 720\r\n"
            "@columns 2 360\r\n"
            "@face Arial\r\n"
            "@fontinfo 240 5 0 0\r\n"
            "@parinfo 100 40\r\n"
            "@leftindent 567\r\n"
            "@deftab 720\r\n"
            "@clipformat HTML Format\r\n"
            "@landscape 1\n"
            "@extension htm\r\n"
            "@sortexp Spent\r\n"
            "@sortorder 1\r\n"
            "@tabs 2 1440 0 2880\r\n"
            "@trans \\t \\\\t\n"
            "@trans & &amp;\n"
            "Body\n");
}

TEST(FilterSave, WrittenFileReadsBackToTheSameValues) {
  QuietHost host;
  ScratchDir dir;
  FilterDocument first;
  ASSERT_TRUE(loadFilterText(nullptr,
                             "@gamesystem Tiny\n@margins 1in 2in 3in 4in\n@tabs 3 1in\n"
                             "@trans \\\\ \\\\\\\\\n@font 'Serif' 11pt i\nText %@name%\n",
                             "t.flt", first, FilterLoadMode::Whole));
  dir.write("out.flt", "old contents");
  ASSERT_TRUE(saveFilter(dir / "out.flt", first));
  FilterDocument second;
  ASSERT_TRUE(loadFilter(nullptr, dir / "out.flt", second, FilterLoadMode::Whole));
  EXPECT_EQ(second.style, first.style);
  EXPECT_EQ(second.translations, first.translations);
  EXPECT_EQ(second.marginBottom, 5760);
  EXPECT_EQ(second.body, "Text %@name%\n");
  // Nothing but the target is left in the directory.
  int files = 0;
  for (auto& entry : std::filesystem::directory_iterator(dir.path()))
    files += entry.is_regular_file();
  EXPECT_EQ(files, 1);
  // A target in a directory that doesn't exist fails with the message and leaves nothing.
  EXPECT_FALSE(saveFilter(dir / "missing" / "x.flt", first));
  EXPECT_EQ(host.lastShown(), "[Error] Error writing file " + (dir / "missing" / "x.flt").string());
}

TEST(FilterScan, GameSystemAndDescription) {
  struct Case {
    const char* text;
    bool isFilter;
    const char* gameSystem;
    const char* description;
  };
  const Case cases[] = {
      {"@gamesystem Hollowmark\r\n@description A page\r\nBody\r\n", true, "Hollowmark", "A page"},
      {"# x\n@description Only\n", true, "", "Only"},
      {"@GameSystem ThisNameIsLongerThan24Chars\n", true, "ThisNameIsLongerThan24C", ""},
      {"Hello\n@gamesystemx Y\n", false, "", ""},
      {"", false, "", ""},
  };
  for (const Case& c : cases) {
    FilterSummary summary = scanFilterText(c.text);
    EXPECT_EQ(summary.isFilter, c.isFilter) << c.text;
    EXPECT_EQ(summary.gameSystem, c.gameSystem) << c.text;
    EXPECT_EQ(summary.description, c.description) << c.text;
  }
}

TEST(FilterScan, FiltersOfAGameSystem) {
  ScratchDir dir;
  dir.write("b.flt", "@gamesystem Tiny\n@description B\n");
  dir.write("A.FLT", "@gamesystem tiny\n");
  dir.write("other.flt", "@gamesystem Other\n@description O\n");
  dir.write("any.flt", "@description For any\n");
  dir.write("text.flt", "Not a filter\n");
  dir.write("c.txt", "@gamesystem Tiny\n");
  std::vector<std::string> names;
  for (const AvailableFilter& f : filtersForGameSystem(dir.path(), "TINY"))
    names.push_back(f.fileName);
  EXPECT_EQ(names, (std::vector<std::string>{"A.FLT", "any.flt", "b.flt"}));
}

}  // namespace
}  // namespace zv
