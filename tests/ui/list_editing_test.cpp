// Building a character in the desktop program, on the offscreen platform: items taken through the
// Select Item dialog's widgets, deleted and brought back by Undo, stepped and typed to another
// level, and the requirements window with its verdicts; the menus follow the selection.

#include "sheet_frame.h"
#include "when_modal.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>
#include <QtTest>
#include <filesystem>
#include <functional>
#include <optional>

#include "ui/command_table.h"
#include "ui/dialog_window.h"
#include "ui/list_commands.h"
#include "ui/list_panel.h"
#include "ui/main_frame.h"
#include "ui/requirements_window.h"
#include "ui/select_item_dialog.h"
#include "ui/sheet_view.h"
#include "ui/text_codec.h"

using namespace zv::ui;

using zv::testing::whenModal;

namespace {

QStringList rowNames(ListPanel* panel) {
  QStringList names;
  for (int row = 0; row < panel->model()->rowCount(); ++row)
    names << fromSystemText(panel->model()->itemAt(row)->name);
  return names;
}

QStringList names(const std::vector<zv::Item*>& items) {
  QStringList result;
  for (const zv::Item* item : items)
    result << fromSystemText(item->name);
  return result;
}

struct RequirementRow {
  QString text;
  bool met = false;
};

std::vector<RequirementRow> requirementRows(QWidget* window) {
  std::vector<RequirementRow> rows;
  auto* list = window->findChild<QListWidget*>("requirements");
  for (int row = 0; list != nullptr && row < list->count(); ++row)
    rows.push_back({list->item(row)->text(), list->item(row)->checkState() == Qt::Checked});
  return rows;
}

}  // namespace

class ListEditingTest : public QObject {
  Q_OBJECT

  std::optional<zv::testing::SheetFrame> sample_;

  SheetView* view() { return sample_->view(); }
  QString fieldText(const char* name) { return sample_->fieldText(name); }
  double spent() { return fieldText("Spent").toDouble(); }
  ListPanel* listWindow(const char* name) { return sample_->listWindow(name); }
  // Selects rows as a user's clicks would, and lets the frame see the selection.
  void select(ListPanel* panel, std::initializer_list<int> rows) {
    auto* selection = panel->rowsView()->selectionModel();
    selection->clear();
    for (int row : rows) {
      selection->setCurrentIndex(panel->model()->index(row), QItemSelectionModel::Select);
    }
    sample_->frame().updateCommandStates();
  }
  // Takes the item named `name` through the open Select Item dialog's widgets.
  void takeThroughDialog(ListPanel* panel, const QString& name) {
    panel->runCommand(kToolsSelectItem);
    SelectItemDialog* dialog = panel->selectItemDialog();
    QVERIFY(dialog);
    QVERIFY(dialog->isVisible());
    dialog->searchField()->clear();
    QTest::keyClicks(dialog->searchField(), name);
    QListWidgetItem* current = dialog->rowsList()->currentItem();
    QVERIFY(current);
    QCOMPARE(current->text().trimmed(), name);
    QTest::mouseClick(dialog->addButton(), Qt::LeftButton);
  }

 private slots:
  void init() {
    sample_.emplace();
    QVERIFY(sample_->openSample());
  }

  void cleanup() { sample_.reset(); }

