// SPDX-License-Identifier: MIT
// The paths of folders, their contents, and the properties of files.
#include "Additions.h"
#include "platform/ae/AEObjects.h"

#include <algorithm>
#include <ctime>

namespace quoddle::testing_additions {

namespace {

namespace fs = std::filesystem;

class FolderCommandsTest : public AdditionsTest {
protected:
    FolderCommandsTest() {
        setEnvironment("HOME", path("home"));
        setEnvironment("XDG_DATA_HOME", "");
        setEnvironment("XDG_CONFIG_HOME", "");
        setEnvironment("TMPDIR", path("tmp"));
        fs::create_directories(path("home"));
    }
    static Answer pathTo(FourCharCode folder, Parameters parameters = {}) {
        parameters.push_back({"----"_4cc, AEDesc::ofEnum(folder)});
        return send("earsffdr", std::move(parameters));
    }
    std::string posix(const Answer& answer) const {
        const std::string whole = answer.value().asFilePath().value_or("error " + std::to_string(answer.error()));
        const std::string inside = path("");
        return whole.starts_with(inside) ? whole.substr(inside.size()) : whole;
    }
};

} // namespace

TEST_F(FolderCommandsTest, EveryFolderIsWhereTheDesktopHasIt) {
    make("home/.config/user-dirs.dirs",
         "# comment\nXDG_MUSIC_DIR=\"$HOME/Musik/\"\n "
         "XDG_VIDEOS_DIR=\"/elsewhere/films\"\nXDG_PICTURES_DIR=\"relative\"\nXDG_DOWNLOAD_DIR=\"$HOME/a\\\"b\"\n");
    const FourCharCode user = "fldu"_4cc, local = "fldl"_4cc, system = "flds"_4cc;
    const struct {
        FourCharCode folder, domain;
        const char* expected;
    } kCases[] = {
        {"cusr"_4cc, 0, "home/"},
        {"desk"_4cc, 0, "home/Desktop/"},
        {"docs"_4cc, 0, "home/Documents/"},
        {"\xb5\x64oc"_4cc, 0, "home/Musik/"},
        {"pdoc"_4cc, 0, "home/Pictures/"},
        {"down"_4cc, 0, "home/a\"b/"},
        {"trsh"_4cc, 0, "home/.local/share/Trash/files/"},
        {"pref"_4cc, 0, "home/.config/"},
        {"temp"_4cc, 0, "tmp/"},
        {"boot"_4cc, 0, "/"},
        {"pref"_4cc, local, "/etc/"},
        {"asup"_4cc, system, "/usr/share/"},
        {"dlib"_4cc, user, "home/.local/share/"},
        {"scr\xc4"_4cc, 0, "home/.local/share/quoddle/Scripts/"},
        {"fvoc"_4cc, 0, "error -43"},
        {"desk"_4cc, system, "error -43"},
        {"desk"_4cc, "fldn"_4cc, "error -43"},
        {"zzzz"_4cc, 0, "error -43"},
    };
    for (const auto& row : kCases) {
        const Parameters domain = row.domain ? Parameters{{"from"_4cc, AEDesc::ofEnum(row.domain)}} : Parameters{};
        EXPECT_EQ(posix(pathTo(row.folder, domain)), row.expected);
    }
    EXPECT_EQ(pathTo("desk"_4cc).value().type(), "alis"_4cc);
    setEnvironment("XDG_DATA_HOME", path("data"));
    EXPECT_EQ(posix(pathTo("asup"_4cc)), "data/");
}

// Inside a tell the folder's word is often the application's own, for a property of the application.
TEST_F(FolderCommandsTest, PropertiesOfApplicationsNameFolders) {
    const auto property = [](FourCharCode code) {
        AEDesc specifier;
        (void)CreateObjSpecifier("prop"_4cc, AEDesc(), "prop"_4cc, AEDesc::ofType(code), specifier);
        return specifier;
    };
    EXPECT_EQ(posix(send("earsffdr", {{"----"_4cc, property("trsh"_4cc)}})), "home/.local/share/Trash/files/");
    EXPECT_EQ(posix(send("earsffdr", {{"----"_4cc, property("home"_4cc)}})), "home/");
    EXPECT_EQ(posix(send("earsffdr", {{"----"_4cc, property("sdsk"_4cc)}})), "/");
    EXPECT_EQ(posix(send("earsffdr", {{"----"_4cc, property("pref"_4cc)}, {"from"_4cc, property("fldl"_4cc)}})), "/etc/");
    EXPECT_EQ(send("earsffdr", {{"----"_4cc, property("pnam"_4cc)}}).error(), fnfErr);
}

TEST_F(FolderCommandsTest, ApplicationsHavePathsWhenTheyAreHere) {
    EXPECT_EQ(send("earsffdr", {{"----"_4cc, AEDesc("aprl"_4cc, "No Such Thing")}}).error(), procNotFound);
    fs::create_directories(path("Own.app/Contents"));
    EXPECT_EQ(posix(send("earsffdr", {{"----"_4cc, AEDesc("aprl"_4cc, path("Own.app"))}})), "Own.app/");
}

TEST_F(FolderCommandsTest, FoldersAreMadeUnlessTheScriptSaysNo) {
    EXPECT_EQ(pathTo("docs"_4cc, {{"crfl"_4cc, AEDesc::ofBoolean(false)}}).error(), fnfErr);
    EXPECT_FALSE(fs::exists(path("home/Documents")));
    EXPECT_EQ(pathTo("docs"_4cc).error(), noErr);
    EXPECT_TRUE(fs::is_directory(path("home/Documents")));
    make("home/Desktop", "a file in the way");
    EXPECT_EQ(pathTo("desk"_4cc).error(), -120);
}

TEST_F(FolderCommandsTest, PathsAsTextHaveColons) {
    setEnvironment("HOME", path("home/o:e"));
    std::string expected = "Macintosh HD" + path("home/");
    std::replace(expected.begin(), expected.end(), '/', ':');
    for (FourCharCode type : {"ctxt"_4cc, "TEXT"_4cc, "utxt"_4cc})
        EXPECT_EQ(pathTo("cusr"_4cc, {{"rtyp"_4cc, AEDesc::ofType(type)}}).text(), expected + "o/e:");
    EXPECT_EQ(pathTo("boot"_4cc, {{"rtyp"_4cc, AEDesc::ofType("ctxt"_4cc)}}).text(), "Macintosh HD:");
    EXPECT_EQ(pathTo("boot"_4cc, {{"rtyp"_4cc, AEDesc::ofType("furl"_4cc)}}).value().type(), "furl"_4cc);
}

TEST_F(FolderCommandsTest, ResourcesAreFoundInsideABundleOnly) {
    make("A.app/Contents/Resources/pic.png", "p");
    make("A.app/Contents/Resources/en.lproj/sub/text.txt", "t");
    make("A.app/Contents/secret", "s");
    const auto resource = [&](const char* name, Parameters more = {}) {
        more.push_back({"----"_4cc, text(name)});
        more.push_back({"in B"_4cc, file("A.app")});
        return posix(send("sysorpth", std::move(more)));
    };
    EXPECT_EQ(resource("pic.png"), "A.app/Contents/Resources/pic.png");
    EXPECT_EQ(resource("text.txt", {{"in D"_4cc, text("sub")}}), "A.app/Contents/Resources/en.lproj/sub/text.txt");
    EXPECT_EQ(resource("none"), "error -192");
    EXPECT_EQ(resource("../secret"), "error -192");
    EXPECT_EQ(resource("secret", {{"in D"_4cc, text("..")}}), "error -192");
    EXPECT_EQ(resource("/etc/passwd"), "error -192");
}

TEST_F(FolderCommandsTest, ListsFolders) {
    for (const char* name : {"list/b", "list/A", "list/c", "list/.hidden"})
        make(name, "");
    EXPECT_EQ(send("earslfdr", {{"----"_4cc, file("list")}}).texts(), (std::vector<std::string>{".hidden", "A", "b", "c"}));
    EXPECT_EQ(send("earslfdr", {{"----"_4cc, file("list")}, {"lfiv"_4cc, AEDesc::ofBoolean(false)}}).texts(),
              (std::vector<std::string>{"A", "b", "c"}));
    EXPECT_EQ(send("earslfdr", {{"----"_4cc, file("none")}}).error(), fnfErr);
    EXPECT_EQ(send("earslfdr", {{"----"_4cc, file("list/A")}}).error(), -120);
    EXPECT_EQ(send("earslvol").texts().front(), "Macintosh HD");
}

TEST_F(FolderCommandsTest, DescribesFilesAndFolders) {
    make("d/.a.TXT", "12345");
    make("d/deep/er", "123");
    fs::create_symlink(path("d/.a.TXT"), path("link"));
    const auto about = [&](const char* name, Parameters more = {}) {
        more.push_back({"----"_4cc, file(name)});
        return send("sysonfo4", std::move(more)).value();
    };
    const AEDesc text = about("d/.a.TXT"), folder = about("d"), link = about("link");
    EXPECT_EQ(text.find("pnam"_4cc)->asUTF8(), ".a.TXT");
    EXPECT_EQ(text.find("nmxt"_4cc)->asUTF8(), "TXT");
    EXPECT_EQ(text.find("utid"_4cc)->asUTF8(), "public.plain-text");
    EXPECT_EQ(text.find("ptsz"_4cc)->asInt32(), 5);
    EXPECT_EQ(text.find("asdr"_4cc)->asBoolean(), false);
    EXPECT_EQ(text.find("pvis"_4cc)->asBoolean(), false);
    EXPECT_EQ(folder.find("asdr"_4cc)->asBoolean(), true);
    EXPECT_EQ(folder.find("pvis"_4cc)->asBoolean(), true);
    EXPECT_EQ(folder.find("ptsz"_4cc)->asInt32(), 8);
    EXPECT_EQ(link.find("alis"_4cc)->asBoolean(), true);
    EXPECT_EQ(link.find("ptsz"_4cc)->asInt32(), 5);
    EXPECT_EQ(about("d", {{"ptsz"_4cc, AEDesc::ofBoolean(false)}}).find("ptsz"_4cc), nullptr);
    EXPECT_EQ(send("sysonfo4", {{"----"_4cc, file("none")}}).error(), fnfErr);

    const std::time_t now = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&now, &local);
    const std::int64_t expected = now + local.tm_gmtoff + 2082844800;
    const AEDesc* modified = text.find("asmo"_4cc);
    ASSERT_EQ(modified->type(), "ldt "_4cc);
    EXPECT_NEAR(static_cast<double>(*modified->withType("comp"_4cc).asInt64()), static_cast<double>(expected), 60);
}

} // namespace quoddle::testing_additions
