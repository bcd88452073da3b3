#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include <gtest/gtest.h>

#include "SorvaneCore/Project/RecordJson.h"
#include "SorvaneMac/Screens/ScreenFields.h"
#include "SorvaneMac/Screens/StudioScreens.h"

namespace sorvane {
namespace {

class AnalysisScreens : public testing::Test {
protected:
    void paste(std::string_view text) { state_.importPastedData(text); }
    Screen& screen(StudioScreen id) {
        screens_.appear(id);
        return screens_.at(id);
    }
    template <typename Wanted>
    static const Wanted& control(const SetupForm& form, std::string_view label) {
        for (const Control& each : form.controls) {
            const auto* found = std::get_if<Wanted>(&each);
            if (found && found->label.starts_with(label)) {
                return *found;
            }
        }
        throw std::out_of_range(std::string(label));
    }

    StudioState state_{std::filesystem::path(SORVANE_SOURCE_DIR "/Resources")};
    StudioScreens screens_{state_};
};

constexpr std::string_view items =
    "q1,q2,q3,score\n1,2,5,1.5\n2,1,4,2.5\n3,3,3,3.5\n4,5,2,4\n5,4,1,6\n3,2,3,NA\n";

TEST_F(AnalysisScreens, StandWithoutADataset) {
    std::ostringstream guide;
    guide << std::ifstream(SORVANE_SOURCE_DIR "/docs/scripts.md").rdbuf();
    for (const StudioScreen id : allStudioScreens()) {
        ASSERT_NO_THROW(screens_.at(id)) << "no screen is added for " << rawValue(id);
        EXPECT_NE(guide.str().find("`" + std::string(rawValue(id)) + "`"), std::string::npos)
            << rawValue(id);
        const ScreenContent content = screen(id).content();
        EXPECT_FALSE(content.title.empty()) << title(id);
        EXPECT_TRUE(content.findings.empty()) << title(id);
        screen(id).setup();
    }
    EXPECT_EQ(screen(StudioScreen::scalesReliability).content().gate->title, "No dataset loaded");
}

TEST_F(AnalysisScreens, ReliabilityReverseCodesBeforeItAnalyses) {
    paste(items);
    Screen& reliability = screen(StudioScreen::scalesReliability);
    const SetupForm form = reliability.setup();
    const auto& list = control<CheckListControl>(form, "ITEMS");
    EXPECT_EQ(list.label, "ITEMS · 3 selected");
    EXPECT_EQ(reliability.content().tiles.front().value.front(), '-');
    list.setSecond("q3", true);
    state_.scale.constructName.set("Calm");
    const ScreenContent content = reliability.content();
    EXPECT_EQ(content.title, "Scales & Reliability");
    EXPECT_EQ(content.tiles[1].value, "6");
    EXPECT_EQ(content.tiles[1].caption, "listwise deletion");
    const ReportItem& item = content.findings.front().item;
    EXPECT_EQ(item.title, "Reliability: Calm");
    EXPECT_TRUE(item.apaSummary.starts_with(
        "A reliability analysis was carried out on the Calm scale (k = 3 items; n = 6). Internal "
        "consistency was excellent, Cronbach's α = .9"));
    EXPECT_EQ(item.table->headers.back(), "α if deleted");

    list.setSecond("q1", true);
    const auto advice = [&] {
        return reliability.content().cards[1].evidence.front().detail;
    };
    EXPECT_TRUE(advice().ends_with("switch Rev off.")) << advice();
    state_.data.dataset.edit([](ImportedDataset& dataset) {
        for (DataVariable& variable : dataset.variables) {
            variable.scaleRange.reset();
        }
    });
    EXPECT_NE(advice().find("Rev has no effect"), std::string::npos) << advice();
    list.setAll({"q1", "q2"}, false);
    EXPECT_EQ(reliability.content().gate->lead, "Pick at least two scale items");
    EXPECT_TRUE(reliability.run().has_value());
}

TEST_F(AnalysisScreens, DescriptivesShowTheVariableAndItsGroups) {
    paste("group,score\na,1\nb,2\na,3\nb,NA\na,4\nb,9\n");
    state_.selectedDescriptiveVariableName.set({"score"});
    Screen& descriptives = screen(StudioScreen::descriptives);
    ScreenContent content = descriptives.content();
    EXPECT_EQ(content.tiles[0].value, "5");
    EXPECT_EQ(content.tiles[6].label, "Missing");
    EXPECT_EQ(content.tiles[6].value, "1");
    EXPECT_EQ(content.cards[0].title, "Histogram");
    EXPECT_EQ(content.findings.front().item.apaSummary,
              "Descriptive statistics for score: M = 3.80, SD = 3.11, N = 5, range 1.00 to 9.00.");

    state_.selectedDescriptiveGroupName.set({"group"});
    content = descriptives.content();
    EXPECT_EQ(content.cards[0].title, "Histogram (all cases)");
    EXPECT_EQ(content.cards[1].title, "Box plot of score by group");
    EXPECT_EQ(std::get<BoxPlot>(content.cards[1].charts.front().plot).boxes.size(), 2U);
}

TEST_F(AnalysisScreens, DescriptivesTellWhoAnswered) {
    paste(
        "score,gender,site\n1,woman,north\n2,woman,south\n3,man,north\n4,NA,north\n5,woman,\n"
        "6,man,south\n7,man,north\n8,woman,south\n");
    Screen& descriptives = screen(StudioScreen::descriptives);
    control<CheckListControl>(descriptives.setup(), "Characteristics").setChecked("gender", true);
    ScreenContent content = descriptives.content();
    const ReportItem& whole = content.findings.at(1).item;
    EXPECT_EQ(whole.apaSummary,
              "The sample comprised 8 respondents. The table shows their characteristics.");
    using Rows = std::vector<std::vector<std::string>>;
    EXPECT_EQ(whole.table->rows, (Rows{{"gender", "", ""},
                                       {"\u2003woman", "4", "57.1"},
                                       {"\u2003man", "3", "42.9"},
                                       {"\u2003Missing", "1", ""}}));
    screens_.fields.descriptives.demoGroup.set({"site"});
    content = descriptives.content();
    const ReportTable& bySite = *content.findings.at(1).item.table;
    EXPECT_EQ(*bySite.groupHeaders,
              (std::vector<ReportGroupHeader>{{"", 1}, {"north", 2}, {"south", 2}, {"Total", 2}}));
    EXPECT_EQ(bySite.rows.at(1),
              (std::vector<std::string>{"\u2003woman", "1", "33.3", "2", "66.7", "4", "57.1"}));
    EXPECT_EQ(bySite.rows.at(3),
              (std::vector<std::string>{"\u2003Missing", "1", "", "0", "", "1", ""}));

    screens_.fields.descriptives.demoGroup.set({"region"});
    content = descriptives.content();
    EXPECT_EQ(content.findings.size(), 1U);
    const Card& respondents = *(content.cards.end() - 2);
    EXPECT_EQ(respondents.title, "Respondents");
    EXPECT_EQ(respondents.tables.size(), 0U);
    EXPECT_EQ(respondents.cautions.front(),
              "The respondents cannot be shown as chosen: region is no longer among the grouping "
              "variables. Choose again in the Setup panel.");
}

TEST_F(AnalysisScreens, CorrelationSeedsAPairAndAMatrix) {
    paste(items);
    Screen& correlation = screen(StudioScreen::correlation);
    EXPECT_EQ(screens_.fields.correlation.corrX->name, "q1");
    EXPECT_EQ(screens_.fields.correlation.corrY->name, "q2");
    const ScreenContent content = correlation.content();
    ASSERT_EQ(content.findings.size(), 2U);
    EXPECT_EQ(content.findings[0].item.apaSummary,
              "A Pearson correlation between q1 and q2 was not statistically significant, r(4) = "
              ".77, p = .074.");
    const ReportTable& matrix = *content.findings[1].item.table;
    EXPECT_EQ(matrix.headers,
              (std::vector<std::string>{"Variable", "M", "SD", "1", "2", "3", "4"}));
    EXPECT_EQ(matrix.rows[1][3], "0.77");
    EXPECT_EQ(matrix.rows[3][3], "0.98**");
    EXPECT_EQ(matrix.rows[1][4], "—");

    screens_.fields.correlation.corrY.set({"q1"});
    EXPECT_EQ(correlation.content().gate->title, "Need two numeric variables");
}

TEST_F(AnalysisScreens, CorrelationNamesAChosenColumnThatIsGone) {
    paste(items);
    Screen& correlation = screen(StudioScreen::correlation);
    CorrelationFields& fields = screens_.fields.correlation;
    const auto expectGone = [&correlation](int line) {
        const std::optional<Gate> gate = correlation.content().gate;
        EXPECT_TRUE(gate && gate->lead == "gone") << line;
        EXPECT_TRUE(correlation.result().is_null()) << line;
    };
    for (Field<VariableName>* field : {&fields.corrX, &fields.corrY, &fields.corrControl}) {
        const VariableName former = field->get();
        field->set({"gone"});
        expectGone(__LINE__);
        field->set(former);
    }
    EXPECT_FALSE(correlation.content().gate);
    fields.corrMatrixVars.edit([](NameSet& names) { names.insert("gone"); });
    expectGone(__LINE__);
    const SetupForm form = correlation.setup();
    EXPECT_EQ(std::get<CheckListControl>(form.controls.back()).items.back().name, "gone");
}

TEST_F(AnalysisScreens, RegressionSaysWhatIsMissingThenRuns) {
    paste(items);
    Screen& regression = screen(StudioScreen::regression);
    RegressionFields& fields = screens_.fields.regression;
    fields.regPredictors.set({});
    EXPECT_EQ(regression.run(),
              "No predictors selected. Pick one or more predictors in the Setup panel.");
    fields.regOutcome.set({"score"});
    fields.regPredictors.set({"q1"});
    EXPECT_EQ(regression.content().gate->title, "Ready to run");
    EXPECT_EQ(regression.run(), std::nullopt);
    const ScreenContent content = regression.content();
    EXPECT_EQ(content.findings.front().item.title, "Linear Regression: score");
    EXPECT_TRUE(content.findings.front().item.apaSummary.starts_with(
        "Linear regression of score on q1. The model was statistically significant, F(1, 3) = "));
    EXPECT_EQ(content.tiles[3].value, "5");

    fields.regModel.set(RegressionModel::poisson);
    EXPECT_EQ(regression.content().gate->title, "Need an outcome of counts");
    fields.regModel.set(RegressionModel::linear);
    fields.regPredictors.set({"q1", "q3"});
    EXPECT_EQ(regression.content().tiles, content.tiles) << "a result stands until the next run";
    EXPECT_EQ(regression.run(), std::nullopt);
    EXPECT_EQ(regression.content().gate->title, "The model could not be estimated");
    fields.regPredictors.set({"q1", "gone"});
    EXPECT_EQ(regression.content().gate->lead, "gone");
    paste(items);
    EXPECT_FALSE(fields.regHasRun.get());
}

TEST_F(AnalysisScreens, KeepContentUntilAFieldChanges) {
    paste(items);
    const ScreenContent& first = screens_.content(StudioScreen::correlation);
    const Uuid id = first.findings.empty() ? Uuid() : first.findings.front().item.id;
    screens_.appear(StudioScreen::correlation);
    const Uuid seeded = screens_.content(StudioScreen::correlation).findings.front().item.id;
    EXPECT_NE(seeded, id);
    EXPECT_EQ(screens_.content(StudioScreen::correlation).findings.front().item.id, seeded);
}

}  // namespace
}  // namespace sorvane
