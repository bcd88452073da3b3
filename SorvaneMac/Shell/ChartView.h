#pragma once

#include <memory>

#include <QWidget>

#include "SorvaneMac/Screens/Chart.h"

class QPushButton;

namespace sorvane {

class ChartDrawing;

/// One chart on a card; the context menu, and a button that shows under the pointer, copy and save
/// its picture.
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
    void changeEvent(QEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    void offerActions();
    void draw();
    void savePicture();

    Chart chart_;
    QPushButton* actions_ = nullptr;
    std::unique_ptr<ChartDrawing> drawing_;
};

}  // namespace sorvane
