// Reads arbitrary bytes as a data sheet, in the form the magic test picks (text through the macro
// processor, with no data directory so that no include is ever opened). A data sheet that reads is
// written out in both forms and the text form is read again. Nothing may crash, hang, leak or read
// out of bounds.

#include <cstddef>
#include <cstdint>
#include <string>

#include "core/game_systems.h"
#include "core/headless_host.h"
#include "formats/datasheet/data_sheet_reader.h"
#include "formats/datasheet/data_sheet_writer.h"

namespace {

using namespace zv;

bool readSheet(DataSheetFile& file, std::string data) {
  file.name = "fuzz.cds";
  file.path = "/nonexistent/fuzz.cds";
  MemoryByteStream input(std::move(data));
  return readDataSheet(input, file);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static HeadlessHost quietHost(nullptr);
  static HostInstallation installed(quietHost);
  quietHost.clearTranscript();
  {
    DataSheetFile file;
    if (readSheet(file, std::string(reinterpret_cast<const char*>(data), size)) &&
        file.gameSystem != nullptr) {
      MemoryByteStream binary;
      writeDataSheet(file, *file.gameSystem, binary, true);
      MemoryByteStream text;
      if (writeDataSheet(file, *file.gameSystem, text, false) == kWriteOk) {
        DataSheetFile again;
        readSheet(again, text.data());
      }
    }
  }
  clearGameSystems();
  return 0;
}
