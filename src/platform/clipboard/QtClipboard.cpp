// SPDX-License-Identifier: MIT
#include "platform/clipboard/QtClipboard.h"

#include "platform/additions/Clipboard.h"
#include "platform/base/Wait.h"
#include "platform/clipboard/ClipboardForms.h"

#include <chrono>

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

std::vector<AEDesc> formsOnClipboard(DescType wanted) {
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    if (!data)
        return {};
    const auto get = [data](const QString& type) { return type == "text/plain"_L1 ? data->text().toUtf8() : data->data(type); };
    return formsFromData(data->formats(), get, wanted);
}

} // namespace

QtClipboard::QtClipboard(QObject* parent) : DesktopClipboard(parent) {
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, [this] {
        if (!isOwner())
            Q_EMIT lost();
    });
}

std::vector<AEDesc> QtClipboard::contents(DescType wanted) {
    return formsOnClipboard(wanted);
}

bool QtClipboard::setContents(const std::vector<AEDesc>& forms) {
    auto* data = new QMimeData;
    for (const auto& [type, bytes] : dataFromForms(forms))
        data->setData(type, bytes);
    QGuiApplication::clipboard()->setMimeData(data); // takes ownership
    return isOwner();
}

bool QtClipboard::isOwner() const {
    return QGuiApplication::clipboard()->ownsClipboard();
}

void leaveClipboardBehind() {
    constexpr std::chrono::seconds kPatience{3};
    if (!QGuiApplication::clipboard()->ownsClipboard())
        return;
    const auto deadline = std::chrono::steady_clock::now() + kPatience;
    const WaitAlarm alarm(deadline);
    AEHandlerContext context;
    context.cancelled = [deadline] { return std::chrono::steady_clock::now() > deadline; };
    (void)Clipboard::shared()->setContents(formsOnClipboard(0), context);
}

} // namespace quoddle
