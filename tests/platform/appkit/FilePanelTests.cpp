// SPDX-License-Identifier: MIT
#include "platform/appkit/filepanel/FileBrowser.h"
#include "platform/appkit/filepanel/FileList.h"
#include "platform/appkit/filepanel/LocationField.h"
#include "platform/appkit/filepanel/Places.h"
#include "platform/appkit/NSOpenPanel.h"
#include "platform/appkit/NSWindow.h"
#include "platform/foundation/NSUserDefaults.h"

#include <gtest/gtest.h>

#include <fstream>

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QCompleter>
#include <QDialog>
#include <QDir>
#include <QInputDialog>
#include <QLabel>
#include <QSplitter>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

class FilePanel : public ::testing::Test {
protected:
    FilePanel() {
        standardUserDefaults().clear();
        for (const char* folder : {"inner/deep", "Tool.app/Contents", "odd.thing/Contents"})
            QDir(mFolder.path()).mkpath(QString::fromLatin1(folder));
        for (const char* file : {"file 10.txt", "file 2.txt", "Zebra.png", "apple.jpg", ".secret", "inner/leaf.txt",
                                 "odd.thing/Contents/Info.plist", "Tool.app/Contents/part"})
            make(QString::fromLatin1(file));
        QFile::link(path("file 2.txt"), path("shortcut"));
        QFile::link(mFolder.filePath(u"nowhere"_s), path("broken"));
        mWindow.resize(300, 200);
        mWindow.show();
    }
    ~FilePanel() override { QFile::setPermissions(path("inner"), QFile::Permissions(0x7700)); }

    QString path(const char* name) const { return mFolder.filePath(QString::fromUtf8(name)); }
    void make(const QString& name) {
        QFile file(mFolder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    }
    void show(NSSavePanel& panel) {
        mPanel = &panel;
        panel.setDirectory(mDirectory.isEmpty() ? mFolder.path() : mDirectory);
        mResponse.reset();
        panel.layout();
        mWindow.beginSheet(panel.dialog(), [this](int response) { mResponse = response; });
        waitUntilRead();
    }
    void waitUntilRead() {
        EXPECT_TRUE(QTest::qWaitFor([this] { return browser().model().state() != DirectoryState::reading; }));
    }
    template<class Widget>
    Widget& part(const char* name) {
        return *mPanel->dialog()->findChild<Widget*>(QString::fromLatin1(name));
    }
    FileBrowser& browser() { return *mPanel->dialog()->findChild<FileBrowser*>(); }
    FileList& list() { return part<FileList>("fileList"); }
    QAbstractButton& confirmButton() { return part<QAbstractButton>("confirmButton"); }
    QString problem() { return part<QLabel>("problemView").text(); }
    QStringList names() {
        QStringList all;
        for (int row = 0; row < browser().model().rowCount(); ++row)
            all << browser().model().entryAt(row).name;
        return all;
    }
    QPoint placeOf(const char* name) {
        const QModelIndex index = browser().model().index(browser().model().rowOf(QString::fromUtf8(name)), 0);
        EXPECT_TRUE(index.isValid()) << name;
        return list().visualRect(index).center();
    }
    void click(const char* name, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mouseClick(list().viewport(), Qt::LeftButton, modifiers, placeOf(name));
    }
    void doubleClick(const char* name) {
        click(name);
        QTest::mouseDClick(list().viewport(), Qt::LeftButton, {}, placeOf(name));
        waitUntilRead();
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(mPanel->dialog()->focusWidget(), key, modifiers);
        waitUntilRead();
    }
    QStringList chosen(const NSOpenPanel& panel) const {
        QStringList all;
        for (const QUrl& url : panel.urls())
            all << QDir(mFolder.path()).relativeFilePath(url.toLocalFile());
        return all;
    }

    QTemporaryDir mFolder;
    QString mDirectory;
    NSWindow mWindow;
    NSSavePanel* mPanel = nullptr;
    std::optional<int> mResponse;
};

} // namespace

