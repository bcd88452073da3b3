#include <gtest/gtest.h>

#include "Tests/Screens/TwoSiteStudy.h"

namespace sorvane {
namespace {

using enum StudioScreen;
using Cells = std::vector<std::string>;

/// A row of one of an item's tables, of which the main one is the first.
struct RowOfItem {
    std::size_t table;
    std::size_t row;
    Cells cells;
};

/// What "Add to report" stages.
struct ItemCase {
    int line;
    StudioScreen screen;
    Settings settings;
    std::string title;
    std::string caution;
    /// Blank without a figure.
    std::string figureCaption;
    /// How the note of the main table begins, and a warning that it ends with or holds.
    std::string note;
    std::string warning;
    std::size_t tables;
    std::vector<RowOfItem> rows;
};

constexpr auto association = "A group difference is association, not causation.";
constexpr auto categories =
    "Association between categories, not causation. Check expected-cell counts.";
constexpr auto dropped =
    "1 row(s) were dropped by listwise deletion because the outcome or a predictor was missing.";
constexpr auto correlationCaution =
    "Correlation is association, not causation; check for outliers and nonlinearity.";

// clang-format off
const std::vector<ItemCase> itemCases = {
    {__LINE__, inferential,
     {{"cmOutcome", R"("score")"}, {"cmGrouping", R"("site")"}, {"cmConfidence", "90"}},
     "t-test: score by site", association,
     "Mean score of each group with 95% confidence intervals.",
     "M and SD are the group mean and standard deviation; d is Cohen's d. Welch's t-test", "",
     2, {{0, 1, {"south", "5", "3.00", "1.27", "0.57"}},
         {1, 0, {"2.03", "8.92", "0.074", "1.83", "0.17", "3.49", "1.19"}}}},
    {__LINE__, inferential,
     {{"cmTest", R"("pairedTTest")"}, {"cmPairBefore", R"("score")"}, {"cmPairAfter", R"("again")"}},
     "Paired t-test: score and again",
     "A change within cases is not proof of a causal effect without a controlled design.",
     "Means of both measurements with 95% confidence intervals.",
     "M and SD are the mean and standard deviation of each measurement", "",
     2, {{0, 1, {"again", "11", "4.82", "1.76", "0.53"}},
         {1, 0, {"-3.21", "10", "0.009", "-0.82", "-1.39", "-0.25", "-0.97"}}}},
    {__LINE__, inferential,
     {{"cmTest", R"("anova")"}, {"cmOutcome", R"("score")"}, {"cmGrouping", R"("band")"}},
     "Analysis of Variance for score by band", association,
     "Mean score by band with 95% confidence intervals.",
     "η² is eta-squared (Classic one-way ANOVA). * p < .05.", "",
     3, {{0, 1, {"Within Groups", "7.88", "", "8", "0.98", "", ""}},
         {0, 2, {"Welch ANOVA", "", "2", "4.53", "", "8.55", "0.029*"}},
         {0, 4, {"Kruskal-Wallis", "", "2", "", "", "7.36", "0.025*"}},
         {1, 1, {"low", "4", "2.38", "0.85", "0.43", "1.02", "3.73", "1.50", "3.50"}},
         {1, 3, {"Total", "11", "4.00", "1.75", "0.53", "2.83", "5.17", "1.50", "7.00"}},
         {2, 0, {"high", "low", "3.62", "8", "0.003", "0.003**", "3.30"}}}},
    {__LINE__, inferential,
     {{"cmTest", R"("factorial")"}, {"cmOutcome", R"("score")"}, {"cmFactors", R"(["site","passed"])"}},
     "Factorial ANOVA: score by site × passed", association, "Means of score by site and passed.",
     "SS is the Type III sum of squares; η²p is partial eta-squared.",
     "The smallest cell has only 2 cases.",
     2, {{0, 0, {"site", "8.96", "1", "8.96", "2.94", "0.130", "0.296"}},
         {0, 3, {"Error", "21.33", "7", "3.05", "", "", ""}},
         {1, 2, {"south", "yes", "2", "3.00", "2.12"}}}},
    {__LINE__, inferential,
     {{"cmTest", R"("repeatedMeasures")"}, {"rmColumns", R"(["score","again","third"])"}},
     "Repeated-Measures ANOVA: score, again, and third",
     "Within-subjects change is not proof of a causal effect without a controlled design; check "
     "sphericity before interpreting.",
     "Condition means with 95% confidence intervals.",
     "One-way within-subjects ANOVA. Mauchly's W = .311, p = .005.",
     "Use the Greenhouse-Geisser or Huynh-Feldt corrected p value, not the uncorrected one.",
     4, {{1, 0, {"Conditions", "7.09", "2", "3.55", "7.67", "0.003", "0.014", "0.013", "0.434"}},
         {1, 1, {"Error", "9.24", "20", "0.46", "", "", "", "", ""}},
         {2, 0, {"score", "again", "-0.82", "-3.21", "10", "0.009", "0.028"}},
         {2, 2, {"again", "third", "-0.27", "-0.70", "10", "0.500", "1.000"}},
         {3, 2, {"third", "11", "5.09", "1.80"}}}},
    {__LINE__, inferential,
     {{"cmTest", R"("ancova")"}, {"cmAncovaOutcome", R"("score")"}, {"cmAncovaGroup", R"("site")"},
      {"cmAncovaCovariates", R"(["age"])"}},
     "ANCOVA: score by site",
     "Adjusted means assume homogeneity of regression slopes and a correctly specified covariate "
     "set.",
     "Unadjusted and adjusted means of score.",
     "M is the unadjusted mean; M adj is the covariate-adjusted (estimated marginal) mean.",
     "1 row(s) were dropped because the outcome, group, or a covariate was missing.",
     3, {{0, 1, {"south", "5", "3.00", "2.95"}},
         {1, 0, {"site", "1", "8", "4.51", "0.067", "0.360"}},
         {2, 0, {"age", "0.059", "0.048", "1.24", "0.249"}}}},
    {__LINE__, nonparametric, {{"npOutcome", R"("score")"}, {"npGroup", R"("site")"}},
     "Mann-Whitney U: score by site",
     "Compares distributions/ranks, not means; a difference is association, not causation.",
     "Box plots of score in both groups.", "U is the Mann-Whitney statistic", "",
     2, {{1, 0, {"north", "6", "4.75", "3.50", "6.50"}}, {1, 1, {"south", "5", "3.00", "1.75", "4.25"}}}},
    {__LINE__, nonparametric,
     {{"npTest", R"("wilcoxon")"}, {"npBefore", R"("score")"}, {"npAfter", R"("again")"}},
     "Wilcoxon signed-rank: score and again",
     "A within-case rank change is not proof of causation without a controlled design.",
     "Box plots of both measurements.", "W+ is the sum of positive signed ranks", "",
     2, {{1, 0, {"score", "11", "4.00", "2.50", "5.00"}}}},
    {__LINE__, nonparametric,
     {{"npTest", R"("kruskalWallis")"}, {"npOutcome", R"("score")"}, {"npGroup", R"("band")"}},
     "Kruskal-Wallis: score by band",
     "Rank-based group comparison; a difference is association, not causation.",
     "Box plots of score by band.", "H is the Kruskal-Wallis statistic", "",
     3, {{1, 0, {"high", "3", "6.50", "4.50", "7.00"}},
         {2, 0, {"high", "low", "6.75", "2.67", "0.008", "0.023"}},
         {2, 2, {"low", "mid", "-3.88", "-1.66", "0.098", "0.195"}}}},
    {__LINE__, nonparametric,
     {{"npTest", R"("friedman")"}, {"npFriedmanItems", R"(["score","again","third"])"}},
     "Friedman test across score, again, and third", "Rank-based repeated-measures comparison.",
     "Box plots of the conditions.", "Kendall's W is the coefficient of concordance", "",
     2, {{1, 2, {"third", "11", "5.00", "3.50", "6.50"}}}},
    {__LINE__, nonparametric,
     {{"npTest", R"("chiSquare")"}, {"npRowCat", R"("site")"}, {"npColCat", R"("band")"}},
     "Chi-square: site by band", categories, "Shares of band within site.",
     "Cramer's V is the strength of association (0-1).",
     "6 of 6 expected cells are below 5; interpret the chi-square result cautiously.",
     3, {{0, 2, {"Total", "4", "4", "3", "11"}}, {1, 0, {"0.24", "2", "0.885", "0.149"}},
         {2, 1, {"south", "1.8", "1.8", "1.4"}}}},
    {__LINE__, nonparametric, {{"npTest", R"("goodnessOfFit")"}, {"npGoFVar", R"("band")"}},
     "Goodness-of-fit: band", "Tests fit to expected proportions; default expectation is uniform.",
     "Observed and expected counts of band.",
     "Expected counts assume equal proportions across categories.",
     "Total count 11 is small relative to 3 categories; treat the result as exploratory.",
     2, {{0, 2, {"high", "3", "3.7"}}, {1, 0, {"0.18", "2", "0.913"}}}},
    {__LINE__, nonparametric,
     {{"npTest", R"("fisher")"}, {"npRowCat", R"("site")"}, {"npColCat", R"("passed")"}},
     "Fisher exact: site by passed", "Requires a 2x2 table (two binary categoricals).",
     "Shares of passed within site.", "Exact test for a 2x2 table;",
     "The table has only 12 observations.",
     2, {{0, 1, {"south", "2", "4", "6"}}, {1, 0, {"1.000", "0.500", "2.000"}}}},
    {__LINE__, nonparametric,
     {{"npTest", R"("mcnemar")"}, {"npRowCat", R"("passed")"}, {"npColCat", R"("later")"}},
     "McNemar: passed and later",
     "Requires a paired binary outcome measured twice on the same cases.",
     "Shares of the second measurement within the first.",
     "b and c are the discordant pair counts;", "There are only 5 discordant pairs.",
     2, {{0, 1, {"no", "4", "3", "7"}}, {1, 0, {"1", "4", "0.80", "1", "0.371", "0.375"}}}},
    {__LINE__, multivariate, {{"mvGroup", R"("site")"}, {"mvVars", R"(["score","third"])"}},
     "MANOVA: outcomes by site",
     "A multivariate group difference is association, not causation. Follow up with univariate "
     "tests cautiously.",
     "", "Pillai's trace is the most robust to assumption violations;",
     "1 row(s) were dropped because an outcome or the group was missing.",
     1, {{0, 1, {"Wilks' lambda", "0.686", "1.83", "2", "8", "0.221"}},
         {0, 2, {"Hotelling-Lawley trace", "0.458", "1.83", "2", "8", "0.221"}}}},
    {__LINE__, categoricalTests, {{"npRowCat", R"("site")"}, {"npColCat", R"("passed")"}},
     "Table: site by passed", categories, "Shares of passed within site.",
     "", "The table has only 12 observations.",
     3, {{1, 1, {"", "no", "3", "50.0", "42.9", "25.0"}},
         {1, 2, {"south", "yes", "2", "33.3", "40.0", "16.7"}},
         {2, 0, {"Chi-square", "0.34", "1", "0.558", "Cramer's V = .169"}},
         {2, 1, {"Fisher exact", "", "", "1.000", "Odds ratio = 2.00"}}}},
    {__LINE__, relationships, {{"corrX", R"("score")"}, {"corrY", R"("again")"}},
     "Assumptions and evidence: score and again", correlationCaution, "",
     "Of the cases with both values. Applies to the Pearson r.", "",
     1, {{0, 0, {"Normality", "score", "Shapiro-Wilk W", "0.964", "0.817", "Met"}}}},
    {__LINE__, correlation,
     {{"corrX", R"("score")"}, {"corrY", R"("again")"}, {"corrControl", R"("age")"}},
     "Correlation: score and again", correlationCaution,
     "Scatter plot of again by score with the least-squares line.",
     "Pairs with a missing value are left out.", "",
     1, {{0, 1, {"Spearman rho", "0.876", "11", "< .001"}},
         {0, 2, {"Kendall tau-b", "0.748", "11", "0.002"}},
         {0, 3, {"Partial r, controlling age", "0.897", "11", "< .001"}}}},
    {__LINE__, regression, {{"regOutcome", R"("score")"}, {"regPredictors", R"(["again","age"])"}},
     "Linear Regression: score",
     "Regression shows association after adjusting for the predictors, not causation.",
     "Standardized coefficients.", "B is the unstandardized and β the standardized coefficient;",
     dropped,
     2, {{0, 1, {"again", "0.855", "0.149", "0.863", "5.73", "< .001", "0.511", "1.198"}},
         {0, 2, {"age", "0.035", "0.027", "0.198", "1.31", "0.225", "-0.026", "0.096"}},
         {1, 0, {"11", "0.821", ".776", "0.827", "18.30", "2", "8", "0.001"}}}},
    {__LINE__, regression,
     {{"regModel", R"("logistic")"}, {"regOutcome", R"("passed")"}, {"regPredictors", R"(["age"])"}},
     "Logistic Regression: passed",
     "Odds ratios describe association after adjusting for the predictors, not causation, and are "
     "not ratios of probabilities.",
     "Coefficients of the predictors of passed with 95% confidence intervals.",
     "B is the change of the log odds for a step of one;",
     "There are fewer than 10 events per predictor (5 in the rarer outcome class, 1 predictor(s)).",
     2, {{0, 1, {"age", "0.085", "0.068", "1.26", "0.208", "1.089", "0.954", "1.244"}},
         {1, 0, {"12", "5", "-7.22", "14.44", "16.30", ".114", "5"}}}},
    {__LINE__, regression,
     {{"regModel", R"("poisson")"}, {"regOutcome", R"("age")"}, {"regPredictors", R"(["score","third"])"}},
     "Poisson Regression: age",
     "Rate ratios describe association after adjusting for the predictors, not causation.",
     "Coefficients of the predictors of age with 95% confidence intervals.",
     "B is the change of the log rate for a step of one;", dropped,
     2, {{0, 2, {"third", "0.282", "0.081", "3.46", "< .001", "1.325", "1.130", "1.554"}},
         {1, 0, {"11", "-35.32", "10.18", "8", "1.27", "5"}}}},
    {__LINE__, regression,
     {{"regModel", R"("ordinal")"}, {"regOutcome", R"("again")"}, {"regPredictors", R"(["age"])"}},
     "Ordinal Regression: again",
     "Odds ratios describe association after adjusting for the predictors, not causation, and hold "
     "only as far as they are the same at every cut point.",
     "Coefficients of the predictors of again with 95% confidence intervals.",
     "B is the change of the log odds of a higher level for a step of one;",
     "This model assumes proportional odds:",
     2, {{0, 0, {"age", "-0.018", "0.050", "-0.36", "0.720", "0.982"}},
         {1, 8, {"8.5|9", "1.700", "2.193"}}}},
    {__LINE__, descriptives, {{"selectedDescriptiveVariableName", R"("score")"}},
     "Descriptives: score",
     "Valid N is below 30; treat descriptive shape checks as exploratory. 1 values were excluded "
     "as missing.",
     "Histogram of score.", "Descriptive summaries describe this sample only.", "",
     1, {{0, 0, {"score", "11", "4.00", "1.75", "4.00", "1.50", "7.00", "0.36"}}}},
};
// clang-format on

TEST(ReportItems, HoldEverythingThatTheReportPrints) {
    for (const ItemCase& each : itemCases) {
        SCOPED_TRACE(each.line);
        TwoSiteStudy study;
        const ScreenContent content = study.shown(each.screen, each.settings);
        ASSERT_FALSE(content.findings.empty());
        const Finding& finding = content.findings.front();
        const ReportItem& item = finding.item;
        EXPECT_EQ(item.title, each.title);
        EXPECT_EQ(item.caution.value_or(""), each.caution);
        EXPECT_EQ(item.figureCaption.value_or(""), each.figureCaption);
        EXPECT_EQ(finding.figure.has_value(), !each.figureCaption.empty());
        EXPECT_TRUE(item.table->note->starts_with(each.note)) << *item.table->note;
        EXPECT_NE(item.table->note->find(each.warning), std::string::npos) << *item.table->note;
        std::vector<ReportTable> tables = {*item.table};
        if (item.extraTables) {
            tables.insert(tables.end(), item.extraTables->begin(), item.extraTables->end());
        }
        ASSERT_EQ(tables.size(), each.tables);
        for (const ReportTable& table : tables) {
            for (const Cells& row : table.rows) {
                EXPECT_EQ(row.size(), table.headers.size()) << table.title.value_or("");
            }
        }
        for (const RowOfItem& row : each.rows) {
            EXPECT_EQ(tables.at(row.table).rows.at(row.row), row.cells);
        }
    }
}

/// What a screen warns of is on the screen as well as in what it stages.
TEST(ReportItems, WarnOnTheScreenOfWhatTheirNotesSay) {
    for (const ItemCase& each : itemCases) {
        if (each.warning.empty()) {
            continue;
        }
        SCOPED_TRACE(each.line);
        TwoSiteStudy study;
        std::string said;
        for (const Card& card : study.shown(each.screen, each.settings).cards) {
            for (const std::string& caution : card.cautions) {
                said += caution + "\n";
            }
        }
        EXPECT_NE(said.find(each.warning), std::string::npos) << said;
        EXPECT_NE(said.find(each.caution), std::string::npos) << said;
    }
}

}  // namespace
}  // namespace sorvane
