// A sheet in its windows, on the offscreen platform: fields found by their variables, an edited
// value that a formula field and list totals follow, a refused value, sublists that open and
// close, the Data menu, Recalculate, and the question before a changed sheet closes.

// Before any Qt header: HeadlessHost has a member that Qt's "emit" macro would rewrite.
#include "core/headless_host.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QTemporaryDir>
#include <QtTest>
#include <filesystem>
#include <fstream>
#include <optional>

#include "core/app_settings.h"
#include "core/settings.h"
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

  std::optional<QTemporaryDir> dir_;
  std::optional<zv::Settings> settings_;
  std::optional<zv::AppSettings> app_;
  std::optional<zv::HeadlessHost> host_;
  std::optional<zv::HostInstallation> installed_;
  std::optional<MainFrame> frame_;
  std::string sheetPath_;

  SheetView* view() { return frame_->activeSheet(); }
  DialogWindow* mainDialog() { return view()->dialogWindow(0); }
  QString fieldText(const char* name) {
    QWidget* control = mainDialog()->controlFor(name);
    if (auto* label = qobject_cast<QLabel*>(control)) return label->text();
    if (auto* line = qobject_cast<QLineEdit*>(control)) return line->text();
    return "<none>";
  }
  ListPanel* listWindow(int index) {
    QMdiSubWindow* window = view()->openWindow(SheetWindowKind::List, index);
    return window ? qobject_cast<ListPanel*>(window->widget()) : nullptr;
  }
  // Types a value into a field and moves the focus away, as the user does.
  void type(const char* name, const QString& text) {
    auto* edit = qobject_cast<QLineEdit*>(mainDialog()->controlFor(name));
    QVERIFY(edit);
    edit->setFocus();
    QTRY_VERIFY(edit->hasFocus());
    edit->selectAll();
    QTest::keyClicks(edit, text);
    mainDialog()->controlFor("HeroName")->setFocus();
    QTRY_VERIFY(!edit->hasFocus());
  }
  QStringList transcript() const {
    QStringList lines;
    for (const std::string& line : host_->transcript())
      lines << QString::fromStdString(line);
    return lines;
  }

 private slots:
  void init() {
    dir_.emplace();
    QVERIFY(dir_->isValid());
    fs::path base(dir_->path().toStdString());
    sheetPath_ = (base / "hearth.chr").string();
    fs::copy_file(fs::path(ZV_TEST_DATA_DIR) / "sheets" / "hearth.chr", sheetPath_);
    {
      std::ofstream ini(base / "settings.ini");
      ini << "[Preferences]\nMakeBackups=1\n";
    }
    settings_.emplace(zv::Settings::fromFile(base / "settings.ini"));
    app_.emplace(zv::AppSettings::load(*settings_, base));
    host_.emplace(nullptr);
    installed_.emplace(*host_);
    frame_.emplace(*settings_, *app_);
    frame_->show();
    QApplication::setActiveWindow(&*frame_);
    QVERIFY(frame_->openFile(sheetPath_));
    QVERIFY(view());
  }

  void cleanup() {
    frame_.reset();
    installed_.reset();
    host_.reset();
    dir_.reset();
  }

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
    host_->addAnswer(answer.toStdString());
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
    for (QAction* action : frame_->dataMenu()->actions())
      texts << (action->isSeparator() ? QString("-") : action->text());
    QCOMPARE(texts, (QStringList{"&Hero", "&Extras", "-", "&Skills", "&Gear"}));
    frame_->dataMenu()->actions().at(1)->trigger();
    DialogWindow* extras = view()->dialogWindow(1);
    QVERIFY(extras);
    auto* extra = qobject_cast<QLineEdit*>(extras->controlFor("Extra"));
    QVERIFY(extra);
    QCOMPARE(extra->text(), QStringLiteral("11"));
  }

  void recalculateKeepsTheTotals() {
    ListPanel* skills = listWindow(0);
    frame_->runCommand(zv::ui::kUtilitiesRecalculate);
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
    host_->clearTranscript();
    host_->addAnswer(answer.toStdString());
    frame_->runCommand(zv::ui::kFileClose);
    QCOMPARE(transcript(),
             QStringList{"[Message] File 'hearth.chr' has been changed.\\n\\nSave Changes?"});
    QCoreApplication::processEvents();
    QCOMPARE(frame_->sheets().empty(), closes);
    QCOMPARE(fs::exists(fs::path(sheetPath_).replace_extension(".bak")), saved);
    if (!closes) QCOMPARE(fieldText("Might"), QStringLiteral("4"));
  }

  void anUnchangedSheetClosesWithoutAQuestion() {
    frame_->runCommand(zv::ui::kFileClose);
    QCoreApplication::processEvents();
    QVERIFY(frame_->sheets().empty());
    QVERIFY(transcript().isEmpty());
    QCOMPARE(frame_->recentFiles().entries().front(), sheetPath_);
  }
};

QTEST_MAIN(SheetWindowsTest)
#include "sheet_windows_test.moc"
