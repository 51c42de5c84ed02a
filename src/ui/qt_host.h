#pragma once
// The host port of the desktop program: boxes, questions, dialogs, progress and processes in Qt.

#include <QElapsedTimer>
#include <QObject>
#include <QProgressDialog>
#include <QString>
#include <QStringList>

#include <memory>

#include "core/host.h"

namespace zv::ui {

/// The Qt filter string of a file filter: {"Character Sheet", "*.chr;*.cst"} gives
/// "Character Sheet (*.chr *.cst)".
QString qtFilterString(const FileFilter& filter);
QStringList qtFilterStrings(const std::vector<FileFilter>& filters);

/// Watches the application's key presses for the interrupt keys (Esc, Ctrl+Break).
class InterruptWatcher : public QObject {
  Q_OBJECT
 public:
  explicit InterruptWatcher(QObject* parent = nullptr);
  /// True when an interrupt key was pressed since the last call (or the last clear()).
  bool takeRequest();
  void clear() { requested_ = false; }
  /// Keys count only while armed: while the host pumps events in the middle of long work, not
  /// when the ordinary event loop delivers them (an Esc that closes a dialog stops nothing).
  void setArmed(bool armed) { armed_ = armed; }
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool requested_ = false;
  bool armed_ = false;
};

class QtHost : public Host {
 public:
  /// Needs a QApplication; installs its key watcher on it.
  QtHost();
  ~QtHost() override;
  QtHost(const QtHost&) = delete;
  QtHost& operator=(const QtHost&) = delete;

  void message(Severity severity, std::string_view title, std::string_view text) override;
  Button ask(const Question& question) override;
  std::optional<std::string> enterValue(std::string_view title, std::string_view prompt,
                                        std::string_view initial) override;
  std::optional<std::string> enterFileValue(std::string_view title,
                                            std::string_view initial) override;
  std::vector<int> choose(const ChoiceRequest& request) override;
  /// A list where any number of entries within the request's bounds may be chosen; OK with none
  /// chosen gives an empty answer, Cancel nullopt.
  std::optional<std::vector<int>> chooseSome(const ChoiceRequest& request) override;
  std::vector<std::string> chooseFiles(const FileRequest& request) override;
  /// The Save dialog; the type is the filter the dialog had selected when the user chose.
  std::optional<SaveFileChoice> chooseSaveFile(const FileRequest& request) override;
  void progressBegin(std::string_view title, std::string_view text, int steps) override;
  bool progressStep(int done) override;
  void progressEnd() override;
  void pump() override;
  bool interruptRequested() override;
  void setBusy(bool busy) override;
  LocalTime now() override;
  void sleepMs(int milliseconds) override;
  bool waitForInput(int milliseconds) override;
  PixelsPerInch screenPixelsPerInch() override;
  ProcessResult runProcess(const std::string& commandLine, int timeoutMs) override;
  bool openWithSystem(const std::string& path) override;
  void playSound(const std::string& path) override;
  void beep() override;

 private:
  InterruptWatcher watcher_;
  std::unique_ptr<QProgressDialog> progress_;
  QElapsedTimer sinceLastPump_;
};

}  // namespace zv::ui
