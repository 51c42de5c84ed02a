#pragma once
// Writing a print template (.prt) in the fixed record order.

#include <filesystem>
#include <string>

#include "print/model/print_template.h"

namespace zv {

/// The bytes of the template's file.
std::string printTemplateBytes(const PrintTemplate& tmpl);

/// Writes the template to `file` through a temporary file in its folder, which replaces the old
/// file only when all was written. 0, or -1 after "Error writing print template %s" was shown
/// (the old file is kept). The current page is the same afterwards.
int writePrintTemplate(PrintTemplate& tmpl, const std::filesystem::path& file);

}  // namespace zv
