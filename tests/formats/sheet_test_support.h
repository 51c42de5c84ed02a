#pragma once
// Shared pieces of the sheet file tests: a symbol binder that records what a file defines, and a
// fixture that reads and writes sheets in memory under a headless host with a fixed clock and
// screen.

#include <gtest/gtest.h>

#include <deque>
#include <fstream>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "core/engine_context.h"
#include "core/game_systems.h"
#include "core/headless_host.h"
#include "core/host.h"
#include "core/numbers.h"
#include "core/text.h"
#include "formats/sheet/sheet_reader.h"
#include "formats/sheet/sheet_symbols.h"
#include "formats/sheet/sheet_writer.h"

namespace zv::testing {

/// Records every definition; the symbols it hands out are opaque tokens that name the variable.
class RecordingBinder : public SheetSymbolBinder {
 public:
  struct Definition {
    std::string kind;
    std::string name;
    std::string body;
  };

  std::vector<Definition> definitions;
  std::map<std::string, double> numbers;  ///< setNumber, by variable name
  std::set<std::string> failing;          ///< names whose definition fails
  int tablesCreated = 0;
  int tablesFreed = 0;
  bool reading = false;
  int readingSwitches = 0;

  void createTable(FileInfo&) override { ++tablesCreated; }
  void freeTable(FileInfo&) override { ++tablesFreed; }
  void setReading(bool on) override {
    reading = on;
    ++readingSwitches;
  }
  Result defineVariable(FileInfo&, std::string_view name, std::string_view expression) override {
    return define("var", name, expression);
  }
  Result defineFunction(FileInfo&, std::string_view header, std::string_view body) override {
    return define("func", header, body);
  }
  Result defineArray(FileInfo&, std::string_view header, std::string_view body) override {
    return define("array", header, body);
  }
  bool setNumber(FileInfo&, Symbol& symbol, double value) override {
    numbers[*reinterpret_cast<std::string*>(&symbol)] = value;
    return true;
  }
  bool isDefined(FileInfo&, std::string_view name) override {
    for (const Definition& d : definitions)
      if (equalsIgnoringCase(d.name, name)) return true;
    return false;
  }
  /// Sums of whole numbers ("2+3"); anything else is an error.
  std::optional<std::string> evaluateText(FileInfo&, std::string_view expression,
                                          std::string& error) override {
    long sum = 0;
    for (const std::string& term : split(expression, '+')) {
      if (term.empty() || term.find_first_not_of("0123456789") != std::string::npos) {
        error = "Symbol undefined";
        return std::nullopt;
      }
      sum += leadingInteger(term);
    }
    return std::to_string(sum);
  }

  /// The body of the last definition of that name; "?" when there is none.
  std::string bodyOf(std::string_view name) const {
    for (auto it = definitions.rbegin(); it != definitions.rend(); ++it)
      if (it->name == name) return it->body;
    return "?";
  }
  /// The variable a symbol stands for.
  static std::string nameOf(const Symbol* symbol) {
    return symbol == nullptr ? std::string() : *reinterpret_cast<const std::string*>(symbol);
  }

 private:
  Result define(std::string kind, std::string_view name, std::string_view body) {
    if (failing.contains(std::string(name))) return {false, nullptr, "Incomplete expression"};
    definitions.push_back({std::move(kind), std::string(name), std::string(body)});
    slots_.emplace_back(name);
    return {true, reinterpret_cast<Symbol*>(&slots_.back()), {}};
  }

  std::deque<std::string> slots_;
};

/// The head of a minimal sheet; `body` follows it and the file ends with `end`.
inline std::string sheetText(std::string_view body) {
  return std::string("\"Character Sheet file v. 1\" gamesystem Tiny version 253 level 1\n") +
         std::string(body) + "\nend\n";
}

inline std::string readFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream data;
  data << in.rdbuf();
  return data.str();
}

class SheetFixture : public ::testing::Test {
 protected:
  SheetFixture() {
    host.setFixedTime({2024, 5, 6, 7, 8, 9, true});
    host.setPixelsPerInch({96, 96});
  }
  void SetUp() override {
    clearGameSystems();
    engine().preferences.levelWarnings = true;
  }
  void TearDown() override {
    sheet.reset();
    clearGameSystems();
  }

  /// Reads `data` as a sheet (fileType 1) or template (2) named after the type.
  bool read(const std::string& data, int fileType = 1, SheetReadOptions options = {}) {
    sheet = std::make_unique<FileInfo>(fileType, fileType == 2 ? "tiny.cst" : "tiny.chr",
                                       fileType == 2 ? "/data/tiny.cst" : "/data/tiny.chr");
    if (options.symbols == nullptr) options.symbols = &binder;
    MemoryByteStream input(data);
    return readCharsheet(*sheet, input, options);
  }

  /// Writes the current sheet; the output bytes, or "" after a failure.
  std::string write(bool binary) {
    MemoryByteStream output;
    SheetWriteOptions options;
    options.binary = binary;
    int result = writeCharsheet(*sheet, output, options);
    return result == kWriteOk ? output.data() : std::string();
  }

  const std::vector<std::string>& messages() const { return host.transcript(); }
  ListInfo& list(std::size_t index) { return *sheet->lists.at(index); }
  Item& item(std::size_t listIndex, std::size_t itemIndex) {
    return *sheet->lists.at(listIndex)->items.at(itemIndex);
  }

  HeadlessHost host{nullptr};
  HostInstallation installed{host};
  RecordingBinder binder;
  std::unique_ptr<FileInfo> sheet;
};

}  // namespace zv::testing
