#include <algorithm>

#include <gtest/gtest.h>

#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Report/APAFormat.h"
#include "Tests/Screens/TwoSiteStudy.h"

namespace sorvane {
namespace {

using enum StudioScreen;

struct ResultCase {
    int line;
    StudioScreen screen;
    Settings settings;
    std::string sentence;
    /// A row of the finding's main table, as the reader sees it.
    std::size_t row;
    std::vector<std::string> cells;
};

// clang-format off
const std::vector<ResultCase> resultCases = {
    {__LINE__, inferential,
     {{"cmOutcome", R"("score")"}, {"cmGrouping", R"("site")"}},
     "An independent-samples Welch's t-test compared score between north (M = 4.83, SD = "
     "1.72) and south (M = 3.00, SD = 1.27). The difference was not statistically "
     "significant, t(8.92) = 2.03, p = .074, d = 1.19.",
     0, {"north", "6", "4.83", "1.72", "0.70"}},
    {__LINE__, inferential,
     {{"cmOutcome", R"("score")"}, {"cmGrouping", R"("site")"}, {"cmTestType", R"("student")"}, {"cmConfidence", R"(90)"}},
     "An independent-samples Student's t-test compared score between north (M = 4.83, SD "
     "= 1.72) and south (M = 3.00, SD = 1.27). The difference was not statistically "
     "significant, t(9) = 1.97, p = .081, d = 1.19.",
     0, {"north", "6", "4.83", "1.72", "0.70"}},
    {__LINE__, inferential,
     {{"cmTest", R"("pairedTTest")"}, {"cmPairBefore", R"("score")"}, {"cmPairAfter", R"("again")"}},
     "A paired-samples t-test compared score (M = 4.00, SD = 1.75) with again (M = 4.82, "
     "SD = 1.76) of the same cases (n = 11). The mean difference was statistically "
     "significant, t(10) = -3.21, p = .009, d = -0.97.",
     0, {"score", "11", "4.00", "1.75", "0.53"}},
    {__LINE__, inferential,
     {{"cmTest", R"("anova")"}, {"cmOutcome", R"("score")"}, {"cmGrouping", R"("band")"}},
     "A one-way ANOVA (Classic one-way ANOVA) compared score across band. The effect was "
     "statistically significant, F(2, 8) = 11.49, p = .004, η² = .74.",
     0, {"Between Groups", "22.62", "2", "", "11.31", "11.49", "0.004**"}},
    {__LINE__, inferential,
     {{"cmTest", R"("factorial")"}, {"cmOutcome", R"("score")"}, {"cmFactors", R"(["site", "passed"])"}},
     "A site × passed factorial ANOVA of score (N = 11) tested each effect with every "
     "other term in the model. The effect of site was not statistically significant, "
     "F(1, 7) = 2.94, p = .130, η²p = .30. The effect of passed was not statistically "
     "significant, F(1, 7) = 0.00, p = 1.000, η²p = .00. The effect of site × passed was "
     "not statistically significant, F(1, 7) = 0.00, p = 1.000, η²p = .00.",
     2, {"site × passed", "0.00", "1", "0.00", "0.00", "1.000", ".000"}},
    {__LINE__, inferential,
     {{"cmTest", R"("repeatedMeasures")"}, {"rmColumns", R"(["score", "again", "third"])"}},
     "A one-way repeated-measures ANOVA across 3 conditions (N = 11) showed a "
     "statistically significant within-subjects effect, F(1.18, 11.84) = 7.67, p = .014, "
     "η²p = .43, sphericity violated, Greenhouse-Geisser correction applied (epsilon = "
     ".59).",
     0, {".311", "10.50", "2", ".005", "0.592", "0.626", "Violated → use GG"}},
    {__LINE__, inferential,
     {{"cmTest", R"("ancova")"}, {"cmAncovaOutcome", R"("score")"}, {"cmAncovaGroup", R"("site")"}, {"cmAncovaCovariates", R"(["age"])"}},
     "An ANCOVA compared score across site with age held constant (N = 11). The adjusted "
     "group effect was not statistically significant, F(1, 8) = 4.51, p = .067, partial "
     "η² = .36.",
     0, {"north", "6", "4.83", "4.88"}},
    {__LINE__, nonparametric,
     {{"npOutcome", R"("score")"}, {"npGroup", R"("site")"}},
     "A Mann-Whitney U test compared score between north (Mdn = 4.75) and south (Mdn = "
     "3.00). The difference was not statistically significant, U = 5.5, z = 1.74, p = "
     ".082, r = .52.",
     0, {"5.5", "1.74", ".082", ".524", "11"}},
    {__LINE__, nonparametric,
     {{"npTest", R"("wilcoxon")"}, {"npBefore", R"("score")"}, {"npAfter", R"("again")"}},
     "A Wilcoxon signed-rank test compared score (Mdn = 4.00) with again (Mdn = 4.50) of "
     "the same cases. The change was statistically significant, W+ = 59.0, z = 2.31, p = "
     ".021, r = .70.",
     0, {"59.0", "2.31", ".021", ".697", "11"}},
    {__LINE__, nonparametric,
     {{"npTest", R"("kruskalWallis")"}, {"npOutcome", R"("score")"}, {"npGroup", R"("band")"}},
     "A Kruskal-Wallis test compared score across band. The difference was statistically "
     "significant, H(2) = 7.36, p = .025, ε² = .67.",
     0, {"7.36", "2", ".025", "0.670"}},
    {__LINE__, nonparametric,
     {{"npTest", R"("friedman")"}, {"npFriedmanItems", R"(["score", "again", "third"])"}},
     "A Friedman test compared score, again, and third in 11 cases. The difference was "
     "statistically significant, χ²(2) = 10.14, p = .006, W = .46.",
     0, {"10.14", "2", ".006", ".461", "11"}},
    {__LINE__, nonparametric,
     {{"npTest", R"("chiSquare")"}, {"npRowCat", R"("site")"}, {"npColCat", R"("band")"}},
     "A chi-square test of independence examined site and band. The association was not "
     "statistically significant, χ²(2, N = 11) = 0.24, p = .885, V = .15.",
     0, {"north", "2", "2", "2", "6"}},
    {__LINE__, nonparametric,
     {{"npTest", R"("goodnessOfFit")"}, {"npGoFVar", R"("band")"}},
     "A chi-square goodness-of-fit test compared observed counts of band with equal "
     "proportions. The departure was not statistically significant, χ²(2) = 0.18, p = "
     ".913.",
     0, {"low", "4", "3.7"}},
    {__LINE__, nonparametric,
     {{"npTest", R"("fisher")"}, {"npRowCat", R"("site")"}, {"npColCat", R"("passed")"}},
     "A Fisher exact test of a 2x2 table for site and passed was not statistically "
     "significant, p = 1.000 (two-sided), odds ratio = 2.00.",
     0, {"north", "3", "3", "6"}},
    {__LINE__, nonparametric,
     {{"npTest", R"("mcnemar")"}, {"npRowCat", R"("passed")"}, {"npColCat", R"("later")"}},
     "A McNemar test of paired change between passed and later was not statistically "
     "significant, exact p = .375 (b = 1, c = 4).",
     0, {"yes", "4", "1", "5"}},
    {__LINE__, multivariate,
     {{"mvGroup", R"("site")"}, {"mvVars", R"(["score", "third"])"}},
     "A one-way MANOVA tested 2 outcomes across site (2 groups, N = 11). Wilks' lambda = "
     ".686, F(2, 8) = 1.83, p = .221; Pillai's trace = .314, F(2, 8) = 1.83, p = .221.",
     0, {"Pillai's trace", "0.314", "1.83", "2", "8", ".221"}},
    {__LINE__, groupPatterns,
     {{"selectedANOVAOutcomeName", R"("score")"}, {"selectedANOVAGroupName", R"("site")"}},
     "A one-way ANOVA (Classic one-way ANOVA) compared score across site. The effect was "
     "not statistically significant, F(1, 9) = 3.87, p = .081, η² = .30.",
     0, {"Between Groups", "9.17", "1", "", "9.17", "3.87", "0.081"}},
    {__LINE__, categoricalTests,
     {{"npRowCat", R"("band")"}, {"npColCat", R"("later")"}},
     "The table of band by later holds 11 cases. The association was not statistically "
     "significant, χ²(2) = 0.08, p = .963, V = .08.",
     0, {"low", "3", "1", "4"}},
};
// clang-format on

TEST(GroupScreens, SayWhatTheyFound) {
    for (const ResultCase& each : resultCases) {
        SCOPED_TRACE(each.line);
        TwoSiteStudy study;
        const ScreenContent content = study.shown(each.screen, each.settings);
        ASSERT_EQ(content.findings.size(), 1U);
        const ReportItem& item = content.findings.front().item;
        EXPECT_EQ(item.apaSummary, each.sentence);
        EXPECT_EQ(APAFormat::normalize(*item.table).rows.at(each.row), each.cells);
        EXPECT_FALSE(item.caution->empty());
        EXPECT_NE(study.result(each.screen), "null");
    }
}

/// The table with its scores in thousandths, as text.
std::string inThousandths(const ImportedDataset& dataset) {
    constexpr std::size_t firstScore = 4;
    constexpr std::size_t lastScore = 6;
    std::string text = "site,band,passed,later,score,again,third,age\n";
    for (std::size_t row = 0; row < static_cast<std::size_t>(dataset.rowCount()); ++row) {
        for (std::size_t column = 0; column < dataset.headers.size(); ++column) {
            std::string cell(dataset.rows.column(column)[row]);
            if (column >= firstScore && column <= lastScore && cell != "NA") {
                cell = NumberText::shortest(*numericCell(cell) / 1000.0);
            }
            text += (column == 0 ? "" : ",") + cell;
        }
        text += '\n';
    }
    return text;
}

/// Whether one row of a table of the item begins with the cells.
bool holdsRow(const ReportItem& item, const std::vector<std::string>& cells) {
    std::vector<ReportTable> tables = item.extraTables.value_or(std::vector<ReportTable>());
    tables.push_back(*item.table);
    return std::ranges::any_of(tables, [&cells](const ReportTable& table) {
        const auto begins = [&cells](const std::vector<std::string>& row) {
            return row.size() >= cells.size() &&
                   std::equal(cells.begin(), cells.end(), row.begin());
        };
        return std::ranges::count_if(APAFormat::normalize(table).rows, begins) == 1;
    });
}

TEST(GroupScreens, KeepTheDigitsOfSmallUnits) {
    const struct {
        int line;
        StudioScreen screen;
        Settings settings;
        /// Of the last finding.
        std::string sentence;
        std::vector<std::string> row;
    } cases[] = {
        // clang-format off
        {__LINE__, descriptives, {},
         "M = 0.0040, SD = 0.0017, N = 11, range 0.0015 to 0.0070.",
         {"score", "11", "0.0040", "0.0017", "0.0040", "0.0015", "0.0070", "0.36"}},
        {__LINE__, inferential, {{"cmOutcome", R"("score")"}, {"cmGrouping", R"("site")"}},
         "north (M = 0.0048, SD = 0.0017)",
         {"north", "6", "0.0048", "0.0017", "0.00070"}},
        {__LINE__, inferential, {{"cmTest", R"("pairedTTest")"}, {"cmPairBefore", R"("score")"}, {"cmPairAfter", R"("again")"}},
         "again (M = 0.0048, SD = 0.0018)",
         {"-3.21", "10", ".009", "-0.00082", "-0.00139", "-0.00025", "-0.97"}},
        {__LINE__, inferential, {{"cmTest", R"("anova")"}, {"cmOutcome", R"("score")"}, {"cmGrouping", R"("band")"}},
         "",
         {"Between Groups", "0.00002263", "2", "", "0.00001131", "11.49", "0.004**"}},
        {__LINE__, inferential, {{"cmTest", R"("anova")"}, {"cmOutcome", R"("score")"}, {"cmGrouping", R"("band")"}},
         "",
         {"high", "3", "0.0060", "0.0013", "0.00076", "0.00271", "0.00929", "0.0045", "0.0070"}},
        {__LINE__, inferential, {{"cmTest", R"("factorial")"}, {"cmOutcome", R"("score")"}, {"cmFactors", R"(["site", "passed"])"}},
         "",
         {"site", "0.0000090", "1", "0.0000090", "2.94", ".130", ".296"}},
        {__LINE__, inferential, {{"cmTest", R"("repeatedMeasures")"}, {"rmColumns", R"(["score", "again", "third"])"}},
         "",
         {"Error", "0.00000924", "20", "0.00000046", "", "", "", "", ""}},
        {__LINE__, inferential, {{"cmTest", R"("ancova")"}, {"cmAncovaOutcome", R"("score")"}, {"cmAncovaGroup", R"("site")"}, {"cmAncovaCovariates", R"(["age"])"}},
         "",
         {"north", "6", "0.0048", "0.0049"}},
        {__LINE__, nonparametric, {{"npOutcome", R"("score")"}, {"npGroup", R"("site")"}},
         "north (Mdn = 0.0047) and south (Mdn = 0.0030)",
         {"north", "6", "0.0047", "0.0035", "0.0065"}},
        {__LINE__, correlation, {}, "", {"1. score", "0.0040", "0.0017", "—", "", "", ""}},
        // clang-format on
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.line);
        TwoSiteStudy study;
        study.state.importPastedData(inThousandths(study.state.dataset()));
        study.assign({"score", "again", "third", "age"}, VariableKind::outcome);
        study.assign({"site", "band", "passed", "later"}, VariableKind::grouping);
        const ScreenContent content = study.shown(each.screen, each.settings);
        ASSERT_FALSE(content.findings.empty());
        const ReportItem& item = content.findings.back().item;
        EXPECT_NE(item.apaSummary.find(each.sentence), std::string::npos) << item.apaSummary;
        EXPECT_TRUE(holdsRow(item, each.row));
    }
}

/// Six cases a dose, of responses about .0004, .004 and .4; `tiny` is about a hundred-thousandth, of
/// the same shape, and `huge` its inverse.
std::string doseStudy() {
    const double shape[] = {0.8, 0.9, 1.0, 1.1, 1.25, 1.0};
    const char* age[] = {"21", "34", "28", "45", "39", "50"};
    const struct {
        const char* dose;
        double response;
        double tiny;
    } groups[] = {{"control", 0.0004, 1.0e-5}, {"low", 0.004, 1.2e-5}, {"high", 0.4, 1.1e-5}};
    std::string text = "dose,response,tiny,huge,age\n";
    for (const auto& group : groups) {
        for (std::size_t i = 0; i < std::size(shape); ++i) {
            text += group.dose;
            for (const double value : {group.response * shape[i], group.tiny * shape[i],
                                       1e3 / (group.tiny * shape[i])}) {
                text += "," + NumberText::shortest(value);
            }
            text += std::string(",") + age[i] + "\n";
        }
    }
    return text;
}

TEST(GroupScreens, GiveEachGroupTheDigitsOfItsOwnSize) {
    const struct {
        int line;
        StudioScreen screen;
        Settings settings;
        std::vector<std::string> row;
    } cases[] = {
        // clang-format off
        {__LINE__, inferential, {{"cmTest", R"("anova")"}, {"cmOutcome", R"("response")"}, {"cmGrouping", R"("dose")"}},
         {"control", "6", "0.000403", "0.000063", "0.000026", "0.000338", "0.000469", "0.000320", "0.000500"}},
        {__LINE__, inferential, {{"cmTest", R"("anova")"}, {"cmOutcome", R"("response")"}, {"cmGrouping", R"("dose")"}},
         {"control", "low", "-0.003630", "5.10"}},
        {__LINE__, groupPatterns, {{"selectedANOVAOutcomeName", R"("response")"}, {"selectedANOVAGroupName", R"("dose")"}},
         {"high", "6", "0.403", "0.063", "0.026", "0.338", "0.469", "0.320", "0.500"}},
        {__LINE__, inferential, {{"cmTest", R"("ancova")"}, {"cmAncovaOutcome", R"("response")"}, {"cmAncovaGroup", R"("dose")"}, {"cmAncovaCovariates", R"(["age"])"}},
         {"control", "6", "0.000403", "0.000403"}},
        {__LINE__, inferential, {{"cmTest", R"("repeatedMeasures")"}, {"rmColumns", R"(["response", "tiny", "age"])"}},
         {"response", "tiny", "0.1359122", "2.92"}},
        {__LINE__, dataReduction, {{"drMethod", R"("kmeans")"}, {"drItems", R"(["response", "tiny"])"}, {"drK", "2"}, {"drStandardize", "false"}},
         {"response", "0.0022", "0.403"}},
        // Squares of small and of large units.
        {__LINE__, inferential, {{"cmTest", R"("anova")"}, {"cmOutcome", R"("tiny")"}, {"cmGrouping", R"("dose")"}},
         {"Within Groups", "4.46 × 10⁻¹¹", "", "15", "3.0 × 10⁻¹²"}},
        {__LINE__, inferential, {{"cmTest", R"("anova")"}, {"cmOutcome", R"("huge")"}, {"cmGrouping", R"("dose")"}},
         {"Within Groups", "3.083 × 10¹⁵", "", "15", "2.06 × 10¹⁴"}},
        {__LINE__, inferential, {{"cmTest", R"("repeatedMeasures")"}, {"rmColumns", R"(["tiny", "response"])"}},
         {"tiny", "18", "0.0000111", "0.0000018"}},
        {__LINE__, mediation, {{"medMode", R"("moderation")"}, {"medX", R"("age")"}, {"medW", R"("tiny")"}, {"medY", R"("response")"}},
         {"tiny mean", "0.0000111"}},
        // clang-format on
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.line);
        TwoSiteStudy study;
        study.state.importPastedData(doseStudy());
        study.assign({"response", "tiny", "huge", "age"}, VariableKind::outcome);
        study.assign({"dose"}, VariableKind::grouping);
        const ScreenContent content = study.shown(each.screen, each.settings);
        ASSERT_FALSE(content.findings.empty());
        EXPECT_TRUE(holdsRow(content.findings.back().item, each.row));
    }
}

