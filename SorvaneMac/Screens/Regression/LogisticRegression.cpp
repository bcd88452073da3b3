#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/Regression/RatioEffects.h"
#include "SorvaneMac/Screens/Regression/RegressionAnalyses.h"
#include "SorvaneMac/Screens/Regression/RegressionAnalysis.h"
#include "SorvaneMac/Screens/Regression/RegressionSelection.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/TestReport.h"

namespace sorvane {

namespace {

const std::string symbol = "OR";
constexpr std::string_view caution =
    "Odds ratios describe association after adjusting for the predictors, not causation, and are "
    "not ratios of probabilities.";
constexpr std::string_view note =
    "B is the change of the log odds for a step of one; OR is the odds ratio with its 95% "
    "confidence interval; z and p are Wald tests.";

constexpr std::string_view unsuitable =
    "The outcome needs exactly two values. Pick another one in the Setup panel.";

std::vector<RatioEffect> effects(const LogisticRegressionResult& result) {
    std::vector<RatioEffect> all;
    for (const LogisticCoefficient& each : result.coefficients) {
        all.push_back({.name = each.name,
                       .estimate = each.estimate,
                       .standardError = each.standardError,
                       .z = each.z,
                       .pValue = each.pValue,
                       .lowerBound = each.lowerBound,
                       .upperBound = each.upperBound,
                       .ratio = each.oddsRatio,
                       .ratioLowerBound = each.oddsRatioLowerBound,
                       .ratioUpperBound = each.oddsRatioUpperBound});
    }
    return all;
}

ReportTable modelTable(const LogisticModelRun& run) {
    const LogisticRegressionResult& result = *run.result;
    ReportTable table;
    table.title = "Model summary";
    table.headers = {
        "n",           "Events",    "Log likelihood", "Residual deviance", "Null deviance",
        "McFadden R²", "Iterations"};
    table.rows = {{ResultText::count(result.n), ResultText::count(result.events),
                   svFmt(result.logLikelihood, 2), svFmt(result.residualDeviance, 2),
                   svFmt(result.nullDeviance, 2), svFmtBounded(result.mcFaddenR2, 3),
                   ResultText::count(result.iterations)}};
    table.note = "An event is " + run.outcome + " = " + run.event + ".";
    return table;
}

std::string sentence(const LogisticModelRun& run) {
    const LogisticRegressionResult& result = *run.result;
    const std::string text = "Binary logistic regression of " + run.outcome + " (" + run.event +
                             ") on " + ResultText::listed(run.predictors) +
                             ": McFadden R² = " + svFmtBounded(result.mcFaddenR2, 2) +
                             ", n = " + ResultText::count(result.n) + ", " +
                             ResultText::count(result.events) + " events.";
    return text + RatioEffects::sentences(effects(result), symbol);
}

std::vector<Tile> tiles(const LogisticModelRun& run) {
    const LogisticRegressionResult& result = *run.result;
    return {{"McFadden R²", svFmtBounded(result.mcFaddenR2, 3), "not explained variance"},
            {"Residual deviance", svFmt(result.residualDeviance, 2),
             "null deviance " + svFmt(result.nullDeviance, 2)},
            {"Events", ResultText::count(result.events), run.outcome + " = " + run.event},
            {"Cases used", ResultText::count(result.n), "complete on all variables"}};
}

class LogisticRegression final
    : public RegressionAnalysis<RegressionModel::logistic, LogisticModelRun> {
public:
    using RegressionAnalysis::RegressionAnalysis;

private:
    std::optional<LogisticModelRun> compute() override {
        const ImportedDataset& dataset = state_.dataset();
        LogisticModelRun run{.outcome = fields_.regOutcome->name,
                             .predictors = RegressionSelection::predictors(state_, fields_)};
        const TextColumn& labels = dataset.rows.column(*dataset.columnIndex(run.outcome));
        run.event = LogisticRegressionTests::eventLabel(labels).value_or("");
        run.result = LogisticRegressionTests::binaryLogistic(
            RegressionSelection::predictorColumns(state_, run.predictors), labels,
            {.predictorNames = run.predictors});
        return run;
    }

    void present(const LogisticModelRun& run, ScreenContent& content) const override {
        if (!run.result || run.result->coefficients.empty()) {
            content.gate = couldNotEstimate(run, reasonOf(run, unsuitable));
            return;
        }
        addReport({.title = "Logistic Regression: " + run.outcome,
                   .sentence = sentence(run),
                   .tiles = tiles(run),
                   .tables = {RatioEffects::coefficientTable(effects(*run.result), symbol),
                              modelTable(run)},
                   .note = std::string(note),
                   .charts = {RatioEffects::chart(effects(*run.result), "Change of the log odds")},
                   .figureCaption = figureCaption(run),
                   .caution = std::string(caution),
                   .warnings = ResultText::messages(run.result->readiness)},
                  content);
    }
};

}  // namespace

std::unique_ptr<Analysis> RegressionAnalyses::logistic(StudioState& state,
                                                       RegressionFields& fields) {
    return std::make_unique<LogisticRegression>(state, fields, fields.regLogisticRun);
}

}  // namespace sorvane
