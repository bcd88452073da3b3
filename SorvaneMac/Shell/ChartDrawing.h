#pragma once

#include <memory>

#include <QGraphicsScene>
#include <QSize>

#include "SorvaneMac/Screens/Chart.h"
#include "SorvaneMac/Shell/ChartInk.h"

class QChart;
class QPainter;

namespace sorvane {

/// One chart, laid out and ready to paint at any size.
class ChartDrawing {
public:
    ChartDrawing(const Chart& chart, const ChartInk& ink);
    ~ChartDrawing();

    void resize(QSize size);
    void paint(QPainter& painter);

    /// The height that suits the chart: fixed for a plot, by the number of bars for bars.
    static int suitableHeight(const Chart& chart);
    /// The width in which the labels of a chart stand whole, within reason.
    static int suitableWidth(const Chart& chart, const QFont& font);
    /// What the chart shows, for those who hear the window.
    static QString spokenDescription(const Chart& chart);

private:
    QGraphicsScene scene_;
    QChart* chart_ = nullptr;
};

}  // namespace sorvane
