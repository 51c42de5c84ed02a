#include <iostream>

#include "cli/cli.h"
#include "cli/commands.h"
#include "core/engine_context.h"
#include "core/messages.h"
#include "core/numbers.h"
#include "core/random.h"
#include "formats/datasheet/data_sheet_loader.h"
#include "formats/engine_wiring.h"
#include "utilities/install.h"

namespace zv::cli {

namespace {

Settings openSettings(const GlobalOptions& options) {
  if (!options.settingsFile.empty()) return Settings::fromFile(options.settingsFile);
  return Settings::forProgram(programDirectory());
}

}  // namespace

Context::Context(const GlobalOptions& options)
    : host_(stderr),
      installation_(host_),
      engineInstallation_(engine_),
      settings_(openSettings(options)),
      appSettings_(AppSettings::load(settings_, programDirectory())) {
  if (!options.answersFile.empty() && !host_.loadAnswers(options.answersFile)) {
    showError(strprintf("Cannot read the answers file %s.", options.answersFile));
    ready_ = false;
  }
  engine_.preferences = enginePreferencesFrom(appSettings_);
  dataDir_ = options.dataDir.empty() ? appSettings_.sourceDirectory
                                     : std::filesystem::path(options.dataDir);
  engine_.dataSheets.dataDir = dataDir_;
  engine_.dataSheets.copyrightDelay = appSettings_.copyrightDelay;
  wireEngineServices(engine_);
  // The random source starts from the clock as in the desktop program, or from --seed, so that
  // dice and random fields can be reproduced.
  seedRandom(options.seed ? *options.seed : seedFromClock());
  wireUtilities(engine_, settings_, dataDir_);
}

int usageError(const std::string& message) {
  std::cerr << "zarvelin-cli: " << message << "\n\n" << helpText();
  return 2;
}

}  // namespace zv::cli
