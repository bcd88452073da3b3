#include <algorithm>
#include <filesystem>

#include <gtest/gtest.h>

#include "SorvaneMac/Screens/Coaching.h"
#include "SorvaneMac/Screens/StudioScreens.h"

namespace sorvane {
namespace {

class ProjectPages : public testing::Test {
protected:
    static const Card& card(const ScreenContent& content, std::string_view title) {
        const auto found = std::find_if(content.cards.begin(), content.cards.end(),
                                        [title](const Card& each) { return each.title == title; });
        if (found == content.cards.end()) {
            throw std::out_of_range(std::string(title));
        }
        return *found;
    }
    ScreenContent content(StudioScreen id) const { return screens_.at(id).content(); }
    /// Where the overview leads first.
    StudioScreen next() const {
        return card(content(StudioScreen::overview), "What to do next").links.front().screen;
    }

    StudioState state_{std::filesystem::path(SORVANE_SOURCE_DIR "/Resources")};
    StudioScreens screens_{state_};
};

TEST_F(ProjectPages, OverviewLeadsFromTheRolesToTheReport) {
    state_.importPastedData("town,remark\nBonn,a\nKiel,b\nUlm,c\n");
    for (const DataVariable& each : std::vector(state_.dataset().variables)) {
        state_.assignVariable(each.id, VariableKind::status);
    }
    EXPECT_EQ(next(), StudioScreen::variableTypes);
    EXPECT_EQ(card(content(StudioScreen::overview), "What to do next").links[1].screen,
              StudioScreen::instrumentMap);
    state_.assignVariable(state_.dataset().variable("town")->id, VariableKind::outcome);
    EXPECT_EQ(card(content(StudioScreen::overview), "What to do next").links.back().screen,
              StudioScreen::descriptives);
    for (const char* title : {"First", "Second"}) {
        state_.addToReport({.id = Uuid::fresh(), .title = title, .apaSummary = title});
    }
    EXPECT_EQ(next(), StudioScreen::findings);
    EXPECT_EQ(card(content(StudioScreen::overview), "Staged findings").paragraphs,
              (std::vector<std::string>{"1. First", "2. Second"}));
    state_.assembleReport();
    EXPECT_EQ(card(content(StudioScreen::overview), "What to do next").links.back().screen,
              StudioScreen::export_);
}

TEST_F(ProjectPages, OverviewNamesWhatNeedsALook) {
    state_.importPastedData("a,a,b\n1,2,3\n2,NA,4\n3,NA\n");
    const ScreenContent flawed = content(StudioScreen::overview);
    const Card& look = card(flawed, "Worth a look");
    EXPECT_EQ(look.evidence[0].tone, EvidenceTone::caution);
    EXPECT_EQ(look.evidence[0].title, "2 repairs on import");
    EXPECT_EQ(look.evidence[1].title, "2 columns lack more than a tenth of the cells");
    state_.importPastedData("age,sex,comment\n30,f,good\n31,m,bad\n");
    const ScreenContent clean = content(StudioScreen::overview);
    EXPECT_EQ(card(clean, "Worth a look").evidence[0].tone, EvidenceTone::met);
    EXPECT_EQ(card(clean, "Worth a look").evidence[1].title, "0.0% missing");
    EXPECT_EQ(card(clean, "Remarks on the roles").passages.front(),
              (Passage{"age, sex", "Background variables are not psychometric items by default."}));
}

TEST_F(ProjectPages, AppendixPreviewsTheRecordInItsOrder) {
    state_.resetToSample();
    state_.selection.set(StudioScreen::technicalAppendix);
    state_.scale.reverseCodedItemNames.set({"sr3r", "sa4r"});
    const ScreenContent shown = content(StudioScreen::technicalAppendix);
    const Card& preview = card(shown, "Method file preview");
    EXPECT_EQ(preview.subtitle,
              "Analyses are designed to save method metadata as .svmethod files.");
    std::vector<std::string> labels;
    for (const Fact& row : preview.facts) {
        labels.push_back(row.label);
    }
    EXPECT_EQ(labels,
              (std::vector<std::string>{"analysis_type", "variables_used", "missing_data_rule",
                                        "engine_version", "filename"}));
    EXPECT_EQ(preview.facts[0].text, "project review");
    EXPECT_TRUE(preview.facts[4].text.starts_with("project_review_"));
    EXPECT_EQ(card(shown, "What was done to the table").paragraphs,
              std::vector<std::string>{"1. Loaded bundled sample dataset: SampleEIStudy.csv."});
    EXPECT_EQ(card(shown, "Scale").facts[2].text, "sa4r, sr3r");

    // The page is kept, and its record with it, until something changes that it tells of.
    const Card kept =
        card(screens_.content(StudioScreen::technicalAppendix), "Method file preview");
    state_.saveStatusMessage.set("Saved.");
    EXPECT_EQ(card(screens_.content(StudioScreen::technicalAppendix), "Method file preview"), kept);
    state_.data.transformationLog.set({"Loaded.", "Recoded."});
    EXPECT_NE(card(screens_.content(StudioScreen::technicalAppendix), "Method file preview"), kept);
}

TEST_F(ProjectPages, ExportSaysWhatIsMissing) {
    state_.resetToSample();
    ScreenContent shown = content(StudioScreen::export_);
    EXPECT_EQ(shown.gate->title, "Stage at least one result first.");
    state_.addToReport({.id = Uuid::fresh(), .title = "First", .apaSummary = "One."});
    shown = content(StudioScreen::export_);
    EXPECT_FALSE(shown.gate);
    EXPECT_EQ(shown.cards.front().evidence.front().title, "Nothing is assembled yet");
    state_.assembleReport();
    EXPECT_EQ(content(StudioScreen::export_).cards.front().evidence.front().tone,
              EvidenceTone::met);
}

TEST_F(ProjectPages, GuideAndCoachSpeakOfEveryScreen) {
    const ScreenContent guide = content(StudioScreen::userGuide);
    for (const StudioScreen id : allStudioScreens()) {
        const bool isNamed =
            std::any_of(guide.cards.begin(), guide.cards.end(), [id](const Card& each) {
                return std::any_of(each.facts.begin(), each.facts.end(),
                                   [id](const Fact& line) { return line.label == title(id); });
            });
        EXPECT_TRUE(isNamed) << rawValue(id);
        EXPECT_EQ(coaching(id).size(), 3U) << rawValue(id);
        EXPECT_FALSE(screens_.at(id).guide().answers.empty()) << rawValue(id);
    }
}

}  // namespace
}  // namespace sorvane
