// The desktop program: start-up in order, the message loop, and the settings written at exit.
//
// Usage: zarvelin [--screenshot FILE] [/p] [PATH]
//   --screenshot FILE  shows the frame for a second, saves a picture of it as FILE (PNG), and ends
//                      without writing any setting.

#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <QTimer>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "core/app_settings.h"
#include "core/command_line.h"
#include "core/engine_context.h"
#include "core/numbers.h"
#include "core/random.h"
#include "core/settings.h"
#include "formats/datasheet/data_sheet_loader.h"
#include "formats/engine_wiring.h"
#include "rules/selection/rule_library.h"
#include "ui/main_frame.h"
#include "ui/qt_host.h"
#include "ui/text_codec.h"
#include "utilities/install.h"

namespace {

struct ProgramOptions {
  QString screenshotFile;
  std::vector<std::string> commandLineWords;
};

ProgramOptions readOptions(QStringList arguments) {
  ProgramOptions options;
  if (!arguments.isEmpty()) arguments.removeFirst();
  if (arguments.size() >= 2 && arguments.front() == QLatin1String("--screenshot")) {
    options.screenshotFile = arguments.at(1);
    arguments.remove(0, 2);
  }
  for (const QString& word : arguments)
    options.commandLineWords.push_back(zv::ui::toNativePath(word));
  return options;
}

// Saves a picture of the frame once it has settled, then ends the program.
void scheduleScreenshot(QWidget& frame, const QString& file) {
  QTimer::singleShot(1000, &frame, [&frame, file] {
    bool saved = frame.grab().save(file, "PNG");
    if (!saved) std::fprintf(stderr, "zarvelin: cannot write %s\n", qPrintable(file));
    // exit() rather than close(): a picture for the documentation changes no setting.
    QCoreApplication::exit(saved ? 0 : 1);
  });
}

}  // namespace

int main(int argc, char** argv) {
  namespace fs = std::filesystem;
  const fs::path programDir = zv::programDirectory();
  zv::Settings settings = zv::Settings::forProgram(programDir);
  zv::AppSettings appSettings = zv::AppSettings::load(settings, programDir);
  // What the engine asks of the program beyond its boxes: the user's preferences, where data
  // sheets are found, the services of its own layers and of the utilities; the frame adds its
  // windows' part.
  zv::EngineContext engineContext;
  engineContext.preferences = zv::enginePreferencesFrom(appSettings);
  engineContext.dataSheets.dataDir = appSettings.sourceDirectory;
  engineContext.dataSheets.copyrightDelay = appSettings.copyrightDelay;
  zv::wireEngineServices(engineContext);
  zv::wireUtilities(engineContext, settings, appSettings.sourceDirectory);
  zv::EngineContextInstallation engineInstalled(engineContext);

  QApplication app(argc, argv);
  QApplication::setApplicationName("Zarvelin");
  zv::ui::QtHost qtHost;
  zv::HostInstallation installed(qtHost);
  zv::seedRandom(zv::seedFromClock());
  // The selection rule sets of each game system, from the data directory's Rules folders.
  zv::selectionRules().scanRuleFiles(appSettings.sourceDirectory);

  ProgramOptions options = readOptions(QApplication::arguments());
  zv::CommandLine commandLine = zv::parseCommandLine(options.commandLineWords);
  // Without a file to open, the program returns to the working directory it left.
  std::error_code ignored;
  if (commandLine.path.empty() && !appSettings.curDir.empty() &&
      fs::is_directory(appSettings.curDir, ignored)) {
    fs::current_path(appSettings.curDir, ignored);
  }

  zv::ui::MainFrame frame(settings, appSettings);
  frame.showFromSettings();
  frame.readRecentFiles();

  // The default data sheets; later loads (not nested in another) pump messages as they read.
  zv::loadDefaultDataSheets(settings);
  engineContext.dataSheets.pumpMessages = true;

  bool startedByHandOver = qEnvironmentVariableIsSet(zv::ui::kHandOverVariable);
  qunsetenv(zv::ui::kHandOverVariable);
  frame.openCommandLine(commandLine, startedByHandOver);

  if (!options.screenshotFile.isEmpty()) scheduleScreenshot(frame, options.screenshotFile);
  return app.exec();
}
