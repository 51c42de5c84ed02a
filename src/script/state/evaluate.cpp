#include "script/state/evaluate.h"

#include "expr/compiler.h"
#include "expr/item_fields.h"

namespace zv::script {

namespace {

/// Puts a resolver in front of the table's for one evaluation: names of the locals come first.
class LocalsFirst {
 public:
  LocalsFirst(SymbolTable& table, SymbolTable* locals) : table_(table), active_(locals != nullptr) {
    if (!active_) return;
    SymbolTable::Resolver chained = table.resolver();
    previous_ = table.setResolver([locals, chained](std::string_view name, Value& out) {
      if (Symbol* local = locals->findHere(name)) {
        if (local->isArray()) {
          out = Value::arrayRef(local);
        } else {
          out = local->value;
        }
        return true;
      }
      return chained ? chained(name, out) : false;
    });
  }
  ~LocalsFirst() {
    if (active_) table_.setResolver(std::move(previous_));
  }
  LocalsFirst(const LocalsFirst&) = delete;
  LocalsFirst& operator=(const LocalsFirst&) = delete;

 private:
  SymbolTable& table_;
  bool active_;
  SymbolTable::Resolver previous_;
};

}  // namespace

int evaluateTextIn(ScriptRun& run, SymbolTable& table, std::string_view text, Value& out) {
  LocalsFirst locals(table, run.locals());
  ItemContextScope itemContext(table.owner != nullptr ? table.owner : run.destSheet, table);
  setCurrentItem(run.currentItem(), run.currentOption());
  return parseExpInContext(&table, run.currentItem(), run.currentOption(), text, out);
}

int evaluateText(ScriptRun& run, std::string_view text, Value& out) {
  return evaluateTextIn(run, *run.context, text, out);
}

bool integerTruth(const Value& value) {
  return integerOf(value) != 0;
}

bool nonZeroTruth(const Value& value) {
  if (value.isInteger()) return value.integer() != 0;
  if (value.isFloat()) return value.real() != 0.0;
  if (value.isString()) return !value.text().empty();
  return false;
}

}  // namespace zv::script
