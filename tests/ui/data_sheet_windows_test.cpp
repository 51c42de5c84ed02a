// Data sheets in the desktop program, on the offscreen platform: a .cds opened from the File menu
// shows its categories and items and is saved unchanged; a text data sheet asks before it becomes
// binary; Merge Data Sheet and the close question; and the Load Data Sheet dialog, which loads,
// unloads and keeps the defaults of the start-up.

// Before any Qt header: HeadlessHost has a member that Qt's "emit" macro would rewrite.
#include "core/headless_host.h"

#include <QLabel>
#include <QListWidget>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <QtTest>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

#include "core/app_settings.h"
#include "core/game_systems.h"
#include "core/settings.h"
#include "formats/datasheet/data_sheet_loader.h"
#include "sheet_frame.h"
#include "ui/command_table.h"
#include "ui/data_sheet_window.h"
#include "ui/load_data_sheet_window.h"
#include "ui/main_frame.h"
#include "when_modal.h"

namespace fs = std::filesystem;
using zv::testing::whenModal;
using zv::ui::DataSheetWindow;
using zv::ui::LoadDataSheetWindow;
using zv::ui::MainFrame;

namespace {

// Tools keeps its order (sort 1); Woods is sorted by name; Kits is a sublist of Tools.
constexpr const char* kTools =
    "\"Data Sheet file v. 1\" gamesystem Tarnwick title \"Tarnwick tools\" version 253 level 3\n"
    "cat Tools sort 1\n"
    "item Saw cost 3\n"
    "item Adze formula x*2 level 1\n"
    "sublist Kits memlist item Rasp cost 2 end\n"
    "end\n"
    "cat Woods item Yew cost 5 item Oak cost 4 end\n"
    "end\n";

constexpr const char* kMore =
    "\"Data Sheet file v. 1\" gamesystem Tarnwick version 253 level 3\n"
    "cat Woods item Ash cost 2 end\n"
    "cat Stone item Slate cost 1 end\n"
    "end\n";

void writeFile(const fs::path& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary);
  out << bytes;
}

std::string readFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// Every row of a tree, indented two blanks a level: "name | level | cost".
QStringList rows(const QTreeWidget& tree) {
  QStringList lines;
  std::function<void(const QTreeWidgetItem*, int)> walk = [&](const QTreeWidgetItem* row,
                                                              int depth) {
    lines << QString(depth * 2, ' ') + row->text(0) + " | " + row->text(1) + " | " + row->text(2);
    for (int i = 0; i < row->childCount(); ++i)
      walk(row->child(i), depth + 1);
  };
  for (int i = 0; i < tree.topLevelItemCount(); ++i)
    walk(tree.topLevelItem(i), 0);
  return lines;
}

QStringList texts(const QListWidget& list) {
  QStringList out;
  for (int i = 0; i < list.count(); ++i)
    out << list.item(i)->text();
  return out;
}

}  // namespace

class DataSheetWindowsTest : public QObject {
  Q_OBJECT

  std::optional<QTemporaryDir> dir_;
  std::optional<zv::Settings> settings_;
  std::optional<zv::AppSettings> app_;
  std::optional<zv::HeadlessHost> host_;
  std::optional<zv::HostInstallation> installed_;
  std::optional<MainFrame> frame_;

  fs::path file(const std::string& name) const {
    return fs::path(dir_->path().toStdString()) / name;
  }
  QStringList transcript() const { return zv::testing::transcriptLines(*host_); }

  /// A frame on settings of its own, with the temporary folder as the data directory.
  void start(const std::string& iniText) {
    writeFile(file("settings.ini"),
              "[zarvel]\nSource Directory=" + file("").string() + "\nCopyrightDelay=1\n" + iniText);
    settings_.emplace(zv::Settings::fromFile(file("settings.ini")));
    app_.emplace(zv::AppSettings::load(*settings_, file("")));
    zv::engine().dataSheets = zv::DataSheetSettings{app_->sourceDirectory, 1, false};
    frame_.emplace(*settings_, *app_);
    frame_->show();
  }

