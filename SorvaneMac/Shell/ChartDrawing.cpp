#include "SorvaneMac/Shell/ChartDrawing.h"

#include <algorithm>

#include <QChart>
#include <QFontMetrics>
#include <QGraphicsLayout>
#include <QLegend>
#include <QPainter>

#include "SorvaneMac/Shell/ChartPlots.h"
#include "SorvaneMac/Shell/QtText.h"

namespace sorvane {

namespace {

constexpr int plotHeight = 250;
constexpr int plotWidth = 312;
constexpr int widestPlot = 900;
/// What a box plot needs beside its boxes, and each of its labels beside its letters.
constexpr int boxFrame = 70;
constexpr int labelAir = 14;
constexpr int barHeight = 24;
constexpr int barFrame = 58;

/// A chart with nothing but its plot; titles and captions belong to the page.
QChart* bareChart(const ChartInk& ink) {
    auto* chart = new QChart;
    chart->legend()->hide();
    chart->setBackgroundVisible(false);
    chart->setPlotAreaBackgroundVisible(false);
    chart->setFont(ink.font);
    chart->setMargins(QMargins(2, 4, 6, 2));
    chart->layout()->setContentsMargins(0, 0, 0, 0);
    return chart;
}

QString spoken(const HistogramPlot& plot) {
    return QString("Histogram with %1 bins.").arg(plot.counts.size());
}

QString spoken(const BoxPlot& plot) {
    QStringList parts;
    for (const BoxPlot::Box& box : plot.boxes) {
        parts << QString("%1: median %2, quartiles %3 to %4, %5 outliers")
                     .arg(qtText(box.label))
                     .arg(box.median)
                     .arg(box.firstQuartile)
                     .arg(box.thirdQuartile)
                     .arg(box.outliers.size());
    }
    return "Box plot. " + parts.join("; ") + ".";
}

QString spoken(const ScatterPlot& plot) {
    return QString("Scatter plot of %1 points%2.")
        .arg(plot.x.size())
        .arg(plot.line ? ", with a fitted line" : "");
}

QString spoken(const BarPlot& plot) {
    QStringList parts;
    for (std::size_t at = 0; at < plot.labels.size() && at < plot.values.size(); ++at) {
        parts << qtText(plot.labels[at]) + " " + QString::number(plot.values[at], 'f', 2);
    }
    return "Bar chart. " + parts.join(", ") + ".";
}

}  // namespace

ChartDrawing::ChartDrawing(const Chart& chart, const ChartInk& ink) : chart_(bareChart(ink)) {
    std::visit([&](const auto& plot) { ChartPlots::add(*chart_, plot, chart, ink); }, chart.plot);
    scene_.addItem(chart_);
}

ChartDrawing::~ChartDrawing() = default;

void ChartDrawing::resize(QSize size) {
    chart_->resize(size);
    scene_.setSceneRect(0, 0, size.width(), size.height());
}

void ChartDrawing::paint(QPainter& painter) {
    painter.setRenderHint(QPainter::Antialiasing);
    scene_.render(&painter, scene_.sceneRect(), scene_.sceneRect());
}

int ChartDrawing::suitableHeight(const Chart& chart) {
    if (const auto* bars = std::get_if<BarPlot>(&chart.plot)) {
        return barFrame + barHeight * std::max(static_cast<int>(bars->labels.size()), 2);
    }
    return plotHeight;
}

int ChartDrawing::suitableWidth(const Chart& chart, const QFont& font) {
    const auto* plot = std::get_if<BoxPlot>(&chart.plot);
    if (!plot) {
        return plotWidth;
    }
    const QFontMetrics metrics(font);
    int widest = 0;
    for (const BoxPlot::Box& box : plot->boxes) {
        widest = std::max(widest, metrics.horizontalAdvance(qtText(box.label)) + labelAir);
    }
    const int wanted = boxFrame + widest * static_cast<int>(plot->boxes.size());
    return std::clamp(wanted, plotWidth, widestPlot);
}

QString ChartDrawing::spokenDescription(const Chart& chart) {
    return std::visit([](const auto& plot) { return spoken(plot); }, chart.plot);
}

}  // namespace sorvane
