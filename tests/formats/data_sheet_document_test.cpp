// A data sheet opened as a document: read apart from the master data, its categories as
// sublists of the root, and saved through a "ds" temporary file, the backup rule, the question
// before a text data sheet becomes binary, and the reload of a loaded data sheet.

#include "formats/data_sheet_document.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/engine_context.h"
#include "core/game_systems.h"
#include "core/headless_host.h"
#include "core/scratch_dir.h"
#include "formats/datasheet/data_sheet_loader.h"

namespace zv::testing {
namespace {

namespace fs = std::filesystem;
using test::ScratchDir;

// Categories in file order: Tools keeps its written order (sort mode 1), Woods is sorted by name.
constexpr std::string_view kTools =
    "\"Data Sheet file v. 1\" gamesystem Tarnwick title \"Tarnwick tools\" version 253 level 3\n"
    "copyright \"Made up for tests\"\n"
    "datafile ashgrove.cds end\n"
    "define var Grain 5 end\n"
    "cat Tools sort 1\n"
    "item Saw cost 3\n"
    "item Adze formula x*2 level 1\n"
    "sublist Kits memlist item Rasp cost 2 item Awl cost 1 end\n"
    "end\n"
    "cat Woods item Yew cost 5 item Oak cost 4 end\n"
    "strings Greeting \"Well met\" end\n"
    "options list Finishes add Oiled 1 mult Heavy 2 end end\n"
    "end\n";

const char* const kQuestion =
    "[Overwriting Text Data Sheet] You are about to overwrite a text data sheet. You will be "
    "unable to update this data sheet if you overwrite it.\\n\\nAre you sure you want to "
    "overwrite the data sheet?";

std::string names(const ItemChain& chain) {
  std::string out;
  for (const auto& item : chain) {
    out += (out.empty() ? "" : " ") + item->name;
    if (item->isSublist()) out += "[" + names(item->children) + "]";
  }
  return out;
}

class DataSheetDocumentTest : public ::testing::Test {
 protected:
  void SetUp() override {
    clearGameSystems();
    dir.write("tools.cds", kTools);
    context.dataDir = dir.path();
    context.binary = true;
    context.noteRecentFile = [this](const std::string& path) { recent.push_back(path); };
    engine().dataSheets = DataSheetSettings{dir.path(), 1, false};
  }
  void TearDown() override {
    clearGameSystems();
    engine().dataSheets = DataSheetSettings{};
  }

  std::unique_ptr<DataSheetDocument> open(const std::string& name) {
    return openDataSheetDocument(dir / name, dir.path());
  }
  const std::vector<std::string>& shown() const { return headless.transcript(); }
  /// The names of the files in the folder that aren't `keep`.
  std::vector<std::string> strayFiles(const std::vector<std::string>& keep) const {
    std::vector<std::string> stray;
    for (const auto& entry : fs::directory_iterator(dir.path())) {
      const std::string name = entry.path().filename().string();
      if (std::find(keep.begin(), keep.end(), name) == keep.end()) stray.push_back(name);
    }
    return stray;
  }

