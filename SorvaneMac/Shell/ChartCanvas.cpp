#include "SorvaneMac/Shell/ChartCanvas.h"

#include <QChart>
#include <QGraphicsItem>
#include <QLineSeries>
#include <QPainter>

namespace sorvane {

namespace {

constexpr double swatchWidth = 11.0;

/// One item for all that a plot paints: many marks cost one paint, not one graphics item each.
class PaintedLayer final : public QGraphicsItem {
public:
    PaintedLayer(QChart& chart, QAbstractSeries* series, ChartCanvas::Painting painting)
        : QGraphicsItem(&chart),
          chart_(chart),
          places_(chart, series),
          painting_(std::move(painting)) {
        setZValue(50);
    }

    QRectF boundingRect() const override { return chart_.rect(); }

    void paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) override {
        if (places_.area().isValid()) {
            painter->setRenderHint(QPainter::Antialiasing);
            painting_(*painter, places_);
        }
    }

private:
    QChart& chart_;
    ChartPlaces places_;
    ChartCanvas::Painting painting_;
};

}  // namespace

QRectF ChartPlaces::area() const {
    return chart_.plotArea();
}

QPointF ChartPlaces::at(double x, double y) const {
    return chart_.mapToPosition({x, y}, series_);
}

QAbstractSeries& ChartCanvas::addScale() {
    auto* series = new QLineSeries;
    chart.addSeries(series);
    return *series;
}

void ChartCanvas::paint(QAbstractSeries* series, Painting painting) {
    // Becomes a part of the chart, which deletes it.
    new PaintedLayer(chart, series, std::move(painting));
}

void ChartCanvas::addSwatch(const QString& name, const QColor& color) {
    legend.push_back(
        {.text = name, .markWidth = swatchWidth, .mark = [color](QPainter& painter, QRectF place) {
             QRectF square(0.0, 0.0, swatchWidth, swatchWidth);
             square.moveCenter(place.center());
             painter.fillRect(square, color);
         }});
}

}  // namespace sorvane