TEST_F(FilePanel, ShowsWhatCanBeChosen) {
    struct {
        QStringList types;
        bool hidden, packagesOpen, folders;
        QStringList shown;
    } const cases[] = {
        {{},
         false,
         false,
         false,
         {u"inner"_s, u"apple.jpg"_s, u"file 2.txt"_s, u"file 10.txt"_s, u"odd.thing"_s, u"shortcut"_s, u"Tool.app"_s, u"Zebra.png"_s}},
        {{},
         true,
         true,
         false,
         {u"inner"_s, u"odd.thing"_s, u"Tool.app"_s, u".secret"_s, u"apple.jpg"_s, u"file 2.txt"_s, u"file 10.txt"_s, u"shortcut"_s,
          u"Zebra.png"_s}},
        {{u"public.image"_s}, false, false, false, {u"inner"_s, u"apple.jpg"_s, u"Zebra.png"_s}},
        {{u"txt"_s}, false, false, false, {u"inner"_s, u"file 2.txt"_s, u"file 10.txt"_s, u"shortcut"_s}},
        {{u"APPL"_s}, false, false, false, {u"inner"_s, u"Tool.app"_s}},
        {{},
         false,
         false,
         true,
         {u"inner"_s, u"apple.jpg"_s, u"broken"_s, u"file 2.txt"_s, u"file 10.txt"_s, u"odd.thing"_s, u"shortcut"_s, u"Tool.app"_s,
          u"Zebra.png"_s}},
    };
    for (const auto& each : cases) {
        NSOpenPanel panel;
        panel.setAllowedFileTypes(each.types);
        panel.setShowsHiddenFiles(each.hidden);
        panel.setTreatsFilePackagesAsDirectories(each.packagesOpen);
        panel.setCanChooseFiles(!each.folders);
        panel.setCanChooseDirectories(each.folders);
        show(panel);
        EXPECT_EQ(names(), each.shown) << names().join(u' ').toStdString();
        for (int row = 0; each.folders && row < browser().model().rowCount(); ++row) {
            const bool enabled = browser().model().flags(browser().model().index(row, 0)) & Qt::ItemIsEnabled;
            EXPECT_EQ(enabled, row == 0) << names().at(row).toStdString();
        }
        press(Qt::Key_Escape);
        EXPECT_EQ(mResponse, NSModalResponseCancel);
        EXPECT_FALSE(panel.url().isValid());
    }
}

TEST_F(FilePanel, APackageIsOneFileUnlessItIsAFolder) {
    NSOpenPanel panel;
    show(panel);
    doubleClick("odd.thing");
    EXPECT_EQ(mResponse, NSModalResponseOK);
    EXPECT_EQ(chosen(panel), QStringList(u"odd.thing"_s));

    panel.setTreatsFilePackagesAsDirectories(true);
    show(panel);
    doubleClick("Tool.app");
    EXPECT_FALSE(mResponse);
    EXPECT_EQ(names(), QStringList(u"Contents"_s));
    press(Qt::Key_Escape);
}

TEST_F(FilePanel, KeysFindEnterAndLeave) {
    NSOpenPanel panel;
    panel.setPrompt(u"Take && Go"_s);
    show(panel);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&confirmButton())->text(QAccessible::Name), u"Take && Go"_s);
    EXPECT_FALSE(confirmButton().isEnabled());
    QTest::keyClicks(&list(), u"in"_s);
    EXPECT_TRUE(confirmButton().isEnabled());
    press(Qt::Key_Return);
    EXPECT_EQ(names(), QStringList({u"deep"_s, u"leaf.txt"_s}));
    EXPECT_FALSE(confirmButton().isEnabled()); // nothing is selected in the folder that was entered
    press(Qt::Key_Backspace);
    ASSERT_EQ(browser().selection().size(), 1);
    EXPECT_EQ(browser().selection().first().entry.name, u"inner"_s); // the folder that was left is selected
    press(Qt::Key_Right);
    press(Qt::Key_Up, Qt::AltModifier);
    press(Qt::Key_Left, Qt::AltModifier);
    EXPECT_TRUE(browser().directory().endsWith(u"/inner"_s));
    press(Qt::Key_Right, Qt::AltModifier);
    EXPECT_EQ(browser().directory(), mFolder.path());
    press(Qt::Key_H, Qt::ControlModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return names().contains(u".secret"_s); }));
    list().setFocus();
    QTest::qWait(QApplication::keyboardInputInterval()); // after this time a key begins a new name
    QTest::keyClicks(&list(), u"z"_s);
    press(Qt::Key_Return);
    EXPECT_EQ(chosen(panel), QStringList(u"Zebra.png"_s));
}

