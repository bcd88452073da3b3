#include "SorvaneMac/Shell/TileStrip.h"

#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "SorvaneMac/Shell/Labels.h"
#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

constexpr int tilesInRow = 5;
/// A value longer than this stands in smaller type.
constexpr int shortValue = 9;

QWidget* tileCard(const Tile& tile) {
    auto* card = new QFrame;
    card->setProperty("card", true);
    card->setAccessibleName(
        qtText(tile.label + ": " + tile.value + (tile.caption.empty() ? "" : ", " + tile.caption)));
    auto* lines = new QVBoxLayout(card);
    lines->setContentsMargins(Theme::px(13), Theme::px(10), Theme::px(13), Theme::px(10));
    lines->setSpacing(Theme::px(2));
    lines->addWidget(Labels::text(qtText(tile.label), "small"));
    const QString value = qtText(tile.value);
    lines->addWidget(Labels::text(value, value.size() > shortValue ? "cardTitle" : "tileValue"));
    if (!tile.caption.empty()) {
        lines->addWidget(Labels::text(qtText(tile.caption), "small"));
    }
    lines->addStretch(1);
    return card;
}

/// Rows as even as they can be: six tiles stand three and three, not five and one.
int columnsFor(int count) {
    const int rows = (count + tilesInRow - 1) / tilesInRow;
    return rows == 0 ? 1 : (count + rows - 1) / rows;
}

}  // namespace

TileStrip::TileStrip() : grid_(new QGridLayout(this)) {
    grid_->setContentsMargins(0, 0, 0, 0);
    grid_->setSpacing(Theme::px(10));
}

void TileStrip::show(const std::vector<Tile>& tiles) {
    setVisible(!tiles.empty());
    if (tiles == tiles_) {
        return;
    }
    tiles_ = tiles;
    while (QLayoutItem* item = grid_->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    const int columns = columnsFor(static_cast<int>(tiles.size()));
    for (int column = 0; column < tilesInRow; ++column) {
        grid_->setColumnStretch(column, column < columns ? 1 : 0);
    }
    int place = 0;
    for (const Tile& tile : tiles) {
        grid_->addWidget(tileCard(tile), place / columns, place % columns);
        ++place;
    }
}

}  // namespace sorvane
