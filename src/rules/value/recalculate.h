#pragma once
// The Recalculate command (1308): every item of every list of a sheet has its options, cost and
// level assigned again, and every list is added up. Recalculation doesn't mark the sheet changed.

#include "core/fileinfo.h"
#include "core/list_info.h"

namespace zv {

/// Recalculates one list: each item in order redoes its option effects and cost and is assigned
/// its level again with propagation on and checks off (a sublist handles its members first, then
/// adds them up, redoes its own options and cost and is assigned without propagation); then the
/// list is added up and its view told.
void recalculateList(FileInfo& sheet, ListInfo& list);

/// Recalculates the sheet's lists, then the lists of its dialogs' `list` fields in dialog order,
/// as one batch of changes.
void recalculateSheet(FileInfo& sheet);

}  // namespace zv
