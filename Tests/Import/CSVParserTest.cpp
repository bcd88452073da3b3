#include "SorvaneCore/Import/CSVParser.h"

#include <random>

#include <gtest/gtest.h>

#include "SorvaneCore/Import/DelimiterDetection.h"
#include "SorvaneCore/Import/ImportError.h"
#include "Tests/Import/ReferenceParser.h"
#include "Tests/Import/RowsOf.h"

namespace sorvane {
namespace {

using test::rowsOf;
using Texts = std::vector<std::string>;

struct ParseCase {
    int line;
    std::string text;
    Texts headers;
    std::vector<Texts> rows;
};

TEST(CSVParser, ReadsCellsByTheRulesOfQuotesAndCharacters) {
    const std::string acute = "\xCC\x81";
    const std::string numberSign = "\xD8\x80";  // U+0600 takes in the character after it
    const std::vector<ParseCase> cases = {
        {__LINE__, "a,b\n\"x\"\"y\",ab\"c\"d\n", {"a", "b"}, {{"x\"y", "ab\"c\"d"}}},
        {__LINE__, "a,b\n\"ab\"cd,\"\"\n", {"a", "b"}, {{"abcd", ""}}},
        {__LINE__, "a,b\n1, \"x\"\n", {"a", "b"}, {{"1", " \"x\""}}},
        {__LINE__, "a,b\n\"1\r\n2\r3\n4\",\"5,6\"", {"a", "b"}, {{"1\n2\n3\n4", "5,6"}}},
        {__LINE__, "a\rb\r\n\r\nc", {"a"}, {{"b"}, {"c"}}},
        {__LINE__, "\n \t\n\xC2\xA0\na,b\n1,2", {"a", "b"}, {{"1", "2"}}},
        {__LINE__, "a,b\n1," + acute + "2\n", {"a", "b"}, {{"1," + acute + "2", ""}}},
        {__LINE__, "a\tb\n1\t" + acute + "2\n", {"a", "b"}, {{"1", acute + "2"}}},
        {__LINE__, "a,b\n1" + numberSign + ",2,3\n", {"a", "b"}, {{"1" + numberSign + ",2", "3"}}},
        {__LINE__, "a,b\n\"" + acute + "x,y\n", {"a", "b"}, {{"\"" + acute + "x", "y"}}},
        {__LINE__, "a\n\"x\"\"" + acute + "\"\n", {"a"}, {{"x\"" + acute + "\""}}},
        {__LINE__, "\xEF\xBB\xBF\"a,b\"\n1,2", {"\"a", "b\""}, {{"1", "2"}}},
        {__LINE__,
         " a\xEF\xBB\xBF ,b\n\xEF\xBB\xBF"
         "1,2",
         {"a", "b"},
         {{"\xEF\xBB\xBF"
           "1",
           "2"}}},
        {__LINE__,
         "a,b\n1,2,NA\n3\nNA,-,x\n-,,\n",
         {"a", "b"},
         {{"1", "2"}, {"3", ""}, {"NA", "-"}}},
        {__LINE__, "a,b\n1,", {"a", "b"}, {{"1", ""}}},
        {__LINE__, std::string("a,b\n\0,2\n", 8), {"a", "b"}, {{std::string(1, '\0'), "2"}}},
    };
    for (const ParseCase& each : cases) {
        SCOPED_TRACE(each.line);
        const CSVParseResult result = CSVParser().parse(each.text);
        EXPECT_EQ(result.headers, each.headers);
        EXPECT_EQ(rowsOf(result.rows), each.rows);
    }
}

TEST(CSVParser, NumbersRecordsNotLines) {
    const CSVParseResult result =
        CSVParser().parse("a,b\n\n1,\"x\ny\"\n  \nNA,\n2,3,4\n\"\n\n\n\"\n5\n");
    ASSERT_EQ(result.rowReports.size(), 3U);
    EXPECT_EQ(result.rowReports[0], ImportRowNormalizationReport::of(2, 2, 2));
    // The all-missing record took number 3.
    EXPECT_EQ(result.rowReports[1], ImportRowNormalizationReport::of(4, 3, 2));
    EXPECT_EQ(result.rowReports[2], ImportRowNormalizationReport::of(5, 1, 2));
}

TEST(CSVParser, RefusesWhatIsNoTable) {
    const auto sentence = [](const std::string& text) -> std::string {
        try {
            CSVParser().parse(text);
        } catch (const CSVParserError& error) {
            return error.what();
        }
        return "no error";
    };
    const std::string empty =
        "The file is empty. Export the data again with one header row followed by respondent rows, "
        "then import that file.";
    const std::string open =
        "The file ends inside a quoted cell: a double quote was opened and never closed. Close the "
        "quote, or export the data again, then import the file.";
    EXPECT_EQ(sentence(""), empty);
    EXPECT_EQ(sentence("\n \r\n  "), empty);
    EXPECT_EQ(sentence("\"\""), empty);
    EXPECT_EQ(sentence("a\n\"abc"), open);
    EXPECT_EQ(sentence("\"abc\n"), open);
    EXPECT_EQ(sentence(std::string(1'000'001, ',') + "\n1\n"),
              "The first line of the file has more than 1000000 cells, too many for the columns of "
              "a dataset. Check that each record stands on a line of its own.");
    EXPECT_EQ(CSVParser().parse("a").headers, Texts{"a"});
}

struct DelimiterCase {
    int line;
    std::string text;
    char delimiter;
};

TEST(DelimiterDetection, CountsOutsideQuotesInTheFirstEightLines) {
    const std::string eightLines = "a\n\nb\nc\nd\ne\nf\ng\nh\n";
    const std::vector<DelimiterCase> cases = {
        {__LINE__, "", ','},
        {__LINE__, "a b|c\n", ','},
        {__LINE__, "a;b,c\n", ','},
        {__LINE__, "a\tb;c\n", '\t'},
        {__LINE__, "\"a,b,c\";d\n", ';'},
        {__LINE__, "\"a\"\",,\"\"\";d\n", ';'},
        // A quoted cell's second line is seen from outside, and its closing quote opens.
        {__LINE__, "\"a\n,,b\";;;c\n", ','},
        {__LINE__, eightLines + ";;;;\n", ','},
        {__LINE__,
         "a\v\xE2\x80\xA8"
         "b\xC2\x85"
         "c\fd\re\nf\ng\nh\n;;;;\n",
         ','},
        {__LINE__,
         "a,\xCC\x81"
         "b;c\n",
         ';'},
        {__LINE__,
         "a\t\xCC\x81"
         "b\n",
         '\t'},
    };
    for (const DelimiterCase& each : cases) {
        EXPECT_EQ(DelimiterDetection::delimiter(each.text), each.delimiter) << each.line;
    }
}

/// Texts in which every rule has a chance to meet every other.
class RandomTexts {
public:
    std::string next() {
        static const Texts pieces = {"a",  "b",  ",",        ",",        ";",        "\t",
                                     "\"", "\"", "\"\"",     "\n",       "\n",       "\r",
                                     " ",  "NA", "\xCC\x81", "\xD8\x80", "\xC3\xA9", "\xE2\x80\x8D",
                                     "12", "-",  "\r\n",     "\"x\","};
        std::string text;
        const std::size_t length = generator_() % 90;
        for (std::size_t i = 0; i < length; ++i) {
            text += pieces[generator_() % pieces.size()];
        }
        return text;
    }

private:
    std::mt19937 generator_{7};
};

std::string withLineFeeds(const std::string& text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\r') {
            result += text[i];
        } else if (i + 1 == text.size() || text[i + 1] != '\n') {
            result += '\n';
        }
    }
    return result;
}

