// SPDX-License-Identifier: MIT
#include "platform/appkit/NSSavePanel.h"

#include "platform/appkit/Appearance.h"
#include "platform/appkit/filepanel/FileBrowser.h"
#include "platform/appkit/filepanel/FilePortal.h"
#include "platform/appkit/filepanel/LocationField.h"
#include "platform/appkit/NSAlert.h"
#include "platform/appkit/NSApplication.h"
#include "platform/appkit/NSPanel.h"
#include "platform/foundation/NSUserDefaults.h"
#include "ui_NSSavePanel.h"

#include <QCoreApplication>
#include <QDir>
#include <QScreen>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr auto kLastDirectory = "NSNavLastRootDirectory"_L1;
constexpr auto kPanelSize = "NSNavPanelSize"_L1;
constexpr QSize kUsualSize(720, 480);
constexpr QSize kSmallestSize(420, 320);
constexpr int kLongestName = 255; // bytes
constexpr qsizetype kLongestProblem = 400;

QString folderOf(const QString& path) {
    return QDir::cleanPath(QFileInfo(path).path());
}

/// The problem on one line; a long sentence loses the name in its middle.
QString readableProblem(const QString& problem) {
    constexpr qsizetype kHalf = kLongestProblem / 2;
    return titleText(problem.size() > kLongestProblem ? problem.left(kHalf) + u'\u2026' + problem.right(kHalf) : problem);
}

QColor problemColor(const QPalette& palette) {
    return Appearance::isDark(palette) ? QColor(0xff, 0x8a, 0x80) : QColor(0xb3, 0x1d, 0x1d);
}

} // namespace

QString problemWithFileName(const QString& name) {
    if (name.isEmpty() || name == "."_L1 || name == ".."_L1 || name.contains(u'/') || name.contains(QChar(0)))
        return QCoreApplication::translate("NSSavePanel", "A file cannot be called “%1”.").arg(name);
    if (name.toUtf8().size() > kLongestName)
        return QCoreApplication::translate("NSSavePanel", "The name is too long.");
    return {};
}

/// Opens with the size that the user gave to the last panel, as far as the screen allows.
class NSSavePanel::Panel final : public NSPanel {
public:
    Panel(NSSavePanel& owner, Ui::NSSavePanel& ui) : mOwner(owner), mUi(ui) {}

    void setVisible(bool visible) override {
        if (visible && !isVisible() && mOwner.beginInPortal())
            return; // the desktop's chooser is seen in place of this window
        if (!visible && mOwner.mPortal)
            mOwner.mPortal->cancel();
        if (visible)
            fitMessage();
        else if (isVisible())
            standardUserDefaults().setValue(kPanelSize, size());
        NSPanel::setVisible(visible);
    }
    void takeRememberedSize() {
        const QSize remembered = standardUserDefaults().value(kPanelSize).toSize();
        const QSize available = screen()->availableGeometry().size() * 9 / 10;
        setMinimumSize(kSmallestSize.boundedTo(available));
        resize((remembered.isValid() ? remembered : kUsualSize).expandedTo(minimumSize()).boundedTo(available));
    }

protected:
    void resizeEvent(QResizeEvent* event) override {
        NSPanel::resizeEvent(event);
        fitMessage();
    }
    void changeEvent(QEvent* event) override {
        NSPanel::changeEvent(event);
        if (event->type() == QEvent::PaletteChange)
            colorProblem();
    }

private:
    /// Limits the height of the message: a long one scrolls, so that the browser keeps its room.
    void fitMessage() {
        const QMargins margins = mUi.outerLayout->contentsMargins();
        const int needed = mUi.messageView->heightForWidth(width() - margins.left() - margins.right());
        mUi.messageScrollArea->setFixedHeight(std::clamp(needed, 0, height() / 4));
        colorProblem();
    }
    void colorProblem() {
        QPalette colors = palette();
        colors.setColor(QPalette::WindowText, problemColor(colors));
        mUi.problemView->setPalette(colors);
    }

    NSSavePanel& mOwner;
    Ui::NSSavePanel& mUi;
};

