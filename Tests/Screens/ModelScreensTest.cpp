#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "SorvaneMac/Screens/Structural/StructuralModelText.h"
#include "SorvaneMac/State/RecodeDrafts.h"
#include "Tests/Screens/ScreenWorkplace.h"

namespace sorvane {
namespace {

using enum StudioScreen;

constexpr std::string_view panel =
    "id,school,room,sick,dead,days,visit,score,x1,late,q1,q2,q3,weight,psu,stratum\n"
    "1,north,a,0,0,12,1,1.5,2,NA,1,2,1,1.2,1,u\n"
    "1,north,a,1,1,30,2,2.5,4,3,2,3,2,0.8,1,u\n"
    "2,north,b,0,0,25,1,3.5,3,4,3,4,3,1.1,2,u\n"
    "2,north,b,1,1,7,2,4.5,5,NA,4,1,4,0.9,2,u\n"
    "3,south,a,0,1,18,1,5.5,7,6,1,2,2,1,3,r\n"
    "3,south,a,1,0,40,2,6.5,6,2,2,3,1,1.3,3,r\n"
    "4,south,b,0,1,33,1,7.5,9,8,3,4,4,0.7,4,r\n"
    "4,south,b,1,0,21,2,8.5,8,1,4,1,3,1,4,r\n"
    "5,west,c,0,0,50,1,9.5,10,5,1,2,2,1,5,r\n"
    "5,west,c,1,1,60,2,10.5,11,7,2,3,3,1,5,r\n";

/// A workspace of its own with repeated measurements of five persons.
class Workplace : public ScreenWorkplace {
public:
    Workplace() {
        state.importPastedData(panel);
        assign({"school", "room"}, VariableKind::grouping);
        assign({"id", "weight", "psu", "stratum"}, VariableKind::administrative);
        assign({"sick", "dead"}, VariableKind::status);
        assign({"days", "visit", "score", "x1", "late"}, VariableKind::outcome);
        assign({"q1", "q2", "q3"}, VariableKind::psychometricItem);
    }
    std::vector<Control> controls(StudioScreen id) { return screens.at(id).setup().controls; }
    bool says(StudioScreen id, const std::string& text) {
        return std::ranges::any_of(controls(id), [&text](const Control& control) {
            const auto* note = std::get_if<NoteControl>(&control);
            return note && note->text == text;
        });
    }
};

std::string labelOf(const Control& control) {
    return std::visit(
        [](const auto& each) -> std::string {
            if constexpr (requires { each.label; }) {
                return each.label;
            } else {
                return {};
            }
        },
        control);
}

Control controlOf(const std::vector<Control>& controls, const std::string& label) {
    for (const Control& control : controls) {
        if (labelOf(control) == label) {
            return control;
        }
    }
    throw std::out_of_range(label);
}

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
     {{"mlRandomSlope", R"("")"}, {"mlMessage", R"("late no longer has a random slope: it is not among the predictors. Choose )"
                    R"(it under Random slope to make it both.")"}}},
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
        Workplace workplace;
        workplace.set(each.given);
        workplace.screens.appear(each.screen);
        workplace.expectValues(each.expected);
    }
}

TEST(ModelScreens, StrataThatWereMadeBlankStayBlankUntilANewTable) {
    for (const bool isSeenFirst : {true, false}) {
        Workplace workplace;
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
      {"Highest valid value", "clUpper"}, {"Set out-of-range values to missing", ""},
      {"Compare by (none: every cell)", "clKeyColumns"}, {"Groups", "clGroup"},
      {"Compare with the population", "clCompositionVar"}}},
    {__LINE__, sem, {},
     {{"Model text", "semModel"}, {"Insert a field", "semModel"}, {"Fit model", ""},
      {"One-factor CFA", ""}, {"Multi-factor CFA", ""}, {"Mediation path model", ""}}},
    {__LINE__, survey, {},
     {{"Weight", "svWeight"}, {"Strata", "svStrata"}, {"Clusters (PSUs)", "svCluster"},
      {"PSUs in the population (fpc)", "svFpc"}, {"Variable", "svVar"}, {"Estimand", "svEstimand"},
      {"By subgroup", "svGroup"}, {"Confidence level", "svConfidence"}, {"Estimate", ""},
      {"Use these weights elsewhere", "surveyWeightsActive"},
      {"In place of strata and clusters", "svReplicates"}}},
    {__LINE__, survey,
     {{"svEstimand", R"("ratio")"}, {"svReplicates", R"(["x1"])"},
      {"svReplicateType", R"("fayBRR")"}},
     {{"Weight", "svWeight"}, {"Strata", "svStrata"}, {"Clusters (PSUs)", "svCluster"},
      {"PSUs in the population (fpc)", "svFpc"}, {"Variable", "svVar"}, {"Estimand", "svEstimand"},
      {"Denominator", "svDenominator"}, {"By subgroup", "svGroup"},
      {"Confidence level", "svConfidence"}, {"Estimate", ""},
      {"Use these weights elsewhere", "surveyWeightsActive"},
      {"In place of strata and clusters", "svReplicates"}, {"Replication", "svReplicateType"},
      {"Fay factor", "svFayRho"}, {"Scales of the replicates", "svReplicateScale"}}},
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

