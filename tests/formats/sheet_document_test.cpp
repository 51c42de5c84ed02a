#include "formats/sheet_document.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "../core/scratch_dir.h"
#include "core/game_systems.h"
#include "core/headless_host.h"

namespace zv {
namespace {

namespace fs = std::filesystem;
using test::ScratchDir;

// A small template: one dialog with a Name field, one list.
constexpr std::string_view kTemplate =
    "\"Character Sheet file v. 1\"\n"
    "gamesystem Tarn version 253 level 1\n"
    "list Deeds catname Deeds var DeedCost 0\n"
    "  item Oath formula \"x*2\" varname Oath level 2\n"
    "end\n"
    "dialog Main 200 100\n"
    "  edittext \"A/B: Hero\" 10 10 100 20 Name\n"
    "end\n"
    "end\n";

class SheetDocumentTest : public ::testing::Test {
 protected:
  void SetUp() override {
    context.dataDir = dir.path();
    context.binary = false;
    context.noteRecentFile = [this](const std::string& path) { recent.push_back(path); };
  }
  void TearDown() override { clearGameSystems(); }

  const std::vector<std::string>& shown() const { return headless.transcript(); }

  std::unique_ptr<FileInfo> openTemplateAsNew() {
    dir.write("tarn.cst", kTemplate);
    return newSheetFromTemplate("TARN.CST", 1, context, names);
  }

