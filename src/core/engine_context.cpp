#include "core/engine_context.h"

#include "core/app_settings.h"

namespace zv {

namespace {

EngineContext* installedContext = nullptr;

EngineContext& defaultContext() {
  static EngineContext context;
  return context;
}

}  // namespace

EnginePreferences enginePreferencesFrom(const AppSettings& settings) {
  EnginePreferences preferences;
  preferences.useFractions = settings.useFractions;
  preferences.checkReq = settings.checkReq;
  preferences.disallowIfNotSatisfied = settings.disallowIfNotSatisfied;
  preferences.noBadValueDlg = settings.noBadValueDlg;
  preferences.applyRules = settings.applyRules;
  return preferences;
}

EngineContext& engine() {
  return installedContext != nullptr ? *installedContext : defaultContext();
}

EngineContextInstallation::EngineContextInstallation(EngineContext& installed)
    : previous_(installedContext) {
  installedContext = &installed;
}

EngineContextInstallation::~EngineContextInstallation() {
  installedContext = previous_;
}

}  // namespace zv
