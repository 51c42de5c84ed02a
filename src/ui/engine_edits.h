#pragma once
// The one place where the windows hand a change to the engine: a variable's new expression or
// constant value with the propagation that follows, and the Recalculate command. Every window goes
// through these, so that the engine's entry points can change behind them.

#include <string_view>

#include "core/fileinfo.h"
#include "core/value.h"

namespace zv::ui {

/// Replaces a variable's expression by `text`, evaluates it and passes the change on to every
/// dependent variable, item cost and list total. 0, or -1 with the error in the expression
/// engine's record.
int storeExpression(FileInfo& sheet, Symbol& symbol, std::string_view text);

/// Makes a variable the constant `value` and passes the change on. 0 or -1.
int storeConstant(FileInfo& sheet, Symbol& symbol, const Value& value);

/// The Recalculate command (1308): every item's options, cost and level again, in list order,
/// and every list added up. It doesn't mark the sheet changed.
void recalculateSheet(FileInfo& sheet);

}  // namespace zv::ui
