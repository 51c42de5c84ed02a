#pragma once
// The die roller: the language of die specifications ("3d6+2", "3:4d6", "5c1000", "5p52",
// "6*3d6", "d00;4dF"), evaluated left to right without precedence, with the dice it rolled for
// the dice panel, and the texts the roller window shows around a roll (the BODY line, the sound
// file, the die image names, the lists of past results and remembered specifications).
// All dice come from the process-wide random source (core/random.h).

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

/// One rolled die or dealt card, in the order shown. A size of -1 is a separator between groups.
struct DieRoll {
  std::int32_t size = 0;
  std::int32_t offset = 0;
  std::int32_t value = 0;  ///< the face shown: from offset + 1 to offset + size
  bool isCard = false;

  bool isSeparator() const { return size == -1; }
  friend bool operator==(const DieRoll&, const DieRoll&) = default;
};

/// What a die size parses to: a die shows offset + 1 to offset + size.
struct DieSpec {
  std::int32_t size = 6;
  std::int32_t offset = 0;
};

/// The most dice that one specification may roll in all, each pass of a repeat counting as one,
/// so that no specification can keep the program busy for long.
inline constexpr long kMaxDicePerSpecification = 100000;

/// Evaluates a specification into its result text, appending the dice to `rolls` when given.
/// False after the failure was shown in a box with its title; `result` is then unspecified.
bool evaluateDiceText(std::string_view dice, std::string& result, std::vector<DieRoll>* rolls);

/// The name of a draw of a unique deal: "%d", or "-", "0", "+" for the three faces of dF; for a
/// card its rank and suit ("10S", "AH") or a joker ("J", "J1").
std::string drawName(std::int32_t value, DieSpec sides, bool isCard);

/// The BODY line: over the shown dice of size 6 and offset 0 a 1 counts 0, a 6 counts 2, others
/// 1; "%s / %d BODY" of the result and the count when there was such a die, else the result.
std::string bodyText(std::string_view result, const std::vector<DieRoll>& rolls);

/// The sound file of a roll, in the program's dice folder: "cards.wav", "coin.wav", "1die.wav",
/// "2dice.wav", "3dice.wav", "severaldice.wav" or "manyDice.wav"; `showRolls` off counts 3.
std::string soundFileName(const std::vector<DieRoll>& rolls, bool showRolls);

/// The image name of a shown die ("d6~4", "d100-1~42", "dF~+", a card's name), sought as
/// "dice\%s.jpg" under the program directory.
std::string dieImageName(const DieRoll& roll);

/// The ten quick buttons' captions when none is stored.
const std::vector<std::string>& defaultQuickButtons();

/// The lists the roller window keeps: past results (at most 11, newest first) and remembered
/// specifications (at most 10, newest first).
class RollHistory {
 public:
  static constexpr std::size_t kMaxResults = 11;
  static constexpr std::size_t kMaxRemembered = 10;

  /// Puts the present result on top of the past results (an empty one is not kept).
  void pushResult(std::string result);
  /// Puts a specification on top of the remembered ones unless it is there already (compared
  /// exactly). Returns true when the list changed.
  bool remember(std::string dice);
  /// Removes remembered specification `index`.
  void forget(std::size_t index);
  void setRemembered(std::vector<std::string> specs);

  const std::vector<std::string>& results() const { return results_; }
  const std::vector<std::string>& remembered() const { return remembered_; }

 private:
  std::vector<std::string> results_;
  std::vector<std::string> remembered_;
};

}  // namespace zv
