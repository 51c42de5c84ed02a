// Dialogs and their fields in the sheet grammar.

#include "formats/tokens/keywords.h"
#include "sheet_test_support.h"

namespace zv::testing {
namespace {

using SheetDialogs = SheetFixture;

std::string dialogText(std::string_view body) {
  return sheetText("dialog Front 400 300 loc 10 20 " + std::string(body) + " end");
}

TEST_F(SheetDialogs, ReadsTheDialogKeywords) {
  ASSERT_TRUE(read(dialogText(
      "open font Tahoma 8 charset 1 pitch 2 fontcolor 65280 fontlist 2 "
      "font Courier 10 charset 0 end font Verdana 12 charset 1 pitch 2 fontcolor 255 end end "
      "menuchar M checkexp \"Bonus<5\" checkmsg High defcheckexp 1 defcheckmsg Bad "
      "skin parchment.bmp bgcolor 12632256 help main.hlp")));
  ASSERT_EQ(sheet->dlgs.size(), 1u);
  const DlgInfo& d = *sheet->dlgs[0];
  EXPECT_EQ(d.name, "Front");
  EXPECT_EQ(d.width, 400);
  EXPECT_EQ(d.height, 300);
  EXPECT_EQ(d.x, 10);
  EXPECT_EQ(d.y, 20);
  EXPECT_TRUE(d.open());
  EXPECT_TRUE(d.inUse());
  EXPECT_EQ(d.font.fontFace, "Tahoma");
  EXPECT_EQ(d.font.fontCharset, 1);
  EXPECT_EQ(d.font.fontPitch, 2);
  EXPECT_EQ(d.font.fontColor, 65280u);
  ASSERT_EQ(d.fonts.size(), 2u);
  EXPECT_EQ(d.fonts[0].fontFace, "Courier");
  EXPECT_EQ(d.fonts[1].fontSize, 12);
  EXPECT_EQ(d.fonts[1].fontColor, 255u);
  EXPECT_EQ(d.menuChar, "M");
  EXPECT_EQ(d.checkExp, "Bonus<5");
  EXPECT_EQ(d.checkMsg, "High");
  EXPECT_EQ(d.defCheckExp, "1");
  EXPECT_EQ(d.defCheckMsg, "Bad");
  EXPECT_EQ(d.skin, "parchment.bmp");
  EXPECT_TRUE(d.hasBgColor());
  EXPECT_EQ(d.bgColor, 12632256u);
  EXPECT_EQ(d.help, "main.hlp");
  EXPECT_EQ(d.owner, sheet.get());
}

TEST_F(SheetDialogs, FontListMessagesLetTheReadGoOn) {
  ASSERT_TRUE(read(dialogText("fontlist 1 font Courier 10 cost charset 2 end end menuchar M")));
  EXPECT_EQ(messages(),
            std::vector<std::string>{"[Error] Unknown keyword in dialog item font list: cost"});
  EXPECT_EQ(sheet->dlgs[0]->fonts.at(0).fontCharset, 2);
  EXPECT_EQ(sheet->dlgs[0]->menuChar, "M");

  host.clearTranscript();
  // The token where the last `end` should be belongs to the dialog.
  ASSERT_TRUE(read(dialogText("fontlist 1 font Courier 10 end menuchar M")));
  EXPECT_EQ(messages(), std::vector<std::string>{"[Error] Missing end for fontlist"});
  EXPECT_EQ(sheet->dlgs[0]->menuChar, "M");
}

TEST_F(SheetDialogs, ReadsEveryFieldKind) {
  ASSERT_TRUE(read(sheetText(
      "list Skills var SkillPoints 0 end "
      "dialog Front 400 300 loc 10 10 "
      "text \"Name:\" 10 11 60 20 left "
      "groupbox Traits 5 40 200 100 "
      "formula SkillPoints+1 10 60 100 20 right Shown "
      "edittext Bob 80 10 120 20 HeroName "
      "checkbox Brave 10 80 50 20 IsBrave 1 "
      "editvar \"2+3\" 10 100 60 20 checkexp Might>0 checkmsg Positive default 1 forceconst "
      "format %d formula Might*2 noborder Might "
      "combobox 1 10 120 80 20 sort Stature \"Small;1;Large;3;Huge;5\" "
      "list Tally 220 40 150 100 list Notions var NotionCount 4 item Idea cost 2 end "
      "picture Portrait 300 10 64 64 0 "
      "picture Crest 300 80 16 16 5 \"a\"bcd\" "
      "button Roll 10 150 60 24 Rolls roll.scp up.bmp \"\" "
      "dispbm Brave+1 80 150 32 32 Badge 2 coward.bmp hero.bmp end")));
  const auto& fields = sheet->dlgs.at(0)->items;
  ASSERT_EQ(fields.size(), 12u);
  const std::vector<int> kinds = {kText,     kGroupbox, kFormula, kEdittext, kCheckbox, kEditvar,
                                  kCombobox, kList,     kPicture, kPicture,  kButton,   kDispbm};
  for (std::size_t i = 0; i < kinds.size(); ++i) {
    EXPECT_EQ(fields[i]->kind, kinds[i]) << i;
    EXPECT_EQ(fields[i]->owner, sheet->dlgs[0].get());
  }

  const DlgItem& text = *fields[0];
  EXPECT_EQ(text.text, "Name:");
  EXPECT_EQ((Rect16{text.x, text.y, text.width, text.height}), (Rect16{10, 11, 60, 20}));
  EXPECT_EQ(text.justify, kLeft);
  EXPECT_EQ(fields[1]->text, "Traits");

  const DlgItem& formula = *fields[2];
  EXPECT_EQ(formula.justify, kRight);
  EXPECT_EQ(formula.varName, "Shown");
  EXPECT_EQ(binder.bodyOf("Shown"), "SkillPoints+1");
  EXPECT_EQ(RecordingBinder::nameOf(formula.symbol), "Shown");

  EXPECT_EQ(fields[3]->text, "Bob");
  EXPECT_EQ(fields[3]->varName, "HeroName");
  EXPECT_EQ(fields[3]->symbol, nullptr);
  EXPECT_EQ(binder.bodyOf("HeroName"), "?");

  EXPECT_EQ(fields[4]->checked, 1);
  EXPECT_EQ(binder.bodyOf("IsBrave"), "1");

  const DlgItem& editvar = *fields[5];
  EXPECT_EQ(editvar.text, "5");  // forceconst: the value replaces the expression
  EXPECT_TRUE(editvar.forceConst());
  EXPECT_TRUE(editvar.noBorder());
  EXPECT_EQ(editvar.checkExp, "Might>0");
  EXPECT_EQ(editvar.checkMsg, "Positive");
  EXPECT_EQ(editvar.defaultExp, "1");
  EXPECT_EQ(editvar.format, "%d");
  EXPECT_EQ(editvar.formula, "Might*2");
  EXPECT_EQ(editvar.varName, "Might");
  EXPECT_EQ(binder.bodyOf("Might"), "5");

  const DlgItem& combo = *fields[6];
  EXPECT_TRUE(combo.sorted());
  EXPECT_EQ(combo.varName, "Stature");
  EXPECT_EQ(combo.selectedIndex, 1);
  EXPECT_EQ(combo.choices, "Small;1;Large;3;Huge;5");
  EXPECT_EQ(binder.bodyOf("Stature"), "3");

  const DlgItem& listField = *fields[7];
  EXPECT_EQ(listField.varName, "Tally");
  ASSERT_NE(listField.listField, nullptr);
  EXPECT_EQ(listField.listField->name, "Notions");
  EXPECT_EQ(listField.listField->owner, sheet.get());
  ASSERT_EQ(listField.listField->items.size(), 1u);
  EXPECT_EQ(listField.listField->items[0]->owner, sheet.get());
  EXPECT_EQ(RecordingBinder::nameOf(listField.symbol), "NotionCount");
  // Settling adds up the lists of list fields too.
  EXPECT_DOUBLE_EQ(listField.listField->total, 2.0);
  EXPECT_EQ(sheet->lists.size(), 1u);

  EXPECT_EQ(fields[8]->varName, "Portrait");
  EXPECT_TRUE(fields[8]->pictureData.empty());
  EXPECT_EQ(fields[9]->pictureData, "a\"bcd");

  const DlgItem& button = *fields[10];
  EXPECT_EQ(button.text, "Roll");
  EXPECT_EQ(button.varName, "Rolls");
  EXPECT_EQ(button.script, "roll.scp");
  EXPECT_EQ(button.buttonText1, "up.bmp");
  EXPECT_EQ(button.buttonText2, "");
  EXPECT_EQ(binder.bodyOf("Rolls"), "0");

  const DlgItem& dispbm = *fields[11];
  EXPECT_EQ(dispbm.varName, "Badge");
  EXPECT_EQ(dispbm.pictureNames, (std::vector<std::string>{"coward.bmp", "hero.bmp"}));
  EXPECT_EQ(binder.bodyOf("Badge"), "Brave+1");
}

TEST_F(SheetDialogs, PicturesAreHandedToTheDecoder) {
  std::vector<std::string> decoded;
  SheetReadOptions options;
  options.decodePicture = [&decoded](std::string_view name, std::string_view bytes) {
    decoded.push_back(std::string(name) + "=" + std::string(bytes));
    return std::make_shared<int>(1);
  };
  ASSERT_TRUE(
      read(dialogText("picture Empty 1 1 1 1 0 picture Full 1 1 1 1 3 \"xyz\""), 1, options));
  EXPECT_EQ(decoded, std::vector<std::string>{"Full=xyz"});
  EXPECT_EQ(sheet->dlgs[0]->items[0]->picture, nullptr);
  EXPECT_NE(sheet->dlgs[0]->items[1]->picture, nullptr);
}

TEST_F(SheetDialogs, ReadsTheWrappedFieldTail) {
  ASSERT_TRUE(
      read(dialogText("begin text Framed 10 180 60 20 center noborder transparent "
                      "script frame.scp fontindex 1 fontexp Bonus>1 bgcolor 255 end "
                      "begin button Go 5 5 40 20 GoCount go.scp \"\" \"\" end")));
  const DlgItem& framed = *sheet->dlgs[0]->items.at(0);
  EXPECT_EQ(framed.justify, kCenter);
  EXPECT_TRUE(framed.noBorder());
  EXPECT_TRUE(framed.transparent());
  EXPECT_EQ(framed.script, "frame.scp");
  EXPECT_EQ(framed.fontIndex, 1);
  EXPECT_EQ(framed.fontExp, "Bonus>1");
  EXPECT_TRUE(framed.hasBgColor());
  EXPECT_EQ(framed.bgColor, 255u);
  EXPECT_EQ(sheet->dlgs[0]->items.at(1)->script, "go.scp");
}

TEST_F(SheetDialogs, ComboboxAndEditvarNamesComeFromTheKeywordReader) {
  // Any token that isn't one of the field's own keywords is the name, even a keyword.
  ASSERT_TRUE(read(dialogText("editvar 1 1 1 1 1 Cost combobox 0 1 1 1 1 Level \"A;1\"")));
  EXPECT_EQ(sheet->dlgs[0]->items[0]->varName, "Cost");
  EXPECT_EQ(sheet->dlgs[0]->items[1]->varName, "Level");
}

TEST_F(SheetDialogs, FieldFailures) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"begin cost", "[Error] Unexpected keyword: 15"},
      {"begin text A 1 1 1 1 left cost 1 end",
       "[Error] Unexpected keyword reading dialog item: 15"},
      {"begin text A 1 1 1 1 left Stray end", "[Error] Unexpected keyword reading dialog item: 0"},
      {"cost 1", "[Error] Error reading dialog definition Front (cost)"},
      {"text A 1 1 1 1 sideways", "[Error] Error reading dialog definition Front (sideways)"},
      {"picture P 1 1 1 1 -1", "[Error] Can't allocate memory for picture"},
      {"picture P 1 1 1 1 5 \"ab\"", "[Error] Error reading dialog definition Front (picture)"},
      {"combobox 2 1 1 1 1 Pick \"A;1;B;2\"",
       "[Error] Error reading dialog definition Front (Pick)"},
      {"list L 1 1 1 1 item A", "[Error] Error reading dialog definition Front (item)"},
  };
  for (const auto& [fields, message] : cases) {
    SCOPED_TRACE(fields);
    host.clearTranscript();
    EXPECT_FALSE(read(dialogText(fields)));
    EXPECT_EQ(messages(), std::vector<std::string>{message});
  }
}

TEST_F(SheetDialogs, FailedFieldVariablesAreShownAndTheReadGoesOn) {
  binder.failing.insert("IsBrave");
  ASSERT_TRUE(
      read(dialogText("checkbox Brave 1 1 1 1 IsBrave 0 editvar Oops 1 1 1 1 "
                      "forceconst Sum")));
  EXPECT_EQ(messages(),
            (std::vector<std::string>{"[Error] Can't define IsBrave: Incomplete expression",
                                      "[Error] Can't define Sum: Symbol undefined"}));
  EXPECT_EQ(sheet->dlgs[0]->items[0]->symbol, nullptr);
  EXPECT_EQ(sheet->dlgs[0]->items[1]->text, "Oops");
}

}  // namespace
}  // namespace zv::testing
