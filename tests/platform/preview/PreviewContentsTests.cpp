// SPDX-License-Identifier: MIT
// The kind of preview for a file, and how much of it is read.
#include "platform/preview/PreviewContents.h"
#include "platform/preview/PreviewFiles.h"

#include <sys/stat.h>

#include <QDir>
#include <QThread>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

class PreviewContentsTest : public PreviewFiles {
protected:
    PreviewContents read(const QString& path) {
        const std::atomic<bool> isCancelled = false;
        return previewContentsOfFile(path, isCancelled, QThread::currentThread());
    }
};

} // namespace

TEST_F(PreviewContentsTest, ItsKindSaysHowAFileIsShown) {
    struct Row {
        const char* name;
        QByteArray bytes;
        PreviewKind kind;
        bool isSource;
    };
    for (const Row& row : std::initializer_list<Row>{{"a.txt", "text", PreviewKind::Text, false},
                                                     {"a.py", "print(1)", PreviewKind::Text, true},
                                                     {"a.json", "{}", PreviewKind::Text, true},
                                                     {"a.html", "<p>", PreviewKind::Text, true},
                                                     {"README", "no extension", PreviewKind::Text, false},
                                                     {"main.applescript", "beep", PreviewKind::Text, true},
                                                     {"compiled.scpt", QByteArray("FasdUAS \0\1", 10), PreviewKind::Card, false},
                                                     {"nul.txt", QByteArray("a\0b", 3), PreviewKind::Card, false},
                                                     {"wide.txt",
                                                      QByteArray("\xff\xfe"
                                                                 "a\0b\0",
                                                                 6),
                                                      PreviewKind::Text, false},
                                                     {"empty.txt", "", PreviewKind::Text, false},
                                                     {"a.rtf", "{\\rtf1 x}", PreviewKind::RichText, false},
                                                     {"no.rtf", "plain", PreviewKind::Card, false},
                                                     {"a.png", "broken", PreviewKind::Picture, false},
                                                     {"a.svg", "<svg/>", PreviewKind::Picture, false},
                                                     {"a.pdf", "broken", PreviewKind::Pages, false},
                                                     {"a.mp3", "x", PreviewKind::Card, false},
                                                     {"a.m3u", "x", PreviewKind::Text, false},
                                                     {"a.zip", "PK", PreviewKind::Card, false},
                                                     {"a.bin", QByteArray(100, '\1'), PreviewKind::Card, false}}) {
        const PreviewContents contents = read(write(QString::fromLatin1(row.name), row.bytes));
        EXPECT_EQ(contents.kind, row.kind) << row.name;
        EXPECT_EQ(contents.isSource, row.isSource) << row.name;
        EXPECT_EQ(contents.facts.size, row.bytes.size()) << row.name;
        EXPECT_EQ(contents.notice.isEmpty(), row.name != "no.rtf"_L1) << row.name;
        EXPECT_EQ(contents.richText != nullptr, row.kind == PreviewKind::RichText) << row.name;
    }
}

TEST_F(PreviewContentsTest, EndlessTextsAreCut) {
    // The limit is in the middle of a character, and the text is one line.
    const QByteArray e = "\xc3\xa9";
    const PreviewContents contents = read(write(u"long.txt"_s, "x" + e.repeated(1 << 20)));
    EXPECT_TRUE(contents.isCut);
    const QStringList lines = contents.text.split(u'\n');
    EXPECT_EQ(lines.first().left(3), u"xéé"_s);
    EXPECT_EQ(lines.join(QString()).size(), 1 << 19);
    EXPECT_FALSE(contents.text.contains(QChar::ReplacementCharacter));
    for (const QString& line : lines)
        EXPECT_LE(line.size(), 4000);
    EXPECT_FALSE(read(write(u"short.txt"_s, "é")).isCut);
}

