// Data > Run Script... in the desktop program: the sample's scripts offered by title, the one
// chosen run on the open character, every window following what it changed; a breach warning
// answered with Cancel; a script error shown with its file and line.

#include "sheet_frame.h"

#include <QtTest>
#include <filesystem>
#include <fstream>
#include <optional>

#include "expr/symbols.h"
#include "ui/command_table.h"
#include "ui/list_panel.h"
#include "ui/main_frame.h"
#include "ui/sheet_view.h"

namespace fs = std::filesystem;
using zv::ui::ListPanel;

class RunScriptTest : public QObject {
  Q_OBJECT

  std::optional<zv::testing::SheetFrame> sheet_;

  zv::ui::SheetView* view() { return sheet_->view(); }
  QStringList transcript() const { return sheet_->transcript(); }

 private slots:
  void init() {
    sheet_.emplace();
    QVERIFY(sheet_->openSample("Maren Vell"));
    sheet_->host().clearTranscript();
  }
  void cleanup() { sheet_.reset(); }

  void theDataMenuEndsWithRunScript() {
    const QList<QAction*> actions = sheet_->frame().dataMenu()->actions();
    QVERIFY(!actions.isEmpty());
    QCOMPARE(actions.back()->text(), QStringLiteral("Run &Script..."));
    QCOMPARE(actions.back()->data().toInt(), zv::ui::kDataRunScript);
    QVERIFY(actions.at(actions.size() - 2)->isSeparator());
  }

  void musterARecruitChangesTheListsAndTheirTotals() {
    ListPanel* skills = sheet_->listWindow("Skills");
    ListPanel* gear = sheet_->listWindow("Gear");
    QVERIFY(skills && gear);
    QCOMPARE(skills->totalLineText(), QStringLiteral("Skill points 25"));
    sheet_->host().addAnswer("Muster a Recruit");
    sheet_->frame().runCommand(zv::ui::kDataRunScript);
    QCOMPARE(transcript(), QStringList{"[Run Script] The script to run on Maren Vell.chr:"});
    // Lamplighting and Watchfulness at 2 Marks each; the road kit of 11½ shillings.
    QCOMPARE(skills->totalLineText(), QStringLiteral("Skill points 29"));
    QCOMPARE(gear->totalLineText(), QStringLiteral("Shillings spent 40"));
    QCOMPARE(sheet_->fieldText("Spent"), QStringLiteral("84"));
    QCOMPARE(sheet_->fieldText("Left"), QStringLiteral("16"));
    QVERIFY(view()->sheet().changed());
  }

  void aWarningAnsweredWithCancelEndsTheScript() {
    sheet_->host().addAnswer("Muster a Recruit");
    sheet_->frame().runCommand(zv::ui::kDataRunScript);
    sheet_->host().clearTranscript();
    sheet_->host().addAnswer("Muster a Recruit");
    sheet_->host().addAnswer("Cancel");
    sheet_->frame().runCommand(zv::ui::kDataRunScript);
    QCOMPARE(transcript(), (QStringList{"[Run Script] The script to run on Maren Vell.chr:",
                                        "[Warning] Maren Vell already keeps the watch. Muster "
                                        "again?"}));
    QCOMPARE(sheet_->fieldText("Spent"), QStringLiteral("84"));
  }

  void aScriptErrorNamesTheFileAndTheLine() {
    const fs::path data = sheet_->folder() / "data";
    fs::create_directories(data);
    for (const auto& entry : fs::directory_iterator(ZV_SAMPLE_DATA_DIR)) {
      if (entry.is_regular_file()) fs::copy_file(entry.path(), data / entry.path().filename());
    }
    std::ofstream(data / "broken.scp", std::ios::binary)
        << "\"Conversion script v. 1\"\r\ngamesystem Hollowmark Hollowmark\r\n"
           "title \"Broken\"\r\nadd Skills.Jump;\r\n";
    sheet_->appSettings().sourceDirectory = data;
    sheet_->host().addAnswer("Broken");
    sheet_->host().addAnswer("Cancel");
    sheet_->frame().runCommand(zv::ui::kDataRunScript);
    QCOMPARE(transcript(),
             (QStringList{"[Run Script] The script to run on Maren Vell.chr:",
                          "[Script Error] Can't find 'Jump' in list Skills.\\n\\nFile: "
                          "broken.scp, line: 4"}));
    QVERIFY(!view()->sheet().changed());
  }

  void aScriptSeesTheActiveWindowAndTheSelectedRow() {
    const fs::path data = sheet_->folder() / "data";
    fs::create_directories(data);
    for (const auto& entry : fs::directory_iterator(ZV_SAMPLE_DATA_DIR)) {
      if (entry.is_regular_file()) fs::copy_file(entry.path(), data / entry.path().filename());
    }
    std::ofstream(data / "where.scp", std::ios::binary)
        << "\"Conversion script v. 1\"\r\ngamesystem Hollowmark Hollowmark\r\n"
           "title \"Where\"\r\n$@Where = \"$+currentWindow()\";\r\n"
           "$@Row = $+selectedIndex(Skills);\r\n";
    sheet_->appSettings().sourceDirectory = data;
    ListPanel* skills = sheet_->listWindow("Skills");
    QVERIFY(skills);
    skills->selectRows(2, 2);
    sheet_->host().addAnswer("Where");
    sheet_->frame().runCommand(zv::ui::kDataRunScript);
    const zv::FileInfo& sheet = view()->sheet();
    QCOMPARE(QString::fromStdString(zv::valueToText(sheet.symbols->findHere("Where")->value)),
             QStringLiteral("Skills"));
    QCOMPARE(zv::valueToText(sheet.symbols->findHere("Row")->value), std::string("3"));
  }

  void aCancelledChoiceRunsNothing() {
    sheet_->host().addAnswer("Cancel");
    sheet_->frame().runCommand(zv::ui::kDataRunScript);
    QCOMPARE(transcript(), QStringList{"[Run Script] The script to run on Maren Vell.chr:"});
    QVERIFY(!view()->sheet().changed());
  }
};

QTEST_MAIN(RunScriptTest)
#include "run_script_test.moc"
