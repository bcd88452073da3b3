#include "SorvaneCore/Analyses/Basics/GroupedRows.h"
#include "SorvaneCore/Analyses/GroupComparison/GroupComparisonEngine.h"
#include "SorvaneMac/Report/ReportNumbers.h"
#include "SorvaneMac/Screens/GroupCharts.h"
#include "SorvaneMac/Screens/GroupSelection.h"
#include "SorvaneMac/Screens/Nonparametric/NonparametricAnalyses.h"
#include "SorvaneMac/Screens/Nonparametric/NonparametricGates.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/TestReport.h"

namespace sorvane {

namespace {

constexpr std::string_view notMeans =
    "Do not read a rank test as a test of means; where the distributions differ in shape, it is "
    "not one of medians either.";
constexpr std::string_view caution =
    "Rank-based group comparison; a difference is association, not causation.";
constexpr std::string_view note =
    "H is the Kruskal-Wallis statistic (chi-square distributed); p is the right-tail probability.";
constexpr std::string_view name = "Kruskal-Wallis";

ReportTable testTable(const ANOVAResult& result) {
    ReportTable table;
    table.title = std::string(name);
    table.headers = {"H", "df", "p", "Epsilon squared"};
    table.rows = {{svFmt(result.f, 2), ResultText::degreesOfFreedom(result.dfNumerator),
                   ResultText::pCell(result.pValue), svFmt(result.etaSquared, 3)}};
    return table;
}

ReportTable groupTable(const KruskalWallisRun& run) {
    ReportTable table;
    table.title = "Groups";
    table.headers = orderHeaders(run.grouping);
    for (const OrderFigures& group : run.groups) {
        table.rows.push_back(group.cells());
    }
    return table;
}

ReportTable pairTable(const KruskalWallisRun& run) {
    ReportTable table;
    table.title = "Multiple comparisons: " + std::string(displayName(PostHocMethod::dunn));
    table.headers = {"Group A", "Group B", "Mean rank diff.", "z", "Raw p", "Adj. p"};
    for (const PairwiseComparisonResult& pair : run.pairs) {
        table.rows.push_back({pair.groupA, pair.groupB, svFmt(pair.meanDifference, 2),
                              svFmt(pair.testStatistic, 2), ResultText::pCell(pair.rawPValue),
                              ResultText::pCell(pair.adjustedPValue)});
    }
    table.note = "Adj. p is adjusted after Holm.";
    return table;
}

std::string sentence(const KruskalWallisRun& run) {
    const ANOVAResult& result = *run.result;
    return "A Kruskal-Wallis test compared " + run.outcome + " across " + run.grouping +
           ". The difference was " + std::string(ResultText::significanceWords(result.pValue)) +
           ", H(" + ResultText::degreesOfFreedom(result.dfNumerator) + ") = " + svFmt(result.f, 2) +
           ", " + ResultText::pSentence(result.pValue) +
           ", ε² = " + svFmtBounded(result.etaSquared, 2) + ".";
}

std::vector<Tile> tiles(const KruskalWallisRun& run) {
    const ANOVAResult& result = *run.result;
    std::int64_t cases = 0;
    for (const OrderFigures& group : run.groups) {
        cases += group.n;
    }
    return {{"H(" + ResultText::degreesOfFreedom(result.dfNumerator) + ")", svFmt(result.f, 2),
             "on the chi-square distribution"},
            ResultText::pValueTile(result.pValue),
            {"Epsilon squared", svFmtBounded(result.etaSquared, 3), ""},
            {"Cases used", ResultText::count(cases), "with a group and an outcome"}};
}

class KruskalWallis final : public StoredAnalysis<NonparametricFields, KruskalWallisRun> {
public:
    using StoredAnalysis::StoredAnalysis;

    std::string subtitle() const override {
        return std::string(displayName(NPTest::kruskalWallis));
    }

    void addControls(SetupForm& form) override {
        GroupSelection::addControls(form, state_.dataset(), {fields_.npOutcome, fields_.npGroup});
    }

    std::string runLabel() const override { return "Run Kruskal-Wallis"; }

    std::optional<Gate> gate() const override {
        const GroupSelectionFields selected{fields_.npOutcome, fields_.npGroup};
        if (std::optional<Gate> missing = GroupSelection::gate(state_.dataset(), selected)) {
            return missing;
        }
        if (!GroupSelection::hasTwoUsableGroups(state_.dataset(), selected)) {
            return notComputable(name, "Need 2+ groups with 2+ values each.");
        }
        return std::nullopt;
    }

    std::string selection() const override {
        return fields_.npOutcome->name + " by " + fields_.npGroup->name;
    }

    Guide guide() const override {
        return {
            .answers =
                "Whether values tend to be larger in some of several independent groups than in "
                "others, judged by ranks.",
            .needs =
                "An ordinal or numeric outcome and at least two groups with two or more values "
                "each. Each case belongs to one group only.",
            .doNotClaim = {"Do not claim which groups differ from this test alone; that takes "
                           "pairwise comparisons with an adjustment.",
                           std::string(notMeans)}};
    }

private:
    std::optional<KruskalWallisRun> compute() override {
        const ImportedDataset& dataset = state_.dataset();
        KruskalWallisRun run{.outcome = fields_.npOutcome->name, .grouping = fields_.npGroup->name};
        GroupedRows rows = GroupedRows::of(dataset.rows.column(*dataset.columnIndex(run.grouping)),
                                           dataset.numericColumn(run.outcome));
        rows.sortByLabel();
        const std::vector<NamedNumericGroup> groups = rows.takeGroups(GroupSelection::fewestCases);
        for (const NamedNumericGroup& group : groups) {
            run.groups.push_back(OrderFigures::of(group.name, group.values));
        }
        run.result = GroupComparisonEngine::kruskalWallis(groups);
        run.pairs = GroupComparisonEngine::dunnTest(groups);
        run.charts = {
            GroupCharts::boxes(groups, {.outcome = run.outcome, .grouping = run.grouping})};
        return run;
    }

    void present(const KruskalWallisRun& run, ScreenContent& content) const override {
        if (!run.result) {
            content.gate = notComputable(name, "Need 2+ groups with 2+ values each.");
            return;
        }
        TestReport report{
            .title = "Kruskal-Wallis: " + run.outcome + " by " + run.grouping,
            .sentence = sentence(run),
            .tiles = tiles(run),
            .tables = {testTable(*run.result), groupTable(run)},
            .note = std::string(note),
            .charts = run.charts,
            .figureCaption = "Box plots of " + run.outcome + " by " + run.grouping + ".",
            .caution = std::string(caution)};
        if (!run.pairs.empty()) {
            report.tables.push_back(pairTable(run));
        }
        addReport(std::move(report), content);
    }
};

}  // namespace

std::unique_ptr<Analysis> NonparametricAnalyses::kruskalWallis(StudioState& state,
                                                               NonparametricFields& fields) {
    return std::make_unique<KruskalWallis>(state, fields, fields.npKruskalWallisRun);
}

}  // namespace sorvane
