// SPDX-License-Identifier: MIT
#include "platform/appkit/filepanel/FileBrowser.h"

#include "ui_FileBrowser.h"

#include <QDir>
#include <QEvent>
#include <QHeaderView>
#include <QInputDialog>
#include <QLocale>
#include <QSet>
#include <QShortcut>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kLongestHistory = 100;
constexpr int kPatience = 500;           // milliseconds
constexpr int kLookAgainInterval = 1000; // milliseconds between looks at a folder that cannot be watched

QString parentOf(const QString& path) {
    const qsizetype slash = path.lastIndexOf(u'/');
    return slash > 0 ? path.left(slash) : u"/"_s;
}

} // namespace

FileBrowser::FileBrowser(QWidget* parent) : QWidget(parent), mUi(std::make_unique<Ui::FileBrowser>()) {
    mUi->setupUi(this);
    buildTopRow();
    buildList();
    addKeys();
    turnArrows();
}

FileBrowser::~FileBrowser() = default;

void FileBrowser::buildTopRow() {
    connect(mUi->backButton, &QToolButton::clicked, this, [this] { goBack(mBack, mForward); });
    connect(mUi->forwardButton, &QToolButton::clicked, this, [this] { goBack(mForward, mBack); });
    connect(mUi->parentButton, &QToolButton::clicked, this, &FileBrowser::goToParent);
    connect(mUi->locationField, &LocationField::pathEntered, this, &FileBrowser::enterPath);
    connect(mUi->newFolderButton, &QPushButton::clicked, this, &FileBrowser::createFolder);
    connect(mUi->placesList, &PlacesList::placeChosen, this, &FileBrowser::goTo);
}

void FileBrowser::buildList() {
    FileList* list = mUi->fileList;
    list->setModel(&mModel);
    const QFontMetrics metrics(list->font());
    list->header()->setSectionResizeMode(DirectoryModel::nameColumn, QHeaderView::Stretch);
    list->header()->resizeSection(DirectoryModel::sizeColumn, metrics.horizontalAdvance(u"8,888.8 MB  "_s));
    const QString someDate = QLocale().toString(QDateTime(QDate(2028, 12, 28), QTime(22, 58)), QLocale::ShortFormat);
    list->header()->resizeSection(DirectoryModel::modifiedColumn, metrics.horizontalAdvance(someDate + u"    "_s));
    mUi->splitter->setStretchFactor(1, 1);

    connect(&mModel, &QAbstractItemModel::modelAboutToBeReset, this, &FileBrowser::keepSelection);
    connect(&mModel, &QAbstractItemModel::modelReset, this, &FileBrowser::restoreSelection);
    connect(&mModel, &DirectoryModel::stateChanged, this, &FileBrowser::updatePlaceholder);
    mLookAgainTimer.setInterval(kLookAgainInterval);
    connect(&mLookAgainTimer, &QTimer::timeout, &mModel, &DirectoryModel::refresh);
    connect(&mModel, &DirectoryModel::stateChanged, this, [this] {
        const bool cannotBeSeen = mModel.state() == DirectoryState::missing || mModel.state() == DirectoryState::forbidden;
        cannotBeSeen ? mLookAgainTimer.start() : mLookAgainTimer.stop();
    });
    connect(list->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        if (!mIsRestoring)
            Q_EMIT selectionChanged();
    });
    connect(list, &FileList::doubleClicked, this, [this](const QModelIndex& index) {
        if (mModel.entryAt(index.row()).isDirectory)
            enter(index);
        else if (mModel.flags(index) & Qt::ItemIsEnabled)
            Q_EMIT itemOpened();
    });
    connect(list, &FileList::parentRequested, this, &FileBrowser::goToParent);
    connect(list, &FileList::entryRequested, this, &FileBrowser::enter);
    connect(list, &FileList::pathBegun, mUi->locationField, &LocationField::beginEditing);
}

