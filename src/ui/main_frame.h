#pragma once

#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <string>
#include <vector>

#include "core/app_settings.h"
#include "core/command_line.h"
#include "core/recent_files.h"
#include "core/settings.h"

namespace zv::ui {

/// Command numbers of the frame's own menu entries, kept as the actions' data.
inline constexpr int kFileOpenCommand = 1042;
inline constexpr int kFileExitCommand = 1045;
inline constexpr int kHelpAboutCommand = 1291;

/// The environment variable that marks a process started by this program's own hand-over of a
/// file to the system: such a process was chosen by the system for a type it can't read.
inline constexpr const char* kHandOverVariable = "ZARVELIN_HAND_OVER";

/// The multiple-document frame of the desktop program: the File and Help menus, the recent file
/// list, the status bar, and every way a file name reaches the program (Open dialog, recent files,
/// drops, the command line).
class MainFrame : public QMainWindow {
  Q_OBJECT
 public:
  /// The frame works on the program's settings store and on the settings read at start; both
  /// outlive it.
  MainFrame(Settings& settings, AppSettings& appSettings, QWidget* parent = nullptr);

  /// Places the frame from "screenPos" kept on the available screen area and shows it, maximized
  /// when "maximized" says so.
  void showFromSettings();
  /// Replaces the recent file list by the one in the settings store.
  void readRecentFiles();

  /// Opens a file as the dispatcher decides and returns its window; nullptr when no window of
  /// this program opened (a message, an Editor program, the system's handler).
  QMdiSubWindow* openFile(const std::string& path, bool forceText = false);
  /// Opens the file of the command line: a missing file is reported; with "/p" the frame closes
  /// itself afterwards. `startedByHandOver` tells that the system started this process for a file
  /// this program handed to it.
  void openCommandLine(const CommandLine& commandLine, bool startedByHandOver = false);

  const RecentFiles& recentFiles() const { return recentFiles_; }
  QMdiArea* mdiArea() const { return mdiArea_; }
  QMenu* fileMenu() const { return fileMenu_; }
  QMenu* helpMenu() const { return helpMenu_; }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void buildMenus();
  void rebuildRecentFilesMenu();
  void chooseAndOpenFiles();
  void openRecentFile(int command);
  void showAbout();
  void addRecentFile(const std::string& path);
  /// Writes back the frame's settings and the recent file list, as the frame goes.
  void writeSettingsAtExit();

  QMdiSubWindow* openAsText(const std::string& path, bool useEditor);
  QMdiSubWindow* openInTextWindow(const std::string& path);
  QMdiSubWindow* handToSystem(const std::string& path);

  Settings& settings_;
  AppSettings& appSettings_;
  RecentFiles recentFiles_;
  QMdiArea* mdiArea_ = nullptr;
  QMenu* fileMenu_ = nullptr;
  QMenu* helpMenu_ = nullptr;
  QAction* recentFilesEnd_ = nullptr;  ///< the separator after the recent files
  std::vector<QAction*> recentFileActions_;
  /// Hand-overs to the system under way; above 0 when a file came back from the system.
  int handOverDepth_ = 0;
  bool settingsWritten_ = false;
};

}  // namespace zv::ui
