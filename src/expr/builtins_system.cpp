#include "expr/builtins_system.h"

#include <charconv>
#include <cstdint>

#include "core/dialog.h"
#include "core/engine_context.h"
#include "core/fileinfo.h"
#include "core/game_system.h"
#include "core/host.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "expr/builtins_args.h"
#include "expr/builtins_items.h"
#include "expr/symbols.h"

namespace zv {

namespace {

// Dialog field kinds: the keyword ids of the sheet file.
constexpr std::int32_t kListField = 13;
constexpr std::int32_t kTextField = 29;
constexpr std::int32_t kCheckboxField = 30;
constexpr std::int32_t kEditTextField = 31;
constexpr std::int32_t kGroupBoxField = 32;
constexpr std::int32_t kComboboxField = 54;
constexpr std::int32_t kPictureField = 84;

/// The game system name of the call's sheet; "" without one.
std::string gameSystemOf(const BuiltinCall& call) {
  const FileInfo* sheet = callSheet(call);
  if (sheet == nullptr) return {};
  if (sheet->gameSystem != nullptr) return std::string(sheet->gameSystem->name);
  return std::string(sheet->gameSystemName);
}

std::uint32_t bigEndian(std::string_view data, std::size_t at, int bytes) {
  std::uint32_t value = 0;
  for (int i = 0; i < bytes; ++i)
    value = (value << 8) | static_cast<unsigned char>(data[at + i]);
  return value;
}

std::uint32_t littleEndian(std::string_view data, std::size_t at, int bytes) {
  std::uint32_t value = 0;
  for (int i = bytes - 1; i >= 0; --i)
    value = (value << 8) | static_cast<unsigned char>(data[at + i]);
  return value;
}

/// The variable of a field: its symbol, else the variable of its name in the sheet's table (the
/// table the call runs in when the sheet has none); null when none.
const Symbol* fieldVariable(const BuiltinCall& call, const FileInfo& sheet, const DlgItem& field) {
  if (field.symbol != nullptr) return field.symbol;
  const SymbolTable& table = sheet.symbols ? *sheet.symbols : call.table;
  return table.find(field.varName);
}

/// The value of a field's variable; integer 0 when it has none.
Value variableValue(const BuiltinCall& call, const FileInfo& sheet, const DlgItem& field) {
  Value value;
  if (const Symbol* symbol = fieldVariable(call, sheet, field)) getValue(*symbol, value);
  return value;
}

/// The value of a combobox's chosen entry: its variable, else the entry's value in the
/// "label;value;label;value" text.
Value comboboxValue(const BuiltinCall& call, const FileInfo& sheet, const DlgItem& field) {
  if (fieldVariable(call, sheet, field) != nullptr) return variableValue(call, sheet, field);
  const std::vector<std::string> parts = split(field.choices, ';');
  const std::size_t at = static_cast<std::size_t>(field.selectedIndex) * 2 + 1;
  if (field.selectedIndex < 0 || at >= parts.size()) return Value(std::int32_t{0});
  return configParamValue(parts[at]);
}

}  // namespace

Value configParamValue(std::string_view text) {
  std::string packed;
  for (char c : text) {
    if (c != ' ' && c != '\t') packed += c;
  }
  const bool numeric = !packed.empty() &&
                       packed.find_first_not_of("0123456789-.") == std::string::npos &&
                       packed.find_first_of("0123456789") != std::string::npos;
  if (!numeric) return Value(std::string(text));
  if (packed.find('.') != std::string::npos) {
    double real = 0.0;
    std::from_chars(packed.data(), packed.data() + packed.size(), real);
    return Value(real);
  }
  long long whole = 0;
  std::from_chars(packed.data(), packed.data() + packed.size(), whole);
  return Value(static_cast<std::int32_t>(whole));
}

std::string pictureSizeText(std::string_view data) {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  if (data.size() >= 24 && data.substr(0, 8) == "\x89PNG\r\n\x1a\n") {
    width = bigEndian(data, 16, 4);
    height = bigEndian(data, 20, 4);
  } else if (data.size() >= 10 &&
             (data.substr(0, 6) == "GIF87a" || data.substr(0, 6) == "GIF89a")) {
    width = littleEndian(data, 6, 2);
    height = littleEndian(data, 8, 2);
  } else if (data.size() >= 26 && data.substr(0, 2) == "BM") {
    width = littleEndian(data, 18, 4);
    // A bottom-up bitmap stores a positive height, a top-down one its negative.
    const auto signedHeight = static_cast<std::int32_t>(littleEndian(data, 22, 4));
    height = static_cast<std::uint32_t>(signedHeight < 0 ? -static_cast<std::int64_t>(signedHeight)
                                                         : signedHeight);
  } else if (data.size() >= 4 && data.substr(0, 2) == "\xFF\xD8") {
    // Walk the segments to the first start-of-frame marker, which holds the size.
    std::size_t at = 2;
    while (at + 9 < data.size() && static_cast<unsigned char>(data[at]) == 0xFF) {
      const unsigned marker = static_cast<unsigned char>(data[at + 1]);
      const std::uint32_t length = bigEndian(data, at + 2, 2);
      const bool startOfFrame =
          marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
      if (startOfFrame) {
        height = bigEndian(data, at + 5, 2);
        width = bigEndian(data, at + 7, 2);
        break;
      }
      if (length < 2) break;
      at += 2 + length;
    }
  }
  return strprintf("%ux%u", width, height);
}

int builtinRolldiceText(BuiltinCall& call) {
  std::string dice;
  const auto& roll = engine().services.rollDice;
  if (!roll || !textArgument(call, 0, dice)) return 0;
  std::string result;
  if (!roll(dice, result)) result.clear();
  call.result = Value(result);
  return 0;
}

int builtinGetsourcedir(BuiltinCall& call) {
  const auto& sourceDirectory = engine().services.sourceDirectory;
  call.result = Value(sourceDirectory ? sourceDirectory() : std::string());
  return 0;
}

int builtinGetfilevalue(BuiltinCall& call) {
  std::string title;
  std::string initial;
  if (!hasArguments(call, 2) || !textArgument(call, 0, title) || !textArgument(call, 1, initial)) {
    return 0;
  }
  std::optional<std::string> value = host().enterFileValue(title, initial);
  call.result = Value(value ? *value : std::string());
  return 0;
}

int builtinConfigparam(BuiltinCall& call) {
  std::string name;
  const ConfigParamStore& store = engine().services.configParams;
  if (!hasArguments(call, 1) || !store.read || !textArgument(call, 0, name)) return 0;
  if (std::optional<std::string> text = store.read(gameSystemOf(call), trim(name))) {
    call.result = configParamValue(*text);
  }
  return 0;
}

int builtinSetconfigparam(BuiltinCall& call) {
  std::string name;
  std::string value;
  const ConfigParamStore& store = engine().services.configParams;
  if (!hasArguments(call, 2) || !store.write || !textArgument(call, 0, name) ||
      !textArgument(call, 1, value)) {
    return 0;
  }
  call.result = Value(std::int32_t{store.write(gameSystemOf(call), trim(name), value) ? 1 : 0});
  return 0;
}

int builtinDialogfieldvalue(BuiltinCall& call) {
  std::string dialogName;
  std::string fieldName;
  const FileInfo* sheet = callSheet(call);
  if (!hasArguments(call, 2) || sheet == nullptr || !textArgument(call, 0, dialogName) ||
      !textArgument(call, 1, fieldName)) {
    return 0;
  }
  for (const auto& dialog : sheet->dlgs) {
    if (!equalsIgnoringCase(std::string_view(dialog->name), trim(dialogName))) continue;
    for (const auto& field : dialog->items) {
      if (!equalsIgnoringCase(field->varName, trim(fieldName))) continue;
      switch (field->kind) {
        case kTextField:
        case kGroupBoxField:
        case kEditTextField:
          call.result = Value(field->text);
          break;
        case kCheckboxField:
          call.result = field->symbol != nullptr ? variableValue(call, *sheet, *field)
                                                 : Value(std::int32_t{field->checked});
          break;
        case kComboboxField:
          call.result = comboboxValue(call, *sheet, *field);
          break;
        case kListField:
          call.result = Value(field->listField ? field->listField->total : 0.0);
          break;
        case kPictureField:
          call.result = Value(pictureSizeText(field->pictureData));
          break;
        default:
          call.result = variableValue(call, *sheet, *field);
          break;
      }
      return 0;
    }
  }
  return 0;
}

}  // namespace zv
