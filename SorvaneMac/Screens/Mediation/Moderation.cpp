#include <algorithm>

#include "SorvaneCore/Analyses/Basics/SampleMoments.h"
#include "SorvaneCore/Models/Mediation/MediationRows.h"
#include "SorvaneCore/Numerics/MathDistributions.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/Mediation/MediationAnalyses.h"
#include "SorvaneMac/Screens/Mediation/MediationSelection.h"
#include "SorvaneMac/Screens/Mediation/ProcessAnalysis.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/TestReport.h"

namespace sorvane {

namespace {

constexpr auto mode = MediationScreenMode::moderation;
constexpr double confidenceLevel = 0.95;

constexpr std::string_view panelText =
    "Interaction of X and W predicting Y, with simple slopes at the moderator mean and ±1 SD.";
constexpr std::string_view method =
    "Simple slopes at the moderator mean and ±1 SD. Listwise deletion.";
constexpr std::string_view caution =
    "An interaction in observed data shows that the association of X and Y differs with W, not "
    "that W changes the effect of X. It also depends on the scale on which Y is measured.";
constexpr std::string_view twoValues =
    "The moderator has only two values, so that the mean and ±1 SD are levels that no case has; "
    "compare its two groups instead.";

Guide guideOfModeration() {
    return {.answers =
                "Whether the effect of X on Y depends on the level of a moderator W, and how "
                "large it is where W is low, average and high.",
            .needs =
                "Three different numeric variables. Interactions are small and need many "
                "cases: below about 50 hardly any is found, and often some hundreds are "
                "needed. W must vary.",
            .doNotClaim = {
                "Do not read the coefficient of X as its average effect; beside an interaction "
                "it is the effect where W is 0, which may lie outside the data.",
                "Do not conclude from one significant and one insignificant simple slope that "
                "the two differ; the interaction tests that.",
                "Do not probe a slope at levels of W that hardly anyone has."}};
}

std::int64_t residualDf(const ModerationResult& result) {
    return result.n - static_cast<std::int64_t>(result.coefficients.size());
}

/// A row of a coefficient or of a slope, from its estimate to the ends of its interval.
std::vector<std::string> estimateCells(const MediationPath& path, std::int64_t df) {
    const int decimals = ReportDecimals::of(path.standardError);
    const double half = path.standardError * MathDistributions::studentTCritical(
                                                 1.0 - confidenceLevel, static_cast<double>(df));
    return {svFigure(path.estimate, decimals),
            svFigure(path.standardError, decimals),
            svFmt(path.t, 2),
            ResultText::pCell(path.pValue),
            svFigure(path.estimate - half, decimals),
            svFigure(path.estimate + half, decimals)};
}

MediationPath pathOf(const SimpleSlope& slope) {
    return {slope.label, slope.slope, slope.standardError, slope.t, slope.pValue};
}

ReportTable coefficientTable(const ModerationRun& run) {
    ReportTable table;
    table.title = "Model coefficients";
    table.groupHeaders = {{.label = "", .span = 5}, {.label = "95% CI", .span = 2}};
    table.headers = {"Predictor", "B", "SE", "t", "p", "LL", "UL"};
    for (const MediationPath& each : run.result->coefficients) {
        table.rows.push_back({each.label});
        const std::vector<std::string> cells = estimateCells(each, residualDf(*run.result));
        table.rows.back().insert(table.rows.back().end(), cells.begin(), cells.end());
    }
    return table;
}

std::string coefficientNote(const ModerationRun& run) {
    const auto& [x, w, y, covariates] = run.variables;
    return "B = unstandardized coefficient; SE = standard error. R² = " +
           svFmtBounded(run.result->rSquared, 3) + ". t has " +
           ResultText::count(residualDf(*run.result)) +
           " degrees of freedom. Nothing is centered: the coefficient of " + x +
           " is its effect where " + w + " is 0.";
}

ReportTable slopeTable(const ModerationRun& run) {
    const auto& [x, w, y, covariates] = run.variables;
    ReportTable table;
    table.title = "Simple slopes of " + x + " at the moderator mean and ±1 SD.";
    table.groupHeaders = {{.label = "", .span = 6}, {.label = "95% CI", .span = 2}};
    table.headers = {"Level", w, "B", "SE", "t", "p", "LL", "UL"};
    const std::vector<SimpleSlope>& slopes = run.result->simpleSlopes;
    // From one SD below the mean to one above it.
    const double deviation = (slopes.back().moderatorValue - slopes.front().moderatorValue) / 2.0;
    const int decimals = ReportDecimals::of(deviation, 2);
    for (const SimpleSlope& each : slopes) {
        table.rows.push_back({each.label, svFigure(each.moderatorValue, decimals)});
        const std::vector<std::string> cells = estimateCells(pathOf(each), residualDf(*run.result));
        table.rows.back().insert(table.rows.back().end(), cells.begin(), cells.end());
    }
    table.note = "Each row is the effect of " + x + " at that level of " + w + ".";
    return table;
}

std::string sentence(const ModerationRun& run) {
    const ModerationResult& result = *run.result;
    const auto& [x, w, y, covariates] = run.variables;
    std::string text = "The interaction of " + x + " and " + w + " predicting " + y + " was " +
                       std::string(ResultText::significanceWords(result.interaction.pValue)) +
                       ", " + MediationSelection::pathText(result.interaction, residualDf(result)) +
                       " (R² = " + svFmtBounded(result.rSquared, 2) +
                       ", N = " + ResultText::count(result.n) + ").";
    std::vector<std::string> slopes;
    for (const SimpleSlope& each : result.simpleSlopes) {
        slopes.push_back(svFigure(each.slope, ReportDecimals::of(each.standardError)) + " at " +
                         each.label + " (" + ResultText::pSentence(each.pValue) + ")");
    }
    return text + " The simple slope of " + x + " was " + ResultText::listed(slopes) + "." +
           (covariates.empty()
                ? ""
                : " " + ResultText::listed(covariates) +
                      (covariates.size() > 1 ? " were" : " was") + " held constant.");
}

std::vector<Tile> tiles(const ModerationResult& result) {
    const MediationPath& product = result.interaction;
    return {{"Interaction", svFigure(product.estimate, ReportDecimals::of(product.standardError)),
             "t(" + ResultText::count(residualDf(result)) + ") = " + svFmt(product.t, 2)},
            ResultText::pValueTile(product.pValue),
            {"R²", svFmtBounded(result.rSquared, 3), "of the whole model"},
            {"Cases used", ResultText::count(result.n), "complete on all variables"}};
}

/// The fitted line of Y over the observed range of X at each level of W, the covariates at their
/// means.
Chart slopeLines(const ModerationRun& run, const MediationRows& rows) {
    const ModerationResult& result = *run.result;
    const std::vector<MediationPath>& b = result.coefficients;
    constexpr std::size_t firstCovariate = 4;
    double base = b[0].estimate;
    std::size_t at = firstCovariate;
    for (const std::vector<double>* covariate : rows.covariates()) {
        base += b[at++].estimate * SampleMoments::mean(*covariate);
    }
    const auto [low, high] = std::ranges::minmax(rows.x());
    LinePlot plot{.markers = false};
    for (const SimpleSlope& each : result.simpleSlopes) {
        const double start = base + b[2].estimate * each.moderatorValue;
        plot.series.push_back({.name = each.label,
                               .x = {low, high},
                               .y = {start + each.slope * low, start + each.slope * high}});
    }
    Chart chart;
    chart.title = "Simple slopes";
    chart.subtitle = run.variables.covariates.empty() ? "" : "Covariates at their means.";
    chart.xLabel = run.variables.x;
    chart.yLabel = run.variables.y;
    chart.plot = std::move(plot);
    return chart;
}

/// What must be said of the levels at which the slopes are taken.
std::vector<std::string> remarksOn(const ModerationRun& run, const std::vector<double>& moderator) {
    if (MediationSelection::areTwoValued(moderator)) {
        return {std::string(twoValues)};
    }
    const auto [low, high] = std::ranges::minmax(moderator);
    std::vector<std::string> outside;
    for (const SimpleSlope& each : run.result->simpleSlopes) {
        if (each.moderatorValue < low || each.moderatorValue > high) {
            outside.push_back(each.label);
        }
    }
    if (outside.empty()) {
        return {};
    }
    return {ResultText::listed(outside) + (outside.size() > 1 ? " lie" : " lies") +
            " beyond all observed values, so that the slope there is an extrapolation."};
}

class Moderation final : public ProcessAnalysis<mode, ModerationRun> {
public:
    using ProcessAnalysis::ProcessAnalysis;

