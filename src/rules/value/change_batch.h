#pragma once
// One edit's worth of consequences. While an edit or a recalculation runs, the listeners of the
// item variables don't act at once: they note which items must follow their cost variable, which
// sublists and lists must be added up again and which rows must be repainted. When the outermost
// batch finishes, each noted item is recomputed once, the totals are added up (deepest sublists
// first, then the lists), and whatever that changes in turn is handled in further rounds. A
// per-item re-entry counter ends the rounds of items that keep changing each other.

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "core/fileinfo.h"
#include "core/item.h"
#include "core/list_info.h"

namespace zv {

/// An item whose level failed its check while it followed a change of other items.
struct FailedCheck {
  Item* item = nullptr;
  std::string message;
};

class ChangeBatch {
 public:
  /// Opens a batch; one opened while another is open joins it, and only the outermost one
  /// settles what was noted.
  explicit ChangeBatch(FileInfo& sheet);
  /// Finishes the batch if finish() wasn't called.
  ~ChangeBatch();
  ChangeBatch(const ChangeBatch&) = delete;
  ChangeBatch& operator=(const ChangeBatch&) = delete;

  /// The outermost open batch, or null.
  static ChangeBatch* current();

  /// Settles the noted changes (outermost batch only) and tells the sheet views. Returns the
  /// items whose level check failed on the way (only when the preference CheckReq is on).
  std::vector<FailedCheck> finish();

  void noteCostChange(Item& item);
  void noteValueChange(Item& item);
  void noteTotals(Item& item);
  void noteList(ListInfo& list);
  void noteFailedCheck(Item& item, std::string message);
  /// Drops everything noted about an item that leaves its list, so that nothing reaches it once
  /// it is freed or kept by an undo record.
  void forgetItem(const Item& item);

  /// How often an item was recomputed in this batch; the rounds stop recomputing it at
  /// kMaxRecomputations.
  int recomputations(const Item& item) const;
  static constexpr int kMaxRecomputations = 3;

 private:
  void settle();
  void notifyViews();

  ChangeBatch* outer_ = nullptr;
  bool finished_ = false;
  std::vector<FileInfo*> sheets_;
  std::vector<Item*> costQueue_;
  std::unordered_set<const Item*> queued_;
  std::vector<Item*> sublists_;
  std::unordered_set<const Item*> sublistSet_;
  std::vector<ListInfo*> lists_;
  std::unordered_set<const ListInfo*> listSet_;
  std::vector<Item*> repaint_;
  std::unordered_set<const Item*> repaintSet_;
  std::vector<ListInfo*> repaintLists_;
  std::unordered_set<const ListInfo*> repaintListSet_;
  std::unordered_map<const Item*, int> counts_;
  std::vector<FailedCheck> failedChecks_;
};

/// After an item's cost changed: each sublist up its chain adds up its children again, then its
/// list is added up. With a batch open this waits for the end of the batch.
void updateTotals(Item& item);

}  // namespace zv
