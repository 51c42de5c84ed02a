#include "ui/field_values.h"

#include <algorithm>

#include "core/list_total.h"
#include "core/messages.h"
#include "core/numbers.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "core/undo.h"
#include "expr/compiler.h"
#include "expr/expr_error.h"
#include "expr/symbols.h"
#include "formats/tokens/keywords.h"
#include "rules/value/tokens.h"
#include "ui/engine_edits.h"

namespace zv::ui {

namespace {

constexpr std::size_t kCheckCopyLimit = 255;
constexpr std::size_t kFormatCopyLimit = 511;
constexpr std::size_t kMaxInputValues = 10;
constexpr std::size_t kMaxValueLength = 15;
constexpr std::size_t kComboValueLimit = 127;

std::string cut(std::string_view text, std::size_t limit) {
  return std::string(text.substr(0, std::min(text.size(), limit)));
}

bool isValueChar(unsigned char c) {
  return (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.' || (c >= 188 && c <= 190);
}

bool isPlainNumberText(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return (c >= '0' && c <= '9') || c == '-' || c == '.'; });
}

void showUninterpretable(std::string_view text) {
  showTitled(Severity::Error, "Uninterpretable Value",
             strprintf("The value entered (%s) cannot be interpreted. Enter a number or valid "
                       "expression.\r\n\r\n(Cause: %s)",
                       std::string(text), expressionErrorText()));
}

// A message that begins with "$" is an expression in which x stands for the value; its result is
// the message. A failing expression leaves the message as written.
std::string expandCheckMessage(FileInfo& sheet, const std::string& message, std::string_view text) {
  if (message.empty() || message.front() != '$') return message;
  Value result;
  std::string expression = replaceWord(std::string_view(message).substr(1), "x", text);
  if (parseExp(sheet.symbols.get(), expression, result) != 0) return message;
  return valueToText(result);
}

void beep(FieldContext& context) {
  if (context.beep) context.beep();
}

bool askAcceptance(FieldContext& context, const std::string& message) {
  bool disallow = context.preferences.disallowIfNotSatisfied;
  if (context.memory == nullptr) {
    AcceptanceMemory once;
    return once.accept(context.control, message, disallow);
  }
  return context.memory->accept(context.control, message, disallow);
}

// Puts the field's own text back as its variable's expression, after a refused value.
void restoreExpression(FileInfo& sheet, DlgItem& field) {
  if (field.symbol == nullptr) return;
  storeExpression(sheet, *field.symbol, field.text.empty() ? std::string_view("0") : field.text);
}

FieldOutcome refused(bool rejected) {
  FieldOutcome outcome;
  outcome.rejected = rejected;
  outcome.restoreDisplay = true;
  return outcome;
}

FieldOutcome storeEditVariable(FileInfo& sheet, DlgItem& field, std::string_view typed,
                               FieldInput input, FieldContext& context) {
  DlgInfo* dialog = field.owner;
  const std::string& checkExp =
      !field.checkExp.empty() || dialog == nullptr ? field.checkExp : dialog->defCheckExp;
  const std::string& checkMsg =
      !field.checkMsg.empty() || dialog == nullptr ? field.checkMsg : dialog->defCheckMsg;

  std::string text(typed);
  if (input == FieldInput::Typed && !field.format.empty()) {
    std::optional<std::string> converted = convertInput(sheet, field, text);
    if (!converted) return {};
    text = *converted;
  }

  if (input == FieldInput::Typed && context.preferences.checkWhenAdding && !checkExp.empty()) {
    std::string tested = text.empty() ? std::string("0") : text;
    std::string expression = replaceWord(cut(checkExp, kCheckCopyLimit), "x", tested);
    Value result;
    if (parseExp(sheet.symbols.get(), expression, result) != 0) {
      showError(strprintf("Bad check expression in %s", field.varName));
      return {};
    }
    if (valueToInteger(result) == 0) {
      if (context.preferences.noBadValueDialog) {
        beep(context);
        return refused(false);
      }
      std::string message =
          !checkMsg.empty()
              ? checkMsg
              : strprintf("The value entered (%s) is not in the acceptable range for %s.", text,
                          field.varName);
      if (!askAcceptance(context, expandCheckMessage(sheet, message, text))) return refused(true);
    }
  }

  if (field.symbol != nullptr) {
    // An empty field holds 0; its text stays empty.
    if (storeExpression(sheet, *field.symbol, text.empty() ? std::string("0") : text) != 0) {
      showUninterpretable(text);
      restoreExpression(sheet, field);
      return refused(false);
    }
    if (field.forceConst()) {
      Value value = field.symbol->value;
      storeConstant(sheet, *field.symbol, value);
      text = cut(valueToText(value), kForcedTextLimit);
    }
  }
  if (dialog != nullptr && !checkDialog(sheet, *dialog, context)) {
    restoreExpression(sheet, field);
    FieldOutcome outcome;
    outcome.rejected = true;
    return outcome;
  }
  field.text = text;
  setChanged(sheet, true, kUndoFieldValue);
  FieldOutcome outcome;
  outcome.stored = true;
  return outcome;
}

int findComboLabel(const std::vector<ComboEntry>& entries, std::string_view label) {
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (equalsIgnoringCase(entries[i].label, label)) return static_cast<int>(i);
  }
  return -1;
}

}  // namespace

