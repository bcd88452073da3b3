#include "SorvaneCore/Import/TextEncoding.h"

#include <gtest/gtest.h>

namespace sorvane {
namespace {

using TextEncoding::Encoding;

struct EncodingCase {
    int line;
    std::string bytes;
    Encoding encoding;
    std::string text;
};

TEST(TextEncoding, TakesTheFirstEncodingThatReadsTheBytes) {
    using namespace std::string_literals;
    const std::vector<EncodingCase> cases = {
        {__LINE__, "a,b\n", Encoding::utf8, "a,b\n"},
        {__LINE__, "", Encoding::utf8, ""},
        {__LINE__,
         "\xEF\xBB\xBF"
         "a",
         Encoding::utf8,
         "\xEF\xBB\xBF"
         "a"},
        {__LINE__, "caf\xC3\xA9", Encoding::utf8, "caf\xC3\xA9"},
        // Pure ASCII in UTF-16 is UTF-8 with NULs: the ladder's first step takes it.
        {__LINE__, "a\0,\0"s, Encoding::utf8, "a\0,\0"s},
        {__LINE__,
         "\xFF\xFE"
         "a\0,\0"s,
         Encoding::utf16,
         "\xEF\xBB\xBF"
         "a,"},
        {__LINE__, "\xFE\xFF\0a\xD8\x3D\xDE\x00"s, Encoding::utf16,
         "\xEF\xBB\xBF"
         "a\xF0\x9F\x98\x80"},
        {__LINE__, "Z\0o\0\xEB\0,\0\x31\0\n\0"s, Encoding::utf16LittleEndian, "Zo\xC3\xAB,1\n"},
        {__LINE__, "\0Z\0o\0\xEB\0,\0\x31\0\n"s, Encoding::utf16BigEndian, "Zo\xC3\xAB,1\n"},
        // Latin-1 of even length: " (" spells a line separator in UTF-16, but nothing here a comma.
        {__LINE__,
         "Name;Ort (Kreis)\nJ\xFCrgen;K\xF6ln (\xFC"
         "ber)\n\n",
         Encoding::latin1,
         "Name;Ort (Kreis)\nJ\xC3\xBCrgen;K\xC3\xB6ln (\xC3\xBC"
         "ber)\n\n"},
        {__LINE__, "\x93\xE9t\xE9\x94", Encoding::latin1, "\xC2\x93\xC3\xA9t\xC3\xA9\xC2\x94"},
        // A lone surrogate, and an odd number of bytes, are no UTF-16.
        {__LINE__, "\xFF\xFE\x00\xD8,\0"s, Encoding::latin1, "\xC3\xBF\xC3\xBE\0\xC3\x98,\0"s},
        {__LINE__, "\xFF\xFE,"s, Encoding::latin1, "\xC3\xBF\xC3\xBE,"},
        // Surrogates in UTF-8, an overlong form, a code point too high, a sequence cut short.
        {__LINE__, "\xED\xA0\x80", Encoding::latin1, "\xC3\xAD\xC2\xA0\xC2\x80"},
        {__LINE__, "\xC0\xAF!", Encoding::latin1, "\xC3\x80\xC2\xAF!"},
        {__LINE__, "\xF4\x90\x80\x80!", Encoding::latin1, "\xC3\xB4\xC2\x90\xC2\x80\xC2\x80!"},
        {__LINE__, "abc\xE2\x82", Encoding::latin1, "abc\xC3\xA2\xC2\x82"},
    };
    for (const EncodingCase& each : cases) {
        SCOPED_TRACE(each.line);
        ASSERT_EQ(TextEncoding::recognized(each.bytes), each.encoding);
        EXPECT_EQ(TextEncoding::toUtf8(each.bytes, each.encoding), each.text);
    }
}

TEST(TextEncoding, ReadsCodePage1252WithControlsForItsGaps) {
    EXPECT_EQ(TextEncoding::toUtf8("\x80\x81\x9F\xE9z", Encoding::windows1252),
              "\xE2\x82\xAC\xC2\x81\xC5\xB8\xC3\xA9z");
}

TEST(TextEncoding, RefusesFilesThatAreNoText) {
    using namespace std::string_literals;  // NOLINT(google-build-using-namespace)
    for (const std::string& bytes : {"\x7F"s
                                     "ELF\x02\x01\x01\0\xFF"s,
                                     "PK\x03\x04\x14\0\x08\0\xE9"s, "\x89PNG\r\n\x1A\n\xE9"s,
                                     "%PDF-1.7\n%\xE2\xE3\xCF\xD3\n"s}) {
        EXPECT_EQ(TextEncoding::recognized(bytes), std::nullopt) << bytes;
    }
    EXPECT_EQ(TextEncoding::recognized("PKs,\xE9"), Encoding::latin1);
}

TEST(TextEncoding, FindsAStrayByteWhereverItStands) {
    for (std::size_t position = 0; position < 200; ++position) {
        std::string bytes(200, 'a');
        bytes[position] = '\xE9';
        EXPECT_EQ(TextEncoding::recognized(bytes), Encoding::latin1) << position;
    }
}

}  // namespace
}  // namespace sorvane
