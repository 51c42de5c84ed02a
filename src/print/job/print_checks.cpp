#include "print/job/print_checks.h"

#include <algorithm>

#include "core/fileinfo.h"
#include "core/messages.h"
#include "core/paths.h"
#include "core/text.h"
#include "formats/print_template_header.h"

namespace zv {

std::optional<CheckRefusal> templateRefusal(const PrintTemplate& tmpl, const FileInfo& sheet) {
  const std::string gameSystem = sheet.gameSystemName.str();
  if (!equalsIgnoringCase(gameSystem, tmpl.gameSystem))
    return CheckRefusal{"Error",
                        strprintf("The game system for the character sheet (%s) is different "
                                  "from the game system for the selected print template (%s)",
                                  gameSystem, tmpl.gameSystem)};
  const std::string sheetType = sheet.sheetType.str();
  if (!tmpl.sheetType.empty() && !equalsIgnoringCase(sheetType, tmpl.sheetType)) {
    if (sheetType.empty())
      return CheckRefusal{"Character Sheet Type Mismatch",
                          strprintf("The type of the character sheet must be '%s' to be used "
                                    "with this print template.",
                                    tmpl.sheetType)};
    return CheckRefusal{
        "Character Sheet Type Mismatch",
        strprintf("The type of the character sheet (%s) is different from the type of the print "
                  "template (%s). To print you must select a compatible print template.",
                  sheetType, tmpl.sheetType)};
  }
  return std::nullopt;
}

bool checkTemplateForSheet(const PrintTemplate& tmpl, const FileInfo& sheet) {
  if (auto refusal = templateRefusal(tmpl, sheet)) {
    showTitled(Severity::Error, refusal->title, refusal->text);
    return false;
  }
  if (tmpl.level != static_cast<std::uint16_t>(sheet.level)) {
    std::string text = strprintf(
        "The level of the print template (%d) is different from the level of the character "
        "sheet (%d).\r\n\r\nPrint anyway?",
        static_cast<int>(tmpl.level), static_cast<int>(sheet.level));
    return askQuestion("Level Mismatch", text, ButtonSet::YesNo, Button::Yes) == Button::Yes;
  }
  return true;
}

std::vector<std::filesystem::path> templatesFor(std::string_view gameSystem,
                                                const std::filesystem::path& dataDir) {
  std::vector<std::filesystem::path> found;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(dataDir, error)) {
    if (!entry.is_regular_file(error) ||
        !equalsIgnoringCase(entry.path().extension().string(), ".prt"))
      continue;
    auto header = readPrintTemplateHeader(entry.path());
    if (header && equalsIgnoringCase(header->gameSystem, gameSystem)) found.push_back(entry.path());
  }
  std::sort(found.begin(), found.end());
  return found;
}

std::filesystem::path namedTemplatePath(const FileInfo& sheet,
                                        const std::filesystem::path& dataDir) {
  std::string named = sheet.printTemplate.str();
  if (named.empty()) return {};
  std::replace(named.begin(), named.end(), '\\', '/');
  std::filesystem::path path(named);
  std::error_code error;
  if (path.is_absolute() && std::filesystem::exists(path, error)) return path;
  std::filesystem::path inData = findDataFile(dataDir, path.filename().string());
  if (std::filesystem::exists(inData, error)) return inData;
  return path;
}

std::filesystem::path chooseTemplate(const FileInfo& sheet, const std::filesystem::path& dataDir) {
  std::filesystem::path named = namedTemplatePath(sheet, dataDir);
  std::error_code error;
  if (!named.empty() && std::filesystem::exists(named, error)) return named;
  auto offered = templatesFor(sheet.gameSystemName.str(), dataDir);
  return offered.empty() ? std::filesystem::path() : offered.front();
}

}  // namespace zv
