#include "SorvaneCore/Numerics/NormalCritical.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/Regression/RegressionAnalyses.h"
#include "SorvaneMac/Screens/Regression/RegressionAnalysis.h"
#include "SorvaneMac/Screens/Regression/RegressionCharts.h"
#include "SorvaneMac/Screens/Regression/RegressionSelection.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/TestReport.h"

namespace sorvane {

namespace {

constexpr std::string_view caution =
    "Odds ratios describe association after adjusting for the predictors, not causation, and hold "
    "only as far as they are the same at every cut point.";
constexpr std::string_view note =
    "B is the change of the log odds of a higher level for a step of one; OR is the odds ratio; z "
    "and p are Wald tests.";
constexpr double alpha = 0.05;

constexpr std::string_view unsuitable =
    "The outcome must hold ordered numbers. Pick another one in the Setup panel.";

ReportTable effectTable(const OrdinalRegressionResult& result) {
    ReportTable table;
    table.title = "Coefficients";
    table.headers = {"Predictor", "B", "SE", "z", "p", "OR"};
    for (const OrdinalPredictorEffect& each : result.predictorEffects) {
        const int decimals = ReportDecimals::of(each.standardError);
        table.rows.push_back({each.name, svFigure(each.estimate, decimals),
                              svFigure(each.standardError, decimals), svFmt(each.z, 2),
                              ResultText::pCell(each.pValue),
                              ResultText::ratio(each.oddsRatio, decimals)});
    }
    return table;
}

ReportTable thresholdTable(const OrdinalRegressionResult& result) {
    ReportTable table;
    table.title = "Thresholds";
    table.headers = {"Between levels", "Estimate", "SE"};
    for (const OrdinalThreshold& each : result.thresholds) {
        const int decimals = ReportDecimals::of(each.standardError);
        table.rows.push_back(
            {each.name, svFigure(each.estimate, decimals), svFigure(each.standardError, decimals)});
    }
    table.note =
        "A threshold is the log odds of a level up to the cut point where all predictors are 0.";
    return table;
}

std::string sentence(const OrdinalModelRun& run) {
    const OrdinalRegressionResult& result = *run.result;
    std::string text = "Proportional-odds ordinal regression of " + run.outcome + " (" +
                       ResultText::count(result.levelCount) + " levels) on " +
                       ResultText::listed(run.predictors) +
                       ": log likelihood = " + svFmt(result.logLikelihood, 2) +
                       ", n = " + ResultText::count(result.n) + ".";
    for (const OrdinalPredictorEffect& each : result.predictorEffects) {
        const int decimals = ReportDecimals::inSentence(each.standardError);
        text += " The effect of " + each.name + " was " +
                std::string(ResultText::significanceWords(each.pValue)) + ", " +
                ResultText::ratioSentence("OR", each.oddsRatio, decimals) +
                ", z = " + svFmt(each.z, 2) + ", " + ResultText::pSentence(each.pValue) + ".";
    }
    return text;
}

std::vector<Tile> tiles(const OrdinalRegressionResult& result) {
    return {{"Levels", ResultText::count(result.levelCount), "of the outcome"},
            {"Log likelihood", svFmt(result.logLikelihood, 2), ""},
            {"Predictors", ResultText::count(result.predictorCount), ""},
            {"Cases used", ResultText::count(result.n), "complete on all variables"}};
}

std::vector<Chart> charts(const OrdinalRegressionResult& result) {
    const double critical = normalCritical(alpha, NormalCriticalSetting::wide);
    std::vector<IntervalPlot::Row> rows;
    for (const OrdinalPredictorEffect& each : result.predictorEffects) {
        const double half = critical * each.standardError;
        rows.push_back({each.name, each.estimate, each.estimate - half, each.estimate + half});
    }
    return {RegressionCharts::coefficients(std::move(rows),
                                           "Change of the log odds of a higher level")};
}

class OrdinalRegression final
    : public RegressionAnalysis<RegressionModel::ordinal, OrdinalModelRun> {
public:
    using RegressionAnalysis::RegressionAnalysis;

private:
    std::optional<OrdinalModelRun> compute() override {
        OrdinalModelRun run{.outcome = fields_.regOutcome->name,
                            .predictors = RegressionSelection::predictors(state_, fields_)};
        run.result = OrdinalRegressionTests::proportionalOdds(
            RegressionSelection::predictorColumns(state_, run.predictors),
            state_.dataset().numericColumn(run.outcome), {.predictorNames = run.predictors});
        return run;
    }

    void present(const OrdinalModelRun& run, ScreenContent& content) const override {
        if (!run.result || run.result->predictorEffects.empty()) {
            content.gate = couldNotEstimate(run, reasonOf(run, unsuitable));
            return;
        }
        addReport({.title = "Ordinal Regression: " + run.outcome,
                   .sentence = sentence(run),
                   .tiles = tiles(*run.result),
                   .tables = {effectTable(*run.result), thresholdTable(*run.result)},
                   .note = std::string(note),
                   .charts = charts(*run.result),
                   .figureCaption = figureCaption(run),
                   .caution = std::string(caution),
                   .warnings = ResultText::messages(run.result->readiness)},
                  content);
    }
};

}  // namespace

std::unique_ptr<Analysis> RegressionAnalyses::ordinal(StudioState& state,
                                                      RegressionFields& fields) {
    return std::make_unique<OrdinalRegression>(state, fields, fields.regOrdinalRun);
}

}  // namespace sorvane