NSSavePanel::NSSavePanel() : mUi(std::make_unique<Ui::NSSavePanel>()), mPanel(std::make_unique<Panel>(*this, *mUi)) {
    mUi->setupUi(mPanel.get());
    mBrowser = mUi->browser;
    setButtonTitle(*mUi->cancelButton, QCoreApplication::translate("NSSavePanel", "Cancel"));
    setKeyEquivalent(*mUi->cancelButton, kEscapeKeyEquivalent);
    setKeyEquivalent(*mUi->confirmButton, kReturnKeyEquivalent);
    mPanel->setCloseButton(mUi->cancelButton);
    mPanel->setSizeGripEnabled(true);
    setMessage({});
    showProblem({});
    setNameFieldStringValue(QCoreApplication::translate("NSSavePanel", "Untitled"));
    mPanel->setWindowTitle(QCoreApplication::translate("NSSavePanel", "Save"));
    changeFilter([](DirectoryFilter& filter) { filter.canChooseFiles = true; });
    connectParts();
}

NSSavePanel::~NSSavePanel() = default;

void NSSavePanel::connectParts() {
    QObject::connect(mUi->cancelButton, &QPushButton::clicked, mPanel.get(), [this] { mPanel->done(NSModalResponseCancel); });
    QObject::connect(mUi->confirmButton, &QPushButton::clicked, mPanel.get(), [this] { confirm(); });
    QObject::connect(mUi->nameField, &QLineEdit::textChanged, mPanel.get(), [this](const QString& name) {
        showProblem({});
        if (mHasNameField)
            setConfirmEnabled(!name.isEmpty());
    });
    QObject::connect(mBrowser, &FileBrowser::directoryChanged, mPanel.get(), [this] { showProblem({}); });
    QObject::connect(mBrowser, &FileBrowser::selectionChanged, mPanel.get(), [this] { selectionChanged(); });
    QObject::connect(mBrowser, &FileBrowser::itemOpened, mPanel.get(), [this] { confirm(); });
    QObject::connect(mBrowser, &FileBrowser::fileEntered, mPanel.get(), [this](const QString& path) { fileEntered(path); });
    QObject::connect(mBrowser, &FileBrowser::failed, mPanel.get(), [this](const QString& problem) { showProblem(problem); });
}

void NSSavePanel::setMessage(const QString& message) {
    mUi->messageView->setText(readableText(message));
    mUi->messageScrollArea->setVisible(!message.isEmpty());
    mPanel->setAccessibleName(readableText(message));
}

void NSSavePanel::setPrompt(const QString& prompt) {
    setButtonTitle(*mUi->confirmButton, prompt);
}

void NSSavePanel::setDirectory(const QString& path) {
    mDirectory = path.isEmpty() ? path : QDir::cleanPath(path);
}

void NSSavePanel::setNameFieldStringValue(const QString& name) {
    mUi->nameField->setText(name);
}

void NSSavePanel::setShowsHiddenFiles(bool shows) {
    changeFilter([shows](DirectoryFilter& filter) { filter.showsHiddenFiles = shows; });
}

void NSSavePanel::setTreatsFilePackagesAsDirectories(bool treats) {
    changeFilter([treats](DirectoryFilter& filter) { filter.treatsFilePackagesAsDirectories = treats; });
}

void NSSavePanel::setCanCreateDirectories(bool can) {
    mBrowser->setCanCreateDirectories(can);
}

QDialog* NSSavePanel::dialog() {
    return mPanel.get();
}

DirectoryFilter NSSavePanel::filter() const {
    return mBrowser->model().filter();
}

void NSSavePanel::changeFilter(const std::function<void(DirectoryFilter&)>& change) {
    DirectoryFilter changed = filter();
    change(changed);
    mBrowser->setFilter(changed);
}

void NSSavePanel::setTitle(const QString& title) {
    mPanel->setWindowTitle(title);
}

QString NSSavePanel::defaultPrompt() const {
    return QCoreApplication::translate("NSSavePanel", "Save");
}

void NSSavePanel::hideNameField() {
    mHasNameField = false;
    mUi->nameRow->hide();
}

