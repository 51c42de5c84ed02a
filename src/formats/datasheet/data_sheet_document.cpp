#include "formats/datasheet/data_sheet_document.h"

#include <fstream>
#include <iterator>

#include "core/messages.h"
#include "core/paths.h"
#include "core/strfmt.h"

namespace zv {

bool readDataSheetContents(const std::filesystem::path& path, DataSheetContents& contents,
                           const std::filesystem::path& dataDir) {
  contents.file.name = shortFileName(path);
  contents.file.path = path;
  std::ifstream in(path, std::ios::binary);
  std::string bytes;
  if (in) bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  if (!in || in.bad()) {
    showError(strprintf("Cannot open data sheet '%s'.", contents.file.name));
    return false;
  }
  DataSheetReadOptions options;
  options.dataDir = dataDir;
  options.buildIndex = false;
  options.gameSystemFor = [&contents](std::string_view name) -> GameSystem& {
    if (!contents.system) contents.system = std::make_unique<GameSystem>(name);
    return *contents.system;
  };
  return readDataSheet(std::move(bytes), contents.file, options);
}

}  // namespace zv
