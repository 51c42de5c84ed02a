// The top level of a character sheet or template file: the header keywords and the blocks, then
// the checks, the default Data menu and the settling of the sheet.

#include "formats/sheet/sheet_reader.h"

#include "core/engine_context.h"
#include "core/game_system.h"
#include "core/game_systems.h"
#include "core/messages.h"
#include "core/record_limits.h"
#include "core/strfmt.h"
#include "formats/sheet/sheet_grammar.h"
#include "formats/sheet/sheet_settle.h"

namespace zv {

namespace {

constexpr std::size_t kFirstWordCapacity = 256;
constexpr std::size_t kTopTokenCapacity = 256;

std::string fileNameOf(const FileInfo& sheet) {
  return sheet.name.empty() ? sheet.path.str() : sheet.name.str();
}

/// Holds the process-wide reading flag for the time of a read and always clears it.
class ReadingScope {
 public:
  explicit ReadingScope(SheetSymbolBinder* symbols) : symbols_(symbols) {
    if (symbols_ != nullptr) symbols_->setReading(true);
  }
  ~ReadingScope() {
    if (symbols_ != nullptr) symbols_->setReading(false);
  }
  ReadingScope(const ReadingScope&) = delete;
  ReadingScope& operator=(const ReadingScope&) = delete;

 private:
  SheetSymbolBinder* symbols_;
};

class TopLevelReader {
 public:
  TopLevelReader(TokenStream& input, FileInfo& sheet, const SheetReadOptions& options)
      : in_(input), sheet_(sheet), options_(options), grammar_(input, sheet, options) {}

  bool read();

 private:
  bool readKeyword(const SheetToken& token);
  bool readMenuPosition();
  void checkLevel();

