#include "filter/run/short_date.h"

#include <charconv>

#include "core/strfmt.h"
#include "core/text.h"

namespace zv {

std::string formatShortDate(std::string_view pattern, int month, int day, int year) {
  std::string out;
  std::size_t pos = 0;
  while (pos < pattern.size()) {
    const char letter = static_cast<char>(toLowerChar(static_cast<unsigned char>(pattern[pos])));
    if (letter != 'd' && letter != 'm' && letter != 'y') {
      out += pattern[pos++];
      continue;
    }
    std::size_t count = 0;
    while (pos < pattern.size() && toLowerChar(static_cast<unsigned char>(pattern[pos])) ==
                                       static_cast<unsigned char>(letter)) {
      ++count;
      ++pos;
    }
    if (letter == 'y') {
      const int full = year < 1900 ? year + 1900 : year;
      out += count < 3 ? strprintf("%02d", full % 100) : strprintf("%d", full);
    } else {
      const int number = letter == 'd' ? day : month;
      out += count >= 2 ? strprintf("%02d", number) : strprintf("%d", number);
    }
  }
  return out;
}

std::string createdDateText(std::string_view pattern, std::string_view created) {
  int numbers[3] = {0, 0, 0};
  std::size_t pos = 0;
  bool dated = true;
  for (int i = 0; i < 3 && dated; ++i) {
    if (i > 0) {
      if (pos >= created.size() || created[pos] != '/') dated = false;
      ++pos;
    }
    if (!dated) break;
    auto [end, error] = std::from_chars(created.data() + std::min(pos, created.size()),
                                        created.data() + created.size(), numbers[i]);
    if (error != std::errc()) dated = false;
    pos = static_cast<std::size_t>(end - created.data());
  }
  // The date may be followed by a time ("03/04/2024 10:11:12").
  if (dated && (pos >= created.size() || created[pos] == ' ')) {
    return formatShortDate(pattern, numbers[0], numbers[1], numbers[2]);
  }
  std::size_t lineEnd = created.find('\n');
  return std::string(created.substr(0, lineEnd));
}

}  // namespace zv
