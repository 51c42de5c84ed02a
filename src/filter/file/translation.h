#pragma once
// The @trans entries of a filter: one character and the text that replaces it in field output,
// both with the escapes \\, \b, \t, \n and \r (a backslash before anything else stands for that
// character).

#include <optional>
#include <string>
#include <string_view>

#include "filter/file/filter_document.h"

namespace zv {

/// The longest replacement text of one entry.
inline constexpr std::size_t kMaxTranslationLength = 255;

/// Reads the arguments of @trans (the text behind the word and its one blank): the character,
/// a blank, and the replacement up to the end of the line or any control character. nullopt
/// when there is no character.
std::optional<FilterTranslation> parseTranslation(std::string_view arguments);

/// The escaped form of a text, as saveFilter writes it: codes 8, 9, 10, 13 and the backslash.
std::string escapeTranslationText(std::string_view text);

}  // namespace zv
