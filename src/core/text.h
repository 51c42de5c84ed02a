#pragma once
// Single-byte text of the system (Windows-1252): one fixed case and letter table for every
// comparison that ignores case, independent of the C locale.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

unsigned char toUpperChar(unsigned char c);
unsigned char toLowerChar(unsigned char c);
/// True for the letters of Windows-1252 (A-Z, a-z, the accented letters, and the like).
bool isLetterChar(unsigned char c);

std::string toUpper(std::string_view text);
std::string toLower(std::string_view text);

/// Compares ignoring case: negative, zero or positive, byte by byte over the lower-case forms.
int compareIgnoringCase(std::string_view a, std::string_view b);
bool equalsIgnoringCase(std::string_view a, std::string_view b);
bool startsWithIgnoringCase(std::string_view text, std::string_view prefix);
bool endsWithIgnoringCase(std::string_view text, std::string_view suffix);
/// `text` with every occurrence of `from` (not empty) replaced by `to`, left to right.
std::string replaceAll(std::string text, std::string_view from, std::string_view to);
/// Whether `name` matches the wildcard `pattern` ("*" any run, "?" any one byte), ignoring case.
bool wildcardMatch(std::string_view pattern, std::string_view name);
/// Position of `needle` in `haystack` ignoring case, from `from`; npos if absent.
size_t findIgnoringCase(std::string_view haystack, std::string_view needle, size_t from = 0);

/// Ordering for maps keyed by names that compare without regard to case.
struct LessIgnoringCase {
  using is_transparent = void;
  bool operator()(std::string_view a, std::string_view b) const {
    return compareIgnoringCase(a, b) < 0;
  }
};

std::string trim(std::string_view text);
std::vector<std::string> split(std::string_view text, char separator);

/// The first `capacity - 1` bytes of `text`: what a fixed buffer of that capacity keeps.
std::string truncateToCapacity(std::string_view text, size_t capacity);

/// Replaces every occurrence of `from` (ignoring case) by `to`, provided the result fits in a
/// buffer of `capacity` bytes with its terminator. Returns the number of replacements, or -1 after
/// the message "Error in replaceToken -- temporary string too small" (the text is then unchanged).
int replaceToken(std::string& text, size_t capacity, std::string_view from, std::string_view to);

}  // namespace zv
