#pragma once

#include <QFont>
#include <QRectF>
#include <QSizeF>
#include <QStringList>

#include "SorvaneMac/Shell/ChartInk.h"

class QPainter;

namespace sorvane {

/// The names at the slots of an axis, and the axis's title.
///
/// The axis itself cuts a name by the room of its neighbours and drops one that comes too near. So
/// the names are written here: smaller where rows stand close, over several lines or upright where
/// columns do, cut where they are long, and every n-th where there is no room for all.
class ChartCategoryLabels {
public:
    ChartCategoryLabels(QStringList names,
                        QString title,
                        Qt::AlignmentFlag edge,
                        const ChartInk& ink);

    /// Chooses how the names are written in a chart of a size.
    ///
    /// Returns    the room that they take beside the plot
    double fit(QSizeF size);

    /// Writes them beside the plot.
    void paint(QPainter& painter, const QRectF& plot) const;

private:
    enum class Form { level, wrapped, upright };

    double fitLeft(QSizeF size);
    double fitBottom(QSizeF size);
    void paintLeft(QPainter& painter, const QRectF& plot) const;
    void paintBottom(QPainter& painter, const QRectF& plot) const;
    double widest() const;
    double titleRoom() const;

    QStringList names_;
    QString title_;
    Qt::AlignmentFlag edge_;
    QColor color_;
    QColor titleColor_;
    QFont titleFont_;
    QFont font_;
    Form form_ = Form::level;
    /// What the names take across the axis.
    double depth_ = 0.0;
    /// Every so many names are written.
    qsizetype every_ = 1;
};

}  // namespace sorvane
