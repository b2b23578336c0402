// SPDX-License-Identifier: MIT
// Whose dictionary serves an application, and what scripts that tell applications compile to and print as.
#include "platform/applescript/component/ApplicationDictionaries.h"

#include "platform/applescript/AppleScriptComponent.h"
#include "platform/applescript/component/DictionaryCache.h"
#include "platform/applescript/image/Block.h"
#include "platform/applescript/image/Image.h"
#include "platform/base/File.h"
#include "platform/base/Text.h"
#include "platform/osa/OSA.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

namespace quoddle {
namespace {

namespace fs = std::filesystem;

/// A setting of the environment for the time of a test.
class Setting {
public:
    Setting(const char* name, const std::string& value) : mName(name) {
        if (const char* before = std::getenv(name))
            mBefore = before;
        setenv(name, value.c_str(), 1);
    }
    ~Setting() { mBefore ? setenv(mName, mBefore->c_str(), 1) : unsetenv(mName); }

private:
    const char* mName;
    std::optional<std::string> mBefore;
};

class ApplicationDictionariesTest : public testing::Test {
protected:
    ApplicationDictionariesTest() {
        registerAppleScriptComponent();
        instance = OpenDefaultComponent(kOSAComponentType, kAppleScriptSubtype);
    }
    ~ApplicationDictionariesTest() override {
        CloseComponent(instance);
        fs::remove_all(folder);
    }

    static std::string temporaryFolder() {
        char name[] = "/tmp/quoddle-test.XXXXXX";
        return mkdtemp(name);
    }

    void put(const std::string& path, const std::string& text) const {
        fs::create_directories(fs::path(folder + "/" + path).parent_path());
        ASSERT_EQ(writeFile(folder + "/" + path, text), noErr);
    }

    /// A dictionary whose only class has this code; scripts call it "marble".
    static std::string marbles(const std::string& code) {
        return "<dictionary><suite name='S'><class name='marble' code='" + code + "'/></suite></dictionary>";
    }

    /// The code of "marble" for an application; "none" when it has no dictionary.
    static std::string marbleOf(const std::u16string& application, bool isBundleIdentifier = false) {
        const TermSource* terms = component::termsOfApplication({application, isBundleIdentifier});
        return terms && terms->startingWith("marble").size() == 1 ? bytesOf(terms->startingWith("marble")[0].code) : "none";
    }

    /// The source as it prints, or the message of the error.
    std::string printed(const std::string& source) {
        OSAID script = 0;
        AEDesc text;
        if (OSACompile(instance, AEDesc::ofUTF8(source), kOSAModeCompileIntoContext, script) != noErr)
            return OSAScriptError(instance, "errs"_4cc, "utxt"_4cc, text) == noErr ? text.asUTF8().value_or("") : "no message";
        // Stored and loaded again, so that words come from codes and not from what was typed.
        AEDesc stored;
        OSAID again = 0;
        EXPECT_EQ(OSAStore(instance, script, "scpt"_4cc, 0, stored), noErr);
        EXPECT_EQ(OSALoad(instance, stored, 0, again), noErr);
        return OSAGetSource(instance, again, "utxt"_4cc, text) == noErr ? text.asUTF8().value_or("") : "no source";
    }

