#include "SorvaneCore/Import/SPSS/SPSSText.h"

#include <algorithm>
#include <array>

#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Import/TextEncoding.h"

namespace sorvane::SPSSText {

namespace {

/// What code page 1252 leaves undefined.
constexpr std::string_view undefinedIn1252 = "\x81\x8D\x8F\x90\x9D";

struct NamedEncoding {
    std::string_view name;
    Encoding encoding;
    std::string_view shownName;
};

constexpr std::array<NamedEncoding, 10> namedEncodings = {{
    {"utf-8", Encoding::utf8, "UTF-8"},
    {"utf8", Encoding::utf8, "UTF-8"},
    {"windows-1252", Encoding::windows1252, "windows-1252"},
    {"cp1252", Encoding::windows1252, "windows-1252"},
    {"cp-1252", Encoding::windows1252, "windows-1252"},
    {"iso-8859-1", Encoding::latin1, "ISO-8859-1"},
    {"latin1", Encoding::latin1, "ISO-8859-1"},
    {"iso8859-1", Encoding::latin1, "ISO-8859-1"},
    {"ascii", Encoding::ascii, "ASCII"},
    {"us-ascii", Encoding::ascii, "ASCII"},
}};

}  // namespace

std::optional<std::string> decoded(std::string_view bytes, Encoding encoding) {
    if (UnicodeText::isAscii(bytes)) {
        return std::string(bytes);
    }
    switch (encoding) {
        case Encoding::utf8:
            return UnicodeText::isValidUtf8(bytes) ? std::optional(std::string(bytes))
                                                   : std::nullopt;
        case Encoding::windows1252:
            return bytes.find_first_of(undefinedIn1252) == bytes.npos
                       ? std::optional(
                             TextEncoding::toUtf8(bytes, TextEncoding::Encoding::windows1252))
                       : std::nullopt;
        case Encoding::latin1:
            return TextEncoding::toUtf8(bytes, TextEncoding::Encoding::latin1);
        case Encoding::ascii:
            break;
    }
    return std::nullopt;
}

std::string decodeString(std::string_view bytes, Encoding encoding) {
    for (const Encoding tried : {encoding, Encoding::utf8}) {
        if (std::optional<std::string> text = decoded(bytes, tried)) {
            return *std::move(text);
        }
    }
    return TextEncoding::toUtf8(bytes, TextEncoding::Encoding::latin1);
}

ResolvedEncoding resolveEncoding(const std::optional<std::string>& name) {
    if (!name) {
        return {.note = "No encoding record; defaulted to windows-1252."};
    }
    const std::string lowerName = UnicodeText::lowerCased(*name);
    const auto* known = std::ranges::find(namedEncodings, lowerName, &NamedEncoding::name);
    if (known == namedEncodings.end()) {
        return {.note = "Unknown encoding '" + lowerName + "'; fell back to windows-1252."};
    }
    return {.encoding = known->encoding,
            .note = "Encoding: " + std::string(known->shownName) + "."};
}

std::string_view trimmedBlanks(std::string_view text) {
    constexpr std::string_view blanks = " \t";
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

std::string_view trimmedTrailingSpaces(std::string_view text) {
    return text.substr(0, text.find_last_not_of(std::string_view(" \0", 2)) + 1);
}

}  // namespace sorvane::SPSSText
