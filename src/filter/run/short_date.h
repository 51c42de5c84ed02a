#pragma once
// Dates in the system's short date form, as "@date" and "@datecreated" give them.

#include <string>
#include <string_view>

namespace zv {

/// Fills a short date pattern: each run of d, m or y (either case) becomes the day, the month
/// (two digits with a leading zero when the letter is doubled) or the year (a year under 1900
/// has 1900 added; fewer than three letters give the last two digits, three or more all four).
/// Every other character stands as it is.
std::string formatShortDate(std::string_view pattern, int month, int day, int year);

/// "@datecreated": a creation text of three numbers month/day/year goes through the pattern;
/// any other text stands up to its first LF.
std::string createdDateText(std::string_view pattern, std::string_view created);

}  // namespace zv
