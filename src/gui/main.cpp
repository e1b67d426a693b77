// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QLabel>

int main(int argc, char* argv[]) {
  QApplication app(argc, argv);
  QLabel label(QStringLiteral("Vantorelle"));
  label.show();
  return app.exec();
}
