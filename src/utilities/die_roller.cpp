#include "utilities/die_roller.h"

#include <algorithm>
#include <cctype>
#include <optional>

#include "core/messages.h"
#include "core/random.h"
#include "core/strfmt.h"

namespace zv {

namespace {

constexpr std::int32_t kMaxDieValue = 32767;
constexpr std::int32_t kMaxKeepDice = 1000;
constexpr std::int32_t kMaxChooseRange = 1000;
constexpr std::int32_t kMaxDeck = 54;
constexpr std::size_t kMaxDrawName = 9;

/// Arithmetic of the accumulator, which is a 32-bit integer that wraps around.
std::int32_t wrap(std::int64_t value) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::uint64_t>(value)));
}

std::int32_t rollDie(DieSpec sides) {
  return randomNumber() % sides.size + sides.offset + 1;
}

enum class DealKind { Sum, List, Cards };

class SpecEvaluator {
 public:
  SpecEvaluator(std::string_view text, std::vector<DieRoll>* rolls, long& diceRolled)
      : text_(text), rolls_(rolls), diceRolled_(diceRolled) {}

  /// Evaluates the whole text into `result`; false after a shown failure.
  bool run(std::string& result) {
    std::int32_t accumulator = 0;
    if (!readTerm(accumulator)) return false;
    for (;;) {
      const char c = lower(peek());
      if (c == '+' || c == '-' || c == 'x') {
        ++position_;
        std::int32_t term = 0;
        if (!readTerm(term)) return false;
        const std::int64_t a = accumulator;
        accumulator = c == '+' ? wrap(a + term) : c == '-' ? wrap(a - term) : wrap(a * term);
      } else if (c == '>' || c == '<' || c == '=' || c == '#') {
        const int relation = readRelation();
        std::int32_t term = 0;
        if (!readTerm(term)) return false;
        accumulator = compare(relation, accumulator, term) ? 1 : 0;
      } else if (c == ';') {
        ++position_;
        result += strprintf("%d; ", accumulator);
        separate();
        if (!readTerm(accumulator)) return false;
      } else if (c == '*') {
        ++position_;
        return repeat(accumulator, result);
      } else if (c == 'u' || c == 'p') {
        ++position_;
        const DieSpec sides = readDieSize();
        if (!failure_.empty()) return false;
        std::string dealt;
        std::int32_t ignored = 0;
        if (!deal(accumulator, sides, c == 'p' ? DealKind::Cards : DealKind::List, ignored,
                  dealt)) {
          return false;
        }
        result += dealt;
        if (position_ >= text_.size()) return true;
        if (peek() == ';') ++position_;
        result += "; ";
        if (!readTerm(accumulator)) return false;
      } else {
        result += strprintf("%d", accumulator);
        return true;
      }
    }
  }

