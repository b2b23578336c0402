// SPDX-License-Identifier: MIT
// The clipboard, the sound volume, locations, and information about the system. Helper programs are replaced by scripts in PATH.
#include "Additions.h"

#include "platform/additions/Clipboard.h"
#include "platform/base/Wait.h"

#include <chrono>
#include <sys/stat.h>
#include <unistd.h>

namespace quoddle::testing_additions {

namespace {

class SystemCommandsTest : public AdditionsTest {
protected:
    SystemCommandsTest() {
        std::filesystem::create_directories(path("bin"));
        setEnvironment("PATH", path("bin"));
    }
    /// Installs a program that records its arguments in "log" and then runs the script.
    void helper(const std::string& name, const std::string& script) const {
        make("bin/" + name, "#!/bin/sh\necho \"$*\" >>'" + path("log") + "'\n" + script + "\n");
        ::chmod(path("bin/" + name).c_str(), 0755);
    }
};

class ClipboardTest : public AdditionsTest {
protected:
    ClipboardTest() {
        setEnvironment("QT_QPA_PLATFORM", "offscreen"); // has a clipboard that other programs cannot see
        Clipboard::setShared(nullptr);
    }
    ~ClipboardTest() override { Clipboard::setShared(nullptr); }
    static Answer set(const AEDesc& value) { return send("JonspClp", {{"----"_4cc, value}}); }
    static Answer get(FourCharCode type) { return send("JonsgClp", {{"rtyp"_4cc, AEDesc::ofType(type)}}); }
    static AEDesc form(FourCharCode type, std::int64_t size) { return listOf({AEDesc::ofType(type), AEDesc::ofInt64(size)}); }
};

class DesktopClipboard : public Clipboard {
public:
    Result<std::vector<AEDesc>, OSStatus> contents(DescType, const AEHandlerContext&) override {
        return std::vector{AEDesc("PNGf"_4cc, "png"), AEDesc::ofUTF8("from outside")};
    }
    OSStatus setContents(std::vector<AEDesc>, const AEHandlerContext&) override { return errAEEventFailed; }
};

} // namespace

TEST_F(ClipboardTest, KeepsWhatIsCopiedAndGivesItInOtherForms) {
    EXPECT_EQ(send("JonsgClp").text(), "");
    EXPECT_EQ(send("JonsiClp").value().count(), 0u);
    EXPECT_EQ(set(text("häl")).error(), noErr);
    EXPECT_EQ(send("JonsgClp").text(), "häl");
    EXPECT_EQ(get("ctxt"_4cc).text(), "häl");
    EXPECT_EQ(get("utf8"_4cc).value(), AEDesc("utf8"_4cc, "h\xC3\xA4l"));
    EXPECT_EQ(get("long"_4cc).error(), errAECoercionFail);
    EXPECT_EQ(send("JonsiClp").value(), listOf({form("utxt"_4cc, 6), form("utf8"_4cc, 4), form("ut16"_4cc, 8), form("TEXT"_4cc, 3)}));
    EXPECT_EQ(send("JonsiClp", {{"for "_4cc, AEDesc::ofType("TEXT"_4cc)}}).value(), listOf({form("TEXT"_4cc, 3)}));
    EXPECT_EQ(set(listOf({whole(1), text("x")})).error(), noErr);
    EXPECT_EQ(send("JonsgClp").value(), listOf({whole(1), text("x")}));
    EXPECT_EQ(get("ctxt"_4cc).error(), errAECoercionFail);
    EXPECT_EQ(send("JonspClp").error(), errAEDescNotFound);
}

TEST_F(ClipboardTest, ADesktopPutsItsOwnInItsPlace) {
    Clipboard::setShared(std::make_shared<DesktopClipboard>());
    EXPECT_EQ(send("JonsgClp").value().type(), "PNGf"_4cc);
    EXPECT_EQ(get("ctxt"_4cc).text(), "from outside") << "the first form is no text, the second is";
    EXPECT_EQ(set(text("x")).error(), errAEEventFailed);
}

TEST_F(SystemCommandsTest, TheVolumeNeedsAMixerAndSaysSo) {
    for (const char* command : {"sysogtvl", "aevtstvl"}) {
        const Answer answer = send(command, {{"ouvl"_4cc, whole(5)}});
        EXPECT_EQ(answer.error(), errAEEventFailed);
        EXPECT_NE(answer.errorText().find("pactl"), std::string::npos);
    }
    EXPECT_EQ(send("sysobeep", {{"----"_4cc, whole(3)}}).error(), noErr);
}

TEST_F(SystemCommandsTest, TheVolumeIsThatOfTheMixer) {
    helper("pactl", R"(case $1 in
get-sink-volume) echo "Volume: front-left: 30000 /  46% / -9.00 dB";;
get-source-volume) exit 1;;
get-sink-mute) echo "Mute: yes";;
esac)");
    const AEDesc settings = send("sysogtvl").value();
    EXPECT_EQ(settings.find("ouvl"_4cc)->asInt32(), 46);
    EXPECT_EQ(settings.find("invl"_4cc)->asType(), "msng"_4cc);
    EXPECT_EQ(settings.find("mute"_4cc)->asBoolean(), true);
    const struct {
        Parameters parameters;
        const char* expected;
    } kCases[] = {
        {{{"----"_4cc, real(3.5)}}, "set-sink-volume @DEFAULT_SINK@ 50%\n"},
        {{{"----"_4cc, whole(70)}}, "set-sink-volume @DEFAULT_SINK@ 100%\n"},
        {{{"ouvl"_4cc, whole(-3)}}, "set-sink-volume @DEFAULT_SINK@ 0%\n"},
        {{{"invl"_4cc, whole(33)}, {"mute"_4cc, AEDesc::ofBoolean(false)}},
         "set-source-volume @DEFAULT_SOURCE@ 33%\nset-sink-mute @DEFAULT_SINK@ 0\n"},
    };
    for (const auto& row : kCases) {
        std::filesystem::remove(path("log"));
        EXPECT_EQ(send("aevtstvl", row.parameters).error(), noErr);
        EXPECT_EQ(bytesOf("log"), std::string("get-sink-volume @DEFAULT_SINK@\n") + row.expected);
    }
    EXPECT_EQ(send("aevtstvl").error(), errAEDescNotFound);
    EXPECT_EQ(send("aevtstvl", {{"ouvl"_4cc, text("loud")}}).error(), errAECoercionFail);
    EXPECT_EQ(send("aevtstvl", {{"alvl"_4cc, whole(5)}}).error(), errAEEventFailed);
}

