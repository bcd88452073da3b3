#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

#include "SorvaneCore/Project/RecordJson.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {
namespace {

class MethodRecord : public testing::Test {
protected:
    MethodRecord() {
        state_.importPastedData(
            "group,q1,q2,q3,score\na,1,2,5,3.5\nb,2,1,4,2.5\na,3,3,3,1.5\n"
            "b,4,5,2,4\na,5,4,1,6\n");
        std::filesystem::create_directory(folder_);
    }
    ~MethodRecord() override { std::filesystem::remove_all(folder_); }

    std::vector<std::string> variablesOn(StudioScreen screen) {
        state_.selection.set(screen);
        return state_.activeVariablesUsed();
    }

    const std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() / Uuid::fresh().text();
    StudioState state_{std::filesystem::path(SORVANE_SOURCE_DIR "/Resources")};
};

using Names = std::vector<std::string>;

TEST_F(MethodRecord, NamesTheVariablesOfThreeScreens) {
    for (const char* item : {"q3", "q1"}) {
        state_.assignVariable(state_.dataset().variable(item)->id, VariableKind::psychometricItem);
    }
    state_.selectedDescriptiveVariableName.set({"q2"});
    state_.selectedDescriptiveGroupName.set({"gone"});
    state_.selectedANOVAOutcomeName.set({"score"});
    state_.selectedANOVAGroupName.set({"group"});
    EXPECT_EQ(variablesOn(StudioScreen::scalesReliability), (Names{"q1", "q3"}));
    EXPECT_EQ(variablesOn(StudioScreen::descriptives), Names{"q2"});
    EXPECT_EQ(variablesOn(StudioScreen::groupPatterns), (Names{"score", "group"}));
    EXPECT_EQ(variablesOn(StudioScreen::regression), Names{});
}

TEST_F(MethodRecord, HoldsTheSettingsAsTexts) {
    state_.selection.set(StudioScreen::descriptives);
    state_.selectedDescriptiveVariableName.set({"q2"});
    state_.selectedANOVAOutcomeName.set({"score"});
    state_.selectedANOVAGroupName.set({"gone"});
    state_.scale.reverseCodedItemNames.set({"q3", "q1"});
    state_.scale.scaleScoreMethod.set(ScaleScoreMethod::sum);
    state_.scale.reliabilityMissingDataRule.set(
        ReliabilityMissingDataRule::excludeIfMissingMoreThanThreshold);
    const MethodFile record = state_.activeMethodFile();
    EXPECT_EQ(record.analysisType, "descriptive statistics");
    EXPECT_EQ(record.missingDataRule, "exclude case if missing more than threshold");
    EXPECT_EQ(record.engineVersion, "Sorvane native 0.1.0");
    const std::map<std::string, std::string> expected = {{"screen", "descriptives"},
                                                         {"scale_score", "sum"},
                                                         {"minimum_item_completion", "0.80"},
                                                         {"reverse_coded_items", "q1, q3"},
                                                         {"transformation_count", "1"},
                                                         {"descriptive_variable", "q2"},
                                                         {"descriptive_group", ""},
                                                         {"anova_outcome", "score"},
                                                         {"anova_group", ""}};
    EXPECT_EQ(record.options, expected);

    MethodFile again = state_.activeMethodFile();
    EXPECT_NE(again.id, record.id);
    again.id = record.id;
    again.timestamp = record.timestamp;
    EXPECT_EQ(again, record);
}

TEST_F(MethodRecord, IsWrittenIntoAFolderUnderItsOwnName) {
    state_.selection.set(StudioScreen::scalesReliability);
    const MethodFile record = state_.activeMethodFile();
    ASSERT_TRUE(state_.saveMethodFile(folder_, record));
    EXPECT_EQ(state_.saveStatusMessage.get(), "Saved " + record.defaultFilename() + ".");
    std::ifstream file(folder_ / record.defaultFilename());
    EXPECT_EQ(fromJson<MethodFile>(Json::parse(file)), record);

    EXPECT_FALSE(state_.saveMethodFile(folder_ / "nowhere" / "a.svmethod"));
    EXPECT_EQ(state_.saveStatusMessage.get(), "Save failed: No such file or directory.");
}

}  // namespace
}  // namespace sorvane
