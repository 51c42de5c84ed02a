#pragma once
// Running a filter's body over a sheet: the text with its fields and conditionals, the blocks
// and commands, subroutines, and the output streams joined into one block.

#include <optional>
#include <string>
#include <string_view>

#include "core/record_types.h"
#include "filter/file/filter_document.h"
#include "filter/run/filter_context.h"

namespace zv {

/// A body line of this many bytes or more, its line end included, is refused.
inline constexpr std::size_t kMaxFilterLine = 10239;

/// Runs a body held in memory: `headerLines` is the line number before its first line. The
/// translations of `document` (when given) fill the run's table. The output block, empty for a
/// run that wrote nothing or stopped with @exit; nullopt for a failed run (its message has been
/// shown), which gives no output at all.
std::optional<std::string> runFilterText(FileInfo& sheet, std::string_view text, int headerLines,
                                         const FilterRunOptions& options, FilterContext& context,
                                         const FilterDocument* document = nullptr);

/// Runs a loaded filter's body; its outputLength is set after a run that gave output.
std::optional<std::string> runFilterBody(FileInfo& sheet, FilterDocument& document,
                                         const FilterRunOptions& options, FilterContext& context);

}  // namespace zv
