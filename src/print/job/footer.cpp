#include "print/job/footer.h"

#include "core/messages.h"
#include "filter/run/short_date.h"

namespace zv {

std::string footerText(std::string_view sheetName, const std::optional<std::string>& date,
                       int page) {
  if (date) return strprintf("%s: printed %s, Page %d", std::string(sheetName), *date, page);
  return strprintf("%s: Page %d", std::string(sheetName), page);
}

std::optional<std::string> footerDate(const LocalTime& now, std::string_view pattern) {
  if (!now.valid) return std::nullopt;
  return formatShortDate(pattern, now.month, now.day, now.year);
}

}  // namespace zv
