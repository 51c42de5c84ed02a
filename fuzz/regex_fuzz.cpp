// Compiles the first part of the input as a regular expression and searches the rest with it,
// once from the start and then match after match as split and replaceString walk a text. Nothing
// may crash, hang or read out of bounds, and every reported span must lie inside the text.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "expr/regex.h"

namespace {

// Keeps each input quick even under the sanitizers; the limit itself is what is tested.
constexpr long kStepLimit = 200'000;
constexpr int kMaxMatches = 64;

void check(bool condition) {
  if (!condition) __builtin_trap();
}

void checkSpans(const zv::RegexMatch& match, std::string_view text) {
  if (!match.matched) {
    for (const auto& span : match.groups)
      check(span.first == -1 && span.second == -1);
    return;
  }
  for (const auto& [from, to] : match.groups) {
    if (from == -1) {
      check(to == -1);
      continue;
    }
    check(from >= 0 && from <= to && static_cast<size_t>(to) <= text.size());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view input(reinterpret_cast<const char*>(data), size);
  size_t cut = input.find('\0');
  std::string_view pattern =
      cut == std::string_view::npos ? input.substr(0, size / 2) : input.substr(0, cut);
  std::string_view text =
      cut == std::string_view::npos ? input.substr(size / 2) : input.substr(cut + 1);
  // Owned copies, so that an empty part still has data and no read can run past the part.
  std::string patternCopy(pattern);
  std::string textCopy(text);

  std::string error;
  std::optional<zv::Regex> regex = zv::Regex::compile(patternCopy, &error);
  if (!regex) {
    check(!error.empty());
    return 0;
  }
  check(regex->groupCount() >= 0 && regex->groupCount() <= zv::Regex::kMaxGroups);
  check(regex->programSize() < zv::Regex::kProgramSizeLimit);
  regex->setStepLimit(kStepLimit);

  size_t from = 0;
  for (int n = 0; n < kMaxMatches && from <= textCopy.size(); ++n) {
    zv::RegexMatch match = regex->search(textCopy, from);
    check(match.error == nullptr);
    checkSpans(match, textCopy);
    if (!match.matched) break;
    check(static_cast<size_t>(match.start()) >= from);
    // An empty match moves on by one byte, as the callers do.
    from = static_cast<size_t>(match.end()) + (match.end() == match.start() ? 1 : 0);
  }
  return 0;
}
