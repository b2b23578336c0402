// SPDX-License-Identifier: MIT
#include "droplet/DropFilesView.h"

#include "droplet/DropletWindowController.h"
#include "platform/foundation/QtPrinters.h"
#include "platform/foundation/URLResources.h"
#include "window/Shell.h"

#include <thread>

#include <QMimeData>
#include <QTest>

namespace quoddle {

using namespace Qt::StringLiterals;
using test::ScriptedComponent;
using Shell = test::ShellWith<DropletWindowController>;

namespace {

constexpr auto kInfo = "KVBStayOpen = YES; KVBShowStartupScreen = NO;";
const QColor kGreen = QColor::fromRgbF(0.459f, 0.82f, 0.482f), kRed = QColor::fromRgbF(0.894f, 0.259f, 0.282f);

std::unique_ptr<QMimeData> pasteboard(const QStringList& urls) {
    auto data = std::make_unique<QMimeData>();
    QList<QUrl> list;
    for (const QString& url : urls)
        list << (url.startsWith(u'/') ? QUrl::fromLocalFile(url) : QUrl(url));
    data->setUrls(list);
    return data;
}

std::string pathOf(const AEDesc& file) {
    return file.asUTF8().value_or("");
}

/// Makes the script's hook refuse names that contain "bad". The hook calls `onCall` first.
void refuseBadNames(std::function<void()> onCall = [] {}) {
    ScriptedComponent::sHandlers["appletfileisacceptable"] = [onCall](ScriptedComponent::Run& run) -> ScriptedComponent::Outcome {
        onCall();
        return {AEDesc::ofBoolean(pathOf(run.event.find("----"_4cc)->items()[0]).find("bad") == std::string::npos)};
    };
}

} // namespace

TEST(DropFilesView, JudgesADrag) {
    Shell shell(kInfo, "open appletfileisacceptable");
    shell.setUp();
    refuseBadNames();
    const auto txtOnly = *NSPredicate::predicateWithFormat(u"%K ENDSWITH[c] '.txt'"_s, {NSURLPathKey});
    const struct {
        const char* what;
        NSPredicateRef predicate;
        QStringList urls;
        bool isAccepted;
        QColor color; // the colour at the end of the animation
    } rows[] = {
        {"nothing", nullptr, {}, false, kRed},
        {"the script takes it", nullptr, {u"/a"_s, u"/b c#%.txt"_s}, true, kGreen},
        {"the script refuses the last one", nullptr, {u"/a"_s, u"/bad"_s}, false, kRed},
        {"the condition refuses", txtOnly, {u"/a.pdf"_s}, false, kRed},
        {"the condition, then the script", txtOnly, {u"/bad.txt"_s}, false, kRed},
        {"the condition refuses the first", txtOnly, {u"/a.pdf"_s, u"/b.TXT"_s}, false, kRed},
        {"behind an accepted file anything passes", txtOnly, {u"/a.txt"_s, u"/bad.pdf"_s, u"/c.pdf"_s}, true, kGreen},
        {"an address of the web", nullptr, {u"https://example.com/a.txt"_s}, false, {}},
        {"an address beside a file", nullptr, {u"https://example.com/a.txt"_s, u"/a"_s}, true, kGreen},
    };
    for (const auto& row : rows) {
        DropFilesView view;
        view.setDropPredicate(row.predicate);
        EXPECT_EQ(view.draggingEntered(*pasteboard(row.urls)) == NSDragOperation::generic, row.color.isValid()) << row.what;
        EXPECT_TRUE(QTest::qWaitFor([&] {
            return view.backgroundColor().isValid() == row.color.isValid() && view.backgroundColor().rgb() == row.color.rgb();
        })) << row.what;
        EXPECT_EQ(view.isTaking(), row.isAccepted) << row.what;
        view.draggingEnded();
        EXPECT_FALSE(view.backgroundColor().isValid()) << row.what;
    }
    DropFilesView view;
    QMimeData text;
    text.setText(u"/a"_s);
    EXPECT_EQ(view.draggingEntered(text), NSDragOperation::none);
    EXPECT_FALSE(view.backgroundColor().isValid()) << "text is nobody's business";
}

TEST(DropFilesView, AScriptThatTakesItsTimeDoesNotStopTheWindow) {
    Shell shell(kInfo, "open appletfileisacceptable");
    shell.setUp();
    int asked = 0;
    refuseBadNames([&] {
        ++asked;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    });
    std::vector<std::size_t> opened;
    ScriptedComponent::sHandlers["open"] = [&](ScriptedComponent::Run& run) -> ScriptedComponent::Outcome {
        MainThread::dispatchAsync([&opened, count = run.event.find("----"_4cc)->count()] { opened.push_back(count); });
        return {};
    };
    QStringList files;
    for (int i = 0; i < 200; ++i)
        files << u"/f%1"_s.arg(i);
    DropFilesView view;

    // The files are dropped before the verdict and opened after it.
    EXPECT_EQ(view.draggingEntered(*pasteboard(files)), NSDragOperation::generic);
    EXPECT_TRUE(view.isJudging());
    EXPECT_EQ(asked, 0);
    EXPECT_FALSE(view.backgroundColor().isValid()) << "neither verdict is known";
    EXPECT_TRUE(view.performDragOperation(*pasteboard(files)));
    view.draggingEnded();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !opened.empty(); }, 20'000));
    EXPECT_EQ(opened, std::vector<std::size_t>{200});

    // The files are dropped before they are refused.
    opened.clear();
    EXPECT_EQ(view.draggingEntered(*pasteboard(QStringList(files) << u"/bad"_s)), NSDragOperation::generic);
    EXPECT_TRUE(view.performDragOperation(*pasteboard(files)));
    view.draggingEnded();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !view.isJudging(); }, 20'000));
    QTest::qWait(50);
    EXPECT_TRUE(opened.empty());

    // The drag leaves before the verdict, so nothing more is asked.
    view.draggingEntered(*pasteboard(files));
    view.draggingExited();
    const int before = asked;
    QTest::qWait(50);
    EXPECT_EQ(asked, before);
}

TEST(DropFilesView, PaintsAColourOnce) {
    class Counting final : public DropFilesView {
    public:
        int paintings = 0;

    protected:
        void paintEvent(QPaintEvent* event) override {
            ++paintings;
            DropFilesView::paintEvent(event);
        }
    } view;
    view.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
    view.paintings = 0;
    view.setBackgroundColor(Qt::white);
    view.setBackgroundColor(Qt::white);
    EXPECT_EQ(view.paintings, 1) << "at once, and once";
}

} // namespace quoddle
