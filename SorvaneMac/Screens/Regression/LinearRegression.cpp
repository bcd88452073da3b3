#include <cmath>

#include "SorvaneCore/Analyses/AssumptionAudit/AssumptionAudit.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/AssumptionChecks.h"
#include "SorvaneMac/Screens/ExactFit.h"
#include "SorvaneMac/Screens/Regression/RegressionAnalyses.h"
#include "SorvaneMac/Screens/Regression/RegressionAnalysis.h"
#include "SorvaneMac/Screens/Regression/RegressionSelection.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/ScatterChart.h"

namespace sorvane {

namespace {

constexpr std::string_view caution =
    "Regression shows association after adjusting for the predictors, not causation.";
constexpr double confidenceLevel = 0.95;

ReportTable coefficientTable(const MultipleRegressionResult& result) {
    ReportTable table;
    table.title = "Coefficients";
    table.headers = {"Predictor", "B", "SE", "β", "t", "p", "95% CI Lower", "95% CI Upper"};
    for (const RegressionCoefficient& each : result.coefficients) {
        const int decimals = ReportDecimals::of(each.standardError);
        table.rows.push_back(
            {each.name, svFigure(each.estimate, decimals), svFigure(each.standardError, decimals),
             svFmt(each.standardizedEstimate, 3), svFmt(each.t, 2), ResultText::pCell(each.pValue),
             svFigure(each.lowerBound, decimals), svFigure(each.upperBound, decimals)});
    }
    table.note =
        "B is the unstandardized and β the standardized coefficient; the interval is the "
        "95% confidence interval of B.";
    return table;
}

ReportTable modelTable(const MultipleRegressionResult& result) {
    ReportTable table;
    table.title = "Model summary";
    table.headers = {"n", "R²", "Adjusted R²", "SE of estimate", "F", "df1", "df2", "p"};
    table.rows = {
        {ResultText::count(result.n), svFmt(result.rSquared, 3),
         svFmtBounded(result.adjustedRSquared, 3),
         svFigure(result.residualStandardError, ReportDecimals::of(result.residualStandardError)),
         svFmt(result.fStatistic, 2), ResultText::count(result.dfModel),
         ResultText::count(result.dfResidual), ResultText::pCell(result.pValue)}};
    return table;
}

constexpr std::string_view notEstimable =
    "A predictor is constant or collinear with the others, or there are fewer complete cases than "
    "coefficients. Take a predictor out in the Setup panel and run again.";

/// One predictor: the scatter with its line; several: their standardized coefficients.
Chart figureOf(const LinearModelRun& run, const ImportedDataset& dataset) {
    if (run.predictors.size() == 1) {
        const std::string& predictor = run.predictors.front();
        return scatterChart({.name = predictor, .values = dataset.numericColumn(predictor)},
                            {.name = run.outcome, .values = dataset.numericColumn(run.outcome)});
    }
    BarPlot bars;
    for (const RegressionCoefficient& each : run.result->coefficients) {
        if (each.standardizedEstimate) {
            bars.labels.push_back(each.name);
            bars.values.push_back(*each.standardizedEstimate);
        }
    }
    Chart chart;
    chart.title = "Standardized coefficients";
    chart.subtitle = "Change of the outcome in SD for one SD of the predictor";
    chart.xLabel = "β";
    chart.plot = std::move(bars);
    return chart;
}

std::vector<std::string> warnings(const MultipleRegressionResult& result) {
    std::vector<std::string> all = ResultText::messages(result.readiness);
    std::vector<double> ofSlopes;
    for (std::size_t j = 1; j < result.coefficients.size(); ++j) {
        ofSlopes.push_back(result.coefficients[j].t);
    }
    if (std::optional<std::string> exact = ExactFit::caution(ofSlopes)) {
        all.push_back(std::move(*exact));
    }
    if (std::isnan(result.rSquared)) {
        all.emplace_back(
            "The outcome does not vary, so that there is nothing for the predictors to tell. "
            "Choose another outcome.");
    }
    return all;
}

Finding finding(const LinearModelRun& run) {
    const MultipleRegressionResult& result = *run.result;
    ReportItem item;
    item.id = Uuid::fresh();
    item.title = "Linear Regression: " + run.outcome;
    item.apaSummary =
        "Linear regression of " + run.outcome + " on " + ResultText::listed(run.predictors) +
        ". The model was " + std::string(ResultText::significanceWords(result.pValue)) + ", F(" +
        ResultText::count(result.dfModel) + ", " + ResultText::count(result.dfResidual) +
        ") = " + svFmt(result.fStatistic, 2) + ", " + ResultText::pSentence(result.pValue) +
        ", R² = " + svFmtBounded(result.rSquared, 2) +
        ", adjusted R² = " + svFmtBounded(result.adjustedRSquared, 2) + ".";
    item.table = coefficientTable(result);
    for (const std::string& message : warnings(result)) {
        *item.table->note += " " + message;
    }
    item.extraTables = std::vector<ReportTable>{modelTable(result)};
    item.caution = std::string(caution);
    item.figureCaption = run.figure.title + ".";
    return {.item = std::move(item), .figure = run.figure};
}

class LinearRegression final : public RegressionAnalysis<RegressionModel::linear, LinearModelRun> {
public:
    using RegressionAnalysis::RegressionAnalysis;

private:
    std::optional<LinearModelRun> compute() override {
        const ImportedDataset& dataset = state_.dataset();
        LinearModelRun run{.outcome = fields_.regOutcome->name,
                           .predictors = RegressionSelection::predictors(state_, fields_)};
        const std::vector<NumericColumn> columns =
            RegressionSelection::predictorColumns(state_, run.predictors);
        run.result = RegressionTests::ordinaryLeastSquares(
            columns, dataset.numericColumn(run.outcome),
            {.predictorNames = run.predictors, .confidenceLevel = confidenceLevel});
        if (run.result) {
            run.figure = figureOf(run, dataset);
        }
        run.assumptions = AssumptionAudit::regressionAudit(columns, run.predictors,
                                                           dataset.numericColumn(run.outcome));
        fields_.regAssumptionFindings.replace(run.assumptions);
        return run;
    }

