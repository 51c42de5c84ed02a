#pragma once
// Answers the modal windows that desktop tests open: the test arms a handler, then runs the
// command whose window would otherwise wait for a user.

#include <QApplication>
#include <QTimer>
#include <QWidget>
#include <functional>

namespace zv::testing {

/// Runs `act` on the next modal window that opens.
inline void whenModal(std::function<void(QWidget*)> act) {
  auto* timer = new QTimer(qApp);  // owned by the application; deleted once it has fired
  QObject::connect(timer, &QTimer::timeout, timer, [timer, act] {
    if (QWidget* modal = QApplication::activeModalWidget()) {
      timer->stop();
      timer->deleteLater();
      act(modal);
    }
  });
  timer->start(5);
}

}  // namespace zv::testing
