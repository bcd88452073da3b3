#include "SorvaneMac/Shell/ChartAxes.h"

#include <algorithm>
#include <cmath>

#include <QBarCategoryAxis>
#include <QChart>
#include <QValueAxis>

namespace sorvane::ChartAxes {

namespace {

constexpr double wantedSteps = 5.0;

/// 1, 2 or 5 times a power of ten.
double roundStep(double span) {
    const double rough = span / wantedSteps;
    const double power = std::pow(10.0, std::floor(std::log10(rough)));
    const double lead = rough / power;
    return power * (lead <= 1.0 ? 1.0 : lead <= 2.0 ? 2.0 : lead <= 5.0 ? 5.0 : 10.0);
}

int decimalsFor(double step) {
    return std::clamp(static_cast<int>(-std::floor(std::log10(step) + 1e-9)), 0, 9);
}

void style(QAbstractAxis& axis, const QString& title, const ChartInk& ink) {
    axis.setLabelsFont(ink.font);
    axis.setLabelsBrush(ink.quiet);
    axis.setTitleFont(ink.font);
    axis.setTitleBrush(ink.text);
    axis.setTitleText(title);
    axis.setLinePen(QPen(ink.quiet, 1.0));
    axis.setGridLinePen(QPen(ink.grid, 1.0));
}

}  // namespace

QValueAxis* value(ValueRange range, Extent extent, const QString& title, const ChartInk& ink) {
    if (!(range.maximum > range.minimum)) {
        range = {range.minimum - 1.0, range.minimum + 1.0};
    }
    const double step = roundStep(range.maximum - range.minimum);
    const double first = std::floor(range.minimum / step + 1e-9) * step;
    auto* axis = new QValueAxis;
    if (extent == Extent::rounded) {
        const double last = std::ceil(range.maximum / step - 1e-9) * step;
        axis->setRange(first, last);
        axis->setTickCount(static_cast<int>(std::lround((last - first) / step)) + 1);
    } else {
        axis->setRange(range.minimum, range.maximum);
        axis->setTickType(QValueAxis::TicksDynamic);
        axis->setTickAnchor(first);
        axis->setTickInterval(step);
    }
    axis->setLabelFormat(QString("%.%1f").arg(decimalsFor(step)));
    style(*axis, title, ink);
    return axis;
}

QBarCategoryAxis* categories(const QStringList& labels, const QString& title, const ChartInk& ink) {
    auto* axis = new QBarCategoryAxis;
    axis->append(labels);
    style(*axis, title, ink);
    axis->setGridLineVisible(false);
    return axis;
}

void leaveTitleOnly(QAbstractAxis& axis) {
    axis.setGridLineVisible(false);
    axis.setLineVisible(false);
    axis.setLabelsVisible(false);
}

void attach(QChart& chart, QAbstractSeries* series, QAbstractAxis* axis, Qt::Alignment edge) {
    if (!chart.axes().contains(axis)) {
        chart.addAxis(axis, edge);
    }
    series->attachAxis(axis);
}

}  // namespace sorvane::ChartAxes
