// Reads arbitrary bytes as a character sheet (or, for inputs of odd length, a template) with the
// expression engine and the item rules behind the reader, in the form the magic test picks. A
// sheet that reads is recalculated, written out in both forms and the text form is read again.
// Nothing may crash, hang, leak or read out of bounds.

#include <cstddef>
#include <cstdint>
#include <string>

#include "core/game_systems.h"
#include "core/headless_host.h"
#include "core/list_total.h"
#include "formats/engine_wiring.h"
#include "formats/sheet/expr_sheet_symbols.h"
#include "formats/sheet/sheet_reader.h"
#include "formats/sheet/sheet_writer.h"
#include "rules/value/level.h"
#include "rules/value/recalculate.h"

namespace {

using namespace zv;

bool readSheet(FileInfo& sheet, std::string data) {
  SheetReadOptions options;
  options.symbols = &exprSheetSymbols();
  options.loadData = false;
  options.settle = settleSheetLevels;
  options.applyOptions = applyItemOptions;
  MemoryByteStream input(std::move(data));
  return readCharsheet(sheet, input, options);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static HeadlessHost quietHost(nullptr);
  static HostInstallation installed(quietHost);
  static const bool rules = (wireEngineServices(engine()), true);
  (void)rules;
  quietHost.clearTranscript();

  const int fileType = size % 2 == 0 ? 1 : 2;
  {
    FileInfo sheet(fileType, "fuzz.chr", "/tmp/fuzz.chr");
    if (readSheet(sheet, std::string(reinterpret_cast<const char*>(data), size))) {
      recalculateSheet(sheet);
      MemoryByteStream binary;
      writeCharsheet(sheet, binary, SheetWriteOptions{true});
      MemoryByteStream text;
      if (writeCharsheet(sheet, text, SheetWriteOptions{false}) == kWriteOk) {
        FileInfo again(fileType, "again.chr", "/tmp/again.chr");
        readSheet(again, text.data());
      }
    }
  }
  clearGameSystems();
  return 0;
}