bool AcceptanceMemory::accept(const void* control, const std::string& message, bool disallow) {
  if (disallow) {
    askQuestion("Unacceptable Value", message, ButtonSet::Ok);
    return false;
  }
  if (control != control_) {
    accepted_.clear();
    control_ = control;
  }
  if (std::find(accepted_.begin(), accepted_.end(), message) != accepted_.end()) return true;
  if (askQuestion("Unacceptable Value", message, ButtonSet::OkCancel) != Button::Ok) return false;
  accepted_.push_back(message);
  return true;
}

std::string displayText(FileInfo& sheet, const DlgItem& field) {
  if (field.symbol == nullptr) return field.kind == kEditvar ? field.text : std::string();
  std::string text = valueToText(field.symbol->value);
  if (field.kind == kEditvar && !field.format.empty()) {
    std::string expression = replaceWord(cut(field.format, kFormatCopyLimit), "x", text);
    Value shown;
    if (parseExp(sheet.symbols.get(), expression, shown) == 0 && shown.isString())
      return cut(shown.text(), kDisplayTextLimit);
  }
  return cut(text, kDisplayTextLimit);
}

std::optional<std::string> convertInput(FileInfo& sheet, const DlgItem& field,
                                        std::string_view input) {
  if (field.format.empty()) return std::string(input);
  std::vector<std::string> values;
  for (std::size_t i = 0; i < input.size();) {
    if (!isValueChar(static_cast<unsigned char>(input[i]))) {
      ++i;
      continue;
    }
    std::size_t end = i;
    while (end < input.size() && isValueChar(static_cast<unsigned char>(input[end])))
      ++end;
    if (values.size() == kMaxInputValues) {
      showTitled(Severity::Error, "Error", "Too many values in dialog item formula");
      return std::nullopt;
    }
    if (end - i > kMaxValueLength) {
      showTitled(Severity::Error, "Error", "Value too long");
      return std::nullopt;
    }
    std::string_view piece = input.substr(i, end - i);
    Value value;
    if (parseExp(sheet.symbols.get(), piece, value) != 0) {
      showUninterpretable(piece);
      return std::nullopt;
    }
    values.push_back(valueToText(value));
    i = end;
  }
  if (values.empty()) return std::string("0");
  if (field.formula.empty()) return values.front();

  std::string expanded;
  const std::string& formula = field.formula;
  for (std::size_t i = 0; i < formula.size(); ++i) {
    char c = formula[i];
    if (c == '$') {
      char next = i + 1 < formula.size() ? formula[i + 1] : '\0';
      if (next < '0' || next > '9') {
        showTitled(Severity::Error, "Error", strprintf("Bad argument number: $%c.", next));
        return std::nullopt;
      }
      // $1 is the first value; a value not given (and $0) reads "0".
      std::size_t n = static_cast<std::size_t>(next - '0');
      expanded += n >= 1 && n <= values.size() ? values[n - 1] : std::string("0");
      ++i;
    } else if (c == '\\') {
      if (i + 1 >= formula.size()) {
        showTitled(Severity::Error, "Error", "Missing escaped character");
        return std::nullopt;
      }
      expanded += formula[++i];
    } else {
      expanded += c;
    }
    if (expanded.size() > kFormatCopyLimit) {
      showTitled(Severity::Error, "Error", "String length exceeded in extracted value.");
      return std::nullopt;
    }
  }
  Value result;
  if (parseExp(sheet.symbols.get(), expanded, result) != 0) {
    showUninterpretable(expanded);
    return std::nullopt;
  }
  return valueToText(result);
}

FieldOutcome setFieldValue(FileInfo& sheet, DlgItem& field, std::string_view text, FieldInput input,
                           FieldContext& context) {
  FieldOutcome done;
  done.stored = true;
  switch (field.kind) {
    case kCheckbox: {
      std::int32_t state = leadingInteger(text) != 0 ? 1 : 0;
      if (field.symbol != nullptr) storeConstant(sheet, *field.symbol, Value(state));
      field.checked = static_cast<std::int16_t>(state);
      setChanged(sheet, true);
      return done;
    }
    case kEdittext:
      if (text == field.text) return done;
      field.text = std::string(text);
      setChanged(sheet, true, kUndoFieldValue);
      return done;
    case kEditvar:
      if (isPlainNumberText(text) && text == field.text) return done;
      return storeEditVariable(sheet, field, text, input, context);
    case kCombobox: {
      std::optional<std::vector<ComboEntry>> entries = parseComboEntries(field.choices);
      int index = entries ? findComboLabel(*entries, text) : -1;
      if (index < 0) {
        showTitled(Severity::Error, "Set Error",
                   strprintf("Unable to set the value of combo box %s. to %s", field.varName,
                             std::string(text)));
        return {};
      }
      if (!chooseComboEntry(sheet, field, index, context)) return {};
      return done;
    }
    default:
      showError(strprintf("Internal error: edited wrong type (%d)", static_cast<int>(field.kind)));
      return {};
  }
}

