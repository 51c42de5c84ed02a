#pragma once
// Shared fixture of the item rules tests: a headless host that records messages, and a sheet with
// a symbol table and one list to hold items.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "core/engine_context.h"
#include "core/fileinfo.h"
#include "core/headless_host.h"
#include "core/list_info.h"
#include "core/numbers.h"
#include "expr/symbols.h"

namespace zv::testing {

class RulesTest : public ::testing::Test {
 protected:
  RulesTest() : host_(nullptr), installed_(host_) {
    engineContext_->preferences.useFractions = false;
    sheet_.symbols = std::make_shared<SymbolTable>();
    sheet_.symbols->owner = &sheet_;
    list_ = std::make_unique<ListInfo>();
    list_->owner = &sheet_;
  }

  /// A new item of the sheet's list.
  Item& addItem(const std::string& name) {
    auto item = std::make_unique<Item>(ItemKind::Item, name);
    return list_->appendItem(std::move(item));
  }

  /// Appends an option to an item.
  Option& addOption(Item& item, std::int32_t kind, std::string name, std::string value,
                    std::string auxExpression = {}) {
    auto option = std::make_unique<Option>();
    option->kind = kind;
    option->name = std::move(name);
    option->value = std::move(value);
    option->auxExpression = std::move(auxExpression);
    item.options.push_back(std::move(option));
    return *item.options.back();
  }

  /// The messages shown so far, joined by "|".
  std::string messages() const {
    std::string out;
    for (const std::string& line : host_.transcript()) {
      if (!out.empty()) out += "|";
      out += line;
    }
    return out;
  }

  HeadlessHost host_;
  HostInstallation installed_;
  FileInfo sheet_;
  std::unique_ptr<ListInfo> list_;
  ScopedEngineContext engineContext_;
};

}  // namespace zv::testing
