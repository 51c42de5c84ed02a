#include "ui/printing/print_commands.h"

#include <QCoreApplication>
#include <QPrintDialog>
#include <QPrinter>
#include <QProgressDialog>
#include <filesystem>

#include "core/fileinfo.h"
#include "core/messages.h"
#include "core/text.h"
#include "filter/file/filter_loader.h"
#include "filter/file/filter_save.h"
#include "filter/rich/filter_text.h"
#include "filter/rich/rtf_reader.h"
#include "filter/run/filter_file_run.h"
#include "print/file/prt_reader.h"
#include "print/job/data_sheet_print.h"
#include "print/job/footer.h"
#include "print/job/print_checks.h"
#include "print/produce/filter_box_text.h"
#include "ui/print/pdf_job.h"
#include "ui/print/rich_document.h"
#include "ui/print/template_pages.h"
#include "ui/print/text_pages.h"
#include "ui/printing/aux_files_dialog.h"
#include "ui/printing/form_setup_dialog.h"
#include "ui/printing/measure_edit.h"
#include "ui/printing/page_setup_dialog.h"
#include "ui/printing/print_preview_dialog.h"
#include "ui/printing/printer_setup.h"
#include "ui/printing/template_chooser.h"
#include "ui/text_codec.h"

namespace zv::ui {

namespace {

/// The margins of printed text that names none, twips: those a new data sheet's page has.
constexpr int kDefaultTextMarginTwips = 1080;

PaperMargins textMargins(int left, int top, int right, int bottom) {
  if (left == 0 && top == 0 && right == 0 && bottom == 0)
    return {kDefaultTextMarginTwips, kDefaultTextMarginTwips, kDefaultTextMarginTwips,
            kDefaultTextMarginTwips};
  return {std::max(0, left), std::max(0, top), std::max(0, right), std::max(0, bottom)};
}

/// Print to File, where no printer is installed, writes a PDF named after the document beside it.
QString pdfNameFor(const std::string& documentPath, const std::string& name) {
  std::filesystem::path path(documentPath.empty() ? name : documentPath);
  path.replace_extension(".pdf");
  return fromNativePath(path.string());
}

QString pdfNameFor(const FileInfo& document) {
  return pdfNameFor(document.path.str(), document.name.str());
}

QString systemText(const std::string& text) {
  return fromSystemText(text);
}

}  // namespace

struct PrintCommands::TemplateRun {
  std::unique_ptr<PrintTemplate> tmpl;
  FormMargins margins;
  ProductionSettings production;
  DrawSettings drawing;
  std::unique_ptr<TemplatePages> pages;
};

struct PrintCommands::TextRun {
  std::unique_ptr<TextPages> pages;
  bool landscape = false;
  std::string name;  ///< the document's name, as messages and footers give it
  QString pdfName;   ///< Print to File's PDF, where no printer is installed
};

PrintCommands::PrintCommands(PrintEnvironment environment) : environment_(std::move(environment)) {}

PrintCommands::~PrintCommands() = default;

MeasureUnit PrintCommands::measureUnit() const {
  return preferredMeasureUnit(environment_.appSettings->measure);
}

// ---- Through a template ----

std::unique_ptr<PrintCommands::TemplateRun> PrintCommands::prepareTemplate(FileInfo& sheet) {
  const std::filesystem::path dataDir = environment_.appSettings->sourceDirectory;
  const std::filesystem::path chosen = chooseTemplateFor(sheet, dataDir, environment_.parent);
  if (chosen.empty()) return nullptr;
  auto run = std::make_unique<TemplateRun>();
  run->tmpl = readPrintTemplate(chosen);
  if (!run->tmpl || !checkTemplateForSheet(*run->tmpl, sheet)) return nullptr;
  std::optional<FormMargins> margins =
      formMarginsFor(*run->tmpl, *environment_.settings, measureUnit(), environment_.parent);
  if (!margins) return nullptr;
  run->margins = *margins;
  environment_.filters->dataDir = dataDir;
  run->production.sourceDirectory = dataDir;
  run->production.runText =
      filterBoxTextRunner(*environment_.filters, environment_.runOptions(sheet));
  run->drawing.sourceDirectory = dataDir;
  run->drawing.showRulesPreference = environment_.appSettings->showRules;
  run->pages = std::make_unique<TemplatePages>(*run->tmpl, sheet, run->production, run->drawing,
                                               run->margins);
  return run;
}

bool PrintCommands::printThroughTemplate(FileInfo& sheet) {
  std::unique_ptr<TemplateRun> run = prepareTemplate(sheet);
  if (!run) return false;
  std::unique_ptr<QPrinter> printer = defaultPrinter(run->margins.landscape, pdfNameFor(sheet));
  if (!printer) return false;
  {
    BusyCursor busy;
    if (!run->pages->produce(*printer, paperPixels(*printer))) return false;
  }
  const std::string name = sheet.name.str();
  return printPages(
      *run->pages, *printer, run->margins.landscape,
      systemText(strprintf("This print template is printing the character sheet %s.", name)),
      [&run](QPrinter& other) {
        BusyCursor busy;
        return run->pages->produce(other, paperPixels(other));
      },
      name);
}

bool PrintCommands::previewThroughTemplate(FileInfo& sheet) {
  std::unique_ptr<TemplateRun> run = prepareTemplate(sheet);
  if (!run) return false;
  std::unique_ptr<QPrinter> printer = defaultPrinter(run->margins.landscape, pdfNameFor(sheet));
  if (!printer) return false;
  {
    BusyCursor busy;
    if (!run->pages->produce(*printer, paperPixels(*printer))) return false;
  }
  const std::string name = sheet.name.str();
  PrintPreviewDialog preview(
      *run->pages,
      systemText(strprintf("This print template is previewing the character sheet %s.", name)),
      environment_.parent);
  if (preview.exec() != PrintPreviewDialog::kPrint) return true;
  return printPages(
      *run->pages, *printer, run->margins.landscape,
      systemText(strprintf("This print template is printing the character sheet %s.", name)),
      [&run](QPrinter& other) {
        BusyCursor busy;
        return run->pages->produce(other, paperPixels(other));
      },
      name);
}

bool PrintCommands::exportPdf(FileInfo& sheet, const std::string& path) {
  std::unique_ptr<TemplateRun> run = prepareTemplate(sheet);
  if (!run) return false;
  std::string target = path;
  if (target.empty()) {
    FileRequest request;
    request.mode = FileRequest::Mode::Save;
    request.title = "Export PDF";
    std::filesystem::path suggested = toNativePath(pdfNameFor(sheet));
    request.directory = suggested.parent_path().string();
    request.fileName = suggested.filename().string();
    request.filters = {{"PDF Document", "*.pdf"}};
    std::optional<SaveFileChoice> choice = host().chooseSaveFile(request);
    if (!choice) return false;
    target = choice->path;
  }
  // The paper of the default printer, which the preview shows, else the locale's.
  QPageSize paper = defaultPaper();
  if (std::unique_ptr<QPrinter> printer = defaultPrinter(run->margins.landscape, QString())) {
    if (printer->outputFormat() == QPrinter::NativeFormat) paper = printer->pageLayout().pageSize();
  } else {
    return false;
  }
  BusyCursor busy;
  return zv::exportPdf(*run->tmpl, sheet, run->production, run->drawing, run->margins, target,
                       paper);
}

// ---- The print dialog and the print ----

bool PrintCommands::printPages(const PagedDocument& document, QPrinter& printer, bool landscape,
                               const QString& abortText,
                               const std::function<bool(QPrinter&)>& remeasure,
                               const std::string& documentName) {
  const PrinterIdentity measured = identityOf(printer);
  QPrintDialog dialog(&printer, environment_.parent);
  dialog.setMinMax(1, std::max(1, document.pageCount()));
  dialog.setFromTo(0, 0);
  dialog.setOption(QAbstractPrintDialog::PrintPageRange, true);
  if (dialog.exec() != QDialog::Accepted) return false;
  // The orientation is the template's (or the filter's), whatever the dialog says.
  if (!forceOrientation(printer, landscape)) return false;
  printer.setFullPage(true);
  // Text is measured on the printer that prints: another printer, another measure.
  if (identityOf(printer) != measured && !remeasure(printer)) return false;

  PageSelection selection;
  if (printer.printRange() == QPrinter::PageRange) {
    selection.first = printer.fromPage();
    selection.last = printer.toPage();
  }
  // A printer that makes copies itself gets each page once.
  selection.copies = printer.supportsMultipleCopies() ? 1 : std::max(1, printer.copyCount());
  const std::vector<PaperSheet> sheets = document.plan(selection);
  if (sheets.empty()) return false;

  QProgressDialog abort(abortText, QCoreApplication::translate("zv::ui::PrintCommands", "Cancel"),
                        0, static_cast<int>(sheets.size()), environment_.parent);
  abort.setObjectName("printAbort");
  abort.setWindowTitle(QCoreApplication::translate("zv::ui::PrintCommands", "Printing"));
  abort.setWindowModality(Qt::WindowModal);
  abort.setMinimumDuration(0);
  QPainter painter;
  if (!painter.begin(&printer)) {
    showError(strprintf("Could not print %s", documentName));
    return false;
  }
  const PrintOutcome outcome =
      paintSheets(printer, painter, document, sheets, [&abort](int done, int) {
        abort.setValue(done);
        QCoreApplication::processEvents();
        return !abort.wasCanceled();
      });
  if (outcome != PrintOutcome::Done) {
    printer.abort();
    painter.end();
    if (outcome == PrintOutcome::Failed) showError(strprintf("Could not print %s", documentName));
    return false;
  }
  painter.end();
  return true;
}

// ---- Text: through a filter, a data sheet ----

std::unique_ptr<PrintCommands::TextRun> PrintCommands::prepareFilterText(FileInfo& sheet) {
  FilterContext& filters = *environment_.filters;
  filters.dataDir = environment_.appSettings->sourceDirectory;
  filters.askForFilters = environment_.appSettings->askForFilters;
  std::optional<std::filesystem::path> filter = chooseFilter(sheet, filters, {});
  if (!filter) return nullptr;
  if (filter->empty()) {
    showError("No filter provided to print text.");
    return nullptr;
  }
  FilterDocument document;
  std::optional<std::string> block;
  {
    BusyCursor busy;
    block =
        runFilterFile(sheet, document, filter->string(), environment_.runOptions(sheet), filters);
  }
  if (!block) return nullptr;
  auto run = std::make_unique<TextRun>();
  run->landscape = document.landscape != 0;
  run->name = sheet.name.str();
  run->pdfName = pdfNameFor(sheet);
  const PaperMargins margins = textMargins(document.marginLeft, document.marginTop,
                                           document.marginRight, document.marginBottom);
  std::optional<TextFooter> footer;
  if (environment_.settings->getInt(kPreferencesSection, "ShowFooters", 1) != 0)
    footer = TextFooter{sheet.name.str(), footerDate(host().now(), filters.shortDatePattern)};
  RichText rich;
  bool styled = false;
  const bool html = equalsIgnoringCase(document.clipFormat.str(), "HTML Format") ||
                    startsWithIgnoringCase(*block, "<!DOCTYPE html") ||
                    startsWithIgnoringCase(*block, "<html");
  if (html) {
    run->pages = std::make_unique<TextPages>(RichText(), margins, footer);
    run->pages->setHtml(std::move(*block));
    return run;
  }
  if (block->rfind("{\\rtf", 0) == 0) {
    if (parseRichText(*block, rich) != kRichOk) rich = plainRichText(*block, "Courier New", 10);
  } else if (!parseFilterText(*block, &document, rich, styled)) {
    return nullptr;
  }
  run->pages = std::make_unique<TextPages>(std::move(rich), margins, footer);
  if (document.tabWidth > 0) run->pages->setDefaultTabWidth(document.tabWidth);
  return run;
}

std::unique_ptr<PrintCommands::TextRun> PrintCommands::prepareDataSheetText(
    const FileInfo& dataSheet) {
  const PageInfo& page = dataSheet.page;
  auto run = std::make_unique<TextRun>();
  run->name = dataSheet.name.str();
  run->pdfName = pdfNameFor(dataSheet);
  const std::string face = page.facename.empty() ? "Times New Roman" : page.facename.str();
  const int points = page.pointsize > 0 ? std::max(4, page.pointsize / 20) : 11;
  std::optional<TextFooter> footer;
  if (environment_.settings->getInt(kPreferencesSection, "ShowFooters", 1) != 0)
    footer = TextFooter{dataSheet.name.str(),
                        footerDate(host().now(), environment_.filters->shortDatePattern)};
  run->pages =
      std::make_unique<TextPages>(plainRichText(dataSheetPrintText(dataSheet), face, points),
                                  textMargins(page.lm, page.tm, page.rm, page.bm), footer);
  if (page.tabwidth > 0) run->pages->setDefaultTabWidth(page.tabwidth);
  return run;
}

std::unique_ptr<PrintCommands::TextRun> PrintCommands::preparePlainText(const std::string& text,
                                                                        const std::string& path) {
  auto run = std::make_unique<TextRun>();
  run->name = std::filesystem::path(path).filename().string();
  run->pdfName = pdfNameFor(path, run->name);
  std::optional<TextFooter> footer;
  if (environment_.settings->getInt(kPreferencesSection, "ShowFooters", 1) != 0)
    footer =
        TextFooter{run->name, footerDate(host().now(), environment_.filters->shortDatePattern)};
  run->pages = std::make_unique<TextPages>(plainRichText(text, "Courier New", 10),
                                           textMargins(0, 0, 0, 0), footer);
  return run;
}

std::unique_ptr<QPrinter> PrintCommands::textPrinter(TextRun& run) {
  std::unique_ptr<QPrinter> printer = defaultPrinter(run.landscape, run.pdfName);
  if (!printer) return nullptr;
  BusyCursor busy;
  run.pages->layOut(*printer, paperPixels(*printer), printableOffsets(*printer));
  return printer;
}

bool PrintCommands::printText(TextRun& run) {
  std::unique_ptr<QPrinter> printer = textPrinter(run);
  if (!printer) return false;
  return printPages(
      *run.pages, *printer, run.landscape,
      QCoreApplication::translate("zv::ui::PrintCommands", "Printing %1").arg(systemText(run.name)),
      [&run](QPrinter& other) {
        BusyCursor busy;
        run.pages->layOut(other, paperPixels(other), printableOffsets(other));
        return true;
      },
      run.name);
}

bool PrintCommands::previewText(TextRun& run) {
  std::unique_ptr<QPrinter> printer = textPrinter(run);
  if (!printer) return false;
  PrintPreviewDialog preview(*run.pages, systemText(run.name), environment_.parent);
  if (preview.exec() != PrintPreviewDialog::kPrint) return true;
  return printPages(
      *run.pages, *printer, run.landscape,
      QCoreApplication::translate("zv::ui::PrintCommands", "Printing %1").arg(systemText(run.name)),
      [&run](QPrinter& other) {
        BusyCursor busy;
        run.pages->layOut(other, paperPixels(other), printableOffsets(other));
        return true;
      },
      run.name);
}

bool PrintCommands::printThroughFilter(FileInfo& sheet) {
  std::unique_ptr<TextRun> run = prepareFilterText(sheet);
  return run && printText(*run);
}

bool PrintCommands::previewThroughFilter(FileInfo& sheet) {
  std::unique_ptr<TextRun> run = prepareFilterText(sheet);
  return run && previewText(*run);
}

bool PrintCommands::printDataSheet(const FileInfo& dataSheet) {
  std::unique_ptr<TextRun> run = prepareDataSheetText(dataSheet);
  return printText(*run);
}

bool PrintCommands::previewDataSheet(const FileInfo& dataSheet) {
  std::unique_ptr<TextRun> run = prepareDataSheetText(dataSheet);
  return previewText(*run);
}

bool PrintCommands::printPlainText(const std::string& text, const std::string& path) {
  std::unique_ptr<TextRun> run = preparePlainText(text, path);
  return printText(*run);
}

bool PrintCommands::previewPlainText(const std::string& text, const std::string& path) {
  std::unique_ptr<TextRun> run = preparePlainText(text, path);
  return previewText(*run);
}

// ---- Page Setup, auxiliary files ----

bool PrintCommands::pageSetup(FileInfo& sheet) {
  FilterContext& filters = *environment_.filters;
  filters.dataDir = environment_.appSettings->sourceDirectory;
  filters.askForFilters = environment_.appSettings->askForFilters;
  std::optional<std::filesystem::path> filter = chooseFilter(sheet, filters, {});
  if (!filter) return false;
  FilterDocument document;
  if (!loadFilter(&sheet, *filter, document, FilterLoadMode::Whole)) return false;
  PageSetupDialog dialog(document, fromNativePath(filter->filename().string()), measureUnit(),
                         environment_.parent);
  if (dialog.exec() != QDialog::Accepted) return false;
  return saveFilter(*filter, dialog.filter());
}

void PrintCommands::printAuxiliaryFiles() {
  AuxFilesDialog dialog(environment_.appSettings->sourceDirectory, environment_.auxPrintCommand,
                        environment_.parent);
  dialog.exec();
}

}  // namespace zv::ui
