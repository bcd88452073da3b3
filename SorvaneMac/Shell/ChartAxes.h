#pragma once

#include <string>
#include <vector>

#include <Qt>

#include "SorvaneMac/Shell/ChartCanvas.h"

class QValueAxis;

/// Axes in one sober style. An axis at the bottom takes the chart's label of x, one at the left
/// that of y.
namespace sorvane::ChartAxes {

enum class Extent {
    /// Widens the range to the round numbers next to it.
    rounded,
    /// Keeps the range and puts the round numbers inside it.
    exact,
};

struct Scale {
    ValueRange range;
    Extent extent = Extent::rounded;
    /// Labels at whole numbers only, for counts.
    bool wholeNumbers = false;
    /// Per cent sign after each label.
    bool percent = false;
};

/// A number axis with about five labels at round numbers.
QValueAxis& addNumbers(ChartCanvas& canvas,
                       QAbstractSeries& series,
                       const Scale& scale,
                       Qt::AlignmentFlag edge);

/// An axis of named slots at 0, 1, 2, …; at the left the last label has slot 0, so that the first
/// stands on top.
void addCategories(ChartCanvas& canvas,
                   QAbstractSeries& series,
                   const std::vector<std::string>& labels,
                   Qt::AlignmentFlag edge);

/// The slot of a category at the left.
inline double slotFromAbove(std::size_t at, std::size_t count) {
    return static_cast<double>(count - 1 - at);
}

/// Takes away all but the title; for an axis whose values stand at the bars.
void leaveTitleOnly(QValueAxis& axis);

}  // namespace sorvane::ChartAxes
