#include "SorvaneCore/Numerics/NormalCritical.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/Regression/RegressionCharts.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/SelectionGates.h"
#include "SorvaneMac/Screens/Survival/SurvivalAnalyses.h"
#include "SorvaneMac/Screens/Survival/SurvivalSelection.h"
#include "SorvaneMac/Screens/TestReport.h"

namespace sorvane {

namespace {

using VariableLists::numericVariables;

constexpr std::string_view method =
    "Breslow-ties Cox regression. Event coding: 0 = censored, nonzero = event.";
constexpr std::string_view note =
    "HR = hazard ratio. CI = confidence interval for HR; LL = lower limit; UL = upper limit. "
    "Breslow ties. Wald z and p values.";
constexpr std::string_view caution =
    "Association in a proportional-hazards model, not causation. PH diagnostics are not automated "
    "in v1.";
constexpr std::string_view limits =
    "Hazard ratios use a normal (Wald) approximation. Time-varying covariates and frailty are not "
    "in v1.";
constexpr double confidenceLevel = 0.95;
constexpr std::int64_t maxIterations = 40;

Gate noPredictors() {
    return {.title = "No predictors selected",
            .lead = "",
            .text = "Cox needs at least one predictor. Check one in the Setup panel."};
}

Gate couldNotFit(const CoxRun& run) {
    if (!run.result) {
        return SurvivalSelection::noResult(run.time, run.event);
    }
    return {.title = "The Cox model could not be fitted",
            .lead = SurvivalSelection::words(run.time, run.event) + " on " +
                    ResultText::listed(run.predictors),
            .text = ResultText::obstacle(run.result->readiness)};
}

Guide guideOfModel() {
    return {.answers =
                "How predictors raise or lower the hazard, the risk of the event at a moment "
                "among those still without it, when some cases were not followed to the event.",
            .needs =
                "The time of each case from one well-defined start, not negative, whether the "
                "event was seen (0 = censored), and numeric predictors known at the start. Two "
                "events at the least, and some ten per predictor to be stable.",
            .doNotClaim = {
                "Do not read a hazard ratio as a ratio of probabilities or of times; and it is one "
                "number only if the hazards stay proportional, which is not checked here.",
                "Do not claim causation from a regression on observed data.",
                "Do not treat a rating scale or a score as a time to event."}};
}

ReportTable coefficientTable(const CoxResult& result) {
    ReportTable table;
    table.title = "Cox Proportional Hazards Coefficients";
    table.groupHeaders = {{.label = "", .span = 6}, {.label = "95% CI", .span = 2}};
    table.headers = {"Predictor", "B", "SE", "z", "p", "HR", "LL", "UL"};
    for (const CoxCoefficient& each : result.coefficients) {
        const int decimals = ReportDecimals::of(each.standardError);
        table.rows.push_back(
            {each.name, svFigure(each.estimate, decimals), svFigure(each.standardError, decimals),
             svFmt(each.z, 2), ResultText::pCell(each.pValue),
             ResultText::ratio(each.hazardRatio, decimals),
             ResultText::ratio(each.lowerHR, decimals), ResultText::ratio(each.upperHR, decimals)});
    }
    return table;
}

ReportTable modelTable(const CoxResult& result) {
    ReportTable table;
    table.title = "Model summary";
    table.headers = {"n", "Events", "Log partial likelihood", "Without predictors", "Iterations"};
    table.rows = {{ResultText::count(result.n), ResultText::count(result.events),
                   svFmt(result.logLikelihood, 2), svFmt(result.nullLogLikelihood, 2),
                   ResultText::count(result.iterations)}};
    return table;
}

std::string sentence(const CoxRun& run) {
    std::string text = "Cox proportional hazards model for " + run.time + ", with " + run.event +
                       " as the event, on " + ResultText::listed(run.predictors) + " (" +
                       SurvivalSelection::counts(run.result->n, run.result->events) + ").";
    for (const CoxCoefficient& each : run.result->coefficients) {
        const int decimals = ReportDecimals::inSentence(each.standardError);
        text += " The effect of " + each.name + " was " +
                std::string(ResultText::significanceWords(each.pValue)) + ", " +
                ResultText::ratioSentence("HR", each.hazardRatio, decimals) + ", 95% CI [" +
                ResultText::ratio(each.lowerHR, decimals) + ", " +
                ResultText::ratio(each.upperHR, decimals) + "], " +
                ResultText::pSentence(each.pValue) + ".";
    }
    return text;
}

std::vector<Tile> tiles(const CoxRun& run) {
    const CoxResult& result = *run.result;
    return {{"Cases used", ResultText::count(result.n), "complete on all variables"},
            {"Events", ResultText::count(result.events), run.event + " not 0"},
            {"Log partial likelihood", svFmt(result.logLikelihood, 2),
             svFmt(result.nullLogLikelihood, 2) + " without predictors"},
            {"Iterations", ResultText::count(result.iterations),
             result.converged ? "converged" : "not converged"}};
}

Chart coefficientChart(const CoxResult& result) {
    const double critical = normalCritical(1.0 - confidenceLevel, NormalCriticalSetting::narrow);
    std::vector<IntervalPlot::Row> rows;
    for (const CoxCoefficient& each : result.coefficients) {
        // Not from the bounds of the ratio, which may be beyond what a number holds.
        const double half = critical * each.standardError;
        rows.push_back({each.name, each.estimate, each.estimate - half, each.estimate + half});
    }
    return RegressionCharts::coefficients(std::move(rows), "Change of the log hazard");
}

class CoxRegression final : public BackgroundAnalysis<SurvivalFields, CoxRun> {
public:
    using BackgroundAnalysis::BackgroundAnalysis;

