#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

#include "SorvaneCore/Project/ProjectArchive.h"
#include "SorvaneCore/Project/RecordJson.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {
namespace {

const std::filesystem::path resources = SORVANE_SOURCE_DIR "/Resources";

using Bytes = std::vector<std::uint8_t>;

Bytes bytes(std::string_view text) {
    return {text.begin(), text.end()};
}

class ProjectFiles : public testing::Test {
protected:
    ProjectFiles() { std::filesystem::create_directory(folder_); }
    ~ProjectFiles() override { std::filesystem::remove_all(folder_); }

    /// A study with a decision of every kind.
    static void work(StudioState& state) {
        state.importPastedData("id,q1,q2,score\n1,2,3,10\n2,3,4,11\n3,1,NA,12\n4,5,5,9\n");
        state.assignVariable(state.dataset().variable("score")->id, VariableKind::outcome);
        state.data.dataset.edit([](ImportedDataset& table) {
            table.variables[1].label = "How calm?";
            table.variables[1].scaleRange = ScaleRange{.minimum = 1.0, .maximum = 7.0};
        });
        state.scale.reverseCodedItemNames.set({"q2"});
        state.scale.unreliableItemNames.set({"q1"});
        state.addToReport({.id = Uuid::fresh(),
                           .title = "Finding",
                           .apaSummary = "It was so.",
                           .figure = Bytes{0, 255, 1}});
        state.assembleReport();
        state.researcherNotes.set({{"overview", "Ask again."}, {"regression", " \n"}});
        state.selection.set(StudioScreen::regression);
    }
    Json json(const std::string& name) const { return Json::parse(std::ifstream(folder_ / name)); }
    void write(const std::string& name, const Json& json) const {
        std::ofstream(folder_ / name) << json.dump();
    }

