#include "core/dialog.h"

namespace zv {

std::unique_ptr<DlgItem> DlgItem::clone() const {
  auto copy = std::make_unique<DlgItem>();
  copy->kind = kind;
  copy->justify = justify;
  copy->checked = checked;
  copy->x = x;
  copy->y = y;
  copy->width = width;
  copy->height = height;
  copy->flags = flags;
  copy->varName = varName;
  copy->text = text;
  copy->defaultExp = defaultExp;
  copy->checkExp = checkExp;
  copy->checkMsg = checkMsg;
  copy->script = script;
  copy->fontIndex = fontIndex;
  copy->fontExp = fontExp;
  copy->bgColor = bgColor;
  if (listField) copy->listField = listField->clone();
  copy->choices = choices;
  copy->selectedIndex = selectedIndex;
  copy->pictureData = pictureData;
  copy->picture = picture;
  copy->buttonText1 = buttonText1;
  copy->buttonText2 = buttonText2;
  copy->pictureNames = pictureNames;
  copy->format = format;
  copy->formula = formula;
  return copy;
}

DlgItem& DlgInfo::appendItem(std::unique_ptr<DlgItem> item) {
  item->owner = this;
  if (item->listField) {
    item->listField->owner = owner;
    for (auto& member : item->listField->items) {
      member->bindTo(owner, item->listField.get(), nullptr, 0);
    }
  }
  items.push_back(std::move(item));
  return *items.back();
}

std::unique_ptr<DlgInfo> DlgInfo::clone() const {
  auto copy = std::make_unique<DlgInfo>();
  copy->flags = flags;
  copy->owner = owner;
  copy->x = x;
  copy->y = y;
  copy->name = name;
  copy->help = help;
  copy->menuChar = menuChar;
  copy->font = font;
  copy->width = width;
  copy->height = height;
  copy->fonts = fonts;
  copy->items.reserve(items.size());
  for (const auto& item : items)
    copy->appendItem(item->clone());
  copy->checkExp = checkExp;
  copy->checkMsg = checkMsg;
  copy->defCheckExp = defCheckExp;
  copy->defCheckMsg = defCheckMsg;
  copy->skin = skin;
  copy->bgColor = bgColor;
  return copy;
}

}  // namespace zv
