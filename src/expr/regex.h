#pragma once
// The system's small regular expression matcher, used by strindex, replaceString, split and the
// macro processor's $$scan and $$repeat.
//
// Syntax: "^" and "$" anchor at the start and end of the text (anywhere in the pattern), "."
// matches any byte, "[...]" a byte of a set with ranges ("a-z") and a leading "^" for the
// complement (a leading "]" or "-" is a member, "\" has no special meaning inside), "(" ")" group
// and capture (at most 9 groups), "|" separates alternatives, "*", "+" and "?" repeat the item
// before them, "\" takes the next byte literally. Matching is case-sensitive over single bytes
// (128-255 are ordinary), leftmost, the first alternative that leads to a match wins, and
// repetition is greedy with backtracking.

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "expr/regex_program.h"

namespace zv {

/// The result of a search. Group 0 is the whole match, groups 1-9 the parenthesised parts; a
/// group that took no part in the match (or any group when nothing matched) is {-1, -1}.
struct RegexMatch {
  using Span = std::pair<long, long>;  // start and end offset into the searched text

  bool matched = false;
  /// The work limit ran out before an answer was found; the search counts as no match.
  bool exhausted = false;
  /// A fault of the matcher itself ("corrupted program", "NULL parameter", "internal foulup");
  /// the search counts as no match. Null when there was none.
  const char* error = nullptr;
  std::array<Span, 10> groups = unsetGroups();

  long start() const { return groups[0].first; }
  long end() const { return groups[0].second; }
  /// The text of group `n` in `text` (the text that was searched); empty when unset.
  std::string_view group(std::string_view text, int n) const;

  static constexpr std::array<Span, 10> unsetGroups() {
    std::array<Span, 10> spans{};
    for (auto& span : spans)
      span = {-1, -1};
    return spans;
  }
};

/// A compiled regular expression. Immutable after compilation apart from its work limit;
/// searching is const and may run from several threads at once.
class Regex {
 public:
  static constexpr int kMaxGroups = 9;
  /// Programs of this many bytes or more are refused with "regexp too big".
  static constexpr uint32_t kProgramSizeLimit = 32767;
  /// Instructions a single search may run before it gives up (see RegexMatch::exhausted).
  static constexpr long kDefaultStepLimit = 10'000'000;

  /// Compiles `pattern`. On failure returns nothing and stores the message (one of "NULL
  /// argument", "regexp too big", "out of space", "too many ()", "unmatched ()", "junk on end",
  /// "*+ operand could be empty", "nested *?+", "unmatched []", "invalid [] range", "internal
  /// urp", "?+* follows nothing", "trailing \\") in `*error` when `error` isn't null. A view with
  /// no data (a default-constructed string_view) is the missing argument; "" is the empty pattern.
  static std::optional<Regex> compile(std::string_view pattern, std::string* error);

  /// Finds the leftmost match starting at `from` or later. "^" matches only at offset 0 of
  /// `text` and "$" only at its end, whatever `from` is; a caller that wants "^" to match where
  /// the search resumes passes the rest of the text instead.
  RegexMatch search(std::string_view text, size_t from = 0) const;

  /// The number of groups in the pattern (0-9).
  int groupCount() const { return groups_; }
  /// The size of the compiled program by the measure of the size limit.
  uint32_t programSize() const { return size_; }
  void setStepLimit(long steps) { stepLimit_ = steps; }

 private:
  friend class RegexCompiler;
  Regex() = default;

  std::vector<regex_detail::Instruction> program_;
  std::vector<regex_detail::ByteSet> sets_;
  std::string literals_;
  int groups_ = 0;
  uint32_t size_ = 0;
  long stepLimit_ = kDefaultStepLimit;
  bool anchored_ = false;  // the program starts with "^": only offset 0 can match
  int firstByte_ = -1;     // the byte every match starts with, or -1
};

}  // namespace zv
