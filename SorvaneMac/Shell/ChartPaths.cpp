#include <algorithm>
#include <cmath>

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include "SorvaneMac/Screens/PathLayout.h"
#include "SorvaneMac/Shell/ChartPlots.h"
#include "SorvaneMac/Shell/QtText.h"

namespace sorvane::ChartPlots {

namespace {

using Arrow = PathDiagram::Arrow;
using Shape = PathDiagram::Shape;

constexpr double tallestNode = 30.0;
/// A node takes this part of its row, type that of the row's height.
constexpr double nodeShare = 0.8;
constexpr double typeShare = 0.62;
constexpr int smallestType = 6;
/// Beside the label, inside of a box and of an ellipse.
constexpr double boxAir = 16.0;
constexpr double ellipseAir = 30.0;
/// A node takes at most this part of the width, and the arcs beside a column that one.
constexpr double widestNode = 0.28;
constexpr double widestArc = 0.24;
/// How far the arc between neighbours stands out, and each further one more.
constexpr double nearArc = 16.0;
constexpr double arcStep = 20.0;
constexpr double arcLabelRoom = 20.0;
constexpr double arrowLength = 8.0;
constexpr double arrowHalf = 3.4;
/// Where along a straight path its label stands: towards the end, where a fan is wide.
constexpr double labelPlace = 0.66;

/// The diagram laid out in an area.
struct PathFigure {
    PathPlaces places;
    std::vector<QRectF> nodes;
    double arcStretch = 1.0;
    QFont font;
};

bool isWhole(const PathDiagram& diagram, const PathDiagram::Path& path) {
    return path.from < diagram.nodes.size() && path.to < diagram.nodes.size() &&
           path.from != path.to;
}

int columnOf(const PathFigure& figure, std::size_t node) {
    return figure.places.nodes[node].column;
}

/// Nodes of one column are joined by arcs at its outer side.
bool isArc(const PathFigure& figure, const PathDiagram::Path& path) {
    return columnOf(figure, path.from) == columnOf(figure, path.to);
}

bool standsRight(const PathFigure& figure, std::size_t node) {
    return figure.places.columns > 1 && columnOf(figure, node) == figure.places.columns - 1;
}

/// How far an arc stands out: the more nodes it passes, the further.
double arcDepth(const PathFigure& figure, const PathDiagram::Path& path) {
    const PathPlaces::Place& from = figure.places.nodes[path.from];
    const PathPlaces::Place& to = figure.places.nodes[path.to];
    const auto [low, high] = std::minmax(from.row, to.row);
    int passed = 0;
    for (const PathPlaces::Place& place : figure.places.nodes) {
        passed += place.column == from.column && place.row > low && place.row < high ? 1 : 0;
    }
    return (nearArc + arcStep * passed) * figure.arcStretch;
}

double deepestArc(const PathDiagram& diagram, const PathFigure& figure, bool right) {
    double deepest = 0.0;
    for (const PathDiagram::Path& path : diagram.paths) {
        if (isWhole(diagram, path) && isArc(figure, path) &&
            standsRight(figure, path.from) == right) {
            deepest = std::max(deepest, arcDepth(figure, path));
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
                              (isLatent ? ellipseAir : boxAir);
        width = std::min(std::max(width, wanted), widest);
    }
    return widths;
}

PathFigure laidOut(const PathDiagram& diagram, const QRectF& area, const QFont& font) {
    PathFigure figure{.places = PathLayout::places(diagram), .nodes = {}, .font = font};
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
    const std::vector<double> widths = columnWidths(diagram, figure, area.width() * widestNode);
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

struct Curve {
    QPointF start;
    QPointF startControl;
    QPointF endControl;
    QPointF end;
    QPointF label;
};

Curve arcBetween(const PathFigure& figure, const PathDiagram::Path& path) {
    const bool right = standsRight(figure, path.from);
    const QRectF& from = figure.nodes[path.from];
    const QRectF& to = figure.nodes[path.to];
    const double side = right ? from.right() : from.left();
    const double out = right ? arcDepth(figure, path) : -arcDepth(figure, path);
    const QPointF start(side, from.center().y());
    const QPointF end(side, to.center().y());
    // A cubic curve reaches three quarters of the way to its control points.
    const QPointF control(out * 4.0 / 3.0, 0.0);
    return {start, start + control, end + control, end,
            QPointF(side + out, (start.y() + end.y()) / 2.0)};
}

bool crossesNode(const PathFigure& figure, const PathDiagram::Path& path, QLineF line) {
    for (std::size_t node = 0; node < figure.nodes.size(); ++node) {
        const QRectF& place = figure.nodes[node];
        const double along = (place.center().x() - line.x1()) / line.dx();
        const bool isBetween = along > 0.0 && along < 1.0;
        if (node != path.from && node != path.to && isBetween &&
            std::abs(line.pointAt(along).y() - place.center().y()) < place.height()) {
            return true;
        }
    }
    return false;
}

Curve lineBetween(const PathFigure& figure, const PathDiagram::Path& path) {
    const QRectF& from = figure.nodes[path.from];
    const QRectF& to = figure.nodes[path.to];
    const bool forward = from.center().x() < to.center().x();
    const QPointF start(forward ? from.right() : from.left(), from.center().y());
    const QPointF end(forward ? to.left() : to.right(), to.center().y());
    const QLineF line(start, end);
    if (!crossesNode(figure, path, line)) {
        return {start, start, end, end, line.pointAt(labelPlace)};
    }
    const QPointF leaving(from.center().x(), from.bottom());
    const QPointF arriving(to.center().x(), to.bottom());
    const QPointF below(0.0, from.height() * 1.8);
    const QPointF label = QLineF(leaving, arriving).center() + below * 0.75;
    return {leaving, leaving + below, arriving + below, arriving, label};
}

void paintArrow(QPainter& painter, QPointF from, QPointF tip, const QColor& color) {
    QLineF back(tip, from);
    back.setLength(arrowLength);
    QLineF across = back.normalVector();
    across.setLength(arrowHalf);
    const QPointF half = across.p2() - across.p1();
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawPolygon(QPolygonF({tip, back.p2() + half, back.p2() - half}));
    painter.setBrush(Qt::NoBrush);
}

void paintPath(QPainter& painter, const Curve& curve, Arrow arrow, const ChartInk& ink) {
    QPainterPath line(curve.start);
    line.cubicTo(curve.startControl, curve.endControl, curve.end);
    painter.setPen(QPen(ink.quiet, 1.2));
    painter.drawPath(line);
    const bool isStraight = curve.startControl == curve.start;
    paintArrow(painter, isStraight ? curve.start : curve.endControl, curve.end, ink.quiet);
    if (arrow == Arrow::bidirected) {
        paintArrow(painter, isStraight ? curve.end : curve.startControl, curve.start, ink.quiet);
    }
}

/// Over a ground of its own, so that lines do not run through it.
void paintLabel(QPainter& painter, QPointF centre, const QString& text, const ChartInk& ink) {
    if (text.isEmpty()) {
        return;
    }
    const QFontMetricsF metrics(painter.font());
    QRectF place(0.0, 0.0, metrics.horizontalAdvance(text) + 4.0, metrics.ascent());
    place.moveCenter(centre);
    painter.fillRect(place, ink.ground);
    painter.setPen(ink.text);
    painter.drawText(place.adjusted(-4.0, -4.0, 4.0, 4.0), Qt::AlignCenter, text);
}

void paintNode(QPainter& painter,
               const QRectF& place,
               const PathDiagram::Node& node,
               const ChartInk& ink) {
    const bool isLatent = node.shape == Shape::latent;
    painter.setPen(QPen(ink.text, 1.2));
    painter.setBrush(isLatent ? ink.primaryFill : ink.ground);
    isLatent ? painter.drawEllipse(place) : painter.drawRect(place);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(ink.text);
    const double room = place.width() - (isLatent ? ellipseAir / 2.0 : boxAir / 2.0);
    const QString label =
        QFontMetricsF(painter.font()).elidedText(qtText(node.label), Qt::ElideRight, room);
    painter.drawText(place, Qt::AlignCenter, label);
}

void paintDiagram(QPainter& painter,
                  const QRectF& area,
                  const PathDiagram& diagram,
                  const ChartInk& ink) {
    const PathFigure figure = laidOut(diagram, area, ink.font);
    painter.setFont(figure.font);
    std::vector<std::pair<QPointF, QString>> labels;
    for (const PathDiagram::Path& path : diagram.paths) {
        if (isWhole(diagram, path)) {
            const Curve curve =
                isArc(figure, path) ? arcBetween(figure, path) : lineBetween(figure, path);
            paintPath(painter, curve, path.arrow, ink);
            labels.emplace_back(curve.label, qtText(path.label));
        }
    }
    for (const auto& [place, text] : labels) {
        paintLabel(painter, place, text, ink);
    }
    for (std::size_t node = 0; node < figure.nodes.size(); ++node) {
        paintNode(painter, figure.nodes[node], diagram.nodes[node], ink);
    }
}

}  // namespace

void add(ChartCanvas& canvas, const PathDiagram& plot) {
    if (plot.nodes.empty()) {
        return;
    }
    canvas.addScale();
    canvas.paint(nullptr, [plot, ink = canvas.ink](QPainter& painter, const ChartPlaces& places) {
        paintDiagram(painter, places.area(), plot, ink);
    });
}

}  // namespace sorvane::ChartPlots
