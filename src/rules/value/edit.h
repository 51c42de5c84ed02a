#pragma once
// The one way to change a value of a sheet. The desktop program (a level typed in a list window,
// Add 1, a value stored by a dialog field), scripts and the command line all call these, so that
// every change runs the same checks, the same propagation to dependants, sublists, list totals and
// dialog fields, and ends by marking the sheet changed.
//
// A refused value passes the preferences of the engine context: with NoBadValueDlg it only
// beeps; with DisallowIfNotSatisfied the box has OK only and the value is refused; otherwise
// the user may accept it anyway (OK) or refuse it (Cancel).

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "core/engine_context.h"
#include "core/fileinfo.h"
#include "core/item.h"
#include "core/value.h"

namespace zv {

enum class EditResult {
  Changed,  ///< the value was taken and the sheet marked changed
  Refused,  ///< a check refused the value (or the user did); the sheet is as it was
  Failed,   ///< the value couldn't be evaluated; its message was shown
  Busy,     ///< the item is already being changed further up the call chain; nothing was done
};

/// The engine's requirements check of an item, while the preference CheckReq is on (or always,
/// with `always`): the unmet requirements, or nullopt when they are met or no check is installed.
std::optional<BadValue> checkRequirementsOf(FileInfo& sheet, Item& item, bool always = false);

/// Runs a refused value through the preferences; true when it may stand anyway.
bool passBadValue(const BadValue& bad);

/// Changes an item's level to `levelText`: with CheckReq the level is checked first, then it is
/// assigned (setItemLevel) with propagation to everything that depends on it, parent sublists
/// and list totals, and the views are told. A dependant whose check now fails, or unmet
/// requirements, pass the preferences too; refused, the old level is put back. An item at its
/// default leaves it for the level given (and returns to it when the level is refused).
EditResult changeItemLevel(FileInfo& sheet, Item& item, std::string_view levelText);

/// Assigns the item again after something its cost follows changed (its options, its cost
/// function), with the same propagation and checks as a level change. When the result is
/// refused, `undo` puts the change back and the item is assigned once more.
EditResult reassessItem(FileInfo& sheet, Item& item, const std::function<void()>& undo);

/// Changes an item's cost: without a cost function the basecost is taken as it is; with one the
/// reverse search gives the level, which is then changed as by changeItemLevel. Shows "Illegal
/// cost value: '%s'" for a text that gives no number.
EditResult changeItemCost(FileInfo& sheet, Item& item, std::string_view costText);

/// Add 1 and Subtract 1: the level (read as an integer) moves by `step`, further while the
/// level check refuses it, at most maxAttempts steps (50 when 0); with none accepted, one step.
/// A sublist steps its cost instead, as a typed cost.
EditResult stepItemLevel(FileInfo& sheet, Item& item, int step);

/// A dialog variable's new expression (a field's typed value, a combo box choice, a script's
/// assignment): evaluated and passed on to every dependent variable, item cost, sublist and list
/// total as one batch of changes, and the views told. 0, or -1 with the error in the expression
/// engine's record (nothing shown). The field's own checks, its acceptance box and marking the
/// sheet changed belong to the dialog field code, which calls this to store the value.
int setVariableExpression(FileInfo& sheet, Symbol& variable, std::string_view text);

/// The same for a constant value (a checkbox, a force-constant field). 0 or -1.
int setVariableValue(FileInfo& sheet, Symbol& variable, const Value& value);

/// Sets a variable of the sheet by name to an expression, as scripts and the command line do,
/// with propagation and without checks; a name not yet defined becomes a new variable. A name
/// held by a function or array, or an expression that fails, shows "Expression error: %s (%s)".
EditResult changeVariable(FileInfo& sheet, std::string_view name, std::string_view expression);

}  // namespace zv