    ComponentInstance instance = 0;
    // Each test has names of its own, because a process keeps what it has read.
    const std::string folder = temporaryFolder();
    Setting data{"XDG_DATA_HOME", folder + "/data"};
    Setting cache{"XDG_CACHE_HOME", folder + "/cache"};
    Setting applets{"QUODDLE_APPLET_PATH", folder + "/applets"};
};

TEST_F(ApplicationDictionariesTest, AppletsComeFirstThenTheUsersFolderThenOurs) {
    const std::string plist = "<?xml version='1.0'?><!DOCTYPE plist PUBLIC '-//Apple//DTD PLIST 1.0//EN' 'http://www.apple.com/DTDs/"
                              "PropertyList-1.0.dtd'><plist version='1.0'><dict><key>CFBundleName</key><string>x</string>"
                              "<key>Flags</key><array><string>OSAScriptingDefinition</string></array>"
                              "<key>OSAScriptingDefinition</key><string>";
    put("data/quoddle/dictionaries/Jar One.sdef", marbles("user"));
    put("data/quoddle/dictionaries/org.example.jar.sdef", marbles("usid"));
    put("data/quoddle/dictionaries/NOTES.sdef", marbles("usnt"));
    put("applets/Jar Two.app/Contents/Resources/only.sdef", marbles("only"));
    put("data/quoddle/dictionaries/Jar Two.sdef", marbles("user"));
    put("applets/Jar Three.app/Contents/Resources/one.sdef", marbles("one "));
    put("applets/Jar Three.app/Contents/Resources/two.sdef", marbles("two "));
    put("applets/Jar Three.app/Contents/Info.plist", plist + "two.sdef</string></dict></plist>");
    put("applets/Jar Four.app/Contents/Resources/one.sdef", marbles("one "));
    put("applets/Jar Four.app/Contents/Resources/two.sdef", marbles("two "));
    put("applets/Jar Five.app/Contents/Resources/in.sdef", marbles("only"));
    put("applets/Jar Five.app/Contents/Info.plist", plist + "../../../../data/quoddle/dictionaries/Jar One.sdef</string></dict></plist>");
    put("away/Jar Six.app/Contents/Resources/six.sdef", marbles("six "));
    EXPECT_EQ(marbleOf(u"jar one"), "user");
    EXPECT_EQ(marbleOf(u"org.example.jar", true), "usid");
    EXPECT_EQ(marbleOf(u"Notes"), "usnt") << "in place of ours";
    EXPECT_EQ(marbleOf(u"Jar Two"), "only") << "in place of the user's";
    EXPECT_EQ(marbleOf(u"Jar Three"), "two ");
    EXPECT_EQ(marbleOf(u"Jar Four"), "none") << "nothing says which of two is meant";
    EXPECT_EQ(marbleOf(u"Jar Five"), "only") << "a name that leads out of the bundle counts as none";
    EXPECT_EQ(marbleOf(utf16FromUTF8(folder + "/away/Jar Six.app")), "six ");
    EXPECT_EQ(marbleOf(utf16FromUTF8("file://" + folder + "/away/Jar%20Six.app")), "six ");
    EXPECT_EQ(marbleOf(u"Jar Seven"), "none");
}

TEST_F(ApplicationDictionariesTest, OursServeNamesPathsAndIdentifiers) {
    for (const auto& name :
         {u"Safari", u"/Applications/Safari.app", u"Macintosh HD:Applications:Safari.app:", u"file:///Applications/Safari.app/"})
        EXPECT_TRUE(component::termsOfApplication({name, false})) << utf8FromUTF16(name);
    EXPECT_TRUE(component::termsOfApplication({u"com.apple.safari", true}));
    EXPECT_FALSE(component::termsOfApplication({u"com.apple.safari", false}));
    EXPECT_EQ(component::termsOfApplication({u"Mail", false}), component::termsOfApplication({u"Mail", false})) << "it is read once";
}

TEST_F(ApplicationDictionariesTest, TheCacheServesUntilAFileChanges) {
    const std::string file = folder + "/a.sdef", part = folder + "/b.sdef";
    put("a.sdef", "a");
    put("b.sdef", "b");
    TermDictionary terms;
    terms.addClass("marble", "marbles", "marb"_4cc);
    terms.finish();
    EXPECT_FALSE(component::cachedTerms(file));
    component::cacheTerms(file, {file, part}, terms);
    ASSERT_TRUE(component::cachedTerms(file));
    EXPECT_EQ(component::cachedTerms(file)->terms().size(), 2u);
    EXPECT_FALSE(component::cachedTerms(part)) << "the entry of another dictionary";
    put("b.sdef", "longer");
    EXPECT_FALSE(component::cachedTerms(file)) << "an included file has changed";
    component::cacheTerms(file, {file, part}, terms);
    EXPECT_TRUE(component::cachedTerms(file));
    for (const auto& entry : fs::directory_iterator(folder + "/cache/quoddle/dictionaries"))
        fs::resize_file(entry.path(), fs::file_size(entry.path()) - 1);
    EXPECT_FALSE(component::cachedTerms(file)) << "damaged";
    component::cacheTerms(file, {file, part}, terms);
    EXPECT_TRUE(component::cachedTerms(file));
    fs::remove(part);
    EXPECT_FALSE(component::cachedTerms(file));
}

TEST_F(ApplicationDictionariesTest, ErrorsNameTheApplicationWhoseDictionaryIsMissing) {
    put("data/quoddle/dictionaries/Broken Jar.sdef", "<dictionary><suite><class name='x' code='y'/></suite></dictionary>");
    const std::string missing = " (There is no dictionary of “Nobody”, so its words are unknown.)";
    const std::pair<std::string, std::string> cases[] = {
        {"tell application \"Nobody\"\nframble window 1\nend tell", "A class name can’t go after this identifier." + missing},
        {"tell application \"Nobody\" to framble window 1", "A class name can’t go after this identifier." + missing},
        {"tell application \"Nobody\" to activate\nset x y", "A identifier can’t go after this identifier."},
        {"tell application \"Nobody\"\nset x to 1 +\nend tell", "Expected expression but found end of line."},
        {"tell application \"Finder\" to framble window 1", "A class name can’t go after this identifier."},
        {"tell application \"Broken Jar\" to framble window 1",
         "A class name can’t go after this identifier. (The dictionary of “Broken Jar” can’t be read: " + folder +
             "/data/quoddle/dictionaries/Broken Jar.sdef:1: “y” is no code of four characters.)"},
        {"tell application \"Nobody\"\n\tactivate\n\t«event abcdefgh» «class wxyz» 1\n\tquit\nend tell",
         "tell application \"Nobody\"\n\tactivate\n\t«event abcdefgh» «class wxyz» 1\n\tquit\nend tell"},
    };
    for (const auto& [source, expected] : cases)
        EXPECT_EQ(printed(source), expected) << source;
}

TEST_F(ApplicationDictionariesTest, ScriptsThatTellApplicationsPrintAsTheyWereWritten) {
    const char* sources[] = {
        "tell application \"Finder\"\n\tset shots to every document file of folder \"shots\" of home whose name extension is \"png\"\n"
        "\tset label index of item 1 of shots to 2\n\tset kept to (every folder of desktop) as alias list\n"
        "\tmake new Finder window to startup disk\n\tdelete (first item of trash whose name contains \"tmp\")\n"
        "\tif class of item 1 of desktop is folder then reveal item 1 of desktop\n"
        "\tset target of Finder window 1 to (POSIX file \"/tmp\" as alias)\n\tset here to do shell script \"pwd\"\nend tell",
        "tell application \"System Events\"\n\tkeystroke \"s\" using {command down, shift down}\n\tkey code 36 using control down\n"
        "\ttell process \"Editor\"\n\t\tset frontmost to true\n\t\tclick menu item \"Open\" of menu \"File\" of menu bar 1\n"
        "\t\tset fields to every text field of window 1 whose role description contains \"search\"\n\tend tell\n"
        "\tset names to name of every process whose background only is false\n"
        "\tset autohide of dock preferences to not autohide of dock preferences\n"
        "\tset v to value of property list item \"a\" of property list file \"~/b.plist\"\nend tell",
        "tell application id \"com.apple.mail\"\n\tset letter to make new outgoing message with properties {subject:\"Hello\", "
        "visible:true}\n"
        "\ttell letter to make new to recipient at end of to recipients with properties {address:\"a@example.org\"}\n\tsend letter\nend "
        "tell",
        "tell application \"Music\" to play (every track of library playlist 1 whose artist contains \"x\")",
        "tell application \"TextEdit\"\n\tclose document 1 saving no\n\tset text of front document to \"a\"\n"
        "\tsave document 1 in file \"Disk:a.txt\"\nend tell",
        "tell application \"Safari\" to do JavaScript \"1\" in current tab of window 1",
        "using terms from application \"Mail\"\n\ton perform mail action with messages letters for rule aRule\n\t\tbeep\n"
        "\tend perform mail action with messages\nend using terms from",
        "using terms from application \"Finder\"\n\tset x to every Finder window\nend using terms from",
        "use application \"Finder\"\nset x to every Finder window",
        "tell application \"System Events\"\n\ttell application \"Finder\" to set x to every Finder window\n\tclick button 1\nend tell",
    };
    for (const char* source : sources)
        EXPECT_EQ(printed(source), source);
    EXPECT_EQ(printed("tell application \"Finder\" to move file 1 to the front"),
              "tell application \"Finder\" to move file 1 to the beginning");
    EXPECT_EQ(printed("tell application \"Finder\" to make new folder at back with properties {name:\"a\"}"),
              "tell application \"Finder\" to make new folder at end with properties {name:\"a\"}");
    EXPECT_EQ(printed("tell app \"iTunes\" to BACK TRACK"), "tell application \"iTunes\" to back track");
    EXPECT_EQ(printed("tell application \"Calendar\" to get events of calendar 1"),
              "tell application \"Calendar\" to get events of calendar 1");
    EXPECT_EQ(printed("tell application \"Calendar\" to get «class wrev» 1"), "tell application \"Calendar\" to get event 1");
    EXPECT_EQ(printed("tell application \"Finder\" to get «class brow» 1\nget «class brow» 1"),
              "tell application \"Finder\" to get Finder window 1\nget «class brow» 1");
}

TEST_F(ApplicationDictionariesTest, TheCodeNamesTheApplicationWhoseTermsItUses) {
    OSAID script = 0;
    AEDesc stored;
    ASSERT_EQ(OSACompile(instance, AEDesc::ofUTF8("on f()\nusing terms from application \"Finder\"\nbeep\nend using terms from\nend f"),
                         kOSAModeCompileIntoContext, script),
              noErr);
    ASSERT_EQ(OSAStore(instance, script, "scpt"_4cc, kOSAModePreventGetSource, stored), noErr);
    const auto image = readImage(stored.data());
    ASSERT_TRUE(image);
    std::vector<std::u16string> named;
    for (const Object* value : image->root->children.back()->children) {
        if (!value->isBlock(block::Handler))
            continue;
        for (const Object* literal : value->children[5]->children) {
            if (literal->kind == ObjectKind::Data && literal->tag == syntax::kApplicationTag)
                named.push_back(syntax::applicationName(literal->bytes));
        }
    }
    EXPECT_EQ(named, std::vector<std::u16string>{u"Finder"});
}

} // namespace
} // namespace quoddle
