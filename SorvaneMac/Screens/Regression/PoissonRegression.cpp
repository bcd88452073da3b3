#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/Regression/RatioEffects.h"
#include "SorvaneMac/Screens/Regression/RegressionAnalyses.h"
#include "SorvaneMac/Screens/Regression/RegressionAnalysis.h"
#include "SorvaneMac/Screens/Regression/RegressionSelection.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/TestReport.h"

namespace sorvane {

namespace {

const std::string symbol = "RR";
constexpr std::string_view caution =
    "Rate ratios describe association after adjusting for the predictors, not causation.";
constexpr std::string_view note =
    "B is the change of the log rate for a step of one; RR is the rate ratio with its 95% "
    "confidence interval; z and p are Wald tests.";

constexpr std::string_view unsuitable =
    "The outcome must hold whole counts from 0. Pick another one in the Setup panel.";

std::vector<RatioEffect> effects(const PoissonRegressionResult& result) {
    std::vector<RatioEffect> all;
    for (const PoissonCoefficient& each : result.coefficients) {
        all.push_back({.name = each.name,
                       .estimate = each.estimate,
                       .standardError = each.standardError,
                       .z = each.z,
                       .pValue = each.pValue,
                       .lowerBound = each.lowerBound,
                       .upperBound = each.upperBound,
                       .ratio = each.rateRatio,
                       .ratioLowerBound = each.rateRatioLowerBound,
                       .ratioUpperBound = each.rateRatioUpperBound});
    }
    return all;
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
    const std::string text =
        "Poisson regression of " + run.outcome + " on " + ResultText::listed(run.predictors) +
        ": residual deviance = " + svFmt(result.residualDeviance, 2) + " on " +
        ResultText::count(result.residualDegreesOfFreedom) + " degrees of freedom (dispersion " +
        svFmt(result.dispersion, 2) + "), n = " + ResultText::count(result.n) + ".";
    return text + RatioEffects::sentences(effects(result), symbol);
}

std::vector<Tile> tiles(const PoissonRegressionResult& result) {
    return {{"Dispersion", svFmt(result.dispersion, 2), "near 1 where the model fits"},
            {"Residual deviance", svFmt(result.residualDeviance, 2),
             "on " + ResultText::count(result.residualDegreesOfFreedom) + " degrees of freedom"},
            {"Log likelihood", svFmt(result.logLikelihood, 2), ""},
            {"Cases used", ResultText::count(result.n), "complete on all variables"}};
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
                   .tables = {RatioEffects::coefficientTable(effects(*run.result), symbol),
                              modelTable(*run.result)},
                   .note = std::string(note),
                   .charts = {RatioEffects::chart(effects(*run.result), "Change of the log rate")},
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
