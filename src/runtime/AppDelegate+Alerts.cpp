// SPDX-License-Identifier: MIT
// Runtime errors shown to the user. Every one of these alerts ends the applet.
#include "runtime/AppDelegate.h"

#include "platform/foundation/NSLog.h"

namespace quoddle {

using namespace Qt::StringLiterals;

RuntimeAlert AppDelegate::runtimeErrorAlert(const QXOSAErrorInfo& error) const {
    return {localized(u"RuntimeErrorMessage"_s), stringWithFormat(localized(u"RuntimeErrorInformation"_s), {error.message()}),
            localized(u"QuitButton"_s)};
}

void AppDelegate::showAlert(const RuntimeAlert& alert, std::function<void()> afterwards) {
    const auto dismissed = [this, afterwards = std::move(afterwards)] {
        mEnd.errorWasSeen();
        afterwards();
    };
    if (windowController().isWindowVisible()) {
        mParts.alerts->beginSheet(alert, windowController(), dismissed);
        return;
    }
    mParts.alerts->runModal(alert);
    dismissed();
}

void AppDelegate::_displayRuntimeError(const QXOSAErrorInfoRef& error) {
    if (mShowingRuntimeError)
        return;
    mShowingRuntimeError = true;
    showAlert(runtimeErrorAlert(*error), [this] {
        terminate();
        mShowingRuntimeError = false;
    });
}

} // namespace quoddle
