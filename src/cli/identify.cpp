#include <iostream>

#include "cli/commands.h"
#include "filter/file/filter_scan.h"
#include "formats/file_recognition.h"

namespace zv::cli {

// identify FILE...: one line per file, CODE<TAB>GAMESYSTEM<TAB>FILE.
int runIdentify(Context&, const std::vector<std::string>& args) {
  if (args.empty()) return usageError("identify needs at least one file");
  int status = 0;
  for (const std::string& file : args) {
    RecognitionProbes probes;
    probes.filterHeaderReads = filterHeaderReads;
    Recognition recognition = recogniseFile(file, probes);
    if (recognition.code == kFileFilter) recognition.gameSystem = scanFilterFile(file).gameSystem;
    std::cout << recognition.code << '\t' << recognition.gameSystem << '\t' << file << '\n';
    if (recognition.code == kFileCannotOpen) status = 1;
  }
  return status;
}

}  // namespace zv::cli
