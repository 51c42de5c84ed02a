#include "ui/main_frame.h"

#include <QMdiArea>

namespace zv::ui {

MainFrame::MainFrame(QWidget* parent) : QMainWindow(parent) {
  setWindowTitle("Zarvelin");
  setCentralWidget(new QMdiArea(this));
}

}  // namespace zv::ui
