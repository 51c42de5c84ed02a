#include "filter/format/item_format.h"

#include <algorithm>

#include "core/fileinfo.h"
#include "core/game_system.h"
#include "core/numbers.h"
#include "core/text.h"
#include "core/value.h"
#include "expr/compiler.h"
#include "expr/item_fields.h"
#include "filter/format/item_text.h"
#include "rules/value/categories.h"
#include "rules/value/multipliers.h"
#include "rules/value/option_refs.h"

namespace zv {

namespace {

/// Reads a delimited argument: the character at `pos` is the delimiter, the text runs to the
/// same character (or the end of the format).
std::string_view delimited(std::string_view format, std::size_t& pos) {
  if (pos >= format.size()) return {};
  const char delimiter = format[pos++];
  std::size_t end = format.find(delimiter, pos);
  if (end == std::string_view::npos) end = format.size();
  std::string_view text = format.substr(pos, end - pos);
  pos = std::min(format.size(), end + 1);
  return text;
}

/// The value of the option named `name` (ignoring case), else of one whose alias is exactly
/// `name`: its text cut at the first comma unless the value begins "?:" or "?+"; "??" when there
/// is none.
std::string optionColumn(Item& item, std::string_view name) {
  std::vector<EffectiveOption> options = effectiveOptions(item);
  const EffectiveOption* found = nullptr;
  for (const EffectiveOption& o : options) {
    if (equalsIgnoringCase(o.option->name, name)) {
      found = &o;
      break;
    }
  }
  if (found == nullptr) {
    for (const EffectiveOption& o : options) {
      if (o.option->alias == name) {
        found = &o;
        break;
      }
    }
  }
  if (found == nullptr) return "??";
  std::optional<OptString> value = getOptString(item, *found->option);
  if (!value) return "??";
  std::string text = value->text;
  const std::string& raw = found->option->value;
  if (raw.rfind("?:", 0) != 0 && raw.rfind("?+", 0) != 0) {
    std::size_t comma = text.find(',');
    if (comma != std::string::npos) text.erase(comma);
  }
  return text;
}

/// The categories of the item and then of each option, "*" words left out, joined by ", ".
std::string categoryColumn(Item& item) {
  std::vector<std::string> words;
  auto add = [&words](std::string_view text) {
    for (const std::string& piece : split(text, ';')) {
      std::string word = trim(piece);
      if (!word.empty() && word.front() != '*') words.push_back(std::move(word));
    }
  };
  add(item.cat);
  for (const auto& option : item.options)
    add(option->category);
  std::string out;
  for (const std::string& word : words) {
    if (!out.empty()) out += ", ";
    out += word;
    if (out.size() >= kMaxItemFormatText) break;
  }
  return out;
}

/// An `x` expression: the item's option references expanded, evaluated in the item's sheet (or
/// its game system's table) with the item current; "???" on failure.
std::string expressionColumn(Item* item, std::string_view text, SymbolTable* fallback) {
  SymbolTable* table = fallback;
  std::string expression(text);
  if (item != nullptr) {
    expression = expandOptionRefs(*item, text, nullptr, true);
    if (item->owner != nullptr && item->owner->symbols) {
      table = item->owner->symbols.get();
    } else if (item->owner != nullptr && item->owner->gameSystem != nullptr &&
               item->owner->gameSystem->symbols) {
      table = item->owner->gameSystem->symbols.get();
    }
  }
  if (table == nullptr) return "???";
  // "@name" reads the item's fields through an item context; the caller's current item and
  // option come back afterwards.
  Item* savedItem = currentContextItem();
  Option* savedOption = currentContextOption();
  Value value;
  int result = 0;
  {
    ItemContextScope context(item != nullptr ? item->owner : nullptr, *table);
    setCurrentItem(item, nullptr);
    result = parseExpInContext(table, item, nullptr, expression, value);
  }
  setCurrentItem(savedItem, savedOption);
  if (result != 0) return "???";
  return valueToText(value);
}

class Layout {
 public:
  Layout(std::string_view format, Item* item, const ItemFormatSpace& space)
      : format_(format), item_(item), space_(space) {}

  std::vector<ItemFormatColumn> run();

 private:
  /// Text before any column goes into one at the left edge.
  void ensureColumn() {
    if (!columns_.empty()) return;
    columns_.push_back({});
    explicit_.push_back(false);
  }
  void append(std::string_view text) {
    ensureColumn();
    const std::size_t room = kMaxItemFormatText - std::min(kMaxItemFormatText, total_);
    text = text.substr(0, std::min(room, text.size()));
    columns_.back().text += text;
    total_ += text.size();
  }
  void startColumn(bool fromRight, int units, char alignment);
  std::string field(char letter, std::size_t& pos);