bool checkDialog(FileInfo& sheet, DlgInfo& dialog, FieldContext& context) {
  if (!context.preferences.checkWhenAdding || dialog.checkExp.empty()) return true;
  Value result;
  if (parseExp(sheet.symbols.get(), dialog.checkExp, result) != 0) {
    showError(strprintf("Error in check expression for dialog %s", dialog.checkExp));
    return false;
  }
  if (valueToDouble(result) != 0.0) return true;
  if (context.preferences.noBadValueDialog) {
    beep(context);
    return false;
  }
  std::string message =
      dialog.checkMsg.empty() ? "The requirements are not met by this value" : dialog.checkMsg;
  bool accepted = askAcceptance(context, expandCheckMessage(sheet, message, ""));
  return accepted && !context.preferences.disallowIfNotSatisfied;
}

std::optional<std::vector<ComboEntry>> parseComboEntries(std::string_view choices) {
  std::vector<ComboEntry> entries;
  std::size_t i = 0;
  while (i < choices.size()) {
    std::size_t labelEnd = choices.find(';', i);
    if (labelEnd == std::string_view::npos) return std::nullopt;
    std::size_t valueEnd = choices.find(';', labelEnd + 1);
    if (valueEnd == std::string_view::npos) valueEnd = choices.size();
    entries.push_back(
        {std::string(choices.substr(i, labelEnd - i)),
         cut(choices.substr(labelEnd + 1, valueEnd - labelEnd - 1), kComboValueLimit)});
    i = valueEnd + 1;
  }
  return entries;
}

bool chooseComboEntry(FileInfo& sheet, DlgItem& field, int index, FieldContext& context) {
  std::optional<std::vector<ComboEntry>> entries = parseComboEntries(field.choices);
  if (!entries || index < 0 || static_cast<std::size_t>(index) >= entries->size()) return false;
  const std::string& value = (*entries)[static_cast<std::size_t>(index)].value;
  auto putBack = [&] {
    std::size_t old = static_cast<std::size_t>(field.selectedIndex);
    if (field.symbol != nullptr && old < entries->size())
      storeExpression(sheet, *field.symbol, (*entries)[old].value);
  };
  if (field.symbol != nullptr && storeExpression(sheet, *field.symbol, value) != 0) {
    reportExpressionError(value);
    putBack();
    return false;
  }
  if (field.owner != nullptr && !checkDialog(sheet, *field.owner, context)) {
    putBack();
    return false;
  }
  field.selectedIndex = index;
  field.text = strprintf("%d", index);
  setChanged(sheet, true);
  return true;
}

bool clickCheckbox(FileInfo& sheet, DlgItem& field, bool checked, FieldContext& context) {
  std::int32_t state = checked ? 1 : 0;
  if (state == field.checked) return true;
  if (field.symbol != nullptr) storeConstant(sheet, *field.symbol, Value(state));
  if (field.owner != nullptr && !checkDialog(sheet, *field.owner, context)) {
    if (field.symbol != nullptr) storeConstant(sheet, *field.symbol, Value(field.checked));
    return false;
  }
  field.checked = static_cast<std::int16_t>(state);
  setChanged(sheet, true);
  return true;
}

bool showsDefaultFont(const DlgItem& field) {
  return field.kind == kEditvar && !field.defaultExp.empty() &&
         equalsIgnoringCase(field.text, field.defaultExp);
}

bool takesInput(int kind) {
  return kind == kList || kind == kCheckbox || kind == kEdittext || kind == kEditvar ||
         kind == kCombobox || kind == kButton;
}

FieldValueUndo::FieldValueUndo(DlgItem& field, std::function<void(DlgItem&)> show)
    : field_(field), show_(std::move(show)) {
  // A variable field goes back to what was typed; when its input went through a format and
  // formula, or nothing typed is known, to the value it had.
  const bool typedText = !field.text.empty() && field.format.empty();
  oldText_ = field.kind == kEditvar && field.symbol != nullptr && !typedText
                 ? valueToText(field.symbol->value)
                 : field.text;
}

bool FieldValueUndo::apply(FileInfo& fileInfo) {
  FieldContext quiet;
  const FieldOutcome outcome =
      setFieldValue(fileInfo, field_, oldText_, FieldInput::Restored, quiet);
  if (show_) show_(field_);
  return outcome.stored;
}

bool fieldEditIsUndoable(const DlgItem& field) {
  return field.kind == kEdittext || field.kind == kEditvar;
}

}  // namespace zv::ui
