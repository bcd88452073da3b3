#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/Regression/RegressionAnalyses.h"
#include "SorvaneMac/Screens/Regression/RegressionAnalysis.h"
#include "SorvaneMac/Screens/Regression/RegressionCharts.h"
#include "SorvaneMac/Screens/Regression/RegressionSelection.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/TestReport.h"

namespace sorvane {

namespace {

constexpr std::string_view caution =
    "Rate ratios describe association after adjusting for the predictors, not causation.";
constexpr std::string_view note =
    "B is the change of the log rate for a step of one; RR is the rate ratio with its 95% "
    "confidence interval; z and p are Wald tests.";

constexpr std::string_view unsuitable =
    "The outcome must hold whole counts from 0. Pick another one in the Setup panel.";

ReportTable coefficientTable(const PoissonRegressionResult& result) {
    ReportTable table;
    table.title = "Coefficients";
    table.headers = {"Predictor", "B", "SE", "z", "p", "RR", "95% CI Lower", "95% CI Upper"};
    for (const PoissonCoefficient& each : result.coefficients) {
        table.rows.push_back({each.name, svFmt(each.estimate, 3), svFmt(each.standardError, 3),
                              svFmt(each.z, 2), ResultText::pCell(each.pValue),
                              ResultText::ratio(each.rateRatio, 3),
                              ResultText::ratio(each.rateRatioLowerBound, 3),
                              ResultText::ratio(each.rateRatioUpperBound, 3)});
    }
    return table;
}

ReportTable modelTable(const PoissonRegressionResult& result) {
    ReportTable table;
    table.title = "Model summary";
    table.headers = {"n", "Log likelihood", "Residual deviance", "df", "Dispersion", "Iterations"};
    table.rows = {{ResultText::count(result.n), svFmt(result.logLikelihood, 2),
                   svFmt(result.residualDeviance, 2),
                   ResultText::count(result.residualDegreesOfFreedom), svFmt(result.dispersion, 2),
                   ResultText::count(result.iterations)}};
    table.note = "Dispersion is the residual deviance per degree of freedom.";
    return table;
}

std::string sentence(const PoissonModelRun& run) {
    const PoissonRegressionResult& result = *run.result;
    std::string text =
        "Poisson regression of " + run.outcome + " on " + ResultText::listed(run.predictors) +
        ": residual deviance = " + svFmt(result.residualDeviance, 2) + " on " +
        ResultText::count(result.residualDegreesOfFreedom) + " degrees of freedom (dispersion " +
        svFmt(result.dispersion, 2) + "), n = " + ResultText::count(result.n) + ".";
    for (std::size_t at = 1; at < result.coefficients.size(); ++at) {
        const PoissonCoefficient& each = result.coefficients[at];
        text += " The effect of " + each.name + " was " +
                std::string(ResultText::significanceWords(each.pValue)) +
                ", RR = " + ResultText::ratio(each.rateRatio, 2) + ", 95% CI [" +
                ResultText::ratio(each.rateRatioLowerBound, 2) + ", " +
                ResultText::ratio(each.rateRatioUpperBound, 2) + "], " +
                ResultText::pSentence(each.pValue) + ".";
    }
    return text;
}

std::vector<Tile> tiles(const PoissonRegressionResult& result) {
    return {{"Dispersion", svFmt(result.dispersion, 2), "near 1 where the model fits"},
            {"Residual deviance", svFmt(result.residualDeviance, 2),
             "on " + ResultText::count(result.residualDegreesOfFreedom) + " degrees of freedom"},
            {"Log likelihood", svFmt(result.logLikelihood, 2), ""},
            {"Cases used", ResultText::count(result.n), "complete on all variables"}};
}

std::vector<Chart> charts(const PoissonRegressionResult& result) {
    std::vector<IntervalPlot::Row> rows;
    for (std::size_t at = 1; at < result.coefficients.size(); ++at) {
        const PoissonCoefficient& each = result.coefficients[at];
        rows.push_back({each.name, each.estimate, each.lowerBound, each.upperBound});
    }
    return {RegressionCharts::coefficients(std::move(rows), "Change of the log rate")};
}

class PoissonRegression final
    : public RegressionAnalysis<RegressionModel::poisson, PoissonModelRun> {
public:
    using RegressionAnalysis::RegressionAnalysis;

private:
    std::optional<PoissonModelRun> compute() override {
        PoissonModelRun run{.outcome = fields_.regOutcome->name,
                            .predictors = RegressionSelection::predictors(state_, fields_)};
        run.result = PoissonRegressionTests::poisson(
            RegressionSelection::predictorColumns(state_, run.predictors),
            state_.dataset().numericColumn(run.outcome), {.predictorNames = run.predictors});
        return run;
    }

    void present(const PoissonModelRun& run, ScreenContent& content) const override {
        if (!run.result || run.result->coefficients.empty()) {
            content.gate = couldNotEstimate(run, reasonOf(run, unsuitable));
            return;
        }
        addReport({.title = "Poisson Regression: " + run.outcome,
                   .sentence = sentence(run),
                   .tiles = tiles(*run.result),
                   .tables = {coefficientTable(*run.result), modelTable(*run.result)},
                   .note = std::string(note),
                   .charts = charts(*run.result),
                   .figureCaption = figureCaption(run),
                   .caution = std::string(caution),
                   .warnings = ResultText::messages(run.result->readiness)},
                  content);
    }
};

}  // namespace

std::unique_ptr<Analysis> RegressionAnalyses::poisson(StudioState& state,
                                                      RegressionFields& fields) {
    return std::make_unique<PoissonRegression>(state, fields, fields.regPoissonRun);
}

}  // namespace sorvane
