#include <array>
#include <span>

#include "SorvaneCore/Analyses/AssumptionAudit/AssumptionAudit.h"
#include "SorvaneCore/Project/JsonQuoting.h"
#include "SorvaneMac/Screens/AssumptionChecks.h"
#include "SorvaneMac/Screens/BayesFactorLine.h"
#include "SorvaneMac/Screens/Categories.h"
#include "SorvaneMac/Screens/CompareMeans/CompareMeansAnalyses.h"
#include "SorvaneMac/Screens/CompareMeans/TTestTables.h"
#include "SorvaneMac/Screens/FormControls.h"
#include "SorvaneMac/Screens/GroupCharts.h"
#include "SorvaneMac/Screens/GroupSelection.h"
#include "SorvaneMac/Screens/OptionControls.h"
#include "SorvaneMac/Screens/RepeatedValues.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/SelectionGates.h"
#include "SorvaneMac/Screens/TestReport.h"
#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {

namespace {

constexpr std::string_view caution =
    "A change within cases is not proof of a causal effect without a controlled design.";
constexpr std::string_view note =
    "M and SD are the mean and standard deviation of each measurement; the difference is before "
    "less after; d is the mean difference over its standard deviation; p is two-tailed.";

Gate pickBeforeAndAfter() {
    return {.title = "Need two measurements of the same cases",
            .lead = "",
            .text =
                "Pick Before and After in the Setup panel: two numeric columns that hold one "
                "measurement of each case. Results appear here."};
}

Gate measurementsMustDiffer() {
    return {.title = "Measurements must differ",
            .lead = "",
            .text = "Before and After are the same column. Choose two distinct columns."};
}

Gate tooFewPairs() {
    return {.title = "Too few complete pairs",
            .lead = "",
            .text =
                "Fewer than two cases have a number in both columns. Choose columns that were "
                "measured on the same cases."};
}

Gate noSpread(const PairedTTestRun& run) {
    return {.title = "The paired t-test could not be computed",
            .lead = run.before.name + " and " + run.after.name,
            .text =
                "The difference is the same in every case, so there is no spread to compare it "
                "with. Choose other measurements."};
}

std::vector<double> differences(std::span<const double> before, std::span<const double> after) {
    std::vector<double> result;
    for (std::size_t i = 0; i < before.size(); ++i) {
        result.push_back(before[i] - after[i]);
    }
    return result;
}

ReportTable measurementTable(const PairedTTestRun& run) {
    ReportTable table;
    table.title = "Paired measurements";
    table.headers = sampleHeaders("Measurement");
    table.rows = {run.before.cells(), run.after.cells()};
    return table;
}

std::string sentence(const PairedTTestRun& run) {
    return "A paired-samples t-test compared " + run.before.name + " " + run.before.words() +
           " with " + run.after.name + " " + run.after.words() +
           " of the same cases (n = " + ResultText::count(run.before.n) +
           "). The mean difference was " + TTestTables::words(*run.result) + ".";
}

Card assumptionCard(const PairedTTestRun& run) {
    Card card = AssumptionChecks::card(run.assumptions);
    if (AssumptionChecks::hints(run.assumptions, AssumptionChecks::wilcoxonHint)) {
        card.links.push_back({.label = "Go to the Wilcoxon signed-rank test",
                              .screen = StudioScreen::nonparametric,
                              .settings = {{"npTest", "\"wilcoxon\""},
                                           {"npBefore", jsonString(run.before.name)},
                                           {"npAfter", jsonString(run.after.name)}}});
    }
    return card;
}

class PairedTTest final : public StoredAnalysis<CompareMeansFields, PairedTTestRun> {
public:
    using StoredAnalysis::StoredAnalysis;

    std::string subtitle() const override {
        return std::string(displayName(InferentialTest::pairedTTest));
    }

    void addControls(SetupForm& form) override {
        using namespace FormControls;  // NOLINT(google-build-using-namespace)
        const VariableLists::List numeric = VariableLists::numericVariables(state_.dataset());
        form.controls.emplace_back(variablePicker("Before", fields_.cmPairBefore, numeric));
        form.controls.emplace_back(variablePicker("After", fields_.cmPairAfter, numeric));
        form.controls.emplace_back(HeadingControl{"OPTIONS"});
        form.controls.emplace_back(OptionControls::confidencePicker(fields_.cmConfidence));
    }

