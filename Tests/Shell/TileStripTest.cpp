#include "SorvaneMac/Shell/TileStrip.h"

#include <map>
#include <set>

#include <QFrame>
#include <QLabel>

#include <gtest/gtest.h>

#include "SorvaneMac/Shell/Theme.h"
#include "Tests/Shell/OffscreenApplication.h"

namespace sorvane {
namespace {

class TileStripTest : public testing::Test {
protected:
    TileStripTest() {
        offscreenApplication();
        strip_.setVisible(true);
    }
    void showTiles(int count) {
        std::vector<Tile> tiles;
        for (int at = 0; at < count; ++at) {
            tiles.push_back({"Figure " + std::to_string(at), "1.23", at == 1 ? "of 12" : ""});
        }
        strip_.show(tiles);
    }
    QList<QFrame*> cards() {
        QList<QFrame*> found;
        for (QFrame* each : strip_.findChildren<QFrame*>()) {
            if (each->property("card").toBool()) {
                found << each;
            }
        }
        return found;
    }
    /// How many tiles stand in each row, from top to bottom.
    std::vector<std::size_t> rows(int width) {
        strip_.resize(width, 400);
        QCoreApplication::processEvents();
        std::map<int, std::size_t> tilesAt;
        for (const QFrame* card : cards()) {
            ++tilesAt[card->y()];
        }
        std::vector<std::size_t> found;
        for (const auto& [y, count] : tilesAt) {
            found.push_back(count);
        }
        return found;
    }

    TileStrip strip_;
};

TEST_F(TileStripTest, StandsInRowsAsEvenAsTheyCanBe) {
    const struct {
        int line;
        int tiles;
        int width;
        std::vector<std::size_t> rows;
    } cases[] = {
        {__LINE__, 3, 700, {3}},       {__LINE__, 5, 700, {5}},       {__LINE__, 6, 700, {3, 3}},
        {__LINE__, 8, 700, {4, 4}},    {__LINE__, 7, 400, {3, 3, 1}}, {__LINE__, 4, 400, {2, 2}},
        {__LINE__, 3, 120, {1, 1, 1}}, {__LINE__, 5, 2000, {5}},
    };
    for (const auto& each : cases) {
        showTiles(each.tiles);
        EXPECT_EQ(rows(each.width), each.rows) << each.line;
    }
}

TEST_F(TileStripTest, GivesALongNumberTheRoomItNeeds) {
    std::vector<Tile> tiles(5, Tile{"Figure", "1.23", ""});
    strip_.show(tiles);
    const int width = Theme::px(700);
    EXPECT_EQ(rows(width), std::vector<std::size_t>{5});
    tiles[2].value = "28756012371110.9500000";
    strip_.show(tiles);
    EXPECT_GT(rows(width).size(), 1U);
    for (const QFrame* card : cards()) {
        EXPECT_GE(card->width(), card->minimumSizeHint().width());
    }
}

TEST_F(TileStripTest, AreOfOneWidthAndSpokenWhole) {
    showTiles(4);
    rows(900);
    std::set<int> widths;
    for (const QFrame* card : cards()) {
        widths.insert(card->width());
    }
    EXPECT_LE(*widths.rbegin() - *widths.begin(), 1);
    EXPECT_EQ(cards()[0]->accessibleName(), "Figure 0: 1.23");
    EXPECT_EQ(cards()[1]->accessibleName(), "Figure 1: 1.23, of 12");
}

TEST_F(TileStripTest, GoesWithItsLastTile) {
    showTiles(2);
    EXPECT_TRUE(strip_.isVisible());
    const QFrame* kept = cards().front();
    showTiles(2);
    EXPECT_EQ(cards().front(), kept) << "nothing is made anew where nothing changed";
    showTiles(0);
    EXPECT_FALSE(strip_.isVisible());
    EXPECT_TRUE(cards().empty());
    showTiles(3);
    EXPECT_TRUE(strip_.isVisible());
    EXPECT_EQ(cards().size(), 3);
}

}  // namespace
}  // namespace sorvane
