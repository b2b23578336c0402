// SPDX-License-Identifier: MIT
// The desktop's own file chooser, asked for through its portal (org.freedesktop.portal.FileChooser).
// One decision: everything is asked in the background and may fail at any time; the caller then shows a panel of our own.
// Main thread only.
#pragma once

#include <functional>

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QDBusServiceWatcher>
#include <QElapsedTimer>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

class QWidget;

namespace quoddle {

struct FilePortalRequest {
    bool saves = false;   ///< asks for a name and a place, not for existing files
    bool folders = false; ///< folders can be chosen, not files
    bool multiple = false;
    QString title;
    QString acceptLabel; ///< empty: the chooser's own
    QString folder;      ///< where to begin; empty: where the chooser likes
    QString name;        ///< to save under
    // The files that are offered; all when both lists are empty.
    QStringList namePatterns;
    QStringList mimeTypes;
};

class FilePortal : public QObject {
    Q_OBJECT
public:
    /// How a request has ended. `failed`: there is no such portal, it cannot do what is asked, or it has gone; nobody has chosen anything.
    enum class Outcome { chosen, cancelled, failed };
    /// Gets absolute paths, at least one after `chosen`. Called once, never from within begin().
    using Completion = std::function<void(Outcome outcome, const QStringList& paths)>;

    explicit FilePortal(QObject* parent = nullptr);
    ~FilePortal() override;

    /// Whether there is a bus to ask on, the user has not decided for our own panel (QUODDLE_FILE_PANEL=own in the environment), and the
    /// chooser can be a dialog of `window`, unless that is null: Wayland has no name for a window that could be told to the portal.
    static bool mayExist(const QWidget* window);
    /// Asks for the chooser, as a dialog of `window`, which may be null. One request at a time; mayExist() must hold.
    void begin(const FilePortalRequest& request, const QWidget* window, Completion completion);
    bool isAsking() const { return static_cast<bool>(mCompletion); }
    /// Takes the request back; the completion is not called.
    void cancel();

private Q_SLOTS:
    void responded(uint response, const QVariantMap& results);

private:
    void ask(const FilePortalRequest& request, const QString& window, uint version);
    void listenAt(const QString& path);
    void stopListening();
    void finish(Outcome outcome, const QStringList& paths = {});

    QDBusServiceWatcher mPortalWatcher;
    QString mRequestPath; ///< the object of the portal that stands for the request; empty: none
    Completion mCompletion;
    QElapsedTimer mSinceAsked;
    quint64 mNumber = 0; ///< of the last request; late answers to earlier ones are dropped
};

} // namespace quoddle
