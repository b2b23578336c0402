// SPDX-License-Identifier: MIT
// Makes a home folder with many files and searches in it like the search pane of a droplet. Times are in milliseconds, memory in bytes.
//
//   bench-search make FOLDER FILES [N]   makes the files, 91 or N in each folder
//   bench-search search FOLDER TERM…     searches for the first term while the folders are walked: first.hit (time to the first hit),
//                                        first.whole (to the last one), first.count; says how much memory a file takes: memory; how long
//                                        it takes until a new, a renamed and a removed file are told of: made, renamed, removed; and the
//                                        memory for a file then: memory.changed. At last it searches for the later terms from memory:
//                                        TERM.hit, TERM.whole, TERM.count
//   bench-search again FOLDER            the longest searches from memory where there are no watches: while folders are looked at again,
//                                        again, and while they are not, still
#include "Names.h"
#include "platform/foundation/MainThread.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "platform/search/index/FileIndex.h"
#include "platform/search/NSMetadataQuery.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <malloc.h>
#include <semaphore>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>

using namespace quoddle;
using namespace Qt::StringLiterals;

namespace {

constexpr int kFilesOfAFolder = 91;
int make(const std::string& top, int files, int filesOfAFolder) {
    Names names;
    std::vector<std::string> folders{top};
    mkdir(top.c_str(), 0700);
    for (int made = 0; made < files;) {
        const std::string folder = folders[names.below(folders.size())] + "/" + names.folder();
        if (folder.size() > 300)
            continue;
        if (mkdir(folder.c_str(), 0700) != 0)
            return 1;
        folders.push_back(folder);
        for (int i = 0; i < filesOfAFolder && made < files; ++i, ++made)
            close(open((folder + "/" + names.file()).c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
    }
    return 0;
}

/// The resident bytes that the process does not share with others.
double memory() {
    malloc_trim(0);
    std::ifstream statm("/proc/self/statm");
    double total = 0, resident = 0, shared = 0;
    statm >> total >> resident >> shared;
    return (resident - shared) * static_cast<double>(sysconf(_SC_PAGESIZE));
}

class Bench {
public:
    explicit Bench(const QString& top) : mTop(top) {
        mQuery.setSearchScopes({top});
        mQuery.setNotificationBatchingInterval(0.25);
        const auto heard = [this](const NSNotification&) { mHit = mHit < 0 ? elapsed() : mHit; };
        NSNotificationCenter::defaultCenter().addObserver(this, heard, NSMetadataQueryGatheringProgressNotification, &mQuery);
    }

    void search(const QString& term, const std::string& name) {
        // The pane's patterns: of one word the first two letters together and the others in their order, of several words any one.
        const QStringList words = term.split(u' ');
        QList<NSPredicateRef> parts;
        for (const QString& word : words) {
            QString pattern = words.size() == 1 ? word.left(2) : u'*' + word;
            for (qsizetype i = 2; words.size() == 1 && i < word.size(); ++i)
                pattern += QString(u'*') + word.at(i);
            parts << *NSPredicate::predicateWithFormat(u"kMDItemFSName LIKE[cdw] %@"_s, {pattern + u'*'});
        }
        mQuery.setRankedTerm(words.size() == 1 ? term : QString());
        start(NSCompoundPredicate::orPredicateWithSubpredicates(parts));
        std::printf("%s.hit %f\n%s.whole %f\n%s.count %lld\n", name.c_str(), mHit, name.c_str(), elapsed(), name.c_str(),
                    static_cast<long long>(mQuery.resultCount()));
    }

    /// The resident bytes when there is nothing but the index.
    double memoryOfIndex() {
        mQuery.setRankedTerm({});
        start(*NSPredicate::predicateWithFormat(u"FALSEPREDICATE"_s)); // frees the results of the search before
        return memory();
    }

    double fileCount() {
        start(nullptr);
        const auto count = static_cast<double>(mQuery.resultCount());
        start(*NSPredicate::predicateWithFormat(u"FALSEPREDICATE"_s));
        return count;
    }

    void follow() {
        mQuery.setRankedTerm(u"xyzzy"_s);
        start(*NSPredicate::predicateWithFormat(u"kMDItemFSName LIKE[cdw] 'xyzzy*'"_s));
        const QByteArray one = QFile::encodeName(mTop + u"/xyzzy 1"_s), other = QFile::encodeName(mTop + u"/xyzzy 2"_s);
        told(
            "made", [&] { close(open(one.constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600)); },
            [this] { return mQuery.resultCount() == 1; });
        told(
            "renamed", [&] { ::rename(one.constData(), other.constData()); },
            [this] { return mQuery.resultCount() == 1 && mQuery.resultAtIndex(0).path().endsWith(u'2'); });
        told(
            "removed", [&] { unlink(other.constData()); }, [this] { return mQuery.resultCount() == 0; });
    }

private:
    double elapsed() const { return static_cast<double>(mClock.nsecsElapsed()) / 1e6; }

    void start(const NSPredicateRef& predicate) {
        mQuery.setPredicate(predicate);
        mHit = -1;
        mClock.start();
        mQuery.startQuery();
        while (mQuery.isGathering())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    void told(const char* name, const std::function<void()>& change, const std::function<bool()>& isTold) {
        mClock.start();
        change();
        while (!isTold())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        std::printf("%s %f\n", name, elapsed());
    }

    const QString mTop;
    NSMetadataQuery mQuery;
    QElapsedTimer mClock;
    double mHit = -1;
};

/// The longest time of many searches in five seconds. The first one does not count.
double worstSearch(const QString& top, std::chrono::milliseconds lookAgainAfter) {
    FileIndex index({0, lookAgainAfter});
    const NSPredicateRef predicate = *NSPredicate::predicateWithFormat(u"kMDItemFSName LIKE[cdw] 'xyzzy*'"_s);
    double worst = 0;
    QElapsedTimer all;
    for (all.start(); all.elapsed() < 5'000;) {
        const auto filled = std::make_shared<std::binary_semaphore>(0);
        const auto found = std::make_shared<FoundFiles>([filled] { filled->release(); });
        QElapsedTimer clock;
        clock.start();
        const bool isFirst = worst == 0;
        index.search({top}, predicate, {}, found);
        do
            filled->acquire();
        while (!found->take().isWhole);
        found->cancel();
        worst = std::max(worst, isFirst ? 1e-6 : static_cast<double>(clock.nsecsElapsed()) / 1e6);
        std::this_thread::sleep_for(std::chrono::milliseconds(7)); // people pause between keys
    }
    return worst;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    MainThread::open();
    const QStringList words = application.arguments();
    if ((words.size() == 4 || words.size() == 5) && words[1] == u"make"_s)
        return make(words[2].toStdString(), words[3].toInt(), words.size() == 5 ? words[4].toInt() : kFilesOfAFolder);
    if (words.size() == 3 && words[1] == u"again"_s) {
        std::printf("again %f\n", worstSearch(words[2], std::chrono::milliseconds(200)));
        std::printf("still %f\n", worstSearch(words[2], std::chrono::hours(1)));
        return 0;
    }
    if (words.size() < 4 || words[1] != u"search"_s) {
        std::fputs("usage: bench-search make FOLDER FILES [N] | search FOLDER TERM... | again FOLDER\n", stderr);
        return 2;
    }
    Bench bench(words[2]);
    const double before = memory();
    bench.search(words[3], "first");
    const double gathered = bench.memoryOfIndex() - before;
    bench.follow();
    const double changed = bench.memoryOfIndex() - before, files = bench.fileCount();
    std::printf("files %f\nmemory %f\nmemory.changed %f\n", files, gathered / files, changed / files);
    for (const QString& term : words.mid(4))
        bench.search(term, QString(term).replace(u' ', u'+').toStdString());
    return 0;
}
