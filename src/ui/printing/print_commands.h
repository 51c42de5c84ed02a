#pragma once
// The print commands of the File menu: Print (through the sheet's template), Print Preview,
// Export PDF, Print Through Filter and its preview, Page Setup, Print Auxiliary Files, and a data
// sheet's print. Pages are measured on the default printer (or, with none installed, on Print to
// File), shown by the preview and drawn on the printer the print dialog gives.

#include <QString>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "core/app_settings.h"
#include "core/record_types.h"
#include "core/settings.h"
#include "filter/run/filter_context.h"
#include "print/job/measure_field.h"
#include "print/job/print_plan.h"

class QPrinter;
class QWidget;

namespace zv {
class PagedDocument;
class TextPages;
}  // namespace zv

namespace zv::ui {

/// What the print commands take from the program; everything outlives the commands.
struct PrintEnvironment {
  Settings* settings = nullptr;
  AppSettings* appSettings = nullptr;
  FilterContext* filters = nullptr;
  /// The choices of a filter run over a sheet, from its game system's preferences.
  std::function<FilterRunOptions(const FileInfo&)> runOptions;
  QWidget* parent = nullptr;
  /// The program the print verb of auxiliary files hands a file to.
  std::string auxPrintCommand = "lp";
};

class PrintCommands {
 public:
  explicit PrintCommands(PrintEnvironment environment);
  ~PrintCommands();

  /// Print Through Template: the template chosen and checked, its form's margins when it asks
  /// for them, the pages made on the default printer, the print dialog (orientation forced, the
  /// pages made again when another printer is chosen), then the range and copies asked for under
  /// an abort dialog. False when nothing was printed.
  bool printThroughTemplate(FileInfo& sheet);
  /// Print Preview of the same pages; its Print button prints them.
  bool previewThroughTemplate(FileInfo& sheet);
  /// File > Export PDF: the same pages written to a PDF (`path`, or the name asked for).
  bool exportPdf(FileInfo& sheet, const std::string& path = {});
  /// Print Through Filter and its preview: the filter's output as text pages, with footers
  /// when the preference "ShowFooters" is on.
  bool printThroughFilter(FileInfo& sheet);
  bool previewThroughFilter(FileInfo& sheet);
  /// Page Setup of the filter the sheet prints through, written back into the filter.
  bool pageSetup(FileInfo& sheet);
  /// The Print Auxiliary Files dialog.
  void printAuxiliaryFiles();
  /// A data sheet's print and its preview: its heading and items as plain text.
  bool printDataSheet(const FileInfo& dataSheet);
  bool previewDataSheet(const FileInfo& dataSheet);
  /// A text file's print and its preview (Windows-1252 `text`), in a fixed-pitch font.
  bool printPlainText(const std::string& text, const std::string& path);
  bool previewPlainText(const std::string& text, const std::string& path);

 private:
  struct TemplateRun;
  struct TextRun;
  std::unique_ptr<TemplateRun> prepareTemplate(FileInfo& sheet);
  std::unique_ptr<TextRun> prepareFilterText(FileInfo& sheet);
  std::unique_ptr<TextRun> prepareDataSheetText(const FileInfo& dataSheet);
  std::unique_ptr<TextRun> preparePlainText(const std::string& text, const std::string& path);
  /// Lays text pages out on a new default printer; null after the message.
  std::unique_ptr<QPrinter> textPrinter(TextRun& run);
  bool printText(TextRun& run);
  bool previewText(TextRun& run);
  /// The print dialog, then the pages asked for. `remeasure` makes the pages again for another
  /// printer.
  bool printPages(const PagedDocument& document, QPrinter& printer, bool landscape,
                  const QString& abortText, const std::function<bool(QPrinter&)>& remeasure,
                  const std::string& documentName);
  MeasureUnit measureUnit() const;

  PrintEnvironment environment_;
};

}  // namespace zv::ui
