// Feeds the input to the die roller as a specification. Nothing may crash or hang: the roller
// bounds the dice (and repeats) of one specification.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/headless_host.h"
#include "core/random.h"
#include "utilities/die_roller.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view text(reinterpret_cast<const char*>(data), size);
  zv::HeadlessHost host(nullptr);
  zv::HostInstallation installed(host);
  zv::seedRandom(1);
  std::string result;
  std::vector<zv::DieRoll> rolls;
  if (zv::evaluateDiceText(text, result, &rolls)) {
    (void)zv::bodyText(result, rolls);
    (void)zv::soundFileName(rolls, true);
    for (const zv::DieRoll& roll : rolls) {
      if (!roll.isSeparator()) (void)zv::dieImageName(roll);
    }
  }
  return 0;
}
