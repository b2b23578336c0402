// SPDX-License-Identifier: MIT
#include "platform/search/index/NameMatcher.h"

#include "platform/base/Text.h"
#include "platform/base/TextArgument.h"
#include "platform/search/NSMetadataQuery.h"

#include <vector>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

using Answer = NameMatcher::Answer;
using Operator = NSComparisonPredicate::Operator;

Answer answer(bool holds) {
    return holds ? Answer::yes : Answer::no;
}

QString text(std::string_view bytes) {
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

class Always final : public NameMatcher {
public:
    explicit Always(Answer always) : mAnswer(always) {}
    Answer match(const Name&) const override { return mAnswer; }

private:
    const Answer mAnswer;
};

/// NOT, AND, OR. Only as many parts are asked as decide the answer.
class Compound final : public NameMatcher {
public:
    explicit Compound(const NSCompoundPredicate& predicate) : mType(predicate.compoundPredicateType()) {
        for (const NSPredicateRef& part : predicate.subpredicates())
            mParts.push_back(compile(part));
    }
    Answer match(const Name& name) const override {
        if (mType == NSCompoundPredicate::Type::notPredicate) {
            const Answer part = mParts.front()->match(name);
            return part == Answer::unknown ? part : answer(part == Answer::no);
        }
        const Answer deciding = answer(mType == NSCompoundPredicate::Type::orPredicate);
        Answer whole = answer(mType == NSCompoundPredicate::Type::andPredicate);
        for (const auto& part : mParts) {
            const Answer each = part->match(name);
            if (each == deciding)
                return each;
            if (each == Answer::unknown)
                whole = each;
        }
        return whole;
    }

private:
    const NSCompoundPredicate::Type mType;
    std::vector<std::unique_ptr<NameMatcher>> mParts;
};

/// A comparison that depends only on the name.
class OfName : public NameMatcher {
public:
    explicit OfName(NSPredicateRef predicate) : mPredicate(std::move(predicate)) {}
    Answer match(const Name& name) const override {
        return answer(mPredicate->evaluateWithObject([&name](const QString&) -> QVariant { return text(name.bytes); }));
    }

private:
    const NSPredicateRef mPredicate;
};

/// A text that each matching reduced name contains; empty when the pattern has nothing but half a surrogate pair.
std::string literalOf(const LikePattern& pattern) {
    constexpr std::string_view kReplacement = "\xEF\xBF\xBD"; // stands for half a surrogate pair
    const std::string literal = utf8FromUTF16(pattern.longestLiteral());
    return literal.find(kReplacement) == std::string::npos ? literal : std::string();
}

class LikeName final : public OfName {
public:
    LikeName(const NSComparisonPredicate& predicate, NSPredicateRef owner, const QString& pattern)
        : OfName(std::move(owner)), mPattern(TextArgument(pattern).view(), predicate.options()), mLetters(lettersOf(pattern.toStdString())),
          mComparesReduced((predicate.options() & kReducing) == kReducing),
          mLiteral(mComparesReduced ? literalOf(mPattern) : std::string()) {}
    Answer match(const Name& name) const override {
        if (!hasLetters(name.letters, mLetters))
            return Answer::no;
        if (name.isASCII || (mComparesReduced && name.isPlain))
            return answer(mPattern.matchesASCII(name.reduced));
        if (mComparesReduced && name.reduced.find(mLiteral) == std::string_view::npos)
            return Answer::no;
        return OfName::match(name);
    }

private:
    static constexpr std::uint8_t kReducing = LikePattern::ignoresCase | LikePattern::ignoresDiacritics;

    const LikePattern mPattern;
    const LetterSet mLetters;
    const bool mComparesReduced;
    const std::string mLiteral; // part of the reduced pattern
};

class NameEndsWith final : public NameMatcher {
public:
    explicit NameEndsWith(const QString& end) : mEnd(end.toUtf8().toStdString()) {}
    Answer match(const Name& name) const override { return answer(!mEnd.empty() && name.bytes.ends_with(mEnd)); }

private:
    const std::string mEnd;
};

/// Whether the type is "public.folder", which only a folder can have.
class IsPlainFolder final : public NameMatcher {
public:
    explicit IsPlainFolder(bool wanted) : mWanted(wanted) {}
    Answer match(const Name& name) const override { return name.isFolder ? Answer::unknown : answer(!mWanted); }

private:
    const bool mWanted;
};

std::unique_ptr<NameMatcher> compileComparison(const NSComparisonPredicate& comparison, const NSPredicateRef& owner) {
    const auto& left = comparison.leftExpression();
    const auto& right = comparison.rightExpression();
    const Operator type = comparison.predicateOperatorType();
    const bool isPlain = left.isKey && !right.isKey && right.content.typeId() == QMetaType::QString;
    const auto isName = [](const auto& side) { return !side.isKey || side.content == NSMetadataItemFSNameKey; };
    if (isName(left) && isName(right)) {
        const QString wanted = right.content.toString();
        if (isPlain && type == Operator::like)
            return std::make_unique<LikeName>(comparison, owner, wanted);
        if (isPlain && type == Operator::endsWith && comparison.options() == 0 && wanted.isValidUtf16())
            return std::make_unique<NameEndsWith>(wanted);
        return std::make_unique<OfName>(owner);
    }
    if (isPlain && left.content == NSMetadataItemContentTypeKey && right.content == u"public.folder"_s && comparison.options() == 0 &&
        (type == Operator::equalTo || type == Operator::notEqualTo))
        return std::make_unique<IsPlainFolder>(type == Operator::equalTo);
    return std::make_unique<Always>(Answer::unknown);
}

} // namespace

std::unique_ptr<NameMatcher> NameMatcher::compile(const NSPredicateRef& predicate) {
    if (!predicate)
        return std::make_unique<Always>(Answer::yes);
    if (const auto* compound = dynamic_cast<const NSCompoundPredicate*>(predicate.get()))
        return std::make_unique<Compound>(*compound);
    if (const auto* comparison = dynamic_cast<const NSComparisonPredicate*>(predicate.get()))
        return compileComparison(*comparison, predicate);
    return std::make_unique<Always>(Answer::unknown);
}

} // namespace quoddle
