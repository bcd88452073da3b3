#include "SorvaneMac/Report/XMLText.h"

#include <cstddef>
#include <cstdint>
#include <unicode/utf8.h>

namespace sorvane {
namespace {

void appendUtf8(char32_t codePoint, std::string& xml) {
    char bytes[U8_MAX_LENGTH];
    std::size_t length = 0;
    U8_APPEND_UNSAFE(bytes, length, codePoint);
    xml.append(bytes, length);
}

void appendAsciiEscaped(char c, std::string& xml) {
    switch (c) {
        case '&':
            xml += "&amp;";
            break;
        case '<':
            xml += "&lt;";
            break;
        case '>':
            xml += "&gt;";
            break;
        case '"':
            xml += "&quot;";
            break;
        case '\'':
            xml += "&apos;";
            break;
        default:
            if (c >= ' ' || c == '\t' || c == '\n') {
                xml += c;
            }
    }
}

}  // namespace

void appendEscapedXML(std::string_view text, std::string& xml) {
    const auto length = static_cast<std::int32_t>(text.size());
    for (std::int32_t at = 0; at < length;) {
        const char first = text[static_cast<std::size_t>(at)];
        if (U8_IS_SINGLE(first)) {
            appendAsciiEscaped(first, xml);
            ++at;
            continue;
        }
        UChar32 codePoint = 0;
        U8_NEXT_OR_FFFD(text.data(), at, length, codePoint);
        if (codePoint != 0xFFFE && codePoint != 0xFFFF) {
            appendUtf8(static_cast<char32_t>(codePoint), xml);
        }
    }
}

}  // namespace sorvane
