// The desktop frame, run on the offscreen platform: menus, recent files, opening files through the
// dispatcher, the command line, drops, and the settings written at exit.

// Before any Qt header: HeadlessHost has a member that Qt's "emit" macro would rewrite.
#include "sheet_frame.h"

#include <QMdiSubWindow>
#include <QMenuBar>
#include <QMimeData>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QtTest>
#include <filesystem>
#include <fstream>
#include <optional>

#include "core/app_settings.h"
#include "core/settings.h"
#include "ui/main_frame.h"
#include "ui/text_codec.h"
#include "ui/text_window.h"

namespace fs = std::filesystem;
using zv::ui::MainFrame;

namespace {

void writeFile(const fs::path& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary);
  out << bytes;
}

QStringList actionTexts(const QWidget* menu) {
  QStringList texts;
  for (QAction* action : menu->actions()) {
    if (!action->isSeparator()) texts << action->text();
  }
  return texts;
}

// The entries of the File menu between its last two separators: the recent files.
QList<QAction*> recentFileActions(const QMenu* menu) {
  QList<QList<QAction*>> groups{{}};
  for (QAction* action : menu->actions()) {
    if (action->isSeparator()) {
      groups.append(QList<QAction*>{});
    } else {
      groups.back() << action;
    }
  }
  return groups.size() >= 2 ? groups[groups.size() - 2] : QList<QAction*>{};
}

zv::ui::TextWindow* textWindowOf(QMdiSubWindow* window) {
  return window ? qobject_cast<zv::ui::TextWindow*>(window->widget()) : nullptr;
}

}  // namespace

class FrameTest : public QObject {
  Q_OBJECT

  // A settings store of its own for each test, a working directory away from the files, and a
  // host that records every box.
  std::optional<QTemporaryDir> dir_;
  std::optional<zv::Settings> settings_;
  std::optional<zv::AppSettings> app_;
  std::optional<zv::HeadlessHost> host_;
  std::optional<zv::HostInstallation> installed_;

  fs::path file(const std::string& name) const {
    return fs::path(dir_->path().toStdString()) / name;
  }

  void useSettings(const std::string& iniText) {
    writeFile(file("settings.ini"), iniText);
    settings_.emplace(zv::Settings::fromFile(file("settings.ini")));
    app_.emplace(zv::AppSettings::load(*settings_, file("")));
  }

  QStringList transcript() const { return zv::testing::transcriptLines(*host_); }

 private slots:
  void init() {
    dir_.emplace();
    QVERIFY(dir_->isValid());
    fs::create_directory(file("elsewhere"));
    fs::current_path(file("elsewhere"));
    useSettings("");
    host_.emplace(nullptr);
    installed_.emplace(*host_);
  }

  void cleanup() {
    installed_.reset();
    host_.reset();
    fs::current_path(fs::temp_directory_path());
  }