    std::string subtitle() const override {
        return "Time to an event, with cases that were not followed up to it.";
    }

    void addControls(SetupForm& form) override {
        const ImportedDataset& dataset = state_.dataset();
        const VariableLists::List numeric = numericVariables(dataset);
        SurvivalSelection::addControls(form, dataset, fields_, method);
        form.controls.emplace_back(FormControls::withUnavailable(
            FormControls::variableCheckList(
                "Predictors", fields_.survPredictors,
                VariableLists::without(numeric, {fields_.survTime->name, fields_.survEvent->name})),
            fields_.survPredictors.get(), numeric));
    }

    std::string runLabel() const override { return "Fit Cox model"; }

    std::optional<Gate> gate() const override {
        const ImportedDataset& dataset = state_.dataset();
        if (std::optional<Gate> missing = SurvivalSelection::gate(dataset, fields_)) {
            return missing;
        }
        if (std::optional<Gate> gone = SelectionGates::goneColumn(
                fields_.survPredictors, numericVariables(dataset), "numeric columns")) {
            return gone;
        }
        return predictors().empty() ? std::optional(noPredictors()) : std::nullopt;
    }

    std::string selection() const override {
        return SurvivalSelection::words(fields_.survTime->name, fields_.survEvent->name) + " on " +
               ResultText::listed(predictors());
    }

    Guide guide() const override { return guideOfModel(); }

private:
    /// The chosen ones, less the time and the event.
    std::vector<std::string> predictors() const {
        std::vector<std::string> names =
            FormControls::chosen(fields_.survPredictors.get(), numericVariables(state_.dataset()));
        std::erase(names, fields_.survTime->name);
        std::erase(names, fields_.survEvent->name);
        return names;
    }

    std::string computingLabel() const override { return "Fitting Cox model…"; }
    std::string statusLine() const override { return "Survival estimation is running."; }

    Compute computation() const override {
        const ImportedDataset& dataset = state_.dataset();
        CoxRun run{.time = fields_.survTime->name,
                   .event = fields_.survEvent->name,
                   .predictors = predictors()};
        std::vector<NumericColumn> columns;
        for (const std::string& name : run.predictors) {
            columns.push_back(dataset.numericColumn(name));
        }
        return
            [run = std::move(run), columns = std::move(columns),
             time = dataset.numericColumn(fields_.survTime->name),
             event = dataset.numericColumn(fields_.survEvent->name)](const TaskRunner::Progress&) {
                CoxRun fitted = run;
                fitted.result = SurvivalAnalysis::coxPH(time, event, columns,
                                                        {.predictorNames = run.predictors,
                                                         .confidenceLevel = confidenceLevel,
                                                         .maxIterations = maxIterations});
                return fitted;
            };
    }

    void present(const CoxRun& run, ScreenContent& content) const override {
        if (!run.result || run.result->coefficients.empty()) {
            content.gate = couldNotFit(run);
            return;
        }
        addReport({.title = "Cox Proportional Hazards Regression",
                   .sentence = sentence(run),
                   .tiles = tiles(run),
                   .tables = {coefficientTable(*run.result), modelTable(*run.result)},
                   .passage = Passage{"Limits", std::string(limits)},
                   .note = std::string(note),
                   .charts = {coefficientChart(*run.result)},
                   .figureCaption = "Coefficients of the predictors of " + run.time +
                                    " with 95% confidence intervals.",
                   .checks = SurvivalSelection::passedChecks(run.result->readiness),
                   .caution = std::string(caution),
                   .warnings = ResultText::messages(run.result->readiness)},
                  content);
    }
};

}  // namespace

std::unique_ptr<Analysis> SurvivalAnalyses::coxRegression(StudioState& state,
                                                          SurvivalFields& fields) {
    return std::make_unique<CoxRegression>(state, fields, fields.survCoxResult);
}

}  // namespace sorvane
