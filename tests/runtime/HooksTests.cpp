// SPDX-License-Identifier: MIT
#include "Applet.h"

#include "engine/BridgedObjects.h"
#include "engine/NSAppleEventDescriptor-QXAdditions.h"

#include <gtest/gtest.h>

#include <QUrl>

namespace quoddle {

using namespace Qt::StringLiterals;
using test::Applet;
using test::ScriptedComponent;

namespace {

constexpr auto kDroplet = "open";

/// Every image is as wide as its name, path or data is long.
class FakeImages final : public ImageSource {
public:
    QImage imageNamed(const QString& name) override { return made("named", name.size()); }
    QImage imageFile(const QString& path) override { return made("file", path.size()); }
    QImage imageWithData(const std::string& data) override { return made("data", static_cast<qsizetype>(data.size())); }
    static QImage made(const char* kind, qsizetype width) {
        QImage image(static_cast<int>(width), 1, QImage::Format_Mono);
        image.setText(u"kind"_s, QString::fromLatin1(kind));
        return image;
    }
};

QString told(const QImage& image) {
    return image.isNull() ? u"none"_s : u"%1 %2"_s.arg(image.text(u"kind"_s)).arg(image.width());
}

void setProperty(const Applet& applet, const char* name, const NSAppleEventDescriptorRef& value) {
    applet.delegate->mainScript()->setDescriptorForPropertyName(value, QString::fromLatin1(name));
}

NSAppleEventDescriptorRef raw(const char* type, std::string_view data) {
    return NSAppleEventDescriptor::descriptorWithDescriptorType(fourCharCode(type), data);
}

} // namespace

TEST(Hooks, DecideWhichFilesAreAcceptable) {
    const AEDesc yes = AEDesc::ofBoolean(true), no = AEDesc::ofBoolean(false);
    const struct {
        const char *name, *handlers;
        ScriptedComponent::Outcome outcome;
        bool isAcceptable, ends;
    } rows[] = {
        {"no open handler", "run appletfileisacceptable", {yes}, false, false},
        {"no hook", kDroplet, {}, true, false},
        {"yes", "open appletfileisacceptable", {yes}, true, false},
        {"no", "open appletfileisacceptable", {no}, false, false},
        {"no answer", "open appletfileisacceptable", {}, false, false},
        {"an error", "open appletfileisacceptable", ScriptedComponent::failing(5, u"It went wrong."), false, true},
        {"cancelled", "open appletfileisacceptable", ScriptedComponent::failing(userCanceledErr, u"User canceled."), false, false},
        {"the engine fails", "open appletfileisacceptable", {{}, noErr, {}, {}, errOSASystemError}, true, false},
    };
    for (const auto& row : rows) {
        Applet applet({.handlers = row.handlers});
        std::string asked;
        ScriptedComponent::sHandlers["appletfileisacceptable"] = [&](ScriptedComponent::Run& run) {
            const AEDesc* parameters = run.event.find("----"_4cc);
            if (parameters && parameters->count() == 1)
                asked = parameters->items()[0].asUTF8().value_or("");
            return row.outcome;
        };
        applet.delegate->_setupApplication(false);
        EXPECT_EQ(applet.delegate->isFileAcceptable(u"/a b.txt"_s), row.isAcceptable) << row.name;
        EXPECT_EQ(applet.alerts.shown.size(), row.ends ? 1 : 0) << row.name;
        if (row.ends)
            applet.alerts.dismiss();
        EXPECT_EQ(applet.ended(), row.ends) << row.name;
    }
}

TEST(Hooks, AnswerTheUpdater) {
    for (const auto* name : {"appletmaycheckforupdates", "appletupdatershouldpromptforpermissiontocheckforupdates"}) {
        const auto ask = [name](AppDelegate& delegate) {
            return name == std::string_view("appletmaycheckforupdates") ? delegate.updaterMayCheckForUpdates()
                                                                        : delegate.updaterShouldPromptForPermissionToCheckForUpdates();
        };
        const struct {
            const char* handlers;
            ScriptedComponent::Outcome outcome;
            bool answer;
            int alerts;
        } rows[] = {
            {"run", {}, true, 0},
            {name, {AEDesc::ofBoolean(true)}, true, 0},
            {name, {AEDesc::ofBoolean(false)}, false, 0},
            {name, ScriptedComponent::failing(5, u"x"), false, 1},
            {name, {{}, noErr, {}, {}, errOSASystemError}, true, 0},
        };
        for (const auto& row : rows) {
            Applet applet({.handlers = row.handlers});
            ScriptedComponent::sHandlers[name] = [&](ScriptedComponent::Run&) { return row.outcome; };
            applet.delegate->_setupApplication(false);
            EXPECT_EQ(ask(*applet.delegate), row.answer) << name;
            EXPECT_EQ(applet.alerts.shown.size(), row.alerts) << name;
        }
    }
}

TEST(Hooks, HearOfAnUpdate) {
    Applet applet({.handlers = "run appletupdaterwillinstallupdate appletupdaterwillrelaunchapplication"});
    applet.delegate->_setupApplication(false);
    applet.delegate->updaterWillInstallUpdate();
    applet.delegate->updaterWillRelaunchApplication();
    const std::vector<std::string> expected = {"appletupdaterwillinstallupdate", "appletupdaterwillrelaunchapplication"};
    EXPECT_EQ(ScriptedComponent::calls(), expected);
}

TEST(Hooks, NameThePromptsOfThePanes) {
    Applet applet({.handlers = kDroplet, .strings = "DefaultDropFilesPrompt = drop; DefaultFindFilesPrompt = find;"});
    applet.delegate->_setupApplication(false);
    EXPECT_EQ(applet.delegate->appletDropPrompt(), u"drop"_s);
    EXPECT_EQ(applet.delegate->appletSearchPrompt(), u"find"_s);
    setProperty(applet, "appletdropname", NSAppleEventDescriptor::descriptorWithString(u"Put them here"));
    setProperty(applet, "appletsearchname", NSAppleEventDescriptor::descriptorWithInt32(7));
    EXPECT_EQ(applet.delegate->appletDropPrompt(), u"Put them here"_s);
    EXPECT_EQ(applet.delegate->appletSearchPrompt(), u"7"_s);
}

TEST(Hooks, MakeImagesOfValues) {
    FakeImages images;
    Applet applet({.handlers = kDroplet, .images = &images});
    applet.delegate->_setupApplication(false);
    EXPECT_EQ(told(applet.delegate->appletDropImage()), u"named 19"_s); // that of several documents
    EXPECT_EQ(told(applet.delegate->appletSearchImage()), u"none"_s);

    const auto reference = [](const QVariant& object) { return BridgedObjects::descriptor(BridgedObjects::add(object)); };
    const std::pair<NSAppleEventDescriptorRef, QString> rows[] = {
        {descriptorWithMissingValue(), u"none"_s},
        {NSAppleEventDescriptor::descriptorWithString(u"logo"), u"named 4"_s},
        {NSAppleEventDescriptor::descriptorWithFileURL(u"/a b.png"_s), u"file 8"_s},
        {raw("PNG ", "12345"), u"data 5"_s},
        {raw("tiff", "123456"), u"data 6"_s},
        {raw("BMP ", "1"), u"named 19"_s},
        {NSAppleEventDescriptor::descriptorWithInt32(3), u"named 19"_s},
        {reference(u"star"_s), u"named 4"_s},
        {reference(QUrl::fromLocalFile(u"/x.png"_s)), u"file 6"_s},
        {reference(FakeImages::made("own", 9)), u"own 9"_s},
        {reference(5), u"named 19"_s},
    };
    for (const auto& [value, expected] : rows) {
        setProperty(applet, "appletdropimage", value);
        EXPECT_EQ(told(applet.delegate->appletDropImage()), expected) << value->descriptorType();
    }
    setProperty(applet, "appletsearchimage", NSAppleEventDescriptor::descriptorWithInt32(3));
    EXPECT_EQ(told(applet.delegate->appletSearchImage()), u"none"_s);
}

} // namespace quoddle
