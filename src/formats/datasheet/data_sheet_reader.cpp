// The top level of a data sheet file: the header, the page layout, the categories and the
// strings, with the macro processor in front of a text file.

#include "formats/datasheet/data_sheet_reader.h"

#include <algorithm>

#include "core/engine_context.h"
#include "core/game_systems.h"
#include "core/messages.h"
#include "core/record_limits.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "formats/datasheet/data_sheet_charsheet.h"
#include "formats/datasheet/data_sheet_sort.h"
#include "formats/macro/macro_context.h"
#include "formats/sheet/sheet_grammar.h"
#include "formats/sheet/sheet_reader.h"

namespace zv {

namespace {

constexpr std::size_t kFirstWordCapacity = 256;
constexpr std::size_t kStringNameCapacity = 32;    // 31 characters
constexpr std::size_t kStringValueCapacity = 256;  // 255 characters

/// Puts the items of a category block into the category; a sublist whose name is already a
/// sublist of the category takes the new members instead of standing twice.
class CategorySink : public ItemSink {
 public:
  explicit CategorySink(Category& category) : category_(category) {}
  Item& addItem(std::unique_ptr<Item> item) override {
    if (item->isSublist()) {
      for (auto& existing : category_.items)
        if (existing->isSublist() && equalsIgnoringCase(existing->name, item->name))
          return *existing;
    }
    return category_.appendItem(std::move(item));
  }

 private:
  Category& category_;
};

class DataSheetReader {
 public:
  DataSheetReader(ByteStream& bytes, TokenStream& input, DataSheetFile& file,
                  const DataSheetReadOptions& options)
      : bytes_(bytes),
        in_(input),
        file_(file),
        options_(options),
        grammar_(input, scratch_, sheetOptions_) {}

  bool read();

 private:
  bool finish();
  void startLongBlock();
  bool readKeyword(const SheetToken& token);
  bool readPageInfo();
  bool readCategory();
  bool readStrings();
  bool readOptions(OptionTree& level, int depth);
  bool needGameSystem();
  void checkLevel();
  bool improper(const SheetToken& token);
  static int line() { return tokenLineState().lineNumber; }