/// Sets the control to something else than it is at.
void change(const Control& control) {
    if (const auto* choice = std::get_if<ChoiceControl>(&control)) {
        ASSERT_GE(choice->choices.size(), 2U) << choice->label;
        choice->set(choice->selected == 0U ? choice->choices.size() - 1 : 0U);
    } else if (const auto* list = std::get_if<CheckListControl>(&control)) {
        ASSERT_FALSE(list->items.empty()) << list->label;
        list->setChecked(list->items.back().name, !list->items.back().isChecked);
    } else if (const auto* number = std::get_if<NumberControl>(&control)) {
        number->set(number->value > number->minimum ? number->minimum : number->maximum);
    } else if (const auto* toggle = std::get_if<ToggleControl>(&control)) {
        toggle->set(!toggle->isOn);
    } else if (const auto* text = std::get_if<TextControl>(&control)) {
        text->set(text->text + "1");
    }
}

TEST(ModelScreens, FormShowsWhatTheModeNeeds) {
    for (const FormCase& each : formCases) {
        SCOPED_TRACE(each.line);
        Workplace workplace;
        workplace.set(each.mode);
        workplace.screens.appear(each.screen);
        std::vector<std::string> labels;
        for (const Control& control : workplace.controls(each.screen)) {
            if (const std::string label = labelOf(control); !label.empty()) {
                labels.push_back(label);
            }
        }
        std::vector<std::string> expected;
        for (const auto& control : each.controls) {
            expected.push_back(control.first);
        }
        EXPECT_EQ(labels, expected);
    }
}

