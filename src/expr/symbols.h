#pragma once
// Symbols and symbol tables: every name an expression can mention (a variable, a user function or
// an array) and the dependency graph that keeps the variables' results up to date when one of
// them changes.

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/record_types.h"
#include "core/text.h"
#include "core/value.h"
#include "expr/code.h"
#include "expr/opcodes.h"

namespace zv {

struct Option;

/// Called after a variable's value changed, with the user data given at definition.
using SymbolCallback = void (*)(Symbol& symbol, void* userData);

struct Symbol {
  enum Flag : std::uint32_t {
    kValid = 1u << 0,       ///< the stored result is up to date
    kConstant = 1u << 1,    ///< stored directly or made of literals only: there is no code
    kUndefined = 1u << 2,   ///< a placeholder of a forward reference or a deleted symbol
    kHasBase = 1u << 3,     ///< a base value was assigned
    kInCallback = 1u << 4,  ///< the change callback is running
    kVisiting = 1u << 5,    ///< transient: on the path of an invalidation walk
  };

  std::string name;  ///< as first defined, at most 64 bytes
  /// The symbols whose code mentions this one, in the order they were linked.
  std::vector<Symbol*> dependents;
  SymbolKind kind = SymbolKind::None;
  std::uint32_t flags = 0;
  std::int32_t recursionCount = 0;
  Code code;                        ///< compiled form; empty for constant variables
  Value value;                      ///< a variable's last result
  std::int32_t parameterCount = 0;  ///< a function's declared parameters
  std::vector<Value> elements;      ///< an array's elements
  double baseValue = 0.0;
  SymbolCallback changeCallback = nullptr;
  void* userData = nullptr;
  Item* ownerItem = nullptr;     ///< the item in whose context the code is evaluated
  SymbolTable* table = nullptr;  ///< the table that holds the symbol

  bool has(Flag flag) const { return (flags & flag) != 0; }
  void set(Flag flag) { flags |= flag; }
  void clear(Flag flag) { flags &= ~static_cast<std::uint32_t>(flag); }
  bool valid() const { return has(kValid); }
  bool constant() const { return has(kConstant); }
  bool undefined() const { return has(kUndefined); }
  bool hasBase() const { return has(kHasBase); }
  bool isVariable() const { return kind == SymbolKind::Variable; }
  bool isFunction() const { return kind == SymbolKind::Function; }
  bool isArray() const { return kind == SymbolKind::Array; }
  bool hasCode() const { return !code.empty(); }
};

/// One scope of names, kept sorted by name ignoring case.
class SymbolTable {
 public:
  /// Knows a name before the table does: returns true and fills the value when it does. Its
  /// answer is compiled into code as a literal.
  using Resolver = std::function<bool(std::string_view name, Value& out)>;
  using ValueMap = std::map<std::string, Value, LessIgnoringCase>;
  using Maps = std::map<std::string, ValueMap, LessIgnoringCase>;

  SymbolTable();
  ~SymbolTable();
  SymbolTable(const SymbolTable&) = delete;
  SymbolTable& operator=(const SymbolTable&) = delete;

  /// The symbol of that name (ignoring case, cut to 64 bytes), in the nested table first.
  Symbol* find(std::string_view name) const;
  /// The symbol of that name in this table alone.
  Symbol* findHere(std::string_view name) const;
  /// Binary search: true with the match's position, or false with the insertion position.
  bool findSlot(std::string_view name, std::size_t& position) const;
  /// Creates a symbol of that name (cut to 64 bytes) in order; null when the name exists.
  Symbol* add(std::string_view name);
  /// Takes the symbol out of the table and frees it; its code must be unlinked already.
  void remove(Symbol& symbol);
  /// Frees all symbols (and the maps); the resolver and context stay.
  void clear();

  std::size_t size() const { return symbols_.size(); }
  Symbol& at(std::size_t position) const { return *symbols_[position]; }

  /// Installs a resolver and returns the previous one, so that it can be restored.
  Resolver setResolver(Resolver resolver);
  const Resolver& resolver() const { return resolver_; }

  /// The named maps of putmap and getmap; null before the first putmap.
  Maps* maps() const { return maps_.get(); }
  Maps& ensureMaps();
  void clearMaps() { maps_.reset(); }

  FileInfo* owner = nullptr;           ///< the sheet the table belongs to, may be null
  Item* currentItem = nullptr;         ///< the context of the evaluation under way
  Option* currentOption = nullptr;     ///< the option of the evaluation under way
  SymbolTable* nestedTable = nullptr;  ///< searched before this table

 private:
  std::vector<std::unique_ptr<Symbol>> symbols_;
  Resolver resolver_;
  std::unique_ptr<Maps> maps_;
};

// ---- Definitions. Each stores its failure in the error record (expr_error.h). ----

/// Defines a variable by an expression and evaluates it; null on failure (the symbol then stays
/// in the table without a value).
Symbol* defineVariable(SymbolTable& table, std::string_view name, std::string_view expression,
                       SymbolCallback callback = nullptr, void* userData = nullptr,
                       Item* ownerItem = nullptr);
/// Defines an array from a header "name[n]" or "name[]" and a body of comma-separated literals.
Symbol* defineArray(SymbolTable& table, std::string_view header, std::string_view body);
/// Defines a function from a header "name(a, b)" and a body expression or procedure.
Symbol* defineFunction(SymbolTable& table, std::string_view header, std::string_view body);
/// Replaces a variable's expression, evaluates it and passes the change on. 0 or -1.
int setExpression(SymbolTable& table, Symbol& symbol, std::string_view text);
/// Stores a constant value and passes the change on. 0 or -1.
int setValue(SymbolTable& table, Symbol& symbol, const Value& value);
/// Stores the base, re-evaluates the code and passes the change on. 0 or -1.
int setBaseValue(SymbolTable& table, Symbol& symbol, double base);
/// The base of a symbol; 0.0 for none.
double getBaseValue(const Symbol* symbol);

/// These four apply to variables only and return -1 for any other kind, else 0.
int setCallback(Symbol& symbol, SymbolCallback callback, void* userData);
int getCallback(const Symbol& symbol, SymbolCallback& callback, void*& userData);
int setOwnerItem(Symbol& symbol, Item* item);
int getValue(const Symbol& symbol, Value& out);

/// Removes a symbol, or keeps it as an undefined placeholder when others still use it or it has a
/// base. False when it is not in the table.
bool deleteSymbol(SymbolTable& table, Symbol& symbol);

/// Makes the symbol valid, calls its callback and recalculates everything that depends on it.
int propagateChange(SymbolTable& table, Symbol& symbol);

/// The next symbol that the symbol's code refers to, from `position` (start at 0): returns the
/// position after it and fills `referenced`, or -1 at the end.
long nextReference(const Symbol& symbol, long position, Symbol*& referenced);

/// True when the text is exactly one number or one quoted string, a number optionally preceded
/// by a minus sign.
bool isLiteralText(std::string_view text);

// ---- Arrays ----

/// Frees the elements and leaves the array empty.
void clearArray(Symbol& array);
/// Gives the array `count` elements of integer 0.
void sizeArray(Symbol& array, std::size_t count);
/// Stores the value at a 0-based index in range; false otherwise.
bool setArrayElement(Symbol& array, std::size_t index, Value value);

// ---- The process-wide reading flag: set while a sheet is read, so that expression side effects
// are suppressed. ----
bool isReading();
void setReading(bool on);

}  // namespace zv
