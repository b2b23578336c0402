// SPDX-License-Identifier: MIT
#include "window/HookStopPanel.h"

#include "platform/appkit/NSApplication.h"
#include "platform/appkit/NSPanel.h"
#include "platform/appkit/ProgressBar.h"

#include <QApplication>
#include <QFrame>
#include <QKeyEvent>
#include <QLabel>
#include <QShortcut>
#include <QVBoxLayout>
#include <QWindow>

#include <algorithm>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr int kTextWidth = 320; // points

bool isEscape(const QEvent& event) {
    if (event.type() != QEvent::KeyPress && event.type() != QEvent::ShortcutOverride)
        return false;
    const auto& key = static_cast<const QKeyEvent&>(event);
    return key.key() == Qt::Key_Escape && key.modifiers() == Qt::NoModifier;
}

/// The window that the user works in; null when the applet shows none.
const QWidget* windowInFront() {
    if (const QWidget* active = QApplication::activeWindow())
        return active;
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto isOpen = [](const QWidget* window) {
        const bool isOwn = window->windowType() == Qt::Window || window->windowType() == Qt::Dialog;
        return isOwn && window->isVisible() && window->windowHandle() && !window->isMinimized();
    };
    const auto found = std::find_if(windows.begin(), windows.end(), isOpen);
    return found == windows.end() ? nullptr : *found;
}

/// Keeps the panel in front of a window. A Wayland desktop would give every new window the keyboard, so the panel is a part of the other
/// window there, as a tool tip is.
void attach(NSPanel& panel, const QWidget& window) {
    const bool isWayland = QGuiApplication::platformName().startsWith("wayland"_L1);
    if (isWayland) {
        panel.setWindowFlags(Qt::ToolTip);
        panel.adjustSize();
        panel.move(window.geometry().center() - panel.rect().center());
        auto* frame = new QFrame(&panel); // instead of the desktop's
        frame->setFrameStyle(int{QFrame::Box} | QFrame::Plain);
        frame->setForegroundRole(QPalette::Mid);
        frame->setGeometry(panel.rect());
        frame->lower();
    }
    panel.winId();
    panel.windowHandle()->setTransientParent(window.windowHandle());
}

} // namespace

HookStopPanel::HookStopPanel() = default;
HookStopPanel::~HookStopPanel() = default;

void HookStopPanel::show(const QString& applicationName, std::function<void()> stop) {
    if (mPanel)
        return;
    mStop = std::move(stop);
    mPanel = std::make_unique<NSPanel>();
    mPanel->setWindowTitle(titleText(applicationName));
    mPanel->setAttribute(Qt::WA_ShowWithoutActivating);
    auto* text = new QLabel(tr("“%1” is waiting for an answer from its script.").arg(titleText(applicationName)));
    text->setTextFormat(Qt::PlainText);
    text->setWordWrap(true);
    text->setMinimumWidth(kTextWidth);
    auto* bar = new ProgressBar;
    bar->setAccessibleName(tr("Waiting for the script"));
    bar->setIndeterminate(true);
    bar->startAnimation();
    auto* button = new QPushButton;
    setButtonTitle(*button, tr("Stop"));
    button->setFocusPolicy(Qt::NoFocus); // Space and Return may be typed for the window in front
    connect(button, &QPushButton::clicked, mPanel.get(), [this] { mStop(); });
    auto* layout = new QVBoxLayout(mPanel.get());
    layout->setContentsMargins(20, 20, 20, 20);
    layout->setSpacing(14);
    layout->addWidget(text);
    layout->addWidget(bar);
    layout->addWidget(button, 0, Qt::AlignTrailing);
    mPanel->setCloseButton(button);
    QObject::connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q), mPanel.get()), &QShortcut::activated, mPanel.get(),
                     [] { NSApplication::sharedApplication()->terminate(); }); // the panel has no menu with this shortcut
    if (const QWidget* front = windowInFront())
        attach(*mPanel, *front);
    mPanel->show();
    qApp->installEventFilter(this);
}

void HookStopPanel::dismiss() {
    if (!mPanel)
        return;
    qApp->removeEventFilter(this);
    mPanel.reset();
    mStop = nullptr;
}

/// Whether the keyboard belongs to a dialog or a menu that waits for an answer itself.
bool HookStopPanel::isKeyboardOfAnother() const {
    const auto* dialog = qobject_cast<QDialog*>(QApplication::activeWindow());
    return QApplication::activeModalWidget() || QApplication::activePopupWidget() || (dialog && dialog != mPanel.get());
}

bool HookStopPanel::eventFilter(QObject* watched, QEvent* event) {
    if (!isEscape(*event) || !watched->isWidgetType() || isKeyboardOfAnother())
        return QObject::eventFilter(watched, event);
    event->accept(); // accepted as an override, so that the key comes here and triggers no shortcut
    if (event->type() == QEvent::KeyPress)
        mStop();
    return true;
}

} // namespace quoddle
