#include <algorithm>

#include <gtest/gtest.h>

#include "SorvaneMac/Report/APAFormat.h"
#include "Tests/Screens/ScreenWorkplace.h"

namespace sorvane {
namespace {

using enum StudioScreen;
using Cells = std::vector<std::string>;

/// A workspace with one of the reference tables, whose named columns have roles of their own.
class ReferenceStudy : public ScreenWorkplace {
public:
    explicit ReferenceStudy(const std::string& table) {
        state.importData(std::filesystem::path(SORVANE_SOURCE_DIR "/Tests/Reference/data") / table);
        EXPECT_FALSE(state.data.importError.get());
    }
    /// Fills the screen, runs it, and gives what it then shows.
    ScreenContent shown(StudioScreen screen, const Settings& settings) {
        screens.appear(screen);
        set(settings);
        const std::optional<std::string> refusal = screens.at(screen).run();
        EXPECT_FALSE(refusal) << *refusal;
        return screens.at(screen).content();
    }
    /// Stages what the screen shows first.
    void stage(const ScreenContent& content) { state.addToReport(content.findings.front().item); }
};

const Card* cardOf(const ScreenContent& content, const std::string& title) {
    const auto found = std::ranges::find(content.cards, title, &Card::title);
    return found == content.cards.end() ? nullptr : &*found;
}

const LinePlot& linesOf(const Card& card) {
    return std::get<LinePlot>(card.charts.at(0).plot);
}

class SurvivalScreenTest : public testing::Test {
protected:
    SurvivalScreenTest() {
        study.assign({"sex", "ph_ecog"}, VariableKind::grouping);
        study.assign({"time", "age"}, VariableKind::outcome);
        study.assign({"dead"}, VariableKind::status);
    }

    ReferenceStudy study{"lung.csv"};
};

TEST_F(SurvivalScreenTest, CurvesByStratumGoIntoTheReport) {
    const ScreenContent content = study.shown(
        survival,
        {{"survTime", R"("time")"}, {"survEvent", R"("dead")"}, {"survGroup", R"("sex")"}});
    EXPECT_EQ(content.tiles[1].value, "165");
    const Card* curves = cardOf(content, "Survival curves");
    ASSERT_NE(curves, nullptr);
    const LinePlot& plot = linesOf(*curves);
    ASSERT_EQ(plot.series.size(), 2U);
    EXPECT_EQ(plot.series[0].x.front(), 0.0);
    EXPECT_EQ(plot.series[0].y.front(), 1.0);
    EXPECT_EQ(plot.series[1].x.back(), 965.0);
    EXPECT_EQ(plot.series[1].strokes.front(), 92.0);
    EXPECT_EQ(content.cards[1].tables.front().headers,
              (Cells{"Stratum", "0", "200", "400", "600", "800", "1000"}));
    EXPECT_EQ(content.cards[1].tables.front().rows[0],
              (Cells{"1", "138", "78", "31", "13", "6", "2"}));
    EXPECT_NE(cardOf(content, "Sample and event checks"), nullptr);

    study.stage(content);
    const ReportItem& item = study.state.reportItems->front();
    EXPECT_EQ(item.title, "Kaplan–Meier Survival: time by sex");
    EXPECT_EQ(item.apaSummary,
              "Kaplan–Meier survival for time, with dead as the event, by sex. sex = 1: 138 cases, "
              "112 events, median survival time 270. sex = 2: 90 cases, 53 events, median survival "
              "time 426.");
    EXPECT_EQ(item.table->title, "Kaplan–Meier Survival by Stratum");
    EXPECT_EQ(item.table->rows[1], (Cells{"2", "90", "53", "37", "426"}));
    ASSERT_EQ(item.extraTables->size(), 3U);
    EXPECT_EQ(item.extraTables->front().rows.back(), (Cells{"183", "86", "1", ".622"}));
    EXPECT_EQ(item.extraTables->front().note, "Showing first 40 of 99.");
    EXPECT_EQ(item.caution, "Nonparametric survival estimate; does not adjust for covariates.");
    EXPECT_TRUE(content.findings.front().figure);
}

TEST_F(SurvivalScreenTest, AHazardRatioIsShownWithItsInterval) {
    const ScreenContent content = study.shown(survival, {{"survMode", R"("cox")"},
                                                         {"survTime", R"("time")"},
                                                         {"survEvent", R"("dead")"},
                                                         {"survPredictors", R"(["age","sex"])"}});
    const ReportItem& item = content.findings.front().item;
    EXPECT_EQ(item.title, "Cox Proportional Hazards Regression");
    EXPECT_EQ(APAFormat::normalize(*item.table).rows[1],
              (Cells{"sex", "-0.513", "0.167", "-3.06", ".002", "0.599", "0.431", "0.832"}));
    EXPECT_TRUE(item.apaSummary.starts_with(
        "Cox proportional hazards model for time, with dead as the event, on age and sex (228 "
        "cases, 165 events). The effect of age was not statistically significant, HR = 1.02, "))
        << item.apaSummary;
    EXPECT_EQ(study.screens.at(survival).result()["events"], Json(165));
}

TEST_F(SurvivalScreenTest, CautionsAndRefusalsAreTheEngines) {
    const Settings allEvents = {
        {"survTime", R"("time")"}, {"survEvent", R"("status")"}, {"survGroup", R"("")"}};
    ScreenContent content = study.shown(survival, allEvents);
    const Card* cautions = cardOf(content, "Cautions");
    ASSERT_NE(cautions, nullptr);
    EXPECT_TRUE(cautions->cautions.front().starts_with("Every case counts as an event"));
    EXPECT_EQ(cardOf(content, "Sample and event checks"), nullptr);
    EXPECT_EQ(content.findings.front().item.table->title, "Kaplan–Meier Estimates of Survival");

    study.state.importPastedData("time,dead,x\n1,0,1\n2,0,2\n3,1,4\n4,0,3\n5,0,1\n");
    study.assign({"time", "x"}, VariableKind::outcome);
    study.assign({"dead"}, VariableKind::status);
    content = study.shown(survival, {{"survMode", R"("cox")"}, {"survPredictors", R"(["x"])"}});
    EXPECT_EQ(content.gate->title, "The Cox model could not be fitted");
    EXPECT_EQ(content.gate->text,
              "Need more complete cases and at least two events for Cox regression.");
    EXPECT_TRUE(content.findings.empty());
}

}  // namespace
}  // namespace sorvane
