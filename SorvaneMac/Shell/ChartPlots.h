#pragma once

#include "SorvaneMac/Screens/Chart.h"
#include "SorvaneMac/Shell/ChartCanvas.h"

/// Each kind of plot, put into an empty chart: its series, its axes and what is painted over them.
/// A plot without values leaves the chart empty.
namespace sorvane::ChartPlots {

void add(ChartCanvas& canvas, const HistogramPlot& plot);
void add(ChartCanvas& canvas, const BoxPlot& plot);
void add(ChartCanvas& canvas, const ScatterPlot& plot);
void add(ChartCanvas& canvas, const BarPlot& plot);
void add(ChartCanvas& canvas, const GroupedBarPlot& plot);
void add(ChartCanvas& canvas, const IntervalPlot& plot);
void add(ChartCanvas& canvas, const LinePlot& plot);
void add(ChartCanvas& canvas, const HeatMap& plot);
void add(ChartCanvas& canvas, const Dendrogram& plot);
void add(ChartCanvas& canvas, const PathDiagram& plot);

}  // namespace sorvane::ChartPlots
