// mergeOption: an option of a source item brought onto a target item, with the value translated
// between the forms of the option value language: the count list "?:n;a;b;", the toggle
// "?+1;text", the prompted value "??label;value;" and plain values.

#include <vector>

#include "core/game_system.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "rules/value/level.h"
#include "script/copy/copy_routines.h"

namespace zv::script {

namespace {

/// "?:", "?+", "??" or "?@" at the start of a value; "" for none.
std::string_view prefixOf(std::string_view value) {
  if (value.size() >= 2 && value[0] == '?' &&
      (value[1] == ':' || value[1] == '+' || value[1] == '?' || value[1] == '@')) {
    return value.substr(0, 2);
  }
  return "";
}

bool isChoiceForm(std::string_view prefix) {
  return prefix == "?:" || prefix == "?+" || prefix == "??";
}

/// The entries of a count list "?:n;a;b;" (each "label" or "label,value"), and its choice n.
struct CountList {
  int chosen = 1;
  std::vector<std::string> entries;
};

CountList parseCountList(std::string_view value) {
  CountList list;
  std::vector<std::string> parts = split(value.substr(2), ';');
  if (!parts.empty()) {
    list.chosen = static_cast<int>(std::atoi(parts.front().c_str()));
    parts.erase(parts.begin());
  }
  for (std::string& part : parts) {
    if (!trim(part).empty()) list.entries.push_back(trim(part));
  }
  return list;
}

std::string entryLabel(const std::string& entry) {
  return trim(entry.substr(0, entry.find(',')));
}

std::string entryValue(const std::string& entry) {
  const std::size_t comma = entry.find(',');
  return comma == std::string::npos ? entryLabel(entry) : trim(entry.substr(comma + 1));
}

/// The text a value stands for: a count list's chosen label, a toggle's "0" or "1", a prompted
/// value's text up to its first ";", or the value itself.
std::string wantedText(std::string_view value) {
  const std::string_view prefix = prefixOf(value);
  if (prefix == "?:") {
    const CountList list = parseCountList(value);
    if (list.chosen >= 1 && list.chosen <= static_cast<int>(list.entries.size())) {
      return entryLabel(list.entries[static_cast<std::size_t>(list.chosen - 1)]);
    }
    return "";
  }
  if (prefix == "?+") return value.size() > 2 ? std::string(1, value[2]) : "0";
  if (prefix == "??") {
    const std::string_view rest = value.substr(2).substr(0, 512);
    return std::string(rest.substr(0, rest.find(';')));
  }
  return std::string(value);
}

/// Puts the wanted text into a value of the target's form.
void setWanted(Option& target, std::string_view fromValue) {
  const std::string_view to = prefixOf(target.value);
  const std::string_view from = prefixOf(fromValue);
  const std::string wanted = wantedText(fromValue);
  if (to == "?+") {
    const char state = wanted == "1" || equalsIgnoringCase(wanted, "yes") ? '1' : '0';
    target.value =
        strprintf("?+%c%s", state, target.value.size() > 3 ? target.value.substr(3) : "");
    return;
  }
  if (to == "?:") {
    const CountList list = parseCountList(target.value);
    for (std::size_t i = 0; i < list.entries.size(); ++i) {
      const bool byLabel = equalsIgnoringCase(entryLabel(list.entries[i]), wanted);
      const bool byValue = from == "?+" && entryValue(list.entries[i]) == wanted;
      if (byLabel || byValue) {
        std::string value = strprintf("?:%d;", static_cast<int>(i + 1));
        for (const std::string& entry : list.entries)
          value += entry + ";";
        target.value = value;
        return;
      }
    }
    target.value = wanted;
    return;
  }
  if (to == "??") {
    target.value = std::string(fromValue);
    return;
  }
  target.value = std::string(fromValue);
}

const Option* findOptionData(const OptionTree& tree, std::string_view name) {
  for (const OptionTreeEntry& entry : tree) {
    if (entry.option && equalsIgnoringCase(entry.option->name, name)) return entry.option.get();
    if (const Option* inner = findOptionData(entry.entries, name)) return inner;
  }
  return nullptr;
}

}  // namespace

void mergeOption(FileInfo& source, FileInfo& destination, const Item& sourceItem, Item& target,
                 const Option& option, bool mark) {
  (void)source;
  int occurrence = 0;
  for (const auto& held : sourceItem.options) {
    if (equalsIgnoringCase(held->name, option.name)) ++occurrence;
    if (held.get() == &option) break;
  }
  const std::string_view sourcePrefix = prefixOf(option.value);
  Option* found = nullptr;
  bool forced = false;
  int seen = 0;
  for (const auto& held : target.options) {
    if (!equalsIgnoringCase(held->name, option.name)) continue;
    const bool exclusive = held->keepValue() || option.keepValue();
    if (option.kind == kOptionText && isChoiceForm(sourcePrefix)) {
      const std::string_view heldPrefix = prefixOf(held->value);
      if (!held->value.empty() && heldPrefix != sourcePrefix && heldPrefix != "?@") continue;
      if (!held->converted() && exclusive) {
        found = held.get();
        forced = true;
        break;
      }
      if (heldPrefix == "?@" || held->value == option.value) {
        found = held.get();
        break;
      }
      if (held->value.empty()) {
        found = held.get();
        forced = true;
        break;
      }
      if (++seen == occurrence) {
        found = held.get();
        break;
      }
      continue;
    }
    if (exclusive) {
      found = held.get();
      forced = true;
      break;
    }
    if (++seen == occurrence) {
      found = held.get();
      break;
    }
  }

  if (found != nullptr) {
    const bool targetAsks = prefixOf(found->value) == "?@";
    if (forced || !targetAsks) {
      found->value = option.value;
    } else if (!isChoiceForm(sourcePrefix)) {
      if (found->kind == kOptionAuxCost || found->kind == kOptionAdjDistLevel ||
          found->kind == kOptionAdjDistCost) {
        found->value = option.value;
      }
    } else {
      setWanted(*found, option.value);
    }
  } else {
    Option copy = option;
    if (option.kind != kOptionText && isChoiceForm(sourcePrefix) &&
        destination.gameSystem != nullptr) {
      const std::string_view dataName = option.origName.empty() ? option.name : option.origName;
      if (const Option* data = findOptionData(destination.gameSystem->options, dataName)) {
        copy = *data;
        copy.origName = data->name;
        copy.name = option.name;
        if (option.keepValue() || data->keepValue()) {
          copy.value = option.value;
        } else {
          setWanted(copy, option.value);
        }
      }
    }
    copy.setHidden(option.hidden());
    copy.flags = (copy.flags & ~(1u << 2)) | (option.flags & (1u << 2));
    copy.setKeepValue(option.keepValue());
    target.options.push_back(std::make_unique<Option>(std::move(copy)));
    found = target.options.back().get();
  }

  if (!option.origName.empty()) found->origName = option.origName;
  if (!option.alias.empty()) found->alias = option.alias;
  if (!option.qualifier.empty()) found->qualifier = option.qualifier;
  if (option.keepValue()) {
    if (!option.auxExpression.empty()) found->auxExpression = option.auxExpression;
    found->setKeepValue(true);
  }
  found->setConverted(true);
  if (mark && target.owner != nullptr) {
    applyItemOptions(*target.owner, target);
    setItemLevel(target, target.level, true, false);
  }
}

}  // namespace zv::script
