#include "core/host.h"

#include "core/headless_host.h"
#include "core/text.h"

namespace zv {

namespace {
Host* installedHost = nullptr;

Host& fallbackHost() {
  static HeadlessHost fallback;
  return fallback;
}
}  // namespace

std::optional<std::vector<int>> Host::chooseSome(const ChoiceRequest& request) {
  std::vector<int> chosen = choose(request);
  if (chosen.empty()) return std::nullopt;
  return chosen;
}

int filterIndexForName(const std::vector<FileFilter>& filters, std::string_view path,
                       int fallback) {
  const std::size_t dot = path.rfind('.');
  const std::size_t slash = path.find_last_of("/\\");
  if (dot == std::string_view::npos || (slash != std::string_view::npos && dot < slash)) {
    return fallback;
  }
  const std::string_view extension = path.substr(dot);
  for (std::size_t i = 0; i < filters.size(); ++i) {
    for (const std::string& pattern : split(filters[i].patterns, ';')) {
      const std::string trimmed = trim(pattern);
      if (trimmed.size() > 1 && trimmed.front() == '*' &&
          equalsIgnoringCase(std::string_view(trimmed).substr(1), extension)) {
        return static_cast<int>(i);
      }
    }
  }
  return fallback;
}

std::optional<SaveFileChoice> Host::chooseSaveFile(const FileRequest& request) {
  std::vector<std::string> chosen = chooseFiles(request);
  if (chosen.empty()) return std::nullopt;
  SaveFileChoice choice;
  choice.path = chosen.front();
  choice.filterIndex = filterIndexForName(request.filters, choice.path, request.filterIndex);
  return choice;
}

std::string_view severityTitle(Severity severity) {
  switch (severity) {
    case Severity::Error:
      return "Error";
    case Severity::Warning:
      return "Warning";
    case Severity::Message:
      break;
  }
  return "Message";
}

std::vector<Button> buttonsOf(ButtonSet set) {
  switch (set) {
    case ButtonSet::Ok:
      return {Button::Ok};
    case ButtonSet::OkCancel:
      return {Button::Ok, Button::Cancel};
    case ButtonSet::YesNo:
      return {Button::Yes, Button::No};
    case ButtonSet::YesNoCancel:
      return {Button::Yes, Button::No, Button::Cancel};
    case ButtonSet::RetryCancel:
      return {Button::Retry, Button::Cancel};
    case ButtonSet::AbortRetryIgnore:
      return {Button::Abort, Button::Retry, Button::Ignore};
  }
  return {Button::Ok};
}

std::string_view buttonName(Button button) {
  switch (button) {
    case Button::None:
      return "None";
    case Button::Ok:
      return "OK";
    case Button::Cancel:
      return "Cancel";
    case Button::Yes:
      return "Yes";
    case Button::No:
      return "No";
    case Button::Abort:
      return "Abort";
    case Button::Retry:
      return "Retry";
    case Button::Ignore:
      return "Ignore";
  }
  return "None";
}

Button buttonFromName(std::string_view name) {
  for (Button b : {Button::Ok, Button::Cancel, Button::Yes, Button::No, Button::Abort,
                   Button::Retry, Button::Ignore}) {
    if (equalsIgnoringCase(name, buttonName(b))) return b;
  }
  return Button::None;
}

Host& host() {
  return installedHost ? *installedHost : fallbackHost();
}

HostInstallation::HostInstallation(Host& installed) : previous_(installedHost) {
  installedHost = &installed;
}

HostInstallation::~HostInstallation() {
  installedHost = previous_;
}

}  // namespace zv
