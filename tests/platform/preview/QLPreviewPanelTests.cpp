// SPDX-License-Identifier: MIT
// Which controller has the panel, what the panel shows, and what keys do in it.
#include "platform/appkit/Appearance.h"
#include "platform/appkit/NSPanel.h"
#include "platform/foundation/OwnDesktop.h"
#include "platform/preview/PreviewFiles.h"
#include "platform/preview/QLPreviewPanel.h"

#include <cstdio>

#include <QAccessible>
#include <QApplication>
#include <QDesktopServices>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProxyStyle>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QTest>
#include <QTextEdit>
#include <QToolButton>
#include <QVBoxLayout>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr int kPatience = 30'000; // milliseconds

class Item final : public QLPreviewItem {
public:
    explicit Item(const QString& path) : mPath(path) {}
    QUrl previewItemURL() const override { return QUrl::fromLocalFile(mPath); }
    QString previewItemTitle() const override { return mPath.endsWith(u"titled.txt"_s) ? u"Its title"_s : QString(); }

private:
    const QString mPath;
};

/// A window with a text field, which controls the panel and has files for it.
class Pane final : public QLPreviewPanelController, public QLPreviewPanelDataSource, public QLPreviewPanelDelegate {
public:
    explicit Pane(QWidget& window) : field(new QLineEdit(&window)) { QLPreviewPanel::registerController(*field, *this); }

    bool acceptsPreviewPanelControl(QLPreviewPanel&) override { return accepts; }
    void beginPreviewPanelControl(QLPreviewPanel& panel) override {
        log << u"begin"_s;
        panel.setDataSource(this);
        panel.setDelegate(this);
    }
    void endPreviewPanelControl(QLPreviewPanel&) override { log << u"end"_s; }
    int numberOfPreviewItemsInPreviewPanel(QLPreviewPanel&) override { return static_cast<int>(files.size()); }
    std::shared_ptr<const QLPreviewItem> previewPanelPreviewItemAtIndex(QLPreviewPanel&, int index) override {
        return std::make_shared<Item>(files.at(index));
    }
    bool previewPanelHandleEvent(QLPreviewPanel&, QEvent& event) override {
        if (event.type() == QEvent::KeyPress)
            keys.push_back(static_cast<QKeyEvent&>(event).key());
        return handlesKeys;
    }

    QRect previewPanelSourceFrameOnScreenForPreviewItem(QLPreviewPanel&, const QLPreviewItem&) override { return row; }

    QLineEdit* field;
    QRect row;
    QStringList files;
    QStringList log;
    std::vector<int> keys;
    bool accepts = true;
    bool handlesKeys = false;
};

/// Sets the duration of animations that the user wants.
class Animations final : public QProxyStyle {
public:
    explicit Animations(int duration) : mDuration(duration) { QApplication::setStyle(this); }
    static void reset() { QApplication::setStyle(u"fusion"_s); }
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget, QStyleHintReturn* data) const override {
        return hint == SH_Widget_Animation_Duration ? mDuration : QProxyStyle::styleHint(hint, option, widget, data);
    }

private:
    const int mDuration;
};

/// Opens URLs in place of the desktop, and records them.
class Opener final : public QObject {
    Q_OBJECT
public:
    Q_INVOKABLE void open(const QUrl& url) { opened = url; }
    QUrl opened;
};

class QLPreviewPanelTest : public PreviewFiles {
protected:
    void SetUp() override {
        window.setLayout(new QVBoxLayout);
        pane = std::make_unique<Pane>(window);
        other = std::make_unique<Pane>(window);
        for (Pane* each : {pane.get(), other.get()})
            window.layout()->addWidget(each->field);
        pane->files = {write(u"one.txt"_s, "first text"), write(u"titled.txt"_s, "second text")};
        window.show();
        activate(window);
        pane->field->setFocus();
    }
    void TearDown() override { panel().orderOut(); }

