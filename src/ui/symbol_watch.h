#pragma once
// The windows' side of the engine's change callbacks: a variable has one callback and one data
// word, so a sheet keeps one watch per variable, with any number of observers behind it, and
// puts the callback that was there before back when it is done.

#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "expr/symbols.h"

namespace zv::ui {

class SymbolWatches {
 public:
  SymbolWatches() = default;
  SymbolWatches(const SymbolWatches&) = delete;
  SymbolWatches& operator=(const SymbolWatches&) = delete;
  /// Puts back every callback that was there before.
  ~SymbolWatches();

  /// Calls `observer` after the variable's value changed (after any callback it had before),
  /// until the observers of `owner` are removed.
  void observe(Symbol& symbol, const void* owner, std::function<void()> observer);
  /// Removes the observers of `owner` from every variable.
  void removeObservers(const void* owner);

 private:
  struct Watch {
    Symbol* symbol = nullptr;
    SymbolCallback previous = nullptr;
    void* previousData = nullptr;
    std::vector<std::pair<const void*, std::function<void()>>> observers;
  };
  static void onChanged(Symbol& symbol, void* watch);

  std::map<Symbol*, std::unique_ptr<Watch>> watches_;
};

}  // namespace zv::ui
