#include "ui/qt_host.h"

#include <QApplication>
#include <QDateTime>
#include <QDesktopServices>
#include <QDialog>
#include <QDialogButtonBox>
#include <QEventLoop>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPointer>
#include <QProcess>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "core/text.h"
#include "ui/text_codec.h"

namespace zv::ui {

namespace {

// Long work polls for the interrupt keys often; the events are looked at no more often than this.
constexpr qint64 kInterruptPumpIntervalMs = 50;

QMessageBox::StandardButton qtButton(Button button) {
  switch (button) {
    case Button::Ok:
      return QMessageBox::Ok;
    case Button::Cancel:
      return QMessageBox::Cancel;
    case Button::Yes:
      return QMessageBox::Yes;
    case Button::No:
      return QMessageBox::No;
    case Button::Abort:
      return QMessageBox::Abort;
    case Button::Retry:
      return QMessageBox::Retry;
    case Button::Ignore:
      return QMessageBox::Ignore;
    case Button::None:
      break;
  }
  return QMessageBox::NoButton;
}

QMessageBox::Icon iconOf(Severity severity, bool question) {
  switch (severity) {
    case Severity::Error:
      return QMessageBox::Critical;
    case Severity::Warning:
      return QMessageBox::Warning;
    case Severity::Message:
      break;
  }
  return question ? QMessageBox::Question : QMessageBox::Information;
}

// Boxes give the focus back to the window that had it, as the user left it.
class ActiveWindowKeeper {
 public:
  ActiveWindowKeeper() : window_(QApplication::activeWindow()) {}
  ~ActiveWindowKeeper() {
    if (window_) window_->activateWindow();
  }
  QWidget* window() const { return window_; }

