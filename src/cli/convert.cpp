#include "cli/commands.h"
#include "cli/open_sheet.h"
#include "core/atomic_file.h"
#include "core/messages.h"
#include "formats/data_sheet_document.h"
#include "formats/sheet/sheet_writer.h"
#include "formats/tokens/tokenstream.h"

namespace zv::cli {

namespace {

/// A data sheet read on its own and written again; a macro data sheet comes out compiled.
int convertDataSheet(Context& context, const std::string& in, const std::string& out,
                     std::optional<bool> binary) {
  std::unique_ptr<DataSheetDocument> document = openDataSheetDocument(in, context.dataDir());
  if (!document) return 1;
  MemoryByteStream output;
  if (writeDataSheetDocument(*document, output, binary.value_or(document->record().binary())) !=
      kWriteOk)
    return 1;
  if (!writeFileAtomically(out, output.data())) {
    showError(strprintf("Error writing file %s", out));
    return 1;
  }
  return 0;
}

}  // namespace

// convert IN OUT [--text|--binary]: reads a sheet or template and writes it in the form asked,
// by default the form it was read in (templates are always text). The output file is replaced
// only once the whole document has been written.
int runConvert(Context& context, const std::vector<std::string>& args) {
  std::vector<std::string> files;
  std::optional<bool> binary;
  for (const std::string& arg : args) {
    if (arg == "--text") {
      binary = false;
    } else if (arg == "--binary") {
      binary = true;
    } else {
      files.push_back(arg);
    }
  }
  if (files.size() != 2) return usageError("convert takes an input and an output file");
  if (isDataSheetFile(files[0])) return convertDataSheet(context, files[0], files[1], binary);

  std::unique_ptr<FileInfo> sheet = openSheet(files[0]);
  if (!sheet) return 1;
  SheetWriteOptions options;
  options.binary = binary.value_or(sheet->binary());
  MemoryByteStream output;
  if (writeCharsheet(*sheet, output, options) != kWriteOk) return 1;
  if (!writeFileAtomically(files[1], output.data())) {
    showError(strprintf("Error writing file %s", files[1]));
    return 1;
  }
  return 0;
}

}  // namespace zv::cli
