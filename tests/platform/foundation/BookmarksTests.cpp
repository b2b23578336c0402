// SPDX-License-Identifier: MIT
// The file manager's list of bookmarks, well-formed and malformed.
#include "platform/foundation/Bookmarks.h"
#include "platform/foundation/TemporaryFiles.h"

#include <QDir>

namespace quoddle {

using namespace Qt::StringLiterals;

TEST(BookmarksTest, AddressesAndTitles) {
    const QTemporaryDir config;
    ASSERT_TRUE(QDir(config.path()).mkpath(u"gtk-3.0"_s));
    const QByteArray before = qgetenv("XDG_CONFIG_HOME");
    qputenv("XDG_CONFIG_HOME", config.path().toUtf8());
    EXPECT_TRUE(fileManagerBookmarks().isEmpty());
    QFile file(config.filePath(u"gtk-3.0/bookmarks"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("file:///a%20b/%C3%A9 A title of several words\n\nno-address\nfile:///plain\nsftp://host/x%23y Server\n:\nfile:///last");
    file.close();
    const std::pair<QString, QString> expected[] = {{u"file:///a%20b/%C3%A9"_s, u"A title of several words"_s},
                                                    {u"file:///plain"_s, {}},
                                                    {u"sftp://host/x%23y"_s, u"Server"_s},
                                                    {u"file:///last"_s, {}}};
    const QList<Bookmark> bookmarks = fileManagerBookmarks();
    ASSERT_EQ(bookmarks.size(), std::ssize(expected));
    for (qsizetype i = 0; i < bookmarks.size(); ++i) {
        EXPECT_EQ(bookmarks.at(i).address.toString(QUrl::FullyEncoded), expected[i].first);
        EXPECT_EQ(bookmarks.at(i).title, expected[i].second);
    }
    qputenv("XDG_CONFIG_HOME", before);
}

} // namespace quoddle
