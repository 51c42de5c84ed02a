#include "print/job/aux_files.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "core/deletion_list.h"
#include "core/messages.h"
#include "core/paths.h"
#include "core/text.h"

namespace zv {

namespace fs = std::filesystem;

namespace {

/// How long the print command may take to hand the file on.
constexpr int kPrintTimeoutMs = 60000;

std::string_view trimmed(std::string_view line) {
  while (!line.empty() && (line.back() == '\r' || line.back() == ' ' || line.back() == '\t'))
    line.remove_suffix(1);
  while (!line.empty() && (line.front() == ' ' || line.front() == '\t'))
    line.remove_prefix(1);
  return line;
}

/// A copy of `source` as "qx%d" with its extension in the temporary directory; none after the
/// message.
std::optional<fs::path> temporaryCopy(const fs::path& sourceDirectory, const fs::path& source) {
  const fs::path tempDir = temporaryDirectory(sourceDirectory);
  const std::string extension = source.extension().string();
  std::error_code error;
  fs::path copy;
  for (int number = 0; number < 10000; ++number) {
    copy = tempDir / strprintf("qx%d%s", number, extension);
    if (!fs::exists(copy, error)) break;
  }
  if (!fs::copy_file(source, copy, fs::copy_options::none, error)) {
    showError(strprintf("Unable to create temporary file %s to print/view file.", copy.string()));
    return std::nullopt;
  }
  addToDeletionList(tempDir, copy);
  return copy;
}

}  // namespace

AuxFileList parseAuxFileList(std::string_view bytes, const fs::path& path) {
  AuxFileList list;
  list.path = path;
  bool described = false;
  while (!bytes.empty()) {
    std::size_t end = bytes.find('\n');
    std::string_view line = bytes.substr(0, end);
    bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
    std::string_view content = trimmed(line);
    if (content.empty() || content.front() == ';' || content.front() == '#') continue;
    if (!described) {
      list.description = std::string(content);
      described = true;
      continue;
    }
    AuxDocument document;
    std::size_t tab = line.find('\t');
    document.file = std::string(trimmed(line.substr(0, tab)));
    if (tab != std::string_view::npos) document.caption = std::string(trimmed(line.substr(tab)));
    if (document.caption.empty()) document.caption = document.file;
    if (!document.file.empty()) list.documents.push_back(std::move(document));
  }
  if (list.description.empty()) list.description = path.filename().string();
  return list;
}

std::vector<AuxFileList> auxFileLists(const fs::path& sourceDirectory) {
  std::vector<fs::path> paths;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(sourceDirectory, error)) {
    if (entry.is_regular_file(error) && equalsIgnoringCase(extensionOf(entry.path()), ".plst"))
      paths.push_back(entry.path());
  }
  std::sort(paths.begin(), paths.end());
  std::vector<AuxFileList> lists;
  for (const fs::path& path : paths) {
    std::ifstream in(path, std::ios::binary);
    if (!in) continue;
    std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    lists.push_back(parseAuxFileList(bytes, path));
  }
  return lists;
}

fs::path auxDocumentPath(const fs::path& sourceDirectory, std::string_view file) {
  return findDataFile(sourceDirectory, file);
}

bool openAuxDocument(const fs::path& sourceDirectory, std::string_view file) {
  const fs::path path = auxDocumentPath(sourceDirectory, file);
  std::error_code error;
  if (!fs::is_regular_file(path, error)) {
    showTitled(Severity::Error, "File Does Not Exist",
               strprintf("The file %s cannot be opened because it does not exist.", path.string()));
    return false;
  }
  if (host().openWithSystem(path.string())) return true;
  if (equalsIgnoringCase(extensionOf(path), ".pdf")) {
    showTitled(Severity::Error, "File Cannot Be Opened",
               strprintf("The file %s cannot be opened because the Adobe Acrobat Reader is not "
                         "installed.\r\n\r\nPlease install Acrobat Reader and try again.",
                         path.string()));
  } else {
    showTitled(Severity::Error, "File Cannot Be Opened",
               strprintf("The file %s cannot be opened because no application can be found to "
                         "open it.",
                         path.string()));
  }
  return false;
}

bool printAuxDocument(const fs::path& sourceDirectory, std::string_view file,
                      std::string_view printCommand) {
  const fs::path path = auxDocumentPath(sourceDirectory, file);
  std::error_code error;
  if (!fs::is_regular_file(path, error)) {
    showTitled(
        Severity::Error, "File Not Found",
        strprintf("The file \"%s\" cannot be printed because it cannot be found.", path.string()));
    return false;
  }
  std::optional<fs::path> copy = temporaryCopy(sourceDirectory, path);
  if (!copy) return false;
  ProcessResult result = host().runProcess(
      std::string(printCommand) + " " + shellQuoted(copy->string()), kPrintTimeoutMs);
  if (!result.started || (result.finished && result.exitCode != 0)) {
    showTitled(Severity::Error, "Unable to Print",
               strprintf("Unable to print through the specified application \r\n(%s, error %d)",
                         printCommand, result.started ? result.exitCode : -1));
    return false;
  }
  return true;
}

std::string shellQuoted(std::string_view word) {
  std::string quoted = "'";
  for (char c : word) {
    if (c == '\'')
      quoted += "'\\''";
    else
      quoted += c;
  }
  quoted += '\'';
  return quoted;
}

}  // namespace zv
