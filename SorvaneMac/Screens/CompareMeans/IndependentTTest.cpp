#include <array>
#include <cmath>

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
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/TestReport.h"

namespace sorvane {

namespace {

constexpr std::string_view caution = "A group difference is association, not causation.";
constexpr std::string_view notCausal =
    "Do not claim that the group caused the difference unless cases were assigned to groups at "
    "random.";

Gate pickTwoGroups() {
    return {.title = "Pick two groups",
            .lead = "",
            .text =
                "Pick the outcome and two groups in the Setup panel, then Run t-test. Results "
                "appear here."};
}

Gate groupsMustDiffer() {
    return {.title = "Groups must differ",
            .lead = "",
            .text = "Group 1 and Group 2 are the same. Choose two distinct categories."};
}

Gate groupTooSmall(const std::string& group, std::int64_t cases, const std::string& outcome) {
    return {.title = "Each group needs two or more values",
            .lead = group,
            .text = "\"" + group + "\" has " + ResultText::count(cases) +
                    (cases == 1 ? " value of " : " values of ") + outcome +
                    ". Choose another group or another outcome."};
}

Gate noSpread(const TTestRun& run) {
    return {.title = "The t-test could not be computed",
            .lead = run.outcome + " by " + run.grouping,
            .text =
                "All values within both groups are the same, so there is no spread to compare the "
                "difference with. Choose another outcome or other groups."};
}

double square(double value) {
    return value * value;
}

/// The standard error of the difference under the test's assumption.
double standardErrorOf(const TTestRun& run) {
    const double n1 = static_cast<double>(run.first.n);
    const double n2 = static_cast<double>(run.second.n);
    const double variance1 = square(run.first.standardDeviation.value_or(0.0));
    const double variance2 = square(run.second.standardDeviation.value_or(0.0));
    if (run.variances == VarianceAssumption::unequal) {
        return std::sqrt(variance1 / n1 + variance2 / n2);
    }
    const double pooled = ((n1 - 1.0) * variance1 + (n2 - 1.0) * variance2) / (n1 + n2 - 2.0);
    return std::sqrt(pooled * (1.0 / n1 + 1.0 / n2));
}

std::string testName(const TTestRun& run) {
    return run.variances == VarianceAssumption::equal ? "Student's" : "Welch's";
}

ReportTable groupTable(const TTestRun& run) {
    ReportTable table;
    table.title = "Group statistics";
    table.headers = sampleHeaders("Group");
    table.rows = {run.first.cells(), run.second.cells()};
    return table;
}

std::string sentence(const TTestRun& run) {
    return "An independent-samples " + testName(run) + " t-test compared " + run.outcome +
           " between " + run.first.name + " " + run.first.words() + " and " + run.second.name +
           " " + run.second.words() + ". The difference was " + TTestTables::words(*run.result) +
           ".";
}

std::string note(const TTestRun& run) {
    return "M and SD are the group mean and standard deviation; d is Cohen's d. " + testName(run) +
           " t-test; p is two-tailed.";
}

std::vector<Tile> tiles(const TTestRun& run) {
    std::vector<Tile> tiles =
        TTestTables::tiles(*run.result, run.first.n + run.second.n, "in both groups");
    tiles.insert(tiles.begin(), {"Selected test", testName(run) + " t-test", ""});
    return tiles;
}

Card assumptionCard(const TTestRun& run) {
    Card card = AssumptionChecks::card(run.assumptions);
    if (AssumptionChecks::hints(run.assumptions, AssumptionChecks::rankHint)) {
        ScreenLink link = AssumptionChecks::rankTestLink("mannWhitney", run.outcome, run.grouping);
        link.settings.emplace_back("npG1", jsonString(run.first.name));
        link.settings.emplace_back("npG2", jsonString(run.second.name));
        card.links.push_back(std::move(link));
    }
    if (!AssumptionChecks::hints(run.assumptions, AssumptionChecks::welchHint)) {
        return card;
    }
    if (run.variances == VarianceAssumption::unequal) {
        card.paragraphs.emplace_back(
            "Variances differ substantially; Welch (the default) is appropriate.");
    } else {
        card.links.push_back({.label = "Switch to Welch's t-test",
                              .screen = StudioScreen::inferential,
                              .settings = {{"cmTestType", "\"welch\""}},
                              .runs = true});
    }
    return card;
}

class IndependentTTest final : public StoredAnalysis<CompareMeansFields, TTestRun> {
public:
    using StoredAnalysis::StoredAnalysis;

    std::string subtitle() const override {
        return std::string(displayName(InferentialTest::tTest));
    }

