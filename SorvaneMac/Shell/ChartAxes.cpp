#include "SorvaneMac/Shell/ChartAxes.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include <QBarCategoryAxis>
#include <QChart>
#include <QValueAxis>

#include "SorvaneMac/Shell/ChartCategoryLabels.h"
#include "SorvaneMac/Shell/ChartRange.h"
#include "SorvaneMac/Shell/QtText.h"

namespace sorvane::ChartAxes {

namespace {

constexpr double wantedSteps = 5.0;

/// 1, 2 or 5 times a power of ten.
double roundStep(double span) {
    const double rough = span / wantedSteps;
    const double power = std::pow(10.0, std::floor(std::log10(rough)));
    const double lead = rough / power;
    return power * (lead < 1.5 ? 1.0 : lead < 3.5 ? 2.0 : lead < 7.5 ? 5.0 : 10.0);
}

QString labelFormat(const ValueRange& range, double step) {
    const double size = std::max(std::abs(range.minimum), std::abs(range.maximum));
    if (size >= 1e7 || step < 1e-6) {
        return "%.6g";
    }
    const double decimals = -std::floor(std::log10(step) + 1e-9);
    return QString("%.%1f").arg(std::clamp(static_cast<int>(decimals), 0, 6));
}

/// Labels and titles are read as HTML there.
QString plainLabel(const QString& text) {
    return text.toHtmlEscaped();
}

void style(QAbstractAxis& axis, const ChartCanvas& canvas, Qt::AlignmentFlag edge) {
    const ChartInk& ink = canvas.ink;
    const bool isBottom = edge == Qt::AlignBottom;
    axis.setLabelsFont(ink.font);
    axis.setLabelsBrush(ink.quiet);
    axis.setTitleFont(ink.font);
    axis.setTitleBrush(ink.text);
    axis.setTitleText(plainLabel(qtText(isBottom ? canvas.texts.xLabel : canvas.texts.yLabel)));
    axis.setLinePen(QPen(ink.quiet, 1.0));
    axis.setGridLinePen(QPen(ink.grid, 1.0));
    axis.setGridLineVisible(ink.showsGrid && !isBottom);
}

void attach(QChart& chart, QAbstractSeries& series, QAbstractAxis& axis, Qt::AlignmentFlag edge) {
    chart.addAxis(&axis, edge);
    series.attachAxis(&axis);
}

}  // namespace

QValueAxis& addNumbers(ChartCanvas& canvas,
                       QAbstractSeries& series,
                       const Scale& scale,
                       Qt::AlignmentFlag edge) {
    const ValueRange range = ChartRange::drawable(scale.range);
    double step = roundStep(range.maximum - range.minimum);
    if (scale.wholeNumbers) {
        step = std::max(step, 1.0);
    }
    // Rounding must not label the zero "-0".
    const double nudge = 1e-9 * step;
    const double first = std::floor(range.minimum / step + 1e-9) * step + nudge;
    auto* axis = new QValueAxis;
    if (scale.extent == Extent::rounded) {
        const double last = std::ceil(range.maximum / step - 1e-9) * step + nudge;
        axis->setRange(first, last);
        axis->setTickCount(static_cast<int>(std::lround((last - first) / step)) + 1);
    } else {
        axis->setRange(range.minimum, range.maximum);
        axis->setTickType(QValueAxis::TicksDynamic);
        axis->setTickAnchor(first);
        axis->setTickInterval(step);
    }
    axis->setLabelFormat(labelFormat(range, step) + (scale.percent ? "%%" : ""));
    axis->setTruncateLabels(false);
    style(*axis, canvas, edge);
    attach(canvas.chart, series, *axis, edge);
    return *axis;
}

void addCategories(ChartCanvas& canvas,
                   QAbstractSeries& series,
                   const std::vector<std::string>& labels,
                   Qt::AlignmentFlag edge) {
    auto* axis = new QBarCategoryAxis;
    QStringList names;
    QStringList slotNumbers;
    for (const std::string& label : labels) {
        slotNumbers << QString::number(names.size());
        names << qtText(label).simplified();
    }
    axis->append(slotNumbers);
    style(*axis, canvas, edge);
    axis->setTitleText({});
    axis->setLabelsVisible(false);
    axis->setGridLineVisible(false);
    attach(canvas.chart, series, *axis, edge);

    const bool isBottom = edge == Qt::AlignBottom;
    const auto title = qtText(isBottom ? canvas.texts.xLabel : canvas.texts.yLabel);
    auto written = std::make_shared<ChartCategoryLabels>(std::move(names), title, edge, canvas.ink);
    canvas.fits.push_back([written, isBottom, &chart = canvas.chart](QSizeF size) {
        QMargins margins = chart.margins();
        const int room = static_cast<int>(std::ceil(written->fit(size)));
        isBottom ? margins.setBottom(room) : margins.setLeft(room);
        chart.setMargins(margins);
    });
    canvas.paint(&series, [written](QPainter& painter, const ChartPlaces& places) {
        written->paint(painter, places.area());
    });
}

void leaveTitleOnly(QValueAxis& axis) {
    axis.setGridLineVisible(false);
    axis.setLineVisible(false);
    // Blank ones, since the title is cut unless it leaves room for a line of labels.
    axis.setLabelFormat(" ");
}

}  // namespace sorvane::ChartAxes
