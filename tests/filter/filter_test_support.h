#pragma once
// Shared pieces of the filter tests: a headless host that keeps every box, and a small sheet
// record to check @gamesystem and @sheettype against.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/fileinfo.h"
#include "core/headless_host.h"

namespace zv::test {

/// A headless host installed for the test's lifetime, with the boxes it showed.
class QuietHost {
 public:
  QuietHost() = default;
  const std::vector<std::string>& shown() const { return headless.transcript(); }
  std::string lastShown() const { return shown().empty() ? std::string() : shown().back(); }
  void clear() { headless.clearTranscript(); }

  HeadlessHost headless{nullptr};
  HostInstallation installation{headless};
};

/// A sheet record of game system "Tiny" and type "PC" with no lists.
inline std::unique_ptr<FileInfo> tinySheetRecord() {
  auto sheet = std::make_unique<FileInfo>(1, "bob.chr", "/tmp/bob.chr");
  sheet->gameSystemName = "Tiny";
  sheet->sheetType = "PC";
  return sheet;
}

}  // namespace zv::test

#include <filesystem>

#include "../core/scratch_dir.h"
#include "core/engine_context.h"
#include "core/game_systems.h"
#include "core/numbers.h"
#include "formats/sheet_document.h"

namespace zv::test {

/// The sheet most filter tests run over: game system "Tiny", type "PC", a Main dialog whose Name
/// field says "Bob", a flat list of traits, a skill list with a sublist, and gear with options.
inline constexpr std::string_view kTinySheet =
    "\"Character Sheet file v. 1\"\n"
    "gamesystem Tiny description \"Bob\" sheettype PC help \"\" version 253 level 1\n"
    "pixinx 96 pixiny 96 rounding 0\n"
    "info created \"12/25/97\" end\n"
    "datafile a.cds b.cds end\n"
    "list Traits\n"
    "  catname Traits var TraitCost 0\n"
    "  item Tough formula \"x*2\" varname Tough level 1\n"
    "  item Weak formula \"x\" varname Weak level 0\n"
    "  item Fast formula \"x\" varname Fast level 2\n"
    "end\n"
    "list Skills\n"
    "  catname Skills var SkillCost 0\n"
    "  item Climbing cat Outdoor formula \"x/3\" varname Climbing level 12\n"
    "  sublist Swords memlist\n"
    "    item Broadsword formula \"x\" varname Broadsword level 1\n"
    "    item Shortsword formula \"x\" varname Shortsword level 2\n"
    "  end\n"
    "  item Swimming formula \"x\" varname Swimming level 1\n"
    "end\n"
    "list Gear\n"
    "  catname Gear var GearCost 0\n"
    "  item Riding class Mount cost 3 totalcostformula \"(c+a)*m\"\n"
    "    opt\n"
    "      mult A \"1.5\"\n"
    "      text B \"b\"\n"
    "      text C \"?+0;x\"\n"
    "      text D \"?:2; Light; Heavy,3;\"\n"
    "      text E \"Red, dark\"\n"
    "    end\n"
    "end\n"
    "dialog Main 300 200 loc 10 10\n"
    "  edittext Bob 10 10 80 20 Name\n"
    "end\n"
    "end\n";

/// Opens a sheet written into a scratch directory, under a quiet host with a fixed clock
/// (5 March 2024) and fractions on.
class SheetFixture : public ::testing::Test {
 protected:
  void SetUp() override {
    quiet.headless.setFixedTime(LocalTime{2024, 3, 5, 10, 0, 0, true});
    engineContext->preferences.useFractions = true;
  }
  void TearDown() override {
    sheet.reset();
    clearGameSystems();
  }

  /// Opens the text as "bob.chr"; the test fails when it doesn't open.
  FileInfo& open(std::string_view text = kTinySheet) {
    dir.write("bob.chr", text);
    DocumentContext context;
    context.dataDir = dir.path();
    context.loadDataSheets = false;
    sheet = openSheetFile((dir / "bob.chr").string(), context);
    EXPECT_TRUE(sheet != nullptr) << quiet.lastShown();
    return *sheet;
  }

  /// The element `index` (from 0) of the sheet's list `name`.
  Item& item(std::string_view list, std::size_t index) {
    for (auto& l : sheet->lists) {
      if (l->name.str() == list) return *l->items.at(index);
    }
    throw std::runtime_error("no such list");
  }

  QuietHost quiet;
  ScratchDir dir;
  std::unique_ptr<FileInfo> sheet;
  ScopedEngineContext engineContext;
};

}  // namespace zv::test
