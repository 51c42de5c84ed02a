#pragma once
// The print symbol hook: while pages are produced, names the sheet doesn't know and that begin
// with "@" tell whether there is something to print: "@Gear" the count of a list's items,
// "@notes" and "@details" 1 or 0, "@Identity.Name" 1 for a filled-in field.

#include <string_view>

#include "core/record_types.h"
#include "core/value.h"
#include "expr/symbols.h"

namespace zv {

/// What the hook gives for `name`; false when it is not one of its names.
bool printSymbolValue(const FileInfo& sheet, std::string_view name, Value& out);

/// Installs the hook in the sheet's table for its lifetime, in front of the resolver there was,
/// and puts that back afterwards.
class PrintSymbolHook {
 public:
  explicit PrintSymbolHook(FileInfo* sheet);
  ~PrintSymbolHook();
  PrintSymbolHook(const PrintSymbolHook&) = delete;
  PrintSymbolHook& operator=(const PrintSymbolHook&) = delete;

 private:
  FileInfo* sheet_;
  SymbolTable::Resolver previous_;
};

}  // namespace zv
