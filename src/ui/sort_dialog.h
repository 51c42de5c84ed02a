#pragma once
// The sort dialog of a list: the key, the direction, whether members of sublists are sorted too
// and where sublists go, kept between runs in the settings section "Sort".

#include <optional>

#include "core/settings.h"
#include "rules/lists/list_sort.h"

class QWidget;

namespace zv::ui {

/// The choices kept in the settings section "Sort" (ReverseOrder, Type, Recursive,
/// SublistPosition); values out of range read as the defaults.
SortSettings readSortSettings(const Settings& settings);
void writeSortSettings(Settings& settings, const SortSettings& choices);

/// Asks for the choices, starting from those kept in `settings` (the defaults without); OK
/// keeps the new ones there. nullopt when cancelled.
std::optional<SortSettings> askSortSettings(QWidget* parent, Settings* settings);

}  // namespace zv::ui
