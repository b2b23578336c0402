// SPDX-License-Identifier: MIT
// The only exception of the engine bridge: a name, a reason, and further information from the place where it was raised.
#pragma once

#include <exception>

#include <QString>
#include <QVariantMap>

namespace quoddle {

class QXOSAException : public std::exception {
public:
    QXOSAException(QString name, QString reason, QVariantMap userInfo = {})
        : mName(std::move(name)), mReason(std::move(reason)), mUserInfo(std::move(userInfo)),
          mWhat((mName + QStringLiteral(": ") + mReason).toUtf8()) {}

    const QString& name() const { return mName; }
    const QString& reason() const { return mReason; }
    const QVariantMap& userInfo() const { return mUserInfo; }
    const char* what() const noexcept override { return mWhat.constData(); }

private:
    QString mName;
    QString mReason;
    QVariantMap mUserInfo;
    QByteArray mWhat;
};

} // namespace quoddle
