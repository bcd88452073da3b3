#include "SorvaneMac/Screens/PathLayout.h"

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
    EXPECT_EQ(places.nodes[2].column, 1);
    EXPECT_EQ(places.nodes[4].column, 0);
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
