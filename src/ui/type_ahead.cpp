#include "ui/type_ahead.h"

#include "core/text.h"

namespace zv::ui {

std::optional<std::size_t> TypeAhead::type(char key, const std::vector<std::string_view>& names,
                                           std::optional<std::size_t> caret) {
  const char lower = static_cast<char>(toLowerChar(static_cast<unsigned char>(key)));
  if (keys_.size() < kMostKeys) keys_ += lower;
  if (std::optional<std::size_t> row = find(names, caret)) return row;
  keys_.assign(1, lower);
  return find(names, caret);
}

std::optional<std::size_t> TypeAhead::find(const std::vector<std::string_view>& names,
                                           std::optional<std::size_t> caret) const {
  const std::size_t count = names.size();
  const std::size_t first = caret ? *caret + 1 : 0;
  for (std::size_t step = 0; step < count; ++step) {
    const std::size_t row = (first + step) % count;
    if (startsWithIgnoringCase(names[row].substr(0, kNameChars), keys_)) return row;
  }
  return std::nullopt;
}

}  // namespace zv::ui
