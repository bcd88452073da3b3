#include "SorvaneMac/Shell/ChartLegend.h"

#include <algorithm>

#include <QFontMetricsF>
#include <QPainter>

namespace sorvane {

namespace {

constexpr double edge = 8.0;
constexpr double entryGap = 16.0;
constexpr double markGap = 6.0;
constexpr double lineAir = 5.0;
/// A longer name is cut.
constexpr double widestName = 220.0;

double markRoom(const LegendEntry& entry) {
    return entry.markWidth > 0.0 ? entry.markWidth + markGap : 0.0;
}

}  // namespace

ChartLegend::ChartLegend(std::vector<LegendEntry> entries, const ChartInk& ink)
    : entries_(std::move(entries)), color_(ink.text), font_(ink.font) {
    const QFontMetricsF metrics(font_);
    for (LegendEntry& entry : entries_) {
        entry.text = metrics.elidedText(entry.text, Qt::ElideRight, widestName);
    }
}

double ChartLegend::fit(double width) {
    prepareGeometryChange();
    places_.clear();
    const QFontMetricsF metrics(font_);
    const double line = metrics.height() + lineAir;
    QPointF next(edge, lineAir);
    for (const LegendEntry& entry : entries_) {
        const double wanted = markRoom(entry) + metrics.horizontalAdvance(entry.text);
        const double taken = std::min(wanted + 1.0, width - 2.0 * edge);
        if (next.x() > edge && next.x() + taken > width - edge) {
            next = {edge, next.y() + line};
        }
        places_.emplace_back(next, QSizeF(taken, line));
        next.rx() += taken + entryGap;
    }
    const double height = places_.empty() ? 0.0 : next.y() + line;
    extent_ = QRectF(0.0, 0.0, width, height);
    return height;
}

void ChartLegend::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) {
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setFont(font_);
    for (std::size_t at = 0; at < places_.size(); ++at) {
        const LegendEntry& entry = entries_[at];
        QRectF place = places_[at];
        if (entry.mark) {
            entry.mark(*painter, {place.topLeft(), QSizeF(entry.markWidth, place.height())});
        }
        place.setLeft(place.left() + markRoom(entry));
        painter->setPen(color_);
        painter->drawText(place, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, entry.text);
    }
}

}  // namespace sorvane
