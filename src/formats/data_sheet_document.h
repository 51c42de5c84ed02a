#pragma once
// A data sheet opened as a document: read by the data sheet reader into game systems of its own,
// so that the master data of the process stay untouched, and saved through a temporary file and
// the backup rule. The document's record (file type 6) has one list, its root, whose items are
// the categories of the file as sublists (each keeping the category's sort mode) with the
// category's items as their members. Options and strings stay in the document's game system.

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/fileinfo.h"
#include "core/game_system.h"
#include "formats/datasheet/data_sheet_writer.h"
#include "formats/sheet_document.h"
#include "formats/tokens/tokenstream.h"

namespace zv {

/// Game systems kept apart from the process-wide chain: those a data sheet document reads into.
class GameSystemChain {
 public:
  /// The game system of that name (ignoring case), created at the end of the chain if new.
  GameSystem& findOrCreate(std::string_view name);
  /// The game system of that name, ignoring case; null if there is none.
  GameSystem* find(std::string_view name) const;
  /// The game systems in the order they were created.
  const std::vector<std::unique_ptr<GameSystem>>& systems() const { return systems_; }

 private:
  std::vector<std::unique_ptr<GameSystem>> systems_;
};

class DataSheetDocument {
 public:
  DataSheetDocument();
  DataSheetDocument(const DataSheetDocument&) = delete;
  DataSheetDocument& operator=(const DataSheetDocument&) = delete;

  /// The record: name, path, header values (title, copyright, level, page layout, data files,
  /// logo, help file, definitions), flags, and the root list.
  FileInfo& record() { return *record_; }
  const FileInfo& record() const { return *record_; }
  /// The list whose sublists are the categories.
  ListInfo& root() { return *record_->lists.front(); }
  const ListInfo& root() const { return *record_->lists.front(); }
  /// The document's game system (options, strings); null before a successful read.
  GameSystem* gameSystem() const { return record_->gameSystem; }
  GameSystemChain& systems() { return systems_; }

  /// The category sublist of that name at the root, ignoring case; null if there is none.
  Item* findCategory(std::string_view name) const;

 private:
  GameSystemChain systems_;  // outlives the record, which points into it
  std::unique_ptr<FileInfo> record_;
};

/// Reads the data sheet in `bytes` (binary, text through the macro processor, or a character
/// sheet used as data) into `document`, named `name` at `path`. Duplicates of lower priority
/// stay, as written. `dataDir` is where the macro processor looks for includes second. False
/// after the reason was shown; the document is then to be discarded.
bool readDataSheetDocument(DataSheetDocument& document, std::string bytes, std::string_view name,
                           const std::filesystem::path& path,
                           const std::filesystem::path& dataDir = {});

/// Reads the file at `path` as a document named by the path's short name. Null after the reason
/// was shown ("Cannot open data sheet '%s'." when the file can't be read).
std::unique_ptr<DataSheetDocument> openDataSheetDocument(const std::filesystem::path& path,
                                                         const std::filesystem::path& dataDir = {});

/// The categories (the sublists of the root), strings and options of the document, as the writer
/// takes them (anything at the root that is not a sublist has no category and is left out).
DataSheetBody dataSheetBodyOf(const DataSheetDocument& document);

/// Writes the document as a data sheet file in binary or text form. kWriteOk, or the first
/// failure after its message.
int writeDataSheetDocument(const DataSheetDocument& document, ByteStream& output, bool binary);

/// Saves the document to `target` in the form of the `binary` setting. A text data sheet about to
/// be overwritten in binary form asks first ("Overwriting Text Data Sheet"); No stops the save.
/// The file is written to a temporary "ds" file in the target's directory and installed by the
/// backup rule. On success the document takes the new path and name, is unchanged and no longer
/// new, the file is noted as recent, and a loaded data sheet of that name is loaded again. On
/// failure the reason has been shown, no temporary remains and the document is as it was.
bool writeDataSheetDocumentFile(DataSheetDocument& document, const std::string& target,
                                const DocumentContext& context);

/// Save, or Save As when `askName` is set or the document is new (the file name is asked
/// through the host). False when cancelled or failed.
bool saveDataSheetDocument(DataSheetDocument& document, bool askName,
                           const DocumentContext& context);

/// Whether the document may close: a changed one asks whether to save it first.
bool dataSheetCloseQuery(DataSheetDocument& document, const DocumentContext& context);

}  // namespace zv
