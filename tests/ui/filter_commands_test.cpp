// Filters in the desktop program, on the offscreen platform: Edit > Copy Through Filter puts the
// sample character on the clipboard as HTML, RTF and plain text as each filter asks, Save As
// writes filtered text and leaves the sheet unsaved, a broken filter shows its message and
// changes nothing; the clipboard formats' MIME types.

#include "sheet_frame.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLocale>
#include <QMimeData>
#include <QtTest>
#include <optional>

#include "filter/run/filter_file_run.h"
#include "ui/command_table.h"
#include "ui/filter_clipboard.h"

using zv::ClipboardContents;
using zv::ClipboardEntry;

namespace {

std::string readAll(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

}  // namespace

class FilterCommandsTest : public QObject {
  Q_OBJECT

  std::optional<zv::testing::SheetFrame> sample_;
  const QMimeData* clipboard() { return QGuiApplication::clipboard()->mimeData(); }

 private slots:
  void init() {
    sample_.emplace();
    QVERIFY(sample_->openSample());
    QGuiApplication::clipboard()->clear();
  }
  void cleanup() { sample_.reset(); }

  void theEditMenuOffersTheCommand() {
    QAction* action = sample_->frame().commandAction(zv::ui::kEditFilterCopy);
    QVERIFY(action);
    QCOMPARE(action->text(), QStringLiteral("Copy Through &Filter..."));
    QVERIFY(action->isEnabled());
  }

  void copyThroughTheSheetsHtmlFilter() {
    // The filter the sheet names is offered first; nobody answers, so it is taken.
    sample_->frame().runCommand(zv::ui::kEditFilterCopy);
    QCOMPARE(sample_->transcript(), QStringList{"[Select Filter] Filters for Hollowmark:"});
    const QMimeData* data = clipboard();
    QVERIFY(data->hasHtml());
    QVERIFY(data->html().contains("<h1>Maren Vell</h1>"));
    QVERIFY(data->html().contains("charset=\"utf-8\""));
    QVERIFY(data->html().contains(QString::fromUtf8("28&frac12; of 40")));
    QVERIFY(data->text().startsWith("<!DOCTYPE html>"));
  }

  void copyThroughTheClipboardFilterGivesRtfAndText() {
    QVERIFY(sample_->frame().copyThroughFilter("hollowmark-clip.flt"));
    const QMimeData* data = clipboard();
    QVERIFY(data->hasFormat("text/rtf"));
    QVERIFY(data->hasFormat("application/rtf"));
    const QByteArray rtf = data->data("text/rtf");
    QVERIFY(rtf.startsWith("{\\rtf\\ansi\\ansicpg1252"));
    QVERIFY(rtf.contains("\\fs32\\b Maren Vell\\par"));
    QVERIFY(data->text().startsWith("Maren Vell\r\nBell-keeper of Saltreach"));
    QVERIFY(!data->text().contains("@font"));
    QVERIFY(sample_->transcript().isEmpty());
  }

  void copyThroughTheRtfFilterGivesItsDocument() {
    QVERIFY(sample_->frame().copyThroughFilter("hollowmark-rtf.flt"));
    const QMimeData* data = clipboard();
    QVERIFY(data->data("text/rtf").startsWith("{\\rtf1\\ansi\\ansicpg1252\\deff0"));
    QVERIFY(data->text().startsWith(QString::fromUtf8("Maren Vell\r\nBell-keeper")));
    QVERIFY(data->text().contains(QString::fromUtf8("28\u00bd of 40")));
  }

  void aBrokenFilterShowsItsLineAndLeavesTheClipboard() {
    QGuiApplication::clipboard()->setText("before");
    std::ofstream(sample_->folder() / "broken.flt")
        << "@gamesystem Hollowmark\r\nName %@Identity.Name%\r\n@foreach(Nowhere)\r\n@endfor\r\n";
    QVERIFY(!sample_->frame().copyThroughFilter((sample_->folder() / "broken.flt").string()));
    QCOMPARE(sample_->transcript(),
             QStringList{"[Filter Error] Can't find list window Nowhere\\n\\nLine: 3"});
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("before"));
  }

  void saveAsFilteredTextLeavesTheSheetUnsaved() {
    zv::FileInfo& sheet = sample_->view()->sheet();
    sheet.setChangedFlag(true);
    const std::string target = (sample_->folder() / "maren.html").string();
    sample_->host().addAnswer(target);
    QVERIFY(sample_->frame().saveActive(true));
    // The same bytes as a run of the filter by name (what zarvelin-cli filter writes).
    zv::FilterContext context;
    context.dataDir = ZV_SAMPLE_DATA_DIR;
    context.shortDatePattern = QLocale::system().dateFormat(QLocale::ShortFormat).toStdString();
    zv::FilterDocument document;
    std::optional<std::string> expected =
        zv::runFilterFile(sheet, document, "hollowmark-page.flt", {}, context);
    QVERIFY(expected.has_value());
    QCOMPARE(readAll(target), *expected);
    QVERIFY(sheet.changed());
    QCOMPARE(QString::fromStdString(sheet.path.str()),
             QString::fromStdString(sample_->sheetPath()));
    // A plain text summary by its extension.
    const std::string summary = (sample_->folder() / "maren.txt").string();
    sample_->host().addAnswer(summary);
    QVERIFY(sample_->frame().saveActive(true));
    QVERIFY(readAll(summary).starts_with("Maren Vell, warden of the Hollow\r\n"));
    // A name in a folder that doesn't exist: message 18, nothing written.
    const std::string nowhere = (sample_->folder() / "none" / "maren.html").string();
    sample_->host().addAnswer(nowhere);
    QVERIFY(!sample_->frame().saveActive(true));
    QCOMPARE(sample_->transcript().back(),
             QString::fromStdString("[Error] Unable to create character sheet " + nowhere + "."));
  }

  void clipboardFormatsAsMimeTypes() {
    ClipboardContents contents;
    contents.entries = {ClipboardEntry{"Text", "caf\xE9"},
                        ClipboardEntry{"Rich Text Format", "{\\rtf1 x}"},
                        ClipboardEntry{"Csv Rows", "a,b"}, ClipboardEntry{"text/csv", "c,d"}};
    std::unique_ptr<QMimeData> data = zv::ui::mimeDataFor(contents);
    QCOMPARE(data->text(), QString::fromUtf8("caf\u00e9"));
    QCOMPARE(data->data("text/rtf"), QByteArray("{\\rtf1 x}"));
    QCOMPARE(data->data("application/rtf"), QByteArray("{\\rtf1 x}"));
    QCOMPARE(data->data("application/x-zarvelin-csv-rows"), QByteArray("a,b"));
    QCOMPARE(data->data("text/csv"), QByteArray("c,d"));
    QVERIFY(!data->hasHtml());
  }
};

QTEST_MAIN(FilterCommandsTest)
#include "filter_commands_test.moc"
