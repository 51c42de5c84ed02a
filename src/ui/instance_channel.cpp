#include "ui/instance_channel.h"

#include <unistd.h>
#include <QCryptographicHash>
#include <QLocalSocket>

#include "ui/text_codec.h"

namespace zv::ui {

namespace {

/// A request ends at the first line end; the answer is one line too.
constexpr char kEndOfRequest = '\n';
/// The longest request the channel reads: many paths, each at most a few hundred bytes.
constexpr qint64 kLongestRequest = 1 << 20;

}  // namespace

QString instanceChannelName(const std::filesystem::path& settingsFile) {
  const QByteArray where = QByteArray::fromStdString(
      std::filesystem::absolute(settingsFile).lexically_normal().string());
  const QByteArray digest =
      QCryptographicHash::hash(where, QCryptographicHash::Sha1).toHex().left(16);
  return QStringLiteral("zarvelin-%1-%2").arg(::getuid()).arg(QString::fromLatin1(digest));
}

bool sendToRunningInstance(const QString& name, const std::string& request, int timeoutMs) {
  QLocalSocket socket;
  socket.connectToServer(name);
  if (!socket.waitForConnected(timeoutMs)) return false;
  QByteArray bytes = QByteArray::fromStdString(request);
  bytes.append(kEndOfRequest);
  socket.write(bytes);
  if (!socket.waitForBytesWritten(timeoutMs)) return false;
  while (!socket.canReadLine()) {
    if (!socket.waitForReadyRead(timeoutMs)) return false;
  }
  // Any answer means the running program has the request; an error in it was shown there.
  return !socket.readLine().trimmed().isEmpty();
}

InstanceServer::InstanceServer(const QString& name, Handler handler, QObject* parent)
    : QObject(parent), handler_(std::move(handler)) {
  // Only the user may talk to the program.
  server_.setSocketOptions(QLocalServer::UserAccessOption);
  // A socket left by a program that ended without closing it would refuse the name; nobody
  // answers on it (the caller found no running program), so it can go.
  QLocalServer::removeServer(name);
  server_.listen(name);
  connect(&server_, &QLocalServer::newConnection, this, &InstanceServer::accept);
}

void InstanceServer::accept() {
  while (QLocalSocket* socket = server_.nextPendingConnection()) {
    connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
    connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
      if (!socket->canReadLine()) {
        if (socket->bytesAvailable() > kLongestRequest) socket->abort();
        return;
      }
      const std::string request = socket->readLine(kLongestRequest).trimmed().toStdString();
      // An empty request (a second start without files) only brings the program forward.
      ConversationRequest parsed = parseConversation(request);
      const int answer = request.empty() || (parsed.ok && !parsed.commands.empty()) ? 1 : -1;
      socket->write(QByteArray::number(answer) + kEndOfRequest);
      socket->flush();
      socket->disconnectFromServer();
      if (parsed.commands.empty() && !request.empty()) return;
      waiting_.push_back(std::move(parsed));
      QMetaObject::invokeMethod(this, &InstanceServer::runWaiting, Qt::QueuedConnection);
    });
  }
}

void InstanceServer::runWaiting() {
  if (running_) return;
  running_ = true;
  while (!waiting_.empty()) {
    const ConversationRequest request = std::move(waiting_.front());
    waiting_.pop_front();
    handler_(request);
  }
  running_ = false;
}

}  // namespace zv::ui
