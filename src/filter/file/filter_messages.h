#pragma once
// The boxes of the filter engine: errors of a filter's lines go to a box titled "Filter Error"
// with the line number behind the text.

#include <string_view>

namespace zv {

inline constexpr std::string_view kFilterErrorTitle = "Filter Error";

/// Shows `text` with "\r\n\r\nLine: %d" behind it in a box titled "Filter Error".
void reportFilterError(std::string_view text, int line);

}  // namespace zv
