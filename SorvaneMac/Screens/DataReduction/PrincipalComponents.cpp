#include <algorithm>

#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/DataReduction/DataReductionAnalyses.h"
#include "SorvaneMac/Screens/DataReduction/LoadingsReport.h"
#include "SorvaneMac/Screens/DataReduction/ReducedVariables.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/ScatterChart.h"
#include "SorvaneMac/Screens/TestReport.h"

namespace sorvane {

namespace {

constexpr std::string_view caution =
    "Components are statistical summaries, not named constructs. Naming them is an interpretive "
    "judgment, not a result.";
constexpr std::string_view note =
    "Kaiser criterion: components with eigenvalues above 1, in bold, are retained.";

Gate cannotRun() {
    return {.title = "Cannot run PCA",
            .lead = "",
            .text = "PCA needs variables with variance and enough complete cases."};
}

/// How many components are shown in detail: those retained, one at the least.
std::size_t shownComponents(const PrincipalComponentsResult& result) {
    return static_cast<std::size_t>(std::max<std::int64_t>(result.kaiserComponentCount, 1));
}

ReportTable eigenvalueTable(const PrincipalComponentsResult& result) {
    ReportTable table;
    table.title = "Eigenvalues & variance";
    table.headers = {"Component", "Eigenvalue", "% of variance", "Cumulative %"};
    table.boldMask.emplace();
    for (std::size_t at = 0; at < result.eigenvalues.size(); ++at) {
        table.rows.push_back({ResultText::count(static_cast<std::int64_t>(at + 1)),
                              svFmt(result.eigenvalues[at], 3),
                              svFmt(100.0 * result.proportionExplained[at], 1),
                              svFmt(100.0 * result.cumulativeProportion[at], 1)});
        table.boldMask->push_back(
            {false, static_cast<std::int64_t>(at) < result.kaiserComponentCount, false, false});
    }
    return table;
}

ReportTable loadingTable(const ComponentsRun& run) {
    const std::size_t columns = shownComponents(*run.result);
    const LoadingsReport::Loadings& loadings = run.result->loadings;
    ReportTable table = LoadingsReport::table(
        run.items, loadings, LoadingsReport::groupedOrder(loadings, columns), columns, "");
    table.title = "Component loadings";
    table.groupHeaders = {{.label = "", .span = 1},
                          {.label = "Component", .span = static_cast<int>(columns)}};
    table.note = run.result->kaiserComponentCount == 0
                     ? "Unrotated loadings on the first component; none is retained."
                     : "Unrotated loadings on the retained components.";
    *table.note += " Loadings at or above |.40| are in bold.";
    return table;
}

std::vector<Chart> charts(const PrincipalComponentsResult& result) {
    std::vector<Chart> charts = {LoadingsReport::scree(result.screeValues, "Component")};
    if (result.componentScores) {
        std::vector<std::optional<double>> first;
        std::vector<std::optional<double>> second;
        for (const std::vector<double>& scores : *result.componentScores) {
            first.emplace_back(scores[0]);
            second.emplace_back(scores[1]);
        }
        Chart scores =
            scatterChart({"Component 1", NumericColumn(std::move(first))},
                         {"Component 2", NumericColumn(std::move(second))}, ScatterLine::none);
        scores.title = "Component scores";
        scores.subtitle = scores.subtitle.empty() ? "The cases on the first two components."
                                                  : "The first two components. " + scores.subtitle;
        charts.push_back(std::move(scores));
    }
    return charts;
}

std::string sentence(const PrincipalComponentsResult& result) {
    return "Principal components analysis of " + ResultText::count(result.itemCount) + " items (" +
           ResultText::count(result.casesUsed) + " cases) retained " +
           ResultText::count(result.kaiserComponentCount) +
           " components with eigenvalues above 1. The first component explained " +
           ReducedVariables::percent(result.proportionExplained.front()) + " of the variance.";
}

std::vector<Tile> tiles(const PrincipalComponentsResult& result) {
    return {
        {"Components retained", ResultText::count(result.kaiserComponentCount),
         "eigenvalue above 1"},
        {"First component", ReducedVariables::percent(result.proportionExplained.front()),
         "of the variance"},
        {"Retained together",
         ReducedVariables::percent(result.kaiserComponentCount == 0
                                       ? 0.0
                                       : result.cumulativeProportion[shownComponents(result) - 1]),
         "of the variance"},
        {"Cases used", ResultText::count(result.casesUsed), "complete on all items"}};
}

class PrincipalComponents final : public StoredAnalysis<DataReductionFields, ComponentsRun> {
public:
    using StoredAnalysis::StoredAnalysis;

    std::string subtitle() const override {
        return std::string(displayName(DataReductionMethod::pca));
    }

    void addControls(SetupForm& form) override {
        ReducedVariables::addControls(form, state_.dataset(), fields_, "Items");
    }

    std::string runLabel() const override { return "Run PCA"; }

    std::optional<Gate> gate() const override {
        if (std::optional<Gate> gone = ReducedVariables::gone(state_.dataset(), fields_)) {
            return gone;
        }
        return ReducedVariables::vary(state_.dataset(), fields_, 2) ? std::nullopt
                                                                    : std::optional(cannotRun());
    }

    std::string selection() const override {
        return ResultText::listed(ReducedVariables::names(state_.dataset(), fields_));
    }

    Guide guide() const override {
        return {
            .answers =
                "How much of the variance of several related variables a few weighted sums of "
                "them carry.",
            .needs =
                "At least two numeric variables that vary, and complete cases: 100 or more, and "
                "at least five for each variable, for stable components.",
            .doNotClaim = {std::string(caution),
                           "Do not treat eigenvalues above 1 as proof of the number of "
                           "dimensions; the rule often keeps too many."}};
    }

private:
    std::optional<ComponentsRun> compute() override {
        ComponentsRun run{.items = ReducedVariables::names(state_.dataset(), fields_)};
        run.result = PrincipalComponentsAnalyzer::analyze(
            ReducedVariables::columns(state_.dataset(), run.items), {.computeScores = true});
        return run;
    }

    void present(const ComponentsRun& run, ScreenContent& content) const override {
        if (!run.result) {
            content.gate = cannotRun();
            return;
        }
        addReport({.title = "Principal Components Analysis",
                   .sentence = sentence(*run.result),
                   .tiles = tiles(*run.result),
                   .tables = {eigenvalueTable(*run.result), loadingTable(run)},
                   .note = std::string(note),
                   .charts = charts(*run.result),
                   .figureCaption =
                       "Scree plot of the components of " + ResultText::listed(run.items) + ".",
                   .caution = std::string(caution),
                   .warnings = ResultText::messages(*run.result->readiness)},
                  content);
    }
};

}  // namespace

std::unique_ptr<Analysis> DataReductionAnalyses::principalComponents(StudioState& state,
                                                                     DataReductionFields& fields) {
    return std::make_unique<PrincipalComponents>(state, fields, fields.drComponentsRun);
}

}  // namespace sorvane
