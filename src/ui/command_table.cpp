#include "ui/command_table.h"

#include <algorithm>
#include <array>

#include "core/text.h"

namespace zv::ui {

namespace {

constexpr std::array<CommandName, 70> kCommands{{
    {"EditFilterCopy", 1085},
    {"EditSearch", 1092},
    {"EditSearchAgain", 1093},
    {"FileAddNewFile", 1142},
    {"FileAssociatedFiles", 1309},
    {"FileClose", 1048},
    {"FileConvert", 1058},
    {"FileExit", 1045},
    {"FileGenerateCharacter", 1071},
    {"FileLoadDataSheet", 1050},
    {"FileNew", 1041},
    {"FileOpen", 1042},
    {"FilePageSetup", 1055},
    {"FilePrint", 1056},
    {"FilePrintAuxiliary", 1079},
    {"FilePrintPreview", 1057},
    {"FilePrintPreviewThroughFilter", 1054},
    {"FilePrintPreviewThroughTemplate", 1057},
    {"FilePrintThroughFilter", 1047},
    {"FilePrintThroughTemplate", 1056},
    {"FileSave", 1043},
    {"FileSaveAs", 1044},
    {"FileSaveGroupThroughFilter", 1143},
    {"FileSetCopyPrintFilters", 1053},
    {"HelpAboutZarvel", 1291},
    {"HelpContents", 1290},
    {"HelpGameSystemContents", 1296},
    {"HelpGameSystemInfo", 1293},
    {"HelpGameSystemTutorial", 1297},
    {"HelpHelp", 1292},
    {"HelpItemInfo", 1294},
    {"ToolsAdd1", 1115},
    {"ToolsAddFiles", 1138},
    {"ToolsCheckRequirements", 1109},
    {"ToolsDeleteItem", 1112},
    {"ToolsEditProperties", 1111},
    {"ToolsInsertSublist", 1102},
    {"ToolsListSummary", 1110},
    {"ToolsModify", 1103},
    {"ToolsMoveDown", 1119},
    {"ToolsMoveUp", 1118},
    {"ToolsNotes", 1117},
    {"ToolsOpenCloseSublist", 1104},
    {"ToolsOpenFiles", 1139},
    {"ToolsRenameFile", 1141},
    {"ToolsResetAllFields", 1107},
    {"ToolsResetField", 1106},
    {"ToolsSelectFromMasterList", 1105},
    {"ToolsSelectItem", 1101},
    {"ToolsShowRequirements", 1108},
    {"ToolsSort", 1100},
    {"ToolsSubtract1", 1116},
    {"UtilitiesDetails", 1311},
    {"UtilitiesDieRoller", 1302},
    {"UtilitiesFilterCharacterSheets", 1306},
    {"UtilitiesGameSystemPreferences", 1307},
    {"UtilitiesNameFinder", 1300},
    {"UtilitiesNotes", 1301},
    {"UtilitiesPictureLibrary", 1315},
    {"UtilitiesPreferences", 1303},
    {"UtilitiesRecalculate", 1308},
    {"UtilitiesSelectionRules", 1310},
    {"UtilitiesShowShortcuts", 1312},
    {"UtilitiesShowTipsWindow", 1305},
    {"UtilitiesUpdateCharacterSheets", 1072},
    {"WindowArrangeIcons", 1572},
    {"WindowCloseAll", 1573},
    {"WindowOpenAll", 1575},
    {"WindowOverlapWindows", 1577},
    {"WindowPackWindows", 1576},
}};

constexpr CommandNeeds kNothing = CommandNeeds::Nothing;
constexpr CommandNeeds kSheet = CommandNeeds::Sheet;
constexpr CommandNeeds kDocument = CommandNeeds::Document;

constexpr std::array<MenuEntry, 9> kFileHead{{
    {"&New...", kFileNew, "Ctrl+N", kNothing},
    {"&Open...", kFileOpen, "Ctrl+O", kNothing},
    {"&Close", kFileClose, "Ctrl+F4", kDocument},
    {"&Save", kFileSave, "Ctrl+S", kDocument},
    {"Save &As...", kFileSaveAs, "", kDocument},
    {"Save A&ll", kFileSaveAll, "", kDocument},
    {"", 0, "", kNothing},
    {"&Load Data Sheet...", kFileLoadDataSheet, "", kNothing},
    {"&Merge Data Sheet...", kFileMergeDataSheet, "", CommandNeeds::DataSheet},
}};

constexpr std::array<MenuEntry, 1> kFileTail{{
    {"E&xit", kFileExit, "Ctrl+Q", kNothing},
}};

constexpr std::array<MenuEntry, 4> kEdit{{
    {"&Undo", kEditUndo, "Ctrl+Z", kSheet},
    {"", 0, "", kNothing},
    {"&Delete", kEditClear, "", kSheet},
    {"Select &All", kEditSelectAll, "", kSheet},
}};

constexpr std::array<MenuEntry, 16> kTools{{
    {"&Select Item...", kToolsSelectItem, "", kSheet},
    {"Select from &Master List...", kToolsSelectFromMasterList, "", kSheet},
    {"&Modify...", kToolsModify, "", kSheet},
    {"&Open/Close Sublist", kToolsOpenCloseSublist, "", kSheet},
    {"&Delete Item", kToolsDeleteItem, "", kSheet},
    {"&Notes...", kToolsNotes, "", kSheet},
    {"", 0, "", kNothing},
    {"Add &1", kToolsAdd1, "", kSheet},
    {"Subtract 1", kToolsSubtract1, "", kSheet},
    {"Move &Up", kToolsMoveUp, "", kSheet},
    {"Move Do&wn", kToolsMoveDown, "", kSheet},
    {"S&ort...", kToolsSort, "", kSheet},
    {"List S&ummary...", kToolsListSummary, "", kSheet},
    {"", 0, "", kNothing},
    {"Show &Requirements...", kToolsShowRequirements, "", kSheet},
    {"&Check Requirements...", kToolsCheckRequirements, "", kSheet},
}};

constexpr std::array<MenuEntry, 1> kUtilities{{
    {"&Recalculate", kUtilitiesRecalculate, "F9", kSheet},
}};

constexpr std::array<MenuEntry, 2> kWindow{{
    {"&Open All", kWindowOpenAll, "", kSheet},
    {"&Close All", kWindowCloseAll, "", kSheet},
}};

}  // namespace

std::span<const CommandName> commandTable() {
  return kCommands;
}

std::optional<int> commandNumber(std::string_view name) {
  auto found = std::lower_bound(kCommands.begin(), kCommands.end(), name,
                                [](const CommandName& entry, std::string_view key) {
                                  return compareIgnoringCase(entry.name, key) < 0;
                                });
  if (found == kCommands.end() || !equalsIgnoringCase(found->name, name)) return std::nullopt;
  return found->number;
}

std::optional<std::string_view> commandName(int number) {
  for (const CommandName& entry : kCommands) {
    if (entry.number == number) return entry.name;
  }
  return std::nullopt;
}

std::span<const MenuEntry> fileMenuHead() {
  return kFileHead;
}
std::span<const MenuEntry> fileMenuTail() {
  return kFileTail;
}
std::span<const MenuEntry> editMenu() {
  return kEdit;
}
std::span<const MenuEntry> toolsMenu() {
  return kTools;
}

bool isListCommand(int command) {
  switch (command) {
    case kEditClear:
    case kEditSelectAll:
    case kToolsSelectItem:
    case kToolsSelectFromMasterList:
    case kToolsModify:
    case kToolsOpenCloseSublist:
    case kToolsDeleteItem:
    case kToolsAdd1:
    case kToolsSubtract1:
    case kToolsMoveUp:
    case kToolsMoveDown:
    case kToolsShowRequirements:
    case kToolsNotes:
    case kToolsSort:
    case kToolsListSummary:
      return true;
    default:
      return false;
  }
}

std::span<const MenuEntry> utilitiesMenu() {
  return kUtilities;
}
std::span<const MenuEntry> windowMenu() {
  return kWindow;
}

std::string dataMenuText(std::string_view name, std::string_view menuChar) {
  std::string text;
  bool marked = menuChar.empty();
  for (char c : name) {
    if (!marked && equalsIgnoringCase(std::string_view(&c, 1), menuChar.substr(0, 1))) {
      text += '&';
      marked = true;
    }
    text += c;
    if (c == '&') text += '&';
  }
  if (!marked) {
    text += " (&";
    text += menuChar.front();
    text += ')';
  }
  return text;
}

}  // namespace zv::ui
