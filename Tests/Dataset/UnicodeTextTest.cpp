#include "SorvaneCore/Dataset/UnicodeText.h"

#include <vector>

#include <gtest/gtest.h>

#include "SorvaneCore/Dataset/MissingValue.h"

namespace sorvane {
namespace {

struct TextCase {
    int line;
    std::string text;
    std::string expected;
};

TEST(UnicodeText, TrimsUnicodeWhiteSpace) {
    const std::vector<TextCase> cases = {
        {__LINE__, " \t\v\fa b\r\n", "a b"},
        {__LINE__, "\xC2\xA0\xE3\x80\x80x\xE2\x80\xA8\xC2\x85", "x"},
        {__LINE__, "\xEF\xBB\xBF", "\xEF\xBB\xBF"},
        {__LINE__, "\xC2\xA0", ""},
        {__LINE__, "\xA0x\xC2", "\xA0x\xC2"},
    };
    for (const TextCase& each : cases) {
        EXPECT_EQ(UnicodeText::trimmed(each.text), each.expected) << each.line;
    }
}

TEST(UnicodeText, LowerCasesTheWholeText) {
    const std::vector<TextCase> cases = {
        {__LINE__, "plain text already", "plain text already"},
        {__LINE__, "Twelve LETTERS And More", "twelve letters and more"},
        {__LINE__, "caf\xC3\x89 na\xC3\x8FVE \xC3\x9F", "caf\xC3\xA9 na\xC3\xAFve \xC3\x9F"},
        {__LINE__, "\xC4\xB0stanbul", "i\xCC\x87stanbul"},
        {__LINE__, "\xCE\x9F\xCE\x94\xCE\x9F\xCE\xA3 X", "\xCE\xBF\xCE\xB4\xCE\xBF\xCF\x82 x"},
        {__LINE__, "\xE2\x84\xAA", "k"},
        {__LINE__,
         "A\xFF"
         "B",
         "a\xFF"
         "b"},
    };
    for (const TextCase& each : cases) {
        EXPECT_EQ(UnicodeText::lowerCased(each.text), each.expected) << each.line;
        std::string storage;
        EXPECT_EQ(UnicodeText::lowerCased(each.text, storage), each.expected) << each.line;
    }
}

TEST(UnicodeText, CountsWhatAReaderWouldCount) {
    EXPECT_EQ(UnicodeText::characterCount("a\r\nb\n"), 4U);
    EXPECT_EQ(UnicodeText::characterCount("caf\xC3\xA9"), 4U);
    EXPECT_EQ(UnicodeText::characterCount("e\xCC\x81x"), 2U);
    EXPECT_EQ(UnicodeText::characterCount("\xE2\x80\x9Cquote\xE2\x80\x9D"), 7U);
    // Two flags, and a family joined by zero-width joiners.
    EXPECT_EQ(UnicodeText::characterCount("\xF0\x9F\x87\xAB\xF0\x9F\x87\xAE"), 1U);
    EXPECT_EQ(UnicodeText::characterCount("\xF0\x9F\x91\xA8\xE2\x80\x8D\xF0\x9F\x91\xA9!"), 2U);
}

TEST(MissingValue, ComparesTrimmedLowerCasedCells) {
    for (const char* missing : {"", "   ", "\t\n", "NA", " N/A ", "Missing", "NULL", "nan", "--",
                                "#N/A", "Not Applicable", "NIL", "blan\xE2\x84\xAA", "\xC2\xA0."}) {
        EXPECT_TRUE(MissingValue::isMissing(missing)) << missing;
    }
    for (const char* value :
         {"none", "N / A", "0", "-1", "---", "..", "na.", "\xEF\xBB\xBF", "n a"}) {
        EXPECT_FALSE(MissingValue::isMissing(value)) << value;
    }
    EXPECT_EQ(MissingValue::normalizedMarker(" Na "), "na");
    EXPECT_EQ(MissingValue::normalizedMarker(" "), "");
    EXPECT_EQ(MissingValue::displayMarker("  "), "(blank)");
    EXPECT_EQ(MissingValue::displayMarker("x"), std::nullopt);
    EXPECT_EQ(
        MissingValue::displayMarkers(),
        (std::vector<std::string>{"#n/a", "(blank)", "-", "--", ".", "blank", "missing", "n.a.",
                                  "n/a", "na", "nan", "nil", "no response", "not answered",
                                  "not applicable", "not available", "null"}));
}

}  // namespace
}  // namespace sorvane
