#include "SorvaneMac/Shell/ChartCategoryLabels.h"

#include <algorithm>
#include <cmath>

#include <QFontMetricsF>
#include <QPainter>

namespace sorvane {

namespace {

/// Between the plot and the names, past the ticks; and between the names and the title.
constexpr double gap = 8.0;
constexpr double titleGap = 4.0;
/// Between neighbours.
constexpr double air = 6.0;
/// What names may take of the width at the left, and of the height below.
constexpr double widestShare = 0.36;
constexpr double tallestShare = 0.36;
/// What the other axis takes of the chart, roughly.
constexpr double frame = 60.0;
constexpr double rowFrame = 34.0;
/// The size of type for the height of a row.
constexpr double typeShare = 0.8;
constexpr int smallestType = 7;
constexpr int mostLines = 3;

qsizetype stepFor(double slot, double wanted) {
    return static_cast<qsizetype>(std::ceil(wanted / std::max(slot, 0.1)));
}

}  // namespace

ChartCategoryLabels::ChartCategoryLabels(QStringList names,
                                         QString title,
                                         Qt::AlignmentFlag edge,
                                         const ChartInk& ink)
    : names_(std::move(names)),
      title_(std::move(title)),
      edge_(edge),
      color_(ink.quiet),
      titleColor_(ink.text),
      titleFont_(ink.font),
      font_(ink.font) {}

double ChartCategoryLabels::fit(QSizeF size) {
    const double room = edge_ == Qt::AlignBottom ? fitBottom(size) : fitLeft(size);
    return gap + room + titleRoom();
}

void ChartCategoryLabels::paint(QPainter& painter, const QRectF& plot) const {
    if (edge_ == Qt::AlignBottom) {
        paintBottom(painter, plot);
    } else {
        paintLeft(painter, plot);
    }
}

double ChartCategoryLabels::widest() const {
    const QFontMetricsF metrics(font_);
    double width = 0.0;
    for (const QString& name : names_) {
        width = std::max(width, metrics.horizontalAdvance(name));
    }
    return std::ceil(width) + 1.0;
}

double ChartCategoryLabels::titleRoom() const {
    return title_.isEmpty() ? 0.0 : QFontMetricsF(titleFont_).height() + titleGap;
}

double ChartCategoryLabels::fitLeft(QSizeF size) {
    const double slot = (size.height() - rowFrame) / static_cast<double>(names_.size());
    const int largest = titleFont_.pixelSize();
    const int type = static_cast<int>(slot * typeShare);
    font_.setPixelSize(std::clamp(type, std::min(smallestType, largest), largest));
    every_ = stepFor(slot, font_.pixelSize());
    depth_ = std::min(widest(), size.width() * widestShare);
    return depth_;
}

double ChartCategoryLabels::fitBottom(QSizeF size) {
    const QFontMetricsF metrics(font_);
    const double slot = (size.width() - frame) / static_cast<double>(names_.size()) - air;
    every_ = 1;
    depth_ = metrics.height();
    form_ = Form::level;
    if (widest() <= slot) {
        return depth_;
    }
    form_ = Form::wrapped;
    for (const QString& name : names_) {
        const QRectF lines = metrics.boundingRect(QRectF(0.0, 0.0, slot, 1e4),
                                                  Qt::AlignHCenter | Qt::TextWordWrap, name);
        depth_ = std::max(depth_, std::ceil(lines.height()));
        if (lines.width() > slot || lines.height() > mostLines * metrics.lineSpacing() + 1.0) {
            form_ = Form::upright;
        }
    }
    if (form_ == Form::upright) {
        every_ = stepFor(slot + air, metrics.height());
        depth_ = std::min(widest(), size.height() * tallestShare);
    }
    return depth_;
}

void ChartCategoryLabels::paintLeft(QPainter& painter, const QRectF& plot) const {
    const QFontMetricsF metrics(font_);
    const double slot = plot.height() / static_cast<double>(names_.size());
    painter.setFont(font_);
    painter.setPen(color_);
    for (qsizetype at = 0; at < names_.size(); at += every_) {
        QRectF place(plot.left() - gap - depth_, 0.0, depth_, metrics.height());
        place.moveTop(plot.top() + (static_cast<double>(at) + 0.5) * slot - place.height() / 2.0);
        painter.drawText(place, Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine,
                         metrics.elidedText(names_[at], Qt::ElideRight, depth_));
    }
    if (!title_.isEmpty()) {
        const QFontMetricsF ofTitle(titleFont_);
        painter.save();
        painter.translate(plot.left() - gap - depth_ - titleGap, plot.center().y());
        painter.rotate(-90.0);
        painter.setFont(titleFont_);
        painter.setPen(titleColor_);
        painter.drawText(
            QRectF(-plot.height() / 2.0, -ofTitle.height(), plot.height(), ofTitle.height()),
            Qt::AlignCenter, ofTitle.elidedText(title_, Qt::ElideRight, plot.height()));
        painter.restore();
    }
}

void ChartCategoryLabels::paintBottom(QPainter& painter, const QRectF& plot) const {
    const QFontMetricsF metrics(font_);
    const double slot = plot.width() / static_cast<double>(names_.size());
    painter.setFont(font_);
    painter.setPen(color_);
    for (qsizetype at = 0; at < names_.size(); at += every_) {
        const QPointF top(plot.left() + (static_cast<double>(at) + 0.5) * slot,
                          plot.bottom() + gap);
        if (form_ == Form::upright) {
            painter.save();
            painter.translate(top);
            painter.rotate(-90.0);
            painter.drawText(QRectF(-depth_, -metrics.height() / 2.0, depth_, metrics.height()),
                             Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine,
                             metrics.elidedText(names_[at], Qt::ElideRight, depth_));
            painter.restore();
        } else {
            painter.drawText(QRectF(top.x() - slot / 2.0, top.y(), slot, depth_),
                             Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, names_[at]);
        }
    }
    const QFontMetricsF ofTitle(titleFont_);
    painter.setFont(titleFont_);
    painter.setPen(titleColor_);
    painter.drawText(QRectF(plot.left(), plot.bottom() + gap + depth_ + titleGap, plot.width(),
                            ofTitle.height()),
                     Qt::AlignCenter, ofTitle.elidedText(title_, Qt::ElideRight, plot.width()));
}

}  // namespace sorvane
