// A sheet in its windows, on the offscreen platform: fields found by their variables, an edited
// value that a formula field and list totals follow, a refused value, sublists that open and
// close, the Data menu, Recalculate, and the question before a changed sheet closes.

#include "sheet_frame.h"

#include <QCheckBox>
#include <QComboBox>
#include <QtTest>
#include <filesystem>
#include <optional>

#include "ui/dialog_window.h"
#include "ui/list_panel.h"
#include "ui/main_frame.h"
#include "ui/sheet_view.h"

namespace fs = std::filesystem;
using zv::ui::DialogWindow;
using zv::ui::ListPanel;
using zv::ui::MainFrame;
using zv::ui::SheetView;
using zv::ui::SheetWindowKind;

class SheetWindowsTest : public QObject {
  Q_OBJECT

  std::optional<zv::testing::SheetFrame> sheet_;

  SheetView* view() { return sheet_->view(); }
  DialogWindow* mainDialog() { return sheet_->mainDialog(); }
  QString fieldText(const char* name) { return sheet_->fieldText(name); }
  ListPanel* listWindow(int index) { return sheet_->listWindow(index); }
  void type(const char* name, const QString& text) { sheet_->type(name, text, "HeroName"); }
  QStringList transcript() const { return sheet_->transcript(); }

 private slots:
  void init() {
    sheet_.emplace();
    QVERIFY(sheet_->open(fs::path(ZV_TEST_DATA_DIR) / "sheets" / "hearth.chr",
                         "[Preferences]\nMakeBackups=1\n"));
  }

  void cleanup() { sheet_.reset(); }

  void fieldsShowTheirVariables() {
    QCOMPARE(fieldText("HeroName"), QStringLiteral("Maren"));
    QCOMPARE(fieldText("Might"), QStringLiteral("3"));
    // Might*2 + SkillPoints, where Climb costs 2*Might and Swim 3.
    QCOMPARE(fieldText("Power"), QStringLiteral("15"));
    auto* brave = qobject_cast<QCheckBox*>(mainDialog()->controlFor("Brave"));
    QVERIFY(brave && brave->isChecked());
    auto* stature = qobject_cast<QComboBox*>(mainDialog()->controlFor("Stature"));
    QVERIFY(stature);
    QCOMPARE(stature->currentText(), QStringLiteral("Large"));
    QVERIFY(!mainDialog()->controlFor("Rolls")->isEnabled());
    // Every field stands where the file puts it.
    QCOMPARE(mainDialog()->controlFor("Might")->geometry(), QRect(80, 40, 50, 22));
    QCOMPARE(mainDialog()->controlFor("Power")->geometry(), QRect(190, 42, 60, 20));
    QCOMPARE(mainDialog()->listPanels().size(), size_t{1});
    QCOMPARE(mainDialog()->listPanels().front()->totalLineText(), QStringLiteral("Total 2"));
    QVERIFY(transcript().isEmpty());
  }

  void anEditedValueReachesFormulasAndTotals() {
    ListPanel* skills = listWindow(0);
    QVERIFY(skills);
    QCOMPARE(skills->totalLineText(), QStringLiteral("Skill points 9"));
    type("Might", "5");
    QCOMPARE(fieldText("Might"), QStringLiteral("5"));
    QCOMPARE(fieldText("Power"), QStringLiteral("23"));
    QCOMPARE(skills->totalLineText(), QStringLiteral("Skill points 13"));
    QVERIFY(view()->sheet().changed());
    QVERIFY(transcript().isEmpty());
  }

  void aRefusedValueLeavesTheSheetAsItWas_data() {
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QString>("might");
    QTest::addColumn<QString>("power");
    QTest::newRow("Cancel restores") << "Cancel"
                                     << "3"
                                     << "15";
    QTest::newRow("OK takes the value") << "OK"
                                        << "20"
                                        << "83";
  }

