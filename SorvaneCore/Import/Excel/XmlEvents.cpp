#include "SorvaneCore/Import/Excel/XmlEvents.h"

#include <algorithm>
#include <expat.h>
#include <memory>
#include <type_traits>
#include <unicode/ucnv.h>

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane {

namespace {

/// The parser counts bytes in an int.
constexpr std::size_t chunkSize = std::size_t{1} << 28;
/// Elements in one another; those of workbooks go some ten deep.
constexpr std::size_t deepest = 300;

struct Closer {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};
using Parser = std::unique_ptr<std::remove_pointer_t<XML_Parser>, Closer>;

struct Reading {
    XML_Parser parser;
    XmlEvents& events;
    std::size_t depth = 0;
    /// Why the parser was stopped; empty while it was not.
    std::string refusal = {};

    void stop(std::string why) {
        refusal = std::move(why);
        XML_StopParser(parser, XML_FALSE);
    }
    void stopIfRefused() {
        if (!events.refusal().empty()) {
            stop(events.refusal());
        }
    }
};

void startElement(void* opaque, const XML_Char* name, const XML_Char** attributes) {
    auto& reading = *static_cast<Reading*>(opaque);
    if (++reading.depth > deepest) {
        reading.stop("A part of it has elements nested far too deeply.");
        return;
    }
    reading.events.startElement(XmlName(name), XmlAttributes(attributes));
    reading.stopIfRefused();
}

void endElement(void* opaque, const XML_Char* name) {
    auto& reading = *static_cast<Reading*>(opaque);
    // A parser that is stopped at an empty element still tells its end.
    if (!reading.refusal.empty()) {
        return;
    }
    --reading.depth;
    reading.events.endElement(XmlName(name));
    reading.stopIfRefused();
}

void characters(void* reading, const XML_Char* text, int length) {
    static_cast<Reading*>(reading)->events.characters({text, static_cast<std::size_t>(length)});
}

void startDoctype(void* reading, const XML_Char*, const XML_Char*, const XML_Char*, int) {
    static_cast<Reading*>(reading)->stop(
        "A part of it has a document type declaration, which workbooks do not have.");
}

/// Maps the bytes of a code page of one byte a character; the parser itself knows Unicode's
/// encodings and Latin-1 alone.
int mapCodePage(void*, const XML_Char* name, XML_Encoding* encoding) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UConverter, decltype(&ucnv_close)> converter(ucnv_open(name, &status),
                                                                       ucnv_close);
    if (U_FAILURE(status) || ucnv_getMaxCharSize(converter.get()) != 1) {
        return XML_STATUS_ERROR;
    }
    constexpr int unmapped = -1;
    constexpr UChar32 replacement = 0xFFFD;
    for (int byte = 0; byte < 256; ++byte) {
        const char source = static_cast<char>(byte);
        const char* position = &source;
        UErrorCode failure = U_ZERO_ERROR;
        const UChar32 c = ucnv_getNextUChar(converter.get(), &position, &source + 1, &failure);
        encoding->map[byte] = U_FAILURE(failure) || c == replacement ? unmapped : c;
    }
    return XML_STATUS_OK;
}

std::string failure(const Reading& reading) {
    if (!reading.refusal.empty()) {
        return reading.refusal;
    }
    const auto line = static_cast<std::int64_t>(XML_GetCurrentLineNumber(reading.parser));
    return std::string("A part of it is not well-formed: ") +
           XML_ErrorString(XML_GetErrorCode(reading.parser)) + " in line " +
           NumberText::integer(line) + ".";
}

}  // namespace

std::optional<std::string> parseXml(std::string_view document, XmlEvents& events) {
    const Parser parser(XML_ParserCreate(nullptr));
    if (!parser) {
        return "There is not enough memory.";
    }
    Reading reading{.parser = parser.get(), .events = events};
    XML_SetUserData(parser.get(), &reading);
    XML_SetElementHandler(parser.get(), startElement, endElement);
    XML_SetCharacterDataHandler(parser.get(), characters);
    XML_SetStartDoctypeDeclHandler(parser.get(), startDoctype);
    XML_SetUnknownEncodingHandler(parser.get(), mapCodePage, nullptr);
    while (true) {
        const std::string_view chunk = document.substr(0, chunkSize);
        document.remove_prefix(chunk.size());
        const auto status = XML_Parse(parser.get(), chunk.data(), static_cast<int>(chunk.size()),
                                      document.empty() ? 1 : 0);
        if (status != XML_STATUS_OK) {
            return failure(reading);
        }
        if (document.empty()) {
            return std::nullopt;
        }
    }
}

}  // namespace sorvane
