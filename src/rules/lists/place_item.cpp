#include "rules/lists/place_item.h"

#include <optional>

#include "core/list_total.h"
#include "rules/value/edit.h"
#include "rules/lists/visible_rows.h"

namespace zv {

namespace {

/// Takes an item out again with the items it brought and the adjustments it ran.
void takeBack(FileInfo& sheet, ListInfo& list, Item& item) {
  DeleteOptions options;
  deleteElement(sheet, list, item, options);
}

}  // namespace

PlaceResult placeItem(FileInfo& sheet, ListInfo& list, std::unique_ptr<Item> item,
                      const Placement& where, bool checkRequirements) {
  PlaceResult result;
  result.row = where.append ? -1 : where.row;
  if (!item || !checkFileInfo(&sheet)) return result;
  AddChain chain;
  const AddResult added = addItem(sheet, list, std::move(item), where, chain, true);
  if (added.status != AddStatus::Added) {
    if (added.item != nullptr) takeBack(sheet, list, *added.item);
    result.status =
        added.status == AddStatus::Cancelled ? PlaceStatus::Cancelled : PlaceStatus::Failed;
    return result;
  }
  if (std::optional<BadValue> unmet =
          checkRequirements ? checkRequirementsOf(sheet, *added.item) : std::nullopt) {
    if (!passBadValue(*unmet)) {
      takeBack(sheet, list, *added.item);
      result.status = PlaceStatus::Refused;
      return result;
    }
  }
  setChanged(sheet, true);
  result.status = PlaceStatus::Placed;
  result.item = added.item;
  result.row = added.row;
  return result;
}

PlaceItem placeBehindCursor() {
  return [](FileInfo& sheet, ListInfo& list, std::unique_ptr<Item> copy, Item* at) -> Item* {
    const int row = at != nullptr ? rowOfItem(list, at) : -1;
    const Placement where = row >= 0 ? Placement::atRow(row) : Placement::appendTo();
    return placeItem(sheet, list, std::move(copy), where, false).item;
  };
}

}  // namespace zv
