#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "SorvaneMac/Report/RTFReader.h"
#include "SorvaneMac/Report/RTFWriter.h"
#include "SorvaneMac/Report/ReportExporter.h"
#include "Tests/Report/SampleReport.h"

namespace sorvane {
namespace {

RichDocument sample() {
    RichDocument document = ReportExporter::attributed(test::sampleReport(), "d", 3);
    document.paragraphs.push_back(
        {.runs = {{"no font", {}},
                  {"half\npoint",
                   {.font = FontRole::monospaced, .points = 10.5, .underline = true}}},
         .alignment = TextAlignment::justified,
         .spaceBefore = 2.5});
    return document;
}

TEST(RTF, ComesBackAsItWasWritten) {
    const RichDocument document = sample();
    const auto back = decode(encode(document));
    ASSERT_TRUE(back);
    EXPECT_EQ(*back, document);
}

TEST(RTF, KeepsHeadsOnThePageOfTheFirstRow) {
    const ReportTable table{.headers = {"Item", "M"}, .rows = {{"first", "1"}, {"second", "2"}}};
    const std::string rtf =
        RTFWriter::rtf(ReportExporter::attributed(std::vector{ReportItem{.table = table}}, "d", 1));
    const auto paragraphOf = [&rtf](std::string_view text) {
        const std::size_t end = rtf.find(text);
        return rtf.substr(rtf.rfind("\\pard", end), end - rtf.rfind("\\pard", end));
    };
    EXPECT_NE(paragraphOf("Item}").find("\\keepn"), std::string::npos);
    EXPECT_NE(paragraphOf("M}").find("\\keepn"), std::string::npos);
    EXPECT_EQ(paragraphOf("first}").find("\\keepn"), std::string::npos);
}

TEST(RTF, KeepsTouchingTablesApart) {
    const RichDocument document{
        {{.runs = {{"a", {}}}, .block = TextTableBlock{.table = 1}},
         {.runs = {{"b", {}}}, .block = TextTableBlock{.table = 1}},
         {.runs = {{"c", {}}}, .block = TextTableBlock{.table = 2, .columnSpan = 1}}}};
    const auto back = RTFReader::document(RTFWriter::rtf(document));
    ASSERT_TRUE(back);
    RichDocument expected = document;
    expected.paragraphs.insert(expected.paragraphs.begin() + 2, Paragraph{});
    EXPECT_EQ(*back, expected);
}

TEST(RTFReader, ReadsWhatOtherProgramsWrite) {
    const struct {
        int line;
        const char* rtf;
        const char* text;
    } cases[] = {
        {__LINE__, "{\\rtf1 a\\par b}", "a\nb\n"},
        {__LINE__, "{\\rtf1 a\\\nb\\\r\nc}", "a\nb\nc\n"},
        {__LINE__, "{\\rtf1 caf\\'e9 \\'93q\\'94 \\endash\\~x}", "café “q” –\u00A0x\n"},
        {__LINE__, "{\\rtf1\\uc0\\u945 = \\uc1\\u946?\\uc2\\u-10179\\'3f?\\u-9216\\'3f?}",
         "α= β\U0001F400\n"},
        {__LINE__, "{\\rtf1\\u-9216 ?lone}", "\uFFFDlone\n"},
        {__LINE__, "{\\rtf1{\\stylesheet{\\s0 Normal;}}{\\*\\generator x;}{\\info{\\title t}}y}",
         "y\n"},
        {__LINE__, "{\\rtf1{\\field{\\*\\fldinst HYPERLINK}{\\fldrslt link}}}", "link\n"},
        {__LINE__, "{\\rtf1 a\\bin3 }}}b}", "ab\n"},
        {__LINE__, "{\\rtf1\\trowd\\cellx100\\cellx200\\intbl a\\cell b\\cell\\row\\pard c}",
         "a\tb\nc\n"},
        {__LINE__, "{\\rtf1\\trowd\\cellx100\\intbl a\\cell b\\cell\\row}", "a\tb\n"},
        {__LINE__,
         "{\\rtf1\\trowd\\clmgf\\cellx100\\clmrg\\cellx200\\cellx300\\intbl a\\cell\\cell "
         "b\\cell\\row}",
         "a\tb\n"},
        {__LINE__, "{\\rtf1\\trowd\\cellx100\\intbl cut off\\cell", "cut off\n"},
        {__LINE__, "{\\rtf1{\\pict\\pngblip 00zz}after}", "after\n"},
    };
    for (const auto& item : cases) {
        const auto document = RTFReader::document(item.rtf);
        ASSERT_TRUE(document) << "line " << item.line;
        EXPECT_EQ(document->plainText(), item.text) << "line " << item.line;
    }
    EXPECT_FALSE(RTFReader::document("plain text"));
    EXPECT_FALSE(RTFReader::document(""));
}

TEST(RTFReader, FindsColumnsAndRulesFromCellEdges) {
    const auto document = RTFReader::document(
        "{\\rtf1\\trowd\\clbrdrt\\brdrs\\brdrw30\\clbrdrb\\brdrnone\\cellx2005\\cellx3000"
        "\\pard\\intbl\\qc{\\b a}\\cell b\\cell\\row"
        "\\trowd\\cellx1000\\cellx2000\\cellx3000\\pard\\intbl c\\cell d\\cell e\\cell\\row}");
    ASSERT_TRUE(document);
    ASSERT_EQ(document->paragraphs.size(), 5U);
    EXPECT_EQ(document->paragraphs[0],
              (Paragraph{.runs = {{"a", {.bold = true}}},
                         .alignment = TextAlignment::center,
                         .block = TextTableBlock{.table = 1, .columnSpan = 2, .topBorder = 1.5}}));
    EXPECT_EQ(document->paragraphs[1].block->startingColumn, 2);
    EXPECT_EQ(document->paragraphs[3].block->startingColumn, 1);
}

TEST(RTFReader, SurvivesEveryTruncationAndDeepNesting) {
    const std::vector<ReportItem> items{test::sampleReport().front()};
    const std::string rtf = RTFWriter::rtf(ReportExporter::attributed(items, "d", 3));
    for (std::size_t length = 5; length < rtf.size(); ++length) {
        EXPECT_TRUE(RTFReader::document(std::string_view(rtf).substr(0, length)));
    }
    const std::string deep(100'000, '{');
    const auto document =
        RTFReader::document("{\\rtf1 " + deep + "a" + std::string(100'000, '}') + "b}");
    ASSERT_TRUE(document);
    EXPECT_EQ(document->plainText(), "ab\n");
}

}  // namespace
}  // namespace sorvane