TEST_F(PreviewContentsTest, TextsWithFormatsAreCutToo) {
    struct Row {
        QByteArray body;
        bool isCut;
        int fewest, most; // the number of paragraphs
    };
    for (const Row& row : std::initializer_list<Row>{{"a\\par b", false, 2, 2},
                                                     {QByteArray("a\\par ").repeated(5000), true, 1000, 4000},
                                                     {"a\\par b" + QByteArray("\\b x\\b0 y ").repeated(100'000), true, 2, 2}}) {
        const QByteArray bytes = "{\\rtf1 " + row.body + "}";
        QDir(folder.path()).mkdir(u"a.rtfd"_s);
        for (const QString& path : {write(u"a.rtf"_s, bytes), QFileInfo(write(u"a.rtfd/TXT.rtf"_s, bytes)).path()}) {
            const PreviewContents contents = read(path);
            ASSERT_EQ(contents.kind, PreviewKind::RichText) << path.toStdString();
            EXPECT_EQ(contents.isCut, row.isCut);
            EXPECT_GE(contents.richText->blockCount(), row.fewest);
            EXPECT_LE(contents.richText->blockCount(), row.most);
            EXPECT_LE(contents.richText->characterCount(), 1 << 20);
            EXPECT_TRUE(contents.richText->toPlainText().startsWith("a\n"_L1));
        }
    }
    const PreviewContents endless = read(write(u"endless.rtf"_s, "{\\rtf1 " + QByteArray(10'000, 'x') + "}"));
    EXPECT_EQ(endless.kind, PreviewKind::Card);
    EXPECT_FALSE(endless.notice.isEmpty());
}

TEST_F(PreviewContentsTest, WhatIsNoFileHasACard) {
    const QString pipe = folder.filePath(u"pipe.txt"_s);
    ASSERT_EQ(::mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
    EXPECT_EQ(read(pipe).facts.lines().first(), u"Special file"_s);
    EXPECT_EQ(read(u"/dev/zero"_s).kind, PreviewKind::Card);

    const PreviewContents missing = read(folder.filePath(u"missing.txt"_s));
    EXPECT_TRUE(missing.facts.lines().isEmpty());
    EXPECT_FALSE(missing.notice.isEmpty());
    QFile::link(u"nowhere"_s, folder.filePath(u"dangling.txt"_s));
    EXPECT_EQ(read(folder.filePath(u"dangling.txt"_s)).notice, missing.notice);
    QFile::link(write(u"real"_s, "text"), folder.filePath(u"link"_s));
    EXPECT_EQ(read(folder.filePath(u"link"_s)).text, u"text"_s);

    QDir inside(folder.path());
    inside.mkpath(u"Few/one"_s);
    inside.mkpath(u"Few/.hidden"_s);
    inside.mkpath(u"Tool.app/Contents"_s);
    EXPECT_EQ(read(inside.filePath(u"Few"_s)).facts.lines().mid(0, 2), QStringList({u"Folder"_s, u"1 item"_s}));
    const FileFacts application = read(inside.filePath(u"Tool.app"_s)).facts;
    EXPECT_EQ(application.lines().first(), u"Application"_s);
    EXPECT_EQ(application.itemCount, -1);
}

TEST_F(PreviewContentsTest, LargeFoldersAreNotCountedToTheEnd) {
    QDir inside(folder.path());
    inside.mkdir(u"Many"_s);
    const QString first = write(u"Many/0"_s, "");
    for (int i = 1; i <= 10'000; ++i)
        ASSERT_EQ(::link(first.toLocal8Bit().constData(), inside.filePath(u"Many/%1"_s.arg(i)).toLocal8Bit().constData()), 0);
    EXPECT_EQ(read(inside.filePath(u"Many"_s)).facts.lines().at(1), u"More than 10,000 items"_s);
    ASSERT_TRUE(QFile::remove(first));
    EXPECT_EQ(read(inside.filePath(u"Many"_s)).facts.lines().at(1), u"10,000 items"_s);

    const std::atomic<bool> isCancelled = true;
    EXPECT_EQ(factsOfFile(inside.filePath(u"Many"_s), isCancelled).itemCount, 0);
}

} // namespace quoddle
