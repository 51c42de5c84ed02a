#pragma once
// Measures of filter header commands: a decimal number, which may start with a sign, followed at
// once by an optional unit, converted to twips (1/1440 inch).

#include <cstdint>
#include <optional>
#include <string_view>

namespace zv {

/// The twips of a measure word: `"`, `i`, `in` inches; `c`, `cm` centimetres; `p`, `pt` points
/// (a factor's result rounded by adding 0.5 before truncation); `l`, `ln` a count of lines,
/// stored negative; no unit or any other the number as twips. nullopt when the word holds no
/// number.
std::optional<std::int16_t> parseMeasure(std::string_view word);

}  // namespace zv
