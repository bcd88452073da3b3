#include <algorithm>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Report/APAFormat.h"
#include "SorvaneMac/Screens/ReportDecimals.h"
#include "SorvaneMac/Screens/ResultText.h"
#include "SorvaneMac/Screens/ScreenFields.h"
#include "Tests/Screens/ReferenceStudy.h"

namespace sorvane {
namespace {

using enum StudioScreen;
using Cells = std::vector<std::string>;

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
    EXPECT_EQ(APAFormat::normalize(*item.table).rows[0],
              (Cells{"age", "0.0170", "0.0092", "1.84", ".065", "1.0172", "0.9989", "1.0357"}));
    EXPECT_EQ(APAFormat::normalize(*item.table).rows[1],
              (Cells{"sex", "-0.513", "0.167", "-3.06", ".002", "0.599", "0.431", "0.832"}));
    EXPECT_TRUE(item.apaSummary.starts_with(
        "Cox proportional hazards model for time, with dead as the event, on age and sex (228 "
        "cases, 165 events). The effect of age was not statistically significant, HR = 1.017, "
        "95% CI [0.999, 1.036], "))
        << item.apaSummary;
    EXPECT_EQ(study.result(survival, "/events"), "165");
}

TEST_F(SurvivalScreenTest, TimesWithDecimalsAreCountedExactly) {
    study.state.importPastedData("t,e\n0.2,1\n0.4,1\n0.6,0\n0.6,1\n1.2,1\n1.4,0\n");
    study.assign({"t"}, VariableKind::outcome);
    study.assign({"e"}, VariableKind::status);
    const ScreenContent content =
        study.shown(survival, {{"survTime", R"("t")"}, {"survEvent", R"("e")"}});
    const ReportTable& atRisk = content.cards[1].tables.front();
    EXPECT_EQ(atRisk.headers,
              (Cells{"Stratum", "0", "0.2", "0.4", "0.6", "0.8", "1", "1.2", "1.4"}));
    EXPECT_EQ(atRisk.rows.front(), (Cells{"Overall", "6", "6", "5", "4", "2", "2", "2", "1"}));

    study.state.importPastedData("t,e\n1e-320,1\n2e-320,0\n3e-320,1\n");
    study.assign({"t"}, VariableKind::outcome);
    study.assign({"e"}, VariableKind::status);
    const ScreenContent tiny =
        study.shown(survival, {{"survTime", R"("t")"}, {"survEvent", R"("e")"}});
    EXPECT_EQ(tiny.cards[1].tables.front().headers, (Cells{"Stratum", "0"}));
}

TEST_F(SurvivalScreenTest, TheCutOfALongTableIsSaidBesideTheNote) {
    const ScreenContent content = study.shown(
        survival, {{"survTime", R"("time")"}, {"survEvent", R"("dead")"}, {"survGroup", R"("")"}});
    const std::string cut = "Showing first 40 of 139. Event coding: 0 = censored";
    EXPECT_TRUE(content.findings.front().item.table->note->starts_with(cut));
    EXPECT_TRUE(cardOf(content, "Kaplan–Meier Estimates of Survival")
                    ->tables.front()
                    .note->starts_with(cut));
}

TEST_F(SurvivalScreenTest, HazardRatiosBeyondUseStayReadable) {
    study.state.importPastedData(
        "t,e,x,z\n1,1,9,1\n2,1,8,3\n3,1,7,2\n4,1,6,5\n5,0,1,4\n6,0,2,1\n7,0,1,3\n8,0,2,2\n");
    study.assign({"t", "x", "z"}, VariableKind::outcome);
    study.assign({"e"}, VariableKind::status);
    const ScreenContent content = study.shown(survival, {{"survMode", R"("cox")"},
                                                         {"survTime", R"("t")"},
                                                         {"survEvent", R"("e")"},
                                                         {"survPredictors", R"(["x","z"])"}});
    const ReportItem& item = content.findings.front().item;
    const Cells& row = item.table->rows.front();
    EXPECT_EQ(Cells(row.begin() + 5, row.end()), (Cells{"> 99999", "< 0.001", "> 99999"}));
    EXPECT_NE(item.apaSummary.find("95% CI [< 0.01, > 99999]"), std::string::npos)
        << item.apaSummary;
    const auto& plot = std::get<IntervalPlot>(content.findings.front().figure->plot);
    EXPECT_TRUE(std::isfinite(plot.rows.front().lower) && std::isfinite(plot.rows.front().upper));
}

TEST(Ratios, KeepTwoDecimalsBesideAnErrorWithoutEnd) {
    EXPECT_EQ(ResultText::ratio(5.0, ReportDecimals::of(3e13)), "5.00");
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

    study.state.importPastedData("time,dead\n5,0\n6,0\n8,0\n");
    study.assign({"time"}, VariableKind::outcome);
    study.assign({"dead"}, VariableKind::status);
    content = study.shown(survival, {{"survEvent", R"("dead")"}});
    EXPECT_EQ(content.findings.front().item.table->rows,
              (std::vector<Cells>{{"0", "3", "0", "1.000"}}));
    EXPECT_EQ(cardOf(content, "Cautions")->cautions.front(),
              "No events were observed; the survival curve stays at 1.");

    study.state.importPastedData("time,dead,x\n1,0,1\n2,0,2\n3,1,4\n4,0,3\n5,0,1\n");
    study.assign({"time", "x"}, VariableKind::outcome);
    study.assign({"dead"}, VariableKind::status);
    content = study.shown(survival, {{"survMode", R"("cox")"}, {"survPredictors", R"(["x"])"}});
    EXPECT_EQ(content.gate->title, "The Cox model could not be fitted");
    EXPECT_EQ(content.gate->text,
              "Need more complete cases and at least two events for Cox regression.");
    EXPECT_TRUE(content.findings.empty());
}

class DataReductionTest : public testing::Test {
protected:
    ScreenContent shown(const Settings& settings) {
        Settings all = {{"drItems", R"(["Assault","Murder","Rape","UrbanPop"])"}};
        all.insert(all.end(), settings.begin(), settings.end());
        return arrests.shown(dataReduction, all);
    }

