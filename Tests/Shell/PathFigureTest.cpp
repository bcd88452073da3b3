#include "SorvaneMac/Shell/PathFigure.h"

#include <cmath>
#include <utility>
#include <vector>

#include <QFont>

#include <gtest/gtest.h>

#include "Tests/Shell/ChartGallery.h"

namespace sorvane {
namespace {

using Arrow = PathDiagram::Arrow;
using Shape = PathDiagram::Shape;

/// The factor model with arrows between its factors in place of their covariances.
PathDiagram structural(int factors,
                       int itemsEach,
                       const std::vector<std::pair<std::size_t, std::size_t>>& arrows) {
    PathDiagram diagram = factorModel(factors, itemsEach);
    std::erase_if(diagram.paths, [](const auto& path) { return path.arrow == Arrow::bidirected; });
    const auto node = [itemsEach](std::size_t factor) {
        return factor * (static_cast<std::size_t>(itemsEach) + 1);
    };
    for (const auto& [from, to] : arrows) {
        diagram.paths.push_back({.from = node(from), .to = node(to)});
    }
    return diagram;
}

/// The factor model under a factor of factors.
PathDiagram secondOrder(int factors, int itemsEach) {
    PathDiagram diagram = structural(factors, itemsEach, {});
    const std::size_t general = diagram.nodes.size();
    diagram.nodes.push_back({"General", Shape::latent});
    for (std::size_t node = 0; node < general; ++node) {
        if (diagram.nodes[node].shape == Shape::latent) {
            diagram.paths.push_back({.from = general, .to = node});
        }
    }
    return diagram;
}

PathDiagram observed() {
    return {.nodes = {{"mpg"}, {"hp"}, {"wt"}, {"qsec"}, {"disp"}, {"cyl"}},
            .paths = {
                {1, 0}, {2, 0}, {3, 0}, {4, 1}, {5, 1}, {4, 2}, {1, 3}, {4, 5, Arrow::bidirected}}};
}

TEST(PathFigure, KeepsNodesApartInsideTheAreaAndLinesOffThem) {
    const std::vector<std::pair<std::string, PathDiagram>> diagrams = {
        {"8 factors of 5 items", factorModel(8, 5)},
        {"second order", secondOrder(8, 5)},
        {"three stages", structural(3, 4, {{0, 1}, {1, 2}, {0, 2}})},
        {"eight stages",
         structural(
             8, 5,
             {{0, 3}, {1, 3}, {2, 3}, {3, 4}, {0, 4}, {3, 5}, {4, 6}, {5, 6}, {6, 7}, {1, 7}})},
        {"no latent variables", observed()},
    };
    QFont font;
    font.setPixelSize(12);
    const QRectF area(0.0, 0.0, 650.0, 700.0);
    for (const auto& [name, diagram] : diagrams) {
        SCOPED_TRACE(name);
        const PathFigure figure = PathFigure::of(diagram, area, font);
        ASSERT_EQ(figure.curves.size(), diagram.paths.size());
        for (std::size_t a = 0; a < figure.nodes.size(); ++a) {
            EXPECT_TRUE(area.contains(figure.nodes[a])) << a;
            for (std::size_t b = 0; b < a; ++b) {
                EXPECT_FALSE(figure.nodes[a].intersects(figure.nodes[b])) << a << " on " << b;
            }
            for (std::size_t at = 0; at < diagram.paths.size(); ++at) {
                const PathDiagram::Path& path = diagram.paths[at];
                for (double t = 0.02; t < 1.0 && path.from != a && path.to != a; t += 0.02) {
                    ASSERT_FALSE(figure.nodes[a].contains(figure.curves[at].at(t)))
                        << path.from << " to " << path.to << " through " << a;
                }
            }
        }
    }
}

TEST(PathFigure, GivesEachOfTwoPathsBetweenNeighboursItsOwnArc) {
    const PathDiagram loop{
        .nodes = {{"y"}, {"z"}, {"w"}},
        .paths = {{2, 0}, {2, 1}, {0, 1, Arrow::bidirected}, {1, 0, Arrow::bidirected}}};
    QFont font;
    font.setPixelSize(12);
    const PathFigure figure = PathFigure::of(loop, {0.0, 0.0, 400.0, 200.0}, font);
    EXPECT_GT(std::abs(figure.curves[2].at(0.5).x() - figure.curves[3].at(0.5).x()), 10.0);
}

}  // namespace
}  // namespace sorvane
