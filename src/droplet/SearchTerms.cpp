// SPDX-License-Identifier: MIT
#include "droplet/SearchTerms.h"

#include "platform/base/TextArgument.h"
#include "platform/search/ranking/NameRanges.h"

#include <QTextBoundaryFinder>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kHead = 2; // the number of characters at the beginning that stay together
constexpr qsizetype kMostTerms = 100;

/// The sign that closes a quotation; null when `opening` does not begin one.
QChar closingQuote(QChar opening) {
    switch (opening.unicode()) {
    case u'"':
        return u'"';
    case u'«':
        return u'»';
    case u'‘':
        return u'’';
    case u'“':
        return u'”';
    default:
        return {};
    }
}

struct Parts {
    QString base, extension;
};
Parts partsOf(const QString& term) {
    const TermParts parts = splitTerm(TextArgument(term).view());
    return {QString::fromUtf16(parts.base.data(), static_cast<qsizetype>(parts.base.size())),
            QString::fromUtf16(parts.extension.data(), static_cast<qsizetype>(parts.extension.size()))};
}

NSPredicateRef nameIsLike(const QString& pattern) {
    const auto predicate = NSPredicate::predicateWithFormat(u"kMDItemFSName LIKE[cdw] %@"_s, {pattern});
    Q_ASSERT(predicate);
    return *predicate;
}

NSPredicateRef predicateForTerm(const QString& term, bool fuzzy) {
    const auto patternOf = [fuzzy](const QString& text) { return fuzzy ? discontiguousMatchString(text) : u'*' + text + u'*'; };
    auto [base, extension] = partsOf(term);
    if (extension.isEmpty() && base.startsWith(u'.'))
        return nameIsLike(base); // an extension alone
    if (extension.isEmpty())
        return nameIsLike(patternOf(term));
    const NSPredicateRef extensionMatches = nameIsLike(u'.' + extension);
    return base.isEmpty() ? extensionMatches
                          : NSCompoundPredicate::andPredicateWithSubpredicates({nameIsLike(patternOf(base)), extensionMatches});
}

} // namespace

QStringList splitIntoContentTerms(const QString& text, bool& allowDiscontiguous) {
    allowDiscontiguous = true;
    QStringList terms;
    const auto append = [&terms](const QString& term) {
        if (!term.isEmpty() && terms.size() < kMostTerms)
            terms << term;
    };
    for (qsizetype i = 0; i < text.size();) {
        if (text.at(i).isSpace()) {
            ++i;
        } else if (const QChar closing = closingQuote(text.at(i)); !closing.isNull()) {
            const qsizetype found = text.indexOf(closing, i + 1);
            const qsizetype end = found < 0 ? text.size() : found;
            append(text.mid(i + 1, end - i - 1));
            allowDiscontiguous = false;
            i = end + 1;
        } else {
            const qsizetype start = i;
            while (i < text.size() && !text.at(i).isSpace() && closingQuote(text.at(i)).isNull())
                ++i;
            append(text.mid(start, i - start));
        }
    }
    return terms;
}

QString discontiguousMatchString(const QString& term) {
    if (term.size() <= kHead)
        return term;
    auto [base, extension] = partsOf(term);
    if (extension.isEmpty() && base.startsWith(u'.'))
        std::tie(base, extension) = std::pair(QString(), base.mid(1));
    QString pattern = base;
    if (base.size() > kHead) {
        const QString rest = base.mid(kHead);
        QStringList characters;
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, rest);
        for (qsizetype start = 0, end = finder.toNextBoundary(); end >= 0; start = end, end = finder.toNextBoundary())
            characters << rest.mid(start, end - start);
        pattern = u"%1*%2*"_s.arg(base.first(kHead), characters.join(u'*'));
    }
    return extension.isEmpty() ? pattern : pattern + u'.' + extension;
}

NSPredicateRef predicateForTerms(const QStringList& terms, bool allowDiscontiguous) {
    QList<NSPredicateRef> predicates;
    for (const QString& term : terms)
        predicates << predicateForTerm(term, allowDiscontiguous && terms.size() == 1);
    return predicates.size() == 1 ? predicates.first() : NSCompoundPredicate::orPredicateWithSubpredicates(predicates);
}

} // namespace quoddle