  DataSheetWindow* open(const std::string& name) {
    QMdiSubWindow* window = frame_->openFile(file(name).string());
    return zv::ui::dataSheetWindowOf(window);
  }

 private slots:
  void init() {
    dir_.emplace();
    QVERIFY(dir_->isValid());
    host_.emplace(nullptr);
    installed_.emplace(*host_);
    writeFile(file("tools.cds"), kTools);
    writeFile(file("more.cds"), kMore);
  }

  void cleanup() {
    frame_.reset();
    installed_.reset();
    host_.reset();
    zv::clearGameSystems();
    zv::engine().dataSheets = zv::DataSheetSettings{};
  }

  void aDataSheetOpensInAWindowOfItsCategories() {
    start("");
    DataSheetWindow* window = open("tools.cds");
    QVERIFY(window);
    QCOMPARE(frame_->activeDataSheet(), window);
    QCOMPARE(window->windowTitle(), QStringLiteral("tools.cds[*]"));
    QVERIFY(!window->isWindowModified());
    QCOMPARE(window->summary()->text(),
             QStringLiteral("Tarnwick tools\nGame system: Tarnwick    Level: 3"));
    // Two categories: they start closed, so that their names come first.
    QVERIFY(!window->tree()->topLevelItem(0)->isExpanded());
    QCOMPARE(rows(*window->tree()), (QStringList{
                                        "Tools (3 items) |  | ",
                                        "  Saw |  | 3",
                                        "  Adze | 1 | x*2",
                                        "  Kits (1 item) |  | ",
                                        "    Rasp |  | 2",
                                        "Woods (2 items) |  | ",
                                        "  Oak |  | 4",
                                        "  Yew |  | 5",
                                    }));
    // The file commands and Merge Data Sheet serve it; the sheet's menus stay hidden.
    for (int command :
         {zv::ui::kFileClose, zv::ui::kFileSave, zv::ui::kFileSaveAs, zv::ui::kFileMergeDataSheet})
      QVERIFY(frame_->commandAction(command)->isEnabled());
    QVERIFY(!frame_->commandAction(zv::ui::kUtilitiesRecalculate)->isEnabled());
    QVERIFY(!frame_->dataMenu()->menuAction()->isVisible());
    // The master data are not touched by a document.
    QCOMPARE(zv::findGameSystem("Tarnwick"), nullptr);
    QVERIFY(transcript().isEmpty());
  }

  void theSampleDataSheetSavesUnchanged() {
    const fs::path sample = fs::path(ZV_SAMPLE_DATA_DIR) / "hollowmark.cds";
    fs::copy_file(sample, file("hollowmark.cds"));
    start("");
    DataSheetWindow* window = open("hollowmark.cds");
    QVERIFY(window);
    QStringList categories;
    for (int i = 0; i < window->tree()->topLevelItemCount(); ++i)
      categories << window->tree()->topLevelItem(i)->text(0).section(" (", 0, 0);
    QCOMPARE(categories, (QStringList{"Traits", "Flaws", "Skills", "Bonds"}));
    frame_->runCommand(zv::ui::kFileSave);
    // The binary file is written again byte for byte; the old one is its backup.
    QCOMPARE(readFile(file("hollowmark.cds")), readFile(sample));
    QCOMPARE(readFile(file("hollowmark.bak")), readFile(sample));
    QVERIFY(transcript().isEmpty());
    frame_->runCommand(zv::ui::kFileClose);
    QTRY_VERIFY(frame_->dataSheetWindows().empty());
    QCOMPARE(frame_->recentFiles().entries().front(), file("hollowmark.cds").string());
  }

  void aTextDataSheetAsksBeforeItBecomesBinary_data() {
    QTest::addColumn<QString>("answer");
    QTest::addColumn<bool>("saved");
    QTest::newRow("No keeps the text") << "No" << false;
    QTest::newRow("Yes writes binary") << "Yes" << true;
  }

