// Printing in the desktop program, on the offscreen platform with no printer installed (so the
// print dialog prints to a PDF file beside the sheet): Print and Print Preview through the sample
// template, Export PDF matching the preview, the checks, forms, Print Through Filter with its
// footer, Page Setup, Print Auxiliary Files, a data sheet's print, "/p" and FilePrint from
// another program.

#include "sheet_frame.h"

#include <QAbstractSpinBox>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPrintDialog>
#include <QPrinter>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QtTest>
#include <optional>

#include "print/file/prt_reader.h"
#include "print/file/prt_writer.h"
#include "ui/command_table.h"
#include "ui/printing/print_commands.h"
#include "ui/printing/print_preview_dialog.h"
#include "when_modal.h"

using zv::testing::whenModal;

namespace {

std::string readAll(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

/// The pages of a PDF as its page objects count them.
int pdfPages(const std::filesystem::path& path) {
  const std::string bytes = readAll(path);
  int pages = 0;
  for (std::size_t at = bytes.find("/Type /Page"); at != std::string::npos;
       at = bytes.find("/Type /Page", at + 1)) {
    if (bytes.compare(at, 12, "/Type /Pages") != 0) ++pages;
  }
  return pages;
}

/// The text of a PDF by pdftotext; empty when poppler isn't installed.
QString pdfText(const std::filesystem::path& path) {
  QProcess process;
  process.start("pdftotext", {"-layout", QString::fromStdString(path.string()), "-"});
  if (!process.waitForFinished(30000)) return {};
  return QString::fromUtf8(process.readAllStandardOutput());
}

/// Accepts the print dialog that opens next, after `adjust` had its way with it.
void acceptPrintDialog(std::function<void(QPrintDialog*)> adjust = {}) {
  whenModal([adjust](QWidget* modal) {
    auto* dialog = qobject_cast<QPrintDialog*>(modal);
    QVERIFY2(dialog, qPrintable(modal->metaObject()->className()));
    if (adjust) adjust(dialog);
    dialog->accept();
  });
}

}  // namespace

class PrintCommandsTest : public QObject {
  Q_OBJECT

  std::optional<zv::testing::SheetFrame> sample_;
  zv::ui::MainFrame& frame() { return sample_->frame(); }
  std::filesystem::path pdfBesideSheet() {
    return sample_->folder() /
           (std::filesystem::path(sample_->sheetPath()).stem().string() + ".pdf");
  }

 private slots:
  void init() {
    sample_.emplace();
    QVERIFY(sample_->openSample());
  }
  void cleanup() { sample_.reset(); }

  void theFileMenuOffersThePrintCommands() {
    for (int command :
         {zv::ui::kFilePrint, zv::ui::kFilePrintPreview, zv::ui::kFilePrintThroughFilter,
          zv::ui::kFilePrintPreviewThroughFilter, zv::ui::kFilePageSetup, zv::ui::kFileExportPdf,
          zv::ui::kFilePrintAuxiliary}) {
      QAction* action = frame().commandAction(command);
      QVERIFY(action);
      QVERIFY(action->isEnabled());
    }
    QCOMPARE(frame().commandAction(zv::ui::kFilePrint)->shortcut(), QKeySequence("Ctrl+P"));
  }

  void printThroughTheSampleTemplate() {
    acceptPrintDialog([](QPrintDialog* dialog) {
      // The range offered runs over the template's pages.
      QCOMPARE(dialog->minPage(), 1);
      QCOMPARE(dialog->maxPage(), 3);
    });
    frame().runCommand(zv::ui::kFilePrint);
    QCOMPARE(sample_->transcript(), QStringList{});
    QCOMPARE(pdfPages(pdfBesideSheet()), 3);
    const QString text = pdfText(pdfBesideSheet());
    if (text.isEmpty()) QSKIP("pdftotext is not installed");
    QVERIFY(text.contains("Maren Vell"));
    QVERIFY(text.contains("Marks 77 of 100"));
    QVERIFY(text.contains("The record, continued"));
  }

  void aRangeAndCopies() {
    acceptPrintDialog([](QPrintDialog* dialog) {
      dialog->findChild<QRadioButton*>("printRange")->setChecked(true);
      dialog->findChild<QSpinBox*>("from")->setValue(2);
      dialog->findChild<QSpinBox*>("to")->setValue(3);
      dialog->findChild<QSpinBox*>("copies")->setValue(2);
    });
    frame().runCommand(zv::ui::kFilePrint);
    QCOMPARE(sample_->transcript(), QStringList{});
    // Pages 2 and 3, twice.
    QCOMPARE(pdfPages(pdfBesideSheet()), 4);
  }

