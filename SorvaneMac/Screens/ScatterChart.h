#pragma once

#include <string>

#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneMac/Screens/Chart.h"

namespace sorvane {

/// A variable to be drawn along an axis.
struct ChartVariable {
    std::string name;
    NumericColumn values;
};

enum class ScatterLine { none, leastSquares };

/// The scatter plot of y by x.
///
/// Of many cases only every k-th is drawn, and the subtitle says so; the line is that of all.
Chart scatterChart(const ChartVariable& x,
                   const ChartVariable& y,
                   ScatterLine line = ScatterLine::leastSquares);

}  // namespace sorvane
