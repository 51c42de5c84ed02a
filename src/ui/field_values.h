#pragma once
// What a dialog field's value means, with no window in sight: the text a field shows for its
// variable, the conversion of formatted input, storing a typed value through the checks, the
// dialog-level check, the acceptance box and its memory, combo box entries, checkbox clicks.
// The windows call these and only show the outcome.

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/fileinfo.h"
#include "core/undo_history.h"

namespace zv::ui {

/// The three preferences that stand between a bad value and the sheet.
struct FieldPreferences {
  bool checkWhenAdding = true;          ///< "CheckReq"
  bool disallowIfNotSatisfied = false;  ///< "DisallowIfNotSatisfied"
  bool noBadValueDialog = false;        ///< "NoBadValueDlg"
};

/// The acceptance box, titled "Unacceptable Value", with the messages that the user accepted for
/// one control: a message already accepted there passes with no box; a message from another
/// control forgets the list first.
class AcceptanceMemory {
 public:
  /// True when the value is to be taken. With `disallow` the box has OK only, nothing is
  /// remembered and the answer is false.
  bool accept(const void* control, const std::string& message, bool disallow);
  void forget() {
    control_ = nullptr;
    accepted_.clear();
  }

 private:
  const void* control_ = nullptr;
  std::vector<std::string> accepted_;
};

/// What a store of a value needs besides the sheet and the field.
struct FieldContext {
  FieldPreferences preferences;
  AcceptanceMemory* memory = nullptr;
  std::function<void()> beep;     ///< the sound of a refused value when no box may show
  const void* control = nullptr;  ///< identity of the control that raised the check
};

/// The outcome of storing a value into a field.
struct FieldOutcome {
  bool stored = false;    ///< the value was stored, or nothing had to change
  bool rejected = false;  ///< a check refused the value
  /// The control is to show the variable's present value again (the restore step).
  bool restoreDisplay = false;
};

inline constexpr std::size_t kDisplayTextLimit = 127;  ///< the text a handler writes
inline constexpr std::size_t kRestoreTextLimit = 31;   ///< the text the restore step writes
inline constexpr std::size_t kForcedTextLimit = 31;    ///< the text of a force-constant field

/// The text the field shows for its variable: the value as text; an `editvar` with a `format`
/// shows the format evaluated with each token x replaced by the value, when that gives a string.
std::string displayText(FileInfo& sheet, const DlgItem& field);

/// The input of an `editvar` with a `format` turned into a value text: numbers cut out of the
/// input, evaluated, and put into the field's `formula` as $1, $2... (nullopt after the message).
/// Without a format the input passes unchanged.
std::optional<std::string> convertInput(FileInfo& sheet, const DlgItem& field,
                                        std::string_view input);

/// Where a field's value comes from.
enum class FieldInput {
  Typed,     ///< the user's input: an editvar's format converts it and the field's check applies
  Restored,  ///< a value put back as it stood (undo): taken as it is, without conversion or check
};

/// The one path by which a value enters an input field (checkbox, edittext, editvar, combobox).
FieldOutcome setFieldValue(FileInfo& sheet, DlgItem& field, std::string_view text, FieldInput input,
                           FieldContext& context);

/// The undo record of a field's value (kind 7): the field and the text of its value before the
/// edit. Undo stores that text again through setFieldValue with no checks, then `show` brings
/// the field forward (reopens its dialog, puts the focus in it and selects its text).
class FieldValueUndo : public UndoAction {
 public:
  FieldValueUndo(DlgItem& field, std::function<void(DlgItem&)> show);
  bool apply(FileInfo& fileInfo) override;
  const std::string& oldText() const { return oldText_; }

 private:
  DlgItem& field_;
  std::string oldText_;
  std::function<void(DlgItem&)> show_;
};

/// Whether a field's edits are recorded for Undo: the text and variable fields that the user
/// types into (checkboxes and combo boxes are not).
bool fieldEditIsUndoable(const DlgItem& field);

/// The dialog's own check expression after a change; true when it passes or was accepted.
bool checkDialog(FileInfo& sheet, DlgInfo& dialog, FieldContext& context);

/// One entry of a combo box: a label and the expression of its value.
struct ComboEntry {
  std::string label;
  std::string value;
};
/// The entries of "label;value;label;value"; nullopt when a label has no value behind it.
std::optional<std::vector<ComboEntry>> parseComboEntries(std::string_view choices);

/// The user picked entry `index` of a combo box: its value becomes the variable's expression and
/// the dialog check runs. False when the choice was undone (the control goes back to the field's
/// selected entry).
bool chooseComboEntry(FileInfo& sheet, DlgItem& field, int index, FieldContext& context);

/// The user clicked a checkbox into `checked`: false when the dialog check undid it.
bool clickCheckbox(FileInfo& sheet, DlgItem& field, bool checked, FieldContext& context);

/// Whether the field shows its default font's alternate: an `editvar` whose typed text equals its
/// default, ignoring case.
bool showsDefaultFont(const DlgItem& field);

/// Whether a field takes input from the user: list, checkbox, edittext, editvar, combobox, button.
bool takesInput(int kind);

}  // namespace zv::ui
