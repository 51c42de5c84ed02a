#include "cli/commands.h"
#include "cli/open_sheet.h"
#include "core/messages.h"
#include "core/strfmt.h"
#include "rules/lists/list_ops.h"
#include "rules/lists/list_undo.h"

namespace zv::cli {

// delete SHEET LIST ITEM [-o OUT]: deletes the first element of LIST named ITEM (sublists
// searched depth first) with the items it added automatically, in every list, and saves.
int runDelete(Context& context, const std::vector<std::string>& args) {
  std::vector<std::string> words;
  std::string output;
  if (!splitOutputOption(args, words, output)) return 2;
  if (words.size() != 3) return usageError("delete takes a sheet, a list and an item");

  std::unique_ptr<FileInfo> sheet = openSheet(words[0]);
  if (!sheet) return 1;
  ListInfo* list = findListByName(*sheet, words[1]);
  if (list == nullptr) {
    showError(strprintf("List %s not found.", words[1]));
    return 1;
  }
  Item* item = findItemInSublists(*list, words[2]);
  if (item == nullptr) {
    showError(strprintf("Item %s:%s not found.", words[1], words[2]));
    return 1;
  }
  if (!deleteItems(*sheet, *list, {item}, false, context.appSettings().maxUndo).deleted) return 1;
  const std::string target = output.empty() ? words[0] : output;
  return saveOpenedSheet(context, *sheet, target, fileTypeForOutput(target, sheet->fileType)) ? 0
                                                                                              : 1;
}

}  // namespace zv::cli
