// The window-free logic of the desktop program: input conversion, storing a value through its
// checks, combo box entries, the command table, Data menu texts, field geometry, list rows and
// the type-ahead of list windows.

// Before any Qt header: HeadlessHost has a member that Qt's "emit" macro would rewrite.
#include "sheet_frame.h"

#include <QtTest>
#include <algorithm>
#include <memory>

#include "core/fileinfo.h"
#include "core/text.h"
#include "expr/symbols.h"
#include "formats/tokens/keywords.h"
#include "ui/command_table.h"
#include "ui/field_geometry.h"
#include "ui/field_values.h"
#include "ui/list_rows.h"
#include "ui/list_summary.h"
#include "ui/type_ahead.h"

using namespace zv;
using namespace zv::ui;

namespace {

// A sheet with one dialog and an `editvar` named Str over a variable of the sheet's table.
struct SheetWithField {
  FileInfo sheet;
  DlgItem* field = nullptr;
  SheetWithField(const std::string& format, const std::string& formula,
                 const std::string& checkExp = {}) {
    sheet.symbols = std::make_shared<SymbolTable>();
    sheet.symbols->owner = &sheet;
    DlgInfo* dialog = sheet.addDialog();
    auto item = std::make_unique<DlgItem>();
    item->kind = kEditvar;
    item->varName = "Str";
    item->text = "10";
    item->format = format;
    item->formula = formula;
    item->checkExp = checkExp;
    item->symbol = defineVariable(*sheet.symbols, "Str", "10");
    field = &dialog->appendItem(std::move(item));
  }
};

}  // namespace

class FieldLogicTest : public QObject {
  Q_OBJECT
  std::unique_ptr<HeadlessHost> host_;
  std::unique_ptr<HostInstallation> installed_;

  QStringList transcript() const { return zv::testing::transcriptLines(*host_); }

 private slots:
  void init() {
    host_ = std::make_unique<HeadlessHost>(nullptr);
    installed_ = std::make_unique<HostInstallation>(*host_);
  }
  void cleanup() {
    installed_.reset();
    host_.reset();
  }

  void convertInput_data() {
    QTest::addColumn<QString>("formula");
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("result");  // empty: refused
    QTest::addColumn<QString>("box");
    QTest::newRow("first value") << ""
                                 << "5 6"
                                 << "5"
                                 << "";
    QTest::newRow("no values") << ""
                               << "abc"
                               << "0"
                               << "";
    QTest::newRow("a run is one value") << ""
                                        << "5-6"
                                        << "-1"
                                        << "";
    QTest::newRow("feet and inches") << "$1*12+$2"
                                     << "5 6"
                                     << "66"
                                     << "";
    QTest::newRow("missing value reads 0") << "$1+$3"
                                           << "4"
                                           << "4"
                                           << "";
    QTest::newRow("escaped dollar") << "\\$1"
                                    << "1"
                                    << ""
                                    << "[Uninterpretable Value]";
    QTest::newRow("ten values") << ""
                                << "1 2 3 4 5 6 7 8 9 10"
                                << "1"
                                << "";
    QTest::newRow("eleven values") << ""
                                   << "1 2 3 4 5 6 7 8 9 10 11"
                                   << ""
                                   << "[Error] Too many values in dialog item formula";
    QTest::newRow("15 characters") << ""
                                   << "000000000000012"
                                   << "12"
                                   << "";
    QTest::newRow("16 characters") << ""
                                   << "1000000000000000"
                                   << ""
                                   << "[Error] Value too long";
    QTest::newRow("bad argument") << "$x*2"
                                  << "1"
                                  << ""
                                  << "[Error] Bad argument number: $x.";
    QTest::newRow("trailing backslash") << "1\\"
                                        << "1"
                                        << ""
                                        << "[Error] Missing escaped character";
  }

