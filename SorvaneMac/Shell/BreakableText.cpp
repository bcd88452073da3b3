#include "SorvaneMac/Shell/BreakableText.h"

#include <algorithm>

#include <QStringList>
#include <QTextBoundaryFinder>

#include "SorvaneMac/Report/UnbrokenText.h"
#include "SorvaneMac/Shell/QtText.h"

namespace sorvane::BreakableText {

namespace {

constexpr QChar breakHere(0x200B);
constexpr QChar holdHere(UnbrokenText::wordJoiner);
constexpr qsizetype longestWhole = 22;
/// A text this short never breaks; a mark could only change the height of its line.
constexpr qsizetype oneLine = 12;
/// No fewer characters stand alone on a line.
constexpr qsizetype fewest = 4;

QString brokenAnywhere(const QString& part) {
    QString broken;
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, part);
    for (qsizetype from = 0, to = 0; (to = characters.toNextBoundary()) > 0; from = to) {
        broken += part.mid(from, to - from);
        if (to >= fewest && part.size() - to >= fewest) {
            broken += breakHere;
        }
    }
    return broken;
}

bool isNumber(const QString& word) {
    return std::none_of(word.begin(), word.end(), [](QChar each) { return each.isLetter(); });
}

QString broken(const QString& word) {
    if (word.size() <= longestWhole || isNumber(word)) {
        return word;
    }
    QStringList parts = word.split('_');
    for (QString& part : parts) {
        if (part.size() > longestWhole) {
            part = brokenAnywhere(part);
        }
    }
    return parts.join(QString('_') + breakHere);
}

}  // namespace

QString of(const QString& text) {
    QStringList words =
        (text.size() <= oneLine ? text : qtText(UnbrokenText::numbersHeld(utf8(text)))).split(' ');
    for (QString& word : words) {
        word = broken(word);
    }
    return words.join(' ');
}

QString unmarked(QString text) {
    return text.remove(breakHere).remove(holdHere);
}

}  // namespace sorvane::BreakableText
