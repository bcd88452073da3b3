#pragma once

#include <vector>

#include <QGraphicsItem>

#include "SorvaneMac/Shell/ChartCanvas.h"

namespace sorvane {

/// The names of the series above a chart, in as many lines as they need.
class ChartLegend final : public QGraphicsItem {
public:
    ChartLegend(std::vector<LegendEntry> entries, const ChartInk& ink);

    /// Lays the entries out from the left.
    ///
    /// Returns    the height that they take; 0 without entries
    double fit(double width);

    QRectF boundingRect() const override { return extent_; }
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

private:
    std::vector<LegendEntry> entries_;
    QColor color_;
    QFont font_;
    /// One per entry.
    std::vector<QRectF> places_;
    QRectF extent_;
};

}  // namespace sorvane
