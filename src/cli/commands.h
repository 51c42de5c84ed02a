#pragma once
// The commands of zarvelin-cli and the context they share.

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/app_settings.h"
#include "core/engine_context.h"
#include "core/headless_host.h"
#include "core/settings.h"

namespace zv::cli {

struct GlobalOptions {
  std::string dataDir;
  std::string settingsFile;
  std::string answersFile;
  std::optional<unsigned long> seed;
  bool help = false;
};

/// What every command runs in: the headless host and the engine context (both installed while
/// the context lives) with the answers, the settings, the data directory, the utilities the
/// expression engine reaches, and the random generator seeded by --seed or the clock.
class Context {
 public:
  explicit Context(const GlobalOptions& options);
  /// False when the options could not be put in place (their message was shown).
  bool ready() const { return ready_; }
  HeadlessHost& headless() { return host_; }
  Settings& settings() { return settings_; }
  const AppSettings& appSettings() const { return appSettings_; }
  const std::filesystem::path& dataDir() const { return dataDir_; }

 private:
  HeadlessHost host_;
  HostInstallation installation_;
  EngineContext engine_;
  EngineContextInstallation engineInstallation_;
  Settings settings_;
  AppSettings appSettings_;
  std::filesystem::path dataDir_;
  bool ready_ = true;
};

/// Exit status of a command: 0 done, 1 failed, 2 bad usage.
int usageError(const std::string& message);

int runAdd(Context& context, const std::vector<std::string>& args);
int runDelete(Context& context, const std::vector<std::string>& args);
int runIdentify(Context& context, const std::vector<std::string>& args);
int runConvert(Context& context, const std::vector<std::string>& args);
int runDump(Context& context, const std::vector<std::string>& args);
int runEval(Context& context, const std::vector<std::string>& args);
int runExpand(Context& context, const std::vector<std::string>& args);
int runFilter(Context& context, const std::vector<std::string>& args);
int runLoadData(Context& context, const std::vector<std::string>& args);
int runRecalc(Context& context, const std::vector<std::string>& args);
int runRoll(Context& context, const std::vector<std::string>& args);
int runOffer(Context& context, const std::vector<std::string>& args);
int runRequirements(Context& context, const std::vector<std::string>& args);
int runScript(Context& context, const std::vector<std::string>& args);

}  // namespace zv::cli
