#pragma once
// Running script text in tests: a headless host that keeps every box, a blank sheet or a sample
// character of Hollowmark, and the variables that a run leaves in its context.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "core/engine_context.h"
#include "core/game_systems.h"
#include "core/headless_host.h"
#include "expr/symbols.h"
#include "formats/file_recognition.h"
#include "formats/sheet_document.h"
#include "script/entry/runs.h"
#include "script/state/script_run.h"

namespace zv::script::testing {

inline const std::string kSampleData = ZV_SAMPLE_DATA_DIR;

class ScriptTest : public ::testing::Test {
 protected:
  ScriptTest() : host_(nullptr), installed_(host_) {
    dataDir_ = std::filesystem::temp_directory_path() /
               ("zv-script-" + std::to_string(::getpid()) + "-" + std::to_string(++counter()));
    std::filesystem::create_directories(dataDir_);
    environment.dataDir = dataDir_;
    engineContext_->dataSheets.dataDir = kSampleData;
  }
  ~ScriptTest() override {
    std::error_code error;
    std::filesystem::remove_all(dataDir_, error);
  }

  static int& counter() {
    static int count = 0;
    return count;
  }

  /// An empty sheet of game system "Tiny" with a table for its variables.
  FileInfo& blankSheet() {
    if (!blank_) {
      blank_ = std::make_unique<FileInfo>(kFileCharacterSheet, "blank", "");
      blank_->gameSystemName = "Tiny";
      blank_->gameSystem = &findOrCreateGameSystem("Tiny");
      blank_->symbols = std::make_shared<SymbolTable>();
      blank_->symbols->owner = blank_.get();
    }
    return *blank_;
  }

  /// A sample character of Hollowmark, opened (with its data sheets) from the sample data.
  FileInfo& character(const std::string& name) {
    DocumentContext context;
    context.dataDir = kSampleData;
    sheet_ = openSheetFile(kSampleData + "/characters/" + name + ".chr", context);
    EXPECT_TRUE(sheet_ != nullptr) << lines();
    host_.clearTranscript();
    return *sheet_;
  }

  /// Runs script statements (no header) on the sheet as a menu run labelled "t.scp"; the
  /// context stays for variable().
  bool run(FileInfo& sheet, const std::string& body) {
    lastOutcome = runMenuScript(environment, sheet, "t.scp", body, 0, 1, subroutines, context_);
    return lastOutcome.completed;
  }
  bool run(const std::string& body) { return run(blankSheet(), body); }

  /// Forgets the context and subroutines that menu runs keep, as for a script of its own.
  void freshRun() {
    subroutines.clear();
    context_.reset();
    host_.clearTranscript();
  }

  /// Writes a file into the run's data directory.
  void writeFile(const std::string& name, const std::string& text) {
    std::ofstream(dataDir_ / name, std::ios::binary) << text;
  }

  /// A variable of the context as text ("(none)" when absent), strings in double quotes.
  std::string variable(const std::string& name) const {
    if (!context_) return "(none)";
    const Symbol* symbol = context_->find(name);
    if (symbol == nullptr || symbol->undefined()) return "(none)";
    if (symbol->value.isString()) return "\"" + symbol->value.text() + "\"";
    return valueToText(symbol->value);
  }

  /// The boxes shown, one line each: "[Title] text" with line breaks as \n.
  std::string lines() const {
    std::string out;
    for (const std::string& line : host_.transcript())
      out += line + "\n";
    return out;
  }
  std::string firstLine() const {
    return host_.transcript().empty() ? "" : host_.transcript().front();
  }
  void answer(const std::string& text) { host_.addAnswer(text); }
  HeadlessHost& host() { return host_; }
  EngineContext& engineContext() { return engineContext_.context(); }

  ScriptEnvironment environment;
  SubroutineList subroutines;
  RunOutcome lastOutcome;

 private:
  ScopedEngineContext engineContext_;
  HeadlessHost host_;
  HostInstallation installed_;
  std::filesystem::path dataDir_;
  std::unique_ptr<FileInfo> blank_;
  std::unique_ptr<FileInfo> sheet_;
  std::unique_ptr<SymbolTable> context_;
};

}  // namespace zv::script::testing
