// The Qt host port, driven on the offscreen platform: the boxes are answered by a timer that acts
// on the modal window the way a user would.

#include <QApplication>
#include <QDialogButtonBox>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QTimer>
#include <QtTest>
#include <functional>

#include "ui/qt_host.h"
#include "ui/text_codec.h"
#include "when_modal.h"

Q_DECLARE_METATYPE(zv::ButtonSet)
Q_DECLARE_METATYPE(zv::Button)
Q_DECLARE_METATYPE(zv::Severity)

using zv::testing::whenModal;

namespace {

QMessageBox::StandardButton standardButton(zv::Button button) {
  switch (button) {
    case zv::Button::Ok:
      return QMessageBox::Ok;
    case zv::Button::Cancel:
      return QMessageBox::Cancel;
    case zv::Button::Yes:
      return QMessageBox::Yes;
    case zv::Button::No:
      return QMessageBox::No;
    case zv::Button::Abort:
      return QMessageBox::Abort;
    case zv::Button::Retry:
      return QMessageBox::Retry;
    case zv::Button::Ignore:
      return QMessageBox::Ignore;
    case zv::Button::None:
      break;
  }
  return QMessageBox::NoButton;
}

}  // namespace

class QtHostTest : public QObject {
  Q_OBJECT
  zv::ui::QtHost host_;

 private slots:
  void messageShowsTitleTextAndIcon_data() {
    QTest::addColumn<zv::Severity>("severity");
    QTest::addColumn<int>("icon");
    QTest::newRow("error") << zv::Severity::Error << int(QMessageBox::Critical);
    QTest::newRow("warning") << zv::Severity::Warning << int(QMessageBox::Warning);
    QTest::newRow("message") << zv::Severity::Message << int(QMessageBox::Information);
  }

  void messageShowsTitleTextAndIcon() {
    QFETCH(zv::Severity, severity);
    QFETCH(int, icon);
    QString title, text;
    int shownIcon = -1;
    whenModal([&](QWidget* modal) {
      auto* box = qobject_cast<QMessageBox*>(modal);
      QVERIFY(box);
      title = box->windowTitle();
      text = box->text();
      shownIcon = box->icon();
      box->button(QMessageBox::Ok)->click();
    });
    host_.message(severity, "File Not Found", "The file 'caf\xE9.chr' does not exist.");
    QCOMPARE(title, QStringLiteral("File Not Found"));
    QCOMPARE(text, QString::fromUtf8("The file 'caf\u00E9.chr' does not exist."));
    QCOMPARE(shownIcon, icon);
  }

  void askReturnsTheButtonPressed_data() {
    QTest::addColumn<zv::ButtonSet>("set");
    QTest::addColumn<zv::Button>("defaultButton");
    QTest::addColumn<zv::Button>("pressed");
    QTest::addColumn<QStringList>("shown");
    QTest::newRow("yes/no, no pressed")
        << zv::ButtonSet::YesNo << zv::Button::Yes << zv::Button::No << QStringList{"&Yes", "&No"};
    QTest::newRow("yes/no/cancel, cancel default and pressed")
        << zv::ButtonSet::YesNoCancel << zv::Button::Cancel << zv::Button::Cancel
        << QStringList{"&Yes", "&No", "Cancel"};
    QTest::newRow("ok/cancel") << zv::ButtonSet::OkCancel << zv::Button::Ok << zv::Button::Ok
                               << QStringList{"OK", "Cancel"};
    QTest::newRow("abort/retry/ignore")
        << zv::ButtonSet::AbortRetryIgnore << zv::Button::Retry << zv::Button::Ignore
        << QStringList{"Abort", "Retry", "Ignore"};
  }

  void askReturnsTheButtonPressed() {
    QFETCH(zv::ButtonSet, set);
    QFETCH(zv::Button, defaultButton);
    QFETCH(zv::Button, pressed);
    QFETCH(QStringList, shown);
    QStringList texts;
    bool defaultRight = false;
    whenModal([&](QWidget* modal) {
      auto* box = qobject_cast<QMessageBox*>(modal);
      QVERIFY(box);
      for (QAbstractButton* b : box->buttons())
        texts << b->text();
      defaultRight = box->defaultButton() == box->button(standardButton(defaultButton));
      box->button(standardButton(pressed))->click();
    });
    zv::Question q{"Delete", "Delete 3 items?", set, defaultButton, zv::Severity::Message};
    QCOMPARE(host_.ask(q), pressed);
    texts.sort();
    shown.sort();
    QCOMPARE(texts, shown);
    QVERIFY(defaultRight);
  }

