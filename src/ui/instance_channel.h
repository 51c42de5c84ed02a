#pragma once
// One running program per settings file: a second start hands the files it was given to the
// running program as a conversation request over a local socket, and ends, so that one window
// holds them all. The running program answers at once, 1 when it took the request and -1 when
// the request had an error, and then runs the commands before any error, so that no box it shows
// keeps the second start waiting.

#include <QLocalServer>
#include <QObject>
#include <QString>
#include <deque>
#include <filesystem>
#include <functional>
#include <string>

#include "core/conversation.h"

namespace zv::ui {

/// The socket name of the program whose settings are in `settingsFile`: one per user and settings
/// file, so that a program run on other settings (a test, a second installation) stays apart.
QString instanceChannelName(const std::filesystem::path& settingsFile);

/// Sends a request to the running program on that channel and waits for its answer. True when a
/// program took it; false when none listens (or it didn't answer within `timeoutMs`).
bool sendToRunningInstance(const QString& name, const std::string& request, int timeoutMs = 5000);

/// The running program's end: listens on the channel and runs each request it receives.
class InstanceServer : public QObject {
  Q_OBJECT

 public:
  /// Runs the commands of a request (none for a start without files, which only brings the
  /// program forward).
  using Handler = std::function<void(const ConversationRequest& request)>;

  InstanceServer(const QString& name, Handler handler, QObject* parent = nullptr);
  /// False when the channel could not be opened (the program then runs on alone).
  bool listening() const { return server_.isListening(); }

 private:
  void accept();
  /// Runs the waiting requests in the order they came, one at a time: a request whose commands
  /// let the user interface run (a box, a load's progress) finishes before the next begins.
  void runWaiting();

  QLocalServer server_;
  Handler handler_;
  std::deque<ConversationRequest> waiting_;
  bool running_ = false;
};

}  // namespace zv::ui
