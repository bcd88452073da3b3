#include "SorvaneMac/Report/ReportClipboard.h"

#include <gtest/gtest.h>

#include "SorvaneMac/Report/StatisticalSymbols.h"
#include "Tests/Report/SampleReport.h"

namespace sorvane {
namespace {

TEST(ReportClipboard, WritesTheTableAsHTML) {
    ReportTable table = test::sampleTable();
    table.rows = {{"a & b", "0.51", "0.61"}};
    table.groupHeaders = std::vector<ReportGroupHeader>{{"", 1}, {"<Scale>", 2}};
    const std::string head =
        "style=\"border-bottom:1px solid #000;text-align:center;font-weight:normal\">";
    EXPECT_EQ(ReportClipboard::html("T < 1", table),
              "<p style=\"font-style:italic\">T &lt; 1</p>"
              "<table style=\"border-collapse:collapse;border-top:1px solid #000;"
              "border-bottom:1px solid #000\" cellspacing=\"0\" cellpadding=\"5\">"
              "<tr><th colspan=\"1\" " +
                  head + "</th><th colspan=\"2\" " + head +
                  "&lt;Scale&gt;</th></tr>"
                  "<tr><th " +
                  head + "Item</th><th " + head + "<i>M</i></th><th " + head +
                  "<i>r</i></th></tr>"
                  "<tr><td style=\"text-align:left\">a &amp; b</td>"
                  "<td style=\"text-align:center\">0.51</td>"
                  "<td style=\"text-align:center\">.61</td></tr></table>"
                  "<p><i>Note.</i> n = 287.</p>");
    EXPECT_TRUE(ReportClipboard::html("", table).starts_with("<table"));
}

TEST(ReportClipboard, KeepsPlainCellsInTheirColumns) {
    ReportTable table = test::sampleTable();
    table.rows = {{"two\nlines\tand tab", "0.51", "0.61"}};
    table.groupHeaders = std::vector<ReportGroupHeader>{{"Both", 2}, {"One", 1}};
    EXPECT_EQ(ReportClipboard::plainText(table),
              "Both\t\tOne\nItem\tM\tr\ntwo lines and tab\t0.51\t.61\nNote. n = 287.\n");
}

TEST(StatisticalSymbols, SetsSymbolsButNotLettersOfNamesInItalics) {
    EXPECT_EQ(StatisticalSymbols::headerHTML("df"), "<i>df</i>");
    EXPECT_EQ(StatisticalSymbols::headerHTML("p value"), "<i>p</i> value");
    EXPECT_EQ(StatisticalSymbols::headerHTML("M (SD)"), "<i>M</i> (<i>SD</i>)");
    EXPECT_EQ(StatisticalSymbols::headerHTML("R²"), "<i>R²</i>");
    EXPECT_EQ(StatisticalSymbols::headerHTML("Group B"), "Group B");
    EXPECT_EQ(StatisticalSymbols::headerHTML("x<y & z"), "x&lt;y &amp; z");
}

}  // namespace
}  // namespace sorvane
