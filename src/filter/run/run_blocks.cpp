// The blocks of a filter run: @if with its branches, @while, @for, @foreach, @options, and the
// skip rule for branches not taken.

#include "core/game_system.h"
#include "core/messages.h"
#include "expr/expr_error.h"
#include "expr/item_fields.h"
#include "filter/run/filter_runner.h"

namespace zv {

namespace {

std::string_view withoutLineEnd(std::string_view text) {
  while (!text.empty() && (text.back() == '\n' || text.back() == '\r'))
    text.remove_suffix(1);
  return text;
}

/// The command word of a line whose first non-blank is "@" (lower case), and the text behind it.
bool commandOf(std::string_view line, std::string& word, std::string_view& rest) {
  std::size_t start = line.find_first_not_of(" \t");
  if (start == std::string_view::npos || line[start] != '@') return false;
  std::size_t end = start + 1;
  while (end < line.size() && (isLetterChar(static_cast<unsigned char>(line[end])) ||
                               (line[end] >= '0' && line[end] <= '9') || line[end] == '_')) {
    ++end;
  }
  word = toLower(line.substr(start + 1, end - start - 1));
  rest = line.substr(end);
  return true;
}

/// The closing words of a block opened by `word`; empty for a word that opens none.
std::vector<std::string_view> closersOf(std::string_view word) {
  if (word == "if") return {"endif", "end"};
  if (word == "for") return {"endfor"};
  if (word == "foreach") return {"endfor", "endforeach"};
  if (word == "options") return {"endoptions"};
  if (word == "while") return {"endwhile"};
  return {};
}

bool contains(std::initializer_list<std::string_view> words, std::string_view word) {
  for (std::string_view w : words) {
    if (w == word) return true;
  }
  return false;
}

std::string_view trimmed(std::string_view text) {
  text = withoutLineEnd(text);
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t'))
    text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t'))
    text.remove_suffix(1);
  return text;
}

}  // namespace

FilterRunner::BlockEnd FilterRunner::skipBlock(std::initializer_list<std::string_view> closers) {
  BlockEnd end;
  // The blocks opened inside, innermost last: the word and the line where each started.
  struct Open {
    std::string word;
    int line;
  };
  std::vector<Open> open;
  std::string line;
  for (;;) {
    ReadResult read = readLine(line);
    if (read == ReadResult::Error) {
      end.outcome = Outcome::Failed;
      return end;
    }
    if (read == ReadResult::End) {
      if (!open.empty()) {
        failTitled("Filter Processing Error",
                   strprintf("Could not find closing command for @%s, starting around line %d.",
                             open.back().word, open.back().line));
        end.outcome = Outcome::Failed;
      } else {
        end.endOfText = true;
      }
      return end;
    }
    std::string word;
    std::string_view rest;
    if (!commandOf(line, word, rest)) continue;
    if (!open.empty()) {
      std::vector<std::string_view> words = closersOf(open.back().word);
      bool closes = false;
      for (std::string_view w : words)
        closes = closes || w == word;
      if (closes) {
        open.pop_back();
        continue;
      }
    } else if (contains(closers, word)) {
      end.closer = word;
      end.rest = std::string(trimmed(rest));
      end.line = lineNumber();
      return end;
    }
    if (!closersOf(word).empty()) open.push_back({word, lineNumber()});
  }
}

bool FilterRunner::cancelRequested() {
  host().pump();
  if (!host().interruptRequested()) return false;
  failTitled("Filter Canceled", "Filter canceled by user.");
  return true;
}

FilterRunner::Outcome FilterRunner::runIf(std::string_view condition) {
  bool on = false;
  if (!truth(condition, on)) {
    fail(strprintf("Bad if conditional in filter: %s", condition));
    return Outcome::Failed;
  }
  for (;;) {
    if (on) {
      BlockEnd end = runBlock({"elseif", "else", "endif", "end"});
      if (end.outcome != Outcome::Ok || end.endOfText) return end.outcome;
      if (end.closer == "endif" || end.closer == "end") return Outcome::Ok;
      // The other branches are passed over.
      end = skipBlock({"endif", "end"});
      return end.outcome;
    }
    BlockEnd end = skipBlock({"elseif", "else", "endif", "end"});
    if (end.outcome != Outcome::Ok || end.endOfText) return end.outcome;
    if (end.closer == "endif" || end.closer == "end") return Outcome::Ok;
    if (end.closer == "else") {
      on = true;
      BlockEnd last = runBlock({"endif", "end"});
      return last.outcome;
    }
    if (!truth(end.rest, on)) {
      fail(strprintf("Bad if conditional in elseif: %s", end.rest));
      return Outcome::Failed;
    }
  }
}

FilterRunner::Outcome FilterRunner::runLoop(std::string_view condition, std::string_view step,
                                            const char* badCondition, const char* missingEnd,
                                            const char* word, int startLine) {
  const Position body = position_;
  std::optional<Position> behind;
  for (;;) {
    if (cancelRequested()) return Outcome::Failed;
    bool on = false;
    if (!truth(condition, on)) {
      fail(badCondition);
      return Outcome::Failed;
    }
    if (!on) {
      if (behind) {
        position_ = *behind;
        return Outcome::Ok;
      }
      BlockEnd end = skipBlock({word});
      if (end.outcome == Outcome::Ok && end.endOfText) {
        failTitled("Filter Processing Error",
                   strprintf("Could not find closing command for @%s, starting around line %d.",
                             word == std::string_view("endwhile") ? "while" : "for", startLine));
        return Outcome::Failed;
      }
      return end.outcome;
    }
    position_ = body;
    BlockEnd end = runBlock({word});
    if (end.outcome != Outcome::Ok) return end.outcome;
    if (end.endOfText) {
      failAt(missingEnd, startLine);
      return Outcome::Failed;
    }
    behind = position_;
    if (!step.empty()) {
      if (Outcome outcome = runAssign(step); outcome != Outcome::Ok) return outcome;
    }
  }
}

FilterRunner::Outcome FilterRunner::runWhile(std::string_view condition) {
  if (condition.size() > 512) {
    fail("Bad while conditional in filter");
    return Outcome::Failed;
  }
  const std::string saved(condition);
  return runLoop(saved, {}, "Bad while conditional in filter", "Missing endwhile", "endwhile",
                 lineNumber());
}

FilterRunner::Outcome FilterRunner::runFor(std::string_view head) {
  std::string text(trimmed(head));
  if (text.size() >= 2 && text.front() == '(' && text.back() == ')') {
    text = std::string(trimmed(std::string_view(text).substr(1, text.size() - 2)));
  }
  if (text.empty()) {
    fail("Empty @for");
    return Outcome::Failed;
  }
  const std::size_t first = text.find(';');
  const std::size_t second = first == std::string::npos ? first : text.find(';', first + 1);
  if (second == std::string::npos) {
    fail(strprintf("Missing semicolon in for: %s", text));
    return Outcome::Failed;
  }
  const std::string start(trimmed(std::string_view(text).substr(0, first)));
  const std::string condition(
      trimmed(std::string_view(text).substr(first + 1, second - first - 1)));
  const std::string step(trimmed(std::string_view(text).substr(second + 1)));
  if (!start.empty()) {
    if (Outcome outcome = runAssign(start); outcome != Outcome::Ok) return outcome;
  }
  return runLoop(condition, step, "Bad for conditional in filter", "Missing @endfor", "endfor",
                 lineNumber());
}

FilterRunner::Outcome FilterRunner::runForeach(std::string_view head) {
  const int startLine = lineNumber();
  std::string_view text = head;
  if (!text.empty() && text.front() == '(') {
    text.remove_prefix(1);
  } else {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t'))
      text.remove_prefix(1);
  }
  // The head ends at the first ")" that no backslash escapes.
  std::size_t close = std::string_view::npos;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\') {
      ++i;
    } else if (text[i] == ')') {
      close = i;
      break;
    }
  }
  if (close == std::string_view::npos) {
    fail("List missing ')'");
    return Outcome::Failed;
  }
  std::string_view inside = text.substr(0, close);
  std::string listName(inside);
  std::string delimiter;
  if (const std::size_t comma = inside.find(','); comma != std::string_view::npos) {
    listName = std::string(inside.substr(0, comma));
    const std::string_view raw = inside.substr(comma + 1);
    if (raw.empty()) {
      fail("No delimiter found");
      return Outcome::Failed;
    }
    // The delimiter follows the line rules without substitution: \n is CR LF, \x is x.
    for (std::size_t i = 0; i < raw.size() && delimiter.size() < 128; ++i) {
      if (raw[i] == '\\' && i + 1 < raw.size()) {
        const char next = raw[++i];
        if (next == 'n') {
          delimiter += "\r\n";
        } else {
          delimiter += next;
        }
      } else {
        delimiter += raw[i];
      }
    }
    delimiter.resize(std::min<std::size_t>(delimiter.size(), 128));
  }
  listName = trim(listName);
  if (listName.size() > 2 && listName.front() == '%' && listName.back() == '%') {
    Value value;
    const std::string variable = listName.substr(1, listName.size() - 2);
    Symbol* symbol = findVariable(variable);
    if (symbol != nullptr) {
      listName = valueToText(symbol->value);
    } else if (evaluate(variable, value)) {
      listName = valueToText(value);
    }
  }
  ItemChain* chain = nullptr;
  if (!listName.empty() && listName.front() == '*') {
    Category* category = sheet_.gameSystem != nullptr
                             ? sheet_.gameSystem->findCategory(listName.substr(1))
                             : nullptr;
    if (category == nullptr) {
      fail(strprintf("Can't find data list %s", listName.substr(1)));
      return Outcome::Failed;
    }
    chain = &category->items;
  } else if (options_.blankSheet) {
    chain = nullptr;
  } else {
    ListInfo* list = findSheetList(sheet_, listName);
    if (list == nullptr) {
      fail(strprintf("Can't find list window %s", listName));
      return Outcome::Failed;
    }
    chain = &list->items;
  }
  if (chain == nullptr || chain->empty()) {
    BlockEnd end = skipBlock({"endfor", "endforeach"});
    if (end.outcome == Outcome::Ok && end.endOfText) {
      failAt("Never found @endforeach", startLine);
      return Outcome::Failed;
    }
    return end.outcome;
  }
  if (foreachDepth_ == 0) {
    foreachIndex_ = 0;
    foreachCount_ = countElements(*chain);
  }
  Item* savedItem = currentItem_;
  Option* savedOption = currentOption_;
  ++foreachDepth_;
  BlockEnd end;
  const Position body = position_;
  Outcome outcome = runForeachChain(*chain, body, delimiter, end, startLine);
  --foreachDepth_;
  currentItem_ = savedItem;
  currentOption_ = savedOption;
  setCurrentItem(savedItem, savedOption);
  return outcome;
}

