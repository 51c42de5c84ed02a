// How a file name that reaches the frame becomes a window: the dispatcher's decision acted on.

#include <QProcess>
#include <algorithm>
#include <filesystem>

#include "core/messages.h"
#include "formats/dispatch.h"
#include "ui/main_frame.h"
#include "ui/not_yet_supported.h"
#include "ui/text_codec.h"
#include "ui/text_window.h"

namespace zv::ui {

namespace {

// Marks the processes that the system starts for a file handed to it while the hand-over lasts.
class HandOverMark {
 public:
  HandOverMark() { qputenv(kHandOverVariable, "1"); }
  ~HandOverMark() { qunsetenv(kHandOverVariable); }
  HandOverMark(const HandOverMark&) = delete;
  HandOverMark& operator=(const HandOverMark&) = delete;
};

}  // namespace

QMdiSubWindow* MainFrame::openFile(const std::string& path, bool forceText) {
  OpenDecision decision;
  {
    BusyCursor busy;
    OpenRequest request;
    request.path = path;
    request.forceText = forceText;
    request.editor = appSettings_.effectiveEditor();
    decision = decideOpen(request);
  }
  switch (decision.action) {
    case OpenAction::Nothing:
      return nullptr;
    case OpenAction::ShowMessage:
      showTitled(Severity::Error, decision.title, decision.text);
      return nullptr;
    case OpenAction::OpenAsText:
      return openAsText(decision.path, !decision.editorCommand.empty());
    case OpenAction::HandToSystem:
      return handToSystem(decision.path);
    case OpenAction::OpenSheet:
      return openSheet(decision.path, decision.code);
    case OpenAction::OpenDataSheet:
      return openDataSheet(decision.path);
    case OpenAction::ConvertExternal:
    case OpenAction::OpenPrintTemplate:
    case OpenAction::OpenMacroDataSheet:
    case OpenAction::OpenGroup:
      break;
  }
  showTitled(Severity::Message, kNotYetSupportedTitle,
             notYetSupportedText(unsupportedDocumentKind(decision), decision.path));
  return nullptr;
}

QMdiSubWindow* MainFrame::openAsText(const std::string& path, bool useEditor) {
  if (!useEditor) return openInTextWindow(path);
  QStringList arguments = QProcess::splitCommand(fromSystemText(appSettings_.effectiveEditor()));
  QString program = arguments.isEmpty() ? QString() : arguments.takeFirst();
  arguments << fromNativePath(path);
  if (program.isEmpty() || !QProcess::startDetached(program, arguments)) {
    showError(strprintf("Unable to start editor on file %s", path));
    return nullptr;
  }
  addRecentFile(path);
  return nullptr;
}

QMdiSubWindow* MainFrame::openInTextWindow(const std::string& path) {
  std::optional<QString> contents = readTextFile(path);
  if (!contents) {
    showTitled(Severity::Error, "Can't Open File",
               strprintf("The file %s cannot be opened.", path));
    return nullptr;
  }
  auto* text = new TextWindow(path, *contents);
  QMdiSubWindow* window = mdiArea_->addSubWindow(text);
  window->setAttribute(Qt::WA_DeleteOnClose);
  QSize area = mdiArea_->viewport()->size();
  window->resize(std::max(320, area.width() * 3 / 5), std::max(240, area.height() * 3 / 5));
  window->show();
  mdiArea_->setActiveSubWindow(window);
  addRecentFile(path);
  return window;
}

QMdiSubWindow* MainFrame::handToSystem(const std::string& path) {
  if (handOverDepth_ > 0) {
    // The system gave the file back: this program is the one associated with the type.
    handOverDepth_ = 0;
    showError(
        "This application has been made the program to open this kind of file, but the format "
        "is unknown.");
    return nullptr;
  }
  bool handedOver = false;
  {
    ++handOverDepth_;
    HandOverMark mark;
    handedOver = host().openWithSystem(path);
    handOverDepth_ = std::max(0, handOverDepth_ - 1);
  }
  if (handedOver) return nullptr;
  return openInTextWindow(path);
}

void MainFrame::openCommandLine(const CommandLine& commandLine, bool startedByHandOver) {
  if (commandLine.path.empty()) return;
  namespace fs = std::filesystem;
  std::error_code error;
  QMdiSubWindow* window = nullptr;
  if (!fs::exists(commandLine.path, error)) {
    showError(strprintf("Character sheet %s does not exist", commandLine.path));
  } else {
    fs::path file = fs::absolute(commandLine.path, error);
    fs::current_path(file.parent_path(), error);
    if (startedByHandOver) handOverDepth_ = 1;
    window = openFile(file.string());
    handOverDepth_ = 0;
    if (!window && commandLine.printAndExit) {
      showError(strprintf("Cannot print file %s", commandLine.path));
    }
  }
  if (commandLine.printAndExit) {
    // Printing comes with the documents that print; the frame closes itself in every case.
    QMetaObject::invokeMethod(this, &QWidget::close, Qt::QueuedConnection);
  }
}

}  // namespace zv::ui
