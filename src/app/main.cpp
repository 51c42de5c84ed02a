// The desktop program: start-up in order, the message loop, and the settings written at exit.
//
// Usage: zarvelin [--screenshot FILE] [/p] [FILE...]
//   --screenshot FILE  shows the frame for a second, saves a picture of it as FILE (PNG), and ends
//                      without writing any setting.
// While the program runs on the same settings, a second start hands its files to it and ends.

#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <QTimer>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/app_settings.h"
#include "core/command_line.h"
#include "core/conversation.h"
#include "core/engine_context.h"
#include "core/numbers.h"
#include "core/random.h"
#include "core/settings.h"
#include "formats/datasheet/data_sheet_loader.h"
#include "formats/engine_wiring.h"
#include "rules/selection/rule_library.h"
#include "ui/instance_channel.h"
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

// Hands the files of this start to the program already running on the same settings: true when
// it took them, and this start has nothing more to do.
bool handOverToRunningProgram(const QString& channel, const std::vector<zv::CommandLine>& files) {
  std::vector<zv::ConversationCommand> commands;
  for (const zv::CommandLine& file : files) {
    if (file.path.empty()) continue;
    std::error_code ignored;
    commands.push_back({"FileOpen", {std::filesystem::absolute(file.path, ignored).string()}});
    if (file.printAndExit) commands.push_back({"FilePrint", {}});
  }
  const std::optional<std::string> request = zv::formatConversation(commands);
  // A path that the request can't carry is opened by this start itself.
  if (!request) return false;
  return zv::ui::sendToRunningInstance(channel, *request);
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
  const std::vector<zv::CommandLine> files =
      zv::splitCommandLine(options.commandLineWords, [](const std::string& path) {
        std::error_code ignored;
        return fs::exists(path, ignored);
      });
  bool startedByHandOver = qEnvironmentVariableIsSet(zv::ui::kHandOverVariable);
  qunsetenv(zv::ui::kHandOverVariable);
  // A file the system handed back to a program it started stays here (see openCommandLine); a
  // picture for the documentation is always taken by a program of its own.
  const QString channel = zv::ui::instanceChannelName(settings.path());
  if (!startedByHandOver && options.screenshotFile.isEmpty() &&
      handOverToRunningProgram(channel, files)) {
    return 0;
  }
  // Without a file to open, the program returns to the working directory it left.
  std::error_code ignored;
  if (files.empty() && !appSettings.curDir.empty() &&
      fs::is_directory(appSettings.curDir, ignored)) {
    fs::current_path(appSettings.curDir, ignored);
  }

  zv::ui::MainFrame frame(settings, appSettings);
  frame.showFromSettings();
  frame.readRecentFiles();
  // Later starts hand their files to this program; what they send waits for the message loop.
  std::unique_ptr<zv::ui::InstanceServer> server;
  if (options.screenshotFile.isEmpty()) {
    server = std::make_unique<zv::ui::InstanceServer>(
        channel,
        [&frame](const zv::ConversationRequest& request) { frame.runConversation(request); });
  }

  // The default data sheets; later loads (not nested in another) pump messages as they read.
  zv::loadDefaultDataSheets(settings);
  engineContext.dataSheets.pumpMessages = true;

  for (const zv::CommandLine& file : files)
    frame.openCommandLine(file, startedByHandOver);

  if (!options.screenshotFile.isEmpty()) scheduleScreenshot(frame, options.screenshotFile);
  return app.exec();
}
