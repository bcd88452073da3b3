#include "SorvaneMac/Report/ReportTableMaker.h"

#include <string>

#include <gtest/gtest.h>

#include "Tests/Report/SampleReport.h"

namespace sorvane {
namespace {

/// "row,column+span text alignment top/bottom", a cell a line.
std::string layout(const std::vector<Paragraph>& paragraphs) {
    std::string text;
    for (const Paragraph& paragraph : paragraphs) {
        if (!paragraph.block) {
            continue;
        }
        const TextTableBlock& block = *paragraph.block;
        const bool centred = paragraph.alignment == TextAlignment::center;
        text += testing::PrintToString(block.startingRow) + ',' +
                testing::PrintToString(block.startingColumn) + '+' +
                testing::PrintToString(block.columnSpan) + ' ' +
                (paragraph.runs.empty() ? "" : paragraph.runs.front().text) +
                (centred ? " c " : " l ") + testing::PrintToString(block.topBorder) + '/' +
                testing::PrintToString(block.bottomBorder) + '\n';
    }
    return text;
}

TEST(ReportTableMaker, DrawsThreeRulesAndNoMore) {
    EXPECT_EQ(layout(ReportTableMaker::apaTable(test::sampleTable(), 3, "Caption")),
              "0,0+1 Item c 1.5/0.75\n"
              "0,1+1 M c 1.5/0.75\n"
              "0,2+1 r c 1.5/0.75\n"
              "1,0+1 ei01 l 0/0\n"
              "1,1+1 31.24 c 0/0\n"
              "1,2+1 .61 c 0/0\n"
              "2,0+1 ei<2> & co l 0/1.5\n"
              "2,1+1 0.51 c 0/1.5\n"
              "2,2+1 -.58 c 0/1.5\n");
}

TEST(ReportTableMaker, SpansGroupHeadsAndFillsShortRows) {
    const ReportTable table{.headers = {"A", "B", "C", "D"},
                            .rows = {{"a"}},
                            .groupHeaders = std::vector<ReportGroupHeader>{{"", 1}, {"Pair", 2}}};
    EXPECT_EQ(layout(ReportTableMaker::apaTable(table, 1, "")),
              "0,0+1  c 1.5/0\n"
              "0,1+2 Pair c 1.5/0\n"
              "0,3+1  c 1.5/0\n"
              "1,0+1 A c 0/0.75\n"
              "1,1+1 B c 0/0.75\n"
              "1,2+1 C c 0/0.75\n"
              "1,3+1 D c 0/0.75\n"
              "2,0+1 a l 0/1.5\n"
              "2,1+1  c 0/1.5\n"
              "2,2+1  c 0/1.5\n"
              "2,3+1  c 0/1.5\n");
}

TEST(ReportTableMaker, SetsNumberCaptionHeadsAndNoteInTheirStyles) {
    ReportTable table = test::sampleTable();
    table.boldMask = std::vector<std::vector<bool>>{{false, true}};
    const std::vector<Paragraph> shown = ReportTableMaker::apaTable(table, 3, "Caption");
    const auto style = [&shown](std::size_t paragraph, std::size_t run = 0) {
        return shown[paragraph].runs.at(run).style;
    };
    EXPECT_EQ(shown[0].runs[0], (TextRun{"Table 3", {.points = 12, .bold = true}}));
    EXPECT_EQ(shown[1].runs[0], (TextRun{"Caption", {.points = 12, .italic = true}}));
    EXPECT_EQ(style(2), (TextStyle{.points = 11, .bold = true}));
    EXPECT_EQ(style(3), (TextStyle{.points = 11, .bold = true, .italic = true}));
    EXPECT_EQ(style(5), (TextStyle{.points = 11}));
    EXPECT_EQ(style(6), (TextStyle{.points = 11, .bold = true}));
    EXPECT_EQ(style(9), (TextStyle{.points = 11}));
    EXPECT_EQ(shown.back().runs[0], (TextRun{"Note. ", {.points = 12, .italic = true}}));
    EXPECT_EQ(shown.back().runs[1], (TextRun{"n = 287.", {.points = 12}}));
}

}  // namespace
}  // namespace sorvane