TEST(GroupScreens, ShowChartsThatBecomeTheFigure) {
    const struct {
        int line;
        StudioScreen screen;
        Settings settings;
        std::string title;
        std::size_t plot;
    } cases[] = {
        {__LINE__, inferential, {}, "Group means", 5},
        {__LINE__, inferential, {{"cmTest", R"("repeatedMeasures")"}}, "Means by measurement", 6},
        {__LINE__,
         inferential,
         {{"cmTest", R"("factorial")"}, {"cmFactors", R"(["passed","site"])"}},
         "Profile plot",
         6},
        {__LINE__, nonparametric, {}, "Box plots by group", 1},
        {__LINE__, categoricalTests, {}, "Shares of band within site", 4},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.line);
        TwoSiteStudy study;
        const ScreenContent content = study.shown(each.screen, each.settings);
        const std::optional<Chart>& figure = content.findings.front().figure;
        ASSERT_TRUE(figure);
        EXPECT_EQ(figure->title, each.title);
        EXPECT_EQ(figure->plot.index(), each.plot);
        EXPECT_TRUE(content.findings.front().item.figureCaption);
    }
}

TEST(GroupScreens, ARunStandsUntilTheNextOne) {
    TwoSiteStudy study;
    const ScreenContent before =
        study.shown(inferential, {{"cmOutcome", R"("score")"}, {"cmGrouping", R"("site")"}});
    study.set({{"cmOutcome", R"("third")"}});
    const ScreenContent after = study.screens.at(inferential).content();
    EXPECT_EQ(after.findings.front().item.apaSummary, before.findings.front().item.apaSummary);
    EXPECT_EQ(study.value("cmHasRun"), "true");
    study.set({{"cmTest", R"("anova")"}});
    EXPECT_EQ(study.screens.at(inferential).content().gate->title, "Ready to run");
    study.state.importPastedData("a,b\n1,2\n");
    EXPECT_EQ(study.value("cmTTestRun"), "null");
}

