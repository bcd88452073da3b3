#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Tests/Screens/GrowthStudy.h"
#include "Tests/Screens/ReferenceStudy.h"

/// What the multilevel screen cautions of and what it refuses.
namespace sorvane {
namespace {

using enum StudioScreen;

struct CautionCase {
    int line;
    std::string table;
    Settings settings;
    /// Of the card, or of the gate; empty where nothing is to be said.
    std::string text;
};

// clang-format off
const std::vector<CautionCase> cautionCases = {
    {__LINE__, "g,x,y\na,1,3\na,2,4\na,3,6\nb,1,5\nb,2,7\nb,4,9\nc,1,1\nc,3,2\nd,2,4\n", {},
     "1 cluster(s) have only one case; variance components are less stable."},
    {__LINE__, "g,x,y\na,1,3\na,2,4\na,3,6\na,1,5\nb,1,\nb,2,\n", {}, "Multilevel models need at least two clusters."},
    {__LINE__, "g,x,y\na,1,0\na,2,0\nb,3,0\nb,1,0\nb,5,0\n", {{"mlFamily", R"("binomial")"}},
     "Outcome has no variation (all 0 or all 1)."},
    {__LINE__, "g,x,y\na,1,0\na,2,0\nb,3,0\nb,1,0\nb,5,0\n", {{"mlFamily", R"("poisson")"}},
     "Outcome has no events (all zeros)."},
    {__LINE__, "g,x,y\na,1,0\na,2,2\nb,3,1\nb,1,0\nb,5,0\n", {{"mlFamily", R"("binomial")"}},
     "Confirm a numeric outcome, grouping factor(s) with enough levels, and complete cases. A "
     "logistic model needs an outcome coded 0 and 1."},
    {__LINE__, "g,x,y\na,1,0.5\na,2,2\nb,3,1\nb,1,0\nb,5,0\n", {{"mlFamily", R"("poisson")"}},
     "Confirm a numeric outcome, grouping factor(s) with enough levels, and complete cases. A "
     "Poisson model needs whole counts from 0."},
    {__LINE__, "g,x,y\na,7,1\na,7,2\nb,7,4\nb,7,3\nb,7,5\n", {},
     "The multilevel model did not converge to a usable solution. Look for a predictor that does not "
     "vary or that repeats another, and for an outcome that the predictors tell exactly."},
    {__LINE__, "g,x,y\na,,1\na,2,\nb,,4\n", {},
     "Confirm a numeric outcome, grouping factor(s) with enough levels, and complete cases."},
};
// clang-format on

TEST(MultilevelCautions, AndRefusalsAreTheEngines) {
    for (const CautionCase& each : cautionCases) {
        SCOPED_TRACE(each.line);
        ReferenceStudy study("sleepstudy.csv");
        study.state.importPastedData(each.table);
        study.assign({"g"}, VariableKind::grouping);
        study.assign({"x", "y"}, VariableKind::outcome);
        Settings settings = {{"mlOutcome", R"("y")"}, {"mlPredictors", R"(["x"])"}};
        settings.insert(settings.end(), each.settings.begin(), each.settings.end());
        const ScreenContent content = study.shown(multilevel, settings);
        if (content.gate) {
            EXPECT_EQ(content.gate->text, each.text);
            EXPECT_TRUE(content.findings.empty());
            continue;
        }
        const Card* cautions = cardOf(content, "Cautions");
        ASSERT_NE(cautions, nullptr);
        EXPECT_EQ(cautions->cautions.front(), each.text);
        EXPECT_EQ(cardOf(content, "Sample and singularity checks"), nullptr);
        EXPECT_NE(content.findings.front().item.table->note->find(each.text), std::string::npos);
    }
}

/// Counts of 14 groups of 6 rows.
struct CountStudy {
    template <typename MeanOf>
    explicit CountStudy(MeanOf meanOf) {
        std::string text = "g,seat,x,odd,y\n";
        for (int g = 0; g < 14; ++g) {
            for (int i = 0; i < 6; ++i) {
                const long count = std::lround(meanOf(g, i));
                text += "g" + std::to_string(g) + "," + std::to_string(i) + "," +
                        std::to_string(10000 * i) + "," + std::to_string(i % 2) + "," +
                        std::to_string(count) + "\n";
            }
        }
        study.state.importPastedData(text);
        study.assign({"g", "seat"}, VariableKind::grouping);
        study.assign({"x", "odd", "y"}, VariableKind::outcome);
    }

