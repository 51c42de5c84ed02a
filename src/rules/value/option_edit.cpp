#include "rules/value/option_edit.h"

#include <algorithm>
#include <cctype>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "core/messages.h"
#include "core/strfmt.h"
#include "rules/value/option_value.h"

namespace zv {

namespace {

Option* optionAt(Item& item, std::size_t index) {
  if (index >= item.options.size()) {
    ZV_INTERNAL_ERROR();
    return nullptr;
  }
  return item.options[index].get();
}

/// Gives the option a new value and assigns the item again; refused, the old value is put back
/// (the option stays the same record, so that views holding it stay valid).
EditResult setOptionValue(FileInfo& sheet, Item& item, Option& option, std::string value) {
  std::string old = std::exchange(option.value, std::move(value));
  return reassessItem(sheet, item, [&] { option.value = std::move(old); });
}

/// A new value in its normal form, or nullopt after the message of the value.
std::optional<std::string> normalValue(Item& item, const Option& option, std::string_view text) {
  return reformatModifier(&item, option, text);
}

/// The value with its first number moved by `step`; nullopt when it holds no number.
std::optional<std::string> steppedNumber(const std::string& value, int step) {
  for (std::size_t at = 0; at < value.size(); ++at) {
    if (std::isdigit(static_cast<unsigned char>(value[at])) == 0) continue;
    std::size_t start = at;
    if (start > 0 && (value[start - 1] == '-' || value[start - 1] == '+')) --start;
    std::size_t end = at;
    while (end < value.size() && std::isdigit(static_cast<unsigned char>(value[end])) != 0)
      ++end;
    const long number = std::stol(value.substr(start, end - start)) + step;
    const bool signedBefore = value[start] == '+' || value[start] == '-';
    const std::string written = signedBefore ? strprintf("%+ld", number) : std::to_string(number);
    return value.substr(0, start) + written + value.substr(end);
  }
  return std::nullopt;
}

}  // namespace

EditResult addItemOption(FileInfo& sheet, Item& item, const Option& option) {
  if (!isOptionKind(option.kind)) {
    showError("Error: missing case adding options");
    return EditResult::Failed;
  }
  std::optional<std::string> value = normalValue(item, option, option.value);
  if (!value) return EditResult::Failed;
  item.options.push_back(std::make_unique<Option>(option));
  item.options.back()->value = *value;
  return reassessItem(sheet, item, [&] { item.options.pop_back(); });
}

EditResult changeItemOption(FileInfo& sheet, Item& item, std::size_t index,
                            std::string_view valueText) {
  Option* option = optionAt(item, index);
  if (option == nullptr) return EditResult::Failed;
  if (!isOptionKind(option->kind)) {
    showError(strprintf("Missing case (%d) in updateOptions", option->kind));
    return EditResult::Failed;
  }
  if (option->noEdit()) {
    showError(strprintf("Can't change value: %s", option->name.c_str()));
    return EditResult::Refused;
  }
  std::optional<std::string> value = normalValue(item, *option, valueText);
  if (!value) return EditResult::Failed;
  return setOptionValue(sheet, item, *option, *value);
}

EditResult stepItemOption(FileInfo& sheet, Item& item, std::size_t index, int step) {
  Option* option = optionAt(item, index);
  if (option == nullptr) return EditResult::Failed;
  const std::string& value = option->value;
  if (value.starts_with("?:")) {
    std::optional<OptValue> read = getOptValue(&item, option->kind, option->relatedItem, value);
    if (!read) return EditResult::Failed;
    const int choice = std::max(1, std::min(read->count, read->index + step));
    return chooseItemOption(sheet, item, index, choice);
  }
  if (value.starts_with("?+")) return chooseItemOption(sheet, item, index, step > 0 ? 1 : 0);
  std::optional<std::string> stepped = steppedNumber(value, step);
  if (!stepped) {
    showTitled(Severity::Error, "Cannot Increment Value",
               "The value is empty or contains no number, so you cannot increment or decrement "
               "it.");
    return EditResult::Failed;
  }
  return changeItemOption(sheet, item, index, *stepped);
}

EditResult chooseItemOption(FileInfo& sheet, Item& item, std::size_t index, int choice) {
  Option* option = optionAt(item, index);
  if (option == nullptr) return EditResult::Failed;
  std::string value = option->value;
  if (value.starts_with("?:")) {
    const std::size_t semicolon = value.find(';');
    if (semicolon == std::string::npos) return EditResult::Failed;
    value = strprintf("?:%d", choice) + value.substr(semicolon);
  } else if (value.starts_with("?+")) {
    const std::size_t semicolon = value.find(';');
    const std::string text = semicolon == std::string::npos ? "" : value.substr(semicolon + 1);
    value = strprintf("?+%c;%s", choice != 0 ? '1' : '0', text.c_str());
  } else {
    return EditResult::Failed;
  }
  if (!getOptValue(&item, option->kind, option->relatedItem, value)) return EditResult::Failed;
  return setOptionValue(sheet, item, *option, value);
}

EditResult removeItemOption(FileInfo& sheet, Item& item, std::size_t index) {
  Option* option = optionAt(item, index);
  if (option == nullptr) return EditResult::Failed;
  if (!isOptionKind(option->kind)) {
    showError("Missing case in delOpt");
    return EditResult::Failed;
  }
  const auto at = item.options.begin() + static_cast<std::ptrdiff_t>(index);
  std::unique_ptr<Option> removed = std::move(*at);
  item.options.erase(at);
  return reassessItem(sheet, item, [&] {
    item.options.insert(item.options.begin() + static_cast<std::ptrdiff_t>(index),
                        std::move(removed));
  });
}

}  // namespace zv
