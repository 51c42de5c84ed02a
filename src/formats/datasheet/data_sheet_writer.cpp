// The writer of data sheets: the header, the page layout in its fixed order, the data file list,
// the definitions, the categories and the strings, then `end`.

#include "formats/datasheet/data_sheet_writer.h"

#include "core/record_limits.h"
#include "formats/tokens/keywords.h"
#include "formats/sheet/sheet_output.h"
#include "formats/sheet/sheet_writer.h"

namespace zv {

namespace {

// Binary data sheets carry 8-byte reals and 2-byte integers.
constexpr std::int16_t kFileFormatRealSize = 8;
constexpr std::int16_t kFileFormatIntSize = 2;

void writePageInfo(SheetOut& out, const PageInfo& page) {
  out.keyword(kPageinfo);
  out.keywordInt(kLm, page.lm);
  out.keywordInt(kRm, page.rm);
  out.keywordInt(kTm, page.tm);
  out.keywordInt(kBm, page.bm);
  out.keywordInt(kTabwidth, page.tabwidth);
  out.keywordInt(kColumns, page.columns);
  out.keywordInt(kColumnSpacing, page.columnSpacing);
  out.keywordInt(kCharstyle, page.charstyle);
  out.keywordText(kFacename, page.facename.str());
  out.keywordInt(kPointsize, page.pointsize);
  out.keywordInt(kPitch, page.pitch);
  out.keywordInt(kCharset, page.charset);
  out.keywordLong(kTextcolor, static_cast<std::int32_t>(page.textcolor));
  // The first indent is read as an integer, so it is written as one.
  out.keywordInt(kFirstindent, static_cast<std::int16_t>(page.firstindent));
  out.keywordInt(kLineheight, page.lineheight);
  out.keywordInt(kJust, page.just);
  out.keywordInt(kDeftab, page.deftab);
  out.keywordInt(kTabs, static_cast<std::int16_t>(page.tabs.size()));
  for (const TabStop& stop : page.tabs) {
    out.integer(stop.position);
    out.integer(stop.type);
  }
  out.keyword(kEnd);
  out.lineBreak();
}

void writeDefines(SheetOut& out, const std::vector<DefineRec>& defines) {
  if (defines.empty()) return;
  out.keyword(kDefine);
  out.lineBreak();
  for (const DefineRec& define : defines) {
    out.keyword(define.kind);
    out.string(define.name);
    out.string(define.body);
    out.lineBreak();
  }
  out.keyword(kEnd);
  out.lineBreak();
}

void writeCategory(SheetOut& out, const DataSheetCategory& category) {
  out.keyword(kCat);
  out.string(category.name);
  if (category.sort != 0) out.keywordInt(kSort, category.sort);
  out.lineBreak();
  for (const auto& item : *category.items)
    writeItemBlock(out, *item);
  out.keyword(kEnd);
  out.lineBreak();
}

void writeStrings(SheetOut& out, const std::vector<StringDef>& strings) {
  if (strings.empty()) return;
  out.keyword(kStrings);
  out.lineBreak();
  for (const StringDef& def : strings) {
    out.string(def.name);
    out.string(def.value);
    out.lineBreak();
  }
  out.keyword(kEnd);
  out.lineBreak();
}

void writeOptionEntries(SheetOut& out, const OptionTree& level) {
  for (const OptionTreeEntry& entry : level) {
    if (entry.isGroup()) {
      out.keyword(entry.groupKind);
      out.string(entry.name);
      out.lineBreak();
      writeOptionEntries(out, entry.entries);
      out.keyword(kEnd);
    } else {
      writeOptionEntry(out, *entry.option);
    }
    out.lineBreak();
  }
}

}  // namespace

DataSheetBody dataSheetBodyOf(const GameSystem& system) {
  DataSheetBody body;
  body.gameSystem = system.name.str();
  body.categories.reserve(system.categories.size());
  for (const auto& category : system.categories)
    body.categories.push_back({category->name.str(), category->sort, &category->items});
  body.strings = &system.strings;
  body.options = &system.options;
  return body;
}

int writeDataSheet(const DataSheetFile& file, const GameSystem& system, ByteStream& output,
                   bool binary) {
  return writeDataSheet(file, dataSheetBodyOf(system), output, binary);
}

int writeDataSheet(const DataSheetFile& file, const DataSheetBody& body, ByteStream& output,
                   bool binary) {
  TokenStream stream;
  stream.setStream(&output);
  stream.setName(file.name);
  stream.setBinary(binary);
  stream.setRealSize(kFileFormatRealSize);
  stream.beginWrite();
  SheetOut out(stream);
  if (binary) out.longValue(static_cast<std::int32_t>(kTokenFileMagic));
  out.string(kDataSheetFirstWord);
  out.keyword(kGamesystem);
  out.string(body.gameSystem);
  out.keywordText(kTitle, file.title);
  out.keywordInt(kVersion, static_cast<std::int16_t>(kFileFormatVersion));
  out.keywordInt(kLevel, file.level);
  out.keywordText(kCopyright, file.copyright);
  if (binary) {
    out.keywordInt(kRealsize, kFileFormatRealSize);
    out.keywordInt(kIntsize, kFileFormatIntSize);
  }
  out.lineBreak();
  writePageInfo(out, file.pageInfo);
  out.keyword(kDatafile);
  for (const std::string& name : file.dataFiles)
    out.string(name);
  out.keyword(kEnd);
  out.lineBreak();
  out.keywordText(kLogo, file.logo);
  writeDefines(out, file.defines);
  out.keywordText(kHelp, file.helpFile);
  out.lineBreak();
  for (const DataSheetCategory& category : body.categories)
    writeCategory(out, category);
  if (body.strings != nullptr) writeStrings(out, *body.strings);
  if (body.options != nullptr && !body.options->empty()) {
    out.keyword(kOptions);
    out.lineBreak();
    writeOptionEntries(out, *body.options);
    out.keyword(kEnd);
    out.lineBreak();
  }
  out.keyword(kEnd);
  out.lineBreak();
  out.flush();
  if (!out.ok()) reportSheetWriteResult(out.result(), file.name);
  return out.result();
}

}  // namespace zv
