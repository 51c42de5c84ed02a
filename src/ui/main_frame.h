#pragma once

#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPointer>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "core/app_settings.h"
#include "core/command_line.h"
#include "core/conversation.h"
#include "core/engine_context.h"
#include "core/recent_files.h"
#include "core/settings.h"
#include "filter/run/filter_context.h"
#include "formats/sheet_document.h"
#include "rules/requirements/prereq_dialog.h"
#include "script/state/environment.h"
#include "ui/command_table.h"
#include "ui/script_views.h"
#include "ui/sheet_view.h"

namespace zv::ui {

class DataSheetWindow;

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
  /// Stops following the active window before the windows go.
  ~MainFrame() override;

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
  /// Runs the commands another process sent (a second start handing over its files): FileOpen
  /// opens a file as the command line does, FilePrint prints the active document,
  /// EditFilterCopy copies it through a filter, FileExit closes the program, FileClose the
  /// active document. The frame comes forward first.
  void runConversation(const ConversationRequest& request);

  /// A new sheet (fileType 1) or template (2) from a template of the data directory, in its
  /// windows; null after a message.
  QMdiSubWindow* newFromTemplate(const std::string& templateName, int fileType);
  /// Save (or Save As) of the active sheet; false when cancelled or failed. Save As offers the
  /// filters of the sheet's game system as types of filtered text.
  bool saveActive(bool askName);
  /// Edit > Copy Through Filter on the active sheet: the filter's output goes on the clipboard
  /// as the filter's @clipformat asks (plain text, HTML, RTF). `filterName` given (a name in the
  /// data directory, as another program's EditFilterCopy names it) skips the choice of filter.
  bool copyThroughFilter(const std::string& filterName = {});
  /// Save All over every open sheet; false when a save was cancelled or failed.
  bool saveAll();
  /// Opens a character sheet (fileType 1) or template (2) in its windows; null after a message.
  QMdiSubWindow* openSheet(const std::string& path, int fileType);
  /// Opens a data sheet as a document in a window of its own; null after a message.
  QMdiSubWindow* openDataSheet(const std::string& path);
  /// The data sheet of the active window; null when the active window isn't a data sheet's.
  DataSheetWindow* activeDataSheet() const;
  /// Every open data sheet window, in the frame's order of windows.
  std::vector<DataSheetWindow*> dataSheetWindows() const;
  /// The Load Data Sheet dialog (command 1050), modal.
  void showLoadDataSheetDialog();
  /// Merge Data Sheet into the active data sheet: the file is asked for, then merged. False when
  /// nothing was merged.
  bool mergeIntoActiveDataSheet();
  /// The sheet of the active window; null when the active window isn't a sheet's.
  SheetView* activeSheet() const;
  /// Every open sheet, in the order they were opened.
  std::vector<SheetView*> sheets() const;
  /// Runs a frame command on the active window (the File, Utilities and Window entries).
  void runCommand(int command);
  /// The action of a command in the frame's menus; null when it has none.
  QAction* commandAction(int command) const;
  QMenu* dataMenu() const { return dataMenu_; }
  /// The list panel that list commands act on: the active list window, or the list field with
  /// the focus in the active dialog (the only one when the dialog has one); null otherwise.
  ListPanel* activeListPanel() const;
  /// Enables the Edit and Tools entries for the active window and its selected rows, and names
  /// the step that Undo takes back.
  void updateCommandStates();

  const RecentFiles& recentFiles() const { return recentFiles_; }
  QMdiArea* mdiArea() const { return mdiArea_; }
  QMenu* fileMenu() const { return fileMenu_; }
  QMenu* helpMenu() const { return helpMenu_; }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  /// Lets the engine's change reports reach the windows of the sheet concerned.
  /// Puts the frame's windows and its requirements window into the installed engine context;
  /// the destructor puts back what was there.
  void joinEngineContext();
  SheetViews previousViews_;
  decltype(EngineDialogs::runRequirementsDialog) previousRunner_;
  void checkRequirements(SheetView& view);
  /// Data > Run Script...: the game system's scripts by title; the one chosen runs on the sheet.
  void runScript(SheetView& view);

  void buildMenus();
  void addMenuEntries(QMenu* menu, std::span<const MenuEntry> entries);
  /// Menus follow the active window: the Data menu of its sheet, entries that need a sheet.
  void updateMenus();
  void rebuildDataMenu();
  bool closeAllSheets();
  void newFile();
  QMdiSubWindow* showSheet(std::unique_ptr<FileInfo> sheet);
  DocumentContext documentContext();
  /// The choices of a filter run over a sheet, from the preferences of its game system.
  FilterRunOptions filterRunOptions(const FileInfo& sheet);
  FieldPreferences fieldPreferences() const;
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
  QMenu* dataMenu_ = nullptr;
  QMenu* editMenu_ = nullptr;
  QMenu* toolsMenu_ = nullptr;
  QMenu* utilitiesMenu_ = nullptr;
  QMenu* windowMenu_ = nullptr;
  std::vector<QAction*> commandActions_;
  std::vector<QPointer<SheetView>> sheets_;
  QAction* recentFilesEnd_ = nullptr;  ///< the separator after the recent files
  std::vector<QAction*> recentFileActions_;
  /// Hand-overs to the system under way; above 0 when a file came back from the system.
  int handOverDepth_ = 0;
  bool settingsWritten_ = false;
  /// What the script runs of this program share: above all, that one runs at a time.
  script::ScriptEnvironment scripts_;
  std::unique_ptr<ScriptViewsOfFrame> scriptViews_;
  /// What filter runs take from the program, kept for its whole life ("Output Suppressed" shows
  /// once per program run).
  FilterContext filterContext_;
};

}  // namespace zv::ui
