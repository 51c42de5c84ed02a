#pragma once
// The state behind the die roller window, without the window: its settings in the section
// "Die Roller", the quick buttons, the result box and the lists of past results and remembered
// specifications, and what one roll shows (result, BODY line, sound, dice).

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/settings.h"
#include "utilities/die_roller.h"

namespace zv {

/// The settings of the die roller window.
struct DieRollerSettings {
  static constexpr int kQuickButtons = 10;

  std::vector<std::string> buttons = defaultQuickButtons();  ///< dierollbutton1 to 10
  std::vector<std::string> remembered;                       ///< dieroll1, dieroll2, ...
  bool showBody = false;                                     ///< "Show BODY"
  bool showRolls = true;                                     ///< "Show Rolls": the dice panel
  bool drawD6Pips = true;                                    ///< "Draw D6 Pips"
  bool useDieBitmaps = true;                                 ///< "Use Die Bitmaps"
  bool drawDice = true;                                      ///< "Draw Dice"
  int dieFontSize = 16;                                      ///< "Die Font Size"
  bool alwaysOnTop = false;                                  ///< "Always On Top"
  bool playSoundEffects = true;                              ///< "Play Sound Effects"
  std::string screenPosition = "-1 -1 -1 -1";  ///< "Screen Position": left top right bottom

  /// Reads the section; a missing key keeps its default, and a Die Font Size that isn't a size
  /// keeps 16 (see parseDieFontSize).
  static DieRollerSettings load(const Settings& settings);
  /// Writes the remembered specifications as dieroll1... and clears up to 10 old keys behind
  /// the list's end.
  void saveRemembered(Settings& settings) const;
  /// Writes the quick buttons' captions, the flags, the font size and the screen position.
  void saveWindow(Settings& settings) const;
};

/// The die font size typed by the user: a whole number from 6 to 72. Otherwise shows "The font
/// size for the die is incorrectly formatted, too small or too large." titled "Incorrect Die
/// Size" and gives nullopt.
std::optional<int> parseDieFontSize(std::string_view text);

/// What a roll shows.
struct RollOutcome {
  std::string result;          ///< the result box
  std::string bodyLine;        ///< the line under it: the result, with " / %d BODY" when asked
  std::string sound;           ///< the sound file to play; empty when sounds are off
  std::vector<DieRoll> rolls;  ///< the dice panel
};

class DieRollerSession {
 public:
  explicit DieRollerSession(DieRollerSettings settings) : settings_(std::move(settings)) {
    history_.setRemembered(settings_.remembered);
  }

  /// A roll in the window: the present result goes onto the past results, the specification is
  /// evaluated, and on success the outcome shows and the specification is remembered (not for a
  /// quick button). Nullopt for an empty specification, a failure (its box was shown; the old
  /// result stays) or an empty result.
  std::optional<RollOutcome> roll(std::string_view dice, bool quickButton = false);

  /// A script's roll (the `dieroller` statement): the dice panel is turned on, then the roll.
  /// The result text, or nullopt.
  std::optional<std::string> rollForScript(std::string_view dice);

  /// Shift with a quick button: the specification box's text becomes its caption (1 to 10).
  /// False for an empty text or a button out of range.
  bool setButtonCaption(int button, std::string_view dice);
  /// Removes remembered specification `index`.
  void forget(std::size_t index);

  const std::string& result() const { return result_; }
  const RollHistory& history() const { return history_; }
  /// The settings with the present remembered list.
  DieRollerSettings settings() const;

 private:
  DieRollerSettings settings_;
  RollHistory history_;
  std::string result_;
};

}  // namespace zv
