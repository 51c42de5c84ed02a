// Built-in functions that store into variables of the table the code runs in: setvariable, and
// split, which cuts a text into the variables (or the array) it names.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/messages.h"
#include "core/text.h"
#include "expr/builtins.h"
#include "expr/builtins_args.h"
#include "expr/regex.h"
#include "expr/symbols.h"

namespace zv {

namespace {

/// The variable of that name, created in the table (as "0") when it is missing or only a
/// placeholder. Null when the name belongs to an array or function, or can't be defined.
Symbol* variableToSet(SymbolTable& table, std::string_view name) {
  Symbol* symbol = table.find(name);
  if (symbol == nullptr || symbol->undefined()) symbol = defineVariable(table, name, "0");
  return symbol != nullptr && symbol->isVariable() ? symbol : nullptr;
}

/// Finds the places where split cuts a text: a plain separator ignoring case, or the matches of
/// a /pattern/.
class Cutter {
 public:
  /// False, after the message, when the pattern doesn't compile.
  bool prepare(const std::string& separator) {
    if (separator.size() >= 3 && separator.front() == '/' && separator.back() == '/') {
      std::string error;
      regex_ = Regex::compile(std::string_view(separator).substr(1, separator.size() - 2), &error);
      if (!regex_) {
        showError(strprintf("Error in split regular expression pattern: %s", error));
        return false;
      }
    }
    separator_ = separator;
    return true;
  }

  /// The next cut at or after `from`, as the start and end of the separator found there. A cut
  /// never takes nothing at `from` itself, so every piece but the last holds a byte or more
  /// when the separator can match the empty text.
  std::optional<std::pair<std::size_t, std::size_t>> next(const std::string& text,
                                                          std::size_t from) const {
    if (!regex_) {
      if (separator_.empty()) return std::nullopt;
      std::size_t at = findIgnoringCase(text, separator_, from);
      if (at == std::string::npos) return std::nullopt;
      return std::pair(at, at + separator_.size());
    }
    for (std::size_t start = from; start <= text.size(); ++start) {
      RegexMatch match = regex_->search(text, start);
      if (!match.matched) return std::nullopt;
      auto begin = static_cast<std::size_t>(match.start());
      auto end = static_cast<std::size_t>(match.end());
      if (end > begin || begin > from) return std::pair(begin, end);
    }
    return std::nullopt;
  }

 private:
  std::string separator_;
  std::optional<Regex> regex_;
};

/// Cuts the whole text at every separator.
std::vector<std::string> allPieces(const std::string& text, const Cutter& cutter) {
  std::vector<std::string> pieces;
  if (text.empty()) return pieces;
  std::size_t position = 0;
  for (;;) {
    auto cut = cutter.next(text, position);
    if (!cut) break;
    pieces.push_back(text.substr(position, cut->first - position));
    position = cut->second;
  }
  pieces.push_back(text.substr(position));
  return pieces;
}

}  // namespace

int builtinSetvariable(BuiltinCall& call) {
  if (!hasArguments(call, 2)) return fail(kExprStackUnderflow);
  std::string name;
  if (!textArgument(call, 0, name)) return fail(kExprBadIndexing);
  Symbol* variable = variableToSet(call.table, name);
  bool stored = variable != nullptr && setValue(call.table, *variable, call.args[1]) == 0;
  call.result = Value(stored ? 1 : 0);
  return 0;
}

int builtinSplit(BuiltinCall& call) {
  if (!hasArguments(call, 3)) return fail(kExprStackUnderflow);
  std::string text, separator;
  if (!textArgument(call, 0, text) || !textArgument(call, 1, separator)) {
    return fail(kExprBadFormat);
  }
  Cutter cutter;
  if (!cutter.prepare(separator)) return fail(kExprBadFormat);

  const Value& first = call.args[2];
  if (call.args.size() == 3 && first.isArrayRef()) {
    Symbol* array = first.arraySymbol();
    if (array == nullptr || !array->isArray()) return fail(kExprBadIndexing);
    std::vector<std::string> pieces = allPieces(text, cutter);
    clearArray(*array);
    for (std::string& piece : pieces)
      array->elements.emplace_back(std::move(piece));
    call.result = Value(static_cast<std::int32_t>(pieces.size()));
    return 0;
  }

  std::int32_t set = 0;
  std::optional<std::size_t> position = 0;  // none once the text is used up
  for (std::size_t i = 2; i < call.args.size() && call.args[i].isString(); ++i) {
    std::string piece;
    if (position) {
      auto cut = cutter.next(text, *position);
      piece = text.substr(*position, cut ? cut->first - *position : std::string::npos);
      position = cut ? std::optional(cut->second) : std::nullopt;
    }
    Symbol* variable = variableToSet(call.table, call.args[i].text());
    if (variable == nullptr || setValue(call.table, *variable, Value(std::move(piece))) != 0) {
      return fail(kExprBadFormat);
    }
    ++set;
  }
  call.result = Value(set);
  return 0;
}

}  // namespace zv
