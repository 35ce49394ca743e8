// SPDX-License-Identifier: MIT
// The yardstick of the start-up benchmark: a Qt Widgets program that does nothing but start
// (the application object, its platform and fonts, one pass of the event loop) and exit.
#include <QApplication>
#include <QTimer>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QTimer::singleShot(0, &app, &QApplication::quit);
    return QApplication::exec();
}
