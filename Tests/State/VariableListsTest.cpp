#include "SorvaneMac/State/VariableLists.h"

#include <gtest/gtest.h>

#include "SorvaneMac/State/StudioState.h"

namespace sorvane {
namespace {

using Names = std::vector<std::string>;
using enum VariableKind;

/// A column for every role, each of numbers but the last two.
class VariableListsTest : public testing::Test {
protected:
    VariableListsTest() {
        state_.importPastedData(
            "age,days,calm,test,rubric,Total,site,code,note,gone,name,region\n"
            "31,4,1,0,2,3.5,1,11,1,1,Ann,north\n45,5,2,1,3,4.5,2,12,2,2,Bob,south\n"
            "38,6,3,1,3,5.5,1,13,3,3,Cleo,north\n27,4,4,0,2,6.5,2,14,4,4,Dora,south\n");
        const std::pair<const char*, VariableKind> roles[] = {{"age", demographicBackground},
                                                              {"days", status},
                                                              {"calm", psychometricItem},
                                                              {"test", testItem},
                                                              {"rubric", rubricItem},
                                                              {"Total", outcome},
                                                              {"site", grouping},
                                                              {"code", administrative},
                                                              {"note", textResponse},
                                                              {"gone", exclude},
                                                              {"name", textResponse},
                                                              {"region", grouping}};
        for (const auto& [name, kind] : roles) {
            state_.assignVariable(state_.dataset().variable(name)->id, kind);
        }
    }
    const ImportedDataset& table() { return state_.dataset(); }

    StudioState state_{std::filesystem::path(SORVANE_SOURCE_DIR "/Resources")};
};

TEST_F(VariableListsTest, OfferEachColumnWhereItsRoleAllows) {
    using namespace VariableLists;
    EXPECT_EQ(names(numericVariables(table())),
              (Names{"age", "days", "calm", "test", "rubric", "Total", "site", "note"}));
    EXPECT_EQ(names(descriptiveNumericVariables(table())), names(numericVariables(table())));
    EXPECT_EQ(names(reliabilityVariables(table())), (Names{"calm", "test", "rubric"}));
    EXPECT_EQ(names(anovaOutcomeVariables(table())),
              (Names{"days", "calm", "test", "rubric", "Total"}));
    EXPECT_EQ(names(anovaGroupingVariables(table())),
              (Names{"age", "days", "calm", "test", "rubric", "site", "region"}));
    EXPECT_EQ(names(without(numericVariables(table()), {"age", "note", "other"})),
              (Names{"days", "calm", "test", "rubric", "Total", "site"}));
    EXPECT_TRUE(contains(numericVariables(table()), "age"));
    EXPECT_FALSE(contains(numericVariables(table()), "code"));
    EXPECT_FALSE(contains(numericVariables(table()), "ag"));
}

TEST_F(VariableListsTest, FollowTheTwoSwitchesOfAVariable) {
    state_.setDescriptivesIncluded(table().variable("age")->id, false);
    state_.setReliabilityIncluded(table().variable("calm")->id, false);
    state_.setReliabilityIncluded(table().variable("days")->id, true);
    state_.setReliabilityIncluded(table().variable("region")->id, true);
    state_.setReliabilityIncluded(table().variable("code")->id, true);
    using namespace VariableLists;
    EXPECT_FALSE(contains(descriptiveNumericVariables(table()), "age"));
    EXPECT_TRUE(contains(numericVariables(table()), "age"));
    EXPECT_EQ(names(reliabilityVariables(table())), (Names{"days", "test", "rubric"}))
        << "neither a text nor what is not analyzed is an item";
}

TEST_F(VariableListsTest, TakeForLikertItemsWhatHasTwelveLevelsAtMost) {
    const auto isTaken = [this](std::int64_t levels, const ScaleRange& range) {
        state_.assignVariable(table().variable("calm")->id, status);
        state_.data.dataset.edit([&](ImportedDataset& edited) {
            edited.variables[2].inferredType = psychometricItem;
            edited.variables[2].uniqueCount = levels;
            edited.variables[2].scaleRange = range;
        });
        state_.selectLikertCandidateItemsForReliability();
        return table().variable("calm")->assignedType == psychometricItem;
    };
    EXPECT_TRUE(isTaken(12, {.minimum = 1.0, .maximum = 12.0}));
    EXPECT_FALSE(isTaken(13, {.minimum = 1.0, .maximum = 13.0}));
    EXPECT_FALSE(isTaken(5, {.minimum = 1.0, .maximum = std::nullopt}));
    EXPECT_NE(table().variable("Total")->assignedType, psychometricItem);
}

TEST_F(VariableListsTest, PreferAnOutcomeByItsNameAndAGroupByItsRole) {
    using namespace VariableLists;
    EXPECT_EQ(preferredOutcomeVariable(table())->name, "Total");
    EXPECT_EQ(preferredGroupingVariable(table())->name, "site");
    state_.renameVariable("Total", "Later");
    state_.renameVariable("rubric", "Job SATISFACTION");
    EXPECT_EQ(preferredOutcomeVariable(table())->name, "Job SATISFACTION");
    state_.renameVariable("Job SATISFACTION", "rubric");
    EXPECT_EQ(preferredOutcomeVariable(table())->name, "Later");
    for (const char* name : {"site", "region", "Later"}) {
        state_.assignVariable(table().variable(name)->id, exclude);
    }
    EXPECT_EQ(preferredOutcomeVariable(table()), nullptr);
    EXPECT_EQ(preferredGroupingVariable(table())->name, "age");
}

}  // namespace
}  // namespace sorvane
