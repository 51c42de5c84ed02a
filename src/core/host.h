#pragma once
// The host port: everything the engine needs from the world outside it (message boxes, questions,
// choices, file dialogs, progress, message pumping, the clock, the screen, processes, sound).
// The desktop program installs a Qt implementation; headless runs use HeadlessHost.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

enum class Severity { Error, Warning, Message };

/// The title that a box of this severity carries: "Error", "Warning" or "Message".
std::string_view severityTitle(Severity severity);

enum class Button { None, Ok, Cancel, Yes, No, Abort, Retry, Ignore };

enum class ButtonSet { Ok, OkCancel, YesNo, YesNoCancel, RetryCancel, AbortRetryIgnore };

/// The buttons of a set, in the order they are shown.
std::vector<Button> buttonsOf(ButtonSet set);
std::string_view buttonName(Button button);
/// The button named by `name` ignoring case ("Yes", "cancel", "OK"); None if there is no such
/// button.
Button buttonFromName(std::string_view name);

struct Question {
  std::string title;
  std::string text;
  ButtonSet buttons = ButtonSet::YesNo;
  Button defaultButton = Button::Yes;
  Severity severity = Severity::Message;
};

/// A choice among texts: one item (or several when `multiple`), as the rules and scripts need.
struct ChoiceRequest {
  std::string title;
  std::string prompt;
  std::vector<std::string> choices;
  bool multiple = false;
  std::vector<int> initial;  ///< indices selected at the start
  /// How many entries chooseSome lets the user take: at least `minimum`, at most `maximum`
  /// (0: no upper bound).
  int minimum = 0;
  int maximum = 0;
};

struct FileFilter {
  std::string description;  ///< "Character Sheet"
  std::string patterns;     ///< "*.chr" or "*.chr;*.cst"
};

struct FileRequest {
  enum class Mode { Open, OpenMany, Save, Folder };
  Mode mode = Mode::Open;
  std::string title;
  std::string directory;
  std::string fileName;
  std::vector<FileFilter> filters;
  int filterIndex = 0;
};

/// The answer of a Save dialog: the name chosen and the index of the type (filter) it was saved
/// as.
struct SaveFileChoice {
  std::string path;
  int filterIndex = 0;
};

/// The index of the first filter whose patterns match the name's extension (ignoring case);
/// `fallback` when none does.
int filterIndexForName(const std::vector<FileFilter>& filters, std::string_view path, int fallback);

struct ProcessResult {
  bool started = false;
  bool finished = false;  ///< false when the time-out ended the wait
  int exitCode = -1;
};

struct LocalTime {
  int year = 1997, month = 1, day = 1, hour = 1, minute = 0, second = 0;
  bool valid = false;  ///< false when the clock could not be read
};

struct PixelsPerInch {
  int x = 96;
  int y = 96;
};

class Host {
 public:
  virtual ~Host() = default;

  /// A modal box with an OK button.
  virtual void message(Severity severity, std::string_view title, std::string_view text) = 0;
  /// A modal question; returns the button pressed (the default one when nobody can answer).
  virtual Button ask(const Question& question) = 0;
  /// A value typed by the user; nullopt when cancelled.
  virtual std::optional<std::string> enterValue(std::string_view title, std::string_view prompt,
                                                std::string_view initial) = 0;
  /// The file-value dialog: a file name field under `title`, starting at `initial`, with a way
  /// to browse for the file. The text in the field on OK; nullopt when cancelled.
  virtual std::optional<std::string> enterFileValue(std::string_view title,
                                                    std::string_view initial) = 0;
  /// Indices of the chosen entries; empty when cancelled.
  virtual std::vector<int> choose(const ChoiceRequest& request) = 0;
  /// A choice of several entries, within the request's minimum and maximum, where choosing none
  /// may be an answer: the indices chosen; nullopt when cancelled. By default through choose(),
  /// where nothing chosen counts as cancelled.
  virtual std::optional<std::vector<int>> chooseSome(const ChoiceRequest& request);
  /// Chosen file names; empty when cancelled.
  virtual std::vector<std::string> chooseFiles(const FileRequest& request) = 0;
  /// The Save dialog with its choice of type: the name and the type chosen; nullopt when
  /// cancelled. By default through chooseFiles, the type being the first whose pattern matches
  /// the name's extension, else the request's.
  virtual std::optional<SaveFileChoice> chooseSaveFile(const FileRequest& request);

  virtual void progressBegin(std::string_view title, std::string_view text, int steps) = 0;
  /// Reports progress; returns false when the user asked to cancel.
  virtual bool progressStep(int done) = 0;
  virtual void progressEnd() = 0;
  /// Lets the user interface handle pending events during long work.
  virtual void pump() = 0;
  /// The interrupt poll of long work (Esc or Ctrl+Break in the desktop program).
  virtual bool interruptRequested() = 0;
  virtual void setBusy(bool busy) = 0;

  virtual LocalTime now() = 0;
  virtual void sleepMs(int milliseconds) = 0;
  /// Waits up to `milliseconds` while the user interface handles events; a key press or a mouse
  /// button ends the wait early, and then the result is true (the copyright delay of a load).
  virtual bool waitForInput(int milliseconds) = 0;
  virtual PixelsPerInch screenPixelsPerInch() = 0;
  virtual ProcessResult runProcess(const std::string& commandLine, int timeoutMs) = 0;
  /// Hands a file to the program the system associates with its type.
  virtual bool openWithSystem(const std::string& path) = 0;
  virtual void playSound(const std::string& path) = 0;
  /// The short warning sound of a refused value; silent unless the host has one.
  virtual void beep() {}
};

/// The installed host. Before any installation this is a HeadlessHost writing to stderr.
Host& host();

/// Installs a host for the lifetime of this object and puts back the previous one afterwards.
class HostInstallation {
 public:
  explicit HostInstallation(Host& installed);
  ~HostInstallation();
  HostInstallation(const HostInstallation&) = delete;
  HostInstallation& operator=(const HostInstallation&) = delete;

 private:
  Host* previous_;
};

}  // namespace zv
