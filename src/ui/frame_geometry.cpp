#include "ui/frame_geometry.h"

#include <QGuiApplication>
#include <QScreen>

namespace zv::ui {

WindowRect windowRectOf(const QWidget& window) {
  return WindowRect{window.x(), window.y(), window.width(), window.height()};
}

void placeWindow(QWidget& window, const std::optional<WindowRect>& stored, const QRect& available) {
  if (stored && stored->width > 0 && stored->height > 0) {
    WindowRect rect = clampToScreen(*stored, available.width(), available.height());
    window.move(rect.x, rect.y);
    window.resize(rect.width, rect.height);
    return;
  }
  QSize size = available.size() * 3 / 4;
  window.resize(size);
  window.move(available.x() + (available.width() - size.width()) / 2,
              available.y() + (available.height() - size.height()) / 2);
}

QRect availableScreenArea() {
  if (QScreen* screen = QGuiApplication::primaryScreen()) return screen->availableGeometry();
  return QRect(0, 0, 1024, 768);
}

}  // namespace zv::ui