 private:
  static char lower(char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  char peek() const { return position_ < text_.size() ? text_[position_] : '\0'; }
  bool atDigit() const { return std::isdigit(static_cast<unsigned char>(peek())) != 0; }

  bool fail(std::string_view title, std::string text) {
    failure_ = std::move(text);
    showTitled(Severity::Error, title, failure_);
    return false;
  }

  /// A run of digits; an absent number reads 0. False past 32767.
  bool readNumber(std::int32_t& out) {
    out = 0;
    while (atDigit()) {
      out = out * 10 + (peek() - '0');
      ++position_;
      if (out > kMaxDieValue) {
        return fail("Number Too Large", "Die values cannot be greater than 32767.");
      }
    }
    return true;
  }

  /// The die size after "d", "c", "u" or "p".
  DieSpec readDieSize() {
    DieSpec sides;
    if (peek() == '0') {
      sides.size = 1;
      sides.offset = -1;
      int zeros = 0;
      while (peek() == '0') {
        ++position_;
        // Ten to the ninth is the largest power that a 32-bit size holds.
        if (++zeros <= 9) sides.size *= 10;
      }
      if (!atDigit()) return sides;
      if (!readNumber(sides.size)) return sides;
      if (sides.size == 1) sides.size = 2;
      return sides;
    }
    if (atDigit()) {
      if (!readNumber(sides.size)) return sides;
      if (sides.size == 1) {
        sides.size = 2;
        sides.offset = -1;
      }
      // "d0..." is taken above, so a size read here is at least 1; a size of 0 can't arise.
      return sides;
    }
    if (lower(peek()) == 'f') {
      ++position_;
      sides.size = 3;
      sides.offset = -2;
    }
    return sides;
  }

  bool countDice(std::int64_t count) {
    diceRolled_ += count;
    if (diceRolled_ > kMaxDicePerSpecification) {
      return fail("Too Many Dice",
                  strprintf("More than %ld dice may not be rolled in one specification.",
                            kMaxDicePerSpecification));
    }
    return true;
  }

  void show(const DieRoll& roll) {
    if (rolls_ != nullptr) rolls_->push_back(roll);
  }

  void separate() { show(DieRoll{-1, 0, 0, false}); }

  bool readTerm(std::int32_t& value) {
    std::int32_t n = 0;
    if (!readNumber(n)) return false;
    const char c = lower(peek());
    if (c == ':') {
      ++position_;
      std::int32_t m = 0;
      if (!readNumber(m)) return false;
      if (lower(peek()) != 'd') {
        return fail("Illegal Die Specification",
                    "Die size missing after dice to total and dice to roll.");
      }
      ++position_;
      const DieSpec sides = readDieSize();
      if (!failure_.empty()) return false;
      if (m > kMaxKeepDice) return fail("Too Many Dice", "More than 1000 dice may not be rolled.");
      if (m < n) {
        return fail("Illegal Die Specification",
                    "Number of dice to total is greater than dice rolled.");
      }
      return keepHighest(n, m, sides, value);
    }
    if (c == 'd') {
      ++position_;
      if (n == 0) n = 1;
      const DieSpec sides = readDieSize();
      if (!failure_.empty()) return false;
      const char suffix = peek();
      std::int32_t threshold = 0;
      if (suffix == '!' || suffix == '~') {
        ++position_;
        if (!readNumber(threshold)) return false;
      }
      if (!countDice(n)) return false;
      std::int64_t total = 0;
      for (std::int32_t i = 0; i < n; ++i) {
        const std::int32_t die = rollDie(sides);
        show(DieRoll{sides.size, sides.offset, die, false});
        if (suffix == '!') {
          total += die >= threshold ? 1 : 0;
        } else if (suffix == '~') {
          total += die == threshold ? 1 : 0;
        } else {
          total += die;
        }
      }
      value = wrap(total);
      return true;
    }
    if (c == 'c') {
      ++position_;
      if (n == 0) n = 1;
      const DieSpec sides = readDieSize();
      if (!failure_.empty()) return false;
      std::string ignored;
      return deal(n, sides, DealKind::Sum, value, ignored);
    }
    value = n;
    return true;
  }

  /// The best `keep` of `count` dice, kept highest first with ties in the order rolled.
  bool keepHighest(std::int32_t keep, std::int32_t count, DieSpec sides, std::int32_t& value) {
    value = 0;
    if (count < 1 || sides.size < 1) return true;
    if (!countDice(count)) return false;
    std::vector<std::int32_t> dice;
    for (std::int32_t i = 0; i < count; ++i) {
      const std::int32_t die = rollDie(sides);
      auto place =
          std::find_if(dice.begin(), dice.end(), [die](std::int32_t d) { return die > d; });
      dice.insert(place, die);
    }
    std::int64_t sum = 0;
    for (std::int32_t i = 0; i < keep && i < count; ++i)
      sum += dice[static_cast<std::size_t>(i)];
    for (std::int32_t die : dice)
      show(DieRoll{sides.size, sides.offset, die, false});
    value = wrap(sum);
    return true;
  }

  /// `count` different numbers of a die: summed, or listed by name in `text`.
  bool deal(std::int32_t count, DieSpec sides, DealKind kind, std::int32_t& sum,
            std::string& text) {
    const std::string form = strprintf("%dc%d", count, sides.size);
    if (sides.size > kMaxChooseRange) {
      return fail("Range Too Large",
                  strprintf("The choose specification %s is illegal. The limit on the range is "
                            "1000.",
                            form));
    }
    if (count > sides.size) {
      return fail("Inconsistent Values",
                  strprintf("The choose specification %s is illegal. The number to choose is "
                            "greater than the range.",
                            form));
    }
    if (count < 1) {
      sum = 0;
      return true;
    }
    if (!countDice(count)) return false;
    std::vector<std::int32_t> remaining(static_cast<std::size_t>(sides.size));
    for (std::int32_t i = 0; i < sides.size; ++i)
      remaining[static_cast<std::size_t>(i)] = i + 1;
    std::int64_t total = 0;
    const bool cards = kind == DealKind::Cards;
    for (std::int32_t i = 0; i < count; ++i) {
      const std::size_t index = static_cast<std::size_t>(randomNumber()) % remaining.size();
      const std::int32_t draw = remaining[index] + sides.offset;
      remaining.erase(remaining.begin() + static_cast<long>(index));
      show(DieRoll{sides.size, sides.offset, draw, cards});
      total += draw;
      if (kind != DealKind::Sum) {
        if (i > 0) text += ',';
        text += drawName(draw, sides, cards).substr(0, kMaxDrawName);
      }
    }
    sum = wrap(total);
    return true;
  }

  /// The relation at the position: 1 <, 2 <=, 3 =, 4 >=, 5 >, 6 not equal.
  int readRelation() {
    const char c = text_[position_++];
    const char next = peek();
    if (c == '<' && next == '=') return ++position_, 2;
    if (c == '<' && next == '>') return ++position_, 6;
    if (c == '>' && next == '=') return ++position_, 4;
    if (c == '<') return 1;
    if (c == '>') return 5;
    if (c == '=') return 3;
    return 6;
  }

  static bool compare(int relation, std::int32_t a, std::int32_t b) {
    switch (relation) {
      case 1:
        return a < b;
      case 2:
        return a <= b;
      case 3:
        return a == b;
      case 4:
        return a >= b;
      case 5:
        return a > b;
      default:
        return a != b;
    }
  }

  /// The rest of the text evaluated `times` times on its own, the texts joined by ",".
  bool repeat(std::int32_t times, std::string& result) {
    const std::string_view rest = text_.substr(position_);
    for (std::int32_t i = 0; i < times; ++i) {
      // Each pass counts like a die, so that nested repeats of plain numbers stay bounded too.
      if (!countDice(1)) return false;
      std::string piece;
      SpecEvaluator inner(rest, rolls_, diceRolled_);
      if (!inner.run(piece)) return false;
      if (i > 0) result += ',';
      result += piece;
    }
    return true;
  }

  std::string_view text_;
  std::size_t position_ = 0;
  std::vector<DieRoll>* rolls_;
  long& diceRolled_;
  std::string failure_;
};

}  // namespace

