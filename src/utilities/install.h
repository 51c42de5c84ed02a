#pragma once
// Lends the utilities to the expression engine through the engine context: the die roller of
// rolldice(text), the game system parameters of configparam and setconfigparam over the
// program's settings, and the data directory as the source directory while no script runs.

#include <filesystem>

#include "core/engine_context.h"
#include "core/settings.h"

namespace zv {

/// Reads the game system preferences of the data directory and puts the utilities' services in
/// `context`; `settings` must outlive the context's use of them.
void wireUtilities(EngineContext& context, Settings& settings,
                   const std::filesystem::path& dataDir);

}  // namespace zv
