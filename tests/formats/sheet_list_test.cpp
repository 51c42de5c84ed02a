// Lists, items and options of the sheet grammar.

#include "core/option.h"
#include "formats/tokens/keywords.h"
#include "sheet_test_support.h"

namespace zv::testing {
namespace {

using SheetLists = SheetFixture;

std::string listText(std::string_view body) {
  return sheetText("list Skills var Points 0 " + std::string(body) + " end");
}

TEST_F(SheetLists, ReadsTheListKeywords) {
  ASSERT_TRUE(read(sheetText(
      "list Skills catname Lore open var Points 12.5 listprompt \"Skill points\" costprompt Pts "
      "levelprompt Rank menuchar S font Arial 9 charset 1 pitch 2 fontcolor 255 "
      "loc 10 20 300 400 maxitems 40 checkexp \"Points<100\" checkmsg Over defcheckmsg Bad "
      "listheader Head editdlg 10 format \"@name\" altformat Short Cap \"@n\" "
      "altformat Long Cap2 \"@n @l\" help skills.hlp end")));
  const ListInfo& l = list(0);
  EXPECT_EQ(l.name, "Skills");
  EXPECT_EQ(l.catName, "Lore");
  EXPECT_TRUE(l.open());
  EXPECT_TRUE(l.inUse());
  EXPECT_EQ(l.totalVarName, "Points");
  EXPECT_EQ(l.listPrompt, "Skill points");
  EXPECT_EQ(l.costPrompt, "Pts");
  EXPECT_EQ(l.levelPrompt, "Rank");
  EXPECT_EQ(l.menuChar, "S");
  EXPECT_EQ(l.font.fontFace, "Arial");
  EXPECT_EQ(l.font.fontSize, 9);
  EXPECT_EQ(l.font.fontCharset, 1);
  EXPECT_EQ(l.font.fontPitch, 2);
  EXPECT_EQ(l.font.fontColor, 255u);
  EXPECT_EQ(l.loc, (Rect16{10, 20, 300, 400}));
  EXPECT_EQ(l.maxItems, 40);
  EXPECT_EQ(l.checkExp, "Points<100");
  EXPECT_EQ(l.checkMsg, "Over");
  EXPECT_EQ(l.defCheckMsg, "Bad");
  EXPECT_EQ(l.listHeader, "Head");
  EXPECT_EQ(l.editDlg(), 2u);  // three bits of 10
  EXPECT_EQ(l.format, "@name");
  ASSERT_EQ(l.altFormats.size(), 2u);
  EXPECT_EQ(l.altFormats[1], (AltFormat{"Long", "Cap2", "@n @l"}));
  EXPECT_EQ(l.help, "skills.hlp");
  // The total variable is defined with "0", then takes the file's number.
  EXPECT_EQ(binder.bodyOf("Points"), "0");
  EXPECT_EQ(binder.numbers["Points"], 12.5);
  EXPECT_EQ(RecordingBinder::nameOf(l.totalSymbol), "Points");
}

TEST_F(SheetLists, FontClearsTheCharacterSetAndPitchBeforeIt) {
  ASSERT_TRUE(read(listText("font Arial 10 charset 1 pitch 3")));
  EXPECT_EQ(list(0).font.fontCharset, 1);
  ASSERT_TRUE(read(listText("charset 1 pitch 3 font Arial 10")));
  EXPECT_EQ(list(0).font.fontCharset, 0);
  EXPECT_EQ(list(0).font.fontPitch, 0);
}

TEST_F(SheetLists, PromptIsTotalWithoutOne) {
  ASSERT_TRUE(read(listText("")));
  EXPECT_EQ(list(0).listPrompt, "Total");
  EXPECT_TRUE(list(0).items.empty());
}

TEST_F(SheetLists, ChangeExpressionsDefineTheirVariable) {
  ASSERT_TRUE(read(listText("changeexp \"Spent = Points*2\"")));
  EXPECT_EQ(binder.bodyOf("Spent"), " Points*2");
  EXPECT_EQ(RecordingBinder::nameOf(list(0).changeSymbol), "Spent");
  // An expression alone takes the total's name, numbered when that is taken.
  ASSERT_TRUE(read(listText("changeexp \"Points==3\"")));
  EXPECT_EQ(binder.bodyOf("Points0"), "Points==3");
  EXPECT_EQ(list(0).changeExp, "Points==3");
}

TEST_F(SheetLists, AFailedTotalVariableIsShown) {
  binder.failing.insert("Points");
  ASSERT_TRUE(read(listText("")));
  EXPECT_EQ(messages(), std::vector<std::string>{"[Error] Error defining Points"});
  EXPECT_EQ(list(0).totalSymbol, nullptr);
}

TEST_F(SheetLists, ListFailuresNameTheList) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"\"Character Sheet file v. 1\" gamesystem Tiny list", "[Error] Couldn't read list name"},
      {"\"Character Sheet file v. 1\" gamesystem Tiny list Skills var Points",
       "[Error] Error reading list: Skills"},
      {"\"Character Sheet file v. 1\" gamesystem Tiny list Skills var Points 0 item A cost",
       "[Error] Error reading list: A (line 7)"},
      {"\"Character Sheet file v. 1\" gamesystem Tiny list Skills var Points 0 comment",
       "[Error] Error reading list: (Unknown) (line 7)"},
      {listText("item A Foo"), "[Error] Unexpected token: Foo (line 7)"},
      {listText("item A memlist item B end"), "[Error] Error reading list: A (line 7)"},
      {listText("comment \"note\" end"), "[Error] Unexpected token: end (line 7)"},
  };
  for (const auto& [file, message] : cases) {
    SCOPED_TRACE(file);
    tokenLineState().lineNumber = 7;
    host.clearTranscript();
    EXPECT_FALSE(read(file));
    EXPECT_EQ(messages(), std::vector<std::string>{message});
  }
  tokenLineState().lineNumber = 0;
}

