#pragma once
// What the New File dialog offers: the templates of the data directory with their game systems
// and descriptions, filtered by game system.

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace zv::ui {

struct TemplateChoice {
  std::string fileName;  ///< short name in the data directory
  std::string gameSystem;
  std::string description;
};

/// Every ".cst" file of `dataDir` (ignoring case) that reads as a template, sorted by name
/// ignoring case.
std::vector<TemplateChoice> findTemplates(const std::filesystem::path& dataDir);

/// The game systems of the templates, each once (ignoring case), sorted.
std::vector<std::string> templateGameSystems(const std::vector<TemplateChoice>& templates);

/// The templates of one game system (ignoring case); all of them for an empty name or "(All)".
std::vector<TemplateChoice> templatesOf(const std::vector<TemplateChoice>& templates,
                                        std::string_view gameSystem);

/// The first row of the game system box.
inline constexpr std::string_view kAllGameSystems = "(All)";

}  // namespace zv::ui
