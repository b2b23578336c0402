// SPDX-License-Identifier: MIT
// What any Qt Widgets program has to do before its window can be seen, and nothing else: the measure for the applet's launch. It stays
// until it is killed, as an applet does.
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
