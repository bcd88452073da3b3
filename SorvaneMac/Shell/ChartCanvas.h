#pragma once

#include <functional>
#include <vector>

#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QString>

#include "SorvaneMac/Screens/Chart.h"
#include "SorvaneMac/Shell/ChartInk.h"

class QAbstractSeries;
class QChart;
class QPainter;

namespace sorvane {

/// Where values stand in a plot that is laid out.
class ChartPlaces {
public:
    /// A plot without axes has no series.
    ChartPlaces(QChart& chart, QAbstractSeries* series) : chart_(chart), series_(series) {}

    QRectF area() const;
    QPointF at(double x, double y) const;

private:
    QChart& chart_;
    QAbstractSeries* series_;
};

/// A name in the legend with what is drawn before it.
struct LegendEntry {
    QString text;
    double markWidth = 0.0;
    std::function<void(QPainter&, QRectF)> mark;
};

/// An empty chart to be filled by one plot.
struct ChartCanvas {
    using Painting = std::function<void(QPainter&, const ChartPlaces&)>;
    using Fit = std::function<void(QSizeF)>;

    QChart& chart;
    const ChartInk& ink;
    const Chart& texts;
    std::vector<LegendEntry> legend{};
    /// What has to follow when the size of the chart changes.
    std::vector<Fit> fits{};

    /// An empty series, for axes under a plot that is painted.
    QAbstractSeries& addScale();
    /// Paints over all that is there; a null series where the plot has no axes.
    void paint(QAbstractSeries* series, Painting painting);
    /// A filled square before each name.
    void addSwatch(const QString& name, const QColor& color);
};

}  // namespace sorvane
