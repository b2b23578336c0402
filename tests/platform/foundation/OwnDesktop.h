// SPDX-License-Identifier: MIT
// A desktop whose only programs are those that the test installs, whatever the machine has. The types of files are the machine's.
#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace quoddle::test {

class OwnDesktop {
public:
    OwnDesktop() {
        const QString machine = qEnvironmentVariable("XDG_DATA_DIRS", QStringLiteral("/usr/local/share:/usr/share"));
        for (const QString& folder : machine.split(u':'))
            if (QFileInfo::exists(folder + QStringLiteral("/mime")) && QDir().mkpath(path(QStringLiteral("share"))))
                QFile::link(folder + QStringLiteral("/mime"), path(QStringLiteral("share/mime")));
        set("XDG_DATA_HOME", "data");
        set("XDG_DATA_DIRS", "share");
        set("XDG_CONFIG_HOME", "config");
        set("XDG_CONFIG_DIRS", "etc");
        set("XDG_CURRENT_DESKTOP", "");
    }
    ~OwnDesktop() {
        for (const auto& [name, value] : mBefore)
            value.isNull() ? qunsetenv(name) : qputenv(name, value);
    }
    OwnDesktop(const OwnDesktop&) = delete;
    OwnDesktop& operator=(const OwnDesktop&) = delete;

    /// `file` is a path below the test's folder, whose subfolders data, config, share and etc stand for the user's and the system's
    /// folders.
    void write(const QString& file, const QByteArray& content) const {
        QDir().mkpath(QFileInfo(path(file)).path());
        QFile written(path(file));
        if (written.open(QIODevice::WriteOnly))
            written.write(content);
    }
    /// Installs a program named `name` in the subfolder "applications" of `folder`.
    void install(const QString& folder, const QString& identifier, const QByteArray& name, const QByteArray& more = {}) const {
        write(folder + QStringLiteral("/applications/") + identifier,
              "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=true\n" + more);
    }

private:
    QString path(const QString& file) const { return mFolder.filePath(file); }
    void set(const char* name, const char* folder) {
        mBefore.push_back({name, qEnvironmentVariableIsSet(name) ? qgetenv(name) : QByteArray()});
        qputenv(name, *folder ? path(QString::fromLatin1(folder)).toLocal8Bit() : QByteArray());
    }

    QTemporaryDir mFolder;
    QList<std::pair<const char*, QByteArray>> mBefore;
};

} // namespace quoddle::test