TEST_F(SystemCommandsTest, LocationsAreOpenedByTheDesktop) {
    const auto open = [](const char* url) { return send("GURLGURL", {{"----"_4cc, text(url)}}); };
    EXPECT_EQ(open("http://localhost/").error(), errAEEventFailed);
    EXPECT_NE(open("http://localhost/").errorText().find("xdg-open"), std::string::npos);
    helper("xdg-open", "[ \"$1\" != bad:x ]");
    EXPECT_EQ(open("http://localhost/a b?$(c)").error(), noErr);
    EXPECT_EQ(bytesOf("log"), "http://localhost/a b?$(c)\n");
    EXPECT_EQ(open("bad:x").error(), errAEEventFailed);
    for (const char* url : {"", "no scheme", "--help", "-x:y", ":x", "1a:b"})
        EXPECT_EQ(open(url).error(), paramErr) << url;
    EXPECT_EQ(bytesOf("log"), "http://localhost/a b?$(c)\nbad:x\n");
}

TEST_F(SystemCommandsTest, AHelperThatHangsEndsWithACancel) {
    helper("xdg-open", "exec /bin/sleep 60");
    const auto start = std::chrono::steady_clock::now();
    const WaitAlarm alarm(start + std::chrono::milliseconds(60));
    const auto isOver = [start] { return std::chrono::steady_clock::now() - start >= std::chrono::milliseconds(60); };
    EXPECT_EQ(send("GURLGURL", {{"----"_4cc, text("a:b")}}, {.cancelled = isOver}).error(), userCanceledErr);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

TEST_F(SystemCommandsTest, TheSystemKnowsItself) {
    setEnvironment("HOME", path("bin"));
    setEnvironment("LC_ALL", "de_AT.UTF-8");
    setEnvironment("QUODDLE_TEST", "grün");
    const AEDesc info = send("sysosigt").value();
    EXPECT_EQ(info.find("siid"_4cc)->asInt64(), ::getuid());
    EXPECT_EQ(info.find("home"_4cc)->asFilePath(), path("bin/"));
    EXPECT_EQ(info.find("siul"_4cc)->asUTF8(), "de_AT");
    EXPECT_GT(info.find("sipm"_4cc)->asInt64(), 16);
    EXPECT_EQ(send("fndrgstl", {{"----"_4cc, text("QUODDLE_TEST")}}).text(), "grün");
    EXPECT_EQ(send("fndrgstl", {{"----"_4cc, text("QUODDLE_NONE")}}).text(), "");
    const auto names = send("fndrgstl").texts();
    EXPECT_NE(std::find(names.begin(), names.end(), "QUODDLE_TEST"), names.end());
    EXPECT_EQ(send("fndrgstl", {{"----"_4cc, text("sysv")}, {"has "_4cc, whole(1)}}).error(), errAEEventFailed);

    const std::pair<const char*, std::int64_t> kZones[] = {{"UTC0", 0}, {"AAA-5:30", 19800}, {"BBB+3", -10800}};
    for (const auto& [zone, seconds] : kZones) {
        setEnvironment("TZ", zone);
        ::tzset();
        EXPECT_EQ(send("sysoGMT ").number(), seconds);
    }
}

TEST_F(SystemCommandsTest, VolumesAreMountedByTheDesktop) {
    const auto mount = [](const char* volume, Parameters more = {}) {
        more.push_back({"----"_4cc, text(volume)});
        return send("aevtmvol", more);
    };
    EXPECT_NE(mount("smb://server/share").errorText().find("gio"), std::string::npos) << "there is none yet";
    helper("gio",
           "case $1 in\nmount) exit 2;;\ninfo) [ \"$LC_ALL\" = C ] && [ \"$2\" != smb://none/x ] && echo 'display name: x\nlocal path: " +
               path("bin") + "';;\nesac");
    EXPECT_EQ(mount("smb://server/share").value().asFilePath(), path("bin/")) << "mounted before";
    EXPECT_EQ(bytesOf("log"), "mount smb://server/share\ninfo smb://server/share\n");
    const struct {
        const char* volume;
        Parameters more;
        const char* url;
    } kCases[] = {
        {"My Disk", {{"SRVR"_4cc, text("nas")}}, "smb://nas/My%20Disk"},
        {"My Disk", {{"SRVR"_4cc, text("nas")}, {"USER"_4cc, text("a b")}}, "smb://a%20b@nas/My%20Disk"},
        {"ftp://host/x@y", {{"USER"_4cc, text("me")}}, "ftp://me@host/x@y"},
        {"ftp://you@host/", {{"USER"_4cc, text("me")}}, "ftp://you@host/"},
    };
    for (const auto& row : kCases) {
        std::filesystem::remove(path("log"));
        EXPECT_EQ(mount(row.volume, row.more).error(), noErr);
        EXPECT_EQ(bytesOf("log"), std::string("mount ") + row.url + "\ninfo " + row.url + "\n");
    }
    EXPECT_EQ(mount("smb://none/x").error(), -35);
    EXPECT_EQ(mount("My Disk").error(), paramErr);
    EXPECT_EQ(mount("smb://a/b", {{"PASS"_4cc, text("secret")}}).error(), errAEEventFailed);
    EXPECT_EQ(bytesOf("log").find("secret"), std::string::npos);
}

TEST_F(SystemCommandsTest, TextsAreThoseOfTheUsersLanguage) {
    make("A.app/Contents/Resources/en.lproj/Localizable.strings",
         "/* greeting */ \"hello\" = \"Hello\"; // said often\n\"only\" = \"English\";");
    make("A.app/Contents/Resources/de.lproj/Localizable.strings", "\"hello\" = \"Gr\\U00fc\u00df\\n\\\"Gott\\\"\"; bare = word; \"cut");
    make("A.app/Contents/Resources/de.lproj/Other.strings", "\"hello\" = \"andere\";");
    const auto localized = [this](const char* key, Parameters more = {}) {
        more.push_back({"----"_4cc, text(key)});
        more.push_back({"in B"_4cc, file("A.app")});
        return send("sysolocS", more).text();
    };
    setEnvironment("LANGUAGE", "");
    setEnvironment("LC_ALL", "de_AT.UTF-8");
    EXPECT_EQ(localized("hello"), "Gr\u00fc\u00df\n\"Gott\"");
    EXPECT_EQ(localized("bare"), "word");
    EXPECT_EQ(localized("cut"), "cut") << "the table ends in the middle";
    EXPECT_EQ(localized("hello", {{"froT"_4cc, text("Other")}}), "andere");
    EXPECT_EQ(localized("hello", {{"froT"_4cc, text("../de.lproj/Other")}}), "hello");
    make("A.app/Contents/Resources/de.lproj/XML.strings",
         "<?xml version=\"1.0\"?><plist><dict><key>hello</key><string>aus &lt;XML&gt;</string></dict></plist>");
    EXPECT_EQ(localized("hello", {{"froT"_4cc, text("XML")}}), "aus <XML>");
    setEnvironment("LANGUAGE", "fr:en");
    EXPECT_EQ(localized("hello"), "Hello");
    EXPECT_EQ(localized("only"), "English");
    EXPECT_EQ(localized("nowhere"), "nowhere");
    EXPECT_EQ(send("sysolocS", {{"----"_4cc, text("key")}, {"in B"_4cc, file("none.app")}}).error(), fnfErr);

    EXPECT_EQ(send("sysolocS", {{"----"_4cc, text("hello")}}).text(), "hello") << "a program without a bundle";
    setApplicationPath(path("A.app"));
    EXPECT_EQ(send("sysolocS", {{"----"_4cc, text("hello")}}).text(), "Hello");
    EXPECT_EQ(send("earsffdr", {{"----"_4cc, AEDesc::ofEnum("cura"_4cc)}}).value().asFilePath(), path("A.app/"));
    setApplicationPath({});
}

TEST_F(SystemCommandsTest, WhatHasNoMeaningHereFailsAloud) {
    const Answer answer = send("fbcssumm", {{"----"_4cc, text("x")}});
    EXPECT_NE(answer.error(), noErr);
    EXPECT_FALSE(answer.errorText().empty());
    EXPECT_EQ(send("sysocpls").texts(), std::vector<std::string>{"AppleScript"});
}

} // namespace quoddle::testing_additions
