#pragma once
// What the engine asks of its surroundings, beyond the host's boxes and questions, in one place:
// the user's preferences that the rules read, where data sheets are found, what the windows of a
// sheet are told, the desktop's own dialogs for two questions of the rules, and the services that
// the engine's upper layers (and the utilities) lend to its lower layers, which can't call them
// directly. A program fills one context at start and installs it for its lifetime; a test installs
// a copy with what it changes (EngineContextInstallation). Nothing else in the engine keeps a hook.

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "core/record_types.h"
#include "core/value.h"

namespace zv {

struct AppSettings;
struct Option;
class RequirementsDialog;
enum class PrereqDialogAnswer;

/// The user's choices that the engine reads. The defaults are those of a fresh installation.
struct EnginePreferences {
  /// "UseFractions": shown numbers write 1/4, 1/2 and 3/4 as their glyphs.
  bool useFractions = true;
  /// "CheckReq" ("Check When Adding"): levels and requirements are checked when they change.
  bool checkReq = true;
  /// "DisallowIfNotSatisfied": a refused value is never taken; the box has OK only.
  bool disallowIfNotSatisfied = false;
  /// "NoBadValueDlg": a refused value only beeps, with no box.
  bool noBadValueDlg = false;
  /// "ApplyRules": the selection rule sets of a sheet trim what the item selection offers.
  bool applyRules = false;
  /// "PrintInheritedOptions" not "0": item fields list the options a member inherits.
  bool printInheritedOptions = true;
  /// The level warnings of reading a sheet or data sheet whose level differs from its game
  /// system's; batch conversion turns them off while it opens sheets.
  bool levelWarnings = true;
};

/// The preferences as the program's settings give them.
EnginePreferences enginePreferencesFrom(const AppSettings& settings);

/// Where data sheets are found and how their loads behave.
struct DataSheetSettings {
  /// `dataDir`: where data sheets are found by short name.
  std::filesystem::path dataDir;
  /// The setting "CopyrightDelay" in ms; 0 leaves the delay to the file.
  long copyrightDelay = 0;
  /// Off until the start-up is far enough for the outermost load to pump messages.
  bool pumpMessages = false;
};

/// What the windows that show a sheet are told after its values changed. The desktop program
/// fills these; headless programs leave them empty and nothing is redrawn.
struct SheetViews {
  /// The rows or the total of a list changed: repaint its window (or its dialog field).
  std::function<void(ListInfo& list)> listChanged;
  /// One item's level, cost or options changed: repaint its row.
  std::function<void(Item& item)> itemChanged;
  /// An edit or a recalculation of the sheet ended: refresh whatever shows its values.
  std::function<void(FileInfo& sheet)> sheetChanged;
  /// Undo is bringing items back into a list: open its window if it is closed and bring it
  /// forward.
  std::function<void(ListInfo& list)> showList;
  /// Undo brought items back: select the visible rows `first` to `last` of the list.
  std::function<void(ListInfo& list, int first, int last)> selectRows;
};

/// A value that the rules refuse, with the title and text of its box.
struct BadValue {
  std::string title;
  std::string message;
};

/// How a refused value's box is shown.
enum class BadValueBox {
  OkCancel,  ///< the user may let the value stand
  OkOnly,    ///< the box only informs; the answer is ignored
};

/// The desktop program's own windows for two questions of the rules. Empty: the host asks.
struct EngineDialogs {
  /// Asks whether a refused value may stand; true lets it stand. The desktop program remembers
  /// the messages a user accepted on one control.
  std::function<bool(std::string_view title, std::string_view message, BadValueBox box)>
      acceptBadValue;
  /// Runs the requirements dialog until OK or Cancel; Satisfy is run by the dialog's own code and
  /// the dialog goes on.
  /// `place` is the add of rules/lists/place_item.h (PlaceItem) that Satisfy uses.
  std::function<PrereqDialogAnswer(
      RequirementsDialog& dialog,
      const std::function<Item*(FileInfo&, ListInfo&, std::unique_ptr<Item>, Item*)>& place)>
      runRequirementsDialog;
};

/// The option rules of the item layer, lent to the item fields of the expression engine so that
/// they read options as the rest of the system does. Without them the fields fall back on the
/// option's plain value and a plain "name (qualifier): value" display, and field texts are taken
/// without expanding references.
struct OptionRules {
  /// The option's value: its text form and its Value. False when the value can't be got (the
  /// rules have shown why).
  bool (*optionString)(const Item& item, const Option& option, std::string& text,
                       Value& value) = nullptr;
  /// The display text of an option.
  std::string (*optionDisplay)(const Item& item, const Option& option) = nullptr;
  /// Expands the backquoted option references of a text for the item.
  std::string (*expandOptionRefs)(const Item& item, std::string_view text) = nullptr;
  /// The category test: true when the item belongs to the category text.
  bool (*inCategory)(const Item& item, std::string_view category) = nullptr;
};

/// Where the game systems' parameters are read and stored, by game system name and parameter.
struct ConfigParamStore {
  /// The parameter's present value (stored, else its default); nullopt when there is none.
  std::function<std::optional<std::string>(std::string_view gameSystem, std::string_view name)>
      read;
  /// Stores a value; false when it can't be stored.
  std::function<bool(std::string_view gameSystem, std::string_view name, std::string_view value)>
      write;
};

/// The marks that format's "%n" writes: between groups of three digits, and before decimals.
struct NumberMarks {
  std::string thousands = ",";
  std::string decimal = ".";
};

/// Services that upper layers lend to lower ones. Each is empty until the layer that owns it is
/// wired in (the file formats' wireEngineServices for the engine's own, the utilities'
/// installation for theirs); an empty service has the fallback its comment gives.
struct EngineServices {
  /// The item rules' reading of options, for item fields.
  OptionRules optionRules;
  /// After an item's level changed, with the preference CheckReq: the unmet requirements of the
  /// sheet, or nullopt. Empty: nothing is checked.
  std::function<std::optional<BadValue>(FileInfo& sheet, Item& item)> checkRequirements;
  /// Stores a list's new total in its total variable. Empty: the total stays in the list.
  std::function<void(ListInfo& list, double total)> storeListTotal;
  /// Loads a data sheet for ?datasheet of automatic items; false after its message. Empty:
  /// ?datasheet does nothing.
  std::function<bool(FileInfo& sheet, std::string_view name)> loadDataSheet;
  /// Whether a master item may be offered by a ?choose pattern. Empty: every item passes.
  std::function<bool(FileInfo& sheet, const Item& master)> offerable;
  /// Lays an item out as its list row in the item format language, for the `item` field. Empty:
  /// the name, the cost and, for an item with a level, the level, joined by tabs.
  std::function<std::string(const Item& item)> itemRow;
  /// Reads a sheet attribute for "@name" in a table that has an owner: true with the value when
  /// the attribute exists. Empty: the attributes of the sheet record alone.
  std::function<bool(const FileInfo& sheet, std::string_view name, Value& out)> sheetAttribute;
  /// Rolls a die specification into its result text for rolldice(text); false after a shown
  /// failure. Empty: rolldice of a text gives 0.
  std::function<bool(std::string_view dice, std::string& result)> rollDice;
  /// The directory of the running script's source, for getsourcedir. Empty: "".
  std::function<std::string()> sourceDirectory;
  /// The game systems' parameters of configparam and setconfigparam.
  ConfigParamStore configParams;
  /// The marks of the user's locale for format's "%n". Empty: "," and ".".
  std::function<NumberMarks()> numberMarks;
};

struct EngineContext {
  EnginePreferences preferences;
  DataSheetSettings dataSheets;
  SheetViews views;
  EngineDialogs dialogs;
  EngineServices services;
  /// Set once the engine's own services are wired in.
  bool servicesWired = false;
};

/// The installed context. Before any installation this is a context with the defaults and no
/// services.
EngineContext& engine();

/// Installs a context for the lifetime of this object and puts back the previous one afterwards.
class EngineContextInstallation {
 public:
  explicit EngineContextInstallation(EngineContext& installed);
  ~EngineContextInstallation();
  EngineContextInstallation(const EngineContextInstallation&) = delete;
  EngineContextInstallation& operator=(const EngineContextInstallation&) = delete;

 private:
  EngineContext* previous_;
};

/// Installs a copy of the present context for the lifetime of this object, so that a test can
/// change a preference or a service and have everything else as it was.
class ScopedEngineContext {
 public:
  ScopedEngineContext() : copy_(engine()), installation_(copy_) {}
  EngineContext& context() { return copy_; }
  EngineContext* operator->() { return &copy_; }

 private:
  EngineContext copy_;
  EngineContextInstallation installation_;
};

}  // namespace zv
