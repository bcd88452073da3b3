#include "SorvaneMac/Screens/PathLayout.h"

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

namespace sorvane {
namespace {

using Shape = PathDiagram::Shape;
using Place = PathPlaces::Place;

void expectNoOverlap(const PathPlaces& places) {
    for (std::size_t a = 0; a < places.nodes.size(); ++a) {
        EXPECT_GE(places.nodes[a].row, 0.0);
        EXPECT_LE(places.nodes[a].row, places.rows - 1.0);
        for (std::size_t b = 0; b < a; ++b) {
            const bool sameColumn = places.nodes[a].column == places.nodes[b].column;
            EXPECT_TRUE(!sameColumn || std::abs(places.nodes[a].row - places.nodes[b].row) >= 1.0)
                << a << " on " << b;
        }
    }
}

TEST(PathLayout, StandsEachLatentNodeBesideItsIndicators) {
    PathDiagram diagram;
    for (std::size_t factor = 0; factor < 8; ++factor) {
        const std::size_t latent = diagram.nodes.size();
        diagram.nodes.push_back({"F", Shape::latent});
        for (int item = 0; item < 5; ++item) {
            diagram.paths.push_back({.from = latent, .to = diagram.nodes.size()});
            diagram.nodes.push_back({"x"});
        }
    }
    const PathPlaces places = PathLayout::places(diagram);
    EXPECT_EQ(places.columns, 2);
    EXPECT_EQ(places.rows, 40);
    EXPECT_EQ(places.nodes[6], (Place{.column = 0, .row = 7.0}));
    EXPECT_EQ(places.nodes[7], (Place{.column = 1, .row = 5.0}));
    expectNoOverlap(places);
}

TEST(PathLayout, KeepsCausesAndSharedItemsApart) {
    const PathDiagram diagram{
        .nodes = {{"age"}, {"F", Shape::latent}, {"x1"}, {"G", Shape::latent}, {"y"}},
        .paths = {{.from = 0, .to = 1},
                  {.from = 1, .to = 2},
                  {.from = 3, .to = 2},
                  {.from = 1, .to = 4},
                  {.from = 4, .to = 3}}};
    const PathPlaces places = PathLayout::places(diagram);
    EXPECT_EQ(places.nodes[0].column, 0);
    EXPECT_EQ(places.nodes[1].column, 1);
    EXPECT_EQ(places.nodes[4].column, 2);
    EXPECT_EQ(places.nodes[3].column, 3);
    EXPECT_EQ(places.nodes[2].column, 4);
    expectNoOverlap(places);
}

/// Whether the straight line between two nodes runs through a third one.
bool isClear(const PathPlaces& places, std::size_t from, std::size_t to) {
    const Place& a = places.nodes[from];
    const Place& b = places.nodes[to];
    return std::ranges::none_of(places.nodes, [&](const Place& place) {
        const double share = (place.column - a.column) / static_cast<double>(b.column - a.column);
        return share > 0.0 && share < 1.0 &&
               std::abs(a.row + share * (b.row - a.row) - place.row) < 0.75;
    });
}

TEST(PathLayout, PutsLatentCausesBeforeTheirEffectsAndLinesPastNodes) {
    PathDiagram diagram;
    for (const std::size_t items : {3U, 4U, 4U}) {
        const std::size_t latent = diagram.nodes.size();
        diagram.nodes.push_back({"F", Shape::latent});
        for (std::size_t item = 0; item < items; ++item) {
            diagram.paths.push_back({.from = latent, .to = diagram.nodes.size()});
            diagram.nodes.push_back({"x"});
        }
    }
    diagram.paths.push_back({.from = 0, .to = 4});
    diagram.paths.push_back({.from = 4, .to = 9});
    diagram.paths.push_back({.from = 0, .to = 9});
    const PathPlaces places = PathLayout::places(diagram);
    EXPECT_EQ(places.columns, 4);
    EXPECT_EQ(places.rows, 11);
    EXPECT_EQ(places.nodes[0].column, 0);
    EXPECT_EQ(places.nodes[4].column, 1);
    EXPECT_EQ(places.nodes[9].column, 2);
    EXPECT_EQ(places.nodes[1].column, 3);
    EXPECT_TRUE(isClear(places, 0, 9));
    expectNoOverlap(places);
}

TEST(PathLayout, PutsALatentOfLatentsBesideTheirMiddle) {
    PathDiagram diagram{.nodes = {{"G", Shape::latent}}};
    for (int factor = 0; factor < 3; ++factor) {
        const std::size_t latent = diagram.nodes.size();
        diagram.nodes.push_back({"F", Shape::latent});
        diagram.paths.push_back({.from = 0, .to = latent});
        for (int item = 0; item < 3; ++item) {
            diagram.paths.push_back({.from = latent, .to = diagram.nodes.size()});
            diagram.nodes.push_back({"x"});
        }
    }
    const PathPlaces places = PathLayout::places(diagram);
    EXPECT_EQ(places.nodes[0], (Place{.column = 0, .row = 4.0}));
    EXPECT_EQ(places.nodes[1].column, 1);
    EXPECT_EQ(places.columns, 3);
    EXPECT_EQ(places.rows, 9);
    expectNoOverlap(places);
}

TEST(PathLayout, LiftsAMediatorOffTheDirectPath) {
    const PathPlaces places = PathLayout::places(
        {.nodes = {{"x"}, {"m"}, {"y"}},
         .paths = {{.from = 0, .to = 1}, {.from = 1, .to = 2}, {.from = 0, .to = 2}}});
    EXPECT_EQ(places.nodes[1], (Place{.column = 1, .row = 0.0}));
    EXPECT_TRUE(isClear(places, 0, 2));
    expectNoOverlap(places);
}

TEST(PathLayout, PutsObservedCausesBeforeTheirEffects) {
    PathDiagram diagram{.nodes = {{"y"}, {"m"}, {"x"}, {"w"}},
                        .paths = {{.from = 2, .to = 1},
                                  {.from = 1, .to = 0},
                                  {.from = 2, .to = 0},
                                  {.from = 3, .to = 1},
                                  {.from = 9, .to = 1}}};
    const PathPlaces places = PathLayout::places(diagram);
    EXPECT_EQ(places.columns, 3);
    EXPECT_EQ(places.nodes[2].column, 0);
    EXPECT_EQ(places.nodes[1].column, 1);
    EXPECT_EQ(places.nodes[0].column, 2);
    expectNoOverlap(places);

    diagram.paths.push_back({.from = 0, .to = 2});
    expectNoOverlap(PathLayout::places(diagram));
    EXPECT_EQ(PathLayout::places({}).rows, 0);
}

}  // namespace
}  // namespace sorvane
