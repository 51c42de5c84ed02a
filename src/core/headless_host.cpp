#include "core/headless_host.h"

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <ctime>
#include <fstream>
#include <thread>

#include "core/text.h"

extern char** environ;

namespace zv {

HeadlessHost::HeadlessHost(std::FILE* out) : out_(out) {}

bool HeadlessHost::loadAnswers(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) return false;
  std::string line;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    answers_.push_back(line);
  }
  return true;
}

void HeadlessHost::addAnswer(std::string answer) {
  answers_.push_back(std::move(answer));
}

std::optional<std::string> HeadlessHost::nextAnswer() {
  if (answers_.empty()) return std::nullopt;
  std::string answer = std::move(answers_.front());
  answers_.pop_front();
  return answer;
}

std::string HeadlessHost::lineFor(std::string_view title, std::string_view text) {
  std::string line = "[";
  line.append(title);
  line += "] ";
  for (size_t i = 0; i < text.size(); ++i) {
    char c = text[i];
    if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') {
      line += "\\n";
      ++i;
    } else if (c == '\n') {
      line += "\\n";
    } else if (c == '\r') {
      line += "\\r";
    } else {
      line += c;
    }
  }
  return line;
}

void HeadlessHost::emitLine(std::string line) {
  if (out_) {
    std::fputs(line.c_str(), out_);
    std::fputc('\n', out_);
    std::fflush(out_);
  }
  transcript_.push_back(std::move(line));
}

void HeadlessHost::message(Severity, std::string_view title, std::string_view text) {
  emitLine(lineFor(title, text));
}

Button HeadlessHost::ask(const Question& question) {
  emitLine(lineFor(question.title, question.text));
  if (auto answer = nextAnswer()) {
    Button chosen = buttonFromName(trim(*answer));
    for (Button b : buttonsOf(question.buttons)) {
      if (b == chosen) return b;
    }
  }
  return question.defaultButton;
}

std::optional<std::string> HeadlessHost::enterValue(std::string_view title, std::string_view prompt,
                                                    std::string_view initial) {
  emitLine(lineFor(title, prompt));
  if (auto answer = nextAnswer()) {
    if (equalsIgnoringCase(*answer, "Cancel")) return std::nullopt;
    return answer;
  }
  return std::string(initial);
}

std::optional<std::string> HeadlessHost::enterFileValue(std::string_view title,
                                                        std::string_view initial) {
  emitLine(lineFor(title, initial));
  if (auto answer = nextAnswer()) {
    if (equalsIgnoringCase(*answer, "Cancel")) return std::nullopt;
    return answer;
  }
  return std::string(initial);
}

namespace {

/// The indices of the choices an answer names, separated by ";".
std::vector<int> namedChoices(const ChoiceRequest& request, const std::string& answer) {
  std::vector<int> picked;
  for (const std::string& part : split(answer, ';')) {
    std::string wanted = trim(part);
    for (size_t i = 0; i < request.choices.size(); ++i) {
      if (equalsIgnoringCase(request.choices[i], wanted)) {
        picked.push_back(static_cast<int>(i));
        break;
      }
    }
    if (!request.multiple && !picked.empty()) break;
  }
  return picked;
}

}  // namespace

std::optional<std::vector<int>> HeadlessHost::chooseSome(const ChoiceRequest& request) {
  emitLine(lineFor(request.title, request.prompt));
  auto answer = nextAnswer();
  if (!answer) return request.initial;
  if (equalsIgnoringCase(trim(*answer), "Cancel")) return std::nullopt;
  if (trim(*answer).empty() || equalsIgnoringCase(trim(*answer), "None")) {
    return std::vector<int>{};
  }
  return namedChoices(request, *answer);
}

std::vector<int> HeadlessHost::choose(const ChoiceRequest& request) {
  emitLine(lineFor(request.title, request.prompt));
  auto answer = nextAnswer();
  if (!answer) return request.initial;
  if (equalsIgnoringCase(*answer, "Cancel")) return {};
  return namedChoices(request, *answer);
}

std::vector<std::string> HeadlessHost::chooseFiles(const FileRequest& request) {
  emitLine(lineFor(request.title, request.fileName));
  auto answer = nextAnswer();
  if (!answer || equalsIgnoringCase(*answer, "Cancel")) return {};
  std::vector<std::string> files;
  for (const std::string& part : split(*answer, ';')) {
    if (!trim(part).empty()) files.push_back(trim(part));
  }
  return files;
}

void HeadlessHost::progressBegin(std::string_view, std::string_view, int) {}

bool HeadlessHost::progressStep(int) {
  return !interruptRequested();
}

void HeadlessHost::progressEnd() {}

bool HeadlessHost::interruptRequested() {
  if (interruptAfter_ < 0) return false;
  return ++polls_ > interruptAfter_;
}

LocalTime HeadlessHost::now() {
  if (fixedTime_) return *fixedTime_;
  std::time_t t = std::time(nullptr);
  std::tm parts{};
  LocalTime result;
  if (t == static_cast<std::time_t>(-1) || !localtime_r(&t, &parts)) return result;
  result.year = parts.tm_year + 1900;
  result.month = parts.tm_mon + 1;
  result.day = parts.tm_mday;
  result.hour = parts.tm_hour;
  result.minute = parts.tm_min;
  result.second = parts.tm_sec;
  result.valid = true;
  return result;
}

void HeadlessHost::sleepMs(int milliseconds) {
  if (milliseconds <= 0) return;
  sleptMs_ += milliseconds;
  if (realSleep_) std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

bool HeadlessHost::waitForInput(int milliseconds) {
  if (milliseconds <= 0) return false;
  waitedForInputMs_ += milliseconds;
  if (realSleep_) std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
  return false;
}

ProcessResult HeadlessHost::runProcess(const std::string& commandLine, int timeoutMs) {
  ProcessResult result;
  pid_t pid = 0;
  const char* argv[] = {"/bin/sh", "-c", commandLine.c_str(), nullptr};
  if (posix_spawn(&pid, "/bin/sh", nullptr, nullptr, const_cast<char**>(argv), environ) != 0) {
    return result;
  }
  result.started = true;
  auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
  for (;;) {
    int status = 0;
    pid_t done = waitpid(pid, &status, timeoutMs < 0 ? 0 : WNOHANG);
    if (done == pid) {
      result.finished = true;
      result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
      return result;
    }
    if (done < 0) return result;
    if (std::chrono::steady_clock::now() >= deadline) return result;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
}

bool HeadlessHost::openWithSystem(const std::string&) {
  return false;
}

}  // namespace zv