bool evaluateDiceText(std::string_view diceText, std::string& result, std::vector<DieRoll>* rolls) {
  std::string text;
  for (char c : diceText) {
    if (c != ' ') text += c;
  }
  result.clear();
  long diceRolled = 0;
  SpecEvaluator evaluator(text, rolls, diceRolled);
  return evaluator.run(result);
}

std::string drawName(std::int32_t value, DieSpec sides, bool isCard) {
  if (!isCard) {
    if (sides.size == 3 && sides.offset == -2) return value < 0 ? "-" : value == 0 ? "0" : "+";
    return strprintf("%d", value);
  }
  static constexpr const char* kRanks[] = {"2", "3",  "4", "5", "6", "7", "8",
                                           "9", "10", "J", "Q", "K", "A"};
  const std::int32_t deck = std::min(sides.size, kMaxDeck);
  std::int32_t v = value - sides.offset;
  if (deck < 1) return strprintf("%d", value);
  if (v > deck) v %= deck;
  // A draw that is a whole number of decks stands for the deck's last card.
  if (v < 1) v = deck;
  const std::int32_t jokers = deck % 4;
  const std::int32_t perSuit = (deck - jokers) / 4;
  if (v <= 4 * perSuit) {
    const char suit = "SCHD"[(v - 1) / perSuit];
    return std::string(kRanks[13 - perSuit + (v - 1) % perSuit]) + suit;
  }
  if (jokers == 1) return "J";
  return strprintf("J%d", v - 4 * perSuit);
}

