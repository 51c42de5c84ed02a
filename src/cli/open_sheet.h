#pragma once
// Opening a character sheet or template for a command: recognised, read with the expression
// engine, its options applied and its levels settled by the item rules. Data sheets named by the
// sheet are not loaded yet.

#include <memory>
#include <string>

#include "core/fileinfo.h"

namespace zv::cli {

/// The sheet or template at `path`, or null after its message was shown.
std::unique_ptr<FileInfo> openSheet(const std::string& path);

}  // namespace zv::cli
