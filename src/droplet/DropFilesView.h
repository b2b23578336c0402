// SPDX-License-Identifier: MIT
// DropFilesView: takes files that are dragged onto it, judges them while they hover and shows the verdict in colour.
// One decision: files are judged in slices of time, so that ten thousand of them, or a slow script, do not stop the window. A drag counts
// as acceptable until it has been judged. Files that are dropped before that are judged to the end and then opened or refused.
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

/// The paths of the files that a drag or the clipboard carries, in order; nullopt when it carries only text or addresses of the web.
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
    /// Sets the picture above the prompt; null: no picture.
    void setPromptIcon(const QImage& icon);
    /// The colour behind everything; an invalid one means the window's background.
    QColor backgroundColor() const { return mBackgroundColor; }
    void setBackgroundColor(const QColor& color);

    // The parts of the view: the artwork of the drop zone, the icon and the prompt.
    QLabel* forthcomingView() const { return mForthcomingView; }
    QLabel* iconView() const { return mIconView; }
    PromptView* promptView() const { return mPromptView; }

    /// Begins to judge a drag. Answers `generic` as long as its files are not judged. When the script has to be asked about them, that
    /// begins with the next turn of the event loop.
    NSDragOperation draggingEntered(const QMimeData& pasteboard);
    void draggingExited();
    bool performDragOperation(const QMimeData& pasteboard);
    void draggingEnded();
    /// Whether files that hover or were dropped are still being judged.
    bool isJudging() const { return mJudgement.isUnderWay; }
    /// Whether a drop would be accepted now, which is also the case while the files are being judged.
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
        int number = 0; // the number of the drag
        bool isAccepted = false;
        bool isUnderWay = false;
        bool isDropped = false;
        QElapsedTimer sinceDrop;
    };

    void _setupView();
    /// Whether files that were dropped before they were judged are still being judged; nothing else is taken meanwhile.
    bool isFinishingDrop() const { return mJudgement.isUnderWay && mJudgement.isDropped; }
    void judgeNextSlice();
    /// Drops the judgement of a drag that has left, or of files whose judging is stopped, and stops a script that is being asked.
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
    QTimer mVerdictIsSeen; // runs while a refusal after the drop is shown
    QTimer mSilence;       // runs while the pointer sends events although a drag seems to be there
    int mLastJudgement = 0;
    bool mIsAsking = false; // the script is being asked further up on the stack
    int mHookDepth = 0;     // the number of hooks that were under way before the one that is asked
    bool mIsSelected = false;
};

} // namespace quoddle
