#pragma once
// The record of one open document: a character sheet, a character template or a data sheet.
// It owns its lists, dialogs, items, definitions, notes and (shared with the expression engine)
// its symbol table.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/basic_records.h"
#include "core/bit_field.h"
#include "core/data_menu.h"
#include "core/dialog.h"
#include "core/fixed_string.h"
#include "core/list_info.h"
#include "core/record_limits.h"
#include "core/record_types.h"
#include "core/undo_history.h"

namespace zv {

/// The mark of a live record; a window whose record lacks it reports "Null file info!".
inline constexpr std::uint32_t kFileInfoMagic = 0x4649494E;

struct FileInfo {
  FileInfo() = default;
  FileInfo(std::int32_t type, std::string_view shortName, std::string_view fullPath);
  FileInfo(const FileInfo&) = delete;
  FileInfo& operator=(const FileInfo&) = delete;
  /// Leaves the sheet registry if the record is still in it.
  ~FileInfo();

  std::string title;  ///< display title of a data sheet
  std::uint32_t magic = kFileInfoMagic;
  std::uint32_t flags = 0;
  std::int32_t fileType =
      0;                   ///< the recogniser's file type code: 1 sheet, 2 template, 6 data sheet
  std::int16_t level = 0;  ///< the data level of the game system this file was written for
  UndoHistory undoStack;
  std::int32_t sheetId = 0;  ///< key of the sheet registry; 0 until given
  FixedString<kPathCapacity> name;
  std::string copyright;
  std::string totalCostFormula;
  FixedString<kPathCapacity> path;
  FixedString<kGameSystemNameCapacity> gameSystemName;
  FixedString<kSheetTypeCapacity> sheetType;
  FixedString<kPathCapacity> filter;
  FixedString<kPathCapacity> printTemplate;
  FixedString<kPathCapacity> templateName;  ///< keyword `template`: the .cst the sheet came from
  FixedString<kPathCapacity> helpFile;
  FixedString<kPathCapacity> chargenScript;
  FixedString<kPathCapacity> chargenTemplate;
  FixedString<kPathCapacity> logo;
  PageInfo page;
  std::int32_t maxAttempts = 0;  ///< 0: each search uses its own default
  std::vector<std::string> dataFiles;
  GameSystem* gameSystem = nullptr;  ///< non-null after a successful read
  WindowHandle window = nullptr;
  WindowHandle notesWindow = nullptr;
  WindowHandle richTextWindow = nullptr;
  std::shared_ptr<SymbolTable> symbols;
  std::vector<DefineRec> defines;
  std::string script;  ///< name of the sheet's script file
  std::shared_ptr<SymbolTable> scriptSymbols;
  std::shared_ptr<void> scriptObject;  ///< the compiled sheet script, owned by the script engine
  std::uint32_t flags2 = 0;
  std::int16_t rounding = 0;
  std::string notes;
  std::string richText;
  FixedString<kCreatedCapacity> created;
  std::vector<std::unique_ptr<ListInfo>> lists;  ///< at most 12
  std::vector<std::unique_ptr<DlgInfo>> dlgs;    ///< at most 12; dialog 0 is the main dialog
  std::int16_t pixInX = 0;
  std::int16_t pixInY = 0;
  DataMenu dataMenu;
  Rect16 notesLoc;
  Rect16 richTextLoc;
  std::int32_t richTextSelStart = 0;  ///< selection or scroll state of the rich text window
  std::int32_t richTextSelEnd = 0;
  std::string description;
  std::int32_t nextAutoID = 0;
  std::vector<std::string> assocFiles;
  std::string shortcuts;
  std::string ruleSet;

  // flags
  bool changed() const { return bits::test(flags, 0); }
  /// Only the bit; edits go through setChanged(fileInfo, changed, kind), which also minds undo.
  void setChangedFlag(bool on) { bits::assign(flags, 0, on); }
  /// No file on disk yet: Save behaves as Save As.
  bool isNew() const { return bits::test(flags, 1); }
  void setIsNew(bool on) { bits::assign(flags, 1, on); }
  /// The file's token stream is in binary form.
  bool binary() const { return bits::test(flags, 2); }
  void setBinary(bool on) { bits::assign(flags, 2, on); }
  bool runChargen() const { return bits::test(flags, 3); }
  void setRunChargen(bool on) { bits::assign(flags, 3, on); }
  bool notesOpen() const { return bits::test(flags, 4); }
  void setNotesOpen(bool on) { bits::assign(flags, 4, on); }
  bool richTextOpen() const { return bits::test(flags, 5); }
  void setRichTextOpen(bool on) { bits::assign(flags, 5, on); }
  /// The text writer doesn't break lines.
  bool noWrap() const { return bits::test(flags, 7); }
  void setNoWrap(bool on) { bits::assign(flags, 7, on); }
  /// Bytes per real in a binary file (four bits).
  unsigned realSize() const { return bits::field(flags, 8, 4); }
  void setRealSize(unsigned value) { bits::setField(flags, 8, 4, value); }
  /// Bytes per integer in a binary file (four bits).
  unsigned intSize() const { return bits::field(flags, 12, 4); }
  void setIntSize(unsigned value) { bits::setField(flags, 12, 4, value); }

  // flags2
  /// The Constant Cost box: a changed cost variable keeps the cost and searches a new level.
  bool constCost() const { return bits::test(flags2, 1); }
  void setConstCost(bool on) { bits::assign(flags2, 1, on); }
  /// Set at the end of a successful read.
  bool loaded() const { return bits::test(flags2, 2); }
  void setLoaded(bool on) { bits::assign(flags2, 2, on); }

  bool hasMagic() const { return magic == kFileInfoMagic; }

  /// Appends a new empty list owned by this record. A 13th list shows "Too many lists." and
  /// gives null.
  ListInfo* addList();
  /// Appends a new empty dialog. A 13th dialog shows "Too many dialogs!" and gives null.
  DlgInfo* addDialog();
  /// Deletes list `index` and keeps the Data menu pointing at the same lists.
  void removeList(std::size_t index);
  /// Deletes dialog `index` and keeps the Data menu pointing at the same dialogs.
  void removeDialog(std::size_t index);

  /// Every list of the sheet in the order that recalculation visits them: the top-level lists,
  /// then the lists of `list` fields, dialog by dialog.
  std::vector<ListInfo*> allLists() const;

  /// Raises nextAutoID above an automatic-item id that was read.
  void noteAutoID(std::int32_t id) {
    if (id >= nextAutoID) nextAutoID = id + 1;
  }

  /// A deep copy for the data sheet reader. Lists, dialogs, items and definitions are copied and
  /// tied to the copy; windows, symbols, the script and the undo history are not.
  std::unique_ptr<FileInfo> clone() const;
};

/// A Charsheet is the record of a character sheet or template.
using Charsheet = FileInfo;

/// False, after "Null file info!", when there is no record or it lacks the magic number.
bool checkFileInfo(const FileInfo* fileInfo);

}  // namespace zv
