#include "SorvaneMac/Report/UnbrokenText.h"

#include <cstddef>

namespace sorvane::UnbrokenText {

namespace {

/// The word joiner as UTF-8.
constexpr std::string_view joiner = "\xE2\x81\xA0";

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Puts a joiner behind every character of which it is said that it must not end a line.
template <typename MustHold>
std::string joined(std::string_view text, MustHold mustHold) {
    std::string held;
    held.reserve(text.size() + 16);
    for (std::size_t at = 0; at < text.size(); ++at) {
        held += text[at];
        if (at + 1 < text.size() && mustHold(at)) {
            held += joiner;
        }
    }
    return held;
}

bool isPointOfNumber(std::string_view text, std::size_t at) {
    return text[at] == '.' && isDigit(text[at + 1]);
}

bool isRelation(char c) {
    return c == '=' || c == '<' || c == '>';
}

bool beginsNumber(std::string_view text) {
    const std::size_t first = text.find_first_not_of("-.");
    return first <= 2 && first < text.size() && isDigit(text[first]);
}

/// One of the two blanks in "p = .03".
bool isBlankByRelation(std::string_view text, std::size_t at) {
    if (text[at] != ' ') {
        return false;
    }
    if (isRelation(text[at + 1])) {
        return text.substr(at + 2).starts_with(' ') && beginsNumber(text.substr(at + 3));
    }
    return at > 0 && isRelation(text[at - 1]) && beginsNumber(text.substr(at + 1));
}

bool isInsideNumber(std::string_view text, std::size_t at) {
    return isPointOfNumber(text, at) || isBlankByRelation(text, at);
}

bool isHyphenInWord(std::string_view text, std::size_t at) {
    return text[at] == '-' && at > 0 && text[at - 1] != ' ' && text[at + 1] != ' ';
}

}  // namespace

std::string numbersHeld(std::string_view text) {
    return joined(text, [text](std::size_t at) { return isInsideNumber(text, at); });
}

std::string wordsHeld(std::string_view text) {
    return joined(text, [text](std::size_t at) {
        return isInsideNumber(text, at) || isHyphenInWord(text, at);
    });
}

RichDocument numbersHeld(RichDocument document) {
    for (Paragraph& paragraph : document.paragraphs) {
        for (TextRun& run : paragraph.runs) {
            run.text = numbersHeld(run.text);
        }
    }
    return document;
}

RichDocument released(RichDocument document) {
    for (Paragraph& paragraph : document.paragraphs) {
        for (TextRun& run : paragraph.runs) {
            for (std::size_t at = 0; (at = run.text.find(joiner, at)) != std::string::npos;) {
                run.text.erase(at, joiner.size());
            }
        }
    }
    return document;
}

}  // namespace sorvane::UnbrokenText
