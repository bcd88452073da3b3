#include "SorvaneCore/Models/Mediation/MediationRows.h"
#include "SorvaneCore/Numerics/MathDistributions.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Report/SignificanceFormatting.h"
#include "SorvaneMac/Screens/Mediation/MediationAnalyses.h"
#include "SorvaneMac/Screens/Mediation/MediationSelection.h"
#include "SorvaneMac/Screens/Mediation/ProcessAnalysis.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/TestReport.h"

namespace sorvane {

namespace {

constexpr auto mode = MediationScreenMode::mediation;
constexpr std::int64_t resamples = 5000;
constexpr std::uint64_t seed = 20260803;
constexpr double confidenceLevel = 0.95;

constexpr std::string_view panelText =
    "Indirect effect of X on Y through M, with a percentile-bootstrap confidence interval (5,000 "
    "resamples).";
constexpr std::string_view method =
    "Indirect effect judged by a 5,000-resample percentile bootstrap. Listwise deletion.";
constexpr std::string_view note =
    "The indirect effect is significant when the bootstrap interval excludes zero. a: X → M. b: M "
    "→ Y controlling X. c′: direct effect controlling M. c: total effect.";
constexpr std::string_view caution =
    "Mediation describes a causal pathway only under strong assumptions (no unmeasured confounding "
    "of X–M and M–Y). With cross-sectional data, treat this as consistency with, not proof of, "
    "mediation.";
constexpr std::string_view noShare =
    "The proportion mediated lies outside 0 to 1 because the indirect and the direct effect run in "
    "opposite directions; do not read it as a share.";

Guide guideOfMediation() {
    return {.answers =
                "How much of the effect of X on Y can be accounted for by way of a mediator M: "
                "the indirect effect, with a bootstrap interval, beside the direct one.",
            .needs =
                "Three different numeric variables, best measured in the order X, M, Y, and every "
                "common cause of M and Y among the covariates. Below about 50 cases the interval "
                "is wide and unstable.",
            .doNotClaim = {
                "Do not claim a causal path from one cross-sectional survey; the same figures fit "
                "other orders of the three variables.",
                "Do not speak of full mediation because the direct effect is not significant.",
                "Do not report the proportion mediated where the total effect is small or runs "
                "the other way.",
                "Do not decide by the Sobel test where the bootstrap interval says otherwise."}};
}

/// One of the four paths, with what it runs between and its degrees of freedom.
struct ShownPath {
    std::string words;
    const MediationPath& path;
    std::int64_t df = 0;
};

std::vector<ShownPath> pathsOf(const MediationRun& run) {
    const MediationResult& result = *run.result;
    const auto& [x, m, y, covariates] = run.variables;
    const std::int64_t df = result.n - static_cast<std::int64_t>(covariates.size()) - 2;
    return {{"a: " + x + " → " + m, result.a, df},
            {"b: " + m + " → " + y, result.b, df - 1},
            {"c′: " + x + " → " + y, result.cPrime, df - 1},
            {"c: " + x + " → " + y, result.cTotal, df}};
}

ReportTable pathTable(const MediationRun& run) {
    ReportTable table;
    table.title = "Paths of the mediation model";
    table.groupHeaders = {{.label = "", .span = 6}, {.label = "95% CI", .span = 2}};
    table.headers = {"Path", "B", "SE", "t", "df", "p", "LL", "UL"};
    for (const ShownPath& each : pathsOf(run)) {
        const double error = each.path.standardError;
        const double half = error * MathDistributions::studentTCritical(
                                        1.0 - confidenceLevel, static_cast<double>(each.df));
        const int decimals = ReportDecimals::of(error);
        table.rows.push_back({each.words, svFigure(each.path.estimate, decimals),
                              svFigure(error, decimals), svFmt(each.path.t, 2),
                              ResultText::count(each.df), ResultText::pCell(each.path.pValue),
                              svFigure(each.path.estimate - half, decimals),
                              svFigure(each.path.estimate + half, decimals)});
    }
    return table;
}

std::string noteOn(const MediationVariables& variables) {
    if (variables.covariates.empty()) {
        return std::string(note);
    }
    return std::string(note) +
           " Covariates of all three models: " + ResultText::listed(variables.covariates) + ".";
}

/// Two digits of a standard error of the size that the interval has.
int decimalsOfIndirect(const MediationResult& result) {
    constexpr double errorsWide = 4.0;
    return ReportDecimals::of((result.bootUpper - result.bootLower) / errorsWide);
}

std::string intervalText(const MediationResult& result) {
    const int decimals = decimalsOfIndirect(result);
    return "[" + svFigure(result.bootLower, decimals) + ", " +
           svFigure(result.bootUpper, decimals) + "]";
}

ReportTable indirectTable(const MediationRun& run) {
    const MediationResult& result = *run.result;
    const int decimals = decimalsOfIndirect(result);
    ReportTable table;
    table.title = "Indirect effect of " + run.variables.x + " on " + run.variables.y;
    table.groupHeaders = {{.label = "", .span = 2},
                          {.label = "95% CI", .span = 2},
                          {.label = "Sobel test", .span = 2},
                          {.label = "", .span = 2}};
    table.headers = {"Through", "a × b", "LL", "UL", "z", "p", "Proportion mediated", "Resamples"};
    table.rows = {{run.variables.middle, svFigure(result.indirect, decimals),
                   svFigure(result.bootLower, decimals), svFigure(result.bootUpper, decimals),
                   svFmt(result.sobelZ, 2), ResultText::pCell(result.sobelP),
                   svFmt(result.proportionMediated, 2),
                   ResultText::count(result.bootstrapSamples)}};
    table.note =
        "Percentile bootstrap from a fixed seed: the same data give the same interval on every "
        "run. The proportion mediated is a × b over c.";
    return table;
}

std::string sentence(const MediationRun& run) {
    const MediationResult& result = *run.result;
    const auto& [x, m, y, covariates] = run.variables;
    return "The indirect effect of " + x + " on " + y + " through " + m + " was " +
           svFigure(result.indirect, decimalsOfIndirect(result)) +
           ", 95% percentile bootstrap CI " + intervalText(result) + " (" +
           ResultText::count(result.bootstrapSamples) +
           " resamples, N = " + ResultText::count(result.n) + "); the direct effect was " +
           MediationSelection::pathText(result.cPrime, pathsOf(run)[2].df) +
           (covariates.empty() ? "."
                               : ", with " + ResultText::listed(covariates) + " held constant.");
}

bool excludesZero(const MediationResult& result) {
    return result.bootLower > 0.0 || result.bootUpper < 0.0;
}

std::vector<Tile> tiles(const MediationResult& result) {
    const auto effect = [](const MediationPath& path) {
        return svFigure(path.estimate, ReportDecimals::of(path.standardError));
    };
    return {
        {"Indirect effect", svFigure(result.indirect, decimalsOfIndirect(result)),
         "95% CI " + intervalText(result)},
        {"Interval excludes zero", excludesZero(result) ? "yes" : "no",
         excludesZero(result) ? "statistically significant" : "not statistically significant"},
        {"Direct effect (c′)", effect(result.cPrime), ResultText::pSentence(result.cPrime.pValue)},
        {"Total effect (c)", effect(result.cTotal), ResultText::pSentence(result.cTotal.pValue)},
        {"Cases used", ResultText::count(result.n), "complete on all variables"}};
}

std::string label(std::string name, const MediationPath& path) {
    return std::move(name) + " = " +
           svFigure(path.estimate, ReportDecimals::of(path.standardError)) +
           std::string(SignificanceFormatting::stars(path.pValue));
}

Chart pathFigure(const MediationRun& run) {
    const MediationResult& result = *run.result;
    const auto& [x, m, y, covariates] = run.variables;
    Chart chart;
    chart.title = "Path diagram";
    chart.subtitle = "Unstandardized coefficients. " + std::string(ResultText::starLegend);
    chart.plot = PathDiagram{
        .nodes = {{x}, {m}, {y}},
        .paths = {{.from = 0, .to = 1, .label = label("a", result.a)},
                  {.from = 1, .to = 2, .label = label("b", result.b)},
                  {.from = 0,
                   .to = 2,
                   .label = label("c′", result.cPrime) + "  (" + label("c", result.cTotal) + ")"}}};
    return chart;
}

std::vector<std::string> warnings(const MediationRun& run) {
    const MediationResult& result = *run.result;
    std::vector<std::string> messages = ResultText::messages(result.readiness);
    if (result.bootstrapSamples < resamples) {
        messages.push_back("In " + ResultText::count(resamples - result.bootstrapSamples) + " of " +
                           ResultText::count(resamples) +
                           " resamples a model could not be fitted; they are left out.");
    }
    const double share = result.proportionMediated.value_or(0.0);
    if (share < 0.0 || share > 1.0) {
        messages.emplace_back(noShare);
    }
    messages.insert(messages.end(), run.remarks.begin(), run.remarks.end());
    return messages;
}

class SimpleMediation final : public ProcessAnalysis<mode, MediationRun> {
public:
    using ProcessAnalysis::ProcessAnalysis;

