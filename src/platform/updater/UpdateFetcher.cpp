// SPDX-License-Identifier: MIT
#include "platform/updater/UpdateFetcher.h"

#include <QCoreApplication>
#include <QProcess>
#include <QStandardPaths>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kMostProgress = 4 << 20; // bytes of progress lines
constexpr qsizetype kLongestError = 1000;

/// The path of the program, beside the running program or in PATH; empty when there is none.
QString fetchProgram() {
    const QString name = u"quoddle-fetch"_s;
    const QString beside = QStandardPaths::findExecutable(name, {QCoreApplication::applicationDirPath()});
    return beside.isEmpty() ? QStandardPaths::findExecutable(name) : beside;
}

QByteArray lastLine(const QByteArray& output) {
    const QByteArray lines = output.trimmed();
    return lines.mid(lines.lastIndexOf('\n') + 1);
}

} // namespace

UpdateFetcher::UpdateFetcher() = default;

UpdateFetcher::~UpdateFetcher() {
    cancel();
}

void UpdateFetcher::cancel() {
    if (!mProcess)
        return;
    mProcess->disconnect();
    mProcess->kill();
    mProcess->waitForFinished(-1);     // short, because a killed process cannot delay its end
    mProcess.release()->deleteLater(); // not deleted now, because the process may be just emitting a signal
}

void UpdateFetcher::start(const QStringList& words, qint64 maximumOutput, std::function<void(const QByteArray&)> read,
                          Completion<QByteArray> completion) {
    cancel();
    mOutput.clear();
    mProcess = std::make_unique<QProcess>();
    mProcess->setStandardInputFile(QProcess::nullDevice());
    const auto end = [this, completion = std::move(completion)](Result<QByteArray, QString> outcome) {
        mProcess->disconnect();
        mProcess.release()->deleteLater();
        completion(std::move(outcome));
    };
    QObject::connect(mProcess.get(), &QProcess::readyReadStandardOutput, mProcess.get(), [this, maximumOutput, read] {
        mOutput += mProcess->readAllStandardOutput();
        if (mOutput.size() > maximumOutput)
            mProcess->kill();
        else if (read)
            read(mOutput);
    });
    QObject::connect(mProcess.get(), &QProcess::errorOccurred, mProcess.get(), [end](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            end(Failure{QCoreApplication::translate("UpdateFetcher", "The program quoddle-fetch is missing.")});
    });
    QObject::connect(mProcess.get(), &QProcess::finished, mProcess.get(), [this, end](int status, QProcess::ExitStatus how) {
        if (how == QProcess::NormalExit && status == 0)
            return end(std::exchange(mOutput, {}));
        const QString said = QString::fromUtf8(lastLine(mProcess->readAllStandardError()).left(kLongestError));
        end(Failure{how == QProcess::NormalExit && !said.isEmpty()
                        ? said
                        : QCoreApplication::translate("UpdateFetcher", "The download was broken off.")});
    });
    mProcess->start(fetchProgram(), words, QIODevice::ReadOnly);
}

void UpdateFetcher::fetchText(const QUrl& url, qint64 maximumSize, Completion<QByteArray> completion) {
    start({u"text"_s, url.toString(QUrl::FullyEncoded), QString::number(maximumSize)}, maximumSize, {}, std::move(completion));
}

void UpdateFetcher::fetchBundle(const AppcastItem& item, const QByteArray& key, const QString& folder, std::function<void(qint64)> progress,
                                Completion<QString> completion) {
    const QStringList words = {u"bundle"_s,
                               item.archive.toString(QUrl::FullyEncoded),
                               QString::number(item.archiveLength),
                               QString::fromLatin1(item.signature),
                               QString::fromLatin1(key),
                               folder};
    const auto read = [progress = std::move(progress)](const QByteArray& output) {
        const qsizetype end = output.lastIndexOf('\n');
        if (const qint64 received = lastLine(output.left(std::max<qsizetype>(end, 0))).toLongLong(); received > 0)
            progress(received);
    };
    start(words, kMostProgress, read, [completion = std::move(completion)](Result<QByteArray, QString> output) {
        if (output)
            completion(QUrl::fromPercentEncoding(lastLine(*output)));
        else
            completion(Failure{output.error()});
    });
}

} // namespace quoddle
