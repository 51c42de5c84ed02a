#pragma once
// Helpers for the macro processor tests: run a text through a fresh macro context with a headless
// host, and the one-line form of a "Macro Error" box as the host records it.

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/headless_host.h"
#include "core/numbers.h"
#include "formats/macro/macro_context.h"

namespace zv::testing {

/// The transcript line of a macro error: "[Macro Error] text\n\nAt line N".
inline std::string macroBox(std::string_view text, int line) {
  return "[Macro Error] " + std::string(text) + "\\n\\nAt line " + std::to_string(line);
}

struct MacroRun {
  std::string output;
  std::vector<std::string> boxes;
};

/// A small evaluator standing in for the expression engine: "bad..." fails; a number is itself;
/// 'text' is a text; outer parentheses are dropped; any other word is looked up (an undeclared name
/// counts as 0).
inline std::optional<Value> tinyEvaluator(std::string_view text, const MacroNameLookup& lookup) {
  while (text.size() >= 2 && text.front() == '(' && text.back() == ')') {
    text = text.substr(1, text.size() - 2);
  }
  if (text.substr(0, 3) == "bad") return std::nullopt;
  if (!text.empty() && (text[0] == '-' || (text[0] >= '0' && text[0] <= '9'))) {
    return Value(std::stoi(std::string(text)));
  }
  if (text.size() >= 2 && text.front() == '\'' && text.back() == '\'') {
    return Value(text.substr(1, text.size() - 2));
  }
  std::optional<std::string> value = lookup(text);
  return value ? Value(*value) : Value(0);
}

class MacroHarness {
 public:
  MacroHarness() : installed_(host_) {}

  /// Expands `input` fully (as from a file at `source`), returning the text and the boxes.
  MacroRun run(std::string input, const std::filesystem::path& source = {},
               const std::filesystem::path& dataDir = {}) {
    input_ = std::move(input);
    position_ = 0;
    host_.clearTranscript();
    context.macroStart(
        source,
        [this]() -> int {
          if (position_ >= input_.size()) return kEndOfFile;
          return static_cast<unsigned char>(input_[position_++]);
        },
        dataDir);
    MacroRun result;
    for (int c = context.macroNextChar(); c >= 0; c = context.macroNextChar()) {
      result.output.push_back(static_cast<char>(c));
      if (result.output.size() > 1'000'000) break;
    }
    result.boxes = host_.transcript();
    return result;
  }

  MacroContext context;

 private:
  HeadlessHost host_{nullptr};
  HostInstallation installed_;
  std::string input_;
  std::size_t position_ = 0;
};

}  // namespace zv::testing
