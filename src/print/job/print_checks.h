#pragma once
// The checks before a sheet prints through a template, and the choice of the template.

#include <filesystem>
#include <optional>
#include <string>

#include "core/record_types.h"
#include "print/model/print_template.h"

namespace zv {

/// Checks the template against the sheet: the game systems must match and the sheet type must
/// be the template's (when it names one), else the message is shown and the answer is false; a
/// differing level asks whether to go on.
bool checkTemplateForSheet(const PrintTemplate& tmpl, const FileInfo& sheet);

/// The message of a refused check, with its title; none when the template suits the sheet.
struct CheckRefusal {
  std::string title;
  std::string text;
};
std::optional<CheckRefusal> templateRefusal(const PrintTemplate& tmpl, const FileInfo& sheet);

/// The file of the template the sheet names (`printTemplate`): a full path that exists, else the
/// file of that name in the data directory, else the name as it stands; empty when the sheet
/// names none.
std::filesystem::path namedTemplatePath(const FileInfo& sheet,
                                        const std::filesystem::path& dataDir);

/// The template a sheet prints through: its `printTemplate` (a path, or a name in the data
/// directory), else the first `*.prt` of the data directory, in name order, whose header names the
/// sheet's game system. Empty when there is none.
std::filesystem::path chooseTemplate(const FileInfo& sheet, const std::filesystem::path& dataDir);

/// The `*.prt` files of the data directory whose header names `gameSystem`, in name order.
std::vector<std::filesystem::path> templatesFor(std::string_view gameSystem,
                                                const std::filesystem::path& dataDir);

}  // namespace zv