/// Empty for a text that is refused.
std::optional<CSVParseResult> parsed(const CSVParser& parser, const std::string& text) {
    try {
        return parser.parse(text);
    } catch (const CSVParserError&) {
        return std::nullopt;
    }
}

TEST(CSVParser, AgreesWithAWalkCharacterByCharacter) {
    RandomTexts texts;
    int accepted = 0;
    for (int round = 0; round < 8'000; ++round) {
        const std::string text = texts.next();
        SCOPED_TRACE(testing::PrintToString(text));
        bool endedInQuotes = false;
        const std::vector<Texts> records =
            test::ReferenceParser(withLineFeeds(text), DelimiterDetection::delimiter(text))
                .records(endedInQuotes);
        const std::optional<CSVParseResult> result = parsed({.threads = 1}, text);
        ASSERT_EQ(result.has_value(), !records.empty() && !endedInQuotes);
        if (!result) {
            continue;
        }
        ++accepted;
        std::vector<ImportSourceRow> rows;
        for (std::size_t record = 1; record < records.size(); ++record) {
            rows.push_back({static_cast<std::int64_t>(record) + 1, records[record]});
        }
        const auto expected = ImportReadinessBuilder::normalizeRows(rows, records.front().size());
        ASSERT_EQ(result->headers.size(), records.front().size());
        ASSERT_EQ(result->rows, expected.rows);
        ASSERT_EQ(result->rowReports, expected.reports);
    }
    EXPECT_GT(accepted, 2'000);
}

TEST(CSVParser, GivesTheSameWhateverTheThreads) {
    RandomTexts texts;
    for (int round = 0; round < 8'000; ++round) {
        const std::string text = texts.next() + texts.next();
        const auto whole = parsed({.threads = 1}, text);
        const auto inPieces = parsed({.threads = 4, .bytesPerThread = 8}, text);
        ASSERT_EQ(whole, inPieces) << testing::PrintToString(text);
    }
}

TEST(CSVParser, KeepsAColumnInOneFormWhateverTheThreads) {
    // Distinct at first and repeating later, and the other way round: pieces judge them
    // differently.
    std::string text = "a,b,c\n";
    for (int row = 0; row < 60'000; ++row) {
        const std::string number = std::to_string(row);
        const std::string digit = std::to_string(row % 7);
        text += (row < 20'000 ? number : digit) + "," + (row < 20'000 ? digit : number) + "," +
                (row == 40'000 ? "NA" : "long enough for no short key " + number) + "\n";
    }
    const CSVParseResult whole = CSVParser{.threads = 1}.parse(text);
    const CSVParseResult inPieces = CSVParser{.threads = 5, .bytesPerThread = 1000}.parse(text);
    EXPECT_EQ(whole, inPieces);
    for (std::size_t column = 0; column < 3; ++column) {
        EXPECT_EQ(whole.rows.column(column).hasCodes(), column == 1);
        EXPECT_EQ(inPieces.rows.column(column).hasCodes(), column == 1);
        EXPECT_EQ(whole.rows.column(column).levelCount(),
                  inPieces.rows.column(column).levelCount());
    }
}

}  // namespace
}  // namespace sorvane
