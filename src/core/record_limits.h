#pragma once
// Capacities of the fixed-size text fields of the sheet records (a field keeps one byte less than
// its capacity) and the hard limits on lists, dialogs and data menu entries.

#include <cstddef>

namespace zv {

// Texts of 260 bytes: file names and paths.
inline constexpr std::size_t kPathCapacity = 260;
// Game system names and sheet types.
inline constexpr std::size_t kGameSystemNameCapacity = 24;
inline constexpr std::size_t kSheetTypeCapacity = 24;
// The creation date of a sheet.
inline constexpr std::size_t kCreatedCapacity = 32;

// Lists and dialogs.
inline constexpr std::size_t kListNameCapacity = 32;
inline constexpr std::size_t kPromptCapacity = 32;  ///< costPrompt, levelPrompt
inline constexpr std::size_t kListPromptCapacity = 200;
inline constexpr std::size_t kMenuCharCapacity = 2;
inline constexpr std::size_t kCategoryNameCapacity = 32;
inline constexpr std::size_t kFontFaceCapacity = 32;
inline constexpr std::size_t kTotalVarNameCapacity = 32;
inline constexpr std::size_t kDialogNameCapacity = 32;

/// The data sheet identity of an item: four bytes, not nul-terminated, so all four are kept.
inline constexpr std::size_t kDsidLength = 4;

inline constexpr std::size_t kMaxLists = 12;
inline constexpr std::size_t kMaxDialogs = 12;
inline constexpr std::size_t kMaxDataMenuEntries = 30;
inline constexpr std::size_t kMaxDataMenuSeparators = 6;

/// The format revision that every writer stores; a file of a higher revision is refused.
inline constexpr int kFileFormatVersion = 253;

}  // namespace zv
