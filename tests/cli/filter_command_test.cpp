// zarvelin-cli filter: a filter over a sheet, its bytes as made on stdout or in a file, its
// messages on stderr, its questions from --answers, and the sample filters over the sample
// characters.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "cli_runner.h"

namespace zv {
namespace {

namespace fs = std::filesystem;
using zv::testing::runCli;

const std::string kData = ZV_SAMPLE_DATA_DIR;

constexpr const char* kSheet =
    "\"Character Sheet file v. 1\"\n"
    "gamesystem Tiny sheettype PC version 253 level 1\n"
    "info created \"12/25/97\" end\n"
    "list Skills catname Skills var SkillCost 0\n"
    "  item Climbing formula \"x/3\" varname Climbing level 12\n"
    "  item Swimming formula \"x\" varname Swimming level 1\n"
    "end\n"
    "dialog Main 300 200 loc 10 10\n"
    "  edittext \"B\xE9o & Co\" 10 10 80 20 Name\n"
    "end\n"
    "end\n";

std::string readFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

class FilterCommand : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = fs::temp_directory_path() / ("zv-filter-cli-" + std::to_string(::getpid()));
    fs::create_directories(dir_);
    write("tiny.chr", kSheet);
    write("settings.ini", "[Preferences]\r\nUseFractions=1\r\n");
  }
  void TearDown() override { fs::remove_all(dir_); }
  std::string write(const std::string& name, const std::string& bytes) {
    std::ofstream(dir_ / name, std::ios::binary) << bytes;
    return (dir_ / name).string();
  }
  std::string at(const std::string& name) const { return (dir_ / name).string(); }
  zv::testing::CliResult run(std::vector<std::string> args) {
    args.insert(args.begin(), {"--data-dir", dir_.string(), "--settings", at("settings.ini")});
    return runCli(args);
  }
  fs::path dir_;
};

TEST_F(FilterCommand, BytesAsMade) {
  struct Case {
    const char* filter;
    std::vector<std::string> options;
    const char* out;
  };
  const Case cases[] = {
      {"@gamesystem Tiny\r\n%@Main.Name%\r\n", {}, "B\xE9o & Co\r\n"},
      {"@gamesystem Tiny\n@trans & &amp;\n%@Main.Name%|@Main.Name\n",
       {},
       "B\xE9o &amp; Co|@Main.Name\n"},
      {"@gamesystem Tiny\n@foreach(Skills, ; )\n%@name% %@cost%\\\n@endfor\n",
       {},
       "Climbing 4 ; Swimming 1"},
      {"@gamesystem Tiny\n%5/2%\n", {}, "2\xBD\n"},
      {"@gamesystem Tiny\n%@date%|%@datecreated%\n", {"--date", "2024-03-05"}, "3/5/24|12/25/97\n"},
      {"@gamesystem Tiny\n%@date%|%@datecreated%\n",
       {"--date", "2031-11-09", "--short-date", "dd.mm.yyyy"},
       "09.11.2031|25.12.1997\n"},
      {"@gamesystem Tiny\nA\n@exit\n", {}, ""},
  };
  for (const Case& c : cases) {
    write("t.flt", c.filter);
    std::vector<std::string> args = {"filter", at("tiny.chr"), "t.flt"};
    args.insert(args.end(), c.options.begin(), c.options.end());
    auto result = run(args);
    EXPECT_EQ(result.exitCode, 0) << c.filter << result.err;
    EXPECT_EQ(result.out, c.out) << c.filter;
    EXPECT_EQ(result.err, "") << c.filter;
  }
}

TEST_F(FilterCommand, FailedRunsGiveTheirMessageAndNoOutput) {
  struct Case {
    const char* filter;
    const char* err;
  };
  const Case cases[] = {
      {"@gamesystem Tiny\nBefore\n@foreach(Nothing)\n@endfor\n",
       "[Filter Error] Can't find list window Nothing\\n\\nLine: 3\n"},
      {"@gamesystem Tiny\n@fail No sheet of that kind\n",
       "[Copy Filter Error] No sheet of that kind\n"},
      {"@gamesystem Other\n",
       "[Filter Error] This filter uses the Other game system. The "
       "character sheet's game system is Tiny.\\n\\nLine: 1\n"},
      {"Text\n", nullptr},
  };
  for (const Case& c : cases) {
    write("bad.flt", c.filter);
    write("out.txt", "the old contents");
    auto result = run({"filter", at("tiny.chr"), "bad.flt", "-o", at("out.txt")});
    EXPECT_EQ(result.exitCode, 1) << c.filter;
    EXPECT_EQ(result.out, "");
    if (c.err != nullptr) {
      EXPECT_EQ(result.err, c.err) << c.filter;
    } else {
      EXPECT_EQ(result.err, "[Error] " + at("bad.flt") + " is not a print/copy filter file.\n");
    }
    EXPECT_EQ(readFile(at("out.txt")), "the old contents");
  }
  auto missing = run({"filter", at("tiny.chr"), "none.flt"});
  EXPECT_EQ(missing.exitCode, 1);
  EXPECT_EQ(missing.err, "[File Not Found] The file '" + at("none.flt") + "' does not exist.\n");
}

TEST_F(FilterCommand, OutputFileAndAnswers) {
  write("ask.flt", "@gamesystem Tiny\n@gettext who, Who is asking?\nHello %who%\n");
  write("answers.txt", "Zed\n");
  auto result = run(
      {"--answers", at("answers.txt"), "filter", at("tiny.chr"), "ask.flt", "-o", at("hello.txt")});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "[Filter Input] Who is asking?\n");
  EXPECT_EQ(readFile(at("hello.txt")), "Hello Zed\n");
  write("answers.txt", "Cancel\n");
  result = run({"--answers", at("answers.txt"), "filter", at("tiny.chr"), "ask.flt"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, "");
}

