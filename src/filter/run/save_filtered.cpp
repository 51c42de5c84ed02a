#include "filter/run/save_filtered.h"

#include <fstream>

#include "core/messages.h"
#include "core/paths.h"
#include "core/text.h"
#include "filter/file/filter_loader.h"
#include "filter/file/filter_scan.h"
#include "filter/run/filter_file_run.h"

namespace zv {

namespace fs = std::filesystem;

std::string filterExtension(const fs::path& path) {
  std::string bytes;
  if (!readWholeFile(path, bytes)) return {};
  std::size_t pos = 0;
  while (pos < bytes.size()) {
    std::size_t end = bytes.find('\n', pos);
    end = end == std::string::npos ? bytes.size() : end + 1;
    std::string_view line(bytes.data() + pos, end - pos);
    pos = end;
    const std::string trimmed = trim(line);
    if (trimmed.empty() || trimmed.front() == '#') continue;
    if (line.front() != '@') break;  // the header ends here
    if (startsWithIgnoringCase(trimmed, "@extension ")) {
      std::vector<std::string> words = split(trim(std::string_view(trimmed).substr(11)), ' ');
      return words.empty() ? std::string() : words.front();
    }
  }
  return {};
}

SaveAsTypes saveAsTypes(const FileInfo& sheet, const FilterContext& context) {
  SaveAsTypes out;
  out.types = {{"Character Sheet", "*.chr"}, {"Character Template", "*.cst"}};
  for (const AvailableFilter& filter :
       filtersForGameSystem(context.dataDir, sheet.gameSystemName.str())) {
    std::string extension = filterExtension(context.dataDir / filter.fileName);
    if (extension.empty()) extension = "txt";
    const std::string description =
        filter.summary.description.empty() ? filter.fileName : filter.summary.description;
    out.types.push_back({description, "*." + extension});
    out.filterFiles.push_back(filter.fileName);
  }
  return out;
}

bool writeFilteredFile(const fs::path& target, std::string_view bytes) {
  fs::path temporary = target;
  temporary += ".ztmp";
  for (int n = 1; fs::exists(temporary); ++n) {
    temporary = target;
    temporary += strprintf(".ztmp%d", n);
  }
  std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
  if (!out) {
    showError(strprintf("Unable to create character sheet %s.", target.string()));
    return false;
  }
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  out.flush();
  const bool written = static_cast<bool>(out);
  out.close();
  std::error_code error;
  if (!written) {
    fs::remove(temporary, error);
    showError(strprintf("No disk space to write file %s", target.string()));
    return false;
  }
  fs::rename(temporary, target, error);
  if (error) {
    fs::remove(temporary, error);
    showError(strprintf("Unable to create character sheet %s.", target.string()));
    return false;
  }
  return true;
}

bool saveFilteredText(FileInfo& sheet, std::string_view filterFile, const fs::path& target,
                      const FilterRunOptions& options, FilterContext& context) {
  FilterDocument document;
  std::optional<std::string> block = runFilterFile(sheet, document, filterFile, options, context);
  if (!block) return false;
  return writeFilteredFile(target, *block);
}

bool saveSheetAs(FileInfo& sheet, const DocumentContext& document, const FilterRunOptions& options,
                 FilterContext& context) {
  SaveAsTypes types = saveAsTypes(sheet, context);
  FileRequest request;
  request.mode = FileRequest::Mode::Save;
  request.title = "Save As";
  const std::string currentPath(sheet.path.str());
  if (sheet.isNew() || currentPath.empty()) {
    request.directory = document.dataDir.string();
    request.fileName = defaultSaveName(sheet);
  } else {
    request.directory = fs::path(currentPath).parent_path().string();
    request.fileName = fs::path(currentPath).filename().string();
  }
  request.filters = types.types;
  request.filterIndex = sheet.fileType == 2 ? 1 : 0;
  std::optional<SaveFileChoice> choice = host().chooseSaveFile(request);
  if (!choice || choice->path.empty()) return false;
  fs::path target(choice->path);
  const int type = choice->filterIndex;
  if (type >= 2 && static_cast<std::size_t>(type - 2) < types.filterFiles.size()) {
    if (!target.has_extension())
      target += types.types[static_cast<std::size_t>(type)].patterns.substr(1);
    return saveFilteredText(sheet, types.filterFiles[static_cast<std::size_t>(type - 2)], target,
                            options, context);
  }
  int fileType = type == 1 ? 2 : 1;
  if (equalsIgnoringCase(target.extension().string(), ".cst")) {
    fileType = 2;
  } else if (equalsIgnoringCase(target.extension().string(), ".chr")) {
    fileType = 1;
  } else if (!target.has_extension()) {
    target += fileType == 2 ? ".cst" : ".chr";
  }
  return writeSheetDocument(sheet, target.string(), fileType, document);
}

}  // namespace zv
