#include "utilities/die_roller_session.h"

#include <charconv>

#include "core/messages.h"
#include "core/strfmt.h"
#include "core/text.h"

namespace zv {

namespace {

constexpr std::string_view kSection = "Die Roller";
constexpr int kSmallestFont = 6;
constexpr int kLargestFont = 72;
constexpr int kOldKeysCleared = 10;

bool readFlag(const Settings& settings, std::string_view key, bool defaultValue) {
  return settings.getInt(kSection, key, defaultValue ? 1 : 0) != 0;
}

void writeFlag(Settings& settings, std::string_view key, bool on) {
  settings.setInt(kSection, key, on ? 1 : 0);
}

}  // namespace

std::optional<int> parseDieFontSize(std::string_view text) {
  const std::string trimmed = trim(text);
  int size = 0;
  const auto [end, error] = std::from_chars(trimmed.data(), trimmed.data() + trimmed.size(), size);
  if (trimmed.empty() || error != std::errc() || end != trimmed.data() + trimmed.size() ||
      size < kSmallestFont || size > kLargestFont) {
    showTitled(Severity::Error, "Incorrect Die Size",
               "The font size for the die is incorrectly formatted, too small or too large.");
    return std::nullopt;
  }
  return size;
}

DieRollerSettings DieRollerSettings::load(const Settings& settings) {
  DieRollerSettings loaded;
  for (int i = 0; i < kQuickButtons; ++i) {
    const std::string key = strprintf("dierollbutton%d", i + 1);
    std::string caption = settings.getString(kSection, key, loaded.buttons[static_cast<size_t>(i)]);
    if (!caption.empty()) loaded.buttons[static_cast<size_t>(i)] = std::move(caption);
  }
  for (int i = 1;; ++i) {
    std::string dice = settings.getString(kSection, strprintf("dieroll%d", i), "");
    if (dice.empty()) break;
    loaded.remembered.push_back(std::move(dice));
  }
  loaded.showBody = readFlag(settings, "Show BODY", false);
  loaded.showRolls = readFlag(settings, "Show Rolls", true);
  loaded.drawD6Pips = readFlag(settings, "Draw D6 Pips", true);
  loaded.useDieBitmaps = readFlag(settings, "Use Die Bitmaps", true);
  loaded.drawDice = readFlag(settings, "Draw Dice", true);
  const long fontSize = settings.getInt(kSection, "Die Font Size", 16);
  if (fontSize >= kSmallestFont && fontSize <= kLargestFont) {
    loaded.dieFontSize = static_cast<int>(fontSize);
  }
  loaded.alwaysOnTop = readFlag(settings, "Always On Top", false);
  loaded.playSoundEffects = readFlag(settings, "Play Sound Effects", true);
  loaded.screenPosition = settings.getString(kSection, "Screen Position", "-1 -1 -1 -1");
  return loaded;
}

void DieRollerSettings::saveRemembered(Settings& settings) const {
  const int count = static_cast<int>(remembered.size());
  for (int i = 0; i < count; ++i) {
    settings.setString(kSection, strprintf("dieroll%d", i + 1), remembered[static_cast<size_t>(i)]);
  }
  for (int i = count + 1; i <= count + kOldKeysCleared; ++i) {
    settings.remove(kSection, strprintf("dieroll%d", i));
  }
}

void DieRollerSettings::saveWindow(Settings& settings) const {
  for (int i = 0; i < kQuickButtons && i < static_cast<int>(buttons.size()); ++i) {
    settings.setString(kSection, strprintf("dierollbutton%d", i + 1),
                       buttons[static_cast<size_t>(i)]);
  }
  writeFlag(settings, "Show BODY", showBody);
  writeFlag(settings, "Show Rolls", showRolls);
  writeFlag(settings, "Draw D6 Pips", drawD6Pips);
  writeFlag(settings, "Use Die Bitmaps", useDieBitmaps);
  writeFlag(settings, "Draw Dice", drawDice);
  settings.setInt(kSection, "Die Font Size", dieFontSize);
  writeFlag(settings, "Always On Top", alwaysOnTop);
  writeFlag(settings, "Play Sound Effects", playSoundEffects);
  settings.setString(kSection, "Screen Position", screenPosition);
}

std::optional<RollOutcome> DieRollerSession::roll(std::string_view dice, bool quickButton) {
  if (dice.empty()) return std::nullopt;
  history_.pushResult(result_);
  RollOutcome outcome;
  if (!evaluateDiceText(dice, outcome.result, &outcome.rolls)) return std::nullopt;
  if (outcome.result.empty()) return std::nullopt;
  if (settings_.playSoundEffects) outcome.sound = soundFileName(outcome.rolls, settings_.showRolls);
  outcome.bodyLine = settings_.showBody ? bodyText(outcome.result, outcome.rolls) : outcome.result;
  result_ = outcome.result;
  if (!quickButton) history_.remember(std::string(dice));
  return outcome;
}

std::optional<std::string> DieRollerSession::rollForScript(std::string_view dice) {
  settings_.showRolls = true;
  std::optional<RollOutcome> outcome = roll(dice);
  if (!outcome) return std::nullopt;
  return outcome->result;
}

bool DieRollerSession::setButtonCaption(int button, std::string_view dice) {
  if (dice.empty() || button < 1 || button > DieRollerSettings::kQuickButtons) return false;
  settings_.buttons.resize(DieRollerSettings::kQuickButtons);
  settings_.buttons[static_cast<size_t>(button - 1)] = std::string(dice);
  return true;
}

void DieRollerSession::forget(std::size_t index) {
  history_.forget(index);
}

DieRollerSettings DieRollerSession::settings() const {
  DieRollerSettings current = settings_;
  current.remembered = history_.remembered();
  return current;
}

}  // namespace zv
