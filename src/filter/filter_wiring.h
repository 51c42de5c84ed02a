#pragma once
// Lends what the filter engine knows to the engine's lower layers, through the engine context:
// the item format language for the `item` field of items, and the rich text of a sheet for the
// "@details..." attributes of expressions.

#include "core/engine_context.h"

namespace zv {

/// Sets the context's itemRow (an item laid out by its filter format, columns joined by tabs)
/// and sheetAttribute (the sheet record's attributes, with "@detailshtml", "@detailsrtf" and
/// "@detailstext" from its rich text).
void wireFilterServices(EngineContext& context);

}  // namespace zv
