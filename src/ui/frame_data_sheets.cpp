// The frame's side of data sheets: a data sheet opened as a document in its window, Merge Data
// Sheet into it, and the Load Data Sheet dialog.

#include <QMdiSubWindow>
#include <algorithm>
#include <filesystem>

#include "core/messages.h"
#include "formats/data_sheet_document.h"
#include "formats/data_sheet_merge.h"
#include "ui/data_sheet_window.h"
#include "ui/load_data_sheet_window.h"
#include "ui/main_frame.h"

namespace zv::ui {

QMdiSubWindow* MainFrame::openDataSheet(const std::string& path) {
  std::unique_ptr<DataSheetDocument> document;
  {
    BusyCursor busy;
    document = openDataSheetDocument(path, appSettings_.sourceDirectory);
  }
  if (!document) return nullptr;
  auto* contents = new DataSheetWindow(std::move(document));
  contents->setCloseQuery([this](DataSheetWindow& window) {
    return dataSheetCloseQuery(window.document(), documentContext());
  });
  connect(contents, &DataSheetWindow::closing, this, [this](DataSheetWindow* closed) {
    const FileInfo& record = closed->document().record();
    if (!record.isNew() && !record.path.empty()) addRecentFile(record.path.str());
  });
  QMdiSubWindow* window = mdiArea_->addSubWindow(contents);
  window->setAttribute(Qt::WA_DeleteOnClose);
  QSize area = mdiArea_->viewport()->size();
  window->resize(std::max(420, area.width() * 3 / 5), std::max(320, area.height() * 9 / 10));
  window->show();
  mdiArea_->setActiveSubWindow(window);
  updateMenus();
  return window;
}

DataSheetWindow* MainFrame::activeDataSheet() const {
  return dataSheetWindowOf(mdiArea_->currentSubWindow());
}

std::vector<DataSheetWindow*> MainFrame::dataSheetWindows() const {
  std::vector<DataSheetWindow*> windows;
  for (QMdiSubWindow* window : mdiArea_->subWindowList()) {
    if (DataSheetWindow* dataSheet = dataSheetWindowOf(window)) windows.push_back(dataSheet);
  }
  return windows;
}

void MainFrame::showLoadDataSheetDialog() {
  LoadDataSheetWindow dialog(settings_, this);
  dialog.exec();
}

bool MainFrame::mergeIntoActiveDataSheet() {
  DataSheetWindow* window = activeDataSheet();
  if (window == nullptr) return false;
  DataSheetDocument& document = window->document();
  std::filesystem::path directory =
      std::filesystem::path(std::string(document.record().path.str())).parent_path();
  if (directory.empty()) directory = appSettings_.sourceDirectory;
  const int changes = mergeDataSheetCommand(document, directory, appSettings_.sourceDirectory);
  window->refresh();
  return changes > 0;
}

}  // namespace zv::ui
