// SPDX-License-Identifier: MIT
#include "platform/appkit/rtf/QuickLayout.h"

#include <QFont>
#include <QSet>
#include <QTextBlock>
#include <QTextBoundaryFinder>
#include <QTextDocument>

namespace quoddle {

namespace {

// The most that is laid out, counted in plain characters of an ordinary size: about a tenth of a second of work.
constexpr int kMostCost = 128 << 10;
constexpr int kCostOfRun = 20;
constexpr int kCostOfParagraph = 20;
constexpr double kOrdinarySize = 12; // points; characters of a larger size make more lines and cost more
constexpr int kMostFonts = 32;       // the toolkit searches all fonts of the machine for the characters that one of them lacks
constexpr int kMostRunsInParagraph = 1000;
constexpr int kLongestStretch = 500; // the most characters in a row without a place for the end of a line

int costOfCharacter(QChar character) {
    switch (character.category()) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_SpacingCombining:
    case QChar::Mark_Enclosing:
    case QChar::Other_Format:  // controls of the direction, among others
    case QChar::Other_Control: // tabs, among others
    case QChar::Separator_Line:
        return 8;
    default:
        return 1;
    }
}

double costOfRun(const QTextFragment& run) {
    int characters = 0;
    for (const QChar character : run.text())
        characters += costOfCharacter(character);
    return kCostOfRun + characters * std::max(1.0, run.charFormat().fontPointSize() / kOrdinarySize);
}

/// A text that is the same for runs in the same font. Lines through and under the text are left out, because they are no part of the font;
/// its place is included, because raised and lowered text is smaller.
QString fontOfRun(const QTextCharFormat& format) {
    QFont font = format.font();
    font.setUnderline(false);
    font.setStrikeOut(false);
    return font.key() + QChar(u'0' + format.verticalAlignment());
}

qsizetype longestStretch(const QString& text) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Line, text);
    qsizetype longest = 0, start = 0;
    for (qsizetype end = finder.toNextBoundary(); end >= 0; start = end, end = finder.toNextBoundary())
        longest = std::max(longest, end - start);
    return longest;
}

} // namespace

int quicklyLaidOutParagraphs(const QTextDocument& document) {
    double cost = 0;
    int paragraphs = 0;
    QSet<QString> fonts;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next(), ++paragraphs) {
        int runs = 0;
        for (auto run = block.begin(); !run.atEnd(); ++run, ++runs) {
            fonts.insert(fontOfRun(run.fragment().charFormat()));
            cost += costOfRun(run.fragment());
        }
        cost += kCostOfParagraph;
        if (cost > kMostCost || runs > kMostRunsInParagraph || fonts.size() > kMostFonts || longestStretch(block.text()) > kLongestStretch)
            break;
    }
    return paragraphs;
}

} // namespace quoddle
