#include "formats/file_recognition.h"

#include <gtest/gtest.h>

#include <fstream>

#include "core/headless_host.h"
#include "formats/dispatch.h"
#include "formats/tokens/keywords.h"
#include "formats/print_template_header.h"
#include "formats/tokens/tokenstream.h"

namespace zv {
namespace {

namespace fs = std::filesystem;

class RecognitionTest : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = fs::temp_directory_path() /
           ("zv-recog-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + "-" +
            ::testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::remove_all(dir_);
    fs::create_directories(dir_);
  }
  void TearDown() override { fs::remove_all(dir_); }

  fs::path write(const std::string& name, const std::string& bytes) {
    fs::path p = dir_ / name;
    std::ofstream(p, std::ios::binary) << bytes;
    return p;
  }

  /// A binary sheet header written by the token writer.
  std::string binarySheet(const std::string& gameSystem) {
    MemoryByteStream memory;
    TokenStream out;
    out.setStream(&memory);
    out.setBinary(true);
    out.beginWrite();
    out.writeLong(static_cast<int32_t>(kTokenFileMagic));
    out.writeString("Character Sheet file v. 1");
    out.writeKeywordString(kGamesystem, gameSystem);
    out.writeKeywordString(kDescription, "Binary hero");
    out.writeKeywordInt(kVersion, 253);
    out.writeKeywordInt(kRealsize, 8);
    out.writeKeywordInt(kLevel, 4);
    out.writeKeyword(kInfo);
    out.flush();
    return memory.data();
  }

