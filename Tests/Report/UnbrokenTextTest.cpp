#include "SorvaneMac/Report/UnbrokenText.h"

#include <QStringList>
#include <QTextBoundaryFinder>

#include <gtest/gtest.h>

namespace sorvane {
namespace {

/// The pieces between which the toolkit may break the line.
std::string pieces(const std::string& text) {
    const QString whole = QString::fromStdString(text);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Line, whole);
    QStringList parts;
    for (qsizetype from = 0, to = 0; (to = finder.toNextBoundary()) > 0; from = to) {
        parts << whole.mid(from, to - from).remove(QChar(0x2060)).trimmed();
    }
    return parts.join('|').toStdString();
}

TEST(UnbrokenText, LeavesNoBreakInsideNumbersAndWords) {
    const struct {
        int line;
        const char* text;
        const char* pieces;
    } cases[] = {
        {__LINE__, "r = .17, p < .001", "r = .17,|p < .001"},
        {__LINE__, "M = -12.5 and x = y", "M = -12.5|and|x|=|y"},
        {__LINE__, "[.12, -.34]", "[.12,|-.34]"},
        {__LINE__, "-.47***", "-.47***"},
        {__LINE__, "The end. Then", "The|end.|Then"},
        {__LINE__, "Mean Diff. (I-J)", "Mean|Diff.|(I-J)"},
        {__LINE__, "a - b", "a|-|b"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(pieces(UnbrokenText::wordsHeld(each.text)), each.pieces) << each.line;
    }
    EXPECT_EQ(pieces(UnbrokenText::numbersHeld(".5 (I-J)")), ".5|(I-|J)");
    EXPECT_EQ(UnbrokenText::numbersHeld("A plain text."), "A plain text.");
}

}  // namespace
}  // namespace sorvane