  TokenStream& in_;
  FileInfo& sheet_;
  const SheetReadOptions& options_;
  SheetGrammar grammar_;
};

bool TopLevelReader::read() {
  if (in_.openStream() != kTokenOk) return false;
  std::string first;
  if (in_.readWord(first, kFirstWordCapacity) != kTokenOk) {
    showTitled(Severity::Error, "Empty File",
               strprintf("The character sheet file %s is empty.", fileNameOf(sheet_)));
    return false;
  }
  if (first != kCharsheetFirstWord) {
    showError(strprintf("File %s is not a character sheet file.", fileNameOf(sheet_)));
    return false;
  }
  sheet_.setBinary(in_.binary());
  sheet_.sheetId = nextSheetId();

  for (;;) {
    SheetToken token = grammar_.next(kTopTokenCapacity);
    if (token.failed()) return false;
    if (token.closesBlock()) break;
    if (token.isWord())
      return grammar_.fail(strprintf("Keyword expected, found %s instead", token.text));
    if (!readKeyword(token)) {
      if (grammar_.reported()) return false;
      return grammar_.fail(strprintf("File inconsistency: %s", token.text));
    }
  }

  if (sheet_.gameSystem == nullptr)
    return grammar_.fail("No game system specified for this character sheet");
  checkLevel();
  if (sheet_.dataMenu.empty())
    sheet_.dataMenu.setDefaultOrder(static_cast<int>(sheet_.dlgs.size()),
                                    static_cast<int>(sheet_.lists.size()));
  const bool settled = options_.settle ? options_.settle(sheet_) : settleFromStoredCosts(sheet_);
  if (!settled) return false;
  finishSettling(sheet_, options_.symbols);
  return true;
}

bool TopLevelReader::readKeyword(const SheetToken& token) {
  SheetGrammar& g = grammar_;
  std::int16_t number = 0;
  std::int32_t longNumber = 0;
  switch (token.id) {
    case kGamesystem: {
      if (!g.readWord(sheet_.gameSystemName)) return false;
      sheet_.gameSystem = &findOrCreateGameSystem(sheet_.gameSystemName.str());
      if (options_.registerGameSystemName)
        options_.registerGameSystemName(sheet_.gameSystemName.str());
      return true;
    }
    case kDescription:
      return g.readText(sheet_.description);
    case kSheettype:
      return g.readWord(sheet_.sheetType);
    case kHelp:
      return g.readWord(sheet_.helpFile);
    case kChargenScript:
      return g.readWord(sheet_.chargenScript);
    case kChargenTemplate:
      return g.readWord(sheet_.chargenTemplate);
    case kRuleset:
      return g.readText(sheet_.ruleSet);
    case kVersion:
      if (!g.readInt(number)) return false;
      if (number > kFileFormatVersion)
        return g.fail(
            strprintf("This character sheet (version %d) cannot be read by this version of the "
                      "application (%d)",
                      static_cast<int>(number), kFileFormatVersion));
      return true;
    case kRealsize:
      if (!g.readInt(number)) return false;
      sheet_.setRealSize(static_cast<std::uint16_t>(number));
      in_.setRealSize(static_cast<int>(sheet_.realSize()));
      return true;
    case kIntsize:
      if (!g.readInt(number)) return false;
      sheet_.setIntSize(static_cast<std::uint16_t>(number));
      in_.setIntSize(static_cast<int>(sheet_.intSize()));
      return true;
    case kLevel:
      return g.readInt(sheet_.level);
    case kMaxAttempts:
      if (!g.readInt(number)) return false;
      sheet_.maxAttempts = number;
      return true;
    case kCopyright:
      return g.readText(sheet_.copyright);
    case kTotalcostformula:
      return g.readText(sheet_.totalCostFormula);
    case kPixinx:
      return g.readInt(sheet_.pixInX);
    case kPixiny:
      return g.readInt(sheet_.pixInY);
    case kRounding:
      return g.readInt(sheet_.rounding);
    case kInfo:
      return g.readInfoBlock();
    case kDatafile: {
      std::function<void(const std::string&)> load;
      if (options_.loadData && options_.loadDataSheet)
        load = [this](const std::string& name) { options_.loadDataSheet(sheet_, name); };
      return g.readNameBlock(sheet_.dataFiles, "Error reading data file list.", load);
    }
    case kAssocfiles:
      return g.readNameBlock(sheet_.assocFiles, "Error reading associated file list.");
    case kTemplate:
      return g.readWord(sheet_.templateName);
    case kFilter:
      return g.readWord(sheet_.filter);
    case kPtemplate:
      return g.readWord(sheet_.printTemplate);
    case kAutoid:
      if (!g.readLong(longNumber)) return false;
      if (longNumber > sheet_.nextAutoID) sheet_.nextAutoID = longNumber;
      return true;
    case kScript:
      return g.readText(sheet_.script);
    case kShortcuts:
      return g.readText(sheet_.shortcuts);
    case kMenuposition:
      return readMenuPosition();
    case kMenupos:
      return g.readInt(number);
    case kDefine:
      return g.readDefineBlock(sheet_.defines);
    case kList: {
      ListInfo* list = sheet_.addList();
      if (list == nullptr) return g.failShown();
      list->setInUse(true);
      return g.readListBlock(*list);
    }
    case kDialog: {
      DlgInfo* dialog = sheet_.addDialog();
      if (dialog == nullptr) return g.failShown();
      dialog->setInUse(true);
      return g.readDialogBlock(*dialog);
    }
    default:
      return false;
  }
}

bool TopLevelReader::readMenuPosition() {
  std::int16_t count = 0;
  if (!grammar_.readInt(count)) return false;
  sheet_.dataMenu.clear();
  for (int i = 0; i < count; ++i) {
    std::int16_t kind = 0;
    std::int16_t index = 0;
    if (!grammar_.readInt(kind) || !grammar_.readInt(index)) return false;
    if (!sheet_.dataMenu.add({static_cast<DataMenuKind>(kind), index})) return grammar_.failShown();
  }
  return true;
}

void TopLevelReader::checkLevel() {
  if (!engine().preferences.levelWarnings) return;
  GameSystem& system = *sheet_.gameSystem;
  const int sheetLevel = sheet_.level;
  if (system.level == -1) {
    system.level = sheetLevel;
  } else if (system.level > sheetLevel) {
    showWarning(strprintf(
        "The level of the character sheet (%d) is less than the level of the game system "
        "(%d).\r\n\r\nYou may wish to convert the character sheet to the current version with "
        "the File | Convert command.",
        sheetLevel, system.level));
  } else if (system.level < sheetLevel) {
    showWarning(strprintf(
        "The level of the character sheet (%d) is greater than the level of the game system "
        "(%d).\r\n\r\nItems in the loaded data sheets may not be compatible with this character "
        "sheet. Unload the data sheets and reopen this character sheet to obtain compatible "
        "items.",
        sheetLevel, system.level));
  }
}

/// Takes away everything a failed read left in the record, so that no partial document stays.
void discardPartialSheet(FileInfo& sheet, SheetSymbolBinder* symbols) {
  sheet.lists.clear();
  sheet.dlgs.clear();
  sheet.defines.clear();
  sheet.dataMenu.clear();
  sheet.dataFiles.clear();
  sheet.assocFiles.clear();
  if (symbols != nullptr) symbols->freeTable(sheet);
  sheet.symbols.reset();
  sheet.gameSystem = nullptr;
  sheet.setLoaded(false);
  unregisterSheet(sheet);
}

}  // namespace

bool readCharsheet(FileInfo& sheet, ByteStream& input, const SheetReadOptions& options) {
  TokenStream stream;
  stream.setStream(&input);
  stream.setName(fileNameOf(sheet));
  return readCharsheet(sheet, stream, options);
}

bool readCharsheet(FileInfo& sheet, TokenStream& input, const SheetReadOptions& options) {
  ReadingScope reading(options.symbols);
  // Prepare the record: unchanged, created now (the file's own date replaces it), a fresh symbol
  // table, and the file's pixels per inch unknown until the file gives them.
  sheet.setChangedFlag(false);
  sheet.created = dateString(host().now());
  if (options.symbols != nullptr) options.symbols->createTable(sheet);
  sheet.pixInX = 0;
  sheet.pixInY = 0;
  if (input.name().empty()) input.setName(fileNameOf(sheet));

  TopLevelReader reader(input, sheet, options);
  if (reader.read()) return true;
  discardPartialSheet(sheet, options.symbols);
  return false;
}

}  // namespace zv