  fs::path dir_;
  HeadlessHost host_{nullptr};
  HostInstallation installed_{host_};
};

const std::string kTextSheet =
    "\"Character Sheet file v. 1\" gamesystem Tiny description \"Tiny test sheet\"\r\n"
    "sheettype Standard help \"\" version 253 level 3 maxAttempts 0\r\n";

TEST_F(RecognitionTest, ContentDecidesBeforeExtension) {
  struct Case {
    const char* name;
    std::string content;
    int code;
    const char* gameSystem;
  };
  const Case cases[] = {
      {"a.chr", kTextSheet, kFileCharacterSheet, "Tiny"},
      {"a.cst", kTextSheet, kFileCharacterTemplate, "Tiny"},
      {"A.CST", kTextSheet, kFileCharacterTemplate, "Tiny"},
      {"a.txt", kTextSheet, kFileCharacterSheet, "Tiny"},
      {"x.inc", "\"Data Sheet file v. 1\" gamesystem Tiny title \"Core\" version 253 level 3",
       kFileDataSheet, "Tiny"},
      {"m.mds", "\"Macro Data Sheet file v. 1\" gamesystem Tiny", kFileMacroDataSheet, "Tiny"},
      {"g.abc", "?filelist 1\n", kFileGroup, ""},
      {"junk.abc", "just some words", kFileUnknown, ""},
      {"notes.txt", "just some words", kFilePlainText, ""},
      {"notes.inc", "just some words", kFilePlainText, ""},
      {"party.clist", "just some words", kFileGroup, ""},
      {"party.group", "", kFileGroup, ""},
      {"sheets.dlist", "just some words", kFileDataSheetList, ""},
      {"convert.cnv", "\"CONVERSION SCRIPT V. 1\" gamesystem \"A\" \"B\"", kFileConversionScript,
       ""},
      {"broken.cnv", "\"Not a script\"", kFileUnknown, ""},
      {"plain.flt", "@margins 1in 1in 1in 1in\n", kFileFilter, ""},
      {"b.chr", "", kFileReportedAlready, ""},
  };
  for (const Case& c : cases) {
    host_.clearTranscript();
    Recognition r = recogniseFile(write(c.name, c.content));
    EXPECT_EQ(r.code, c.code) << c.name;
    EXPECT_EQ(r.gameSystem, c.gameSystem) << c.name;
  }
}

TEST_F(RecognitionTest, FirstWordComparesWithCase) {
  Recognition r = recogniseFile(write("x.chr", "\"character sheet file v. 1\" gamesystem Tiny"));
  EXPECT_EQ(r.code, kFileReportedAlready);
  ASSERT_EQ(host_.transcript().size(), 1u);
  EXPECT_EQ(host_.transcript()[0],
            "[Unrecognizable Format] The format of this file cannot be recognized. This "
            "application cannot open it.");
}

TEST_F(RecognitionTest, JunkWithSheetExtensionGetsOneBoxOnly) {
  for (const char* name : {"junk.chr", "junk.cst", "junk.cds", "junk.mds"}) {
    host_.clearTranscript();
    EXPECT_EQ(recogniseFile(write(name, "\"unterminated\r\nmore junk")).code, kFileReportedAlready);
    EXPECT_EQ(host_.transcript().size(), 1u) << name;
  }
}

TEST_F(RecognitionTest, HeaderFillsInfo) {
  Recognition r =
      recogniseFile(write("core.cds",
                          "\"Data Sheet file v. 1\" gamesystem Tiny title \"Core\" version 253 "
                          "level 3 copyright \"(c) us\" pageinfo lm 1080 end"));
  EXPECT_EQ(r.code, kFileDataSheet);
  EXPECT_EQ(r.info.description, "Core");
  EXPECT_EQ(r.info.level, 3);
  EXPECT_EQ(r.info.version, 253);
}

TEST_F(RecognitionTest, HeaderScanStopsAtFirstOtherToken) {
  Recognition r = recogniseFile(write(
      "a.chr", "\"Character Sheet file v. 1\" gamesystem Tiny ruleset Strict version 253 level 2"));
  EXPECT_EQ(r.code, kFileCharacterSheet);
  EXPECT_EQ(r.info.version, 0);
  EXPECT_EQ(r.info.level, 0);
}

TEST_F(RecognitionTest, BinarySheetIsRecognised) {
  Recognition r = recogniseFile(write("hero.chr", binarySheet("Tiny")));
  EXPECT_EQ(r.code, kFileCharacterSheet);
  EXPECT_EQ(r.gameSystem, "Tiny");
  EXPECT_EQ(r.info.description, "Binary hero");
  EXPECT_EQ(r.info.level, 4);
  EXPECT_EQ(r.info.version, 253);
}

TEST_F(RecognitionTest, MissingFileCannotBeOpened) {
  EXPECT_EQ(recogniseFile(dir_ / "nothere.chr").code, kFileCannotOpen);
  EXPECT_EQ(recogniseFile(dir_).code, kFileCannotOpen);
}

std::string u16(uint16_t v) {
  return std::string{char(v & 0xFF), char(v >> 8)};
}

TEST_F(RecognitionTest, PrintTemplateHeader) {
  std::string good = u16(0) + u16(0x9921) + u16(0x5623) + u16(1) + u16(3) + u16(2) + u16(4) +
                     "Tiny" + u16(49) + u16(7) + u16(50) + u16(5) + "Cards" + u16(42) + u16(1);
  Recognition r = recogniseFile(write("card.prt", good));
  EXPECT_EQ(r.code, kFilePrintTemplate);
  EXPECT_EQ(r.gameSystem, "Tiny");
  EXPECT_EQ(r.info.level, 7);
  EXPECT_EQ(r.info.description, "Cards");

  std::string badMagic = u16(0) + u16(0x1111) + u16(0x5623) + u16(1) + u16(3);
  EXPECT_FALSE(readPrintTemplateHeader(write("bad.prt", badMagic)));
  std::string badVersion = u16(0) + u16(0x9921) + u16(0x5623) + u16(1) + u16(4);
  EXPECT_FALSE(readPrintTemplateHeader(write("v4.prt", badVersion)));
  std::string longName = u16(2) + u16(24) + std::string(24, 'x');
  EXPECT_FALSE(readPrintTemplateHeader(write("long.prt", longName)));
  EXPECT_EQ(recogniseFile(write("text.prt", "hello")).code, kFileUnknown);
}

struct DispatchCase {
  const char* name;
  std::string content;
  OpenAction action;
};

TEST_F(RecognitionTest, DispatcherDecisions) {
  const DispatchCase cases[] = {
      {"a.chr", kTextSheet, OpenAction::OpenSheet},
      {"a.cst", kTextSheet, OpenAction::OpenSheet},
      {"d.cds", "\"Data Sheet file v. 1\" gamesystem Tiny", OpenAction::OpenDataSheet},
      {"m.mds", "\"Macro Data Sheet file v. 1\"", OpenAction::OpenMacroDataSheet},
      {"g.group", "?filelist 1\n", OpenAction::OpenGroup},
      {"n.txt", "notes", OpenAction::OpenAsText},
      {"s.dlist", "a.cds", OpenAction::OpenAsText},
      {"odd.prt", "not a template", OpenAction::OpenAsText},
      {"odd.rules", "whatever", OpenAction::OpenAsText},
      {"photo.abc", "whatever", OpenAction::HandToSystem},
      {"junk.chr", "junk", OpenAction::Nothing},
  };
  for (const DispatchCase& c : cases) {
    OpenRequest request;
    request.path = write(c.name, c.content).string();
    EXPECT_EQ(decideOpen(request).action, c.action) << c.name;
  }
}

TEST_F(RecognitionTest, DispatcherMessagesAndEditor) {
  OpenRequest missing;
  missing.path = (dir_ / "gone.chr").string();
  OpenDecision d = decideOpen(missing);
  EXPECT_EQ(d.action, OpenAction::ShowMessage);
  EXPECT_EQ(d.title, "File Not Found");
  EXPECT_EQ(d.text, "The file '" + missing.path + "' does not exist.");

  OpenRequest text;
  text.path = write("n.txt", "notes").string();
  EXPECT_EQ(decideOpen(text).editorCommand, "");
  text.editor = "gedit";
  EXPECT_EQ(decideOpen(text).editorCommand, "gedit " + text.path);

  OpenRequest forced;
  forced.path = write("a.chr", kTextSheet).string();
  forced.forceText = true;
  EXPECT_EQ(decideOpen(forced).action, OpenAction::OpenAsText);

  OpenRequest converted;
  converted.path = write("old.xyz", "x").string();
  converted.convertedExtensions = {"xyz"};
  EXPECT_EQ(decideOpen(converted).action, OpenAction::ConvertExternal);
}

}  // namespace
}  // namespace zv
