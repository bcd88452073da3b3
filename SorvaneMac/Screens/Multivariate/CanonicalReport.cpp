#include "SorvaneMac/Screens/Multivariate/CanonicalReport.h"

#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/Multivariate/FunctionTables.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane::CanonicalReport {

namespace {

using Side = CanonicalSide CanonicalFunction::*;

std::string percent(double share) {
    return svFmt(100.0 * share, 1);
}

ReportTable functionTable(const CanonicalCorrelationResult& result) {
    ReportTable table;
    table.title = "Canonical functions";
    table.headers = {"Function",     "Correlation", "Squared",     "Adequacy %",
                     "Redundancy %", "Adequacy %",  "Redundancy %"};
    table.groupHeaders = {
        {.label = "", .span = 3}, {.label = "Set X", .span = 2}, {.label = "Set Y", .span = 2}};
    for (std::size_t at = 0; at < result.functions.size(); ++at) {
        const CanonicalFunction& function = result.functions[at];
        table.rows.push_back({ResultText::count(static_cast<std::int64_t>(at + 1)),
                              svFmtBounded(function.correlation, 3),
                              svFmtBounded(function.squaredCorrelation, 3),
                              percent(function.x.adequacy), percent(function.x.redundancy),
                              percent(function.y.adequacy), percent(function.y.redundancy)});
    }
    table.note =
        "Adequacy is the share of a set's variance that its own variate holds, redundancy the "
        "share that the variate of the other set holds. All functions together: " +
        percent(result.totalRedundancyX) + "% of set X and " + percent(result.totalRedundancyY) +
        "% of set Y.";
    return table;
}

FunctionTables::Figures figures(const CanonicalCorrelationResult& result,
                                Side side,
                                std::vector<double> CanonicalSide::*of) {
    FunctionTables::Figures all;
    for (const CanonicalFunction& function : result.functions) {
        all.push_back(function.*side.*of);
    }
    return all;
}

ReportTable loadingTable(const CanonicalCorrelationResult& result,
                         const std::vector<std::string>& names,
                         Side side,
                         const std::string& set) {
    ReportTable table = FunctionTables::ofVariables(
        names, {{.label = "Standardized coefficients",
                 .figures = figures(result, side, &CanonicalSide::standardizedCoefficients)},
                {.label = "Loadings", .figures = figures(result, side, &CanonicalSide::loadings)},
                {.label = "Cross loadings",
                 .figures = figures(result, side, &CanonicalSide::crossLoadings)}});
    table.title = set + ": coefficients and loadings";
    table.note =
        "A loading is the correlation of a variable with the variate of its own set, a cross "
        "loading that with the variate of the other set.";
    return table;
}

ReportTable rawTable(const CanonicalCorrelationResult& result,
                     const std::vector<std::string>& names,
                     Side side,
                     const std::string& set) {
    ReportTable table = FunctionTables::ofVariables(
        names, {{.label = "Unstandardized coefficients",
                 .figures = figures(result, side, &CanonicalSide::rawCoefficients),
                 .decimals = 4}});
    table.title = set + ": coefficients of the scores";
    return table;
}

}  // namespace

std::vector<ReportTable> tables(const CanonicalCorrelationResult& result) {
    constexpr Side x = &CanonicalFunction::x;
    constexpr Side y = &CanonicalFunction::y;
    return {functionTable(result),
            FunctionTables::tests(result.tests),
            loadingTable(result, result.setXNames, x, "Set X"),
            loadingTable(result, result.setYNames, y, "Set Y"),
            rawTable(result, result.setXNames, x, "Set X"),
            rawTable(result, result.setYNames, y, "Set Y")};
}

Chart scores(const CanonicalCorrelationResult& result) {
    const CanonicalFunction& first = result.functions.front();
    Chart chart;
    chart.title = "The first pair of canonical variates";
    chart.subtitle = "r = " + svFmtBounded(first.correlation, 3);
    chart.xLabel = "Variate of set X";
    chart.yLabel = "Variate of set Y";
    chart.plot = ScatterPlot{.x = first.xScores,
                             .y = first.yScores,
                             .line = ScatterPlot::Line{.slope = first.correlation}};
    return chart;
}

}  // namespace sorvane::CanonicalReport
