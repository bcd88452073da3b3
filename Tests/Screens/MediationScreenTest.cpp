#include <gtest/gtest.h>

#include "SorvaneMac/Report/APAFormat.h"
#include "Tests/Screens/ReferenceStudy.h"

namespace sorvane {
namespace {

using Cells = std::vector<std::string>;
using enum StudioScreen;

const Settings indirect = {{"medX", R"("cond")"}, {"medM", R"("pmi")"}, {"medY", R"("reaction")"}};

TEST(MediationScreen, TheIndirectEffectStandsWithItsInterval) {
    ReferenceStudy study("talor.csv");
    const ScreenContent content = study.shown(mediation, indirect);
    const ReportItem& item = content.findings.front().item;
    EXPECT_EQ(item.title, "Mediation: cond → pmi → reaction");
    EXPECT_EQ(item.apaSummary,
              "The indirect effect of cond on reaction through pmi was 0.241, 95% percentile "
              "bootstrap CI [0.008, 0.528] (5000 resamples, N = 123); the direct effect was "
              "B = 0.254, SE = 0.256, t(120) = 0.99, p = .322.");
    const ReportTable paths = APAFormat::normalize(*item.table);
    EXPECT_EQ(paths.headers, (Cells{"Path", "B", "SE", "t", "df", "p", "LL", "UL"}));
    EXPECT_EQ(paths.rows[0],
              (Cells{"a: cond → pmi", "0.477", "0.236", "2.02", "121", ".045", "0.010", "0.943"}));
    EXPECT_EQ(paths.rows[1][0], "b: pmi → reaction");
    EXPECT_EQ(paths.rows[1][4], "120");
    EXPECT_EQ(paths.rows[3][1], "0.496");
    EXPECT_TRUE(paths.note->starts_with(
        "The indirect effect is significant when the bootstrap interval excludes zero. a: X → M. "))
        << *paths.note;
    EXPECT_TRUE(paths.note->find("The Sobel test and the bootstrap interval disagree") !=
                std::string::npos);
    EXPECT_EQ(APAFormat::normalize(item.extraTables->front()).rows[0],
              (Cells{"pmi", "0.241", "0.008", "0.528", "1.89", ".059", "0.49", "5000"}));
    EXPECT_TRUE(item.caution->starts_with("Mediation describes a causal pathway only under"));

    const auto& figure = std::get<PathDiagram>(content.findings.front().figure->plot);
    EXPECT_EQ(figure.paths[1].from, 1U);
    EXPECT_EQ(figure.paths[1].label, "b = 0.506***");
    EXPECT_EQ(figure.paths[2].label, "c′ = 0.254  (c = 0.496)");
    EXPECT_EQ(study.result(mediation, "/n"), "123");
}

TEST(MediationScreen, CovariatesTakeTheirDegreesOfFreedom) {
    ReferenceStudy study("talor.csv");
    Settings settings = indirect;
    settings.emplace_back("medCovariates", R"(["gender","age","cond"])");
    const ScreenContent content = study.shown(mediation, settings);
    const ReportItem& item = content.findings.front().item;
    EXPECT_EQ(item.table->rows[0][4], "119");
    EXPECT_EQ(item.table->rows[2][4], "118");
    EXPECT_NE(item.table->note->find(" Covariates of all three models: gender and age."),
              std::string::npos)
        << *item.table->note;
    EXPECT_TRUE(item.apaSummary.ends_with(", with gender and age held constant."))
        << item.apaSummary;
}

TEST(MediationScreen, SimpleSlopesStandWithTheirLines) {
    ReferenceStudy study("garcia.csv");
    const ScreenContent content = study.shown(mediation, {{"medMode", R"("moderation")"},
                                                          {"medX", R"("sexism")"},
                                                          {"medW", R"("protest")"},
                                                          {"medY", R"("liking")"}});
    const ReportItem& item = content.findings.front().item;
    EXPECT_EQ(item.title, "Moderation: sexism × protest → liking");
    EXPECT_EQ(
        item.apaSummary,
        "The interaction of sexism and protest predicting liking was statistically "
        "significant, B = 0.371, SE = 0.140, t(125) = 2.65, p = .009 (R² = .09, N = 129). The "
        "simple slope of sexism was -0.194 at protest − 1 SD (p = .247), 0.110 at protest "
        "mean (p = .339), and 0.414 at protest + 1 SD (p = .010).");
    EXPECT_EQ(item.table->title, "Model coefficients");
    EXPECT_EQ(APAFormat::normalize(*item.table).rows[3],
              (Cells{"sexism × protest", "0.371", "0.140", "2.65", ".009", "0.094", "0.647"}));
    EXPECT_TRUE(item.table->note->starts_with(
        "B = unstandardized coefficient; SE = standard error. R² = .089."));
    const ReportTable& slopes = item.extraTables->front();
    EXPECT_EQ(slopes.title, "Simple slopes of sexism at the moderator mean and ±1 SD.");
    EXPECT_EQ(
        APAFormat::normalize(slopes).rows[2],
        (Cells{"protest + 1 SD", "1.85", "0.414", "0.157", "2.63", ".010", "0.102", "0.725"}));
    EXPECT_EQ(slopes.note, "Each row is the effect of sexism at that level of protest.");

    const auto& lines = std::get<LinePlot>(content.findings.front().figure->plot);
    ASSERT_EQ(lines.series.size(), 3U);
    const LinePlot::Series& high = lines.series[2];
    EXPECT_NEAR((high.y[1] - high.y[0]) / (high.x[1] - high.x[0]), 0.413723235430341, 1e-9);
    // At the lowest sexism, 2.87: 6.7853 - 0.27234 * 2.87 + 1.850096 * (-1.655084 + 0.370826 * 2.87)
    EXPECT_NEAR(high.y[0], 4.910622, 1e-5);
    EXPECT_EQ(item.figureCaption, "Simple slopes of sexism at the moderator mean and ±1 SD.");
}

TEST(MediationScreen, LinesPassThroughTheMeansWithCovariates) {
    ReferenceStudy study("garcia.csv");
    const ScreenContent content = study.shown(mediation, {{"medMode", R"("moderation")"},
                                                          {"medX", R"("sexism")"},
                                                          {"medW", R"("anger")"},
                                                          {"medY", R"("liking")"},
                                                          {"medCovariates", R"(["respappr"])"}});
    const auto& lines = std::get<LinePlot>(content.findings.front().figure->plot);
    for (const LinePlot::Series& series : lines.series) {
        EXPECT_GT(series.y[0], 3.0) << "lines without the covariate's share lie far off";
        EXPECT_LT(series.y[0], 7.5);
    }
    EXPECT_TRUE(content.findings.front().item.apaSummary.ends_with(" respappr was held constant."));
}

struct ProcessCase {
    int line;
    std::string table;
    std::string mode;
    /// How the remark or the gate begins.
    std::string start;
    bool isRefused = false;
};

TEST(MediationScreen, SaysWhatSpeaksAgainstAReading) {
    const std::string constant = "x,m,y\n1,2,1\n2,2,2\n3,2,4\n4,2,3\n5,2,6\n6,2,5\n";
    const std::string twoValued = "x,m,y\n1,0,1\n2,1,2\n3,0,4\n4,1,3\n5,0,6\n6,1,5\n7,1,9\n8,0,7\n";
    const std::string skewed =
        "x,m,y\n1,0,1\n2,0,2\n3,0,4\n4,0,3\n5,0,6\n6,0,5\n7,1,9\n8,30,7\n9,2,8\n";
    const std::string binary =
        "x,m,y\n1,3,1\n2,1,0\n3,4,1\n4,2,0\n5,7,0\n6,5,1\n7,6,1\n8,9,1\n9,8,0\n";
    const std::string opposed =
        "x,m,y\n1,1,-2\n2,3,-3\n3,2,2\n4,5,-4\n5,4,3\n6,7,-2\n7,6,3\n8,8,1\n9,10,-3\n10,9,5\n";
    const std::vector<ProcessCase> cases = {
        {__LINE__, constant, "mediation", "Mediation could not be estimated", true},
        {__LINE__, constant, "moderation", "Moderation could not be estimated", true},
        {__LINE__, twoValued, "moderation", "The moderator has only two values"},
        {__LINE__, skewed, "moderation", "m − 1 SD lies beyond all observed values"},
        {__LINE__, binary, "mediation", "y has only two values, which a linear model treats as"},
        {__LINE__, binary, "moderation", "y has only two values"},
        {__LINE__, opposed, "mediation", "The proportion mediated lies outside 0 to 1"},
    };
    for (const ProcessCase& each : cases) {
        SCOPED_TRACE(each.line);
        ReferenceStudy study("talor.csv");
        study.state.importPastedData(each.table);
        study.assign({"x", "m", "y"}, VariableKind::outcome);
        const ScreenContent content = study.shown(mediation, {{"medMode", "\"" + each.mode + "\""},
                                                              {"medX", R"("x")"},
                                                              {"medM", R"("m")"},
                                                              {"medW", R"("m")"},
                                                              {"medY", R"("y")"}});
        EXPECT_EQ(content.findings.empty(), each.isRefused);
        if (each.isRefused) {
            EXPECT_EQ(content.gate->title, each.start);
            continue;
        }
        const Card* cautions = cardOf(content, "Cautions");
        ASSERT_NE(cautions, nullptr);
        EXPECT_TRUE(cautions->cautions.back().starts_with(each.start)) << cautions->cautions.back();
    }
}

TEST(MediationScreen, EachAnalysisKeepsItsOwnRun) {
    ReferenceStudy study("talor.csv");
    study.shown(mediation, indirect);
    study.set({{"medMode", R"("moderation")"}, {"medX", R"("age")"}, {"medW", R"("gender")"}});
    EXPECT_EQ(study.screens.at(mediation).content().gate->title, "Ready to run");
    study.set({{"medMode", R"("mediation")"}});
    const ScreenContent content = study.screens.at(mediation).content();
    EXPECT_EQ(content.findings.front().item.title, "Mediation: cond → pmi → reaction")
        << "a run stands with the names that it was run on";
}

}  // namespace
}  // namespace sorvane
