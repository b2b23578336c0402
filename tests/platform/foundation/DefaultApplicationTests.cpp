// SPDX-License-Identifier: MIT
// The program that opens a file, according to the desktop's lists.
#include "platform/foundation/DefaultApplication.h"

#include "platform/foundation/OwnDesktop.h"
#include "platform/foundation/QtPrinters.h"
#include "platform/foundation/TemporaryFiles.h"

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

class DefaultApplicationTest : public test::TemporaryFiles {
protected:
    void SetUp() override {
        desktop.install(u"share"_s, u"viewer.desktop"_s, "Image Viewer", "Name[xx]=Not this\n");
        desktop.install(u"share"_s, u"kde/editor.desktop"_s, "Editor");
        desktop.install(u"data"_s, u"mine.desktop"_s, "Mine & Only");
    }

    test::OwnDesktop desktop;
};

} // namespace

TEST_F(DefaultApplicationTest, TheStrongestListDecides) {
    const QString picture = write(u"a.png"_s, "x");
    EXPECT_EQ(defaultApplicationOfFile(picture), QString()) << "nobody claims it";

    // Each row's file is added to the files of the rows above.
    const struct {
        QString file;
        QByteArray content;
        QString name;
    } rows[] = {
        {u"share/applications/mimeinfo.cache"_s, "[MIME Cache]\nimage/png=gone.desktop;viewer.desktop;\n", u"Image Viewer"_s},
        {u"data/applications/mimeinfo.cache"_s, "[MIME Cache]\nimage/png=mine.desktop;\n", u"Mine & Only"_s},
        {u"config/mimeapps.list"_s, "[Removed Associations]\nimage/png=mine.desktop;\n", u"Image Viewer"_s},
        {u"config/mimeapps.list"_s, "[Added Associations]\nimage/png=kde-editor.desktop;viewer.desktop;\n", u"Editor"_s},
        {u"etc/mimeapps.list"_s, "[Default Applications]\nimage/png=../viewer.desktop;/viewer.desktop;viewer.desktop\n", u"Image Viewer"_s},
        {u"config/mimeapps.list"_s, "[Other]\nimage/png=viewer.desktop\n[Default Applications]\nimage/png=mine.desktop\n",
         u"Mine & Only"_s},
        {u"config/quux-mimeapps.list"_s, "[Default Applications]\nimage/png=kde-editor.desktop\n", u"Editor"_s},
    };
    qputenv("XDG_CURRENT_DESKTOP", "Quux:../bad");
    for (const auto& row : rows) {
        desktop.write(row.file, row.content);
        EXPECT_EQ(defaultApplicationOfFile(picture), row.name) << row.content.constData();
    }
}

TEST_F(DefaultApplicationTest, NamesAreShortLines) {
    desktop.write(u"etc/mimeapps.list"_s, "[Default Applications]\ntext/plain=blank.desktop;odd.desktop\n");
    desktop.install(u"share"_s, u"blank.desktop"_s, "\\s\\n");
    for (const auto& [given, name] :
         {std::pair(QByteArray("\\sTwo\\nlines\\t"), u"Two lines"_s), std::pair(QByteArray(50'000, 'x'), QString(199, u'x') + u'…')}) {
        desktop.install(u"share"_s, u"odd.desktop"_s, given);
        EXPECT_EQ(defaultApplicationOfFile(write(u"a.txt"_s, "x")), name);
    }
}

TEST_F(DefaultApplicationTest, WhatCannotBeStartedIsPassedOver) {
    desktop.install(u"share"_s, u"hidden.desktop"_s, "Hidden", "Hidden=true\n");
    desktop.install(u"share"_s, u"half.desktop"_s, "Half", "TryExec=no-such-program\n");
    desktop.install(u"share"_s, u"whole.desktop"_s, "Whole", "TryExec=sh\nNoDisplay=true\n");
    desktop.write(u"share/applications/link.desktop"_s, "[Desktop Entry]\nType=Link\nName=Link\n");
    desktop.write(u"etc/mimeapps.list"_s,
                  "[Default Applications]\ntext/plain=hidden.desktop;half.desktop;link.desktop;whole.desktop;viewer.desktop\n");
    EXPECT_EQ(defaultApplicationOfFile(write(u"a.txt"_s, "x")), u"Whole"_s);
    EXPECT_EQ(defaultApplicationOfFile(write(u"a.py"_s, "x")), u"Whole"_s) << "a source is a text too";
    EXPECT_EQ(defaultApplicationOfFile(folder.path()), QString());
    desktop.write(u"config/mimeapps.list"_s, "[Default Applications]\ninode/directory=viewer.desktop\n");
    EXPECT_EQ(defaultApplicationOfFile(folder.path()), u"Image Viewer"_s);
}

} // namespace quoddle
