#pragma once
// Taking an item from the selection: the duplicate question, the requirements (with the
// requirements dialog when they don't hold), the copy with its displayed level and origin
// category, its placing on the list, the count of items taken and the list's maximum.

#include <cstddef>

#include "rules/lists/place_item.h"
#include "rules/selection/select_item.h"

namespace zv {

/// Flags of the list the item goes to that its record doesn't carry: a list that takes
/// duplicates, a list whose items aren't checked for requirements.
struct TakeOptions {
  bool listAllowsDuplicates = false;
  bool listNoRequirements = false;
};

enum class TakeResult {
  Taken,      ///< the item was placed and the sheet marked changed
  Cancelled,  ///< the user stopped it (the duplicate note, the requirements dialog)
  Refused,    ///< unmet requirements refused it by the preferences
  Failed,     ///< the row's item couldn't be found or placed; its box was shown
};

struct TakeOutcome {
  TakeResult result = TakeResult::Failed;
  Item* placed = nullptr;
  /// The dialog closes: the list reached its maximum, or (unique mode) nothing is left to offer.
  bool close = false;
};

/// Takes the item of a row of the selection:
/// 1. Unless the list or the item (`dupexpected`) allows duplicates, a name the list already holds
///    asks "%s is already listed" ("Note", OK and Cancel); Cancel stops.
/// 2. Unless the item (`noprereq`) or the list waives them, and with the preference CheckReq, its
///    requirements are tested as it would stand in the list; unmet, the requirements dialog runs
///    with the item's name as the item under test (Cancel stops; with DisallowIfNotSatisfied an
///    item still unsatisfied isn't taken; with NoBadValueDlg only a beep, and it isn't taken).
/// 3. A deep copy is made: an item, or a group with its members.
/// 4. Its level text is evaluated for the displayed number; the category it came from is kept in
///    `origCat` when it isn't the list's own.
/// 5. `place` puts it on the list at the selection's cursor row.
/// 6. The count of taken items rises; reaching the list's maximum closes the dialog.
/// 7. The sheet is marked changed.
TakeOutcome takeItem(ItemSelection& selection, std::size_t row, const PlaceItem& place,
                     const TakeOptions& options = {});

}  // namespace zv
