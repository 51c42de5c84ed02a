// The top level of a written sheet or template: the header, the info, data file, associated
// file and definition blocks, then the lists and dialogs.

#include "formats/sheet/sheet_writer.h"

#include <set>

#include "core/game_system.h"
#include "core/messages.h"
#include "core/record_limits.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "formats/tokens/keywords.h"
#include "formats/sheet/sheet_output.h"
#include "formats/sheet/sheet_reader.h"

namespace zv {

namespace {

constexpr std::int16_t kNotSet = -1;  // 65535 as a 16-bit coordinate
constexpr int kFileFormatRealSize = 8;
constexpr int kFileFormatIntSize = 2;

bool isTemplate(const FileInfo& sheet) {
  return sheet.fileType == 2;
}

std::string fileNameOf(const FileInfo& sheet) {
  return sheet.name.empty() ? sheet.path.str() : sheet.name.str();
}

void collectSourceIds(const ItemChain& items, std::set<std::int32_t>& ids) {
  for (const auto& item : items) {
    if (item->sourceId != 0) ids.insert(item->sourceId);
    collectSourceIds(item->children, ids);
  }
}

// A sheet names every loaded data sheet that one of its items came from; names are never removed.
void refreshDataFiles(FileInfo& sheet) {
  if (sheet.gameSystem == nullptr) return;
  std::set<std::int32_t> ids;
  for (ListInfo* list : sheet.allLists())
    collectSourceIds(list->items, ids);
  for (const OpenDataSheet& dataSheet : sheet.gameSystem->dataSheets) {
    if (!ids.contains(dataSheet.id)) continue;
    bool listed = false;
    for (const std::string& name : sheet.dataFiles)
      listed = listed || equalsIgnoringCase(name, dataSheet.name);
    if (!listed) sheet.dataFiles.push_back(dataSheet.name);
  }
}

// A template brings its windows up in default places unless at least two of them were open.
void resetTemplatePositions(FileInfo& sheet) {
  int open = 0;
  for (const auto& dialog : sheet.dlgs)
    open += dialog->open() ? 1 : 0;
  for (const auto& list : sheet.lists)
    open += list->open() ? 1 : 0;
  if (open >= 2) return;
  for (auto& dialog : sheet.dlgs) {
    dialog->x = kNotSet;
    dialog->y = kNotSet;
  }
  for (auto& list : sheet.lists) {
    list->loc.x = kNotSet;
    list->loc.y = kNotSet;
  }
}

void writeInfoBlock(SheetOut& out, const FileInfo& sheet) {
  out.keyword(kInfo);
  out.lineBreak();
  if (!sheet.notes.empty()) {
    out.keyword(kNotes);
    out.string(sheet.notes);
    out.lineBreak();
  }
  out.keyword(kNotesloc);
  out.coord(isTemplate(sheet) ? kNotSet : sheet.notesLoc.x);
  out.coord(isTemplate(sheet) ? kNotSet : sheet.notesLoc.y);
  out.coord(sheet.notesLoc.width);
  out.coord(sheet.notesLoc.height);
  out.lineBreak();
  if (!sheet.richText.empty()) {
    out.keyword(kRichtext);
    out.longString(sheet.richText);
    out.lineBreak();
  }
  out.flag(kNotesopen, sheet.notesOpen());
  out.flag(kRtopen, sheet.richTextOpen());
  out.keyword(kRtloc);
  out.coord(sheet.richTextLoc.x);
  out.coord(sheet.richTextLoc.y);
  out.coord(sheet.richTextLoc.width);
  out.coord(sheet.richTextLoc.height);
  out.longValue(sheet.richTextSelStart);
  out.longValue(sheet.richTextSelEnd);
  out.lineBreak();
  if (!isTemplate(sheet)) {
    out.keyword(kCreated);
    out.string(sheet.created.str());
    out.lineBreak();
  }
  out.flag(kConstcost, sheet.constCost());
  out.flag(kRunchargen, sheet.runChargen());
  out.keyword(kEnd);
  out.lineBreak();
}

void writeNameBlock(SheetOut& out, int keyword, const std::vector<std::string>& names) {
  out.keyword(keyword);
  for (const std::string& name : names)
    out.string(name);
  out.keyword(kEnd);
  out.lineBreak();
}

void writeDefineBlock(SheetOut& out, const FileInfo& sheet) {
  out.keyword(kDefine);
  out.lineBreak();
  for (const DefineRec& define : sheet.defines) {
    // A template keeps only its own definitions, not those its sheet took from data sheets.
    if (isTemplate(sheet) && define.sourceId != 0) continue;
    out.keyword(define.kind);
    out.string(define.name);
    out.string(define.body);
    out.flag(kScriptadded, define.scriptAdded());
    out.lineBreak();
  }
  out.keyword(kEnd);
  out.lineBreak();
}

void writeSheet(SheetOut& out, FileInfo& sheet) {
  auto line = [&out] { out.lineBreak(); };
  if (out.binary()) out.longValue(static_cast<std::int32_t>(kTokenFileMagic));
  out.string(kCharsheetFirstWord);
  line();
  out.keyword(kGamesystem);
  out.string(sheet.gameSystemName.str());
  line();
  out.keywordText(kDescription, sheet.description);
  out.keyword(kSheettype);
  out.string(sheet.sheetType.str());
  out.keyword(kHelp);
  out.string(sheet.helpFile.str());
  line();
  out.keywordText(kChargenScript, sheet.chargenScript.str());
  out.keywordText(kChargenTemplate, sheet.chargenTemplate.str());
  out.keywordText(kRuleset, sheet.ruleSet);
  out.keywordInt(kVersion, kFileFormatVersion);
  if (out.binary()) {
    out.keywordInt(kRealsize, kFileFormatRealSize);
    out.keywordInt(kIntsize, kFileFormatIntSize);
  }
  out.keywordInt(kLevel, sheet.level);
  out.keywordInt(kMaxAttempts, static_cast<std::int16_t>(sheet.maxAttempts));
  line();
  out.keywordText(kCopyright, sheet.copyright);
  out.keywordText(kTotalcostformula, sheet.totalCostFormula);
  if (sheet.pixInX != 0 || sheet.pixInY != 0) {
    out.keywordInt(kPixinx, sheet.pixInX);
    out.keywordInt(kPixiny, sheet.pixInY);
  }
  if (!isTemplate(sheet)) refreshDataFiles(sheet);
  out.keywordInt(kRounding, sheet.rounding);
  line();
  writeInfoBlock(out, sheet);
  writeNameBlock(out, kDatafile, sheet.dataFiles);
  if (!sheet.assocFiles.empty()) writeNameBlock(out, kAssocfiles, sheet.assocFiles);
  out.keyword(kTemplate);
  out.string(isTemplate(sheet) ? sheet.name.str() : sheet.templateName.str());
  out.keywordText(kFilter, sheet.filter.str());
  out.keywordText(kPtemplate, sheet.printTemplate.str());
  if (sheet.nextAutoID != 0) out.keywordLong(kAutoid, sheet.nextAutoID);
  line();
  out.keywordText(kScript, sheet.script);
  out.keywordText(kShortcuts, sheet.shortcuts);
  out.keywordInt(kMenuposition, static_cast<std::int16_t>(sheet.dataMenu.size()));
  for (const DataMenuEntry& entry : sheet.dataMenu.entries()) {
    out.integer(static_cast<std::int16_t>(entry.kind));
    out.integer(entry.index);
  }
  line();
  writeDefineBlock(out, sheet);
  for (const auto& list : sheet.lists)
    writeListBlock(out, *list);
  for (const auto& dialog : sheet.dlgs)
    writeDialogBlock(out, *dialog);
  out.keyword(kEnd);
  line();
  out.flush();
}

}  // namespace

void SheetOut::coord(std::int16_t value) {
  if (!ok()) return;
  if (binary()) {
    integer(value);
  } else {
    string(std::to_string(static_cast<std::uint16_t>(value)));
  }
}

int writeCharsheet(FileInfo& sheet, ByteStream& output, const SheetWriteOptions& options) {
  TokenStream stream;
  stream.setStream(&output);
  stream.setName(fileNameOf(sheet));
  return writeCharsheet(sheet, stream, options);
}

int writeCharsheet(FileInfo& sheet, TokenStream& output, const SheetWriteOptions& options) {
  const bool binary = options.binary && !isTemplate(sheet);
  output.setBinary(binary);
  output.setRealSize(kFileFormatRealSize);
  output.setNoWrap(sheet.noWrap());
  output.beginWrite();
  sheet.setBinary(binary);
  if (binary) {
    sheet.setRealSize(kFileFormatRealSize);
    sheet.setIntSize(kFileFormatIntSize);
  }
  if (isTemplate(sheet)) resetTemplatePositions(sheet);
  const PixelsPerInch ppi = host().screenPixelsPerInch();
  sheet.pixInX = static_cast<std::int16_t>(ppi.x);
  sheet.pixInY = static_cast<std::int16_t>(ppi.y);
  if (sheet.created.empty()) sheet.created = dateString(host().now());

  SheetOut out(output);
  writeSheet(out, sheet);
  if (!out.ok()) reportSheetWriteResult(out.result(), fileNameOf(sheet));
  return out.result();
}

void reportSheetWriteResult(int result, std::string_view fileName) {
  if (result == kWriteOk) return;
  if (result == kWriteDiskFull) {
    showError(strprintf("No disk space to write file %s", std::string(fileName)));
  } else if (result == kWriteError) {
    showError(strprintf("Error writing file %s", std::string(fileName)));
  } else {
    reportInternalError("Fileio", 0);
  }
}

}  // namespace zv
