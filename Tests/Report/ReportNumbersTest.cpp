#include "SorvaneMac/Report/ReportNumbers.h"

#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "SorvaneMac/Report/APAFormat.h"
#include "SorvaneMac/Report/SignificanceFormatting.h"

namespace sorvane {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

TEST(ReportNumbers, FormatsAsTheCRoutineAndMarksWhatIsMissing) {
    EXPECT_EQ(svFmt(std::nullopt, 2), "--");
    EXPECT_EQ(svFmt(infinity, 2), "--");
    EXPECT_EQ(svFmt(notANumber, 2), "--");
    EXPECT_EQ(svFmt(0.125, 2), "0.12");
    EXPECT_EQ(svFmt(-0.001, 2), "-0.00");
    EXPECT_EQ(statText(1234567.5, 1), "1234567.5");
}

TEST(ReportNumbers, BoundedNumbersLoseTheZeroBeforeThePoint) {
    EXPECT_EQ(svFmtBounded(0.456, 3), ".456");
    EXPECT_EQ(svFmtBounded(-0.2, 2), "-.20");
    EXPECT_EQ(svFmtBounded(-0.0004, 3), "-.000");
    EXPECT_EQ(svFmtBounded(1, 3), "1.000");
    EXPECT_EQ(svFmtBounded(0, 0), "0");
    EXPECT_EQ(svFmtBounded(std::nullopt, 3), "--");
}

TEST(ReportNumbers, FiguresBeyondDecimalsGoIntoPowersOfTen) {
    const struct {
        int line;
        double value;
        int decimals;
        std::string text;
    } cases[] = {
        {__LINE__, 3.25, 2, "3.25"},
        {__LINE__, -0.001, 2, "-0.00"},
        {__LINE__, 0.0000000000286, 12, "0.000000000029"},
        {__LINE__, 0.0000000000029, 13, "2.9 × 10⁻¹²"},
        {__LINE__, -0.0000118, 13, "-1.18000000 × 10⁻⁵"},
        // A figure that says something before its last digits keeps its form.
        {__LINE__, 2.0, 17, "2.000000000000"},
        {__LINE__, 0.0, 17, "0"},
        {__LINE__, 3e-20, 13, "3 × 10⁻²⁰"},
        {__LINE__, 9974212745553746.0, -12, "9.974 × 10¹⁵"},
        {__LINE__, 9974212745553746.0, 2, "9.97421274555375 × 10¹⁵"},
        {__LINE__, 1234567890123.0, -10, "1.23 × 10¹²"},
        {__LINE__, 123456789012.0, -10, "123456789012"},
        {__LINE__, 123456789012345.67, 2, "123456789012346"},
        {__LINE__, notANumber, -1, "--"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(svFigure(each.value, each.decimals), each.text) << each.line;
    }
    EXPECT_EQ(svFigure(std::nullopt, 13), "--");
}

TEST(SignificanceFormatting, StarsIncludeTheBoundThatTheTextExcludes) {
    using SignificanceFormatting::pValueText;
    EXPECT_EQ(pValueText(0.0005, false), "< .001");
    EXPECT_EQ(pValueText(0.0005, true), "< .001***");
    EXPECT_EQ(pValueText(0.001, true), "0.001***");
    EXPECT_EQ(pValueText(0.01, true), "0.010**");
    EXPECT_EQ(pValueText(0.05, true), "0.050*");
    EXPECT_EQ(pValueText(0.051, true), "0.051");
    EXPECT_EQ(SignificanceFormatting::stars(notANumber), "");
    EXPECT_EQ(SignificanceFormatting::stars(-infinity), "");
}

TEST(APAFormat, KnowsTheHeadsOfBoundedNumbers) {
    for (const char* header : {"F2",
                               "12",
                               "p",
                               "P",
                               " p ",
                               "p value",
                               "p-adj",
                               "r",
                               "R²",
                               "α if deleted",
                               "ω total",
                               "Factor loading",
                               "LOADINGS",
                               "Beta",
                               "Theta",
                               "partial η²p eta",
                               "η²",
                               "Rmsea",
                               "WILKS' LAMBDA",
                               "canonical R",
                               "Std.",
                               "ICC",
                               "Probability"}) {
        EXPECT_TRUE(APAFormat::dropsLeadingZero(header)) << header;
    }
    for (const char* header : {"M", "SD", "Mean", "F", "F 2", "Fx1", "", "R", "SE", "per cent",
                               "std.", "icc", "Odds ratio", "1a"}) {
        EXPECT_FALSE(APAFormat::dropsLeadingZero(header)) << header;
    }
}

TEST(APAFormat, ChangesOnlyCellsUnderBoundedHeads) {
    const ReportTable table{
        .headers = {"M", "p", "r"},
        .rows = {{"0.5", "0.045", "-0.31"}, {"0.5", "< .001", "1.00"}, {"0.5", "--"}, {}},
        .note = "0.5 stays",
        .boldMask = std::vector<std::vector<bool>>{{true}},
        .title = "0.1"};
    ReportTable expected = table;
    expected.rows = {{"0.5", ".045", "-.31"}, {"0.5", "< .001", "1.00"}, {"0.5", "--"}, {}};
    EXPECT_EQ(APAFormat::normalize(table), expected);
    EXPECT_EQ(APAFormat::normalize(expected), expected);
}

}  // namespace
}  // namespace sorvane