    void present(const LinearModelRun& run, ScreenContent& content) const override {
        if (!run.result) {
            content.gate = couldNotEstimate(run, std::string(notEstimable));
            return;
        }
        const MultipleRegressionResult& result = *run.result;
        content.subtitle = subtitle() + ": " + run.outcome;
        content.tiles = {{"R²", svFmtBounded(result.rSquared, 3), "Variance explained"},
                         {"Adjusted R²", svFmtBounded(result.adjustedRSquared, 3),
                          "For the number of predictors"},
                         {"F(" + ResultText::count(result.dfModel) + ", " +
                              ResultText::count(result.dfResidual) + ")",
                          svFmt(result.fStatistic, 2), ResultText::pSentence(result.pValue)},
                         {"Cases used", ResultText::count(result.n), "complete on all variables"}};
        content.cards.push_back(
            {.title = "Coefficients",
             .subtitle = "Effect of each predictor with the others held constant",
             .tables = {coefficientTable(result), modelTable(result)},
             .wide = true});
        content.cards.push_back(
            {.title = run.figure.title, .subtitle = run.figure.subtitle, .charts = {run.figure}});
        content.cards.push_back(AssumptionChecks::card(run.assumptions));
        std::vector<std::string> cautions = warnings(result);
        cautions.emplace_back(caution);
        content.cards.push_back({.title = "What not to claim", .cautions = std::move(cautions)});
        content.findings.push_back(finding(run));
    }
};

}  // namespace

std::unique_ptr<Analysis> RegressionAnalyses::linear(StudioState& state, RegressionFields& fields) {
    return std::make_unique<LinearRegression>(state, fields, fields.regLinearRun);
}

}  // namespace sorvane