    std::string subtitle() const override { return std::string(panelText); }
    void addControls(SetupForm& form) override {
        MediationSelection::addControls(form, state_.dataset(), fields_, method);
    }
    std::string runLabel() const override { return "Run moderation"; }
    Guide guide() const override { return guideOfModeration(); }

private:
    std::string computingLabel() const override { return "Estimating the interaction…"; }
    std::string statusLine() const override { return "The model is being fitted."; }

    Compute computation() const override {
        const MediationVariables chosen = variables();
        return [chosen, columns = MediationSelection::columns(state_.dataset(), chosen)](
                   const TaskRunner::Progress&) {
            ModerationRun run{.variables = chosen};
            run.result = MediationAnalysis::moderation(
                columns.x, columns.middle, columns.y, columns.covariates,
                {.x = chosen.x, .moderator = chosen.middle, .covariates = chosen.covariates});
            const auto rows =
                MediationRows::of(columns.x, columns.middle, columns.y, columns.covariates);
            if (run.result && rows) {
                run.slopes = slopeLines(run, *rows);
                run.remarks = remarksOn(run, rows->middle());
                MediationSelection::addTwoValued(run.remarks, chosen.y, rows->outcome());
            }
            return run;
        };
    }

    void present(const ModerationRun& run, ScreenContent& content) const override {
        if (!run.result) {
            content.gate = MediationSelection::noResult(run.variables, mode);
            return;
        }
        const auto& [x, w, y, covariates] = run.variables;
        std::vector<std::string> warnings = ResultText::messages(run.result->readiness);
        warnings.insert(warnings.end(), run.remarks.begin(), run.remarks.end());
        addReport({.title = "Moderation: " + x + " × " + w + " → " + y,
                   .sentence = sentence(run),
                   .tiles = tiles(*run.result),
                   .tables = {coefficientTable(run), slopeTable(run)},
                   .note = coefficientNote(run),
                   .charts = {run.slopes},
                   .figureCaption = "Simple slopes of " + x + " at the moderator mean and ±1 SD.",
                   .caution = std::string(caution),
                   .warnings = std::move(warnings)},
                  content);
    }
};

}  // namespace

std::unique_ptr<Analysis> MediationAnalyses::moderation(StudioState& state,
                                                        MediationFields& fields) {
    return std::make_unique<Moderation>(state, fields, fields.modResult);
}

}  // namespace sorvane