void NSSavePanel::setConfirmEnabled(bool enabled) {
    mUi->confirmButton->setEnabled(enabled);
}

void NSSavePanel::showProblem(const QString& problem) {
    mUi->problemView->setText(readableProblem(problem));
    mUi->problemView->setVisible(!problem.isEmpty());
}

QString NSSavePanel::startDirectory() const {
    const QString remembered = standardUserDefaults().value(kLastDirectory).toString();
    for (const QString& path : {mDirectory, remembered, QDir::homePath()})
        if (path.startsWith(u'/') && QFileInfo(path).isDir())
            return path;
    return u"/"_s;
}

void NSSavePanel::prepare() {
    const bool isFile = QFileInfo(mDirectory).isFile() || (!filter().treatsFilePackagesAsDirectories && isFilePackage(mDirectory));
    const QString selected = isFile ? mDirectory.mid(mDirectory.lastIndexOf(u'/') + 1) : QString();
    mSelectsFile = isFile && !mHasNameField;
    if (isFile)
        mDirectory = folderOf(mDirectory);
    if (buttonTitle(*mUi->confirmButton).isEmpty())
        setPrompt(defaultPrompt());
    mURLs.clear();
    mBrowser->setDirectory(startDirectory());
    if (mSelectsFile)
        mBrowser->select(selected);
    selectionChanged();
    if (mHasNameField) {
        const qsizetype dot = mUi->nameField->text().lastIndexOf(u'.');
        mUi->nameField->setFocus();
        // typing replaces the name and keeps the extension
        mUi->nameField->setSelection(0, static_cast<int>(dot > 0 ? dot : mUi->nameField->text().size()));
    } else {
        mBrowser->focusList();
    }
    mPanel->takeRememberedSize();
    const QMargins margins = mUi->outerLayout->contentsMargins();
    fitButtonTitles({mUi->cancelButton, mUi->confirmButton},
                    mPanel->minimumWidth() - margins.left() - margins.right() - 2 * mUi->buttonLayout->spacing());
}

int NSSavePanel::runModal() {
    prepare();
    const int returnCode = NSApplication::sharedApplication()->runModalForWindow(*mPanel);
    return returnCode == NSModalResponseOK ? NSModalResponseOK : NSModalResponseCancel;
}

bool NSSavePanel::beginInPortal() {
    if (mPortalFailed)
        return false;
    if (mPortal && mPortal->isAsking())
        return true;
    const auto request = portalRequest();
    if (!request || !FilePortal::mayExist(mPanel->parentWidget()))
        return false;
    mPortal = std::make_unique<FilePortal>();
    mPortal->begin(*request, mPanel->parentWidget(), [this](FilePortal::Outcome outcome, const QStringList& paths) {
        if (outcome == FilePortal::Outcome::cancelled)
            return mPanel->done(NSModalResponseCancel);
        if (outcome == FilePortal::Outcome::failed)
            return showHere();
        if (const QString problem = takeFromPortal(paths); !problem.isEmpty()) {
            showHere();
            showProblem(problem);
        }
    });
    return true;
}

/// Shows this panel after the desktop's chooser could not be had or has answered with files that cannot be taken.
void NSSavePanel::showHere() {
    mPortalFailed = true;
    mPanel->show();
    mPanel->raise();
    mPanel->activateWindow();
}

std::optional<FilePortalRequest> NSSavePanel::portalRequest() const {
    constexpr qsizetype kLongestTitle = 120;
    const QString message = mUi->messageView->text();
    // A chooser has no place for a text but its title, shows hidden files only when the user wants them, and selects no file.
    if (message.size() > kLongestTitle || message.contains(u'\n') || filter().showsHiddenFiles || mSelectsFile)
        return std::nullopt;
    FilePortalRequest request;
    request.saves = mHasNameField;
    request.title = message.isEmpty() ? mPanel->windowTitle() : message;
    if (const QString prompt = buttonTitle(*mUi->confirmButton); prompt != defaultPrompt())
        request.acceptLabel = prompt;
    request.folder = mDirectory;
    request.name = mHasNameField ? mUi->nameField->text() : QString();
    return request;
}

