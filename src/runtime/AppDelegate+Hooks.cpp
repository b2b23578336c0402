// SPDX-License-Identifier: MIT
// Handlers with fixed names by which a script answers the shell's questions. They are called directly, on the main thread, beside whatever
// runs on the script queue.
#include "runtime/AppDelegate.h"

#include "engine/QXOSAException.h"
#include "platform/foundation/NSLog.h"

namespace quoddle {

using namespace Qt::StringLiterals;

bool AppDelegate::isFileAcceptable(const QString& path) {
    const QString hook = u"appletfileisacceptable"_s;
    if (!hasOpenHandler())
        return false;
    const QXOSAIDRef script = mainScript();
    try {
        if (!script->hasHandlerNamed(hook))
            return true;
        const QXOSAIDRef answer = script->executeSubroutine(hook, {NSAppleEventDescriptor::descriptorWithFileURL(path)});
        const QXOSAErrorInfoRef error = script->lastError() == errOSAScriptError ? script->component()->lastErrorInfo() : nullptr;
        if (error && error->error() != noErr && error->error() != userCanceledErr) {
            _displayRuntimeError(error);
            return false;
        }
        return answer && answer->booleanValue();
    } catch (const QXOSAException& exception) {
        NSLog(u"isFileAcceptable: %@"_s, {exception.reason()});
        return true; // as without the handler
    }
}

} // namespace quoddle