  void convertInput() {
    QFETCH(QString, formula);
    QFETCH(QString, input);
    QFETCH(QString, result);
    QFETCH(QString, box);
    SheetWithField s("x", formula.toStdString());
    std::optional<std::string> converted =
        zv::ui::convertInput(s.sheet, *s.field, input.toStdString());
    QCOMPARE(converted.has_value(), !result.isEmpty());
    if (converted) QCOMPARE(QString::fromStdString(*converted), result);
    if (box.isEmpty()) {
      QVERIFY(transcript().isEmpty());
    } else {
      QCOMPARE(transcript().size(), 1);
      QVERIFY2(transcript().front().startsWith(box), qPrintable(transcript().front()));
    }
  }

  void storingThroughTheCheck_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("noBadValueDialog");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QString>("text");  // the field's text afterwards
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("boxes");
    QTest::newRow("passes") << "12" << false << ""
                            << "12" << 12 << 0;
    QTest::newRow("expression") << "3+4" << false << ""
                                << "3+4" << 7 << 0;
    QTest::newRow("refused, cancelled") << "20" << false << "Cancel"
                                        << "10" << 10 << 1;
    QTest::newRow("refused, accepted") << "20" << false << "OK"
                                       << "20" << 20 << 1;
    QTest::newRow("no box, only a beep") << "20" << true << ""
                                         << "10" << 10 << 0;
    QTest::newRow("empty input tests 0") << "" << false << ""
                                         << "" << 0 << 0;
    QTest::newRow("not an expression") << "(" << false << ""
                                       << "10" << 10 << 1;
  }

  void storingThroughTheCheck() {
    QFETCH(QString, typed);
    QFETCH(bool, noBadValueDialog);
    QFETCH(QString, answer);
    QFETCH(QString, text);
    QFETCH(int, value);
    QFETCH(int, boxes);
    SheetWithField s("", "", "x<=18");
    if (!answer.isEmpty()) host_->addAnswer(answer.toStdString());
    int beeps = 0;
    AcceptanceMemory memory;
    FieldContext context;
    context.preferences.noBadValueDialog = noBadValueDialog;
    context.memory = &memory;
    context.beep = [&beeps] { ++beeps; };
    setFieldValue(s.sheet, *s.field, typed.toStdString(), FieldInput::Typed, context);
    QCOMPARE(QString::fromStdString(s.field->text), text);
    QCOMPARE(valueToInteger(s.field->symbol->value), value);
    QCOMPARE(transcript().size(), boxes);
    QCOMPARE(beeps, noBadValueDialog ? 1 : 0);
  }

  void anAcceptedMessageIsNotAskedAgain() {
    SheetWithField s("", "", "x<=18");
    s.field->checkMsg = "Too strong";
    AcceptanceMemory memory;
    FieldContext context;
    context.memory = &memory;
    host_->addAnswer("OK");
    setFieldValue(s.sheet, *s.field, "20", FieldInput::Typed, context);
    setFieldValue(s.sheet, *s.field, "20+0", FieldInput::Typed, context);
    QCOMPARE(transcript(), QStringList{"[Unacceptable Value] Too strong"});
    QCOMPARE(QString::fromStdString(s.field->text), QStringLiteral("20+0"));
  }

  void displayTextUsesAStringFormat() {
    SheetWithField s("concat(x, \" ft\")", "");
    QCOMPARE(displayText(s.sheet, *s.field), std::string("10 ft"));
    FieldContext context;
    setFieldValue(s.sheet, *s.field, "12", FieldInput::Restored, context);
    QCOMPARE(displayText(s.sheet, *s.field), std::string("12 ft"));
    // A format that gives a number shows the plain value.
    s.field->format = "x*2";
    QCOMPARE(displayText(s.sheet, *s.field), std::string("12"));
  }

  void comboEntries_data() {
    QTest::addColumn<QString>("choices");
    QTest::addColumn<int>("count");  // -1: refused
    QTest::newRow("pairs") << "Small;1;Large;3" << 2;
    QTest::newRow("trailing separator") << "Small;1;" << 1;
    QTest::newRow("a label without value") << "A;1;B" << -1;
    QTest::newRow("new combo box") << "Value;0" << 1;
  }

  void comboEntries() {
    QFETCH(QString, choices);
    QFETCH(int, count);
    auto entries = parseComboEntries(choices.toStdString());
    QCOMPARE(entries ? static_cast<int>(entries->size()) : -1, count);
  }

  void commandTableIsSortedAndFound() {
    auto table = commandTable();
    QCOMPARE(table.size(), std::size_t{70});
    QVERIFY(std::is_sorted(table.begin(), table.end(), [](const auto& a, const auto& b) {
      return compareIgnoringCase(a.name, b.name) < 0;
    }));
    for (const CommandName& entry : table)
      QCOMPARE(commandNumber(entry.name), std::optional<int>(entry.number));
    QCOMPARE(commandNumber("utilitiesrecalculate"), std::optional<int>(1308));
    QCOMPARE(commandNumber("FilePrintThroughTemplate"), std::optional<int>(1056));
    QVERIFY(!commandNumber("FileFly"));
  }

  void dataMenuTexts_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("menuChar");
    QTest::addColumn<QString>("text");
    QTest::newRow("first letter") << "Skills"
                                  << "S"
                                  << "&Skills";
    QTest::newRow("ignoring case") << "Gear"
                                   << "e"
                                   << "G&ear";
    QTest::newRow("no such letter") << "Gear"
                                    << "X"
                                    << "Gear (&X)";
    QTest::newRow("no letter") << "Gear"
                               << ""
                               << "Gear";
    QTest::newRow("ampersand doubled") << "Arms & Armour"
                                       << "r"
                                       << "A&rms && Armour";
  }

  void dataMenuTexts() {
    QFETCH(QString, name);
    QFETCH(QString, menuChar);
    QFETCH(QString, text);
    QCOMPARE(QString::fromStdString(dataMenuText(name.toStdString(), menuChar.toStdString())),
             text);
  }

  void fieldGeometry() {
    FontStyle style = fontStyleOf(0x10C);
    QCOMPARE(style.points, 12);
    QVERIFY(style.bold && !style.italic);
    QCOMPARE(fontPixelHeight(12, 96), 16);
    QVERIFY(!fontStyleOf(0).present());
    QVERIFY(isMultiLineEdit(40, 16));
    QVERIFY(!isMultiLineEdit(39, 16));
    QCOMPARE(listFieldHeight(10, 16), 25);
    QCOMPARE(dialogClientSize(0, 7).width, 200);
    QCOMPARE(dialogClientSize(0, 7).height, 100);
    QCOMPARE(resolveFontIndex(0, -3, 3), 0);
    QCOMPARE(resolveFontIndex(0, 99, 3), 3);
    QCOMPARE(resolveFontIndex(2, 99, 3), 2);
    Rgb blue = rgbOf(0x00FF0000);
    QCOMPARE(blue.blue, 255);
    QCOMPARE(blue.red, 0);
  }

  void sublistsOpenAndCloseInTheRows() {
    ListInfo list;
    auto outer = std::make_unique<Item>(ItemKind::Sublist, "Pack");
    auto inner = std::make_unique<Item>(ItemKind::Sublist, "Pouch");
    inner->depth = 1;
    auto flint = std::make_unique<Item>(ItemKind::Item, "Flint");
    flint->depth = 2;
    inner->children.push_back(std::move(flint));
    inner->setOpen(true);
    Item* innerItem = inner.get();
    outer->children.push_back(std::move(inner));
    outer->setOpen(true);
    list.items.push_back(std::move(outer));
    list.items.push_back(std::make_unique<Item>(ItemKind::Item, "Cloak"));
    ListRows rows;
    rows.fill(list);
    QCOMPARE(rows.size(), std::size_t{4});
    // Closing the outer sublist closes the inner one too; reopening shows it closed.
    QVERIFY(rows.toggle(0));
    QCOMPARE(rows.size(), std::size_t{2});
    QVERIFY(!innerItem->open());
    QVERIFY(rows.toggle(0));
    QCOMPARE(rows.size(), std::size_t{3});
    QCOMPARE(rows.rowOf(innerItem), 1);
    QVERIFY(!rows.toggle(2));
  }

  void rowFormats_data() {
    QTest::addColumn<int>("altIndex");
    QTest::addColumn<QString>("format");
    QTest::newRow("default with a level") << 0 << "%0ln%-5rc%-10rv";
    QTest::newRow("chosen alternative, own nameless one second") << 1 << "[^n]";
    QTest::newRow("item's alternative of that name") << 2 << "own wide";
    QTest::newRow("index beyond the count") << 3 << "%0ln%-5rc%-10rv";
  }

  void rowFormats() {
    QFETCH(int, altIndex);
    QFETCH(QString, format);
    ListInfo list;
    list.altFormats = {{"Short", "", "[$!]"}, {"Wide", "", "list wide"}};
    Item item(ItemKind::Item, "Climb");
    item.level = "3";
    item.altFormats = {{"Wide", "", "own wide"}, {"", "", "nameless"}};
    QCOMPARE(QString::fromStdString(rowFormat(item, list, altIndex)), format);
  }

  void typeAheadFindsTheNextRowByItsNameBeginning_data() {
    QTest::addColumn<QString>("keys");
    QTest::addColumn<int>("caret");  // -1: no caret
    QTest::addColumn<int>("row");    // -1: nothing found
    QTest::addColumn<QString>("kept");
    // Rows: Bell Lore, bell-ringing, Climbing, Brawling, Bargaining
    QTest::newRow("first match after the caret") << "b" << 0 << 1 << "b";
    QTest::newRow("round past the end") << "c" << 3 << 2 << "c";
    QTest::newRow("no caret: from the top") << "b" << -1 << 0 << "b";
    QTest::newRow("keys run on, ignoring case") << "BELL-" << -1 << 1 << "bell-";
    QTest::newRow("the caret's own row last") << "cl" << 2 << 2 << "cl";
    QTest::newRow("nothing: again from the last key") << "bx" << 0 << -1 << "x";
    QTest::newRow("a miss restarts the keys") << "clb" << 2 << 3 << "b";
  }

  void typeAheadFindsTheNextRowByItsNameBeginning() {
    QFETCH(QString, keys);
    QFETCH(int, caret);
    QFETCH(int, row);
    QFETCH(QString, kept);
    const std::vector<std::string_view> names{"Bell Lore", "bell-ringing", "Climbing", "Brawling",
                                              "Bargaining"};
    TypeAhead typeAhead;
    std::optional<std::size_t> at = caret >= 0 ? std::optional<std::size_t>(caret) : std::nullopt;
    std::optional<std::size_t> found;
    for (QChar key : keys) {
      found = typeAhead.type(key.toLatin1(), names, at);
      if (found) at = found;
    }
    QCOMPARE(found ? static_cast<int>(*found) : -1, row);
    QCOMPARE(QString::fromStdString(typeAhead.keys()), kept);
  }

  void typeAheadKeepsFifteenKeys() {
    const std::string longName(40, 'a');
    const std::vector<std::string_view> names{"b", longName};
    TypeAhead typeAhead;
    for (int i = 0; i < 20; ++i)
      QCOMPARE(typeAhead.type('a', names, std::nullopt), std::optional<std::size_t>(1));
    QCOMPARE(typeAhead.keys().size(), TypeAhead::kMostKeys);
    typeAhead.clear();
    QVERIFY(typeAhead.keys().empty());
  }

  void listSummaryCountsByCategoryWithCostTotals() {
    ListInfo list;
    struct Entry {
      const char* name;
      const char* cat;
      double cost;
    };
    for (const Entry& e :
         {Entry{"Sword", "Weapons;Blades", 15}, Entry{"Rope", "gear", 1.5},
          Entry{"Axe", "Weapons", 10}, Entry{"Wish", "", 0}, Entry{"Luck", "", 2}}) {
      auto item = std::make_unique<Item>(ItemKind::Item, e.name);
      item->cat = e.cat;
      item->totalCost = e.cost;
      list.items.push_back(std::move(item));
    }
    const ListSummary summary = summarizeList(list);
    // Sword counts in two categories, so the categories hold 4 of the 5 items: 1 in none.
    QCOMPARE(summary.rows, (std::vector<std::string>{"1\tBlades (15)", "1\tgear (1\xbd)",
                                                     "2\tWeapons (25)", "1\t(In no category)"}));
    QCOMPARE(summary.countLine, std::string("5 items in 3 categories"));
  }
};

QTEST_MAIN(FieldLogicTest)
#include "field_logic_test.moc"
