// SPDX-License-Identifier: MIT
// A window in a corner of the screen from which the mouse drags the items on the command line, like a file manager or a browser. Tests of
// drops move the pointer from it over an applet.
//     dragsource files|addresses|text [--list FILE] [NAME…]
// Files are dragged as their addresses, addresses as they are written, texts as lines of plain text. The list has more names, separated by
// null bytes. The program writes to standard output: "ready"; for each drag "begun", and "would copy" or "would not" for each answer of the
// window below the pointer (on Wayland, for each answer that differs from the one before); and in the end the action that the window took,
// "copy" or "none".
#include <QAbstractNativeEventFilter>
#include <QApplication>
#include <QDrag>
#include <QFile>
#include <QMimeData>
#include <QMouseEvent>
#include <QTimer>
#include <QUrl>
#include <QWidget>

#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <xcb/xcb.h>

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

void sayAnswer(bool isTaken) {
    say(isTaken ? "would copy" : "would not");
}

/// Reports every answer of a target on an X server; the toolkit tells of changes only.
class Answers final : public QAbstractNativeEventFilter {
public:
    explicit Answers(xcb_connection_t* connection) {
        constexpr std::string_view kName = "XdndStatus";
        const auto cookie = xcb_intern_atom(connection, 0, kName.size(), kName.data());
        if (auto* reply = xcb_intern_atom_reply(connection, cookie, nullptr)) {
            mStatus = reply->atom;
            std::free(reply);
        }
    }

    bool nativeEventFilter(const QByteArray&, void* message, qintptr*) override {
        const auto* event = static_cast<const xcb_client_message_event_t*>(message);
        if ((event->response_type & 0x7f) != XCB_CLIENT_MESSAGE || event->type != mStatus)
            return false;
        const bool isTaken = event->data.data32[1] & 1;
        QTimer::singleShot(0, [isTaken] { sayAnswer(isTaken); }); // reported after the toolkit has handled the answer, too
        return false;
    }

private:
    xcb_atom_t mStatus = XCB_ATOM_NONE;
};

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
        if (QGuiApplication::platformName().startsWith(QStringLiteral("wayland")))
            connect(drag, &QDrag::actionChanged, this, [](Qt::DropAction action) { sayAnswer(action != Qt::IgnoreAction); });
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
    std::optional<Answers> answers;
    if (const auto* x11 = application.nativeInterface<QNativeInterface::QX11Application>())
        application.installNativeEventFilter(&answers.emplace(x11->connection()));
    DragSource source(form, names);
    source.show();
    source.raise();
    QTimer::singleShot(0, &source, [] { say("ready"); });
    return application.exec();
}
