#pragma once
// The file kinds offered by the Open dialog.

#include <vector>

#include "core/host.h"

namespace zv::ui {

/// Character Sheet, Character Template, Data Sheet, Macro Data Sheet, Print Template, Filter,
/// Script, Group, All Files; in that order.
const std::vector<FileFilter>& openDialogFilters();

}  // namespace zv::ui
