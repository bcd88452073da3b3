#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/GroupCharts.h"
#include "SorvaneMac/Screens/GroupSelection.h"
#include "SorvaneMac/Screens/Nonparametric/NonparametricAnalyses.h"
#include "SorvaneMac/Screens/Nonparametric/NonparametricGates.h"
#include "SorvaneMac/Screens/RepeatedValues.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/SelectionGates.h"
#include "SorvaneMac/Screens/TestReport.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

namespace {

using VariableLists::numericVariables;

constexpr std::string_view caution = "Rank-based repeated-measures comparison.";
constexpr std::string_view note =
    "Kendall's W is the coefficient of concordance (0-1); p is the right-tail probability.";
constexpr std::string_view name = "Friedman";

ReportTable testTable(const FriedmanResult& result) {
    ReportTable table;
    table.title = "Friedman test";
    table.headers = {"Chi-square", "df", "p", "W", "Cases"};
    table.rows = {{svFmt(result.chiSquare, 2), ResultText::count(result.degreesOfFreedom),
                   ResultText::pCell(result.pValue), svFmt(result.kendallsW, 3),
                   ResultText::count(result.subjects)}};
    return table;
}

ReportTable conditionTable(const FriedmanRun& run) {
    ReportTable table;
    table.title = "Conditions";
    table.headers = orderHeaders("Condition");
    for (const OrderFigures& condition : run.conditions) {
        table.rows.push_back(condition.cells());
    }
    return table;
}

std::vector<std::string> namesOf(const FriedmanRun& run) {
    std::vector<std::string> names;
    for (const OrderFigures& condition : run.conditions) {
        names.push_back(condition.name);
    }
    return names;
}

std::string sentence(const FriedmanRun& run) {
    const FriedmanResult& result = *run.result;
    return "A Friedman test compared " + ResultText::listed(namesOf(run)) + " in " +
           ResultText::count(result.subjects) + " cases. The difference was " +
           std::string(ResultText::significanceWords(result.pValue)) + ", χ²(" +
           ResultText::count(result.degreesOfFreedom) + ") = " + svFmt(result.chiSquare, 2) + ", " +
           ResultText::pSentence(result.pValue) + ", W = " + svFmtBounded(result.kendallsW, 2) +
           ".";
}

std::vector<Tile> tiles(const FriedmanResult& result) {
    return {{"χ²(" + ResultText::count(result.degreesOfFreedom) + ")", svFmt(result.chiSquare, 2),
             "not corrected for ties"},
            ResultText::pValueTile(result.pValue),
            {"Kendall's W", svFmtBounded(result.kendallsW, 3), "concordance, 0 to 1"},
            {"Cases used", ResultText::count(result.subjects), "complete in every condition"}};
}

class Friedman final : public StoredAnalysis<NonparametricFields, FriedmanRun> {
public:
    using StoredAnalysis::StoredAnalysis;

    std::string subtitle() const override { return std::string(displayName(NPTest::friedman)); }

    void addControls(SetupForm& form) override {
        using namespace FormControls;  // NOLINT(google-build-using-namespace)
        const VariableLists::List numeric = numericVariables(state_.dataset());
        form.controls.emplace_back(
            withUnavailable(variableCheckList("Items", fields_.npFriedmanItems, numeric),
                            fields_.npFriedmanItems.get(), numeric));
    }

    std::string runLabel() const override { return "Run Friedman"; }

    std::optional<Gate> gate() const override {
        const VariableLists::List numeric = numericVariables(state_.dataset());
        if (std::optional<Gate> gone =
                SelectionGates::goneColumn(fields_.npFriedmanItems, numeric, "numeric columns")) {
            return gone;
        }
        const std::vector<std::string> names =
            FormControls::chosen(fields_.npFriedmanItems.get(), numeric);
        if (names.size() < fewestFriedmanItems ||
            !Categories::hasCompleteRows(state_.dataset(), GroupSelection::fewestCases, names)) {
            return notComputable(name, "Select 3+ item columns and have 2+ complete cases.");
        }
        return std::nullopt;
    }

    std::string selection() const override {
        return ResultText::listed(FormControls::chosen(fields_.npFriedmanItems.get(),
                                                       numericVariables(state_.dataset())));
    }

    Guide guide() const override {
        return {
            .answers =
                "Whether the same cases rank three or more conditions, items or points in time "
                "differently.",
            .needs =
                "Three or more numeric columns on one scale and at least two cases that have a "
                "value in every one of them.",
            .doNotClaim = {"Do not claim which conditions differ from this test alone.",
                           "Do not compare columns that were answered on different scales: their "
                           "ranks would only mirror the scales."}};
    }

private:
    std::optional<FriedmanRun> compute() override {
        const std::vector<std::string> names =
            FormControls::chosen(fields_.npFriedmanItems.get(), numericVariables(state_.dataset()));
        std::vector<NumericColumn> columns;
        for (const std::string& each : names) {
            columns.push_back(state_.dataset().numericColumn(each));
        }
        const std::vector<NamedNumericGroup> conditions = completeColumns(state_.dataset(), names);
        FriedmanRun run;
        for (const NamedNumericGroup& condition : conditions) {
            run.conditions.push_back(OrderFigures::of(condition.name, condition.values));
        }
        run.result = NonparametricTests::friedman(columns);
        run.charts = {GroupCharts::measurementBoxes(conditions)};
        return run;
    }

    void present(const FriedmanRun& run, ScreenContent& content) const override {
        if (!run.result) {
            content.gate =
                notComputable(name, "Select 3+ item columns and have 2+ complete cases.");
            return;
        }
        addReport({.title = "Friedman test across " + ResultText::listed(namesOf(run)),
                   .sentence = sentence(run),
                   .tiles = tiles(*run.result),
                   .tables = {testTable(*run.result), conditionTable(run)},
                   .note = std::string(note),
                   .charts = run.charts,
                   .figureCaption = "Box plots of the conditions.",
                   .caution = std::string(caution)},
                  content);
    }
};

}  // namespace

std::unique_ptr<Analysis> NonparametricAnalyses::friedman(StudioState& state,
                                                          NonparametricFields& fields) {
    return std::make_unique<Friedman>(state, fields, fields.npFriedmanRun);
}

}  // namespace sorvane
