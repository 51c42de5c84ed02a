#pragma once
// Textual replacement of the bare words of formulas (x, &x, ~x, c, a, m, aux, d, v).

#include <string>
#include <string_view>

namespace zv {

/// Replaces every whole-word occurrence of `word` (ignoring case) by `replacement`. A word is a
/// run of letters, digits and "_"; a token that starts with "&" or "~" matches that byte too.
/// An `x` preceded by "&" or "~" is not a whole word of its own.
std::string replaceWord(std::string_view text, std::string_view word, std::string_view replacement);

/// `text` between `open` and `close` ("(" and ")" around a value, quotes around a text).
std::string enclosed(std::string_view open, std::string_view text, std::string_view close);

/// True when the word occurs whole in the text.
bool containsWord(std::string_view text, std::string_view word);

}  // namespace zv
