// The frame's side of sheets: opening one into its windows, New from a template, Save, Save As,
// Save All, Close, Recalculate, the Data menu of the active sheet, and menus that follow the
// active window.

#include <QApplication>
#include <QMenuBar>
#include <algorithm>

#include "core/messages.h"
#include "core/paths.h"
#include "core/undo.h"
#include "filter/rich/clipboard.h"
#include "filter/run/filter_file_run.h"
#include "filter/run/save_filtered.h"
#include "formats/data_sheet_document.h"
#include "formats/sheet_document.h"
#include "rules/requirements/requirements.h"
#include "ui/data_sheet_window.h"
#include "ui/dialog_window.h"
#include "ui/filter_clipboard.h"
#include "ui/list_commands.h"
#include "ui/list_panel.h"
#include "ui/main_frame.h"
#include "ui/new_file_dialog.h"
#include "ui/sheet_subwindow.h"
#include "ui/text_codec.h"
#include "utilities/game_system_preferences.h"

namespace zv::ui {

DocumentContext MainFrame::documentContext() {
  DocumentContext context;
  context.dataDir = appSettings_.sourceDirectory;
  context.binary = appSettings_.binary;
  context.makeBackups = appSettings_.makeBackups;
  context.noteRecentFile = [this](const std::string& path) { addRecentFile(path); };
  context.rememberGameSystem = [this](std::string_view gameSystem) {
    appSettings_.gameSystem = std::string(gameSystem);
  };
  return context;
}

FieldPreferences MainFrame::fieldPreferences() const {
  FieldPreferences preferences;
  preferences.checkWhenAdding = appSettings_.checkReq;
  preferences.disallowIfNotSatisfied = appSettings_.disallowIfNotSatisfied;
  preferences.noBadValueDialog = appSettings_.noBadValueDlg;
  return preferences;
}

QMdiSubWindow* MainFrame::openSheet(const std::string& path, int fileType) {
  std::unique_ptr<FileInfo> sheet =
      openSheetDocument(path, shortFileName(path), false, fileType, documentContext());
  if (!sheet) return nullptr;
  return showSheet(std::move(sheet));
}

QMdiSubWindow* MainFrame::newFromTemplate(const std::string& templateName, int fileType) {
  std::unique_ptr<FileInfo> sheet = newSheetFromTemplate(templateName, fileType, documentContext());
  if (!sheet) return nullptr;
  return showSheet(std::move(sheet));
}

QMdiSubWindow* MainFrame::showSheet(std::unique_ptr<FileInfo> sheet) {
  auto* view = new SheetView(std::move(sheet), *mdiArea_, fieldPreferences(), this);
  view->dialogColour = appSettings_.dlgBGColor;
  view->appSettings = &appSettings_;
  view->settings = &settings_;
  view->setCloseQuery(
      [this](SheetView& closing) { return closeQuery(closing.sheet(), documentContext()); });
  connect(view, &SheetView::sheetClosed, this, [this](SheetView* closed) {
    const FileInfo& record = closed->sheet();
    if (!record.isNew() && !record.path.str().empty()) addRecentFile(record.path.str());
    std::erase_if(sheets_, [closed](const QPointer<SheetView>& entry) {
      return entry.isNull() || entry.data() == closed;
    });
    QMetaObject::invokeMethod(this, &MainFrame::updateMenus, Qt::QueuedConnection);
  });
  sheets_.emplace_back(view);
  view->show();
  updateMenus();
  return view->mainWindow();
}

void MainFrame::newFile() {
  NewFileDialog dialog(findTemplates(appSettings_.sourceDirectory), appSettings_.defTemplate,
                       appSettings_.newFileGameSystem, this);
  if (dialog.exec() != QDialog::Accepted) return;
  std::optional<NewFileChoice> choice = dialog.choice();
  if (!choice) return;
  appSettings_.newFileGameSystem = choice->gameSystem;
  settings_.setString(kMainSection, "NewFileGameSystem", choice->gameSystem);
  if (newFromTemplate(choice->templateName, choice->fileType) != nullptr) {
    appSettings_.defTemplate = choice->templateName;
    settings_.setString(kMainSection, "defTemplate", choice->templateName);
  }
}

SheetView* MainFrame::activeSheet() const {
  return sheetViewOf(mdiArea_->currentSubWindow());
}

std::vector<SheetView*> MainFrame::sheets() const {
  std::vector<SheetView*> open;
  for (const QPointer<SheetView>& view : sheets_) {
    if (!view.isNull() && !view->closing()) open.push_back(view.data());
  }
  return open;
}

FilterRunOptions MainFrame::filterRunOptions(const FileInfo& sheet) {
  FilterRunOptions options;
  PreferenceStore preferences(settings_);
  applyFilterPreferences(options, preferences.read(sheet.gameSystemName.str(), "UseAliases"),
                         preferences.read(sheet.gameSystemName.str(), "PrintInheritedOptions"));
  return options;
}

bool MainFrame::saveActive(bool askName) {
  SheetView* view = activeSheet();
  if (view == nullptr) {
    DataSheetWindow* dataSheet = activeDataSheet();
    if (dataSheet == nullptr) return false;
    bool saved = saveDataSheetDocument(dataSheet->document(), askName, documentContext());
    dataSheet->refresh();
    return saved;
  }
  view->commitPendingEdit();
  FileInfo& sheet = view->sheet();
  bool saved = false;
  if (askName || sheet.isNew()) {
    filterContext_.dataDir = appSettings_.sourceDirectory;
    saved = saveSheetAs(sheet, documentContext(), filterRunOptions(sheet), filterContext_);
  } else {
    saved = saveSheet(sheet, false, documentContext());
  }
  view->refreshTitles();
  return saved;
}

bool MainFrame::copyThroughFilter(const std::string& filterName) {
  SheetView* view = activeSheet();
  if (view == nullptr) return false;
  view->commitPendingEdit();
  FileInfo& sheet = view->sheet();
  filterContext_.dataDir = appSettings_.sourceDirectory;
  filterContext_.askForFilters = appSettings_.askForFilters;
  // The filter is chosen first; the run then goes on under the busy cursor.
  std::optional<std::filesystem::path> filter = chooseFilter(sheet, filterContext_, filterName);
  if (!filter) return false;
  FilterDocument document;
  std::optional<std::string> block;
  {
    BusyCursor busy;
    block =
        runFilterFile(sheet, document, filter->string(), filterRunOptions(sheet), filterContext_);
  }
  if (!block) return false;
  QtClipboardSink clipboard;
  return putOnClipboard(clipboard, document, *block);
}

bool MainFrame::saveAll() {
  bool all = true;
  for (SheetView* view : sheets()) {
    view->commitPendingEdit();
    all = saveForSaveAll(view->sheet(), documentContext()) && all;
    view->refreshTitles();
  }
  for (DataSheetWindow* window : dataSheetWindows()) {
    FileInfo& record = window->document().record();
    if (!record.changed() && !record.isNew()) continue;
    all = saveDataSheetDocument(window->document(), record.isNew(), documentContext()) && all;
    window->refresh();
  }
  return all;
}

bool MainFrame::closeAllSheets() {
  for (SheetView* view : sheets()) {
    if (!view->requestClose()) return false;
  }
  return true;
}

void MainFrame::runCommand(int command) {
  SheetView* view = activeSheet();
  if (command >= kDialogCommandBase && command < kDialogCommandBase + 100) {
    if (view != nullptr) view->openWindow(SheetWindowKind::Dialog, command - kDialogCommandBase);
    return;
  }
  if (command >= kListCommandBase && command < kListCommandBase + 100) {
    if (view != nullptr) view->openWindow(SheetWindowKind::List, command - kListCommandBase);
    return;
  }
  if (isListCommand(command)) {
    if (ListPanel* panel = activeListPanel()) panel->runCommand(command);
    updateCommandStates();
    return;
  }
  switch (command) {
    case kEditUndo:
      if (view != nullptr) view->undo();
      updateCommandStates();
      break;
    case kToolsCheckRequirements:
      if (view != nullptr) checkRequirements(*view);
      break;
    case kFileNew:
      newFile();
      break;
    case kFileOpen:
      chooseAndOpenFiles();
      break;
    case kFileClose:
      if (view != nullptr) {
        view->requestClose();
      } else if (QMdiSubWindow* window = mdiArea_->currentSubWindow()) {
        window->close();
      }
      break;
    case kFileSave:
    case kFileSaveAs:
      saveActive(command == kFileSaveAs);
      break;
    case kFileSaveAll:
      saveAll();
      break;
    case kEditFilterCopy:
      copyThroughFilter();
      break;
    case kFileLoadDataSheet:
      showLoadDataSheetDialog();
      break;
    case kFileMergeDataSheet:
      mergeIntoActiveDataSheet();
      break;
    case kFileExit:
      close();
      break;
    case kUtilitiesRecalculate:
      if (view != nullptr) view->recalculate();
      break;
    case kDataRunScript:
      if (view != nullptr) runScript(*view);
      break;
    case kWindowOpenAll:
      if (view != nullptr) view->openAllWindows();
      break;
    case kWindowCloseAll:
      if (view != nullptr) view->closeSubordinateWindows();
      break;
    default:
      break;
  }
}

void MainFrame::updateMenus() {
  SheetView* view = activeSheet();
  const bool dataSheet = activeDataSheet() != nullptr;
  for (QAction* action : commandActions_) {
    switch (static_cast<CommandNeeds>(action->property("needs").toInt())) {
      case CommandNeeds::Nothing:
        break;
      case CommandNeeds::Sheet:
        action->setEnabled(view != nullptr);
        break;
      case CommandNeeds::Document:
        action->setEnabled(view != nullptr || dataSheet);
        break;
      case CommandNeeds::DataSheet:
        action->setEnabled(dataSheet);
        break;
    }
  }
  dataMenu_->menuAction()->setVisible(view != nullptr);
  editMenu_->menuAction()->setVisible(view != nullptr);
  toolsMenu_->menuAction()->setVisible(view != nullptr);
  rebuildDataMenu();
  updateCommandStates();
}

ListPanel* MainFrame::activeListPanel() const {
  QMdiSubWindow* window = mdiArea_->currentSubWindow();
  if (window == nullptr || sheetViewOf(window) == nullptr) return nullptr;
  if (auto* panel = qobject_cast<ListPanel*>(window->widget())) return panel;
  auto* dialog = qobject_cast<DialogWindow*>(window->widget());
  if (dialog == nullptr) return nullptr;
  std::vector<ListPanel*> panels = dialog->listPanels();
  for (QWidget* focus = QApplication::focusWidget(); focus != nullptr;
       focus = focus->parentWidget()) {
    if (auto* panel = qobject_cast<ListPanel*>(focus)) return panel;
  }
  return panels.size() == 1 ? panels.front() : nullptr;
}

void MainFrame::updateCommandStates() {
  SheetView* view = activeSheet();
  ListPanel* panel = activeListPanel();
  for (QAction* action : commandActions_) {
    int command = action->data().toInt();
    if (command == kEditUndo) {
      action->setText(fromSystemText(view != nullptr ? undoMenuText(view->sheet()) : "&Undo"));
      action->setEnabled(view != nullptr && undoCanUndo(view->sheet()));
    } else if (command == kToolsCheckRequirements || command == kEditFilterCopy) {
      action->setEnabled(view != nullptr);
    } else if (isListCommand(command)) {
      action->setEnabled(panel != nullptr && panel->commandEnabled(command));
    }
  }
}

void MainFrame::checkRequirements(SheetView& view) {
  view.commitPendingEdit();
  std::vector<UnsatisfiedItem> unmet = checkAllPrereq(view.sheet());
  std::string text = unsatisfiedCountText(unmet.size());
  for (const UnsatisfiedItem& entry : unmet)
    text += "\r\n" + entry.line;
  showTitled(Severity::Message, "Check Requirements", text);
}

void MainFrame::rebuildDataMenu() {
  dataMenu_->clear();
  SheetView* view = activeSheet();
  if (view == nullptr) return;
  const FileInfo& sheet = view->sheet();
  for (const DataMenuEntry& entry : sheet.dataMenu.entries()) {
    auto at = static_cast<std::size_t>(entry.index);
    std::string text;
    if (entry.kind == DataMenuKind::Separator) {
      dataMenu_->addSeparator();
      continue;
    }
    if (entry.kind == DataMenuKind::List && at < sheet.lists.size()) {
      text = dataMenuText(sheet.lists[at]->name.str(), sheet.lists[at]->menuChar.str());
    } else if (entry.kind == DataMenuKind::Dialog && at < sheet.dlgs.size()) {
      text = dataMenuText(sheet.dlgs[at]->name.str(), sheet.dlgs[at]->menuChar.str());
    } else {
      continue;
    }
    QAction* action = dataMenu_->addAction(fromSystemText(text));
    int command = entry.command();
    action->setData(command);
    connect(action, &QAction::triggered, this, [this, command] { runCommand(command); });
  }
  if (!dataMenu_->isEmpty()) dataMenu_->addSeparator();
  QAction* runScriptAction = dataMenu_->addAction(tr("Run &Script..."));
  runScriptAction->setData(kDataRunScript);
  runScriptAction->setObjectName("runScript");
  connect(runScriptAction, &QAction::triggered, this, [this] { runCommand(kDataRunScript); });
}

}  // namespace zv::ui
