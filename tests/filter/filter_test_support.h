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
