#pragma once
// The frame's rectangle as the setting "screenPos" holds it.

#include <QRect>
#include <QWidget>
#include <optional>

#include "core/window_rect.h"

namespace zv::ui {

/// The rectangle of a top-level window: the position of its frame and the size of its contents,
/// the two things that move() and resize() take back.
WindowRect windowRectOf(const QWidget& window);

/// Puts a top-level window at a stored rectangle kept reachable on the screen area `available`
/// (see clampToScreen); without one, it takes three quarters of that area, centred.
void placeWindow(QWidget& window, const std::optional<WindowRect>& stored, const QRect& available);

/// The available area of the primary screen; a plain 1024 x 768 when there is no screen.
QRect availableScreenArea();

}  // namespace zv::ui
