// Dialogs and their fields as the sheet writer emits them.

#include <string>

#include "formats/tokens/keywords.h"
#include "formats/sheet/sheet_output.h"

namespace zv {

namespace {

// A font of a dialog or of its font list; the pitch and colour only when set.
void writeFont(SheetOut& out, const FontSpec& font) {
  out.keyword(kFont);
  out.string(font.fontFace.str());
  out.integer(font.fontSize);
  out.keywordInt(kCharset, font.fontCharset);
  if (font.fontPitch != 0) out.keywordInt(kPitch, font.fontPitch);
  if (font.fontColor != 0) out.keywordLong(kFontcolor, static_cast<std::int32_t>(font.fontColor));
}

bool fieldNeedsWrapping(const DlgItem& field) {
  return field.noBorder() || field.transparent() ||
         (!field.script.empty() && field.kind != kButton) || field.fontIndex != 0 ||
         !field.fontExp.empty() || field.hasBgColor();
}

// The head string: what the field shows or holds, by kind.
std::string fieldHead(const DlgItem& field) {
  switch (field.kind) {
    case kCombobox:
      return std::to_string(field.selectedIndex);
    case kList:
    case kPicture:
      return field.varName;
    default:
      return field.text;
  }
}

void writeFieldKind(SheetOut& out, const DlgItem& field) {
  switch (field.kind) {
    case kFormula:
    case kEdittext:
      out.string(field.varName);
      break;
    case kCheckbox:
      out.string(field.varName);
      out.integer(field.checked);
      break;
    case kEditvar:
      out.keywordText(kCheckexp, field.checkExp);
      out.keywordText(kCheckmsg, field.checkMsg);
      out.keywordText(kDefault, field.defaultExp);
      out.flag(kForceconst, field.forceConst());
      out.keywordText(kFormat, field.format);
      out.keywordText(kFormula, field.formula);
      out.string(field.varName);
      break;
    case kCombobox:
      out.flag(kSort, field.sorted());
      out.string(field.varName);
      out.string(field.choices);
      break;
    case kList:
      out.lineBreak();
      if (field.listField) {
        writeListBlock(out, *field.listField);
      } else {
        ListInfo empty;
        writeListBlock(out, empty);
      }
      break;
    case kPicture:
      out.longValue(static_cast<std::int32_t>(field.pictureData.size()));
      if (!field.pictureData.empty()) out.bytes(field.pictureData);
      break;
    case kButton:
      out.string(field.varName);
      out.string(field.script);
      out.string(field.buttonText1);
      out.string(field.buttonText2);
      break;
    case kDispbm:
      out.string(field.varName);
      out.integer(static_cast<std::int16_t>(field.pictureNames.size()));
      for (const std::string& name : field.pictureNames)
        out.string(name);
      break;
    default:  // text, groupbox
      break;
  }
}

void writeField(SheetOut& out, const DlgItem& field) {
  const bool wrapped = fieldNeedsWrapping(field);
  if (wrapped) out.keyword(kBegin);
  out.keyword(field.kind);
  out.string(fieldHead(field));
  out.coord(field.x);
  out.coord(field.y);
  out.coord(field.width);
  out.coord(field.height);
  if (field.kind == kText || field.kind == kFormula)
    out.keyword(field.justify == kRight || field.justify == kCenter ? field.justify : kLeft);
  writeFieldKind(out, field);
  if (wrapped) {
    out.flag(kNoborder, field.noBorder());
    out.flag(kTransparent, field.transparent());
    if (field.kind != kButton) out.keywordText(kScript, field.script);
    if (field.fontIndex != 0) out.keywordInt(kFontindex, field.fontIndex);
    out.keywordText(kFontexp, field.fontExp);
    if (field.hasBgColor()) out.keywordLong(kBgcolor, static_cast<std::int32_t>(field.bgColor));
    out.keyword(kEnd);
  }
  out.lineBreak();
}

}  // namespace

void writeDialogBlock(SheetOut& out, const DlgInfo& dialog) {
  auto line = [&out] { out.lineBreak(); };
  out.keyword(kDialog);
  out.string(dialog.name.str());
  out.coord(dialog.width);
  out.coord(dialog.height);
  out.keyword(kLoc);
  out.coord(dialog.x);
  out.coord(dialog.y);
  out.flag(kOpen, dialog.open());
  line();
  if (dialog.font.fontSize > 0) {
    writeFont(out, dialog.font);
    line();
  }
  if (!dialog.fonts.empty()) {
    out.keywordInt(kFontlist, static_cast<std::int16_t>(dialog.fonts.size()));
    for (const FontSpec& font : dialog.fonts) {
      writeFont(out, font);
      out.keyword(kEnd);
    }
    out.keyword(kEnd);
    line();
  }
  out.keywordText(kMenuchar, dialog.menuChar.str());
  out.keywordText(kCheckexp, dialog.checkExp);
  out.keywordText(kCheckmsg, dialog.checkMsg);
  out.keywordText(kDefcheckexp, dialog.defCheckExp);
  out.keywordText(kDefcheckmsg, dialog.defCheckMsg);
  out.keywordText(kSkin, dialog.skin);
  if (dialog.hasBgColor()) out.keywordLong(kBgcolor, static_cast<std::int32_t>(dialog.bgColor));
  out.keywordText(kHelp, dialog.help);
  line();
  for (const auto& field : dialog.items)
    writeField(out, *field);
  out.keyword(kEnd);
  line();
}

}  // namespace zv
