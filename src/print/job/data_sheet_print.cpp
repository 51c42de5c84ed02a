#include "print/job/data_sheet_print.h"

#include "core/item.h"
#include "core/messages.h"
#include "core/numbers.h"
#include "core/option.h"

namespace zv {

namespace {

void field(std::string& out, std::string_view name, std::string_view value) {
  if (!value.empty()) out += strprintf("; %s: %s", name, value);
}

void printItem(std::string& out, const Item& item) {
  out += item.name;
  field(out, "Category", item.cat);
  field(out, "Class", item.className);
  field(out, "Format", item.format);
  field(out, "Selection Format", item.sformat);
  field(out, "Variable Name", item.varName);
  field(out, "Check Expression", item.checkExp);
  field(out, "Default Value", item.defaultText);
  field(out, "Default Formula", item.defFormula);
  field(out, "Total Cost Formula", item.totalCostFormula);
  field(out, "Cost",
        item.formula.empty() && item.cost != 0 ? formatFloat(item.cost) : item.formula);
  field(out, "Total Cost", item.totalCost != 0 ? formatFloat(item.totalCost) : std::string());
  field(out, "Adjustments", item.adj);
  field(out, "Requirements", item.prereq);
  field(out, "Automatic Items", item.autoitems);
  if (!item.options.empty()) {
    out += "; Options: ";
    bool first = true;
    for (const auto& option : item.options) {
      if (!first) out += ", ";
      first = false;
      out += strprintf("%s: ", option->name);
      out += option->value;
      if (!option->qualifier.empty()) out += strprintf(" (%s)", option->qualifier);
    }
  }
  out += "\r\n";
}

void printItems(std::string& out, const ItemChain& items) {
  for (const auto& item : items) {
    printItem(out, *item);
    if (item->isSublist()) printItems(out, item->children);
  }
}

}  // namespace

std::string dataSheetPrintText(const FileInfo& dataSheet) {
  std::string out;
  out += strprintf("Datasheet: %s\r\n", dataSheet.name.str());
  out += strprintf("Title: %s\r\n", dataSheet.title);
  out += strprintf("Copyright: %s\r\n", dataSheet.copyright);
  out += strprintf("Game System: %s\r\n", dataSheet.gameSystemName.str());
  out += strprintf("Help File: %s\r\n", dataSheet.helpFile.str());
  for (const auto& list : dataSheet.lists) {
    for (const auto& entry : list->items) {
      // The root of a data sheet document holds its categories as sublists.
      if (entry->isSublist() && dataSheet.fileType == 6)
        printItems(out, entry->children);
      else
        printItem(out, *entry);
    }
  }
  return out;
}

}  // namespace zv
