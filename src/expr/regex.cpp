// Running a compiled regular expression: a backtracking machine with an explicit stack of choices,
// so that no text can exhaust the call stack, and a step budget, so that no pattern can hang.

#include "expr/regex.h"

#include <cstring>
#include <new>

namespace zv {

using regex_detail::ByteSet;
using regex_detail::Instruction;
using regex_detail::Op;

std::string_view RegexMatch::group(std::string_view text, int n) const {
  if (n < 0 || n >= static_cast<int>(groups.size())) return {};
  auto [from, to] = groups[static_cast<size_t>(n)];
  if (from < 0 || to < from || static_cast<size_t>(to) > text.size()) return {};
  return text.substr(static_cast<size_t>(from), static_cast<size_t>(to - from));
}

namespace {

// Entries of the choice stack: a place to go on from, a capture slot to put back, or a greedy
// repetition that may give back one more byte.
enum class ChoiceKind : unsigned char { Resume, Restore, GiveBack };

struct Choice {
  ChoiceKind kind;
  uint32_t pc;  // Resume: where to go on; Restore: the slot; GiveBack: the Repeat instruction
  long a;       // Resume: the position; Restore: the old value; GiveBack: the current end
  long b;       // GiveBack: the least end
};

// Enough for any sensible search; a bound on memory whatever the step limit is.
constexpr size_t kMaxChoices = size_t{1} << 21;

enum class Outcome { Matched, Failed, Exhausted, Fault };

class Machine {
 public:
  Machine(const std::vector<Instruction>& program, const std::vector<ByteSet>& sets,
          const std::string& literals, std::string_view text, long steps)
      : program_(program), sets_(sets), literals_(literals), text_(text), steps_(steps) {}

  // Tries a match starting exactly at `start`.
  Outcome run(long start) {
    captures_.fill(-1);
    choices_.clear();
    uint32_t pc = 0;
    long pos = start;
    const long size = static_cast<long>(text_.size());
    for (;;) {
      if (--steps_ < 0) return Outcome::Exhausted;
      const Instruction& in = program_[pc];
      bool ok = true;
      switch (in.op) {
        case Op::Byte:
        case Op::Any:
        case Op::Set:
          ok = pos < size && passes(in.op, in, text_[static_cast<size_t>(pos)]);
          ++pos;
          ++pc;
          break;
        case Op::Literal:
          ok = size - pos >= static_cast<long>(in.count) &&
               std::memcmp(text_.data() + pos, literals_.data() + in.index, in.count) == 0;
          pos += in.count;
          ++pc;
          break;
        case Op::Bol:
          ok = pos == 0;
          ++pc;
          break;
        case Op::Eol:
          ok = pos == size;
          ++pc;
          break;
        case Op::Save:
          ok = push({ChoiceKind::Restore, in.index, captures_[in.index], 0});
          captures_[in.index] = pos;
          ++pc;
          break;
        case Op::Split:
          ok = push({ChoiceKind::Resume, in.count, pos, 0});
          pc = in.index;
          break;
        case Op::Jump:
          pc = in.index;
          break;
        case Op::Repeat: {
          long end = pos;
          while (end < size && passes(in.unit, in, text_[static_cast<size_t>(end)]))
            ++end;
          long least = pos + static_cast<long>(in.count);
          ok = end >= least;
          if (ok && end > least) ok = push({ChoiceKind::GiveBack, pc, end, least});
          pos = end;
          ++pc;
          break;
        }
        case Op::Match:
          end_ = pos;
          return Outcome::Matched;
        default:
          return Outcome::Fault;
      }
      if (!ok) {
        if (overflow_) return Outcome::Exhausted;
        if (!backtrack(pc, pos)) return Outcome::Failed;
      }
    }
  }

  long matchEnd() const { return end_; }
  long capture(size_t slot) const { return captures_[slot]; }

 private:
  bool passes(Op test, const Instruction& in, char c) const {
    auto byte = static_cast<unsigned char>(c);
    switch (test) {
      case Op::Byte:
        return byte == in.byte;
      case Op::Set:
        return sets_[in.index].test(byte);
      default:
        return true;  // Op::Any
    }
  }

  bool push(const Choice& choice) {
    if (choices_.size() >= kMaxChoices) {
      overflow_ = true;
      return false;
    }
    choices_.push_back(choice);
    return true;
  }

  // Goes back to the latest open choice, putting captures back on the way.
  bool backtrack(uint32_t& pc, long& pos) {
    while (!choices_.empty()) {
      Choice choice = choices_.back();
      choices_.pop_back();
      switch (choice.kind) {
        case ChoiceKind::Restore:
          captures_[choice.pc] = choice.a;
          break;
        case ChoiceKind::Resume:
          pc = choice.pc;
          pos = choice.a;
          return true;
        case ChoiceKind::GiveBack:
          pos = choice.a - 1;
          if (pos > choice.b) choices_.push_back({ChoiceKind::GiveBack, choice.pc, pos, choice.b});
          pc = choice.pc + 1;
          return true;
      }
    }
    return false;
  }

  const std::vector<Instruction>& program_;
  const std::vector<ByteSet>& sets_;
  const std::string& literals_;
  std::string_view text_;
  long steps_;
  std::array<long, 2 * 10> captures_{};
  std::vector<Choice> choices_;
  long end_ = -1;
  bool overflow_ = false;
};

}  // namespace

RegexMatch Regex::search(std::string_view text, size_t from) const {
  RegexMatch result;
  if (program_.empty() || program_.back().op != Op::Match) {
    result.error = "corrupted program";  // e.g. a Regex whose program was moved away
    return result;
  }
  if (text.data() == nullptr) {
    result.error = "NULL parameter";
    return result;
  }
  if (from > text.size()) return result;
  try {
    Machine machine(program_, sets_, literals_, text, stepLimit_);
    for (size_t start = from; start <= text.size(); ++start) {
      if (anchored_ && start != 0) break;
      if (firstByte_ >= 0) {
        const void* found = std::memchr(text.data() + start, firstByte_, text.size() - start);
        if (!found) break;
        start = static_cast<size_t>(static_cast<const char*>(found) - text.data());
      }
      switch (machine.run(static_cast<long>(start))) {
        case Outcome::Failed:
          continue;
        case Outcome::Exhausted:
          result.exhausted = true;
          return result;
        case Outcome::Fault:
          result.error = "internal foulup";
          return result;
        case Outcome::Matched:
          result.matched = true;
          result.groups[0] = {static_cast<long>(start), machine.matchEnd()};
          for (size_t n = 1; n < result.groups.size(); ++n) {
            long open = machine.capture(2 * n);
            long close = machine.capture(2 * n + 1);
            if (open >= 0 && close >= open) result.groups[n] = {open, close};
          }
          return result;
      }
    }
  } catch (const std::bad_alloc&) {
    result.exhausted = true;
  }
  return result;
}

}  // namespace zv
