#include "filter/run/filter_file_run.h"

#include "core/host.h"
#include "core/messages.h"
#include "core/paths.h"
#include "core/text.h"
#include "filter/file/filter_loader.h"
#include "filter/run/filter_run.h"

namespace zv {

namespace {

std::optional<std::filesystem::path> askForOne(const FileInfo& sheet, const FilterContext& context,
                                               std::string_view title, bool chooseOwn) {
  std::vector<AvailableFilter> filters =
      filtersForGameSystem(context.dataDir, sheet.gameSystemName.str());
  if (filters.empty()) {
    showError(
        strprintf("There are no filters for the %s game system.", sheet.gameSystemName.str()));
    return std::nullopt;
  }
  ChoiceRequest request;
  request.title = std::string(title);
  request.prompt = strprintf("Filters for %s:", sheet.gameSystemName.str());
  for (std::size_t i = 0; i < filters.size(); ++i) {
    const AvailableFilter& filter = filters[i];
    request.choices.push_back(filter.summary.description.empty() ? filter.fileName
                                                                 : filter.summary.description);
    if (chooseOwn && equalsIgnoringCase(filter.fileName, shortFileName(sheet.filter.str()))) {
      request.initial = {static_cast<int>(i)};
    }
  }
  if (request.initial.empty()) request.initial = {0};
  std::vector<int> chosen = host().choose(request);
  if (chosen.empty() || chosen.front() < 0 ||
      static_cast<std::size_t>(chosen.front()) >= filters.size()) {
    return std::nullopt;
  }
  return context.dataDir / filters[static_cast<std::size_t>(chosen.front())].fileName;
}

}  // namespace

std::filesystem::path filterPath(const FilterContext& context, std::string_view name) {
  const std::string native = toNativeSeparators(name);
  if (native.find('/') != std::string::npos) return std::filesystem::path(native);
  std::filesystem::path found = findDataFile(context.dataDir, native);
  return found.empty() ? context.dataDir / native : found;
}

std::optional<std::filesystem::path> chooseFilter(const FileInfo& sheet,
                                                  const FilterContext& context,
                                                  std::string_view forcedName) {
  if (!forcedName.empty()) return filterPath(context, forcedName);
  if (context.askForFilters) return askForOne(sheet, context, kAskForFilterTitle, true);
  if (!sheet.filter.empty()) return filterPath(context, sheet.filter.str());
  return askForOne(sheet, context, kGetFiltersTitle, false);
}

std::optional<std::string> runFilterFile(FileInfo& sheet, FilterDocument& document,
                                         std::string_view forcedName,
                                         const FilterRunOptions& options, FilterContext& context) {
  std::optional<std::filesystem::path> path = chooseFilter(sheet, context, forcedName);
  if (!path) return std::nullopt;
  if (!loadFilter(&sheet, *path, document, FilterLoadMode::Whole)) return std::nullopt;
  FilterRunOptions run = options;
  run.label = path->filename().string();
  return runFilterBody(sheet, document, run, context);
}

}  // namespace zv
