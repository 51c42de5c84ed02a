#include "rules/requirements/requirements_check.h"

#include "rules/requirements/requirements.h"

namespace zv {

namespace {

bool anyRequirements(const ItemChain& chain) {
  for (const auto& entry : chain) {
    if (!entry->prereq.empty() || anyRequirements(entry->children)) return true;
  }
  return false;
}

}  // namespace

std::optional<BadValue> unmetRequirementsAfterChange(FileInfo& sheet, Item& changed) {
  // Only items with requirements can fail them or exclude others: a sheet without any is done
  // without a walk per item.
  bool any = false;
  for (const ListInfo* list : sheet.allLists()) {
    if (anyRequirements(list->items)) {
      any = true;
      break;
    }
  }
  if (!any) return std::nullopt;
  const std::vector<UnsatisfiedItem> unmet = checkAllPrereq(sheet);
  if (unmet.empty()) return std::nullopt;
  std::string text = unsatisfiedCountText(unmet.size()) + "\r\n";
  for (const UnsatisfiedItem& entry : unmet)
    text += "\r\n" + entry.line;
  std::string title = "Unacceptable Value";
  if (changed.list != nullptr && !changed.list->name.empty()) title = changed.list->name.str();
  return BadValue{title, text};
}

}  // namespace zv
