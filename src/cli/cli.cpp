#include "cli/cli.h"

#include <cstdio>
#include <iostream>

#include "core/headless_host.h"

namespace zv::cli {

std::string helpText() {
  return "Usage: zarvelin-cli [--data-dir DIR] [--settings FILE] [--answers FILE] [--seed N] "
         "COMMAND ARGS\n"
         "\n"
         "Commands:\n"
         "  identify FILE...   tell the kind of each file: CODE<TAB>GAMESYSTEM<TAB>FILE\n"
         "\n"
         "Options:\n"
         "  --data-dir DIR     where game system data are found (default: the setting\n"
         "                     \"Source Directory\")\n"
         "  --settings FILE    read settings from this INI file\n"
         "  --answers FILE     answers to the questions the program asks, one per line\n"
         "  --seed N           seed of the random generator\n"
         "  --help             this text\n";
}

int run(const std::vector<std::string>& args) {
  if (args.empty() || args[0] == "--help" || args[0] == "-h") {
    std::cout << helpText();
    return args.empty() ? 2 : 0;
  }
  std::cerr << "zarvelin-cli: unknown command '" << args[0] << "'\n\n" << helpText();
  return 2;
}

}  // namespace zv::cli
