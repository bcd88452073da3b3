#pragma once

#include "SorvaneMac/Screens/Chart.h"
#include "SorvaneMac/Shell/ChartInk.h"

class QChart;

/// Each kind of plot, put into an empty chart: its series, its axes and what is drawn over them.
namespace sorvane::ChartPlots {

void add(QChart& chart, const HistogramPlot& plot, const Chart& texts, const ChartInk& ink);
void add(QChart& chart, const BoxPlot& plot, const Chart& texts, const ChartInk& ink);
void add(QChart& chart, const ScatterPlot& plot, const Chart& texts, const ChartInk& ink);
void add(QChart& chart, const BarPlot& plot, const Chart& texts, const ChartInk& ink);

}  // namespace sorvane::ChartPlots
