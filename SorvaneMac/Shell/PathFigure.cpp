#include "SorvaneMac/Shell/PathFigure.h"

#include <algorithm>
#include <cmath>

#include <QFontMetricsF>
#include <QLineF>

#include "SorvaneMac/Shell/QtText.h"

namespace sorvane {

namespace {

using Shape = PathDiagram::Shape;

constexpr double tallestNode = 30.0;
/// A node takes this part of its row, type that of the row's height.
constexpr double nodeShare = 0.8;
constexpr double typeShare = 0.62;
constexpr int smallestType = 6;
/// A node takes at most this part of the width, and of the share that its column has of it; the arcs
/// beside a column that one.
constexpr double widestNode = 0.28;
constexpr double columnShare = 0.55;
constexpr double widestArc = 0.24;
/// How far the arc between neighbours stands out, and each further one more.
constexpr double nearArc = 16.0;
constexpr double arcStep = 20.0;
constexpr double arcLabelRoom = 20.0;
/// Between the middle of a line and a node that it passes.
constexpr double lineAir = 3.0;

int columnOf(const PathFigure& figure, std::size_t node) {
    return figure.places.nodes[node].column;
}

bool standsRight(const PathFigure& figure, std::size_t node) {
    return figure.places.columns > 1 && columnOf(figure, node) == figure.places.columns - 1;
}

/// How far an arc stands out: the more nodes it passes, the further, and one step further for each
/// path before it that joins the same two.
double arcDepth(const PathDiagram& diagram, const PathFigure& figure, std::size_t at) {
    const PathDiagram::Path& path = diagram.paths[at];
    const PathPlaces::Place& from = figure.places.nodes[path.from];
    const PathPlaces::Place& to = figure.places.nodes[path.to];
    const auto [low, high] = std::minmax(from.row, to.row);
    int steps = 0;
    for (const PathPlaces::Place& place : figure.places.nodes) {
        steps += place.column == from.column && place.row > low && place.row < high ? 1 : 0;
    }
    for (std::size_t before = 0; before < at; ++before) {
        const PathDiagram::Path& other = diagram.paths[before];
        steps += std::minmax(other.from, other.to) == std::minmax(path.from, path.to) ? 1 : 0;
    }
    return (nearArc + arcStep * steps) * figure.arcStretch;
}

double deepestArc(const PathDiagram& diagram, const PathFigure& figure, bool right) {
    double deepest = 0.0;
    for (std::size_t at = 0; at < diagram.paths.size(); ++at) {
        const PathDiagram::Path& path = diagram.paths[at];
        if (figure.isArc(path) && standsRight(figure, path.from) == right) {
            deepest = std::max(deepest, arcDepth(diagram, figure, at));
        }
    }
    return deepest;
}

std::vector<double> columnWidths(const PathDiagram& diagram,
                                 const PathFigure& figure,
                                 double widest) {
    const QFontMetricsF metrics(figure.font);
    std::vector<double> widths(static_cast<std::size_t>(figure.places.columns));
    for (std::size_t node = 0; node < diagram.nodes.size(); ++node) {
        const bool isLatent = diagram.nodes[node].shape == Shape::latent;
        double& width = widths[static_cast<std::size_t>(columnOf(figure, node))];
        const double wanted = metrics.horizontalAdvance(qtText(diagram.nodes[node].label)) +
                              (isLatent ? PathFigure::ellipseAir : PathFigure::boxAir);
        width = std::min(std::max(width, wanted), widest);
    }
    return widths;
}

PathFigure nodesIn(const PathDiagram& diagram, const QRectF& area, const QFont& font) {
    PathFigure figure{
        .places = PathLayout::places(diagram), .nodes = {}, .curves = {}, .font = font};
    const double row = area.height() / std::max(figure.places.rows, 1);
    figure.font.setPixelSize(std::clamp(static_cast<int>(row * typeShare),
                                        std::min(smallestType, font.pixelSize()),
                                        font.pixelSize()));
    const double leftArc = deepestArc(diagram, figure, false);
    const double rightArc = deepestArc(diagram, figure, true);
    const double deepest = std::max({leftArc, rightArc, 1.0});
    figure.arcStretch = std::min(1.0, area.width() * widestArc / deepest);
    const auto roomFor = [&](double arc) {
        return arc > 0.0 ? arc * figure.arcStretch + arcLabelRoom : 2.0;
    };
    const double free = area.width() - roomFor(leftArc) - roomFor(rightArc);
    const std::vector<double> widths =
        columnWidths(diagram, figure,
                     std::min(area.width() * widestNode,
                              free * columnShare / std::max(figure.places.columns - 1, 1)));
    const double left = area.left() + roomFor(leftArc) + widths.front() / 2.0;
    const double right = area.right() - roomFor(rightArc) - widths.back() / 2.0;
    const double step =
        figure.places.columns > 1 ? (right - left) / (figure.places.columns - 1) : 0.0;
    const double first = figure.places.columns > 1 ? left : std::max(left, area.center().x());
    const double height = std::min(tallestNode, row * nodeShare);
    for (const PathPlaces::Place& place : figure.places.nodes) {
        QRectF node(0.0, 0.0, widths[static_cast<std::size_t>(place.column)], height);
        node.moveCenter({first + step * place.column, area.top() + row * (place.row + 0.5)});
        figure.nodes.push_back(node);
    }
    return figure;
}

PathCurve arcBetween(const PathDiagram& diagram, const PathFigure& figure, std::size_t at) {
    const PathDiagram::Path& path = diagram.paths[at];
    const double depth = arcDepth(diagram, figure, at);
    const bool right = standsRight(figure, path.from);
    const QRectF& from = figure.nodes[path.from];
    const QRectF& to = figure.nodes[path.to];
    const double side = right ? from.right() : from.left();
    const double out = right ? depth : -depth;
    const QPointF start(side, from.center().y());
    const QPointF end(side, to.center().y());
    // A cubic curve reaches three quarters of the way to its control points.
    const QPointF control(out * 4.0 / 3.0, 0.0);
    return {start, start + control, end + control, end};
}

bool crossesNode(const PathFigure& figure, const PathDiagram::Path& path, const QLineF& line) {
    for (std::size_t node = 0; node < figure.nodes.size(); ++node) {
        const QRectF place = figure.nodes[node].adjusted(0.0, -lineAir, 0.0, lineAir);
        if (node == path.from || node == path.to || line.dx() == 0.0) {
            continue;
        }
        const double enters = (place.left() - line.x1()) / line.dx();
        const double leaves = (place.right() - line.x1()) / line.dx();
        const double first = std::clamp(std::min(enters, leaves), 0.0, 1.0);
        const double last = std::clamp(std::max(enters, leaves), 0.0, 1.0);
        const auto [high, low] = std::minmax({line.pointAt(first).y(), line.pointAt(last).y()});
        if (first < last && high < place.bottom() && low > place.top()) {
            return true;
        }
    }
    return false;
}

PathCurve lineBetween(const PathFigure& figure, const PathDiagram::Path& path) {
    const QRectF& from = figure.nodes[path.from];
    const QRectF& to = figure.nodes[path.to];
    const bool forward = from.center().x() < to.center().x();
    const QPointF start(forward ? from.right() : from.left(), from.center().y());
    const QPointF end(forward ? to.left() : to.right(), to.center().y());
    const QLineF line(start, end);
    if (!crossesNode(figure, path, line)) {
        return {start, line.pointAt(1.0 / 3.0), line.pointAt(2.0 / 3.0), end};
    }
    const QPointF leaving(from.center().x(), from.bottom());
    const QPointF arriving(to.center().x(), to.bottom());
    const QPointF below(0.0, from.height() * 1.8);
    return {leaving, leaving + below, arriving + below, arriving};
}

}  // namespace

QPointF PathCurve::at(double t) const {
    const double s = 1.0 - t;
    return s * s * s * start + 3.0 * s * s * t * startControl + 3.0 * s * t * t * endControl +
           t * t * t * end;
}

PathFigure PathFigure::of(const PathDiagram& diagram, const QRectF& area, const QFont& font) {
    PathFigure figure = nodesIn(diagram, area, font);
    for (std::size_t at = 0; at < diagram.paths.size(); ++at) {
        figure.curves.push_back(figure.isArc(diagram.paths[at])
                                    ? arcBetween(diagram, figure, at)
                                    : lineBetween(figure, diagram.paths[at]));
    }
    return figure;
}

}  // namespace sorvane
