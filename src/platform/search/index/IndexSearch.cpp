// SPDX-License-Identifier: MIT
#include "platform/search/index/IndexSearch.h"

#include "platform/base/TextArgument.h"

#include <algorithm>

#include <QStringBuilder>

namespace quoddle {

namespace {

constexpr std::chrono::milliseconds kBetweenHandingOver{5};

/// A file's attributes for one evaluation. They are kept, because a predicate may ask several times for the content type, which takes long.
class Attributes {
public:
    explicit Attributes(const NSMetadataItem& item) : mItem(item) {}
    QVariant operator()(const QString& key) {
        const auto known = mKnown.constFind(key);
        return known != mKnown.constEnd() ? *known : *mKnown.insert(key, mItem.valueForAttribute(key));
    }

private:
    const NSMetadataItem& mItem;
    QVariantHash mKnown;
};

QString text(std::string_view bytes) {
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

} // namespace

IndexSearch::IndexSearch(NSPredicateRef predicate, const QString& rankedTerm, std::vector<const IndexedTree*> trees,
                         std::shared_ptr<FoundFiles> found)
    : mPredicate(std::move(predicate)), mMatcher(NameMatcher::compile(mPredicate)),
      mRanking(rankedTerm.isEmpty() ? nullptr : NameRanking::make(TextArgument(rankedTerm).view())), mFound(std::move(found)) {
    for (const IndexedTree* tree : trees)
        mParts.push_back({tree});
}

QString IndexSearch::pathOf(Part& part, FileNames::Entry entry) {
    const FileNames& names = part.tree->names();
    if (names.folderOf(entry) != part.folder) {
        part.folder = names.folderOf(entry);
        part.folderPath = text(part.tree->pathOf(part.folder));
    }
    const std::string_view name = names.name(entry);
    if (names.isASCII(entry))
        return part.folderPath % QLatin1StringView(name.data(), static_cast<qsizetype>(name.size()));
    return part.folderPath % text(name);
}

NameMatcher::Answer IndexSearch::answerFor(const FileNames& names, FileNames::Entry entry) const {
    return mMatcher->match({names.name(entry), names.reducedName(entry), names.letters()[entry], names.isASCII(entry), names.isPlain(entry),
                            names.isFolder(entry)});
}

/// Matches an entry that has not been removed and, when names are ranked, has the term.
void IndexSearch::matchEntry(Part& part, FileNames::Entry entry, double relevance) {
    const NameMatcher::Answer answer = answerFor(part.tree->names(), entry);
    if (answer == NameMatcher::Answer::no)
        return;
    NSMetadataItem item(pathOf(part, entry), relevance);
    if (answer == NameMatcher::Answer::yes || mPredicate->evaluateWithObject(Attributes(item)))
        mChanges.push_back({std::move(item), false});
    if (!mHasHandedOver && !mChanges.empty())
        handOver(false);
}

bool IndexSearch::match(std::size_t most) {
    for (Part& part : mParts) {
        const FileNames& names = part.tree->names();
        const auto count = static_cast<FileNames::Entry>(std::min<std::size_t>(names.entryCount() - part.next, most));
        const FileNames::Entry end = part.next + count;
        most -= count;
        const auto take = [&](FileNames::Entry entry, double relevance) {
            part.next = entry; // handOver() may run in matchEntry(): all entries before this one are matched
            matchEntry(part, entry, relevance);
            return !isCancelled();
        };
        if (mRanking)
            mRanking->forEachUsable(names, part.next, end, take);
        else
            for (FileNames::Entry entry = part.next; entry < end; ++entry)
                if (names.isAlive(entry) && !take(entry, 0))
                    break;
        if (isCancelled())
            return true;
        part.next = end;
        if (end < names.entryCount())
            return true;
    }
    return false;
}

void IndexSearch::willRemove(const IndexedTree& tree, FileNames::Entry entry) {
    for (Part& part : mParts)
        if (part.tree == &tree && entry < part.next && answerFor(tree.names(), entry) != NameMatcher::Answer::no)
            mChanges.push_back({NSMetadataItem(pathOf(part, entry)), true});
}

void IndexSearch::setAllMatched(const IndexedTree& tree) {
    for (Part& part : mParts)
        if (part.tree == &tree) {
            part.next = tree.names().entryCount();
            part.folder = FileNames::kRemoved;
        }
}

bool IndexSearch::isFollowed() const {
    return std::all_of(mParts.begin(), mParts.end(), [](const Part& part) { return part.tree->isFollowed(); });
}

void IndexSearch::handOver(bool isIdle) {
    const auto isDone = [](const Part& part) { return !part.tree->isWalking() && part.next == part.tree->names().entryCount(); };
    const bool isWhole = mIsWhole || std::all_of(mParts.begin(), mParts.end(), isDone);
    const bool isFollowed = this->isFollowed();
    if (mChanges.empty() && isWhole == mIsWhole && isFollowed == mWasFollowed)
        return;
    const auto now = std::chrono::steady_clock::now();
    if (mHasHandedOver && isWhole == mIsWhole && !isIdle && now - mHandedOverAt < kBetweenHandingOver)
        return;
    mHasHandedOver = mHasHandedOver || !mChanges.empty();
    mHandedOverAt = now;
    mIsWhole = isWhole;
    mWasFollowed = isFollowed;
    mFound->put(mChanges, isWhole, isFollowed);
}

} // namespace quoddle