std::string bodyText(std::string_view result, const std::vector<DieRoll>& rolls) {
  bool any = false;
  int body = 0;
  for (const DieRoll& roll : rolls) {
    if (roll.size != 6 || roll.offset != 0 || roll.isCard) continue;
    any = true;
    body += roll.value == 1 ? 0 : roll.value == 6 ? 2 : 1;
  }
  if (!any) return std::string(result);
  return strprintf("%s / %d BODY", std::string(result), body);
}

std::string soundFileName(const std::vector<DieRoll>& rolls, bool showRolls) {
  std::vector<const DieRoll*> dice;
  for (const DieRoll& roll : rolls) {
    if (!roll.isSeparator()) dice.push_back(&roll);
  }
  if (!dice.empty()) {
    const DieRoll& first = *dice.front();
    const bool oneKind = std::all_of(dice.begin(), dice.end(), [&first](const DieRoll* roll) {
      return roll->size == first.size && roll->offset == first.offset;
    });
    if (oneKind &&
        std::all_of(dice.begin(), dice.end(), [](const DieRoll* r) { return r->isCard; })) {
      return "cards.wav";
    }
    if (oneKind && first.size == 2 && first.offset == -1) return "coin.wav";
  }
  const std::size_t count = showRolls ? dice.size() : 3;
  if (count <= 1) return "1die.wav";
  if (count == 2) return "2dice.wav";
  if (count == 3) return "3dice.wav";
  if (count <= 6) return "severaldice.wav";
  return "manyDice.wav";
}

std::string dieImageName(const DieRoll& roll) {
  if (roll.isCard) return drawName(roll.value, DieSpec{roll.size, roll.offset}, true);
  if (roll.size == 3 && roll.offset == -2) {
    return "dF~" + drawName(roll.value, DieSpec{roll.size, roll.offset}, false);
  }
  if (roll.offset == 0) return strprintf("d%d~%d", roll.size, roll.value);
  if (roll.offset > 0) return strprintf("d%d+%d~%d", roll.size, roll.offset, roll.value);
  return strprintf("d%d%d~%d", roll.size, roll.offset, roll.value);
}

const std::vector<std::string>& defaultQuickButtons() {
  static const std::vector<std::string> captions = {"d100", "d20", "d12", "d10", "d8",
                                                    "d6",   "d4",  "3d6", "4dF", "d00"};
  return captions;
}

void RollHistory::pushResult(std::string result) {
  if (result.empty()) return;
  if (results_.size() >= kMaxResults) results_.pop_back();
  results_.insert(results_.begin(), std::move(result));
}

bool RollHistory::remember(std::string diceText) {
  if (std::find(remembered_.begin(), remembered_.end(), diceText) != remembered_.end())
    return false;
  remembered_.insert(remembered_.begin(), std::move(diceText));
  if (remembered_.size() > kMaxRemembered) remembered_.resize(kMaxRemembered);
  return true;
}

void RollHistory::forget(std::size_t index) {
  if (index < remembered_.size()) remembered_.erase(remembered_.begin() + static_cast<long>(index));
}

void RollHistory::setRemembered(std::vector<std::string> specs) {
  remembered_ = std::move(specs);
  if (remembered_.size() > kMaxRemembered) remembered_.resize(kMaxRemembered);
}

}  // namespace zv
