// The item selection: the checks before offering, the category it opens at, "(All)", the rows
// that pass the rules, the search that goes round, the messages when nothing is left, reference
// items, and taking an item (duplicates, requirements, the copy, the list's maximum).

#include "rules/selection/select_item.h"

#include "core/strfmt.h"
#include "rules/selection/take_item.h"
#include "selection_support.h"

namespace zv::testing {
namespace {

class SelectItemTest : public SelectionTest {
 protected:
  SelectItemTest() {
    Category& spells = category("Spells");
    master(spells, "Bolt", "Storm");
    master(spells, "Fireball", "Fire").level = "2*2";
    Item& forbidden = group(spells, "Forbidden");
    master(spells, "Curse", "Dark", &forbidden);
    master(spells, "Hex", "Dark", &forbidden);
    master(spells, "Ward");
    Category& gear = category("Gear");
    master(gear, "Amulet");
    master(gear, "Wand");
    category("Empty");
    list_ = &addList("Spells");
    list_->catName = "Spells";
  }

  bool open(SelectionRequest request = {}) {
    request.sheet = &sheet_;
    if (request.list == nullptr) request.list = list_;
    request.rules = &library_;
    return selection_.open(request);
  }

  std::string rows() const {
    std::string out;
    for (const OfferedRow& row : selection_.rows()) {
      if (!out.empty()) out += ",";
      out += std::string(static_cast<std::size_t>(row.depth), '>') + row.item->name;
    }
    return out;
  }

  /// The row of an item by name.
  std::size_t rowOf(const std::string& name) const {
    for (std::size_t i = 0; i < selection_.rows().size(); ++i) {
      if (selection_.rows()[i].item->name == name) return i;
    }
    ADD_FAILURE() << name;
    return 0;
  }

