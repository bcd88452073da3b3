#include "SorvaneMac/Review/ReviewInference.h"

#include <gtest/gtest.h>

#include "SorvaneCore/Project/ToJson.h"

namespace sorvane {
namespace {

using namespace ReviewInference;  // NOLINT(google-build-using-namespace)

TEST(ReviewInference, ReadsWhatASentenceTells) {
    const struct {
        int line;
        const char* title;
        const char* summary;
        std::optional<std::string> caution;
        Parsed expected;
    } cases[] = {
        {__LINE__,
         "One-way ANOVA: score by site",
         "F(2, 40) = 5.32, p < .001, η²p = .21",
         std::nullopt,
         {"groupDifference", "One-way ANOVA", "F(2, 40) = 5.32", "p < .001", "η²p = .21", "Large",
          "—", "strong"}},
        {__LINE__,
         "t-test: score by site",
         "t (38) = -2.1, p = .07, d = -0.9, 95% CI [-1.2, 0.1]",
         std::nullopt,
         {"groupDifference", "t-test", "t (38) = -2.1", "p = .07", "d = -0.9", "Large",
          "95% CI [-1.2, 0.1]", "caution"}},
        {__LINE__,
         "Groups compared",
         "The groups were much alike.",
         "Assumptions violated.",
         {"groupDifference", "Group comparison", "—", "—", "—", "—", "—", "moderate"}},
        // A coefficient makes a model of what is a relationship by its other words.
        {__LINE__,
         "Pearson correlation",
         "The correlation coefficient was r = .31, p < .05",
         std::nullopt,
         {"predictiveModel", "Pearson correlation", "r = .31", "p < .05", "r = .31", "Moderate",
          "—", "strong"}},
        {__LINE__,
         "Spearman: a and b",
         "ρ = .2;  p   =  1.0; χ²(1, N = 40) = 3.84",
         std::nullopt,
         {"groupDifference", "Chi-square test", "χ²(1, N = 40) = 3.84", "p  = 1.0", "—", "—", "—",
          "caution"}},
        {__LINE__,
         "Regression of y",
         "R² = .12, β = .35, ps < 0.05, 95% CI: 0.1–0.4",
         std::nullopt,
         {"predictiveModel", "Regression", "β = .35", "ps < 0.05", "R² = .12", "Small",
          "95% CI: 0.1–0.4", "moderate"}},
        // Lower-case r² takes the bounds of r.
        {__LINE__,
         "Linked",
         "They were associated, r² = .12, p = .01",
         std::nullopt,
         {"predictiveModel", "Predictive model", "—", "p = .01", "r² = .12", "Small", "—",
          "moderate"}},
        {__LINE__,
         "Descriptives: age",
         "M = 3.2, SD = 1.1",
         "A small sample.",
         {"descriptive", "Descriptive summary", "—", "—", "—", "—", "—", "caution"}},
        {__LINE__,
         "Ages",
         "M = 3.2",
         "Read with care.",
         {"descriptive", "Descriptive summary", "—", "—", "—", "—", "—", "strong"}},
        {__LINE__,
         "",
         "",
         std::nullopt,
         {"descriptive", "Descriptive summary", "—", "—", "—", "—", "—", "strong"}},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(toJson(parse(each.title, each.summary, each.caution)).dump(),
                  toJson(each.expected).dump())
            << "line " << each.line;
    }
}

TEST(ReviewInference, PutsEffectsIntoTiersByTheirKind) {
    const struct {
        int line;
        const char* text;
        const char* label;
    } cases[] = {
        {__LINE__, "η²p = .0099", "Negligible"},
        {__LINE__, "η² = 0.01", "Small"},
        {__LINE__, "ω² = .06", "Moderate"},
        {__LINE__, "η² = .14", "Large"},
        {__LINE__, "d = 0.19", "Negligible"},
        {__LINE__, "d = -0.5", "Moderate"},
        {__LINE__, "d = .8", "—"},
        {__LINE__, "R² = .13", "Moderate"},
        {__LINE__, "R² = .26", "Large"},
        {__LINE__, "r² = .26", "Small"},
        {__LINE__, "V = .30", "Moderate"},
        {__LINE__, "r = -.49", "Moderate"},
        {__LINE__, "r = 1.00", "—"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(extractEffectSize(each.text).label, each.label) << "line " << each.line;
    }
}

TEST(ReviewInference, LowersAPValueThatIsABound) {
    EXPECT_EQ(extractPValue("p = .05").number, 0.05);
    EXPECT_LT(*extractPValue("p < .05").number, 0.05);
    EXPECT_GT(*extractPValue("p < .05").number, 0.0499);
    EXPECT_EQ(extractPValue("p < .00").number, 0.0);
    EXPECT_EQ(extractPValue("no value"), PValue());
}

TEST(ReviewInference, GivesUpOnATextThatIsMadeToBeSlow) {
    std::string text;
    for (int count = 0; count < 200'000; ++count) {
        text += "F(";
    }
    EXPECT_EQ(extractStatistic(text + ") p = .01"), "");
    EXPECT_EQ(parse(text, text, text).statistic, "—");
}

}  // namespace
}  // namespace sorvane