  void anotherPrinterInTheDialogMakesThePagesAgain() {
    // The printer measured on works at 1200 dots to the inch; the one chosen at 300. Pages drawn
    // with the first printer's measures would come out four times too large, mostly off the paper.
    acceptPrintDialog([](QPrintDialog* dialog) { dialog->printer()->setResolution(300); });
    frame().runCommand(zv::ui::kFilePrint);
    QCOMPARE(sample_->transcript(), QStringList{});
    QCOMPARE(pdfPages(pdfBesideSheet()), 3);
    const QString text = pdfText(pdfBesideSheet());
    if (text.isEmpty()) QSKIP("pdftotext is not installed");
    for (const char* expected : {"Shillings 28\u00bd of 40", "Brother Hale of the Bell", "Page 3"})
      QVERIFY2(text.contains(QString::fromUtf8(expected)), expected);
  }

  void cancelledPrintDialogPrintsNothing() {
    whenModal([](QWidget* modal) { qobject_cast<QDialog*>(modal)->reject(); });
    frame().runCommand(zv::ui::kFilePrint);
    QVERIFY(!std::filesystem::exists(pdfBesideSheet()));
    QCOMPARE(sample_->transcript(), QStringList{});
  }

  void previewShowsEachSheetThenPrints() {
    whenModal([](QWidget* modal) {
      auto* preview = qobject_cast<zv::ui::PrintPreviewDialog*>(modal);
      QVERIFY2(preview, qPrintable(modal->metaObject()->className()));
      QCOMPARE(
          preview->findChild<QLabel*>("heading")->text(),
          QStringLiteral("This print template is previewing the character sheet Maren Vell.chr."));
      QVERIFY(preview->findChild<QWidget*>("printPreviewDisplay"));
      auto* status = preview->findChild<QLabel*>("status");
      auto* next = preview->findChild<QPushButton*>("nextPage");
      auto* previous = preview->findChild<QPushButton*>("previousPage");
      QCOMPARE(next->text(), QStringLiteral("&Next Page"));
      QCOMPARE(previous->text(), QStringLiteral("&Previous Page"));
      QCOMPARE(status->text(), QStringLiteral("1 of 3"));
      QVERIFY(!previous->isEnabled());
      next->click();
      next->click();
      QCOMPARE(status->text(), QStringLiteral("3 of 3"));
      QVERIFY(!next->isEnabled());
      previous->click();
      QCOMPARE(status->text(), QStringLiteral("2 of 3"));
      // The page is drawn: some of the paper isn't white.
      const QImage& page = preview->display()->image();
      QVERIFY(!page.isNull());
      int ink = 0;
      for (int y = 0; y < page.height(); y += 4)
        for (int x = 0; x < page.width(); x += 4)
          if (qGray(page.pixel(x, y)) < 128) ++ink;
      QVERIFY(ink > 20);
      // Print goes on to the print dialog.
      acceptPrintDialog();
      preview->findChild<QPushButton*>("print")->click();
    });
    frame().runCommand(zv::ui::kFilePrintPreview);
    QCOMPARE(sample_->transcript(), QStringList{});
    QCOMPARE(pdfPages(pdfBesideSheet()), 3);
  }

  void previewClosesWithoutPrinting() {
    whenModal([](QWidget* modal) { modal->findChild<QPushButton*>("close")->click(); });
    frame().runCommand(zv::ui::kFilePrintPreview);
    QVERIFY(!std::filesystem::exists(pdfBesideSheet()));
  }

