#pragma once
// Lends the item rules to the layers below them through the engine context.

#include "core/engine_context.h"

namespace zv {

/// Gives the item fields of the expression engine the option rules of this library (option
/// strings, display texts, option references and the category test), joins the requirements of
/// a sheet to its level changes (rules/requirements/requirements_check.h), and registers the
/// built-in functions that stand on the item rules (rules/builtins.h).
void wireItemRules(EngineContext& context);

}  // namespace zv