FilterRunner::Outcome FilterRunner::runForeachChain(ItemChain& chain, const Position& body,
                                                    const std::string& delimiter, BlockEnd& end,
                                                    int startLine) {
  for (auto& element : chain) {
    currentItem_ = element.get();
    currentOption_ = nullptr;
    setCurrentItem(currentItem_, nullptr);
    position_ = body;
    OutputStream* stream = &streams_.current();
    const std::size_t before = stream->text.size();
    end = runBlock({"endfor", "endforeach"});
    if (end.outcome != Outcome::Ok) return end.outcome;
    if (end.endOfText) {
      failAt("Never found @endforeach", startLine);
      return Outcome::Failed;
    }
    const Position behind = position_;
    const bool wrote = &streams_.current() != stream || stream->text.size() > before;
    if (wrote && foreachIndex_ < foreachCount_ - 1) write(delimiter);
    ++foreachIndex_;
    if (element->isSublist() && !element->children.empty()) {
      if (Outcome outcome = runForeachChain(element->children, body, delimiter, end, startLine);
          outcome != Outcome::Ok) {
        return outcome;
      }
    }
    position_ = behind;
  }
  return Outcome::Ok;
}

FilterRunner::Outcome FilterRunner::runOptions(std::string_view rest) {
  if (foreachDepth_ == 0 || currentItem_ == nullptr) {
    fail("Cannot use @options outside @foreach");
    return Outcome::Failed;
  }
  if (currentOption_ != nullptr) {
    fail("Cannot nest @options");
    return Outcome::Failed;
  }
  std::string delimiter;
  if (!rest.empty()) {
    std::string_view text = rest;
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t'))
      text.remove_prefix(1);
    const std::size_t close = text.find(')');
    if (text.empty() || text.front() != '(' || close == std::string_view::npos) {
      fail("@options missing ')'");
      return Outcome::Failed;
    }
    delimiter = std::string(text.substr(1, std::min<std::size_t>(close - 1, 64)));
  }
  // The options to visit: the item's own, then with PrintInheritedOptions those of each parent
  // sublist that passes its options on.
  Item& item = *currentItem_;
  std::vector<Option*> visit;
  auto collect = [&visit](Item& holder, bool inherited) {
    for (auto& option : holder.options) {
      if (option->hidden() || option->value.rfind("?+0", 0) == 0) continue;
      if (inherited && (option->noPrint() || option->noInherit())) continue;
      visit.push_back(option.get());
    }
  };
  if (!options_.blankSheet) {
    collect(item, false);
    if (options_.printInheritedOptions) {
      for (Item* parent = item.parent; parent != nullptr && parent->inheritOpts();
           parent = parent->parent) {
        collect(*parent, true);
      }
    }
  }
  if (visit.empty()) {
    BlockEnd end = skipBlock({"endoptions"});
    if (end.outcome == Outcome::Ok && end.endOfText) {
      failTitled("Filter Processing Error",
                 strprintf("Could not find closing command for @%s, starting around line %d.",
                           "options", lineNumber()));
      return Outcome::Failed;
    }
    return end.outcome;
  }
  const Position body = position_;
  const int startLine = lineNumber();
  Outcome outcome = Outcome::Ok;
  for (std::size_t i = 0; i < visit.size(); ++i) {
    currentOption_ = visit[i];
    setCurrentItem(&item, currentOption_);
    position_ = body;
    OutputStream* stream = &streams_.current();
    const std::size_t before = stream->text.size();
    BlockEnd end = runBlock({"endoptions"});
    if (end.outcome != Outcome::Ok) {
      outcome = end.outcome;
      break;
    }
    if (end.endOfText) {
      failTitled("Filter Processing Error",
                 strprintf("Could not find closing command for @%s, starting around line %d.",
                           "options", startLine));
      outcome = Outcome::Failed;
      break;
    }
    const bool wrote = &streams_.current() != stream || stream->text.size() > before;
    if (wrote && i + 1 < visit.size()) write(delimiter);
  }
  currentOption_ = nullptr;
  setCurrentItem(&item, nullptr);
  return outcome;
}

}  // namespace zv