TEST(ModelScreens, EachControlChangesItsFieldAndNoOther) {
    for (const FormCase& each : formCases) {
        for (const auto& [label, field] : each.controls) {
            if (field.empty()) {
                continue;
            }
            SCOPED_TRACE(std::to_string(each.line) + " " + label);
            Workplace workplace;
            workplace.set(each.mode);
            workplace.screens.appear(each.screen);
            const std::map<std::string, Json> before = workplace.values();
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
        Workplace workplace;
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
    const Json kept = "x1";
    const Json none = "";
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
    Workplace workplace;
    workplace.set({{"mlPredictors", R"(["q1"])"}});
    workplace.screens.appear(multilevel);
    const Control control = controlOf(workplace.controls(multilevel), "Random slope");
    const auto& choice = std::get<ChoiceControl>(control);
    const auto at = std::ranges::find(choice.choices, "x1");
    ASSERT_NE(at, choice.choices.end());
    choice.set(static_cast<std::size_t>(at - choice.choices.begin()));
    workplace.expectValues({{"mlRandomSlope", R"("x1")"}, {"mlPredictors", R"(["q1","x1"])"}});
}

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

TEST(ModelScreens, SayWhatIsMissingAndRunNothing) {
    for (const GateCase& each : gateCases) {
        SCOPED_TRACE(each.line);
        Workplace workplace;
        workplace.screens.appear(each.screen);
        workplace.set(each.settings);
        const std::map<std::string, Json> before = workplace.values();
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

TEST(ModelScreens, ABoundThatIsNoNumberCountsAsNoneAndIsPointedOut) {
    Workplace workplace;
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

TEST(ModelScreens, ColumnsThatHaveGoneCanBeUnchecked) {
    Workplace workplace;
    workplace.set({{"mlPredictors", R"(["gone","x1"])"}});
    const Control control = controlOf(workplace.controls(multilevel), "Predictors");
    const auto& list = std::get<CheckListControl>(control);
    EXPECT_EQ(list.items.back().name, "gone");
    EXPECT_TRUE(list.items.back().isFlagged);
    list.setChecked("gone", false);
    workplace.expectValues({{"mlPredictors", R"(["x1"])"}});
}

TEST(ModelScreens, RecodingRulesAreTypedAddedAndRemoved) {
    Workplace workplace;
    workplace.set({{"rcDraft", R"({"sources":"1, 2","lower":"","upper":"","lowerInclusive":true,)"
                               R"("upperInclusive":true,"output":"9"})"}});
    std::get<ButtonControl>(controlOf(workplace.controls(dataPrep), "Add rule")).press();
    workplace.expectValues({{"rcDraft", toJson(RecodeDraft()).dump()}});
    const auto& rules = workplace.state.editor.rcValueRules;
    ASSERT_EQ(rules->size(), 1U);
    EXPECT_EQ(rules->front().sources, (std::vector<double>{1.0, 2.0}));
    EXPECT_EQ(rules->front().output, 9.0);
    std::get<ButtonControl>(controlOf(workplace.controls(dataPrep), "Remove 1, 2 → 9")).press();
    EXPECT_TRUE(rules->empty());
}

TEST(RecodeDrafts, TakeOnlyWholeRules) {
    using RecodeDrafts::rangeRule;
    using RecodeDrafts::valueRule;
    EXPECT_EQ(RecodeDrafts::text(*valueRule({.sources = "-1.5"})), "-1.5 → missing");
    for (const std::string text : {"", "1,", "1, x", "nan", "1;2"}) {
        EXPECT_FALSE(valueRule({.sources = text})) << text;
    }
    EXPECT_FALSE(valueRule({.sources = "1", .output = "x"}));
    EXPECT_EQ(RecodeDrafts::text(*rangeRule(
                  {.lower = "18", .upper = "30", .upperInclusive = false, .output = "1"})),
              "18 ≤ x < 30 → 1");
    EXPECT_TRUE(rangeRule({.lower = "3", .upper = "3"}));
    EXPECT_FALSE(rangeRule({.lower = "3", .upper = "3", .lowerInclusive = false}));
    EXPECT_FALSE(rangeRule({.lower = "4", .upper = "3"}));
    EXPECT_FALSE(rangeRule({.lower = "4"}));
}

TEST(StructuralModelText, QuotesWhatTheSyntaxCouldNotTake) {
    using StructuralModelText::quotedName;
    for (const std::string name : {"x1", "x_1", "größe", "Ж"}) {
        EXPECT_EQ(quotedName(name), name);
    }
    for (const std::string name : {"_x", "1x", "a b", "a-b", "a.b", ""}) {
        EXPECT_EQ(quotedName(name), "`" + name + "`");
    }
}

TEST(StructuralModelText, WritesModelsOfTheFirstColumns) {
    using enum StructuralModelText::Template;
    using StructuralModelText::filled;
    const std::vector<std::string> names = {"a", "b c", "d", "e", "f", "g"};
    EXPECT_EQ(StructuralModelText::starter({"a", "b"}), "factor =~ item1 + item2 + item3");
    EXPECT_EQ(filled(oneFactor, names), "# One-factor CFA\nfactor =~ a + `b c` + d");
    EXPECT_EQ(filled(twoFactors, {"a", "b", "c"}),
              "# Multi-factor CFA\nfactorA =~ a + b + c\nfactorB =~ item4 + item5 + item6");
    EXPECT_EQ(filled(mediation, names), "# a -> `b c` -> d\n`b c` ~ a\nd ~ `b c` + a");
}

TEST(StructuralModelText, InsertsANameWhereOneIsAwaited) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"", "x"},
        {"f =~", "f =~ x"},
        {"f =~ ", "f =~ x"},
        {"y ~", "y ~ x"},
        {"f =~ a", "f =~ a + x"},
        {"f =~ a ", "f =~ a + x"},
        {"f =~ a +", "f =~ a + x"},
        {"f =~ a\n", "f =~ a\nx"},
        {"f =~ a # note", "f =~ a # note\nx"},
        {"# a; f =~ b", "# a; f =~ b + x"},
        {"f =~ `a#b`", "f =~ `a#b` + x"},
        {"f =~ 1*", "f =~ 1*x"},
        {"f =~ a + 0.5* ", "f =~ a + 0.5*x"}};
    for (const auto& [before, after] : cases) {
        EXPECT_EQ(StructuralModelText::withName(before, "x"), after);
    }
}

TEST(StructuralModelText, FollowsAColumnThatIsRenamed) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"f =~ x + x1 + 0.5*x", "f =~ `a b` + x1 + 0.5*`a b`"},
        {"x~`x` # x; y ~~ x\nx.y ~ `x y`", "`a b`~`a b` # x; y ~~ `a b`\nx.y ~ `x y`"},
        {"f =~ x +", "f =~ `a b` +"},
        {"f =~ `x", "f =~ `x"},
        {"x =~ a + b\ny ~ x", "x =~ a + b\ny ~ x"},
        {"`a b` =~ x + y", "`a b` =~ x + y"},
        {"größe ~ x # `x", "größe ~ `a b` # `x"}};
    for (const auto& [before, after] : cases) {
        EXPECT_EQ(StructuralModelText::withRenamed(before, "x", "a b"), after);
    }
    EXPECT_EQ(StructuralModelText::withRenamed("f =~ `a b` + c", "a b", "x"), "f =~ x + c");
}

}  // namespace
}  // namespace sorvane
