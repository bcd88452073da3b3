#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "SorvaneMac/Screens/Multilevel/MultilevelFields.h"
#include "Tests/Screens/PanelStudy.h"
#include "Tests/Screens/SetupControls.h"

namespace sorvane {
namespace {

using enum StudioScreen;

// clang-format off
const std::vector<SeedCase> seedCases = {
    {__LINE__, dataPrep, {},
     {{"rcSource", R"("sick")"}, {"cvSources", R"(["dead","sick"])"}, {"cvVarA", R"("sick")"},
      {"cvVarB", R"("dead")"}, {"impTargets", R"(["late"])"},
      {"impPredictors", R"(["days","dead","q1","q2","q3","score","sick","visit","x1"])"},
      {"impTarget", R"("late")"}, {"impRegOutcome", R"("sick")"},
      {"impRegPredictors", R"(["days","dead","score","visit"])"}, {"impCorrX", R"("sick")"},
      {"impCorrY", R"("dead")"}}},
    {__LINE__, dataPrep,
     {{"impTargets", R"(["x1"])"}, {"impPredictors", R"(["late"])"}, {"cvVarA", R"("gone")"}},
     {{"impTarget", R"("x1")"}, {"impRegOutcome", R"("x1")"}, {"impRegPredictors", R"(["late"])"},
      {"impCorrX", R"("x1")"}, {"impCorrY", R"("late")"}, {"cvVarA", R"("gone")"},
      {"cvVarB", R"("sick")"}}},
    {__LINE__, dataQuality, {}, {{"clVar", R"("sick")"}}},
    {__LINE__, dataQuality, {{"clVar", R"("gone")"}}, {{"clVar", R"("gone")"}}},
    {__LINE__, sem, {},
     {{"semModel", R"("# lavaan-style syntax: =~ measures, ~ regresses, ~~ covaries\n)"
                   R"(factor =~ sick + dead + days")"}}},
    {__LINE__, sem, {{"semModel", R"("f =~ q1")"}}, {{"semModel", R"("f =~ q1")"}}},
    {__LINE__, survey, {},
     {{"svWeight", R"("weight")"}, {"svVar", R"("sick")"}, {"svStrata", R"("stratum")"},
      {"svCluster", R"("psu")"}}},
    {__LINE__, survey, {{"svWeight", R"("sick")"}, {"svStrata", R"("psu")"}},
     {{"svVar", R"("dead")"}, {"svCluster", R"("")"}}},
    {__LINE__, multilevel, {},
     {{"mlOutcome", R"("sick")"}, {"mlCluster", R"("school")"}, {"mlCluster2", R"("room")"},
      {"mlTime", R"("visit")"},
      {"mlPredictors", R"(["days","dead","late","q1","q2","q3","score","x1"])"}}},
    {__LINE__, multilevel, {{"mlCluster", R"("id")"}, {"mlPredictors", R"(["x1"])"},
                            {"mlRandomSlope", R"("x1")"}},
     {{"mlCluster", R"("id")"}, {"mlCluster2", R"("school")"}, {"mlRandomSlope", R"("x1")"}}},
    {__LINE__, multilevel, {{"mlPredictors", R"(["x1"])"}, {"mlRandomSlope", R"("late")"}},
     {{"mlPredictors", R"(["late","x1"])"}, {"mlRandomSlope", R"("late")"}, {"mlMessage", "null"}}},
    {__LINE__, multilevel, {{"mlStructure", R"("crossed")"}, {"mlPredictors", R"(["x1"])"},
                            {"mlRandomSlope", R"("x1")"}}, {{"mlRandomSlope", R"("")"}}},
    {__LINE__, latentClass, {{"lcClassCount", "9"}},
     {{"lcItems", R"(["days","dead","late","q1","q2","q3","score","sick","visit","x1"])"},
      {"lcClassCount", "5"}}},
    {__LINE__, latentClass, {{"lcMode", R"("classAnalysis")"}, {"lcClassCount", "1"}},
     {{"lcItems", R"(["dead","late","q1","q2","q3","room","school","sick","visit"])"},
      {"lcClassCount", "2"}}},
    {__LINE__, latentClass, {{"lcItems", R"(["gone"])"}, {"lcClassCount", "4"}},
     {{"lcItems", R"(["gone"])"}, {"lcClassCount", "4"}}},
    {__LINE__, survival, {},
     {{"survTime", R"("days")"}, {"survEvent", R"("dead")"},
      {"survPredictors", R"(["late","q1","q2","q3","score","sick","visit","x1"])"},
      {"survGroup", R"("school")"}}},
    {__LINE__, survival, {{"survTime", R"("dead")"}}, {{"survEvent", R"("sick")"}}},
    {__LINE__, mediation, {{"medCovariates", R"(["x1"])"}},
     {{"medX", R"("sick")"}, {"medY", R"("dead")"}, {"medM", R"("days")"}, {"medW", R"("visit")"},
      {"medCovariates", R"(["x1"])"}}},
    {__LINE__, mediation, {{"medX", R"("dead")"}, {"medM", R"("gone")"}},
     {{"medY", R"("sick")"}, {"medM", R"("gone")"}, {"medW", R"("days")"}}},
    {__LINE__, invariance, {},
     {{"invItems", R"(["dead","late","q1","q2","room","school","sick","visit"])"},
      {"invGroup", R"("q3")"}}},
    {__LINE__, survival, {{"survPredictors", R"(["school"])"}}, {{"survGroup", R"("room")"}}},
    {__LINE__, invariance, {{"invItems", R"(["school","q1"])"}}, {{"invGroup", R"("room")"}}},
};
// clang-format on

TEST(ModelScreens, SeedFillsWhatIsBlankAndKeepsTheRest) {
    for (const SeedCase& each : seedCases) {
        SCOPED_TRACE(each.line);
        PanelStudy workplace;
        workplace.set(each.given);
        workplace.screens.appear(each.screen);
        workplace.expectValues(each.expected);
    }
}

TEST(ModelScreens, StrataThatWereMadeBlankStayBlankUntilANewTable) {
    for (const bool isSeenFirst : {true, false}) {
        PanelStudy workplace;
        if (isSeenFirst) {
            workplace.screens.appear(survival);
        }
        workplace.set({{"survGroup", R"("")"}});
        for (int time = 0; time < 2; ++time) {
            workplace.screens.appear(survival);
            workplace.expectValues({{"survTime", R"("days")"}, {"survGroup", R"("")"}});
        }
        workplace.state.importPastedData("days,dead,arm\n1,0,a\n2,1,b\n3,1,a\n4,0,b\n");
        workplace.assign({"arm"}, VariableKind::grouping);
        workplace.screens.appear(survival);
        workplace.expectValues({{"survGroup", R"("arm")"}});
    }
}

TEST(ModelScreens, SeedOfAnEmptyTableLeavesAllBlank) {
    StudioState state{std::filesystem::path(SORVANE_SOURCE_DIR "/Resources")};
    StudioScreens screens{state};
    for (const AnyField* field : state.fields.fields()) {
        EXPECT_TRUE(field->isAtStart()) << field->name();
    }
    for (const SeedCase& each : seedCases) {
        screens.appear(each.screen);
        EXPECT_EQ(screens.at(each.screen).content().gate->title, "No dataset loaded") << each.line;
        screens.at(each.screen).setup();
    }
    for (const AnyField* field : state.fields.fields()) {
        EXPECT_TRUE(field->isAtStart()) << field->name();
    }
}

struct FormCase {
    int line;
    StudioScreen screen;
    Settings mode;
    /// The label of each control, and the field that it changes; blank for a button.
    std::vector<std::pair<std::string, std::string>> controls;
};

// clang-format off
const std::vector<FormCase> formCases = {
    {__LINE__, dataPrep, {},
     {{"What to do", "prepareSection"}, {"Source variable", "rcSource"}, {"Recode by", "rcMode"},
      {"Old values", "rcDraft"}, {"New value", "rcDraft"}, {"Add rule", ""},
      {"Keep values that no rule matches", "rcCopyUnmatched"},
      {"Replace the source variable", "rcReplace"}, {"Name of the new variable", "rcName"},
      {"Recode", ""}}},
    {__LINE__, dataPrep, {{"rcMode", R"("range")"}, {"rcReplace", "true"}},
     {{"What to do", "prepareSection"}, {"Source variable", "rcSource"}, {"Recode by", "rcMode"},
      {"From", "rcDraft"}, {"The lower bound belongs to the band", "rcDraft"}, {"To", "rcDraft"},
      {"The upper bound belongs to the band", "rcDraft"}, {"New value", "rcDraft"},
      {"Add band", ""}, {"Keep values that no rule matches", "rcCopyUnmatched"},
      {"Replace the source variable", "rcReplace"}, {"Recode", ""}}},
    {__LINE__, dataPrep, {{"rcMode", R"("reverse")"}, {"rcReplace", "true"}},
     {{"What to do", "prepareSection"}, {"Source variable", "rcSource"}, {"Recode by", "rcMode"},
      {"Scale minimum", "rcReverseMin"}, {"Scale maximum", "rcReverseMax"},
      {"Replace the source variable", "rcReplace"}, {"Recode", ""}}},
    {__LINE__, dataPrep, {{"prepareSection", R"("compute")"}},
     {{"What to do", "prepareSection"}, {"Compute from", "cvKind"}, {"Operation", "cvAggOp"},
      {"Source variables", "cvSources"}, {"Minimum completion", "cvMinCompletion"},
      {"Name of the new variable", "cvName"}, {"Compute", ""}}},
    {__LINE__, dataPrep, {{"prepareSection", R"("compute")"}, {"cvKind", R"("pair")"}},
     {{"What to do", "prepareSection"}, {"Compute from", "cvKind"}, {"Operation", "cvPairOp"},
      {"A", "cvVarA"}, {"B", "cvVarB"}, {"Name of the new variable", "cvName"}, {"Compute", ""}}},
    {__LINE__, dataPrep, {{"prepareSection", R"("totalScore")"}},
     {{"What to do", "prepareSection"}, {"Score", "computedVariableMethod"},
      {"Variables to combine", "selectedComputedVariableIDs"},
      {"Minimum completion", "computedVariableMinimumCompletion"},
      {"Name of the new variable", "computedVariableName"}, {"Create score", ""}}},
    {__LINE__, dataPrep, {{"prepareSection", R"("bands")"}},
     {{"What to do", "prepareSection"}, {"Source variable", "selectedBinningVariableName"},
      {"Method", "binningMethod"}, {"Bands", "binningBinCount"},
      {"Name of the new variable", "binnedVariableName"}, {"Create groups", ""}}},
    {__LINE__, dataPrep, {{"prepareSection", R"("imputation")"}},
     {{"What to do", "prepareSection"}, {"Method", "impMethod"}, {"Imputed copies", "impM"},
      {"Variables to impute", "impTargets"}, {"Predictors of the missing values", "impPredictors"},
      {"Run imputation", ""}, {"Analysis", "impAnalysis"}, {"Outcome", "impRegOutcome"},
      {"Predictors", "impRegPredictors"}, {"Run pooled analysis", ""}}},
    {__LINE__, dataPrep, {{"prepareSection", R"("imputation")"}, {"impMethod", R"("median")"}},
     {{"What to do", "prepareSection"}, {"Method", "impMethod"},
      {"Variables to impute", "impTargets"}, {"Predictors of the missing values", "impPredictors"},
      {"Run imputation", ""}}},
    {__LINE__, dataPrep, {{"prepareSection", R"("rename")"}},
     {{"What to do", "prepareSection"}, {"Variable", "dvName"}, {"New name", "dvNewName"},
      {"Rename", ""}, {"Delete variable", ""}}},
    {__LINE__, dataQuality, {},
     {{"Variable", "clVar"}, {"Outliers", "clOutlierMethod"}, {"Lowest valid value", "clLower"},
      {"Highest valid value", "clUpper"}, {"Set out-of-range to missing", ""},
      {"Compare by (none: every cell)", "clKeyColumns"}, {"Groups", "clGroup"},
      {"Compare with the population", "clCompositionVar"}}},
    {__LINE__, sem, {},
     {{"Model text", "semModel"}, {"Insert a field", "semModel"}, {"Fit model", ""},
      {"One-factor CFA", ""}, {"Multi-factor CFA", ""}, {"Mediation path model", ""}}},
    {__LINE__, survey, {},
     {{"Weight", "svWeight"}, {"Strata", "svStrata"}, {"Clusters (PSUs)", "svCluster"},
      {"PSUs in the population (fpc)", "svFpc"}, {"Analysis", "svAnalysis"},
      {"Variable", "svVar"}, {"Estimand", "svEstimand"},
      {"By subgroup", "svGroup"}, {"Confidence level", "svConfidence"}, {"Estimate", ""},
      {"Use these weights elsewhere", "surveyWeightsActive"},
      {"In place of strata and clusters", "svReplicates"}}},
    {__LINE__, survey,
     {{"svEstimand", R"("ratio")"}, {"svReplicates", R"(["x1"])"},
      {"svReplicateType", R"("fayBRR")"}},
     {{"Weight", "svWeight"}, {"Strata", "svStrata"}, {"Clusters (PSUs)", "svCluster"},
      {"PSUs in the population (fpc)", "svFpc"}, {"Analysis", "svAnalysis"},
      {"Variable", "svVar"}, {"Estimand", "svEstimand"},
      {"Denominator", "svDenominator"}, {"By subgroup", "svGroup"},
      {"Confidence level", "svConfidence"}, {"Estimate", ""},
      {"Use these weights elsewhere", "surveyWeightsActive"},
      {"In place of strata and clusters", "svReplicates"}, {"Replication", "svReplicateType"},
      {"Fay factor", "svFayRho"}, {"Scales of the replicates", "svReplicateScale"}}},
    {__LINE__, survey, {{"svAnalysis", R"("ordinal")"}},
     {{"Weight", "svWeight"}, {"Strata", "svStrata"}, {"Clusters (PSUs)", "svCluster"},
      {"PSUs in the population (fpc)", "svFpc"}, {"Analysis", "svAnalysis"},
      {"Outcome", "svOutcome"}, {"Predictors", "svPredictors"},
      {"Confidence level", "svConfidence"}, {"Run regression", ""},
      {"Use these weights elsewhere", "surveyWeightsActive"},
      {"In place of strata and clusters", "svReplicates"}}},
    {__LINE__, survey, {{"svAnalysis", R"("crosstab")"}},
     {{"Weight", "svWeight"}, {"Strata", "svStrata"}, {"Clusters (PSUs)", "svCluster"},
      {"PSUs in the population (fpc)", "svFpc"}, {"Analysis", "svAnalysis"},
      {"Rows", "svRowCat"}, {"Columns", "svColCat"},
      {"Confidence level", "svConfidence"}, {"Run crosstab", ""},
      {"Use these weights elsewhere", "surveyWeightsActive"},
      {"In place of strata and clusters", "svReplicates"}}},
    {__LINE__, multilevel, {{"mlPredictors", R"(["x1","q1"])"}, {"mlRandomSlope", R"("x1")"}},
     {{"Structure", "mlStructure"}, {"Outcome family", "mlFamily"}, {"Outcome", "mlOutcome"},
      {"Grouping (cluster)", "mlCluster"}, {"Predictors", "mlPredictors"},
      {"Random slope", "mlRandomSlope"},
      {"Intercept and slope may correlate", "mlCorrelateRandom"}, {"Estimator", "mlEstimator"},
      {"p values from", "mlDFMethod"}, {"Run multilevel model", ""}}},
    {__LINE__, multilevel, {{"mlStructure", R"("threeLevel")"}, {"mlFamily", R"("poisson")"}},
     {{"Structure", "mlStructure"}, {"Outcome family", "mlFamily"}, {"Outcome", "mlOutcome"},
      {"Outer grouping (level 3)", "mlCluster"}, {"Inner grouping (level 2)", "mlCluster2"},
      {"Predictors", "mlPredictors"}, {"Run multilevel model", ""}}},
    {__LINE__, multilevel, {{"mlStructure", R"("growth")"}},
     {{"Structure", "mlStructure"}, {"Outcome family", "mlFamily"}, {"Outcome", "mlOutcome"},
      {"Person or unit measured repeatedly", "mlCluster"}, {"Time", "mlTime"},
      {"Predictors", "mlPredictors"}, {"Intercept and slope may correlate", "mlCorrelateRandom"},
      {"Estimator", "mlEstimator"}, {"p values from", "mlDFMethod"}, {"Run multilevel model", ""}}},
    {__LINE__, latentClass, {},
     {{"Kind of classes", "lcKind"}, {"Indicators", "lcItems"}, {"Classes", "lcClassCount"},
      {"Run latent profiles", ""}, {"Compare 2–6 classes", ""}}},
    {__LINE__, latentClass, {{"lcKind", R"("factorMixture")"}},
     {{"Kind of classes", "lcKind"}, {"Indicators", "lcItems"}, {"Classes", "lcClassCount"},
      {"Run factor mixture", ""}, {"Compare 2–6 classes", ""}}},
    {__LINE__, survival, {},
     {{"Analysis", "survMode"}, {"Time to event or to end of observation", "survTime"},
      {"Event (0 = censored)", "survEvent"}, {"Strata", "survGroup"},
      {"Estimate Kaplan–Meier", ""}}},
    {__LINE__, survival, {{"survMode", R"("cox")"}},
     {{"Analysis", "survMode"}, {"Time to event or to end of observation", "survTime"},
      {"Event (0 = censored)", "survEvent"}, {"Predictors", "survPredictors"},
      {"Fit Cox model", ""}}},
    {__LINE__, mediation, {},
     {{"Analysis", "medMode"}, {"Predictor (X)", "medX"}, {"Mediator (M)", "medM"},
      {"Outcome (Y)", "medY"}, {"Covariates", "medCovariates"}, {"Run mediation", ""}}},
    {__LINE__, mediation, {{"medMode", R"("moderation")"}},
     {{"Analysis", "medMode"}, {"Predictor (X)", "medX"}, {"Moderator (W)", "medW"},
      {"Outcome (Y)", "medY"}, {"Covariates", "medCovariates"}, {"Run moderation", ""}}},
    {__LINE__, invariance, {},
     {{"Groups to compare", "invGroup"}, {"Items of the factor", "invItems"},
      {"Run invariance", ""}}},
};
// clang-format on

TEST(ModelScreens, FormShowsWhatTheModeNeeds) {
    for (const FormCase& each : formCases) {
        SCOPED_TRACE(each.line);
        PanelStudy workplace;
        workplace.set(each.mode);
        workplace.screens.appear(each.screen);
        std::vector<std::string> expected;
        for (const auto& control : each.controls) {
            expected.push_back(control.first);
        }
        EXPECT_EQ(labelsOf(workplace.controls(each.screen)), expected);
    }
}

TEST(ModelScreens, EachControlChangesItsFieldAndNoOther) {
    for (const FormCase& each : formCases) {
        for (const auto& [label, field] : each.controls) {
            if (field.empty()) {
                continue;
            }
            SCOPED_TRACE(std::to_string(each.line) + " " + label);
            PanelStudy workplace;
            workplace.set(each.mode);
            workplace.screens.appear(each.screen);
            const std::map<std::string, std::string> before = workplace.values();
            change(controlOf(workplace.controls(each.screen), label));
            EXPECT_NE(workplace.value(field), before.at(field));
            for (const auto& [name, now] : workplace.values()) {
                // What the structure forbids goes with it, a slope becomes a predictor, and the
                // kind brings its mode.
                const bool isFollower = name == "mlRandomSlope" || name == "mlMessage" ||
                                        name == "lcMode" ||
                                        (field == "mlRandomSlope" && name == "mlPredictors");
                EXPECT_TRUE(name == field || isFollower || now == before.at(name)) << name;
            }
        }
    }
}

TEST(ModelScreens, ASlopeThatTheModelForbidsGoesAtOnce) {
    const auto slopeAfter = [](const std::string& label, auto change) {
        PanelStudy workplace;
        workplace.set({{"mlPredictors", R"(["q1","x1"])"}, {"mlRandomSlope", R"("x1")"}});
        workplace.screens.appear(multilevel);
        const Control control = controlOf(workplace.controls(multilevel), label);
        change(control);
        return workplace.value("mlRandomSlope");
    };
    const auto check = [](const Control& control, const std::string& name, bool isChecked) {
        std::get<CheckListControl>(control).setChecked(name, isChecked);
    };
    const auto choose = [](const Control& control, const std::string& text) {
        const auto& choice = std::get<ChoiceControl>(control);
        const auto at = std::ranges::find(choice.choices, text);
        choice.set(static_cast<std::size_t>(at - choice.choices.begin()));
    };
    const std::string kept = R"("x1")";
    const std::string none = R"("")";
    EXPECT_EQ(slopeAfter("Predictors", [&](auto& c) { check(c, "x1", false); }), none);
    EXPECT_EQ(slopeAfter("Predictors", [&](auto& c) { check(c, "q1", false); }), kept);
    EXPECT_EQ(slopeAfter("Predictors",
                         [](auto& c) {
                             std::get<CheckListControl>(c).setAll({"q1", "x1"}, false);
                         }),
              none);
    EXPECT_EQ(slopeAfter("Outcome", [&](auto& c) { choose(c, "x1"); }), none);
    EXPECT_EQ(slopeAfter(
                  "Outcome family",
                  [&](auto& c) { choose(c, std::string(displayName(MultilevelFamily::ordinal))); }),
              none);
    EXPECT_EQ(slopeAfter(
                  "Outcome family",
                  [&](auto& c) { choose(c, std::string(displayName(MultilevelFamily::poisson))); }),
              kept);
    EXPECT_EQ(slopeAfter("Structure", [&](auto& c) { choose(c, "Crossed"); }), none);
}

TEST(ModelScreens, AChosenSlopeBecomesAPredictor) {
    PanelStudy workplace;
    workplace.set({{"mlPredictors", R"(["q1"])"}});
    workplace.screens.appear(multilevel);
    const Control control = controlOf(workplace.controls(multilevel), "Random slope");
    const auto& choice = std::get<ChoiceControl>(control);
    const auto at = std::ranges::find(choice.choices, "x1");
    ASSERT_NE(at, choice.choices.end());
    choice.set(static_cast<std::size_t>(at - choice.choices.begin()));
    workplace.expectValues({{"mlRandomSlope", R"("x1")"}, {"mlPredictors", R"(["q1","x1"])"}});
}

}  // namespace
}  // namespace sorvane
