#include "rules/selection/rule.h"

#include "core/text.h"
#include "core/value.h"
#include "expr/builtins_items.h"
#include "expr/compiler.h"
#include "expr/symbols.h"
#include "rules/value/categories.h"
#include "rules/value/option_refs.h"
#include "rules/requirements/requirements.h"

namespace zv {

namespace {

/// The rule's entry begins "!": a demand.
bool isDemand(std::string_view entry) {
  return !entry.empty() && entry.front() == '!';
}

std::string_view withoutMark(std::string_view entry) {
  return isDemand(entry) ? entry.substr(1) : entry;
}

/// Walks the entries of a rule whose plain entries refuse a match and whose "!" entries refuse a
/// miss: Refuse at the first entry that refuses, Pass when all let the item through.
template <typename Matches>
bool passesEntries(const std::vector<std::string>& entries, Matches matches) {
  for (const std::string& entry : entries) {
    const bool demand = isDemand(entry);
    const std::string_view body = withoutMark(entry);
    if (body.empty()) continue;
    if (matches(body) != demand) return false;
  }
  return true;
}

class SuppressCategory final : public Rule {
 public:
  std::string_view typeWord() const override { return "Suppress Category"; }

 protected:
  Verdict test(const RuleTestContext&, Item& item) const override {
    return passesEntries(entries(),
                         [&](std::string_view entry) { return itemInCategory(item, entry); })
               ? Verdict::Pass
               : Verdict::Refuse;
  }
};

class SuppressItem final : public Rule {
 public:
  std::string_view typeWord() const override { return "Suppress Item"; }

 protected:
  Verdict test(const RuleTestContext&, Item& item) const override {
    return passesEntries(
               entries(),
               [&](std::string_view entry) {
                 return equalsIgnoringCase(item.name, entry) ||
                        (!item.original.empty() && equalsIgnoringCase(item.original, entry));
               })
               ? Verdict::Pass
               : Verdict::Refuse;
  }
};

class SuppressItemPrefix final : public Rule {
 public:
  std::string_view typeWord() const override { return "Suppress Item Prefix"; }

 protected:
  // A plain entry that starts the item's own name refuses whatever `Not` says; one that starts
  // only its original name refuses as any other rule does.
  Verdict test(const RuleTestContext&, Item& item) const override {
    for (const std::string& entry : entries()) {
      const bool demand = isDemand(entry);
      const std::string_view body = withoutMark(entry);
      if (body.empty()) continue;
      const bool ownName = startsWithIgnoringCase(item.name, body);
      const bool originalName =
          !item.original.empty() && startsWithIgnoringCase(item.original, body);
      if (!demand && ownName) return Verdict::RefuseRegardless;
      if ((ownName || originalName) != demand) return Verdict::Refuse;
    }
    return Verdict::Pass;
  }
};

class SuppressDatasheetId final : public Rule {
 public:
  std::string_view typeWord() const override { return "Suppress Datasheet ID"; }

 protected:
  // The first "!" entry ends the test: the data sheet it names passes regardless of `Not`, any
  // other is refused.
  Verdict test(const RuleTestContext&, Item& item) const override {
    const std::string_view dsid = item.dsid;
    for (const std::string& entry : entries()) {
      const bool demand = isDemand(entry);
      const std::string_view id = withoutMark(entry).substr(0, 4);
      if (id.empty()) continue;
      const bool same = dsid == id;
      if (demand) return same ? Verdict::PassRegardless : Verdict::Refuse;
      if (same) return Verdict::Refuse;
    }
    return Verdict::Pass;
  }
};

class SuppressSublist final : public Rule {
 public:
  std::string_view typeWord() const override { return "Suppress Sublist"; }

 protected:
  Verdict test(const RuleTestContext&, Item& item) const override {
    const std::vector<std::string> names = entries();
    for (const Item* group = item.parent; group != nullptr; group = group->parent) {
      for (const std::string& name : names) {
        if (equalsIgnoringCase(group->name, name)) return Verdict::Refuse;
      }
    }
    return Verdict::Pass;
  }
};

class RulesList final : public Rule {
 public:
  std::string_view typeWord() const override { return "Rules List"; }

  void setActive(bool flag, const RuleResolver& resolve) override {
    if (active == flag) return;  // a list that names itself, directly or not, ends here
    active = flag;
    if (!resolve) return;
    for (const std::string& entry : entries()) {
      if (Rule* listed = resolve(entry, *this)) listed->setActive(flag, resolve);
    }
  }

 protected:
  Verdict test(const RuleTestContext&, Item&) const override { return Verdict::PassRegardless; }
};

class ExpressionRule : public Rule {
 public:
  std::string_view typeWord() const override { return "Expression"; }

