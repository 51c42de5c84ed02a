#pragma once
// A rules fixture whose sheet holds named lists, so that list arguments of requirements and
// built-ins find them, and a dialog with fields.

#include <memory>
#include <string>

#include "core/dialog.h"
#include "rules/install.h"
#include "rules_test_support.h"

namespace zv::testing {

class SheetListsTest : public RulesTest {
 protected:
  SheetListsTest() { wireItemRules(engineContext_.context()); }

  ListInfo& addList(const std::string& name) {
    auto list = std::make_unique<ListInfo>();
    list->owner = &sheet_;
    list->name = name;
    sheet_.lists.push_back(std::move(list));
    return *sheet_.lists.back();
  }

  /// An item of a list with a level value and categories.
  Item& addTo(ListInfo& list, const std::string& name, Value level = Value(0),
              const std::string& categories = {}) {
    Item& item = list.appendItem(std::make_unique<Item>(ItemKind::Item, name));
    item.value = std::move(level);
    item.cat = categories;
    return item;
  }

  DlgItem& addField(const std::string& dialog, std::int32_t kind, const std::string& name) {
    DlgInfo* info = nullptr;
    for (auto& existing : sheet_.dlgs) {
      if (std::string_view(existing->name) == dialog) info = existing.get();
    }
    if (info == nullptr) {
      sheet_.dlgs.push_back(std::make_unique<DlgInfo>());
      info = sheet_.dlgs.back().get();
      info->owner = &sheet_;
      info->name = dialog;
    }
    auto field = std::make_unique<DlgItem>();
    field->kind = kind;
    field->varName = name;
    return info->appendItem(std::move(field));
  }
};

}  // namespace zv::testing