 private:
  QPointer<QWidget> window_;
};

QString startPath(const FileRequest& request) {
  QString directory = fromNativePath(request.directory);
  QString name = fromNativePath(request.fileName);
  if (directory.isEmpty()) return name;
  if (name.isEmpty()) return directory;
  return directory + '/' + name;
}

std::vector<std::string> nativePaths(const QStringList& names) {
  std::vector<std::string> paths;
  for (const QString& name : names) {
    if (!name.isEmpty()) paths.push_back(toNativePath(name));
  }
  return paths;
}

}  // namespace

QString qtFilterString(const FileFilter& filter) {
  QStringList patterns;
  for (const std::string& part : split(filter.patterns, ';')) {
    std::string pattern = trim(part);
    if (!pattern.empty()) patterns << fromSystemText(pattern);
  }
  return fromSystemText(filter.description) + " (" + patterns.join(' ') + ")";
}

QStringList qtFilterStrings(const std::vector<FileFilter>& filters) {
  QStringList result;
  for (const FileFilter& filter : filters)
    result << qtFilterString(filter);
  return result;
}

InterruptWatcher::InterruptWatcher(QObject* parent) : QObject(parent) {}

bool InterruptWatcher::takeRequest() {
  bool requested = requested_;
  requested_ = false;
  return requested;
}

bool InterruptWatcher::eventFilter(QObject* watched, QEvent* event) {
  if (armed_ && event->type() == QEvent::KeyPress) {
    const auto* key = static_cast<const QKeyEvent*>(event);
    bool control = key->modifiers().testFlag(Qt::ControlModifier);
    if (key->key() == Qt::Key_Escape || key->key() == Qt::Key_Cancel ||
        (control && key->key() == Qt::Key_Pause)) {
      requested_ = true;
    }
  }
  return QObject::eventFilter(watched, event);
}

QtHost::QtHost() {
  if (QCoreApplication::instance()) QCoreApplication::instance()->installEventFilter(&watcher_);
  sinceLastPump_.start();
}

QtHost::~QtHost() {
  if (QCoreApplication::instance()) QCoreApplication::instance()->removeEventFilter(&watcher_);
}

void QtHost::message(Severity severity, std::string_view title, std::string_view text) {
  ActiveWindowKeeper keeper;
  QMessageBox box(iconOf(severity, false), fromSystemText(title), fromSystemText(text),
                  QMessageBox::Ok, keeper.window());
  box.exec();
}

Button QtHost::ask(const Question& question) {
  ActiveWindowKeeper keeper;
  QMessageBox box(iconOf(question.severity, true), fromSystemText(question.title),
                  fromSystemText(question.text), QMessageBox::NoButton, keeper.window());
  const std::vector<Button> buttons = buttonsOf(question.buttons);
  for (Button b : buttons)
    box.addButton(qtButton(b));
  if (std::find(buttons.begin(), buttons.end(), question.defaultButton) != buttons.end()) {
    box.setDefaultButton(qtButton(question.defaultButton));
  }
  box.exec();
  QAbstractButton* clicked = box.clickedButton();
  for (Button b : buttons) {
    if (clicked && box.button(qtButton(b)) == clicked) return b;
  }
  // Closed without a choice: the box's way out, else its default.
  for (Button way : {Button::Cancel, Button::No, Button::Ignore}) {
    if (std::find(buttons.begin(), buttons.end(), way) != buttons.end()) return way;
  }
  return question.defaultButton;
}

std::optional<std::string> QtHost::enterValue(std::string_view title, std::string_view prompt,
                                              std::string_view initial) {
  ActiveWindowKeeper keeper;
  bool accepted = false;
  QString value =
      QInputDialog::getText(keeper.window(), fromSystemText(title), fromSystemText(prompt),
                            QLineEdit::Normal, fromSystemText(initial), &accepted);
  if (!accepted) return std::nullopt;
  return toSystemText(value);
}

std::optional<std::string> QtHost::enterFileValue(std::string_view title,
                                                  std::string_view initial) {
  ActiveWindowKeeper keeper;
  QDialog dialog(keeper.window());
  dialog.setWindowTitle(fromSystemText(title));
  auto* layout = new QVBoxLayout(&dialog);
  auto* row = new QHBoxLayout;
  auto* field = new QLineEdit(fromNativePath(std::string(initial)));
  field->setMinimumWidth(320);
  auto* browse = new QPushButton(QObject::tr("Browse..."));
  row->addWidget(field);
  row->addWidget(browse);
  layout->addLayout(row);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  layout->addWidget(buttons);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  QObject::connect(browse, &QPushButton::clicked, &dialog, [&dialog, field] {
    QString chosen = QFileDialog::getOpenFileName(&dialog, dialog.windowTitle(), field->text());
    if (!chosen.isEmpty()) field->setText(chosen);
  });
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  return toNativePath(field->text());
}

namespace {

/// The window of a choice: the prompt, the entries, OK and Cancel. With `bounds`, OK is enabled
/// only while the number of chosen entries lies within the request's minimum and maximum, and
/// choosing none is an answer when the minimum allows it.
class ChoiceDialog {
 public:
  ChoiceDialog(const ChoiceRequest& request, QWidget* parent, bool bounds) : dialog_(parent) {
    dialog_.setWindowTitle(fromSystemText(request.title));
    dialog_.setObjectName("choiceDialog");
    auto* layout = new QVBoxLayout(&dialog_);
    if (!request.prompt.empty()) layout->addWidget(new QLabel(fromSystemText(request.prompt)));
    list_ = new QListWidget;
    list_->setObjectName("choices");
    // Choosing some toggles entries one click at a time.
    list_->setSelectionMode(!request.multiple ? QAbstractItemView::SingleSelection
                            : bounds          ? QAbstractItemView::MultiSelection
                                              : QAbstractItemView::ExtendedSelection);
    for (const std::string& choice : request.choices)
      list_->addItem(fromSystemText(choice));
    for (int index : request.initial) {
      if (QListWidgetItem* item = list_->item(index)) {
        item->setSelected(true);
        list_->setCurrentItem(item, QItemSelectionModel::Select);
      }
    }
    layout->addWidget(list_);
    buttons_ = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    layout->addWidget(buttons_);
    QObject::connect(buttons_, &QDialogButtonBox::accepted, &dialog_, &QDialog::accept);
    QObject::connect(buttons_, &QDialogButtonBox::rejected, &dialog_, &QDialog::reject);
    if (!request.multiple) {
      QObject::connect(list_, &QListWidget::itemDoubleClicked, &dialog_, &QDialog::accept);
    }
    if (bounds) {
      auto update = [this, minimum = request.minimum, maximum = request.maximum] {
        int count = static_cast<int>(list_->selectedItems().size());
        buttons_->button(QDialogButtonBox::Ok)
            ->setEnabled(count >= minimum && (maximum <= 0 || count <= maximum));
      };
      QObject::connect(list_, &QListWidget::itemSelectionChanged, &dialog_, update);
      update();
    }
  }

