#pragma once
// A selection rule: one named section of a `.rules` file that trims what the item selection
// offers. Each word of `Type` is a class of its own; they share one record of texts and flags.
// The suppressing types hold a list of entries separated by ";"; an entry beginning "!" turns a
// refusal into a demand.

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/fileinfo.h"
#include "core/ini_file.h"
#include "core/item.h"

namespace zv {

class Rule;

/// Where a rule tests an item: the sheet the item would join (may be null) and the symbol table
/// in which expressions are evaluated, with the item context already pushed (may be null).
struct RuleTestContext {
  FileInfo* sheet = nullptr;
  SymbolTable* table = nullptr;
};

/// Finds the rule named by an entry of a "Rules List" ("rule" or "file:rule") for a rule of
/// `from`'s file; null when there is none.
using RuleResolver = std::function<Rule*(std::string_view reference, const Rule& from)>;

class Rule {
 public:
  virtual ~Rule() = default;

  std::string name;  ///< the section name
  std::string file;  ///< the short name of the file it was read from
  std::string value;
  std::string description;
  std::string defaultValue;  ///< key `DefaultValue`
  bool duplicatesOnly = false;
  bool negated = false;  ///< key `Not`
  bool active = false;

  bool isActive() const { return active; }
  /// Switches the rule on or off. A "Rules List" passes the flag on to each rule it lists.
  virtual void setActive(bool flag, const RuleResolver& resolve);
  /// The text shown for the rule: its description.
  std::string getDescription() const { return description; }
  /// Copies the texts and flags of another rule (not its activity).
  void assign(const Rule& other);
  /// The word of `Type` that makes this class.
  virtual std::string_view typeWord() const = 0;

  /// Whether the item may be offered. A sublist always passes; with `duplicatesOnly` an item
  /// passes unless it has the same name as `previous`, the row before it; otherwise the type's
  /// test decides, turned round by `Not` (except where a type answers regardless of it).
  bool allows(const RuleTestContext& context, Item& item, const Item* previous) const;

  /// Writes the rule as its section: Type, Value, Description, DuplicatesOnly, DefaultValue,
  /// Not. False when the file can't hold the name.
  bool write(IniFile& file) const;

 protected:
  /// The answer of a type's test, before `Not`; the "regardless" answers ignore it.
  enum class Verdict { Pass, Refuse, PassRegardless, RefuseRegardless };
  virtual Verdict test(const RuleTestContext& context, Item& item) const = 0;
  /// The entries of `value`: split on ";", trimmed, empty ones left out.
  std::vector<std::string> entries() const;
};

/// The words of `Type`, in the order the rule editor offers them.
const std::vector<std::string_view>& ruleTypeWords();

/// A rule of the class for that `Type` word (ignoring case); null for an unknown or empty word.
std::unique_ptr<Rule> makeRule(std::string_view typeWord);

/// True when `item` and `previous` are both items (not sublists) of one name, ignoring case: the
/// second of two neighbouring copies.
bool isDuplicateRow(const Item& item, const Item* previous);

}  // namespace zv
