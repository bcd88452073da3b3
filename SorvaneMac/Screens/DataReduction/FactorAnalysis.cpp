#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/DataReduction/DataReductionAnalyses.h"
#include "SorvaneMac/Screens/DataReduction/LoadingsReport.h"
#include "SorvaneMac/Screens/DataReduction/ReducedVariables.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/TestReport.h"

namespace sorvane {

namespace {

constexpr std::string_view caution =
    "Factors are statistical, not named constructs. Naming is an interpretive judgment, not a "
    "result.";
constexpr std::string_view note =
    "Varimax-rotated factor loadings; items are grouped by their highest-loading factor. Loadings "
    "at or above |.40| are in bold. h2 is the communality.";
constexpr std::string_view notConverged =
    "The communalities still changed after 100 passes; treat the loadings as approximate.";

Gate cannotRun() {
    return {.title = "Cannot run EFA",
            .lead = "",
            .text =
                "EFA needs more items than factors, variance in each item, and enough complete "
                "cases."};
}

ReportTable loadingTable(const FactorsRun& run) {
    const FactorAnalysisResult& result = *run.result;
    const auto columns = static_cast<std::size_t>(result.factorCount);
    const std::vector<std::size_t> order =
        LoadingsReport::groupedOrder(result.varimaxLoadings, columns);
    ReportTable table =
        LoadingsReport::table(run.items, result.varimaxLoadings, order, columns, "F");
    table.title = "Varimax-rotated loadings";
    table.headers.emplace_back("h2");
    for (std::size_t at = 0; at < order.size(); ++at) {
        table.rows[at].push_back(svFmt(result.communalities[order[at]], 2));
        (*table.boldMask)[at].push_back(false);
    }
    return table;
}

ReportTable varianceTable(const FactorAnalysisResult& result) {
    ReportTable table;
    table.title = "Variance explained before rotation";
    table.headers = {"Factor", "Sum of squared loadings", "% of variance"};
    for (std::size_t at = 0; at < result.varianceExplained.size(); ++at) {
        table.rows.push_back({ResultText::count(static_cast<std::int64_t>(at + 1)),
                              svFmt(result.varianceExplained[at], 3),
                              svFmt(100.0 * result.proportionExplained[at], 1)});
    }
    return table;
}

Chart loadingMap(const FactorsRun& run) {
    const FactorAnalysisResult& result = *run.result;
    const auto columns = static_cast<std::size_t>(result.factorCount);
    HeatMap map{.range = ValueRange{-1.0, 1.0}};
    for (std::size_t at = 1; at <= columns; ++at) {
        map.columns.push_back("F" + ResultText::count(static_cast<std::int64_t>(at)));
    }
    for (const std::size_t item : LoadingsReport::groupedOrder(result.varimaxLoadings, columns)) {
        map.rows.push_back(run.items[item]);
        map.values.insert(map.values.end(), result.varimaxLoadings[item].begin(),
                          result.varimaxLoadings[item].end());
    }
    Chart chart;
    chart.title = "Rotated loadings";
    chart.plot = std::move(map);
    return chart;
}

std::string sentence(const FactorAnalysisResult& result) {
    return "An exploratory factor analysis (" + ResultText::count(result.factorCount) +
           " factors, varimax rotation) of " + ResultText::count(result.itemCount) + " items (" +
           ResultText::count(result.casesUsed) + " cases) explained " +
           ReducedVariables::percent(result.proportionExplained.front()) +
           " of the variance on the first factor.";
}

std::vector<Tile> tiles(const FactorAnalysisResult& result) {
    double together = 0.0;
    for (const double share : result.proportionExplained) {
        together += share;
    }
    return {{"Factors", ResultText::count(result.factorCount), "varimax rotation"},
            {"First factor", ReducedVariables::percent(result.proportionExplained.front()),
             "of the variance"},
            {"All factors", ReducedVariables::percent(together), "of the variance"},
            {"Cases used", ResultText::count(result.casesUsed), "complete on all items"}};
}

std::vector<std::string> warnings(const FactorAnalysisResult& result) {
    std::vector<std::string> warnings = ResultText::messages(*result.readiness);
    if (!result.converged) {
        warnings.emplace_back(notConverged);
    }
    return warnings;
}

class FactorAnalysis final : public StoredAnalysis<DataReductionFields, FactorsRun> {
public:
    using StoredAnalysis::StoredAnalysis;

