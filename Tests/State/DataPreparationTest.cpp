#include <gtest/gtest.h>

#include "SorvaneMac/State/StudioState.h"

namespace sorvane {
namespace {

class DataPreparation : public testing::Test {
protected:
    DataPreparation() {
        state_.importPastedData(
            "group,q1,q2,q3,score\na,1,2,5,3.5\nb,2,98,4,2.5\na,3,3,3,1.5\nb,4,5,2,4\na,5,,1,6\n");
    }

    std::vector<std::string> cells(const std::string& name) {
        return state_.dataset().values(name);
    }
    std::string lastLog() { return state_.data.transformationLog->back(); }
    const std::vector<std::string>& warnings(const std::string& name) {
        return state_.dataset().variable(name)->warnings;
    }

    using Texts = std::vector<std::string>;
    StudioState state_{std::filesystem::path(SORVANE_SOURCE_DIR "/Resources")};
};

TEST_F(DataPreparation, ARecodeAddsAColumnAndSaysWhatItDid) {
    state_.editor.rcSource.set({"q2"});
    state_.editor.rcValueRules.set(
        {{.id = Uuid::fresh(), .sources = {98}, .output = std::nullopt}});
    state_.editor.rcName.set(" q1 ");
    ASSERT_TRUE(state_.runRecode());
    EXPECT_EQ(cells("q1 2"), (Texts{"2", "", "3", "5", ""}));
    EXPECT_EQ(state_.editor.rcName.get(), "q1 2");
    EXPECT_EQ(state_.editor.rcMessage.get(), "q1 2 was added (value recode of q2 (1 rule(s))).");
    EXPECT_EQ(lastLog(), "Recoded q2 into q1 2: value recode of q2 (1 rule(s)).");
    EXPECT_EQ(*(state_.data.transformationLog->end() - 2),
              "Settings for q1 2: 98 → missing; other values kept.");
    EXPECT_EQ(warnings("q1 2"), Texts{"Created by value recode of q2 (1 rule(s))"});
    EXPECT_EQ(state_.dataset().variable("q1 2")->assignedType,
              state_.dataset().variable("q2")->assignedType);
    EXPECT_TRUE(state_.undoLastDataChange());
    EXPECT_EQ(state_.editor.rcMessage.get(), "Reverted the addition of q1 2.");
    EXPECT_EQ(state_.dataset().columnCount(), 5);
}

TEST_F(DataPreparation, ARecodeInPlaceCanBeTakenBack) {
    const ImportedDataset before = state_.dataset();
    state_.editor.rcSource.set({"q3"});
    state_.editor.rcMode.set("reverse");
    state_.editor.rcReplace.set(true);
    state_.editor.rcReverseMax.set(4);
    ASSERT_TRUE(state_.runRecode());
    EXPECT_EQ(cells("q3"), (Texts{"", "1", "2", "3", "4"}));
    EXPECT_EQ(lastLog(), "Recoded q3 in place: reverse code of q3 on 1-4.");
    EXPECT_EQ(state_.editor.rcMessage.get(),
              "q3 was replaced in place (reverse code of q3 on 1-4).");
    EXPECT_EQ(state_.data.dataChangeUndoLabel.get(), "in-place change to q3");
    EXPECT_TRUE(state_.undoLastDataChange());
    EXPECT_EQ(state_.dataset(), before);
}

TEST_F(DataPreparation, ComputesAggregatesAndPairs) {
    state_.editor.cvSources.set({"q3", "q1", "gone"});
    ASSERT_TRUE(state_.runCompute());
    EXPECT_EQ(cells("Computed"), (Texts{"3", "3", "3", "3", "3"}));
    EXPECT_EQ(lastLog(), "Computed = Mean of q1, q3.");
    EXPECT_EQ(warnings("Computed"), Texts{"Computed as Mean of q1, q3."});
    EXPECT_EQ(state_.selectedDescriptiveVariableName->name, "Computed");
    state_.editor.cvKind.set("pair");
    state_.editor.cvVarA.set({"score"});
    state_.editor.cvVarB.set({"q1"});
    state_.editor.cvPairOp.set(PairOp::ratio);
    ASSERT_TRUE(state_.runCompute());
    EXPECT_EQ(cells("Computed 2"), (Texts{"3.5", "1.25", "0.5", "1", "1.2"}));
    EXPECT_EQ(state_.editor.cvMessage.get(),
              "Computed 2 was added (Ratio (A / B) of score and q1).");
}

TEST_F(DataPreparation, ScoresBandsAndScaleScores) {
    state_.derived.selectedComputedVariableIDs.set(
        {state_.dataset().variable("q1")->id, state_.dataset().variable("q3")->id});
    ASSERT_TRUE(state_.createComputedVariable());
    EXPECT_EQ(lastLog(), "Created Total Test Score as Sum score from q1, q3 using 80%");
    EXPECT_EQ(warnings("Total Test Score"),
              Texts{"Computed Sum score from 2 variable(s): q1, q3, 80% minimum completion"});
    EXPECT_EQ(state_.selectedANOVAOutcomeName->name, "Total Test Score");

    state_.derived.selectedBinningVariableName.set({"q1"});
    state_.derived.binnedVariableName.set(" ");
    state_.derived.binningBinCount.set(2);
    ASSERT_TRUE(state_.createBinnedVariable());
    EXPECT_EQ(cells("q1 Group").front(), "1: 1 to 3");
    EXPECT_EQ(state_.derived.binningMessage.get(),
              "Created q1 Group by grouping q1 into 2 band(s).");
    EXPECT_EQ(state_.dataset().variable("q1 Group")->assignedType, VariableKind::grouping);

    for (const DataVariable& variable : ImportedDataset(state_.dataset()).variables) {
        const bool isItem = variable.name == "q1" || variable.name == "q3";
        state_.assignVariable(variable.id,
                              isItem ? VariableKind::psychometricItem : VariableKind::exclude);
    }
    state_.scale.reverseCodedItemNames.set({"q3"});
    ASSERT_TRUE(state_.createScaleScoreVariable());
    EXPECT_EQ(cells("Scale score"), (Texts{"1", "2", "3", "4", "5"}));
    EXPECT_EQ(lastLog(), "Scale score as Mean score from reliability items q1, q3");
    EXPECT_EQ(warnings("Scale score"), Texts{"Mean score from 2 item variables: q1, q3"});
    EXPECT_EQ(state_.scale.scaleScoreCreationMessage.get(),
              "Scale score was added as a new dependent-variable score and is now available in "
              "Descriptives and ANOVA.");
    state_.scale.reverseCodedItemNames.set({"q3", "q1"});
    state_.data.dataset.edit(
        [](ImportedDataset& table) { table.variables[1].scaleRange = std::nullopt; });
    EXPECT_EQ(state_.itemsNotReversed(), Texts{"q1"});
    state_.scale.constructName.set(" Calm ");
    EXPECT_EQ(state_.defaultScaleScoreVariableName(), "Calm Mean Score");
}

TEST_F(DataPreparation, ARenameReachesEverySelectionAndComesBackWithIt) {
    state_.scale.reverseCodedItemNames.set({"q1"});
    state_.editor.cvSources.set({"q1", "q2"});
    state_.derived.selectedBinningVariableName.set({"q1"});
    state_.selectedDescriptiveVariableName.set({"q1"});
    ASSERT_TRUE(state_.renameVariable("q1", " calm "));
    EXPECT_EQ(state_.scale.reverseCodedItemNames.get(), NameSet{"calm"});
    EXPECT_EQ(state_.editor.cvSources.get(), (NameSet{"calm", "q2"}));
    EXPECT_EQ(state_.derived.selectedBinningVariableName->name, "calm");
    EXPECT_EQ(state_.selectedDescriptiveVariableName->name, "calm");
    EXPECT_NE(state_.classification("calm"), nullptr);
    EXPECT_EQ(state_.dataset().importMetadata.columnSummaries[1].header, "calm");
    EXPECT_EQ(state_.editor.dvName->name, "calm");
    EXPECT_EQ(state_.editor.dvMessage.get(),
              "q1 is now calm. Every list and analysis uses the new name.");
    EXPECT_TRUE(state_.undoLastDataChange());
    EXPECT_EQ(state_.editor.cvSources.get(), (NameSet{"q1", "q2"}));
    EXPECT_EQ(state_.scale.reverseCodedItemNames.get(), NameSet{"q1"});
    EXPECT_EQ(state_.derived.selectedBinningVariableName->name, "q1");
}

TEST_F(DataPreparation, ADeletionDropsTheNameAndUndoBringsTheMarksBack) {
    state_.scale.reverseCodedItemNames.set({"q1"});
    state_.editor.cvSources.set({"q1", "q2"});
    state_.editor.dvName.set({"q1"});
    state_.derived.selectedComputedVariableIDs.set({state_.dataset().variable("q1")->id});
    ASSERT_TRUE(state_.deleteVariable("q1"));
    EXPECT_EQ(state_.editor.cvSources.get(), NameSet{"q2"});
    EXPECT_TRUE(state_.editor.dvName->isBlank());
    EXPECT_TRUE(state_.derived.selectedComputedVariableIDs->empty());
    EXPECT_EQ(lastLog(), "Deleted variable q1");
    EXPECT_EQ(state_.dataset().importMetadata.columnCount, 4);
    ASSERT_TRUE(state_.undoLastDataChange());
    EXPECT_EQ(state_.scale.reverseCodedItemNames.get(), NameSet{"q1"});
    EXPECT_EQ(state_.dataset().headers[1], "q1");
    EXPECT_NE(state_.classification("q1"), nullptr);
}

TEST_F(DataPreparation, CleaningWritesAColumnBesideTheSource) {
    state_.cleaning.clVar.set({"q2"});
    state_.cleaning.clUpper.set(" 5 ");
    state_.cleaning.clLower.set("-inf");
    EXPECT_EQ(state_.clLowerBound(), std::nullopt);
    state_.cleaning.clLower.set("1");
    EXPECT_EQ(state_.clOutOfRangeReport().flaggedCount, 1);
    ASSERT_TRUE(state_.clApplyClampToMissing());
    EXPECT_EQ(cells("q2 Cleaned"), (Texts{"2", "", "3", "5", ""}));
    EXPECT_EQ(cells("q2")[1], "98");
    EXPECT_EQ(warnings("q2 Cleaned"),
              Texts{"Out-of-range values (outside 1 and 5) set to missing from q2"});
    EXPECT_EQ(lastLog(),
              "Cleaned q2 into q2 Cleaned: out-of-range (outside 1 and 5) set to missing.");
    EXPECT_EQ(state_.cleaning.clMessage.get(),
              "q2 Cleaned was added with out-of-range values set to missing.");
}

TEST_F(DataPreparation, WhatIsMissingIsSaidAndNothingChanges) {
    const ImportedDataset before = state_.dataset();
    struct Case {
        int line;
        bool (StudioState::*run)();
        const Field<std::optional<std::string>>* said;
        std::string text;
    };
    state_.cleaning.clVar.set({"q1"});
    const std::vector<Case> cases = {
        {__LINE__, &StudioState::runRecode, &state_.editor.rcMessage, "Choose a source variable."},
        {__LINE__, &StudioState::runCompute, &state_.editor.cvMessage,
         "Select at least one source variable."},
        {__LINE__, &StudioState::createComputedVariable, &state_.derived.computedVariableMessage,
         "Select at least two numeric variables before creating a score variable."},
        {__LINE__, &StudioState::clApplyClampToMissing, &state_.cleaning.clMessage,
         "Set a lower and/or upper bound first."},
    };
    for (const Case& each : cases) {
        EXPECT_FALSE((state_.*each.run)()) << "line " << each.line;
        EXPECT_EQ(each.said->get(), each.text);
    }
    EXPECT_FALSE(state_.renameVariable("q1", "q2"));
    EXPECT_EQ(state_.editor.dvMessage.get(),
              "A variable named q2 already exists. Choose a different name.");
    EXPECT_FALSE(state_.deleteVariable("gone"));
    EXPECT_EQ(state_.editor.dvMessage.get(), "Choose a variable to delete.");
    EXPECT_EQ(state_.dataset(), before);
    EXPECT_EQ(state_.data.transformationLog->size(), 1U);
    EXPECT_FALSE(state_.canUndoDataChange());
}

}  // namespace
}  // namespace sorvane
