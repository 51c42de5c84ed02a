#include <QGuiApplication>
#include <cstdlib>
#include <memory>

#include "cli/commands.h"
#include "cli/open_sheet.h"
#include "core/fileinfo.h"
#include "core/messages.h"
#include "filter/run/filter_context.h"
#include "print/file/prt_reader.h"
#include "print/job/form_setup.h"
#include "print/job/print_checks.h"
#include "print/produce/filter_box_text.h"
#include "ui/print/pdf_job.h"
#include "utilities/game_system_preferences.h"

namespace zv::cli {

namespace {

/// A QGuiApplication for the PDF writer's fonts, on the offscreen platform unless one was chosen,
/// so that printing needs no display.
class OffscreenGui {
 public:
  OffscreenGui() {
    if (QGuiApplication::instance() != nullptr) return;
    if (std::getenv("QT_QPA_PLATFORM") == nullptr) setenv("QT_QPA_PLATFORM", "offscreen", 1);
    app_ = std::make_unique<QGuiApplication>(argc_, argv_);
  }

 private:
  int argc_ = 1;
  char name_[16] = "zarvelin-cli";
  char* argv_[2] = {name_, nullptr};
  std::unique_ptr<QGuiApplication> app_;
};

}  // namespace

// print SHEET [--template PRT] --pdf OUT: page production through the template into a PDF, with
// no display. A refused check or a bad template writes no file.
int runPrint(Context& context, const std::vector<std::string>& args) {
  std::string sheetPath, templatePath, pdfPath;
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (args[i] == "--template" || args[i] == "--pdf") {
      if (i + 1 >= args.size()) return usageError(args[i] + " needs a file");
      (args[i] == "--pdf" ? pdfPath : templatePath) = args[i + 1];
      ++i;
    } else if (sheetPath.empty()) {
      sheetPath = args[i];
    } else {
      return usageError("print takes one character sheet");
    }
  }
  if (sheetPath.empty()) return usageError("print needs a character sheet");
  if (pdfPath.empty()) return usageError("print needs --pdf OUT");

  std::unique_ptr<FileInfo> sheet = openSheet(sheetPath);
  if (!sheet) return 1;
  std::filesystem::path chosen = templatePath.empty() ? chooseTemplate(*sheet, context.dataDir())
                                                      : std::filesystem::path(templatePath);
  if (chosen.empty()) {
    showError(strprintf("No print template was found for the game system %s.",
                        sheet->gameSystemName.str()));
    return 1;
  }
  std::unique_ptr<PrintTemplate> tmpl = readPrintTemplate(chosen);
  if (!tmpl || !checkTemplateForSheet(*tmpl, *sheet)) return 1;

  OffscreenGui gui;
  ProductionSettings production;
  production.sourceDirectory = context.dataDir();
  FilterContext filters;
  filters.dataDir = context.dataDir();
  filters.askForFilters = false;
  FilterRunOptions options;
  PreferenceStore preferences(context.settings());
  applyFilterPreferences(options, preferences.read(sheet->gameSystemName.str(), "UseAliases"),
                         preferences.read(sheet->gameSystemName.str(), "PrintInheritedOptions"));
  production.runText = filterBoxTextRunner(filters, options);
  DrawSettings drawing;
  drawing.sourceDirectory = context.dataDir();
  drawing.showRulesPreference = context.appSettings().showRules;
  // A form's margins are those the desktop program's Form Setup kept for it.
  FormMargins margins = readFormMargins(context.settings(), formNameOf(*tmpl), tmpl->landscape());
  if (!tmpl->promptForMargins) margins = FormMargins{0, 0, 0, 0, tmpl->landscape()};
  return exportPdf(*tmpl, *sheet, production, drawing, margins, pdfPath, defaultPaper()) ? 0 : 1;
}

}  // namespace zv::cli
