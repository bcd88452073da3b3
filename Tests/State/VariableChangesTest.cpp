#include <gtest/gtest.h>

#include "SorvaneMac/State/StudioState.h"

namespace sorvane {
namespace {

using Texts = std::vector<std::string>;

/// Six cases of a scale of three items, with gaps.
class VariableChanges : public testing::Test {
protected:
    VariableChanges() {
        state_.importPastedData(
            "q1,q2,q3,age\n1,2,5,18\n2,,4,29\n3,3,,30\n4,5,2,44.5\n5,,,60\n"
            "2,1,4,NA\n");
        for (const char* name : {"q1", "q2", "q3"}) {
            state_.assignVariable(state_.dataset().variable(name)->id,
                                  VariableKind::psychometricItem);
        }
        state_.assignVariable(state_.dataset().variable("age")->id,
                              VariableKind::demographicBackground);
    }
    Texts cells(const std::string& name) { return state_.dataset().values(name); }
    std::string log(std::size_t fromTheEnd) {
        const std::vector<std::string>& entries = state_.data.transformationLog.get();
        return entries.at(entries.size() - 1 - fromTheEnd);
    }
    RangeRecodeRule band(double lower, double upper, bool takesUpper, double output) {
        return {.id = Uuid::fresh(),
                .lower = lower,
                .upper = upper,
                .lowerInclusive = true,
                .upperInclusive = takesUpper,
                .output = output};
    }

