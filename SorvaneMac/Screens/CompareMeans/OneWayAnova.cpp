#include "SorvaneMac/Screens/CompareMeans/CompareMeansAnalyses.h"
#include "SorvaneMac/Screens/CompareMeans/GroupComparison.h"
#include "SorvaneMac/Screens/GroupSelection.h"

namespace sorvane {

namespace {

class OneWayAnova final : public StoredAnalysis<CompareMeansFields, OneWayRun> {
public:
    using StoredAnalysis::StoredAnalysis;

    std::string subtitle() const override {
        return std::string(displayName(InferentialTest::anova));
    }

    void addControls(SetupForm& form) override {
        GroupSelection::addControls(form, state_.dataset(),
                                    {fields_.cmOutcome, fields_.cmGrouping});
    }

    std::string runLabel() const override { return "Run ANOVA"; }

    std::optional<Gate> gate() const override {
        const GroupSelectionFields selected{fields_.cmOutcome, fields_.cmGrouping};
        if (std::optional<Gate> missing = GroupSelection::gate(state_.dataset(), selected)) {
            return missing;
        }
        if (!GroupSelection::hasTwoUsableGroups(state_.dataset(), selected)) {
            return GroupComparison::tooFewGroups(state_.dataset(), fields_.cmOutcome->name,
                                                 fields_.cmGrouping->name);
        }
        return std::nullopt;
    }

    std::string selection() const override {
        return fields_.cmOutcome->name + " by " + fields_.cmGrouping->name;
    }

    Guide guide() const override {
        return {
            .answers =
                "Whether the means of a numeric outcome differ anywhere among two or more groups, "
                "and "
                "then, by post-hoc comparisons, between which.",
            .needs =
                "Independent cases, each in one group, with two or more values in at least two "
                "groups. The values should be roughly normal within groups. Where the variances "
                "differ, Welch's form is the safer one.",
            .doNotClaim = {
                "Do not claim causation from this group comparison alone.",
                "Do not claim which groups differ from the omnibus test without post-hoc "
                "evidence.",
                "Do not ignore assumption warnings when reporting statistical "
                "significance."}};
    }

private:
    std::optional<OneWayRun> compute() override {
        OneWayRun run = GroupComparison::run(state_.dataset(), fields_.cmOutcome->name,
                                             fields_.cmGrouping->name);
        fields_.cmAssumptionFindings.replace(run.assumptions);
        return run;
    }

    void present(const OneWayRun& run, ScreenContent& content) const override {
        if (run.result) {
            GroupComparison::show(run, content);
        } else {
            content.gate = GroupComparison::tooFewGroups(state_.dataset(), fields_.cmOutcome->name,
                                                         fields_.cmGrouping->name);
        }
    }
};

}  // namespace

std::unique_ptr<Analysis> CompareMeansAnalyses::oneWayAnova(StudioState& state,
                                                            CompareMeansFields& fields) {
    return std::make_unique<OneWayAnova>(state, fields, fields.cmOneWayRun);
}

}  // namespace sorvane
