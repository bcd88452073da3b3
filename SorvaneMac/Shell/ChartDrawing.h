#pragma once

#include <functional>
#include <vector>

#include <QGraphicsScene>
#include <QSizeF>

#include "SorvaneMac/Screens/Chart.h"
#include "SorvaneMac/Shell/ChartInk.h"

class QChart;
class QPainter;

namespace sorvane {

class ChartLegend;

/// One chart, laid out and ready to paint at any size.
class ChartDrawing {
public:
    ChartDrawing(const Chart& chart, const ChartInk& ink);
    ~ChartDrawing();

    void resize(QSize size);
    void paint(QPainter& painter);

private:
    QGraphicsScene scene_;
    QChart* chart_ = nullptr;
    ChartLegend* legend_ = nullptr;
    std::vector<std::function<void(QSizeF)>> fits_;
};

}  // namespace sorvane
