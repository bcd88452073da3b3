#include "SorvaneCore/Import/NameTokens.h"

#include "SorvaneCore/Dataset/UnicodeText.h"

namespace sorvane {

namespace {

bool isCapital(char c) {
    return c >= 'A' && c <= 'Z';
}

bool isSmallOrDigit(char c) {
    return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
}

}  // namespace

NameTokens tokenize(std::string_view name) {
    std::string spaced;
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (i > 0 && isCapital(name[i]) && isSmallOrDigit(name[i - 1])) {
            spaced.push_back(' ');
        }
        spaced.push_back(name[i]);
    }
    NameTokens tokens;
    for (std::string& piece : UnicodeText::alphanumericPieces(UnicodeText::lowerCased(spaced))) {
        tokens.insert(std::move(piece));
    }
    return tokens;
}

}  // namespace sorvane
