// SPDX-License-Identifier: MIT
// `use`: script libraries, their folders and versions, and what compiled scripts keep of the statements.
#include "platform/applescript/component/ScriptFolder.h"
#include "platform/applescript/component/ScriptLibraries.h"

namespace quoddle {
namespace {

class ScriptLibrariesTest : public ScriptFolderTest {
protected:
    ScriptLibrariesTest() { ::setenv("OSA_LIBRARY_PATH", ("relative::" + folder).c_str(), 1); }
    ~ScriptLibrariesTest() override { ::unsetenv("OSA_LIBRARY_PATH"); }

    /// The result of a script as source, or its error; with `isStored` of the script that is read back from the stored form.
    std::string run(const std::string& source, bool isStored = false, const std::string& location = {}) {
        OSAID script = 0;
        if (OSACompile(instance, AEDesc::ofUTF8(source), kOSAModeCompileIntoContext, script) != noErr)
            return "does not compile: " + error("errs"_4cc);
        AEDesc text;
        if (isStored && (OSAStore(instance, script, "scpt"_4cc, 0, text) != noErr || OSALoad(instance, text, 0, script) != noErr))
            return "cannot be stored";
        if (!location.empty() && OSASetScriptInfo(instance, script, "fref"_4cc, location) != noErr)
            return "takes no location";
        return resultOf(script, "errs"_4cc);
    }
};

TEST_F(ScriptLibrariesTest, AreOneObjectEachUnderTheNameOfTheStatement) {
    write("Maths.applescript",
          "property version : \"1.10\"\nproperty calls : 0\non twice(x)\nset calls to calls + 1\nreturn x * 2\nend twice");
    const std::string source = "use AppleScript version \"2.4\"\nuse scripting additions\nuse framework \"Foundation\"\n"
                               "use maths : script \"Maths\" version \"1.9\"\nuse sys : application \"System Events\"\n"
                               "set a to {maths's twice(2), script \"Maths\"'s twice(3)}\n"
                               "tell script \"Maths\" to set end of a to twice(4)\n{a, calls of maths, class of maths, sys}";
    EXPECT_EQ(run(source), "{{4, 6, 8}, 3, script, application \"System Events\"}");
    EXPECT_EQ(run(source, true), "{{4, 6, 8}, 6, script, application \"System Events\"}") << "the library is kept while the component is";
    EXPECT_EQ(run("use maths : script \"Maths\"\nrequired import items", true), "{{item:script \"Maths\" of «script»}}");
}

TEST_F(ScriptLibrariesTest, AMissingOneIsAnErrorOfItsStatement) {
    write("Maths.applescript", "property version : \"1.10\"");
    write("Broken.applescript", "on f(");
    for (const auto& [statement, message] : std::initializer_list<std::pair<std::string, std::string>>{
             {"use script \"None\"", "Can’t get script \"None\"."},
             {"use m : script \"Maths\" version \"1.11\"", "Can’t get script \"Maths\" version 1.11."},
             {"use script \"../Maths\"", "Can’t get script \"../Maths\"."},
             {"use script \"Broken\"", "Can’t get script \"Broken\"."},
         }) {
        EXPECT_EQ(run("-- first\n" + statement + "\nreturn 1"), "does not compile: " + message);
        EXPECT_EQ(error("erng"_4cc).empty(), false);
    }
    EXPECT_EQ(run("script \"None\"'s f()"), "Can’t get script \"None\".");
}

TEST_F(ScriptLibrariesTest, MayUseEachOther) {
    write("Even.applescript", "use odd : script \"Odd\"\non test(n)\nif n = 0 then return true\nreturn odd's test(n - 1)\nend test");
    write("Odd.applescript", "use even : script \"Even\"\non test(n)\nif n = 0 then return false\nreturn even's test(n - 1)\nend test");
    write("Own.applescript", "use own : script \"Own\"\nproperty n : 1\non same()\nset n to 7\nreturn n of own = 7\nend same");
    EXPECT_EQ(run("use even : script \"Even\"\nuse own : script \"Own\"\n{even's test(5), even's test(4), own's same()}"),
              "{false, true, true}");
}

TEST_F(ScriptLibrariesTest, ThoseOfTheScriptsBundleComeFirst) {
    write("Words.applescript", "on said()\nreturn \"everybody's\"\nend said");
    write("A.scptd/Contents/Resources/Script Libraries/Words.applescript", "on said()\nreturn \"its own\"\nend said");
    EXPECT_EQ(run("script \"Words\"'s said()"), "\"everybody's\"");
    EXPECT_EQ(run("script \"Words\"'s said()", false, folder + "/A.scptd/Contents/Resources/Scripts/main.scpt"), "\"its own\"");
}

TEST_F(ScriptLibrariesTest, TheLanguageMustBeNewEnough) {
    for (const auto& [statement, result] : std::initializer_list<std::pair<const char*, const char*>>{
             {"use AppleScript version \"2.4\"", "1"},
             {"use AppleScript version \"2.8\" -- or later", "1"},
             {"use AppleScript", "1"},
             {"use AppleScript version \"2.10\"", "does not compile: Can’t get AppleScript version 2.10."},
             {"use AppleScript version \"new\"", "does not compile: Can’t get AppleScript version new."},
         })
        EXPECT_EQ(run(std::string(statement) + "\n1"), result) << statement;
}

TEST(ScriptLibraryVersions, AreComparedPartByPart) {
    for (const auto& [version, wanted, isEnough] : std::initializer_list<std::tuple<const char*, const char*, bool>>{{"1.10", "1.9", true},
                                                                                                                     {"1.9", "1.10", false},
                                                                                                                     {"2", "1.9.9", true},
                                                                                                                     {"1.0", "1", true},
                                                                                                                     {"1", "1.0.1", false},
                                                                                                                     {"x", "0", true},
                                                                                                                     {"", "1", false}})
        EXPECT_EQ(component::isVersionAtLeast(version, wanted), isEnough) << version << ' ' << wanted;
}

} // namespace
} // namespace quoddle