TEST_F(FilePanel, KeysBeginAtTheEnds) {
    struct {
        Qt::Key key;
        const char* selected;
    } const cases[] = {{Qt::Key_Down, "inner"}, {Qt::Key_End, "Zebra.png"}, {Qt::Key_I, "inner"}, {Qt::Key_Home, "inner"}};
    for (const auto& each : cases) {
        NSOpenPanel panel;
        show(panel);
        press(each.key);
        ASSERT_EQ(browser().selection().size(), 1) << each.key;
        EXPECT_EQ(browser().selection().first().entry.name, QString::fromLatin1(each.selected)) << each.key;
        press(Qt::Key_Escape);
    }
}

TEST_F(FilePanel, SeveralComeInTheOrderShown) {
    NSOpenPanel panel;
    panel.setAllowsMultipleSelection(true);
    show(panel);
    click("Zebra.png");
    click("shortcut", Qt::ControlModifier);
    click("apple.jpg", Qt::ControlModifier);
    click("inner", Qt::ControlModifier); // the folder cannot be chosen, and the selection stays
    press(Qt::Key_Return);
    EXPECT_EQ(chosen(panel), QStringList({u"apple.jpg"_s, u"file 2.txt"_s, u"Zebra.png"_s}));

    NSOpenPanel single;
    single.setResolvesAliases(false);
    show(single);
    click("Zebra.png");
    click("shortcut", Qt::ControlModifier);
    confirmButton().click();
    EXPECT_EQ(chosen(single), QStringList(u"shortcut"_s));
}

TEST_F(FilePanel, AFolderIsTheSelectedOneOrTheOneShown) {
    NSOpenPanel panel;
    panel.setCanChooseFiles(false);
    panel.setCanChooseDirectories(true);
    show(panel);
    EXPECT_EQ(confirmButton().text(), u"Choose"_s);
    click("inner");
    press(Qt::Key_Return);
    EXPECT_EQ(chosen(panel), QStringList(u"inner"_s));
    show(panel);
    doubleClick("inner");
    EXPECT_FALSE(mResponse);
    confirmButton().click();
    EXPECT_EQ(chosen(panel), QStringList(u"inner"_s));
    show(panel);
    part<QAbstractButton>("newFolderButton").click();
    auto* question = mPanel->dialog()->findChild<QInputDialog*>();
    ASSERT_TRUE(question);
    question->setTextValue(u"fresh"_s);
    question->accept();
    waitUntilRead();
    confirmButton().click();
    EXPECT_EQ(chosen(panel), QStringList(u"fresh"_s));
    EXPECT_TRUE(QFileInfo(path("fresh")).isDir());

    for (const char* greyed : {"Zebra.png", "Tool.app"}) { // a file that cannot be chosen makes the panel begin in its folder
        mDirectory = path(greyed);
        show(panel);
        EXPECT_FALSE(browser().hasSelection());
        press(Qt::Key_Return);
        EXPECT_EQ(chosen(panel), QStringList(u"."_s)) << greyed;
    }
}

TEST_F(FilePanel, APathCanBeTyped) {
    NSOpenPanel panel;
    panel.setAllowedFileTypes({u"txt"_s});
    show(panel);
    auto& location = part<LocationField>("locationField");
    QTest::keyClicks(&list(), u"/"_s);
    EXPECT_EQ(location.text(), u"/"_s);
    press(Qt::Key_Escape); // ends the typing and not the panel
    EXPECT_FALSE(mResponse);
    EXPECT_EQ(location.text(), mFolder.path());
    location.selectAll();
    QTest::keyClicks(&location, path("IN")); // names are completed without regard to case
    EXPECT_TRUE(QTest::qWaitFor([&location] { return location.completer()->popup()->isVisible(); }));
    EXPECT_EQ(location.completer()->currentCompletion(), path("inner"));
    location.completer()->popup()->hide();
    const auto enter = [&](const QString& text) {
        location.setFocus();
        location.setText(text);
        QTest::keyClick(&location, Qt::Key_Return);
        waitUntilRead();
    };
    enter(u"inner/../inner"_s);
    EXPECT_EQ(browser().directory(), path("inner"));
    enter(u"../Zebra.png"_s);
    EXPECT_TRUE(problem().contains(u"Zebra.png"_s)) << problem().toStdString();
    enter(path("missing"));
    EXPECT_TRUE(problem().contains(u"missing"_s));
    EXPECT_FALSE(mResponse);
    enter(u"leaf.txt"_s);
    EXPECT_EQ(chosen(panel), QStringList(u"inner/leaf.txt"_s));
    EXPECT_EQ(absolutePathFor(u"~/a"_s, u"/b"_s), QDir::homePath() + u"/a"_s);
    EXPECT_EQ(absolutePathFor(u"~a"_s, u"/b"_s), u"/b/~a"_s);
}