TEST(GroupScreens, UnequalVariancesOfferWelch) {
    ScreenWorkplace study;
    std::string text = "group,score\n";
    for (int i = 0; i < 12; ++i) {
        text += "a," + std::to_string(50 + i % 3) + ".0\nb," + std::to_string(5 * i) + ".5\n";
    }
    study.state.importPastedData(text);
    study.assign({"score"}, VariableKind::outcome);
    study.assign({"group"}, VariableKind::grouping);
    study.screens.appear(inferential);
    study.set({{"cmTestType", R"("student")"}});
    ASSERT_FALSE(study.screens.at(inferential).run());
    const auto checks = [&study] {
        for (const Card& card : study.screens.at(inferential).content().cards) {
            if (card.title == "Assumption checks") {
                return card;
            }
        }
        return Card();
    };
    EXPECT_EQ(checks().evidence.front().tone, EvidenceTone::violated);
    EXPECT_EQ(checks().evidence.front().remedies.front().label, "Use the Welch correction");
    ASSERT_EQ(checks().links.size(), 2U);
    study.screens.follow(checks().links.back());
    EXPECT_EQ(study.value("cmTestType"), R"("welch")");
    ASSERT_EQ(checks().links.size(), 1U);
    EXPECT_EQ(checks().paragraphs.front(),
              "Variances differ substantially; Welch (the default) is appropriate.");
    EXPECT_NE(study.value("cmAssumptionFindings"), "[]");
    study.screens.follow(checks().links.front());
    study.expectValues({{"selection", R"("nonparametric")"},
                        {"npTest", R"("mannWhitney")"},
                        {"npOutcome", R"("score")"},
                        {"npG1", R"("a")"}});
}

