// SPDX-License-Identifier: MIT
// Every shape of a reference with operands of every kind, most of which make no sense. Each must give a result or an error, and the same
// one each time: a result that changes from run to run was made of the bits of a pointer.
#include "platform/applescript/AppleScriptComponent.h"
#include "platform/osa/OSA.h"

#include <gtest/gtest.h>

namespace quoddle {
namespace {

constexpr const char* kOperands[] = {
    "5",
    "\"ab cd\"",
    "{1, {2}, \"x\"}",
    "{a:1, name:2}",
    "missing value",
    "(date \"Jan 1, 2008\")",
    "integer",
    "June",
    "current application",
    "me",
    "s",
    "(my f)",
    "«data utxt0041»",
    "(item 1 of {3})",
    "(a reference to p)",
    "(every word of \"a b\")",
    "(3 as inches)",
};

// "A" and "B" stand for the operands.
constexpr const char* kShapes[] = {
    "item (A) of (B)",
    "character (A) of (B)",
    "word (A) of (B)",
    "paragraph (A) of (B)",
    "integer (A) of (B)",
    "date (A) of (B)",
    "A of B",
    "text (A) thru (B) of \"abc\"",
    "items (A) thru (B) of {1, 2, 3}",

    "last word of (A) & (B)",
    "middle item of (A) & (B)",
    "beginning of (A) & end of (B)",
    "a of (A) & name of (B)",
    "length of (A) & reverse of (B)",
    "contents of (A) & class of (B)",
    "year of (A) & month of (B)",
    "quoted form of (A) & id of (B)",
    "character id (A) & (B)",
    "(A) as (B)",
    "(A) & (B)",
    "(A) = (B) and (A) < (B)",
    "(A) contains (B)",
    "(A) starts with (B)",
    "(A) + (B)",
    "(A) div (B)",
    "item 1 of (A) whose it is (B)",
    "word before word (A) of (B)",
    "count (A) each (B)",
    "error (A) number (B)",
    "{(A), (B)} as text",
    "x of {x:(A)} & (B)'s x",
    "f(A) & (B)'s f(1)",
    "run script (A) with parameters (B)",
    "random number from (A) to (B)",
};

std::string filled(std::string shape, const std::string& first, const std::string& second) {
    std::string expression;
    for (std::size_t i = 0; i < shape.size(); ++i) {
        const bool isAlone = (i == 0 || !std::isalpha(static_cast<unsigned char>(shape[i - 1]))) &&
                             (i + 1 == shape.size() || !std::isalpha(static_cast<unsigned char>(shape[i + 1])));
        expression += shape[i] == 'A' && isAlone ? first : shape[i] == 'B' && isAlone ? second : std::string(1, shape[i]);
    }
    return "property p : \"q r\"\non f(x)\nreturn x\nend f\nscript s\nproperty x : 1\nend script\n" + expression;
}

/// The result as source, or the message and the number of the error.
std::string outcome(ComponentInstance instance, const std::string& source) {
    OSAID script = kOSANullScript, result = kOSANullScript;
    OSStatus status = OSACompile(instance, AEDesc::ofUTF8(source), kOSAModeCompileIntoContext, script);
    if (status == noErr)
        status = OSAExecute(instance, script, kOSANullScript, kOSAModeNull, result);
    std::string answer;
    AEDesc text;
    if (status == noErr)
        answer = result && OSADisplay(instance, result, "utxt"_4cc, kOSAModeNull, text) == noErr ? text.asUTF8().value_or("") : "";
    else
        for (FourCharCode part : {"errn"_4cc, "errs"_4cc, "erob"_4cc})
            answer += OSAScriptError(instance, part, "utxt"_4cc, text) == noErr ? text.asUTF8().value_or("") + " " : "- ";
    for (OSAID id : {script, result})
        if (id != kOSANullScript)
            OSADispose(instance, id);
    return answer;
}

TEST(ReferenceShapes, AnswerTheSameEachTime) {
    registerAppleScriptComponent();
    const ComponentInstance one = OpenDefaultComponent(kOSAComponentType, kAppleScriptSubtype);
    const ComponentInstance other = OpenDefaultComponent(kOSAComponentType, kAppleScriptSubtype);
    // Commands that this program lacks all get the same answer, so that nothing is sent to other processes.
    for (ComponentInstance instance : {one, other})
        OSASetSendProc(
            instance,
            [](const AEDesc&, AEDesc*, AESendMode, AESendPriority, std::int32_t, AEIdleProc, AEFilterProc, void*) -> OSErr {
                return errAEEventNotHandled;
            },
            nullptr);
    for (const char* shape : kShapes)
        for (const char* first : kOperands)
            for (const char* second : kOperands) {
                const std::string source = filled(shape, first, second);
                EXPECT_EQ(outcome(one, source), outcome(other, source)) << source;
            }
    CloseComponent(one);
    CloseComponent(other);
}

} // namespace
} // namespace quoddle