  void aTextDataSheetAsksBeforeItBecomesBinary() {
    QFETCH(QString, answer);
    QFETCH(bool, saved);
    start("binary=1\n");
    DataSheetWindow* window = open("tools.cds");
    QVERIFY(window);
    host_->addAnswer(answer.toStdString());
    frame_->runCommand(zv::ui::kFileSave);
    QCOMPARE(transcript(),
             QStringList{"[Overwriting Text Data Sheet] You are about to overwrite a text data "
                         "sheet. You will be unable to update this data sheet if you overwrite "
                         "it.\\n\\nAre you sure you want to overwrite the data sheet?"});
    QCOMPARE(readFile(file("tools.cds")).rfind("\x37\x57\x03\x05", 0) == 0, saved);
    QCOMPARE(fs::exists(file("tools.bak")), saved);
    if (saved) QCOMPARE(readFile(file("tools.bak")), std::string(kTools));
  }

  void mergeMarksTheDocumentAndCloseAsks() {
    start("binary=0\n");
    DataSheetWindow* window = open("tools.cds");
    QVERIFY(window);
    host_->addAnswer(file("more.cds").string());
    frame_->runCommand(zv::ui::kFileMergeDataSheet);
    QCOMPARE(transcript(), QStringList{"[Merge Data Sheet] "});
    QVERIFY(window->isWindowModified());
    const QStringList merged = rows(*window->tree());
    QVERIFY(merged.contains("Woods (3 items) |  | "));
    QVERIFY(merged.contains("  Ash |  | 2"));
    QCOMPARE(merged.mid(merged.size() - 2),
             (QStringList{"Stone (1 item) |  | ", "  Slate |  | 1"}));

    host_->clearTranscript();
    host_->addAnswer("Cancel");
    frame_->runCommand(zv::ui::kFileClose);
    QCoreApplication::processEvents();
    QCOMPARE(frame_->dataSheetWindows().size(), size_t{1});
    QCOMPARE(transcript(),
             QStringList{"[Message] File 'tools.cds' has been changed.\\n\\nSave Changes?"});
    // Save As writes the merged document under the new name, in text as the setting says.
    host_->addAnswer(file("joined.cds").string());
    frame_->runCommand(zv::ui::kFileSaveAs);
    QVERIFY(!window->isWindowModified());
    QCOMPARE(window->windowTitle(), QStringLiteral("joined.cds[*]"));
    const std::string joined = readFile(file("joined.cds"));
    QVERIFY(joined.find("cat Stone") != std::string::npos);
    QCOMPARE(readFile(file("tools.cds")), std::string(kTools));
    host_->clearTranscript();
    frame_->runCommand(zv::ui::kFileClose);
    QTRY_VERIFY(frame_->dataSheetWindows().empty());
    QVERIFY(transcript().isEmpty());
  }