TEST_F(FilterCommand, BadUsage) {
  for (std::vector<std::string> args : std::vector<std::vector<std::string>>{
           {"filter"},
           {"filter", "a.chr"},
           {"filter", "a.chr", "b.flt", "c"},
           {"filter", "a.chr", "b.flt", "--date", "5 March"},
           {"filter", "a.chr", "b.flt", "--loud"},
       }) {
    EXPECT_EQ(run(args).exitCode, 2) << args.size();
  }
}

// The sample filters over the sample characters: the character's name, items and totals in each.
TEST(SampleFilters, CharactersThroughEachFilter) {
  struct Case {
    const char* character;
    const char* filter;
    std::vector<std::string> parts;  ///< each must appear, in this order
  };
  const Case cases[] = {
      {"Maren Vell",
       "hollowmark-summary.flt",
       {"Maren Vell, warden of the Hollow\r\n", "Calling: Bell-keeper\r\n",
        "Marks: 77 of 100 spent, 23 left\r\n", "Shillings: 28\xBD of 40 spent, 11\xBD left\r\n",
        "Traits (20)\r\n", "  Keen Ears\t2\t7\r\n", "Gear, in shillings (28\xBD)\r\n",
        "  Salt, pouch\t1\xBD\r\n", "Bonds (5)\r\n"}},
      {"Ossel Brack",
       "hollowmark-page.flt",
       {"<title>Ossel Brack - Hollowmark</title>", "<h1>Ossel Brack</h1>", "<h2>Gear</h2>",
        "<td class=\"num\">39</td></tr>\r\n</table>", "</body>\r\n</html>\r\n"}},
      {"Ines Calloway",
       "hollowmark-rtf.flt",
       {"{\\rtf1\\ansi\\ansicpg1252", "\\b Ines Calloway\\b0\\par",
        "Marks: 84 of 100 spent, 16 left. Shillings: 29\\'be of 40 spent", "\\b Total\\tab\\tab 42",
        "\\b Total\\tab\\tab 29\\'be\\b0", "}\r\n"}},
      {"Maren Vell",
       "hollowmark-clip.flt",
       {"@font \"DejaVu Serif\" 16pt b\r\nMaren Vell\r\n", "@bold\r\nSkills\r\n",
        "Fenwalking 3 (6)\r\n"}},
  };
  for (const Case& c : cases) {
    auto result = runCli({"--data-dir", kData, "filter", "--date", "2024-03-05",
                          kData + "/characters/" + c.character + ".chr", c.filter});
    EXPECT_EQ(result.exitCode, 0) << c.filter << result.err;
    EXPECT_EQ(result.err, "") << c.filter;
    std::size_t from = 0;
    for (const std::string& part : c.parts) {
      const std::size_t found = result.out.find(part, from);
      EXPECT_NE(found, std::string::npos) << c.character << " " << c.filter << ": " << part;
      if (found != std::string::npos) from = found + part.size();
    }
  }
}

}  // namespace
}  // namespace zv

namespace zv {
namespace {

TEST_F(FilterCommand, IdentifyFindsFiltersByTheirHeader) {
  write("page.flt", "# a page\r\n@gamesystem Tiny\r\n@description A page\r\n");
  write("any.flt", "@description For any game\n");
  write("notes.flt", "Just notes\n");
  auto result = run({"identify", at("page.flt"), at("any.flt"), at("notes.flt")});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out, "7\tTiny\t" + at("page.flt") + "\n7\t\t" + at("any.flt") + "\n-1\t\t" +
                            at("notes.flt") + "\n");
}

}  // namespace
}  // namespace zv

namespace zv {
namespace {

TEST_F(FilterCommand, WhatGoesOnTheClipboard) {
  write("card.flt", "@gamesystem Tiny\n\\@bold\n%@Main.Name%\n");
  write("page.flt",
        "@gamesystem Tiny\n@clipformat HTML Format\n<html><body>\n%@Main.Name%\n</body></html>\n");
  struct Case {
    const char* filter;
    const char* format;
    int exitCode;
    std::string out;
    std::string err;
  };
  const Case cases[] = {
      {"card.flt", "Rich Text Format", 0,
       "{\\rtf\\ansi\\ansicpg1252\\plain\\b B\\'E9o & Co\\par\r\n\r\n}", ""},
      {"card.flt", "text", 0, "B\xE9o & Co\r\n", ""},
      {"card.flt", "HTML Format", 1, "",
       "[Error] The filter puts nothing on the clipboard as HTML Format.\n"},
      {"page.flt", "Text", 0, "<html><body>\nB\xE9o & Co\n</body></html>\n", ""},
      {"page.flt", "HTML Format", 0,
       "Version:0.9\r\nStartHTML:000089\r\nEndHTML:000169\r\nStartFragment:000124\r\n"
       "EndFragment:000133\r\n<html><body>\n<!--StartFragment-->\r\nB\xC3)o & Co"
       "<!--EndFragment-->\r\n\n</body></html>\n",
       ""},
  };
  for (const Case& c : cases) {
    auto result = run({"filter", at("tiny.chr"), c.filter, "--clipboard", c.format});
    EXPECT_EQ(result.exitCode, c.exitCode) << c.filter << " " << c.format;
    EXPECT_EQ(result.out, c.out) << c.filter << " " << c.format;
    EXPECT_EQ(result.err, c.err) << c.filter << " " << c.format;
  }
}

}  // namespace
}  // namespace zv
