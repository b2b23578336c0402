// SPDX-License-Identifier: MIT
#include "platform/delivery/Download.h"

#include "platform/delivery/FetchRules.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QIODevice>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>
#include <QTimer>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr int kMostRedirections = 5;
constexpr int kOK = 200;
constexpr qint64 kBufferSize = 1 << 16; // read from the network before it is written

/// Shared by all downloads, so that its thread can finish one request during the next.
QNetworkAccessManager& manager() {
    static QPointer<QNetworkAccessManager> sManager;
    if (!sManager)
        sManager = new QNetworkAccessManager(QCoreApplication::instance());
    return *sManager;
}

class Transfer {
public:
    Transfer(const DownloadRequest& request, QIODevice& target) : mRequest(request), mTarget(target) {}

    Result<qint64, QString> run() {
        if (!mayBeFetched(mRequest.url))
            return Failure{refusal(mRequest.url)};
        mReply.reset(manager().get(networkRequest()));
        mReply->setReadBufferSize(kBufferSize);
        QObject::connect(mReply.get(), &QNetworkReply::redirected, &mLoop, [this](const QUrl& url) { follow(url); });
        QObject::connect(mReply.get(), &QNetworkReply::readyRead, &mLoop, [this] { take(); });
        QObject::connect(mReply.get(), &QNetworkReply::finished, &mLoop, [this] { finish(); });
        mSilence.setSingleShot(true);
        QObject::connect(&mSilence, &QTimer::timeout, &mLoop,
                         [this] { fail(QCoreApplication::translate("Download", "The server did not answer in time.")); });
        mSilence.start(mRequest.silence);
        if (mRequest.wholeTime.count() > 0)
            QTimer::singleShot(mRequest.wholeTime, &mLoop,
                               [this] { fail(QCoreApplication::translate("Download", "The download took too long.")); });
        mLoop.exec();
        if (!mError.isEmpty())
            return Failure{mError};
        return mReceived;
    }

private:
    QNetworkRequest networkRequest() const {
        QNetworkRequest request(mRequest.url);
        request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::UserVerifiedRedirectPolicy);
        request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
        request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
        request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
        request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
        request.setMaximumRedirectsAllowed(kMostRedirections);
        // Size and signature are those of the uncompressed bytes, and without compression a reply is not larger than it looks.
        request.setRawHeader("Accept-Encoding", "identity");
        request.setHeader(QNetworkRequest::UserAgentHeader, u"Quoddle"_s);
        return request;
    }

    static QString refusal(const QUrl& url) {
        return QCoreApplication::translate("Download", "Nothing is fetched from %1: it is no https address.").arg(url.toDisplayString());
    }

    void fail(const QString& error) {
        if (!mError.isEmpty())
            return;
        mError = error;
        mReply->abort();
        mLoop.quit();
    }

    void follow(const QUrl& url) {
        if (mayBeFetched(url))
            Q_EMIT mReply->redirectAllowed();
        else
            fail(refusal(url));
    }

    void take() {
        if (!mError.isEmpty())
            return;
        const QByteArray bytes = mReply->readAll();
        // The contents of an error reply are a page about the error.
        if (bytes.isEmpty() || statusCode() != kOK)
            return;
        mReceived += bytes.size();
        if (mReceived > mRequest.maximumSize)
            return fail(QCoreApplication::translate("Download", "The server sends more than was announced."));
        if (mTarget.write(bytes) != bytes.size())
            return fail(mTarget.errorString());
        mSilence.start(mRequest.silence);
        if (mRequest.progress)
            mRequest.progress(mReceived);
    }

    int statusCode() const { return mReply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(); }

    void finish() {
        if (mReply->error() != QNetworkReply::NoError)
            fail(mReply->errorString());
        else if (statusCode() != kOK)
            fail(QCoreApplication::translate("Download", "The server answered with the status %1.").arg(statusCode()));
        take();
        mLoop.quit();
    }

    const DownloadRequest& mRequest;
    QIODevice& mTarget;
    QEventLoop mLoop;
    QTimer mSilence;
    std::unique_ptr<QNetworkReply> mReply;
    qint64 mReceived = 0;
    QString mError;
};

} // namespace

Result<qint64, QString> download(const DownloadRequest& request, QIODevice& target) {
    return Transfer(request, target).run();
}

} // namespace quoddle
