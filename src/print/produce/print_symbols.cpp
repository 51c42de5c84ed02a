#include "print/produce/print_symbols.h"

#include "core/dialog.h"
#include "core/fileinfo.h"
#include "core/item.h"
#include "core/text.h"

namespace zv {

namespace {

int countItems(const ItemChain& chain) {
  int count = 0;
  for (const auto& item : chain)
    count += item->children.empty() ? 1 : countItems(item->children);
  return count;
}

const ListInfo* findList(const FileInfo& sheet, std::string_view name) {
  for (const ListInfo* list : sheet.allLists())
    if (startsWithIgnoringCase(list->name.str(), name)) return list;
  return nullptr;
}

bool fieldValue(const FileInfo& sheet, std::string_view dialog, std::string_view field,
                Value& out) {
  for (const auto& dlg : sheet.dlgs) {
    if (!equalsIgnoringCase(dlg->name.str(), dialog)) continue;
    for (const auto& item : dlg->items) {
      if (!equalsIgnoringCase(item->varName, field)) continue;
      if (!item->pictureData.empty() || item->picture) {
        out.setInteger(1);
      } else if (item->symbol) {
        const Value& value = item->symbol->value;
        if (value.isString())
          out.setInteger(value.text().empty() ? 0 : 1);
        else
          out = value;
      } else {
        out.setInteger(item->text.empty() ? 0 : 1);
      }
      return true;
    }
  }
  return false;
}

}  // namespace

bool printSymbolValue(const FileInfo& sheet, std::string_view name, Value& out) {
  if (name.size() < 2 || name[0] != '@') return false;
  std::string_view rest = name.substr(1);
  if (const ListInfo* list = findList(sheet, rest)) {
    out.setInteger(countItems(list->items));
    return true;
  }
  if (equalsIgnoringCase(rest, "notes")) {
    out.setInteger(sheet.notes.empty() ? 0 : 1);
    return true;
  }
  if (equalsIgnoringCase(rest, "details")) {
    out.setInteger(sheet.richText.empty() ? 0 : 1);
    return true;
  }
  if (auto dot = rest.find('.'); dot != std::string_view::npos)
    return fieldValue(sheet, rest.substr(0, dot), rest.substr(dot + 1), out);
  return false;
}

PrintSymbolHook::PrintSymbolHook(FileInfo* sheet) : sheet_(sheet) {
  if (!sheet_ || !sheet_->symbols) return;
  previous_ = sheet_->symbols->resolver();
  SymbolTable::Resolver chained = previous_;
  FileInfo* owner = sheet_;
  sheet_->symbols->setResolver([owner, chained](std::string_view name, Value& out) {
    if (printSymbolValue(*owner, name, out)) return true;
    return chained ? chained(name, out) : false;
  });
}

PrintSymbolHook::~PrintSymbolHook() {
  if (sheet_ && sheet_->symbols) sheet_->symbols->setResolver(previous_);
}

}  // namespace zv
