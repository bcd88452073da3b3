#pragma once

#include <vector>

#include <QGraphicsItem>
#include <QPointF>
#include <QString>

#include "SorvaneMac/Shell/ChartInk.h"

class QAbstractSeries;
class QChart;

namespace sorvane {

/// Points, a dashed line and labels drawn over a plot at values of its axes.
///
/// Many points cost one paint, not one graphics item each, and a spot that is covered is not
/// painted again.
class ChartOverlay final : public QGraphicsItem {
public:
    struct Label {
        QPointF at;
        QString text;
    };

    /// Becomes part of the chart; the series says which axes give the places.
    ChartOverlay(QChart& chart, QAbstractSeries& series, const ChartInk& ink);

    /// Round marks; hollow ones stand for outliers.
    std::vector<QPointF> points;
    bool hollowPoints = false;
    /// Each label stands to the right of its place.
    std::vector<Label> labels;
    std::optional<double> verticalLine;
    /// Stands above the line.
    QString lineLabel;

    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

private:
    void paintPoints(QPainter& painter) const;
    void paintLine(QPainter& painter) const;
    void paintLabels(QPainter& painter) const;

    QChart& chart_;
    QAbstractSeries& series_;
    ChartInk ink_;
};

}  // namespace sorvane
