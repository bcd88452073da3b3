#pragma once

#include <vector>

#include "SorvaneMac/Screens/ScreenContent.h"
#include "SorvaneMac/Shell/Page.h"

class QLabel;
class QStackedLayout;
class QVBoxLayout;

namespace sorvane {

class ContentView;
class TileStrip;

/// A screen whose middle is one table that takes all the room that its cards leave; its gate stands
/// alone.
class TablePage : public Page {
public:
    TablePage(StudioScreen screen, Workspace& workspace);

    void refresh() final;

protected:
    /// Brings the table up to date; called only while there are data to show.
    virtual void refreshTable() = 0;

    Workspace& workspace() { return workspace_; }
    QVBoxLayout& column() { return *column_; }

private:
    void showCards(const std::vector<Card>& cards);

    StudioScreen screen_;
    Workspace& workspace_;
    ContentView* empty_;
    QLabel* title_;
    QLabel* subtitle_;
    TileStrip* tiles_;
    QVBoxLayout* cardColumn_;
    std::vector<Card> cards_;
    QVBoxLayout* column_;
    QStackedLayout* stack_;
};

}  // namespace sorvane
