#include <array>
#include <span>

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

constexpr std::string_view caution =
    "A within-case rank change is not proof of causation without a controlled design.";
constexpr std::string_view note =
    "W+ is the sum of positive signed ranks; r is the effect size; p is two-tailed.";
constexpr std::string_view name = "Wilcoxon signed-rank";

ReportTable testTable(const SignedRankResult& result) {
    ReportTable table;
    table.title = std::string(name);
    table.headers = {"W+", "z", "p", "r", "Pairs with a change"};
    table.rows = {{svFmt(result.wPlus, 1), svFmt(result.z, 2), ResultText::pCell(result.pValue),
                   svFmt(result.effectSizeR, 3), ResultText::count(result.n)}};
    return table;
}

ReportTable measurementTable(const WilcoxonRun& run) {
    ReportTable table;
    table.title = "Paired measurements";
    table.headers = orderHeaders("Measurement");
    table.rows = {run.before.cells(), run.after.cells()};
    return table;
}

std::string sentence(const WilcoxonRun& run) {
    const SignedRankResult& result = *run.result;
    return "A Wilcoxon signed-rank test compared " + run.before.name + " " + run.before.words() +
           " with " + run.after.name + " " + run.after.words() +
           " of the same cases. The change was " +
           std::string(ResultText::significanceWords(result.pValue)) +
           ", W+ = " + svFmt(result.wPlus, 1) + ", z = " + svFmt(result.z, 2) + ", " +
           ResultText::pSentence(result.pValue) + ", r = " + svFmtBounded(result.effectSizeR, 2) +
           ".";
}

std::vector<Tile> tiles(const WilcoxonRun& run) {
    const SignedRankResult& result = *run.result;
    return {{"W+", svFmt(result.wPlus, 1), "z = " + svFmt(result.z, 2)},
            ResultText::pValueTile(result.pValue),
            {"Effect size r", svFmtBounded(result.effectSizeR, 3), "|z| / √n"},
            {"Pairs with a change", ResultText::count(result.n),
             "of " + ResultText::count(run.before.n) + " complete pairs"}};
}

class WilcoxonSignedRank final : public StoredAnalysis<NonparametricFields, WilcoxonRun> {
public:
    using StoredAnalysis::StoredAnalysis;

    std::string subtitle() const override { return std::string(displayName(NPTest::wilcoxon)); }

    void addControls(SetupForm& form) override {
        const VariableLists::List numeric = VariableLists::numericVariables(state_.dataset());
        form.controls.emplace_back(
            FormControls::variablePicker("Before", fields_.npBefore, numeric));
        form.controls.emplace_back(FormControls::variablePicker("After", fields_.npAfter, numeric));
    }

    std::string runLabel() const override { return "Run Wilcoxon signed-rank"; }

    std::optional<Gate> gate() const override {
        const VariableLists::List numeric = VariableLists::numericVariables(state_.dataset());
        for (const Field<VariableName>* field : {&fields_.npBefore, &fields_.npAfter}) {
            if (std::optional<Gate> gone =
                    SelectionGates::goneColumn(*field, numeric, "numeric columns")) {
                return gone;
            }
        }
        if (fields_.npBefore->isBlank() || fields_.npAfter->isBlank() ||
            fields_.npBefore.get() == fields_.npAfter.get()) {
            return notComputable(name, "Pick two different numeric fields.");
        }
        const std::array<std::string, 2> names = {fields_.npBefore->name, fields_.npAfter->name};
        if (!Categories::hasCompleteRows(state_.dataset(), GroupSelection::fewestCases, names)) {
            const bool hasOne = Categories::hasCompleteRows(state_.dataset(), 1, names);
            return notComputable(name, std::string("Need 2+ complete pairs (") +
                                           (hasOne ? "1 found)." : "none found)."));
        }
        return std::nullopt;
    }

    std::string selection() const override {
        return fields_.npBefore->name + " and " + fields_.npAfter->name;
    }

    Guide guide() const override {
        return {
            .answers =
                "Whether the values of the same cases tend to rise or fall between two "
                "measurements, judged by the ranks of the differences.",
            .needs =
                "Two numeric columns on one scale, measured on the same cases, with differences "
                "spread about evenly around their middle. Cases without a change are left out.",
            .doNotClaim = {"Do not claim that what happened in between caused the change without "
                           "a controlled design.",
                           "Do not report the result without saying how many cases did not "
                           "change."}};
    }

private:
    std::optional<WilcoxonRun> compute() override {
        const std::vector<NamedNumericGroup> measurements =
            completeColumns(state_.dataset(), {fields_.npBefore->name, fields_.npAfter->name});
        const std::vector<double>& before = measurements[0].values;
        const std::vector<double>& after = measurements[1].values;
        return WilcoxonRun{.before = OrderFigures::of(measurements[0].name, before),
                           .after = OrderFigures::of(measurements[1].name, after),
                           .result = NonparametricTests::wilcoxonSignedRank(
                               std::span<const double>(before), std::span<const double>(after)),
                           .charts = {GroupCharts::measurementBoxes(measurements)}};
    }

    void present(const WilcoxonRun& run, ScreenContent& content) const override {
        if (!run.result) {
            content.gate = notComputable(name, "No case changed between the two measurements.");
            return;
        }
        addReport({.title = "Wilcoxon signed-rank: " + run.before.name + " and " + run.after.name,
                   .sentence = sentence(run),
                   .tiles = tiles(run),
                   .tables = {testTable(*run.result), measurementTable(run)},
                   .note = std::string(note),
                   .charts = run.charts,
                   .figureCaption = "Box plots of both measurements.",
                   .caution = std::string(caution)},
                  content);
    }
};

}  // namespace

std::unique_ptr<Analysis> NonparametricAnalyses::wilcoxonSignedRank(StudioState& state,
                                                                    NonparametricFields& fields) {
    return std::make_unique<WilcoxonSignedRank>(state, fields, fields.npWilcoxonRun);
}

}  // namespace sorvane
