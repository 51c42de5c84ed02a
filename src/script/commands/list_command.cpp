// list (with its members destination, skip, options, unconverted and the groups), options and
// destination.

#include <optional>

#include "core/list_total.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "rules/lists/list_ops.h"
#include "rules/value/categories.h"
#include "script/commands/handlers.h"
#include "script/copy/unconverted.h"
#include "script/expand/expand.h"
#include "script/flow/dispatch.h"
#include "script/reader/skip.h"
#include "script/state/sheet_lookup.h"

namespace zv::script {

namespace {

constexpr const char* kMissingEnd = "Missing end after ~ (started around line %d)";

/// Clears the state of a `list` on every way out.
class ListScope {
 public:
  explicit ListScope(ScriptRun& run) : run_(run) { run_.inList = true; }
  ~ListScope() {
    run_.inList = false;
    run_.setCurrentItem(nullptr);
    run_.currentSublistParent = nullptr;
    run_.lastItemAdded = nullptr;
    run_.destinationList = nullptr;
  }
  ListScope(const ListScope&) = delete;
  ListScope& operator=(const ListScope&) = delete;

 private:
  ScriptRun& run_;
};

class WalkRegistration {
 public:
  WalkRegistration(ScriptRun& run, WalkFrame& frame) : run_(run) { run_.walks.push_back(&frame); }
  ~WalkRegistration() { run_.walks.pop_back(); }
  WalkRegistration(const WalkRegistration&) = delete;
  WalkRegistration& operator=(const WalkRegistration&) = delete;

 private:
  ScriptRun& run_;
};

/// The names of a group, read up to "~": each up to "~", "," or ";", without quotes.
bool readGroupNames(ScriptRun& run, const char* missingTilde, std::vector<std::string>& names) {
  names.clear();
  for (;;) {
    std::string name;
    char found = '\0';
    if (!run.reader.scanToDelimiter("~,;", name, found)) return false;
    if (found == ';') {
      run.reportError(missingTilde);
      return false;
    }
    if (!run.reader.unquote(name)) return false;
    names.push_back(trimBlanks(name));
    if (found == '~') return true;
  }
}

bool expectTilde(ScriptRun& run, const char* message) {
  ReadToken token;
  if (!run.reader.readToken(token)) return false;
  if (token.is(Token::Tilde)) return true;
  run.reportError(message);
  return false;
}

Item* siblingAfter(const ItemChain& chain, const Item* item) {
  for (std::size_t i = 0; i < chain.size(); ++i) {
    if (chain[i].get() == item) return i + 1 < chain.size() ? chain[i + 1].get() : nullptr;
  }
  return nullptr;
}

/// One walk of a `list`: the members start, the place behind `endlist`, what the members
/// remember.
class ListWalk {
 public:
  ListWalk(ScriptRun& run, ListInfo& list, ScriptPosition members)
      : run_(run), list_(list), members_(std::move(members)) {}

  Flow walk(ItemChain& chain, Item* parent);
  const std::optional<std::string>& unconvertedList() const { return unconverted_; }

 private:
  /// Goes through the members for one element: false flow on a stop; `skipped` when `skip` met.
  Flow element(Item& element, bool& skipped);
  Flow runGroup(Item& element);
  Flow sublistAfter(Item& element, bool skipped, Item*& descendParent);
  bool matchesNames(const Item& element, const std::vector<std::string>& names) const;
  bool sameName(const Item& element);

