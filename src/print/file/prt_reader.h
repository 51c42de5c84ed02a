#pragma once
// Reading a print template (.prt). A read fails whole: the first fault is reported through the
// host with its message, and no part of the template is handed back.

#include <filesystem>
#include <memory>
#include <string_view>

#include "print/model/print_template.h"

namespace zv {

/// Reads the template at `file`; null after the failure was reported.
std::unique_ptr<PrintTemplate> readPrintTemplate(const std::filesystem::path& file);

/// Reads a template from bytes in memory; `fileName` names it in messages and becomes its path.
std::unique_ptr<PrintTemplate> readPrintTemplateBytes(std::string_view bytes,
                                                      std::string_view fileName);

}  // namespace zv
