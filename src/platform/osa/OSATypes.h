// SPDX-License-Identifier: MIT
// The small types of the scripting architecture: instances, identifiers, flags, callbacks, selectors.
#pragma once

#include "platform/ae/AEDesc.h"
#include "platform/ae/AESendMessage.h"

#include <string>
#include <vector>

namespace quoddle {

using OSType = FourCharCode;
/// An open scripting component; 0 is none. Numbers are not reused.
using ComponentInstance = std::uint32_t;
/// A script, a context or a value inside a component. 0 means none, or the null script when a context is expected.
using OSAID = std::uint32_t;

constexpr OSAID kOSANullScript = 0;

constexpr OSStatus badComponentInstance = static_cast<OSStatus>(0x80008001);
/// The status of an operation that the component does not have.
constexpr OSStatus badComponentSelector = static_cast<OSStatus>(0x80008002);

using OSAModeFlags = std::uint32_t;
constexpr OSAModeFlags kOSAModeNull = 0;
constexpr OSAModeFlags kOSAModePreventGetSource = 0x1; ///< when storing: run-only
constexpr OSAModeFlags kOSAModeDontDefine = 0x1;       ///< for properties and handlers: change existing ones, add none
constexpr OSAModeFlags kOSAModeCompileIntoContext = 0x2;
constexpr OSAModeFlags kOSAModeAugmentContext = 0x4; ///< when compiling: add to the given context
constexpr OSAModeFlags kOSAModeDisplayForHumans = 0x8;
constexpr OSAModeFlags kOSAModeNeverInteract = 0x10;
constexpr OSAModeFlags kOSAModeCanInteract = 0x20;
constexpr OSAModeFlags kOSAModeAlwaysInteract = 0x30;
constexpr OSAModeFlags kOSAModeCantSwitchLayer = 0x40;
constexpr OSAModeFlags kOSAModeDontReconnect = 0x80;
constexpr OSAModeFlags kOSAModeDoRecord = 0x1000;
constexpr OSAModeFlags kOSAModeDontStoreParent = 0x10000;

/// Reference constants are passed to the callbacks unchanged. Callbacks run on the thread that executes the script, without the component's
/// lock. The active procedure is called every few milliseconds while a script works, and between the pauses of a waiting one; call
/// wakeWaits() to end a waiting script without delay.
using OSAActiveProc = OSErr (*)(void* refCon);
using AEIdleProc = void (*)();
using AEFilterProc = void (*)();
using OSASendProc = OSErr (*)(const AEDesc& event, AEDesc* reply, AESendMode sendMode, AESendPriority sendPriority,
                              std::int32_t timeOutInTicks, AEIdleProc idleProc, AEFilterProc filterProc, void* refCon);
using OSAResumeDispatchProc = OSErr (*)(const AEDesc& event, AEDesc* reply, void* refCon);

/// A callback with its reference constant; without a procedure the component has its own behaviour.
template<class Proc>
struct OSACallback {
    Proc proc = nullptr;
    void* refCon = nullptr;
};

struct OSACallbacks {
    OSACallback<OSAActiveProc> active;
    OSACallback<OSASendProc> send;
    OSACallback<OSAResumeDispatchProc> resumeDispatch;
};

/// Text whose ranges have styles; a style is an index into the component's source attributes.
struct OSAAttributedText {
    struct Run {
        std::size_t start = 0; ///< UTF-16 units
        std::size_t length = 0;
        std::size_t style = 0;
    };
    std::u16string text;
    std::vector<Run> runs; ///< the styled ranges in order, without overlap; empty for plain text
};

/// How one kind of source word is shown ("Keywords", "Comments", …).
struct OSASourceStyle {
    std::u16string name;
    std::string fontFamily;  ///< UTF-8; empty for the default
    double pointSize = 0;    ///< 0 for the default
    std::uint32_t color = 0; ///< 0xRRGGBB
    bool bold = false, italic = false, underline = false;
    bool operator==(const OSASourceStyle&) const = default;
};

} // namespace quoddle