  void theLoadDataSheetDialogLoadsUnloadsAndKeepsTheDefaults() {
    // b.cds needs a.cds; a.cds is the one default.
    writeFile(file("a.cds"),
              "\"Data Sheet file v. 1\" gamesystem Tiny version 253 level 1 cat Tools item Saw "
              "end end");
    writeFile(file("b.cds"),
              "\"Data Sheet file v. 1\" gamesystem Tiny version 253 level 1 datafile a.cds end "
              "cat Tools item Awl end end");
    writeFile(file("notes.txt"), "not a data sheet");
    fs::remove(file("tools.cds"));
    fs::remove(file("more.cds"));
    start("[Data Sheets]\ndatasheet0=a.cds\ndatasheet1=\n");
    QCOMPARE(zv::loadDefaultDataSheets(*settings_), 1);
    const std::int32_t firstId = zv::findLoadedDataSheet("a.cds")->id;

    QStringList seen;
    bool checked = false;
    whenModal([&](QWidget* modal) {
      auto* dialog = qobject_cast<LoadDataSheetWindow*>(modal);
      QVERIFY(dialog);
      QCOMPARE(dialog->objectName(), QStringLiteral("LoadDataSheetDlg"));
      QListWidget* available = dialog->availableList();
      QListWidget* loaded = dialog->loadedList();
      QListWidget* defaults = dialog->defaultsList();
      QCOMPARE(texts(*available), (QStringList{"b.cds"}));
      QCOMPARE(texts(*loaded), (QStringList{"a.cds"}));
      QCOMPARE(texts(*defaults), (QStringList{"a.cds"}));
      QCOMPARE(defaults->currentRow(), 0);

      // Load b: it and the a it needs are both loaded; nothing is left to load.
      available->setCurrentRow(0);
      QTest::mouseClick(dialog->button("load"), Qt::LeftButton);
      QCOMPARE(texts(*available), QStringList{});
      QCOMPARE(texts(*loaded), (QStringList{"a.cds", "b.cds"}));
      QVERIFY(!dialog->button("load")->isEnabled());
      QVERIFY(!dialog->button("addDefaultFromAvailable")->isEnabled());

      // b becomes a default; a is unloaded and comes back by a double click.
      loaded->setCurrentRow(1);
      QTest::mouseClick(dialog->button("addDefaultFromLoaded"), Qt::LeftButton);
      QCOMPARE(texts(*defaults), (QStringList{"a.cds", "b.cds"}));
      loaded->setCurrentRow(0);
      QTest::mouseClick(dialog->button("unload"), Qt::LeftButton);
      QCOMPARE(texts(*loaded), (QStringList{"b.cds"}));
      QCOMPARE(texts(*available), (QStringList{"a.cds"}));
      QVERIFY(zv::findLoadedDataSheet("a.cds") == nullptr);
      available->setCurrentRow(0);
      emit available->itemDoubleClicked(available->item(0));
      QCOMPARE(texts(*loaded), (QStringList{"b.cds", "a.cds"}));

      // Remove Default on the first row: the selection stays on the first row.
      defaults->setCurrentRow(0);
      QTest::mouseClick(dialog->button("removeDefault"), Qt::LeftButton);
      QCOMPARE(texts(*defaults), (QStringList{"b.cds"}));
      QCOMPARE(defaults->currentRow(), 0);
      QTest::mouseClick(dialog->button("removeDefault"), Qt::LeftButton);
      QCOMPARE(texts(*defaults), QStringList{});
      QVERIFY(!dialog->button("removeDefault")->isEnabled());
      loaded->setCurrentRow(0);
      QTest::mouseClick(dialog->button("addDefaultFromLoaded"), Qt::LeftButton);
      seen = texts(*defaults);
      checked = true;
      QTest::mouseClick(dialog->button("close"), Qt::LeftButton);
    });
    frame_->runCommand(zv::ui::kFileLoadDataSheet);
    QVERIFY(checked);
    QCOMPARE(seen, (QStringList{"b.cds"}));
    // The defaults are written without gaps, an empty entry behind the last.
    QCOMPARE(settings_->getString("Data Sheets", "datasheet0", "?"), std::string("b.cds"));
    QCOMPARE(settings_->getString("Data Sheets", "datasheet1", "?"), std::string(""));
    QVERIFY(zv::findLoadedDataSheet("a.cds")->id > firstId);
    QVERIFY(zv::findLoadedDataSheet("b.cds") != nullptr);
  }

  void unloadWithShiftLoadsAgainAtOnce() {
    writeFile(file("a.cds"),
              "\"Data Sheet file v. 1\" gamesystem Tiny version 253 level 1 cat Tools item Saw "
              "end end");
    start("");
    QVERIFY(zv::loadDataSheet(file("a.cds"), "a.cds"));
    const std::int32_t firstId = zv::findLoadedDataSheet("a.cds")->id;
    LoadDataSheetWindow dialog(*settings_);
    dialog.show();
    dialog.loadedList()->setCurrentRow(0);
    QTest::mouseClick(dialog.button("unload"), Qt::LeftButton, Qt::ShiftModifier);
    QCOMPARE(texts(*dialog.loadedList()), (QStringList{"a.cds"}));
    QVERIFY(zv::findLoadedDataSheet("a.cds") != nullptr);
    QVERIFY(zv::findLoadedDataSheet("a.cds")->id > firstId);
    // Closing without a change of the defaults writes nothing.
    dialog.done(QDialog::Accepted);
    QCOMPARE(settings_->getString("Data Sheets", "datasheet0", "?"), std::string("?"));
  }
};

QTEST_MAIN(DataSheetWindowsTest)
#include "core/engine_context.h"
#include "data_sheet_windows_test.moc"
