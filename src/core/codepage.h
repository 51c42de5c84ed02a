#pragma once
// Conversion between the system's single-byte text (Windows-1252) and UTF-8, for the boundaries
// where text leaves or enters the program outside files: a terminal, JSON output, command lines.

#include <string>
#include <string_view>

namespace zv {

/// The UTF-8 form of Windows-1252 text. The five bytes that Windows-1252 leaves undefined are
/// kept as the control characters of the same number.
std::string windows1252ToUtf8(std::string_view text);

/// The Windows-1252 form of UTF-8 text; characters it can't hold become '?'. Text that isn't valid
/// UTF-8 is taken to be Windows-1252 already and comes back unchanged.
std::string utf8ToWindows1252(std::string_view text);

}  // namespace zv