  HeadlessHost headless{nullptr};
  HostInstallation installation{headless};
  ScratchDir dir;
  DocumentContext context;
  UntitledNames names;
  std::vector<std::string> recent;
};

TEST_F(SheetDocumentTest, UntitledNamesCount) {
  UntitledNames fresh;
  EXPECT_EQ(fresh.next(), "Untitled");
  EXPECT_EQ(fresh.next(), "Untitled 1");
  EXPECT_EQ(fresh.next(), "Untitled 2");
}

TEST_F(SheetDocumentTest, NewFromTemplateIsNewUnchangedAndNamed) {
  auto first = openTemplateAsNew();
  auto second = newSheetFromTemplate("tarn.cst", 1, context, names);
  ASSERT_TRUE(first && second);
  EXPECT_EQ(first->name.str(), "Untitled");
  EXPECT_EQ(second->name.str(), "Untitled 1");
  EXPECT_TRUE(first->isNew());
  EXPECT_FALSE(first->changed());
  EXPECT_TRUE(first->path.empty());
  EXPECT_EQ(first->fileType, 1);
  EXPECT_TRUE(shown().empty()) << shown().front();
}

TEST_F(SheetDocumentTest, MissingTemplateAndSheetWithoutDialogs) {
  EXPECT_FALSE(newSheetFromTemplate("absent.cst", 1, context, names));
  EXPECT_EQ(shown().back(),
            "[Error] Can't open character sheet " + (dir / "absent.cst").string() + ".");

  dir.write("bare.chr",
            "\"Character Sheet file v. 1\"\ngamesystem Tarn version 253 level 1\n"
            "list Deeds catname Deeds end\nend\n");
  EXPECT_FALSE(openSheetFile((dir / "bare.chr").string(), context));
  EXPECT_EQ(shown().back(),
            "[Error] There are no dialogs in this file; it cannot be opened as a character sheet");
}

TEST_F(SheetDocumentTest, DefaultSaveNameStripsWhatFilesCannotHold) {
  FileInfo sheet(1, "Untitled", "");
  DlgInfo* main = sheet.addDialog();
  auto field = std::make_unique<DlgItem>();
  field->varName = "name";
  main->items.push_back(std::move(field));
  const struct {
    const char* value;
    int fileType;
    const char* expected;
  } cases[] = {
      {"A/B", 1, "AB.chr"},
      {"a:b*c?\"d", 1, "abcd.chr"},
      {"Mira <the> Bold|", 2, "Mira the Bold.cst"},
      {"\\/:*?", 1, "Untitled.chr"},  // nothing left: the document's own name
      {"", 1, "Untitled.chr"},
  };
  for (const auto& c : cases) {
    main->items.front()->text = c.value;
    sheet.fileType = c.fileType;
    EXPECT_EQ(defaultSaveName(sheet), c.expected) << c.value;
  }
}

TEST_F(SheetDocumentTest, SaveAsOfNewSheetProposesTheNameAndWrites) {
  auto sheet = openTemplateAsNew();
  ASSERT_TRUE(sheet);
  fs::path target = dir / "mira.chr";
  headless.addAnswer(target.string());
  ASSERT_TRUE(saveSheet(*sheet, false, context));
  // The Save As box was offered the cleaned "Name" field.
  EXPECT_EQ(shown().front(), "[Save As] AB Hero.chr");
  EXPECT_EQ(sheet->path.str(), target.string());
  EXPECT_EQ(sheet->name.str(), "mira.chr");
  EXPECT_FALSE(sheet->isNew());
  EXPECT_FALSE(sheet->changed());
  EXPECT_EQ(recent, std::vector<std::string>{target.string()});
  auto reopened = openSheetFile(target.string(), context);
  ASSERT_TRUE(reopened);
  EXPECT_EQ(reopened->fileType, 1);
  EXPECT_EQ(reopened->lists.front()->items.front()->totalCost, 4);
}

TEST_F(SheetDocumentTest, SaveOverExistingMakesBackupAndTemplateBecomesCst) {
  auto sheet = openTemplateAsNew();
  ASSERT_TRUE(sheet);
  dir.write("mira.chr", "old contents");
  ASSERT_TRUE(writeSheetDocument(*sheet, (dir / "mira.chr").string(), 1, context));
  EXPECT_EQ(ScratchDir::read(dir / "mira.bak"), "old contents");

  headless.addAnswer((dir / "base.cst").string());
  ASSERT_TRUE(saveSheet(*sheet, true, context));
  EXPECT_EQ(sheet->fileType, 2);
  EXPECT_EQ(sheet->name.str(), "base.cst");
}

TEST_F(SheetDocumentTest, FailedWriteKeepsEverything) {
  auto sheet = openTemplateAsNew();
  ASSERT_TRUE(sheet);
  ASSERT_TRUE(writeSheetDocument(*sheet, (dir / "mira.chr").string(), 1, context));
  dir.write("mira.bak", "backup");
  const std::string saved = ScratchDir::read(dir / "mira.chr");
  sheet->setChangedFlag(true);

  // The disk fills up after a few bytes.
  context.openOutput = [](const std::string&) -> std::unique_ptr<ByteStream> {
    auto stream = std::make_unique<MemoryByteStream>();
    stream->setWriteCapacity(20);
    return stream;
  };
  headless.clearTranscript();
  EXPECT_FALSE(writeSheetDocument(*sheet, (dir / "other.chr").string(), 1, context));
  EXPECT_EQ(shown(), std::vector<std::string>{"[Error] No disk space to write file other.chr"});
  EXPECT_EQ(ScratchDir::read(dir / "mira.chr"), saved);
  EXPECT_EQ(ScratchDir::read(dir / "mira.bak"), "backup");
  EXPECT_FALSE(fs::exists(dir / "other.chr"));
  EXPECT_EQ(sheet->path.str(), (dir / "mira.chr").string());
  EXPECT_EQ(sheet->name.str(), "mira.chr");
  EXPECT_TRUE(sheet->changed());
  for (const auto& entry : fs::directory_iterator(dir.path()))
    EXPECT_NE(entry.path().filename().string().substr(0, 2), "cc") << entry.path();
}

TEST_F(SheetDocumentTest, IllegalNameAndUnwritableDirectory) {
  auto sheet = openTemplateAsNew();
  ASSERT_TRUE(sheet);
  EXPECT_FALSE(writeSheetDocument(*sheet, std::string(300, 'x') + ".chr", 1, context));
  EXPECT_EQ(shown().back(), "[Error] Illegal file name.");
  EXPECT_FALSE(writeSheetDocument(*sheet, (dir / "gone" / "x.chr").string(), 1, context));
  EXPECT_EQ(shown().back(), "[Error] Unable to create temporary file");
  EXPECT_TRUE(sheet->isNew());
}

TEST_F(SheetDocumentTest, CloseQueryFollowsTheAnswer) {
  auto sheet = openTemplateAsNew();
  ASSERT_TRUE(sheet);
  ASSERT_TRUE(writeSheetDocument(*sheet, (dir / "mira.chr").string(), 1, context));
  EXPECT_TRUE(closeQuery(*sheet, context));  // unchanged: no question
  EXPECT_TRUE(shown().empty());

  const struct {
    const char* answer;
    bool mayClose;
    bool stillChanged;
  } cases[] = {{"Cancel", false, true}, {"No", true, true}, {"Yes", true, false}};
  for (const auto& c : cases) {
    sheet->setChangedFlag(true);
    headless.clearTranscript();
    headless.addAnswer(c.answer);
    EXPECT_EQ(closeQuery(*sheet, context), c.mayClose) << c.answer;
    EXPECT_EQ(shown().front(), "[Message] File 'mira.chr' has been changed.\\n\\nSave Changes?");
    EXPECT_EQ(sheet->changed(), c.stillChanged) << c.answer;
  }
}

TEST_F(SheetDocumentTest, SaveAllTakesChangedAndNewDocuments) {
  auto fresh = openTemplateAsNew();
  ASSERT_TRUE(fresh);
  headless.addAnswer("Cancel");
  EXPECT_FALSE(saveForSaveAll(*fresh, context));  // new and unchanged: asked for a name
  EXPECT_EQ(shown().size(), 1u);

  ASSERT_TRUE(writeSheetDocument(*fresh, (dir / "a.chr").string(), 1, context));
  headless.clearTranscript();
  EXPECT_TRUE(saveForSaveAll(*fresh, context));  // saved and unchanged: left alone
  EXPECT_TRUE(shown().empty());
  EXPECT_FALSE(fs::exists(dir / "a.bak"));

  fresh->setChangedFlag(true);
  EXPECT_TRUE(saveForSaveAll(*fresh, context));  // changed: saved in place
  EXPECT_TRUE(fs::exists(dir / "a.bak"));
  EXPECT_FALSE(fresh->changed());
}

}  // namespace
}  // namespace zv
