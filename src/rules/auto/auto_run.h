#pragma once
// One run of an automatic items text: its state and the steps that the directives, the item
// references and the choices take. Shared by auto_items.cpp, auto_directives.cpp and
// auto_choose.cpp; nothing outside the automatic items uses it.

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/fileinfo.h"
#include "core/game_system.h"
#include "core/item.h"
#include "core/list_info.h"
#include "core/value.h"
#include "rules/auto/auto_items.h"
#include "rules/lists/list_ops.h"

namespace zv {

/// An option that each next item takes (?opt, ?dupopt, ?ncopt, ?seloptval).
struct PendingOption {
  std::string name;
  std::string value;
  std::string qualifier;
  bool dup = false;       ///< added even when the item has an option of that name (?dupopt)
  bool noCharge = false;  ///< it doesn't change the cost (?ncopt)
  bool isValue = false;   ///< the value is taken as it stands, not evaluated (?seloptval)
};

/// An item reference that each next item's option of that name takes (?itemref).
struct PendingItemRef {
  std::string option;
  std::string reference;
};

/// What one step of the run came to.
enum class AutoStep { Go, Fail, Cancel };

/// The state of a run, reset by ?clear apart from the ?if nesting and the run's own bookkeeping
/// (the parent, the count, the open sublists and the last item added).
struct AutoState {
  std::vector<PendingOption> options;
  ListInfo* targetList = nullptr;
  std::string sourceCategory;
  std::string targetListName;
  std::vector<PendingItemRef> itemRefs;
  bool charge = false;
  bool active = true;
  bool randomMode = false;
  int randomCount = 0;
  std::string adjustment;
  Item* parent = nullptr;
  int addedCount = 0;
  std::vector<Item*> sublistStack;  ///< at most kMaxOpenSublists
  Item* lastAdded = nullptr;
  std::string categoryToAdd;
  bool useDefault = false;
  bool allowDuplicate = false;
  std::string selectExpression;
  std::string defaultItem;
  bool checkRequirements = false;
  bool noRequirements = false;
  int lastOption = -1;  ///< index into `options` that ?qualifier changes

  /// One open ?if: whether the text around it was active, and whether a branch was taken.
  struct IfFrame {
    bool outerActive = true;
    bool taken = false;
  };
  std::vector<IfFrame> ifStack;

  static constexpr std::size_t kMaxOpenSublists = 10;
};

/// How ?choose shows its candidates.
enum class ChooseMode {
  Names,    ///< ?choose
  Costs,    ///< ?cchoose: "name [cost]", and a level asked for each chosen item
  Options,  ///< ?uchoose: names with their options, and a level asked for each chosen item
};

class AutoRun {
 public:
  AutoRun(FileInfo& sheet, ListInfo& list, Item& parent, Item* container, AddChain& chain);

  /// Runs the text; the count added, or -1.
  int run(std::string_view text, bool& cancelled);

  /// A directive (auto_directives.cpp).
  AutoStep directive(const AutoElement& element);
  /// An item reference: one item, or in random mode a draw (repeated for ?nrand).
  AutoStep reference(std::string_view text);
  /// Makes the item of a reference: a copy of `master` (or a blank item of the reference's name
  /// when null) with the reference's display name and level. An item of that name already listed
  /// is raised instead; otherwise applyAutoItem adds the copy.
  AutoStep addAutoItem(const Item* master, const AutoItemRef& ref, std::string_view categoryName);
  /// ?clear: the state as at the start, but for the ?if nesting and the run's bookkeeping.
  void clearState();
  /// ?choose, ?cchoose and ?uchoose (auto_choose.cpp).
  AutoStep choose(std::string_view argument, ChooseMode mode);

  /// The category an element without one comes from: ?cat, else the parent's, else the list's.
  std::string defaultCategoryName() const;
  /// The category of the sheet's game system, or null.
  Category* category(std::string_view name) const;
  /// The master item `name` of the category, or null.
  Item* findMaster(std::string_view categoryName, std::string_view name) const;
  /// The list that the next item goes to.
  ListInfo& destinationList();
  /// The parent's level as a text, for `x`.
  std::string parentLevel() const;
  /// Evaluates a text with `x` standing for the parent's level, in the parent's context; the
  /// expression error is shown on failure.
  bool evaluate(std::string_view text, Value& out);

  FileInfo& sheet;
  ListInfo& list;
  Item& parent;
  Item* container;
  AddChain& chain;
  AutoState state;

 private:
  /// The duplicate rule: the listed item takes the higher level and the pending options.
  AutoStep raise(Item& existing, Item& copy);
  /// Attaches the run's state to a new item (charge, marks, adjustment, categories, options,
  /// item references, the tie to the parent) and adds it where the run sends items; then the
  /// check of its requirements.
  AutoStep applyAutoItem(std::unique_ptr<Item> copy);
};

/// Loads a data sheet through the engine context's loader (true without one).
bool autoLoadDataSheet(FileInfo& sheet, std::string_view name);
/// Whether the engine context lets a master item be offered (true without a filter).
bool autoSelectionAllows(FileInfo& sheet, const Item& master);

/// Attaches a pending option to an item: the item's own option of that name (unless `dup`), or a
/// copy from the game system's option tree ("Cannot find option %s for automatic item %s.",
/// titled "Cannot Find Option"); its qualifier; its value, evaluated in the item's context
/// unless it is taken as it stands ("Bad expression in ?opt:%s=%s."). In raising mode the value
/// goes in only when it isn't lower than the option's present one.
bool applyPendingOption(FileInfo& sheet, Item& item, const PendingOption& pending, bool raising);

}  // namespace zv
