// SPDX-License-Identifier: MIT
// Does only what any Qt Widgets program has to do before its window can be seen: the measure for the launch of an applet. Like an applet it
// stays until it is ended.
#include <QApplication>
#include <QLabel>
#include <QMainWindow>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QMainWindow window;
    auto* label = new QLabel(QStringLiteral("A bare window"));
    label->setAlignment(Qt::AlignCenter);
    window.setCentralWidget(label);
    window.resize(480, 104);
    window.show();
    return QApplication::exec();
}
