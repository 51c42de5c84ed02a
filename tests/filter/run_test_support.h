#pragma once
// Running a filter's text over the sheet of the fixture.

#include <optional>
#include <string>

#include "filter/file/filter_loader.h"
#include "filter/run/filter_run.h"
#include "filter_test_support.h"

namespace zv::test {

class RunFixture : public SheetFixture {
 protected:
  /// Loads `text` as a filter for the sheet and runs it; nullopt when loading or running failed.
  std::optional<std::string> run(std::string_view text) {
    FilterDocument document;
    if (!loadFilterText(sheet.get(), text, "t.flt", document, FilterLoadMode::Whole)) {
      return std::nullopt;
    }
    return runFilterBody(*sheet, document, options, context);
  }
  /// The same with "@gamesystem Tiny" in front.
  std::optional<std::string> runBody(std::string_view body) {
    return run("@gamesystem Tiny\n" + std::string(body));
  }

  FilterRunOptions options;
  FilterContext context;
};

}  // namespace zv::test
