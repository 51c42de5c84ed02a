#pragma once
// The life of a character sheet or template document: opening, making a new one from a
// template, saving through a temporary file with the backup rule, and the question before a
// changed document closes. Windows are the program's business; these functions keep the record
// and the files right and talk to the user through the host.

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "core/fileinfo.h"
#include "core/install_file.h"
#include "formats/tokens/tokenstream.h"

namespace zv {

/// What the document functions take from the program's settings and surroundings.
struct DocumentContext {
  std::filesystem::path dataDir;  ///< where templates are found by short name
  bool binary = true;             ///< the "binary" setting: sheets are saved in binary form
  bool makeBackups = true;        ///< the "MakeBackups" setting
  /// Notes a file in the recent file list (after a save).
  std::function<void(const std::string& path)> noteRecentFile;
  /// Remembers the game system of the last sheet opened (the "gameSystem" setting).
  std::function<void(std::string_view gameSystem)> rememberGameSystem;
  /// Whether an opened sheet loads the data sheets it names (a missing one warns once and stays
  /// listed in the sheet).
  bool loadDataSheets = true;
  /// The file operations of the backup rule.
  const FileOperations* fileOperations = &FileOperations::disk();
  /// Opens the stream a sheet is written to; empty: the file itself. Tests use it to make a
  /// write fail part way.
  std::function<std::unique_ptr<ByteStream>(const std::string& path)> openOutput;
};

/// The names of new documents: "Untitled" for the first of the process, then "Untitled 1",
/// "Untitled 2", ...
class UntitledNames {
 public:
  std::string next();
  /// The names the program gives out.
  static UntitledNames& process();

 private:
  int count_ = 0;
};

/// Reads the sheet or template at `path` as a document of `fileType` (1 sheet, 2 template),
/// named `displayName`, with its expressions, options and levels settled by the item rules and
/// its data sheets loaded. A sheet without dialogs is refused (message 32). `isNew` marks a
/// document that has no file yet (made from a template). Null after the reason was shown.
std::unique_ptr<FileInfo> openSheetDocument(const std::string& path, std::string_view displayName,
                                            bool isNew, int fileType,
                                            const DocumentContext& context);

/// Recognises the file at `path` and opens it as the sheet or template it is; any other kind of
/// file is refused with a message. Null after the reason was shown.
std::unique_ptr<FileInfo> openSheetFile(const std::string& path, const DocumentContext& context);

/// A new document from the template `templateName` (a short name in dataDir, or a path):
/// `fileType` 1 makes a character sheet, 2 a template. The document is named by `names`, is new
/// and unchanged. Null after "Can't open character sheet %s." or the reader's message.
std::unique_ptr<FileInfo> newSheetFromTemplate(std::string_view templateName, int fileType,
                                               const DocumentContext& context,
                                               UntitledNames& names = UntitledNames::process());

/// The file name that Save As proposes for a new document: the value of the main dialog's field
/// named "Name" without the characters files can't have (\ / : * ? < > | "), with the extension
/// of the document's type; the document's own name when there is no such field or it is empty.
std::string defaultSaveName(const FileInfo& sheet);

/// Writes the document to `target` as `fileType` (1 sheet, 2 template): through a temporary file
/// in the target's directory, installed by the backup rule. On success the document takes the
/// new path and name, is unchanged and no longer new, its undo history is empty and the file is
/// noted as recent. On failure the reason has been shown, no temporary remains, and the document
/// keeps its path, name and changed flag.
bool writeSheetDocument(FileInfo& sheet, const std::string& target, int fileType,
                        const DocumentContext& context);

/// Save, or Save As when `askName` is set or the document is new: the file name is asked through
/// the host. False when cancelled or failed.
bool saveSheet(FileInfo& sheet, bool askName, const DocumentContext& context);

/// The question before a changed document closes, "File '%s' has been changed.\n\nSave
/// Changes?": Yes, No or Cancel.
Button askToSaveChanges(const FileInfo& document);

/// Whether the document may close: a changed one asks "File '%s' has been changed.\n\nSave
/// Changes?"; Yes saves (a failed save keeps it open), No lets it close, Cancel keeps it.
bool closeQuery(FileInfo& sheet, const DocumentContext& context);

/// Save All for one document: a changed one is saved (through Save As when new), a new unchanged
/// one goes through Save As, others are left. False when a save was cancelled or failed.
bool saveForSaveAll(FileInfo& sheet, const DocumentContext& context);

}  // namespace zv
