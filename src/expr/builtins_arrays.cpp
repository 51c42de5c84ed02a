// Built-in functions on arrays. The array argument is the bare name of an array, which reaches
// the function as an array reference; any other kind of value there gives -6. Element positions
// count from 1.

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "core/paths.h"
#include "core/text.h"
#include "expr/builtins.h"
#include "expr/builtins_args.h"
#include "expr/symbols.h"

namespace zv {

namespace {

/// The highest element number that setelement stores.
constexpr std::int32_t kLastSettableElement = 65536;

/// The array that argument `index` refers to, or null when it is no array.
Symbol* arrayArgument(const BuiltinCall& call, std::size_t index) {
  const Value& value = call.args[index];
  if (!value.isArrayRef()) return nullptr;
  Symbol* symbol = value.arraySymbol();
  return symbol != nullptr && symbol->isArray() ? symbol : nullptr;
}

std::int32_t countOf(const Symbol& array) {
  return static_cast<std::int32_t>(array.elements.size());
}

/// Equality of index(): values of one kind by value (texts ignoring case), of mixed kinds as
/// doubles.
bool sameElement(const Value& a, const Value& b) {
  if (a.kind() == b.kind()) {
    switch (a.kind()) {
      case ValueKind::Integer:
        return a.integer() == b.integer();
      case ValueKind::Float:
        return a.real() == b.real();
      case ValueKind::String:
        return equalsIgnoringCase(a.text(), b.text());
      case ValueKind::ArrayRef:
        return a.arraySymbol() == b.arraySymbol();
      default:
        return false;
    }
  }
  return valueToDouble(a) == valueToDouble(b);
}

/// Quicksort by `before`. The comparison need not be a strict ordering (compareValues of mixed
/// kinds isn't transitive), so every scan is bounded by the range itself.
template <typename Before>
void quicksort(std::vector<Value>& values, std::size_t low, std::size_t high, Before before) {
  while (high - low > 1) {
    std::size_t middle = low + (high - low) / 2;
    std::swap(values[middle], values[high - 1]);
    const Value& pivot = values[high - 1];
    std::size_t store = low;
    for (std::size_t i = low; i + 1 < high; ++i) {
      if (before(values[i], pivot)) std::swap(values[i], values[store++]);
    }
    std::swap(values[store], values[high - 1]);
    // Recurse into the smaller part, loop over the larger one.
    if (store - low < high - store - 1) {
      quicksort(values, low, store, before);
      low = store + 1;
    } else {
      quicksort(values, store + 1, high, before);
      high = store;
    }
  }
}

/// The position of the pair whose key equals `key` by compareValues, or the element count.
std::size_t findPair(const Symbol& array, const Value& key) {
  for (std::size_t i = 0; i + 1 < array.elements.size(); i += 2) {
    if (compareValues(array.elements[i], key) == 0) return i;
  }
  return array.elements.size();
}

/// True, after setting -34 with the array's name, when the array can't hold pairs.
bool oddPairs(const Symbol& array) {
  if (array.elements.size() % 2 == 0) return false;
  setError(kExprOddAssociative, array.name);
  return true;
}

/// True when the name matches one of the ";"-separated wildcards. "*.*" takes every name, with
/// or without an extension.
bool matchesAny(const std::vector<std::string>& wildcards, const std::string& name) {
  return std::any_of(wildcards.begin(), wildcards.end(), [&name](const std::string& wildcard) {
    return wildcard == "*.*" || wildcardMatch(wildcard, name);
  });
}

}  // namespace

int builtinSizeof(BuiltinCall& call) {
  if (!hasArguments(call, 1)) return fail(kExprStackUnderflow);
  Symbol* array = arrayArgument(call, 0);
  if (!array) return fail(kExprBadIndexing);
  call.result = Value(countOf(*array));
  return 0;
}

int builtinIndex(BuiltinCall& call) {
  if (!hasArguments(call, 2)) return fail(kExprStackUnderflow);
  Symbol* array = arrayArgument(call, 0);
  if (!array) return fail(kExprBadIndexing);
  const std::vector<Value>& elements = array->elements;
  auto found = std::find_if(elements.begin(), elements.end(), [&call](const Value& element) {
    return sameElement(element, call.args[1]);
  });
  call.result =
      Value(found == elements.end() ? -1 : static_cast<std::int32_t>(found - elements.begin()) + 1);
  return 0;
}

int builtinLookup(BuiltinCall& call) {
  if (!hasArguments(call, 2)) return fail(kExprStackUnderflow);
  Symbol* array = arrayArgument(call, 0);
  if (!array) return fail(kExprBadIndexing);
  const std::vector<Value>& elements = array->elements;
  std::size_t pairs = elements.size() / 2;
  if (pairs == 0) {
    call.result = Value(0);
    return 0;
  }
  std::size_t pair = 0;
  while (pair + 1 < pairs && compareValues(elements[2 * pair], call.args[1]) < 0)
    ++pair;
  call.result = elements[2 * pair + 1];
  return 0;
}

int builtinAddelement(BuiltinCall& call) {
  if (!hasArguments(call, 2)) return fail(kExprStackUnderflow);
  Symbol* array = arrayArgument(call, 0);
  if (!array) return fail(kExprBadIndexing);
  array->elements.push_back(call.args[1]);
  call.result = Value(countOf(*array));
  return 0;
}

int builtinRemoveelement(BuiltinCall& call) {
  if (!hasArguments(call, 2)) return fail(kExprStackUnderflow);
  Symbol* array = arrayArgument(call, 0);
  if (!array) return fail(kExprBadIndexing);
  std::int32_t n = integerArgument(call, 1);
  if (array->elements.empty()) {
    call.result = Value(0);
  } else if (n < 1 || n > countOf(*array)) {
    call.result = Value(-1);
  } else {
    array->elements.erase(array->elements.begin() + (n - 1));
    call.result = Value(countOf(*array));
  }
  return 0;
}

int builtinRemoveallelements(BuiltinCall& call) {
  if (!hasArguments(call, 1)) return fail(kExprStackUnderflow);
  Symbol* array = arrayArgument(call, 0);
  if (!array) return fail(kExprBadIndexing);
  clearArray(*array);
  call.result = Value(0);
  return 0;
}

int builtinSetelement(BuiltinCall& call) {
  if (!hasArguments(call, 3)) return fail(kExprStackUnderflow);
  Symbol* array = arrayArgument(call, 0);
  if (!array) return fail(kExprBadIndexing);
  std::int32_t n = integerArgument(call, 1);
  if (n < 1 || n > kLastSettableElement) {
    call.result = Value(0);
    return 0;
  }
  if (countOf(*array) < n) array->elements.resize(static_cast<std::size_t>(n));
  array->elements[static_cast<std::size_t>(n - 1)] = call.args[2];
  call.result = Value(n);
  return 0;
}

int builtinSortelements(BuiltinCall& call) {
  if (!hasArguments(call, 2)) return fail(kExprStackUnderflow);
  Symbol* array = arrayArgument(call, 0);
  if (!array) return fail(kExprBadIndexing);
  bool ascending = integerArgument(call, 1) != 0;
  std::vector<Value>& elements = array->elements;
  if (ascending) {
    quicksort(elements, 0, elements.size(),
              [](const Value& a, const Value& b) { return compareValues(a, b) < 0; });
  } else {
    quicksort(elements, 0, elements.size(),
              [](const Value& a, const Value& b) { return compareValues(a, b) > 0; });
  }
  call.result = Value(countOf(*array));
  return 0;
}

int builtinGetassoc(BuiltinCall& call) {
  if (!hasArguments(call, 2)) return fail(kExprStackUnderflow);
  Symbol* array = arrayArgument(call, 0);
  if (!array) return fail(kExprBadIndexing);
  if (oddPairs(*array)) return kExprOddAssociative;
  std::size_t at = findPair(*array, call.args[1]);
  call.result = at < array->elements.size() ? array->elements[at + 1] : Value(0);
  return 0;
}

int builtinPutassoc(BuiltinCall& call) {
  if (!hasArguments(call, 3)) return fail(kExprStackUnderflow);
  Symbol* array = arrayArgument(call, 0);
  if (!array) return fail(kExprBadIndexing);
  if (oddPairs(*array)) return kExprOddAssociative;
  std::size_t at = findPair(*array, call.args[1]);
  if (at < array->elements.size()) {
    array->elements[at + 1] = call.args[2];
  } else {
    array->elements.push_back(call.args[1]);
    array->elements.push_back(call.args[2]);
  }
  call.result = Value(countOf(*array));
  return 0;
}

int builtinListdirectory(BuiltinCall& call) {
  if (!hasArguments(call, 3)) return fail(kExprStackUnderflow);
  Symbol* array = arrayArgument(call, 0);
  if (!array || !call.args[1].isString() || !call.args[2].isString()) {
    return fail(kExprBadIndexing);
  }
  std::vector<std::string> wildcards;
  for (const std::string& piece : split(call.args[2].text(), ';')) {
    if (std::string wildcard = trim(piece); !wildcard.empty()) wildcards.push_back(wildcard);
  }
  std::vector<std::string> names;
  std::error_code error;
  std::filesystem::path directory(toNativeSeparators(call.args[1].text()));
  for (std::filesystem::directory_iterator it(directory, error), end; !error && it != end;
       it.increment(error)) {
    std::string name = it->path().filename().string();
    if (matchesAny(wildcards, name)) names.push_back(std::move(name));
  }
  // The order the directory yields is arbitrary; a sorted list keeps scripts reproducible.
  std::sort(names.begin(), names.end(), LessIgnoringCase());
  clearArray(*array);
  for (std::string& name : names)
    array->elements.emplace_back(std::move(name));
  call.result = Value(countOf(*array));
  return 0;
}

}  // namespace zv
