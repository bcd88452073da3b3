#include "SorvaneMac/Shell/ChartSizes.h"

#include <QBuffer>
#include <QPainter>
#include <QSvgGenerator>

#include <gtest/gtest.h>

#include "SorvaneMac/Shell/ChartDrawing.h"
#include "SorvaneMac/Shell/Theme.h"
#include "Tests/Shell/ChartGallery.h"
#include "Tests/Shell/OffscreenApplication.h"

namespace sorvane {
namespace {

/// The chart at its suitable size, as a drawing whose texts can be read.
std::string drawn(const Chart& chart, const ChartInk& ink) {
    const QSize size(ChartSizes::suitableWidth(chart, ink.font), ChartSizes::suitableHeight(chart));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QSvgGenerator svg;
    svg.setOutputDevice(&buffer);
    svg.setSize(size);
    ChartDrawing drawing(chart, ink);
    drawing.resize(size);
    QPainter painter(&svg);
    drawing.paint(painter);
    painter.end();
    return bytes.toStdString();
}

bool holds(const std::string& drawing, const std::string& text) {
    return drawing.find(">" + text + "<") != std::string::npos;
}

IntervalPlot intervals(int count) {
    IntervalPlot plot{.reference = 0.0};
    for (int at = 0; at < count; ++at) {
        plot.rows.push_back({"group " + std::to_string(at), at + 0.5, at + 0.0, at + 1.0});
    }
    return plot;
}

BarPlot bars(int count) {
    BarPlot plot{.reference = 0.3};
    for (int at = 0; at < count; ++at) {
        plot.labels.push_back("item" + std::to_string(at));
        plot.values.push_back(0.1 * (at % 8));
    }
    return plot;
}

TEST(ChartSizes, LeaveEveryAxisTitleWhole) {
    offscreenApplication();
    std::vector<std::pair<std::string, Chart>> charts = chartGallery();
    for (const int count : {1, 2, 3, 7, 40}) {
        const std::string rows = std::to_string(count);
        charts.push_back({"intervals " + rows,
                          {.xLabel = "Mean score with 95% interval", .plot = intervals(count)}});
        GroupedBarPlot shares{.series = {{"Yes", {}}, {"No", {}}},
                              .arrangement = GroupedBarPlot::Arrangement::stacked};
        for (int at = 0; at < count; ++at) {
            shares.categories.push_back("group " + std::to_string(at));
            shares.series[0].values.push_back(0.25);
            shares.series[1].values.push_back(0.75);
        }
        charts.push_back({"shares " + rows, {.xLabel = "Share of cases", .plot = shares}});
        charts.push_back(
            {"bars " + rows, {.xLabel = "r with the sum of the other items", .plot = bars(count)}});
    }
    for (const ChartInk& ink : {ChartInk::screen(), ChartInk::print()}) {
        for (const auto& [name, chart] : charts) {
            const std::string drawing = drawn(chart, ink);
            for (const std::string& title : {chart.xLabel, chart.yLabel}) {
                EXPECT_TRUE(title.empty() || holds(drawing, title)) << name << ": " << title;
            }
            EXPECT_EQ(drawing.find("...<"), std::string::npos) << name;
            EXPECT_EQ(drawing.find("…<"), std::string::npos) << name;
        }
    }
}

TEST(ChartSizes, GiveEachRowItsHeightUpToAPage) {
    const auto height = [](auto plot) {
        return ChartSizes::suitableHeight({.plot = plot});
    };
    EXPECT_EQ(height(bars(1)), height(bars(2)));
    EXPECT_EQ(height(bars(12)) - height(bars(11)), 24);
    EXPECT_EQ(height(bars(500)), 720);
    EXPECT_EQ(height(intervals(3)), height(BoxPlot{})) << "the two stand side by side";
    EXPECT_GT(height(intervals(20)), height(intervals(3)));
    const Dendrogram tall{.leaves = std::vector<std::string>(5000, "case")};
    EXPECT_EQ(height(tall), 720);
}

TEST(ChartSizes, WidenForLongAndManyNamesWithinReason) {
    const QFont font = ChartInk::screen().font;
    const auto width = [&font](std::size_t boxes, const std::string& name) {
        BoxPlot plot;
        plot.boxes.assign(boxes, {.label = name});
        return ChartSizes::suitableWidth({.plot = plot}, font);
    };
    EXPECT_EQ(width(2, "a"), 312);
    EXPECT_GT(width(6, "A rather long name"), width(3, "A rather long name"));
    EXPECT_GT(width(6, "A rather long name"), width(6, "short"));
    EXPECT_EQ(width(60, "A rather long name"), 900);
    EXPECT_EQ(width(2000, "x"), 900);
}

}  // namespace
}  // namespace sorvane