  void exportedPdfMatchesThePreview() {
    const std::filesystem::path pdf = sample_->folder() / "export.pdf";
    sample_->host().addAnswer(pdf.string());
    frame().runCommand(zv::ui::kFileExportPdf);
    // The Save dialog offered the sheet's name as a PDF.
    QCOMPARE(sample_->transcript(), QStringList{"[Export PDF] Maren Vell.pdf"});
    QCOMPARE(pdfPages(pdf), 3);
    // The first page of the PDF, rendered by poppler, against the preview's first page at the
    // same size.
    QImage preview;
    whenModal([&preview](QWidget* modal) {
      auto* dialog = qobject_cast<zv::ui::PrintPreviewDialog*>(modal);
      preview = dialog->display()->image();
      dialog->reject();
    });
    frame().runCommand(zv::ui::kFilePrintPreview);
    QVERIFY(!preview.isNull());
    QProcess render;
    const QString stem = QString::fromStdString((sample_->folder() / "export").string());
    render.start("pdftoppm",
                 {"-png", "-f", "1", "-l", "1", "-scale-to-x", QString::number(preview.width()),
                  "-scale-to-y", "-1", QString::fromStdString(pdf.string()), stem});
    if (!render.waitForFinished(30000) || render.exitCode() != 0)
      QSKIP("pdftoppm is not installed");
    QImage pdfPage(stem + "-1.png");
    QVERIFY(!pdfPage.isNull());
    QCOMPARE(pdfPage.width(), preview.width());
    QVERIFY(std::abs(pdfPage.height() - preview.height()) <= 1);
    // The two renderers shade the edges of letters each their own way: the pages are compared
    // by the mean grey of cells of 12 by 12 pixels, which differ where the ink does.
    constexpr int kCell = 12;
    int cells = 0, differing = 0;
    for (int y = 0; y + kCell <= std::min(pdfPage.height(), preview.height()); y += kCell) {
      for (int x = 0; x + kCell <= preview.width(); x += kCell) {
        auto meanGrey = [&](const QImage& image) {
          int sum = 0;
          for (int dy = 0; dy < kCell; ++dy)
            for (int dx = 0; dx < kCell; ++dx)
              sum += qGray(image.pixel(x + dx, y + dy));
          return sum / (kCell * kCell);
        };
        ++cells;
        if (std::abs(meanGrey(pdfPage) - meanGrey(preview)) > 40) ++differing;
      }
    }
    QVERIFY2(differing * 100 < cells,
             qPrintable(QString("%1 of %2 cells differ").arg(differing).arg(cells)));
  }

  void aRefusedCheckPrintsNothing() {
    // A template of another sheet type, named by the sheet.
    auto tmpl = zv::readPrintTemplate(std::filesystem::path(ZV_SAMPLE_DATA_DIR) / "hollowmark.prt");
    QVERIFY(tmpl);
    tmpl->sheetType = "Ferryman";
    const std::filesystem::path other = sample_->folder() / "ferry.prt";
    QCOMPARE(zv::writePrintTemplate(*tmpl, other), 0);
    sample_->view()->sheet().printTemplate = other.string();
    frame().runCommand(zv::ui::kFilePrint);
    QCOMPARE(sample_->transcript(),
             QStringList{"[Character Sheet Type Mismatch] The type of the character sheet "
                         "(Warden) is different from the type of the print template (Ferryman). "
                         "To print you must select a compatible print template."});
    QVERIFY(!std::filesystem::exists(pdfBesideSheet()));

    // Another level asks; No prints nothing.
    tmpl->sheetType = "Warden";
    tmpl->level = 2;
    QCOMPARE(zv::writePrintTemplate(*tmpl, other), 0);
    sample_->host().clearTranscript();
    sample_->host().addAnswer("No");
    frame().runCommand(zv::ui::kFilePrint);
    QCOMPARE(sample_->transcript(),
             QStringList{"[Level Mismatch] The level of the print template (2) is different from "
                         "the level of the character sheet (1).\\n\\nPrint anyway?"});
    QVERIFY(!std::filesystem::exists(pdfBesideSheet()));
  }

  void aMissingTemplateIsReportedAndAnotherChosen() {
    sample_->view()->sheet().printTemplate = "vanished.prt";
    whenModal([](QWidget* modal) {
      // The templates of the sheet's game system, with the description of the one selected.
      QCOMPARE(modal->objectName(), QStringLiteral("ChoosePrintTemplate"));
      auto* list = modal->findChild<QListWidget*>("templates");
      QCOMPARE(list->count(), 1);
      QCOMPARE(list->item(0)->text(), QStringLiteral("hollowmark.prt"));
      QCOMPARE(modal->findChild<QLabel*>("description")->text(),
               QStringLiteral("Warden record: identity, attributes, lists flowing on, notes"));
      acceptPrintDialog();
      qobject_cast<QDialog*>(modal)->accept();
    });
    frame().runCommand(zv::ui::kFilePrint);
    QCOMPARE(sample_->transcript(), QStringList{"[Error] Can't open print template vanished.prt"});
    QCOMPARE(pdfPages(pdfBesideSheet()), 3);
  }