    ReferenceStudy arrests{"usarrests.csv"};
};

struct ReductionCase {
    int line;
    Settings settings;
    std::string title;
    std::string sentence;
    /// A row of the main table, as the reader sees it.
    std::size_t row;
    Cells cells;
    /// The kind of the finding's figure.
    std::size_t plot;
};

// clang-format off
const std::vector<ReductionCase> reductionCases = {
    {__LINE__, {}, "Principal Components Analysis",
     "Principal components analysis of 4 items (50 cases) retained 1 components with eigenvalues "
     "above 1. The first component explained 62.0% of the variance.",
     1, {"2", "0.990", "24.7", "86.8"}, 6},
    {__LINE__, {{"drMethod", R"("efa")"}, {"drFactorCount", "1"}}, "Exploratory Factor Analysis",
     "An exploratory factor analysis (1 factors, varimax rotation) of 4 items (50 cases) explained "
     "54.1% of the variance on the first factor.",
     0, {"Assault", ".96", ".93"}, 6},
    {__LINE__, {{"drMethod", R"("omega")"}}, "McDonald's Omega",
     "McDonald's omega total for the 4 items (50 cases) was .807, with Cronbach's alpha = .332.",
     0, {"Murder", ".774", ".599"}, 3},
    {__LINE__, {{"drMethod", R"("kmeans")"}, {"drK", "4"}}, "K-means Clusters: k = 4",
     "K-means clustering grouped 50 cases into 4 clusters across 4 variables, with a total "
     "within-cluster sum of squares of 75.09.",
     0, {"1", "8", "16.0", "8.32"}, 6},
    {__LINE__, {{"drMethod", R"("hierarchical")"}, {"drK", "4"}, {"drLinkage", R"("complete")"}},
     "Hierarchical clusters: complete linkage, k = 4",
     "Hierarchical agglomerative clustering (complete linkage, 4 variables, cut at k = 4) grouped "
     "50 cases into clusters of 8, 11, 21, and 10.",
     2, {"3", "21", "42.0"}, 8},
};
// clang-format on

TEST_F(DataReductionTest, SaysWhatItFound) {
    for (const ReductionCase& each : reductionCases) {
        SCOPED_TRACE(each.line);
        const ScreenContent content = shown(each.settings);
        ASSERT_EQ(content.findings.size(), 1U);
        const Finding& finding = content.findings.front();
        EXPECT_EQ(finding.item.title, each.title);
        EXPECT_EQ(finding.item.apaSummary, each.sentence);
        EXPECT_EQ(APAFormat::normalize(*finding.item.table).rows.at(each.row), each.cells);
        EXPECT_EQ(finding.figure->plot.index(), each.plot);
        EXPECT_FALSE(finding.item.caution->empty());
        EXPECT_NE(arrests.result(dataReduction), "null");
    }
}

TEST_F(DataReductionTest, LoadingsStandByFactorAndSalientOnesAreBold) {
    ReferenceStudy attitudes("attitude.csv");
    const ScreenContent content = attitudes.shown(
        dataReduction,
        {{"drMethod", R"("efa")"},
         {"drItems",
          R"(["rating","complaints","privileges","learning","raises","critical","advance"])"}});
    EXPECT_EQ(content.cards.front().title, "Varimax-rotated loadings");
    const ReportTable& table = *content.findings.front().item.table;
    EXPECT_EQ(table.title, "Results From a Factor Analysis");
    EXPECT_EQ(table.headers, (Cells{"Item", "F1", "F2", "h2"}));
    EXPECT_EQ(table.rows[0][0], "complaints");
    for (std::size_t row = 0; row < table.rows.size(); ++row) {
        for (const std::size_t column : {1U, 2U}) {
            const double loading = NumberText::parse(table.rows[row][column]).value();
            EXPECT_EQ((*table.boldMask)[row][column], std::abs(loading) >= 0.4) << row;
        }
    }
}

TEST_F(DataReductionTest, ALargeTreeIsDrawnFromItsLastClustersOn) {
    const ScreenContent content = shown({{"drMethod", R"("hierarchical")"}, {"drK", "3"}});
    const auto& tree = std::get<Dendrogram>(content.findings.front().figure->plot);
    EXPECT_EQ(tree.leaves.size(), 40U);
    EXPECT_EQ(tree.merges.size(), 39U);
    EXPECT_EQ(std::ranges::count_if(tree.merges,
                                    [&](const auto& merge) { return merge.height > *tree.cut; }),
              2);
    EXPECT_NE(std::ranges::find(tree.leaves, "2 cases"), tree.leaves.end());
}

TEST_F(DataReductionTest, MoreClustersThanDistinctCasesAreRefused) {
    arrests.state.importPastedData("a,b\n1,1\n1,1\n2,2\n2,2\n1,1\n");
    arrests.assign({"a", "b"}, VariableKind::outcome);
    const ScreenContent content = arrests.shown(
        dataReduction, {{"drMethod", R"("kmeans")"}, {"drItems", R"(["a","b"])"}, {"drK", "3"}});
    EXPECT_EQ(content.gate->title, "Cannot run clustering");
    EXPECT_TRUE(content.findings.empty());
}

TEST_F(DataReductionTest, MeansOfTinyUnitsKeepTheirDigits) {
    arrests.state.importPastedData(
        "dose,age\n0.0011,31\n0.0012,33\n0.0014,32\n0.0041,61\n0.0042,62\n0.0044,64\n");
    arrests.assign({"dose", "age"}, VariableKind::outcome);
    for (const char* method : {R"("kmeans")", R"("hierarchical")"}) {
        const ScreenContent content =
            arrests.shown(dataReduction, {{"drMethod", method},
                                          {"drItems", R"(["dose","age"])"},
                                          {"drK", "2"},
                                          {"drStandardize", "true"}});
        Cells dose = content.findings.at(0).item.extraTables->at(0).rows.at(0);
        std::ranges::sort(dose);
        EXPECT_EQ(dose, (Cells{"0.00123", "0.00423", "dose"})) << method;
    }
    const ScreenContent alone = arrests.shown(dataReduction, {{"drMethod", R"("kmeans")"},
                                                              {"drItems", R"(["dose"])"},
                                                              {"drK", "2"},
                                                              {"drStandardize", "false"}});
    EXPECT_TRUE(alone.findings.at(0).item.apaSummary.ends_with("squares of 0.000000093."))
        << alone.findings.at(0).item.apaSummary;
    const ScreenContent profiles =
        arrests.shown(latentClass, {{"lcItems", R"(["dose","age"])"}, {"lcClassCount", "2"}});
    EXPECT_EQ(profiles.findings.at(0).item.extraTables->at(0).rows.at(0).at(1),
              "0.00123 (0.00012)");
}

TEST_F(DataReductionTest, ScoresThatAreASampleSaySo) {
    std::string table = "a,b\n";
    for (int i = 0; i <= 100000; ++i) {
        table += std::to_string(i % 11) + "," + std::to_string(i % 7) + "\n";
    }
    arrests.state.importPastedData(table);
    arrests.assign({"a", "b"}, VariableKind::psychometricItem);
    const ScreenContent content =
        arrests.shown(dataReduction, {{"drMethod", R"("pca")"}, {"drItems", R"(["a","b"])"}});
    const Card* scores = cardOf(content, "Component scores");
    ASSERT_NE(scores, nullptr);
    EXPECT_EQ(scores->subtitle, "The first two components. One in 2 of the 100001 cases is drawn.");
}

/// Presses a button of a setup form.
void press(Screen& screen, const std::string& label) {
    for (const Control& control : screen.setup().controls) {
        const auto* button = std::get_if<ButtonControl>(&control);
        if (button && button->label == label) {
            ASSERT_TRUE(button->isEnabled);
            button->press();
            return;
        }
    }
    FAIL() << label;
}

TEST(LatentClassScreen, ProfilesAreShownAndStaged) {
    ReferenceStudy eruptions("faithful.csv");
    const ScreenContent content = eruptions.shown(latentClass, {});
    EXPECT_EQ(content.title, "Latent profile analysis");
    const ReportItem& item = content.findings.front().item;
    EXPECT_TRUE(item.apaSummary.starts_with(
        "A latent profile analysis of eruptions and waiting (n = 272) with 2 classes gave a log "
        "likelihood of "))
        << item.apaSummary;
    EXPECT_EQ(APAFormat::normalize(*item.table).rows[0], (Cells{"1", ".357", "97", "35.7"}));
    EXPECT_EQ(item.extraTables->front().rows[0],
              (Cells{"eruptions", "2.04 (0.27)", "4.29 (0.41)"}));
    const auto& plot = std::get<LinePlot>(content.findings.front().figure->plot);
    EXPECT_LT(plot.series[0].y[0], 0.0);
    EXPECT_GT(plot.series[1].y[0], 0.0);
    EXPECT_EQ(item.table->note, "Listwise deletion. Class-specific diagonal variances.");
    eruptions.stage(content);
    EXPECT_EQ(eruptions.state.reportItems->size(), 1U);
}

TEST(LatentClassScreen, TheSweepKeepsARowForEachCountAndMarksTheLowestBIC) {
    ReferenceStudy eruptions("faithful.csv");
    eruptions.screens.appear(latentClass);
    std::vector<double> shares;
    const Subscription observer = eruptions.state.fields.observe([&](const AnyField& field) {
        const std::optional<double> share = eruptions.state.computingProgress.get();
        if (&field == &eruptions.state.computingProgress && share) {
            shares.push_back(*share);
        }
    });
    press(eruptions.screens.at(latentClass), "Compare 2–6 classes");
    EXPECT_EQ(eruptions.state.computingLabel.get(), "Comparing 2–6 classes…");
    EXPECT_TRUE(std::ranges::is_sorted(shares));
    EXPECT_GE(shares.size(), 5U);
    const auto& rows = *eruptions.screens.fields.latentClass.lcSweepRows.get();
    ASSERT_EQ(rows.size(), 5U);
    EXPECT_EQ(rows.front().k, 2);

    const ScreenContent content = eruptions.screens.at(latentClass).content();
    EXPECT_EQ(content.gate->title, "Ready to run");
    ASSERT_EQ(content.findings.size(), 1U);
    const ReportItem& item = content.findings.front().item;
    EXPECT_EQ(item.title, "Latent profile analysis: number of classes");
    double lowest = std::numeric_limits<double>::infinity();
    std::string lowestCount;
    for (const LatentSweepRow& row : rows) {
        if (row.converged && row.bic < lowest) {
            lowest = row.bic;
            lowestCount = std::to_string(row.k);
        }
    }
    const auto star =
        std::ranges::find_if(item.table->rows, [](const Cells& row) { return row.back() == "★"; });
    ASSERT_NE(star, item.table->rows.end());
    EXPECT_EQ(star->front(), lowestCount);

    eruptions.set({{"lcKind", R"("classes")"}, {"lcMode", R"("classAnalysis")"}});
    EXPECT_TRUE(eruptions.screens.at(latentClass).content().findings.empty())
        << "the comparison was of profiles";
}

TEST(LatentClassScreen, ClassesTellTheProbabilitiesOfAnswers) {
    ReferenceStudy tests("lsat7.csv");
    const Settings classes = {{"lcKind", R"("classes")"},
                              {"lcMode", R"("classAnalysis")"},
                              {"lcItems", R"(["Q1","Q2","Q3"])"}};
    const ScreenContent content = tests.shown(latentClass, classes);
    const ReportItem& item = content.findings.front().item;
    EXPECT_EQ(item.title, "Latent class analysis");
    const ReportTable& answers = item.extraTables->front();
    EXPECT_EQ(answers.title, "Response probabilities");
    EXPECT_EQ(answers.headers, (Cells{"Indicator", "Category", "Class 1", "Class 2"}));
    EXPECT_EQ(answers.rows.size(), 6U);
    const auto& plot = std::get<LinePlot>(content.findings.front().figure->plot);
    EXPECT_EQ(plot.categories, (Cells{"Q1 = 1", "Q2 = 1", "Q3 = 1"}));

    tests.state.importPastedData(
        "a,b\n1,NA\n2,1\n1,2\n2,NA\n1,2\n1,1\n2,2\n2,1\n1,1\n2,2\n"
        "1,2\n1,1\n");
    tests.assign({"a", "b"}, VariableKind::psychometricItem);
    const ScreenContent gaps =
        tests.shown(latentClass, {classes[0], classes[1], {"lcItems", R"(["a","b"])"}});
    EXPECT_EQ(gaps.tiles.back().value, "10") << "a marker of a missing value is no category";
}

}  // namespace
}  // namespace sorvane
