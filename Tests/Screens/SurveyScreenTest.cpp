#include <algorithm>

#include <gtest/gtest.h>

#include "SorvaneMac/Screens/ScreenFields.h"
#include "SorvaneMac/Screens/Survey/SurveyWeights.h"
#include "Tests/Screens/ReferenceStudy.h"

namespace sorvane {
namespace {

using enum StudioScreen;
using Cells = std::vector<std::string>;

/// One of the public school samples.
class SchoolSample : public ScreenWorkplace {
public:
    explicit SchoolSample(const std::string& table) {
        state.importData(std::filesystem::path(SORVANE_SOURCE_DIR "/Tests/Reference/data") / table);
        EXPECT_FALSE(state.data.importError.get());
        assign({"api00", "enroll", "api_stu", "sch_wide01"}, VariableKind::outcome);
        assign({"stype", "sch_wide"}, VariableKind::grouping);
        set({{"svWeight", R"("pw")"}, {"svVar", R"("api00")"}, {"svFpc", R"("fpc")"}});
    }
    ScreenContent shown(const Settings& settings) {
        set(settings);
        screens.appear(survey);
        const std::optional<std::string> refusal = screens.at(survey).run();
        EXPECT_FALSE(refusal) << *refusal;
        return screens.at(survey).content();
    }
};

// Figures of svymean, svytotal, svyratio and svyby of the package survey 4.1.
struct EstimateCase {
    int line;
    std::string table;
    Settings settings;
    std::string title;
    /// The last row of the main table: label, estimate, SE, limits, df, n.
    Cells all;
    std::string variance;
};

const Settings strata = {{"svStrata", R"("stype")"}};
const std::string jackknife =
    R"(["jk1","jk2","jk3","jk4","jk5","jk6","jk7","jk8","jk9","jk10","jk11","jk12","jk13","jk14",)"
    R"("jk15"])";

// clang-format off
const std::vector<EstimateCase> estimateCases = {
    {__LINE__, "apistrat.csv", strata, "Survey Estimate: mean of api00",
     {"All", "662.29", "9.41", "643.73", "680.84", "197", "200"}, "Taylor linearization"},
    {__LINE__, "apistrat.csv",
     {{"svStrata", R"("stype")"}, {"svEstimand", R"("total")"}, {"svVar", R"("enroll")"}},
     "Survey Estimate: total of enroll",
     {"All", "3687178", "114642", "3461095", "3913260", "197", "200"}, "Taylor linearization"},
    {__LINE__, "apistrat.csv",
     {{"svStrata", R"("stype")"}, {"svEstimand", R"("ratio")"}, {"svVar", R"("api_stu")"},
      {"svDenominator", R"("enroll")"}},
     "Survey Estimate: ratio of api_stu / enroll",
     {"All", "0.837", "0.0078", "0.822", "0.852", "197", "200"}, "Taylor linearization"},
    {__LINE__, "apiclus1.csv",
     {{"svCluster", R"("dnum")"}, {"svEstimand", R"("proportion")"}, {"svVar", R"("sch_wide01")"}},
     "Survey Estimate: proportion of sch_wide01",
     {"All", ".874", ".020", ".831", ".918", "14", "183"}, "Taylor linearization"},
    {__LINE__, "apiclus1.csv", {{"svReplicates", jackknife}, {"svFpc", R"("")"}},
     "Survey Estimate: mean of api00",
     {"All", "644.17", "26.60", "587.12", "701.22", "14", "183"}, "Replicate weights"},
    {__LINE__, "apistrat.csv", {{"svFpc", R"("")"}}, "Survey Estimate: mean of api00",
     {"All", "662.29", "9.59", "643.39", "681.19", "199", "200"}, "Weights only (naive)"},
};
// clang-format on

TEST(SurveyScreen, EstimatesUnderEachKindOfDesign) {
    for (const EstimateCase& each : estimateCases) {
        SCOPED_TRACE(each.line);
        SchoolSample sample(each.table);
        const ScreenContent content = sample.shown(each.settings);
        ASSERT_FALSE(content.gate);
        ASSERT_EQ(content.findings.size(), 1U);
        const ReportItem& item = content.findings.front().item;
        EXPECT_EQ(item.title, each.title);
        Cells row = item.table->rows.back();
        row.pop_back();
        EXPECT_EQ(row, each.all);
        EXPECT_EQ(content.tiles[1].caption, each.variance);
        EXPECT_TRUE(content.findings.front().figure);
        EXPECT_FALSE(item.caution->empty());
        EXPECT_EQ(item.table->headers.size(), item.table->rows.back().size());
    }
}

TEST(SurveyScreen, MeansOfSmallUnitsKeepTheirDigits) {
    ScreenWorkplace place;
    place.state.importPastedData("w,y\n1,0.00012\n1,0.00018\n2,0.00015\n2,0.00021\n");
    place.assign({"w", "y"}, VariableKind::outcome);
    place.set({{"svWeight", R"("w")"}, {"svVar", R"("y")"}});
    EXPECT_FALSE(place.screens.at(survey).run());
    const ScreenContent content = place.screens.at(survey).content();
    const ReportTable& table = *content.findings.front().item.table;
    EXPECT_EQ(table.rows[0][1], "0.00017");
    EXPECT_EQ(table.rows[0][2], "0.000020");
}

TEST(SurveyScreen, LargeFiguresAreAsExactAsTheirErrors) {
    ScreenWorkplace place;
    place.state.importPastedData(
        "w,y,x\n900,0.9999,812500\n900,1.0001,13000\n900,1,99000.5\n900,1,340000\n");
    place.assign({"w", "y", "x"}, VariableKind::outcome);
    const auto row = [&place](const Settings& settings) {
        place.set(settings);
        EXPECT_FALSE(place.screens.at(survey).run());
        const Cells cells =
            place.screens.at(survey).content().findings.front().item.table->rows.back();
        return Cells(cells.begin() + 1, cells.begin() + 3);
    };
    EXPECT_EQ(row({{"svWeight", R"("w")"}, {"svVar", R"("y")"}, {"svEstimand", R"("total")"}}),
              (Cells{"3600.00", "0.15"}));
    EXPECT_EQ(row({{"svVar", R"("x")"}}), (Cells{"1138050450", "645650717"}));
    EXPECT_EQ(row({{"svEstimand", R"("mean")"}}), (Cells{"316125.12", "179347.42"}));
}

TEST(SurveyScreen, SubgroupsStandUnderTheirNamesAndGoIntoTheChart) {
    SchoolSample sample("apistrat.csv");
    const ScreenContent content =
        sample.shown({{"svStrata", R"("stype")"}, {"svGroup", R"("sch_wide")"}});
    const ReportItem& item = content.findings.front().item;
    ASSERT_EQ(item.table->rows.size(), 3U);
    EXPECT_EQ(item.table->headers.front(), "sch_wide");
    EXPECT_EQ(item.table->rows[0][0], "No");
    EXPECT_EQ(item.table->rows[0][1], "593.75");
    EXPECT_EQ(item.table->rows[0][2], "18.62");
    EXPECT_EQ(item.table->rows[1][1], "676.53");
    EXPECT_NE(item.apaSummary.find("By sch_wide, it was No: 593.75 ["), std::string::npos)
        << item.apaSummary;
    const auto& plot = std::get<IntervalPlot>(content.findings.front().figure->plot);
    ASSERT_EQ(plot.rows.size(), 3U);
    EXPECT_EQ(plot.rows[1].label, "Yes");
    EXPECT_NEAR(plot.rows[1].estimate, 676.5304437, 1e-6);

    const ScreenContent ratio = sample.shown({{"svEstimand", R"("ratio")"},
                                              {"svVar", R"("api_stu")"},
                                              {"svDenominator", R"("enroll")"}});
    EXPECT_EQ(ratio.findings.front().item.table->rows[0][1], "0.803");
    EXPECT_EQ(ratio.findings.front().item.table->rows[0][2], "0.022");
    EXPECT_EQ(sample.screens.fields.survey.svResult.get()->groups.size(), 2U);
}

TEST(SurveyScreen, TellsWhatTheDesignChangesAndWhatItLacks) {
    SchoolSample sample("apiclus1.csv");
    const ScreenContent content = sample.shown({{"svCluster", R"("dnum")"}});
    const Card* comparison = cardOf(content, "What the design changes");
    ASSERT_NE(comparison, nullptr);
    const ReportTable& table = comparison->tables.front();
    ASSERT_EQ(table.rows.size(), 3U);
    EXPECT_EQ(table.rows[0][0], "Taylor linearization");
    EXPECT_EQ(table.rows[2][0], "Unweighted");
    EXPECT_EQ(table.rows[2][6], "183");
    EXPECT_TRUE(warns(content, "No strata were supplied"));
    EXPECT_TRUE(warns(content, "Design degrees of freedom is 14"));
    sample.state.addToReport(content.findings.front().item);
    EXPECT_NE(sample.state.reportItems->front().table->note->find("No strata were supplied"),
              std::string::npos);
}

TEST(SurveyScreen, APopulationCorrectionIsMoreThanTheWeights) {
    SchoolSample sample("apiclus1.csv");
    const ScreenContent content = sample.shown({});
    const ReportItem& item = content.findings.front().item;
    EXPECT_NE(item.apaSummary.find("variance from the weights and the finite population"),
              std::string::npos)
        << item.apaSummary;
    const Card* comparison = cardOf(content, "What the design changes");
    ASSERT_NE(comparison, nullptr);
    const ReportTable& table = comparison->tables.front();
    ASSERT_EQ(table.rows.size(), 3U);
    EXPECT_EQ(table.rows[0][0], "Weights and population correction");
    EXPECT_EQ(table.rows[1][0], "Weights only (naive)");
    EXPECT_NE(table.rows[0][2], table.rows[1][2]);
    const ScreenContent model = sample.shown({{"svAnalysis", R"("linear")"},
                                              {"svOutcome", R"("api00")"},
                                              {"svPredictors", R"(["enroll"])"}});
    EXPECT_EQ(cardOf(model, "What the design changes")->tables.front().headers[3],
              "SE by weights alone");
}

TEST(SurveyScreen, TheTableOfTheDesignTellsWhatReplicatesCarry) {
    SchoolSample sample("apiclus1.csv");
    const auto used = [&sample](const Settings& settings) {
        const ScreenContent content = sample.shown(settings);
        std::map<std::string, std::string> result;
        for (const Card& card : content.cards) {
            for (const ReportTable& table : card.tables) {
                if (table.title == "Sampling design") {
                    for (const Cells& row : table.rows) {
                        result[row[0]] = row[1];
                    }
                }
            }
        }
        return result;
    };
    std::map<std::string, std::string> parts = used({{"svReplicates", jackknife}});
    EXPECT_EQ(parts["Strata"], "as in the replicates");
    EXPECT_EQ(parts["PSUs"], "as in the replicates");
    EXPECT_EQ(parts["Finite population correction"], "fpc, not applied to replicates");
    EXPECT_EQ(parts["Variance"], "15 replicate weights, jackknife");
    EXPECT_EQ(used({{"svReplicateScale", R"("0.9")"}})["Variance"],
              "15 replicate weights with scales as given");
    parts = used({{"svReplicates", "[]"}, {"svReplicateScale", R"("")"}});
    EXPECT_EQ(parts["Strata"], "none");
    EXPECT_EQ(parts["PSUs"], "each case (183)");
}

struct ColumnsCase {
    int line;
    std::string table;
    Settings settings;
    std::string caution;
};

// clang-format off
const std::vector<ColumnsCase> columnsCases = {
    {__LINE__, "w,s,y\n1,a,2\n1,a,4\n2,b,6\n2,,8\n", {{"svStrata", R"("s")"}},
     "1 row without a stratum was taken"},
    {__LINE__, "w,s,y\n1,a,2\n1,a,4\n2,b,6\n2,b,8\n", {{"svStrata", R"("s")"}, {"svFpc", R"("w")"}},
     "In 1 stratum/strata the population is said to have fewer PSUs"},
    {__LINE__, "w,s,y\n1,a,2\n1,a,4\n2,b,NA\n2,b,8\n", {}, "1 case of 4 (25.0%) lacks the value"},
    {__LINE__, "w,s,y\n1,a,2\n1,a,4\n2,b,6\n2,,8\n", {{"svGroup", R"("s")"}},
     "1 row without s belongs to no subgroup"},
    {__LINE__, "w,s,y\n1,a,2\n1,a,4\n2,b,6\n2,b,9\n1,c,3\n2,c,7\n",
     {{"svCluster", R"("s")"}, {"svGroup", R"("s")"}},
     "zero says nothing of how sure the estimate is: a, b, and c."},
    {__LINE__, "w,s,y\n1,a,-2\n1,a,2\n2,b,-3\n2,b,4\n", {}, "% of the estimate; it is too unsure"},
    {__LINE__, "w,s,y\n1,a,5\n1,a,5\n2,b,5\n2,b,5\n", {}, "The standard error is zero"},
    {__LINE__, "w,s,y\n2,a,2\n2,a,4\n2,b,6\n2,b,8\n", {{"svStrata", R"("s")"}, {"svFpc", R"("w")"}},
     "or holds all those of the population"},
    {__LINE__, "w,s,y\n2,a,2\n2,a,4\n2,b,6\n2,b,8\n",
     {{"svStrata", R"("s")"}, {"svFpc", R"("w")"}, {"svGroup", R"("s")"}},
     "come from strata of which the sample holds all PSUs."},
    {__LINE__, "w,s,y\n1,a,0\n1,a,0\n2,a,1\n2,b,1\n",
     {{"svEstimand", R"("proportion")"}, {"svGroup", R"("s")"}},
     "No estimate could be made for these subgroups: b."},
    {__LINE__, "w,s,y,r1,r2,r3\n1,a,2,2,1,0\n1,a,4,2,0,1\n2,b,6,0,3,1\n2,b,9,0,1,3\n",
     {{"svReplicates", R"(["r1","r2","r3"])"}, {"svGroup", R"("s")"}},
     "errors, which may be too small: b."},
};
// clang-format on

TEST(SurveyScreen, PointsOutWhatTheColumnsHold) {
    for (const ColumnsCase& each : columnsCases) {
        SCOPED_TRACE(each.line);
        ScreenWorkplace place;
        place.state.importPastedData(each.table);
        place.assign({"w", "y"}, VariableKind::outcome);
        place.assign({"s"}, VariableKind::grouping);
        place.set({{"svWeight", R"("w")"}, {"svVar", R"("y")"}});
        place.set(each.settings);
        EXPECT_FALSE(place.screens.at(survey).run());
        EXPECT_TRUE(warns(place.screens.at(survey).content(), each.caution));
    }
}

TEST(SurveyScreen, RefusesInTheEnginesWords) {
    SchoolSample sample("apistrat.csv");
    const ScreenContent content = sample.shown({{"svEstimand", R"("proportion")"}});
    EXPECT_EQ(content.gate->title, "The estimate could not be made");
    EXPECT_TRUE(content.gate->text.starts_with("A proportion needs a variable coded 0 and 1;"));
    EXPECT_TRUE(content.findings.empty());
    const ScreenContent scales = sample.shown({{"svEstimand", R"("mean")"},
                                               {"svReplicates", R"(["enroll","api99"])"},
                                               {"svReplicateScale", R"("1, 1, 1")"}});
    EXPECT_EQ(scales.gate->text, "Replicate scale count must match the number of replicates.");
}

TEST(SurveyScreen, TheProjectKeepsTheWholeDesign) {
    const Settings design = {{"svFpc", R"("fpc")"},
                             {"svReplicates", R"(["jk1","jk2"])"},
                             {"svReplicateType", R"("fayBRR")"},
                             {"svFayRho", "0.25"},
                             {"svReplicateScale", R"("0.9")"}};
    ScreenWorkplace first;
    EXPECT_FALSE(first.state.projectSettings().contains("sv_fpc")) << "nothing was set";
    first.set(design);
    std::map<std::string, std::string> settings = first.state.projectSettings();
    ScreenWorkplace second;
    second.state.restoreProjectSettings(settings);
    second.expectValues(design);
    settings["sv_fay_rho"] = "{";
    settings["sv_replicates"] = "7";
    settings.erase("sv_fpc");
    second.state.restoreProjectSettings(settings);
    second.expectValues({{"svFayRho", "0.5"}, {"svReplicates", "[]"}, {"svFpc", R"("")"}});
}

TEST(SurveyWeights, AreUsedOnDescriptivesAndSaidOnEveryOtherResult) {
    SchoolSample sample("apistrat.csv");
    sample.set({{"svStrata", R"("stype")"},
                {"selectedDescriptiveVariableName", R"("api00")"},
                {"selectedDescriptiveGroupName", R"("stype")"}});
    EXPECT_EQ(cardOf(sample.screens.content(descriptives), "Weighted descriptives: api00"),
              nullptr);
    sample.set({{"surveyWeightsActive", "true"}});
    const ScreenContent& content = sample.screens.content(descriptives);
    const Card* card = cardOf(content, "Weighted descriptives: api00");
    ASSERT_NE(card, nullptr);
    const ReportTable& table = card->tables.front();
    ASSERT_EQ(table.rows.size(), 5U);
    EXPECT_EQ(Cells(table.rows[0].begin(), table.rows[0].begin() + 3),
              (Cells{"Mean", "662.29", "9.41"}));
    EXPECT_EQ(table.rows[1][0], "Total");
    EXPECT_EQ(table.rows[2][0], "Mean, stype = E");
    EXPECT_TRUE(
        content.findings.front().item.table->note->ends_with("These figures are unweighted."));
    EXPECT_EQ(content.findings.back().item.title, "Weighted Descriptives: api00");

    sample.screens.appear(correlation);
    const ScreenContent& other = sample.screens.content(correlation);
    ASSERT_FALSE(other.findings.empty());
    EXPECT_TRUE(warns(other, std::string(SurveyWeights::unweightedNotice)));
    for (const Finding& finding : other.findings) {
        EXPECT_TRUE(finding.item.table->note->ends_with(SurveyWeights::unweightedNotice));
    }
    sample.set({{"surveyWeightsActive", "false"}});
    EXPECT_FALSE(
        warns(sample.screens.content(correlation), std::string(SurveyWeights::unweightedNotice)));

    sample.set({{"surveyWeightsActive", "true"}, {"svWeight", R"("")"}});
    EXPECT_TRUE(warns(sample.screens.content(descriptives), "Set the sampling weight."));
}

TEST(SurveyWeights, WeightedDescriptivesWarnAsTheEstimatesDo) {
    SchoolSample sample("apiclus1.csv");
    sample.set({{"svCluster", R"("dnum")"},
                {"surveyWeightsActive", "true"},
                {"selectedDescriptiveVariableName", R"("api00")"},
                {"selectedDescriptiveGroupName", R"("stype")"}});
    const ScreenContent& content = sample.screens.content(descriptives);
    EXPECT_TRUE(warns(content, "Fewer than 30 cases stand behind these subgroups"));
    EXPECT_NE(content.findings.back().item.table->note->find("rough: H and M."), std::string::npos)
        << *content.findings.back().item.table->note;
}

}  // namespace
}  // namespace sorvane
