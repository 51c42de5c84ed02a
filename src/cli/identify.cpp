#include <iostream>

#include "cli/commands.h"
#include "formats/file_recognition.h"

namespace zv::cli {

// identify FILE...: one line per file, CODE<TAB>GAMESYSTEM<TAB>FILE.
int runIdentify(Context&, const std::vector<std::string>& args) {
  if (args.empty()) return usageError("identify needs at least one file");
  int status = 0;
  for (const std::string& file : args) {
    Recognition recognition = recogniseFile(file);
    std::cout << recognition.code << '\t' << recognition.gameSystem << '\t' << file << '\n';
    if (recognition.code == kFileCannotOpen) status = 1;
  }
  return status;
}

}  // namespace zv::cli
