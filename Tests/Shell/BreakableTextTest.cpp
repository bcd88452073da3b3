#include "SorvaneMac/Shell/BreakableText.h"

#include <QStringList>

#include <gtest/gtest.h>

#include "SorvaneMac/Shell/QtText.h"

namespace sorvane {
namespace {

TEST(BreakableText, BreaksWhatIsLongerThanAWord) {
    const struct {
        int line;
        const char* text;
        const char* pieces;
    } cases[] = {
        {__LINE__, "performance_score of Berufsschule", "performance_score of Berufsschule"},
        {__LINE__, "satisfaction_with_the_work", "satisfaction_|with_|the_|work"},
        {__LINE__, "r = .31", "r = .31"},
        {__LINE__, "1234567890123456789012345.67", "1234567890123456789012345.67"},
        {__LINE__, "abcdefghijklmnopqrstuvwxyz", "abcd|e|f|g|h|i|j|k|l|m|n|o|p|q|r|s|t|u|v|wxyz"},
        {__LINE__, "", ""},
    };
    for (const auto& each : cases) {
        const QString marked = BreakableText::of(each.text);
        QString pieces = marked;
        pieces.replace(QChar(0x200B), '|').remove(QChar(0x2060));
        EXPECT_EQ(utf8(pieces), each.pieces) << each.line;
        EXPECT_EQ(BreakableText::unmarked(marked), each.text) << each.line;
    }
}

TEST(BreakableText, KeepsCharactersOfSeveralCodesInOnePiece) {
    const QString name = QString("e\u0301").repeated(30);
    for (const QString& piece : BreakableText::of(name).split(QChar(0x200B))) {
        EXPECT_TRUE(piece.startsWith('e'));
    }
}

}  // namespace
}  // namespace sorvane
