#include <gtest/gtest.h>

#include "SorvaneMac/Report/APAFormat.h"
#include "Tests/Screens/ReferenceStudy.h"

namespace sorvane {
namespace {

using enum StudioScreen;
using Cells = std::vector<std::string>;

const ReportTable* tableOf(const ReportItem& item, const std::string& title) {
    if (item.table->title == title) {
        return &*item.table;
    }
    const auto found = std::ranges::find(*item.extraTables, title, &ReportTable::title);
    return found == item.extraTables->end() ? nullptr : &*found;
}

// The figures are lavaan's with group.equal.
TEST(InvarianceScreen, ComparesTheModelsStepByStep) {
    ReferenceStudy study("bfi.csv");
    study.assign({"gender"}, VariableKind::grouping);
    const ScreenContent content = study.shown(
        invariance, {{"invItems", R"(["A1","A2","A3","A4","A5"])"}, {"invGroup", R"("gender")"}});
    ASSERT_EQ(content.findings.size(), 1U);
    const ReportItem& item = content.findings.front().item;
    EXPECT_EQ(item.title, "Measurement invariance across gender");
    const ReportTable fit = APAFormat::normalize(*item.table);
    ASSERT_EQ(fit.rows.size(), 3U);
    EXPECT_EQ(fit.rows.front()[2], "10");
    EXPECT_EQ(fit.rows.front()[4], ".968");
    EXPECT_EQ(fit.rows.front()[6], ".075");
    EXPECT_EQ(fit.rows.front()[7], "[.060, .090]");
    const ReportTable* comparison = tableOf(item, "Comparison of the models");
    ASSERT_NE(comparison, nullptr);
    ASSERT_EQ(comparison->rows.size(), 2U);
    EXPECT_EQ(comparison->rows[0][3], "4");
    EXPECT_EQ(comparison->rows[1][1], comparison->rows[0][0]);
    const ReportTable* loadings = tableOf(item, "Loadings");
    ASSERT_NE(loadings, nullptr);
    EXPECT_EQ(loadings->headers, (Cells{"Item", "1", "2"}));
    EXPECT_EQ(loadings->rows.front(), (Cells{"A1", "1.000", "1.000"}));
    EXPECT_EQ(std::get<LinePlot>(content.findings.front().figure->plot).series.size(), 2U);
    EXPECT_EQ(study.result(invariance, "/n"), "2709");
}

TEST(InvarianceScreen, SaysWhichGroupIsTooSmall) {
    ReferenceStudy study("bfi.csv");
    study.state.importPastedData(
        "g,x,y,z\na,1,2,3\na,2,3,1\na,3,1,2\na,2,2,2\na,4,3,3\nb,1,2,1\nb,2,2,3\n");
    study.assign({"g"}, VariableKind::grouping);
    study.assign({"x", "y", "z"}, VariableKind::outcome);
    const ScreenContent content =
        study.shown(invariance, {{"invItems", R"(["x","y","z"])"}, {"invGroup", R"("g")"}});
    ASSERT_TRUE(content.gate);
    EXPECT_EQ(content.gate->title, "The models could not be compared");
    EXPECT_NE(content.gate->text.find("b"), std::string::npos) << content.gate->text;
    EXPECT_TRUE(content.findings.empty());
}

// The figures are those of ordinal::clmm with 15 points.
TEST(OrdinalMultilevel, OddsRatiosAndThresholdsGoIntoTheReport) {
    ReferenceStudy study("wine_judges.csv");
    study.assign({"rating", "warm", "contact"}, VariableKind::outcome);
    study.assign({"judge"}, VariableKind::grouping);
    const ScreenContent content =
        study.shown(multilevel, {{"mlFamily", R"("ordinal")"},
                                 {"mlOutcome", R"("rating")"},
                                 {"mlCluster", R"("judge")"},
                                 {"mlPredictors", R"(["contact","warm"])"}});
    ASSERT_EQ(content.findings.size(), 1U);
    const ReportItem& item = content.findings.front().item;
    const ReportTable effects = APAFormat::normalize(*item.table);
    ASSERT_EQ(effects.rows.size(), 2U);
    for (const Cells& row : effects.rows) {
        if (row[0] == "warm") {
            EXPECT_EQ(Cells(row.begin(), row.begin() + 6),
                      (Cells{"warm", "3.062", "0.595", "5.15", "< .001", "21.368"}));
        }
    }
    const ReportTable* thresholds = tableOf(item, "Thresholds");
    ASSERT_NE(thresholds, nullptr);
    EXPECT_EQ(thresholds->rows.front(), (Cells{"1|2", "-1.623", "0.683"}));
    EXPECT_TRUE(content.findings.front().figure) << "the judges' intercepts";
    EXPECT_EQ(study.result(multilevel, "/nClusters"), "9");
}

TEST(FactorMixtureScreen, ClassesAndTheirFactorAreShownAndCompared) {
    ReferenceStudy study("iris.csv");
    study.assign({"Sepal_Length", "Sepal_Width", "Petal_Length", "Petal_Width"},
                 VariableKind::outcome);
    const Settings chosen = {
        {"lcKind", R"("factorMixture")"},
        {"lcItems", R"(["Petal_Length","Petal_Width","Sepal_Length","Sepal_Width"])"}};
    const ScreenContent content = study.shown(latentClass, chosen);
    EXPECT_EQ(content.title, "Factor mixture analysis");
    ASSERT_EQ(content.findings.size(), 1U);
    const ReportItem& item = content.findings.front().item;
    EXPECT_TRUE(
        item.apaSummary.starts_with("A factor mixture model with 2 classes and one common "
                                    "factor was fitted to 4 indicators (n = 150)"))
        << item.apaSummary;
    EXPECT_EQ(item.table->rows[0][2], "50") << "setosa stands apart";
    EXPECT_EQ(item.table->rows[1][2], "100");
    EXPECT_NE(tableOf(item, "The factor within classes"), nullptr);
    EXPECT_EQ(std::get<LinePlot>(content.findings.front().figure->plot).series.size(), 2U);
}

TEST(FactorMixtureScreen, ItsNamesGoWithItsResult) {
    ReferenceStudy study("iris.csv");
    study.assign({"Sepal_Length", "Sepal_Width", "Petal_Length"}, VariableKind::outcome);
    const std::string items = R"(["Sepal_Length","Sepal_Width","Petal_Length"])";
    study.shown(latentClass, {{"lcKind", R"("factorMixture")"}, {"lcItems", items}});
    study.expectValues({{"fmHasRun", "true"}, {"fmDisplayNames", items}});
    study.set(
        {{"lcItems", R"(["Sepal_Length"])"}, {"fmDisplayNames", R"(["Sepal","Width","Petal"])"}});
    study.set({{"lcItems", items}});
    const ScreenContent content = study.screens.at(latentClass).content();
    const ReportTable* means = tableOf(content.findings.front().item, "Means of the classes");
    ASSERT_NE(means, nullptr);
    EXPECT_EQ(means->rows[2][0], "Petal");
    study.state.importPastedData("a,b\n1,2\n2,3\n");
    study.expectValues({{"fmHasRun", "false"}, {"fmDisplayNames", "[]"}});
}

}  // namespace
}  // namespace sorvane
