#include <iostream>

#include "cli/commands.h"
#include "core/codepage.h"
#include "utilities/die_roller.h"

namespace zv::cli {

// roll DICE: the result text of the die roller, then a newline.
int runRoll(Context&, const std::vector<std::string>& args) {
  if (args.empty()) return usageError("roll needs a dice text");
  std::string dice;
  for (const std::string& word : args) {
    if (!dice.empty()) dice += ' ';
    dice += utf8ToWindows1252(word);
  }
  std::string result;
  if (!evaluateDiceText(dice, result, nullptr)) return 1;
  std::cout << windows1252ToUtf8(result) << '\n';
  return 0;
}

}  // namespace zv::cli
