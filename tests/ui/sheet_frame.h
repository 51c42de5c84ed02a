#pragma once
// The desktop frame of a test, on the offscreen platform: settings of its own in a temporary
// folder, a headless host that keeps every box and answers from a list, and a copy of a sheet
// open (so that nothing a test does reaches the original file).

// Before any Qt header: HeadlessHost has a member that Qt's "emit" macro would rewrite.
#include "core/headless_host.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QTemporaryDir>
#include <QtTest>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

#include "core/app_settings.h"
#include "core/engine_context.h"
#include "core/game_systems.h"
#include "core/settings.h"
#include "formats/datasheet/data_sheet_loader.h"
#include "ui/dialog_window.h"
#include "ui/list_panel.h"
#include "ui/main_frame.h"
#include "ui/sheet_view.h"

namespace zv::testing {

/// Every box the headless host showed, a line each ("[Title] text").
inline QStringList transcriptLines(const HeadlessHost& host) {
  QStringList lines;
  for (const std::string& line : host.transcript())
    lines << QString::fromStdString(line);
  return lines;
}

class SheetFrame {
 public:
  /// Writes `settingsText` as the settings file, copies `sheet` into the temporary folder and
  /// opens it in a shown frame; `dataDir`, when given, is where data sheets are found. False when
  /// anything failed.
  bool open(const std::filesystem::path& sheet, const std::string& settingsText,
            const std::filesystem::path& dataDir = {}) {
    namespace fs = std::filesystem;
    dir_.emplace();
    if (!dir_->isValid()) return false;
    base_ = fs::path(dir_->path().toStdString());
    std::ofstream(base_ / "settings.ini") << settingsText;
    settings_.emplace(Settings::fromFile(base_ / "settings.ini"));
    app_.emplace(AppSettings::load(*settings_, base_));
    if (!dataDir.empty()) engine().dataSheets.dataDir = dataDir;
    host_.emplace(nullptr);
    installed_.emplace(*host_);
    frame_.emplace(*settings_, *app_);
    frame_->show();
    QApplication::setActiveWindow(&*frame_);
    sheetPath_ = (base_ / sheet.filename()).string();
    std::error_code failed;
    fs::copy_file(sheet, sheetPath_, failed);
    return !failed && frame_->openFile(sheetPath_) && view() != nullptr;
  }

  /// The bundled sample game system with a copy of one of its characters open.
  bool openSample(const std::string& character = "Maren Vell") {
    const std::filesystem::path data(ZV_SAMPLE_DATA_DIR);
    return open(data / "characters" / (character + ".chr"),
                "[zarvel]\nSource Directory=" + data.string() + "\n", data);
  }

  ~SheetFrame() {
    frame_.reset();
    installed_.reset();
    host_.reset();
    clearGameSystems();
  }

  ui::MainFrame& frame() { return *frame_; }
  HeadlessHost& host() { return *host_; }
  AppSettings& appSettings() { return *app_; }
  Settings& settings() { return *settings_; }
  const std::string& sheetPath() const { return sheetPath_; }
  const std::filesystem::path& folder() const { return base_; }

  ui::SheetView* view() { return frame_->activeSheet(); }
  ui::DialogWindow* mainDialog() { return view()->dialogWindow(0); }
  /// The text a field of the main dialog shows.
  QString fieldText(const char* name) {
    QWidget* control = mainDialog()->controlFor(name);
    if (auto* label = qobject_cast<QLabel*>(control)) return label->text();
    if (auto* line = qobject_cast<QLineEdit*>(control)) return line->text();
    return "<none>";
  }
  /// Types a value into a field of the main dialog and moves the focus to `next`, as the user
  /// does; the field commits as it loses the focus.
  void type(const char* field, const QString& text, const char* next) {
    auto* edit = qobject_cast<QLineEdit*>(mainDialog()->controlFor(field));
    QVERIFY(edit);
    edit->setFocus();
    QTRY_VERIFY(edit->hasFocus());
    edit->selectAll();
    QTest::keyClicks(edit, text);
    mainDialog()->controlFor(next)->setFocus();
    QTRY_VERIFY(!edit->hasFocus());
  }
  /// Opens the window of the sheet's list at `index`.
  ui::ListPanel* listWindow(int index) {
    QMdiSubWindow* window = view()->openWindow(ui::SheetWindowKind::List, index);
    return window ? qobject_cast<ui::ListPanel*>(window->widget()) : nullptr;
  }
  /// Opens the window of the sheet's list named `name`.
  ui::ListPanel* listWindow(const char* name) {
    const auto& lists = view()->sheet().lists;
    for (std::size_t i = 0; i < lists.size(); ++i)
      if (lists[i]->name.str() == name) return listWindow(static_cast<int>(i));
    return nullptr;
  }
  QStringList transcript() const { return transcriptLines(*host_); }

 private:
  std::optional<QTemporaryDir> dir_;
  std::filesystem::path base_;
  std::optional<Settings> settings_;
  std::optional<AppSettings> app_;
  std::optional<HeadlessHost> host_;
  std::optional<HostInstallation> installed_;
  std::optional<ui::MainFrame> frame_;
  std::string sheetPath_;
};

}  // namespace zv::testing
