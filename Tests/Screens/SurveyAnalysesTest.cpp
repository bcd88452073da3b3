#include <gtest/gtest.h>

#include "SorvaneMac/Report/APAFormat.h"
#include "SorvaneMac/Screens/ScreenFields.h"
#include "Tests/Screens/ReferenceStudy.h"

namespace sorvane {
namespace {

using enum StudioScreen;
using Cells = std::vector<std::string>;

class SurveyAnalysesTest : public testing::Test {
protected:
    SurveyAnalysesTest() {
        study.assign({"api00", "enroll", "ell", "meals"}, VariableKind::outcome);
        study.assign({"stype", "sch_wide"}, VariableKind::grouping);
        study.set({{"svWeight", R"("pw")"}, {"svStrata", R"("stype")"}, {"svFpc", R"("fpc")"}});
    }
    ScreenContent shown(const Settings& settings) { return study.shown(survey, settings); }

    ReferenceStudy study{"apistrat.csv"};
};

const ReportTable* tableOf(const ReportItem& item, const std::string& title) {
    if (item.table->title == title) {
        return &*item.table;
    }
    const auto found = std::ranges::find(*item.extraTables, title, &ReportTable::title);
    return found == item.extraTables->end() ? nullptr : &*found;
}

const std::string languageAndMeals = R"(["ell","meals"])";

// Figures of svyglm, with degf(design) - 2 degrees of freedom, of the package survey 4.1.
struct ModelCase {
    int line;
    Settings settings;
    std::string title;
    /// The heads, and under them the row of the first predictor.
    Cells headers;
    Cells row;
    std::string inSentence;
    std::string field;
};

// clang-format off
const std::vector<ModelCase> modelCases = {
    {__LINE__, {{"svAnalysis", R"("linear")"}, {"svOutcome", R"("api00")"}},
     "Survey Linear Regression: api00", {"Predictor", "B", "SE", "t", "p", "LL", "UL"},
     {"meals", "-3.111", "0.276", "-11.28", "< .001", "-3.654", "-2.567"},
     "F(2, 195) = 205.19, p < .001, R² = .6", "svLinearResult"},
    {__LINE__, {{"svAnalysis", R"("logistic")"}, {"svOutcome", R"("sch_wide")"}},
     "Survey Logistic Regression: sch_wide",
     {"Predictor", "B", "SE", "t", "p", "OR", "LL", "UL"},
     {"meals", "0.0035", "0.0087", "0.41", ".684", "1.0035", "0.9866", "1.0208"},
     "logistic regression of sch_wide (Yes) on meals and ell", "svLogisticResult"},
    {__LINE__, {{"svAnalysis", R"("poisson")"}, {"svOutcome", R"("enroll")"}},
     "Survey Poisson Regression: enroll", {"Predictor", "B", "SE", "t", "p", "RR", "LL", "UL"},
     {"meals", "-0.0017", "0.0022", "-0.77", ".439", "0.9983", "0.9941", "1.0026"},
     "The effect of meals was not statistically significant, RR = 0.998", "svPoissonResult"},
};
// clang-format on

TEST_F(SurveyAnalysesTest, ModelsStandUnderTheirHeadsAndGoIntoTheReport) {
    study.set({{"svPredictors", languageAndMeals}});
    for (const ModelCase& each : modelCases) {
        SCOPED_TRACE(each.line);
        const ScreenContent content = shown(each.settings);
        ASSERT_FALSE(content.gate) << content.gate->text;
        ASSERT_EQ(content.findings.size(), 1U);
        const ReportItem& item = content.findings.front().item;
        EXPECT_EQ(item.title, each.title);
        EXPECT_EQ(item.table->headers, each.headers);
        EXPECT_EQ(APAFormat::normalize(*item.table).rows[1], each.row);
        EXPECT_NE(item.apaSummary.find(each.inSentence), std::string::npos) << item.apaSummary;
        EXPECT_NE(item.table->note->find("195 df"), std::string::npos) << *item.table->note;
        EXPECT_EQ(item.table->note->find("  "), std::string::npos) << *item.table->note;
        EXPECT_FALSE(item.table->note->ends_with(' '));
        EXPECT_NE(item.caution->find("association, not causation"), std::string::npos);
        const auto& plot = std::get<IntervalPlot>(content.findings.front().figure->plot);
        ASSERT_EQ(plot.rows.size(), 2U) << "the intercept is no effect";
        EXPECT_EQ(plot.rows[0].label, "meals");
        EXPECT_NE(study.value(each.field), "null");
        for (const ReportTable& table : *item.extraTables) {
            for (const Cells& row : table.rows) {
                EXPECT_EQ(row.size(), table.headers.size()) << *table.title;
            }
        }
    }
    study.set({{"svAnalysis", R"("linear")"}});
    EXPECT_EQ(study.screens.at(survey).content().findings.front().item.title,
              "Survey Linear Regression: api00")
        << "each stands until its next run";
    EXPECT_EQ(study.result(survey, "/model"), R"("linear")");
}

TEST_F(SurveyAnalysesTest, TheDesignIsComparedWithTheWeightsAloneAndWithNone) {
    const Settings model = {{"svAnalysis", R"("linear")"},
                            {"svOutcome", R"("api00")"},
                            {"svPredictors", languageAndMeals}};
    const ScreenContent content = shown(model);
    const ReportTable* table = tableOf(content.findings.front().item, "What the design changes");
    ASSERT_NE(table, nullptr);
    // svyglm, and lm.
    EXPECT_EQ(Cells(table->rows[0].begin(), table->rows[0].begin() + 3),
              (Cells{"meals", "-3.111", "0.276"}));
    EXPECT_EQ(table->rows[0][5], "-2.864");
    study.set({{"svStrata", R"("")"}, {"svFpc", R"("")"}});
    const ScreenContent plain = shown(model);
    EXPECT_EQ(tableOf(plain.findings.front().item, "What the design changes")->headers.size(), 5U);
}

TEST_F(SurveyAnalysesTest, SmallUnitsKeepTheirDigits) {
    study.assign({"sch_wide01"}, VariableKind::outcome);
    const ScreenContent content = shown({{"svAnalysis", R"("linear")"},
                                         {"svOutcome", R"("sch_wide01")"},
                                         {"svPredictors", R"(["enroll"])"}});
    const ReportItem& item = content.findings.front().item;
    // svyglm of the package survey 4.1.
    EXPECT_EQ(
        APAFormat::normalize(*item.table).rows[1],
        (Cells{"enroll", "-0.000314", "0.000047", "-6.72", "< .001", "-0.000406", "-0.000222"}));
    EXPECT_NE(item.apaSummary.find("B = -0.00031, 95% CI [-0.00041, -0.00022]"), std::string::npos)
        << item.apaSummary;
    const ReportTable* table = tableOf(item, "What the design changes");
    EXPECT_EQ(Cells(table->rows[0].begin(), table->rows[0].begin() + 3),
              (Cells{"enroll", "-0.000314", "0.000047"}));
}

TEST_F(SurveyAnalysesTest, OrderedLevelsHaveThresholds) {
    study.state.importData(SORVANE_SOURCE_DIR "/Tests/Reference/data/apistrat_levels.csv");
    study.assign({"level", "ell", "meals"}, VariableKind::outcome);
    study.assign({"stype"}, VariableKind::grouping);
    const ScreenContent content = shown({{"svWeight", R"("pw")"},
                                         {"svStrata", R"("stype")"},
                                         {"svFpc", R"("fpc")"},
                                         {"svAnalysis", R"("ordinal")"},
                                         {"svOutcome", R"("level")"},
                                         {"svPredictors", languageAndMeals}});
    const ReportItem& item = content.findings.front().item;
    // svyolr of the package survey 4.1, its fit made to converge tightly.
    EXPECT_EQ(Cells(item.table->rows[0].begin(), item.table->rows[0].begin() + 3),
              (Cells{"meals", "-0.0782", "0.0094"}));
    const ReportTable* thresholds = tableOf(item, "Thresholds");
    ASSERT_NE(thresholds, nullptr);
    EXPECT_EQ(thresholds->rows[0], (Cells{"1|2", "-6.268", "0.529", "-7.312", "-5.224"}));
    EXPECT_NE(item.caution->find("the same across every cut point"), std::string::npos);
}

TEST_F(SurveyAnalysesTest, CorrelationsStandInTheRowOfTheLaterVariable) {
    const ScreenContent content =
        shown({{"svAnalysis", R"("correlation")"}, {"svCorrVars", R"(["api00","ell","meals"])"}});
    const ReportItem& item = content.findings.front().item;
    ASSERT_EQ(item.table->rows.size(), 3U);
    // svymean and svyvar of the package survey 4.1; the columns stand in the order of the table.
    EXPECT_EQ(Cells(item.table->rows[0].begin(), item.table->rows[0].begin() + 4),
              (Cells{"1. api00", "662.29", "123.25", "—"}));
    EXPECT_EQ(item.table->rows[1][0], "2. meals");
    EXPECT_EQ(item.table->rows[1][2], "29.50");
    const ReportTable* pairs = tableOf(item, "Correlations under the design");
    ASSERT_NE(pairs, nullptr);
    ASSERT_EQ(pairs->rows.size(), 3U);
    EXPECT_EQ(pairs->rows[2][0], "meals – ell");
    EXPECT_NE(item.apaSummary.find("The strongest is that of api00 and meals."), std::string::npos)
        << item.apaSummary;
    const ScreenContent one =
        shown({{"svAnalysis", R"("correlation")"}, {"svCorrVars", R"(["api00","meals"])"}});
    EXPECT_TRUE(one.findings.front().item.apaSummary.starts_with("In the population"));
}

Cells designCells(const ScreenContent& content) {
    Cells cells;
    for (const Cells& row : tableOf(content.findings.front().item, "Sampling design")->rows) {
        cells.push_back(row[1]);
    }
    return cells;
}

TEST(SurveyAnalyses, TellOfTheDesignAndItsLimitsForTheRowsInUse) {
    ScreenWorkplace place;
    place.state.importPastedData(
        "w,s,u,y,x,z\n1,a,1,1,2,4\n3,a,2,3,3,NA\n2,a,3,2,5,NA\n1,b,4,5,6,1\n2,b,5,4,9,2\n"
        "1,b,6,2,1,3\n2,c,7,3,4,NA\n1,c,8,6,2,NA\n");
    place.assign({"w", "y", "x", "z"}, VariableKind::outcome);
    place.assign({"s", "u"}, VariableKind::grouping);
    place.set({{"svWeight", R"("w")"}, {"svStrata", R"("s")"}, {"svCluster", R"("u")"}});
    const auto shown = [&place](const Settings& settings) {
        place.set(settings);
        EXPECT_FALSE(place.screens.at(survey).run());
        return place.screens.at(survey).content();
    };
    const ScreenContent pairs =
        shown({{"svAnalysis", R"("correlation")"}, {"svCorrVars", R"(["y","x","z"])"}});
    EXPECT_EQ(designCells(pairs), (Cells{"w, sum 5.0 to 13.0", "s (2 to 3 of 3)", "u (4 to 8 of 8)",
                                         "none", "Taylor linearization", "2 to 5", "3.6 to 6.8"}));
    const std::string& note = *pairs.findings.front().item.table->note;
    for (const char* const sentence :
         {"y – z and x – z: 1 stratum/strata contain a single sampled PSU; those strata contribute "
          "no between-PSU variance",
          "Design degrees of freedom is 2 to 5; confidence intervals rely on",
          "from 0 to 4 of them; they are treated as if"}) {
        EXPECT_NE(note.find(sentence), std::string::npos) << note;
    }
    EXPECT_EQ(note.find("Design degrees of freedom is 5"), std::string::npos) << note;

    const ScreenContent model = shown(
        {{"svAnalysis", R"("linear")"}, {"svOutcome", R"("z")"}, {"svPredictors", R"(["x"])"}});
    const Cells ofModel = designCells(model);
    EXPECT_EQ(Cells(ofModel.begin() + 1, ofModel.begin() + 3), (Cells{"s (2 of 3)", "u (4 of 8)"}));
    EXPECT_EQ(ofModel[5], "2");
    // A mean takes the degrees of freedom of the whole design.
    const Cells ofMean = designCells(shown(
        {{"svAnalysis", R"("estimates")"}, {"svEstimand", R"("mean")"}, {"svVar", R"("z")"}}));
    EXPECT_EQ(Cells(ofMean.begin() + 1, ofMean.begin() + 3), (Cells{"s (3)", "u (8)"}));
    EXPECT_EQ(ofMean[5], "5");
}

TEST_F(SurveyAnalysesTest, ATableTellsItsSharesAndTheCorrectedTest) {
    study.state.importData(SORVANE_SOURCE_DIR "/Tests/Reference/data/apiclus1.csv");
    study.assign({"stype", "sch_wide"}, VariableKind::grouping);
    const ScreenContent content = shown({{"svWeight", R"("pw")"},
                                         {"svStrata", R"("")"},
                                         {"svCluster", R"("dnum")"},
                                         {"svFpc", R"("fpc")"},
                                         {"svAnalysis", R"("crosstab")"},
                                         {"svRowCat", R"("stype")"},
                                         {"svColCat", R"("sch_wide")"}});
    const ReportItem& item = content.findings.front().item;
    // svychisq and svyby of the package survey 4.1.
    EXPECT_NE(item.apaSummary.find("F(1.49, 20.92) = 5.19, p = .022"), std::string::npos)
        << item.apaSummary;
    EXPECT_EQ(item.table->headers, (Cells{"stype", "n", "No", "Yes"}));
    EXPECT_EQ(item.table->rows[0], (Cells{"E", "144", "8.3", "91.7"}));
    EXPECT_EQ(item.table->rows[3][0], "All");
    const ReportTable* cells = tableOf(item, "Cells of the table");
    ASSERT_NE(cells, nullptr);
    EXPECT_EQ(Cells(cells->rows[3].begin(), cells->rows[3].begin() + 8),
              (Cells{"H", "Yes", "11", "372", "78.6", "9.1", "59.0", "98.2"}));
    const auto& plot = std::get<GroupedBarPlot>(content.findings.front().figure->plot);
    EXPECT_NEAR(plot.series[1].values[2], 0.68, 1e-9);
}

struct SurveyGateCase {
    int line;
    Settings settings;
    std::string title;
};

// clang-format off
const std::vector<SurveyGateCase> surveyGateCases = {
    {__LINE__, {{"svAnalysis", R"("linear")"}, {"svWeight", R"("")"}}, "Set the sampling weight"},
    {__LINE__, {{"svAnalysis", R"("linear")"}, {"svOutcome", R"("gone")"}},
     "Need a numeric outcome and predictor"},
    {__LINE__, {{"svAnalysis", R"("linear")"}, {"svOutcome", R"("pw")"}},
     "The outcome is a weight of the design"},
    {__LINE__, {{"svAnalysis", R"("linear")"}, {"svOutcome", R"("ell")"},
                {"svPredictors", R"(["ell"])"}}, "No predictors selected"},
    {__LINE__, {{"svAnalysis", R"("linear")"}, {"svPredictors", R"(["pw"])"}},
     "A chosen column is missing"},
    {__LINE__, {{"svAnalysis", R"("logistic")"}, {"svOutcome", R"("api00")"}},
     "Need an outcome with two values"},
    {__LINE__, {{"svAnalysis", R"("ordinal")"}, {"svOutcome", R"("stype")"}},
     "Need an outcome of ordered levels"},
    {__LINE__, {{"svAnalysis", R"("correlation")"}, {"svCorrVars", R"(["ell"])"}},
     "Need two numeric variables"},
    {__LINE__, {{"svAnalysis", R"("crosstab")"}, {"svRowCat", R"("")"}},
     "Need two categorical variables"},
    {__LINE__, {{"svAnalysis", R"("crosstab")"}, {"svRowCat", R"("stype")"},
                {"svColCat", R"("stype")"}}, "Rows and columns are the same column"},
    {__LINE__, {{"svAnalysis", R"("crosstab")"}, {"svRowCat", R"("api00")"}},
     "A chosen column is missing"},
};
// clang-format on

TEST_F(SurveyAnalysesTest, SaysWhatIsMissing) {
    for (const SurveyGateCase& each : surveyGateCases) {
        SCOPED_TRACE(each.line);
        ReferenceStudy other("apistrat.csv");
        other.assign({"api00", "enroll", "ell", "meals", "pw"}, VariableKind::outcome);
        other.assign({"stype", "sch_wide"}, VariableKind::grouping);
        other.set({{"svWeight", R"("pw")"}, {"svStrata", R"("stype")"}});
        other.screens.appear(survey);
        other.set(each.settings);
        EXPECT_TRUE(other.screens.at(survey).run());
        ASSERT_TRUE(other.screens.at(survey).content().gate);
        EXPECT_EQ(other.screens.at(survey).content().gate->title, each.title);
        other.screens.at(survey).setup();
    }
}

struct RefusalCase {
    int line;
    std::string table;
    Settings settings;
    std::string title;
    std::string text;
};

// clang-format off
const std::vector<RefusalCase> refusalCases = {
    {__LINE__, "w,y,x,z\n1,1,2,4\n1,3,3,6\n2,2,5,10\n1,5,6,12\n2,4,9,18\n",
     {{"svAnalysis", R"("linear")"}}, "The model could not be estimated",
     "A predictor does not vary or is a combination of others"},
    {__LINE__, "w,y,x,z\n1,1,2,4\n1,3,3,1\n2,2,5,1\n",
     {{"svAnalysis", R"("linear")"}}, "The model could not be estimated",
     "There are not enough complete rows (3)"},
    {__LINE__, "w,y,x,z\n1,0,1,4\n1,0,2,1\n2,0,3,1\n1,1,7,2\n2,1,8,5\n1,1,9,3\n",
     {{"svAnalysis", R"("logistic")"}}, "The model could not be estimated",
     "The fit did not converge to finite estimates."},
    {__LINE__, "w,y,x,z\n1,7,1,4\n1,7,2,1\n2,7,3,1\n1,7,7,2\n",
     {{"svAnalysis", R"("correlation")"}, {"svCorrVars", R"(["y","x"])"}},
     "The correlations could not be estimated", "One of the variables does not vary"},
    {__LINE__, "w,y,x,z\n1,a,NA,4\n1,a,d,1\n2,b,NA,1\n1,a,c,2\n",
     {{"svAnalysis", R"("crosstab")"}, {"svRowCat", R"("y")"}, {"svColCat", R"("x")"}},
     "The table could not be tested", "Both variables need two or more categories"},
};
// clang-format on

TEST(SurveyAnalyses, RefuseInTheEnginesWords) {
    for (const RefusalCase& each : refusalCases) {
        SCOPED_TRACE(each.line);
        ScreenWorkplace place;
        place.state.importPastedData(each.table);
        place.assign({"w", "z"}, VariableKind::outcome);
        const bool isTable = each.settings.size() == 3;
        place.assign({"y", "x"}, isTable ? VariableKind::grouping : VariableKind::outcome);
        place.set(
            {{"svWeight", R"("w")"}, {"svOutcome", R"("y")"}, {"svPredictors", R"(["x","z"])"}});
        place.set(each.settings);
        const std::optional<std::string> refused = place.screens.at(survey).run();
        EXPECT_FALSE(refused) << *refused;
        const ScreenContent content = place.screens.at(survey).content();
        ASSERT_TRUE(content.gate);
        EXPECT_EQ(content.gate->title, each.title);
        EXPECT_TRUE(content.gate->text.starts_with(each.text)) << content.gate->text;
        EXPECT_TRUE(content.findings.empty());
    }
}

TEST(SurveyAnalyses, TheProjectKeepsWhatIsAnalysed) {
    const Settings chosen = {{"svAnalysis", R"("crosstab")"},  {"svOutcome", R"("y")"},
                             {"svPredictors", R"(["x","z"])"}, {"svCorrVars", R"(["x"])"},
                             {"svRowCat", R"("a")"},           {"svColCat", R"("b")"}};
    ScreenWorkplace first;
    first.set(chosen);
    std::map<std::string, std::string> settings = first.state.projectSettings();
    ScreenWorkplace second;
    second.state.restoreProjectSettings(settings);
    second.expectValues(chosen);
    settings["sv_analysis"] = R"("other")";
    second.state.restoreProjectSettings(settings);
    second.expectValues({{"svAnalysis", R"("estimates")"}});
}

/// A runner whose work never ends.
class WaitingRunner final : public TaskRunner {
public:
    void start(Work, Progress, std::stop_token) override {}
};

TEST(SurveyAnalyses, OnlyTheModelThatRunsIsUnderWay) {
    StudioState state(SORVANE_SOURCE_DIR "/Resources", std::make_unique<WaitingRunner>());
    StudioScreens screens(state);
    state.importData(SORVANE_SOURCE_DIR "/Tests/Reference/data/apistrat.csv");
    for (const std::string_view name : {"api00", "ell"}) {
        state.assignVariable(state.dataset().variable(name)->id, VariableKind::outcome);
    }
    SurveyFields& fields = screens.fields.survey;
    fields.svWeight.set({"pw"});
    fields.models.svOutcome.set({"api00"});
    fields.models.svPredictors.set({"ell"});
    fields.models.svAnalysis.set(SurveyAnalysis::linear);
    EXPECT_FALSE(screens.at(survey).run());
    EXPECT_EQ(screens.at(survey).content().gate->title, "Fitting the model under the design…");
    fields.models.svAnalysis.set(SurveyAnalysis::poisson);
    EXPECT_EQ(screens.at(survey).content().gate->title, "Ready to run");
}

TEST(SurveyAnalyses, RareEventsAndManyTestsAreSaid) {
    ReferenceStudy study("apiclus1.csv");
    study.assign({"api00", "ell", "meals"}, VariableKind::outcome);
    study.assign({"sch_wide"}, VariableKind::grouping);
    study.set({{"svWeight", R"("pw")"}, {"svCluster", R"("dnum")"}});
    ScreenContent content = study.shown(survey, {{"svAnalysis", R"("logistic")"},
                                                 {"svOutcome", R"("sch_wide")"},
                                                 {"svPredictors", R"(["api00","ell","meals"])"}});
    std::string note = *content.findings.front().item.table->note;
    EXPECT_NE(note.find("The rarer outcome has 23 cases for 3 predictor(s)."), std::string::npos)
        << note;
    EXPECT_NE(note.find("The tests have only 11 degree(s) of freedom"), std::string::npos);
    content = study.shown(
        survey, {{"svAnalysis", R"("correlation")"}, {"svCorrVars", R"(["api00","ell","meals"])"}});
    note = *content.findings.front().item.table->note;
    EXPECT_NE(note.find("The 3 tests are not corrected for their number"), std::string::npos);
    EXPECT_EQ(note.find("No strata were supplied"), note.rfind("No strata were supplied"))
        << "once, not for each pair";
}

}  // namespace
}  // namespace sorvane
