#include <iostream>

#include "cli/commands.h"
#include "cli/open_sheet.h"
#include "core/game_systems.h"
#include "core/messages.h"
#include "core/strfmt.h"
#include "formats/file_recognition.h"
#include "formats/sheet_document.h"
#include "rules/lists/list_ops.h"
#include "rules/lists/place_item.h"

namespace zv::cli {

namespace {

struct AddArguments {
  std::vector<std::string> words;  // SHEET LIST ITEM
  std::string category;
  std::string level;
  bool hasLevel = false;
  std::string output;
};

/// The sheet to add to: a template written to a ".chr" becomes a new character sheet made from
/// it, as File | New does; anything else opens as it is.
std::unique_ptr<FileInfo> openForAdding(const Context& context, const std::string& path,
                                        const std::string& output) {
  if (!output.empty() && fileTypeForOutput(output, 0) == kFileCharacterSheet &&
      recogniseFile(path).code == kFileCharacterTemplate) {
    DocumentContext document;
    document.dataDir = context.dataDir();
    return newSheetFromTemplate(path, kFileCharacterSheet, document);
  }
  return openSheet(path);
}

}  // namespace

// add SHEET LIST ITEM [--category CAT] [--level L] [-o OUT]: takes the master item ITEM of the
// list's category (or CAT) from the loaded data sheets, places a copy at the end of LIST as the
// program does (its automatic items run, their questions answered from --answers), and saves.
int runAdd(Context& context, const std::vector<std::string>& args) {
  AddArguments parsed;
  for (std::size_t i = 0; i < args.size(); ++i) {
    const std::string& arg = args[i];
    auto value = [&](std::string& into) {
      if (i + 1 >= args.size()) return false;
      into = args[++i];
      return true;
    };
    if (arg == "-o" || arg == "--output") {
      if (!value(parsed.output)) return usageError("-o needs a file name");
    } else if (arg == "--category") {
      if (!value(parsed.category)) return usageError("--category needs a category name");
    } else if (arg == "--level") {
      if (!value(parsed.level)) return usageError("--level needs a level");
      parsed.hasLevel = true;
    } else {
      parsed.words.push_back(arg);
    }
  }
  if (parsed.words.size() != 3) return usageError("add takes a sheet, a list and an item");
  const std::string& path = parsed.words[0];
  const std::string& listName = parsed.words[1];
  const std::string& itemName = parsed.words[2];

  std::unique_ptr<FileInfo> sheet = openForAdding(context, path, parsed.output);
  if (!sheet) return 1;
  ListInfo* list = findListByName(*sheet, listName);
  if (list == nullptr) {
    showError(strprintf("List %s not found.", listName));
    return 1;
  }
  const std::string categoryName = parsed.category.empty() ? list->catName.str() : parsed.category;
  Category* category = categoryFind(*sheet, categoryName);
  if (category == nullptr) {
    showError(strprintf("Category '%s' doesn't exist (specified for list '%s').", categoryName,
                        list->name.str()));
    return 1;
  }
  const Item* master = category->findItem(itemName);
  if (master == nullptr) {
    showError(strprintf("Item '%s' not found in category '%s'.", itemName, categoryName));
    return 1;
  }
  std::unique_ptr<Item> copy = master->clone();
  copy->autoID = 0;
  copy->autoParent = 0;
  if (parsed.hasLevel) copy->level = parsed.level;
  if (!equalsIgnoringCase(categoryName, list->catName.str())) copy->origCat = categoryName;

  const PlaceResult placed = placeItem(*sheet, *list, std::move(copy), Placement::appendTo());
  if (placed.status == PlaceStatus::Cancelled) {
    std::cerr << "zarvelin-cli: the add was cancelled; nothing was saved\n";
    return 1;
  }
  if (placed.status != PlaceStatus::Placed) return 1;
  const std::string target = parsed.output.empty() ? path : parsed.output;
  return saveOpenedSheet(context, *sheet, target, fileTypeForOutput(target, sheet->fileType)) ? 0
                                                                                              : 1;
}

}  // namespace zv::cli
