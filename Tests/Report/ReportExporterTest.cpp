#include "SorvaneMac/Report/ReportExporter.h"

#include <gtest/gtest.h>

#include "SorvaneMac/Report/MarkdownReportExporter.h"
#include "Tests/Report/SampleReport.h"

namespace sorvane {
namespace {

TEST(ReportExporter, LaysFindingsOutInOrderWithRunningNumbers) {
    const RichDocument report = ReportExporter::attributed(test::sampleReport(), "my data", 300);
    EXPECT_EQ(MarkdownReportExporter::markdown(report),
              "Results\n"
              "Dataset: my data   Cases: 300\n"
              "\n"
              "Reliability: Ängste\n"
              "α = .85, \U0001D465 {x} \\ tab\there.\n"
              "Second line.\n"
              "\n"
              "Table 1\n"
              "Item statistics\n"
              "\tScale\n"
              "Item\tM\tr\n"
              "ei01\t31.24\t.61\n"
              "ei<2> & co\t0.51\t-.58\n"
              "\n"
              "Figure 1. Items.\n"
              "\n"
              "Caution: Alpha is not validity.\n"
              "\n"
              "Correlation\n"
              "r(285) = .31, p < .001.\n"
              "\n"
              "Table 2\n"
              "Correlation\n"
              "Item\tM\tr\n"
              "ei01\t31.24\t.61\n"
              "ei<2> & co\t0.51\t-.58\n"
              "Note. n = 287.\n"
              "\n"
              "Table 3\n"
              "Correlation\n"
              "Item\tM\tr\n"
              "ei01\t31.24\t.61\n"
              "ei<2> & co\t0.51\t-.58\n"
              "Note. n = 287.\n"
              "\n");
}

TEST(ReportExporter, WithoutFindingsGivesTheHeadingAlone) {
    const RichDocument report = ReportExporter::attributed({}, "No dataset", 0);
    EXPECT_EQ(report.plainText(), "Results\nDataset: No dataset   Cases: 0\n");
    EXPECT_EQ(report.paragraphs[0].runs[0].style, (TextStyle{.points = 20, .bold = true}));
    EXPECT_EQ(RichDocument{}.plainText(), "");
}

TEST(ReportExporter, SaysWhenAFigureCannotBeRead) {
    const std::vector<ReportItem> items{
        {.title = "T", .figure = std::vector<std::uint8_t>{1, 2, 3}}};
    const RichDocument report = ReportExporter::attributed(items, "d", 1);
    EXPECT_NE(report.plainText().find("Figure 1. T (The picture of this figure cannot be read.)"),
              std::string::npos);
}

TEST(PlainText, KeepsACellOnOneLineInItsColumn) {
    const RichDocument document{
        {{.runs = {{"a\tb\nc", {}}}, .block = TextTableBlock{.columnSpan = 2}},
         {.runs = {{"d", {}}}, .block = TextTableBlock{.startingColumn = 2}},
         {.runs = {{"e", {}}}, .block = TextTableBlock{.startingColumn = 2}},
         {.runs = {{"f", {}}}, .block = TextTableBlock{.startingRow = 1}}}};
    EXPECT_EQ(document.plainText(), "a b c\t\td e\nf\n");
}

}  // namespace
}  // namespace sorvane
