#pragma once
// The footer of a page printed through a filter.

#include <optional>
#include <string>
#include <string_view>

#include "core/host.h"

namespace zv {

/// "%s: printed %s, Page %d" with the sheet's name and the date, or "%s: Page %d" when there is
/// no date.
std::string footerText(std::string_view sheetName, const std::optional<std::string>& date,
                       int page);

/// Today's date in the short date `pattern` (d, m and y runs); none when the clock gave no date.
std::optional<std::string> footerDate(const LocalTime& now, std::string_view pattern);

}  // namespace zv
