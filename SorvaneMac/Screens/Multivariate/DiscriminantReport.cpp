#include "SorvaneMac/Screens/Multivariate/DiscriminantReport.h"

#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/GroupCharts.h"
#include "SorvaneMac/Screens/Multivariate/FunctionTables.h"
#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane::DiscriminantReport {

namespace {

std::string number(std::size_t at) {
    return ResultText::count(static_cast<std::int64_t>(at + 1));
}

std::string percent(double share) {
    return svFmt(100.0 * share, 1);
}

ReportTable functionTable(const DiscriminantResult& result) {
    ReportTable table;
    table.title = "Discriminant functions";
    table.headers = {"Function", "Eigenvalue", "% of variance", "Cumulative %",
                     "Canonical correlation"};
    for (std::size_t at = 0; at < result.functions.size(); ++at) {
        const DiscriminantFunction& function = result.functions[at];
        table.rows.push_back({number(at), svFmt(function.eigenvalue, 3),
                              percent(function.shareOfVariance), percent(function.cumulativeShare),
                              svFmtBounded(function.canonicalCorrelation, 3)});
    }
    return table;
}

ReportTable coefficientTable(const DiscriminantResult& result) {
    FunctionTables::Figures standardized;
    FunctionTables::Figures structure;
    for (const DiscriminantFunction& function : result.functions) {
        standardized.push_back(function.standardizedCoefficients);
        structure.push_back(function.structure);
    }
    ReportTable table = FunctionTables::ofVariables(
        result.predictorNames, {{.label = "Standardized coefficients", .figures = standardized},
                                {.label = "Structure", .figures = structure}});
    table.title = "Coefficients and structure";
    table.note =
        "The structure is the correlation of a variable with a function, pooled within groups.";
    return table;
}

ReportTable rawTable(const DiscriminantResult& result) {
    std::vector<std::string> names = result.predictorNames;
    names.emplace_back("(Constant)");
    FunctionTables::Figures raw;
    for (const DiscriminantFunction& function : result.functions) {
        raw.push_back(function.rawCoefficients);
        raw.back().push_back(function.constant);
    }
    ReportTable table = FunctionTables::ofVariables(
        names, {{.label = "Unstandardized coefficients", .figures = raw, .decimals = 4}});
    table.title = "Coefficients of the scores";
    return table;
}

ReportTable centroidTable(const DiscriminantResult& result) {
    ReportTable table;
    table.title = "Group centroids";
    table.headers = {"Group", "n", "Prior"};
    table.groupHeaders = {
        {.label = "", .span = 3},
        {.label = "Mean score on function", .span = static_cast<int>(result.functions.size())}};
    for (std::size_t at = 0; at < result.functions.size(); ++at) {
        table.headers.push_back(number(at));
    }
    for (const DiscriminantGroup& group : result.groups) {
        std::vector<std::string> row = {group.name, ResultText::count(group.n),
                                        svFmtBounded(group.prior, 3)};
        for (const double mean : group.centroid) {
            row.push_back(svFmt(mean, 3));
        }
        table.rows.push_back(std::move(row));
    }
    return table;
}

ReportTable classificationTable(const DiscriminantResult& result,
                                const DiscriminantClassification& placed,
                                std::string title) {
    ReportTable table;
    table.title = std::move(title);
    table.headers = {"Group"};
    for (const DiscriminantGroup& group : result.groups) {
        table.headers.push_back(group.name);
    }
    table.headers.emplace_back("% correct");
    table.groupHeaders = {{.label = "", .span = 1},
                          {.label = "Placed in", .span = static_cast<int>(result.groups.size())},
                          {.label = "", .span = 1}};
    for (std::size_t at = 0; at < result.groups.size(); ++at) {
        std::vector<std::string> row = {result.groups[at].name};
        for (const std::int64_t count : placed.counts[at]) {
            row.push_back(ResultText::count(count));
        }
        row.push_back(percent(placed.groupAccuracy[at]));
        table.rows.push_back(std::move(row));
    }
    table.note = percent(placed.accuracy) +
                 "% of all cases are placed in their own group; the largest group holds " +
                 percent(result.largestGroupShare) + "%.";
    return table;
}

LinePlot clouds(const DiscriminantResult& result) {
    LinePlot plot{.join = LinePlot::Join::none};
    for (const DiscriminantGroup& group : result.groups) {
        plot.series.push_back({.name = group.name, .x = group.scores[0], .y = group.scores[1]});
    }
    return plot;
}

}  // namespace

std::vector<ReportTable> tables(const DiscriminantResult& result) {
    return {functionTable(result),
            FunctionTables::tests(result.tests),
            coefficientTable(result),
            rawTable(result),
            centroidTable(result),
            classificationTable(result, result.leaveOneOut, "Classification, leaving one out"),
            classificationTable(result, result.resubstitution,
                                "Classification of the cases that were fitted")};
}

Chart scores(const DiscriminantResult& result) {
    if (result.functions.size() == 1) {
        std::vector<NamedNumericGroup> groups;
        for (const DiscriminantGroup& group : result.groups) {
            groups.push_back({.name = group.name, .values = group.scores.front()});
        }
        return GroupCharts::boxes(groups, {.outcome = "Score on the discriminant function"});
    }
    Chart chart;
    chart.title = "Scores on the discriminant functions";
    chart.xLabel = "Function 1";
    chart.yLabel = "Function 2";
    chart.plot = clouds(result);
    return chart;
}

}  // namespace sorvane::DiscriminantReport