    static void activate(QWidget& widget) {
        widget.activateWindow();
        ASSERT_TRUE(QTest::qWaitFor([&] { return widget.isActiveWindow(); }, kPatience));
    }
    static QLPreviewPanel& panel() { return QLPreviewPanel::sharedPreviewPanel(); }
    static void open() {
        panel().makeKeyAndOrderFront();
        ASSERT_TRUE(QTest::qWaitFor([] { return panel().isActiveWindow(); }, kPatience));
    }
    /// The text that can be read in the panel.
    static QString shown() {
        const QWidget* view = panel().findChild<QStackedWidget*>()->currentWidget();
        const auto* text = qobject_cast<const QPlainTextEdit*>(view);
        if (text)
            return text->toPlainText();
        if (const auto* richText = qobject_cast<const QTextEdit*>(view))
            return richText->toPlainText();
        QStringList lines;
        for (const auto* label : view->findChildren<QLabel*>())
            if (label->isVisibleTo(view))
                lines << label->text();
        return lines.join(u'|');
    }
    static bool comesToShow(const QString& text) {
        return QTest::qWaitFor([&] { return shown().contains(text); }, kPatience);
    }

    const test::OwnDesktop desktop; // no program is installed
    QWidget window;
    std::unique_ptr<Pane> pane, other;
};

} // namespace

TEST_F(QLPreviewPanelTest, BelongsToWhoeverHasTheKeyboard) {
    open();
    EXPECT_TRUE(panel().isVisible() && QLPreviewPanel::sharedPreviewPanelExists());
    EXPECT_EQ(panel().currentController(), pane.get());
    EXPECT_EQ(pane->log, QStringList{u"begin"_s}) << "the panel's own focus changes nothing";
    EXPECT_TRUE(comesToShow(u"first text"_s));

    other->field->setFocus();
    activate(window);
    EXPECT_EQ(panel().currentController(), other.get());
    EXPECT_EQ(pane->log, QStringList({u"begin"_s, u"end"_s}));
    EXPECT_TRUE(comesToShow(u"Nothing is selected."_s));
    EXPECT_EQ(panel().currentPreviewItemIndex(), -1);

    pane->field->setFocus(); // a change of focus within the window
    EXPECT_EQ(panel().currentController(), pane.get());
    other->field->setFocus();
    EXPECT_EQ(panel().currentController(), other.get());

    panel().orderOut();
    EXPECT_EQ(other->log, QStringList({u"begin"_s, u"end"_s, u"begin"_s, u"end"_s}));
    EXPECT_FALSE(panel().isVisible());
    EXPECT_EQ(panel().dataSource(), nullptr);
    EXPECT_EQ(panel().delegate(), nullptr);
    EXPECT_FALSE(shown().contains(u"first"_s));

    pane->field->setFocus();
    pane->accepts = false;
    open();
    EXPECT_EQ(panel().currentController(), nullptr);
    pane->accepts = true;
    panel().updateController();
    EXPECT_EQ(panel().currentController(), pane.get());
}

TEST_F(QLPreviewPanelTest, StaysWithItsControllerWhereNobodyElseTakesIt) {
    open();
    ASSERT_TRUE(comesToShow(u"first text"_s));
    QWidget stranger;
    stranger.show();
    activate(stranger);
    EXPECT_EQ(panel().currentController(), pane.get());
    EXPECT_TRUE(comesToShow(u"first text"_s));
    EXPECT_EQ(pane->log, QStringList{u"begin"_s});
    EXPECT_EQ(panel().currentPreviewItemIndex(), 0);

    delete pane->field; // a controller without a responder cannot be asked any more
    EXPECT_TRUE(comesToShow(u"Nothing is selected."_s));
    EXPECT_EQ(panel().currentController(), nullptr);
    EXPECT_EQ(pane->log, QStringList({u"begin"_s, u"end"_s}));
}

