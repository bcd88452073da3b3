#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/Multilevel/MultilevelAnalyses.h"
#include "SorvaneMac/Screens/Multilevel/MultilevelCharts.h"
#include "SorvaneMac/Screens/Multilevel/MultilevelGates.h"
#include "SorvaneMac/Screens/Multilevel/MultilevelGuide.h"
#include "SorvaneMac/Screens/Multilevel/MultilevelSelection.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/TestReport.h"

namespace sorvane {

namespace {

constexpr std::string_view note =
    "Marginal maximum likelihood by adaptive quadrature with 15 points. B is the change of the log "
    "odds of a higher level within a cluster for a step of one; OR is the odds ratio with its 95% "
    "confidence interval; z and p are Wald tests.";
constexpr std::string_view caution =
    "Odds ratios compare cases of one cluster; over the population as a whole they are closer to "
    "1. "
    "They are taken as the same at every cut point, which is not tested here, and describe "
    "association, not causation.";

Guide guideOfLevels() {
    return {.answers =
                "How the odds of a higher level of an ordered outcome change with predictors when "
                "cases share a cluster (pupils in a school, answers of a person), and how much of "
                "what the predictors leave lies between clusters.",
            .needs =
                "An outcome of three or more ordered levels, coded as numbers in their order, and "
                "the variable that says which cluster a case belongs to. Ten clusters or more, "
                "better thirty: with fewer, the variance between clusters is hardly known.",
            .doNotClaim = {
                "Do not read an odds ratio as that of the whole population; it compares cases of "
                "one cluster.",
                "Do not read the one odds ratio per predictor without care: it is assumed to be "
                "the same at every cut point, and that is not tested.",
                "Do not read one coefficient as both an effect within clusters and one between "
                "them; center the predictor within clusters to tell them apart.",
                "Do not claim that clusters do not matter because their variance is small.",
                "Do not read coefficients as causal; they are associations in a clustered "
                "design."}};
}

ReportTable effectTable(const MultilevelOrdinalRun& run) {
    const MultilevelOrdinalResult& result = *run.result;
    ReportTable table;
    table.title = "Fixed Effects for " + run.choice.outcome;
    table.headers = {"Predictor", "B", "SE", "z", "p", "OR", "LL", "UL"};
    table.groupHeaders = {{.label = "", .span = 6}, {.label = "95% CI", .span = 2}};
    for (std::size_t j = 0; j < result.fixedEffects.size(); ++j) {
        const MultilevelFixedEffect& each = result.fixedEffects[j];
        const int decimals = ReportDecimals::of(each.standardError);
        table.rows.push_back({each.name, svFigure(each.estimate, decimals),
                              svFigure(each.standardError, decimals), svFmt(each.z, 2),
                              ResultText::pCell(each.pValue),
                              ResultText::ratio(result.oddsRatios[j], decimals),
                              ResultText::ratio(result.oddsRatioLowerBounds[j], decimals),
                              ResultText::ratio(result.oddsRatioUpperBounds[j], decimals)});
    }
    return table;
}

ReportTable thresholdTable(const MultilevelOrdinalResult& result) {
    ReportTable table;
    table.title = "Thresholds";
    table.headers = {"Between levels", "Estimate", "SE"};
    for (const MultilevelOrdinalThreshold& each : result.thresholds) {
        const int decimals = ReportDecimals::of(each.standardError);
        table.rows.push_back(
            {each.name, svFigure(each.estimate, decimals), svFigure(each.standardError, decimals)});
    }
    table.note =
        "A threshold is the log odds of a level up to the cut point in an average cluster where "
        "all predictors are 0.";
    return table;
}

ReportTable varianceTable(const MultilevelOrdinalResult& result) {
    ReportTable table;
    table.title = "Random Effects";
    table.headers = {"Component", "Variance", "SD"};
    for (const MultilevelVarianceComponent& each : result.varianceComponents) {
        table.rows.push_back(
            {each.name, svFmt(each.variance, 3), svFmt(each.standardDeviation, 3)});
    }
    return table;
}

ReportTable levelTable(const MultilevelOrdinalResult& result) {
    ReportTable table;
    table.title = "Levels of the outcome";
    table.headers = {"Level", "n", "%"};
    for (std::size_t level = 0; level < result.levels.size(); ++level) {
        table.rows.push_back({result.levels[level], ResultText::count(result.levelCounts[level]),
                              svFmt(100.0 * static_cast<double>(result.levelCounts[level]) /
                                        static_cast<double>(result.n),
                                    1)});
    }
    return table;
}

std::vector<ReportTable> tables(const MultilevelOrdinalRun& run) {
    std::vector<ReportTable> all;
    if (!run.result->fixedEffects.empty()) {
        all.push_back(effectTable(run));
    }
    all.push_back(thresholdTable(*run.result));
    all.push_back(varianceTable(*run.result));
    all.push_back(levelTable(*run.result));
    return all;
}

std::string sentence(const MultilevelOrdinalRun& run) {
    const MultilevelOrdinalResult& result = *run.result;
    std::string text = MultilevelOrdinal::summary(result);
    for (std::size_t j = 0; j < result.fixedEffects.size(); ++j) {
        const MultilevelFixedEffect& each = result.fixedEffects[j];
        const int decimals = ReportDecimals::inSentence(each.standardError);
        text += " The effect of " + each.name + " was " +
                std::string(ResultText::significanceWords(each.pValue)) + ", " +
                ResultText::ratioSentence("OR", result.oddsRatios[j], decimals) + ", 95% CI [" +
                ResultText::ratio(result.oddsRatioLowerBounds[j], decimals) + ", " +
                ResultText::ratio(result.oddsRatioUpperBounds[j], decimals) + "], " +
                ResultText::pSentence(each.pValue) + ".";
    }
    return text;
}

std::vector<Tile> tiles(const MultilevelOrdinalRun& run) {
    const MultilevelOrdinalResult& result = *run.result;
    return {{"ICC (latent scale)",
             result.latentICC ? svFmtBounded(*result.latentICC, 2) : std::string("--"),
             run.result->predictorCount > 0 ? "between clusters, after the predictors"
                                            : "share of variance between clusters"},
            {"Log likelihood", svFmt(result.logLikelihood, 2),
             result.converged ? "converged" : "not converged"},
            {"Clusters", ResultText::count(result.nClusters), run.choice.cluster},
            {"Cases used", ResultText::count(result.n), "complete on all variables"}};
}

/// The model of these columns, and what sets their clusters apart.
MultilevelOrdinalRun fitted(const MultilevelColumns& columns) {
    const MultilevelOptions options{.fixedNames = columns.choice.predictors,
                                    .clusterLabel = columns.choice.cluster};
    MultilevelOrdinalRun run{.choice = columns.choice,
                             .result = MultilevelOrdinal::fit(columns.data, options)};
    if (run.result && !run.result->thresholds.empty()) {
        run.charts = MultilevelCharts::of(
            run.choice, {.varianceComponents = run.result->varianceComponents},
            {.clusters = MultilevelOrdinal::clusterEffects(columns.data, options, *run.result)});
    }
    return run;
}

class OrdinalModel final : public BackgroundAnalysis<MultilevelFields, MultilevelOrdinalRun> {
public:
    using BackgroundAnalysis::BackgroundAnalysis;

