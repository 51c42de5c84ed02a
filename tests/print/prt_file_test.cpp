// The .prt reader and writer: byte fixtures, each guard and its message, one object of each kind
// round-tripped, and the bytes of a new template.

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "core/headless_host.h"
#include "print/file/prt_reader.h"
#include "print/file/prt_writer.h"
#include "prt_bytes.h"

namespace zv {
namespace {

using test::PrtBytes;

class PrtFileTest : public ::testing::Test {
 protected:
  HeadlessHost host_{nullptr};
  HostInstallation installation_{host_};

  std::unique_ptr<PrintTemplate> read(const PrtBytes& b) {
    return readPrintTemplateBytes(b.bytes(), "t.prt");
  }
  std::string lastMessage() const {
    return host_.transcript().empty() ? std::string() : host_.transcript().back();
  }
};

std::string fileBytes(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

/// While it lives, files of this process can't grow beyond `bytes` (writes past it fail with
/// EFBIG, for root as well); a negative size changes nothing.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(long bytes) {
    if (bytes < 0) return;
    getrlimit(RLIMIT_FSIZE, &old_);
    previousHandler_ = std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit = old_;
    limit.rlim_cur = static_cast<rlim_t>(bytes);
    active_ = setrlimit(RLIMIT_FSIZE, &limit) == 0;
  }
  ~FileSizeLimit() {
    if (!active_) return;
    setrlimit(RLIMIT_FSIZE, &old_);
    std::signal(SIGXFSZ, previousHandler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit old_{};
  void (*previousHandler_)(int) = SIG_DFL;
  bool active_ = false;
};

std::string hex(std::string_view bytes) {
  static const char* digits = "0123456789ABCDEF";
  std::string out;
  for (unsigned char c : bytes) {
    if (!out.empty()) out.push_back(' ');
    out.push_back(digits[c >> 4]);
    out.push_back(digits[c & 15]);
  }
  return out;
}

TEST_F(PrtFileTest, OnlyMagicVersionAndEndGiveOneEmptyPageNamedPage1) {
  auto t = read(PrtBytes().head().u16(27));
  ASSERT_TRUE(t);
  ASSERT_EQ(t->pages.size(), 1u);
  EXPECT_EQ(t->pages[0]->displayName(0), "Page 1");
  EXPECT_TRUE(t->pages[0]->objects.empty());
  EXPECT_EQ(t->defaultText.tabWidth, 720);
  EXPECT_TRUE(host_.transcript().empty());
}

TEST_F(PrtFileTest, FaultsFailTheWholeReadWithTheirMessage) {
  struct Case {
    const char* what;
    PrtBytes bytes;
    const char* message;
  };
  const Case cases[] = {
      {"wrong magic", PrtBytes().u16(0).u32(0).u16(27), "[Error] File t.prt not print template"},
      {"version 4", PrtBytes().u16(0).u32(0x56239921).u16(1).u16(4).u16(27),
       "[Error] Bad version (4) on file t.prt"},
      {"pcode level 79", PrtBytes().head().u16(56).u16(79).u16(27),
       "[Error] This version of the application (78) cannot read this print template (79)"},
      {"unknown pcode", PrtBytes().head().u16(99).u16(27),
       "[Error] Unrecognized pcode (99) in file t.prt"},
      {"page beyond the count", PrtBytes().head().u16(42).u16(3).u16(43).u16(5).u16(27),
       "[Error] Error reading print template t.prt (pcode 43)"},
      {"game system too long", PrtBytes().head().u16(2).str("abcdefghijklmnopqrstuvwx").u16(27),
       "[Error] Error reading print template t.prt (pcode 2)"},
      {"cut short", PrtBytes().head().u16(49).raw("\x01"),
       "[Error] Error reading print template t.prt (pcode 49)"},
      {"no end record", PrtBytes().head(), "[Error] Error reading print template t.prt (pcode 1)"},
      {"string on a rectangle",
       PrtBytes().head().u16(3).u16(1).u16(7).u16(1).u16(19).str("x").u16(28).u16(27),
       "[Error] non-text object has string"},
      {"text block on an ellipse", PrtBytes().head().u16(3).u16(1).u16(7).u16(2).u16(9).u16(28),
       "[Error] non-text object has text attributes"},
      {"mode on a label", PrtBytes().head().u16(3).u16(1).u16(7).u16(7).u16(36).u16(1).u16(28),
       "[Error] non-metafile has mode"},
      {"bitmap type on a line",
       PrtBytes().head().u16(3).u16(1).u16(7).u16(3).u16(66).u16(1).u16(28),
       "[Error] non-bitmap has bitmap type"},
      {"bitmap bytes on a line",
       PrtBytes().head().u16(3).u16(1).u16(7).u16(3).u16(70).u32(0).u16(28),
       "[Error] non-bitmap has bitmap bytes"},
      {"corner width on a rectangle",
       PrtBytes().head().u16(3).u16(1).u16(7).u16(1).u16(39).u16(5).u16(28),
       "[Error] Non round box has corner width"},
      {"corner height on a rectangle",
       PrtBytes().head().u16(3).u16(1).u16(7).u16(1).u16(40).u16(5).u16(28),
       "[Error] Non round box has corner height"},
      {"sides on an ellipse", PrtBytes().head().u16(3).u16(1).u16(7).u16(2).u16(73).u16(5).u16(28),
       "[Error] non-polygon has number of sides."},
      {"angle on an ellipse", PrtBytes().head().u16(3).u16(1).u16(7).u16(2).u16(74).u16(5).u16(28),
       "[Error] non-polygon has angle."},
      {"bad tab pcode", PrtBytes().head().u16(4).u16(18).u16(1).u16(29).u16(100).u16(31).u16(27),
       "[Error] Bad pcode found in tab list."},
      {"object ends on another pcode",
       PrtBytes().head().u16(3).u16(1).u16(7).u16(1).u16(42).u16(1).u16(27),
       "[Error] Missing end of object"},
      {"metafile bits cut short",
       PrtBytes().head().u16(3).u16(1).u16(7).u16(9).u16(33).u32(10).raw("abc"),
       "[Error] Error reading metafile bits"},
      {"text string cut short",
       PrtBytes().head().u16(3).u16(1).u16(7).u16(6).u16(19).u16(10).raw("abc"),
       "[Error] Couldn't read text object string"},
      {"kind 8", PrtBytes().head().u16(3).u16(1).u16(7).u16(8).u16(28).u16(27),
       "[Error] Error reading print template t.prt (pcode 7)"},
  };
  for (const Case& c : cases) {
    host_.clearTranscript();
    EXPECT_EQ(read(c.bytes), nullptr) << c.what;
    EXPECT_EQ(lastMessage(), c.message) << c.what;
  }
}

TEST_F(PrtFileTest, FieldsReadAsTheFileSaysThem) {
  PrtBytes b;
  b.head().u16(50).str("Desc").u16(2).str("Tiny").u16(49).u16(5).u16(51).str("PC");
  b.u16(4).u16(16).u16(0xFF9C).u16(10).str("Arial");  // pcode 16 = -100
  b.u16(5).u16(21).u16(24).u16(7);
  b.u16(6).u16(3);
  for (int i = 0; i < 16; ++i)
    b.u32(0x10 + i);
  b.u16(71).u16(72).u16(76).u16(7200).u16(75).u16(4320).u16(77).u16(1);
  b.u16(42).u16(2).u16(43).u16(1).u16(57).u16(1).u16(44).str("More").u16(58).str("@Notes");
  b.u16(59).str("Back").u16(3).u16(1);
  b.u16(7).u16(1).u16(8).u16(0xFFFF).u16(0).u16(16).u16(16).u16(28);
  b.u16(27);
  auto t = read(b);
  ASSERT_TRUE(t) << lastMessage();
  EXPECT_EQ(*t->description, "Desc");
  EXPECT_EQ(t->gameSystem, "Tiny");
  EXPECT_EQ(t->level, 5);
  EXPECT_EQ(t->sheetType, "PC");
  EXPECT_EQ(t->defaultText.firstIndent, 0);
  EXPECT_EQ(t->defaultText.leftIndent, 100);
  EXPECT_EQ(t->defaultText.faceName, "Arial");
  EXPECT_TRUE(t->defaultAttributes.outline());
  EXPECT_FALSE(t->defaultAttributes.fill());
  EXPECT_EQ(t->defaultAttributes.lineWidth, 7);
  EXPECT_EQ(t->paletteColours[0], 0x10u);  // count 3 still reads 16 colours
  EXPECT_EQ(t->paletteColours[15], 0x1Fu);
  EXPECT_TRUE(t->inhibitDetail());
  EXPECT_TRUE(t->landscape());
  EXPECT_EQ(t->formWidth, 7200u);
  EXPECT_EQ(t->formHeight, 4320u);
  EXPECT_EQ(t->promptForMargins, 1u);
  ASSERT_EQ(t->pages.size(), 2u);
  EXPECT_EQ(t->pages[0]->displayName(0), "Page 1");
  const TemplatePage& more = *t->pages[1];
  EXPECT_EQ(more.displayName(1), "More");
  EXPECT_EQ(more.pageType, 1u);
  EXPECT_EQ(*more.expression, "@Notes");
  EXPECT_EQ(*more.backgroundPage, "Back");
  ASSERT_EQ(more.objects.size(), 1u);
  EXPECT_EQ(more.objects[0]->logical.left, -1);
  EXPECT_EQ(more.objects[0]->logical.right, 16);
  EXPECT_EQ(t->currentPageIndex, 0u);
}

TEST_F(PrtFileTest, EndInsideAnObjectListCutsThePageWithAWarning) {
  auto t = read(PrtBytes().head().u16(3).u16(3).u16(7).u16(1).u16(28).u16(27));
  ASSERT_TRUE(t);
  EXPECT_EQ(t->pages[0]->objects.size(), 1u);
  EXPECT_EQ(lastMessage(), "[Warning] Found truncated item list");
}

TEST_F(PrtFileTest, ANewTemplateHasTheFixedBytes) {
  auto t = newPrintTemplate("Tiny");
  std::string bytes = printTemplateBytes(*t);
  const std::string start =
      "00 00 21 99 23 56 01 00 03 00 02 00 04 00 54 69 6E 79 31 00 00 00 33 00 00 00 38 00 "
      "4E 00 05 00 16 00 15 00 18 00 05 00 1A 00 FF FF FF 00 19 00 00 00 00 00 04 00 0C 00 "
      "00 00 0A 00 0F 00 54 69 6D 65 73 20 4E 65 77 20 52 6F 6D 61 6E";
  EXPECT_EQ(hex(bytes).substr(0, start.size()), start);
  const std::string end = "2B 00 00 00 39 00 00 00 2C 00 06 00 50 61 67 65 20 31 03 00 00 00 1B 00";
  std::string all = hex(bytes);
  EXPECT_EQ(all.substr(all.size() - end.size()), end);
  // The palette: pcode 6, 16, then sixteen white colours.
  EXPECT_NE(all.find("06 00 10 00 FF FF FF 00"), std::string::npos);
}

/// A template holding one object of each kind a file may have.
std::unique_ptr<PrintTemplate> everyKind() {
  auto t = newPrintTemplate("Hollowmark");
  t->description = "All kinds";
  t->sheetType = "Warden";
  t->level = 3;
  t->includeFile = "print.inc";
  t->setFlag(kTemplateLandscape, true);
  t->formWidth = 7200;
  t->formHeight = 5040;
  t->promptForMargins = 1;
  t->paletteColours[3] = 0x123456;
  TemplatePage& page = *t->pages[0];
  page.backgroundPage = "Back";
  int y = 0;
  for (std::uint16_t kind : {1, 2, 3, 4, 5, 6, 7, 9, 10, 11, 12, 14}) {
    auto o = newTemplateObject(*t, static_cast<ObjectKind>(kind), {100, y, 2000, y + 500});
    y += 600;
    o->attributes.setRuleLines(kind == 6);
    o->attributes.setHorizontalCells(kind == 1 ? 4 : 0);
    o->attributes.setVerticalCells(kind == 1 ? 2 : 0);
    o->attributes.lineColour = 0xFF0000;
    switch (kind) {
      case 6:
        o->text = "%name%\r\nLine two";
        o->continuationTag = "Gear";
        o->nextLink = 9;
        o->previousLink = 4;
        o->textProperties.tabs = {{1440, 1}, {-720, 3}};
        o->textProperties.columns = 2;
        o->textProperties.columnSpacing = 360;
        o->textProperties.rotation = 900;
        o->textProperties.justification = 3;
        o->textProperties.wrapTabs = true;
        o->textProperties.leftIndent = 200;
        o->textProperties.lineHeight = 300;
        o->textProperties.charStyle = kCharBold | kCharItalic;
        break;
      case 7:
        o->text = "Label";
        o->isContinuation = true;
        break;
      case 9:
        o->mapMode = 8;
        o->extentX = 1000;
        o->extentY = 500;
        o->metafileBits = std::string("\x01\x00\x09\x00\xFF", 5);
        break;
      case 10:
        o->bitmap = {3, 16, 8, 24, std::string("\x89PNG\r\n\x1a\n\0\0", 10)};
        break;
      case 11:
        o->referenceType = 1;
        o->reference = "omen-calm.png";
        o->defaultFile = "omen-dire.png";
        break;
      case 12:
        o->cornerWidth = 200;
        o->cornerHeight = 100;
        break;
      case 14:
        o->sides = 5;
        o->polygonRotation = 90;
        break;
      default:
        break;
    }
    page.objects.push_back(std::move(o));
  }
  auto second = std::make_unique<TemplatePage>();
  second->name = "More";
  second->pageType = 1;
  second->expression = "@Gear";
  t->pages.push_back(std::move(second));
  return t;
}

TEST_F(PrtFileTest, EveryKindRoundTripsFieldByFieldAndByteForByte) {
  auto t = everyKind();
  std::string bytes = printTemplateBytes(*t);
  auto back = read(PrtBytes().raw(bytes));
  ASSERT_TRUE(back) << lastMessage();
  EXPECT_TRUE(t->sameStored(*back));
  ASSERT_EQ(back->pages[0]->objects.size(), 12u);
  const TemplateObject& text = *back->pages[0]->objects[5];
  EXPECT_EQ(*text.continuationTag, "Gear");
  EXPECT_EQ(text.textProperties.tabs[1].position, -720);
  EXPECT_EQ(back->pages[0]->objects[7]->metafileBits, t->pages[0]->objects[7]->metafileBits);
  EXPECT_EQ(printTemplateBytes(*back), bytes);
  EXPECT_TRUE(host_.transcript().empty());
}

TEST_F(PrtFileTest, OneCellIsNotWrittenAndReadsBackAsNone) {
  auto t = newPrintTemplate("Tiny");
  auto o = newTemplateObject(*t, ObjectKind::Rectangle, {0, 0, 100, 100});
  o->attributes.setHorizontalCells(1);
  t->pages[0]->objects.push_back(std::move(o));
  std::string bytes = printTemplateBytes(*t);
  EXPECT_EQ(hex(bytes).find("2E 00"), std::string::npos);
  auto back = read(PrtBytes().raw(bytes));
  ASSERT_TRUE(back);
  EXPECT_EQ(back->pages[0]->objects[0]->attributes.horizontalCells(), 0u);
}

TEST_F(PrtFileTest, AFailedSaveKeepsTheOldFile) {
  namespace fs = std::filesystem;
  const fs::path dir = fs::temp_directory_path() / "zv_prt_save_test";
  fs::remove_all(dir);
  fs::create_directories(dir);
  const fs::path file = dir / "old.prt";
  auto t = everyKind();
  ASSERT_EQ(writePrintTemplate(*t, file), 0);
  const std::string written = fileBytes(file);
  EXPECT_EQ(written, printTemplateBytes(*t));
  auto again = readPrintTemplate(file);
  ASSERT_TRUE(again);
  EXPECT_TRUE(again->sameStored(*t));

  // Failures that hold for every user, root too: a folder that is a regular file, and a disk
  // that refuses to let a file grow (the file size limit of the process).
  std::ofstream(dir / "blocker") << "a file, not a folder";
  struct Case {
    const char* name;
    fs::path target;
    bool limitFileSize;
  };
  const Case cases[] = {
      {"the folder is a file", dir / "blocker" / "new.prt", false},
      {"the file can't grow", file, true},
  };
  for (const Case& c : cases) {
    host_.clearTranscript();
    t->description = std::string("changed: ") + c.name;
    t->setFlag(kTemplateChanged, true);
    const std::string pathBefore = t->path;
    int result = 0;
    {
      FileSizeLimit limit(c.limitFileSize ? 64 : -1);
      result = writePrintTemplate(*t, c.target);
    }
    EXPECT_EQ(result, -1) << c.name;
    EXPECT_EQ(lastMessage(), "[Error] Error writing print template " + c.target.string()) << c.name;
    // The template is still unsaved and keeps its path.
    EXPECT_TRUE(t->flags & kTemplateChanged) << c.name;
    EXPECT_EQ(t->path, pathBefore) << c.name;
    EXPECT_EQ(fileBytes(file), written) << c.name;
    // No temporary file is left beside the old one.
    std::size_t entries = 0;
    for ([[maybe_unused]] const auto& entry : fs::directory_iterator(dir))
      ++entries;
    EXPECT_EQ(entries, 2u) << c.name;
  }
  fs::remove_all(dir);
}

}  // namespace
}  // namespace zv
