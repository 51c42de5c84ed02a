#pragma once

#include <QMainWindow>

namespace zv::ui {

/// The multiple-document frame of the desktop program.
class MainFrame : public QMainWindow {
  Q_OBJECT
public:
  explicit MainFrame(QWidget* parent = nullptr);
};

}  // namespace zv::ui