TEST_F(SheetLists, ReadsEveryItemKeyword) {
  ASSERT_TRUE(read(listText(
      "item Climb adj \"+1 Rope\" autoitems Rope dsid WAY1X autoadded dontmarkauto "
      "usedefvarname noviolation checkoninsert nocheckoninsert dupexpected noadj noprereq "
      "disallowsat defbaseable usedefault 1 defbased rand 5 editdlg 3 sort 2 autoid 100 "
      "autoparent 7 generic setlistcost see childcostsseparate addaslist addwholelist "
      "autochargecost noautodup priority 6 size 40 12 keepcost deleteauto inheritopts uniquevar "
      "altformat Wide Cap \"@name\" cat Athletic class Physical original Climbing origcat Ath "
      "notes Hands formula x*2 script c.scp default 1 defFormula x totalcostformula cost+1 "
      "checkexp x<10 checkmsg High format @name sformat @name! alias Scale lookuparray Grades "
      "varname Climb prereq Str>2 level 3 cost 6 totalcost 7.25")));
  const Item& it = item(0, 0);
  EXPECT_EQ(it.kind, ItemKind::Item);
  EXPECT_EQ(it.name, "Climb");
  EXPECT_EQ(it.adj, "+1 Rope");
  EXPECT_EQ(it.autoitems, "Rope");
  EXPECT_EQ(it.dsid, "WAY1");
  EXPECT_TRUE(it.autoAdded() && it.dontMarkAuto() && it.useDefVarName() && it.noViolation());
  EXPECT_TRUE(it.checkOnInsert() && it.noCheckOnInsert() && it.dupExpected() && it.noAdj());
  EXPECT_TRUE(it.noPrereq() && it.disallowSat() && it.defBaseable() && it.useDefault());
  EXPECT_TRUE(it.defBased() && it.generic() && it.setListCost() && it.see());
  EXPECT_TRUE(it.childCostsSeparate() && it.addAsList() && it.addWholeList());
  EXPECT_TRUE(it.autoChargeCost() && it.noAutoDup() && it.keepCost() && it.deleteAuto());
  EXPECT_TRUE(it.inheritOpts() && it.uniqueVar());
  EXPECT_EQ(it.rand(), 5u);
  EXPECT_EQ(it.editDlg(), 3u);
  EXPECT_EQ(it.sort(), 2u);
  EXPECT_EQ(it.priority(), 6u);
  EXPECT_EQ(it.autoID, 100);
  EXPECT_EQ(it.autoParent, 7);
  EXPECT_EQ(it.sizeX, 40);
  EXPECT_EQ(it.sizeY, 12);
  ASSERT_EQ(it.altFormats.size(), 1u);
  EXPECT_EQ(it.altFormats[0].header, "Cap");
  EXPECT_EQ(it.cat, "Athletic");
  EXPECT_EQ(it.className, "Physical");
  EXPECT_EQ(it.original, "Climbing");
  EXPECT_EQ(it.origCat, "Ath");
  EXPECT_EQ(it.notes, "Hands");
  EXPECT_EQ(it.formula, "x*2");
  EXPECT_EQ(it.script, "c.scp");
  EXPECT_EQ(it.defaultText, "1");
  EXPECT_EQ(it.defFormula, "x");
  EXPECT_EQ(it.totalCostFormula, "cost+1");
  EXPECT_EQ(it.checkExp, "x<10");
  EXPECT_EQ(it.checkMsg, "High");
  EXPECT_EQ(it.format, "@name");
  EXPECT_EQ(it.sformat, "@name!");
  EXPECT_EQ(it.alias, "Scale");
  EXPECT_EQ(it.lookupArray, "Grades");
  EXPECT_EQ(it.varName, "Climb");
  EXPECT_EQ(it.prereq, "Str>2");
  EXPECT_EQ(it.level, "3");
  EXPECT_EQ(it.cost, 6.0);
  EXPECT_EQ(it.totalCost, 7.25);
  EXPECT_EQ(it.owner, sheet.get());
  EXPECT_EQ(it.list, &list(0));
  EXPECT_EQ(it.sourceId, 0);
}