  ByteStream& bytes_;
  TokenStream& in_;
  DataSheetFile& file_;
  const DataSheetReadOptions& options_;
  FileInfo scratch_;
  SheetReadOptions sheetOptions_;
  SheetGrammar grammar_;
  bool progressShown_ = false;
};

bool DataSheetReader::improper(const SheetToken& token) {
  return grammar_.fail(strprintf("Improper data sheet format: %s (line %d, token: %s)", file_.name,
                                 line(), token.text));
}

bool DataSheetReader::read() {
  std::string first;
  if (in_.readWord(first, kFirstWordCapacity) != kTokenOk) {
    showTitled(Severity::Error, "Empty File", strprintf("The data sheet %s is empty.", file_.name));
    return false;
  }
  const bool charsheet = first == kCharsheetFirstWord;
  if (first != kDataSheetFirstWord && first != kMacroDataSheetFirstWord && !charsheet) {
    showError(strprintf("File %s is not a data sheet file.", file_.name));
    return false;
  }
  file_.id = nextDataSheetId();
  if (charsheet) {
    if (!readCharsheetAsDataSheet(bytes_, file_, options_)) return false;
    return finish();
  }
  sheetOptions_.sourceId = file_.id;
  sheetOptions_.loadData = false;
  scratch_.fileType = 6;

  for (;;) {
    SheetToken token = grammar_.next();
    if (token.failed()) return false;
    if (token.atEnd()) return grammar_.fail("End missing");
    if (token.is(kEnd)) break;
    if (token.isWord()) return improper(token);
    if (progressShown_ && options_.pump) options_.pump();
    if (!readKeyword(token)) {
      if (grammar_.reported()) return false;
      return grammar_.fail(strprintf("Read error on data sheet %s", file_.name));
    }
  }
  if (file_.gameSystem == nullptr)
    return grammar_.fail(strprintf("Game system not specified for data sheet file %s", file_.name));
  return finish();
}

bool DataSheetReader::finish() {
  GameSystem& system = *file_.gameSystem;
  sortDataSheetItems(system, options_.buildIndex);
  if (options_.buildIndex) {
    for (auto& category : system.categories)
      category->rebuildIndex();
  }
  OpenDataSheet record;
  record.id = file_.id;
  record.name = file_.name;
  record.helpFile = file_.helpFile;
  record.level = file_.level;
  system.dataSheets.push_back(std::move(record));
  checkLevel();
  return true;
}

void DataSheetReader::startLongBlock() {
  if (progressShown_) return;
  progressShown_ = true;
  if (options_.onLongBlock) options_.onLongBlock(file_);
}

bool DataSheetReader::needGameSystem() {
  if (file_.gameSystem != nullptr) return true;
  return grammar_.fail(strprintf("Game system not specified for data sheet file %s", file_.name));
}

bool DataSheetReader::readKeyword(const SheetToken& token) {
  SheetGrammar& g = grammar_;
  std::int16_t number = 0;
  switch (token.id) {
    case kGamesystem: {
      std::string name;
      if (!g.readWord(name, kGameSystemNameCapacity + 1)) return false;
      file_.gameSystem =
          options_.gameSystemFor ? &options_.gameSystemFor(name) : &findOrCreateGameSystem(name);
      return true;
    }
    case kTitle:
      return g.readText(file_.title);
    case kCopyright:
      return g.readText(file_.copyright);
    case kVersion:
      if (!g.readInt(number)) return false;
      if (number > kFileFormatVersion)
        return g.fail(strprintf(
            "This datasheet (version %d) cannot be read by this version of the application (%d)",
            static_cast<int>(number), kFileFormatVersion));
      return true;
    case kLevel:
      return g.readInt(file_.level);
    case kRealsize:
      if (!g.readInt(number)) return false;
      in_.setRealSize(number);
      return true;
    case kIntsize:
      if (!g.readInt(number)) return false;
      in_.setIntSize(number);
      return true;
    case kCdelay:
      return g.readLong(file_.cdelay);
    case kTextline:
      return true;
    case kPageinfo:
      return readPageInfo();
    case kDatafile:
      return g.readNameBlock(file_.dataFiles, "Error reading data file list.");
    case kLogo:
      return g.readWord(file_.logo, kPathCapacity);
    case kHelp:
      return g.readWord(file_.helpFile, kPathCapacity);
    case kDefine:
      return needGameSystem() && g.readDefineBlock(file_.defines);
    case kCat:
      if (!needGameSystem()) return false;
      startLongBlock();
      return readCategory();
    case kStrings:
      if (!needGameSystem()) return false;
      startLongBlock();
      return readStrings();
    case kOptions:
      if (!needGameSystem()) return false;
      startLongBlock();
      return readOptions(file_.gameSystem->options, 0);
    default:
      return improper(token);
  }
}

bool DataSheetReader::readPageInfo() {
  SheetGrammar& g = grammar_;
  PageInfo& page = file_.pageInfo;
  for (;;) {
    SheetToken token = g.next();
    if (token.failed()) return false;
    if (token.closesBlock()) return true;
    std::int16_t number = 0;
    std::int32_t longNumber = 0;
    bool ok = true;
    switch (token.id) {
      case kLm:
        ok = g.readInt(page.lm);
        break;
      case kRm:
        ok = g.readInt(page.rm);
        break;
      case kTm:
        ok = g.readInt(page.tm);
        break;
      case kBm:
        ok = g.readInt(page.bm);
        break;
      case kTabwidth:
        ok = g.readInt(page.tabwidth);
        break;
      case kColumns:
        ok = g.readInt(page.columns);
        break;
      case kColumnSpacing:
        ok = g.readInt(page.columnSpacing);
        break;
      case kCharstyle:
        ok = g.readInt(page.charstyle);
        break;
      case kFacename:
        ok = g.readWord(page.facename);
        break;
      case kPointsize:
        ok = g.readInt(page.pointsize);
        break;
      case kPitch:
        ok = g.readInt(number);
        page.pitch = static_cast<std::uint8_t>(number);
        break;
      case kCharset:
        ok = g.readInt(number);
        page.charset = static_cast<std::uint8_t>(number);
        break;
      case kTextcolor:
        ok = g.readLong(longNumber);
        page.textcolor = static_cast<std::uint32_t>(longNumber);
        break;
      case kFirstindent:
        ok = g.readInt(number);
        page.firstindent = number;
        break;
      case kLineheight:
        ok = g.readInt(page.lineheight);
        break;
      case kJust:
        ok = g.readInt(page.just);
        break;
      case kDeftab:
        ok = g.readInt(page.deftab);
        break;
      case kTabs: {
        std::int16_t count = 0;
        ok = g.readInt(count);
        page.tabs.clear();
        for (int i = 0; ok && i < count; ++i) {
          TabStop stop;
          ok = g.readInt(stop.position) && g.readInt(stop.type);
          if (ok) page.tabs.push_back(stop);
        }
        break;
      }
      default:
        showError(strprintf("Unexpected token in pageInfo: %s", token.text));
        break;
    }
    if (!ok) return false;
  }
}

bool DataSheetReader::readCategory() {
  SheetGrammar& g = grammar_;
  std::string name;
  if (!g.readWord(name, kCategoryNameCapacity + 1)) return false;
  Category& category = file_.gameSystem->findOrAddCategory(name);
  CategorySink sink(category);
  SheetToken token = g.next();
  for (;;) {
    if (token.failed()) return false;
    if (token.closesBlock()) return !token.atEnd() || g.fail("End missing");
    if (token.is(kSort)) {
      if (!g.readInt(category.sort)) return false;
      token = g.next();
    } else if (token.is(kColwidth)) {
      std::int16_t count = 0;
      if (!g.readInt(count)) return false;
      for (int i = 0; i < count; ++i) {
        std::int16_t ignored = 0;
        if (!g.readInt(ignored)) return false;
      }
      token = g.next();
    } else {
      SheetToken following;
      if (!g.readItemBlock(std::move(token), sink, following)) return false;
      token = std::move(following);
    }
  }
}

bool DataSheetReader::readStrings() {
  SheetGrammar& g = grammar_;
  std::vector<StringDef>& strings = file_.gameSystem->strings;
  for (;;) {
    SheetToken token = g.next(kStringNameCapacity);
    if (token.failed()) return false;
    if (token.closesBlock()) return true;
    std::string value;
    if (g.input().readWord(value, kStringValueCapacity) != kTokenOk)
      return g.fail(strprintf("Error reading string def in file %s", file_.name));
    auto found = std::find_if(strings.begin(), strings.end(),
                              [&](const StringDef& def) { return def.name == token.text; });
    if (found == strings.end()) {
      file_.stringsAdded.push_back(token.text);
      strings.push_back({token.text, value});
    } else if (found->value != value) {
      showError(strprintf("String def %s inconsistent in file %s", token.text, file_.name));
    }
  }
}

bool DataSheetReader::readOptions(OptionTree& level, int depth) {
  SheetGrammar& g = grammar_;
  for (;;) {
    SheetToken token = g.next();
    if (token.failed()) return false;
    if (token.atEnd()) return g.fail("End missing");
    if (token.is(kEnd)) return true;
    if (token.is(kList) || token.is(kUlist)) {
      std::string name;
      if (!g.readWord(name, kStringValueCapacity)) return false;
      OptionTreeEntry& group = findOrAddOptionGroup(level, token.id, name, depth);
      if (!readOptions(group.entries, depth + 1)) return false;
      continue;
    }
    if (!token.is(kBegin) && !isOptionKind(token.id))
      return g.fail(strprintf("Bad option type: %s (line %d)", token.text, line()));
    std::unique_ptr<Option> option;
    if (!g.readOptionEntry(token, option)) return false;
    OptionTreeEntry leaf;
    leaf.name = option->name;
    leaf.depth = depth;
    leaf.sourceId = file_.id;
    leaf.option = std::move(option);
    insertOptionEntry(level, std::move(leaf));
  }
}

void DataSheetReader::checkLevel() {
  GameSystem& system = *file_.gameSystem;
  if (system.level == -1) {
    system.level = file_.level;
    return;
  }
  if (!engine().preferences.levelWarnings || system.level == file_.level) return;
  const char* format =
      file_.level > system.level
          ? "The level of this data sheet (%d) is greater than the level of the data sheets "
            "already loaded (%d).\r\n\r\nItems may not be compatible with the character sheets."
          : "The level of this data sheet (%d) is less than the level of the data sheets "
            "already loaded (%d).\r\n\r\nItems may not be compatible with the character sheets.";
  showTitled(Severity::Warning, "Level Mismatch",
             strprintf(format, static_cast<int>(file_.level), static_cast<int>(system.level)));
}

}  // namespace

namespace {

/// The read over `input`; `wholeFile` is the same bytes when they are in memory, so that the
/// macro processor reads them without a call per character.
bool readFrom(ByteStream& input, std::string_view wholeFile, DataSheetFile& file,
              const DataSheetReadOptions& options) {
  TokenStream stream;
  stream.setStream(&input);
  stream.setName(file.name);
  if (stream.openStream() != kTokenOk) return false;
  file.binary = stream.binary();
  MacroContextScope scope;
  if (!stream.binary()) {
    tokenLineState() = TokenLineState{1, true};
    if (wholeFile.empty()) {
      macroContext().macroStart(
          file.path, [&stream] { return stream.readByte(); }, options.dataDir);
    } else {
      macroContext().macroStartText(file.path, wholeFile, options.dataDir);
    }
    stream.setCharSource(&macroContext());
  }
  DataSheetReader reader(input, stream, file, options);
  const bool ok = reader.read();
  stream.setCharSource(nullptr);
  macroContext().macroClear();
  return ok;
}

}  // namespace

bool readDataSheet(ByteStream& input, DataSheetFile& file, const DataSheetReadOptions& options) {
  return readFrom(input, {}, file, options);
}

bool readDataSheet(std::string bytes, DataSheetFile& file, const DataSheetReadOptions& options) {
  MemoryByteStream input(std::move(bytes));
  return readFrom(input, input.data(), file, options);
}

}  // namespace zv