    const std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() / Uuid::fresh().text();
    StudioState state_{resources};
    StudioState next_{resources};
};

TEST_F(ProjectFiles, KeepEverythingButResults) {
    work(state_);
    EXPECT_TRUE(state_.hasUnsavedWork());
    ASSERT_TRUE(state_.saveProject(folder_ / "study.svp"));
    EXPECT_EQ(state_.projectMessage.get(), "Saved study.svp.");
    EXPECT_EQ(state_.saveStatusMessage.get(), "Saved study.svp.");
    EXPECT_EQ(state_.currentProjectURL.get(), (folder_ / "study.svp").string());
    EXPECT_FALSE(state_.hasUnsavedWork());

    next_.projectError.set("An older error.");
    ASSERT_TRUE(next_.openProject(folder_ / "study.svp"));
    EXPECT_EQ(next_.projectMessage.get(), "Opened study.svp.");
    EXPECT_EQ(next_.projectError.get(), std::nullopt);
    EXPECT_FALSE(next_.hasUnsavedWork());
    const ImportedDataset& dataset = next_.dataset();
    EXPECT_EQ(dataset.name, "Pasted data");
    EXPECT_EQ(dataset.headers, state_.dataset().headers);
    EXPECT_EQ(dataset.rows, state_.dataset().rows);
    for (std::size_t i = 0; i < dataset.variables.size(); ++i) {
        DataVariable expected = state_.dataset().variables[i];
        EXPECT_NE(dataset.variables[i].id, expected.id);
        expected.id = dataset.variables[i].id;
        expected.warnings = dataset.variables[i].warnings;
        EXPECT_EQ(dataset.variables[i], expected) << expected.name;
    }
    EXPECT_EQ(dataset.importMetadata.sourceKind, ImportSourceKind::unknown);
    EXPECT_EQ(dataset.importMetadata.rowCount, 0);
    EXPECT_EQ(dataset.importMetadata.missingValueMarkers.size(), 17U);
    EXPECT_EQ(next_.scale.reverseCodedItemNames.get(), NameSet{"q2"});
    EXPECT_EQ(next_.scale.unreliableItemNames.get(), NameSet{"q1"});
    EXPECT_EQ(next_.data.transformationLog.get(), state_.data.transformationLog.get());
    EXPECT_EQ(next_.reportItems.get(), state_.reportItems.get());
    EXPECT_EQ(next_.reportRTFData.get(), state_.reportRTFData.get());
    EXPECT_EQ(next_.researcherNotes.get(),
              (std::map<std::string, std::string>{{"overview", "Ask again."}}));
    EXPECT_EQ(next_.selection.get(), StudioScreen::regression);
    EXPECT_FALSE(next_.data.isDatasetEditable.get());

    ASSERT_TRUE(next_.saveProject(folder_ / "again.svp"));
    Json first = json("study.svp");
    const Json again = json("again.svp");
    first["createdAt"] = again["createdAt"];
    first["modifiedAt"] = again["modifiedAt"];
    EXPECT_EQ(first, again);
}

TEST_F(ProjectFiles, WriteTheSettingsAndReadTheirGaps) {
    state_.createBlankDataset("Grid", 2, 1, std::nullopt);
    const std::map<std::string, std::string> expected = {
        {"sv_weight", ""},         {"sv_strata", ""},
        {"sv_cluster", ""},        {"sv_estimand", ""},
        {"sv_active", "0"},        {"screen", "dataPreview"},
        {"dataset_editable", "1"}, {"import_source_kind", "blank"}};
    EXPECT_EQ(state_.projectSettings(), expected);
    ASSERT_TRUE(state_.saveProject(folder_ / "grid.svp"));
    ASSERT_TRUE(next_.openProject(folder_ / "grid.svp"));
    EXPECT_TRUE(next_.data.isDatasetEditable.get());
    EXPECT_EQ(next_.dataset().importMetadata.sourceKind, ImportSourceKind::blank);
    EXPECT_EQ(next_.dataset().importMetadata.worksheetName, "New dataset");

    work(next_);
    for (const char* damaged : {"", "%%%%", "W10=", "WzFd", "WwAA", "W1tbW1tbW1s="}) {
        next_.restoreProjectSettings({{"report_items", damaged},
                                      {"researcher_notes", damaged},
                                      {"report_rtfd", damaged},
                                      {"screen", "no screen"}});
        EXPECT_TRUE(next_.reportItems->empty()) << damaged;
        EXPECT_TRUE(next_.researcherNotes->empty()) << damaged;
        EXPECT_EQ(next_.reportRTFData.get(), std::nullopt) << damaged;
        EXPECT_EQ(next_.selection.get(), StudioScreen::regression);
    }
}

TEST_F(ProjectFiles, FollowTheNamesOfTheirVariables) {
    work(state_);
    ASSERT_TRUE(state_.saveProject(folder_ / "study.svp"));
    Json changed = json("study.svp");
    changed["variableStates"].erase(3);
    changed["variableStates"][0]["name"] = "gone";
    changed["variableStates"][0]["isReverseCoded"] = true;
    changed["variableStates"].push_back(changed["variableStates"][1]);
    changed["variableStates"][3]["label"] = "The second of its name";
    write("study.sorvane", changed);
    ASSERT_TRUE(next_.openProject(folder_ / "study.sorvane"));
    const ImportedDataset& dataset = next_.dataset();
    EXPECT_EQ(dataset.variables[3].assignedType, dataset.variables[3].inferredType);
    EXPECT_EQ(dataset.variables[1].label, "How calm?");
    EXPECT_EQ(next_.scale.reverseCodedItemNames.get(), (NameSet{"gone", "q2"}));
}

TEST_F(ProjectFiles, ThatCannotBeReadOrWrittenChangeNothing) {
    work(state_);
    const ImportedDataset before = state_.dataset();
    write("broken.svp", Json::parse(R"({"headers": [1]})"));
    EXPECT_FALSE(state_.openProject(folder_ / "broken.svp"));
    EXPECT_EQ(state_.projectError.get(),
              "Could not read broken.svp: This is no project, or it is damaged: headers[0] needs a "
              "text.");
    EXPECT_FALSE(state_.openProject(folder_ / "gone.svp"));
    EXPECT_EQ(state_.projectError.get(), "Could not read gone.svp: No such file or directory.");
    EXPECT_FALSE(state_.saveProject(folder_ / "nowhere" / "study.svp"));
    EXPECT_EQ(state_.projectError.get(), "Save failed: No such file or directory.");
    EXPECT_FALSE(state_.saveProject());
    EXPECT_EQ(state_.dataset(), before);
    EXPECT_EQ(state_.reportItems->size(), 1U);
    EXPECT_EQ(state_.currentProjectURL.get(), std::nullopt);
    EXPECT_TRUE(state_.hasUnsavedWork());
    EXPECT_TRUE(state_.recentProjects().empty());
}

TEST_F(ProjectFiles, AreListedWithTheirBookmarks) {
    work(state_);
    for (int i = 0; i < 9; ++i) {
        ASSERT_TRUE(state_.saveProject(folder_ / ("p" + std::to_string(i) + ".svp")));
    }
    ASSERT_TRUE(state_.saveProject(folder_ / "p5.svp"));
    ASSERT_TRUE(state_.openProject(folder_ / "p5.svp"));
    std::filesystem::remove(folder_ / "p8.svp");
    std::vector<std::string> names;
    for (const std::filesystem::path& file : state_.recentProjects()) {
        names.push_back(file.filename());
    }
    EXPECT_EQ(names, (std::vector<std::string>{"p5.svp", "p7.svp", "p6.svp", "p4.svp", "p3.svp",
                                               "p2.svp", "p1.svp"}));
    EXPECT_EQ(state_.defaults().value("sv.recentProjects").size(), 8U);
    const Json bookmarks = state_.defaults().value("sv.recentProjectBookmarks");
    EXPECT_EQ(bookmarks.size(), 8U);
    const std::string path = (folder_ / "p5.svp").string();
    EXPECT_EQ(fromJson<Bytes>(bookmarks.at(path)), bytes(path));
}

TEST_F(ProjectFiles, AreAutosavedInTheBackground) {
    state_.keepAutosaveIn(folder_ / "support");
    state_.autosave();
    state_.finishAutosave();
    EXPECT_FALSE(state_.hasAutosave());
    work(state_);
    for (int i = 0; i < 20; ++i) {
        state_.autosave();
    }
    state_.researcherNotes.set({{"overview", "The last word."}});
    state_.autosave();
    state_.finishAutosave();
    EXPECT_EQ(state_.currentProjectURL.get(), std::nullopt);
    EXPECT_TRUE(state_.hasUnsavedWork());

    next_.keepAutosaveIn(folder_ / "support");
    ASSERT_TRUE(next_.resumeAutosave());
    EXPECT_EQ(next_.projectMessage.get(), "Restored your last session.");
    EXPECT_EQ(next_.currentProjectURL.get(), std::nullopt);
    EXPECT_EQ(next_.researcherNotes->at("overview"), "The last word.");
    EXPECT_TRUE(next_.hasUnsavedWork());
    EXPECT_TRUE(next_.recentProjects().empty());
    next_.discardAutosave();
    EXPECT_FALSE(state_.hasAutosave());
}

TEST_F(ProjectFiles, ThatCannotBeAutosavedAreTriedAgainInSilence) {
    work(state_);
    std::ofstream(folder_ / "support");
    state_.keepAutosaveIn(folder_ / "support");
    const std::optional<std::string> message = state_.projectMessage.get();
    state_.autosave();
    state_.finishAutosave();
    EXPECT_TRUE(state_.hasAutosaveFailed());
    EXPECT_FALSE(state_.hasAutosave());
    EXPECT_EQ(state_.projectError.get(), std::nullopt);
    EXPECT_EQ(state_.projectMessage.get(), message);

    std::filesystem::remove(folder_ / "support");
    state_.autosave();
    state_.finishAutosave();
    EXPECT_FALSE(state_.hasAutosaveFailed());
    EXPECT_TRUE(state_.hasAutosave());
}

TEST_F(ProjectFiles, AreTheLatestWordOfTheStatusLineUntilAnotherIsSaid) {
    work(state_);
    ASSERT_TRUE(state_.saveProject(folder_ / "study.svp"));
    ASSERT_TRUE(state_.saveStatusMessage->has_value());
    EXPECT_TRUE(state_.exportDatasetCSV(folder_ / "table.csv"));
    EXPECT_EQ(state_.saveStatusMessage.get(), std::nullopt) << "it would hide the newer message";
    EXPECT_EQ(state_.projectMessage.get(),
              "Exported dataset to " + (folder_ / "table.csv").string() + ".");
    EXPECT_FALSE(state_.exportDatasetCSV(std::nullopt));
    EXPECT_EQ(state_.projectMessage.get(), "Export cancelled.");
    ASSERT_TRUE(state_.saveProject());
    EXPECT_EQ(state_.saveStatusMessage.get(), "Saved study.svp.");
}

}  // namespace
}  // namespace sorvane