  void enterValue_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("accept");
    QTest::addColumn<QByteArray>("expected");  // empty with accept false: cancelled
    QTest::newRow("typed and accepted") << QString::fromUtf8("Ren\u00E9e \u20AC") << true
                                        << QByteArray(
                                               "Ren\xE9"
                                               "e \x80");
    QTest::newRow("cancelled") << QStringLiteral("ignored") << false << QByteArray();
  }

  void enterValue() {
    QFETCH(QString, typed);
    QFETCH(bool, accept);
    QFETCH(QByteArray, expected);
    QString initial;
    whenModal([&](QWidget* modal) {
      auto* dialog = qobject_cast<QInputDialog*>(modal);
      QVERIFY(dialog);
      initial = dialog->textValue();
      dialog->setTextValue(typed);
      accept ? dialog->accept() : dialog->reject();
    });
    std::optional<std::string> value = host_.enterValue("Name", "Character name:", "Bj\xF6rn");
    QCOMPARE(initial, QString::fromUtf8("Bj\u00F6rn"));
    QCOMPARE(value.has_value(), accept);
    if (accept) QCOMPARE(QByteArray::fromStdString(*value), expected);
  }

  void enterFileValue() {
    QString initial;
    QString title;
    whenModal([&](QWidget* modal) {
      title = modal->windowTitle();
      auto* field = modal->findChild<QLineEdit*>();
      QVERIFY(field);
      initial = field->text();
      field->setText(QStringLiteral("/tmp/hero.chr"));
      qobject_cast<QDialog*>(modal)->accept();
    });
    std::optional<std::string> value = host_.enterFileValue("Pick a sheet", "start.chr");
    QCOMPARE(title, QStringLiteral("Pick a sheet"));
    QCOMPARE(initial, QStringLiteral("start.chr"));
    QVERIFY(value.has_value());
    QCOMPARE(QString::fromStdString(*value), QStringLiteral("/tmp/hero.chr"));

    whenModal([&](QWidget* modal) { qobject_cast<QDialog*>(modal)->reject(); });
    QVERIFY(!host_.enterFileValue("Pick a sheet", "start.chr").has_value());
  }

  void choose_data() {
    QTest::addColumn<bool>("multiple");
    QTest::addColumn<QList<int>>("initial");
    QTest::addColumn<QList<int>>("select");  // rows the user adds to the selection
    QTest::addColumn<bool>("accept");
    QTest::addColumn<QList<int>>("expected");
    QTest::newRow("one, as it started")
        << false << QList<int>{1} << QList<int>{} << true << QList<int>{1};
    QTest::newRow("one, changed") << false << QList<int>{1} << QList<int>{2} << true
                                  << QList<int>{2};
    QTest::newRow("several, in list order")
        << true << QList<int>{2} << QList<int>{0} << true << QList<int>{0, 2};
    QTest::newRow("cancelled") << true << QList<int>{0} << QList<int>{1} << false << QList<int>{};
  }

  void choose() {
    QFETCH(bool, multiple);
    QFETCH(QList<int>, initial);
    QFETCH(QList<int>, select);
    QFETCH(bool, accept);
    QFETCH(QList<int>, expected);
    zv::ChoiceRequest request{"Skills",
                              "Choose a skill",
                              {"Climb", "Swim", "Ride"},
                              multiple,
                              std::vector<int>(initial.begin(), initial.end())};
    QStringList rows;
    whenModal([&](QWidget* modal) {
      auto* list = modal->findChild<QListWidget*>();
      QVERIFY(list);
      for (int i = 0; i < list->count(); ++i)
        rows << list->item(i)->text();
      for (int row : select) {
        if (!multiple) list->clearSelection();
        list->item(row)->setSelected(true);
      }
      auto* dialog = qobject_cast<QDialog*>(modal);
      accept ? dialog->accept() : dialog->reject();
    });
    std::vector<int> chosen = host_.choose(request);
    QCOMPARE(rows, (QStringList{"Climb", "Swim", "Ride"}));
    QCOMPARE(QList<int>(chosen.begin(), chosen.end()), expected);
  }

  void chooseSome_data() {
    QTest::addColumn<int>("minimum");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<QList<int>>("select");
    QTest::addColumn<bool>("okEnabled");
    QTest::addColumn<bool>("accept");
    QTest::addColumn<bool>("answered");
    QTest::addColumn<QList<int>>("expected");
    QTest::newRow("none chosen is an answer")
        << 0 << 2 << QList<int>{} << true << true << true << QList<int>{};
    QTest::newRow("two of at most two")
        << 0 << 2 << QList<int>{2, 0} << true << true << true << QList<int>{0, 2};
    QTest::newRow("three of at most two")
        << 0 << 2 << QList<int>{0, 1, 2} << false << false << false << QList<int>{};
    QTest::newRow("fewer than the minimum")
        << 2 << 0 << QList<int>{1} << false << false << false << QList<int>{};
    QTest::newRow("cancelled with a choice")
        << 0 << 0 << QList<int>{1} << true << false << false << QList<int>{};
  }

  void chooseSome() {
    QFETCH(int, minimum);
    QFETCH(int, maximum);
    QFETCH(QList<int>, select);
    QFETCH(bool, okEnabled);
    QFETCH(bool, accept);
    QFETCH(bool, answered);
    QFETCH(QList<int>, expected);
    zv::ChoiceRequest request;
    request.title = "Tools";
    request.prompt = "Choose your tools";
    request.choices = {"Awl", "Lamp", "Rope"};
    request.minimum = minimum;
    request.maximum = maximum;
    bool enabled = false;
    whenModal([&](QWidget* modal) {
      auto* list = modal->findChild<QListWidget*>();
      for (int row : select)
        list->item(row)->setSelected(true);
      auto* buttons = modal->findChild<QDialogButtonBox*>();
      enabled = buttons->button(QDialogButtonBox::Ok)->isEnabled();
      auto* dialog = qobject_cast<QDialog*>(modal);
      accept ? dialog->accept() : dialog->reject();
    });
    std::optional<std::vector<int>> chosen = host_.chooseSome(request);
    QCOMPARE(enabled, okEnabled);
    QCOMPARE(chosen.has_value(), answered);
    if (chosen) QCOMPARE(QList<int>(chosen->begin(), chosen->end()), expected);
  }

  void progressStepReportsCancel() {
    host_.progressBegin("Loading", "Reading data sheets", 10);
    QVERIFY(host_.progressStep(3));
    QProgressDialog* dialog = nullptr;
    for (QWidget* w : QApplication::topLevelWidgets()) {
      if (auto* p = qobject_cast<QProgressDialog*>(w)) dialog = p;
    }
    QVERIFY(dialog);
    QCOMPARE(dialog->windowTitle(), QStringLiteral("Loading"));
    QCOMPARE(dialog->value(), 3);
    dialog->cancel();
    QVERIFY(!host_.progressStep(4));
    host_.progressEnd();
    QVERIFY(host_.progressStep(5));  // no progress under way: nothing to cancel
  }

  void interruptKeys_data() {
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<bool>("interrupts");
    QTest::newRow("Esc") << int(Qt::Key_Escape) << int(Qt::NoModifier) << true;
    QTest::newRow("Ctrl+Break") << int(Qt::Key_Pause) << int(Qt::ControlModifier) << true;
    QTest::newRow("Break without Ctrl") << int(Qt::Key_Pause) << int(Qt::NoModifier) << false;
    QTest::newRow("a letter") << int(Qt::Key_A) << int(Qt::NoModifier) << false;
  }

  void interruptKeys() {
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(bool, interrupts);
    QWidget target;
    target.show();
    QVERIFY(!host_.interruptRequested());
    // A key that arrives while long work pumps the events: Qt owns the posted event.
    QCoreApplication::postEvent(
        &target, new QKeyEvent(QEvent::KeyPress, key, Qt::KeyboardModifiers(modifiers)));
    host_.pump();
    QCOMPARE(host_.interruptRequested(), interrupts);
    QVERIFY(!host_.interruptRequested());  // taken by the poll
  }

  void anEscOfTheOrdinaryEventLoopStopsNoLaterWork() {
    QWidget target;
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(&target, &press);
    host_.pump();
    QVERIFY(!host_.interruptRequested());
  }

  void keyBeforeLongWorkDoesNotInterrupt() {
    QWidget target;
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(&target, &press);
    host_.setBusy(true);
    QCOMPARE(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    QVERIFY(!host_.interruptRequested());
    host_.setBusy(false);
    QVERIFY(!QApplication::overrideCursor());
  }

  void runProcess_data() {
    QTest::addColumn<QString>("command");
    QTest::addColumn<int>("timeout");
    QTest::addColumn<bool>("finished");
    QTest::addColumn<int>("exitCode");
    QTest::newRow("exit code") << "exit 3" << 5000 << true << 3;
    QTest::newRow("success") << "true" << -1 << true << 0;
    QTest::newRow("time-out") << "sleep 5" << 100 << false << -1;
  }

  void runProcess() {
    QFETCH(QString, command);
    QFETCH(int, timeout);
    QFETCH(bool, finished);
    QFETCH(int, exitCode);
    zv::ProcessResult result = host_.runProcess(command.toStdString(), timeout);
    QVERIFY(result.started);
    QCOMPARE(result.finished, finished);
    QCOMPARE(result.exitCode, exitCode);
  }

  void sleepWaitsAndClockReads() {
    QElapsedTimer timer;
    timer.start();
    host_.sleepMs(60);
    QVERIFY(timer.elapsed() >= 55);
    zv::LocalTime now = host_.now();
    QVERIFY(now.valid);
    QCOMPARE(now.year, QDate::currentDate().year());
    zv::PixelsPerInch ppi = host_.screenPixelsPerInch();
    QVERIFY(ppi.x > 0 && ppi.y > 0);
  }
};

QTEST_MAIN(QtHostTest)
#include "qt_host_test.moc"
