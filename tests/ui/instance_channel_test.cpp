// One program per settings file: a second start of the desktop program, given a file while one
// runs, hands the file to the running program and ends. Both are real processes of the program
// on the offscreen platform, with settings of their own in a scratch folder.

#include <QLocalSocket>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "core/conversation.h"
#include "ui/instance_channel.h"

namespace {

namespace fs = std::filesystem;

std::string readAll(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

class InstanceChannelTest : public QObject {
  Q_OBJECT

 private:
  QTemporaryDir dir_;
  fs::path program_;
  fs::path settings_;
  fs::path sheet_;

  /// A process of the program in the scratch folder (its settings are the folder's tavlo.ini).
  void start(QProcess& process, const QStringList& arguments) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    environment.insert("ASAN_OPTIONS", "detect_leaks=0");
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QString::fromStdString(program_.string()), arguments);
    QVERIFY(process.waitForStarted(10000));
  }

  /// Waits until a program listens on the channel.
  bool listening(const QString& channel) {
    for (int attempt = 0; attempt < 300; ++attempt) {
      QLocalSocket probe;
      probe.connectToServer(channel);
      if (probe.waitForConnected(100)) return true;
      QTest::qWait(100);
    }
    return false;
  }

 private slots:
  void initTestCase() {
    QVERIFY(dir_.isValid());
    const fs::path folder = dir_.path().toStdString();
    // The program finds its settings beside itself: a link of its own in the scratch folder.
    program_ = folder / "zarvelin";
    std::error_code linked;
    fs::create_hard_link(ZV_DESKTOP_PATH, program_, linked);
    if (linked) fs::copy_file(ZV_DESKTOP_PATH, program_);
    settings_ = folder / "tavlo.ini";
    std::ofstream(settings_) << "[zarvel]\nSource Directory=" << ZV_SAMPLE_DATA_DIR << "\n";
    sheet_ = folder / "Maren Vell.chr";
    fs::copy_file(fs::path(ZV_SAMPLE_DATA_DIR) / "characters" / "Maren Vell.chr", sheet_);
  }

  void aSecondStartHandsItsFileToTheRunningProgram() {
    const QString channel = zv::ui::instanceChannelName(settings_);
    QProcess first;
    start(first, {});
    QVERIFY2(listening(channel), "the first program listens on its channel");

    QProcess second;
    start(second, {QString::fromStdString(sheet_.string())});
    QVERIFY2(second.waitForFinished(60000), "the second start ends by itself");
    QCOMPARE(second.exitStatus(), QProcess::NormalExit);
    QCOMPARE(second.exitCode(), 0);
    QCOMPARE(first.state(), QProcess::Running);

    // The first program closes when asked, and its recent files name the sheet it opened.
    const std::optional<std::string> exit = zv::formatConversation({{"FileExit", {}}});
    QVERIFY(exit);
    QVERIFY(zv::ui::sendToRunningInstance(channel, *exit));
    QVERIFY2(first.waitForFinished(60000), "the first program ends on FileExit");
    const std::string settings = readAll(settings_);
    QVERIFY2(settings.find("File0=" + sheet_.string()) != std::string::npos, settings.c_str());
  }

  void noProgramListensOnAnotherSettingsFile() {
    const QString elsewhere = zv::ui::instanceChannelName(settings_.parent_path() / "other.ini");
    QVERIFY(elsewhere != zv::ui::instanceChannelName(settings_));
    QVERIFY(!zv::ui::sendToRunningInstance(elsewhere, "[FileExit()]", 500));
  }
};

}  // namespace

QTEST_MAIN(InstanceChannelTest)
#include "instance_channel_test.moc"