TEST_F(SheetLists, NumbersKeepTheWidthOfTheirBitFields) {
  struct Case {
    const char* keywords;
    bool useDefault;
    bool inTotal;
    unsigned rand, sort, editDlg, priority;
  };
  const std::vector<Case> cases = {
      {"usedefault 3", true, true, 0, 0, 0, 0},         {"usedefault 2", false, true, 0, 0, 0, 0},
      {"rand 600", false, true, 88, 0, 0, 0},           {"sort 17", false, true, 0, 1, 0, 0},
      {"editdlg 9", false, true, 0, 0, 1, 0},           {"priority 20", false, true, 0, 0, 0, 4},
      {"intotal 5", false, true, 0, 0, 0, 0},           {"intotal 0", false, false, 0, 0, 0, 0},
      {"intotal 0 intotal 1", false, true, 0, 0, 0, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.keywords);
    ASSERT_TRUE(read(listText(std::string("item A ") + c.keywords)));
    const Item& it = item(0, 0);
    EXPECT_EQ(it.useDefault(), c.useDefault);
    EXPECT_EQ(it.inTotal(), c.inTotal);
    EXPECT_EQ(it.rand(), c.rand);
    EXPECT_EQ(it.sort(), c.sort);
    EXPECT_EQ(it.editDlg(), c.editDlg);
    EXPECT_EQ(it.priority(), c.priority);
  }
}

TEST_F(SheetLists, RepeatedCategoriesAndAdjustmentsAreJoined) {
  ASSERT_TRUE(read(listText("item A cat Arms cat Legs adj \"+1\" adj \"\" adj \"-2\" cat Feet")));
  EXPECT_EQ(item(0, 0).cat, "Arms;Legs;Feet");
  EXPECT_EQ(item(0, 0).adj, "+1;-2");
}

TEST_F(SheetLists, CostSetsTheTotalCostOnlyWhileItIsZero) {
  const std::vector<std::pair<const char*, double>> cases = {{"cost 5", 5.0},
                                                             {"cost 5 totalcost 7", 7.0},
                                                             {"totalcost 7 cost 5", 7.0},
                                                             {"totalcost 0 cost 5", 5.0}};
  for (const auto& [keywords, totalCost] : cases) {
    SCOPED_TRACE(keywords);
    ASSERT_TRUE(read(listText(std::string("item A ") + keywords)));
    EXPECT_EQ(item(0, 0).cost, 5.0);
    EXPECT_EQ(item(0, 0).totalCost, totalCost);
  }
}