    StudioState state_{std::filesystem::path(SORVANE_SOURCE_DIR "/Resources")};
};

TEST_F(VariableChanges, BandsTakeTheirBoundsAsTheySay) {
    state_.editor.rcSource.set({"age"});
    state_.editor.rcMode.set("range");
    state_.editor.rcRangeRules.set({band(18, 30, false, 1), band(30, 45, true, 2)});
    const struct {
        int line;
        bool keeps;
        Texts cells;
        std::string settings;
    } cases[] = {
        {__LINE__,
         true,
         {"1", "1", "2", "2", "60", ""},
         "Settings for age Recoded: 18 ≤ x < 30 → 1; 30 ≤ x ≤ 45 → 2; other values kept."},
        {__LINE__,
         false,
         {"1", "1", "2", "2", "", ""},
         "Settings for age Recoded: 18 ≤ x < 30 → 1; 30 ≤ x ≤ 45 → 2; other values → missing."},
    };
    for (const auto& each : cases) {
        state_.editor.rcName.set("  ");
        state_.editor.rcCopyUnmatched.set(each.keeps);
        ASSERT_TRUE(state_.runRecode()) << each.line;
        EXPECT_EQ(cells("age Recoded"), each.cells) << each.line;
        EXPECT_EQ(log(1), each.settings) << each.line;
        EXPECT_EQ(log(0), "Recoded age into age Recoded: range recode of age (2 band(s)).");
        EXPECT_EQ(state_.dataset().variable("age Recoded")->assignedType,
                  VariableKind::demographicBackground);
        ASSERT_TRUE(state_.undoLastDataChange());
    }
}

TEST_F(VariableChanges, AnAggregateAsksForItsShareOfAnswers) {
    const struct {
        int line;
        AggregateOp operation;
        double completion;
        Texts cells;
        std::string settings;
    } cases[] = {
        {__LINE__, AggregateOp::mean, 0.0, {"2.6667", "3", "3", "3.6667", "5", "2.3333"}, ""},
        {__LINE__,
         AggregateOp::mean,
         0.5,
         {"2.6667", "3", "3", "3.6667", "", "2.3333"},
         "Settings for Answers: 50% minimum completion."},
        {__LINE__,
         AggregateOp::sum,
         1.0,
         {"8", "", "", "11", "", "7"},
         "Settings for Answers: 100% minimum completion."},
        {__LINE__, AggregateOp::count, 1.0, {"3", "2", "2", "3", "1", "3"}, ""},
        {__LINE__, AggregateOp::minimum, 0.0, {"1", "2", "3", "2", "5", "1"}, ""},
        {__LINE__, AggregateOp::maximum, 0.0, {"5", "4", "3", "5", "5", "4"}, ""},
    };
    state_.editor.cvSources.set({"q3", "q1", "q2"});
    for (const auto& each : cases) {
        state_.editor.cvName.set("Answers");
        state_.editor.cvAggOp.set(each.operation);
        state_.editor.cvMinCompletion.set(each.completion);
        ASSERT_TRUE(state_.runCompute()) << each.line;
        EXPECT_EQ(cells("Answers"), each.cells) << each.line;
        EXPECT_EQ(log(0).starts_with("Answers = "), true) << log(0);
        EXPECT_EQ(log(1).starts_with("Settings"), !each.settings.empty()) << each.line;
        EXPECT_TRUE(each.settings.empty() || log(1) == each.settings) << log(1);
        EXPECT_TRUE(log(0).ends_with(" of q1, q2, q3.")) << "in the order of the columns";
        ASSERT_TRUE(state_.undoLastDataChange());
    }
}

TEST_F(VariableChanges, ADifferenceIsOfTheFirstFromTheSecond) {
    state_.editor.cvKind.set("pair");
    state_.editor.cvVarA.set({"q3"});
    state_.editor.cvVarB.set({"q1"});
    ASSERT_TRUE(state_.runCompute());
    EXPECT_EQ(cells("Computed"), (Texts{"4", "2", "", "-2", "", "2"}));
    EXPECT_EQ(state_.computePreview(2)->size(), 2U);
    EXPECT_EQ(state_.computePreview(2)->front(), 4.0);
    state_.editor.cvVarB.set({"gone"});
    EXPECT_EQ(state_.computeLacks(), "Pick two variables to combine.");
    EXPECT_EQ(state_.computePreview(2), std::nullopt);
}

TEST_F(VariableChanges, AScaleScoreTurnsItsItemsAndAsksForEnoughOfThem) {
    state_.data.dataset.edit([](ImportedDataset& table) {
        table.variables[2].scaleRange = ScaleRange{.minimum = 1.0, .maximum = 5.0};
    });
    state_.scale.reverseCodedItemNames.set({"q3"});
    const struct {
        int line;
        ReliabilityMissingDataRule rule;
        ScaleScoreMethod method;
        double completion;
        Texts cells;
        std::string settings;
    } cases[] = {
        {__LINE__,
         ReliabilityMissingDataRule::listwiseDeletion,
         ScaleScoreMethod::sum,
         0.5,
         {"4", "", "", "13", "", "5"},
         "listwise deletion; reverse-coded: q3 on 1-5."},
        {__LINE__,
         ReliabilityMissingDataRule::availableItemMean,
         ScaleScoreMethod::mean,
         0.65,
         {"1.3333", "2", "3", "4.3333", "", "1.6667"},
         "available-item mean, 65% item completion; reverse-coded: q3 on 1-5."},
    };
    for (const auto& each : cases) {
        state_.scale.reliabilityMissingDataRule.set(each.rule);
        state_.scale.scaleScoreMethod.set(each.method);
        state_.scale.minimumItemCompletion.set(each.completion);
        ASSERT_TRUE(state_.createScaleScoreVariable()) << each.line;
        EXPECT_EQ(cells("Scale score"), each.cells) << each.line;
        EXPECT_EQ(log(1), "Settings for Scale score: " + each.settings) << each.line;
        EXPECT_EQ(state_.selectedANOVAOutcomeName->name, "Scale score");
        EXPECT_FALSE(state_.dataset().variable("Scale score")->includeInReliability);
        ASSERT_TRUE(state_.undoLastDataChange());
        EXPECT_NE(state_.selectedANOVAOutcomeName->name, "Scale score");
    }
}

TEST_F(VariableChanges, ACountIsMadeOfOneVariableAndAScoreOfTwo) {
    using enum ComputedVariableMethod;
    const Uuid q2 = state_.dataset().variable("q2")->id;
    state_.derived.selectedComputedVariableIDs.set({q2, Uuid::fresh()});
    EXPECT_TRUE(state_.computedVariableLacks().has_value()) << "one of them is of another table";
    state_.derived.computedVariableMethod.set(validCount);
    state_.derived.computedVariableName.set(" Answers ");
    ASSERT_TRUE(state_.createComputedVariable());
    EXPECT_EQ(cells("Answers"), (Texts{"1", "0", "1", "1", "0", "1"}));
    EXPECT_EQ(log(0), "Created Answers as valid-response count from q2 using 80%");
}

TEST_F(VariableChanges, OnlyTheLastChangeCanBeTakenBack) {
    state_.editor.rcSource.set({"q1"});
    state_.editor.rcMode.set("reverse");
    state_.editor.rcName.set("first");
    ASSERT_TRUE(state_.runRecode());
    ASSERT_TRUE(state_.renameVariable("q2", "second"));
    ASSERT_TRUE(state_.deleteVariable("q3"));
    EXPECT_EQ(state_.data.dataChangeUndoLabel.get(), "deletion of q3");
    ASSERT_TRUE(state_.undoLastDataChange());
    EXPECT_FALSE(state_.canUndoDataChange());
    EXPECT_FALSE(state_.undoLastDataChange());
    EXPECT_EQ(state_.dataset().headers, (Texts{"q1", "second", "q3", "age", "first"}));
    EXPECT_EQ(log(0), "Reverted the deletion of q3.");
    EXPECT_EQ(state_.editor.dvMessage.get(), "Reverted the deletion of q3.");
    EXPECT_EQ(state_.data.dataChangeUndoLabel.get(), "");
}

TEST_F(VariableChanges, ADeletionMovesTheSelectionThatLayBeyondIt) {
    state_.data.selectedDatasetColumn.set(3);
    state_.data.selectedDatasetRow.set(5);
    state_.scale.unreliableItemNames.set({"q1", "q3"});
    ASSERT_TRUE(state_.deleteVariable("q1"));
    EXPECT_EQ(state_.scale.unreliableItemNames.get(), NameSet{"q3"});
    EXPECT_EQ(state_.data.selectedDatasetColumn.get(), std::nullopt);
    EXPECT_EQ(state_.data.selectedDatasetRow.get(), 5);
    state_.derived.binningMessage.set("Said.");
    state_.cleaning.clMessage.set("Said.");
    ASSERT_TRUE(state_.undoLastDataChange());
    EXPECT_EQ(state_.derived.binningMessage.get(), std::nullopt);
    EXPECT_EQ(state_.cleaning.clMessage.get(), std::nullopt);
    EXPECT_EQ(state_.scale.unreliableItemNames.get(), (NameSet{"q1", "q3"}));
}

TEST_F(VariableChanges, OneSidedBoundsAreSaidAsSuch) {
    state_.cleaning.clVar.set({"age"});
    const struct {
        int line;
        std::string lower;
        std::string upper;
        Texts cells;
        std::string log;
    } cases[] = {
        {__LINE__,
         "30",
         "",
         {"", "", "30", "44.5", "60", ""},
         "Cleaned age into age Cleaned: out-of-range (outside the minimum 30) set to missing."},
        {__LINE__,
         " ",
         "44.5",
         {"18", "29", "30", "44.5", "", ""},
         "Cleaned age into age Cleaned: out-of-range (outside the maximum 44.5) set to missing."},
    };
    for (const auto& each : cases) {
        state_.cleaning.clLower.set(each.lower);
        state_.cleaning.clUpper.set(each.upper);
        ASSERT_TRUE(state_.clApplyClampToMissing()) << each.line;
        EXPECT_EQ(cells("age Cleaned"), each.cells) << each.line;
        EXPECT_EQ(log(0), each.log) << each.line;
        ASSERT_TRUE(state_.undoLastDataChange());
    }
}

}  // namespace
}  // namespace sorvane
