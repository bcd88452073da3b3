#pragma once

#include <vector>

#include <QWidget>

#include "SorvaneMac/Screens/ScreenContent.h"

class QGridLayout;

namespace sorvane {

/// The figures that people look for first, in a row of small cards of equal width.
class TileStrip final : public QWidget {
public:
    TileStrip();

    void show(const std::vector<Tile>& tiles);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void arrange();

    std::vector<Tile> tiles_;
    std::vector<QWidget*> cards_;
    int columns_ = 0;
    QGridLayout* grid_;
};

}  // namespace sorvane
