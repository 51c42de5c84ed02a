#pragma once
// Lends the services of the engine's upper layers to its lower ones, through the engine context.

#include "core/engine_context.h"

namespace zv {

/// Wires every service the engine lends itself: the item rules for the item fields and the
/// requirements check of level changes (wireItemRules), list totals stored in their variables,
/// and ?datasheet of automatic items loading through the data sheet loader for the sheet that
/// runs them. Sets `servicesWired`. The utilities lend theirs separately (utilities/install.h).
void wireEngineServices(EngineContext& context);

/// Wires the installed context unless that was done: opening a document needs the services.
void ensureEngineServices();

}  // namespace zv
