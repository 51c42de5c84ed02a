// The visual regression of printing: the sample characters' pages, made on a PDF device as the
// preview and the PDF export make them and drawn through the same Qt device offscreen, compared
// with the reference pictures in tests/data/print within a tolerance. A page that differs too
// much leaves a picture of its differences (red) in the build's Testing folder.
// ZV_UPDATE_PRINT_REFERENCES=1 writes the references anew (look at them before committing).
// Also: the rich text of detail and filter pages as a Qt document, and a print that stops.

#include "sheet_frame.h"

#include <QAbstractTextDocumentLayout>
#include <QDir>
#include <QTextBlock>
#include <QtTest>
#include <optional>

#include "filter/rich/rtf_reader.h"
#include "filter/run/filter_context.h"
#include "image_compare.h"
#include "print/file/prt_reader.h"
#include "print/produce/filter_box_text.h"
#include "ui/print/pdf_job.h"
#include "ui/print/rich_document.h"
#include "ui/print/template_pages.h"
#include "ui/print/text_pages.h"

namespace {

/// The width of the rendered pages, pixels (A4 at about 60 dots to the inch).
constexpr int kRenderWidth = 500;
/// A pixel differs when a channel is more than this far off; a page fails when more than
/// kDifferingShare of its pixels differ.
constexpr int kChannelTolerance = 64;
constexpr double kDifferingShare = 0.0005;

QString referencePath(const QString& name) {
  return QStringLiteral(ZV_TEST_DATA_DIR "/print/") + name + ".png";
}

QString diffPath(const QString& name) {
  QDir dir(QDir::currentPath());
  dir.mkpath("Testing");
  return dir.absoluteFilePath("Testing/print-diff-" + name + ".png");
}

}  // namespace

class PrintRenderTest : public QObject {
  Q_OBJECT

  /// The pages of a sample character through the sample template on A4, one picture a sheet.
  std::vector<QImage> renderSample(const std::string& character) {
    zv::testing::SheetFrame sample;
    if (!sample.openSample(character)) return {};
    zv::FileInfo& sheet = sample.view()->sheet();
    const std::filesystem::path data(ZV_SAMPLE_DATA_DIR);
    auto tmpl = zv::readPrintTemplate(data / "hollowmark.prt");
    if (!tmpl) return {};
    zv::FilterContext filters;
    filters.dataDir = data;
    filters.askForFilters = false;
    zv::ProductionSettings production;
    production.sourceDirectory = data;
    production.runText = zv::filterBoxTextRunner(filters, {});
    zv::DrawSettings drawing;
    drawing.sourceDirectory = data;
    drawing.showRulesPreference = true;
    zv::PdfTarget target(QPageSize(QPageSize::A4), false, sheet.name.str());
    zv::TemplatePages pages(*tmpl, sheet, production, drawing, zv::FormMargins{});
    if (!pages.produce(target.writer(), target.paper())) return {};
    std::vector<QImage> images;
    for (const zv::PaperSheet& paper : pages.plan(zv::PageSelection{}))
      images.push_back(zv::sheetImage(pages, paper, kRenderWidth));
    if (!sample.host().transcript().empty()) return {};
    return images;
  }

  void compareWithReferences(const std::string& character, const QString& stem, int pages) {
    const std::vector<QImage> images = renderSample(character);
    QCOMPARE(static_cast<int>(images.size()), pages);
    const bool update = qEnvironmentVariableIsSet("ZV_UPDATE_PRINT_REFERENCES");
    for (int i = 0; i < pages; ++i) {
      const QString name = stem + "-" + QString::number(i + 1);
      if (update) {
        QDir().mkpath(QFileInfo(referencePath(name)).path());
        QVERIFY(images[static_cast<std::size_t>(i)].save(referencePath(name)));
        continue;
      }
      const QImage reference(referencePath(name));
      QVERIFY2(!reference.isNull(), qPrintable("no reference " + referencePath(name)));
      const zv::testing::ImageComparison comparison = zv::testing::compareImages(
          images[static_cast<std::size_t>(i)], reference, kChannelTolerance);
      if (!comparison.sameSize || comparison.differingShare() > kDifferingShare) {
        if (comparison.sameSize) comparison.diff.save(diffPath(name));
        images[static_cast<std::size_t>(i)].save(diffPath(name + "-actual"));
        QFAIL(qPrintable(QString("%1: %2 of %3 pixels differ (size %4); see %5")
                             .arg(name)
                             .arg(comparison.differing)
                             .arg(comparison.total)
                             .arg(comparison.sameSize ? "same" : "differs")
                             .arg(diffPath(name))));
      }
    }
    if (update) QSKIP("references written");
  }

 private slots:
  void marenVellsPagesMatchTheirReferences() {
    compareWithReferences("Maren Vell", "maren-vell", 3);
  }

  void inesCallowaysDetailPageMatchesItsReference() {
    // Her lists fit the first page; her notes and her details follow.
    compareWithReferences("Ines Calloway", "ines-calloway", 4);
  }

