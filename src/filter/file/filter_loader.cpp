#include "filter/file/filter_loader.h"

#include <fstream>
#include <iterator>

#include "core/messages.h"
#include "filter/file/format_commands.h"

namespace zv {

namespace {

/// The lines of a text as a line reader of kFilterLoadLineLength bytes gives them: each ends
/// behind its LF, a longer line comes in pieces.
class LineReader {
 public:
  explicit LineReader(std::string_view text) : text_(text) {}
  bool next(std::string_view& line) {
    if (pos_ >= text_.size()) return false;
    std::size_t end = text_.find('\n', pos_);
    end = end == std::string_view::npos ? text_.size() : end + 1;
    end = std::min(end, pos_ + kFilterLoadLineLength);
    line = text_.substr(pos_, end - pos_);
    pos_ = end;
    return true;
  }

 private:
  std::string_view text_;
  std::size_t pos_ = 0;
};

bool isBlankLine(std::string_view line) {
  return line.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

bool isCommentLine(std::string_view line) {
  std::size_t first = line.find_first_not_of(" \t");
  return first != std::string_view::npos && line[first] == '#';
}

}  // namespace

bool loadFilterText(const FileInfo* sheet, std::string_view text, std::string_view name,
                    FilterDocument& document, FilterLoadMode mode) {
  document = FilterDocument();
  LineReader reader(text);
  std::string_view line;
  int lineNumber = 0;
  int movedLines = 0;  // comment lines of the header that go to the body
  bool seenCommand = false;
  bool inHeader = true;
  while (inHeader && reader.next(line)) {
    ++lineNumber;
    if (!seenCommand) {
      if (isBlankLine(line)) continue;
      if (isCommentLine(line)) {
        document.body += line;
        ++movedLines;
        continue;
      }
      if (line.front() != '@') {
        document = FilterDocument();
        showError(strprintf("%s is not a print/copy filter file.", name));
        return false;
      }
      seenCommand = true;
    }
    if (line.front() == '@') {
      const int result = applyFormatCommand(sheet, line, &document, document.style, lineNumber);
      if (result < 0) {
        document = FilterDocument();
        return false;
      }
      if (result > 0) continue;
    }
    if (isCommentLine(line)) {
      document.body += line;
      ++movedLines;
      continue;
    }
    // The first line that is neither a command nor a comment starts the body.
    inHeader = false;
    document.headerLines = lineNumber - 1 - movedLines;
    if (mode == FilterLoadMode::HeaderOnly) return true;
    document.body += line;
  }
  if (inHeader) {
    document.headerLines = lineNumber - movedLines;
    if (!seenCommand) {
      document = FilterDocument();
      showError(strprintf("%s is not a print/copy filter file.", name));
      return false;
    }
    return true;
  }
  while (reader.next(line))
    document.body += line;
  return true;
}

bool readWholeFile(const std::filesystem::path& path, std::string& bytes) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  return !in.bad();
}

bool loadFilter(const FileInfo* sheet, const std::filesystem::path& path, FilterDocument& document,
                FilterLoadMode mode) {
  std::string bytes;
  std::error_code error;
  if (std::filesystem::is_directory(path, error) || !readWholeFile(path, bytes)) {
    document = FilterDocument();
    showTitled(Severity::Error, "File Not Found",
               strprintf("The file '%s' does not exist.", path.string()));
    return false;
  }
  return loadFilterText(sheet, bytes, path.string(), document, mode);
}

}  // namespace zv
