#pragma once
// The requirements dialog without its window: the rows it shows for an item (each requirement's
// line and whether it holds, the "--- OR ---" and "--- THEN ---" rows between them, an item
// that excludes this one, a level its own check refuses), and what OK, Cancel and Satisfy do.
// The desktop program draws it; headless runs answer it through the host.

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "core/fileinfo.h"
#include "rules/lists/place_item.h"
#include "rules/requirements/requirements.h"
#include "rules/selection/rule_sets.h"

namespace zv {

/// The note of the dialog while the preference DisallowIfNotSatisfied is on.
inline constexpr std::string_view kCheckedWhenFirstAddedNote =
    "Requirements checked only when item first added.";

struct PrereqRow {
  enum class Kind { Requirement, Or, Then };
  Kind kind = Kind::Requirement;
  std::string text;  ///< the display line, or "--- OR ---" / "--- THEN ---"
  bool met = false;
  bool satisfiedByUser = false;
};

enum class PrereqDialogAnswer { Ok, Cancel, Satisfy };

class RequirementsDialog {
 public:
  /// The dialog for an item of `list` (master or sheet item); `adding` when it runs before the
  /// item is taken. `rules` trims the items that counts offer (may be null).
  RequirementsDialog(FileInfo& sheet, ListInfo* list, Item& item, bool adding,
                     const RuleSetContext* rules = nullptr);

  const std::string& title() const { return title_; }
  const std::vector<PrereqRow>& rows() const { return rows_; }
  /// The note under the rows: kCheckedWhenFirstAddedNote with DisallowIfNotSatisfied, else "".
  std::string note() const;
  /// Whether the item's requirements hold as the sheet stands now.
  bool satisfied() const;
  /// False after a requirement text that can't be read (its syntax box was shown).
  bool readable() const { return readable_; }

  /// Satisfy: tries each requirement that doesn't hold, then shows the rows afresh. Returns how
  /// many were satisfied.
  int satisfy(const PlaceItem& place);
  /// OK: true when the dialog closes with the item accepted: its requirements hold, or the
  /// dialog doesn't run for an adding, or DisallowIfNotSatisfied is off.
  bool accept() const;

  /// The rows as lines of text, "[x] line" for one that holds and "[ ] line" for one that
  /// doesn't; separators as they are.
  std::string rowsText() const;

 private:
  void refresh();

  FileInfo& sheet_;
  ListInfo* list_;
  Item& item_;
  bool adding_;
  const RuleSetContext* rules_;
  std::string title_;
  std::vector<Prereq> prereqs_;
  std::vector<PrereqRow> rows_;
  bool readable_ = true;
};

/// Runs the desktop program's dialog of the engine context, or else a choice of the host titled by
/// the item's name whose prompt is the rows and the note, with the choices "OK", "Satisfy" and
/// "Cancel" (OK by default). True when the dialog closed by OK and accept() agreed.
bool runRequirementsDialog(RequirementsDialog& dialog, const PlaceItem& place);

/// The name of the item whose requirements are under test while an item is taken; "" otherwise.
const std::string& itemUnderTest();

/// Keeps a name as the item under test for its lifetime (nested uses restore the outer one).
class ItemUnderTestScope {
 public:
  explicit ItemUnderTestScope(std::string name);
  ~ItemUnderTestScope();
  ItemUnderTestScope(const ItemUnderTestScope&) = delete;
  ItemUnderTestScope& operator=(const ItemUnderTestScope&) = delete;

 private:
  std::string previous_;
};

}  // namespace zv