  /// The rows chosen on OK; nullopt on Cancel.
  std::optional<std::vector<int>> run() {
    if (dialog_.exec() != QDialog::Accepted) return std::nullopt;
    std::vector<int> chosen;
    for (int row = 0; row < list_->count(); ++row) {
      if (list_->item(row)->isSelected()) chosen.push_back(row);
    }
    return chosen;
  }

 private:
  QDialog dialog_;
  QListWidget* list_ = nullptr;
  QDialogButtonBox* buttons_ = nullptr;
};

}  // namespace

std::vector<int> QtHost::choose(const ChoiceRequest& request) {
  ActiveWindowKeeper keeper;
  ChoiceDialog dialog(request, keeper.window(), false);
  return dialog.run().value_or(std::vector<int>{});
}

std::optional<std::vector<int>> QtHost::chooseSome(const ChoiceRequest& request) {
  ActiveWindowKeeper keeper;
  ChoiceRequest several = request;
  several.multiple = true;
  ChoiceDialog dialog(several, keeper.window(), true);
  return dialog.run();
}

std::vector<std::string> QtHost::chooseFiles(const FileRequest& request) {
  ActiveWindowKeeper keeper;
  QString title = fromSystemText(request.title);
  QStringList filters = qtFilterStrings(request.filters);
  QString selected;
  if (request.filterIndex >= 0 && request.filterIndex < filters.size()) {
    selected = filters[request.filterIndex];
  }
  QString filterText = filters.join(";;");
  switch (request.mode) {
    case FileRequest::Mode::Open:
      return nativePaths({QFileDialog::getOpenFileName(keeper.window(), title, startPath(request),
                                                       filterText, &selected)});
    case FileRequest::Mode::OpenMany:
      return nativePaths(QFileDialog::getOpenFileNames(keeper.window(), title, startPath(request),
                                                       filterText, &selected));
    case FileRequest::Mode::Save:
      return nativePaths({QFileDialog::getSaveFileName(keeper.window(), title, startPath(request),
                                                       filterText, &selected)});
    case FileRequest::Mode::Folder:
      return nativePaths({QFileDialog::getExistingDirectory(keeper.window(), title,
                                                            fromNativePath(request.directory))});
  }
  return {};
}

std::optional<SaveFileChoice> QtHost::chooseSaveFile(const FileRequest& request) {
  ActiveWindowKeeper keeper;
  QStringList filters = qtFilterStrings(request.filters);
  QString selected;
  if (request.filterIndex >= 0 && request.filterIndex < filters.size()) {
    selected = filters[request.filterIndex];
  }
  const QString name =
      QFileDialog::getSaveFileName(keeper.window(), fromSystemText(request.title),
                                   startPath(request), filters.join(";;"), &selected);
  if (name.isEmpty()) return std::nullopt;
  SaveFileChoice choice;
  choice.path = nativePaths({name}).front();
  const int index = static_cast<int>(filters.indexOf(selected));
  choice.filterIndex =
      index >= 0 ? index : filterIndexForName(request.filters, choice.path, request.filterIndex);
  return choice;
}

void QtHost::progressBegin(std::string_view title, std::string_view text, int steps) {
  progress_ = std::make_unique<QProgressDialog>(fromSystemText(text), QObject::tr("Cancel"), 0,
                                                std::max(steps, 0), QApplication::activeWindow());
  progress_->setWindowTitle(fromSystemText(title));
  progress_->setWindowModality(Qt::ApplicationModal);
  progress_->setMinimumDuration(500);
  progress_->setAutoReset(false);
  progress_->setAutoClose(false);
  progress_->setValue(0);
  watcher_.clear();
}

bool QtHost::progressStep(int done) {
  if (!progress_) return true;
  progress_->setValue(std::clamp(done, 0, progress_->maximum()));
  QCoreApplication::processEvents();
  return !progress_->wasCanceled();
}

void QtHost::progressEnd() {
  progress_.reset();
}

void QtHost::pump() {
  watcher_.setArmed(true);
  QCoreApplication::processEvents();
  watcher_.setArmed(false);
  sinceLastPump_.restart();
}

bool QtHost::interruptRequested() {
  if (sinceLastPump_.elapsed() >= kInterruptPumpIntervalMs) pump();
  return watcher_.takeRequest();
}

void QtHost::setBusy(bool busy) {
  if (busy) {
    // Long work starts: an interrupt key pressed before it doesn't stop it.
    watcher_.clear();
    QApplication::setOverrideCursor(Qt::WaitCursor);
  } else {
    QApplication::restoreOverrideCursor();
  }
}

LocalTime QtHost::now() {
  QDateTime current = QDateTime::currentDateTime();
  LocalTime time;
  time.year = current.date().year();
  time.month = current.date().month();
  time.day = current.date().day();
  time.hour = current.time().hour();
  time.minute = current.time().minute();
  time.second = current.time().second();
  time.valid = current.isValid();
  return time;
}

void QtHost::sleepMs(int milliseconds) {
  if (milliseconds <= 0) return;
  QEventLoop loop;
  QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
  loop.exec();
}

namespace {

/// Ends an event loop at the first key press or mouse button anywhere in the application.
class InputEndsWait : public QObject {
 public:
  explicit InputEndsWait(QEventLoop& loop) : loop_(loop) {}
  bool ended() const { return ended_; }
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::KeyPress || event->type() == QEvent::MouseButtonPress) {
      ended_ = true;
      loop_.quit();
    }
    return QObject::eventFilter(watched, event);
  }

