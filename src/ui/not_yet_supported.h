#pragma once
// The one place that names the kinds of document the desktop program can't show yet. Each kind
// leaves this table when its window exists.

#include <string>
#include <string_view>

#include "formats/dispatch.h"

namespace zv::ui {

inline constexpr std::string_view kNotYetSupportedTitle = "Not Yet Supported";

/// The kind of document that a decision opens, in words ("character sheet", "data sheet"), when
/// the program has no window for it yet; empty when it has one or the decision opens nothing.
std::string_view unsupportedDocumentKind(const OpenDecision& decision);

/// "Opening <kind> files is not yet supported: <path>".
std::string notYetSupportedText(std::string_view kind, std::string_view path);

}  // namespace zv::ui
