#pragma once
// What the sheet reader needs from the expression engine: a symbol table for the sheet, and the
// definitions that the file makes (the define block, the total variable and change expression of
// a list, the variables of dialog fields). The reader talks to the engine only through this
// interface, so that the grammar can be read without definitions (syntax checks, fuzzing) and
// tests can watch what a file defines.

#include <optional>
#include <string>
#include <string_view>

#include "core/record_types.h"

namespace zv {

class SheetSymbolBinder {
 public:
  /// The outcome of a definition: the symbol (null when the engine keeps none) or the engine's
  /// error text.
  struct Result {
    bool ok = false;
    Symbol* symbol = nullptr;
    std::string error;
  };

  virtual ~SheetSymbolBinder() = default;

  /// Gives the sheet a fresh symbol table, replacing any it had.
  virtual void createTable(FileInfo& sheet) = 0;
  /// Frees the sheet's table and every symbol in it.
  virtual void freeTable(FileInfo& sheet) = 0;
  /// The process-wide flag that suppresses expression side effects while a sheet is read.
  virtual void setReading(bool on) = 0;

  /// A variable with that expression, evaluated at once.
  virtual Result defineVariable(FileInfo& sheet, std::string_view name,
                                std::string_view expression) = 0;
  /// A function from a header "name(a, b)" and a body.
  virtual Result defineFunction(FileInfo& sheet, std::string_view header,
                                std::string_view body) = 0;
  /// An array from a header "name[n]" and a body of literals.
  virtual Result defineArray(FileInfo& sheet, std::string_view header, std::string_view body) = 0;
  /// Stores a number in a variable. False when the engine refuses.
  virtual bool setNumber(FileInfo& sheet, Symbol& symbol, double value) = 0;
  /// Whether the sheet's table holds a symbol of that name.
  virtual bool isDefined(FileInfo& sheet, std::string_view name) = 0;
  /// Evaluates an expression once and gives the text of its value; nullopt with the engine's
  /// error text in `error`.
  virtual std::optional<std::string> evaluateText(FileInfo& sheet, std::string_view expression,
                                                  std::string& error) = 0;
};

}  // namespace zv
