// SPDX-License-Identifier: MIT
// The way of interactive commands to a user: the presenter, the process that shows dialogs, and what happens without either.
#include "Additions.h"

#include "platform/additions/ClipboardProcess.h"
#include "platform/additions/DialogProcess.h"
#include "platform/additions/Interaction.h"
#include "platform/base/Wait.h"

#include <chrono>
#include <sys/stat.h>
#include <thread>

namespace quoddle {

using namespace testing_additions;
using additions::DialogProcess;

namespace {

/// Reads frames as quoddle-dialogs does. The first text of the command says how the program must behave.
constexpr const char* kFakeProgram = R"(#!/usr/bin/env python3
import os, socket, struct, sys
s = socket.socket(fileno=0)
def log(line):
    try:
        os.write(os.open(os.environ['FAKE_LOG'], os.O_WRONLY | os.O_APPEND), line.encode() + b'\n')
    except OSError:
        pass # the test is over
def take(n):
    b = b''
    while len(b) < n:
        more = s.recv(n - len(b))
        if not more:
            log('closed')
            sys.exit(0)
        b += more
    return b
def desc(form, kind, body):
    return kind + bytes([form]) + body
def send(id, payload, magic=b'QAE2'):
    s.sendall(magic + struct.pack('>BBHIiI', 2, 0, 0, id, 0, len(payload)) + payload)
log('started ' + sys.argv[1])
while True:
    header = take(20)
    id, status, size = struct.unpack('>IiI', header[8:])
    body = take(size).replace(b'\0', b'')
    if b'answer' in body or b'last' in body:
        value = 'é'.encode('utf-16-le')
        text = desc(0, b'utxt', struct.pack('>I', len(value)) + value)
        send(id, b'QAE1' + desc(2, b'reco', struct.pack('>I', 1) + b'----' + text))
        if b'last' in body:
            s.shutdown(socket.SHUT_RDWR)
            log('left')
            os._exit(0)
    elif b'die' in body:
        os._exit(1)
    elif b'nodisplay' in body:
        os._exit(3)
    elif b'nonsense' in body:
        s.sendall(b'what is this? ' * 10)
    elif b'huge' in body:
        s.sendall(b'QAE2' + struct.pack('>BBHIiI', 2, 0, 0, id, 0, 0xFFFFFFFF))
    elif b'strange' in body:
        send(id + 7, b'QAE1' + desc(2, b'reco', struct.pack('>I', 0)))
)";

class DialogProcessTest : public AdditionsTest {
protected:
    DialogProcessTest() {
        make("fake", kFakeProgram);
        make("log", "");
        ::chmod(path("fake").c_str(), 0755);
        setEnvironment("DISPLAY", ":nowhere");
        setEnvironment("FAKE_LOG", path("log"));
    }

    struct Answered {
        OSErr status;
        OSStatus error;
        std::string text, message;
    };
    Answered ask(DialogProcess& process, std::string_view what, const AEHandlerContext& context = {}) {
        AEDesc event = AEDesc::appleEvent("syso"_4cc, "dlog"_4cc);
        (void)event.put("----"_4cc, text(what));
        AEDesc reply = AEDesc::appleEvent("aevt"_4cc, "ansr"_4cc);
        const OSErr status = process.present(event, reply, context);
        const Answer answer(reply);
        return {status, answer.error(), answer.value().asUTF8().value_or(""), answer.errorText()};
    }
    std::size_t count(const std::string& line) const {
        const std::string log = bytesOf("log");
        std::size_t found = 0;
        for (std::size_t at = 0; (at = log.find(line, at)) != std::string::npos; ++at)
            ++found;
        return found;
    }
    bool becomes(const std::string& line, std::size_t wanted) const {
        for (int tries = 0; tries < 500 && count(line) != wanted; ++tries)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        return count(line) == wanted;
    }
};

} // namespace

TEST_F(DialogProcessTest, OneProcessAnswersOneDialogAfterTheOther) {
    {
        DialogProcess process(path("fake"));
        for (int i = 0; i < 3; ++i) {
            const Answered answered = ask(process, "answer");
            EXPECT_EQ(answered.status, noErr);
            EXPECT_EQ(answered.text, "é");
        }
        EXPECT_EQ(count("started"), 1u);
        EXPECT_EQ(count("closed"), 0u);
    }
    EXPECT_TRUE(becomes("closed", 1)) << "it goes by itself when nobody needs it any more";
}

TEST_F(DialogProcessTest, WhatGoesWrongIsAnErrorAndTheNextDialogIsWell) {
    DialogProcess process(path("fake"));
    for (const char* what : {"die", "nonsense", "huge", "strange"}) {
        const Answered answered = ask(process, what);
        EXPECT_EQ(answered.error, connectionInvalid) << what;
        EXPECT_FALSE(answered.message.empty()) << what;
        EXPECT_EQ(ask(process, "answer").text, "é") << "after " << what;
    }
    EXPECT_EQ(ask(process, "nodisplay").status, errAENoUserInteraction);
    EXPECT_EQ(ask(process, "answer").text, "é");
}

