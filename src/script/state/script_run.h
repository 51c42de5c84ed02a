#pragma once
// The state of one script run, in one object: the two sheets, the context in which statements
// evaluate, the items being visited and added, the flags that end a run, the reader with its
// position, the subroutines and the frames of the calls under way. Every statement gets the run
// and saves and restores what it changes.

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/fileinfo.h"
#include "core/host.h"
#include "core/item.h"
#include "expr/symbols.h"
#include "script/reader/script_reader.h"
#include "script/state/environment.h"

namespace zv::script {

/// The longest message of the Script Error box, with its position suffix and terminator.
inline constexpr std::size_t kScriptErrorCapacity = 512;
/// The size of the buffer in which expressions are expanded.
inline constexpr std::size_t kExpressionCapacity = 10000;

/// A subroutine: its body is a copy of the text from behind its "{" up to and including the "}"
/// (labelled with the file it came from), read from the line of the "{".
struct Subroutine {
  std::string name;
  std::shared_ptr<const SourceText> body;
  int line = 1;
  std::vector<std::string> parameters;
  bool active = false;
};
using SubroutineList = std::vector<std::unique_ptr<Subroutine>>;

/// A call under way: the subroutine and its locals, which hold values, not formulas.
struct CallFrame {
  Subroutine* subroutine = nullptr;
  std::unique_ptr<SymbolTable> locals;
};

/// An element walk under way (`foreach`, `list`): the element visited and the next one, which a
/// deletion moves on; `abandoned` when the chain being walked went away.
struct WalkFrame {
  Item* element = nullptr;
  Item* next = nullptr;
  Item* parent = nullptr;  ///< the sublist whose members are walked; null at list level
  bool abandoned = false;
};

/// What a statement leaves to the statements around it.
enum class Flow {
  Next,  ///< go on with the next statement
  Stop,  ///< the run stops (an error was shown, or exit, return, exec)
};

class ScriptRun;

/// The statements that act on sheets, supplied by the layer above the control flow so that the
/// dispatcher can reach them.
struct SheetCommands {
  /// Runs the statement of a command keyword that has just been read; nullopt when the keyword
  /// is none of the commands.
  std::optional<Flow> (*command)(ScriptRun& run, const ReadToken& keyword) = nullptr;
  /// Assigns `value` (statement text, not yet expanded) to a left side that is no plain name:
  /// "$@name", "dialog.field" or "list.name"; nullopt when the left side is a plain name.
  std::optional<Flow> (*assign)(ScriptRun& run, const std::string& left,
                                const std::string& value) = nullptr;
};

/// Which entry started the run.
enum class RunKind { Conversion, Item, Menu };

class ScriptRun {
 public:
  ScriptRun(ScriptEnvironment& environment, FileInfo& source, FileInfo& destination,
            SymbolTable& context, SubroutineList& subroutines);
  ScriptRun(const ScriptRun&) = delete;
  ScriptRun& operator=(const ScriptRun&) = delete;

  ScriptEnvironment& environment;
  RunKind kind = RunKind::Conversion;
  SheetCommands commands;
  FileInfo* sourceSheet;
  FileInfo* destSheet;
  /// The table in which statements evaluate; `context` statements change it for their body.
  SymbolTable* context;
  /// The run's own script context (the one `context (destination)` doesn't mean).
  SymbolTable* scriptContext;

  Item* lastItemAdded = nullptr;
  ListInfo* destinationList = nullptr;
  Item* currentSublistParent = nullptr;

  bool scriptMode = false;
  bool errorReported = false;
  bool userCanceled = false;
  bool progressCanceled = false;
  /// The end of a conversion lists the source's unconverted items; `scriptmode` turns it off.
  bool reportUnconverted = false;

  /// A statement in a `list` body (lists don't nest) and in an `options` body.
  bool inList = false;
  bool inOptions = false;