TEST_F(QLPreviewPanelTest, FollowsItsFileOnTheDisk) {
    const QString path = write(u"log.txt"_s, QByteArray("line\n").repeated(500));
    pane->files = {path};
    open();
    ASSERT_TRUE(comesToShow(u"line"_s));
    auto* bar = panel().findChild<QPlainTextEdit*>()->verticalScrollBar();
    bar->setValue(300);
    write(u"log.txt"_s, QByteArray("line\n").repeated(500) + "more");
    EXPECT_TRUE(comesToShow(u"more"_s));
    EXPECT_EQ(bar->value(), 300) << "whoever reads goes on reading";

    // Editors replace files. Doing it twice shows that watching goes on with the new file. Later the file disappears and comes back.
    for (const char* text : {"replaced", "once more"}) {
        ASSERT_EQ(::rename(write(u"new"_s, text).toLocal8Bit().constData(), path.toLocal8Bit().constData()), 0);
        EXPECT_TRUE(comesToShow(QString::fromLatin1(text)));
    }
    auto* openButton = panel().findChild<QPushButton*>();
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_TRUE(comesToShow(u"The file is not there any more."_s));
    EXPECT_TRUE(shown().contains(u"log.txt"_s));
    EXPECT_FALSE(openButton->isEnabled());
    write(u"log.txt"_s, "back");
    EXPECT_TRUE(comesToShow(u"back"_s));
    EXPECT_TRUE(openButton->isEnabled());

    // Changes of a file in the same folder are ignored, and so are changes of the former file.
    pane->files = {picture(u"p.png"_s, {5, 5})};
    QSignalSpy finished(&panel(), &QLPreviewPanel::previewFinished);
    panel().reloadData();
    ASSERT_TRUE(finished.wait(kPatience));
    write(u"log.txt"_s, "written");
    EXPECT_FALSE(finished.wait(1000));
    write(u"p.png"_s, "damaged");
    EXPECT_TRUE(comesToShow(u"The picture cannot be shown."_s));
}

TEST_F(QLPreviewPanelTest, SaysWhichProgramOpensTheFile) {
    const QString longName = u"The <b>Picture</b> Viewer & Editor of Everybody"_s;
    desktop.install(u"data"_s, u"viewer.desktop"_s, longName.toUtf8());
    desktop.install(u"data"_s, u"editor.desktop"_s, "Editor");
    desktop.write(u"config/mimeapps.list"_s, "[Default Applications]\ntext/plain=editor.desktop\nimage/png=viewer.desktop\n");
    pane->files = {write(u"a.txt"_s, "text"), picture(u"p.png"_s, {5, 5}), folder.path()};
    open();
    auto* button = panel().findChild<QPushButton*>();
    const auto name = [button] { return QAccessible::queryAccessibleInterface(button)->text(QAccessible::Name); };
    EXPECT_TRUE(QTest::qWaitFor([&] { return name() == u"Open with “Editor”"_s; }, kPatience));
    EXPECT_EQ(button->text(), name());
    panel().setCurrentPreviewItemIndex(1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return name() == u"Open with “%1”"_s.arg(longName); }, kPatience));
    EXPECT_TRUE(button->text().contains(u'…'));
    EXPECT_EQ(button->toolTip(), toolTipText(name())) << "which is no markup";
    panel().setCurrentPreviewItemIndex(2);
    EXPECT_TRUE(QTest::qWaitFor([&] { return name() == u"Open"_s; }, kPatience));
}

TEST_F(QLPreviewPanelTest, ItsCloseSignStandsOutInLightAndDark) {
    open();
    for (const bool isDark : {true, false}) {
        Appearance::setWantsDark(isDark);
        QCoreApplication::processEvents();
        const auto buttons = panel().findChildren<QToolButton*>();
        const auto close = std::find_if(buttons.begin(), buttons.end(), [](auto* each) { return each->accessibleName() == u"Close"_s; });
        ASSERT_NE(close, buttons.end());
        const QImage picture = (*close)->grab().toImage();
        int clear = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                clear += std::abs(qGray(picture.pixel(x, y)) - qGray(picture.pixel(1, 1))) > 120;
        EXPECT_GT(clear, 12) << (isDark ? "dark" : "light");
        EXPECT_EQ(qGray(picture.pixel(1, 1)) < 128, isDark);
    }
}

TEST_F(QLPreviewPanelTest, ControllersMayGo) {
    open();
    ASSERT_TRUE(comesToShow(u"first text"_s));
    pane.reset();
    EXPECT_EQ(panel().currentController(), nullptr);
    EXPECT_TRUE(comesToShow(u"Nothing is selected."_s));
    panel().updateController();
    EXPECT_EQ(panel().currentController(), nullptr);

    delete other->field; // a responder may also be destroyed
    activate(window);
    panel().updateController();
    EXPECT_EQ(panel().currentController(), nullptr);
}