TEST_F(FilePanel, ANameIsCheckedBeforeItIsTaken) {
    NSSavePanel panel;
    panel.setNameFieldStringValue(u"report.txt"_s);
    show(panel);
    auto& name = part<QLineEdit>("nameField");
    EXPECT_EQ(name.selectedText(), u"report"_s);
    EXPECT_EQ(mPanel->dialog()->focusWidget(), &name);
    for (const QString& refused : {u"missing/x"_s, QString(300, u'x'), u"Zebra.png/x"_s}) {
        name.setText(refused);
        confirmButton().click();
        EXPECT_FALSE(mResponse) << refused.toStdString();
        EXPECT_FALSE(problem().isEmpty()) << refused.toStdString();
    }
    name.setText(u"x/"_s.repeated(10000) + u'\n');
    confirmButton().click();
    EXPECT_TRUE(problem().endsWith(u"cannot be found."_s)) << problem().toStdString();
    EXPECT_LT(problem().size(), 500);
    name.setText(u"a"_s + QChar(0));
    confirmButton().click();
    EXPECT_EQ(problem(), u"A file cannot be called “a ”."_s);
    QTest::keyClicks(&name, u"y"_s);
    EXPECT_TRUE(problem().isEmpty());
    name.setText({});
    QTest::keyClick(&name, Qt::Key_A);
    QTest::keyClick(&name, Qt::Key_Backspace);
    EXPECT_FALSE(confirmButton().isEnabled());
    for (const QString& folder : {u"inner"_s, u".."_s}) {
        name.setText(folder);
        QTest::keyClick(&name, Qt::Key_Return);
        EXPECT_FALSE(mResponse);
    }
    waitUntilRead();
    EXPECT_EQ(browser().directory(), mFolder.path());
    name.setText(u"Ünïcode “name”.txt"_s);
    QTest::keyClick(&name, Qt::Key_Return);
    EXPECT_EQ(mResponse, NSModalResponseOK);
    EXPECT_EQ(panel.url().toLocalFile(), path("Ünïcode “name”.txt"));

    for (const QString& bad : {u""_s, u"."_s, u".."_s, u"a/b"_s, QString(u'\0'), QString(128, u'é')})
        EXPECT_FALSE(problemWithFileName(bad).isEmpty()) << bad.toStdString();
    for (const QString& good : {u"a:b"_s, u"…"_s, u".x"_s, QString(127, u'é'), u" "_s})
        EXPECT_TRUE(problemWithFileName(good).isEmpty()) << good.toStdString();
}

TEST_F(FilePanel, ReturnOnAFolderGoesIntoIt) {
    NSSavePanel panel;
    panel.setNameFieldStringValue(u"report.txt"_s);
    show(panel);
    list().setFocus();
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    ASSERT_FALSE(mResponse);
    EXPECT_EQ(browser().directory(), path("inner"));
    press(Qt::Key_Return); // nothing is selected in the folder that was entered
    EXPECT_EQ(panel.url().toLocalFile(), path("inner/report.txt"));

    show(panel);
    click("inner");
    part<QLineEdit>("nameField").setFocus();
    press(Qt::Key_Return);
    EXPECT_EQ(panel.url().toLocalFile(), path("report.txt"));
}

