#include <iostream>

#include "cli/commands.h"
#include "core/messages.h"
#include "formats/macro/macro_context.h"

namespace zv::cli {

// expand FILE: the macro processor's output for a text data sheet, as its bytes stand.
int runExpand(Context& context, const std::vector<std::string>& args) {
  if (args.size() != 1) return usageError("expand takes one file");
  std::error_code error;
  if (!std::filesystem::is_regular_file(args[0], error)) {
    showTitled(Severity::Error, "File Not Found",
               strprintf("The file '%s' does not exist.", args[0]));
    return 1;
  }
  std::optional<std::string> text = expandMacroFile(args[0], context.dataDir());
  if (!text) return 1;
  std::cout.write(text->data(), static_cast<std::streamsize>(text->size()));
  return 0;
}

}  // namespace zv::cli
