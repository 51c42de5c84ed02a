#include "ui/main_frame.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFontMetrics>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QStatusBar>
#include <QTimer>
#include <QUrl>
#include <algorithm>
#include <filesystem>
#include <utility>

#include "core/deletion_list.h"
#include "core/paths.h"
#include "ui/dialog_window.h"
#include "ui/frame_geometry.h"
#include "ui/list_commands.h"
#include "ui/list_panel.h"
#include "ui/open_dialog_filters.h"
#include "ui/requirements_window.h"
#include "ui/text_codec.h"

namespace zv::ui {

namespace {

// The longest recent-file entry the menu shows, in characters: a third of the screen's width.
size_t recentFileMenuChars(const QMenu& menu) {
  int average = std::max(1, QFontMetrics(menu.font()).averageCharWidth());
  return static_cast<size_t>(std::max(20, availableScreenArea().width() / 3 / average));
}

std::vector<std::string> localFilesOf(const QMimeData* data) {
  std::vector<std::string> paths;
  if (!data || !data->hasUrls()) return paths;
  for (const QUrl& url : data->urls()) {
    if (url.isLocalFile()) paths.push_back(toNativePath(url.toLocalFile()));
  }
  return paths;
}

}  // namespace

MainFrame::MainFrame(Settings& settings, AppSettings& appSettings, QWidget* parent)
    : QMainWindow(parent), settings_(settings), appSettings_(appSettings) {
  setWindowTitle("Zarvelin");
  setObjectName("zarvel");
  mdiArea_ = new QMdiArea(this);
  mdiArea_->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  mdiArea_->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  setCentralWidget(mdiArea_);
  buildMenus();
  statusBar()->setVisible(appSettings_.showStatusBar);
  setAcceptDrops(true);
  joinEngineContext();
}

MainFrame::~MainFrame() {
  engine().views = std::move(previousViews_);
  engine().dialogs.runRequirementsDialog = std::move(previousRunner_);
  disconnect(mdiArea_, nullptr, this, nullptr);
}

void MainFrame::joinEngineContext() {
  // The engine tells which sheet or list changed; the frame finds the windows that show it.
  SheetViews hooks;
  hooks.sheetChanged = [this](FileInfo& sheet) {
    for (SheetView* view : sheets())
      if (&view->sheet() == &sheet) view->refreshAfterEdit();
  };
  hooks.listChanged = [this](ListInfo& list) {
    for (SheetView* view : sheets())
      if (&view->sheet() == list.owner) view->refreshAfterEdit();
  };
  hooks.showList = [this](ListInfo& list) {
    for (SheetView* view : sheets())
      if (&view->sheet() == list.owner) view->showList(list);
  };
  hooks.selectRows = [this](ListInfo& list, int first, int last) {
    for (SheetView* view : sheets()) {
      if (&view->sheet() != list.owner) continue;
      if (ListPanel* panel = view->panelOf(list)) {
        panel->refresh();
        panel->selectRows(first, last);
      }
    }
  };
  previousViews_ = std::exchange(engine().views, std::move(hooks));
  previousRunner_ = std::exchange(engine().dialogs.runRequirementsDialog, runRequirementsWindow);
}

void MainFrame::buildMenus() {
  fileMenu_ = menuBar()->addMenu(tr("&File"));
  fileMenu_->setObjectName("fileMenu");
  addMenuEntries(fileMenu_, fileMenuHead());
  fileMenu_->addSeparator();
  recentFilesEnd_ = fileMenu_->addSeparator();
  addMenuEntries(fileMenu_, fileMenuTail());
  // The working directory may have changed since the entries were written.
  connect(fileMenu_, &QMenu::aboutToShow, this, &MainFrame::rebuildRecentFilesMenu);

  editMenu_ = menuBar()->addMenu(tr("&Edit"));
  editMenu_->setObjectName("editMenu");
  addMenuEntries(editMenu_, editMenu());
  connect(editMenu_, &QMenu::aboutToShow, this, &MainFrame::updateCommandStates);
  toolsMenu_ = menuBar()->addMenu(tr("&Tools"));
  toolsMenu_->setObjectName("toolsMenu");
  addMenuEntries(toolsMenu_, toolsMenu());
  connect(toolsMenu_, &QMenu::aboutToShow, this, &MainFrame::updateCommandStates);

  dataMenu_ = menuBar()->addMenu(tr("&Data"));
  dataMenu_->setObjectName("dataMenu");
  utilitiesMenu_ = menuBar()->addMenu(tr("&Utilities"));
  utilitiesMenu_->setObjectName("utilitiesMenu");
  addMenuEntries(utilitiesMenu_, utilitiesMenu());
  windowMenu_ = menuBar()->addMenu(tr("&Window"));
  windowMenu_->setObjectName("windowMenu");
  addMenuEntries(windowMenu_, windowMenu());

  helpMenu_ = menuBar()->addMenu(tr("&Help"));
  helpMenu_->setObjectName("helpMenu");
  QAction* about = helpMenu_->addAction(tr("&About Zarvelin..."), this, &MainFrame::showAbout);
  about->setData(kHelpAbout);
  rebuildRecentFilesMenu();
  connect(mdiArea_, &QMdiArea::subWindowActivated, this, &MainFrame::updateMenus);
  updateMenus();
}

void MainFrame::addMenuEntries(QMenu* menu, std::span<const MenuEntry> entries) {
  for (const MenuEntry& entry : entries) {
    if (entry.command == 0) {
      menu->addSeparator();
      continue;
    }
    QAction* action = menu->addAction(fromSystemText(entry.text));
    action->setData(entry.command);
    if (!entry.shortcut.empty())
      action->setShortcut(QKeySequence(
          QString::fromLatin1(entry.shortcut.data(), static_cast<int>(entry.shortcut.size()))));
    action->setProperty("needs", static_cast<int>(entry.needs));
    int command = entry.command;
    connect(action, &QAction::triggered, this, [this, command] { runCommand(command); });
    commandActions_.push_back(action);
  }
}

QAction* MainFrame::commandAction(int command) const {
  for (QAction* action : commandActions_) {
    if (action->data().toInt() == command) return action;
  }
  return nullptr;
}

void MainFrame::rebuildRecentFilesMenu() {
  for (QAction* action : recentFileActions_) {
    fileMenu_->removeAction(action);
    action->deleteLater();
  }
  recentFileActions_.clear();
  if (recentFiles_.empty()) {
    auto* placeholder = new QAction(fromSystemText(kEmptyRecentFilesText), fileMenu_);
    placeholder->setEnabled(false);
    recentFileActions_.push_back(placeholder);
  } else {
    size_t maxChars = recentFileMenuChars(*fileMenu_);
    std::filesystem::path workingDir = toNativePath(QDir::currentPath());
    for (size_t i = 0; i < recentFiles_.size(); ++i) {
      int command = RecentFiles::commandFor(i);
      std::string text = RecentFiles::menuText(static_cast<int>(i) + 1, recentFiles_.entries()[i],
                                               workingDir, maxChars);
      auto* action = new QAction(fromNativePath(text), fileMenu_);
      action->setData(command);
      action->setStatusTip(fromNativePath(recentFiles_.entries()[i]));
      connect(action, &QAction::triggered, this, [this, command] { openRecentFile(command); });
      recentFileActions_.push_back(action);
    }
  }
  for (QAction* action : recentFileActions_)
    fileMenu_->insertAction(recentFilesEnd_, action);
}

void MainFrame::readRecentFiles() {
  recentFiles_.load(settings_);
  rebuildRecentFilesMenu();
}

void MainFrame::addRecentFile(const std::string& path) {
  recentFiles_.add(path);
  rebuildRecentFilesMenu();
}

void MainFrame::openRecentFile(int command) {
  int index = RecentFiles::indexForCommand(command);
  if (index < 0 || static_cast<size_t>(index) >= recentFiles_.size()) return;
  // A copy: opening reorders the list.
  std::string path = recentFiles_.entries()[static_cast<size_t>(index)];
  openFile(path);
}

void MainFrame::chooseAndOpenFiles() {
  FileRequest request;
  request.mode = FileRequest::Mode::OpenMany;
  request.title = "Open";
  request.directory = toNativePath(QDir::currentPath());
  request.filters = openDialogFilters();
  std::vector<std::string> paths = host().chooseFiles(request);
  if (paths.empty()) return;
  // As the system's Open dialog does, the folder of the choice becomes the working directory.
  std::error_code ignored;
  std::filesystem::current_path(std::filesystem::path(paths.front()).parent_path(), ignored);
  for (const std::string& path : paths)
    openFile(path);
}

void MainFrame::showAbout() {
  QMessageBox::about(this, tr("About Zarvelin"),
                     tr("<h3>Zarvelin</h3><p>Character sheets for tabletop role-playing "
                        "games.</p><p>Built with Qt %1.</p>")
                         .arg(QString::fromLatin1(qVersion())));
}

void MainFrame::showFromSettings() {
  placeWindow(*this, appSettings_.screenPos, availableScreenArea());
  if (appSettings_.maximized) {
    showMaximized();
  } else {
    show();
  }
}

void MainFrame::closeEvent(QCloseEvent* event) {
  // Every document is asked to close; one that stays keeps the frame.
  if (!closeAllSheets()) {
    event->ignore();
    return;
  }
  for (QMdiSubWindow* window : mdiArea_->subWindowList()) {
    if (!window->close()) {
      event->ignore();
      return;
    }
  }
  writeSettingsAtExit();
  event->accept();
}

void MainFrame::writeSettingsAtExit() {
  if (settingsWritten_) return;
  settingsWritten_ = true;
  setAcceptDrops(false);
  bool maximized = isMaximized();
  if (!maximized) appSettings_.screenPos = windowRectOf(*this);
  appSettings_.maximized = maximized;
  appSettings_.curDir = toNativePath(QDir::currentPath());
  appSettings_.saveAtExit(settings_, maximized);
  recentFiles_.save(settings_);
  std::error_code ignored;
  std::filesystem::path tempDir = appSettings_.sourceDirectory / kTemporaryDirName;
  if (std::filesystem::is_directory(tempDir, ignored)) processDeletionList(tempDir);
}

void MainFrame::dragEnterEvent(QDragEnterEvent* event) {
  if (!localFilesOf(event->mimeData()).empty()) event->acceptProposedAction();
}

void MainFrame::dropEvent(QDropEvent* event) {
  std::vector<std::string> paths = localFilesOf(event->mimeData());
  if (paths.empty()) return;
  event->acceptProposedAction();
  // Opened after the drop has ended, so that boxes don't appear in the middle of the drag.
  QTimer::singleShot(0, this, [this, paths] {
    for (const std::string& path : paths)
      openFile(path);
  });
}

}  // namespace zv::ui