QString NSSavePanel::takeFromPortal(const QStringList& paths) {
    const QString path = QDir::cleanPath(paths.first());
    const QFileInfo folder(folderOf(path));
    if (const QString problem = problemWithFileName(path.mid(path.lastIndexOf(u'/') + 1)); !problem.isEmpty())
        return problem;
    if (!folder.isDir())
        return QCoreApplication::translate("NSSavePanel", "The folder “%1” cannot be found.").arg(folder.filePath());
    finish({path}, folder.filePath());
    return {};
}

void NSSavePanel::choose(const QStringList& paths) {
    finish(paths, mBrowser->directory());
}

void NSSavePanel::finish(const QStringList& paths, const QString& lastDirectory) {
    mURLs.clear();
    for (const QString& path : paths)
        mURLs.append(QUrl::fromLocalFile(path));
    standardUserDefaults().setValue(kLastDirectory, lastDirectory);
    mPanel->done(NSModalResponseOK);
}

void NSSavePanel::selectionChanged() {
    const QList<FileBrowser::Item> items = mBrowser->selection();
    const QString lent = !items.isEmpty() && !items.first().entry.isDirectory ? items.first().entry.name : QString();
    // The same file again is no choice of the user: the folder was read again.
    if (std::exchange(mLentName, lent) != lent && !lent.isEmpty())
        mUi->nameField->setText(lent);
}

void NSSavePanel::fileEntered(const QString& path) {
    mBrowser->goTo(folderOf(path));
    mUi->nameField->setText(path.mid(path.lastIndexOf(u'/') + 1));
    mUi->nameField->setFocus();
}

void NSSavePanel::confirm() {
    if (mBrowser->enterSelectedByKeyboard())
        return; // Return chose the selected folder, not the one around it
    const QString text = mUi->nameField->text();
    const QString path = absolutePathFor(text, mBrowser->directory());
    const QFileInfo info(path);
    if (info.isDir() && (filter().treatsFilePackagesAsDirectories || !isFilePackage(path))) {
        mBrowser->goTo(path);
        return;
    }
    const QString name = text.mid(text.lastIndexOf(u'/') + 1);
    const QFileInfo folder(folderOf(path));
    if (const QString problem = problemWithFileName(name); !problem.isEmpty())
        showProblem(problem);
    else if (!folder.isDir())
        showProblem(QCoreApplication::translate("NSSavePanel", "The folder “%1” cannot be found.").arg(folder.filePath()));
    else if (!folder.isWritable())
        showProblem(QCoreApplication::translate("NSSavePanel", "You are not allowed to save in “%1”.").arg(folder.filePath()));
    else if (info.exists() || info.isSymLink())
        askToReplace(path);
    else
        choose({path});
}

void NSSavePanel::askToReplace(const QString& path) {
    mReplaceAlert = std::make_unique<NSAlert>();
    mReplaceAlert->setMessageText(
        QCoreApplication::translate("NSSavePanel", "“%1” already exists. Do you want to replace it?").arg(QFileInfo(path).fileName()));
    mReplaceAlert->setInformativeText(QCoreApplication::translate("NSSavePanel", "Replacing it overwrites what it contains."));
    QPushButton* replace = mReplaceAlert->addButton(QCoreApplication::translate("NSSavePanel", "Replace"));
    QPushButton* cancel = mReplaceAlert->addButton(QCoreApplication::translate("NSSavePanel", "Cancel"));
    setKeyEquivalent(*replace, {});
    setKeyEquivalent(*cancel, kEscapeKeyEquivalent);
    NSPanel& window = mReplaceAlert->window();
    window.setParent(mPanel.get(), window.windowFlags());
    window.setWindowModality(Qt::WindowModal);
    window.setWindowTitle(mPanel->windowTitle());
    QObject::connect(&window, &QDialog::finished, mPanel.get(), [this, path](int returnCode) {
        if (returnCode == NSAlertFirstButtonReturn)
            choose({path});
    });
    mReplaceAlert->show([] {});
    cancel->setDefault(true); // Cancel looks like the default button and is it: an extra press of a key must lose nothing
    cancel->setFocus();
}

} // namespace quoddle
