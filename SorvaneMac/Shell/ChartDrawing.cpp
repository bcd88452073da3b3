#include "SorvaneMac/Shell/ChartDrawing.h"

#include <algorithm>

#include <QChart>
#include <QGraphicsLayout>
#include <QLegend>
#include <QPainter>

#include "SorvaneMac/Shell/ChartCanvas.h"
#include "SorvaneMac/Shell/ChartLegend.h"
#include "SorvaneMac/Shell/ChartPlots.h"

namespace sorvane {

namespace {

/// A chart with nothing but its plot; titles and captions belong to the page.
QChart* bareChart(const ChartInk& ink) {
    auto* chart = new QChart;
    chart->legend()->hide();
    chart->setBackgroundVisible(false);
    chart->setPlotAreaBackgroundVisible(false);
    chart->setFont(ink.font);
    chart->setMargins(QMargins(2, 6, 8, 2));
    chart->layout()->setContentsMargins(0, 0, 0, 0);
    return chart;
}

void sayThatThereIsNothing(ChartCanvas& canvas) {
    canvas.addScale();
    canvas.paint(nullptr, [ink = canvas.ink](QPainter& painter, const ChartPlaces& places) {
        painter.setFont(ink.font);
        painter.setPen(ink.quiet);
        painter.drawText(places.area(), Qt::AlignCenter | Qt::TextWordWrap,
                         "There are no values to draw.");
    });
}

}  // namespace

ChartDrawing::ChartDrawing(const Chart& chart, const ChartInk& ink) : chart_(bareChart(ink)) {
    ChartCanvas canvas{.chart = *chart_, .ink = ink, .texts = chart};
    std::visit([&canvas](const auto& plot) { ChartPlots::add(canvas, plot); }, chart.plot);
    if (chart_->series().isEmpty()) {
        sayThatThereIsNothing(canvas);
    }
    legend_ = new ChartLegend(std::move(canvas.legend), ink);
    fits_ = std::move(canvas.fits);
    scene_.addItem(chart_);
    scene_.addItem(legend_);
}

ChartDrawing::~ChartDrawing() = default;

void ChartDrawing::resize(QSize size) {
    const double legendHeight = legend_->fit(size.width());
    const QSizeF left(size.width(), std::max(size.height() - legendHeight, 1.0));
    for (const auto& fit : fits_) {
        fit(left);
    }
    chart_->setPos(0.0, legendHeight);
    chart_->resize(left);
    chart_->layout()->activate();
    scene_.setSceneRect(0, 0, size.width(), size.height());
}

void ChartDrawing::paint(QPainter& painter) {
    painter.setRenderHint(QPainter::Antialiasing);
    scene_.render(&painter, scene_.sceneRect(), scene_.sceneRect());
}

}  // namespace sorvane