  ListInfo* list_ = nullptr;
  ItemSelection selection_;
};

TEST_F(SelectItemTest, ChecksBeforeOffering) {
  sheet_.gameSystem = nullptr;
  EXPECT_FALSE(open());
  EXPECT_EQ(messages(), "[Internal Error] The game system is not set in the GetItem dialog.");
  sheet_.gameSystem = system_;
  for (const char* catName : {"Empty", "Nowhere"}) {
    host_.clearTranscript();
    list_->catName = catName;
    EXPECT_FALSE(open());
    EXPECT_EQ(messages(),
              "[No Data Available] No data sheets are are loaded with data for this category.\\n"
              "\\nLoad data sheets for the Testland game system with File | Load Data Sheet... "
              "or open a character for this game system.");
  }
}

TEST_F(SelectItemTest, OpensAtTheListsOrTheGroupsCategory) {
  ListInfo& bag = addList("Bag");
  Item& pouch = bag.appendItem(std::make_unique<Item>(ItemKind::Sublist, "Pouch"));
  pouch.origCat = "Gear";
  Item& inPouch = pouch.appendChild(std::make_unique<Item>(ItemKind::Item, "Coin"));
  Item& tagged = bag.appendItem(std::make_unique<Item>(ItemKind::Sublist, "Spellbook"));
  tagged.cat = "*Marker;Spells";
  struct Case {
    SelectionRequest request;
    const char* category;
  };
  const Case cases[] = {
      {{nullptr, list_, nullptr, false}, "Spells"},
      {{nullptr, list_, nullptr, true}, "(All)"},  // Select from Master List
      {{nullptr, &bag, &inPouch, false}, "Gear"},  // inside a group from another category
      {{nullptr, &bag, &pouch, false}, "(All)"},   // on a closed group: the list's own
      {{nullptr, &bag, &tagged, false}, "(All)"},
  };
  for (const Case& c : cases) {
    ASSERT_TRUE(open(c.request)) << messages();
    EXPECT_EQ(selection_.currentCategory(), c.category);
  }
  tagged.setOpen(true);
  ASSERT_TRUE(open({nullptr, &bag, &tagged, false}));
  EXPECT_EQ(selection_.currentCategory(), "Spells");
  EXPECT_EQ(selection_.categoryChoices(), (std::vector<std::string>{"(All)", "Spells", "Gear"}));
}

TEST_F(SelectItemTest, RowsFollowTheCategoryAndTheRules) {
  readRules(
      "[Rulesets]\nNo Dark=NoDark\n"
      "[NoDark]\nType=Suppress Category\nValue=Dark\nDescription=d\n");
  ASSERT_TRUE(open());
  EXPECT_EQ(rows(), "Bolt,Fireball,Forbidden,>Curse,>Hex,Ward");
  sheet_.ruleSet = "No Dark";
  selection_.refresh();
  // A group whose members are all refused still shows.
  EXPECT_EQ(rows(), "Bolt,Fireball,Forbidden,Ward");
  ASSERT_TRUE(selection_.chooseCategory("(all)"));
  // Both categories keep their items by name, so the tops merge by name.
  EXPECT_EQ(rows(), "Amulet,Bolt,Fireball,Forbidden,Wand,Ward");
  category("Gear").sort = 1;
  selection_.refresh();
  EXPECT_EQ(rows(), "Bolt,Fireball,Forbidden,Ward,Amulet,Wand");
  EXPECT_FALSE(selection_.chooseCategory("Empty"));
  EXPECT_TRUE(selection_.chooseCategory("gear"));
  EXPECT_EQ(selection_.currentCategory(), "Gear");
}

TEST_F(SelectItemTest, SearchGoesRoundBothWays) {
  ASSERT_TRUE(open());  // Bolt, Fireball, Forbidden, Curse, Hex, Ward
  struct Case {
    const char* text;
    bool forward;
    std::optional<std::size_t> from;
    std::optional<std::size_t> found;
  };
  const Case cases[] = {
      {"F", true, std::nullopt, 1},
      {"f", true, 1, 2},
      {"F", true, 2, 1},
      {"hex", true, 5, 4},
      {"F", false, 1, 2},
      {"F", false, std::nullopt, 2},
      {"zz", true, std::nullopt, {}},
      {"", true, 0, {}},
      {"URS", false, 0, 3},
  };
  for (const Case& c : cases) {
    const std::optional<std::size_t> found =
        c.forward ? selection_.findNext(c.text, c.from) : selection_.findPrevious(c.text, c.from);
    EXPECT_EQ(found, c.found) << c.text << (c.forward ? " next" : " previous");
  }
}

TEST_F(SelectItemTest, NothingLeftToOffer) {
  readRules("[Rulesets]\nNothing=All\n[All]\nType=Expression\nValue=0\nDescription=d\n");
  sheet_.ruleSet = "Nothing";
  EXPECT_FALSE(selection_.chooseCategory("Spells"));  // not open yet
  ASSERT_TRUE(open({nullptr, nullptr, nullptr, false, false}));
  EXPECT_EQ(rows(), "Forbidden");
  list_->catName = "Gear";
  ASSERT_TRUE(open());
  EXPECT_FALSE(selection_.checkItemsLeft());
  ASSERT_TRUE(open({nullptr, nullptr, nullptr, false, true}));
  EXPECT_FALSE(selection_.checkItemsLeft());
  EXPECT_EQ(messages(),
            "[No Items Available] There are no more items available in this list satisfying "
            "the current rules.|[No More Items Available] There are no more unique items "
            "available in this list satisfying the current rules.");
}

TEST_F(SelectItemTest, ReferenceItemsAreFollowed) {
  Category& spells = category("Spells");
  auto reference = [&](const std::string& name, const std::string& target, bool isGroup) {
    Item& item = isGroup ? group(spells, name) : master(spells, name);
    item.setSee(true);
    item.original = target;
  };
  reference("Zap", "wand", false);  // found in another category
  reference("Zip", "Nothing", false);
  reference("Zop", "Hex", false);
  reference("Zz Group", "forbidden", true);
  reference("Zz Empty", "", true);
  reference("Zz Lost", "Lost", true);
  readRules(
      "[Rulesets]\nNo Dark=NoDark\n[NoDark]\nType=Suppress Category\nValue=Dark\n"
      "Description=d\n");
  sheet_.ruleSet = "No Dark";
  ASSERT_TRUE(open());
  EXPECT_EQ(selection_.follow(rowOf("Bolt"))->name, "Bolt");
  EXPECT_EQ(selection_.follow(rowOf("Zap"))->name, "Wand");
  EXPECT_EQ(selection_.follow(rowOf("Zz Group"))->name, "Forbidden");
  EXPECT_EQ(messages(), "");
  EXPECT_EQ(selection_.follow(rowOf("Zip")), nullptr);
  EXPECT_EQ(selection_.follow(rowOf("Zop")), nullptr);  // refused by the rules
  EXPECT_EQ(selection_.follow(rowOf("Zz Empty")), nullptr);
  EXPECT_EQ(selection_.follow(rowOf("Zz Lost")), nullptr);
  const std::string notFound =
      "This item is actually a reference to another item.\\n\\nThe referenced item, %s, is not "
      "currently loaded or active.";
  EXPECT_EQ(messages(),
            "[Item Not Found] " + strprintf(notFound.c_str(), "Nothing") + "|[Item Not Found] " +
                strprintf(notFound.c_str(), "Hex") +
                "|[Error] There is no sublist specified for this reference.|[Error] The sublist "
                "referenced by this item, Lost, does not exist and cannot be opened.");
}

TEST_F(SelectItemTest, TakingCopiesTheItemOnce) {
  ASSERT_TRUE(open());
  sheet_.setChangedFlag(false);
  TakeOutcome outcome = takeItem(selection_, rowOf("Fireball"), appender());
  ASSERT_EQ(outcome.result, TakeResult::Taken);
  EXPECT_NE(outcome.placed, category("Spells").findItem("Fireball"));
  EXPECT_EQ(outcome.placed->value, Value(4));  // the level text, evaluated for display
  EXPECT_EQ(outcome.placed->origCat, "");
  EXPECT_TRUE(sheet_.changed());
  EXPECT_EQ(selection_.taken(), 1);

  // A group comes with its members.
  outcome = takeItem(selection_, rowOf("Forbidden"), appender());
  ASSERT_EQ(outcome.result, TakeResult::Taken);
  EXPECT_EQ(names(outcome.placed->children), (std::vector<std::string>{"Curse", "Hex"}));

  // A name already listed asks first; Cancel stops, OK takes a second copy.
  struct Case {
    const char* answer;
    TakeResult result;
  };
  for (const Case& c : {Case{"Cancel", TakeResult::Cancelled}, Case{"OK", TakeResult::Taken}}) {
    host_.clearTranscript();
    host_.addAnswer(c.answer);
    EXPECT_EQ(takeItem(selection_, rowOf("Hex"), appender()).result, c.result);
    EXPECT_EQ(messages(), "[Note] Hex is already listed");
  }
  EXPECT_EQ(names(list_->items), (std::vector<std::string>{"Fireball", "Forbidden", "Hex"}));
  // An item that expects duplicates, or a list that takes them, doesn't ask.
  host_.clearTranscript();
  category("Spells").findItem("Bolt")->setDupExpected(true);
  takeItem(selection_, rowOf("Bolt"), appender());
  takeItem(selection_, rowOf("Bolt"), appender());
  takeItem(selection_, rowOf("Ward"), appender(), TakeOptions{true, false});
  takeItem(selection_, rowOf("Ward"), appender(), TakeOptions{true, false});
  EXPECT_EQ(messages(), "");
  EXPECT_EQ(selection_.taken(), 7);
}

TEST_F(SelectItemTest, TheOriginCategoryAndTheListsMaximum) {
  list_->maxItems = 2;
  ASSERT_TRUE(open({nullptr, nullptr, nullptr, true}));
  TakeOutcome outcome = takeItem(selection_, rowOf("Wand"), appender());
  ASSERT_EQ(outcome.result, TakeResult::Taken);
  EXPECT_EQ(outcome.placed->origCat, "Gear");
  EXPECT_FALSE(outcome.close);
  EXPECT_TRUE(takeItem(selection_, rowOf("Ward"), appender()).close);
}

TEST_F(SelectItemTest, UniqueModeOffersWhatIsNotListed) {
  ASSERT_TRUE(open({nullptr, nullptr, nullptr, false, true}));
  takeItem(selection_, rowOf("Bolt"), appender());
  EXPECT_EQ(rows(), "Fireball,Forbidden,>Curse,>Hex,Ward");
  takeItem(selection_, rowOf("Fireball"), appender());
  takeItem(selection_, rowOf("Curse"), appender());
  takeItem(selection_, rowOf("Hex"), appender());
  // A group alone is nothing left to take.
  EXPECT_TRUE(takeItem(selection_, rowOf("Ward"), appender()).close);
  EXPECT_EQ(rows(), "Forbidden");
  EXPECT_EQ(messages(),
            "[No More Items Available] There are no more unique items available in this list "
            "satisfying the current rules.");
}

TEST_F(SelectItemTest, UnmetRequirementsRunTheDialog) {
  ListInfo& skills = addList("Skills");
  Item& bolt = *category("Spells").findItem("Bolt");
  bolt.prereq = "Skills:Sword>=2|Skills:Axe";
  struct Case {
    RuleChoices preferences;
    const char* answer;
    TakeResult result;
    std::string shown;
  };
  const std::string dialog = "[Bolt] [ ] Skills: Sword>=2\\n--- OR ---\\n[ ] Skills: Axe";
  const Case cases[] = {
      {{}, "Cancel", TakeResult::Cancelled, dialog},
      {{}, "OK", TakeResult::Taken, dialog},
      {{true, true, false},
       "OK",
       TakeResult::Refused,
       dialog + "\\nRequirements checked only when item first added."},
      {{true, false, true}, "OK", TakeResult::Refused, ""},
      {{false, false, false}, "Cancel", TakeResult::Taken, ""},
  };
  ASSERT_TRUE(open());
  for (const Case& c : cases) {
    setPreferences(c.preferences);
    host_.clearTranscript();
    host_.addAnswer(c.answer);
    list_->items.clear();
    EXPECT_EQ(takeItem(selection_, rowOf("Bolt"), appender()).result, c.result) << c.answer;
    EXPECT_EQ(messages(), c.shown);
    EXPECT_EQ(list_->items.size(), c.result == TakeResult::Taken ? 1u : 0u);
  }
  // Met requirements take the item without a word; so does an item that waives them.
  setPreferences({});
  host_.clearTranscript();
  list_->items.clear();
  addTo(skills, "Axe");
  EXPECT_EQ(takeItem(selection_, rowOf("Bolt"), appender()).result, TakeResult::Taken);
  category("Spells").findItem("Ward")->prereq = "Nothing";
  category("Spells").findItem("Ward")->setNoPrereq(true);
  EXPECT_EQ(takeItem(selection_, rowOf("Ward"), appender()).result, TakeResult::Taken);
  EXPECT_EQ(messages(), "");
}

}  // namespace
}  // namespace zv::testing
