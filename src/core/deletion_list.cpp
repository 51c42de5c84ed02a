#include "core/deletion_list.h"

#include <fstream>
#include <string>
#include <system_error>
#include <vector>

#include "core/atomic_file.h"

namespace zv {

namespace fs = std::filesystem;

bool addToDeletionList(const fs::path& tempDir, const fs::path& path) {
  std::error_code ec;
  fs::create_directories(tempDir, ec);
  std::ofstream out(tempDir / kDeletionListName, std::ios::binary | std::ios::app);
  out << path.string() << '\n';
  out.flush();
  return static_cast<bool>(out);
}

int processDeletionList(const fs::path& tempDir) {
  const fs::path listPath = tempDir / kDeletionListName;
  std::ifstream in(listPath, std::ios::binary);
  if (!in) return 0;
  std::vector<std::string> remaining;
  std::string line;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.empty()) continue;
    std::error_code ec;
    fs::remove(line, ec);  // a file already gone counts as deleted
    if (ec) remaining.push_back(line);
  }
  in.close();

  std::error_code ec;
  if (remaining.empty()) {
    fs::remove(listPath, ec);
    return 0;
  }
  std::string text;
  for (const std::string& path : remaining)
    text += path + '\n';
  writeFileAtomically(listPath, text);
  return static_cast<int>(remaining.size());
}

}  // namespace zv
