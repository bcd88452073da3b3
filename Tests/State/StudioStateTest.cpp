#include "SorvaneMac/State/StudioState.h"

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "SorvaneMac/State/VariableLists.h"

namespace sorvane {
namespace {

const std::filesystem::path resources = SORVANE_SOURCE_DIR "/Resources";

constexpr std::string_view survey =
    "respondent_id,group,q1,q2,q3,TotalScore\n"
    "1,a,1,2,3,10.5\n2,b,2,3,3,11.5\n3,a,4,4,5,14\n4,b,5,5,4,15\n5,a,3,3,2,12\n6,b,2,1,2,9\n";

class StudioStateTest : public testing::Test {
protected:
    StudioStateTest() : folder_(std::filesystem::temp_directory_path() / Uuid::fresh().text()) {
        std::filesystem::create_directory(folder_);
    }
    ~StudioStateTest() override { std::filesystem::remove_all(folder_); }

    std::filesystem::path fileHolding(std::string_view text,
                                      const std::string& name = "survey.csv") {
        std::ofstream(folder_ / name, std::ios::binary) << text;
        return folder_ / name;
    }
    const DataVariable& variable(std::string_view name) { return *state_.dataset().variable(name); }

    std::filesystem::path folder_;
    StudioState state_{resources};
};

TEST_F(StudioStateTest, StartsEmptyOnTheStartPage) {
    EXPECT_EQ(state_.dataset().name, "No dataset");
    EXPECT_EQ(state_.dataset().importMetadata.missingValueMarkers.size(), 17U);
    EXPECT_TRUE(state_.showsStartPage());
    EXPECT_EQ(state_.data.datasetDraftHeaders->back(), "Var10");
    state_.selection.set(StudioScreen::importData);
    EXPECT_FALSE(state_.showsStartPage());
}

TEST_F(StudioStateTest, AdoptsAnImportAndLetsNothingOfTheFormerDatasetStand) {
    state_.importData(fileHolding(survey));
    EXPECT_EQ(state_.selection.get(), StudioScreen::instrumentMap);
    EXPECT_EQ(state_.data.transformationLog.get(),
              std::vector<std::string>{"Imported survey.csv with 6 row(s) and 6 variable(s)."});
    EXPECT_FALSE(state_.data.isDatasetEditable.get());
    EXPECT_TRUE(variable("q1").includeInReliability);
    EXPECT_EQ(state_.scale.scaleClassifications->size(), 6U);

    state_.addToReport({.id = Uuid::fresh(), .title = "Finding", .apaSummary = "It was so."});
    state_.scale.reverseCodedItemNames.set({"q1"});
    state_.scale.unreliableItemNames.set({"q2"});
    state_.projectMessage.set("Saved.");
    state_.researcherNotes.set({{"overview", "keep me"}});
    state_.scale.constructName.set("Calm");
    state_.importData(fileHolding(survey));

    EXPECT_EQ(state_.data.transformationLog->size(), 1U);
    EXPECT_TRUE(state_.reportItems->empty());
    EXPECT_TRUE(state_.scale.reverseCodedItemNames->empty());
    EXPECT_TRUE(state_.scale.unreliableItemNames->empty());
    EXPECT_EQ(state_.projectMessage.get(), std::nullopt);
    EXPECT_EQ(state_.researcherNotes->at("overview"), "keep me");
    EXPECT_EQ(state_.scale.constructName.get(), "Calm");
}

TEST_F(StudioStateTest, AFailedImportChangesNothingButItsMessage) {
    state_.importData(fileHolding(survey));
    state_.addToReport({.id = Uuid::fresh(), .title = "Finding", .apaSummary = "It was so."});
    state_.selection.set(StudioScreen::regression);
    const ImportedDataset before = state_.dataset();

    state_.importData(fileHolding("a,b\n", "header.csv"));

    EXPECT_EQ(state_.data.importError.get(),
              "Could not import header.csv: The file has 2 column headers but no data rows. Export "
              "the worksheet as a normal CSV with one header row followed by respondent rows.");
    EXPECT_EQ(state_.dataset(), before);
    EXPECT_EQ(state_.reportItems->size(), 1U);
    EXPECT_EQ(state_.selection.get(), StudioScreen::regression);

    state_.importPastedData("  \n ");
    EXPECT_EQ(state_.data.importError.get(), "Paste some tabular data first.");
    state_.importPastedData("\u2003\n\ta;b\n1;2\n");
    EXPECT_EQ(state_.data.importError.get(), std::nullopt);
    EXPECT_EQ(state_.dataset().headers, (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(state_.dataset().name, "Pasted data");
    EXPECT_EQ(state_.data.transformationLog->front(),
              "Imported pasted data with 1 row(s) and 2 variable(s).");
}

TEST_F(StudioStateTest, HoldsAnImportBackOnlyForAnAssembledDocument) {
    const std::filesystem::path file = fileHolding(survey);
    state_.importData(file);
    state_.addToReport({.id = Uuid::fresh(), .title = "Finding", .apaSummary = "It was so."});
    EXPECT_TRUE(state_.handleIncomingImport(file));
    EXPECT_TRUE(state_.reportItems->empty());

    state_.addToReport({.id = Uuid::fresh(), .title = "Finding", .apaSummary = "It was so."});
    state_.assembleReport();
    EXPECT_FALSE(state_.handleIncomingImport(file));
    state_.cancelPendingImport();
    state_.confirmPendingImport();
    EXPECT_TRUE(state_.reportRTFData.get().has_value());
    EXPECT_FALSE(state_.handleIncomingImport(file));
    state_.confirmPendingImport();
    EXPECT_FALSE(state_.reportRTFData.get().has_value());
}

TEST_F(StudioStateTest, MakesABlankGridAsANewProject) {
    std::string action;
    const Subscription watching =
        state_.observeActions([&action](std::string_view name) { action = name; });
    state_.currentProjectURL.set("/old.svp");
    state_.data.datasetDraftName.set("  ");
    state_.data.datasetDraftColumns.set(3);
    state_.beginBlankDataset();
    EXPECT_EQ(action, "showInspector");
    EXPECT_EQ(state_.dataset().name, "Untitled dataset");
    EXPECT_EQ(state_.dataset().headers, (std::vector<std::string>{"Var1", "Var2", "Var3"}));
    EXPECT_EQ(state_.dataset().rowCount(), 20);
    EXPECT_EQ(state_.selection.get(), StudioScreen::dataPreview);
    EXPECT_EQ(state_.currentProjectURL.get(), std::nullopt);
    EXPECT_EQ(state_.data.transformationLog->front(),
              "Created blank dataset \"Untitled dataset\" with 20 row(s) and 3 variable(s).");

    state_.updateDatasetCell(19, 2, "7");
    EXPECT_EQ(state_.dataset().rows.cell(19, 2), "7");
    EXPECT_EQ(variable("Var3").nonMissingCount, 1);
    state_.updateDatasetCell(20, 2, "8");
    state_.updateDatasetCell(0, -1, "8");
    EXPECT_EQ(state_.dataset().rowCount(), 20);
    state_.data.isDatasetEditable.set(false);
    state_.updateDatasetCell(0, 0, "8");
    EXPECT_EQ(state_.dataset().rows.cell(0, 0), "");
}

TEST_F(StudioStateTest, TheSampleComesUnseeded) {
    state_.data.importError.set("Something failed.");
    state_.resetToSample();
    EXPECT_EQ(state_.dataset().name, "SampleEIStudy.csv");
    EXPECT_EQ(state_.data.transformationLog->front(),
              "Loaded bundled sample dataset: SampleEIStudy.csv.");
    EXPECT_TRUE(state_.scale.scaleClassifications->empty());
    EXPECT_EQ(state_.selection.get(), StudioScreen::scalesReliability);
    EXPECT_EQ(state_.data.importError.get(), std::nullopt);
    EXPECT_GE(VariableLists::reliabilityVariables(state_.dataset()).size(), 10U);

    StudioState bare{folder_};
    bare.resetToSample();
    EXPECT_EQ(bare.dataset().name, "Empty project");
}

TEST_F(StudioStateTest, KeepsTheFiveSelectionsValid) {
    state_.importData(fileHolding(survey));
    EXPECT_EQ(state_.selectedDescriptiveVariableName->name, "q1");
    EXPECT_EQ(state_.selectedDescriptiveGroupName->name, "");
    EXPECT_EQ(state_.selectedANOVAOutcomeName->name, "TotalScore");
    EXPECT_EQ(state_.selectedANOVAGroupName->name, "group");
    state_.selectedDescriptiveVariableName.set({"q3"});
    state_.selectedDescriptiveGroupName.set({"group"});
    state_.refreshAnalysisDefaults();
    EXPECT_EQ(state_.selectedDescriptiveVariableName->name, "q3");
    state_.assignVariable(variable("group").id, VariableKind::exclude);
    EXPECT_EQ(state_.selectedDescriptiveGroupName->name, "");
}

TEST_F(StudioStateTest, AssignsRolesWithTheirConsequences) {
    state_.importData(fileHolding(survey));
    state_.scale.reverseCodedItemNames.set({"q1", "q2"});
    state_.assignVariable(variable("q1").id, VariableKind::status);
    EXPECT_EQ(state_.scale.reverseCodedItemNames.get(), NameSet{"q2"});
    EXPECT_TRUE(variable("q1").includeInDescriptives);
    EXPECT_FALSE(variable("q1").includeInReliability);
    EXPECT_EQ(variable("q1").inferredType, VariableKind::psychometricItem);
    state_.assignVariable(variable("q2").id, VariableKind::administrative);
    EXPECT_FALSE(variable("q2").includeInDescriptives);
    state_.assignVariable(Uuid::fresh(), VariableKind::outcome);

    state_.selectLikertCandidateItemsForReliability();
    EXPECT_EQ(variable("q1").assignedType, VariableKind::psychometricItem);
    EXPECT_TRUE(variable("q2").includeInReliability);
    EXPECT_FALSE(variable("TotalScore").includeInReliability);
}

TEST_F(StudioStateTest, CancelsOnlyWhatCanBeCancelled) {
    state_.isComputing.set(true);
    state_.cancelComputing();
    EXPECT_TRUE(state_.isComputing.get());
    state_.computingCancellable.set(true);
    state_.cancelComputing();
    EXPECT_FALSE(state_.isComputing.get());
    EXPECT_EQ(state_.impMessage.get(), "Imputation canceled. Nothing was changed.");
}

TEST_F(StudioStateTest, StagesAResultOnceAtItsFirstPlace) {
    const ReportItem first{.id = Uuid::fresh(), .title = "A", .apaSummary = "one"};
    const ReportItem second{.id = Uuid::fresh(), .title = "A", .apaSummary = "two"};
    state_.addToReport(first);
    state_.addToReport(second);
    ReportItem again{.id = Uuid::fresh(), .title = "A", .apaSummary = "one"};
    again.caution = "Careful.";
    EXPECT_FALSE(state_.isStaged(again));
    state_.addToReport(again);
    ASSERT_EQ(state_.reportItems->size(), 2U);
    EXPECT_EQ(state_.reportItems->front(), again);
    again.id = Uuid::fresh();
    EXPECT_TRUE(state_.isStaged(again));
    state_.removeFromReport(second.id);
    EXPECT_EQ(state_.reportItems->size(), 1U);
}

TEST_F(StudioStateTest, StagesANoteByItsScreen) {
    const auto note = [this](const std::string& text) {
        state_.researcherNotes.set({{"export", text}});
    };
    note("  \n");
    state_.stageResearcherNote(StudioScreen::export_);
    EXPECT_TRUE(state_.reportItems->empty());
    EXPECT_FALSE(state_.researcherNoteIsStaged(StudioScreen::export_));
    note(" Look at Q3. ");
    state_.stageResearcherNote(StudioScreen::export_);
    EXPECT_EQ(state_.reportItems->front().title, "Researcher Notes: Share & export");
    EXPECT_EQ(state_.reportItems->front().apaSummary, "Look at Q3.");
    EXPECT_TRUE(state_.researcherNoteIsStaged(StudioScreen::export_));
    note("Look at Q4.");
    EXPECT_FALSE(state_.researcherNoteIsStaged(StudioScreen::export_));
    const Uuid id = state_.reportItems->front().id;
    state_.stageResearcherNote(StudioScreen::export_);
    EXPECT_EQ(state_.reportItems->size(), 1U);
    EXPECT_EQ(state_.reportItems->front().id, id);
}

}  // namespace
}  // namespace sorvane
