#include "SorvaneMac/Screens/Regression/RegressionCharts.h"

namespace sorvane::RegressionCharts {

Chart coefficients(std::vector<IntervalPlot::Row> rows, const std::string& scale) {
    Chart chart;
    chart.title = "Coefficients of the predictors";
    chart.subtitle = "With 95% confidence intervals; 0 is no effect";
    chart.xLabel = scale;
    chart.plot = IntervalPlot{.rows = std::move(rows), .reference = 0.0};
    return chart;
}

}  // namespace sorvane::RegressionCharts
