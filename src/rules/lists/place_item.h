#pragma once
// The interactive add: a copy of a master item goes into a list where the user asked for it,
// with its level and cost, its automatic items and the check of its requirements, as one edit.
// The selection and the satisfying of requirements take the add as a parameter (`PlaceItem`), so
// that callers pass the real one and tests a simple stand-in.

#include <functional>
#include <memory>

#include "core/fileinfo.h"
#include "core/item.h"
#include "core/list_info.h"
#include "rules/lists/list_ops.h"

namespace zv {

enum class PlaceStatus {
  Placed,     ///< the item (and what it brought) stands; the sheet is marked changed
  Refused,    ///< its requirements are unmet and the user (or a preference) refused it
  Failed,     ///< it or one of its automatic items failed; the message was shown
  Cancelled,  ///< the user cancelled a question of its automatic items; nothing was shown
};

struct PlaceResult {
  PlaceStatus status = PlaceStatus::Failed;
  Item* item = nullptr;  ///< the item placed, null unless Placed
  int row = -1;          ///< the row to select: the item's, or where the caret was
};

/// Adds `item` (a copy of a master item) at `where` by addItem, running its automatic items.
/// When they fail or are cancelled, the item is taken out again with everything it brought, so
/// the sheet is as before. With `checkRequirements`, a placed item's requirements then pass the
/// requirements seam (checkRequirementsOf, under the preference CheckReq); unmet and refused by
/// passBadValue, it is taken out again too. Only a placed item marks the sheet changed.
PlaceResult placeItem(FileInfo& sheet, ListInfo& list, std::unique_ptr<Item> item,
                      const Placement& where, bool checkRequirements = true);

/// Places `copy` (a deep copy of a master item, level text evaluated) in `list`, at `at` (the
/// cursor row of a list window, or null for the end). Returns the placed item, or null after the
/// reason was shown.
using PlaceItem =
    std::function<Item*(FileInfo& sheet, ListInfo& list, std::unique_ptr<Item> copy, Item* at)>;

/// The real PlaceItem: placeItem behind the cursor's row (the end with no cursor). The
/// selection has already tested the requirements with the user, so they aren't asked again.
PlaceItem placeBehindCursor();

}  // namespace zv
