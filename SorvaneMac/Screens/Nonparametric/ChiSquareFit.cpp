#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/Nonparametric/CategoryFields.h"
#include "SorvaneMac/Screens/Nonparametric/NonparametricAnalyses.h"
#include "SorvaneMac/Screens/Nonparametric/NonparametricGates.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/SelectionGates.h"
#include "SorvaneMac/Screens/TestReport.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

namespace {

using VariableLists::anovaGroupingVariables;

constexpr std::string_view caution =
    "Tests fit to expected proportions; default expectation is uniform.";
constexpr std::string_view note = "Expected counts assume equal proportions across categories.";
constexpr std::string_view name = "goodness-of-fit";

ReportTable categoryTable(const GoodnessOfFitRun& run) {
    ReportTable table;
    table.title = "Counts of " + run.category;
    table.headers = {run.category, "Observed", "Expected"};
    for (std::size_t i = 0; i < run.result->observed.size(); ++i) {
        table.rows.push_back({run.result->categoryLabels[i],
                              ResultText::count(run.result->observed[i]),
                              svFmt(run.result->expected[i], 1)});
    }
    return table;
}

ReportTable testTable(const GoodnessOfFitResult& result) {
    ReportTable table;
    table.title = "Chi-square test";
    table.headers = {"Chi-square", "df", "p"};
    table.rows = {{svFmt(result.statistic, 2), ResultText::count(result.degreesOfFreedom),
                   ResultText::pCell(result.pValue)}};
    return table;
}

Chart countChart(const GoodnessOfFitRun& run) {
    GroupedBarPlot plot{.categories = run.result->categoryLabels,
                        .series = {{.name = "Observed"}, {.name = "Expected"}}};
    for (std::size_t i = 0; i < run.result->observed.size(); ++i) {
        plot.series[0].values.push_back(static_cast<double>(run.result->observed[i]));
        plot.series[1].values.push_back(run.result->expected[i]);
    }
    Chart chart;
    chart.title = "Observed and expected counts";
    chart.xLabel = run.category;
    chart.yLabel = "Cases";
    chart.plot = std::move(plot);
    return chart;
}

std::string statisticText(const GoodnessOfFitResult& result) {
    return "χ²(" + ResultText::count(result.degreesOfFreedom) + ")";
}

std::string sentence(const GoodnessOfFitRun& run) {
    const GoodnessOfFitResult& result = *run.result;
    return "A chi-square goodness-of-fit test compared observed counts of " + run.category +
           " with equal proportions. The departure was " +
           std::string(ResultText::significanceWords(result.pValue)) + ", " +
           statisticText(result) + " = " + svFmt(result.statistic, 2) + ", " +
           ResultText::pSentence(result.pValue) + ".";
}

/// The warnings, and what the readiness says beside the cells that these already count.
std::vector<std::string> warningsOf(const GoodnessOfFitResult& result) {
    std::vector<std::string> all = result.warnings;
    for (std::string& message : ResultText::messages(result.readiness)) {
        if (message.find("expected cells are below 5") == std::string::npos || all.empty()) {
            all.push_back(std::move(message));
        }
    }
    return all;
}

class ChiSquareFit final : public StoredAnalysis<NonparametricFields, GoodnessOfFitRun> {
public:
    using StoredAnalysis::StoredAnalysis;

    std::string subtitle() const override {
        return std::string(displayName(NPTest::goodnessOfFit));
    }

    void addControls(SetupForm& form) override {
        form.controls.emplace_back(FormControls::variablePicker(
            "Category", fields_.npGoFVar, anovaGroupingVariables(state_.dataset())));
        form.controls.emplace_back(NoteControl{std::string(note)});
    }

    std::string runLabel() const override { return "Run goodness-of-fit"; }

    std::optional<Gate> gate() const override {
        const ImportedDataset& dataset = state_.dataset();
        if (std::optional<Gate> gone = SelectionGates::goneColumn(
                fields_.npGoFVar, anovaGroupingVariables(dataset), "grouping columns")) {
            return gone;
        }
        if (Categories::of(dataset, fields_.npGoFVar->name).size() < 2) {
            return notComputable(name, "Need 2+ categories in the chosen field.");
        }
        return std::nullopt;
    }

    std::string selection() const override { return fields_.npGoFVar->name; }

    Guide guide() const override {
        return {
            .answers = "Whether the counts of one variable's categories depart from equal shares.",
            .needs =
                "A variable with two or more categories, each case counted once, and expected "
                "counts of at least 5 in each category.",
            .doNotClaim = {"Do not read the result as evidence about a population with known "
                           "shares: the expectation here is equal shares.",
                           "Do not claim that the shares are equal because the test is not "
                           "significant."}};
    }

private:
    std::optional<GoodnessOfFitRun> compute() override {
        return GoodnessOfFitRun{
            .category = fields_.npGoFVar->name,
            .result = GoodnessOfFit::chiSquare(
                CategoryFields::column(state_.dataset(), fields_.npGoFVar), {})};
    }

    void present(const GoodnessOfFitRun& run, ScreenContent& content) const override {
        if (!run.result) {
            content.gate = notComputable(name, "Need 2+ categories in the chosen field.");
            return;
        }
        const GoodnessOfFitResult& result = *run.result;
        addReport({.title = "Goodness-of-fit: " + run.category,
                   .sentence = sentence(run),
                   .tiles = {{statisticText(result), svFmt(result.statistic, 2), ""},
                             ResultText::pValueTile(result.pValue),
                             {"Categories",
                              ResultText::count(static_cast<std::int64_t>(result.observed.size())),
                              "equal shares expected"}},
                   .tables = {categoryTable(run), testTable(result)},
                   .note = std::string(note),
                   .charts = {countChart(run)},
                   .figureCaption = "Observed and expected counts of " + run.category + ".",
                   .caution = std::string(caution),
                   .warnings = warningsOf(result)},
                  content);
    }
};

}  // namespace

std::unique_ptr<Analysis> NonparametricAnalyses::chiSquareFit(StudioState& state,
                                                              NonparametricFields& fields) {
    return std::make_unique<ChiSquareFit>(state, fields, fields.npGoodnessOfFitRun);
}

}  // namespace sorvane
