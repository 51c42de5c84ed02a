// Built-in functions on files.

#include <filesystem>
#include <string>
#include <system_error>

#include "core/paths.h"
#include "expr/builtins.h"
#include "expr/builtins_args.h"

namespace zv {

int builtinFileexists(BuiltinCall& call) {
  std::size_t count = call.args.size();
  if (count != 1 && count != 2) return fail(kExprStackUnderflow);
  std::string path;
  if (!textArgument(call, count - 1, path)) return fail(kExprBadIndexing);
  if (count == 2) {
    std::string directory;
    if (!textArgument(call, 0, directory)) return fail(kExprBadIndexing);
    if (!directory.empty() && directory.back() != '/' && directory.back() != '\\') {
      directory.push_back('/');
    }
    path = directory + path;
  }
  std::error_code error;
  bool exists = !path.empty() && std::filesystem::is_regular_file(
                                     std::filesystem::path(toNativeSeparators(path)), error);
  call.result = Value(exists ? 1 : 0);
  return 0;
}

}  // namespace zv
