#include <cmath>

#include <gtest/gtest.h>

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Screens/Multilevel/MultilevelCharts.h"
#include "Tests/Screens/GrowthStudy.h"
#include "Tests/Screens/ReferenceStudy.h"
#include "Tests/Screens/SetupControls.h"
#include "Tests/Support/Closeness.h"

namespace sorvane {
namespace {

using enum StudioScreen;
using test::closeTo;
using Cells = std::vector<std::string>;

std::vector<std::string> chartTitles(const ScreenContent& content) {
    std::vector<std::string> titles;
    for (const Card& card : content.cards) {
        for (const Chart& chart : card.charts) {
            titles.push_back(chart.title);
        }
    }
    return titles;
}

struct ModelCase {
    int line;
    std::string table;
    Settings settings;
    std::string title;
    /// How the finding's sentence begins.
    std::string sentence;
    /// A row of the fixed effects, and its heads.
    Cells heads;
    Cells fixed;
    std::vector<Cells> random;
    /// What the notes of both tables say, among the rest.
    std::string fixedNote;
    std::string randomNote;
    std::vector<std::string> charts;
};

// clang-format off
// The figures are those of lme4, lmerTest and pbkrtest.
const std::vector<ModelCase> modelCases = {
    {__LINE__, "sleepstudy.csv",
     {{"mlOutcome", R"("Reaction")"}, {"mlCluster", R"("Subject")"}, {"mlPredictors", R"(["Days"])"},
      {"mlRandomSlope", R"("Days")"}, {"mlDFMethod", R"("kenwardRoger")"}},
     "Estimates From a Multilevel Model of Reaction",
     "REML estimates from a two-level model of Reaction. Random structure: (1 | cluster) with a "
     "correlated slope, (1 + Days | cluster). The model rests on 180 cases in 18 clusters of "
     "Subject. The effect of Days was statistically significant, B = 10.47, SE = 1.55, 95% CI "
     "[7.21, 13.73], t(17) = 6.77, p < .001. The intraclass correlation was .48 where Days is 0.",
     {"Predictor", "B", "SE", "df", "Kenward–Roger t", "p", "LL", "UL"},
     {"Days", "10.467", "1.546", "17.00", "6.77", "< .001", "7.206", "13.729"},
     {{"Subject (Intercept)", "612.09", "24.74"}, {"Subject (Days)", "35.07", "5.92"},
      {"Residual", "654.94", "25.59"}},
     "n = 180 in 18 clusters of Subject; log likelihood = -871.81, REML criterion = 1743.63. B = "
     "unstandardized coefficient; SE = standard error; CI = confidence interval; LL = lower limit; "
     "UL = upper limit. Estimates use REML; p values and confidence intervals use Kenward–Roger "
     "adjusted SEs",
     "Estimator: REML. ICC = τ₀₀ / (τ₀₀ + σ²). Intercept–slope correlation = .07.",
     {"Fitted lines by cluster", "Cluster intercepts: Subject"}},
    {__LINE__, "sleepstudy.csv",
     {{"mlStructure", R"("growth")"}, {"mlOutcome", R"("Reaction")"}, {"mlCluster", R"("Subject")"},
      {"mlTime", R"("Days")"}, {"mlPredictors", "[]"}, {"mlCorrelateRandom", "false"},
      {"mlDFMethod", R"("satterthwaite")"}},
     "Estimates From a Multilevel Model of Reaction",
     "REML estimates from a growth model of Reaction. Growth convenience: (1 | cluster) + (0 + "
     "Days | cluster). ",
     {"Predictor", "B", "SE", "df", "Satterthwaite t", "p", "LL", "UL"},
     {"Days", "10.467", "1.560", "18.16", "6.71", "< .001", "7.193", "13.742"},
     {{"Subject (Intercept)", "627.57", "25.05"}, {"Subject (Days)", "35.86", "5.99"},
      {"Residual", "653.58", "25.57"}},
     "use a Satterthwaite t reference (lmerTest-style) with coefficient-specific df.",
     "Random intercept and slope are independent (uncorrelated).",
     {"Fitted lines by cluster", "Cluster intercepts: Subject"}},
    {__LINE__, "penicillin.csv",
     {{"mlStructure", R"("crossed")"}, {"mlOutcome", R"("diameter")"}, {"mlCluster", R"("plate")"},
      {"mlCluster2", R"("sample")"}, {"mlPredictors", "[]"}},
     "Estimates From a Multilevel Model of diameter",
     "REML estimates from a cross-classified model of diameter. Random structure: (1 | plate) + (1 "
     "| sample). The model rests on 144 cases in 24 levels of plate and 6 levels of sample.",
     {"Predictor", "B", "SE", "z", "p", "LL", "UL"},
     {"(Intercept)", "22.972", "0.809", "28.41", "< .001", "21.387", "24.557"},
     {{"plate (Intercept)", "0.717", "0.847"}, {"sample (Intercept)", "3.731", "1.932"},
      {"Residual", "0.302", "0.550"}},
     "Estimates use REML; p values use a Wald (normal) approximation. Coefficients describe",
     "A nested ICC is not defined for crossed random intercepts; interpret the two intercept "
     "variances separately.",
     {"Cluster intercepts: plate", "Cluster intercepts: sample"}},
    {__LINE__, "oxide.csv",
     {{"mlStructure", R"("threeLevel")"}, {"mlOutcome", R"("Thickness")"}, {"mlCluster", R"("Lot")"},
      {"mlCluster2", R"("LotWafer")"}, {"mlPredictors", R"(["Source"])"},
      {"mlDFMethod", R"("satterthwaite")"}},
     "Estimates From a Multilevel Model of Thickness",
     "REML estimates from a three-level nested model of Thickness. Random structure: (1 | Lot) + (1 "
     "| Lot:LotWafer). ",
     {"Predictor", "B", "SE", "df", "Satterthwaite t", "p", "LL", "UL"},
     {"Source", "10.083", "8.162", "6.00", "1.24", "0.263", "-9.889", "30.056"},
     {{"Lot (Intercept)", "119.89", "10.95"}, {"Lot:LotWafer (Intercept)", "35.87", "5.99"},
      {"Residual", "12.57", "3.55"}},
     "",
     " Three levels are fitted as crossed random intercepts, the inner groups told apart by the outer "
     "ones. A nested ICC is not defined for crossed random intercepts; interpret the two intercept "
     "variances separately. Shares of the total variance: Lot (Intercept) .71, Lot:LotWafer (Intercept) .21, and "
     "Residual .07.",
     {"Cluster intercepts: Lot", "Cluster intercepts: Lot:LotWafer"}},
    {__LINE__, "sleepstudy.csv",
     {{"mlStructure", R"("autoregressive")"}, {"mlOutcome", R"("Reaction")"},
      {"mlCluster", R"("Subject")"}, {"mlTime", R"("Days")"}, {"mlPredictors", R"(["Days"])"}},
     "Estimates From a Multilevel Model of Reaction",
     "REML estimates from a within-cluster autoregressive model of Reaction. Random structure: (1 | "
     "cluster). The predictor lag(Reaction) is the outcome of the row before within cluster, "
     "ordered by time; random intercept only. The model rests on 162 cases in 18 clusters",
     {"Predictor", "B", "SE", "z", "p", "LL", "UL"}, {}, {}, "", "", {"Cluster intercepts: Subject"}},
    {__LINE__, "cbpp_long.csv",
     {{"mlFamily", R"("binomial")"}, {"mlOutcome", R"("y")"}, {"mlCluster", R"("herd")"},
      {"mlPredictors", R"(["period2","period3","period4"])"}, {"mlDFMethod", R"("kenwardRoger")"}},
     "Estimates From a Multilevel Logistic Model of y",
     "Logistic multilevel two-level model of y. Random structure: (1 | cluster). The model rests on "
     "842 cases in 15 clusters of herd. The effect of period2 was statistically significant, OR = "
     "0.37, 95% CI [0.20, 0.68], z = -3.2",
     {"Predictor", "B", "SE", "z", "p", "OR", "LL", "UL"}, {},
     {{"herd (Intercept)", "0.419", "0.648"}},
     ", AIC = 564.9",
     "Estimator: ML. On the latent scale the ICC, τ₀₀ / (τ₀₀ + π²/3), is .11.",
     {"Cluster intercepts: herd"}},
    {__LINE__, "epil.csv",
     {{"mlFamily", R"("poisson")"}, {"mlOutcome", R"("y")"}, {"mlCluster", R"("subject")"},
      {"mlPredictors", R"(["lbase","trtP"])"}, {"mlRandomSlope", R"("V4")"}},
     "Estimates From a Multilevel Poisson Model of y",
     "Poisson multilevel two-level model of y. Random structure: (1 | cluster) with a correlated "
     "slope, (1 + V4 | cluster). ",
     {"Predictor", "B", "SE", "z", "p", "RR", "LL", "UL"}, {}, {},
     "UL = upper limit. Fit uses Laplace maximum likelihood.", "Intercept–slope correlation = ",
     {"Fitted lines by cluster", "Cluster intercepts: subject"}},
};
// clang-format on

TEST(MultilevelScreen, ShowsAndStagesEveryStructureAndFamily) {
    for (const ModelCase& each : modelCases) {
        SCOPED_TRACE(each.line);
        ReferenceStudy study(each.table);
        const ScreenContent content = study.shown(multilevel, each.settings);
        ASSERT_FALSE(content.gate) << content.gate->text;
        study.stage(content);
        const ReportItem& item = study.state.reportItems->front();
        EXPECT_EQ(item.title, each.title);
        EXPECT_TRUE(item.apaSummary.starts_with(each.sentence)) << item.apaSummary;
        EXPECT_EQ(item.table->headers, each.heads);
        if (!each.fixed.empty()) {
            EXPECT_EQ(item.table->rows.back(), each.fixed);
        }
        EXPECT_NE(item.table->note->find(each.fixedNote), std::string::npos) << *item.table->note;
        ASSERT_EQ(item.extraTables->size(), 1U);
        const ReportTable& random = item.extraTables->front();
        if (!each.random.empty()) {
            EXPECT_EQ(random.rows, each.random);
        }
        EXPECT_NE(random.note->find(each.randomNote), std::string::npos) << *random.note;
        EXPECT_EQ(chartTitles(content), each.charts);
        ASSERT_TRUE(content.findings.front().figure);
        EXPECT_EQ(content.findings.front().figure->title, each.charts.front());
    }
}

class SleepTest : public testing::Test {
protected:
    ScreenContent shown(const Settings& further) {
        Settings all = {{"mlOutcome", R"("Reaction")"},
                        {"mlCluster", R"("Subject")"},
                        {"mlPredictors", R"(["Days"])"},
                        {"mlRandomSlope", R"("Days")"}};
        all.insert(all.end(), further.begin(), further.end());
        return study.shown(multilevel, all);
    }

