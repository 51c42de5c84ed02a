#pragma once
// The requirements of a sheet joined to every level change: after an edit, with the preference
// CheckReq, the items whose requirements no longer hold are named, and the refused-value
// preferences decide whether the change stands (rules/value/edit.h). The engine context's
// service checkRequirements is this function.

#include <optional>

#include "core/fileinfo.h"
#include "rules/value/edit.h"

namespace zv {

/// The sheet's unmet requirements after `changed` changed: nullopt when every item's hold (or no
/// item has any); else a box titled by the changed item's list with the count line ("1 item with
/// unsatisfied requirements") and a line "list: item" for each.
std::optional<BadValue> unmetRequirementsAfterChange(FileInfo& sheet, Item& changed);

}  // namespace zv
