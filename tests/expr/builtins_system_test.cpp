// The built-ins that reach beyond the sheet: the typing of parameter texts, the file-value
// dialog through the host, the fields of a sheet's dialogs and the size of a picture block.

#include "expr/builtins_system.h"

#include "core/dialog.h"
#include "core/fileinfo.h"
#include "expr_test_support.h"

namespace zv::testing {
namespace {

class SystemBuiltinsTest : public ExprTest {
 protected:
  SystemBuiltinsTest() {
    table_.owner = &sheet_;
    sheet_.dlgs.push_back(std::make_unique<DlgInfo>());
    sheet_.dlgs.back()->owner = &sheet_;
    sheet_.dlgs.back()->name = "Main";
  }

  DlgItem& field(std::int32_t kind, const std::string& name) {
    auto item = std::make_unique<DlgItem>();
    item->kind = kind;
    item->varName = name;
    return sheet_.dlgs.back()->appendItem(std::move(item));
  }

  FileInfo sheet_;
};

TEST_F(SystemBuiltinsTest, ParameterTexts) {
  struct Case {
    const char* text;
    const char* value;
  };
  const Case cases[] = {
      {"12", "int 12"},        {" - 3 ", "int -3"},       {"1.5", "float 1.5"},
      {"-.25", "float -0.25"}, {"abc", "string \"abc\""}, {"1a", "string \"1a\""},
      {"", "string \"\""},     {"-", "string \"-\""},
  };
  for (const Case& c : cases)
    EXPECT_EQ(describe(configParamValue(c.text)), c.value) << c.text;
}

TEST_F(SystemBuiltinsTest, FileValueDialogAsksTheHost) {
  host_.addAnswer("/tmp/hero.chr");
  host_.addAnswer("Cancel");
  EXPECT_EQ(eval("getfilevalue(\"Pick a file\", \"start.chr\")"), "string \"/tmp/hero.chr\"");
  EXPECT_EQ(eval("getfilevalue(\"Pick a file\", \"start.chr\")"), "string \"\"");
  EXPECT_EQ(eval("getfilevalue(\"Pick a file\", \"start.chr\")"), "string \"start.chr\"")
      << "with no answer left, the field as it started";
  ASSERT_EQ(host_.transcript().size(), 3u);
  EXPECT_EQ(host_.transcript()[0], "[Pick a file] start.chr");
}

TEST_F(SystemBuiltinsTest, DialogFieldValuesByKind) {
  field(31, "Race").text = "Elf";
  field(30, "Brave").checked = 1;
  DlgItem& combo = field(54, "Size");
  combo.choices = "Small;1;Large;2.5";
  combo.selectedIndex = 1;
  define("Might", "3 + 4");
  field(36, "Might");
  DlgItem& picture = field(84, "Portrait");
  std::string png = "\x89PNG\r\n\x1a\n";
  png += std::string("\0\0\0\x0dIHDR", 8);
  png += std::string("\0\0\x01\x40\0\0\0\xF0", 8);
  picture.pictureData = png;
  DlgItem& list = field(13, "Gear");
  list.listField = std::make_unique<ListInfo>();
  list.listField->total = 12.5;

  struct Case {
    const char* formula;
    const char* value;
  };
  const Case cases[] = {
      {"dialogfieldvalue(\"main\", \"race\")", "string \"Elf\""},
      {"dialogfieldvalue(\"Main\", \"Brave\")", "int 1"},
      {"dialogfieldvalue(\"Main\", \"Size\")", "float 2.5"},
      {"dialogfieldvalue(\"Main\", \"Might\")", "int 7"},
      {"dialogfieldvalue(\"Main\", \"Portrait\")", "string \"320x240\""},
      {"dialogfieldvalue(\"Main\", \"Gear\")", "float 12.5"},
      {"dialogfieldvalue(\"Main\", \"Nothing\")", "int 0"},
      {"dialogfieldvalue(\"Other\", \"Race\")", "int 0"},
  };
  for (const Case& c : cases)
    EXPECT_EQ(eval(c.formula), c.value) << c.formula;
}

TEST_F(SystemBuiltinsTest, PictureSizes) {
  std::string gif = "GIF89a";
  gif += std::string("\x20\x00\x10\x00", 4);
  std::string bmp = "BM" + std::string(16, '\0');
  bmp += std::string("\x08\0\0\0\xFC\xFF\xFF\xFF", 8);  // 8 wide, 4 high top-down
  std::string jpeg = std::string("\xFF\xD8\xFF\xE0\x00\x04\x00\x00", 8);
  jpeg += std::string("\xFF\xC0\x00\x11\x08\x00\x30\x00\x40\x03", 10);
  EXPECT_EQ(pictureSizeText(gif), "32x16");
  EXPECT_EQ(pictureSizeText(bmp), "8x4");
  EXPECT_EQ(pictureSizeText(jpeg), "64x48");
  EXPECT_EQ(pictureSizeText("not a picture"), "0x0");
  EXPECT_EQ(pictureSizeText(std::string("\xFF\xD8\xFF\xE0\x00\x01", 6)), "0x0");
}

}  // namespace
}  // namespace zv::testing
