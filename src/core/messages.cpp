#include "core/messages.h"

#include <filesystem>

namespace zv {

namespace {
int busyDepth = 0;
}

void showMessage(Severity severity, std::string_view text) {
  host().message(severity, severityTitle(severity), text);
}

void showTitled(Severity severity, std::string_view title, std::string_view text) {
  host().message(severity, title, text);
}

void reportInternalError(const char* file, int line) {
  std::string shortName = std::filesystem::path(file).filename().string();
  showError(strprintf(
      "Please report the following information to customer support with details of what you "
      "did:\r\n\r\nInternal error: file %s, line %d.",
      shortName, line));
}

Button askQuestion(std::string_view title, std::string_view text, ButtonSet buttons) {
  return askQuestion(title, text, buttons, buttonsOf(buttons).front());
}

Button askQuestion(std::string_view title, std::string_view text, ButtonSet buttons,
                   Button defaultButton) {
  Question q;
  q.title = std::string(title);
  q.text = std::string(text);
  q.buttons = buttons;
  q.defaultButton = defaultButton;
  return host().ask(q);
}

BusyCursor::BusyCursor() {
  if (busyDepth++ == 0) host().setBusy(true);
}

BusyCursor::~BusyCursor() {
  if (--busyDepth == 0) host().setBusy(false);
}

}  // namespace zv