void FileBrowser::addKeys() {
    const auto add = [this](const QKeySequence& keys, auto perform) {
        auto* shortcut = new QShortcut(keys, this);
        shortcut->setContext(Qt::WindowShortcut);
        connect(shortcut, &QShortcut::activated, this, perform);
    };
    add(QKeySequence(Qt::ALT | Qt::Key_Up), [this] { goToParent(); });
    add(QKeySequence(Qt::ALT | Qt::Key_Down), [this] { enter(mUi->fileList->currentIndex()); });
    add(QKeySequence(Qt::ALT | Qt::Key_Left), [this] { goBack(mBack, mForward); });
    add(QKeySequence(Qt::ALT | Qt::Key_Right), [this] { goBack(mForward, mBack); });
    add(QKeySequence(Qt::ALT | Qt::Key_Home), [this] { goTo(QDir::homePath()); });
    add(QKeySequence(Qt::CTRL | Qt::Key_L), [this] {
        mUi->locationField->setFocus();
        mUi->locationField->selectAll();
    });
    add(QKeySequence(Qt::CTRL | Qt::Key_H), [this] {
        DirectoryFilter filter = mModel.filter();
        filter.showsHiddenFiles = !filter.showsHiddenFiles;
        mModel.setFilter(filter);
    });
}

void FileBrowser::setAllowsMultipleSelection(bool allows) {
    mUi->fileList->setSelectionMode(allows ? QAbstractItemView::ExtendedSelection : QAbstractItemView::SingleSelection);
}

void FileBrowser::setCanCreateDirectories(bool can) {
    mUi->newFolderButton->setVisible(can);
}

void FileBrowser::focusList() {
    mUi->fileList->setFocus();
}

void FileBrowser::setDirectory(const QString& path) {
    mKeptNames.clear();
    mKeptCurrent.clear();
    mUi->fileList->clearSelection();
    mSinceEntered.start();
    QTimer::singleShot(kPatience, this, &FileBrowser::updatePlaceholder);
    mModel.setDirectory(path);
    mUi->locationField->setDirectory(path);
    mUi->placesList->setCurrentPlace(path);
    mUi->backButton->setEnabled(!mBack.isEmpty());
    mUi->forwardButton->setEnabled(!mForward.isEmpty());
    mUi->parentButton->setEnabled(path != "/"_L1);
    Q_EMIT directoryChanged();
}

void FileBrowser::goTo(const QString& path) {
    if (path == directory())
        return mModel.refresh();
    mBack.append(directory());
    if (mBack.size() > kLongestHistory)
        mBack.removeFirst();
    mForward.clear();
    setDirectory(path);
}

void FileBrowser::goBack(QStringList& from, QStringList& to) {
    if (from.isEmpty())
        return;
    to.append(directory());
    setDirectory(from.takeLast());
}

void FileBrowser::goToParent() {
    const QString left = directory();
    if (left == "/"_L1)
        return;
    goTo(parentOf(left));
    select(left.mid(left.lastIndexOf(u'/') + 1));
}

void FileBrowser::enter(const QModelIndex& index) {
    if (index.isValid() && mModel.entryAt(index.row()).isDirectory) {
        goTo(mModel.pathAt(index.row()));
        focusList();
    }
}

void FileBrowser::enterPath(const QString& path) {
    const QFileInfo info(path);
    const bool isPackage = !mModel.filter().treatsFilePackagesAsDirectories && isFilePackage(path);
    if (info.isDir() && !isPackage) {
        goTo(path);
        focusList();
    } else {
        Q_EMIT fileEntered(path);
    }
}

void FileBrowser::createFolder() {
    auto* question = new QInputDialog(this);
    question->setAttribute(Qt::WA_DeleteOnClose);
    question->setWindowTitle(tr("New Folder"));
    question->setLabelText(tr("Name of the new folder:"));
    question->setTextValue(tr("New Folder"));
    question->setOkButtonText(tr("Create"));
    question->setCancelButtonText(tr("Cancel"));
    connect(question, &QInputDialog::textValueSelected, this, &FileBrowser::makeFolderNamed);
    question->open();
}

void FileBrowser::makeFolderNamed(const QString& name) {
    const QString path = directory() + u'/' + name;
    if (name.isEmpty() || name.contains(u'/') || !QDir(directory()).mkdir(name))
        Q_EMIT failed(QFileInfo::exists(path) ? tr("“%1” is there already.").arg(name)
                                              : tr("The folder “%1” could not be created.").arg(name));
    else
        goTo(QDir::cleanPath(path));
}

