#include "SorvaneMac/Shell/TileStrip.h"

#include <algorithm>

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
constexpr int narrowestTile = 128;
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
    QLabel* figure = Labels::text(value, value.size() > shortValue ? "cardTitle" : "tileValue");
    // A long number does not break.
    figure->ensurePolished();
    figure->setMinimumWidth(figure->minimumSizeHint().width());
    lines->addWidget(figure);
    if (!tile.caption.empty()) {
        lines->addWidget(Labels::text(qtText(tile.caption), "small"));
    }
    lines->addStretch(1);
    return card;
}

/// Rows as even as they can be: six tiles stand three and three, not five and one.
int columnsFor(const std::vector<QWidget*>& cards, int width) {
    const int count = static_cast<int>(cards.size());
    int narrowest = Theme::px(narrowestTile);
    for (const QWidget* card : cards) {
        narrowest = std::max(narrowest, card->minimumSizeHint().width());
    }
    const int fitting = std::clamp(width / narrowest, 1, tilesInRow);
    const int rows = (count + fitting - 1) / fitting;
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
    qDeleteAll(cards_);
    cards_.clear();
    for (const Tile& tile : tiles) {
        cards_.push_back(tileCard(tile));
    }
    arrange();
}

void TileStrip::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    arrange();
}

void TileStrip::arrange() {
    const int columns = columnsFor(cards_, width());
    if (columns == columns_ && grid_->count() == static_cast<int>(cards_.size())) {
        return;
    }
    columns_ = columns;
    while (QLayoutItem* item = grid_->takeAt(0)) {
        delete item;
    }
    for (int column = 0; column < tilesInRow; ++column) {
        grid_->setColumnStretch(column, column < columns ? 1 : 0);
    }
    int place = 0;
    for (QWidget* card : cards_) {
        grid_->addWidget(card, place / columns, place % columns);
        ++place;
    }
}

}  // namespace sorvane
