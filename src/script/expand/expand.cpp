#include "script/expand/expand.h"

#include "core/numbers.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "expr/item_fields.h"
#include "expr/sheet_attributes.h"
#include "expr/symbols.h"
#include "script/expand/plus_functions.h"

namespace zv::script {

namespace {

constexpr std::size_t kPlusNameLength = 64;
constexpr std::size_t kPlusArgumentsCapacity = 512;

bool isNameCharacter(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return isLetterChar(byte) || (c >= '0' && c <= '9') || c == '_';
}

/// The text of a variable by the value rule: "~" the value less its base, "&" the base; a value
/// that is numeric zero (or missing) gives the base.
std::string symbolText(const Symbol& symbol, char prefix) {
  if (!symbol.isVariable()) return "";
  const double base = getBaseValue(&symbol);
  if (prefix == '&') return formatFloat(base);
  if (prefix == '~') return formatFloat(valueToDouble(symbol.value) - base);
  const bool hasValue = symbol.valid() || symbol.constant() || symbol.hasCode();
  const bool zero = symbol.value.isNumber() && valueToDouble(symbol.value) == 0.0;
  if (!hasValue || symbol.undefined() || zero) return formatFloat(base);
  return expansionText(symbol.value);
}

/// "@name": a sheet attribute, then a field of the item.
std::string attributeText(FileInfo* sheet, Item* item, std::string_view name) {
  Value value;
  if (sheet != nullptr && basicSheetAttribute(*sheet, name, value)) return expansionText(value);
  if (item != nullptr && itemField(*item, nullptr, name, value)) return expansionText(value);
  return "";
}

class Expander {
 public:
  Expander(ScriptRun& run, std::string_view text) : run_(run), text_(text) {}

  bool stageOne(std::string& out);

 private:
  bool put(std::string_view piece);
  /// Reads a name behind a $$, $* or $@ sequence at `at`: an optional "~", "&" or "@" and the
  /// name characters.
  std::string readName(std::size_t& at) const;
  std::string variableText(char kind, const std::string& name);
  bool itemSequence(char kind);

