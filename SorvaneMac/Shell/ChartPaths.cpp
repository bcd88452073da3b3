#include <algorithm>
#include <array>

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include "SorvaneMac/Shell/BreakableText.h"
#include "SorvaneMac/Shell/ChartPlots.h"
#include "SorvaneMac/Shell/PathFigure.h"
#include "SorvaneMac/Shell/QtText.h"

namespace sorvane::ChartPlots {

namespace {

using Arrow = PathDiagram::Arrow;
using Shape = PathDiagram::Shape;

/// A node's label is set no smaller than this for want of width.
constexpr int smallestLabel = 8;
constexpr double arrowLength = 8.0;
constexpr double arrowHalf = 3.4;
/// Where along a path its label may stand, the best place first: towards the end, where a fan is
/// wide.
constexpr std::array<double, 8> labelPlaces = {0.66, 0.5, 0.58, 0.74, 0.42, 0.34, 0.82, 0.26};

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

void paintPath(QPainter& painter, const PathCurve& curve, Arrow arrow, const ChartInk& ink) {
    QPainterPath line(curve.start);
    line.cubicTo(curve.startControl, curve.endControl, curve.end);
    painter.setPen(QPen(ink.quiet, 1.2));
    painter.drawPath(line);
    paintArrow(painter, curve.endControl, curve.end, ink.quiet);
    if (arrow == Arrow::bidirected) {
        paintArrow(painter, curve.startControl, curve.start, ink.quiet);
    }
}

/// A label and the place that it takes.
struct PathLabel {
    QRectF place;
    QString text;
};

/// Puts the labels of paths where they hide no node and no other label, and few lines.
class PathLabels {
public:
    /// With more paths nobody reads the labels, and to weigh their places would take long.
    static constexpr std::size_t mostWeighed = 200;

    explicit PathLabels(const PathFigure& figure) : figure_(figure), metrics_(figure.font) {}

    /// Input      `isArc`: an arc is labelled in its middle, which no other one shares
    void add(std::size_t path, const QString& text, bool isArc) {
        if (text.isEmpty()) {
            return;
        }
        const PathCurve& curve = figure_.curves[path];
        QRectF best = placeAt(curve.at(isArc ? 0.5 : labelPlaces.front()), text);
        const bool stays = figure_.curves.size() > mostWeighed || (isArc && isFree(best));
        labels_.push_back({stays ? best : leastHiding(best, path, text), text});
    }

    const std::vector<PathLabel>& labels() const { return labels_; }

private:
    QRectF placeAt(QPointF centre, const QString& text) const {
        QRectF place(0.0, 0.0, metrics_.horizontalAdvance(text) + 4.0, metrics_.ascent());
        place.moveCenter(centre);
        return place;
    }

    /// Input      `wanted`: taken where no other place is better
    QRectF leastHiding(QRectF wanted, std::size_t path, const QString& text) const {
        double least = hidden(wanted, path);
        for (const double t : labelPlaces) {
            const QRectF place = placeAt(figure_.curves[path].at(t), text);
            const double cost = least > 0.0 ? hidden(place, path) : least;
            if (cost < least) {
                least = cost;
                wanted = place;
            }
        }
        return wanted;
    }

    bool isFree(const QRectF& place) const {
        const auto isApart = [&place](const QRectF& other) {
            return !other.intersects(place);
        };
        return std::ranges::all_of(figure_.nodes, isApart) &&
               std::ranges::all_of(labels_, isApart, &PathLabel::place);
    }

    /// The other lines that a label would hide; a node or label counts as very many.
    double hidden(const QRectF& place, std::size_t path) const {
        constexpr double veryMany = 1000.0;
        constexpr int steps = 24;
        double count = isFree(place) ? 0.0 : veryMany;
        for (std::size_t other = 0; other < figure_.curves.size(); ++other) {
            for (int step = 0; other != path && step <= steps; ++step) {
                if (place.contains(figure_.curves[other].at(static_cast<double>(step) / steps))) {
                    count += 1.0;
                    break;
                }
            }
        }
        return count;
    }

    const PathFigure& figure_;
    QFontMetricsF metrics_;
    std::vector<PathLabel> labels_;
};

/// Over a ground of its own, so that lines do not run through it.
void paintLabel(QPainter& painter, const PathLabel& label, const ChartInk& ink) {
    painter.fillRect(label.place, ink.ground);
    painter.setPen(ink.text);
    painter.drawText(label.place.adjusted(-4.0, -4.0, 4.0, 4.0), Qt::AlignCenter, label.text);
}

bool fits(const QString& text, const QFont& font, const QSizeF& room) {
    const QRectF area(0.0, 0.0, room.width(), 1e6);
    const QRectF taken = QFontMetricsF(font).boundingRect(area, Qt::TextWordWrap, text);
    return taken.width() <= room.width() && taken.height() <= room.height();
}

/// A label that has no room on one line is set on several or smaller, then loses its middle, as names
/// of items often differ at their end alone.
void paintNodeLabel(QPainter& painter,
                    const QRectF& place,
                    const QString& label,
                    const QSizeF& room) {
    QFont font = painter.font();
    const int smallest = std::min(smallestLabel, font.pixelSize());
    QString text = label;
    if (QFontMetricsF(font).horizontalAdvance(label) > room.width()) {
        text = BreakableText::of(label);
        while (font.pixelSize() > smallest && !fits(text, font, room)) {
            font.setPixelSize(font.pixelSize() - 1);
        }
        if (!fits(text, font, room)) {
            text = QFontMetricsF(font).elidedText(label, Qt::ElideMiddle, room.width());
        }
    }
    QRectF box(QPointF(), QSizeF(room.width(), place.height()));
    box.moveCenter(place.center());
    painter.save();
    painter.setFont(font);
    painter.drawText(box, Qt::AlignCenter | Qt::TextWordWrap, text);
    painter.restore();
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
    const double air = (isLatent ? PathFigure::ellipseAir : PathFigure::boxAir) / 2.0;
    // The lines of a label are shorter above and below the middle of an ellipse: it has but one.
    const double height = isLatent ? painter.fontMetrics().height() : place.height();
    paintNodeLabel(painter, place, qtText(node.label), {place.width() - air, height});
}

/// Less the paths to nodes that are not there.
PathDiagram wholePart(PathDiagram diagram) {
    std::erase_if(diagram.paths, [count = diagram.nodes.size()](const PathDiagram::Path& path) {
        return path.from >= count || path.to >= count || path.from == path.to;
    });
    return diagram;
}

/// Input      a diagram with whole paths
void paintDiagram(QPainter& painter,
                  const QRectF& area,
                  const PathDiagram& diagram,
                  const ChartInk& ink) {
    const PathFigure figure = PathFigure::of(diagram, area, ink.font);
    painter.setFont(figure.font);
    PathLabels labels(figure);
    for (std::size_t at = 0; at < diagram.paths.size(); ++at) {
        const PathDiagram::Path& path = diagram.paths[at];
        paintPath(painter, figure.curves[at], path.arrow, ink);
        labels.add(at, qtText(path.label), figure.isArc(path));
    }
    for (const PathLabel& label : labels.labels()) {
        paintLabel(painter, label, ink);
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
    canvas.paint(nullptr, [plot = wholePart(plot), ink = canvas.ink](QPainter& painter,
                                                                     const ChartPlaces& places) {
        paintDiagram(painter, places.area(), plot, ink);
    });
}

}  // namespace sorvane::ChartPlots