    std::string runLabel() const override { return "Run paired t-test"; }

    std::optional<Gate> gate() const override {
        const VariableLists::List numeric = VariableLists::numericVariables(state_.dataset());
        if (fields_.cmPairBefore->isBlank() || fields_.cmPairAfter->isBlank()) {
            return pickBeforeAndAfter();
        }
        for (const Field<VariableName>* field : {&fields_.cmPairBefore, &fields_.cmPairAfter}) {
            if (std::optional<Gate> gone =
                    SelectionGates::goneColumn(*field, numeric, "numeric columns")) {
                return gone;
            }
        }
        if (fields_.cmPairBefore.get() == fields_.cmPairAfter.get()) {
            return measurementsMustDiffer();
        }
        const std::array<std::string, 2> names = {fields_.cmPairBefore->name,
                                                  fields_.cmPairAfter->name};
        if (!Categories::hasCompleteRows(state_.dataset(), GroupSelection::fewestCases, names)) {
            return tooFewPairs();
        }
        return std::nullopt;
    }

    std::string selection() const override {
        return fields_.cmPairBefore->name + " and " + fields_.cmPairAfter->name;
    }

    Guide guide() const override {
        return {
            .answers =
                "Whether the mean of the same cases changed between two measurements, such as "
                "before and after.",
            .needs =
                "Two numeric columns on one scale, measured on the same cases. Only cases with "
                "both values count. The differences should be roughly normal; the two columns "
                "need not be.",
            .doNotClaim = {"Do not claim that what happened in between caused the change: without "
                           "a comparison group it may be practice, time, or a return to the mean.",
                           std::string(ResultText::notProofOfEqualMeans),
                           "Do not generalise to the cases that dropped out before the second "
                           "measurement."}};
    }

private:
    std::optional<PairedTTestRun> compute() override {
        const std::vector<NamedNumericGroup> measurements = completeColumns(
            state_.dataset(), {fields_.cmPairBefore->name, fields_.cmPairAfter->name});
        const NamedNumericGroup& before = measurements[0];
        const NamedNumericGroup& after = measurements[1];
        const std::vector<double> changes = differences(before.values, after.values);
        PairedTTestRun run{.before = SampleFigures::of(before.name, before.values),
                           .after = SampleFigures::of(after.name, after.values)};
        run.result = GroupComparisonTests::pairedSamplesTTest(before.values, after.values);
        if (run.result) {
            const double error = SampleFigures::of("", changes).standardError.value_or(0.0);
            run.interval = DifferenceInterval::of(*run.result, error, fields_.cmConfidence.get());
            run.bayesFactor = BayesFactors::jzsTTest(run.result->t, run.before.n, std::nullopt);
        }
        run.assumptions = AssumptionAudit::pairedAudit(changes);
        run.charts = {GroupCharts::profile(measurements),
                      GroupCharts::measurementBoxes(measurements)};
        fields_.cmAssumptionFindings.replace(run.assumptions);
        return run;
    }

    void present(const PairedTTestRun& run, ScreenContent& content) const override {
        if (!run.result) {
            content.gate = noSpread(run);
            return;
        }
        addReport(
            {.title = "Paired t-test: " + run.before.name + " and " + run.after.name,
             .sentence = sentence(run),
             .tiles = TTestTables::tiles(*run.result, run.before.n, "complete pairs"),
             .tables = {measurementTable(run), TTestTables::testTable(*run.result, *run.interval)},
             .passage = BayesFactorLine::passage(run.bayesFactor,
                                                 {.alternative = "a change",
                                                  .null = "no change",
                                                  .caption = BayesFactorLine::tTestCaption}),
             .note = std::string(note),
             .charts = run.charts,
             .figureCaption = "Means of both measurements with 95% confidence intervals.",
             .checks = assumptionCard(run),
             .caution = std::string(caution)},
            content);
    }
};

}  // namespace

std::unique_ptr<Analysis> CompareMeansAnalyses::pairedTTest(StudioState& state,
                                                            CompareMeansFields& fields) {
    return std::make_unique<PairedTTest>(state, fields, fields.cmPairedTTestRun);
}

}  // namespace sorvane
