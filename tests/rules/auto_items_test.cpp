// Automatic items: the text's elements, item references, the directive families with their
// messages, choices, random draws, duplicates, options and the ties to the parent; and placeItem,
// which takes back an add whose automatic items fail or are cancelled.

#include <gtest/gtest.h>

#include "core/option_tree.h"
#include "core/random.h"
#include "core/undo.h"
#include "list_fixture.h"
#include "rules/auto/auto_items.h"
#include "rules/lists/list_undo.h"
#include "rules/lists/place_item.h"
#include "rules/value/edit.h"

namespace zv::testing {
namespace {

struct RefCase {
  const char* text;
  const char* category;
  const char* name;
  const char* display;
  const char* level;
};

TEST(AutoItemsText, ItemReferencesSplitCategoryDisplayNameAndLevel) {
  const RefCase cases[] = {
      {"Climb", "", "Climb", "", ""},
      {"Skills:Climb", "Skills", "Climb", "", ""},
      {"Climb[Rock Climbing]=2", "", "Climb", "Rock Climbing", "2"},
      {"Skills:Climb [Scaling] = x+1", "Skills", "Climb", "Scaling", "x+1"},
      {"Climb=x>1?2:3", "", "Climb", "", "x>1?2:3"},  // a ":" behind "=" is the level's
      {"Lore[Fen: Old]", "", "Lore", "Fen: Old", ""},
  };
  for (const RefCase& c : cases) {
    SCOPED_TRACE(c.text);
    const AutoItemRef ref = parseAutoItemRef(c.text);
    EXPECT_EQ(ref.category, c.category);
    EXPECT_EQ(ref.hasCategory, std::string(c.category) != "");
    EXPECT_EQ(ref.name, c.name);
    EXPECT_EQ(ref.displayName, c.display);
    EXPECT_EQ(ref.level, c.level);
  }
}

struct ChooseCase {
  const char* argument;
  const char* error;
  int minimum;
  int maximum;
  std::size_t elements;
};

TEST(AutoItemsText, ChooseArgumentsAndTheirFaults) {
  const ChooseCase cases[] = {
      {"Pick,2,a,b", "", 2, 2, 2},
      {"Pick,0-3,a,b,,c", "", 0, 3, 3},
      {"Pick,2-,a", "", 2, 0, 1},
      {"Pick,a,b", "", 1, 1, 2},
      {"Pick,*Lore=2", "", 1, 1, 1},
      {",1,a", "Title missing after ?choose.", 0, 0, 0},
      {"Pick", "Title missing after ?choose.", 0, 0, 0},
      {"Pick,2", "Missing comma after item count in ?choose.", 0, 0, 0},
      {"Pick,2 a", "Missing comma after item count in ?choose.", 0, 0, 0},
  };
  for (const ChooseCase& c : cases) {
    SCOPED_TRACE(c.argument);
    std::string error;
    std::optional<ChooseArgument> choice = parseChooseArgument(c.argument, error);
    EXPECT_EQ(error, c.error);
    if (!choice) continue;
    EXPECT_EQ(choice->title, "Pick");
    EXPECT_EQ(choice->minimum, c.minimum);
    EXPECT_EQ(choice->maximum, c.maximum);
    EXPECT_EQ(choice->elements.size(), c.elements);
  }
}

TEST(AutoItemsText, CountTexts) {
  const std::pair<std::pair<int, int>, const char*> cases[] = {
      {{1, 1}, "Choose 1 item. "},
      {{2, 2}, "Choose 2 items. "},
      {{1, 3}, "Choose from 1 to 3 items. "},
      {{0, 1}, "Choose up to 1 item. "},
      {{0, 2}, "Choose up to 2 items. "},
      {{2, 0}, "Choose at least 2 items. "},
      {{0, 0}, "Choose any number of items, or none. "},
  };
  for (const auto& [bounds, start] : cases) {
    EXPECT_EQ(chooseCountText(bounds.first, bounds.second),
              std::string(start) + "Click an item in the list to choose it.");
  }
}

class AutoItems : public ListOpsTest {
 protected:
  AutoItems() {
    master("Skills", "Parent", "x", "2");
    master("Skills", "Climb", "x*2", "1");
    master("Skills", "Swim", "x*2", "1");
    master("Skills", "Lore", "x*x", "2");
    masterGroup("Skills", "Athletic", {{"Jump", 1.0}, {"Run", 1.0}, {"Throw", 1.0}});
    for (const auto& [name, cost] : {std::pair{"Rope", 1.0}, {"Torch", 2.0}, {"Lamp", 3.0}})
      master("Gear", name, {}, {}, cost);
    masterGroup("Gear", "Pouch");
    addTreeOption(kOptionAddition, "Grip", "1");
    addTreeOption(kOptionAddition, "Size", "?:1; Small,0; Big,5;");
    parent_ = add(*skills_, "Parent", Placement::appendTo(), false).item;
  }

