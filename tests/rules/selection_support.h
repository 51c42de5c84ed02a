#pragma once
// A game system with master items for the selection tests, a sheet of that game system with
// lists, a rule library read from texts, and a stand-in for the list operations' placeItem.

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "core/game_systems.h"
#include "rules/lists/place_item.h"
#include "rules/selection/rule_library.h"
#include "sheet_lists_support.h"

namespace zv::testing {

/// The preferences a selection test varies; ApplyRules stays on.
struct RuleChoices {
  bool checkReq = true;
  bool disallowIfNotSatisfied = false;
  bool noBadValueDlg = false;
};

class SelectionTest : public SheetListsTest {
 protected:
  SelectionTest() {
    clearGameSystems();
    system_ = &findOrCreateGameSystem("Testland");
    sheet_.gameSystem = system_;
    sheet_.gameSystemName = "Testland";
    setPreferences({});
    dir_ = std::filesystem::temp_directory_path() /
           ("zv-rules-" + std::to_string(::getpid()) + "-" +
            ::testing::UnitTest::GetInstance()->current_test_info()->name());
    std::filesystem::remove_all(dir_);
    library_.setDataDir(dir_);
  }
  ~SelectionTest() override {
    sheet_.gameSystem = nullptr;
    clearGameSystems();
    std::filesystem::remove_all(dir_);
  }

  void setPreferences(const RuleChoices& choices) {
    EnginePreferences& preferences = engineContext_->preferences;
    preferences.checkReq = choices.checkReq;
    preferences.disallowIfNotSatisfied = choices.disallowIfNotSatisfied;
    preferences.noBadValueDlg = choices.noBadValueDlg;
    preferences.applyRules = true;
  }

  Category& category(const std::string& name) { return system_->findOrAddCategory(name); }

  /// A master item of a category (or of a group when `group` is given).
  Item& master(Category& into, const std::string& name, const std::string& categories = {},
               Item* group = nullptr) {
    auto item = std::make_unique<Item>(ItemKind::Item, name);
    item->cat = categories;
    Item& added =
        group != nullptr ? group->appendChild(std::move(item)) : into.appendItem(std::move(item));
    into.rebuildIndex();
    return added;
  }
  Item& group(Category& into, const std::string& name, Item* parent = nullptr) {
    auto item = std::make_unique<Item>(ItemKind::Sublist, name);
    Item& added =
        parent != nullptr ? parent->appendChild(std::move(item)) : into.appendItem(std::move(item));
    into.rebuildIndex();
    return added;
  }

  /// Writes a rule file under the game system's folder and reads it into the library.
  RuleFile* readRules(const std::string& text, const std::string& name = "Campaign.rules") {
    const std::filesystem::path path = library_.directoryOf("Testland") / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
    if (!library_.readRuleFile("Testland", path)) return nullptr;
    return library_.findFile("Testland", name);
  }

  /// The stand-in of placeItem: appends the copy at the end of the list, counting the calls.
  PlaceItem appender() {
    return [this](FileInfo&, ListInfo& list, std::unique_ptr<Item> copy, Item*) -> Item* {
      ++placed_;
      return &list.appendItem(std::move(copy));
    };
  }

  static std::vector<std::string> names(const ItemChain& chain) {
    std::vector<std::string> out;
    for (const auto& item : chain)
      out.push_back(item->name);
    return out;
  }

  GameSystem* system_ = nullptr;
  RuleLibrary library_;
  std::filesystem::path dir_;
  int placed_ = 0;
};

}  // namespace zv::testing
