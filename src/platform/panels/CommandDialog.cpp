// SPDX-License-Identifier: MIT
#include "platform/panels/CommandDialog.h"

#include "platform/base/TextArgument.h"

#include <QGuiApplication>

namespace quoddle {

AEDesc descriptorOf(const QString& text) {
    return AEDesc::ofText(TextArgument(text).view());
}

void setResult(AEDesc& reply, AEDesc result) {
    (void)reply.put("----"_4cc, std::move(result));
}

void setError(AEDesc& reply, OSStatus number, const QString& message) {
    (void)reply.put("errn"_4cc, AEDesc::ofInt32(number));
    (void)reply.put("errs"_4cc, descriptorOf(message));
}

void setCancelled(AEDesc& reply) {
    (void)reply.put("errn"_4cc, AEDesc::ofInt32(userCanceledErr));
}

QString standardTitle() {
    return QGuiApplication::applicationDisplayName();
}

} // namespace quoddle
