// The bundled sample character in the desktop program, on the offscreen platform: it opens on
// the Hollowmark data sheets without a message, its fields show the values its data imply, and a
// changed attribute reaches the derived values, a skill that follows it, the list total and the
// Marks spent at once.

#include "sheet_frame.h"

#include <QtTest>
#include <optional>

using zv::ui::ListPanel;
using zv::ui::SheetView;

class SampleCharacterTest : public QObject {
  Q_OBJECT

  std::optional<zv::testing::SheetFrame> sample_;

  SheetView* view() { return sample_->view(); }
  QString fieldText(const char* name) { return sample_->fieldText(name); }
  ListPanel* listWindow(const char* name) { return sample_->listWindow(name); }
  void type(const char* name, const QString& text) { sample_->type(name, text, "Name"); }

 private slots:
  void init() {
    sample_.emplace();
    QVERIFY(sample_->openSample());
  }

  void cleanup() { sample_.reset(); }

  void opensOnItsDataSheetsWithTheValuesItsDataImply() {
    const std::vector<std::string>& shown = sample_->host().transcript();
    QVERIFY2(shown.empty(), shown.empty() ? "" : shown.front().c_str());
    QCOMPARE(view()->sheet().gameSystem->dataSheets.size(), std::size_t{3});
    QCOMPARE(fieldText("Name"), QStringLiteral("Maren Vell"));
    QCOMPARE(fieldText("Vigor"), QStringLiteral("29"));  // Might 10 * 2 + Resolve 9
    QCOMPARE(fieldText("Spent"), QStringLiteral("77"));
    QCOMPARE(fieldText("Left"), QStringLiteral("23"));
    QCOMPARE(listWindow("Skills")->totalLineText(), QStringLiteral("Skill points 25"));
  }

  void aRaisedAttributeReachesEverythingThatFollowsIt() {
    ListPanel* skills = listWindow("Skills");
    QVERIFY(skills);
    // Agility 11 to 12: Pace 13 to 14; Fenwalking (Agility - 8) rank 3 to 4 at 2 Marks a rank,
    // so skill points 25 to 27; attribute cost 20 to 22; spent 77 to 81, left 23 to 19.
    type("Agility", "12");
    QCOMPARE(fieldText("Pace"), QStringLiteral("14"));
    QCOMPARE(fieldText("AttrCost"), QStringLiteral("22"));
    QCOMPARE(skills->totalLineText(), QStringLiteral("Skill points 27"));
    QCOMPARE(fieldText("Spent"), QStringLiteral("81"));
    QCOMPARE(fieldText("Left"), QStringLiteral("19"));
    QVERIFY(view()->sheet().changed());
    QVERIFY(sample_->host().transcript().empty());
  }
};

QTEST_MAIN(SampleCharacterTest)
#include "sample_character_test.moc"