  void aRefusedValueLeavesTheSheetAsItWas() {
    QFETCH(QString, answer);
    QFETCH(QString, might);
    QFETCH(QString, power);
    sheet_->host().addAnswer(answer.toStdString());
    type("Might", "20");
    QCOMPARE(transcript(), QStringList{"[Unacceptable Value] The value entered (20) is not in the "
                                       "acceptable range for Might."});
    QCOMPARE(fieldText("Might"), might);
    QCOMPARE(fieldText("Power"), power);
  }

  void sublistsOpenAndClose() {
    ListPanel* gear = listWindow(1);
    QVERIFY(gear);
    QCOMPARE(gear->model()->rowCount(), 2);
    gear->rowsView()->setCurrentIndex(gear->model()->index(0));
    QVERIFY(gear->runCommand(zv::ui::kToolsOpenCloseSublist));
    QCOMPARE(gear->model()->rowCount(), 4);
    QCOMPARE(QString::fromStdString(gear->model()->itemAt(1)->name), QStringLiteral("Rope"));
    QVERIFY(gear->runCommand(zv::ui::kToolsOpenCloseSublist));
    QCOMPARE(gear->model()->rowCount(), 2);
    // Cloak is not in the total.
    QCOMPARE(gear->totalLineText(), QStringLiteral("Total 5"));
  }

  void dataMenuOpensTheWindows() {
    QStringList texts;
    for (QAction* action : sheet_->frame().dataMenu()->actions())
      texts << (action->isSeparator() ? QString("-") : action->text());
    QCOMPARE(texts,
             (QStringList{"&Hero", "&Extras", "-", "&Skills", "&Gear", "-", "Run &Script..."}));
    sheet_->frame().dataMenu()->actions().at(1)->trigger();
    DialogWindow* extras = view()->dialogWindow(1);
    QVERIFY(extras);
    auto* extra = qobject_cast<QLineEdit*>(extras->controlFor("Extra"));
    QVERIFY(extra);
    QCOMPARE(extra->text(), QStringLiteral("11"));
  }

  void recalculateKeepsTheTotals() {
    ListPanel* skills = listWindow(0);
    sheet_->frame().runCommand(zv::ui::kUtilitiesRecalculate);
    QCOMPARE(skills->totalLineText(), QStringLiteral("Skill points 9"));
    QCOMPARE(fieldText("Power"), QStringLiteral("15"));
    QVERIFY(!view()->sheet().changed());
  }

  void closingAChangedSheetAsksToSave_data() {
    QTest::addColumn<QString>("answer");
    QTest::addColumn<bool>("closes");
    QTest::addColumn<bool>("saved");
    QTest::newRow("Yes saves and closes") << "Yes" << true << true;
    QTest::newRow("No closes") << "No" << true << false;
    QTest::newRow("Cancel keeps it") << "Cancel" << false << false;
  }

  void closingAChangedSheetAsksToSave() {
    QFETCH(QString, answer);
    QFETCH(bool, closes);
    QFETCH(bool, saved);
    type("Might", "4");
    sheet_->host().clearTranscript();
    sheet_->host().addAnswer(answer.toStdString());
    sheet_->frame().runCommand(zv::ui::kFileClose);
    QCOMPARE(transcript(),
             QStringList{"[Message] File 'hearth.chr' has been changed.\\n\\nSave Changes?"});
    QCoreApplication::processEvents();
    QCOMPARE(sheet_->frame().sheets().empty(), closes);
    QCOMPARE(fs::exists(fs::path(sheet_->sheetPath()).replace_extension(".bak")), saved);
    if (!closes) QCOMPARE(fieldText("Might"), QStringLiteral("4"));
  }

  void anUnchangedSheetClosesWithoutAQuestion() {
    sheet_->frame().runCommand(zv::ui::kFileClose);
    QCoreApplication::processEvents();
    QVERIFY(sheet_->frame().sheets().empty());
    QVERIFY(transcript().isEmpty());
    QCOMPARE(sheet_->frame().recentFiles().entries().front(), sheet_->sheetPath());
  }
};

QTEST_MAIN(SheetWindowsTest)
#include "sheet_windows_test.moc"