TEST_F(SheetLists, UnivarIsAnItemAndCommentsBeforeItemsAreSkipped) {
  ASSERT_TRUE(read(listText("comment \"first\" comment second univar \"X\" cost 1 item Y")));
  ASSERT_EQ(list(0).items.size(), 2u);
  EXPECT_EQ(item(0, 0).kind, ItemKind::Item);
  EXPECT_EQ(item(0, 0).name, "X");
  EXPECT_EQ(item(0, 1).position, 1);
}

TEST_F(SheetLists, OldKeywordsAreReadAndDropped) {
  ASSERT_TRUE(
      read(listText("item A desiredLevel 4 comment \"old\" colwidth 2 30 40 textline "
                    "level 2 cost 4")));
  EXPECT_EQ(item(0, 0).level, "2");
  EXPECT_EQ(item(0, 0).cost, 4.0);
}

TEST_F(SheetLists, SublistMembersComeBeforeTheSublistsOwnKeywords) {
  ASSERT_TRUE(
      read(listText("sublist Pack memlist item Rope cost 1 "
                    "sublist Pouch memlist item Flint cost 0.5 end cost 0.25 "
                    "end childcostsseparate open cost 3 item After open")));
  ASSERT_EQ(list(0).items.size(), 2u);
  const Item& pack = item(0, 0);
  EXPECT_TRUE(pack.isSublist());
  EXPECT_TRUE(pack.childCostsSeparate());
  EXPECT_TRUE(pack.open());
  EXPECT_EQ(pack.cost, 3.0);
  ASSERT_EQ(pack.children.size(), 2u);
  const Item& pouch = *pack.children[1];
  EXPECT_EQ(pouch.name, "Pouch");
  EXPECT_EQ(pouch.cost, 0.25);
  EXPECT_EQ(pouch.parent, &pack);
  EXPECT_EQ(pouch.depth, 1);
  EXPECT_EQ(pouch.position, 1);
  ASSERT_EQ(pouch.children.size(), 1u);
  EXPECT_EQ(pouch.children[0]->depth, 2);
  EXPECT_EQ(pouch.children[0]->list, &list(0));
  // `open` only counts in a sublist.
  EXPECT_FALSE(item(0, 1).open());
}

TEST_F(SheetLists, SublistsNestTwoHundredLevelsDeep) {
  auto nested = [](int levels) {
    std::string text;
    for (int i = 0; i < levels; ++i)
      text += "sublist S" + std::to_string(i) + " memlist ";
    return text + "item Leaf";
  };
  tokenLineState().lineNumber = 0;
  ASSERT_TRUE(read(listText(nested(200))));
  const Item* deepest = &item(0, 0);
  while (!deepest->children.empty())
    deepest = deepest->children.front().get();
  EXPECT_EQ(deepest->name, "Leaf");
  EXPECT_EQ(deepest->depth, 200);
  EXPECT_FALSE(read(listText(nested(201))));
  EXPECT_EQ(messages(), std::vector<std::string>{"[Error] Error reading list: S200 (line 0)"});
}

TEST_F(SheetLists, ItemsTakeTheSourceIdOfTheRead) {
  SheetReadOptions options;
  options.sourceId = 9;
  ASSERT_TRUE(read(listText("sublist P memlist item A end"), 1, options));
  EXPECT_EQ(item(0, 0).sourceId, 9);
  EXPECT_EQ(item(0, 0).children[0]->sourceId, 9);
}

