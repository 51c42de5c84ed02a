#pragma once
// Recognising a file: which kind of document a path holds, decided by its content first and its
// extension second.

#include <filesystem>
#include <functional>
#include <string>

namespace zv {

/// File type codes of the recogniser.
enum FileTypeCode : int {
  kFileReportedAlready = -3,  ///< a message has been shown; do nothing more
  kFileCannotOpen = -2,
  kFileUnknown = -1,
  kFileCharacterSheet = 1,
  kFileCharacterTemplate = 2,
  kFilePrintTemplate = 3,
  kFileMacroDataSheet = 4,
  kFilePlainText = 5,
  kFileDataSheet = 6,
  kFileFilter = 7,
  kFileConversionScript = 8,
  kFileGroup = 9,
  kFileDataSheetList = 10,
};

/// A short name for a code, as `zarvelin-cli identify` and messages use it.
const char* fileTypeName(int code);

/// What the header of a sheet, template or data sheet says.
struct FileHeaderInfo {
  std::string description;
  int level = 0;
  int version = 0;
};

struct Recognition {
  int code = kFileUnknown;
  std::string gameSystem;
  FileHeaderInfo info;
};

/// Checks that later subsystems plug in: whether a filter's header reads and whether a script's
/// header reads. Empty functions fall back to a built-in check (a readable filter; a script whose
/// first token is "Conversion script v. 1").
struct RecognitionProbes {
  std::function<bool(const std::filesystem::path&)> filterHeaderReads;
  std::function<bool(const std::filesystem::path&)> scriptHeaderReads;
};

/// The group file signature that opens every group and data sheet list.
inline constexpr const char* kGroupFileSignature = "?filelist";

/// Recognises a file. A sheet, template or data sheet by extension whose content is not one gets
/// the box "The format of this file cannot be recognized. This application cannot open it." and
/// the code kFileReportedAlready.
Recognition recogniseFile(const std::filesystem::path& path, const RecognitionProbes& probes = {});

/// The built-in script header check: the first token is "Conversion script v. 1", ignoring case.
bool scriptHeaderLooksRight(const std::filesystem::path& path);

}  // namespace zv
