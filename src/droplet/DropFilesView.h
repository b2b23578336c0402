// SPDX-License-Identifier: MIT
// DropFilesView: takes files that are dragged onto it, judges them while they hover and shows the verdict in colour.
// One decision: files are judged in slices of time, so that ten thousand of them, or a slow script, do not stop the window. A drag is
// taken for acceptable until it is judged; one that was dropped before is judged to its end and opened or refused then.
// Main thread only.
#pragma once

#include "platform/foundation/predicate/NSPredicate.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QPointer>
#include <QTimer>
#include <QVariantAnimation>
#include <QWidget>

class QMimeData;

namespace quoddle {

/// The paths of the files that a drag or the clipboard carries, in order; nothing when it carries none but text or addresses of the web.
std::optional<QStringList> filenamesFrom(const QMimeData& data);

enum class NSDragOperation { none = 0, generic = 4 };

class JudgingView;
class PromptView;

class DropFilesView : public QWidget {
    Q_OBJECT
public:
    explicit DropFilesView(QWidget* parent = nullptr);

    /// A condition on the resource values of each file; null: every file.
    NSPredicateRef dropPredicate() const { return mDropPredicate; }
    void setDropPredicate(NSPredicateRef predicate) { mDropPredicate = std::move(predicate); }
    QString promptString() const;
    void setPromptString(const QString& prompt);
    /// Null: none.
    void setPromptIcon(const QImage& icon);
    /// Invalid: the window's background.
    QColor backgroundColor() const { return mBackgroundColor; }
    void setBackgroundColor(const QColor& color);

    // The views in it: the artwork of the drop zone, the icon and the prompt.
    QLabel* forthcomingView() const { return mForthcomingView; }
    QLabel* iconView() const { return mIconView; }
    PromptView* promptView() const { return mPromptView; }

    /// Generic as long as the files are not judged; if the script is asked about them, that begins with the next turn of the event loop.
    NSDragOperation draggingEntered(const QMimeData& pasteboard);
    void draggingExited();
    bool performDragOperation(const QMimeData& pasteboard);
    void draggingEnded();
    /// Whether the files that hover, or were dropped, are still being judged.
    bool isJudging() const { return mJudgement.isUnderWay; }
    /// Whether what hovers would be taken; so it is as long as it is being judged.
    bool isTaking() const { return !isFinishingDrop() && (mJudgement.isUnderWay || mJudgement.isAccepted); }

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    struct Judgement {
        QStringList filenames;
        qsizetype next = 0;
        int number = 0; // of the drag
        bool isAccepted = false;
        bool isUnderWay = false;
        bool isDropped = false;
        QElapsedTimer sinceDrop;
    };

    void _setupView();
    /// Files were dropped before they were judged: until that is done nothing else is taken.
    bool isFinishingDrop() const { return mJudgement.isUnderWay && mJudgement.isDropped; }
    void judgeNextSlice();
    /// For a drag that has left, and for files whose judging is stopped: the script's answer is not waited for.
    void forgetJudgement();
    bool isAccepted(const QString& filename, bool previous) const;
    void judged();
    void stopJudging();
    void dropEndedWithoutOpening();
    void finishingDropDidChange();
    void showLastPane();
    void open(const QStringList& filenames);
    void showVerdict(const QColor& color);
    void setSelected(bool selected);
    void showIcon();

    NSPredicateRef mDropPredicate;
    QLabel* mForthcomingView;
    QLabel* mIconView;
    PromptView* mPromptView;
    JudgingView* mJudgingView;
    QImage mPromptIcon;
    QColor mBackgroundColor;
    QVariantAnimation mColorChange;
    Judgement mJudgement;
    QTimer mNextSlice;
    QTimer mVerdictIsSeen;
    QTimer mSilence; // runs while the pointer is seen although something is dragged
    int mLastJudgement = 0;
    bool mIsAsking = false; // the script, further up on the stack
    int mHookDepth = 0;     // of the hook that is asked
    bool mIsSelected = false;
};

} // namespace quoddle
