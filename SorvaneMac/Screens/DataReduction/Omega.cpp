#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/DataReduction/DataReductionAnalyses.h"
#include "SorvaneMac/Screens/DataReduction/ReducedVariables.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/TestReport.h"

namespace sorvane {

namespace {

constexpr std::string_view notValidity =
    "Reliability is evidence of internal consistency, not proof of validity.";
constexpr std::string_view oneFactor = "Omega assumes a single common factor.";
constexpr std::size_t fewestItems = 3;

Gate cannotRun() {
    return {.title = "Cannot run omega",
            .lead = "",
            .text = "Omega needs 3+ items with variance and enough complete cases."};
}

ReportTable loadingTable(const OmegaRun& run) {
    ReportTable table;
    table.title = "Single-factor loadings";
    table.headers = {"Item", "Loading", "h2"};
    for (std::size_t at = 0; at < run.items.size(); ++at) {
        const double loading = run.result->loadings[at];
        table.rows.push_back({run.items[at], svFmt(loading, 3), svFmt(loading * loading, 3)});
    }
    return table;
}

Chart loadingChart(const OmegaRun& run) {
    Chart chart;
    chart.title = "Loadings on the factor";
    chart.xLabel = "Loading";
    chart.plot = BarPlot{.labels = run.items, .values = run.result->loadings};
    return chart;
}

std::string sentence(const OmegaReliabilityResult& result) {
    return "McDonald's omega total for the " + ResultText::count(result.itemCount) + " items (" +
           ResultText::count(result.casesUsed) + " cases) was " +
           svFmtBounded(result.omegaTotal, 3) +
           (result.cronbachAlpha
                ? ", with Cronbach's alpha = " + svFmtBounded(result.cronbachAlpha, 3)
                : std::string()) +
           ".";
}

std::vector<Tile> tiles(const OmegaReliabilityResult& result) {
    return {{"Omega total", svFmtBounded(result.omegaTotal, 3), "one common factor"},
            {"Cronbach's alpha", svFmtBounded(result.cronbachAlpha, 3), "items as they stand"},
            {"Items", ResultText::count(result.itemCount), ""},
            {"Cases used", ResultText::count(result.casesUsed), "complete on all items"}};
}

std::string note(const OmegaReliabilityResult& result) {
    return ResultText::running(
        {ResultText::running(result.reportingNotes), "h2 is the squared loading."});
}

class Omega final : public StoredAnalysis<DataReductionFields, OmegaRun> {
public:
    using StoredAnalysis::StoredAnalysis;

    std::string subtitle() const override {
        return std::string(displayName(DataReductionMethod::omega));
    }

    void addControls(SetupForm& form) override {
        ReducedVariables::addControls(form, state_.dataset(), fields_, "Items");
    }

    std::string runLabel() const override { return "Run omega"; }

    std::optional<Gate> gate() const override {
        if (std::optional<Gate> gone = ReducedVariables::gone(state_.dataset(), fields_)) {
            return gone;
        }
        return ReducedVariables::vary(state_.dataset(), fields_, fewestItems)
                   ? std::nullopt
                   : std::optional(cannotRun());
    }

    std::string selection() const override {
        return ResultText::listed(ReducedVariables::names(state_.dataset(), fields_));
    }

    Guide guide() const override {
        return {.answers =
                    "How consistent the sum of the items is as a measure of one common factor, "
                    "without asking that all items load alike.",
                .needs =
                    "Three or more items of one scale, coded in the same direction, with variance "
                    "and enough complete cases.",
                .doNotClaim = {std::string(notValidity),
                               "Do not take a high omega as proof of a single factor; omega "
                               "assumes it."}};
    }

private:
    std::optional<OmegaRun> compute() override {
        OmegaRun run{.items = ReducedVariables::names(state_.dataset(), fields_)};
        run.result = OmegaReliabilityAnalyzer::analyze(
            ReducedVariables::columns(state_.dataset(), run.items));
        return run;
    }

    void present(const OmegaRun& run, ScreenContent& content) const override {
        if (!run.result) {
            content.gate = cannotRun();
            return;
        }
        addReport({.title = "McDonald's Omega",
                   .sentence = sentence(*run.result),
                   .tiles = tiles(*run.result),
                   .tables = {loadingTable(run)},
                   .note = note(*run.result),
                   .charts = {loadingChart(run)},
                   .figureCaption = "Loadings of the items on one factor.",
                   .caution = std::string(notValidity) + " " + std::string(oneFactor),
                   .warnings = ResultText::messages(*run.result->readiness)},
                  content);
    }
};

}  // namespace

std::unique_ptr<Analysis> DataReductionAnalyses::omega(StudioState& state,
                                                       DataReductionFields& fields) {
    return std::make_unique<Omega>(state, fields, fields.drOmegaRun);
}

}  // namespace sorvane
