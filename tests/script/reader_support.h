#pragma once
// A script reader over a text, with the messages it reports collected in order.

#include <memory>
#include <string>
#include <vector>

#include "script/reader/script_reader.h"

namespace zv::script::testing {

struct ReaderFixture {
  explicit ReaderFixture(std::string text, std::string label = "t.scp") {
    reader = ScriptReader(ScriptPosition{makeSource(std::move(text), std::move(label))},
                          [this](std::string_view message) { messages.emplace_back(message); });
  }
  std::string firstMessage() const { return messages.empty() ? "" : messages.front(); }

  ScriptReader reader;
  std::vector<std::string> messages;
};

}  // namespace zv::script::testing