  std::string_view format_;
  Item* item_;
  const ItemFormatSpace& space_;
  std::vector<ItemFormatColumn> columns_;
  std::vector<bool> explicit_;
  std::size_t total_ = 0;
};

void Layout::startColumn(bool fromRight, int units, char alignment) {
  ItemFormatColumn column;
  column.left = fromRight ? space_.width - (units * space_.unit + 4) : units * space_.unit;
  column.alignment = alignment == 'r'   ? ColumnAlignment::Right
                     : alignment == 'c' ? ColumnAlignment::Centre
                                        : ColumnAlignment::Left;
  // The column of text before the first directive is taken over while it is still empty.
  if (columns_.size() == 1 && !explicit_[0] && columns_[0].text.empty()) {
    columns_[0] = column;
    explicit_[0] = true;
    return;
  }
  if (columns_.size() >= kMaxItemFormatColumns) return;
  columns_.push_back(column);
  explicit_.push_back(true);
}

std::string Layout::field(char letter, std::size_t& pos) {
  const unsigned char lower = static_cast<unsigned char>(letter);
  if (item_ == nullptr && lower >= 'b' && lower <= 'v') {
    if (letter == 'o') delimited(format_, pos);
    return {};
  }
  switch (letter) {
    case 'b':
      return formatFloat(item_->cost);
    case 'c':
      return formatFloat(item_->totalCost);
    case 'd':
      return item_->defaultText;
    case 'e':
      return item_->level;
    case 'f':
      return item_->formula;
    case 'l':
      return item_->className;
    case 'n':
      return displayName(*item_, space_.useAliases);
    case 'o':
      return optionColumn(*item_, delimited(format_, pos));
    case 'p':
      return item_->parent != nullptr ? item_->name : std::string();
    case 't':
      return categoryColumn(*item_);
    case 'v':
      return lookedUpLevel(*item_);
    case 'x':
      return expressionColumn(item_, delimited(format_, pos), space_.table);
    default:
      return {};
  }
}

std::vector<ItemFormatColumn> Layout::run() {
  std::size_t pos = 0;
  while (pos < format_.size()) {
    const char c = format_[pos];
    if (c == '%') {
      if (pos + 1 < format_.size() && format_[pos + 1] == '%') {
        append("%");
        pos += 2;
        continue;
      }
      ++pos;
      bool fromRight = false;
      if (pos < format_.size() && format_[pos] == '-') {
        fromRight = true;
        ++pos;
      }
      int units = 0;
      while (pos < format_.size() && format_[pos] >= '0' && format_[pos] <= '9') {
        units = std::min(units * 10 + (format_[pos] - '0'), 100000);
        ++pos;
      }
      if (pos >= format_.size()) break;
      const char alignment = format_[pos++];
      ensureColumn();
      startColumn(fromRight, units, alignment);
      if (pos >= format_.size()) break;
      const char letter = format_[pos++];
      append(field(letter, pos));
    } else if (c == '^') {
      if (pos + 1 < format_.size() && format_[pos + 1] == '^') {
        append("^");
        ++pos;
        continue;
      }
      pos += 1;
      if (pos >= format_.size()) break;
      const char letter = format_[pos++];
      append(field(letter, pos));
    } else {
      append(std::string_view(&format_[pos], 1));
      ++pos;
    }
  }
  std::stable_sort(
      columns_.begin(), columns_.end(),
      [](const ItemFormatColumn& a, const ItemFormatColumn& b) { return a.left < b.left; });
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    columns_[i].right =
        i + 1 < columns_.size() ? columns_[i + 1].left - space_.unit : space_.width - 4;
  }
  return std::move(columns_);
}

}  // namespace

std::vector<ItemFormatColumn> layoutItemFormat(std::string_view format, Item* item,
                                               const ItemFormatSpace& space) {
  return Layout(format, item, space).run();
}

std::string itemFormatText(std::string_view format, Item* item, const ItemFormatSpace& space) {
  std::string out;
  bool first = true;
  for (const ItemFormatColumn& column : layoutItemFormat(format, item, space)) {
    if (!first) out += '\t';
    out += column.text;
    first = false;
  }
  if (out.size() > kMaxItemFormatText) out.resize(kMaxItemFormatText);
  return out;
}

}  // namespace zv
