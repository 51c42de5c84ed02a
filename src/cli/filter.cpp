#include <charconv>
#include <cstdio>
#include <iostream>

#include "cli/commands.h"
#include "cli/open_sheet.h"
#include "core/atomic_file.h"
#include "core/messages.h"
#include "core/text.h"
#include "filter/rich/clipboard.h"
#include "filter/run/filter_file_run.h"
#include "utilities/game_system_preferences.h"

namespace zv::cli {

namespace {

/// "YYYY-MM-DD" as the clock's date; false for anything else.
bool parseDate(const std::string& text, LocalTime& time) {
  int parts[3] = {0, 0, 0};
  const char* at = text.data();
  const char* end = text.data() + text.size();
  for (int i = 0; i < 3; ++i) {
    if (i > 0) {
      if (at >= end || *at != '-') return false;
      ++at;
    }
    auto [next, error] = std::from_chars(at, end, parts[i]);
    if (error != std::errc()) return false;
    at = next;
  }
  if (at != end || parts[1] < 1 || parts[1] > 12 || parts[2] < 1 || parts[2] > 31) return false;
  time = LocalTime{parts[0], parts[1], parts[2], 12, 0, 0, true};
  return true;
}

}  // namespace

// filter SHEET FILTER [-o OUT] [--date YYYY-MM-DD] [--short-date PATTERN] [--clipboard FORMAT]
int runFilter(Context& context, const std::vector<std::string>& args) {
  std::vector<std::string> words;
  std::string output;
  if (!splitOutputOption(args, words, output)) return 2;
  std::vector<std::string> files;
  std::optional<std::string> clipboardFormat;
  FilterContext filters;
  filters.dataDir = context.dataDir();
  filters.askForFilters = false;
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (words[i] == "--date") {
      LocalTime time;
      if (i + 1 >= words.size() || !parseDate(words[i + 1], time)) {
        return usageError("--date needs a date as YYYY-MM-DD");
      }
      context.headless().setFixedTime(time);
      ++i;
    } else if (words[i] == "--short-date") {
      if (i + 1 >= words.size()) return usageError("--short-date needs a pattern such as m/d/yy");
      filters.shortDatePattern = words[++i];
    } else if (words[i] == "--clipboard") {
      if (i + 1 >= words.size()) {
        return usageError("--clipboard needs a format such as Text or \"Rich Text Format\"");
      }
      clipboardFormat = words[++i];
    } else if (words[i].size() > 2 && words[i].compare(0, 2, "--") == 0) {
      return usageError("unknown option '" + words[i] + "' for filter");
    } else {
      files.push_back(words[i]);
    }
  }
  if (files.size() != 2) return usageError("filter needs a sheet and a filter");
  std::unique_ptr<FileInfo> sheet = openSheet(files[0]);
  if (!sheet) return 1;
  FilterRunOptions options;
  PreferenceStore preferences(context.settings());
  applyFilterPreferences(options, preferences.read(sheet->gameSystemName.str(), "UseAliases"),
                         preferences.read(sheet->gameSystemName.str(), "PrintInheritedOptions"));
  FilterDocument document;
  std::optional<std::string> block = runFilterFile(*sheet, document, files[1], options, filters);
  if (!block) return 1;
  if (clipboardFormat) {
    // What Copy Through Filter puts on the clipboard under that format.
    ClipboardContents contents = clipboardContentsFor(document, *block);
    bool found = false;
    for (const ClipboardEntry& entry : contents.entries) {
      if (equalsIgnoringCase(entry.format, *clipboardFormat)) {
        *block = entry.bytes;
        found = true;
      }
    }
    if (!found) {
      showError(strprintf("The filter puts nothing on the clipboard as %s.", *clipboardFormat));
      return 1;
    }
  }
  if (output.empty()) {
    std::fwrite(block->data(), 1, block->size(), stdout);
    std::fflush(stdout);
    return 0;
  }
  if (!writeFileAtomically(output, *block)) {
    showError(strprintf("Error creating filter output file %s", output));
    return 1;
  }
  return 0;
}

}  // namespace zv::cli
