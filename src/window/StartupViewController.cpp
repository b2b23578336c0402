// SPDX-License-Identifier: MIT
#include "window/StartupViewController.h"

#include "platform/foundation/NSNotificationCenter.h"
#include "runtime/AppDelegate.h"
#include "ui_StartupViewController.h"

namespace quoddle {

using namespace Qt::StringLiterals;

StartupViewController::StartupViewController(QObject* parent)
    : NSViewController(parent), mUi(std::make_unique<Ui::StartupViewController>()) {}

StartupViewController::~StartupViewController() {
    NSNotificationCenter::defaultCenter().removeObserver(this);
}

QWidget* StartupViewController::loadView() {
    auto* widget = new QWidget;
    mUi->setupUi(widget);
    return widget;
}

void StartupViewController::viewDidLoad() {
    QFont title = mUi->nameView->font();
    title.setBold(true);
    title.setPointSizeF(title.pointSizeF() * 1.3);
    mUi->nameView->setFont(title);
    mUi->runButton->setShortcut(Qt::Key_Return);
    AppDelegate* delegate = AppDelegate::instance();
    mHasSomethingToRun = delegate->hasRunHandler() || delegate->hasOpenHandler() || delegate->hasIdleHandler();
    updateRunButton();
    NSNotificationCenter::defaultCenter().addObserver(
        this, [this](const NSNotification&) { scriptActivityChanged(); }, ScriptActivityChangedNotification);
    mPatience.setSingleShot(true);
    connect(&mPatience, &QTimer::timeout, this, &StartupViewController::updateRunButton);
    connect(mUi->runButton, &QPushButton::clicked, this, &StartupViewController::runScript);
    connect(mUi->quitButton, &QPushButton::clicked, this, &StartupViewController::quitApplet);
}

// Enables or disables the Run button and keeps the focus on it, as long as the user does not move it. While the button is disabled the
// focus waits on the pane: the toolkit would give it to the Quit button, where the next press of Space ends the applet.
void StartupViewController::updateRunButton() {
    QPushButton& run = *mUi->runButton;
    const bool isUsable = mHasSomethingToRun && !AppDelegate::instance()->_isRespondingToScript();
    if (!isUsable && view()->window()->focusWidget() == &run)
        view()->setFocus();
    run.setEnabled(isUsable);
    if (isUsable && view()->window()->focusWidget() == view())
        run.setFocus();
}

// Waits a moment before the button is disabled, so that an idle handler that looks at something every second does not make it flicker.
void StartupViewController::scriptActivityChanged() {
    constexpr auto kPatience = std::chrono::milliseconds(200);
    if (AppDelegate::instance()->_isRespondingToScript()) {
        mPatience.start(kPatience);
    } else {
        mPatience.stop();
        updateRunButton();
    }
}

void StartupViewController::setMainBundle(std::shared_ptr<NSBundle> mainBundle) {
    mMainBundle = std::move(mainBundle);
    std::ignore = view();
    const QVariantMap info = mMainBundle->infoDictionary();
    mUi->nameView->setText(mMainBundle->name());
    const QString version = info.value(u"CFBundleShortVersionString"_s).toString();
    mUi->versionView->setText(version.isEmpty() ? QString() : tr("Version %1").arg(version));
    setupDescription();
}

void StartupViewController::viewDidAppear() {
    view()->setFocus();
    updateRunButton();
}

void StartupViewController::setupDescription() {
    static const struct {
        QString name;
        QString type;
    } kResources[] = {
        {u"Description"_s, u"rtfd"_s}, {u"description"_s, u"rtfd"_s}, {u"Description"_s, u"rtf"_s}, {u"description"_s, u"rtf"_s}};
    for (const auto& resource : kResources)
        if (const QString path = mMainBundle->pathForResource(resource.name, resource.type); !path.isEmpty()) {
            mUi->descriptionView->setDescription(path);
            return;
        }
}

void StartupViewController::runScript() {
    AppDelegate::instance()->runMainScript();
    updateRunButton(); // done at once, because a second press would run the script twice
}

void StartupViewController::quitApplet() {
    AppDelegate::instance()->terminate();
}

QPushButton* StartupViewController::runButton() const {
    return mUi->runButton;
}

} // namespace quoddle
