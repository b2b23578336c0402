// SPDX-License-Identifier: MIT
// Draws an SVG file as a square PNG file, which every part of the desktop can show.
//
//   make-icon INPUT.svg EXTENT OUTPUT.png
#include <QCoreApplication>
#include <QFile>
#include <QImageReader>
#include <QTextStream>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QTextStream errors(stderr);
    if (argc != 4) {
        errors << "usage: make-icon INPUT.svg EXTENT OUTPUT.png\n";
        return 2;
    }
    const int extent = QByteArray(argv[2]).toInt();
    QImageReader reader(QFile::decodeName(argv[1]));
    reader.setScaledSize({extent, extent});
    const QImage image = reader.read();
    if (image.isNull()) {
        errors << "make-icon: " << argv[1] << ": " << reader.errorString() << '\n';
        return 1;
    }
    if (!image.save(QFile::decodeName(argv[3]), "PNG")) {
        errors << "make-icon: " << argv[3] << ": cannot be written\n";
        return 1;
    }
    return 0;
}
