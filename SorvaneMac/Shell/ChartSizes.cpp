#include "SorvaneMac/Shell/ChartSizes.h"

#include <algorithm>

#include <QFontMetrics>

#include "SorvaneMac/Screens/PathLayout.h"
#include "SorvaneMac/Shell/QtText.h"

namespace sorvane::ChartSizes {

namespace {

constexpr int plotHeight = 250;
constexpr int legendHeight = 24;
constexpr int plotWidth = 312;
constexpr int wideWidth = 460;
constexpr int widestPlot = 900;
/// A column of a path diagram, with the arrows that lead to it.
constexpr int columnWidth = 230;
/// What a plot with slots needs beside them, and each of its labels beside its letters.
constexpr int slotFrame = 70;
constexpr int labelAir = 14;
constexpr int rowFrame = 58;
/// With less height than these take, the title of the axis is cut.
constexpr std::size_t fewestRows = 3;
/// Many rows stand closer.
constexpr int barHeight = 24;
constexpr int tallestRows = 720;

int heightOfRows(std::size_t rows, int rowHeight) {
    const int count = static_cast<int>(std::clamp<std::size_t>(rows, fewestRows, 1000));
    return std::min(rowFrame + rowHeight * count, tallestRows);
}

int widthOfSlots(const std::vector<std::string>& labels, const QFont& font, int narrowest) {
    const QFontMetrics metrics(font);
    int widest = narrowest;
    for (const std::string& label : labels) {
        widest = std::max(widest, metrics.horizontalAdvance(qtText(label)) + labelAir);
    }
    const int count = static_cast<int>(std::min<std::size_t>(labels.size(), 100));
    return std::clamp(slotFrame + widest * count, plotWidth, widestPlot);
}

struct Height {
    int operator()(const HistogramPlot&) const { return plotHeight; }
    int operator()(const BoxPlot&) const { return plotHeight; }
    int operator()(const ScatterPlot&) const { return plotHeight; }
    int operator()(const BarPlot& plot) const {
        return heightOfRows(plot.labels.size(), barHeight);
    }
    int operator()(const GroupedBarPlot& plot) const {
        const bool isStacked = plot.arrangement == GroupedBarPlot::Arrangement::stacked;
        return legendHeight +
               (isStacked ? heightOfRows(plot.categories.size(), barHeight + 6) : plotHeight);
    }
    /// Often stands beside a box plot of the same groups.
    int operator()(const IntervalPlot& plot) const {
        return std::max(heightOfRows(plot.rows.size(), barHeight), plotHeight);
    }
    int operator()(const LinePlot& plot) const {
        return plotHeight + (plot.series.size() > 1 ? legendHeight : 0);
    }
    int operator()(const HeatMap& plot) const {
        return std::max(legendHeight + heightOfRows(plot.rows.size(), barHeight), plotHeight);
    }
    int operator()(const Dendrogram& plot) const {
        return std::max(heightOfRows(plot.leaves.size(), 18), plotHeight);
    }
    int operator()(const PathDiagram& plot) const {
        const int rows = PathLayout::places(plot).rows;
        return std::max(heightOfRows(static_cast<std::size_t>(rows), 26), 180);
    }
};

struct Width {
    const QFont& font;

    template <typename Plot>
    int operator()(const Plot&) const {
        return plotWidth;
    }
    int operator()(const BoxPlot& plot) const {
        std::vector<std::string> labels;
        for (const BoxPlot::Box& box : plot.boxes) {
            labels.push_back(box.label);
        }
        return widthOfSlots(labels, font, 0);
    }
    int operator()(const GroupedBarPlot& plot) const {
        const bool isStacked = plot.arrangement == GroupedBarPlot::Arrangement::stacked;
        const int bars = static_cast<int>(std::min<std::size_t>(plot.series.size(), 20)) * labelAir;
        return isStacked ? wideWidth : widthOfSlots(plot.categories, font, bars + labelAir);
    }
    int operator()(const LinePlot& plot) const {
        return std::max(widthOfSlots(plot.categories, font, 0), wideWidth);
    }
    int operator()(const HeatMap& plot) const {
        const int columns = static_cast<int>(std::min<std::size_t>(plot.columns.size(), 100));
        return std::clamp(2 * slotFrame + 42 * columns, plotWidth, widestPlot);
    }
    int operator()(const Dendrogram&) const { return wideWidth; }
    int operator()(const PathDiagram& plot) const {
        return std::clamp(columnWidth * PathLayout::places(plot).columns, wideWidth, widestPlot);
    }
};

}  // namespace

int suitableHeight(const Chart& chart) {
    return std::visit(Height{}, chart.plot);
}

int suitableWidth(const Chart& chart, const QFont& font) {
    return std::visit(Width{font}, chart.plot);
}

}  // namespace sorvane::ChartSizes