    std::string subtitle() const override { return std::string(panelText); }
    void addControls(SetupForm& form) override {
        MediationSelection::addControls(form, state_.dataset(), fields_, method);
    }
    std::string runLabel() const override { return "Run mediation"; }
    Guide guide() const override { return guideOfMediation(); }

private:
    std::string computingLabel() const override { return "Bootstrapping the indirect effect…"; }
    std::string statusLine() const override {
        return "Bootstrap resampling runs off the main thread.";
    }

    Compute computation() const override {
        const MediationVariables chosen = variables();
        return [chosen, columns = MediationSelection::columns(state_.dataset(), chosen)](
                   const TaskRunner::Progress&) {
            MediationRun run{.variables = chosen};
            run.result = MediationAnalysis::simpleMediation(
                columns.x, columns.middle, columns.y, columns.covariates,
                {.bootstrapSamples = resamples, .confidenceLevel = confidenceLevel, .seed = seed});
            const auto rows =
                MediationRows::of(columns.x, columns.middle, columns.y, columns.covariates);
            if (run.result && rows) {
                MediationSelection::addTwoValued(run.remarks, chosen.middle, rows->middle());
                MediationSelection::addTwoValued(run.remarks, chosen.y, rows->outcome());
            }
            return run;
        };
    }

    void present(const MediationRun& run, ScreenContent& content) const override {
        if (!run.result) {
            content.gate = MediationSelection::noResult(run.variables, mode);
            return;
        }
        const auto& [x, m, y, covariates] = run.variables;
        addReport(
            {.title = "Mediation: " + x + " → " + m + " → " + y,
             .sentence = sentence(run),
             .tiles = tiles(*run.result),
             .tables = {pathTable(run), indirectTable(run)},
             .note = noteOn(run.variables),
             .charts = {pathFigure(run)},
             .figureCaption = "Mediation of the effect of " + x + " on " + y + " through " + m +
                              ": unstandardized coefficients, with the total effect in "
                              "parentheses. " +
                              std::string(ResultText::starLegend),
             .caution = std::string(caution),
             .warnings = warnings(run)},
            content);
    }
};

}  // namespace

std::unique_ptr<Analysis> MediationAnalyses::simpleMediation(StudioState& state,
                                                             MediationFields& fields) {
    return std::make_unique<SimpleMediation>(state, fields, fields.medResult);
}

}  // namespace sorvane
