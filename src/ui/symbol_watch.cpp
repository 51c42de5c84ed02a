#include "ui/symbol_watch.h"

#include <algorithm>

namespace zv::ui {

SymbolWatches::~SymbolWatches() {
  for (auto& [symbol, watch] : watches_) {
    if (symbol->userData == watch.get()) setCallback(*symbol, watch->previous, watch->previousData);
  }
}

void SymbolWatches::observe(Symbol& symbol, const void* owner, std::function<void()> observer) {
  auto& watch = watches_[&symbol];
  if (!watch) {
    watch = std::make_unique<Watch>();
    watch->symbol = &symbol;
    getCallback(symbol, watch->previous, watch->previousData);
    setCallback(symbol, &SymbolWatches::onChanged, watch.get());
  }
  watch->observers.emplace_back(owner, std::move(observer));
}

void SymbolWatches::removeObservers(const void* owner) {
  for (auto& [symbol, watch] : watches_) {
    std::erase_if(watch->observers, [owner](const auto& entry) { return entry.first == owner; });
  }
}

void SymbolWatches::onChanged(Symbol& symbol, void* data) {
  auto* watch = static_cast<Watch*>(data);
  if (watch->previous != nullptr) watch->previous(symbol, watch->previousData);
  // A copy: an observer may remove observers while it runs.
  auto observers = watch->observers;
  for (auto& [owner, observer] : observers)
    observer();
}

}  // namespace zv::ui
