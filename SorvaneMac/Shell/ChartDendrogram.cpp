#include <algorithm>
#include <cmath>

#include <QPainter>

#include "SorvaneMac/Shell/ChartAxes.h"
#include "SorvaneMac/Shell/ChartPlots.h"
#include "SorvaneMac/Shell/ChartRange.h"

namespace sorvane::ChartPlots {

namespace {

using Merge = Dendrogram::Merge;

/// Merges whose parts are there already, each part in one merge.
bool isTree(const Dendrogram& plot) {
    std::vector<bool> isUsed(plot.leaves.size() + plot.merges.size());
    auto next = static_cast<std::int64_t>(plot.leaves.size());
    for (const Merge& merge : plot.merges) {
        for (const std::int64_t part : {merge.first, merge.second}) {
            if (part < 0 || part >= next || isUsed[static_cast<std::size_t>(part)]) {
                return false;
            }
            isUsed[static_cast<std::size_t>(part)] = true;
        }
        ++next;
    }
    return true;
}

/// The leaves so that no branches cross: those under one merge stand together.
std::vector<std::size_t> leafOrder(const Dendrogram& plot) {
    const std::size_t count = plot.leaves.size();
    std::vector<bool> isPart(count + plot.merges.size());
    for (const Merge& merge : plot.merges) {
        isPart[static_cast<std::size_t>(merge.first)] = true;
        isPart[static_cast<std::size_t>(merge.second)] = true;
    }
    std::vector<std::size_t> open;
    for (std::size_t node = 0; node < isPart.size(); ++node) {
        if (!isPart[node]) {
            open.push_back(node);
        }
    }
    std::vector<std::size_t> order;
    while (!open.empty()) {
        const std::size_t node = open.back();
        open.pop_back();
        if (node < count) {
            order.push_back(node);
        } else {
            open.push_back(static_cast<std::size_t>(plot.merges[node - count].second));
            open.push_back(static_cast<std::size_t>(plot.merges[node - count].first));
        }
    }
    return order;
}

struct Knot {
    double slot = 0.0;
    double height = 0.0;
};

std::vector<Knot> knotsOf(const Dendrogram& plot, const std::vector<std::size_t>& order) {
    std::vector<Knot> knots(plot.leaves.size());
    for (std::size_t at = 0; at < order.size(); ++at) {
        knots[order[at]].slot = ChartAxes::slotFromAbove(at, order.size());
    }
    for (const Merge& merge : plot.merges) {
        const Knot& first = knots[static_cast<std::size_t>(merge.first)];
        const Knot& second = knots[static_cast<std::size_t>(merge.second)];
        knots.push_back({(first.slot + second.slot) / 2.0, merge.height});
    }
    return knots;
}

void paintTree(QPainter& painter,
               const ChartPlaces& places,
               const Dendrogram& plot,
               const std::vector<Knot>& knots,
               const ChartInk& ink) {
    for (const Merge& merge : plot.merges) {
        if (!ChartRange::hasPlace(merge.height)) {
            continue;
        }
        const bool isAbove = plot.cut && merge.height > *plot.cut;
        painter.setPen(QPen(isAbove ? ink.quiet : ink.primary, isAbove ? 1.2 : 1.6));
        const Knot& first = knots[static_cast<std::size_t>(merge.first)];
        const Knot& second = knots[static_cast<std::size_t>(merge.second)];
        const QPointF corners[] = {places.at(merge.height, first.slot),
                                   places.at(merge.height, second.slot)};
        painter.drawLine(corners[0], corners[1]);
        for (const auto& [knot, corner] :
             {std::pair(first, corners[0]), std::pair(second, corners[1])}) {
            if (ChartRange::hasPlace(knot.height)) {
                painter.drawLine(places.at(knot.height, knot.slot), corner);
            }
        }
    }
    if (plot.cut) {
        const double x = places.at(*plot.cut, 0.0).x();
        painter.setPen(QPen(ink.apart, 1.4, Qt::DashLine));
        painter.drawLine(QPointF(x, places.area().top()), QPointF(x, places.area().bottom()));
    }
}

}  // namespace

void add(ChartCanvas& canvas, const Dendrogram& plot) {
    if (plot.leaves.empty() || !isTree(plot)) {
        return;
    }
    const std::vector<std::size_t> order = leafOrder(plot);
    std::vector<std::string> labels;
    for (const std::size_t leaf : order) {
        labels.push_back(plot.leaves[leaf]);
    }
    ValueRange range{0.0, 0.0};
    for (const Merge& merge : plot.merges) {
        ChartRange::include(range, merge.height);
    }
    ChartRange::include(range, plot.cut.value_or(0.0));
    range = range.minimum == range.maximum ? ValueRange{0.0, 1.0} : range;
    QAbstractSeries& scale = canvas.addScale();
    ChartAxes::addCategories(canvas, scale, labels, Qt::AlignLeft);
    ChartAxes::addNumbers(canvas, scale, {.range = range}, Qt::AlignBottom);
    canvas.paint(&scale, [plot, knots = knotsOf(plot, order), ink = canvas.ink](
                             QPainter& painter, const ChartPlaces& places) {
        paintTree(painter, places, plot, knots, ink);
    });
}

}  // namespace sorvane::ChartPlots
