#include <iostream>

#include "cli/commands.h"
#include "cli/open_sheet.h"
#include "core/codepage.h"
#include "core/engine_context.h"
#include "core/messages.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "expr/builtins_items.h"
#include "rules/selection/rule_library.h"
#include "rules/selection/select_item.h"

namespace zv::cli {

namespace {

/// The list of the sheet by its whole name (ignoring case), else the first whose name starts
/// with it.
ListInfo* findSheetList(const FileInfo& sheet, std::string_view name) {
  for (ListInfo* list : sheet.allLists()) {
    if (equalsIgnoringCase(list->name.str(), name)) return list;
  }
  return findListByPrefix(sheet, name);
}

}  // namespace

// offer SHEET LIST [--category CAT] [--rules SET]: the items the Select Item dialog would offer
// the list, one per line, members of groups indented by two blanks a level. The sheet's rule
// sets apply under the ApplyRules preference; --rules names the sets to apply instead (and
// applies them whatever the preference says; "(None)" for none).
int runOffer(Context& context, const std::vector<std::string>& args) {
  std::vector<std::string> positional;
  std::optional<std::string> category;
  std::optional<std::string> rules;
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (args[i] == "--category" || args[i] == "--rules") {
      if (i + 1 >= args.size()) return usageError(args[i] + " needs a value");
      (args[i] == "--category" ? category : rules) = utf8ToWindows1252(args[i + 1]);
      ++i;
    } else {
      positional.push_back(args[i]);
    }
  }
  if (positional.size() != 2) return usageError("offer takes a sheet and a list");

  std::unique_ptr<FileInfo> sheet = openSheet(positional[0]);
  if (!sheet) return 1;
  const std::string listName = utf8ToWindows1252(positional[1]);
  ListInfo* list = findSheetList(*sheet, listName);
  if (list == nullptr) {
    showError(strprintf("'%s' is not a list name.", listName));
    return 1;
  }
  RuleLibrary& library = selectionRules();
  library.scanRuleFiles(context.dataDir());
  if (rules) {
    sheet->ruleSet = *rules;
    engine().preferences.applyRules = true;
  }

  ItemSelection selection;
  if (!selection.open(SelectionRequest{sheet.get(), list, nullptr, false, false, &library})) {
    return 1;
  }
  if (category && !selection.chooseCategory(*category)) {
    showError(strprintf("'%s' is not a category of the %s game system.", *category,
                        sheet->gameSystemName.str()));
    return 1;
  }
  selection.checkItemsLeft();
  for (const OfferedRow& row : selection.rows()) {
    std::cout << std::string(static_cast<std::size_t>(row.depth) * 2, ' ')
              << windows1252ToUtf8(row.item->name) << '\n';
  }
  return 0;
}

}  // namespace zv::cli
