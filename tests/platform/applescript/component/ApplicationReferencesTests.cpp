// SPDX-License-Identifier: MIT
// References to objects of applications: the events that they become, and the values that come back.
#include "EventText.h"
#include "platform/ae/AEFlatten.h"
#include "platform/ae/AEObjects.h"
#include "platform/applescript/AppleScriptComponent.h"
#include "platform/osa/OSA.h"

#include <gtest/gtest.h>

namespace quoddle {
namespace {

class ApplicationReferencesTest : public testing::Test {
protected:
    ApplicationReferencesTest() {
        registerAppleScriptComponent();
        instance = OpenDefaultComponent(kOSAComponentType, kAppleScriptSubtype);
        OSASetSendProc(instance, receive, this);
    }
    ~ApplicationReferencesTest() override { CloseComponent(instance); }

    /// The result as source, or the number and the message of the error. "; " separates lines.
    std::string run(std::string source) {
        for (auto at = source.find("; "); at != std::string::npos; at = source.find("; "))
            source.replace(at, 2, "\n");
        sent.clear();
        OSAID script = 0, result = 0;
        OSStatus status = OSACompile(instance, AEDesc::ofUTF8(source), kOSAModeCompileIntoContext, script);
        if (status == noErr)
            status = OSAExecute(instance, script, 0, 0, result);
        if (status != noErr)
            return errorPart("errn"_4cc) + " " + errorPart("errs"_4cc);
        AEDesc text;
        return result && OSADisplay(instance, result, "utxt"_4cc, 0, text) == noErr ? text.asUTF8().value_or("") : "";
    }
    std::string errorPart(FourCharCode selector) {
        AEDesc part;
        return OSAScriptError(instance, selector, "utxt"_4cc, part) == noErr ? part.asUTF8().value_or("") : "";
    }
    /// The events of a script, one after the other.
    std::string eventsOf(const std::string& source) {
        const std::string result = run(source);
        std::string text;
        for (const AEDesc& event : sent)
            text += (text.empty() ? "" : "; ") + textOfEvent(event);
        return text.empty() ? result : text;
    }
    static AEDesc specifier(DescType wanted, DescType form, AEDesc data, AEDesc from = {}) {
        AEDesc made;
        EXPECT_EQ(CreateObjSpecifier(wanted, from, form, data, made), noErr);
        return made;
    }

