// The commands that another process sends the running program (a second start handing over its
// files): each acts as the command of the same name does in the program.

#include <QMdiSubWindow>
#include <filesystem>

#include "core/text.h"
#include "ui/command_table.h"
#include "ui/main_frame.h"

namespace zv::ui {

void MainFrame::runConversation(const ConversationRequest& request) {
  // The program comes forward, as a file opened from the desktop is expected to.
  if (isMinimized()) showNormal();
  raise();
  activateWindow();
  for (const ConversationCommand& command : request.commands) {
    const std::string& name = command.name;
    if (equalsIgnoringCase(name, "FileOpen")) {
      CommandLine open;
      open.path = command.arguments.front();
      openCommandLine(open);
    } else if (equalsIgnoringCase(name, "FilePrint")) {
      runCommand(kFilePrint);
    } else if (equalsIgnoringCase(name, "EditFilterCopy")) {
      copyThroughFilter(command.arguments.front());
    } else if (equalsIgnoringCase(name, "FileExit")) {
      QMetaObject::invokeMethod(this, &QWidget::close, Qt::QueuedConnection);
    } else if (equalsIgnoringCase(name, "FileClose")) {
      runCommand(kFileClose);
    }
  }
}

}  // namespace zv::ui
