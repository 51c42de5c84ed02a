#include <iostream>

#include "cli/commands.h"
#include "cli/open_sheet.h"
#include "core/codepage.h"
#include "rules/requirements/prereq_dialog.h"
#include "rules/requirements/requirements.h"

namespace zv::cli {

namespace {

/// Prints the requirements dialog's rows of each item of a chain that has requirements or is
/// excluded by another item, groups descended.
void printChain(FileInfo& sheet, ListInfo& list, const ItemChain& chain) {
  for (const auto& entry : chain) {
    Item& item = *entry;
    if (!item.isSublist() && (!item.prereq.empty() || findExclusion(sheet, item))) {
      RequirementsDialog dialog(sheet, &list, item, false);
      std::cout << windows1252ToUtf8(list.name.str() + ": " + item.name) << ": "
                << (dialog.satisfied() ? "satisfied" : "unsatisfied") << '\n';
      for (const PrereqRow& row : dialog.rows()) {
        std::string line = "  ";
        if (row.kind == PrereqRow::Kind::Requirement) line += row.met ? "[x] " : "[ ] ";
        std::cout << windows1252ToUtf8(line + row.text) << '\n';
      }
    }
    printChain(sheet, list, item.children);
  }
}

}  // namespace

// requirements SHEET: each item with requirements (or excluded by another), whether they hold,
// and the verdict of each requirement as the requirements dialog shows it; then the count line
// of the check of the whole sheet.
int runRequirements(Context&, const std::vector<std::string>& args) {
  if (args.size() != 1) return usageError("requirements takes one sheet");
  std::unique_ptr<FileInfo> sheet = openSheet(args[0]);
  if (!sheet) return 1;
  for (ListInfo* list : sheet->allLists())
    printChain(*sheet, *list, list->items);
  std::cout << unsatisfiedCountText(checkAllPrereq(*sheet).size()) << '\n';
  return 0;
}

}  // namespace zv::cli