TEST_F(SheetLists, ReadsOptionsOfEveryKind) {
  ASSERT_TRUE(read(
      listText("item A opt adj Grip \"x*2\" \"?:2;Weak,1;Firm,2;\" auxcost Extra x*3 2 "
               "adjdistlevel Share x 4 adjdistcost Split x 5 text Note \"hand holds\" exp Calc 2+2 "
               "frac Part \"1/2\" mult Twice 2 add More 3 percent Luck 10 textline end")));
  const auto& options = item(0, 0).options;
  ASSERT_EQ(options.size(), 10u);
  const std::vector<std::int32_t> kinds = {kAdj, kAuxcost, kAdjdistlevel, kAdjdistcost, kText,
                                           kExp, kFrac,    kMult,         kAdd,         kPercent};
  for (std::size_t i = 0; i < kinds.size(); ++i)
    EXPECT_EQ(options[i]->kind, kinds[i]) << i;
  EXPECT_EQ(options[0]->name, "Grip");
  EXPECT_EQ(options[0]->auxExpression, "x*2");
  EXPECT_EQ(options[0]->value, "?:2;Weak,1;Firm,2;");
  EXPECT_EQ(options[4]->name, "Note");
  EXPECT_EQ(options[4]->value, "hand holds");
  EXPECT_TRUE(options[4]->auxExpression.empty());
  EXPECT_EQ(options[9]->value, "10");
}

TEST_F(SheetLists, ReadsTheWrappedOptionTail) {
  ASSERT_TRUE(read(listText(
      "item A opt begin percent Luck \"+10\" alias Fortune checkexp \"Luck<50;Too lucky\" "
      "dispexp \"@value\" itemref Rope itemrefcat Gear selitem Ropes original Lucky qual fair "
      "cat Chance exp x+1 noprint editdlg 3 noedit usemsg noinherit keepold end "
      "begin adj Grip x 1 end end")));
  ASSERT_EQ(item(0, 0).options.size(), 2u);
  const Option& o = *item(0, 0).options[0];
  EXPECT_EQ(o.kind, kPercent);
  EXPECT_EQ(o.value, "+10");
  EXPECT_EQ(o.alias, "Fortune");
  EXPECT_EQ(o.checkExpression, "Luck<50;Too lucky");
  EXPECT_EQ(o.format, "@value");
  EXPECT_EQ(o.relatedItem, "Rope");
  EXPECT_EQ(o.relatedCategory, "Gear");
  EXPECT_EQ(o.selectItem, "Ropes");
  EXPECT_EQ(o.origName, "Lucky");
  EXPECT_EQ(o.qualifier, "fair");
  EXPECT_EQ(o.category, "Chance");
  EXPECT_EQ(o.auxExpression, "x+1");
  EXPECT_TRUE(o.noPrint() && o.noEdit() && o.useMsg() && o.noInherit() && o.keepValue());
  EXPECT_EQ(o.editDlg, 3);
  EXPECT_FALSE(o.hidden());
}

TEST_F(SheetLists, OptionFailures) {
  const std::string longValue(512, 'v');
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"opt begin cost A 1 end end", "[Error] Unrecognized keyword for option: cost (line 3)"},
      {"opt level A 1 end", "[Error] Unknown option (level) in item (1, line 3)"},
      {"opt mult A 2 Foo", "[Error] Unknown option (Foo) in item (1, line 3)"},
      {"opt begin mult A 2 Stray end end", "[Read Error] Bad keyword: Stray (line 3)"},
      {"opt begin mult A 2 cost end end", "[Read Error] Unexpected keyword: 15 (cost)"},
      {"opt adj A x " + longValue + " end", "[Error] Option value too long (A)"},
  };
  for (const auto& [options, message] : cases) {
    SCOPED_TRACE(message);
    tokenLineState().lineNumber = 3;
    host.clearTranscript();
    EXPECT_FALSE(read(listText("item First item Second " + options)));
    EXPECT_EQ(messages(), std::vector<std::string>{message});
  }
  tokenLineState().lineNumber = 0;
  // 511 characters still fit.
  EXPECT_TRUE(read(listText("item A opt adj A x " + std::string(511, 'v') + " end")));
}

TEST_F(SheetLists, OptionsAreAppliedInSheetsOnly) {
  std::vector<std::string> applied;
  SheetReadOptions options;
  options.applyOptions = [&applied](FileInfo&, Item& it) {
    applied.push_back(it.name + ":" + std::to_string(it.options.size()));
  };
  const std::string file = listText("item A opt mult M 2 add N 1 end item B");
  ASSERT_TRUE(read(file, 1, options));
  EXPECT_EQ(applied, std::vector<std::string>{"A:2"});
  applied.clear();
  ASSERT_TRUE(read(file, 2, options));
  EXPECT_TRUE(applied.empty());
}

}  // namespace
}  // namespace zv::testing
