#pragma once
// Forward declarations of the sheet records, of the expression engine's types that the records
// refer to, and the small value types that several records share.

#include <cstdint>

namespace zv {

struct FileInfo;
struct ListInfo;
struct DlgInfo;
struct DlgItem;
struct Item;
struct GameSystem;
struct Category;

// Defined by the expression engine; the records only refer to them.
struct Symbol;
class SymbolTable;

/// A window of the user interface, opaque to the engine; null when the window is closed.
using WindowHandle = void*;

/// A window or field rectangle in 16-bit coordinates.
struct Rect16 {
  std::int16_t x = 0;
  std::int16_t y = 0;
  std::int16_t width = 0;
  std::int16_t height = 0;
  friend bool operator==(const Rect16&, const Rect16&) = default;
};

}  // namespace zv