    ComponentInstance instance = 0;
    std::vector<AEDesc> sent;
    std::vector<AEDesc> answers; // to the events, one after the other; the last one also to all that follow
    AEDesc failure;              // parameters of an error reply

private:
    /// Does what sockets do, so that what cannot travel is noticed.
    static AEDesc received(const AEDesc& event) {
        std::string bytes;
        AEDesc copy;
        EXPECT_EQ(AEFlattenDesc(event, bytes), noErr);
        EXPECT_EQ(AEUnflattenDesc(bytes, copy), noErr);
        return copy;
    }
    static OSErr receive(const AEDesc& event, AEDesc* reply, AESendMode mode, AESendPriority, std::int32_t, AEIdleProc, AEFilterProc,
                         void* test) {
        auto* self = static_cast<ApplicationReferencesTest*>(test);
        self->sent.push_back(received(event));
        if (!(mode & kAEWaitReply) || self->failure.isRecord()) {
            for (const AEItem& part : self->failure.fields())
                (void)reply->put(part.key, part.value);
            return noErr;
        }
        if (!self->answers.empty())
            (void)reply->put("----"_4cc, self->answers[std::min(self->sent.size(), self->answers.size()) - 1]);
        return noErr;
    }
};

struct Outgoing {
    const char* source; // after "tell application "Finder" to "
    const char* events;
};

constexpr Outgoing kForms[] = {
    {"get name of file \"a\"", "core/getd ----=prop:prop(type pnam) < file:name(\"a\") < app"},
    {"get file 3 of folder \"x\" of startup disk", "core/getd ----=file:indx(3) < cfol:name(\"x\") < prop:prop(type sdsk) < app"},
    {"get file id 5", "core/getd ----=file:ID(5) < app"},
    {"get first file", "core/getd ----=file:indx(1) < app"},
    {"get last file of home", "core/getd ----=file:indx(-1) < prop:prop(type home) < app"},
    {"get 3rd file", "core/getd ----=file:indx(3) < app"},
    {"get file (1 + 1)", "core/getd ----=file:indx(2) < app"},
    {"get front window", "core/getd ----=cwin:indx(1) < app"},
    {"get back window", "core/getd ----=cwin:indx(-1) < app"},
    {"get middle file", "core/getd ----=file:indx(abso midd) < app"},
    {"get some file", "core/getd ----=file:indx(abso any) < app"},
    {"get files of every folder", "core/getd ----=file:indx(abso all) < cfol:indx(abso all) < app"},
    {"get files 2 thru -1 of home", "core/getd ----=file:rang(file:indx(2) < ccnt .. file:indx(-1) < ccnt) < prop:prop(type home) < app"},
    {"get files \"a\" thru \"c\"", "core/getd ----=file:rang(file:name(\"a\") < ccnt .. file:name(\"c\") < ccnt) < app"},
    {"get files from file 1 to folder \"b\" of home",
     "core/getd ----=file:rang(file:indx(1) < ccnt .. cfol:name(\"b\") < ccnt) < prop:prop(type home) < app"},
    {"get «class wxyz» before «class wxyz» 2", "core/getd ----=wxyz:rele(enum prev) < wxyz:indx(2) < app"},
    {"get «class wxyz» after «class wxyz» 2", "core/getd ----=wxyz:rele(enum next) < wxyz:indx(2) < app"},
    {"make new folder at beginning", "core/crel kocl=type cfol insh=bgng@app"},
    {"make new folder at end of home with properties {name:\"n\", foo:1}",
     "core/crel kocl=type cfol insh=end@prop:prop(type home) < app prdt=reco<pnam:\"n\", usrf:{\"foo\", 1}>"},
    {"make new folder at before folder 2", "core/crel kocl=type cfol insh=befo@cfol:indx(2) < app"},
    {"make new folder at after folder 2", "core/crel kocl=type cfol insh=afte@cfol:indx(2) < app"},
    {"duplicate file 1 to folder \"b\"", "core/clon ----=file:indx(1) < app insh=cfol:name(\"b\") < app"},
    {"move every file to trash", "core/move ----=file:indx(abso all) < app insh=prop:prop(type trsh) < app"},
    {"get word 1 of name of file 1", "core/getd ----=cwor:indx(1) < prop:prop(type pnam) < file:indx(1) < app"},
    {"get {name, size} of file 1",
     "core/getd ----=prop:prop(type pnam) < file:indx(1) < app; core/getd ----=prop:prop(type ptsz) < file:indx(1) < app"},
    {"set {name, size} of file 1 to {\"b\", 5}", "core/setd ----=prop:prop(type pnam) < file:indx(1) < app data=\"b\"; core/setd "
                                                 "----=prop:prop(type ptsz) < file:indx(1) < app data=5"},
    {"set {name, size} of file 1 to {\"b\"}", "core/setd ----=prop:prop(type pnam) < file:indx(1) < app data=\"b\""},
    {"set name of files to \"b\"", "core/setd ----=prop:prop(type pnam) < file:indx(abso all) < app data=\"b\""},
    {"count files", "core/cnte ----=file:indx(abso all) < app"},
    {"get number of files", "core/cnte ----=file:indx(abso all) < app"},
    {"count home each file", "core/cnte ----=prop:prop(type home) < app kocl=type file"},
    {"exists file \"a\"", "core/doex ----=file:name(\"a\") < app"},
    {"(size of file 1) as text", "core/getd ----=prop:prop(type ptsz) < file:indx(1) < app rtyp=type ctxt"},
    {"delete", "core/delo"},
    {"delete it", "core/delo"},
    {"«event abcdefgh» file 1 given «class aaaa»:file 2, «class bbbb»:{x:a reference to file 3}",
     "abcd/efgh ----=file:indx(1) < app aaaa=file:indx(2) < app bbbb=reco<usrf:{\"x\", file:indx(3) < app}>"},
};

TEST_F(ApplicationReferencesTest, EveryFormHasItsDescriptor) {
    answers = {AEDesc::ofInt32(7)};
    for (const Outgoing& row : kForms)
        EXPECT_EQ(eventsOf("tell application \"Finder\" to " + std::string(row.source)), row.events) << row.source;
}

constexpr Outgoing kFilters[] = {
    {"every file whose name is \"a\"", "file:test([prop:prop(type pnam) < exmn = \"a\"]) < app"},
    {"every file whose name is not \"a\"", "file:test(NOT{[prop:prop(type pnam) < exmn = \"a\"]}) < app"},
    {"every file whose size > 5", "file:test([prop:prop(type ptsz) < exmn > 5]) < app"},
    {"every file whose size is not less than 5", "file:test([prop:prop(type ptsz) < exmn >= 5]) < app"},
    {"every file whose size < 5", "file:test([prop:prop(type ptsz) < exmn < 5]) < app"},
    {"every file whose size ≤ 5", "file:test([prop:prop(type ptsz) < exmn <= 5]) < app"},
    {"every file whose name contains \"x\"", "file:test([prop:prop(type pnam) < exmn cont \"x\"]) < app"},
    {"every file whose name does not contain \"x\"", "file:test(NOT{[prop:prop(type pnam) < exmn cont \"x\"]}) < app"},
    {"every file whose name begins with \"x\"", "file:test([prop:prop(type pnam) < exmn bgwt \"x\"]) < app"},
    {"every file whose name ends with \"x\"", "file:test([prop:prop(type pnam) < exmn ends \"x\"]) < app"},
    {"every file whose name is in {\"a\", \"b\"}", "file:test([{\"a\", \"b\"} cont prop:prop(type pnam) < exmn]) < app"},
    {"every file whose name is not contained by \"abc\"", "file:test(NOT{[\"abc\" cont prop:prop(type pnam) < exmn]}) < app"},
    {"every file whose locked", "file:test([prop:prop(type aslk) < exmn = true]) < app"},
    {"every file whose not locked", "file:test(NOT{[prop:prop(type aslk) < exmn = true]}) < app"},
    {"every file whose locked is true and size > 3 or its name is \"a\"",
     "file:test(OR{AND{[prop:prop(type aslk) < exmn = true], [prop:prop(type ptsz) < exmn > 3]}, [prop:prop(type pnam) < exmn = \"a\"]}) < "
     "app"},
    {"every file whose size is (my limit) + 1", "file:test([prop:prop(type ptsz) < exmn = 5]) < app"},
    {"every folder whose name of first file is \"a\"", "cfol:test([prop:prop(type pnam) < file:indx(1) < exmn = \"a\"]) < app"},
    // The test stands where the collection stood, the choice around it.
    {"first file of home whose size > 3", "file:indx(1) < file:test([prop:prop(type ptsz) < exmn > 3]) < prop:prop(type home) < app"},
    {"last file whose size > 3", "file:indx(-1) < file:test([prop:prop(type ptsz) < exmn > 3]) < app"},
    {"some file whose size > 3", "file:indx(abso any) < file:test([prop:prop(type ptsz) < exmn > 3]) < app"},
    {"files 1 thru 2 whose size > 3",
     "file:rang(file:indx(1) < ccnt .. file:indx(2) < ccnt) < file:test([prop:prop(type ptsz) < exmn > 3]) < app"},
    {"name of every file whose size > 3", "prop:prop(type pnam) < file:test([prop:prop(type ptsz) < exmn > 3]) < app"},
    {"(files whose size > 3) whose name is \"a\"",
     "file:test([prop:prop(type pnam) < exmn = \"a\"]) < file:test([prop:prop(type ptsz) < exmn > 3]) < app"},
};

TEST_F(ApplicationReferencesTest, FiltersAreSent) {
    answers = {AEDesc::ofInt32(7)};
    for (const Outgoing& row : kFilters)
        EXPECT_EQ(eventsOf("property limit : 4; tell application \"Finder\" to get " + std::string(row.source)),
                  "core/getd ----=" + std::string(row.events))
            << row.source;
    for (const char* own : {"every item of {1, 2} whose it > 1", "words of \"a b\" whose it is \"a\"", "{1, 2} whose class is integer"}) {
        EXPECT_EQ(run(own).substr(0, 5), "-1728") << own;
        EXPECT_TRUE(sent.empty());
    }
}

TEST_F(ApplicationReferencesTest, ObjectsThatAreToldAreSubjects) {
    answers = {AEDesc::ofInt32(7)};
    const auto subject = [this] {
        const auto told = sent.empty() ? std::nullopt : sent.back().attribute("subj"_4cc);
        return told ? textOfDescriptor(*told) : "none";
    };
    EXPECT_EQ(eventsOf("tell home of application \"Finder\"; make new «class cfol» with properties {name:\"a\"}; end tell"),
              "core/crel kocl=type cfol prdt=reco<pnam:\"a\">");
    EXPECT_EQ(subject(), "prop:usrp(\"home\") < app");
    EXPECT_EQ(eventsOf("tell window 2 of application \"Finder\" to close"), "core/clos ----=cwin:indx(2) < app");
    EXPECT_EQ(subject(), "cwin:indx(2) < app");
    EXPECT_EQ(eventsOf("tell application \"Finder\" to close window 2"), "core/clos ----=cwin:indx(2) < app");
    EXPECT_EQ(subject(), "none");
}

TEST_F(ApplicationReferencesTest, AnswersBecomeReferences) {
    const AEDesc desk = specifier("cfol"_4cc, "name"_4cc, AEDesc::ofUTF8("Desk"));
    const AEDesc name = specifier("prop"_4cc, "prop"_4cc, AEDesc::ofType("pnam"_4cc), AEDesc("exmn"_4cc, {}));
    AEDesc equal, place, boundaries;
    (void)CreateCompDescriptor("=   "_4cc, name, AEDesc::ofUTF8("a"), equal);
    (void)CreateInsertionLocation(desk, "end "_4cc, place);
    const AEDesc first = specifier("file"_4cc, "indx"_4cc, AEDesc::ofInt32(1), AEDesc("ccnt"_4cc, {}));
    (void)CreateRangeDescriptor(first, specifier("file"_4cc, "indx"_4cc, AEDesc::ofInt32(-2), AEDesc("ccnt"_4cc, {})), boundaries);
    const struct {
        AEDesc answer;
        const char* shown;
    } table[] = {
        {desk, "folder \"Desk\" of application \"Finder\""},
        {specifier("file"_4cc, "ID  "_4cc, AEDesc::ofInt32(9), desk), "file id 9 of folder \"Desk\" of application \"Finder\""},
        {specifier("file"_4cc, "indx"_4cc, CreateAbsoluteOrdinal("last"_4cc), desk),
         "last file of folder \"Desk\" of application \"Finder\""},
        {specifier("file"_4cc, "rang"_4cc, boundaries, desk), "files 1 thru -2 of folder \"Desk\" of application \"Finder\""},
        {specifier("file"_4cc, "test"_4cc, equal, desk), "every file of folder \"Desk\" of application \"Finder\" whose name = \"a\""},
        {specifier("file"_4cc, "rele"_4cc, AEDesc::ofEnum("prev"_4cc), desk), "file before folder \"Desk\" of application \"Finder\""},
        {place, "end of folder \"Desk\" of application \"Finder\""},
        {AEDesc::list({desk, AEDesc::ofInt32(1)}), "{folder \"Desk\" of application \"Finder\", 1}"},
        {AEDesc::record({{"pnam"_4cc, desk}, {"usrf"_4cc, AEDesc::list({AEDesc::ofUTF8("own Key"), AEDesc::ofInt32(2)})}}),
         "{name:folder \"Desk\" of application \"Finder\", |own Key|:2}"},
        {AEDesc::ofType("cfol"_4cc), "«class cfol»"},
        {AEDesc::ofEnum("yes "_4cc), "yes"},
        {AEDesc::ofFilePath("/tmp"), "file \"Macintosh HD:tmp:\""},
    };
    for (const auto& row : table) {
        answers = {row.answer};
        EXPECT_EQ(run("tell application \"Finder\"; get selection; end tell"), row.shown);
    }
    // The reference that came back goes out again as it was.
    for (std::size_t i = 0; i < 7; ++i) {
        answers = {table[i].answer, AEDesc::ofInt32(1)};
        (void)run("tell application \"Finder\" to set r to selection; tell r to «event abcdefgh»");
        ASSERT_EQ(sent.size(), 2u) << table[i].shown;
        const AEDesc* again = sent[1].find("----"_4cc);
        ASSERT_TRUE(again) << table[i].shown;
        const AEDesc expected = i == 2 ? specifier("file"_4cc, "indx"_4cc, AEDesc::ofInt32(-1), desk) : table[i].answer;
        EXPECT_EQ(textOfDescriptor(*again), textOfDescriptor(expected));
    }
}

TEST_F(ApplicationReferencesTest, ReferencesAreUsedFurther) {
    const AEDesc desk = specifier("cfol"_4cc, "name"_4cc, AEDesc::ofUTF8("Desk"));
    const std::string got = "set r to «class sele» of application \"Finder\"; ";
    const std::string made = "set r to a reference to name of «class cfol» \"Desk\" of application \"Finder\"; ";
    const struct {
        std::string source;
        const char* event; // the last one
        const char* result;
    } table[] = {
        {got + "name of r", "core/getd ----=prop:prop(type pnam) < cfol:name(\"Desk\") < app", "5"},
        {got + "r's id", "core/getd ----=prop:prop(type ID) < cfol:name(\"Desk\") < app", "5"},
        {got + "class of r", "core/getd ----=prop:prop(type pcls) < cfol:name(\"Desk\") < app", "5"},
        {got + "tell r to get name", "core/getd ----=prop:prop(type pnam) < cfol:name(\"Desk\") < app", "5"},
        {got + "set name of r to \"x\"", "core/setd ----=prop:prop(type pnam) < cfol:name(\"Desk\") < app data=\"x\"", "\"x\""},
        {got + "contents of r", "core/getd ----=cfol:name(\"Desk\") < app", "5"},
        {got + "set contents of r to 1", "core/setd ----=cfol:name(\"Desk\") < app data=1", "1"},
        {got + "get r", "core/getd ----=prop:prop(type sele) < app", "folder \"Desk\" of application \"Finder\""},
        {got + "{r = r, r is in {1, r}, {r, 1} contains r, r is in {1}}", "core/getd ----=prop:prop(type sele) < app",
         "{true, true, true, false}"},
    };
    for (const auto& row : table) {
        answers = {desk, AEDesc::ofInt32(5)};
        const std::string result = run(row.source);
        EXPECT_EQ(sent.empty() ? "none" : textOfEvent(sent.back()), row.event) << row.source;
        EXPECT_EQ(result, row.result) << row.source;
    }
    answers = {AEDesc::ofUTF8("Desk")};
    EXPECT_EQ(run(made + "{r = \"Desk\", contents of r = \"Desk\"}"), "{false, true}");
    answers = {AEDesc::ofInt32(3)};
    EXPECT_EQ(run("tell application \"Finder\" to count «class file»"), "3");
}

TEST_F(ApplicationReferencesTest, ErrorsKeepTheirParts) {
    failure = AEDesc::record({{"errn"_4cc, AEDesc::ofInt32(-1728)},
                              {"errs"_4cc, AEDesc::ofUTF8("Nothing there.")},
                              {"erob"_4cc, specifier("cfol"_4cc, "name"_4cc, AEDesc::ofUTF8("Desk"))},
                              {"ptlr"_4cc, AEDesc::list({AEDesc::ofInt32(1)})},
                              {"errt"_4cc, AEDesc::ofType("file"_4cc)}});
    EXPECT_EQ(
        run("try; tell application \"Finder\" to get home; on error m number n from f to t partial result p; {m, n, f, t, p}; end try"),
        "{\"Finder got an error: Nothing there.\", -1728, folder \"Desk\" of application \"Finder\", file, {1}}");
}

} // namespace
} // namespace quoddle
