// foreach and item: statements that visit elements of lists.

#include "core/game_systems.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "rules/lists/list_ops.h"
#include "rules/lists/visible_rows.h"
#include "rules/selection/rule_library.h"
#include "rules/selection/rule_sets.h"
#include "rules/value/categories.h"
#include "script/expand/expand.h"
#include "script/flow/dispatch.h"
#include "script/flow/statements.h"
#include "script/state/evaluate.h"
#include "script/state/sheet_lookup.h"

namespace zv::script {

namespace {

/// Registers a walk with the run for its lifetime, so that deletions can move it on.
class WalkRegistration {
 public:
  WalkRegistration(ScriptRun& run, WalkFrame& frame) : run_(run) { run_.walks.push_back(&frame); }
  ~WalkRegistration() { run_.walks.pop_back(); }
  WalkRegistration(const WalkRegistration&) = delete;
  WalkRegistration& operator=(const WalkRegistration&) = delete;

 private:
  ScriptRun& run_;
};

Item* siblingAfter(const ItemChain& chain, const Item* item) {
  for (std::size_t i = 0; i < chain.size(); ++i) {
    if (chain[i].get() == item) return i + 1 < chain.size() ? chain[i + 1].get() : nullptr;
  }
  return nullptr;
}

struct ForeachBody {
  ScriptPosition start;
  const char* missing;
  int startLine;
  /// The selection rules that data list elements must pass; null or empty for none.
  const RuleSetContext* rules = nullptr;
};

/// Whether a data list element is visited: it passes the selection rules that are on. `previous`
/// is the last element tested that isn't a sublist.
bool passes(const ForeachBody& body, Item& element, const Item*& previous) {
  if (body.rules == nullptr || body.rules->empty()) return true;
  const bool ok = passesRules(*body.rules, element, previous);
  if (!element.isSublist()) previous = &element;
  return ok;
}

/// Makes the element the current item (and in a run on one sheet the last item added) and runs
/// the body once.
Flow visit(ScriptRun& run, Item& element, const ForeachBody& body) {
  if (!run.checkCancel()) return Flow::Stop;
  run.setCurrentItem(&element);
  if (run.scriptMode) run.lastItemAdded = &element;
  jumpTo(run.reader, body.start);
  return runBody(run, Token::EndForeach, body.missing, body.startLine);
}

/// The plain walk: each element in order, then the members of a sublist that still exists.
Flow walkChain(ScriptRun& run, ItemChain& chain, Item* parent, const ForeachBody& body,
               const Item*& previous) {
  NestingGuard nesting(run);
  if (!nesting.ok()) return Flow::Stop;
  WalkFrame frame;
  frame.parent = parent;
  frame.next = chain.empty() ? nullptr : chain.front().get();
  WalkRegistration registration(run, frame);
  while (frame.next != nullptr && !frame.abandoned) {
    Item* element = frame.next;
    frame.element = element;
    frame.next = siblingAfter(chain, element);
    if (passes(body, *element, previous) && visit(run, *element, body) == Flow::Stop) {
      return Flow::Stop;
    }
    if (frame.abandoned) break;
    if (frame.element != nullptr && element->isSublist() && !element->children.empty()) {
      if (walkChain(run, element->children, element, body, previous) == Flow::Stop) {
        return Flow::Stop;
      }
    }
  }
  return Flow::Next;
}

}  // namespace

Flow runForeach(ScriptRun& run) {
  const int startLine = run.reader.lastToken.line;
  std::string head;
  if (!run.reader.readHead(head) || !expandExpression(run, head, kHeadCapacity)) {
    return Flow::Stop;
  }
  head = trimBlanks(head);
  ItemChain* chain = nullptr;
  std::vector<Item*> members;  // the category form's elements
  bool categoryForm = false;
  RuleSetContext rules;
  if (!head.empty() && head.front() == '*') {
    std::string dataName = head.substr(1);
    std::string categoryName;
    if (const std::size_t colon = dataName.find(':'); colon != std::string::npos) {
      categoryName = trimBlanks(dataName.substr(colon + 1));
      dataName = dataName.substr(0, colon);
      categoryForm = true;
    }
    dataName = trimBlanks(dataName);
    Category* data = categoryFind(*run.sourceSheet, dataName);
    if (data == nullptr) return run.fail(strprintf("Can't find data list %s", dataName));
    // With the selection rules on, elements that the sheet's rule sets refuse are passed over.
    rules = activeRules(selectionRules(), *run.sourceSheet, std::string_view(data->name));
    if (categoryForm) {
      for (Item* item : data->index) {
        if (itemInCategory(*item, categoryName)) members.push_back(item);
      }
    } else {
      chain = &data->items;
    }
  } else {
    ListInfo* list = findListByPrefix(*run.sourceSheet, head);
    if (list == nullptr) return run.fail(strprintf("Can't find list window %s", head));
    chain = &list->items;
  }
  const ForeachBody body{run.reader.position,
                         categoryForm ? "Missing endforeach (foreach started on line %d)"
                                      : "Missing endfor (foreach started on line %d)",
                         startLine, &rules};
  if (!skipBody(run, Token::EndForeach, body.missing, startLine)) return Flow::Stop;
  const ScriptPosition afterEnd = run.reader.position;
  if ((chain != nullptr && chain->empty()) || (chain == nullptr && members.empty())) {
    return Flow::Next;
  }

  WatchedItem savedItem(run, run.currentItem());
  Option* const savedOption = run.currentOption();
  WatchedItem savedLast(run, run.lastItemAdded);
  Flow flow = Flow::Next;
  const Item* previous = nullptr;
  if (chain != nullptr) {
    flow = walkChain(run, *chain, nullptr, body, previous);
  } else {
    for (Item* member : members) {
      if (!passes(body, *member, previous)) continue;
      if (visit(run, *member, body) == Flow::Stop) {
        flow = Flow::Stop;
        break;
      }
    }
  }
  run.setCurrentItem(savedItem.get(), savedItem.get() != nullptr ? savedOption : nullptr);
  run.lastItemAdded = savedLast.get();
  if (flow == Flow::Stop) return Flow::Stop;
  jumpTo(run.reader, afterEnd);
  return Flow::Next;
}

Flow runItem(ScriptRun& run) {
  const int startLine = run.reader.lastToken.line;
  std::string head;
  if (!run.reader.readHead(head) || !expandExpression(run, head, kHeadCapacity)) {
    return Flow::Stop;
  }
  const std::size_t comma = head.find(',');
  if (comma == std::string::npos) return run.fail("Missing comma after list name in item");
  const std::string listName = trimBlanks(head.substr(0, std::min<std::size_t>(comma, 127)));
  ListInfo* list = findListByPrefix(*run.destSheet, listName);
  if (list == nullptr) return run.fail(strprintf("Can't find list window %s", listName));
  const std::string expression = trimBlanks(head.substr(comma + 1));
  Value which;
  if (evaluateText(run, expression, which) != 0) {
    return run.fail(strprintf("Error in item expression: %s", expression));
  }
  Item* found = nullptr;
  if (which.isNumber()) {
    const int row = integerOf(which);
    if (!list->open()) {
      return run.fail(strprintf("List %s is not open and list index specified for item.",
                                std::string_view(list->name)));
    }
    found = itemAtRow(*list, row - 1);
    if (found == nullptr) {
      return run.fail(strprintf("List %s has no item %d.", std::string_view(list->name), row));
    }
  } else if (which.isString()) {
    found = findItemInList(*list, which.text());
    if (found == nullptr) found = findItemInSublists(*list, which.text());
    if (found == nullptr) {
      return run.fail(
          strprintf("Found no item %s in list %s", which.text(), std::string_view(list->name)));
    }
  } else {
    return run.fail("Name of item must evaluate to a string or index.");
  }
  const bool oneSheet = run.sourceSheet == run.destSheet;
  WatchedItem savedItem(run, run.currentItem());
  Option* const savedOption = run.currentOption();
  WatchedItem savedLast(run, run.lastItemAdded);
  run.setCurrentItem(found);
  if (oneSheet) run.lastItemAdded = found;
  const Flow flow =
      runBody(run, Token::EndItem, "Missing enditem (item started on line %d)", startLine);
  run.setCurrentItem(savedItem.get(), savedItem.get() != nullptr ? savedOption : nullptr);
  if (oneSheet) run.lastItemAdded = savedLast.get();
  return flow;
}

}  // namespace zv::script