    void addControls(SetupForm& form) override {
        const std::vector<std::string> groups =
            Categories::of(state_.dataset(), fields_.cmGrouping->name);
        GroupSelection::addControls(
            form, state_.dataset(), {fields_.cmOutcome, fields_.cmGrouping}, [this] {
                Categories::refillPair(fields_.cmGroup1, fields_.cmGroup2,
                                       Categories::of(state_.dataset(), fields_.cmGrouping->name));
            });
        std::vector<Control>& controls = form.controls;
        controls.emplace_back(OptionControls::categoryPicker("Group 1", fields_.cmGroup1, groups));
        controls.emplace_back(OptionControls::categoryPicker("Group 2", fields_.cmGroup2, groups));
        controls.emplace_back(HeadingControl{"OPTIONS"});
        controls.emplace_back(FormControls::enumerationPicker("Test type", fields_.cmTestType));
        controls.emplace_back(NoteControl{
            "Welch is the default (Auto). It is safer when group sizes or variances differ."});
        controls.emplace_back(OptionControls::confidencePicker(fields_.cmConfidence));
    }

    std::string runLabel() const override { return "Run t-test"; }

    std::optional<Gate> gate() const override {
        const GroupSelectionFields selected{fields_.cmOutcome, fields_.cmGrouping};
        if (std::optional<Gate> missing = GroupSelection::gate(state_.dataset(), selected)) {
            return missing;
        }
        const auto check = GroupSelection::checkPair(
            state_.dataset(), selected, fields_.cmGroup1.get(), fields_.cmGroup2.get());
        if (!check) {
            return std::nullopt;
        }
        switch (check->problem) {
            case GroupSelection::PairProblem::notTwoGroups:
                return pickTwoGroups();
            case GroupSelection::PairProblem::same:
                return groupsMustDiffer();
            case GroupSelection::PairProblem::tooSmall:
                break;
        }
        return groupTooSmall(check->small.front().first, check->small.front().second,
                             fields_.cmOutcome->name);
    }

    std::string selection() const override {
        return fields_.cmOutcome->name + " in " + fields_.cmGroup1.get() + " and " +
               fields_.cmGroup2.get();
    }

    std::string invitation() const override { return pickTwoGroups().text; }

    Guide guide() const override {
        return {
            .answers =
                "Whether the means of a numeric outcome differ between two groups of different "
                "people, and by how many standard deviations.",
            .needs =
                "Independent cases, each in one group only, and two or more values in each group. "
                "The values should be roughly normal within each group, or the groups large. "
                "Welch's "
                "test does not need equal variances; Student's does.",
            .doNotClaim = {std::string(notCausal), std::string(ResultText::notProofOfEqualMeans),
                           "Do not run one t-test for each pair of many groups; use ANOVA with "
                           "post-hoc comparisons."}};
    }

private:
    std::optional<TTestRun> compute() override {
        const GroupSelectionFields selected{fields_.cmOutcome, fields_.cmGrouping};
        std::array<NamedNumericGroup, 2> groups;
        groups[0].name = fields_.cmGroup1.get();
        groups[1].name = fields_.cmGroup2.get();
        for (NamedNumericGroup& group : groups) {
            group.values = GroupSelection::valuesOf(state_.dataset(), selected, group.name);
        }
        TTestRun run{.outcome = fields_.cmOutcome->name,
                     .grouping = fields_.cmGrouping->name,
                     .variances = fields_.cmTestType.get() == TTestType::student
                                      ? VarianceAssumption::equal
                                      : VarianceAssumption::unequal,
                     .first = SampleFigures::of(groups[0].name, groups[0].values),
                     .second = SampleFigures::of(groups[1].name, groups[1].values)};
        run.result = GroupComparisonTests::independentSamplesTTest(groups[0].values,
                                                                   groups[1].values, run.variances);
        if (run.result) {
            run.interval = DifferenceInterval::of(*run.result, standardErrorOf(run),
                                                  fields_.cmConfidence.get());
            run.bayesFactor = BayesFactors::jzsTTest(run.result->t, run.first.n, run.second.n);
        }
        run.assumptions = AssumptionAudit::groupComparisonAudit(groups);
        const GroupCharts::Names names{.outcome = run.outcome, .grouping = run.grouping};
        run.charts = {GroupCharts::means(groups, names), GroupCharts::boxes(groups, names)};
        fields_.cmAssumptionFindings.replace(run.assumptions);
        return run;
    }

    void present(const TTestRun& run, ScreenContent& content) const override {
        if (!run.result) {
            content.gate = noSpread(run);
            return;
        }
        content.subtitle = testName(run) + " t-test of " + run.outcome + " by " + run.grouping;
        addReport({.title = "t-test: " + run.outcome + " by " + run.grouping,
                   .sentence = sentence(run),
                   .tiles = tiles(run),
                   .tables = {groupTable(run), TTestTables::testTable(*run.result, *run.interval)},
                   .passage = BayesFactorLine::passage(
                       run.bayesFactor, {.alternative = "a difference between the groups",
                                         .null = "no difference between the groups",
                                         .caption = BayesFactorLine::tTestCaption}),
                   .note = note(run),
                   .charts = run.charts,
                   .figureCaption =
                       "Mean " + run.outcome + " of each group with 95% confidence intervals.",
                   .checks = assumptionCard(run),
                   .caution = std::string(caution)},
                  content);
    }
};

}  // namespace

std::unique_ptr<Analysis> CompareMeansAnalyses::independentTTest(StudioState& state,
                                                                 CompareMeansFields& fields) {
    return std::make_unique<IndependentTTest>(state, fields, fields.cmTTestRun);
}

}  // namespace sorvane