  void aChangedPageIsCaughtAndLeavesADiff() {
    const QImage reference(referencePath("maren-vell-1"));
    if (reference.isNull()) QSKIP("no reference yet");
    QImage changed = reference.convertToFormat(QImage::Format_RGB32);
    // A word's worth of ink moved: a box of 40 by 12 pixels painted black.
    for (int y = 100; y < 112; ++y)
      for (int x = 60; x < 100; ++x)
        changed.setPixel(x, y, qRgb(0, 0, 0));
    const zv::testing::ImageComparison comparison =
        zv::testing::compareImages(changed, reference, kChannelTolerance);
    QVERIFY(comparison.sameSize);
    QVERIFY(comparison.differingShare() > kDifferingShare);
    QCOMPARE(comparison.diff.pixel(70, 105), qRgb(230, 0, 0));
    QCOMPARE(comparison.diff.size(), reference.size());
    // The reference against itself: nothing differs.
    QCOMPARE(zv::testing::compareImages(reference, reference, kChannelTolerance).differing, 0L);
    // Another size is no match.
    QVERIFY(!zv::testing::compareImages(reference.scaledToWidth(100), reference, 0).sameSize);
  }

  void richTextBecomesADocumentWithItsFormats() {
    // A story as the RTF reader gives it, with a paragraph of tab stops as filter text gives it.
    zv::RichText rich;
    QVERIFY(zv::parseRichText("{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\pard\\qc\\fs28\\b Title\\b0"
                              "\\par\\pard\\i caf\\'e9\\par}",
                              rich) == zv::kRichOk);
    zv::RichParagraphFormat tabbed;
    tabbed.leftIndent = 720;
    tabbed.firstIndent = -360;
    tabbed.tabs = {zv::richTab(zv::kTabLeft, 1440), zv::richTab(zv::kTabRight, 2880)};
    rich.append("one\ttwo\r\n", zv::RichCharacter{}, tabbed);
    QImage device(100, 100, QImage::Format_RGB32);
    device.setDotsPerMeterX(1200 * 10000 / 254);
    device.setDotsPerMeterY(1200 * 10000 / 254);
    auto document = zv::textDocumentOf(rich, device);
    QCOMPARE(document->blockCount(), 3);
    QTextBlock title = document->begin();
    QCOMPARE(title.text(), QStringLiteral("Title"));
    QCOMPARE(title.blockFormat().alignment() & Qt::AlignHorizontal_Mask, Qt::AlignHCenter);
    QCOMPARE(title.begin().fragment().charFormat().fontWeight(), int(QFont::Bold));
    QCOMPARE(title.begin().fragment().charFormat().fontPointSize(), 14.0);
    QCOMPARE(title.begin().fragment().charFormat().fontFamilies().toStringList(),
             QStringList{"Arial"});
    QTextBlock second = title.next();
    QCOMPARE(second.text(), QString::fromUtf8("caf\u00e9"));  // Windows-1252 made Unicode
    QVERIFY(second.begin().fragment().charFormat().fontItalic());
    QTextBlock third = second.next();
    QCOMPARE(third.text(), QStringLiteral("one\ttwo"));
    // Twips as layout units of 96 to the inch: 720 twips are 48.
    QCOMPARE(third.blockFormat().leftMargin(), 48.0);
    QCOMPARE(third.blockFormat().textIndent(), -24.0);
    const QList<QTextOption::Tab> tabs = third.blockFormat().tabPositions();
    QCOMPARE(tabs.size(), 2);
    QCOMPARE(tabs[0].position, 96.0);
    QCOMPARE(tabs[0].type, QTextOption::LeftTab);
    QCOMPARE(tabs[1].position, 192.0);
    QCOMPARE(tabs[1].type, QTextOption::RightTab);
  }

  void textPagesCountPagesAndStopWhenAsked() {
    std::string text;
    for (int i = 1; i <= 400; ++i)
      text += "Line " + std::to_string(i) + "\r\n";
    zv::PdfTarget target(QPageSize(QPageSize::A4), false, "lines");
    zv::TextPages pages(zv::plainRichText(text, "Courier New", 10),
                        zv::PaperMargins{1440, 1440, 1440, 1440},
                        zv::TextFooter{"lines.txt", std::string("3/5/24")});
    pages.layOut(target.writer(), target.paper(), zv::PaperMargins{});
    // A4 less two inches is 9.69 inches of 10-point lines: 400 lines take more than 4 pages.
    QVERIFY(pages.pageCount() >= 5);
    QCOMPARE(pages.textArea().left(), 1200);  // an inch at 1200 to the inch
    const std::vector<zv::PaperSheet> sheets = pages.plan(zv::PageSelection{2, 3, 1});
    QCOMPARE(static_cast<int>(sheets.size()), 2);
    QCOMPARE(sheets[0].front().index, 1);
    // A print asked to stop after its first sheet stops there.
    QPainter painter(&target.writer());
    int asked = 0;
    const zv::PrintOutcome outcome =
        zv::paintSheets(target.writer(), painter, pages, sheets, [&asked](int done, int) {
          ++asked;
          return done < 1;
        });
    painter.end();
    QCOMPARE(outcome, zv::PrintOutcome::Stopped);
    QCOMPARE(asked, 2);
  }
};

QTEST_MAIN(PrintRenderTest)
#include "print_render_test.moc"
