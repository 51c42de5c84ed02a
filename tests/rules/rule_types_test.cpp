// Selection rules by type: which master items of a category each rule lets through, with the
// "!" entries, Not (and the exception of the prefix rule), DuplicatesOnly, groups that always
// pass, expressions of numbers and texts, and requirements tested against a list of the sheet.

#include "rules/selection/rule.h"
#include "rules/selection/rule_sets.h"
#include "selection_support.h"

namespace zv::testing {
namespace {

class RuleTypesTest : public SelectionTest {
 protected:
  RuleTypesTest() {
    Category& spells = category("Spells");
    auto spell = [&](const std::string& name, const std::string& cat, double cost,
                     const std::string& dsid = {}, Item* in = nullptr) -> Item& {
      Item& item = master(spells, name, cat, in);
      item.cost = cost;
      item.totalCost = cost;
      item.dsid = dsid;
      return item;
    };
    spell("Fireball", "Fire", 5, "CORE");
    spell("Firewall", "Fire", 6, "XTRA");
    spell("Bonfire", "Nature", 3).original = "Firepit";
    spell("Heal", "", 2).prereq = "Sword";
    spell("Light", "", 1);
    spell("Light", "", 1);
    Item& forbidden = group(spells, "Forbidden");
    spell("Curse", "Dark", 4, {}, &forbidden).prereq = "!Sword";
    addTo(addList("Skills"), "Sword", Value(12));
  }

  /// The names of the category's rows that the rule lets through, depth first.
  std::string offered(const Rule& rule) {
    RuleSetContext context;
    context.sheet = &sheet_;
    context.table = sheet_.symbols;
    context.rules = {&rule};
    std::string out;
    const Item* previous = nullptr;
    walk(category("Spells").items, context, previous, out);
    return out;
  }

  void walk(const ItemChain& chain, const RuleSetContext& context, const Item*& previous,
            std::string& out) {
    for (const auto& item : chain) {
      if (item->isSublist() || passesRules(context, *item, previous)) {
        out += (out.empty() ? "" : ",") + item->name;
      }
      if (!item->isSublist()) previous = item.get();
      walk(item->children, context, previous, out);
    }
  }
};

TEST_F(RuleTypesTest, EachTypeLetsThroughWhatItShould) {
  struct Case {
    const char* type;
    const char* value;
    bool negated;
    bool duplicatesOnly;
    const char* offered;
  };
  const Case cases[] = {
      {"Suppress Item", "Fireball; Heal", false, false,
       "Firewall,Bonfire,Light,Light,Forbidden,Curse"},
      // With Not, only the items named (and groups, which always pass).
      {"Suppress Item", "Fireball;Heal", true, false, "Fireball,Heal,Forbidden"},
      {"Suppress Item", "firepit", false, false,
       "Fireball,Firewall,Heal,Light,Light,Forbidden,Curse"},
      {"Suppress Item", "!Heal", false, false, "Heal,Forbidden"},
      // Only the second of two neighbouring copies is subject to the rule.
      {"Suppress Item", "Light", false, true,
       "Fireball,Firewall,Bonfire,Heal,Light,Forbidden,Curse"},
      {"Suppress Category", "Fire", false, false, "Bonfire,Heal,Light,Light,Forbidden,Curse"},
      {"Suppress Category", "!Fire", false, false, "Fireball,Firewall,Forbidden"},
      // Nature refuses the bonfire; the demand for Dark refuses all but the curse.
      {"Suppress Category", "Nature;!Dark", false, false, "Forbidden,Curse"},
      {"Suppress Item Prefix", "fire", false, false, "Heal,Light,Light,Forbidden,Curse"},
      // Own names starting "fire" stay refused; the bonfire's original name is turned round.
      {"Suppress Item Prefix", "fire", true, false, "Bonfire,Forbidden"},
      {"Suppress Datasheet ID", "XTRAS", false, false,
       "Fireball,Bonfire,Heal,Light,Light,Forbidden,Curse"},
      {"Suppress Datasheet ID", "CORE;!XTRA", false, false, "Firewall,Forbidden"},
      {"Suppress Datasheet ID", "!XTRA", true, false,
       "Fireball,Firewall,Bonfire,Heal,Light,Light,Forbidden,Curse"},
      {"Suppress Sublist", "forbidden", false, false,
       "Fireball,Firewall,Bonfire,Heal,Light,Light,Forbidden"},
      {"Rules List", "Anything", true, false,
       "Fireball,Firewall,Bonfire,Heal,Light,Light,Forbidden,Curse"},
      {"Expression", "@cost<=2", false, false, "Heal,Light,Light,Forbidden"},
      {"Expression", "\"abc\"", false, false,
       "Fireball,Firewall,Bonfire,Heal,Light,Light,Forbidden,Curse"},
      {"Expression", "\"\"", false, false, "Forbidden"},
      {"Expression", "0", false, false, "Forbidden"},
      {"Expression", "0", true, false,
       "Fireball,Firewall,Bonfire,Heal,Light,Light,Forbidden,Curse"},
      // An expression that can't be evaluated lets everything through, with Not too.
      {"Expression", "1+", true, false,
       "Fireball,Firewall,Bonfire,Heal,Light,Light,Forbidden,Curse"},
      {"Category", "@cost>4", false, false, "Fireball,Firewall,Forbidden"},
      {"Requirement", "Skills", false, false,
       "Fireball,Firewall,Bonfire,Heal,Light,Light,Forbidden"},
      {"Requirement", "Nope", false, false, "Forbidden"},
  };
  for (const Case& c : cases) {
    std::unique_ptr<Rule> rule = makeRule(c.type);
    ASSERT_NE(rule, nullptr) << c.type;
    EXPECT_EQ(rule->typeWord(), c.type);
    rule->value = c.value;
    rule->negated = c.negated;
    rule->duplicatesOnly = c.duplicatesOnly;
    EXPECT_EQ(offered(*rule), c.offered) << c.type << " " << c.value << " not=" << c.negated;
  }
  EXPECT_EQ(messages(), "");
}

TEST_F(RuleTypesTest, TypeWordsMakeTheirClasses) {
  for (std::string_view word : ruleTypeWords()) {
    std::unique_ptr<Rule> rule = makeRule(toLower(word));
    ASSERT_NE(rule, nullptr) << word;
    EXPECT_EQ(rule->typeWord(), word);
  }
  EXPECT_EQ(makeRule(""), nullptr);
  EXPECT_EQ(makeRule("Suppress Everything"), nullptr);
}

}  // namespace
}  // namespace zv::testing