TEST_F(FilePanel, ReplacingIsAgreedOn) {
    NSSavePanel panel;
    for (const QString& existing : {u"Zebra.png"_s, u"broken"_s, u"Tool.app"_s}) {
        for (const char* button : {"Cancel", "Replace"}) {
            show(panel);
            part<QLineEdit>("nameField").setText(existing);
            confirmButton().click();
            EXPECT_FALSE(mResponse);
            auto* answer = mPanel->dialog()->findChild<QAbstractButton*>(QString::fromLatin1(button));
            ASSERT_TRUE(answer) << button;
            QDialog* alert = qobject_cast<QDialog*>(answer->window());
            ASSERT_TRUE(alert && alert != mPanel->dialog() && alert->isVisible());
            if (qstrcmp(button, "Cancel") == 0) {
                QTest::keyClick(alert->focusWidget(), Qt::Key_Return); // Return presses the safe answer
                EXPECT_FALSE(alert->isVisible());
                EXPECT_FALSE(mResponse);
                mPanel->dialog()->done(NSModalResponseCancel);
            } else {
                answer->click();
                EXPECT_EQ(mResponse, NSModalResponseOK);
                EXPECT_EQ(panel.url().toLocalFile(), mFolder.filePath(existing));
            }
        }
    }
    show(panel);
    click("apple.jpg"); // the name field takes the name of the file
    EXPECT_EQ(part<QLineEdit>("nameField").text(), u"apple.jpg"_s);
    QTest::keyClick(&part<QLineEdit>("nameField"), Qt::Key_2);
    make(u"another"_s);
    EXPECT_TRUE(QTest::qWaitFor([this] { return names().contains(u"another"_s); }));
    EXPECT_EQ(part<QLineEdit>("nameField").text(), u"apple.jpg2"_s);
    mPanel->dialog()->done(NSModalResponseCancel);
}

TEST_F(FilePanel, BeginsWhereItLastEnded) {
    NSOpenPanel panel;
    mDirectory = path("inner");
    show(panel);
    click("leaf.txt");
    confirmButton().click();
    ASSERT_EQ(mResponse, NSModalResponseOK);

    const auto beginsIn = [this](const QString& directory) {
        NSOpenPanel next;
        mDirectory = directory;
        show(next);
        const QString begun = browser().directory();
        mPanel->dialog()->done(NSModalResponseCancel);
        return begun;
    };
    EXPECT_EQ(beginsIn(u"/no/such/folder"_s), path("inner"));
    EXPECT_EQ(beginsIn(path("Zebra.png")), mFolder.path());
    QDir(path("inner")).removeRecursively();
    EXPECT_EQ(beginsIn(u"/no/such/folder"_s), QDir::homePath());
}

TEST_F(FilePanel, FollowsTheFolderAndKeepsWhatIsSelected) {
    NSOpenPanel panel;
    show(panel);
    click("Zebra.png");
    make(u"aardvark.txt"_s);
    QFile::remove(path("apple.jpg"));
    EXPECT_TRUE(QTest::qWaitFor([this] { return names().contains(u"aardvark.txt"_s) && !names().contains(u"apple.jpg"_s); }));
    ASSERT_EQ(browser().selection().size(), 1);
    EXPECT_EQ(browser().selection().first().entry.name, u"Zebra.png"_s);
    browser().model().sort(DirectoryModel::nameColumn, Qt::DescendingOrder);
    EXPECT_EQ(names().first(), u"inner"_s); // folders stay in front
    EXPECT_EQ(names().at(1), u"Zebra.png"_s);
    EXPECT_EQ(browser().selection().size(), 1);
    press(Qt::Key_Escape);
}

TEST_F(FilePanel, FindsAFolderThatHasGoneAndComeBack) {
    NSOpenPanel panel;
    mDirectory = path("inner");
    show(panel);
    QDir(path("inner")).removeRecursively();
    EXPECT_TRUE(QTest::qWaitFor([this] { return list().placeholder().contains(u"found"_s); }));
    for (const char* file : {"inner/first", "inner/second"}) { // the folder is found again, and watched again
        QDir(mFolder.path()).mkpath(u"inner"_s);
        make(QString::fromLatin1(file));
        EXPECT_TRUE(QTest::qWaitFor([&] { return names().contains(QFileInfo(QString::fromLatin1(file)).fileName()); })) << file;
    }
    press(Qt::Key_Escape);
}

TEST_F(FilePanel, ANameThatIsNoTextCannotBeChosen) {
    const std::string ill = mFolder.path().toStdString() + "/ill\xff";
    ASSERT_TRUE(std::ofstream(ill).is_open());
    NSOpenPanel open;
    show(open);
    EXPECT_FALSE(names().contains(u"ill\ufffd"_s));
    press(Qt::Key_Escape);
    NSSavePanel save;
    show(save);
    const int row = browser().model().rowOf(u"ill\ufffd"_s);
    ASSERT_GE(row, 0);
    EXPECT_FALSE(browser().model().flags(browser().model().index(row, 0)) & Qt::ItemIsEnabled);
    press(Qt::Key_Escape);
    std::remove(ill.c_str()); // QTemporaryDir cannot remove such a name
}

