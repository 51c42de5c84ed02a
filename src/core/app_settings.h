#pragma once
// The program's own settings, read once at start into typed members and partly written back at
// exit. Section "zarvel" holds the program's state, section "Preferences" the user's choices.

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/settings.h"
#include "core/window_rect.h"

namespace zv {

inline constexpr std::string_view kMainSection = "zarvel";
inline constexpr std::string_view kPreferencesSection = "Preferences";
inline constexpr std::string_view kDataSheetsSection = "Data Sheets";
inline constexpr std::string_view kGameSystemsSection = "GameSystems";

/// Dialog colour taken at start when "setDlgBGColor" is 0 (0x00BBGGRR).
inline constexpr long kDefaultDialogColor = 0xC0C0C0;

struct AppSettings {
  // Section "zarvel".
  std::filesystem::path sourceDirectory;  ///< "Source Directory": dataDir (defaultDataDirectory)
  std::optional<WindowRect> screenPos;    ///< frame rectangle, unclamped; none when empty
  std::optional<WindowRect> selectItemDlgRect;  ///< the selection dialog's rectangle
  std::string gameSystem;                       ///< game system of the last sheet opened
  long maxUndo = 50;                            ///< "MaxUndo"
  bool maximized = false;
  bool binary = true;  ///< save sheets and data sheets in binary form
  bool editAddedOptions = true;
  bool snapToGrid = false;           ///< "SnapToGrid"
  bool showRuler = true;             ///< "ShowRuler"
  bool overlappingWindows = false;   ///< "OverlappingWindows": new windows cascade
  bool printAssociatedFiles = true;  ///< "PrintAssociatedFiles"
  bool applyRules = false;           ///< "ApplyRules": selection rules on
  long measure = -1;                 ///< "Measure": units; -1 takes them from the locale
  std::string curDir;                ///< the working directory to return to
  std::string defTemplate;           ///< the last template used for New
  std::string newFileGameSystem;     ///< "NewFileGameSystem"
  long copyrightDelay = 0;           ///< "CopyrightDelay" in ms; 0 lets the file choose

  // Section "Preferences".
  bool showButtonBar = true;
  bool showStatusBar = true;
  bool showTipWindow = true;
  bool showRules = true;
  bool confirmMultipleDeletions = true;
  bool shortFileNames = false;  ///< "Short File Names"
  bool showNamesOnly = false;
  bool checkReq = true;  ///< check requirements
  bool disallowIfNotSatisfied = false;
  bool noBadValueDlg = false;
  bool makeBackups = true;  ///< keep ".bak" files
  bool showHourGlass = true;
  bool askForFilters = true;
  bool useFractions = true;  ///< the number formatter writes quarter glyphs
  long setDlgBGColor = 0;
  long dlgBGColor = -1;  ///< 0x00BBGGRR; see kDefaultDialogColor
  std::string editor;    ///< external text editor; see effectiveEditor()

  /// Reads every key of both sections. An empty or missing "Source Directory" gives `programDir`;
  /// "DlgBGColor" becomes kDefaultDialogColor when "setDlgBGColor" is 0.
  static AppSettings load(const Settings& settings, const std::filesystem::path& programDir);

  /// Writes, in this order: screenPos (unless `maximized`), OverlappingWindows,
  /// selectItemDlgRect, maximized, Measure, SnapToGrid, ShowRuler, gameSystem, CheckReq,
  /// ShowNamesOnly, curDir. A rectangle never set is written empty.
  void saveAtExit(Settings& settings, bool maximized) const;

  /// The editor to run, or empty for the internal text window: "notepad.exe" counts as none.
  std::string effectiveEditor() const;

  /// The value of a key in its stored text form ("%ld" for numbers, "%d %d %d %d" for
  /// rectangles); nullopt for a key not in either table.
  std::optional<std::string> valueText(std::string_view section, std::string_view key) const;
};

struct SettingDefault {
  std::string_view section;
  std::string_view key;
  /// The stored text of the default. Empty for "Source Directory" stands for the program's
  /// directory.
  std::string_view defaultText;
};

/// Every key of sections "zarvel" and "Preferences" with its default, in table order.
const std::vector<SettingDefault>& settingDefaults();

}  // namespace zv
