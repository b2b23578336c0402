// SPDX-License-Identifier: MIT
// What the application framework asks and tells the one object that decides for the application.
#pragma once

#include <QStringList>

namespace quoddle {

class NSMenuItem;

enum class NSApplicationTerminateReply { cancel = 0, now = 1, later = 2 };
/// How a request to open files ended.
enum class NSApplicationDelegateReply { success = 0, cancel = 1, failure = 2 };

/// All calls come on the main thread.
class NSApplicationDelegate {
public:
    virtual ~NSApplicationDelegate() = default;

    virtual void applicationWillFinishLaunching() {}
    virtual void applicationDidFinishLaunching() {}
    /// Absolute paths, at least one. Before applicationDidFinishLaunching() when they came with the launch. Answered with
    /// NSApplication::replyToOpenOrPrint(), now or later.
    virtual void applicationOpenFiles(const QStringList& filenames) = 0;
    /// `later` is answered with NSApplication::replyToApplicationShouldTerminate().
    virtual NSApplicationTerminateReply applicationShouldTerminate() { return NSApplicationTerminateReply::now; }
    virtual void applicationWillTerminate() {}
    /// Asked when the user has closed the last window.
    virtual bool applicationShouldTerminateAfterLastWindowClosed() { return false; }

    /// Whether the delegate performs the menu action itself; only then is it asked about its items.
    virtual bool respondsToAction(const QString& action) const {
        (void)action;
        return false;
    }
    virtual void performAction(const QString& action) { (void)action; }
    virtual bool validateMenuItem(const NSMenuItem& item) {
        (void)item;
        return true;
    }
};

} // namespace quoddle