    std::string subtitle() const override {
        return std::string(displayName(DataReductionMethod::efa));
    }

    void addControls(SetupForm& form) override {
        const std::vector<std::string> items = ReducedVariables::names(state_.dataset(), fields_);
        const std::int64_t mostFactors =
            std::max<std::int64_t>(static_cast<std::int64_t>(items.size()) - 1, 1);
        ReducedVariables::addControls(form, state_.dataset(), fields_, "Items");
        form.controls.emplace_back(HeadingControl{"OPTIONS"});
        form.controls.emplace_back(
            OptionControls::stepper("Number of factors", fields_.drFactorCount, 1, mostFactors));
    }

    std::string runLabel() const override { return "Run factor analysis"; }

    std::optional<Gate> gate() const override {
        if (std::optional<Gate> gone = ReducedVariables::gone(state_.dataset(), fields_)) {
            return gone;
        }
        const std::int64_t factors = fields_.drFactorCount.get();
        const bool isReady =
            factors >= 1 && ReducedVariables::vary(state_.dataset(), fields_,
                                                   static_cast<std::size_t>(factors) + 1);
        return isReady ? std::nullopt : std::optional(cannotRun());
    }

    std::string selection() const override {
        return ResultText::listed(ReducedVariables::names(state_.dataset(), fields_));
    }

    Guide guide() const override {
        return {
            .answers =
                "Which few unobserved factors could account for the correlations among the items, "
                "and which items go with which factor after varimax rotation.",
            .needs =
                "More items than factors, at least three items for each factor, and complete "
                "cases: 100 or more, and at least five for each item.",
            .doNotClaim = {std::string(caution),
                           "Do not claim that the structure is confirmed by the data it was found "
                           "in.",
                           "Do not claim that factors are unrelated: varimax keeps them so by "
                           "construction."}};
    }

private:
    std::optional<FactorsRun> compute() override {
        FactorsRun run{.items = ReducedVariables::names(state_.dataset(), fields_)};
        const std::vector<NumericColumn> columns =
            ReducedVariables::columns(state_.dataset(), run.items);
        run.result = FactorAnalyzer::analyze(columns, fields_.drFactorCount.get());
        if (const auto components = PrincipalComponentsAnalyzer::analyze(columns)) {
            run.eigenvalues = components->screeValues;
        }
        return run;
    }

    void present(const FactorsRun& run, ScreenContent& content) const override {
        if (!run.result) {
            content.gate = cannotRun();
            return;
        }
        addReport({.title = "Exploratory Factor Analysis",
                   .sentence = sentence(*run.result),
                   .tiles = tiles(*run.result),
                   .tables = {loadingTable(run), varianceTable(*run.result)},
                   .note = std::string(note),
                   .charts = {LoadingsReport::scree(run.eigenvalues, "Factor"), loadingMap(run)},
                   .figureCaption =
                       "Scree plot of the correlations of " + ResultText::listed(run.items) + ".",
                   .caution = std::string(caution),
                   .warnings = warnings(*run.result)},
                  content);
        content.findings.back().item.table->title = "Results From a Factor Analysis";
    }
};

}  // namespace

std::unique_ptr<Analysis> DataReductionAnalyses::factorAnalysis(StudioState& state,
                                                                DataReductionFields& fields) {
    return std::make_unique<FactorAnalysis>(state, fields, fields.drFactorsRun);
}

}  // namespace sorvane