 protected:
  // A non-zero number passes, else a non-empty text; an evaluation error passes, unreported.
  Verdict test(const RuleTestContext& context, Item& item) const override {
    const std::string text = expandOptionRefs(item, value, nullptr, true);
    Value result;
    if (context.table == nullptr ||
        parseExpInContext(context.table, &item, nullptr, text, result) != 0) {
      return Verdict::PassRegardless;
    }
    bool passes = false;
    if (result.isFloat()) {
      passes = result.real() != 0.0;
    } else if (result.isNumber()) {
      passes = integerOf(result) != 0;
    } else {
      passes = !valueToText(result).empty();
    }
    return passes ? Verdict::Pass : Verdict::Refuse;
  }
};

class CategoryRule final : public ExpressionRule {
 public:
  std::string_view typeWord() const override { return "Category"; }
};

/// Ties a master item to a sheet and list while its requirements are tested, so that its
/// expressions see the sheet's variables as the item will once it is taken.
class TestBinding {
 public:
  TestBinding(Item& item, FileInfo* sheet, ListInfo* list)
      : item_(item), owner_(item.owner), list_(item.list) {
    if (item.owner == nullptr) item.owner = sheet;
    if (item.list == nullptr) item.list = list;
  }
  ~TestBinding() {
    item_.owner = owner_;
    item_.list = list_;
  }
  TestBinding(const TestBinding&) = delete;
  TestBinding& operator=(const TestBinding&) = delete;

 private:
  Item& item_;
  FileInfo* owner_;
  ListInfo* list_;
};

class RequirementRule final : public Rule {
 public:
  std::string_view typeWord() const override { return "Requirement"; }

 protected:
  Verdict test(const RuleTestContext& context, Item& item) const override {
    if (context.sheet == nullptr) return Verdict::Refuse;
    ListInfo* list = findListByPrefix(*context.sheet, trim(value));
    if (list == nullptr) return Verdict::Refuse;
    TestBinding binding(item, context.sheet, list);
    return prereqSatisfied(*context.sheet, list, item, PrereqMode{true, true}, item.prereq)
               ? Verdict::Pass
               : Verdict::Refuse;
  }
};

template <typename T>
std::unique_ptr<Rule> make() {
  return std::make_unique<T>();
}

struct RuleClass {
  std::string_view word;
  std::unique_ptr<Rule> (*make)();
};

const RuleClass kRuleClasses[] = {
    {"Suppress Category", make<SuppressCategory>},
    {"Suppress Item", make<SuppressItem>},
    {"Suppress Item Prefix", make<SuppressItemPrefix>},
    {"Suppress Datasheet ID", make<SuppressDatasheetId>},
    {"Suppress Sublist", make<SuppressSublist>},
    {"Rules List", make<RulesList>},
    {"Expression", make<ExpressionRule>},
    {"Category", make<CategoryRule>},
    {"Requirement", make<RequirementRule>},
};

const char* boolText(bool flag) {
  return flag ? "true" : "false";
}

}  // namespace

void Rule::setActive(bool flag, const RuleResolver&) {
  active = flag;
}

void Rule::assign(const Rule& other) {
  name = other.name;
  file = other.file;
  value = other.value;
  description = other.description;
  defaultValue = other.defaultValue;
  duplicatesOnly = other.duplicatesOnly;
  negated = other.negated;
}

bool Rule::allows(const RuleTestContext& context, Item& item, const Item* previous) const {
  if (item.isSublist()) return true;
  if (duplicatesOnly && !isDuplicateRow(item, previous)) return true;
  switch (test(context, item)) {
    case Verdict::Pass:
      return !negated;
    case Verdict::Refuse:
      return negated;
    case Verdict::PassRegardless:
      return true;
    case Verdict::RefuseRegardless:
      return false;
  }
  return true;
}

bool Rule::write(IniFile& file) const {
  return file.set(name, "Type", typeWord()) && file.set(name, "Value", value) &&
         file.set(name, "Description", description) &&
         file.set(name, "DuplicatesOnly", boolText(duplicatesOnly)) &&
         (defaultValue.empty() ? (file.remove(name, "DefaultValue"), true)
                               : file.set(name, "DefaultValue", defaultValue)) &&
         file.set(name, "Not", boolText(negated));
}

std::vector<std::string> Rule::entries() const {
  std::vector<std::string> out;
  for (const std::string& part : split(value, ';')) {
    std::string entry = trim(part);
    if (!entry.empty()) out.push_back(std::move(entry));
  }
  return out;
}

const std::vector<std::string_view>& ruleTypeWords() {
  static const std::vector<std::string_view> words = [] {
    std::vector<std::string_view> out;
    for (const RuleClass& entry : kRuleClasses)
      out.push_back(entry.word);
    return out;
  }();
  return words;
}

std::unique_ptr<Rule> makeRule(std::string_view typeWord) {
  const std::string word = trim(typeWord);
  for (const RuleClass& entry : kRuleClasses) {
    if (equalsIgnoringCase(entry.word, word)) return entry.make();
  }
  return nullptr;
}

bool isDuplicateRow(const Item& item, const Item* previous) {
  return previous != nullptr && !item.isSublist() && !previous->isSublist() &&
         equalsIgnoringCase(item.name, previous->name);
}

}  // namespace zv