    ScreenContent shown(const Settings& further) {
        Settings settings = {{"mlOutcome", R"("y")"}, {"mlCluster", R"("g")"}};
        settings.insert(settings.end(), further.begin(), further.end());
        return study.shown(multilevel, settings);
    }

    ReferenceStudy study{"sleepstudy.csv"};
};

TEST(MultilevelCautions, CallASlopeNearZeroByWhatItMovesNotByItsUnit) {
    for (const double spread : {0.25, 0.0}) {
        CountStudy counts([spread](int g, int i) {
            return std::exp(1.0 + 0.2 * (g % 3) + spread * (g % 4 - 1.5) * i) + (g + i) % 2;
        });
        const ScreenContent content = counts.shown({{"mlFamily", R"("poisson")"},
                                                    {"mlPredictors", R"(["x"])"},
                                                    {"mlRandomSlope", R"("x")"},
                                                    {"mlCorrelateRandom", "false"}});
        EXPECT_EQ(warns(content, "The variance of g (x) is near zero"), spread == 0.0);
    }
}

TEST(MultilevelCautions, TellOfCountsThatHaveNoEnd) {
    CountStudy counts([](int g, int i) { return i % 2 == 1 ? 0.0 : 2.0 + (3 * g + i) % 4; });
    const ScreenContent content =
        counts.shown({{"mlFamily", R"("poisson")"}, {"mlPredictors", R"(["odd"])"}});
    EXPECT_TRUE(warns(
        content, "Standard errors beyond 20 for one standard deviation, of odd, usually mean"));
    EXPECT_EQ(cardOf(content, "Sample and singularity checks"), nullptr);
    const std::string& sentence = content.findings.front().item.apaSummary;
    EXPECT_NE(sentence.find(", RR < 0.01, 95% CI"), std::string::npos) << sentence;
}

TEST(MultilevelCautions, TellOfAFactorWithALevelForEveryCase) {
    CountStudy rows([](int g, int i) { return g % 5 + 7 * i % 4; });
    const auto tells = [&rows] {
        return warns(rows.shown({{"mlStructure", R"("threeLevel")"},
                                 {"mlCluster2", R"("seat")"},
                                 {"mlPredictors", "[]"}}),
                     "Every level of g:seat has a single case, so its variance cannot "
                     "be told from the residual");
    };
    EXPECT_TRUE(tells());
    rows.study.state.importPastedData("g,seat,y\na,1,3\na,1,4\nb,1,2\nb,2,5\nc,1,7\nc,2,6\n");
    rows.study.assign({"g", "seat"}, VariableKind::grouping);
    rows.study.assign({"y"}, VariableKind::outcome);
    EXPECT_FALSE(tells());
}

TEST(MultilevelCautions, AdviseToCenterASlopeWhoseZeroIsFar) {
    struct Case {
        int line;
        double first;
        bool isFromStart;
        bool isCorrelated;
        bool hasOddICC;
        std::string text;
    };
    const std::string independent = "Intercept and slope are taken as independent where time is 0";
    const std::string atBound = "The intercept–slope correlation is at its bound (singular fit)";
    const std::vector<Case> cases = {
        {__LINE__, 2001.0, true, true, true,
         atBound + "; the data do not tell the random effects apart. Center time first (subtract "
                   "its mean), as its zero lies far outside its values; then fit them as "
                   "independent, or leave the slope fixed."},
        {__LINE__, 0.0, true, true, false,
         atBound + "; the data do not tell the random effects apart. Fit them as independent, or "
                   "leave the slope fixed."},
        {__LINE__, 2001.0, false, false, true,
         independent + ", which lies far outside its values; "},
        // Without a variance of the slope it holds everywhere.
        {__LINE__, -2001.0, false, false, false, independent},
        {__LINE__, 2001.0, false, true, true, ""},
        {__LINE__, 1.0, false, false, false, ""}};
    for (const Case& each : cases) {
        SCOPED_TRACE(each.line);
        GrowthStudy growth(each.first, 1.0, 0.3, each.isFromStart);
        const ScreenContent content = growth.shown(each.isCorrelated);
        for (const std::string& piece : {independent, atBound}) {
            EXPECT_EQ(warns(content, piece), each.text.starts_with(piece)) << piece;
        }
        EXPECT_TRUE(each.text.empty() || warns(content, each.text));
        EXPECT_EQ(warns(content, "The intraclass correlation holds where time is 0, which "),
                  each.hasOddICC);
    }
}

}  // namespace
}  // namespace sorvane