  void formsAskForMarginsAndPrintTwoToASheet() {
    // The sample template as a half-letter form (5.5 by 8.5 inches) that asks for margins.
    auto tmpl = zv::readPrintTemplate(std::filesystem::path(ZV_SAMPLE_DATA_DIR) / "hollowmark.prt");
    QVERIFY(tmpl);
    tmpl->formWidth = 12240;
    tmpl->formHeight = 7920;
    tmpl->promptForMargins = 1;
    const std::filesystem::path form = sample_->folder() / "card.prt";
    QCOMPARE(zv::writePrintTemplate(*tmpl, form), 0);
    sample_->view()->sheet().printTemplate = form.string();
    sample_->appSettings().measure = 1;  // inches
    whenModal([](QWidget* modal) {
      QCOMPARE(modal->objectName(), QStringLiteral("FormSetup"));
      QCOMPARE(modal->findChild<QLabel*>("formSize")->text(),
               QStringLiteral("The height and width of the form is 5.5\" x 8.5\"."));
      auto* top = modal->findChild<QAbstractSpinBox*>("topMargin");
      QCOMPARE(top->text(), QStringLiteral("0\""));
      // A refused field keeps the dialog open.
      top->findChild<QLineEdit*>()->setText("2 furlongs");
      qobject_cast<QDialog*>(modal)->accept();
      QVERIFY(modal->isVisible());
      top->findChild<QLineEdit*>()->setText("0");
      acceptPrintDialog();
      qobject_cast<QDialog*>(modal)->accept();
    });
    frame().runCommand(zv::ui::kFilePrint);
    QCOMPARE(sample_->transcript(), QStringList{"[Error] Unrecognizable measurement"});
    // Three forms, two to a sheet of paper.
    QCOMPARE(pdfPages(pdfBesideSheet()), 2);
    QCOMPARE(sample_->settings().getInt("Printing\\Forms\\card.prt", "TopMargin", -1), 0);
    QCOMPARE(sample_->settings().getInt("Printing\\Forms\\card.prt", "Landscape", -1), 0);

    // Cancel in Form Setup ends the print.
    whenModal([](QWidget* modal) { qobject_cast<QDialog*>(modal)->reject(); });
    std::filesystem::remove(pdfBesideSheet());
    frame().runCommand(zv::ui::kFilePrint);
    QVERIFY(!std::filesystem::exists(pdfBesideSheet()));
  }

  void printThroughAFilterWithItsFooter() {
    sample_->appSettings().askForFilters = false;
    sample_->view()->sheet().filter = "hollowmark-summary.flt";
    acceptPrintDialog();
    frame().runCommand(zv::ui::kFilePrintThroughFilter);
    QCOMPARE(sample_->transcript(), QStringList{});
    QCOMPARE(pdfPages(pdfBesideSheet()), 1);
    const QString text = pdfText(pdfBesideSheet());
    if (text.isEmpty()) QSKIP("pdftotext is not installed");
    QVERIFY(text.contains("Maren Vell, warden of the Hollow"));
    QVERIFY(text.contains("Maren Vell.chr: printed "));
    QVERIFY(text.contains(", Page 1"));
  }

  void footersCanBeTurnedOff() {
    sample_->settings().setInt("Preferences", "ShowFooters", 0);
    sample_->appSettings().askForFilters = false;
    sample_->view()->sheet().filter = "hollowmark-summary.flt";
    acceptPrintDialog();
    frame().runCommand(zv::ui::kFilePrintThroughFilter);
    const QString text = pdfText(pdfBesideSheet());
    if (text.isEmpty()) QSKIP("pdftotext is not installed");
    QVERIFY(text.contains("Maren Vell, warden of the Hollow"));
    QVERIFY(!text.contains("Page 1"));
  }

  void pageSetupWritesTheFilterBack() {
    // A copy of the summary filter, so the sample stays as it is.
    const std::filesystem::path filter = sample_->folder() / "summary.flt";
    std::filesystem::copy_file(std::filesystem::path(ZV_SAMPLE_DATA_DIR) / "hollowmark-summary.flt",
                               filter);
    sample_->appSettings().askForFilters = false;
    sample_->appSettings().measure = 1;
    sample_->view()->sheet().filter = filter.string();
    whenModal([](QWidget* modal) {
      QCOMPARE(modal->objectName(), QStringLiteral("PageSetup"));
      QCOMPARE(modal->findChild<QAbstractSpinBox*>("tabWidth")->text(), QStringLiteral("0.5\""));
      modal->findChild<QAbstractSpinBox*>("leftMargin")->findChild<QLineEdit*>()->setText("1in");
      modal->findChild<QAbstractSpinBox*>("topMargin")->findChild<QLineEdit*>()->setText("2cm");
      modal->findChild<QCheckBox*>("landscape")->setChecked(true);
      qobject_cast<QDialog*>(modal)->accept();
    });
    frame().runCommand(zv::ui::kFilePageSetup);
    QCOMPARE(sample_->transcript(), QStringList{});
    const std::string written = readAll(filter);
    QVERIFY2(written.find("@margins 1440 1134 0 0\r\n") != std::string::npos, written.c_str());
    QVERIFY(written.find("@landscape 1") != std::string::npos);
    QVERIFY(written.find("@foreach(%list%)") != std::string::npos);  // the body stays

    // The filter prints in landscape now (on two pages, being wider than high).
    acceptPrintDialog();
    frame().runCommand(zv::ui::kFilePrintThroughFilter);
    QCOMPARE(pdfPages(pdfBesideSheet()), 2);
    const std::string pdf = readAll(pdfBesideSheet());
    QVERIFY(pdf.find("/MediaBox [0 0 842") != std::string::npos ||
            pdf.find("/MediaBox [0 0 792") != std::string::npos);
  }

