#include "SorvaneMac/Screens/Survey/SurveyCrosstabReport.h"

#include "SorvaneCore/Survey/SurveyWording.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/Survey/SurveyCells.h"
#include "SorvaneMac/Screens/Survey/SurveyDesignTable.h"

namespace sorvane::SurveyCrosstabReport {

namespace {

using SurveyCells::levelText;

std::string percent(double share) {
    return svFmt(100.0 * share, 1);
}

std::string subject(const SurveyCategoricalResult& result) {
    return result.rowName + " by " + result.columnName;
}

/// Rows of the sample in a row of the table.
std::int64_t rowCount(const SurveyCategoricalResult& result, std::size_t row) {
    const std::size_t columns = result.columnLabels.size();
    std::int64_t count = 0;
    for (std::size_t column = 0; column < columns; ++column) {
        count += result.cells[row * columns + column].count;
    }
    return count;
}

/// The share of the whole that lies in a column of the table.
double columnShare(const SurveyCategoricalResult& result, std::size_t column) {
    double share = 0.0;
    for (std::size_t at = column; at < result.cells.size(); at += result.columnLabels.size()) {
        share += result.cells[at].proportion;
    }
    return share;
}

ReportTable shareTable(const SurveyCrosstabRun& run) {
    const SurveyCategoricalResult& result = run.result;
    const std::size_t columns = result.columnLabels.size();
    ReportTable table;
    table.title = "Weighted shares of " + result.columnName + " within " + result.rowName + " (%)";
    table.groupHeaders = {{.label = "", .span = 2},
                          {.label = result.columnName, .span = static_cast<int>(columns)}};
    table.headers = {result.rowName, "n"};
    table.headers.insert(table.headers.end(), result.columnLabels.begin(),
                         result.columnLabels.end());
    for (std::size_t row = 0; row < result.rowLabels.size(); ++row) {
        std::vector<std::string> cells = {result.rowLabels[row],
                                          ResultText::count(rowCount(result, row))};
        for (std::size_t column = 0; column < columns; ++column) {
            cells.push_back(percent(result.cells[row * columns + column].rowProportion));
        }
        table.rows.push_back(std::move(cells));
    }
    std::vector<std::string> all = {"All", ResultText::count(result.validN)};
    for (std::size_t column = 0; column < columns; ++column) {
        all.push_back(percent(columnShare(result, column)));
    }
    table.rows.push_back(std::move(all));
    table.note = "Each row adds up to 100%. Shares are weighted; n counts the cases, unweighted.";
    return table;
}

ReportTable testTable(const SurveyCrosstabRun& run) {
    const SurveyCategoricalResult& result = run.result;
    ReportTable table;
    table.title = "Test of independence";
    table.headers = {"Rao-Scott F",        "df1",        "df2", "p", "Cramer's V",
                     "Mean design effect", "Pearson χ²", "df"};
    table.rows = {{svFmt(result.fStatistic, 2), svFmt(result.dfNumerator, 2),
                   svFmt(result.dfDenominator, 2), ResultText::pCell(result.pValue),
                   svFmtBounded(result.cramersV, 3), svFmt(result.meanDesignEffect, 2),
                   svFmt(result.chiSquare, 2), ResultText::degreesOfFreedom(result.chiSquareDF)}};
    table.note =
        "F carries the second-order correction of Rao and Scott; variance: " +
        SurveyDesignTable::methodWords(run.design, result.varianceMethod) +
        ". Pearson's χ² is of the weighted shares times n and has no p-value of its own here: "
        "under the design it does not follow its usual distribution.";
    return table;
}

ReportTable cellTable(const SurveyCrosstabRun& run) {
    const SurveyCategoricalResult& result = run.result;
    const std::string level = levelText(result.confidenceLevel);
    ReportTable table;
    table.title = "Cells of the table";
    table.groupHeaders = {{.label = "", .span = 4},
                          {.label = "Within the row (%)", .span = 4},
                          {.label = "Of all (%)", .span = 4}};
    table.headers = {result.rowName, result.columnName, "n",  "Weighted n", "Share", "SE", "LL",
                     "UL",           "Share",           "SE", "LL",         "UL"};
    // Weights that add up to a population take no decimals, those that add up to 1 do.
    const int weightDecimals = ReportDecimals::of(result.sumOfWeights / 100.0, 0);
    for (const SurveyCell& cell : result.cells) {
        table.rows.push_back({cell.row, cell.column, ResultText::count(cell.count),
                              svFigure(cell.weightedCount, weightDecimals),
                              percent(cell.rowProportion), percent(cell.rowStandardError),
                              percent(cell.rowLowerBound), percent(cell.rowUpperBound),
                              percent(cell.proportion), percent(cell.standardError),
                              percent(cell.lowerBound), percent(cell.upperBound)});
    }
    table.note = "LL and UL bound the " + level + ", from t on the design's " +
                 ResultText::count(result.designDegreesOfFreedom) +
                 " df, and are held to 0 and 100.";
    return table;
}

std::vector<Tile> tiles(const SurveyCategoricalResult& result) {
    return {
        {"F(" + svFmt(result.dfNumerator, 2) + ", " + svFmt(result.dfDenominator, 2) + ")",
         svFmt(result.fStatistic, 2), "Rao-Scott, " + ResultText::pSentence(result.pValue)},
        {"Cramer's V", svFmtBounded(result.cramersV, 3), "of the weighted shares"},
        {"Mean design effect", svFmt(result.meanDesignEffect, 2), "inflation of the plain χ²"},
        {"Cases used", ResultText::count(result.validN), "of " + ResultText::count(result.totalN)}};
}

Chart chart(const SurveyCategoricalResult& result) {
    const std::size_t columns = result.columnLabels.size();
    GroupedBarPlot plot{.categories = result.rowLabels,
                        .arrangement = GroupedBarPlot::Arrangement::stacked,
                        .scale = GroupedBarPlot::Scale::share};
    for (std::size_t column = 0; column < columns; ++column) {
        GroupedBarPlot::Series series{.name = result.columnLabels[column]};
        for (std::size_t row = 0; row < result.rowLabels.size(); ++row) {
            series.values.push_back(result.cells[row * columns + column].rowProportion);
        }
        plot.series.push_back(std::move(series));
    }
    Chart chart;
    chart.title = "Weighted shares of " + result.columnName + " within " + result.rowName;
    chart.xLabel = "Share";
    chart.yLabel = result.rowName;
    chart.plot = std::move(plot);
    return chart;
}

}  // namespace

TestReport report(const SurveyCrosstabRun& run) {
    const SurveyCategoricalResult& result = run.result;
    std::vector<std::string> warnings = ResultText::messages(result.readiness);
    warnings.insert(warnings.end(), run.cautions.begin(), run.cautions.end());
    return {
        .title = "Survey Crosstab: " + subject(result),
        .sentence = SurveyWording::summary(result),
        .tiles = tiles(result),
        .tables = {shareTable(run), testTable(run), cellTable(run),
                   SurveyDesignTable::table(run.design, SurveyDesignTable::Figures::of(result))},
        .charts = {chart(result)},
        .figureCaption =
            "Weighted shares of " + result.columnName + " within " + result.rowName + ".",
        .caution = ResultText::running(SurveyWording::tableCautions()),
        .warnings = std::move(warnings)};
}

Gate refusal(const SurveyCrosstabRun& run) {
    return {.title = "The table could not be tested",
            .lead = subject(run.result) + " under " + run.design.weight,
            .text = ResultText::obstacle(run.result.readiness)};
}

}  // namespace sorvane::SurveyCrosstabReport
