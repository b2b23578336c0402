// SPDX-License-Identifier: MIT
// A window in a corner of the screen from which the mouse drags what the command line says, as a file manager or a browser would. Tests of
// drops move the pointer from it over an applet.
//     dragsource files|addresses|text [--list FILE] [NAME…]
// Files are dragged as their addresses, addresses as they are written, texts as lines of plain text. The list has more names, parted by
// null bytes. What becomes of it stands on standard output: "ready", and for each drag "begun" and then the action that its target took:
// "copy" or "none".
#include <QApplication>
#include <QDrag>
#include <QFile>
#include <QMimeData>
#include <QMouseEvent>
#include <QTimer>
#include <QUrl>
#include <QWidget>

#include <cstdio>

namespace {

using Form = void (*)(QMimeData& data, const QStringList& names);

void asFiles(QMimeData& data, const QStringList& names) {
    QList<QUrl> urls;
    for (const QString& name : names)
        urls << QUrl::fromLocalFile(name);
    data.setUrls(urls);
}

void asAddresses(QMimeData& data, const QStringList& names) {
    const QByteArray lines = names.join(QStringLiteral("\r\n")).toUtf8();
    data.setData(QStringLiteral("text/uri-list"), lines);
    data.setText(QString::fromUtf8(lines));
}

void asText(QMimeData& data, const QStringList& names) {
    data.setText(names.join(u'\n'));
}

Form formNamed(const QString& name) {
    return name == QStringLiteral("files")       ? &asFiles
           : name == QStringLiteral("addresses") ? &asAddresses
           : name == QStringLiteral("text")      ? &asText
                                                 : nullptr;
}

void say(const char* word) {
    std::puts(word);
    std::fflush(stdout);
}

class DragSource : public QWidget {
public:
    DragSource(Form form, QStringList names) : mForm(form), mNames(std::move(names)) {
        setWindowFlags(Qt::BypassWindowManagerHint); // no frame, no other place, no keyboard
        setGeometry(0, 0, 40, 40);
    }

protected:
    void mouseMoveEvent(QMouseEvent*) override {
        auto* drag = new QDrag(this);
        auto* dragged = new QMimeData;
        mForm(*dragged, mNames);
        drag->setMimeData(dragged);
        connect(drag, &QDrag::actionChanged, this,
                [](Qt::DropAction action) { say(action == Qt::CopyAction ? "would copy" : "would not"); });
        QTimer::singleShot(0, this, [] { say("begun"); });
        say(drag->exec(Qt::CopyAction | Qt::MoveAction | Qt::LinkAction, Qt::CopyAction) == Qt::CopyAction ? "copy" : "none");
    }

private:
    const Form mForm;
    const QStringList mNames;
};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QStringList names = application.arguments().mid(1);
    const Form form = formNamed(names.isEmpty() ? QString() : names.takeFirst());
    if (!form)
        return 2;
    if (names.value(0) == QStringLiteral("--list")) {
        QFile list(names.value(1));
        if (!list.open(QIODevice::ReadOnly))
            return 2;
        names = QString::fromUtf8(list.readAll()).split(u'\0', Qt::SkipEmptyParts) + names.mid(2);
    }
    DragSource source(form, names);
    source.show();
    source.raise();
    QTimer::singleShot(0, &source, [] { say("ready"); });
    return application.exec();
}