  /// `exec`: the run goes on at this place when the statements have unwound.
  bool execPending = false;
  ScriptPosition execResume;
  /// `return`: the statements of the subroutine unwind to the call, which takes the value.
  bool returnPending = false;
  Value returnValue;

  ScriptReader reader;
  SubroutineList* subroutines;
  /// The context and subroutines that an `exec` in an item or menu run gives the new script.
  std::unique_ptr<SymbolTable> execContext;
  std::unique_ptr<SubroutineList> execSubroutines;
  std::vector<CallFrame> frames;
  std::vector<WalkFrame*> walks;
  /// How deeply statements are nested in the C++ calls that run them.
  int nesting = 0;

  /// Shows the Script Error box (OK and Cancel) with the message and the position: "File: %s,
  /// line: %d", and the current item or the last item added; the whole is cut to 511 bytes.
  /// Marks the error as reported and returns the button pressed.
  Button reportError(std::string_view message);
  /// Flow::Stop after reportError: the usual end of a failing statement.
  Flow fail(std::string_view message) {
    reportError(message);
    return Flow::Stop;
  }

  /// The cancel poll of loops and calls: lets the host handle its events; an interrupt stops the
  /// run with "Conversion canceled.", or only marks `progressCanceled` while a progress window is
  /// up. False when the run is to stop.
  bool checkCancel();

  /// The current item and option of the position.
  Item* currentItem() const { return reader.position.currentItem; }
  Option* currentOption() const { return reader.position.currentOption; }
  void setCurrentItem(Item* item, Option* option = nullptr) {
    reader.position.currentItem = item;
    reader.position.currentOption = option;
  }

  /// The locals of the innermost call, or null outside subroutines.
  SymbolTable* locals() const { return frames.empty() ? nullptr : frames.back().locals.get(); }
  Subroutine* findSubroutine(std::string_view name) const;

  /// Keeps `slot` (an item pointer that lives across statements) from dangling: a deletion of its
  /// item sets it to null. Pair with unwatch(); WatchedItem does both.
  void watch(Item** slot) { watched_.push_back(slot); }
  void unwatch(Item** slot);
  /// Tells the run that these items are about to be deleted: every pointer it keeps to one of
  /// them (current item, last item added, sublist parent, watched slots, walks) lets go.
  void beforeDelete(const std::vector<Item*>& doomed);

  /// Enters one more level of nesting; false after the message when it is too deep.
  bool enterNesting();
  void leaveNesting() { --nesting; }

 private:
  std::vector<Item**> watched_;
};

/// Watches an item pointer for its lifetime.
class WatchedItem {
 public:
  WatchedItem(ScriptRun& run, Item* item) : run_(run), item_(item) { run_.watch(&item_); }
  ~WatchedItem() { run_.unwatch(&item_); }
  WatchedItem(const WatchedItem&) = delete;
  WatchedItem& operator=(const WatchedItem&) = delete;
  Item* get() const { return item_; }

 private:
  ScriptRun& run_;
  Item* item_;
};

/// Leaves a level of nesting on every way out.
class NestingGuard {
 public:
  explicit NestingGuard(ScriptRun& run) : run_(run), entered_(run.enterNesting()) {}
  ~NestingGuard() {
    if (entered_) run_.leaveNesting();
  }
  NestingGuard(const NestingGuard&) = delete;
  NestingGuard& operator=(const NestingGuard&) = delete;
  bool ok() const { return entered_; }

 private:
  ScriptRun& run_;
  bool entered_;
};

/// The items that deleting `item` with its automatic items takes along: the item, its members,
/// and the items it (or they) added automatically, with theirs.
std::vector<Item*> itemsDeletedWith(FileInfo& sheet, Item& item);

/// Moves the reader to a saved place without touching the current item and option, which may
/// have changed (or gone) since the place was saved.
void jumpTo(ScriptReader& reader, const ScriptPosition& place);

}  // namespace zv::script
