#pragma once

#include <memory>

#include <QWidget>

#include "SorvaneMac/Screens/Chart.h"

namespace sorvane {

class ChartDrawing;

/// One chart on a card; its context menu copies and saves the picture.
class ChartView final : public QWidget {
public:
    explicit ChartView(Chart chart);
    ~ChartView() override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    void copyPicture() const;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void savePicture();

    Chart chart_;
    std::unique_ptr<ChartDrawing> drawing_;
};

}  // namespace sorvane
