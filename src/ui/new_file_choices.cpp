#include "ui/new_file_choices.h"

#include <algorithm>

#include "core/text.h"
#include "formats/file_recognition.h"

namespace zv::ui {

std::vector<TemplateChoice> findTemplates(const std::filesystem::path& dataDir) {
  std::vector<TemplateChoice> templates;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(dataDir, error)) {
    const std::filesystem::path& path = entry.path();
    if (!equalsIgnoringCase(path.extension().string(), ".cst")) continue;
    if (!entry.is_regular_file(error)) continue;
    Recognition recognition = recogniseFile(path);
    if (recognition.code != kFileCharacterTemplate) continue;
    templates.push_back(
        {path.filename().string(), recognition.gameSystem, recognition.info.description});
  }
  std::sort(templates.begin(), templates.end(), [](const auto& a, const auto& b) {
    return compareIgnoringCase(a.fileName, b.fileName) < 0;
  });
  return templates;
}

std::vector<std::string> templateGameSystems(const std::vector<TemplateChoice>& templates) {
  std::vector<std::string> names;
  for (const TemplateChoice& choice : templates) {
    if (choice.gameSystem.empty()) continue;
    bool known = std::any_of(names.begin(), names.end(), [&](const std::string& name) {
      return equalsIgnoringCase(name, choice.gameSystem);
    });
    if (!known) names.push_back(choice.gameSystem);
  }
  std::sort(names.begin(), names.end(),
            [](const auto& a, const auto& b) { return compareIgnoringCase(a, b) < 0; });
  return names;
}

std::vector<TemplateChoice> templatesOf(const std::vector<TemplateChoice>& templates,
                                        std::string_view gameSystem) {
  if (gameSystem.empty() || gameSystem == kAllGameSystems) return templates;
  std::vector<TemplateChoice> chosen;
  for (const TemplateChoice& choice : templates) {
    if (equalsIgnoringCase(choice.gameSystem, gameSystem)) chosen.push_back(choice);
  }
  return chosen;
}

}  // namespace zv::ui