 private:
  QEventLoop& loop_;
  bool ended_ = false;
};

}  // namespace

bool QtHost::waitForInput(int milliseconds) {
  if (milliseconds <= 0 || QCoreApplication::instance() == nullptr) return false;
  QEventLoop loop;
  InputEndsWait filter(loop);
  QCoreApplication::instance()->installEventFilter(&filter);
  QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
  loop.exec();
  QCoreApplication::instance()->removeEventFilter(&filter);
  return filter.ended();
}

PixelsPerInch QtHost::screenPixelsPerInch() {
  PixelsPerInch ppi;
  if (QScreen* screen = QGuiApplication::primaryScreen()) {
    ppi.x = static_cast<int>(std::lround(screen->logicalDotsPerInchX()));
    ppi.y = static_cast<int>(std::lround(screen->logicalDotsPerInchY()));
  }
  return ppi;
}

ProcessResult QtHost::runProcess(const std::string& commandLine, int timeoutMs) {
  ProcessResult result;
  // Owned by the application so that a process outliving its time-out is not killed; it deletes
  // itself once it ends.
  auto* process = new QProcess(QCoreApplication::instance());
  QObject::connect(process, &QProcess::finished, process, &QObject::deleteLater);
  QObject::connect(process, &QProcess::errorOccurred, process, [process](QProcess::ProcessError e) {
    if (e == QProcess::FailedToStart) process->deleteLater();
  });
  process->setProcessChannelMode(QProcess::ForwardedChannels);
  process->start("/bin/sh", {"-c", fromNativePath(commandLine)});
  if (!process->waitForStarted()) return result;
  result.started = true;
  if (!process->waitForFinished(timeoutMs < 0 ? -1 : timeoutMs)) return result;
  result.finished = true;
  result.exitCode = process->exitStatus() == QProcess::NormalExit ? process->exitCode() : -1;
  return result;
}

bool QtHost::openWithSystem(const std::string& path) {
  return QDesktopServices::openUrl(QUrl::fromLocalFile(fromNativePath(path)));
}

void QtHost::beep() {
  QApplication::beep();
}

// Sound needs Qt Multimedia, which this build doesn't use: nothing is played.
void QtHost::playSound(const std::string&) {}

}  // namespace zv::ui