TEST_F(FilePanel, TellsWhyNothingIsThere) {
    NSOpenPanel panel;
    mDirectory = path("inner");
    show(panel);
    QDir(path("inner/deep")).removeRecursively();
    browser().setDirectory(path("inner/deep"));
    waitUntilRead();
    EXPECT_TRUE(list().placeholder().contains(u"found"_s)) << list().placeholder().toStdString();
    QFile::remove(path("inner/leaf.txt"));
    QFile::link(path("nowhere"), path("inner/broken"));
    const auto told = [this] {
        browser().setDirectory(path("inner"));
        waitUntilRead();
        return list().placeholder();
    };
    EXPECT_EQ(told(), u"Nothing here can be chosen."_s);
    QFile::remove(path("inner/broken"));
    make(u"inner/.hidden"_s);
    EXPECT_EQ(told(), u"This folder is empty."_s);
    panel.setAllowedFileTypes({u"txt"_s});
    EXPECT_EQ(told(), u"This folder is empty."_s);
    press(Qt::Key_Escape);
}

TEST_F(FilePanel, EveryPartHasItsNameAndItsDirection) {
    NSSavePanel panel;
    panel.setMessage(u"<b>Where?</b>"_s);
    show(panel);
    for (auto* widget : mPanel->dialog()->findChildren<QWidget*>()) {
        if (!widget->isVisible() || widget->focusPolicy() == Qt::NoFocus)
            continue;
        EXPECT_FALSE(QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name).isEmpty())
            << widget->metaObject()->className() << " " << widget->objectName().toStdString();
    }
    EXPECT_EQ(part<QLabel>("messageView").text(), u"<b>Where?</b>"_s);
    EXPECT_EQ(part<QLabel>("messageView").textFormat(), Qt::PlainText);
    QStringList places;
    for (const Place& place : availablePlaces())
        places << place.path;
    EXPECT_TRUE(places.contains(QDir::homePath()) && places.contains(u"/"_s));
    EXPECT_EQ(places.removeDuplicates(), 0);

    EXPECT_EQ(part<QToolButton>("backButton").arrowType(), Qt::LeftArrow);
    mPanel->dialog()->resize(655, 433);
    press(Qt::Key_Escape);
    NSOpenPanel next;
    next.dialog()->setLayoutDirection(Qt::RightToLeft);
    show(next);
    EXPECT_EQ(mPanel->dialog()->size(), QSize(655, 433));
    EXPECT_EQ(part<QToolButton>("backButton").arrowType(), Qt::RightArrow);
    EXPECT_GT(part<PlacesList>("placesList").mapTo(mPanel->dialog(), QPoint()).x(), list().mapTo(mPanel->dialog(), QPoint()).x());
    press(Qt::Key_Escape);
}

TEST_F(FilePanel, EndlessTextsAreShortened) {
    NSOpenPanel panel;
    panel.setMessage(u"word "_s.repeated(100000));
    panel.setPrompt(u"Take "_s.repeated(1000));
    show(panel);
    EXPECT_LT(part<QLabel>("messageView").text().size(), 100000);
    EXPECT_TRUE(confirmButton().text().endsWith(u'\u2026'));
    EXPECT_EQ(confirmButton().width(), confirmButton().sizeHint().width()); // the shortened title is visible as a whole
    EXPECT_EQ(part<QAbstractButton>("cancelButton").text(), u"Cancel"_s);
    press(Qt::Key_Escape);
}

TEST_F(FilePanel, AFolderIsLeftWhileItIsBeingRead) {
    for (int i = 0; i < 3000; ++i)
        make(u"inner/%1.txt"_s.arg(i));
    for (int i = 0; i < 20; ++i) {
        NSOpenPanel panel;
        mPanel = &panel;
        browser().setDirectory(path("inner"));
        QTest::qWait(i % 5);
        browser().setDirectory(mFolder.path());
        if (i % 2 == 0)
            continue; // the panel goes while it reads
        waitUntilRead();
        EXPECT_TRUE(names().contains(u"Zebra.png"_s));
    }
}

} // namespace quoddle
