#include "script/state/script_run.h"

#include <algorithm>

#include "core/messages.h"
#include "core/strfmt.h"
#include "core/text.h"
#include "rules/lists/list_ops.h"
#include "script/reader/skip.h"

namespace zv::script {

ScriptRun::ScriptRun(ScriptEnvironment& environment_, FileInfo& source, FileInfo& destination,
                     SymbolTable& context_, SubroutineList& subroutines_)
    : environment(environment_),
      sourceSheet(&source),
      destSheet(&destination),
      context(&context_),
      scriptContext(&context_),
      subroutines(&subroutines_) {
  reader.setErrorSink([this](std::string_view message) { reportError(message); });
}

Button ScriptRun::reportError(std::string_view message) {
  errorReported = true;
  const ScriptPosition& at = reader.position;
  std::string text(message);
  if (at.currentItem != nullptr) {
    text += strprintf("\r\n\r\nFile: %s, line: %d\r\nCurrent Item: %s", at.file(), at.line,
                      at.currentItem->name);
  } else if (lastItemAdded != nullptr) {
    text += strprintf("\r\n\r\nFile: %s, line: %d\r\nLast Item Added: %s", at.file(), at.line,
                      lastItemAdded->name);
  } else {
    text += strprintf("\r\n\r\nFile: %s, line: %d", at.file(), at.line);
  }
  if (text.size() > kScriptErrorCapacity - 1) text.resize(kScriptErrorCapacity - 1);
  Question question;
  question.title = "Script Error";
  question.text = std::move(text);
  question.buttons = ButtonSet::OkCancel;
  question.defaultButton = Button::Ok;
  question.severity = Severity::Error;
  return host().ask(question);
}

bool ScriptRun::checkCancel() {
  host().pump();
  if (!host().interruptRequested()) return true;
  if (environment.progressWindowUp) {
    progressCanceled = true;
    return true;
  }
  userCanceled = true;
  reportError("Conversion canceled.");
  return false;
}

Subroutine* ScriptRun::findSubroutine(std::string_view name) const {
  for (const auto& subroutine : *subroutines) {
    if (equalsIgnoringCase(subroutine->name, name)) return subroutine.get();
  }
  return nullptr;
}

void ScriptRun::unwatch(Item** slot) {
  const auto found = std::find(watched_.rbegin(), watched_.rend(), slot);
  if (found != watched_.rend()) watched_.erase(std::next(found).base());
}

namespace {

bool contains(const std::vector<Item*>& items, const Item* item) {
  return item != nullptr && std::find(items.begin(), items.end(), item) != items.end();
}

/// The element after `item` among its siblings, or null.
Item* nextSibling(Item& item) {
  ItemChain* chain = nullptr;
  if (item.parent != nullptr) {
    chain = &item.parent->children;
  } else if (item.list != nullptr) {
    chain = &item.list->items;
  }
  if (chain == nullptr) return nullptr;
  for (std::size_t i = 0; i < chain->size(); ++i) {
    if ((*chain)[i].get() == &item) return i + 1 < chain->size() ? (*chain)[i + 1].get() : nullptr;
  }
  return nullptr;
}

void letGo(ScriptPosition& position, const std::vector<Item*>& doomed) {
  if (contains(doomed, position.currentItem)) {
    position.currentItem = nullptr;
    position.currentOption = nullptr;
  }
}

}  // namespace

void ScriptRun::beforeDelete(const std::vector<Item*>& doomed) {
  letGo(reader.position, doomed);
  letGo(reader.lastToken, doomed);
  letGo(execResume, doomed);
  if (contains(doomed, lastItemAdded)) lastItemAdded = nullptr;
  if (contains(doomed, currentSublistParent)) currentSublistParent = nullptr;
  for (Item** slot : watched_) {
    if (contains(doomed, *slot)) *slot = nullptr;
  }
  for (WalkFrame* walk : walks) {
    if (contains(doomed, walk->parent)) {
      walk->abandoned = true;
      walk->element = nullptr;
      walk->next = nullptr;
      continue;
    }
    if (contains(doomed, walk->element)) walk->element = nullptr;
    while (contains(doomed, walk->next))
      walk->next = nextSibling(*walk->next);
  }
}

bool ScriptRun::enterNesting() {
  if (nesting >= kMaxNesting) {
    reportError(strprintf("Statements nested too deeply (more than %d levels).", kMaxNesting));
    return false;
  }
  ++nesting;
  return true;
}

std::vector<Item*> itemsDeletedWith(FileInfo& sheet, Item& item) {
  std::vector<Item*> doomed;
  std::vector<Item*> pending{&item};
  while (!pending.empty()) {
    Item* next = pending.back();
    pending.pop_back();
    if (contains(doomed, next)) continue;
    doomed.push_back(next);
    for (const auto& child : next->children)
      pending.push_back(child.get());
    for (Item* automatic : automaticChildren(sheet, *next))
      pending.push_back(automatic);
  }
  return doomed;
}

void jumpTo(ScriptReader& reader, const ScriptPosition& place) {
  reader.position.source = place.source;
  reader.position.offset = place.offset;
  reader.position.line = place.line;
}

}  // namespace zv::script