TEST_F(QLPreviewPanelTest, ShowsTheSelection) {
    open();
    ASSERT_TRUE(comesToShow(u"first text"_s));
    EXPECT_EQ(panel().windowTitle(), u"one.txt"_s);
    panel().setCurrentPreviewItemIndex(7);
    EXPECT_EQ(panel().currentPreviewItemIndex(), 1);
    EXPECT_EQ(panel().windowTitle(), u"Its title"_s);
    EXPECT_TRUE(comesToShow(u"second text"_s));

    // A file that is already shown is only read again on request.
    pane->files = {pane->files.last()};
    QSignalSpy finished(&panel(), &QLPreviewPanel::previewFinished);
    panel().reloadData();
    EXPECT_EQ(panel().currentPreviewItemIndex(), 0);
    EXPECT_FALSE(finished.wait(200));
    panel().refreshCurrentPreviewItem();
    EXPECT_TRUE(finished.wait(kPatience));

    // When files change quickly, only the last one is shown.
    for (int i = 0; i < 50; ++i) {
        pane->files = {i % 2 ? write(u"a.txt"_s, "a") : picture(u"b.png"_s, {5, 5})};
        panel().reloadData();
    }
    pane->files = {write(u"last.txt"_s, "the last")};
    finished.clear();
    panel().reloadData();
    EXPECT_TRUE(comesToShow(u"the last"_s));
    EXPECT_EQ(finished.count(), 1);

    // A formatted text, another one in its place, and nothing.
    for (const char* word : {"rich", "richer"}) {
        pane->files = {write(QString::fromLatin1(word) + u".rtf"_s, QByteArray("{\\rtf1 ") + word + "}")};
        panel().reloadData();
        EXPECT_TRUE(comesToShow(QString::fromLatin1(word)));
    }
    pane->files.clear();
    panel().reloadData();
    EXPECT_EQ(panel().findChild<QTextEdit*>()->toPlainText(), QString());

    pane->files = {write(u"broken.png"_s, "x")};
    panel().reloadData();
    EXPECT_TRUE(comesToShow(u"The picture cannot be shown."_s));
    EXPECT_TRUE(shown().contains(u"broken.png"_s) && shown().contains(u"1 byte"_s)) << shown().toStdString();
}

TEST_F(QLPreviewPanelTest, KeysGoWhereTheyBelong) {
    struct Row {
        int key;
        bool isHandled; // by the delegate
        bool isToldDelegate;
        bool closes;
        int index;
    };
    for (const Row& row : std::initializer_list<Row>{{Qt::Key_Escape, true, false, true, 0},
                                                     {Qt::Key_Space, false, true, true, 0},
                                                     {Qt::Key_Right, true, false, false, 1},
                                                     {Qt::Key_Left, true, false, false, 0},
                                                     {Qt::Key_Down, true, true, false, 0},
                                                     {Qt::Key_Down, false, true, false, 0},
                                                     {Qt::Key_Space, true, true, false, 0},
                                                     {Qt::Key_A, true, true, false, 0}}) {
        open();
        pane->handlesKeys = row.isHandled;
        pane->keys.clear();
        QTest::keyClick(panel().windowHandle(), static_cast<Qt::Key>(row.key));
        EXPECT_EQ(pane->keys, row.isToldDelegate ? std::vector{row.key} : std::vector<int>{}) << row.key;
        EXPECT_EQ(panel().isVisible(), !row.closes) << row.key;
        EXPECT_EQ(row.closes ? 0 : panel().currentPreviewItemIndex(), row.index) << row.key;
        panel().orderOut();
        activate(window);
    }
    // With a single item the arrow keys are passed to the delegate.
    pane->files.removeLast();
    pane->handlesKeys = true;
    pane->keys.clear();
    open();
    QTest::keyClick(panel().windowHandle(), Qt::Key_Right);
    EXPECT_EQ(pane->keys, std::vector<int>{Qt::Key_Right});
}

TEST_F(QLPreviewPanelTest, AKeyThatIsHeldDownClosesNothing) {
    open();
    QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, u" "_s, true);
    QCoreApplication::sendEvent(&panel(), &repeated);
    EXPECT_TRUE(panel().isVisible());
    EXPECT_TRUE(pane->keys.empty());
}

TEST_F(QLPreviewPanelTest, TextsScrollAndSpaceClosesThem) {
    pane->files = {write(u"long.txt"_s, QByteArray("line\n").repeated(500))};
    open();
    ASSERT_TRUE(comesToShow(u"line"_s));
    auto* text = panel().findChild<QPlainTextEdit*>();
    QTest::keyClick(panel().windowHandle(), Qt::Key_End);
    EXPECT_GT(text->verticalScrollBar()->value(), 400);
    text->setFocus();
    QTest::keyClick(panel().windowHandle(), Qt::Key_Space);
    EXPECT_FALSE(panel().isVisible());
}

