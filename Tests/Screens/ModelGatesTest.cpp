#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Tests/Screens/PanelStudy.h"
#include "Tests/Screens/SetupControls.h"

namespace sorvane {
namespace {

using enum StudioScreen;

struct GateCase {
    int line;
    StudioScreen screen;
    Settings settings;
    /// How the screen's answer to a run begins and ends.
    std::string title;
    std::string end;
};

// clang-format off
const std::vector<GateCase> gateCases = {
    {__LINE__, dataPrep, {{"rcSource", R"("gone")"}}, "Nothing to recode yet",
     "Choose a source variable."},
    {__LINE__, dataPrep, {{"rcMode", R"("reverse")"}, {"rcReverseMax", "1"}},
     "Nothing to recode yet", "Scale maximum must exceed the minimum."},
    {__LINE__, dataPrep, {{"prepareSection", R"("compute")"}, {"cvSources", "[]"}},
     "Nothing to compute yet", "Select at least one source variable."},
    {__LINE__, dataPrep,
     {{"prepareSection", R"("compute")"}, {"cvKind", R"("pair")"}, {"cvVarB", R"("")"}},
     "Nothing to compute yet", "Pick two variables to combine."},
    {__LINE__, dataPrep, {{"prepareSection", R"("totalScore")"}}, "Nothing to compute yet",
     "Select at least two numeric variables before creating a score variable."},
    {__LINE__, dataPrep,
     {{"prepareSection", R"("totalScore")"}, {"computedVariableMethod", R"("validCount")"}},
     "Nothing to compute yet",
     "Select at least one numeric variable before creating a count variable."},
    {__LINE__, dataPrep, {{"prepareSection", R"("rename")"}}, "Nothing to rename or delete yet",
     "Choose a variable to rename."},
    {__LINE__, dataPrep, {{"prepareSection", R"("rename")"}, {"dvName", R"("q1")"}},
     "Nothing to rename or delete yet", "Enter the new name first."},
    {__LINE__, dataPrep,
     {{"prepareSection", R"("rename")"}, {"dvName", R"("q1")"}, {"dvNewName", R"(" q1 ")"}},
     "Nothing to rename or delete yet", "q1 already has that name."},
    {__LINE__, dataPrep,
     {{"prepareSection", R"("rename")"}, {"dvName", R"("q1")"}, {"dvNewName", R"("q2")"}},
     "Nothing to rename or delete yet",
     "A variable named q2 already exists. Choose a different name."},
    {__LINE__, dataPrep, {{"prepareSection", R"("imputation")"}, {"impTargets", "[]"}},
     "Nothing to impute yet", "Select at least one variable to impute."},
    {__LINE__, dataPrep, {{"prepareSection", R"("imputation")"}, {"impTargets", R"(["x1"])"}},
     "Nothing to impute yet", "No missing values in the selected variables."},
    {__LINE__, dataPrep, {{"prepareSection", R"("imputation")"}, {"impPredictors", R"(["gone"])"}},
     "A chosen column is missing", ""},
    {__LINE__, sem, {{"semModel", R"(" \n")"}}, "Write a model on the right",
     "Start from a template or tap fields to insert them. The parsed model previews here, then "
     "press Fit model."},
    {__LINE__, sem, {{"semModel", R"("f =~ q1 + q9 + b c")"}}, "Model did not parse",
     "Invalid right-hand side name \"b c\". Check the syntax and that every name matches a numeric "
     "field. Use =~ for factors, ~ for regressions, ~~ for (co)variances."},
    {__LINE__, sem, {{"semModel", R"("f =~ q1 + q9 + q2 + school + q8")"}}, "Unknown field(s)",
     "Not in the dataset: q9, q8. Fix before fitting."},
    {__LINE__, sem, {{"semModel", R"("f =~ q1 + q2 + school")"}},
     "Field(s) without numbers to analyze",
     "Not numeric, or set aside in Variable Types: school. Fix before fitting."},
    {__LINE__, survey, {{"svWeight", R"("")"}}, "Set the sampling weight", ""},
    {__LINE__, survey, {{"svWeight", R"("sick")"}, {"svVar", R"("dead")"}},
     "The weight has values that are no weights",
     "Sampling weights must all be finite and positive."},
    {__LINE__, survey, {{"svStrata", R"("psu")"}}, "Strata and clusters are the same column", ""},
    {__LINE__, survey, {{"svCluster", R"("gone")"}}, "A chosen column is missing", ""},
    {__LINE__, survey, {{"svReplicates", R"(["gone"])"}}, "A chosen column is missing", ""},
    {__LINE__, survey, {{"svReplicates", R"(["weight"])"}}, "The weight is among its own replicates",
     ""},
    {__LINE__, survey, {{"svReplicateScale", R"("one")"}},
     "The scales of the replicates are no numbers", ""},
    {__LINE__, survey, {{"svWeight", R"("late")"}}, "The weight has values that are no weights",
     "2 cases have none."},
    {__LINE__, survey, {{"svFpc", R"("late")"}},
     "The finite population correction has values that are no counts",
     "Finite population correction values must be finite and positive."},
    {__LINE__, survey, {{"svVar", R"("weight")"}}, "A chosen column is missing", ""},
    {__LINE__, survey, {{"svEstimand", R"("other")"}}, "Choose what to estimate", ""},
    {__LINE__, survey, {{"svEstimand", R"("ratio")"}}, "Set the denominator of the ratio", ""},
    {__LINE__, survey, {{"svEstimand", R"("ratio")"}, {"svDenominator", R"("sick")"}},
     "Numerator and denominator are the same column", ""},
    {__LINE__, survey, {{"svGroup", R"("sick")"}}, "The subgroups are the variable itself", ""},
    {__LINE__, multilevel, {{"mlOutcome", R"("")"}}, "Set an outcome and a grouping",
     "Choose Nested, Crossed, Growth, or AR lag; set outcome and grouping; then Run."},
    {__LINE__, multilevel, {{"mlStructure", R"("crossed")"}, {"mlCluster2", R"("school")"}},
     "Set a second grouping", ""},
    {__LINE__, multilevel, {{"mlStructure", R"("growth")"}, {"mlTime", R"("")"}},
     "Set a time variable", ""},
    {__LINE__, multilevel, {{"mlStructure", R"("growth")"}, {"mlTime", R"("sick")"}},
     "One column stands in two places", ""},
    {__LINE__, multilevel, {{"mlStructure", R"("crossed")"}, {"mlRandomSlope", R"("x1")"}},
     "This structure takes no random slope", ""},
    {__LINE__, multilevel, {{"mlStructure", R"("crossed")"}, {"mlFamily", R"("ordinal")"}},
     "Ordinal models take one random intercept", ""},
    {__LINE__, multilevel, {{"mlPredictors", R"(["gone"])"}}, "A chosen column is missing", ""},
    {__LINE__, multilevel, {{"mlRandomSlope", R"("gone")"}}, "A chosen column is missing", ""},
    {__LINE__, latentClass, {{"lcItems", R"(["q1"])"}}, "Select at least two indicators", ""},
    {__LINE__, latentClass, {{"lcClassCount", "4"}}, "There are too few complete cases",
     "Need at least 12 complete cases for a 4-class profile model."},
    {__LINE__, latentClass,
     {{"lcKind", R"("classes")"}, {"lcMode", R"("classAnalysis")"}, {"lcClassCount", "3"}},
     "There are too few complete cases", "Need at least 15 complete cases for a 3-class LCA."},
    {__LINE__, latentClass, {{"lcKind", R"("classes")"}, {"lcMode", R"("classAnalysis")"},
                             {"lcItems", R"(["q1","score"])"}},
     "Select at least two indicators", ""},
    {__LINE__, latentClass, {{"lcKind", R"("factorMixture")"}, {"lcItems", R"(["q1"])"}},
     "Select at least two indicators", ""},
    {__LINE__, survival, {{"survEvent", R"("")"}}, "Set an event indicator", ""},
    {__LINE__, survival, {{"survEvent", R"("days")"}}, "Time and event are the same column",
     "Confirm nonnegative times, a 0/1 (or nonzero) event indicator, and complete cases. Cox needs "
     "at least one predictor."},
    {__LINE__, survival, {{"survMode", R"("cox")"}, {"survPredictors", R"(["days"])"}},
     "No predictors selected", ""},
    {__LINE__, survival, {{"survGroup", R"("dead")"}}, "The strata are the time or the event", ""},
    {__LINE__, survival, {{"survGroup", R"("gone")"}}, "A chosen column is missing", ""},
    {__LINE__, mediation, {{"medM", R"("sick")"}}, "Set X, M and Y",
     "X, M/W, and Y must be distinct numeric variables with enough complete cases."},
    {__LINE__, mediation, {{"medW", R"("dead")"}, {"medMode", R"("moderation")"}},
     "Set X, W and Y", "must be distinct numeric variables with enough complete cases."},
    {__LINE__, mediation, {{"medM", R"("gone")"}}, "A chosen column is missing", ""},
    {__LINE__, mediation, {{"medCovariates", R"(["late","q1","q2","q3","score","visit"])"}},
     "There are too few complete cases", ""},
    {__LINE__, invariance, {{"invItems", R"(["q1","q2"])"}}, "Select at least three items", ""},
    {__LINE__, invariance, {{"invGroup", R"("gone")"}}, "A chosen column is missing", ""},
    {__LINE__, invariance, {}, "A chosen column is missing", ""},
};
// clang-format on

TEST(ModelGates, SayWhatIsMissingAndRunNothing) {
    for (const GateCase& each : gateCases) {
        SCOPED_TRACE(each.line);
        PanelStudy workplace;
        workplace.screens.appear(each.screen);
        workplace.set(each.settings);
        const std::map<std::string, std::string> before = workplace.values();
        Screen& screen = workplace.screens.at(each.screen);
        const std::string answer = screen.run().value_or("");
        EXPECT_TRUE(answer.starts_with(each.title)) << answer;
        EXPECT_TRUE(answer.ends_with(each.end)) << answer;
        EXPECT_TRUE(screen.content().gate->title.starts_with(each.title));
        EXPECT_EQ(workplace.values(), before);
        for (const Control& control : workplace.controls(each.screen)) {
            const auto* button = std::get_if<ButtonControl>(&control);
            EXPECT_FALSE(button && button->isPrimary && button->isEnabled) << button->label;
        }
    }
}

TEST(ModelGates, ABoundThatIsNoNumberCountsAsNoneAndIsPointedOut) {
    PanelStudy workplace;
    workplace.screens.appear(dataQuality);
    workplace.set({{"clLower", R"("one")"}});
    EXPECT_TRUE(workplace.says(dataQuality, "Set a lower and/or upper bound first."));
    workplace.set({{"clUpper", R"(" 1.5 ")"}});
    EXPECT_TRUE(
        workplace.says(dataQuality,
                       "A bound is not a number and counts as none. Write it with digits and a "
                       "decimal point."));
    EXPECT_FALSE(workplace.state.clampLacks().has_value());
}

TEST(ModelGates, ColumnsThatHaveGoneCanBeUnchecked) {
    PanelStudy workplace;
    workplace.set({{"mlPredictors", R"(["gone","x1"])"}});
    const Control control = controlOf(workplace.controls(multilevel), "Predictors");
    const auto& list = std::get<CheckListControl>(control);
    EXPECT_EQ(list.items.back().name, "gone");
    EXPECT_TRUE(list.items.back().isFlagged);
    list.setChecked("gone", false);
    workplace.expectValues({{"mlPredictors", R"(["x1"])"}});
}

}  // namespace
}  // namespace sorvane
