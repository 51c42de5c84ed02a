#pragma once
// Puts the utilities where the expression engine reaches them: the die roller of rolldice(text),
// the game system parameters of configparam and setconfigparam over the program's settings, and
// the data directory as the source directory while no script runs. The programs hold one
// installation from start to exit.

#include <filesystem>
#include <memory>

#include "core/settings.h"

namespace zv {

class PreferenceStore;

class UtilitiesInstallation {
 public:
  /// Reads the game system preferences of the data directory and installs the services;
  /// `settings` must outlive the installation.
  UtilitiesInstallation(Settings& settings, const std::filesystem::path& dataDir);
  /// Takes the services away again.
  ~UtilitiesInstallation();
  UtilitiesInstallation(const UtilitiesInstallation&) = delete;
  UtilitiesInstallation& operator=(const UtilitiesInstallation&) = delete;
};

}  // namespace zv