TEST(GroupScreens, WhatCannotBeComputedSaysWhy) {
    const struct {
        int line;
        StudioScreen screen;
        Settings settings;
        std::string title;
    } cases[] = {
        {__LINE__, inferential, {}, "The t-test could not be computed"},
        {__LINE__,
         inferential,
         {{"cmTest", R"("pairedTTest")"},
          {"cmPairBefore", R"("same")"},
          {"cmPairAfter", R"("up")"}},
         "The paired t-test could not be computed"},
        {__LINE__,
         inferential,
         {{"cmTest", R"("repeatedMeasures")"}, {"rmColumns", R"(["same","up"])"}},
         "The repeated-measures ANOVA could not be computed"},
        {__LINE__,
         nonparametric,
         {},
         "Could not compute Mann-Whitney U for the current selection."},
        {__LINE__,
         multivariate,
         {{"mvVars", R"(["same","up"])"}},
         "MANOVA could not be computed on this selection."},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.line);
        ScreenWorkplace study;
        study.state.importPastedData("g,same,up\na,2,3\na,2,3\nb,2,3\nb,2,3\na,2,3\nb,2,3\n");
        study.assign({"same", "up"}, VariableKind::outcome);
        study.assign({"g"}, VariableKind::grouping);
        study.screens.appear(each.screen);
        study.set(each.settings);
        EXPECT_FALSE(study.screens.at(each.screen).run());
        const ScreenContent content = study.screens.at(each.screen).content();
        ASSERT_TRUE(content.gate);
        EXPECT_EQ(content.gate->title, each.title);
        EXPECT_FALSE(content.gate->text.empty());
        EXPECT_TRUE(content.findings.empty());
    }
}

}  // namespace
}  // namespace sorvane
