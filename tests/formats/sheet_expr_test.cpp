// Reading sheets with the expression engine behind the reader: the definitions of a file become
// symbols of the sheet's table, and settling leaves the list totals in their variables.

#include "core/engine_context.h"
#include "core/list_total.h"
#include "expr/symbols.h"
#include "formats/sheet/expr_sheet_symbols.h"
#include "sheet_test_support.h"

namespace zv::testing {
namespace {

class SheetWithEngine : public SheetFixture {
 protected:
  SheetWithEngine() { engine_->services.storeListTotal = storeListTotalInVariable; }

  bool readWithEngine(const std::string& data, int fileType = 1) {
    SheetReadOptions options;
    options.symbols = &exprSheetSymbols();
    return read(data, fileType, options);
  }

  /// The text of a variable of the sheet, or "?" when there is none.
  std::string valueOf(std::string_view name) {
    Symbol* symbol = sheet->symbols ? sheet->symbols->find(name) : nullptr;
    if (symbol == nullptr) return "?";
    Value value;
    if (getValue(*symbol, value) != 0) return "?";
    return valueToText(value);
  }

 private:
  ScopedEngineContext engine_;
};

const char* const kTinySheet = R"("Character Sheet file v. 1" gamesystem Tiny
version 253 level 1 maxAttempts 0 pixinx 96 pixiny 96 rounding 0
define var Bonus 2 func Double(n) n*2 array Mods[3] "1,2,3" end
list Skills catname Skills var SkillPoints 6 listprompt "Skill points"
item Climb cat Athletic formula x*2 varname Climb level 3 cost 6 totalcost 6
item Swim intotal 0 cat Athletic formula x*2 varname Swim level 1 cost 2 totalcost 2
end
dialog General 400 300 loc 10 10
text "Name:" 10 10 60 20 left
edittext Bob 80 10 120 20 HeroName
formula SkillPoints+Bonus 10 40 100 20 right ShownPoints
checkbox Brave 10 80 50 20 IsBrave 1
editvar "2+3" 10 100 60 20 forceconst Might
combobox 1 10 120 80 20 Stature "Small;1;Large;3"
button Roll 10 150 60 24 Rolls roll.scp "" ""
end
end
)";

TEST_F(SheetWithEngine, DefinitionsAndFieldsBecomeSymbols) {
  ASSERT_TRUE(readWithEngine(kTinySheet)) << messages().front();
  EXPECT_TRUE(messages().empty());
  ASSERT_NE(sheet->symbols, nullptr);
  EXPECT_EQ(sheet->symbols->owner, sheet.get());
  EXPECT_EQ(valueOf("Bonus"), "2");
  EXPECT_EQ(valueOf("SkillPoints"), "6");
  EXPECT_EQ(valueOf("ShownPoints"), "8");
  EXPECT_EQ(valueOf("IsBrave"), "1");
  EXPECT_EQ(valueOf("Might"), "5");
  EXPECT_EQ(sheet->dlgs[0]->items[4]->text, "5");
  EXPECT_EQ(valueOf("Stature"), "3");
  EXPECT_EQ(valueOf("Rolls"), "0");
  EXPECT_EQ(valueOf("HeroName"), "?");
  EXPECT_NE(sheet->symbols->find("Double"), nullptr);
  EXPECT_NE(sheet->symbols->find("Mods"), nullptr);
  EXPECT_EQ(sheet->defines[0].symbol, sheet->symbols->find("Bonus"));
  EXPECT_EQ(sheet->lists[0]->totalSymbol, sheet->symbols->find("SkillPoints"));
  EXPECT_FALSE(isReading());
}

TEST_F(SheetWithEngine, SettlingPutsTheListTotalIntoItsVariable) {
  std::string file = kTinySheet;
  file.replace(file.find("var SkillPoints 6"), 17, "var SkillPoints 40");
  ASSERT_TRUE(readWithEngine(file));
  EXPECT_EQ(valueOf("SkillPoints"), "6");
}

TEST_F(SheetWithEngine, EngineErrorsAreShownWithTheirText) {
  ASSERT_TRUE(
      readWithEngine(sheetText("define var Broken \"1+\" end "
                               "dialog D 10 10 loc 0 0 formula \"(2\" 1 1 1 1 left Open "
                               "end")));
  ASSERT_EQ(messages().size(), 2u);
  EXPECT_EQ(messages()[0].rfind("[Error] Error: '", 0), 0u) << messages()[0];
  EXPECT_NE(messages()[0].find("': 'Broken': 1+"), std::string::npos) << messages()[0];
  EXPECT_EQ(messages()[1].rfind("[Error] Can't define Open: ", 0), 0u) << messages()[1];
  EXPECT_EQ(sheet->defines[0].symbol, nullptr);
}

TEST_F(SheetWithEngine, AFailedReadFreesTheTable) {
  EXPECT_FALSE(readWithEngine(sheetText("define var Bonus 2 end version 999")));
  EXPECT_EQ(sheet->symbols, nullptr);
  EXPECT_FALSE(isReading());
}

}  // namespace
}  // namespace zv::testing
