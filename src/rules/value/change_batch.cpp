#include "rules/value/change_batch.h"

#include <algorithm>

#include "core/engine_context.h"
#include "core/list_total.h"
#include "rules/value/defaults.h"
#include "rules/value/level.h"

namespace zv {

namespace {

ChangeBatch* openBatch = nullptr;

/// Rounds of one batch at most: each round is caused by totals that changed in the one before,
/// and the per-item counter ends them long before this.
constexpr int kMaxRounds = 64;

template <typename T>
void addOnce(std::vector<T*>& order, std::unordered_set<const T*>& seen, T* entry) {
  if (seen.insert(entry).second) order.push_back(entry);
}

}  // namespace

ChangeBatch::ChangeBatch(FileInfo& sheet) : outer_(openBatch) {
  if (outer_ == nullptr) openBatch = this;
  ChangeBatch& root = outer_ != nullptr ? *outer_ : *this;
  if (std::find(root.sheets_.begin(), root.sheets_.end(), &sheet) == root.sheets_.end()) {
    root.sheets_.push_back(&sheet);
  }
}

ChangeBatch::~ChangeBatch() {
  if (!finished_) finish();
}

ChangeBatch* ChangeBatch::current() {
  return openBatch;
}

std::vector<FailedCheck> ChangeBatch::finish() {
  if (finished_) return {};
  finished_ = true;
  if (outer_ != nullptr) return {};
  settle();
  openBatch = nullptr;
  notifyViews();
  return std::move(failedChecks_);
}

void ChangeBatch::noteCostChange(Item& item) {
  if (outer_ != nullptr) return outer_->noteCostChange(item);
  if (queued_.insert(&item).second) costQueue_.push_back(&item);
}

void ChangeBatch::noteValueChange(Item& item) {
  if (outer_ != nullptr) return outer_->noteValueChange(item);
  addOnce(repaint_, repaintSet_, &item);
}

void ChangeBatch::noteTotals(Item& item) {
  if (outer_ != nullptr) return outer_->noteTotals(item);
  for (Item* parent = item.parent; parent != nullptr; parent = parent->parent) {
    addOnce(sublists_, sublistSet_, parent);
  }
  if (item.list != nullptr) noteList(*item.list);
}

void ChangeBatch::noteList(ListInfo& list) {
  if (outer_ != nullptr) return outer_->noteList(list);
  addOnce(lists_, listSet_, &list);
}

void ChangeBatch::noteFailedCheck(Item& item, std::string message) {
  if (outer_ != nullptr) return outer_->noteFailedCheck(item, std::move(message));
  for (const FailedCheck& failed : failedChecks_) {
    if (failed.item == &item) return;
  }
  failedChecks_.push_back({&item, std::move(message)});
}

void ChangeBatch::forgetItem(const Item& item) {
  if (outer_ != nullptr) return outer_->forgetItem(item);
  auto drop = [&item](auto& order, auto& seen) {
    if (seen.erase(&item) == 0) return;
    order.erase(std::remove(order.begin(), order.end(), &item), order.end());
  };
  drop(costQueue_, queued_);
  drop(sublists_, sublistSet_);
  drop(repaint_, repaintSet_);
  counts_.erase(&item);
  failedChecks_.erase(std::remove_if(failedChecks_.begin(), failedChecks_.end(),
                                     [&item](const FailedCheck& f) { return f.item == &item; }),
                      failedChecks_.end());
}

int ChangeBatch::recomputations(const Item& item) const {
  auto found = counts_.find(&item);
  return found == counts_.end() ? 0 : found->second;
}

void ChangeBatch::settle() {
  for (int round = 0; round < kMaxRounds; ++round) {
    if (costQueue_.empty() && sublists_.empty() && lists_.empty()) break;
    std::vector<Item*> queue = std::move(costQueue_);
    costQueue_.clear();
    queued_.clear();
    for (Item* item : queue) {
      int& count = counts_[item];
      if (count >= kMaxRecomputations) continue;
      ++count;
      followCostVariable(*item);
      noteValueChange(*item);
    }
    // Members before the sublists that hold them, so that each sum is added up once.
    std::vector<Item*> sublists = std::move(sublists_);
    sublists_.clear();
    sublistSet_.clear();
    std::stable_sort(sublists.begin(), sublists.end(),
                     [](const Item* a, const Item* b) { return a->depth > b->depth; });
    for (Item* sublist : sublists) {
      computeChildCost(*sublist);
      noteValueChange(*sublist);
    }
    std::vector<ListInfo*> lists = std::move(lists_);
    lists_.clear();
    listSet_.clear();
    for (ListInfo* list : lists) {
      addUpList(*list);
      addOnce(repaintLists_, repaintListSet_, list);
    }
  }
}

void ChangeBatch::notifyViews() {
  const SheetViews& views = engine().views;
  if (views.itemChanged) {
    for (Item* item : repaint_)
      views.itemChanged(*item);
  }
  if (views.listChanged) {
    for (ListInfo* list : repaintLists_)
      views.listChanged(*list);
  }
  if (views.sheetChanged) {
    for (FileInfo* sheet : sheets_)
      views.sheetChanged(*sheet);
  }
}

void updateTotals(Item& item) {
  if (ChangeBatch* batch = ChangeBatch::current()) {
    batch->noteTotals(item);
    return;
  }
  for (Item* parent = item.parent; parent != nullptr; parent = parent->parent) {
    computeChildCost(*parent);
  }
  if (item.list != nullptr) addUpList(*item.list);
}

}  // namespace zv
