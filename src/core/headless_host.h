#pragma once
// The host of runs without a window: the CLI, tests and fuzzers.
// Each box becomes one line "[Title] text" (CR LF shown as \n) on an output stream, and questions
// are answered from an answers list taken in order; when it runs out, the box's default is taken.

#include <cstdio>
#include <deque>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "core/host.h"

namespace zv {

class HeadlessHost : public Host {
 public:
  /// `out` receives one line per box; nullptr keeps them only in the transcript.
  explicit HeadlessHost(std::FILE* out = stderr);

  /// Reads answers from a file, one per line. Returns false if it can't be read.
  bool loadAnswers(const std::filesystem::path& file);
  void addAnswer(std::string answer);
  /// Fixes the clock (tests); without it the system clock is read.
  void setFixedTime(const LocalTime& time) { fixedTime_ = time; }
  void setPixelsPerInch(PixelsPerInch ppi) { ppi_ = ppi; }
  /// Makes sleepMs really wait; by default headless runs never wait.
  void setRealSleep(bool on) { realSleep_ = on; }
  /// Makes interruptRequested() answer true after this many polls (a step budget); -1 never.
  void setInterruptAfterPolls(long polls) { interruptAfter_ = polls; }

  /// Every line shown so far, in order.
  const std::vector<std::string>& transcript() const { return transcript_; }
  void clearTranscript() { transcript_.clear(); }
  /// Milliseconds that sleepMs was asked to wait in all.
  long sleptMs() const { return sleptMs_; }
  /// Milliseconds that waitForInput was asked to wait in all.
  long waitedForInputMs() const { return waitedForInputMs_; }

  void message(Severity severity, std::string_view title, std::string_view text) override;
  Button ask(const Question& question) override;
  std::optional<std::string> enterValue(std::string_view title, std::string_view prompt,
                                        std::string_view initial) override;
  /// Shows "[title] initial" and takes the next answer ("Cancel" cancels), else `initial`.
  std::optional<std::string> enterFileValue(std::string_view title,
                                            std::string_view initial) override;
  std::vector<int> choose(const ChoiceRequest& request) override;
  /// Shows "[title] prompt" and takes the next answer: "Cancel" cancels, an empty answer or
  /// "None" chooses nothing, else the choices named as for choose(); without an answer the
  /// initial selection.
  std::optional<std::vector<int>> chooseSome(const ChoiceRequest& request) override;
  std::vector<std::string> chooseFiles(const FileRequest& request) override;
  void progressBegin(std::string_view title, std::string_view text, int steps) override;
  bool progressStep(int done) override;
  void progressEnd() override;
  void pump() override {}
  bool interruptRequested() override;
  void setBusy(bool) override {}
  LocalTime now() override;
  void sleepMs(int milliseconds) override;
  /// Nobody presses a key here: waits like sleepMs (really only with setRealSleep).
  bool waitForInput(int milliseconds) override;
  PixelsPerInch screenPixelsPerInch() override { return ppi_; }
  ProcessResult runProcess(const std::string& commandLine, int timeoutMs) override;
  bool openWithSystem(const std::string& path) override;
  void playSound(const std::string&) override {}

  /// The one-line form of a box: "[Title] text" with line breaks shown as \n.
  static std::string lineFor(std::string_view title, std::string_view text);

 private:
  std::optional<std::string> nextAnswer();
  void emitLine(std::string line);

  std::FILE* out_;
  std::deque<std::string> answers_;
  std::vector<std::string> transcript_;
  std::optional<LocalTime> fixedTime_;
  PixelsPerInch ppi_;
  bool realSleep_ = false;
  long sleptMs_ = 0;
  long waitedForInputMs_ = 0;
  long interruptAfter_ = -1;
  long polls_ = 0;
};

}  // namespace zv