  void auxiliaryFilesOpenAndPrint() {
    const std::filesystem::path printed = sample_->folder() / "printed";
    std::filesystem::create_directories(printed);
    sample_->settings().setString("Preferences", "PrintCommand",
                                  "cp -t '" + printed.string() + "' --");
    // A frame of its own, which reads the print command at its start.
    zv::ui::MainFrame frame(sample_->settings(), sample_->appSettings());
    whenModal([](QWidget* modal) {
      QCOMPARE(modal->objectName(), QStringLiteral("PrintAuxFiles"));
      auto* lists = modal->findChild<QComboBox*>("lists");
      QCOMPARE(lists->count(), 1);
      QCOMPARE(lists->currentText(), QStringLiteral("Hollowmark table sheets"));
      auto* documents = modal->findChild<QListWidget*>("documents");
      QCOMPARE(documents->count(), 3);
      QCOMPARE(documents->item(0)->text(), QStringLiteral("Quick rules for the table"));
      modal->findChild<QPushButton*>("print")->click();
      // The system has no program to open a text file here.
      modal->findChild<QPushButton*>("open")->click();
      modal->findChild<QPushButton*>("close")->click();
    });
    frame.runCommand(zv::ui::kFilePrintAuxiliary);
    QCOMPARE(readAll(printed / "qx0.txt"),
             readAll(std::filesystem::path(ZV_SAMPLE_DATA_DIR) / "hollowmark-quick-rules.txt"));
    const std::string rules =
        (std::filesystem::path(ZV_SAMPLE_DATA_DIR) / "hollowmark-quick-rules.txt").string();
    QCOMPARE(sample_->transcript(),
             QStringList{QString::fromStdString(
                 "[File Cannot Be Opened] The file " + rules +
                 " cannot be opened because no application can be found to open it.")});
  }

  void aDataSheetPrintsAsText() {
    const std::filesystem::path copy = sample_->folder() / "hollowmark-gear.cds";
    std::filesystem::copy_file(std::filesystem::path(ZV_SAMPLE_DATA_DIR) / "hollowmark-gear.cds",
                               copy);
    QVERIFY(frame().openFile(copy.string()));
    QVERIFY(frame().activeDataSheet());
    QVERIFY(frame().commandAction(zv::ui::kFilePrint)->isEnabled());
    acceptPrintDialog();
    frame().runCommand(zv::ui::kFilePrint);
    QCOMPARE(sample_->transcript(), QStringList{});
    const std::filesystem::path pdf = sample_->folder() / "hollowmark-gear.pdf";
    QVERIFY(pdfPages(pdf) >= 1);
    const QString text = pdfText(pdf);
    if (text.isEmpty()) QSKIP("pdftotext is not installed");
    QVERIFY(text.contains("Datasheet: hollowmark-gear.cds"));
    QVERIFY(text.contains("Game System: Hollowmark"));
  }

  void printAndCloseFromTheCommandLine() {
    // A second frame as a start with "/p" makes it.
    zv::ui::MainFrame frame(sample_->settings(), sample_->appSettings());
    frame.show();
    acceptPrintDialog();
    frame.openCommandLine(zv::CommandLine{true, sample_->sheetPath()});
    QCOMPARE(pdfPages(pdfBesideSheet()), 3);
    QTRY_VERIFY(!frame.isVisible());
  }

  void filePrintFromAnotherProgram() {
    zv::ConversationRequest request;
    request.commands.push_back({"FilePrint", {}});
    acceptPrintDialog();
    frame().runConversation(request);
    QCOMPARE(pdfPages(pdfBesideSheet()), 3);
    QCOMPARE(sample_->transcript(), QStringList{});
  }
};

QTEST_MAIN(PrintCommandsTest)
#include "print_commands_test.moc"
