#pragma once
// The one way the selection and the satisfying of requirements put a new item on a sheet's list.
// The list operations provide it (insertion with the item's level, options, adjustments and
// automatic items); the selection and requirements take it as a parameter so that callers pass
// the real one and tests a simple stand-in.

#include <functional>
#include <memory>

#include "core/fileinfo.h"
#include "core/item.h"
#include "core/list_info.h"

namespace zv {

/// Places `copy` (a deep copy of a master item, level text evaluated) in `list`, at `at` (the
/// cursor row of a list window, or null for the end). Returns the placed item, or null after the
/// reason was shown.
using PlaceItem =
    std::function<Item*(FileInfo& sheet, ListInfo& list, std::unique_ptr<Item> copy, Item* at)>;

}  // namespace zv