    std::string heading() const override { return std::string(MultilevelGuide::heading); }
    std::string subtitle() const override {
        return "Ordered categories of cases in clusters, by a cumulative logit with a random "
               "intercept.";
    }
    void addControls(SetupForm& form) override {
        MultilevelSelection::addVariables(form, state_.dataset(), fields_);
    }
    std::string runLabel() const override { return std::string(MultilevelGuide::runLabel); }
    std::optional<Gate> gate() const override {
        return MultilevelGates::gate(state_.dataset(), fields_);
    }
    std::string selection() const override {
        return fields_.mlOutcome->name + " in " + fields_.mlCluster->name;
    }
    std::string invitation() const override { return std::string(MultilevelGuide::hint); }
    Guide guide() const override { return guideOfLevels(); }

private:
    std::string computingLabel() const override { return "Fitting ordinal multilevel…"; }
    std::string statusLine() const override { return "Estimating the model…"; }

    Compute computation() const override {
        return [columns = MultilevelSelection::columns(state_.dataset(), fields_)](
                   const TaskRunner::Progress&) {
            return fitted(columns);
        };
    }

    void present(const MultilevelOrdinalRun& run, ScreenContent& content) const override {
        if (!run.result || run.result->thresholds.empty()) {
            content.gate = {.title = "The model could not be estimated",
                            .lead = run.choice.outcome + " in " + run.choice.cluster,
                            .text = run.result ? ResultText::obstacle(run.result->readiness)
                                               : "The outcome must hold ordered numbers. Pick "
                                                 "another one in the Setup panel."};
            return;
        }
        addReport({.title = "Ordinal multilevel model: " + run.choice.outcome,
                   .sentence = sentence(run),
                   .tiles = tiles(run),
                   .tables = tables(run),
                   .note = std::string(note),
                   .charts = run.charts,
                   .figureCaption =
                       "Intercepts of the levels of " + run.choice.cluster + " with 95% intervals.",
                   .caution = std::string(caution),
                   .warnings = ResultText::messages(run.result->readiness)},
                  content);
    }
};

}  // namespace

std::unique_ptr<Analysis> MultilevelAnalyses::ordinalModel(StudioState& state,
                                                           MultilevelFields& fields) {
    return std::make_unique<OrdinalModel>(state, fields, fields.mlOrdinalResult);
}

}  // namespace sorvane
