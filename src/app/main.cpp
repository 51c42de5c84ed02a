#include <QApplication>

#include "ui/main_frame.h"

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  zv::ui::MainFrame frame;
  frame.show();
  return app.exec();
}
