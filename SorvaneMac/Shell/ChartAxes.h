#pragma once

#include <QString>
#include <QStringList>

#include "SorvaneMac/Shell/ChartInk.h"

class QAbstractAxis;
class QAbstractSeries;
class QBarCategoryAxis;
class QChart;
class QValueAxis;

/// Axes in one sober style.
namespace sorvane::ChartAxes {

struct ValueRange {
    double minimum = 0.0;
    double maximum = 1.0;
};

enum class Extent {
    /// Widens the range to the round numbers next to it.
    rounded,
    /// Keeps the range and puts the round numbers inside it.
    exact,
};

/// A number axis over the range, with about five labels at round numbers.
QValueAxis* value(ValueRange range, Extent extent, const QString& title, const ChartInk& ink);

QBarCategoryAxis* categories(const QStringList& labels, const QString& title, const ChartInk& ink);

/// Takes away all but the title; for an axis whose values stand at the bars.
void leaveTitleOnly(QAbstractAxis& axis);

/// Gives a series of the chart its axis at an edge.
void attach(QChart& chart, QAbstractSeries* series, QAbstractAxis* axis, Qt::Alignment edge);

}  // namespace sorvane::ChartAxes
