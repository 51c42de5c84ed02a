#pragma once
// An open character sheet or template on the screen: its record, its windows (the main dialog,
// further dialogs and list windows as children of the frame's multiple-document area), the
// watches that carry the engine's changes to the fields, and the state of a field's checks.

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QObject>
#include <QPointer>
#include <functional>
#include <memory>
#include <vector>

#include "core/app_settings.h"
#include "core/fileinfo.h"
#include "core/settings.h"
#include "ui/field_values.h"
#include "ui/symbol_watch.h"

namespace zv::ui {

class DialogWindow;
class ListPanel;

/// The kinds of window a sheet has.
enum class SheetWindowKind { Dialog, List };

class SheetView : public QObject {
  Q_OBJECT
 public:
  /// Asked before a changed sheet closes; true lets it close (the frame saves on Yes).
  using CloseQuery = std::function<bool(SheetView&)>;

  SheetView(std::unique_ptr<FileInfo> sheet, QMdiArea& area, FieldPreferences preferences,
            QObject* parent = nullptr);
  ~SheetView() override;

  FileInfo& sheet() { return *sheet_; }
  QMdiArea& area() { return area_; }
  SymbolWatches& watches() { return watches_; }
  FieldContext& fieldContext() { return fieldContext_; }
  /// The colour of dialogs without their own (0x00BBGGRR), or -1 for the system's.
  long dialogColour = -1;
  /// The program's settings that editing reads (MaxUndo, ConfirmMultipleDeletions) and the
  /// selection dialog's kept rectangle; null: the defaults of a fresh installation.
  AppSettings* appSettings = nullptr;
  /// The settings file, for the choices that commands keep (the sort dialog's); may be null.
  Settings* settings = nullptr;
  void setCloseQuery(CloseQuery query) { closeQuery_ = std::move(query); }

  /// Creates the main dialog's window and the windows flagged open, and shows them.
  void show();
  /// The main dialog's window.
  QMdiSubWindow* mainWindow() const { return windowOf(SheetWindowKind::Dialog, 0); }
  /// Opens dialog or list `index`, or brings its window forward; null for a bad index.
  QMdiSubWindow* openWindow(SheetWindowKind kind, int index);
  QMdiSubWindow* windowOf(SheetWindowKind kind, int index) const;
  /// Every window of the sheet, the main dialog first.
  std::vector<QMdiSubWindow*> windows() const;
  /// The dialog window of a dialog, when open.
  DialogWindow* dialogWindow(int index) const;
  /// Every list panel on the screen: list windows and list fields.
  std::vector<ListPanel*> listPanels() const;
  /// The panel that shows a list, when one is on the screen.
  ListPanel* panelOf(const ListInfo& list) const;
  /// Opens the window that shows a list (its list window, or the dialog with its field) or
  /// brings it forward; the panel, or null when no window of the sheet shows the list.
  ListPanel* showList(const ListInfo& list);
  /// Undo (command 1080): takes back the newest step of the sheet; false when there was none.
  bool undo();

  /// Stores the value of a field being edited (before a command acts on the sheet).
  void commitPendingEdit();
  /// Whether a field in one of the sheet's dialogs was edited and not yet stored.
  bool hasPendingEdit() const;
  /// Recalculate (command 1308), then every window shows the result.
  void recalculate();
  /// After any change: list rows and totals, window titles.
  void refreshAfterEdit();
  /// After a change anywhere in the sheet (a script): every dialog's fields, then as
  /// refreshAfterEdit.
  void refreshEverything();
  /// The window titles follow the sheet's name.
  void refreshTitles();
  /// Opens every dialog and list window, or closes every one but the main dialog.
  void openAllWindows();
  void closeSubordinateWindows();

  /// Closes the sheet as the user asks: the pending edit is stored, the close question asked, and
  /// the windows go. False when the sheet stays.
  bool requestClose();
  /// Whether requestClose has let the sheet go.
  bool closing() const { return closing_; }

 signals:
  /// The sheet is gone: its windows are closed and the view is about to be deleted.
  void sheetClosed(SheetView* view);

 private:
  friend class SheetSubWindow;
  void windowClosed(SheetWindowKind kind, int index);
  QMdiSubWindow* createWindow(SheetWindowKind kind, int index);

  std::unique_ptr<FileInfo> sheet_;
  QMdiArea& area_;
  SymbolWatches watches_;
  AcceptanceMemory acceptance_;
  FieldContext fieldContext_;
  CloseQuery closeQuery_;
  bool closing_ = false;
  struct OpenWindow {
    SheetWindowKind kind;
    int index;
    QPointer<QMdiSubWindow> window;
  };
  std::vector<OpenWindow> windows_;
  /// The entries whose window still exists.
  std::vector<OpenWindow> liveWindows() const;
};

/// The sheet a window of the frame belongs to; null for other windows.
SheetView* sheetViewOf(QMdiSubWindow* window);

}  // namespace zv::ui
