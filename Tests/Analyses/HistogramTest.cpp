#include "SorvaneCore/Analyses/Histogram.h"

#include <limits>
#include <numeric>

#include <gtest/gtest.h>

#include "SorvaneCore/Analyses/BoxPlotSummary.h"

namespace sorvane {
namespace {

TEST(Histogram, GivesEachWholeNumberOfAShortRangeABin) {
    const std::vector<double> likert = {1, 2, 2, 5, 5, 5};
    const HistogramBins bins = *Histogram::bins(likert);
    EXPECT_EQ(bins.edges.front(), 0.5);
    EXPECT_EQ(bins.edges.back(), 5.5);
    EXPECT_EQ(bins.counts, (std::vector<std::int64_t>{1, 2, 0, 0, 3}));
}

TEST(Histogram, CountsEveryFiniteValueOnceInRoundBins) {
    std::vector<double> values(1000);
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i] = -3.0 + 0.0071 * static_cast<double>(i);
    }
    values.push_back(std::numeric_limits<double>::infinity());
    const HistogramBins bins = *Histogram::bins(values);
    EXPECT_EQ(std::accumulate(bins.counts.begin(), bins.counts.end(), std::int64_t{0}), 1000);
    EXPECT_EQ(bins.edges.size(), bins.counts.size() + 1);
    EXPECT_DOUBLE_EQ(bins.edges[1] - bins.edges[0], 1.0);
    EXPECT_LE(bins.edges.front(), values.front());
    EXPECT_GE(bins.edges.back(), values[999]);
}

TEST(Histogram, AValueOnAnEdgeBelongsToTheBinThatItBegins) {
    // Tenths from 0.1 to 2.5, each once, in bins of a half: five each but for the ends.
    std::vector<double> tenths;
    for (int i = 1; i <= 25; ++i) {
        tenths.push_back(i / 10.0);
    }
    const HistogramBins halves = *Histogram::bins(tenths);
    EXPECT_EQ(halves.counts, (std::vector<std::int64_t>{4, 5, 5, 5, 6}));
    // Hundredths in bins of tenths, of which many are no exact doubles.
    std::vector<double> hundredths;
    for (int i = 0; i < 90; ++i) {
        hundredths.push_back(i / 100.0);
    }
    const HistogramBins tens = *Histogram::bins(hundredths);
    EXPECT_DOUBLE_EQ(tens.edges[1] - tens.edges[0], 0.2);
    EXPECT_EQ(tens.counts, (std::vector<std::int64_t>{20, 20, 20, 20, 10}));
}

TEST(Histogram, CountsByLevelAsByRow) {
    std::vector<std::string> cells;
    std::vector<double> values;
    for (int i = 0; i < 300; ++i) {
        cells.push_back(i % 7 == 0 ? "NA" : std::to_string(i * i % 97) + ".5");
        if (i % 7 != 0) {
            values.push_back(i * i % 97 + 0.5);
        }
    }
    EXPECT_EQ(Histogram::bins(NumericColumn(TextColumn::of(cells))), Histogram::bins(values));
}

TEST(Histogram, IsAbsentWhereNoWidthCanPartTheValues) {
    EXPECT_EQ(Histogram::bins(std::vector<double>()), std::nullopt);
    EXPECT_EQ(Histogram::bins(std::vector<double>{1.5e308, -1.5e308}), std::nullopt);
    EXPECT_EQ(Histogram::bins(std::vector<double>{0.0, 5e-324}), std::nullopt);
    EXPECT_EQ(Histogram::bins(std::vector<double>{2.5, 2.5})->counts, std::vector<std::int64_t>{2});
}

TEST(BoxPlotSummary, SetsOutliersApartFromTheWhiskers) {
    const std::vector<double> values = {1, 2, 3, 4, 5, 6, 7, 8, 30, -20};
    const BoxPlotSummary box = *BoxPlotSummary::of(values);
    EXPECT_EQ(box.median, 4.5);
    EXPECT_EQ(box.firstQuartile, 2.0);
    EXPECT_EQ(box.thirdQuartile, 7.0);
    EXPECT_EQ(box.lowerWhisker, 1.0);
    EXPECT_EQ(box.upperWhisker, 8.0);
    EXPECT_EQ(box.outliers, (std::vector<double>{-20, 30}));
    EXPECT_EQ(BoxPlotSummary::of(std::vector<double>{3})->upperWhisker, 3.0);
    EXPECT_EQ(BoxPlotSummary::of(std::vector<double>()), std::nullopt);
}

}  // namespace
}  // namespace sorvane
