// The least a window costs: what start_up.py compares Velmara's with.
#include <QApplication>
#include <QMainWindow>

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QMainWindow window;
  window.resize(1220, 700);
  window.show();
  return QApplication::exec();
}
