#pragma once

#include <vector>

#include <QFont>
#include <QPointF>
#include <QRectF>

#include "SorvaneMac/Screens/Chart.h"
#include "SorvaneMac/Screens/PathLayout.h"

namespace sorvane {

/// A cubic curve; straight lines are curves too.
struct PathCurve {
    QPointF start;
    QPointF startControl;
    QPointF endControl;
    QPointF end;

    /// Input      from 0 at the start to 1 at the end
    QPointF at(double t) const;
};

/// A path diagram laid out in an area, in units of the design.
struct PathFigure {
    /// Beside the label, inside of a box and of an ellipse.
    static constexpr double boxAir = 16.0;
    static constexpr double ellipseAir = 30.0;

    PathPlaces places;
    std::vector<QRectF> nodes;
    /// One per path.
    std::vector<PathCurve> curves;
    /// How much nearer arcs come to their column for want of width.
    double arcStretch = 1.0;
    /// Of all labels, as large as the rows allow.
    QFont font;

    /// Nodes of one column are joined by arcs at its outer side.
    bool isArc(const PathDiagram::Path& path) const {
        return places.nodes[path.from].column == places.nodes[path.to].column;
    }

    /// Method     lines that would run through a node are led below it
    /// Input      a diagram with at least one node, whose paths join two different ones each
    static PathFigure of(const PathDiagram& diagram, const QRectF& area, const QFont& font);
};

}  // namespace sorvane
