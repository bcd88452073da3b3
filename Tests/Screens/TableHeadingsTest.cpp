#include <cmath>

#include <gtest/gtest.h>

#include "SorvaneCore/Numerics/NumberText.h"
#include "Tests/Screens/ReferenceStudy.h"

/// A figure means what stands over it: figures of R are looked for under their headings.
namespace sorvane {
namespace {

using enum StudioScreen;

/// A row of a table, by its first cell (blank: the first row of the first table with all these
/// headings), with what R gives for each heading.
struct HeadedRow {
    std::string label;
    std::vector<std::pair<std::string, double>> figures;
};

const std::set<std::string> groupings = {"am", "vs", "gear", "Species", "sex", "gender", "stype"};

struct HeadingCase {
    int line;
    std::string data;
    StudioScreen screen;
    Settings settings;
    std::vector<HeadedRow> rows;
};

const Settings carsOfGears = {
    {"cmTest", R"("anova")"}, {"cmOutcome", R"("mpg")"}, {"cmGrouping", R"("gear")"}};

// R 4.2.2: lm, glm, MASS::polr, t.test, oneway.test, drop1, aov, mauchly.test, kruskal.test,
// chisq.test, fisher.test, mcnemar.test, cor.test, psych::skew(type = 2), manova, eigen and cancor;
// Friedman without correction for ties, quartiles as medians of the halves of the sorted values;
// survival::coxph (Breslow) and survfit, lavaan::cfa with group.equal, survey::svymean.
// clang-format off
const std::vector<HeadingCase> headingCases = {
    {__LINE__, "mtcars.csv", regression, {{"regOutcome", R"("mpg")"}, {"regPredictors", R"(["hp","wt"])"}},
     {{"wt", {{"B", -3.877830742}, {"SE", 0.6327334944}, {"β", -0.6295545141}, {"t", -6.128695}, {"p", 1.119647136e-06}, {"95% CI Lower", -5.171916041}, {"95% CI Upper", -2.583745444}}},
      {"", {{"n", 32}, {"R²", 0.8267854519}, {"Adjusted R²", 0.814839621}, {"SE of estimate", 2.593411777}, {"F", 69.21121339}, {"df1", 2}, {"df2", 29}, {"p", 9.109054385e-12}}}}},
    {__LINE__, "mtcars.csv", regression, {{"regModel", R"("logistic")"}, {"regOutcome", R"("am")"}, {"regPredictors", R"(["wt"])"}},
     {{"wt", {{"B", -4.023969962}, {"SE", 1.436527744}, {"z", -2.801178035}, {"p", 0.005091642032}, {"OR", 0.01788183364}, {"95% CI Lower", 0.001070625069}, {"95% CI Upper", 0.2986666234}}},
      {"", {{"n", 32}, {"Events", 13}, {"Log likelihood", -9.588042404}, {"Residual deviance", 19.17608481}, {"Null deviance", 43.22973328}, {"McFadden R²", 0.5564144547}}}}},
    {__LINE__, "mtcars.csv", regression, {{"regModel", R"("poisson")"}, {"regOutcome", R"("carb")"}, {"regPredictors", R"(["hp"])"}},
     {{"hp", {{"B", 0.005517325735}, {"SE", 0.001387163195}, {"z", 3.977416468}, {"p", 6.966808456e-05}, {"RR", 1.005532574}, {"95% CI Lower", 1.002802455}, {"95% CI Upper", 1.008270126}}},
      {"", {{"n", 32}, {"Log likelihood", -50.82242937}, {"Residual deviance", 12.27920908}, {"df", 30}, {"Dispersion", 0.4093069692}}}}},
    {__LINE__, "mtcars.csv", regression, {{"regModel", R"("ordinal")"}, {"regOutcome", R"("gear")"}, {"regPredictors", R"(["wt"])"}},
     {{"wt", {{"B", -1.831391879}, {"SE", 0.5808168178}, {"z", -3.153131629}, {"p", 0.00161528953}, {"OR", 0.1601904468}}},
      {"3|4", {{"Estimate", -5.906997102}, {"SE", 1.865408092}}}}},
    {__LINE__, "mtcars.csv", inferential, {{"cmOutcome", R"("mpg")"}, {"cmGrouping", R"("am")"}},
     {{"0", {{"n", 19}, {"M", 17.14736842}, {"SD", 3.833966386}, {"SE", 0.879572212}}},
      {"", {{"t", -3.767123}, {"df", 18.33225164}, {"p", 0.001373638333}, {"Mean difference", -7.244939271}, {"95% CI Lower", -11.28019436}, {"95% CI Upper", -3.209684187}, {"d", -1.477947096}}}}},
    {__LINE__, "mtcars.csv", inferential, {{"cmTest", R"("pairedTTest")"}, {"cmPairBefore", R"("qsec")"}, {"cmPairAfter", R"("mpg")"}},
     {{"", {{"t", -2.29638}, {"df", 31}, {"p", 0.02857375463}, {"Mean difference", -2.241875}, {"95% CI Lower", -4.232980051}, {"95% CI Upper", -0.2507699485}, {"d", -0.4059465021}}},
      {"mpg", {{"n", 32}, {"M", 20.090625}, {"SD", 6.026948052}, {"SE", 1.065423998}}}}},
    {__LINE__, "mtcars.csv", inferential, carsOfGears,
     {{"Between Groups", {{"Sum of Squares", 483.2431875}, {"df1", 2}, {"Mean Square", 241.6215937}, {"Statistic", 10.90071969}, {"Sig.", 0.0002948279929}}},
      {"Within Groups", {{"Sum of Squares", 642.804}, {"df2", 29}, {"Mean Square", 22.16565517}}},
      {"Welch ANOVA", {{"df1", 2}, {"df2", 9.508276729}, {"Statistic", 11.28482069}, {"Sig.", 0.003085452003}}},
      {"4", {{"N", 12}, {"Mean", 24.53333333}, {"Std. Deviation", 5.27676439}, {"Std. Error", 1.52327067}, {"95% CI Lower", 21.18063719}, {"95% CI Upper", 27.88602947}, {"Minimum", 17.8}, {"Maximum", 33.9}}}}},
    {__LINE__, "mtcars.csv", inferential, {{"cmTest", R"("factorial")"}, {"cmOutcome", R"("mpg")"}, {"cmFactors", R"(["am","vs"])"}},
     {{"am", {{"SS", 283.7215238}, {"df", 1}, {"MS", 283.7215238}, {"F", 23.54002234}, {"p", 4.158925183e-05}, {"η²p", 0.4567328703}}},
      {"0", {{"n", 6}, {"M", 19.75}, {"SD", 4.008865176}}}}},
    {__LINE__, "mtcars.csv", inferential, {{"cmTest", R"("ancova")"}, {"cmAncovaOutcome", R"("mpg")"}, {"cmAncovaGroup", R"("am")"}, {"cmAncovaCovariates", R"(["wt"])"}},
     {{"am", {{"df1", 1}, {"df2", 29}, {"F", 0.0002334340934}, {"p", 0.9879145855}, {"η²p", 8.049386705e-06}}},
      {"wt", {{"B", -5.352811447}, {"SE", 0.7882437685}, {"t", -6.790807}, {"p", 1.867415038e-07}}},
      {"0", {{"n", 19}, {"M", 17.14736842}, {"M adj", 20.10021868}}}}},
    {__LINE__, "attitude.csv", inferential, {{"cmTest", R"("repeatedMeasures")"}, {"rmColumns", R"(["complaints","learning","raises"])"}},
     {{"Conditions", {{"SS", 1769.266667}, {"df", 2}, {"MS", 884.6333333}, {"F", 16.67998093}, {"p", 1.894481792e-06}, {"η²p", 0.3651485966}}},
      {"Error", {{"SS", 3076.066667}, {"df", 58}, {"MS", 53.03563218}}},
      {"complaints", {{"Mean difference", 10.23333333}, {"t", 4.943968}, {"df", 29}, {"p", 2.964114666e-05}, {"p (Bonferroni)", 8.892343999e-05}}},
      {"", {{"W", 0.9518905723}, {"Chi-square", 1.380545484}, {"df", 2}, {"GG epsilon", 0.9540988503}}},
      {"raises", {{"n", 30}, {"M", 64.63333333}, {"SD", 10.39722554}}}}},
    {__LINE__, "mtcars.csv", nonparametric, {{"npOutcome", R"("mpg")"}, {"npGroup", R"("am")"}},
     {{"0", {{"n", 19}, {"Median", 17.3}, {"Q1", 14.7}, {"Q3", 19.2}}}}},
    {__LINE__, "mtcars.csv", nonparametric, {{"npTest", R"("kruskalWallis")"}, {"npOutcome", R"("mpg")"}, {"npGroup", R"("gear")"}},
     {{"", {{"H", 14.32334832}, {"df", 2}, {"p", 0.0007757547276}}}}},
    {__LINE__, "attitude.csv", nonparametric, {{"npTest", R"("friedman")"}, {"npFriedmanItems", R"(["complaints","learning","raises"])"}},
     {{"", {{"Chi-square", 25.51666667}, {"df", 2}, {"p", 2.878234901e-06}, {"W", 0.4252777778}, {"Cases", 30}}}}},
    {__LINE__, "mtcars.csv", nonparametric, {{"npTest", R"("chiSquare")"}, {"npRowCat", R"("am")"}, {"npColCat", R"("gear")"}},
     {{"", {{"Chi-square", 20.94466937}, {"df", 2}, {"p", 2.830888959e-05}, {"Cramer V", 0.8090246706}}},
      {"0", {{"3", 15}, {"4", 4}, {"5", 0}, {"Total", 19}}}}},
    {__LINE__, "mtcars.csv", nonparametric, {{"npTest", R"("goodnessOfFit")"}, {"npGoFVar", R"("gear")"}},
     {{"", {{"Chi-square", 4.9375}, {"df", 2}, {"p", 0.08469065618}}},
      {"3", {{"Observed", 15}, {"Expected", 10.66666667}}}}},
    {__LINE__, "mtcars.csv", nonparametric, {{"npTest", R"("fisher")"}, {"npRowCat", R"("am")"}, {"npColCat", R"("vs")"}},
     {{"", {{"p (two-sided)", 0.4726974416}, {"Odds ratio", 0.5}}}}},
    {__LINE__, "mtcars.csv", nonparametric, {{"npTest", R"("mcnemar")"}, {"npRowCat", R"("am")"}, {"npColCat", R"("vs")"}},
     {{"", {{"b", 6}, {"c", 7}, {"Chi-square", 0}, {"df", 1}, {"p", 1}, {"p (exact)", 1}}}}},
    {__LINE__, "mtcars.csv", correlation, {{"corrX", R"("mpg")"}, {"corrY", R"("wt")"}, {"corrControl", R"("hp")"}},
     {{"Pearson r", {{"r", -0.8676593765}, {"n", 32}, {"p", 1.293958701e-10}}},
      {"Spearman rho", {{"r", -0.8864220333}}},
      {"Kendall tau-b", {{"r", -0.7278321495}}},
      {"Partial r, controlling hp", {{"r", -0.751204905}}}}},
    {__LINE__, "mtcars.csv", descriptives, {{"selectedDescriptiveVariableName", R"("mpg")"}},
     {{"mpg", {{"n", 32}, {"M", 20.090625}, {"SD", 6.026948052}, {"Median", 19.2}, {"Min", 10.4}, {"Max", 33.9}, {"Skewness", 0.6723771}}}}},
    {__LINE__, "iris.csv", multivariate, {{"mvGroup", R"("Species")"}, {"mvVars", R"(["Petal_Length","Petal_Width","Sepal_Length","Sepal_Width"])"}},
     {{"Pillai's trace", {{"Value", 1.191898825}, {"F", 53.46648878}, {"df1", 8}, {"df2", 290}}},
      {"Wilks' lambda", {{"Value", 0.02343863065}, {"F", 199.1453435}, {"df1", 8}, {"df2", 288}}},
      {"Hotelling-Lawley trace", {{"Value", 32.47732024}, {"F", 580.5320993}, {"df1", 8}, {"df2", 286}}}}},
    {__LINE__, "iris.csv", multivariate, {{"mvTest", R"("canonical")"}, {"mvSetX", R"(["Sepal_Length","Sepal_Width"])"}, {"mvSetY", R"(["Petal_Length","Petal_Width"])"}},
     {{"1", {{"Correlation", 0.940968997}, {"Squared", 0.8854226533}}}}},
    {__LINE__, "usarrests.csv", dataReduction, {{"drItems", R"(["Assault","Murder","Rape","UrbanPop"])"}, {"drMethod", R"("pca")"}},
     {{"2", {{"Eigenvalue", 0.9897651525}, {"% of variance", 24.74412881}, {"Cumulative %", 86.75016829}}}}},
    {__LINE__, "lung.csv", survival, {{"survMode", R"("cox")"}, {"survTime", R"("time")"}, {"survEvent", R"("dead")"}, {"survPredictors", R"(["age","sex"])"}},
     {{"sex", {{"B", -0.5125647915}, {"SE", 0.1674620631}, {"z", -3.06078154}, {"p", 0.002207601027}, {"HR", 0.5989574062}, {"LL", 0.4313720207}, {"UL", 0.8316486866}}},
      {"", {{"n", 228}, {"Events", 165}, {"Log partial likelihood", -743.0796542}, {"Without predictors", -750.1220189}}}}},
    {__LINE__, "lung.csv", survival, {{"survTime", R"("time")"}, {"survEvent", R"("dead")"}, {"survGroup", R"("sex")"}},
     {{"1", {{"n", 138}, {"Events", 112}, {"Censored", 26}, {"Median", 270}}}}},
    {__LINE__, "bfi.csv", invariance, {{"invItems", R"(["A1","A2","A3","A4","A5"])"}, {"invGroup", R"("gender")"}},
     {{"Configural", {{"χ²", 85.324912820396}, {"df", 10}, {"p", 4.50750547997814e-14}, {"CFI", 0.968228053560508}, {"TLI", 0.936456107121016}, {"RMSEA", 0.0745726908313075}, {"SRMR", 0.0277633200262593}, {"BIC", 43610.1681130465}}},
      {"Metric", {{"Δχ²", 7.46551004119748}, {"Δdf", 4}, {"p", 0.113239806118296}, {"ΔCFI", -0.00146174745235994}, {"ΔRMSEA", -0.0101137458318414}}}}},
    {__LINE__, "apistrat.csv", survey, {{"svWeight", R"("pw")"}, {"svVar", R"("api00")"}, {"svStrata", R"("stype")"}, {"svCluster", R"("")"}, {"svFpc", R"("fpc")"}},
     {{"All", {{"Estimate", 662.287363159321}, {"SE", 9.40894080278458}, {"LL", 643.732188272086}, {"UL", 680.842538046555}, {"df", 197}, {"n", 200}, {"Design effect", 0.963514764756825}}}}},
};
// clang-format on

/// Whether a cell prints this number, with the decimals that it has.
testing::AssertionResult prints(std::string cell, double figure) {
    while (cell.ends_with('*')) {
        cell.pop_back();
    }
    const bool isBelow = cell.starts_with("< ");
    const std::optional<double> number = NumberText::parse(isBelow ? cell.substr(2) : cell);
    if (!number) {
        return testing::AssertionFailure() << "\"" << cell << "\" is no number";
    }
    const std::size_t point = cell.find('.');
    const std::size_t decimals = point == std::string::npos ? 0 : cell.size() - point - 1;
    const double half = 0.5000001 * std::pow(10.0, -static_cast<double>(decimals));
    const bool holds = isBelow ? figure < *number : std::abs(*number - figure) <= half;
    return holds ? testing::AssertionSuccess()
                 : testing::AssertionFailure() << cell << " stands for " << figure;
}

std::optional<std::size_t> columnOf(const ReportTable& table, const std::string& heading) {
    const auto found = std::ranges::find(table.headers, heading);
    return found == table.headers.end()
               ? std::nullopt
               : std::optional(static_cast<std::size_t>(found - table.headers.begin()));
}

/// The row of the first table that has all headings and the label; null without one.
const std::vector<std::string>* rowUnder(const ReportTable& table, const HeadedRow& wanted) {
    for (const auto& [heading, figure] : wanted.figures) {
        if (!columnOf(table, heading)) {
            return nullptr;
        }
    }
    for (const std::vector<std::string>& row : table.rows) {
        if (wanted.label.empty() || row.front() == wanted.label) {
            return &row;
        }
    }
    return nullptr;
}

TEST(TableHeadings, StandOverTheFiguresThatTheyName) {
    for (const HeadingCase& each : headingCases) {
        SCOPED_TRACE(each.line);
        ReferenceStudy study(each.data);
        study.assignAll(groupings);
        const ScreenContent content = study.shown(each.screen, each.settings);
        ASSERT_FALSE(content.findings.empty());
        const ReportItem& item = content.findings.front().item;
        std::vector<ReportTable> tables = {*item.table};
        if (item.extraTables) {
            tables.insert(tables.end(), item.extraTables->begin(), item.extraTables->end());
        }
        for (const HeadedRow& wanted : each.rows) {
            const std::vector<std::string>* row = nullptr;
            const ReportTable* table = nullptr;
            for (std::size_t i = 0; i < tables.size() && !row; ++i) {
                table = &tables[i];
                row = rowUnder(tables[i], wanted);
            }
            ASSERT_NE(row, nullptr)
                << "no row of " << wanted.label << " under " << wanted.figures.front().first;
            for (const auto& [heading, figure] : wanted.figures) {
                EXPECT_TRUE(prints(row->at(*columnOf(*table, heading)), figure))
                    << wanted.label << ", " << heading;
            }
        }
    }
}

}  // namespace
}  // namespace sorvane
