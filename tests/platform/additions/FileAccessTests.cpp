// SPDX-License-Identifier: MIT
// Files by number: opening, reading, writing, marks and errors.
#include "Additions.h"

#include <sys/stat.h>
#include <unistd.h>

namespace quoddle::testing_additions {

namespace {

class FileAccessTest : public AdditionsTest {
protected:
    std::int32_t open(const AEDesc& file, bool writable = false) {
        const Answer answer = send("rdwropen", {{"----"_4cc, file}, {"perm"_4cc, AEDesc::ofBoolean(writable)}});
        EXPECT_EQ(answer.error(), noErr);
        return static_cast<std::int32_t>(answer.number().value_or(-1));
    }
    static Answer read(const AEDesc& file, Parameters parameters = {}) {
        parameters.push_back({"----"_4cc, file});
        return send("rdwrread", std::move(parameters));
    }
    static Answer write(const AEDesc& value, const AEDesc& file, Parameters parameters = {}) {
        parameters.push_back({"----"_4cc, value});
        parameters.push_back({"refn"_4cc, file});
        return send("rdwrwrit", std::move(parameters));
    }
    static Answer close(const AEDesc& file) { return send("rdwrclos", {{"----"_4cc, file}}); }
    static AEItem as(FourCharCode type) { return {"as  "_4cc, AEDesc::ofType(type)}; }
};

} // namespace

TEST_F(FileAccessTest, ReadsTheRangeThatIsAskedFor) {
    const AEDesc file = make("a.txt", "one two\nthree");
    const AEDesc end = AEDesc::ofEnum("eof "_4cc);
    const struct {
        Parameters parameters;
        const char* expected;
    } kCases[] = {
        {{}, "one two\nthree"},
        {{{"rdfm"_4cc, whole(5)}}, "two\nthree"},
        {{{"rdfm"_4cc, whole(5)}, {"rdto"_4cc, whole(7)}}, "two"},
        {{{"rdfm"_4cc, whole(5)}, {"rdfr"_4cc, whole(2)}}, "tw"},
        {{{"rdfr"_4cc, whole(3)}}, "one"},
        {{{"rdfr"_4cc, whole(300)}}, "one two\nthree"},
        {{{"rdfr"_4cc, whole(0)}}, ""},
        {{{"rdto"_4cc, whole(3)}}, "one"},
        {{{"rdto"_4cc, whole(-7)}}, "one two"},
        {{{"rdfm"_4cc, whole(-5)}}, "three"},
        {{{"rdfm"_4cc, whole(-5)}, {"rdto"_4cc, end}}, "three"},
        {{{"rdfm"_4cc, whole(-5)}, {"rdto"_4cc, whole(-4)}}, "th"},
        {{{"rbfr"_4cc, text("two")}}, "one "},
        {{{"rdut"_4cc, text("two")}}, "one two"},
        {{{"rdut"_4cc, text("nowhere")}}, "one two\nthree"},
        {{{"rdfm"_4cc, whole(5)}, {"rbfr"_4cc, text("e")}}, "two\nthr"},
    };
    for (const auto& row : kCases)
        EXPECT_EQ(read(file, row.parameters).text(), row.expected);
    EXPECT_EQ(read(file, {{"rdfm"_4cc, whole(-99)}}).error(), -40);
    EXPECT_EQ(read(file, {{"rdfm"_4cc, whole(99)}}).error(), eofErr);
    EXPECT_EQ(read(make("empty", "")).error(), eofErr);
    // The delimiter lies across two pieces in which a large file is read.
    std::string bytes((1 << 20) - 1, 'x');
    bytes.append("ABrest");
    const AEDesc large = make("large", bytes);
    EXPECT_EQ(read(large, {{"rbfr"_4cc, text("AB")}}).text().size(), (1u << 20) - 1);
}

TEST_F(FileAccessTest, SplitsAtDelimiters) {
    const AEDesc file = make("a.txt", "a,b;c,,d;");
    using Texts = std::vector<std::string>;
    EXPECT_EQ(read(file, {{"deli"_4cc, text(",")}}).texts(), (Texts{"a", "b;c", "", "d;"}));
    EXPECT_EQ(read(file, {{"deli"_4cc, listOf({text(","), text(";")})}}).texts(), (Texts{"a", "b", "c", "", "d"}));
    EXPECT_EQ(read(file, {{"deli"_4cc, listOf({text("none"), text(";c")})}}).texts(), (Texts{"a,b", ",,d;"}));
    EXPECT_EQ(read(file, {{"deli"_4cc, text(";")}, {"rdto"_4cc, whole(5)}}).texts(), (Texts{"a,b", "c"}));
    EXPECT_EQ(read(make("lines", "x\ny\n"), {{"deli"_4cc, text("\n")}}).texts(), (Texts{"x", "y"}));
}

TEST_F(FileAccessTest, TheMarkMovesWithReadingAndWriting) {
    const AEDesc number = whole(open(make("a.txt", "one\ntwo\nthree\n")));
    EXPECT_EQ(read(number, {{"rbfr"_4cc, text("\n")}}).text(), "one");
    EXPECT_EQ(read(number, {{"rdut"_4cc, text("\n")}}).text(), "two\n");
    EXPECT_EQ(read(number, {{"rdfr"_4cc, whole(2)}}).text(), "th");
    EXPECT_EQ(read(file("a.txt"), {{"rdfr"_4cc, whole(2)}}).text(), "re") << "an open file is the same file by its name";
    EXPECT_EQ(read(number).text(), "e\n");
    EXPECT_EQ(read(number).error(), eofErr);
    EXPECT_EQ(close(number).error(), noErr);

    const AEDesc writing = whole(open(file("b.txt"), true));
    for (const char* part : {"alpha ", "beta ", "gamma"})
        EXPECT_EQ(write(text(part), writing).error(), noErr);
    EXPECT_EQ(write(text("BETA-"), writing, {{"wrat"_4cc, whole(7)}, {"nmwr"_4cc, whole(4)}}).error(), noErr);
    EXPECT_EQ(write(text("!"), writing).error(), noErr);
    EXPECT_EQ(write(text("."), writing, {{"wrat"_4cc, AEDesc::ofEnum("eof "_4cc)}}).error(), noErr);
    EXPECT_EQ(bytesOf("b.txt"), "alpha BETA!gamma.");
    EXPECT_EQ(send("rdwrgeof", {{"----"_4cc, writing}}).number(), 17);
    EXPECT_EQ(send("rdwrseof", {{"----"_4cc, writing}, {"set2"_4cc, whole(5)}}).error(), noErr);
    EXPECT_EQ(write(text("+"), writing).error(), noErr) << "the mark follows the end";
    EXPECT_EQ(bytesOf("b.txt"), "alpha+");
    EXPECT_EQ(close(file("b.txt")).error(), noErr);
}

TEST_F(FileAccessTest, ValuesComeBackAsTheyWereWritten) {
    const AEDesc list = listOf({whole(1), text("zwei"), AEDesc::record({{"pnam"_4cc, text("x")}})});
    const struct {
        AEDesc value;
        FourCharCode as;
        std::string bytes;
        AEDesc expected;
    } kCases[] = {
        {text("üß"), 0, "\xC3\xBC\xC3\x9F", text("üß")},
        {text("üß"), "utf8"_4cc, "\xC3\xBC\xC3\x9F", text("üß")},
        {text("üa"), "utxt"_4cc, std::string("\0\xFC\0a", 4), text("üa")},
        {whole(258), 0, std::string("\0\0\1\2", 4), whole(258)},
        {whole(258), "shor"_4cc, "\1\2", AEDesc("shor"_4cc, "\2\1")},
        {real(1), 0, std::string("\x3F\xF0\0\0\0\0\0\0", 8), real(1)},
        {whole(7), "TEXT"_4cc, "7", text("7")},
        {AEDesc("rdat"_4cc, "\1\xFF"), 0, "\1\xFF", AEDesc("rdat"_4cc, "\1\xFF")},
    };
    for (const auto& row : kCases) {
        const AEDesc number = whole(open(file("v"), true));
        (void)send("rdwrseof", {{"----"_4cc, number}, {"set2"_4cc, whole(0)}});
        const FourCharCode readAs = row.as ? row.as : row.value.type();
        EXPECT_EQ(write(row.value, number, row.as ? Parameters{as(row.as)} : Parameters{}).error(), noErr);
        EXPECT_EQ(bytesOf("v"), row.bytes);
        const AEDesc back = read(number, {{"rdfm"_4cc, whole(1)}, as(readAs == "utxt"_4cc && !row.as ? "ctxt"_4cc : readAs)}).value();
        EXPECT_EQ(back, row.expected);
        EXPECT_EQ(close(number).error(), noErr);
    }
    const AEDesc number = whole(open(file("list"), true));
    EXPECT_EQ(write(list, number).error(), noErr);
    EXPECT_EQ(read(number, {{"rdfm"_4cc, whole(1)}, as("list"_4cc)}).value(), list);
    EXPECT_EQ(write(list, number, {as("TEXT"_4cc)}).error(), errAECoercionFail);
    // A second list is written behind the first, then the short one over the long one.
    const AEDesc brief = listOf({whole(5)});
    EXPECT_EQ(write(brief, number).error(), noErr);
    EXPECT_EQ(read(number, {{"rdfm"_4cc, whole(1)}, as("list"_4cc)}).value(), list);
    EXPECT_EQ(read(number, {as("list"_4cc)}).value(), brief);
    EXPECT_EQ(write(brief, number, {{"wrat"_4cc, whole(1)}}).error(), noErr);
    EXPECT_EQ(read(number, {{"rdfm"_4cc, whole(1)}, as("list"_4cc)}).value(), brief);
    EXPECT_EQ(close(number).error(), noErr);
    EXPECT_EQ(read(make("short", "abc"), {as("long"_4cc)}).error(), errAECoercionFail);
    EXPECT_EQ(read(make("bad", "QAE1 no list"), {as("list"_4cc)}).error(), errAECoercionFail);
    EXPECT_EQ(read(make("two", std::string("\0\0\0\1\0\0\0\2", 8)), {as("long"_4cc), {"rdfr"_4cc, whole(8)}}).value(),
              listOf({whole(1), whole(2)}));
    EXPECT_EQ(read(make("bom", "\xFF\xFE\x61\0"), {as("utxt"_4cc)}).value().type(), "utxt"_4cc);
    EXPECT_EQ(read(make("roman", "\x8A")).text(), "ä");
}

TEST_F(FileAccessTest, WhatCannotBeDoneSaysWhy) {
    const AEDesc known = make("a.txt", "text");
    const AEDesc reading = whole(open(known));
    EXPECT_EQ(write(text("x"), reading).error(), -61);
    EXPECT_EQ(send("rdwrseof", {{"----"_4cc, reading}, {"set2"_4cc, whole(0)}}).error(), -61);
    EXPECT_EQ(send("rdwropen", {{"----"_4cc, known}, {"perm"_4cc, AEDesc::ofBoolean(true)}}).error(), -49);
    const AEDesc second = whole(open(known));
    EXPECT_NE(second, reading);
    EXPECT_EQ(close(second).error(), noErr);
    EXPECT_EQ(close(second).error(), -38);
    EXPECT_EQ(read(second).error(), -38);
    EXPECT_EQ(close(reading).error(), noErr);
    EXPECT_EQ(close(known).error(), -38);
    EXPECT_EQ(bytesOf("a.txt"), "text");

    EXPECT_EQ(read(file("none")).error(), fnfErr);
    EXPECT_NE(read(file("none")).errorText().find("none wasn’t found."), std::string::npos);
    EXPECT_EQ(read(file("a.txt/x")).error(), -120);
    EXPECT_EQ(read(file("")).error(), paramErr) << "a folder";
    ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(read(file("pipe")).error(), paramErr);
    EXPECT_EQ(read(text("/dev/zero")).error(), paramErr);
    EXPECT_EQ(read(listOf({})).error(), errAECoercionFail);
    EXPECT_EQ(send("rdwrread").error(), errAEDescNotFound);
    if (::geteuid() != 0) {
        ::chmod(path("a.txt").c_str(), 0);
        EXPECT_EQ(read(known).error(), -54);
    }
}

TEST_F(FileAccessTest, FilesThatAreNotOpenAreOpenedForOneCommand) {
    EXPECT_EQ(write(text("hello"), file("new")).error(), noErr);
    EXPECT_EQ(bytesOf("new"), "hello");
    EXPECT_EQ(write(text("!"), file("new"), {{"wrat"_4cc, AEDesc::ofEnum("eof "_4cc)}}).error(), noErr);
    EXPECT_EQ(bytesOf("new"), "hello!");
    EXPECT_EQ(send("rdwrseof", {{"----"_4cc, file("new")}, {"set2"_4cc, whole(2)}}).error(), noErr);
    EXPECT_EQ(bytesOf("new"), "he");
    EXPECT_EQ(close(file("new")).error(), -38) << "nothing stays open";
    EXPECT_EQ(write(text("x"), file("none/new")).error(), fnfErr);
    EXPECT_EQ(write(text("x"), file("")).error(), paramErr) << "a folder";
}

TEST_F(FileAccessTest, NumbersAndSizesAreBounded) {
    make("a", "x");
    std::vector<AEDesc> numbers;
    Answer last = send("rdwropen", {{"----"_4cc, file("a")}});
    for (int i = 0; i < 1000 && last.error() == noErr; ++i) {
        numbers.push_back(last.value());
        last = send("rdwropen", {{"----"_4cc, file("a")}});
    }
    EXPECT_EQ(last.error(), -42);
    EXPECT_GE(numbers.size(), 100u);
    for (const AEDesc& number : numbers)
        EXPECT_EQ(close(number).error(), noErr);
    make("large", "");
    std::filesystem::resize_file(path("large"), (std::uintmax_t(128) << 20) + 1);
    EXPECT_EQ(read(file("large"), {as("rdat"_4cc)}).error(), memFullErr);
    EXPECT_EQ(read(file("large"), {{"rdfr"_4cc, whole(4)}, as("rdat"_4cc)}).value().data().size(), 4u);
}

TEST_F(FileAccessTest, FilesAreKnownByEveryKindOfName) {
    make("sub/a b:c.txt", "here");
    std::string colons = "Macintosh HD" + path("sub/a b:c.txt");
    for (char& c : colons)
        c = c == '/' ? ':' : c == ':' ? '/' : c;
    const AEDesc specifier = AEDesc::record({{"want"_4cc, AEDesc::ofType("file"_4cc)},
                                             {"form"_4cc, AEDesc::ofEnum("name"_4cc)},
                                             {"seld"_4cc, text(colons)},
                                             {"from"_4cc, AEDesc()}},
                                            "obj "_4cc);
    setEnvironment("HOME", path("sub"));
    for (const AEDesc& name : {file("sub/a b:c.txt"), file("sub/a b:c.txt").withType("alis"_4cc), text(path("sub/a b:c.txt")), text(colons),
                               specifier, text("~/a b:c.txt")})
        EXPECT_EQ(read(name).text(), "here");
}

} // namespace quoddle::testing_additions
