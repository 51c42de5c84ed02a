#pragma once
// The command vocabulary: the names of command numbers that shortcuts and the script statement
// `menucommand` use, and the frame's own menus as tables.

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace zv::ui {

struct CommandName {
  std::string_view name;
  int number = 0;
};

/// The 70 named commands, sorted by name.
std::span<const CommandName> commandTable();
/// The number of a command name, ignoring case.
std::optional<int> commandNumber(std::string_view name);
/// The first name of a command number (two names share 1056 and 1057).
std::optional<std::string_view> commandName(int number);

// Command numbers that the windows serve.
inline constexpr int kFileNew = 1041;
inline constexpr int kFileOpen = 1042;
inline constexpr int kFileSave = 1043;
inline constexpr int kFileSaveAs = 1044;
inline constexpr int kFileExit = 1045;
inline constexpr int kFileClose = 1048;
inline constexpr int kFileLoadDataSheet = 1050;
/// Merge Data Sheet, a command of a data sheet document; it has no name in the command table.
inline constexpr int kFileMergeDataSheet = 1051;
inline constexpr int kFileSaveAll = 1076;
inline constexpr int kEditUndo = 1080;
inline constexpr int kEditClear = 1084;
inline constexpr int kEditFilterCopy = 1085;
inline constexpr int kEditSelectAll = 1086;
inline constexpr int kToolsSort = 1100;
inline constexpr int kToolsSelectItem = 1101;
inline constexpr int kToolsModify = 1103;
inline constexpr int kToolsOpenCloseSublist = 1104;
inline constexpr int kToolsSelectFromMasterList = 1105;
inline constexpr int kToolsShowRequirements = 1108;
inline constexpr int kToolsCheckRequirements = 1109;
inline constexpr int kToolsListSummary = 1110;
inline constexpr int kToolsDeleteItem = 1112;
inline constexpr int kToolsAdd1 = 1115;
inline constexpr int kToolsSubtract1 = 1116;
inline constexpr int kToolsNotes = 1117;
inline constexpr int kToolsMoveUp = 1118;
inline constexpr int kToolsMoveDown = 1119;
inline constexpr int kUtilitiesRecalculate = 1308;
/// Data > Run Script...: a script of the game system chosen by its title, run on the sheet.
inline constexpr int kDataRunScript = 1320;
inline constexpr int kWindowCloseAll = 1573;
inline constexpr int kWindowOpenAll = 1575;
inline constexpr int kHelpAbout = 1291;

/// What must be the active window for a menu entry to be enabled.
enum class CommandNeeds {
  Nothing,
  Sheet,      ///< a sheet's window
  Document,   ///< a sheet's window or a data sheet's
  DataSheet,  ///< a data sheet's window
};

/// One entry of a menu as the frame builds it: a separator has command 0.
struct MenuEntry {
  std::string_view text;  ///< with "&" before the mnemonic
  int command = 0;
  std::string_view shortcut;  ///< in the portable text form ("Ctrl+S"); empty for none
  CommandNeeds needs = CommandNeeds::Nothing;
};

/// The File menu above the recent files, and below them.
std::span<const MenuEntry> fileMenuHead();
std::span<const MenuEntry> fileMenuTail();
/// The Edit and Tools menus of a sheet: the commands of its lists and the Undo of the sheet.
std::span<const MenuEntry> editMenu();
std::span<const MenuEntry> toolsMenu();
/// Whether a command runs on a list (the list window or list field with the focus).
bool isListCommand(int command);
/// The Utilities and Window menus of a sheet.
std::span<const MenuEntry> utilitiesMenu();
std::span<const MenuEntry> windowMenu();

/// The text of a Data menu entry: the list's or dialog's name with "&" doubled and a "&" before the
/// first letter that matches `menuChar` (ignoring case), or " (&c)" behind it when none does.
std::string dataMenuText(std::string_view name, std::string_view menuChar);

}  // namespace zv::ui
