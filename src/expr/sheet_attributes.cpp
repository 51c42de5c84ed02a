#include "expr/sheet_attributes.h"

#include <algorithm>
#include <array>

#include "core/fileinfo.h"
#include "core/host.h"
#include "core/strfmt.h"
#include "core/text.h"

namespace zv {

namespace {

enum class Attribute {
  BlankCharSheet,
  CharSheetLevel,
  CheckRequirements,
  CurrentVersion,
  DataSheets,
  Date,
  DateCreated,
  DetailsHtml,
  DetailsRtf,
  DetailsText,
  FileName,
  GameSystem,
  Notes,
  PageNumber,
  RuleSet,
  SheetType,
};

struct Row {
  std::string_view name;
  Attribute attribute;
};

// Sorted for the binary search.
constexpr std::array<Row, 16> kAttributes = {{
    {"blankcharsheet", Attribute::BlankCharSheet},
    {"charsheetlevel", Attribute::CharSheetLevel},
    {"checkrequirements", Attribute::CheckRequirements},
    {"currentversion", Attribute::CurrentVersion},
    {"datasheets", Attribute::DataSheets},
    {"date", Attribute::Date},
    {"datecreated", Attribute::DateCreated},
    {"detailshtml", Attribute::DetailsHtml},
    {"detailsrtf", Attribute::DetailsRtf},
    {"detailstext", Attribute::DetailsText},
    {"filename", Attribute::FileName},
    {"gamesystem", Attribute::GameSystem},
    {"notes", Attribute::Notes},
    {"pagenumber", Attribute::PageNumber},
    {"ruleset", Attribute::RuleSet},
    {"sheettype", Attribute::SheetType},
}};

std::string today() {
  LocalTime now = host().now();
  if (!now.valid) return "1/1/1997";
  return strprintf("%d/%d/%d", now.month, now.day, now.year);
}

std::string joined(const std::vector<std::string>& names) {
  std::string out;
  for (const std::string& name : names) {
    if (!out.empty()) out += ',';
    out += name;
  }
  return out;
}

}  // namespace

bool basicSheetAttribute(const FileInfo& sheet, std::string_view name, Value& out) {
  auto it = std::lower_bound(
      kAttributes.begin(), kAttributes.end(), name,
      [](const Row& row, std::string_view key) { return compareIgnoringCase(row.name, key) < 0; });
  if (it == kAttributes.end() || compareIgnoringCase(it->name, name) != 0) return false;
  switch (it->attribute) {
    case Attribute::BlankCharSheet:
    case Attribute::CheckRequirements:
    case Attribute::PageNumber:
      out.setInteger(0);
      break;
    case Attribute::CharSheetLevel:
      out.setInteger(sheet.level);
      break;
    case Attribute::CurrentVersion:
      out.setInteger(kCurrentDataVersion);
      break;
    case Attribute::DataSheets:
      out.setString(joined(sheet.dataFiles));
      break;
    case Attribute::Date:
      out.setString(today());
      break;
    case Attribute::DateCreated:
      out.setString(sheet.created.str());
      break;
    case Attribute::DetailsHtml:
    case Attribute::DetailsRtf:
    case Attribute::DetailsText:
      out.setString(std::string());
      break;
    case Attribute::FileName:
      out.setString(sheet.name.str());
      break;
    case Attribute::GameSystem:
      out.setString(sheet.gameSystemName.str());
      break;
    case Attribute::Notes:
      out.setString(sheet.notes);
      break;
    case Attribute::RuleSet:
      out.setString(sheet.ruleSet);
      break;
    case Attribute::SheetType:
      out.setString(sheet.sheetType.str());
      break;
  }
  return true;
}

}  // namespace zv
