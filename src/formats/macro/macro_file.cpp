// The expanded text of a whole file, for looking at what a text data sheet really says.

#include <fstream>
#include <iterator>

#include "formats/macro/macro_context.h"

namespace zv {

std::optional<std::string> expandMacroFile(const std::filesystem::path& path,
                                           const std::filesystem::path& dataDir) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return std::nullopt;
  const std::string data((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (in.bad()) return std::nullopt;

  std::size_t position = 0;
  MacroContext context;
  context.macroStart(
      std::filesystem::absolute(path),
      [&data, &position]() -> int {
        if (position >= data.size()) return kEndOfFile;
        return static_cast<unsigned char>(data[position++]);
      },
      dataDir);
  std::string out;
  for (int c = context.macroNextChar(); c >= 0; c = context.macroNextChar()) {
    out.push_back(static_cast<char>(c));
  }
  if (context.failed()) return std::nullopt;
  return out;
}

}  // namespace zv
