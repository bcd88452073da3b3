#pragma once

#include <QFont>

#include "SorvaneMac/Screens/Chart.h"

/// How large a chart wants to be, in units of the design.
namespace sorvane::ChartSizes {

/// Fixed for a plot with an upright axis, by the number of rows for all others.
int suitableHeight(const Chart& chart);

/// The width in which the labels of a chart stand whole, within reason.
int suitableWidth(const Chart& chart, const QFont& font);

}  // namespace sorvane::ChartSizes
