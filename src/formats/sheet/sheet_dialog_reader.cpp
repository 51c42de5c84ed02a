// The dialog block of the sheet grammar: the dialog's own keywords, its font list and its fields.

#include <limits>

#include "core/messages.h"
#include "core/numbers.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "formats/sheet/sheet_grammar.h"

namespace zv {

namespace {

bool isFieldKind(int id) {
  switch (id) {
    case kText:
    case kGroupbox:
    case kFormula:
    case kEdittext:
    case kCheckbox:
    case kEditvar:
    case kCombobox:
    case kList:
    case kPicture:
    case kButton:
    case kDispbm:
      return true;
    default:
      return false;
  }
}

/// A picture block larger than this is refused as unallocatable.
constexpr std::int32_t kMaxPictureBytes = 64 * 1024 * 1024;
/// The longest value of a combobox entry that becomes the variable's expression.
constexpr std::size_t kComboValueLength = 127;

/// The value of entry `index` of a combobox's "label;value;label;value" text; nullopt when the
/// entry doesn't exist.
std::optional<std::string> comboValue(std::string_view choices, long index) {
  if (index < 0) return std::nullopt;
  std::vector<std::string> pieces = split(choices, ';');
  const std::size_t at = static_cast<std::size_t>(index) * 2 + 1;
  if (at >= pieces.size()) return std::nullopt;
  std::string value = pieces[at];
  if (value.size() > kComboValueLength) value.resize(kComboValueLength);
  return value;
}

}  // namespace

bool SheetGrammar::readDialogBlock(DlgInfo& dialog) {
  auto generalFailure = [&] {
    if (reported_) return false;
    return fail(
        strprintf("Error reading dialog definition %s (%s)", dialog.name.str(), lastToken_));
  };
  if (!readWord(dialog.name) || !readCoordX(dialog.width) || !readCoordY(dialog.height))
    return generalFailure();
  for (;;) {
    SheetToken token = next();
    if (token.failed()) return false;
    if (token.closesBlock()) return true;
    bool ok = true;
    std::int32_t number = 0;
    switch (token.id) {
      case kLoc:
        ok = readCoordX(dialog.x) && readCoordY(dialog.y);
        break;
      case kOpen:
        dialog.setOpen(true);
        break;
      case kFont:
        dialog.font.fontCharset = 0;
        dialog.font.fontPitch = 0;
        ok = readWord(dialog.font.fontFace) && readInt(dialog.font.fontSize);
        break;
      case kCharset:
        ok = readInt(dialog.font.fontCharset);
        break;
      case kPitch:
        ok = readInt(dialog.font.fontPitch);
        break;
      case kFontcolor:
        ok = readLong(number);
        dialog.font.fontColor = static_cast<std::uint32_t>(number);
        break;
      case kFontlist:
        ok = readFontList(dialog);
        break;
      case kMenuchar:
        ok = readWord(dialog.menuChar);
        break;
      case kCheckexp:
        ok = readText(dialog.checkExp);
        break;
      case kCheckmsg:
        ok = readText(dialog.checkMsg);
        break;
      case kDefcheckexp:
        ok = readText(dialog.defCheckExp);
        break;
      case kDefcheckmsg:
        ok = readText(dialog.defCheckMsg);
        break;
      case kSkin:
        ok = readText(dialog.skin);
        break;
      case kBgcolor:
        ok = readLong(number);
        dialog.bgColor = static_cast<std::uint32_t>(number);
        dialog.setHasBgColor(true);
        break;
      case kHelp:
        ok = readText(dialog.help);
        break;
      default:
        ok = (token.is(kBegin) || isFieldKind(token.id)) && readField(dialog, token);
        break;
    }
    if (!ok) return generalFailure();
  }
}

bool SheetGrammar::readFontList(DlgInfo& dialog) {
  std::int16_t count = 0;
  if (!readInt(count)) return false;
  for (int i = 0; i < count; ++i) {
    FontSpec font;
    if (!readFontEntry(font)) return false;
    dialog.fonts.push_back(font);
  }
  SheetToken token = next();
  if (token.failed()) return false;
  if (!token.is(kEnd)) {
    showError("Missing end for fontlist");
    // The token belongs to the dialog.
    pushBack(std::move(token));
  }
  return true;
}

bool SheetGrammar::readFontEntry(FontSpec& font) {
  for (;;) {
    SheetToken token = next();
    if (token.failed() || token.atEnd()) return false;
    std::int32_t color = 0;
    switch (token.id) {
      case kEnd:
        return true;
      case kFont:
        if (!readWord(font.fontFace) || !readInt(font.fontSize)) return false;
        break;
      case kCharset:
        if (!readInt(font.fontCharset)) return false;
        break;
      case kPitch:
        if (!readInt(font.fontPitch)) return false;
        break;
      case kFontcolor:
        if (!readLong(color)) return false;
        font.fontColor = static_cast<std::uint32_t>(color);
        break;
      default:
        showError(strprintf("Unknown keyword in dialog item font list: %s", token.text));
        break;
    }
  }
}

bool SheetGrammar::readField(DlgInfo& dialog, const SheetToken& start) {
  const bool wrapped = start.is(kBegin);
  SheetToken kind = start;
  if (wrapped) {
    kind = next();
    if (kind.failed()) return false;
  }
  if (!isFieldKind(kind.id)) return fail(strprintf("Unexpected keyword: %d", kind.id));
  auto fresh = std::make_unique<DlgItem>();
  fresh->kind = kind.id;
  DlgItem& field = dialog.appendItem(std::move(fresh));
  if (!readText(field.text) || !readCoordX(field.x) || !readCoordY(field.y) ||
      !readCoordX(field.width) || !readCoordY(field.height))
    return false;
  if (field.kind == kText || field.kind == kFormula) {
    SheetToken justify = next();
    if (!justify.is(kLeft) && !justify.is(kRight) && !justify.is(kCenter)) return false;
    field.justify = justify.id;
  }
  if (!readFieldKind(field)) return false;
  return !wrapped || readFieldTail(field);
}

bool SheetGrammar::readFieldKind(DlgItem& field) {
  switch (field.kind) {
    case kText:
    case kGroupbox:
      return true;
    case kFormula:
      if (!readText(field.varName)) return false;
      defineFieldVariable(field, field.text);
      return true;
    case kEdittext:
      return readText(field.varName);
    case kCheckbox:
      if (!readText(field.varName) || !readInt(field.checked)) return false;
      defineFieldVariable(field, strprintf("%d", static_cast<int>(field.checked)));
      return true;
    case kEditvar:
      if (!readEditVarKeywords(field)) return false;
      if (field.forceConst() && options_.symbols != nullptr) {
        std::string error;
        std::optional<std::string> value =
            options_.symbols->evaluateText(sheet_, field.text, error);
        if (value) {
          field.text = std::move(*value);
        } else {
          showError(strprintf("Can't define %s: %s", field.varName, error));
        }
      }
      defineFieldVariable(field, field.text);
      return true;
    case kCombobox: {
      SheetToken token = next();
      if (token.is(kSort)) {
        field.setSorted(true);
        token = next();
      }
      if (token.failed() || token.atEnd()) return false;
      field.varName = std::move(token.text);
      if (!readText(field.choices)) return false;
      field.selectedIndex = static_cast<std::int32_t>(leadingInteger(field.text));
      std::optional<std::string> value = comboValue(field.choices, field.selectedIndex);
      if (!value) return false;
      defineFieldVariable(field, *value);
      return true;
    }
    case kList: {
      // The head is the variable: the total variable of the field's own list.
      field.varName = std::move(field.text);
      field.text.clear();
      SheetToken token = next();
      if (!token.is(kList)) return false;
      field.listField = std::make_unique<ListInfo>();
      field.listField->owner = &sheet_;
      field.listField->setInUse(true);
      if (!readListBlock(*field.listField)) return false;
      field.symbol = field.listField->totalSymbol;
      return true;
    }
    case kPicture: {
      // The head is the field's own name.
      field.varName = std::move(field.text);
      field.text.clear();
      std::int32_t length = 0;
      if (!readLong(length)) return false;
      if (length < 0 || length > kMaxPictureBytes) return fail("Can't allocate memory for picture");
      if (length > 0 &&
          in_.readBytes(field.pictureData, static_cast<std::size_t>(length)) != kTokenOk)
        return false;
      if (length > 0 && options_.decodePicture)
        field.picture = options_.decodePicture(field.varName, field.pictureData);
      return true;
    }
    case kButton:
      if (!readText(field.varName) || !readText(field.script) || !readText(field.buttonText1) ||
          !readText(field.buttonText2))
        return false;
      defineFieldVariable(field, "0");
      return true;
    case kDispbm: {
      std::int16_t count = 0;
      if (!readText(field.varName) || !readInt(count)) return false;
      for (int i = 0; i < count; ++i) {
        std::string name;
        if (!readText(name)) return false;
        field.pictureNames.push_back(std::move(name));
      }
      defineFieldVariable(field, field.text);
      return true;
    }
    default:
      return fail(strprintf("Bad case (%d) reading dialog field definition", field.kind));
  }
}

// The keywords of an `editvar` before its variable name. The name is read by the keyword reader:
// the first token that isn't one of these keywords is the name.
bool SheetGrammar::readEditVarKeywords(DlgItem& field) {
  for (;;) {
    SheetToken token = next();
    if (token.failed() || token.atEnd()) return false;
    bool ok = true;
    switch (token.id) {
      case kCheckexp:
        ok = readText(field.checkExp);
        break;
      case kCheckmsg:
        ok = readText(field.checkMsg);
        break;
      case kDefault:
        ok = readText(field.defaultExp);
        break;
      case kForceconst:
        field.setForceConst(true);
        break;
      case kFormat:
        ok = readText(field.format);
        break;
      case kFormula:
        ok = readText(field.formula);
        break;
      case kNoborder:
        field.setNoBorder(true);
        break;
      default:
        field.varName = std::move(token.text);
        return true;
    }
    if (!ok) return false;
  }
}

bool SheetGrammar::readFieldTail(DlgItem& field) {
  for (;;) {
    SheetToken token = next();
    if (token.failed()) return false;
    if (token.closesBlock()) return true;
    std::int32_t color = 0;
    bool ok = true;
    switch (token.id) {
      case kBgcolor:
        ok = readLong(color);
        field.bgColor = static_cast<std::uint32_t>(color);
        field.setHasBgColor(true);
        break;
      case kNoborder:
        field.setNoBorder(true);
        break;
      case kScript:
        ok = readText(field.script);
        break;
      case kFontindex:
        ok = readInt(field.fontIndex);
        break;
      case kFontexp:
        ok = readText(field.fontExp);
        break;
      case kTransparent:
        field.setTransparent(true);
        break;
      default:
        return fail(strprintf("Unexpected keyword reading dialog item: %d", token.id));
    }
    if (!ok) return false;
  }
}

void SheetGrammar::defineFieldVariable(DlgItem& field, std::string_view expression) {
  SheetSymbolBinder* symbols = options_.symbols;
  if (symbols == nullptr) return;
  SheetSymbolBinder::Result result = symbols->defineVariable(sheet_, field.varName, expression);
  if (result.ok) {
    field.symbol = result.symbol;
  } else {
    showError(strprintf("Can't define %s: %s", field.varName, result.error));
  }
}

}  // namespace zv