  void titleAndMenus() {
    MainFrame frame(*settings_, *app_);
    QCOMPARE(frame.windowTitle(), QStringLiteral("Zarvelin"));
    QCOMPARE(actionTexts(frame.menuBar()),
             (QStringList{"&File", "&Edit", "&Tools", "&Data", "&Utilities", "&Window", "&Help"}));
    QCOMPARE(actionTexts(frame.fileMenu()),
             (QStringList{"&New...", "&Open...", "&Close", "&Save", "Save &As...", "Save A&ll",
                          "&Load Data Sheet...", "&Merge Data Sheet...", "Recent Files", "E&xit"}));
    QList<QAction*> file = frame.fileMenu()->actions();
    QCOMPARE(frame.commandAction(1042)->shortcut(), QKeySequence(QKeySequence::Open));
    // With no sheet open, the Data menu is hidden and the sheet's commands are disabled.
    QVERIFY(!frame.dataMenu()->menuAction()->isVisible());
    for (int command : {1048, 1043, 1044, 1076, 1051, 1308, 1080, 1084, 1101, 1109})
      QVERIFY(!frame.commandAction(command)->isEnabled());
    for (int command : {1041, 1042, 1050})
      QVERIFY(frame.commandAction(command)->isEnabled());
    QCOMPARE(file.back()->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_Q));
    QCOMPARE(file.back()->data().toInt(), 1045);
    QCOMPARE(frame.helpMenu()->actions().size(), 1);
    QCOMPARE(frame.helpMenu()->actions().front()->data().toInt(), 1291);
  }

  void statusBarFollowsThePreference_data() {
    QTest::addColumn<QString>("ini");
    QTest::addColumn<bool>("shown");
    QTest::newRow("default") << "" << true;
    QTest::newRow("off") << "[Preferences]\nshowStatusBar=0\n" << false;
    QTest::newRow("on") << "[Preferences]\nshowStatusBar=1\n" << true;
  }

  void statusBarFollowsThePreference() {
    QFETCH(QString, ini);
    QFETCH(bool, shown);
    useSettings(ini.toStdString());
    MainFrame frame(*settings_, *app_);
    frame.show();
    QCOMPARE(frame.statusBar()->isVisible(), shown);
  }

  void recentFilesMenu_data() {
    QTest::addColumn<QString>("ini");
    QTest::addColumn<QStringList>("texts");
    QTest::newRow("empty list") << "" << QStringList{"Recent Files"};
    QTest::newRow("entries in order, numbered from 1")
        << "[Recent Files]\nFile0=/srv/b.chr\nFile1=/srv/a.cds\nFile2=/srv/c.txt\n"
        << QStringList{"&1 /srv/b.chr", "&2 /srv/a.cds", "&3 /srv/c.txt"};
    QTest::newRow("empty entries are skipped")
        << "[Recent Files]\nFile0=\nFile1=/srv/x.chr\nFile2=\nFile3=/srv/y.chr\n"
        << QStringList{"&1 /srv/x.chr", "&2 /srv/y.chr"};
    QTest::newRow("ampersands doubled") << "[Recent Files]\nFile0=/srv/Fire & Ice.chr\n"
                                        << QStringList{"&1 /srv/Fire && Ice.chr"};
  }

  void recentFilesMenu() {
    QFETCH(QString, ini);
    QFETCH(QStringList, texts);
    useSettings(ini.toStdString());
    MainFrame frame(*settings_, *app_);
    frame.readRecentFiles();
    QList<QAction*> entries = recentFileActions(frame.fileMenu());
    QStringList shown;
    for (QAction* action : entries)
      shown << action->text();
    QCOMPARE(shown, texts);
    bool empty = texts == QStringList{"Recent Files"};
    for (int i = 0; i < entries.size(); ++i) {
      QCOMPARE(entries[i]->isEnabled(), !empty);
      if (!empty) QCOMPARE(entries[i]->data().toInt(), 1062 + i);
    }
  }

  void recentFileUnderTheWorkingDirectoryIsShownRelative() {
    fs::create_directory(file("elsewhere/sheets"));
    std::string path = file("elsewhere/sheets/hero.chr").string();
    useSettings("[Recent Files]\nFile0=" + path + "\n");
    MainFrame frame(*settings_, *app_);
    frame.readRecentFiles();
    QCOMPARE(recentFileActions(frame.fileMenu()).front()->text(),
             QStringLiteral("&1 sheets/hero.chr"));
  }

  void openingATextFileShowsItsContents() {
    std::string path = file("notes.txt").string();
    writeFile(path, "Sword\r\nShield \x80 12\r\ncaf\xE9\n");
    MainFrame frame(*settings_, *app_);
    QMdiSubWindow* window = frame.openFile(path);
    zv::ui::TextWindow* text = textWindowOf(window);
    QVERIFY(text);
    QCOMPARE(text->toPlainText(), QString::fromUtf8("Sword\nShield \u20AC 12\ncaf\u00E9\n"));
    QVERIFY(text->isReadOnly());
    QCOMPARE(text->windowTitle(), QStringLiteral("notes.txt"));
    QCOMPARE(frame.mdiArea()->subWindowList().size(), 1);
    QCOMPARE(frame.recentFiles().entries(), std::vector<std::string>{path});
    QCOMPARE(recentFileActions(frame.fileMenu()).front()->data().toInt(), 1062);
    QVERIFY(transcript().isEmpty());
  }

  // What each kind of file does when opened: the window (if any) and the boxes shown.
  void openingByKind_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<QString>("editor");
    QTest::addColumn<bool>("textWindow");
    QTest::addColumn<QString>("box");  // "%1" stands for the path
    QTest::newRow("character sheet")
        << "hero.chr" << QByteArray("\"Character Sheet file v. 1\" gamesystem Tiny\n") << ""
        << false
        << "[Error] There are no dialogs in this file; it cannot be opened as a character sheet";
    QTest::newRow("character template")
        << "base.cst" << QByteArray("\"Character Sheet file v. 1\" gamesystem Tiny\n") << ""
        << false
        << "[Error] There are no dialogs in this file; it cannot be opened as a character sheet";
    // A data sheet goes to the data sheet reader (one that opens: tests/ui/data_sheet_windows).
    QTest::newRow("data sheet without its end")
        << "gear.cds" << QByteArray("\"Data Sheet file v. 1\" gamesystem Tiny\n") << "" << false
        << "[Error] End missing";
    QTest::newRow("content outranks extension")
        << "gear.inc" << QByteArray("\"Data Sheet file v. 1\" gamesystem Tiny\n") << "" << false
        << "[Error] End missing";
    QTest::newRow("macro data sheet")
        << "m.mds" << QByteArray("\"Macro Data Sheet file v. 1\"\n") << "" << false
        << "[Not Yet Supported] Opening macro data sheet files is not yet supported: %1";
    QTest::newRow("group") << "party.group" << QByteArray("?filelist\n/srv/a.chr\n") << "" << false
                           << "[Not Yet Supported] Opening group files is not yet supported: %1";
    QTest::newRow("junk named as a sheet")
        << "junk.chr" << QByteArray("no header here\n") << "" << false
        << "[Unrecognizable Format] The format of this file cannot be recognized. This "
           "application cannot open it.";
    QTest::newRow("include file as text") << "a.inc" << QByteArray("x = 1\n") << "" << true << "";
    QTest::newRow("unknown kind, no handler: text")
        << "a.xyz" << QByteArray("?\n") << "" << true << "";
    QTest::newRow("notepad.exe counts as no editor")
        << "b.txt" << QByteArray("b\n") << "notepad.exe" << true << "";
    QTest::newRow("editor that can't start")
        << "c.txt" << QByteArray("c\n") << "/nonexistent/editor --flag" << false
        << "[Error] Unable to start editor on file %1";
  }

  void openingByKind() {
    QFETCH(QString, name);
    QFETCH(QByteArray, contents);
    QFETCH(QString, editor);
    QFETCH(bool, textWindow);
    QFETCH(QString, box);
    std::string path = file(name.toStdString()).string();
    writeFile(path, contents.toStdString());
    app_->editor = editor.toStdString();
    MainFrame frame(*settings_, *app_);
    QMdiSubWindow* window = frame.openFile(path);
    QCOMPARE(textWindowOf(window) != nullptr, textWindow);
    QCOMPARE(frame.mdiArea()->subWindowList().size(), textWindow ? 1 : 0);
    QStringList expected;
    if (!box.isEmpty()) expected << QString(box).replace("%1", QString::fromStdString(path));
    QCOMPARE(transcript(), expected);
    // Only a file that opened joins the recent files.
    QCOMPARE(frame.recentFiles().size(), textWindow ? size_t{1} : size_t{0});
  }

  void messagesOfFilesThatDontOpen() {
    MainFrame frame(*settings_, *app_);
    std::string missing = file("gone.txt").string();
    QVERIFY(!frame.openFile(missing));
    fs::create_directory(file("folder.txt"));
    std::string folder = file("folder.txt").string();
    QVERIFY(!frame.openFile(folder, /*forceText=*/true));
    QCOMPARE(transcript(), (QStringList{QString("[File Not Found] The file '%1' does not exist.")
                                            .arg(QString::fromStdString(missing)),
                                        QString("[Can't Open File] The file %1 cannot be opened.")
                                            .arg(QString::fromStdString(folder))}));
    QVERIFY(frame.recentFiles().empty());
  }

  void reopeningMovesTheFileToTheFront() {
    MainFrame frame(*settings_, *app_);
    std::vector<std::string> paths;
    for (const char* name : {"1.txt", "2.txt", "3.txt"}) {
      paths.push_back(file(name).string());
      writeFile(paths.back(), name);
      QVERIFY(frame.openFile(paths.back()));
    }
    QCOMPARE(frame.recentFiles().entries(),
             (std::vector<std::string>{paths[2], paths[1], paths[0]}));
    recentFileActions(frame.fileMenu()).back()->trigger();  // "&3": the oldest
    QCOMPARE(frame.recentFiles().entries(),
             (std::vector<std::string>{paths[0], paths[2], paths[1]}));
    QCOMPARE(frame.mdiArea()->subWindowList().size(), 4);
  }

  void openCommandOpensEveryChosenFile() {
    std::string a = file("a.txt").string();
    std::string b = file("b.txt").string();
    writeFile(a, "first");
    writeFile(b, "second");
    host_->addAnswer(a + ";" + b);
    MainFrame frame(*settings_, *app_);
    frame.commandAction(1042)->trigger();
    QStringList contents;
    for (QMdiSubWindow* window : frame.mdiArea()->subWindowList()) {
      contents << textWindowOf(window)->toPlainText();
    }
    QCOMPARE(contents, (QStringList{"first", "second"}));
    QCOMPARE(transcript(), QStringList{"[Open] "});
    // The folder of the choice becomes the working directory.
    QCOMPARE(fs::current_path(), fs::path(dir_->path().toStdString()));
  }

  void dropOpensEachFileInTurn() {
    std::string a = file("d1.txt").string();
    std::string b = file("d2.txt").string();
    writeFile(a, "one");
    writeFile(b, "two");
    MainFrame frame(*settings_, *app_);
    frame.show();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(a)),
                  QUrl::fromLocalFile(QString::fromStdString(b))});
    QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&frame, &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&frame, &drop);
    QTRY_COMPARE(frame.mdiArea()->subWindowList().size(), 2);
    QCOMPARE(frame.recentFiles().entries(), (std::vector<std::string>{b, a}));
  }

  void commandLine_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("exists");
    QTest::addColumn<bool>("printAndExit");
    QTest::addColumn<int>("windows");
    QTest::addColumn<QStringList>("boxes");  // "%1": the path as given
    QTest::addColumn<bool>("closes");
    QTest::newRow("missing file") << "none.chr" << false << false << 0
                                  << QStringList{"[Error] Character sheet %1 does not exist"}
                                  << false;
    QTest::newRow("text file") << "read.txt" << true << false << 1 << QStringList{} << false;
    QTest::newRow("print a file that opens")
        << "p.txt" << true << true << 1 << QStringList{} << true;
    QTest::newRow("print a file that can't open")
        << "p.chr" << true << true << 0
        << QStringList{"[Error] No game system specified for this character sheet",
                       "[Error] Cannot print file %1"}
        << true;
    QTest::newRow("print a missing file")
        << "q.chr" << false << true << 0 << QStringList{"[Error] Character sheet %1 does not exist"}
        << true;
  }

  void commandLine() {
    QFETCH(QString, name);
    QFETCH(bool, exists);
    QFETCH(bool, printAndExit);
    QFETCH(int, windows);
    QFETCH(QStringList, boxes);
    QFETCH(bool, closes);
    std::string path = file(name.toStdString()).string();
    if (exists) {
      writeFile(path, name.endsWith(".chr") ? "\"Character Sheet file v. 1\"\n" : "text\n");
    }
    MainFrame frame(*settings_, *app_);
    frame.show();
    frame.openCommandLine(zv::CommandLine{printAndExit, path});
    QCOMPARE(frame.mdiArea()->subWindowList().size(), windows);
    QStringList expected;
    for (const QString& box : boxes)
      expected << box.arg(QString::fromStdString(path));
    QCOMPARE(transcript(), expected);
    if (exists) QCOMPARE(fs::current_path(), fs::path(path).parent_path());
    if (closes) {
      QTRY_VERIFY(!frame.isVisible());
    } else {
      QTest::qWait(20);
      QVERIFY(frame.isVisible());
    }
  }

  void geometryAndRecentFilesAreWrittenAtExit() {
    std::string text = file("kept.txt").string();
    writeFile(text, "kept");
    {
      MainFrame frame(*settings_, *app_);
      frame.showFromSettings();
      frame.move(50, 60);
      frame.resize(500, 400);
      QVERIFY(frame.openFile(text));
      QVERIFY(frame.close());
    }
    zv::Settings reread = zv::Settings::fromFile(file("settings.ini"));
    QCOMPARE(reread.getString("zarvel", "screenPos", "?"), std::string("50 60 500 400"));
    QCOMPARE(reread.getString("zarvel", "maximized", "?"), std::string("0"));
    QCOMPARE(reread.getString("zarvel", "curDir", "?"), fs::current_path().string());
    QCOMPARE(reread.getString("Recent Files", "File0", "?"), text);

    // The next start puts the frame back where it was.
    zv::AppSettings again = zv::AppSettings::load(reread, file(""));
    MainFrame next(reread, again);
    next.showFromSettings();
    QCOMPARE(QRect(next.pos(), next.size()), QRect(50, 60, 500, 400));
    QCOMPARE(next.recentFiles().size(), size_t{0});
    next.readRecentFiles();
    QCOMPARE(next.recentFiles().entries(), std::vector<std::string>{text});

    // Maximized: the flag is written and the last rectangle stays as it was.
    next.showMaximized();
    QTRY_VERIFY(next.isMaximized());
    QVERIFY(next.close());
    zv::Settings last = zv::Settings::fromFile(file("settings.ini"));
    QCOMPARE(last.getString("zarvel", "maximized", "?"), std::string("1"));
    QCOMPARE(last.getString("zarvel", "screenPos", "?"), std::string("50 60 500 400"));
  }

  void storedRectangleIsKeptOnTheScreen() {
    useSettings("[zarvel]\nscreenPos=5000 -20 400 300\nmaximized=0\n");
    MainFrame frame(*settings_, *app_);
    frame.showFromSettings();
    QCOMPARE(QRect(frame.pos(), frame.size()), QRect(0, 0, 400, 300));
    QVERIFY(!frame.isMaximized());
  }

  void maximizedAtStart() {
    useSettings("[zarvel]\nmaximized=1\n");
    MainFrame frame(*settings_, *app_);
    frame.showFromSettings();
    QTRY_VERIFY(frame.isMaximized());
  }
};

QTEST_MAIN(FrameTest)
#include "frame_test.moc"
