// Feeds the input to the filter loader as a filter file for a sheet of game system "Tiny", then
// writes the document it read back out and loads that again, header only. Nothing may crash or
// leak; a filter that loads must load again from what saveFilter writes.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "core/fileinfo.h"
#include "core/headless_host.h"
#include "filter/file/filter_loader.h"
#include "filter/file/filter_save.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view text(reinterpret_cast<const char*>(data), size);
  zv::HeadlessHost host(nullptr);
  zv::HostInstallation installed(host);
  zv::FileInfo sheet(1, "fuzz.chr", "/tmp/fuzz.chr");
  sheet.gameSystemName = "Tiny";
  sheet.sheetType = "PC";
  zv::FilterDocument document;
  if (!zv::loadFilterText(&sheet, text, "fuzz.flt", document, zv::FilterLoadMode::Whole)) return 0;
  const std::string written = zv::filterFileText(document);
  zv::FilterDocument again;
  if (!zv::loadFilterText(nullptr, written, "again.flt", again, zv::FilterLoadMode::HeaderOnly)) {
    std::abort();  // what saveFilter writes must read back
  }
  return 0;
}