TEST_F(DialogProcessTest, AProcessThatWentWhileNobodyAskedIsReplaced) {
    DialogProcess process(path("fake"));
    EXPECT_EQ(ask(process, "last").text, "é");
    EXPECT_TRUE(becomes("left", 1));
    EXPECT_EQ(ask(process, "answer").text, "é");
    EXPECT_EQ(count("started"), 2u);
}

TEST_F(DialogProcessTest, CancelEndsTheDialogSoon) {
    DialogProcess process(path("fake"));
    EXPECT_EQ(ask(process, "answer").text, "é");
    std::size_t tries = 0;
    bool isSoon = false;
    for (; tries < 5 && !isSoon; ++tries) { // on a busy machine a single try may take too long
        const auto start = std::chrono::steady_clock::now();
        const auto elapsed = [start] { return std::chrono::steady_clock::now() - start; };
        const WaitAlarm alarm(start + std::chrono::milliseconds(50));
        const AEHandlerContext context{[&] { return elapsed() >= std::chrono::milliseconds(50); }};
        EXPECT_EQ(ask(process, "wait", context).status, userCanceledErr);
        isSoon = elapsed() < std::chrono::milliseconds(150);
        EXPECT_EQ(ask(process, "answer").text, "é");
    }
    EXPECT_TRUE(isSoon);
    EXPECT_EQ(count("started"), 1 + tries);
}

TEST_F(DialogProcessTest, WithoutDisplayNothingIsStarted) {
    DialogProcess process(path("fake"));
    for (const char* variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        setEnvironment(variable, "");
    EXPECT_EQ(ask(process, "answer").status, errAENoUserInteraction);
    EXPECT_EQ(count("started"), 0u);
    setEnvironment("WAYLAND_DISPLAY", "wayland-0");
    EXPECT_EQ(ask(process, "answer").text, "é");
}

TEST_F(DialogProcessTest, AClipboardProcessThatIsGivenUpIsLeftAlone) {
    setEnvironment("QT_QPA_PLATFORM", "");
    additions::ClipboardProcess clipboard(path("fake"));
    const auto set = [&](std::string_view what, const AEHandlerContext& context = {}) {
        return clipboard.setContents({text(what)}, context);
    };
    EXPECT_EQ(set("wait", {[] { return true; }}), userCanceledErr);
    EXPECT_TRUE(becomes("started", 1) && becomes("closed", 1)) << "it may hold something";
    EXPECT_EQ(set("die"), connectionInvalid);
    EXPECT_EQ(set("nodisplay"), noErr) << "kept in private";
    setEnvironment("DISPLAY", "");
    const auto contents = clipboard.contents(0, {});
    ASSERT_TRUE(contents && contents->size() == 1);
    EXPECT_EQ(contents->front().asUTF8(), "nodisplay");
}

TEST_F(DialogProcessTest, TheMissingProgramIsNamed) {
    DialogProcess process(path("no-such-program"));
    const Answered answered = ask(process, "answer");
    EXPECT_EQ(answered.error, errAEEventFailed);
    EXPECT_NE(answered.message.find("no-such-program"), std::string::npos) << answered.message;
}

TEST(Interaction, EveryCommandReachesThePresenter) {
    std::vector<std::string> shown;
    setInteractionPresenter([&](const AEDesc& event, AEDesc& reply, const AEHandlerContext&) -> OSErr {
        shown.push_back(bytesOf(event.eventClass()) + bytesOf(event.eventID()));
        (void)reply.put("----"_4cc, whole(7));
        return noErr;
    });
    const std::vector<std::string> commands = {"sysodlog", "sysodisA", "gtqpchlt", "sysostdf", "sysostfl",
                                               "sysonwfl", "sysochcl", "sysochur", "sysoppcb"};
    for (const std::string& command : commands)
        EXPECT_EQ(send(command, {{"----"_4cc, text("x")}}).number(), 7) << command;
    EXPECT_EQ(shown, commands);
    EXPECT_EQ(send("sysochra").error(), errAEEventFailed);
    setInteractionPresenter({});
}

TEST(Interaction, ANotificationThatNobodyCanSeeStopsNoScript) {
    OSErr status = errAENoUserInteraction;
    setInteractionPresenter([&](const AEDesc&, AEDesc&, const AEHandlerContext&) { return status; });
    testing::internal::CaptureStderr();
    EXPECT_EQ(send("sysonotf", {{"----"_4cc, text("körper")}, {"appr"_4cc, text("Titel")}}).error(), noErr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Titel: körper\n");
    status = userCanceledErr;
    EXPECT_EQ(send("sysonotf", {{"----"_4cc, text("x")}}).error(), userCanceledErr);
    EXPECT_EQ(send("sysonotf", {{"subt"_4cc, text("")}}).error(), paramErr);
    setInteractionPresenter({});
}

} // namespace quoddle
