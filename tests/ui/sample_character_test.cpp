// The bundled sample character in the desktop program, on the offscreen platform: it opens on
// the Hollowmark data sheets without a message, its fields show the values its data imply, and a
// changed attribute reaches the derived values, a skill that follows it, the list total and the
// Marks spent at once.

// Before any Qt header: HeadlessHost has a member that Qt's "emit" macro would rewrite.
#include "core/headless_host.h"

#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QTemporaryDir>
#include <QtTest>
#include <filesystem>
#include <fstream>
#include <optional>

#include "core/app_settings.h"
#include "core/game_systems.h"
#include "core/settings.h"
#include "formats/data_sheet_loader.h"
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

class SampleCharacterTest : public QObject {
  Q_OBJECT

  std::optional<QTemporaryDir> dir_;
  std::optional<zv::Settings> settings_;
  std::optional<zv::AppSettings> app_;
  std::optional<zv::HeadlessHost> host_;
  std::optional<zv::HostInstallation> installed_;
  std::optional<MainFrame> frame_;

  SheetView* view() { return frame_->activeSheet(); }
  DialogWindow* mainDialog() { return view()->dialogWindow(0); }
  QString fieldText(const char* name) {
    QWidget* control = mainDialog()->controlFor(name);
    if (auto* label = qobject_cast<QLabel*>(control)) return label->text();
    if (auto* line = qobject_cast<QLineEdit*>(control)) return line->text();
    return "<none>";
  }
  ListPanel* listWindow(const char* name) {
    const auto& lists = view()->sheet().lists;
    for (std::size_t i = 0; i < lists.size(); ++i) {
      if (lists[i]->name.str() != name) continue;
      QMdiSubWindow* window = view()->openWindow(SheetWindowKind::List, static_cast<int>(i));
      return window ? qobject_cast<ListPanel*>(window->widget()) : nullptr;
    }
    return nullptr;
  }
  void type(const char* name, const QString& text) {
    auto* edit = qobject_cast<QLineEdit*>(mainDialog()->controlFor(name));
    QVERIFY(edit);
    edit->setFocus();
    QTRY_VERIFY(edit->hasFocus());
    edit->selectAll();
    QTest::keyClicks(edit, text);
    mainDialog()->controlFor("Name")->setFocus();
    QTRY_VERIFY(!edit->hasFocus());
  }

 private slots:
  void init() {
    dir_.emplace();
    QVERIFY(dir_->isValid());
    fs::path base(dir_->path().toStdString());
    const fs::path data(ZV_SAMPLE_DATA_DIR);
    {
      std::ofstream ini(base / "settings.ini");
      ini << "[zarvel]\nSource Directory=" << data.string() << "\n";
    }
    settings_.emplace(zv::Settings::fromFile(base / "settings.ini"));
    app_.emplace(zv::AppSettings::load(*settings_, base));
    zv::dataSheetEnvironment().dataDir = data;
    host_.emplace(nullptr);
    installed_.emplace(*host_);
    frame_.emplace(*settings_, *app_);
    frame_->show();
    QApplication::setActiveWindow(&*frame_);
    // A copy, so that nothing the test does can reach the bundled file.
    const fs::path sheet = base / "Maren Vell.chr";
    fs::copy_file(data / "characters" / "Maren Vell.chr", sheet);
    QVERIFY(frame_->openFile(sheet.string()));
    QVERIFY(view());
  }

  void cleanup() {
    frame_.reset();
    installed_.reset();
    host_.reset();
    zv::clearGameSystems();
    dir_.reset();
  }

  void opensOnItsDataSheetsWithTheValuesItsDataImply() {
    const std::vector<std::string>& shown = host_->transcript();
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
    QVERIFY(host_->transcript().empty());
  }
};

QTEST_MAIN(SampleCharacterTest)
#include "sample_character_test.moc"