  ScriptRun& run_;
  std::string_view text_;
  std::string* out_ = nullptr;
  bool quoted_ = false;
};

bool Expander::put(std::string_view piece) {
  std::string& out = *out_;
  if (quoted_ && piece.find('"') != std::string_view::npos) {
    std::string doubled;
    for (char c : piece) {
      if (c == '"') {
        doubled += "''";
      } else {
        doubled += c;
      }
    }
    return put(doubled);
  }
  if (out.size() + piece.size() > kExpressionCapacity - 1) {
    run_.reportError("Expression overflow");
    return false;
  }
  out.append(piece);
  return true;
}

std::string Expander::readName(std::size_t& at) const {
  std::string name;
  if (at < text_.size() && (text_[at] == '~' || text_[at] == '&' || text_[at] == '@')) {
    name += text_[at++];
  }
  while (at < text_.size() && isNameCharacter(text_[at]))
    name += text_[at++];
  return name;
}

std::string Expander::variableText(char kind, const std::string& name) {
  char prefix = '\0';
  std::string_view bare = name;
  if (!bare.empty() && (bare[0] == '~' || bare[0] == '&' || bare[0] == '@')) {
    prefix = bare[0];
    bare.remove_prefix(1);
  }
  if (bare.empty()) return "";
  FileInfo* sheet = kind == '*' ? run_.sourceSheet : run_.destSheet;
  if (kind == '$') sheet = run_.context->owner != nullptr ? run_.context->owner : run_.destSheet;
  if (prefix == '@') {
    Item* item = kind == '@' ? run_.lastItemAdded : run_.currentItem();
    return attributeText(sheet, item, bare);
  }
  const Symbol* symbol = nullptr;
  if (kind == '$') {
    if (SymbolTable* locals = run_.locals()) symbol = locals->findHere(bare);
    if (symbol == nullptr) symbol = run_.context->find(bare);
  } else if (sheet != nullptr && sheet->symbols) {
    symbol = sheet->symbols->find(bare);
  }
  return symbol != nullptr ? symbolText(*symbol, prefix) : "";
}

bool Expander::itemSequence(char kind) {
  Item* item = run_.currentItem();
  Option* option = run_.currentOption();
  if (item == nullptr || (kind == 'v' && option == nullptr)) {
    run_.reportError("No current item, $l, $o, $n, $v or $c reference found");
    return false;
  }
  Value value;
  switch (kind) {
    case 'c':
      if (!itemField(*item, option, "cost", value)) value = Value(item->totalCost);
      return put(expansionText(value));
    case 'l':
      if (!itemField(*item, option, "level", value)) value = item->value;
      return put(expansionText(value));
    case 'n':
      return put(option != nullptr ? option->name : item->name);
    case 'o':
      if (!item->original.empty()) return put(item->original);
      return put(option != nullptr ? option->name : item->name);
    default:
      return put(expansionText(optionValue(*option)));
  }
}

bool Expander::stageOne(std::string& out) {
  out.clear();
  out_ = &out;
  quoted_ = false;
  std::size_t at = 0;
  while (at < text_.size()) {
    const char c = text_[at];
    if (c != '$') {
      if (c == '"') quoted_ = !quoted_;
      if (out.size() + 1 > kExpressionCapacity - 1) {
        run_.reportError("Expression overflow");
        return false;
      }
      out.push_back(c);
      ++at;
      continue;
    }
    if (at + 1 >= text_.size()) {
      run_.reportError("Missing character after $ in expression");
      return false;
    }
    const char kind = text_[at + 1];
    switch (kind) {
      case '#':
        if (!put(std::to_string(run_.reader.position.line))) return false;
        at += 2;
        break;
      case '$':
      case '*':
      case '@': {
        at += 2;
        const std::string name = readName(at);
        if (!put(variableText(kind, name))) return false;
        break;
      }
      case 'c':
      case 'l':
      case 'n':
      case 'o':
      case 'v':
        if (!itemSequence(kind)) return false;
        at += 2;
        break;
      default: {
        const char pair[2] = {c, kind};
        if (out.size() + 2 > kExpressionCapacity - 1) {
          run_.reportError("Expression overflow");
          return false;
        }
        out.append(pair, 2);
        if (kind == '"') quoted_ = !quoted_;
        at += 2;
        break;
      }
    }
  }
  return true;
}

/// Stage 2: copies the expanded text back into `text`, cut at `size` - 1 bytes, with each $+
/// function replaced by its result.
bool stageTwo(ScriptRun& run, const std::string& expanded, std::string& text, std::size_t size) {
  text.clear();
  const std::size_t limit = size - 1;
  std::size_t at = 0;
  while (at < expanded.size()) {
    if (expanded[at] != '$' || at + 1 >= expanded.size() || expanded[at + 1] != '+') {
      if (text.size() < limit) text.push_back(expanded[at]);
      ++at;
      continue;
    }
    at += 2;
    std::string name;
    while (at < expanded.size() && (isNameCharacter(expanded[at]) && expanded[at] != '_')) {
      name += expanded[at++];
    }
    if (name.empty() || name.size() > kPlusNameLength) {
      run.reportError("Couldn't read function after $+");
      return false;
    }
    std::string arguments;
    if (at < expanded.size() && expanded[at] == '(') {
      int depth = 0;
      std::size_t close = std::string::npos;
      for (std::size_t i = at; i < expanded.size(); ++i) {
        if (expanded[i] == '(') ++depth;
        if (expanded[i] == ')' && --depth == 0) {
          close = i;
          break;
        }
      }
      if (close == std::string::npos || close - at - 1 > kPlusArgumentsCapacity - 1) {
        run.reportError(strprintf("Bad arguments for $+%s", name));
        return false;
      }
      arguments = expanded.substr(at + 1, close - at - 1);
      at = close + 1;
    } else if (!equalsIgnoringCase(name, "canceled")) {
      run.reportError(strprintf("Missing '(' after $+%s", name));
      return false;
    }
    if (!isPlusFunction(name)) {
      run.reportError(strprintf("Unknown function: $+%s", name));
      return false;
    }
    const std::optional<std::string> result = callPlusFunction(run, name, arguments);
    if (!result) return false;
    if (text.size() + result->size() > limit) {
      run.reportError("Expression overflow");
      return false;
    }
    text += *result;
  }
  return true;
}

}  // namespace

std::string expansionText(const Value& value) {
  return valueToText(value);
}

bool expandExpression(ScriptRun& run, std::string& text, std::size_t size) {
  if (text.find('$') == std::string::npos) {
    if (text.size() > size - 1) text.resize(size - 1);
    return true;
  }
  std::string expanded;
  expanded.reserve(text.size() + 64);
  Expander expander(run, text);
  if (!expander.stageOne(expanded)) return false;
  return stageTwo(run, expanded, text, size);
}

}  // namespace zv::script
