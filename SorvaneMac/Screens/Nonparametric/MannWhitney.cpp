#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/GroupCharts.h"
#include "SorvaneMac/Screens/GroupSelection.h"
#include "SorvaneMac/Screens/Nonparametric/NonparametricAnalyses.h"
#include "SorvaneMac/Screens/Nonparametric/NonparametricGates.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/TestReport.h"

namespace sorvane {

namespace {

constexpr std::string_view notMeans =
    "Do not read a rank test as a test of means; where the distributions differ in shape, it is "
    "not one of medians either.";
constexpr std::string_view notCausal =
    "Do not claim that one variable causes the other from an association in observed data.";
constexpr std::string_view caution =
    "Compares distributions/ranks, not means; a difference is association, not causation.";
constexpr std::string_view note =
    "U is the Mann-Whitney statistic; r is the rank-biserial effect size; p is two-tailed.";
constexpr std::string_view name = "Mann-Whitney U";

/// "east: 1, west: 0"
std::string listed(const std::vector<std::pair<std::string, std::int64_t>>& groups) {
    std::string text;
    for (const auto& [group, cases] : groups) {
        text += (text.empty() ? "" : ", ") + group + ": " + ResultText::count(cases);
    }
    return text;
}

ReportTable groupTable(const MannWhitneyRun& run) {
    ReportTable table;
    table.title = "Groups";
    table.headers = orderHeaders("Group");
    table.rows = {run.first.cells(), run.second.cells()};
    return table;
}

ReportTable testTable(const MannWhitneyResult& result) {
    ReportTable table;
    table.title = std::string(name);
    table.headers = {"U", "z", "p", "r", "N"};
    table.rows = {{svFmt(result.u, 1), svFmt(result.z, 2), ResultText::pCell(result.pValue),
                   svFmt(result.effectSizeR, 3), ResultText::count(result.n1 + result.n2)}};
    return table;
}

std::string sentence(const MannWhitneyRun& run) {
    const MannWhitneyResult& result = *run.result;
    return "A Mann-Whitney U test compared " + run.outcome + " between " + run.first.name + " " +
           run.first.words() + " and " + run.second.name + " " + run.second.words() +
           ". The difference was " + std::string(ResultText::significanceWords(result.pValue)) +
           ", U = " + svFmt(result.u, 1) + ", z = " + svFmt(result.z, 2) + ", " +
           ResultText::pSentence(result.pValue) + ", r = " + svFmtBounded(result.effectSizeR, 2) +
           ".";
}

std::vector<Tile> tiles(const MannWhitneyResult& result) {
    return {{"U", svFmt(result.u, 1), "z = " + svFmt(result.z, 2)},
            ResultText::pValueTile(result.pValue),
            {"Effect size r", svFmtBounded(result.effectSizeR, 3), "|z| / √N"},
            {"Cases used", ResultText::count(result.n1 + result.n2), "in both groups"}};
}

class MannWhitney final : public StoredAnalysis<NonparametricFields, MannWhitneyRun> {
public:
    using StoredAnalysis::StoredAnalysis;

    std::string subtitle() const override { return std::string(displayName(NPTest::mannWhitney)); }

    void addControls(SetupForm& form) override {
        const std::vector<std::string> groups = npCategories(state_.dataset(), fields_);
        GroupSelection::addControls(
            form, state_.dataset(), {fields_.npOutcome, fields_.npGroup}, [this] {
                Categories::refillPair(fields_.npG1, fields_.npG2,
                                       npCategories(state_.dataset(), fields_));
            });
        form.controls.emplace_back(OptionControls::categoryPicker("Group 1", fields_.npG1, groups));
        form.controls.emplace_back(OptionControls::categoryPicker("Group 2", fields_.npG2, groups));
    }

    std::string runLabel() const override { return "Run Mann-Whitney U"; }

    std::optional<Gate> gate() const override {
        const GroupSelectionFields selected{fields_.npOutcome, fields_.npGroup};
        if (std::optional<Gate> missing = GroupSelection::gate(state_.dataset(), selected)) {
            return missing;
        }
        const auto check = GroupSelection::checkPair(state_.dataset(), selected, fields_.npG1.get(),
                                                     fields_.npG2.get());
        if (!check) {
            return std::nullopt;
        }
        return notComputable(name,
                             check->problem == GroupSelection::PairProblem::tooSmall
                                 ? "Each group needs 2+ values (" + listed(check->small) + ")."
                                 : "Pick two different groups.");
    }

    std::string selection() const override {
        return fields_.npOutcome->name + " in " + fields_.npG1.get() + " and " + fields_.npG2.get();
    }

    Guide guide() const override {
        return {
            .answers =
                "Whether values in one of two independent groups tend to be larger than in the "
                "other, judged by ranks.",
            .needs =
                "An ordinal or numeric outcome, independent cases, and two or more values in each "
                "of the two groups. The p-value is a normal approximation; it is rough with a "
                "handful of cases.",
            .doNotClaim = {std::string(notMeans), std::string(notCausal)}};
    }

private:
    std::optional<MannWhitneyRun> compute() override {
        const GroupSelectionFields selected{fields_.npOutcome, fields_.npGroup};
        std::vector<NamedNumericGroup> groups = {{.name = fields_.npG1.get()},
                                                 {.name = fields_.npG2.get()}};
        for (NamedNumericGroup& group : groups) {
            group.values = GroupSelection::valuesOf(state_.dataset(), selected, group.name);
        }
        return MannWhitneyRun{
            .outcome = fields_.npOutcome->name,
            .grouping = fields_.npGroup->name,
            .first = OrderFigures::of(groups[0].name, groups[0].values),
            .second = OrderFigures::of(groups[1].name, groups[1].values),
            .result = NonparametricTests::mannWhitneyU(groups[0].values, groups[1].values),
            .charts = {GroupCharts::boxes(
                groups, {.outcome = fields_.npOutcome->name, .grouping = fields_.npGroup->name})}};
    }

    void present(const MannWhitneyRun& run, ScreenContent& content) const override {
        if (!run.result) {
            content.gate = notComputable(name, "All values are the same, so ranks tell nothing.");
            return;
        }
        addReport({.title = "Mann-Whitney U: " + run.outcome + " by " + run.grouping,
                   .sentence = sentence(run),
                   .tiles = tiles(*run.result),
                   .tables = {testTable(*run.result), groupTable(run)},
                   .note = std::string(note),
                   .charts = run.charts,
                   .figureCaption = "Box plots of " + run.outcome + " in both groups.",
                   .caution = std::string(caution)},
                  content);
    }
};

}  // namespace

std::unique_ptr<Analysis> NonparametricAnalyses::mannWhitney(StudioState& state,
                                                             NonparametricFields& fields) {
    return std::make_unique<MannWhitney>(state, fields, fields.npMannWhitneyRun);
}

}  // namespace sorvane