  void anItemTakenThroughTheDialogJoinsTheListAtTheCaret() {
    ListPanel* skills = listWindow("Skills");
    QVERIFY(skills);
    QCOMPARE(skills->totalLineText(), QStringLiteral("Skill points 25"));
    QCOMPARE(spent(), 77.0);
    select(skills, {1});  // Lorekeeping
    takeThroughDialog(skills, "Climbing");
    QCOMPARE(rowNames(skills), (QStringList{"Fenwalking", "Lorekeeping", "Climbing", "Spear",
                                            "Tracking", "Bargaining"}));
    QCOMPARE(names(skills->selectedItems()), QStringList{"Climbing"});
    const double cost = skills->caretItem()->totalCost;
    QCOMPARE(cost, 2.0);  // rank 1 at 2 Marks a rank
    QCOMPARE(skills->list().total, 25 + cost);
    QCOMPARE(skills->totalLineText(), QString("Skill points %1").arg(25 + cost));
    QCOMPARE(spent(), 77 + cost);
    // The dialog stays open; the next item goes behind the one just taken. By the keyboard
    // alone: typing lands in the search field, Down moves to the next row, Enter takes it.
    SelectItemDialog* dialog = skills->selectItemDialog();
    QTRY_COMPARE(QApplication::focusWidget(), static_cast<QWidget*>(dialog->searchField()));
    QTest::keyClicks(QApplication::focusWidget(), "Cookery");
    QCOMPARE(dialog->rowsList()->currentItem()->text().trimmed(), QStringLiteral("Cookery"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    const QString below = dialog->rowsList()->currentItem()->text().trimmed();
    QVERIFY(below != QStringLiteral("Cookery"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QCOMPARE(rowNames(skills).mid(2, 2), (QStringList{"Climbing", below}));
    skills->selectItemDialog()->reject();
    QVERIFY(sample_->host().transcript().empty());
    QVERIFY(view()->sheet().changed());
  }

  void theOfferShowsFixedCostsBesideTheNames() {
    ListPanel* gear = listWindow("Gear");
    QVERIFY(gear);
    gear->runCommand(kToolsSelectItem);
    QListWidget* rows = gear->selectItemDialog()->rowsList();
    auto costOf = [rows](const QString& name) {
      for (int row = 0; row < rows->count(); ++row)
        if (rows->item(row)->text().trimmed() == name)
          return rows->item(row)->data(SelectItemDialog::kCostRole).toString();
      return QStringLiteral("<not offered>");
    };
    QCOMPARE(costOf("Lantern"), QStringLiteral("5"));
    QCOMPARE(costOf("Salt, pouch"), QStringLiteral("1½"));
    QCOMPARE(costOf("Reagent Pouch"), QString());  // a group
    gear->selectItemDialog()->reject();
  }

  void aClickBelowTheRowsAddsAtTheEnd() {
    ListPanel* skills = listWindow("Skills");
    QVERIFY(skills);
    select(skills, {1});
    QWidget* viewport = skills->rowsView()->viewport();
    QTest::mouseClick(viewport, Qt::LeftButton, {}, QPoint(10, viewport->height() - 5));
    QCOMPARE(skills->caretItem(), nullptr);
    takeThroughDialog(skills, "Climbing");
    QCOMPARE(rowNames(skills).back(), QStringLiteral("Climbing"));
    skills->selectItemDialog()->reject();
  }

  void unmetRequirementsShowInTheWindowAndSatisfyAddsWhatIsMissing_data() {
    QTest::addColumn<bool>("satisfy");
    QTest::addColumn<QStringList>("rows");
    QTest::newRow("cancelled") << false
                               << QStringList{"Fenwalking", "Lorekeeping", "Spear", "Tracking",
                                              "Bargaining"};
    QTest::newRow("satisfied") << true << QStringList{"Fenwalking",  "Lorekeeping", "Spear",
                                                      "Tracking",    "Bargaining",  "Bell Lore",
                                                      "Bell-ringing"};
  }

  void unmetRequirementsShowInTheWindowAndSatisfyAddsWhatIsMissing() {
    QFETCH(bool, satisfy);
    QFETCH(QStringList, rows);
    ListPanel* skills = listWindow("Skills");
    select(skills, {4});
    std::vector<RequirementRow> before;
    std::vector<RequirementRow> after;
    QString title;
    whenModal([&](QWidget* modal) {
      auto* window = qobject_cast<RequirementsWindow*>(modal);
      QVERIFY(window);
      title = window->windowTitle();
      before = requirementRows(window);
      if (!satisfy) {
        window->reject();
        return;
      }
      QTest::mouseClick(window->satisfyButton(), Qt::LeftButton);
      after = requirementRows(window);
      window->accept();
    });
    takeThroughDialog(skills, "Bell Lore");
    if (skills->selectItemDialog()) skills->selectItemDialog()->reject();
    QCOMPARE(title, QStringLiteral("Bell Lore"));
    QCOMPARE(before.size(), std::size_t{1});
    QVERIFY(before.front().text.contains("Bell-ringing"));
    QVERIFY(!before.front().met);
    if (satisfy) {
      QCOMPARE(after.size(), std::size_t{1});
      QVERIFY(after.front().met);
    }
    QCOMPARE(rowNames(skills), rows);
  }

  void showRequirementsGivesTheVerdictOfTheSelectedItem() {
    ListPanel* rites = listWindow("Rites");
    select(rites, {2});
    QVERIFY(!rites->commandEnabled(kToolsShowRequirements));  // Ashes of Naming has none
    takeThroughDialog(rites, "Hollow Sight");
    rites->selectItemDialog()->reject();
    QCOMPARE(names(rites->selectedItems()), QStringList{"Hollow Sight"});
    sample_->frame().updateCommandStates();
    QVERIFY(sample_->frame().commandAction(kToolsShowRequirements)->isEnabled());
    std::vector<RequirementRow> shown;
    whenModal([&](QWidget* modal) {
      shown = requirementRows(modal);
      qobject_cast<QDialog*>(modal)->accept();
    });
    sample_->frame().runCommand(kToolsShowRequirements);
    // "Skills:Lorekeeping>=2|Skills:Grave Lore>=2": Maren keeps lore at 3 and knows no graves.
    QCOMPARE(shown.size(), std::size_t{3});
    QVERIFY(shown[0].text.contains("Lorekeeping"));
    QVERIFY(shown[0].met);
    QCOMPARE(shown[1].text, QStringLiteral("--- OR ---"));
    QVERIFY(shown[2].text.contains("Grave Lore"));
    QVERIFY(!shown[2].met);
  }

  void threeDeletedItemsComeBackInTheirPlacesSelected() {
    ListPanel* skills = listWindow("Skills");
    QVERIFY(!sample_->frame().commandAction(kEditUndo)->isEnabled());
    select(skills, {0, 2, 4});  // Fenwalking 6, Spear 8, Bargaining 1
    QVERIFY(sample_->frame().commandAction(kEditClear)->isEnabled());
    sample_->host().addAnswer("Yes");  // "Delete the 3 selected items?"
    sample_->frame().runCommand(kEditClear);
    QCOMPARE(rowNames(skills), (QStringList{"Lorekeeping", "Tracking"}));
    QCOMPARE(skills->list().total, 10.0);
    QCOMPARE(spent(), 62.0);
    QCOMPARE(sample_->frame().commandAction(kEditUndo)->text(), QStringLiteral("&Undo Delete"));
    QVERIFY(sample_->frame().commandAction(kEditUndo)->isEnabled());

    sample_->frame().runCommand(kEditUndo);
    QCOMPARE(rowNames(skills),
             (QStringList{"Fenwalking", "Lorekeeping", "Spear", "Tracking", "Bargaining"}));
    QCOMPARE(names(skills->selectedItems()),
             (QStringList{"Fenwalking", "Lorekeeping", "Spear", "Tracking", "Bargaining"}));
    QCOMPARE(skills->list().total, 25.0);
    QCOMPARE(spent(), 77.0);
    QVERIFY(!sample_->frame().commandAction(kEditUndo)->isEnabled());
    QCOMPARE(sample_->frame().commandAction(kEditUndo)->text(), QStringLiteral("&Undo"));
  }

  void multipleDeletionsAskUnderThePreference_data() {
    QTest::addColumn<bool>("confirm");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<int>("rowsLeft");
    QTest::addColumn<int>("boxes");
    QTest::newRow("confirmed") << true << "Yes" << 3 << 1;
    QTest::newRow("refused") << true << "No" << 5 << 1;
    QTest::newRow("not asked") << false << "" << 3 << 0;
  }

  void multipleDeletionsAskUnderThePreference() {
    QFETCH(bool, confirm);
    QFETCH(QString, answer);
    QFETCH(int, rowsLeft);
    QFETCH(int, boxes);
    sample_->appSettings().confirmMultipleDeletions = confirm;
    ListPanel* skills = listWindow("Skills");
    select(skills, {1, 3});
    if (!answer.isEmpty()) sample_->host().addAnswer(answer.toStdString());
    sample_->host().clearTranscript();
    skills->runCommand(kEditClear);
    QCOMPARE(skills->model()->rowCount(), rowsLeft);
    QCOMPARE(static_cast<int>(sample_->host().transcript().size()), boxes);
    if (boxes > 0)
      QCOMPARE(QString::fromStdString(sample_->host().transcript().front()),
               QStringLiteral("[Confirm Deletion] Delete the 2 selected items?"));
  }

  void undoTakesBackATypedValueThenADeletionBeforeIt() {
    ListPanel* skills = listWindow("Skills");
    select(skills, {0});  // Fenwalking, Agility - 8: rank 3, 6 Marks
    skills->runCommand(kEditClear);
    QCOMPARE(spent(), 71.0);
    // Agility 11 to 12 costs 2 Marks more; the deletion stays undoable behind the typed value.
    sample_->type("Agility", "12", "Name");
    QCOMPARE(spent(), 73.0);
    QVERIFY(view()->mainWindow()->isWindowModified());  // the title shows the sheet changed
    QAction* undo = sample_->frame().commandAction(kEditUndo);
    sample_->frame().updateCommandStates();
    QCOMPARE(undo->text(), QStringLiteral("&Undo Typing"));
    sample_->frame().runCommand(kEditUndo);
    QCOMPARE(fieldText("Agility"), QStringLiteral("11"));
    QCOMPARE(spent(), 71.0);
    auto* agility = qobject_cast<QLineEdit*>(sample_->mainDialog()->controlFor("Agility"));
    QTRY_VERIFY(agility->hasFocus());
    QCOMPARE(agility->selectedText(), QStringLiteral("11"));
    QCOMPARE(undo->text(), QStringLiteral("&Undo Delete"));
    sample_->frame().runCommand(kEditUndo);
    QCOMPARE(spent(), 77.0);
    QCOMPARE(rowNames(skills).front(), QStringLiteral("Fenwalking"));
    QVERIFY(!undo->isEnabled());
    QVERIFY(!view()->sheet().changed());  // back to the sheet as it was opened
    QVERIFY(!view()->mainWindow()->isWindowModified());
  }

  void notesOfAnItemAreEditedInABoxTitledByItsName() {
    ListPanel* gear = listWindow("Gear");
    select(gear, {4});  // Warden's Spear
    zv::Item* spear = gear->caretItem();
    QVERIFY(!view()->sheet().changed());
    QString title;
    whenModal([&title](QWidget* box) {
      title = box->windowTitle();
      auto* notes = box->findChild<QPlainTextEdit*>("notes");
      notes->setPlainText("Ash haft.\nIron head, blessed.");
      box->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    });
    gear->runCommand(kToolsNotes);
    QCOMPARE(title, QStringLiteral("Warden's Spear"));
    QCOMPARE(QString::fromStdString(spear->notes),
             QStringLiteral("Ash haft.\r\nIron head, blessed."));
    QVERIFY(view()->sheet().changed());
  }

  void sortPutsTheListInTheOrderChosenAndKeepsTheChoice() {
    ListPanel* skills = listWindow("Skills");
    select(skills, {2});
    whenModal([](QWidget* box) {
      box->findChild<QComboBox*>("type")->setCurrentIndex(2);  // Cost
      box->findChild<QCheckBox*>("reverse")->setChecked(true);
      box->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    });
    sample_->frame().runCommand(kToolsSort);
    // Costs 9, 8, 6, then Tracking and Bargaining at 1 each: the tie by name, reversed too.
    QCOMPARE(rowNames(skills),
             (QStringList{"Lorekeeping", "Spear", "Fenwalking", "Tracking", "Bargaining"}));
    QCOMPARE(names(skills->selectedItems()), QStringList{"Lorekeeping"});
    QVERIFY(view()->sheet().changed());
    QCOMPARE(sample_->settings().getInt("Sort", "Type", 0), 103L);
    QCOMPARE(sample_->settings().getInt("Sort", "ReverseOrder", 0), 1L);
    // The next sort starts from the kept choices; Cancel changes nothing.
    QString shownKey;
    whenModal([&shownKey](QWidget* box) {
      shownKey = box->findChild<QComboBox*>("type")->currentText();
      box->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Cancel)->click();
    });
    sample_->frame().runCommand(kToolsSort);
    QCOMPARE(shownKey, QStringLiteral("Cost"));
    QCOMPARE(rowNames(skills).front(), QStringLiteral("Lorekeeping"));
  }

  void listSummaryShowsAnyListOfTheSheet() {
    ListPanel* skills = listWindow("Skills");
    select(skills, {0});
    QStringList seen;
    whenModal([&seen](QWidget* box) {
      seen << box->windowTitle() << box->findChild<QLabel*>("count")->text();
      auto* lists = box->findChild<QComboBox*>("lists");
      lists->setCurrentIndex(lists->findText("Gear"));
      seen << box->windowTitle();
      box->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    });
    sample_->frame().runCommand(kToolsListSummary);
    QCOMPARE(seen.value(0), QStringLiteral("Skills"));
    QVERIFY2(seen.value(1).startsWith("5 items in "), qPrintable(seen.value(1)));
    QCOMPARE(seen.value(2), QStringLiteral("Gear"));
  }

  void aNewLevelChangesTheCost_data() {
    QTest::addColumn<int>("command");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("level");
    QTest::addColumn<double>("cost");  // deep lore: the rank squared
    QTest::newRow("Add 1") << kToolsAdd1 << ""
                           << "4" << 16.0;
    QTest::newRow("Subtract 1") << kToolsSubtract1 << ""
                                << "2" << 4.0;
    QTest::newRow("typed level") << kToolsModify << "5"
                                 << "5" << 25.0;
    QTest::newRow("entry cancelled") << kToolsModify << "Cancel"
                                     << "3" << 9.0;
  }

  void aNewLevelChangesTheCost() {
    QFETCH(int, command);
    QFETCH(QString, typed);
    QFETCH(QString, level);
    QFETCH(double, cost);
    ListPanel* skills = listWindow("Skills");
    select(skills, {1});  // Lorekeeping 3, 9 Marks
    if (!typed.isEmpty()) sample_->host().addAnswer(typed.toStdString());
    sample_->frame().runCommand(command);
    zv::Item* lore = skills->caretItem();
    QCOMPARE(fromSystemText(lore->name), QStringLiteral("Lorekeeping"));
    QCOMPARE(fromSystemText(zv::valueToText(lore->value)), level);
    QCOMPARE(lore->totalCost, cost);
    QCOMPARE(skills->list().total, 25 - 9 + cost);
    QCOMPARE(spent(), 77 - 9 + cost);
  }

  void keysOfTheListWindow() {
    ListPanel* skills = listWindow("Skills");
    QWidget* rows = skills->rowsView();
    select(skills, {4});  // Bargaining 1
    QTest::keyClick(rows, Qt::Key_Up, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(fromSystemText(zv::valueToText(skills->caretItem()->value)), QStringLiteral("6"));
    QTest::keyClick(rows, Qt::Key_Down, Qt::ControlModifier);
    QCOMPARE(fromSystemText(zv::valueToText(skills->caretItem()->value)), QStringLiteral("5"));
    QVERIFY(sample_->host().transcript().empty());
    select(skills, {1});
    sample_->frame().runCommand(kToolsMoveDown);
    QCOMPARE(rowNames(skills).mid(1, 2), (QStringList{"Spear", "Lorekeeping"}));
    QCOMPARE(names(skills->selectedItems()), QStringList{"Lorekeeping"});
    QTest::keyClick(rows, Qt::Key_Delete);
    QCOMPARE(rowNames(skills), (QStringList{"Fenwalking", "Spear", "Tracking", "Bargaining"}));
    // Type-ahead: "t" finds Tracking; "b" after it starts again and finds Bargaining.
    QTest::keyClicks(rows, "tb");
    QCOMPARE(names(skills->selectedItems()), QStringList{"Bargaining"});
    QTest::keyClick(rows, Qt::Key_Insert);
    QVERIFY(skills->selectItemDialog());
    skills->selectItemDialog()->reject();
  }

  void theRightButtonsMenuOffersTheListsCommandsForTheSelection() {
    ListPanel* skills = listWindow("Skills");
    QVERIFY(skills);
    auto enabledTexts = [&] {
      QStringList texts;
      const std::unique_ptr<QMenu> popup = skills->commandsPopup();
      for (QAction* action : popup->actions())
        if (!action->isSeparator() && action->isEnabled()) texts << action->text();
      return texts;
    };
    select(skills, {1, 2});
    QCOMPARE(enabledTexts(), (QStringList{"&Select Item...", "Select from &Master List...",
                                          "&Delete Item", "S&ort...", "List S&ummary..."}));
    select(skills, {1});
    QStringList one = enabledTexts();
    QVERIFY(one.contains("Add &1") && one.contains("Move &Up") && one.contains("&Modify..."));
    QVERIFY(!one.contains("&Check Requirements..."));  // a command of the sheet, not the list
  }

  void menuStateFollowsTheListAndItsRows_data() {
    QTest::addColumn<int>("command");
    QTest::addColumn<int>("maxItems");
    QTest::addColumn<int>("selected");
    QTest::addColumn<bool>("enabled");
    QTest::newRow("Select Item below the maximum") << kToolsSelectItem << 3 << 0 << true;
    QTest::newRow("Select Item at the maximum") << kToolsSelectItem << 2 << 0 << false;
    QTest::newRow("Master List at the maximum") << kToolsSelectFromMasterList << 2 << 0 << false;
    QTest::newRow("Delete without a row") << kToolsDeleteItem << 0 << 0 << false;
    QTest::newRow("Delete two rows") << kEditClear << 0 << 2 << true;
    QTest::newRow("Move Up two rows") << kToolsMoveUp << 0 << 2 << false;
    QTest::newRow("Move Up one row") << kToolsMoveUp << 0 << 1 << true;
    QTest::newRow("Add 1 one item") << kToolsAdd1 << 0 << 1 << true;
    QTest::newRow("Show Requirements without any") << kToolsShowRequirements << 0 << 1 << false;
  }

  void menuStateFollowsTheListAndItsRows() {
    QFETCH(int, command);
    QFETCH(int, maxItems);
    QFETCH(int, selected);
    QFETCH(bool, enabled);
    zv::ListInfo list;
    list.maxItems = maxItems;
    std::vector<zv::Item*> rows;
    for (int i = 0; i < 2; ++i) {
      list.items.push_back(std::make_unique<zv::Item>());
      rows.push_back(list.items.back().get());
    }
    rows.resize(static_cast<std::size_t>(selected));
    QCOMPARE(listCommandEnabled(command, list, rows, 2), enabled);
  }
};

QTEST_MAIN(ListEditingTest)
#include "list_editing_test.moc"