    ReferenceStudy study{"sleepstudy.csv"};
};

TEST_F(SleepTest, ChartsShowTheClustersOwnLinesAndDepartures) {
    const ScreenContent content = shown({});
    const Chart& lines = cardOf(content, "Fitted lines by cluster")->charts.front();
    const auto& plot = std::get<LinePlot>(lines.plot);
    ASSERT_EQ(plot.series.size(), 2U);
    // By slope: subject 309 rises least. A gap stands behind its line.
    ASSERT_EQ(plot.series[0].x.size(), 18U * 3U);
    EXPECT_EQ(plot.series[0].x[0], 0.0);
    EXPECT_EQ(plot.series[0].x[1], 9.0);
    const auto& last = cardOf(content, "Cluster intercepts: Subject")->charts.front();
    const auto& rows = std::get<IntervalPlot>(last.plot).rows;
    ASSERT_EQ(rows.size(), 18U);
    EXPECT_EQ(rows.front().label, "337");
    EXPECT_NEAR(rows.front().estimate, 34.8905, 1e-3);
    EXPECT_NEAR(rows.front().upper, 34.8905 + 1.959964 * 12.07086, 1e-3);
    EXPECT_EQ(rows.back().label, "309");
    EXPECT_NEAR(rows.back().lower, -40.3987 - 1.959964 * 12.07086, 1e-3);
    EXPECT_TRUE(std::isnan(plot.series[0].y[2]));
    const std::vector<double>& y = plot.series[0].y;
    const bool hasLineOf309 = [&y] {
        for (std::size_t at = 0; at < y.size(); at += 3) {
            if (std::abs(y[at] - 211.0064) < 1e-3) {
                return std::abs(y[at + 1] - (211.0064 + 9.0 * 1.8476)) < 1e-3;
            }
        }
        return false;
    }();
    EXPECT_TRUE(hasLineOf309);
    EXPECT_NEAR(plot.series[1].y.front(), 251.405, 1e-3);
}

TEST_F(SleepTest, AResultStandsUnderItsOwnNamesUntilTheNextRun) {
    const ScreenContent before = shown({{"mlEstimator", R"("ml")"}});
    EXPECT_NE(before.findings.front().item.table->note->find("Estimates use ML; "),
              std::string::npos);
    study.set({{"mlEstimator", R"("reml")"},
               {"mlOutcome", R"("Days")"},
               {"mlPredictors", R"(["Reaction"])"},
               {"mlRandomSlope", R"("")"},
               {"mlDFMethod", R"("satterthwaite")"}});
    ScreenContent after = study.screens.at(multilevel).content();
    ASSERT_EQ(after.findings.size(), 1U);
    EXPECT_EQ(after.findings.front().item.table, before.findings.front().item.table);
    EXPECT_EQ(after.findings.front().item.apaSummary, before.findings.front().item.apaSummary);
    EXPECT_EQ(chartTitles(after), chartTitles(before));
    EXPECT_EQ(study.result(multilevel, "/estimator"), R"("ml")");
}

TEST_F(SleepTest, SaysWhatTheChosenPValuesRestOn) {
    const auto passage = [this](const Settings& settings) -> std::string {
        const ScreenContent content = shown(settings);
        const Card* card = cardOf(content, "Random Effects and Residual Variance");
        const std::string text = card->passages.empty() ? "" : card->passages.front().text;
        EXPECT_TRUE(content.findings.front().item.table->note->ends_with(text));
        return text;
    };
    EXPECT_TRUE(passage({}).starts_with("The normal reference takes the variances as known"));
    EXPECT_EQ(passage({{"mlDFMethod", R"("satterthwaite")"}}), "");
    EXPECT_TRUE(passage({{"mlDFMethod", R"("kenwardRoger")"}, {"mlEstimator", R"("ml")"}})
                    .starts_with("The Kenward–Roger adjustment is made for REML"));
    study.assign({"Days"}, VariableKind::grouping);
    EXPECT_EQ(passage({{"mlStructure", R"("crossed")"},
                       {"mlCluster2", R"("Days")"},
                       {"mlPredictors", "[]"},
                       {"mlRandomSlope", R"("")"},
                       {"mlDFMethod", R"("kenwardRoger")"},
                       {"mlEstimator", R"("ml")"}}),
              "");
}

struct SmallUnitCase {
    int line;
    StudioScreen screen;
    Settings settings;
    /// The cells of the predictor's row.
    Cells row;
    /// A part of the finding's sentence.
    std::string sentence;
};

// clang-format off
const std::vector<SmallUnitCase> smallUnitCases = {
    {__LINE__, multilevel, {{"mlOutcome", R"("score")"}, {"mlPredictors", R"(["income"])"}},
     {"income", "0.000481", "0.000039", "12.20", "< .001", "0.000404", "0.000559"},
     "B = 0.00048, SE = 0.00004, 95% CI [0.00040, 0.00056]"},
    {__LINE__, multilevel,
     {{"mlFamily", R"("poisson")"}, {"mlOutcome", R"("count")"}, {"mlPredictors", R"(["income"])"}},
     {"income", "0.0000590", "0.0000090", "6.56", "< .001", "1.0000590", "1.0000413", "1.0000766"},
     "RR = 1.000059, 95% CI [1.000041, 1.000077]"},
    {__LINE__, multilevel,
     {{"mlFamily", R"("ordinal")"}, {"mlOutcome", R"("level")"}, {"mlPredictors", R"(["income"])"}},
     {"income", "0.000389", "0.000078", "5.00", "< .001", "1.000390", "1.000237", "1.000542"},
     "OR = 1.00039, 95% CI [1.00024, 1.00054]"},
    {__LINE__, inferential,
     {{"cmTest", R"("ancova")"}, {"cmAncovaOutcome", R"("score")"}, {"cmAncovaGroup", R"("g")"},
      {"cmAncovaCovariates", R"(["income"])"}},
     {"income", "0.000458", "0.000041", "11.29", "< .001"}, ""},
};
// clang-format on

TEST(MultilevelScreen, KeepsTheDigitsOfAPredictorInSmallUnits) {
    std::string table = "g,income,score,count,level\n";
    for (int i = 0; i < 48; ++i) {
        const int rise = i * 7 % 12;
        const int noise = i * 5 % 7;
        table += std::string(1, static_cast<char>('a' + i % 6)) + "," +
                 std::to_string(50'000 + 2'500 * rise) + "," +
                 std::to_string(rise + noise + i % 6) + "," + std::to_string((rise + noise) / 2) +
                 "," + std::to_string((rise + noise) / 5) + "\n";
    }
    for (const SmallUnitCase& each : smallUnitCases) {
        SCOPED_TRACE(each.line);
        ReferenceStudy study("sleepstudy.csv");
        study.state.importPastedData(table);
        study.assign({"g"}, VariableKind::grouping);
        study.assign({"income", "score", "count", "level"}, VariableKind::outcome);
        const ReportItem item = study.shown(each.screen, each.settings).findings.at(0).item;
        const ReportTable& effects =
            each.screen == inferential ? item.extraTables->back() : *item.table;
        EXPECT_EQ(effects.rows.back(), each.row);
        EXPECT_NE(item.apaSummary.find(each.sentence), std::string::npos) << item.apaSummary;
    }
}

TEST(MultilevelScreen, KeepsTheDigitsOfVariancesInSmallUnits) {
    std::string table = "g,y\n";
    for (int i = 0; i < 48; ++i) {
        table += std::string(1, static_cast<char>('a' + i % 6)) + "," +
                 NumberText::integer(10 + i * 5 % 7 + 2 * (i % 6)) + "e-7\n";
    }
    ReferenceStudy study("sleepstudy.csv");
    study.state.importPastedData(table);
    study.assign({"g"}, VariableKind::grouping);
    study.assign({"y"}, VariableKind::outcome);
    const ReportItem item =
        study.shown(multilevel, {{"mlOutcome", R"("y")"}, {"mlPredictors", "[]"}})
            .findings.at(0)
            .item;
    EXPECT_EQ(item.extraTables->front().rows,
              (std::vector<Cells>{{"g (Intercept)", "1.5 × 10⁻¹³", "0.00000038"},
                                  {"Residual", "4.6 × 10⁻¹⁴", "0.00000021"}}));
}

TEST(MultilevelScreen, ABoundaryLeavesNothingToDrawAndACleanFitSaysSo) {
    ReferenceStudy batches("dyestuff2.csv");
    batches.assign({"Batch"}, VariableKind::grouping);
    const ScreenContent boundary = batches.shown(
        multilevel,
        {{"mlOutcome", R"("Yield")"}, {"mlCluster", R"("Batch")"}, {"mlPredictors", "[]"}});
    EXPECT_TRUE(chartTitles(boundary).empty());
    EXPECT_FALSE(boundary.findings.front().figure);
    EXPECT_EQ(boundary.tiles[2].value, ".00");
    EXPECT_EQ(cardOf(boundary, "Cautions")->cautions.back(),
              "Cluster intercept variance is near zero (boundary).");

    ReferenceStudy ticks("grouseticks.csv");
    const ScreenContent counts = ticks.shown(multilevel, {{"mlStructure", R"("threeLevel")"},
                                                          {"mlFamily", R"("poisson")"},
                                                          {"mlOutcome", R"("TICKS")"},
                                                          {"mlCluster", R"("LOCATION")"},
                                                          {"mlCluster2", R"("BROOD")"},
                                                          {"mlPredictors", R"(["cH"])"}});
    EXPECT_EQ(chartTitles(counts), (Cells{"Cluster intercepts: LOCATION:BROOD"}));
    EXPECT_EQ(cardOf(counts, "Cautions")->cautions.back(),
              "The variance of LOCATION (Intercept) is near zero (boundary).");

    ReferenceStudy sleep("sleepstudy.csv");
    const ScreenContent clean = sleep.shown(multilevel, {{"mlOutcome", R"("Reaction")"},
                                                         {"mlCluster", R"("Subject")"},
                                                         {"mlPredictors", R"(["Days"])"},
                                                         {"mlDFMethod", R"("satterthwaite")"}});
    EXPECT_EQ(cardOf(clean, "Sample and singularity checks")->evidence.front().title,
              "No sample-size or singularity warnings for this setup.");
    const auto doubtsPValues = [](const ScreenContent& content) {
        return std::ranges::any_of(content.cards, [](const Card& card) {
            return std::ranges::find(card.passages, "About these p values", &Passage::label) !=
                   card.passages.end();
        });
    };
    EXPECT_FALSE(doubtsPValues(clean));
    // 18 clusters are few for the normal distribution, though enough for the model.
    const ScreenContent few = sleep.shown(multilevel, {{"mlDFMethod", R"("wald")"}});
    EXPECT_NE(cardOf(few, "Sample and singularity checks"), nullptr);
    EXPECT_TRUE(doubtsPValues(few));
}

TEST(MultilevelScreen, ClearedPredictorsStayClearedUntilAnotherTableComes) {
    const std::filesystem::path table = SORVANE_SOURCE_DIR "/Tests/Reference/data/epil.csv";
    ReferenceStudy study(table.filename());
    study.screens.appear(multilevel);
    EXPECT_NE(study.value("mlPredictors"), "[]");
    study.set({{"mlPredictors", "[]"}});
    study.screens.appear(multilevel);
    study.expectValues({{"mlPredictors", "[]"}});
    study.state.importData(table);
    study.screens.appear(multilevel);
    EXPECT_NE(study.value("mlPredictors"), "[]");
}

TEST_F(SleepTest, ASlopeIsTakenIntoThePredictorsOrToldToBeDropped) {
    shown({{"mlPredictors", "[]"}});
    study.expectValues({{"mlPredictors", R"(["Days"])"}, {"mlMessage", "null"}});

    Screen& screen = study.screens.at(multilevel);
    const auto warning = [&screen]() -> std::string {
        for (const Control& control : screen.setup().controls) {
            const auto* note = std::get_if<NoteControl>(&control);
            if (note && note->text.find("random slope") != std::string::npos) {
                return note->text;
            }
        }
        return "";
    };
    const std::string start = "Days no longer has a random slope: ";
    const std::vector<std::pair<Settings, std::string>> steps = {
        {{{"mlStructure", R"("crossed")"}},
         start + "choose Nested, and a family other than Ordinal, to have one."},
        {{{"mlStructure", R"("growth")"}, {"mlTime", R"("Days")"}}, ""},
        {{{"mlOutcome", R"("Days")"}}, start + "it has another place in the model."}};
    for (const auto& [settings, text] : steps) {
        study.set({{"mlStructure", R"("nested")"},
                   {"mlPredictors", R"(["Days"])"},
                   {"mlRandomSlope", R"("Days")"}});
        study.set(settings);
        study.screens.appear(multilevel);
        study.screens.appear(multilevel);
        study.expectValues({{"mlRandomSlope", R"("")"}});
        EXPECT_EQ(warning(), text);
    }
    EXPECT_NE(warning(), "");
    study.set({{"mlOutcome", R"("Reaction")"}});
    study.screens.appear(multilevel);
    EXPECT_EQ(warning(), "") << "it is no longer so";

    study.set({{"mlPredictors", R"(["Days"])"}, {"mlRandomSlope", R"("Days")"}});
    for (const Control& control : screen.setup().controls) {
        if (labelOf(control).starts_with("Predictors")) {
            std::get<CheckListControl>(control).setChecked("Days", false);
        }
    }
    EXPECT_EQ(warning(), start +
                             "it is not among the predictors. Choose it under Random slope to "
                             "make it both.");
    // As a script may have it.
    study.set({{"mlRandomSlope", R"("Dayz")"}});
    study.screens.appear(multilevel);
    study.expectValues({{"mlPredictors", "[]"}, {"mlRandomSlope", R"("Dayz")"}});
    EXPECT_TRUE(screen.run()) << "there is no such column";
}

TEST(MultilevelScreen, ShowsTheVarianceOfASlopeInASmallUnit) {
    GrowthStudy growth(20000.0, 20000.0, 0.3, false);
    const ScreenContent content = growth.shown(true);
    const ReportTable& random = content.findings.front().item.extraTables->front();
    EXPECT_EQ(random.rows[1], (Cells{"person (time)", "0.000000000071", "0.000008444814"}));
}

TEST(MultilevelScreen, DrawsTheSameLinesWhereverTheSlopeHasItsZero) {
    const auto lines = [](double first) {
        GrowthStudy growth(first, 1.0, 0.3, false);
        const ScreenContent content = growth.shown(true);
        return std::get<LinePlot>(cardOf(content, "Fitted lines by cluster")->charts.front().plot)
            .series;
    };
    const std::vector<LinePlot::Series> near = lines(0.0);
    for (const double first : {20230101.0, 1.6e9}) {
        SCOPED_TRACE(first);
        const std::vector<LinePlot::Series> far = lines(first);
        ASSERT_EQ(far.size(), near.size());
        for (std::size_t s = 0; s < near.size(); ++s) {
            ASSERT_EQ(far[s].y.size(), near[s].y.size());
            for (std::size_t at = 0; at < near[s].y.size(); ++at) {
                EXPECT_TRUE(closeTo(far[s].y[at], near[s].y[at], {.absolute = 1e-4}));
            }
        }
    }
}

TEST(MultilevelScreen, OfVeryManyClustersSomeAreDrawn) {
    const MultilevelChoice choice{
        .outcome = "y", .cluster = "g", .slope = "x", .predictors = {"x"}};
    MultilevelResult result;
    result.fixedEffects = {{.name = "(Intercept)"}, {.name = "x", .estimate = 1.0}};
    result.varianceComponents = {{.variance = 4.0}, {.variance = 1.0}, {.variance = 1.0}};
    MultilevelCharts::Departures departures{.lines = MultilevelCharts::Lines{}};
    for (int c = 0; c < 1000; ++c) {
        departures.clusters.push_back({.cluster = std::to_string(c),
                                       .n = 2,
                                       .intercept = c - 500.0,
                                       .interceptError = 1.0,
                                       .slope = -c / 1000.0});
        departures.lines->ranges.push_back({.minimum = 0.0, .maximum = c == 0 ? 0.0 : 1.0});
    }
    const std::vector<Chart> charts = MultilevelCharts::of(choice, result, departures);
    ASSERT_EQ(charts.size(), 2U);
    EXPECT_EQ(std::get<LinePlot>(charts[0].plot).series[0].x.size(), 60U * 3U);
    EXPECT_NE(charts[0].subtitle.find("60 of 999 are drawn"), std::string::npos);
    const auto& rows = std::get<IntervalPlot>(charts[1].plot).rows;
    ASSERT_EQ(rows.size(), 200U);
    EXPECT_EQ(rows.front().label, "999");
    EXPECT_EQ(rows.back().label, "0");
}

}  // namespace
}  // namespace sorvane