  HeadlessHost headless{nullptr};
  HostInstallation installation{headless};
  ScratchDir dir;
  DocumentContext context;
  std::vector<std::string> recent;
};

TEST_F(DataSheetDocumentTest, CategoriesBecomeSublistsOfTheRootAndTheMasterDataStayUntouched) {
  ASSERT_TRUE(loadDataSheet(dir / "tools.cds", "tools.cds"));
  GameSystem* master = findGameSystem("Tarnwick");
  ASSERT_NE(master, nullptr);
  const std::int32_t loadedId = findLoadedDataSheet("tools.cds")->id;
  headless.clearTranscript();  // ashgrove.cds, which it names, isn't there

  auto document = open("tools.cds");
  ASSERT_TRUE(document);
  const FileInfo& record = document->record();
  EXPECT_EQ(record.fileType, 6);
  EXPECT_EQ(record.name.str(), "tools.cds");
  EXPECT_EQ(record.title, "Tarnwick tools");
  EXPECT_EQ(record.copyright, "Made up for tests");
  EXPECT_EQ(record.level, 3);
  EXPECT_EQ(record.dataFiles, std::vector<std::string>{"ashgrove.cds"});
  ASSERT_EQ(record.defines.size(), 1u);
  EXPECT_EQ(record.defines[0].name, "Grain");
  EXPECT_FALSE(record.binary());
  EXPECT_FALSE(record.changed());

  // The document's game system is its own; the process's keeps its one data sheet and items.
  ASSERT_NE(document->gameSystem(), nullptr);
  EXPECT_NE(document->gameSystem(), master);
  EXPECT_EQ(findGameSystem("Tarnwick"), master);
  ASSERT_EQ(master->dataSheets.size(), 1u);
  EXPECT_EQ(master->dataSheets[0].id, loadedId);
  EXPECT_EQ(names(master->findCategory("Tools")->items), "Saw Adze Kits[Awl Rasp]");
  EXPECT_TRUE(document->gameSystem()->categories.empty());  // they moved to the root

  ASSERT_EQ(record.lists.size(), 1u);
  const ListInfo& root = document->root();
  EXPECT_EQ(names(root.items), "Tools[Saw Adze Kits[Awl Rasp]] Woods[Oak Yew]");
  const struct {
    const char* category;
    unsigned sort;
  } categories[] = {{"Tools", 1}, {"Woods", 0}};
  for (const auto& c : categories) {
    const Item* sublist = document->findCategory(c.category);
    ASSERT_NE(sublist, nullptr) << c.category;
    EXPECT_TRUE(sublist->isSublist());
    EXPECT_EQ(sublist->sort(), c.sort) << c.category;
    EXPECT_EQ(sublist->owner, &record);
    EXPECT_EQ(sublist->list, &root);
    for (const auto& member : sublist->children) {
      EXPECT_EQ(member->parent, sublist);
      EXPECT_EQ(member->depth, 1);
    }
  }
  EXPECT_EQ(document->gameSystem()->strings.size(), 1u);
  ASSERT_EQ(document->gameSystem()->options.size(), 1u);
  EXPECT_EQ(document->gameSystem()->options[0].entries.size(), 2u);
  EXPECT_TRUE(shown().empty()) << shown().front();
}

TEST_F(DataSheetDocumentTest, EachFormSavesAndReopensByteIdentical) {
  const struct {
    bool binary;
    const char* head;  ///< how the file begins
  } forms[] = {{true, "\x37\x57\x03\x05"}, {false, "\"Data Sheet file v. 1\" gamesystem Tarnwick"}};
  for (const auto& form : forms) {
    SCOPED_TRACE(form.binary ? "binary" : "text");
    context.binary = form.binary;
    auto document = open("tools.cds");
    ASSERT_TRUE(document);
    const std::string first = (dir / (form.binary ? "first-b.cds" : "first-t.cds")).string();
    ASSERT_TRUE(writeDataSheetDocumentFile(*document, first, context));
    EXPECT_EQ(document->record().binary(), form.binary);
    const std::string bytes = ScratchDir::read(first);
    EXPECT_EQ(bytes.rfind(form.head, 0), 0u);

    auto reopened = openDataSheetDocument(first);
    ASSERT_TRUE(reopened);
    EXPECT_EQ(reopened->record().binary(), form.binary);
    EXPECT_EQ(names(reopened->root().items), "Tools[Saw Adze Kits[Awl Rasp]] Woods[Oak Yew]");
    EXPECT_EQ(reopened->findCategory("Tools")->sort(), 1u);
    const std::string second = (dir / (form.binary ? "second-b.cds" : "second-t.cds")).string();
    ASSERT_TRUE(writeDataSheetDocumentFile(*reopened, second, context));
    EXPECT_EQ(ScratchDir::read(second), bytes);
  }
  // The two forms hold the same: the binary file written as text is the text file.
  context.binary = false;
  auto fromBinary = openDataSheetDocument(dir / "first-b.cds");
  ASSERT_TRUE(fromBinary);
  ASSERT_TRUE(writeDataSheetDocumentFile(*fromBinary, (dir / "third-t.cds").string(), context));
  EXPECT_EQ(ScratchDir::read(dir / "third-t.cds"), ScratchDir::read(dir / "first-t.cds"));
  EXPECT_TRUE(shown().empty()) << shown().front();
}

TEST_F(DataSheetDocumentTest, OverwritingATextDataSheetInBinaryFormAsksFirst) {
  const struct {
    const char* name;
    bool binarySetting;
    bool targetBinary;  ///< the file on disk is in binary form already
    const char* answer;
    bool asked;
    bool saved;
  } cases[] = {
      {"no stops the save", true, false, "No", true, false},
      {"yes overwrites", true, false, "Yes", true, true},
      {"text setting: no question", false, false, "", false, true},
      {"binary over binary: no question", true, true, "", false, true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    dir.write("tools.cds", kTools);
    fs::remove(dir / "tools.bak");
    if (c.targetBinary) {
      context.binary = true;
      auto binary = open("tools.cds");
      ASSERT_TRUE(binary);
      ASSERT_TRUE(writeDataSheetDocumentFile(*binary, (dir / "tools.cds").string(), context));
    }
    const std::string before = ScratchDir::read(dir / "tools.cds");
    auto document = open("tools.cds");
    ASSERT_TRUE(document);
    document->record().setChangedFlag(true);
    context.binary = c.binarySetting;
    headless.clearTranscript();
    if (*c.answer != '\0') headless.addAnswer(c.answer);
    EXPECT_EQ(saveDataSheetDocument(*document, false, context), c.saved);
    EXPECT_EQ(!shown().empty() && shown().front() == kQuestion, c.asked);
    EXPECT_EQ(shown().size(), c.asked ? 1u : 0u);
    EXPECT_EQ(document->record().changed(), !c.saved);
    if (c.saved) {
      EXPECT_EQ(ScratchDir::read(dir / "tools.bak"), before);
      EXPECT_EQ(ScratchDir::read(dir / "tools.cds").rfind("\x37\x57\x03\x05", 0) == 0,
                c.binarySetting);
    } else {
      EXPECT_EQ(ScratchDir::read(dir / "tools.cds"), before);
      EXPECT_FALSE(fs::exists(dir / "tools.bak"));
    }
    EXPECT_EQ(strayFiles({"tools.cds", "tools.bak"}), std::vector<std::string>{});
  }
}

TEST_F(DataSheetDocumentTest, TheTemporaryIsADsFileBesideTheTarget) {
  auto document = open("tools.cds");
  ASSERT_TRUE(document);
  fs::create_directory(dir / "out");
  std::string temporary;
  context.openOutput = [&temporary](const std::string& path) -> std::unique_ptr<ByteStream> {
    temporary = path;
    return std::make_unique<FileByteStream>(path, FileByteStream::Mode::Write);
  };
  ASSERT_TRUE(writeDataSheetDocumentFile(*document, (dir / "out" / "kept.cds").string(), context));
  const fs::path made(temporary);
  EXPECT_EQ(made.parent_path(), dir / "out");
  const std::string name = made.filename().string();
  ASSERT_EQ(name.size(), 8u) << name;
  EXPECT_EQ(name.substr(0, 2), "ds");
  EXPECT_FALSE(fs::exists(made));  // renamed to the target
  EXPECT_EQ(document->record().path.str(), (dir / "out" / "kept.cds").string());
  EXPECT_EQ(document->record().name.str(), "kept.cds");
  EXPECT_EQ(recent, std::vector<std::string>{(dir / "out" / "kept.cds").string()});
}

TEST_F(DataSheetDocumentTest, AFailedSaveLeavesTheOldFileAndItsBackup) {
  context.binary = false;
  auto document = open("tools.cds");
  ASSERT_TRUE(document);
  dir.write("tools.bak", "the backup");
  const std::string before = ScratchDir::read(dir / "tools.cds");
  const std::string target = (dir / "tools.cds").string();

  struct Case {
    const char* name;
    std::function<void()> inject;
    std::string message;
  };
  FileOperations failingBackup = FileOperations::disk();
  failingBackup.remove = [](const fs::path&, std::error_code& error) {
    error = std::make_error_code(std::errc::permission_denied);
    return false;
  };
  const Case cases[] = {
      {"the disk fills up",
       [this] {
         context.openOutput = [](const std::string&) -> std::unique_ptr<ByteStream> {
           auto stream = std::make_unique<MemoryByteStream>();
           stream->setWriteCapacity(40);
           return stream;
         };
       },
       "[Error] No disk space to write file tools.cds"},
      {"the device fails",
       [this] {
         context.openOutput = [](const std::string&) -> std::unique_ptr<ByteStream> {
           auto stream = std::make_unique<MemoryByteStream>();
           stream->setFailWrites(true);
           return stream;
         };
       },
       "[Error] Error writing file tools.cds"},
      {"the old backup can't go",
       [this, &failingBackup] {
         context.openOutput = nullptr;
         context.fileOperations = &failingBackup;
       },
       "[Error] Unable to destroy previous backup of " + target},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    c.inject();
    document->record().setChangedFlag(true);
    headless.clearTranscript();
    EXPECT_FALSE(writeDataSheetDocumentFile(*document, target, context));
    ASSERT_EQ(shown().size(), 1u);
    EXPECT_EQ(shown().front(), c.message);
    EXPECT_EQ(ScratchDir::read(dir / "tools.cds"), before);
    EXPECT_EQ(ScratchDir::read(dir / "tools.bak"), "the backup");
    EXPECT_EQ(strayFiles({"tools.cds", "tools.bak"}), std::vector<std::string>{});
    EXPECT_TRUE(document->record().changed());
    EXPECT_EQ(document->record().path.str(), target);
  }
  EXPECT_TRUE(recent.empty());
}

TEST_F(DataSheetDocumentTest, SavingALoadedDataSheetLoadsItAgain) {
  const struct { bool loaded; } cases[] = {{true}, {false}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.loaded ? "loaded" : "not loaded");
    clearGameSystems();
    dir.write("tools.cds", kTools);
    if (c.loaded) {
      ASSERT_TRUE(loadDataSheet(dir / "tools.cds", "tools.cds"));
    }
    auto document = open("tools.cds");
    ASSERT_TRUE(document);
    document->findCategory("Woods")->appendChild(std::make_unique<Item>(ItemKind::Item, "Ash"));
    document->record().setChangedFlag(true);
    ASSERT_TRUE(saveDataSheetDocument(*document, false, context));
    EXPECT_FALSE(document->record().changed());
    OpenDataSheet* loaded = findLoadedDataSheet("tools.cds");
    EXPECT_EQ(loaded != nullptr, c.loaded);
    if (c.loaded) {
      // The load sorts Woods by name, with the new Ash in it.
      EXPECT_EQ(names(findGameSystem("Tarnwick")->findCategory("Woods")->items), "Ash Oak Yew");
      EXPECT_EQ(findGameSystem("Tarnwick")->dataSheets.size(), 1u);
    }
  }
}

TEST_F(DataSheetDocumentTest, SaveAsAndTheCloseQuestion) {
  auto document = open("tools.cds");
  ASSERT_TRUE(document);
  EXPECT_TRUE(dataSheetCloseQuery(*document, context));  // unchanged: no question
  EXPECT_TRUE(shown().empty());

  // Save As offers the file's own name in its folder; a name without extension gets ".cds".
  headless.addAnswer((dir / "copy").string());
  ASSERT_TRUE(saveDataSheetDocument(*document, true, context));
  EXPECT_EQ(shown().front(), "[Save As] tools.cds");
  EXPECT_EQ(document->record().name.str(), "copy.cds");
  EXPECT_TRUE(fs::exists(dir / "copy.cds"));

  const struct {
    const char* answer;
    bool mayClose;
    bool stillChanged;
  } cases[] = {{"Cancel", false, true}, {"No", true, true}, {"Yes", true, false}};
  for (const auto& c : cases) {
    document->record().setChangedFlag(true);
    headless.clearTranscript();
    headless.addAnswer(c.answer);
    EXPECT_EQ(dataSheetCloseQuery(*document, context), c.mayClose) << c.answer;
    EXPECT_EQ(shown().front(), "[Message] File 'copy.cds' has been changed.\\n\\nSave Changes?");
    EXPECT_EQ(document->record().changed(), c.stillChanged) << c.answer;
  }
}

TEST_F(DataSheetDocumentTest, FilesThatDontReadGiveNoDocument) {
  const struct {
    const char* name;
    const char* contents;  ///< null: no file
    const char* message;
  } cases[] = {
      {"absent.cds", nullptr, "[Error] Cannot open data sheet 'absent.cds'."},
      {"empty.cds", "", "[Empty File] The data sheet empty.cds is empty."},
      {"endless.cds", "\"Data Sheet file v. 1\" gamesystem Tarnwick cat Tools item Saw end",
       "[Error] End missing"},
  };
  for (const auto& c : cases) {
    if (c.contents != nullptr) {
      dir.write(c.name, c.contents);
    }
    headless.clearTranscript();
    EXPECT_EQ(open(c.name), nullptr) << c.name;
    ASSERT_FALSE(shown().empty()) << c.name;
    EXPECT_EQ(shown().back(), c.message);
  }
  EXPECT_EQ(findGameSystem("Tarnwick"), nullptr);
}

}  // namespace
}  // namespace zv::testing