  ScriptRun& run_;
  ListInfo& list_;
  ScriptPosition members_;
  std::optional<ScriptPosition> options_;
  std::optional<std::string> unconverted_;
};

bool ListWalk::matchesNames(const Item& element, const std::vector<std::string>& names) const {
  for (const std::string& name : names) {
    if (element.isSublist() && name == "sublist") return true;
    const std::string_view own = element.original.empty() ? element.name : element.original;
    if (equalsIgnoringCase(own, name) || equalsIgnoringCase(element.name, name)) return true;
  }
  return false;
}

bool ListWalk::sameName(const Item& element) {
  if (run_.destinationList == nullptr) return false;
  Category* data = dataListOf(*run_.destSheet, *run_.destinationList);
  if (data == nullptr) return false;
  return findDataItem(*data, element.name) != nullptr ||
         (!element.original.empty() && findDataItem(*data, element.original) != nullptr);
}

Flow ListWalk::runGroup(Item& element) {
  run_.lastItemAdded = run_.scriptMode ? &element : nullptr;
  run_.setCurrentItem(&element);
  WatchedItem watched(run_, &element);
  if (runBody(run_, Token::End, kMissingEnd, run_.reader.position.line) == Flow::Stop) {
    return Flow::Stop;
  }
  if (options_ && watched.get() != nullptr) {
    const ScriptPosition back = run_.reader.position;
    jumpTo(run_.reader, *options_);
    run_.setCurrentItem(watched.get());
    if (runOptions(run_) == Flow::Stop) return Flow::Stop;
    jumpTo(run_.reader, back);
  }
  if (watched.get() != nullptr) watched.get()->setConverted(true);
  run_.setCurrentItem(nullptr);
  return Flow::Next;
}

Flow ListWalk::element(Item& element, bool& skipped) {
  skipped = false;
  jumpTo(run_.reader, members_);
  options_.reset();
  ReadToken token;
  std::vector<std::string> names;
  for (;;) {
    if (!run_.reader.readToken(token)) return Flow::Stop;
    switch (token.token) {
      case Token::EndList:
        return Flow::Next;
      case Token::EndOfText:
        return run_.fail("Missing endlist");
      case Token::Semicolon:
        continue;
      case Token::Destination:
        if (runDestination(run_) == Flow::Stop) return Flow::Stop;
        continue;
      case Token::Skip: {
        std::string rest;
        char found = '\0';
        if (!run_.reader.scanToDelimiter(";", rest, found)) return Flow::Stop;
        skipped = true;
        return Flow::Next;
      }
      case Token::Options:
        options_ = run_.reader.position;
        if (!skipOptionsBody(run_.reader)) return Flow::Stop;
        continue;
      case Token::Unconverted: {
        ReadToken name;
        if (!run_.reader.readToken(name)) return Flow::Stop;
        if (!name.is(Token::Plain)) return run_.fail("Expected string after unconverted");
        if (!unconverted_) unconverted_ = name.text;
        continue;
      }
      default:
        break;
    }
    bool matches = false;
    if (token.is(Token::Category)) {
      if (!readGroupNames(run_, "'~' expected after category", names)) return Flow::Stop;
      for (const std::string& name : names)
        matches = matches || itemInCategory(element, name);
    } else if (token.is(Token::Default)) {
      if (!expectTilde(run_, "'~' required after default member")) return Flow::Stop;
      matches = !element.isSublist();
    } else if (token.is(Token::SameName)) {
      if (!expectTilde(run_, "'~' expected after list member")) return Flow::Stop;
      if (run_.destinationList == nullptr) {
        return run_.fail("destination required for use of samename");
      }
      matches = !element.isSublist() && sameName(element);
    } else {
      run_.reader.putBack();
      if (!readGroupNames(run_, "'~' expected after list member", names)) return Flow::Stop;
      matches = matchesNames(element, names);
    }
    if (matches) return runGroup(element);
    if (!skipBody(run_, Token::End, kMissingEnd, run_.reader.position.line)) return Flow::Stop;
  }
}

Flow ListWalk::sublistAfter(Item& element, bool skipped, Item*& descendParent) {
  descendParent = run_.currentSublistParent;
  if (!element.isSublist()) return Flow::Next;
  const bool hasMembers = !element.children.empty();
  if (run_.scriptMode) {
    if (hasMembers) descendParent = &element;
    return Flow::Next;
  }
  if (run_.destinationList == nullptr || skipped) return Flow::Next;
  if (!element.converted()) {
    auto sublist = std::make_unique<Item>(ItemKind::Sublist, element.name);
    sublist->flagsA = element.flagsA & ~(1u << 5);
    sublist->cost = element.cost;
    sublist->totalCost = element.totalCost;
    sublist->childCost = element.childCost;
    sublist->cat = element.cat;
    sublist->format = element.format;
    sublist->sformat = element.sformat;
    for (const auto& option : element.options) {
      sublist->options.push_back(std::make_unique<Option>(*option));
    }
    Item* parent = run_.currentSublistParent;
    if (parent != nullptr && parent->list != run_.destinationList) parent = nullptr;
    AddChain chain;
    const AddResult added = addItem(*run_.destSheet, *run_.destinationList, std::move(sublist),
                                    Placement::appendTo(parent), chain, false);
    if (added.status != AddStatus::Added) {
      run_.errorReported = true;
      return Flow::Stop;
    }
    setChanged(*run_.destSheet, true);
    if (hasMembers) descendParent = added.item;
  } else if (run_.lastItemAdded != nullptr && run_.lastItemAdded->isSublist() && hasMembers) {
    descendParent = run_.lastItemAdded;
  }
  return Flow::Next;
}

Flow ListWalk::walk(ItemChain& chain, Item* parent) {
  NestingGuard nesting(run_);
  if (!nesting.ok()) return Flow::Stop;
  WalkFrame frame;
  frame.parent = parent;
  frame.next = chain.empty() ? nullptr : chain.front().get();
  WalkRegistration registration(run_, frame);
  while (frame.next != nullptr && !frame.abandoned) {
    Item* current = frame.next;
    frame.element = current;
    frame.next = siblingAfter(chain, current);
    if (!run_.checkCancel()) return Flow::Stop;
    bool skipped = false;
    if (element(*current, skipped) == Flow::Stop) return Flow::Stop;
    if (frame.abandoned) break;
    if (frame.element == nullptr) {
      run_.lastItemAdded = nullptr;
      continue;
    }
    Item* descendParent = nullptr;
    if (sublistAfter(*current, skipped, descendParent) == Flow::Stop) return Flow::Stop;
    if (current->isSublist() && !current->children.empty() && !skipped) {
      Item* const outer = run_.currentSublistParent;
      run_.currentSublistParent = descendParent;
      const Flow flow = walk(current->children, current);
      run_.currentSublistParent = outer;
      if (flow == Flow::Stop) return Flow::Stop;
    }
    run_.lastItemAdded = nullptr;
  }
  return Flow::Next;
}

}  // namespace

ListInfo* destinationListNamed(ScriptRun& run, std::string_view name, Category** dataList) {
  ListInfo* list = findListByPrefix(*run.destSheet, name);
  if (list == nullptr) {
    run.reportError(strprintf("'%s' is not a list name.", name));
    return nullptr;
  }
  Category* data = dataListOf(*run.destSheet, *list);
  if (data == nullptr) {
    run.reportError(strprintf("Can't find data sheet list %s for %s.",
                              std::string_view(list->catName), std::string_view(list->name)));
    return nullptr;
  }
  if (dataList != nullptr) *dataList = data;
  return list;
}

Flow runDestination(ScriptRun& run) {
  std::string name;
  char found = '\0';
  if (!run.reader.scanToDelimiter(";", name, found) || !run.reader.unquote(name) ||
      !expandExpression(run, name)) {
    return Flow::Stop;
  }
  ListInfo* list = destinationListNamed(run, trimBlanks(name), nullptr);
  if (list == nullptr) return Flow::Stop;
  run.destinationList = list;
  return Flow::Next;
}

Flow runList(ScriptRun& run) {
  if (run.inList) return run.fail("List nested inside list");
  ReadToken nameToken;
  if (!run.reader.readToken(nameToken)) return Flow::Stop;
  if (!nameToken.is(Token::Plain)) return run.fail("String required for list name");
  std::string name = nameToken.text;
  if (!expandExpression(run, name)) return Flow::Stop;
  ListInfo* list = findListByPrefix(*run.sourceSheet, trimBlanks(name));
  if (list == nullptr) return run.fail(strprintf("Can't find list window %s", name));
  const ScriptPosition members = run.reader.position;
  if (!skipListBody(run.reader)) return Flow::Stop;
  const ScriptPosition afterEnd = run.reader.position;
  if (list->items.empty()) return Flow::Next;

  Flow flow = Flow::Next;
  {
    ListScope scope(run);
    ListWalk walk(run, *list, members);
    flow = walk.walk(list->items, nullptr);
    if (flow == Flow::Next && walk.unconvertedList()) {
      ListInfo* target = findListByPrefix(*run.destSheet, *walk.unconvertedList());
      if (target == nullptr) {
        run.reportError(
            strprintf("Can't find list %s in new character sheet", *walk.unconvertedList()));
        flow = Flow::Stop;
      } else {
        addUnconvertedItems(*run.destSheet, *target, {list});
      }
    }
  }
  if (flow == Flow::Next) jumpTo(run.reader, afterEnd);
  return flow;
}

Flow runOptions(ScriptRun& run) {
  Item* item = run.currentItem();
  if (item == nullptr) return run.fail("No current item for options");
  const ScriptPosition members = run.reader.position;
  if (!skipOptionsBody(run.reader)) return Flow::Stop;
  const ScriptPosition afterEnd = run.reader.position;
  const bool wasInOptions = run.inOptions;
  run.inOptions = true;
  WatchedItem watched(run, item);
  Option* const savedOption = run.currentOption();
  const std::size_t count = item->options.size();
  Flow flow = Flow::Next;
  for (std::size_t index = 0; index < count && flow == Flow::Next; ++index) {
    if (watched.get() == nullptr || index >= watched.get()->options.size()) break;
    Option* option = watched.get()->options[index].get();
    jumpTo(run.reader, members);
    ReadToken token;
    std::vector<std::string> names;
    for (;;) {
      if (!run.reader.readToken(token)) {
        flow = Flow::Stop;
        break;
      }
      if (token.is(Token::EndOptions) || token.is(Token::EndOfText)) break;
      if (token.is(Token::Semicolon)) continue;
      bool matches = false;
      if (token.is(Token::Default)) {
        if (!expectTilde(run, "'~' required after default member")) {
          flow = Flow::Stop;
          break;
        }
        matches = true;
      } else {
        run.reader.putBack();
        if (!readGroupNames(run, "'~' expected after list member", names)) {
          flow = Flow::Stop;
          break;
        }
        for (const std::string& name : names) {
          matches = matches || equalsIgnoringCase(option->name, name);
        }
      }
      if (!matches) {
        if (!skipBody(run, Token::End, kMissingEnd, run.reader.position.line)) {
          flow = Flow::Stop;
          break;
        }
        continue;
      }
      run.setCurrentItem(watched.get(), option);
      flow = runBody(run, Token::End, kMissingEnd, run.reader.position.line);
      break;
    }
  }
  run.inOptions = wasInOptions;
  run.setCurrentItem(watched.get(), watched.get() != nullptr ? savedOption : nullptr);
  if (flow == Flow::Next) jumpTo(run.reader, afterEnd);
  return flow;
}

}  // namespace zv::script
