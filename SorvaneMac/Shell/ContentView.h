#pragma once

#include <utility>
#include <vector>

#include <QWidget>

#include "SorvaneMac/Screens/ScreenContent.h"

class QLabel;
class QScrollArea;
class QVBoxLayout;

namespace sorvane {

class ActionRow;
class CardView;
class FlowLayout;
class StudioScreens;
class StudioState;
class TileStrip;
struct Workspace;

/// Draws what a screen shows: title, gate or tiles, cards, and the action rows below them.
///
/// A card that has not changed keeps its widgets, and the page keeps its place.
class ContentView final : public QWidget {
public:
    explicit ContentView(Workspace& workspace);
    ~ContentView() override;

    void show(const ScreenContent& content);
    /// Reads anew which findings are staged.
    void refreshActions();

    /// Stages the first finding, where there is one that is not staged yet.
    void stageFirst();

    /// Puts a widget between the tiles and the cards, below those that it put there before; for
    /// screens that show more than cards.
    void insertBelowTiles(QWidget* widget);

private:
    void showHead();
    void showGate();
    void showCards();
    void showActions();

    StudioState& state_;
    StudioScreens& screens_;
    ScreenContent content_;
    QScrollArea* scroll_;
    QVBoxLayout* page_;
    QLabel* title_;
    QLabel* subtitle_;
    QWidget* gate_ = nullptr;
    TileStrip* tiles_;
    QWidget* cardHost_;
    FlowLayout* flow_;
    std::vector<std::pair<Card, CardView*>> cards_;
    QWidget* actionBar_;
    QVBoxLayout* actions_;
    std::vector<ActionRow*> actionRows_;
};

}  // namespace sorvane