  void addTreeOption(std::int32_t kind, const std::string& name, const std::string& value) {
    OptionTreeEntry entry;
    entry.name = name;
    entry.option = std::make_unique<Option>();
    entry.option->kind = kind;
    entry.option->name = name;
    entry.option->value = value;
    insertOptionEntry(system_.options, std::move(entry));
  }

  /// Runs a text for the parent (level 2 unless changed); the count, or -1.
  int run(const std::string& text) {
    AddChain chain{{skills_, parent_->name}};
    cancelled_ = false;
    return runAutoItems(sheet_, *skills_, *parent_, nullptr, text, chain, cancelled_);
  }

  Item* parent_ = nullptr;
  bool cancelled_ = false;
};

struct FaultCase {
  const char* text;
  const char* message;
};

TEST_F(AutoItems, FaultsEndTheRunWithTheirMessage) {
  const FaultCase cases[] = {
      {"?else;", "[Error] ?else found without ?if in automatic item"},
      {"?elseif:1;", "[Error] ?else found without ?if in automatic item"},
      {"?endif;", "[Error] ?endif found without ?if in automatic item"},
      {"?foo;", "[Error] Bad autoitem modifier: foo (Parent)"},
      {"?cat:Skills", "[Error] Missing ; in autoitem modifier: ?cat:Skills"},
      {"?cat:Nope;", "[Error] Source category 'Nope' does not exist (Parent)"},
      {"?list:Nope;", "[Error] Target list 'Nope' referenced in autoitems list not found"},
      {"?open;", "[Error with ?open/close in autoitems] ?open error: No item added."},
      {"Climb;?open;",
       "[Error with ?open/close in autoitems] ?open error: Last item added was not sublist: "
       "Climb."},
      {"?opt:Nope=1;Climb;",
       "[Cannot Find Option] Cannot find option Nope for automatic item Climb."},
      {"?opt:Grip=1+;Climb;", "[Error] Bad expression in ?opt:Grip=1+."},
      {"?itemref:Target=;", "[Error] Item reference missing from ?itemref (Target=)"},
      {"?itemref:Target=*,Skills;",
       "[Error] Prompt is missing for item reference: Target=*,Skills"},
      {"?itemref:Target=*Pick;", "[Error] Missing item or variable name for get reference"},
      {"?itemref:Grip=Climb;Swim;", "[Error] Cannot find itemref option Grip for automatic item"},
      {"?setval:;", "[Error] Missing variable in setval."},
      {"?setval:Race;", "[Error] Missing value list in setval."},
      {"?choose:,1,Climb;", "[Error] Title missing after ?choose."},
      {"?choose:Pick,1,Nope:*;", "[Error] Categories not implemented yet."},
      {"?rand;Skills:Nope;", "[Error] Unable to find sublist 'Nope' for automatic items"},
      {"?if:1+;Climb;?endif;",
       "[Error] Expression error: Stack underflow or missing argument (1+)"},
  };
  for (const FaultCase& c : cases) {
    SCOPED_TRACE(c.text);
    host_.clearTranscript();
    EXPECT_EQ(run(c.text), -1);
    EXPECT_FALSE(cancelled_);
    EXPECT_EQ(messages(), c.message);
  }
}

struct ConditionCase {
  const char* text;
  const char* level;
  const char* added;
};

TEST_F(AutoItems, ConditionsChooseOneBranch) {
  const ConditionCase cases[] = {
      {"?if:x>1;Climb;?else;Swim;?endif;", "2", "Climb"},
      {"?if:x>1;Climb;?else;Swim;?endif;", "1", "Swim"},
      {"?if:x>2;Climb;?elseif:x>1;Swim;?else;Lore;?endif;", "2", "Swim"},
      {"?if:x>0;Climb;?elseif:x>-1;Swim;?else;Lore;?endif;Jump", "1", "Climb"},
      {"?if:0;?if:1;Climb;?else;Swim;?endif;?else;Lore;?endif;", "1", "Lore"},
      {"?if:1;?if:0;Climb;?else;Swim;?endif;Lore;?endif;", "1", "Swim,Lore"},
      {"?if:0;?foo;Climb;?endif;Swim;", "1", "Swim"},  // inactive directives do nothing
  };
  for (const ConditionCase& c : cases) {
    SCOPED_TRACE(std::string(c.text) + " at " + c.level);
    clear(*skills_, 1);
    ASSERT_TRUE(setItemLevel(*parent_, c.level, true, false));
    EXPECT_GE(run(c.text), 1) << messages();
    std::string added;
    for (std::size_t i = 1; i < skills_->items.size(); ++i)
      added += (added.empty() ? "" : ",") + skills_->items[i]->name;
    EXPECT_EQ(added.substr(0, std::string(c.added).size()), c.added);
  }
}

TEST_F(AutoItems, ItemsAreTiedToTheirParentAndComeFreeUnlessCharged) {
  sheet_.nextAutoID = 4;
  EXPECT_EQ(run("Climb;?list:Gear;?cat:Gear;Rope;?charge;Torch;"), 3);
  EXPECT_EQ(parent_->autoID, 4);
  EXPECT_EQ(sheet_.nextAutoID, 5);
  for (Item* child : {skills_->items[1].get(), gear_->items[0].get(), gear_->items[1].get()}) {
    EXPECT_EQ(child->autoParent, 4);
    EXPECT_TRUE(child->autoAdded());
  }
  EXPECT_EQ(variable("GearPts"), "2");  // the rope came free, the torch charged
  clear(*gear_);
  parent_->setAutoChargeCost(true);
  parent_->setDontMarkAuto(true);
  EXPECT_EQ(run("?cat:Gear;Rope;"), 1);
  EXPECT_TRUE(skills_->items.back()->inTotal());
  EXPECT_FALSE(skills_->items.back()->autoAdded());
}

TEST_F(AutoItems, ReferencesNameDisplayNameLevelAndBlankItems) {
  EXPECT_EQ(run("Climb[Rock Climbing]=x+1;Xyzzy;Gear:Lamp;"), 3) << messages();
  Item& climb = *skills_->items[1];
  EXPECT_EQ(climb.name, "Rock Climbing");
  EXPECT_EQ(climb.original, "Climb");
  EXPECT_EQ(climb.level, "2+1");
  EXPECT_EQ(climb.levelValue, 3.0);
  EXPECT_EQ(climb.totalCost, 6.0);
  Item& blank = *skills_->items[2];
  EXPECT_EQ(blank.name, "Xyzzy");
  EXPECT_TRUE(blank.formula.empty());
  EXPECT_EQ(skills_->items[3]->origCat, "Gear");
  EXPECT_EQ(run("?defitem:Swim;Nope;"), 1);
  EXPECT_EQ(skills_->items.back()->name, "Swim");
}

struct DuplicateCase {
  const char* text;
  const char* layout;
  double climbLevel;
};

TEST_F(AutoItems, ANameAlreadyListedIsTakenAsThatItem) {
  const DuplicateCase cases[] = {
      {"Climb=3;", "Parent,Climb", 3.0},
      {"Climb=1;", "Parent,Climb", 2.0},
      {"?allowdup;Climb;Climb=5;", "Parent,Climb,Climb", 5.0},
  };
  for (const DuplicateCase& c : cases) {
    SCOPED_TRACE(c.text);
    clear(*skills_, 1);
    add(*skills_, "Climb");
    Item& climb = *skills_->items[1];
    ASSERT_TRUE(setItemLevel(climb, "2", true, false));
    const int added = run(c.text);
    EXPECT_GE(added, 0) << messages();
    EXPECT_EQ(layout(*skills_), c.layout);
    EXPECT_EQ(climb.levelValue, c.climbLevel);
    EXPECT_EQ(climb.autoParent, 0);  // still the user's, not the parent's
  }
  clear(*skills_, 1);
  parent_->setNoAutoDup(true);
  add(*skills_, "Climb");
  EXPECT_EQ(run("Climb;"), 1);
  EXPECT_EQ(layout(*skills_), "Parent,Climb,Climb");
}

TEST_F(AutoItems, TenSublistsOpenInsideEachOtherAndTheEleventhFails) {
  std::string text;
  for (int n = 1; n <= 11; ++n) {
    masterGroup("Skills", "G" + std::to_string(n));
    text += "G" + std::to_string(n) + ";?open;";
  }
  EXPECT_EQ(run(text + "Climb;?close;Swim;"), -1);
  EXPECT_EQ(messages(), "[Error with ?open/close in autoitems] ?open overflow on G11.");
  const Item* inner = findItemInSublists(*skills_, "G11");
  ASSERT_NE(inner, nullptr);
  EXPECT_EQ(inner->depth, 10);
  EXPECT_FALSE(inner->autoAdded());
  EXPECT_TRUE(findItemInSublists(*skills_, "G1")->autoAdded());

  host_.clearTranscript();
  clear(*skills_, 1);
  EXPECT_EQ(run("G1;?open;G2;?open;Climb;?close;Swim;?close;Lore;"), 5) << messages();
  EXPECT_EQ(layout(*skills_), "Parent,G1[G2[Climb],Swim],Lore");
}

TEST_F(AutoItems, AChoiceAsksTheHostUnlessItOffersAsManyAsItTakes) {
  EXPECT_EQ(run("?choose:Pick,2,Climb,Swim,Nowhere;"), 2);
  EXPECT_EQ(layout(*skills_), "Parent,Climb,Swim");
  EXPECT_EQ(messages(), "");
  clear(*skills_, 1);
  host_.addAnswer("Swim");
  EXPECT_EQ(run("?choose:Pick,1,Climb,Swim;"), 1);
  EXPECT_EQ(layout(*skills_), "Parent,Swim");
  EXPECT_EQ(messages(), "[Pick] Choose 1 item. Click an item in the list to choose it.");

  host_.clearTranscript();
  host_.addAnswer("");
  EXPECT_EQ(run("?choose:Extras,0-2,Climb,Lore;"), 0);
  EXPECT_EQ(messages(), "[Extras] Choose up to 2 items. Click an item in the list to choose it.");
  EXPECT_FALSE(cancelled_);

  host_.addAnswer("Cancel");
  EXPECT_EQ(run("Climb;?choose:Pick,1,Swim,Lore;Rope"), 1);
  EXPECT_TRUE(cancelled_);
}

TEST_F(AutoItems, PatternsSelectExpressionsAndCostedRows) {
  master("Skills", "Fen Lore", "x*3", "1", 4.0);
  master("Skills", "Bell Lore", "x*3", "2");
  host_.addAnswer("Bell Lore [6]");
  host_.addAnswer("3");  // the level asked for the chosen item
  EXPECT_EQ(run("?cchoose:Learn,1,*Lore;"), 1) << messages();
  EXPECT_EQ(messages(),
            "[Learn] Choose 1 item. Click an item in the list to choose it.|[Learn] Bell Lore");
  Item& bell = *skills_->items[1];
  EXPECT_EQ(bell.name, "Bell Lore");
  EXPECT_EQ(bell.totalCost, 9.0);
  // ?selexp narrows the next pattern to one, which is then taken without asking.
  host_.clearTranscript();
  clear(*skills_, 1);
  EXPECT_EQ(run("?selexp:@basecost>3;?choose:Learn,1,*Lore*;"), 1) << messages();
  EXPECT_EQ(layout(*skills_), "Parent,Fen Lore");
  EXPECT_TRUE(wildcardMatch("R?pe*", "rope ladder"));
  EXPECT_FALSE(wildcardMatch("*Lore", "Lore of Bells"));
}

TEST_F(AutoItems, RandomDrawsComeFromTheSublistsMembers) {
  seedRandom(7);
  EXPECT_EQ(run("?allowdup;?nrand:3;Skills:Athletic;"), 3) << messages();
  ASSERT_EQ(skills_->items.size(), 4u);
  for (std::size_t i = 1; i < 4; ++i) {
    const std::string& name = skills_->items[i]->name;
    EXPECT_TRUE(name == "Jump" || name == "Run" || name == "Throw") << name;
  }
  clear(*skills_, 1);
  EXPECT_EQ(run("?rand;Gear:Gear;"), 1);  // the whole category: an item, never a group
  EXPECT_FALSE(skills_->items[1]->isSublist());
}

TEST_F(AutoItems, StateDirectivesShapeTheNextItems) {
  Item& sword = master("Skills", "Sword", "x*2", "1");
  sword.defaultText = "5";
  EXPECT_EQ(run("?addcat:Tools;?adj:HP+1;?noreq;?default;Sword;?clear;Swim;"), 2) << messages();
  Item& added = *skills_->items[1];
  EXPECT_EQ(added.cat, "Skills;Tools");
  EXPECT_EQ(added.adj, "HP+1");
  EXPECT_TRUE(added.noPrereq());
  EXPECT_TRUE(added.useDefault());
  EXPECT_EQ(added.levelValue, 5.0);
  EXPECT_EQ(reads("HP"), "1");
  Item& swim = *skills_->items[2];
  EXPECT_EQ(swim.cat, "Skills");
  EXPECT_TRUE(swim.adj.empty());
}

TEST_F(AutoItems, PendingOptions) {
  Item& climb = master("Skills", "Climb2", "x*2", "1");
  climb.options.push_back(std::make_unique<Option>());
  climb.options.back()->kind = kOptionAddition;
  climb.options.back()->name = "Grip";
  climb.options.back()->value = "1";
  EXPECT_EQ(run("?opt:Grip=1+2;?qualifier:worn;Climb2;?zopt;?opt:Size=2;?ncopt:Grip=4;Swim;"
                "?clearopt;?dupopt:Grip=5;Climb2[Climb3];"),
            3)
      << messages();
  const Item& own = *skills_->items[1];
  ASSERT_EQ(own.options.size(), 1u);  // its own option took the value
  EXPECT_EQ(own.options[0]->value, "3");
  EXPECT_EQ(own.options[0]->qualifier, "worn");
  const Item& swim = *skills_->items[2];
  ASSERT_EQ(swim.options.size(), 2u);
  EXPECT_EQ(swim.options[0]->value, "?:2; Small,0; Big,5;");  // a count list takes the choice
  EXPECT_EQ(swim.options[1]->kind, kOptionAdjustment);        // not charged
  const Item& dup = *skills_->items[3];
  ASSERT_EQ(dup.options.size(), 2u);
  EXPECT_EQ(dup.options[1]->value, "5");
  // Raising mode: an item already listed keeps a higher value.
  EXPECT_EQ(run("?opt:Grip=2;Climb2;"), 0);
  EXPECT_EQ(own.options[0]->value, "3");
  EXPECT_EQ(run("?opt:Grip=7;Climb2;"), 0);
  EXPECT_EQ(own.options[0]->value, "7");
  EXPECT_EQ(run("?opt:Grip=9;?rmopt:grip;Climb2;"), 0);
  EXPECT_EQ(own.options[0]->value, "7");
}

TEST_F(AutoItems, QuestionsOfSetValSelOptValAndItemRef) {
  add(*skills_, "Lore");
  host_.addAnswer("Dwarf");
  host_.addAnswer("Big");
  host_.addAnswer("Lore");
  EXPECT_EQ(run("?setval:Race=Elf,Dwarf;?seloptval:Size=Choose a size;"
                "?itemref:Grip=*Pick a target,Skills;?opt:Grip=1;Climb;"),
            1)
      << messages();
  EXPECT_EQ(reads("Race"), "Dwarf");
  const Item& climb = *skills_->items.back();
  ASSERT_EQ(climb.options.size(), 2u);
  EXPECT_EQ(climb.options[0]->name, "Size");
  EXPECT_EQ(climb.options[0]->value, "?:2; Small,0; Big,5;");
  EXPECT_EQ(climb.options[1]->relatedItem, "Lore");
  EXPECT_EQ(messages(), "[Race] Race|[Choose a size] Size|[Pick a target] Pick a target");
  host_.addAnswer("Cancel");
  EXPECT_EQ(run("?setval:Race=Elf,Dwarf;Swim;"), 0);
  EXPECT_TRUE(cancelled_);
}

TEST_F(AutoItems, DataSheetsLoadThroughTheContextsLoader) {
  std::string loaded;
  engineContext_->services.loadDataSheet = [&](FileInfo&, std::string_view name) {
    loaded = name;
    return name != "missing.cds";
  };
  EXPECT_EQ(run("?datasheet:extra.cds;Climb;"), 1);
  EXPECT_EQ(loaded, "extra.cds");
  EXPECT_EQ(run("?datasheet:missing.cds;Climb;"), -1);
}

TEST_F(AutoItems, AKitDeletedAndUndoneKeepsItsMembersTiedToIt) {
  masterGroup("Gear", "Kit").autoitems = "Rope;Torch;";
  Item* kit = add(*gear_, "Kit").item;
  const std::int32_t id = kit->autoID;
  ASSERT_TRUE(deleteItems(sheet_, *gear_, {kit}).deleted);
  ASSERT_TRUE(undoPop(sheet_));
  EXPECT_EQ(layout(*gear_), "Kit[Rope,Torch]");
  for (const auto& member : gear_->items.front()->children)
    EXPECT_EQ(member->autoParent, id);
  // Another deletion's sweep leaves them alone.
  add(*gear_, "Lamp");
  deleteElement(sheet_, *gear_, *gear_->items.back());
  EXPECT_EQ(layout(*gear_), "Kit[Rope,Torch]");
}

TEST_F(AutoItems, AGroupThatAddsItselfIsARecursion) {
  masterGroup("Gear", "Nest").autoitems = "Nest;";
  AddResult added = add(*gear_, "Nest");
  EXPECT_EQ(added.status, AddStatus::Failed);
  EXPECT_EQ(messages(), "[Error] Item 'Nest' recursively added");
}

class PlacingItems : public AutoItems {};

TEST_F(PlacingItems, APlacedItemMarksTheSheetChanged) {
  master("Gear", "Pack", {}, {}, 2.0).autoitems = "Rope;?charge;Torch;";
  sheet_.setChangedFlag(false);
  PlaceResult placed = placeItem(sheet_, *gear_, copyOf("Gear", "Pack"), Placement::atRow(-1));
  EXPECT_EQ(placed.status, PlaceStatus::Placed);
  EXPECT_EQ(placed.row, 0);
  EXPECT_EQ(layout(*gear_), "Pack,Rope,Torch");
  EXPECT_EQ(variable("GearPts"), "4");
  EXPECT_TRUE(sheet_.changed());
}

struct TakenBackCase {
  const char* autoitems;
  const char* answer;
  PlaceStatus status;
  const char* message;
};

TEST_F(PlacingItems, AFailedOrCancelledAddIsTakenBackWhole) {
  const TakenBackCase cases[] = {
      {"Rope;?choose:Pick,1,Torch,Lamp;", "Cancel", PlaceStatus::Cancelled,
       "[Pick] Choose 1 item. Click an item in the list to choose it."},
      {"Rope;?cat:Nope;Torch;", "", PlaceStatus::Failed,
       "[Error] Source category 'Nope' does not exist (Pack)"},
  };
  for (const TakenBackCase& c : cases) {
    SCOPED_TRACE(c.autoitems);
    host_.clearTranscript();
    Item& pack = master("Gear", "Pack", {}, {}, 2.0);
    pack.autoitems = c.autoitems;
    pack.adj = "HP+3";
    add(*gear_, "Lamp");
    sheet_.setChangedFlag(false);
    if (*c.answer) host_.addAnswer(c.answer);
    PlaceResult placed = placeItem(sheet_, *gear_, copyOf("Gear", "Pack"), Placement::appendTo());
    EXPECT_EQ(placed.status, c.status);
    EXPECT_EQ(placed.item, nullptr);
    EXPECT_EQ(layout(*gear_), "Lamp");
    EXPECT_EQ(reads("HP"), "0");
    EXPECT_EQ(variable("GearPts"), "3");
    EXPECT_FALSE(sheet_.changed());
    EXPECT_EQ(messages(), c.message);
    clear(*gear_);
    system_.findCategory("Gear")->items.pop_back();
    system_.findCategory("Gear")->rebuildIndex();
  }
}

TEST_F(PlacingItems, UnmetRequirementsPassTheRefusedValuePreferences) {
  master("Skills", "Duel", "x", "1").prereq = "Sword";
  engineContext_->services.checkRequirements = [](FileInfo&, Item& item) {
    return std::optional<BadValue>(BadValue{"Skills", item.name + " needs Sword"});
  };
  host_.addAnswer("Cancel");
  PlaceResult refused =
      placeItem(sheet_, *skills_, copyOf("Skills", "Duel"), Placement::appendTo());
  EXPECT_EQ(refused.status, PlaceStatus::Refused);
  EXPECT_EQ(layout(*skills_), "Parent");
  host_.addAnswer("OK");
  PlaceResult accepted =
      placeItem(sheet_, *skills_, copyOf("Skills", "Duel"), Placement::appendTo());
  EXPECT_EQ(accepted.status, PlaceStatus::Placed);
  EXPECT_EQ(messages(), "[Skills] Duel needs Sword|[Skills] Duel needs Sword");
}

}  // namespace
}  // namespace zv::testing
