#include "SorvaneMac/Report/UnbrokenText.h"

#include <cstddef>

namespace sorvane::UnbrokenText {

namespace {

constexpr std::string_view wordJoiner = "\xE2\x81\xA0";

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
            held += wordJoiner;
        }
    }
    return held;
}

bool isPointOfNumber(std::string_view text, std::size_t at) {
    return text[at] == '.' && isDigit(text[at + 1]);
}

bool isHyphenInWord(std::string_view text, std::size_t at) {
    return text[at] == '-' && at > 0 && text[at - 1] != ' ' && text[at + 1] != ' ';
}

}  // namespace

std::string numbersHeld(std::string_view text) {
    return joined(text, [text](std::size_t at) { return isPointOfNumber(text, at); });
}

std::string wordsHeld(std::string_view text) {
    return joined(text, [text](std::size_t at) {
        return isPointOfNumber(text, at) || isHyphenInWord(text, at);
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

}  // namespace sorvane::UnbrokenText