TEST_F(QLPreviewPanelTest, GrowsOutOfItsRowWhereThereAreAnimations) {
    const auto isOnScreen = [] { return static_cast<QWidget&>(panel()).isVisible(); };
    const auto ghost = []() -> QWidget* {
        const QWidgetList all = QApplication::topLevelWidgets();
        const auto found =
            std::find_if(all.begin(), all.end(), [](QWidget* each) { return qobject_cast<QLabel*>(each) && each->isVisible(); });
        return found == all.end() ? nullptr : *found;
    };
    struct Row {
        int duration;
        QRect row;
        bool grows;
    };
    const QRect somewhere(10, 20, 200, 35);
    for (const Row& row : {Row{200, somewhere, true}, Row{0, somewhere, false}, Row{200, QRect(), false}}) {
        new Animations(row.duration);
        pane->row = row.row;
        panel().makeKeyAndOrderFront();
        EXPECT_TRUE(panel().isVisible());
        EXPECT_EQ(isOnScreen(), !row.grows);
        EXPECT_EQ(ghost() != nullptr, row.grows);
        EXPECT_TRUE(!ghost() || ghost()->geometry() == row.row);
        EXPECT_TRUE(QTest::qWaitFor([&] { return isOnScreen() && !ghost(); }, kPatience));
        panel().orderOut();
        EXPECT_FALSE(isOnScreen() || panel().isVisible());
        EXPECT_EQ(ghost() != nullptr, row.grows);
        EXPECT_TRUE(QTest::qWaitFor([&] { return !ghost(); }, kPatience));
        activate(window);
    }
    // A panel that is closed during its animation does not appear.
    new Animations(200);
    pane->row = somewhere;
    panel().makeKeyAndOrderFront();
    panel().orderOut();
    EXPECT_FALSE(ghost());
    EXPECT_FALSE(QTest::qWaitFor(isOnScreen, 300));
    Animations::reset();
}

TEST_F(QLPreviewPanelTest, EveryControlHasANameAndDoesWhatItSays) {
    open();
    QHash<QString, QAbstractButton*> buttons;
    for (auto* button : panel().findChildren<QAbstractButton*>())
        if (button->isVisible())
            buttons.insert(QAccessible::queryAccessibleInterface(button)->text(QAccessible::Name), button);
    ASSERT_EQ(QSet(buttons.keyBegin(), buttons.keyEnd()), QSet<QString>({u"Close"_s, u"Previous"_s, u"Next"_s, u"Open"_s}));
    EXPECT_FALSE(buttons[u"Previous"_s]->isEnabled());
    buttons[u"Next"_s]->click();
    EXPECT_EQ(panel().currentPreviewItemIndex(), 1);
    EXPECT_FALSE(buttons[u"Next"_s]->isEnabled());
    buttons[u"Previous"_s]->click();
    EXPECT_EQ(panel().currentPreviewItemIndex(), 0);
    // Tab reaches all buttons and the text, and leads on from each.
    ASSERT_TRUE(comesToShow(u"first text"_s));
    QSet<QWidget*> reached;
    for (int i = 0; i < 6; ++i) {
        QTest::keyClick(panel().windowHandle(), Qt::Key_Tab);
        reached.insert(QApplication::focusWidget());
    }
    for (const QString& name : {u"Close"_s, u"Next"_s, u"Open"_s})
        EXPECT_TRUE(reached.contains(buttons[name])) << name.toStdString();
    EXPECT_TRUE(reached.contains(panel().findChild<QPlainTextEdit*>()));
    QTest::keyClick(buttons[u"Close"_s], Qt::Key_Space);
    EXPECT_FALSE(panel().isVisible());

    Opener opener;
    QDesktopServices::setUrlHandler(u"file"_s, &opener, "open");
    activate(window);
    open();
    buttons[u"Open"_s]->click();
    QDesktopServices::unsetUrlHandler(u"file"_s);
    EXPECT_EQ(opener.opened, QUrl::fromLocalFile(pane->files.first()));
    EXPECT_FALSE(panel().isVisible());
}

} // namespace quoddle

#include "QLPreviewPanelTests.moc"