QList<FileBrowser::Item> FileBrowser::selection() const {
    QList<int> rows;
    const QItemSelection ranges = mUi->fileList->selectionModel()->selection();
    for (const QItemSelectionRange& range : ranges)
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.append(row);
    std::sort(rows.begin(), rows.end());
    QList<Item> items;
    for (const int row : std::as_const(rows))
        items.append({mModel.pathAt(row), mModel.entryAt(row)});
    return items;
}

bool FileBrowser::hasSelection() const {
    return mUi->fileList->selectionModel()->hasSelection();
}

bool FileBrowser::enterSelectedByKeyboard() {
    const QList<Item> items = mUi->fileList->hasFocus() ? selection() : QList<Item>();
    if (items.size() != 1 || !items.first().entry.isDirectory)
        return false;
    goTo(items.first().path);
    return true;
}

bool FileBrowser::isSelectable(int row) const {
    return mModel.flags(mModel.index(row, 0)) & Qt::ItemIsSelectable;
}

void FileBrowser::select(const QString& name) {
    mKeptNames = {name};
    mKeptCurrent = name;
    restoreSelection();
}

// Notes the names of the selected entries before the rows are replaced. With nothing selected the names noted before are kept, because they
// may be of an entry that is still to come; they stay until they are found or the user selects something else.
void FileBrowser::keepSelection() {
    const QList<Item> items = selection();
    if (items.isEmpty())
        return;
    mKeptNames.clear();
    for (const Item& item : items)
        mKeptNames.append(item.entry.name);
    const QModelIndex current = mUi->fileList->currentIndex();
    mKeptCurrent = current.isValid() ? mModel.entryAt(current.row()).name : QString();
}

void FileBrowser::restoreSelection() {
    FileList* list = mUi->fileList;
    if (!mKeptNames.isEmpty() && mModel.rowCount() > 0) {
        const QSet<QString> names(mKeptNames.begin(), mKeptNames.end());
        QItemSelection found;
        int first = -1; // of a run of kept rows; -1 outside one
        for (int row = 0; row <= mModel.rowCount(); ++row) {
            const bool isKept = row < mModel.rowCount() && names.contains(mModel.entryAt(row).name) && isSelectable(row);
            if (isKept && first < 0)
                first = row;
            if (!isKept && first >= 0)
                found.append({mModel.index(std::exchange(first, -1), 0), mModel.index(row - 1, mModel.columnCount() - 1)});
        }
        mIsRestoring = true;
        if (const int row = mModel.rowOf(mKeptCurrent); row >= 0) {
            list->selectionModel()->setCurrentIndex(mModel.index(row, 0), QItemSelectionModel::NoUpdate);
            list->scrollTo(mModel.index(row, 0));
        }
        list->selectionModel()->select(found, QItemSelectionModel::ClearAndSelect);
        mIsRestoring = false;
        if (!found.isEmpty())
            mKeptNames.clear();
    }
    Q_EMIT selectionChanged();
}

void FileBrowser::updatePlaceholder() {
    QString text;
    switch (mModel.state()) {
    case DirectoryState::reading:
        text = mSinceEntered.elapsed() >= kPatience ? tr("Reading…") : QString(); // most folders are read before this has to be said
        break;
    case DirectoryState::forbidden:
        text = tr("You are not allowed to see what is in this folder.");
        break;
    case DirectoryState::missing:
        text = tr("This folder cannot be found.");
        break;
    case DirectoryState::complete:
        text = mModel.leavesOthersOut() ? tr("Nothing here can be chosen.") : tr("This folder is empty.");
    }
    mUi->fileList->setPlaceholder(mModel.rowCount() > 0 ? QString() : text);
}

void FileBrowser::turnArrows() {
    const bool isRightToLeft = layoutDirection() == Qt::RightToLeft;
    mUi->backButton->setArrowType(isRightToLeft ? Qt::RightArrow : Qt::LeftArrow);
    mUi->forwardButton->setArrowType(isRightToLeft ? Qt::LeftArrow : Qt::RightArrow);
}

void FileBrowser::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange)
        turnArrows();
}

} // namespace quoddle
