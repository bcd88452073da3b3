#include <filesystem>

#include <gtest/gtest.h>

#include "Tests/Screens/ScreenWorkplace.h"
#include "Tests/Screens/SetupControls.h"

namespace sorvane {
namespace {

using enum StudioScreen;

/// A workspace of its own, with a small study when asked.
class Study : public ScreenWorkplace {
public:
    /// Five numeric outcomes and three grouping columns; "late" is there for one case of "east".
    void paste() {
        state.importPastedData(
            "site,pre,post,third,fourth,late,sex,passed\n"
            "north,1.5,2.5,3,1,NA,f,no\n"
            "south,2.5,3.5,1,2,NA,m,yes\n"
            "north,3.5,1.5,2,3,NA,f,yes\n"
            "south,4.5,5.5,4,5,NA,m,no\n"
            "east,5.5,4.5,6,4,7.5,f,no\n"
            "north,6.5,7.5,5,6,NA,f,yes\n"
            "south,7.5,6.5,7,9,NA,m,yes\n"
            "north,8.5,9.5,8,7,NA,m,no\n");
        assign({"pre", "post", "third", "fourth", "late"}, VariableKind::outcome);
        assign({"site", "sex", "passed"}, VariableKind::grouping);
    }
    /// The field that holds a screen's mode; does nothing where it has one mode only.
    void setMode(const std::string& field, const std::string& mode) {
        if (!field.empty()) {
            set({{field, "\"" + mode + "\""}});
        }
    }
};

const Settings seededNonparametric = {
    {"npOutcome", R"("pre")"}, {"npGroup", R"("site")"},
    {"npG1", R"("north")"},    {"npG2", R"("south")"},
    {"npBefore", R"("pre")"},  {"npAfter", R"("post")"},
    {"npRowCat", R"("site")"}, {"npColCat", R"("sex")"},
    {"npGoFVar", R"("site")"}, {"npFriedmanItems", R"(["post","pre","third"])"},
};

// clang-format off
const std::vector<SeedCase> seedCases = {
    {__LINE__, inferential, {},
     {{"cmOutcome", R"("pre")"}, {"cmGrouping", R"("site")"}, {"cmGroup1", R"("north")"},
      {"cmGroup2", R"("south")"}, {"rmColumns", R"(["post","pre","third"])"},
      {"cmPairBefore", R"("")"}, {"cmAncovaOutcome", R"("")"}, {"cmAncovaCovariates", "[]"}}},
    {__LINE__, inferential,
     {{"cmOutcome", R"("gone")"}, {"cmGrouping", R"("gone")"}, {"cmGroup1", R"("x")"},
      {"cmGroup2", R"("y")"}, {"rmColumns", R"(["gone"])"}},
     {{"cmOutcome", R"("gone")"}, {"cmGrouping", R"("gone")"}, {"cmGroup1", R"("x")"},
      {"cmGroup2", R"("y")"}, {"rmColumns", R"(["gone"])"}}},
    {__LINE__, inferential, {{"cmGroup1", R"("f")"}, {"cmGroup2", R"("north")"}},
     {{"cmGroup1", R"("south")"}, {"cmGroup2", R"("north")"}}},
    {__LINE__, inferential, {{"cmGroup1", R"("east")"}, {"cmGroup2", R"("f")"}},
     {{"cmGroup1", R"("east")"}, {"cmGroup2", R"("north")"}}},
    {__LINE__, nonparametric, {}, seededNonparametric},
    {__LINE__, categoricalTests, {}, seededNonparametric},
    {__LINE__, nonparametric,
     {{"npGroup", R"("sex")"}, {"npG2", R"("other")"}, {"npAfter", R"("pre")"},
      {"npColCat", R"("site")"}},
     {{"npG1", R"("f")"}, {"npG2", R"("other")"}, {"npBefore", R"("post")"},
      {"npRowCat", R"("sex")"}}},
    {__LINE__, relationships, {},
     {{"corrX", R"("pre")"}, {"corrY", R"("post")"},
      {"corrMatrixVars", R"(["fourth","post","pre","third"])"}}},
    {__LINE__, regression, {},
     {{"regOutcome", R"("pre")"}, {"regPredictors", R"(["fourth","late","post","third"])"}}},
    {__LINE__, dataReduction, {}, {{"drItems", R"(["fourth","post","pre","third"])"}}},
    {__LINE__, dataReduction, {{"drItems", R"(["gone"])"}}, {{"drItems", R"(["gone"])"}}},
    {__LINE__, multivariate, {},
     {{"mvGroup", R"("site")"}, {"mvVars", R"(["post","pre"])"}, {"mvSetX", R"(["post","pre"])"},
      {"mvSetY", R"(["fourth","third"])"}}},
    {__LINE__, multivariate, {{"mvSetY", R"(["pre"])"}},
     {{"mvSetX", R"(["post","third"])"}, {"mvSetY", R"(["pre"])"}}},
    {__LINE__, groupPatterns, {},
     {{"selectedANOVAOutcomeName", R"("pre")"}, {"selectedANOVAGroupName", R"("site")"}}},
};
// clang-format on

TEST(SelectionScreens, SeedFillsWhatIsBlankAndKeepsTheRest) {
    for (const SeedCase& each : seedCases) {
        SCOPED_TRACE(each.line);
        Study study;
        study.paste();
        study.set(each.given);
        study.screens.appear(each.screen);
        study.expectValues(each.expected);
    }
}

TEST(SelectionScreens, SeedTakesNoVariableTwice) {
    Study study;
    study.state.importPastedData("q1,q2\n1,2\n2,1\n1,1\n2,2\n1,2\n");
    study.screens.appear(inferential);
    study.screens.appear(nonparametric);
    study.screens.appear(multivariate);
    study.expectValues({{"cmOutcome", R"("q1")"},
                        {"cmGrouping", R"("q2")"},
                        {"npGroup", R"("q2")"},
                        {"mvGroup", R"("q1")"},
                        {"mvVars", R"(["q2"])"},
                        {"mvSetX", R"(["q1","q2"])"},
                        {"mvSetY", "[]"}});
}

struct FormCase {
    int line;
    StudioScreen screen;
    /// The field that holds the mode, and the mode; blank where the screen has one only.
    std::string modeField;
    std::string mode;
    /// The label of each control, and the field that it changes.
    std::vector<std::pair<std::string, std::string>> controls;
    std::string runLabel;
};

// clang-format off
const std::vector<FormCase> formCases = {
    {__LINE__, inferential, "cmTest", "tTest",
     {{"Test", "cmTest"}, {"Outcome", "cmOutcome"}, {"Grouping", "cmGrouping"},
      {"Group 1", "cmGroup1"}, {"Group 2", "cmGroup2"}, {"Test type", "cmTestType"},
      {"Confidence level", "cmConfidence"}}, "Run t-test"},
    {__LINE__, inferential, "cmTest", "pairedTTest",
     {{"Test", "cmTest"}, {"Before", "cmPairBefore"}, {"After", "cmPairAfter"},
      {"Confidence level", "cmConfidence"}}, "Run paired t-test"},
    {__LINE__, inferential, "cmTest", "anova",
     {{"Test", "cmTest"}, {"Outcome", "cmOutcome"}, {"Grouping", "cmGrouping"}}, "Run ANOVA"},
    {__LINE__, inferential, "cmTest", "factorial",
     {{"Test", "cmTest"}, {"Outcome", "cmOutcome"}, {"Factors", "cmFactors"}},
     "Run factorial ANOVA"},
    {__LINE__, inferential, "cmTest", "repeatedMeasures",
     {{"Test", "cmTest"}, {"Conditions", "rmColumns"}}, "Run repeated-measures ANOVA"},
    {__LINE__, inferential, "cmTest", "ancova",
     {{"Test", "cmTest"}, {"Outcome", "cmAncovaOutcome"}, {"Grouping", "cmAncovaGroup"},
      {"Covariates", "cmAncovaCovariates"}}, "Run ANCOVA"},
    {__LINE__, nonparametric, "npTest", "mannWhitney",
     {{"Test", "npTest"}, {"Outcome", "npOutcome"}, {"Grouping", "npGroup"}, {"Group 1", "npG1"},
      {"Group 2", "npG2"}}, "Run Mann-Whitney U"},
    {__LINE__, nonparametric, "npTest", "wilcoxon",
     {{"Test", "npTest"}, {"Before", "npBefore"}, {"After", "npAfter"}}, "Run Wilcoxon signed-rank"},
    {__LINE__, nonparametric, "npTest", "kruskalWallis",
     {{"Test", "npTest"}, {"Outcome", "npOutcome"}, {"Grouping", "npGroup"}}, "Run Kruskal-Wallis"},
    {__LINE__, nonparametric, "npTest", "friedman",
     {{"Test", "npTest"}, {"Items", "npFriedmanItems"}}, "Run Friedman"},
    {__LINE__, nonparametric, "npTest", "chiSquare",
     {{"Test", "npTest"}, {"Row category", "npRowCat"}, {"Column category", "npColCat"}},
     "Run chi-square"},
    {__LINE__, nonparametric, "npTest", "goodnessOfFit",
     {{"Test", "npTest"}, {"Category", "npGoFVar"}}, "Run goodness-of-fit"},
    {__LINE__, nonparametric, "npTest", "fisher",
     {{"Test", "npTest"}, {"Row category", "npRowCat"}, {"Column category", "npColCat"}},
     "Run Fisher exact"},
    {__LINE__, nonparametric, "npTest", "mcnemar",
     {{"Test", "npTest"}, {"First measurement (rows)", "npRowCat"},
      {"Second measurement (columns)", "npColCat"}}, "Run McNemar"},
    {__LINE__, dataReduction, "drMethod", "pca",
     {{"Method", "drMethod"}, {"Items", "drItems"}}, "Run PCA"},
    {__LINE__, dataReduction, "drMethod", "efa",
     {{"Method", "drMethod"}, {"Items", "drItems"}, {"Number of factors", "drFactorCount"}},
     "Run factor analysis"},
    {__LINE__, dataReduction, "drMethod", "omega",
     {{"Method", "drMethod"}, {"Items", "drItems"}}, "Run omega"},
    {__LINE__, dataReduction, "drMethod", "kmeans",
     {{"Method", "drMethod"}, {"Variables", "drItems"}, {"Number of clusters (k)", "drK"},
      {"Standardize variables", "drStandardize"}}, "Run clustering"},
    {__LINE__, dataReduction, "drMethod", "hierarchical",
     {{"Method", "drMethod"}, {"Variables", "drItems"}, {"Linkage", "drLinkage"},
      {"Clusters at the cut (k)", "drK"}, {"Standardize variables", "drStandardize"}},
     "Run clustering"},
    {__LINE__, multivariate, "mvTest", "manova",
     {{"Test", "mvTest"}, {"Grouping factor", "mvGroup"}, {"Outcomes", "mvVars"}}, "Run MANOVA"},
    {__LINE__, multivariate, "mvTest", "discriminant",
     {{"Test", "mvTest"}, {"Grouping factor", "mvGroup"}, {"Variables", "mvVars"},
      {"Prior probabilities", "mvPriors"}},
     "Run discriminant analysis"},
    {__LINE__, multivariate, "mvTest", "canonical",
     {{"Test", "mvTest"}, {"Set X", "mvSetX"}, {"Set Y", "mvSetY"}}, "Run canonical correlation"},
    {__LINE__, regression, "regModel", "linear",
     {{"Model", "regModel"}, {"Outcome", "regOutcome"}, {"Predictors", "regPredictors"}},
     "Run regression"},
    {__LINE__, groupPatterns, "", "",
     {{"Outcome", "selectedANOVAOutcomeName"}, {"Grouping", "selectedANOVAGroupName"}}, ""},
    {__LINE__, relationships, "", "",
     {{"First variable", "corrX"}, {"Second variable", "corrY"}}, ""},
    {__LINE__, categoricalTests, "", "",
     {{"Row category", "npRowCat"}, {"Column category", "npColCat"}}, ""},
};
// clang-format on

TEST(SelectionScreens, FormShowsWhatTheModeNeeds) {
    for (const FormCase& each : formCases) {
        SCOPED_TRACE(each.line);
        Study study;
        study.paste();
        study.setMode(each.modeField, each.mode);
        study.screens.appear(each.screen);
        std::vector<std::string> expected;
        for (const auto& control : each.controls) {
            expected.push_back(control.first);
        }
        if (!each.runLabel.empty()) {
            expected.push_back(each.runLabel);
        }
        EXPECT_EQ(labelsOf(study.screens.at(each.screen).setup().controls), expected);
    }
}

TEST(SelectionScreens, EachControlChangesItsFieldAndNoOther) {
    for (const FormCase& each : formCases) {
        for (const auto& [label, field] : each.controls) {
            SCOPED_TRACE(std::to_string(each.line) + " " + label);
            Study study;
            study.paste();
            study.setMode(each.modeField, each.mode);
            study.screens.appear(each.screen);
            const std::map<std::string, std::string> before = study.values();
            change(controlOf(study.screens.at(each.screen).setup().controls, label));
            EXPECT_NE(study.value(field), before.at(field));
            for (const auto& [name, now] : study.values()) {
                const bool isGroup = name.ends_with("1") || name.ends_with("2");
                EXPECT_TRUE(name == field || isGroup || now == before.at(name)) << name;
            }
        }
    }
}

TEST(SelectionScreens, AnotherGroupingBringsItsOwnTwoGroups) {
    Study study;
    study.paste();
    for (const StudioScreen id : {inferential, nonparametric}) {
        study.screens.appear(id);
        for (const Control& control : study.screens.at(id).setup().controls) {
            const auto* choice = std::get_if<ChoiceControl>(&control);
            if (choice && choice->label == "Grouping") {
                choice->set(2);
            }
        }
    }
    study.expectValues({{"cmGrouping", R"("passed")"},
                        {"cmGroup1", R"("no")"},
                        {"cmGroup2", R"("yes")"},
                        {"npGroup", R"("passed")"},
                        {"npG1", R"("no")"},
                        {"npG2", R"("yes")"}});
}

struct SelectionGateCase {
    int line;
    StudioScreen screen;
    Settings given;
    std::string title;
    /// Some piece of its text.
    std::string text;
};

constexpr auto noMannWhitney = "Could not compute Mann-Whitney U for the current selection.";
constexpr auto noWilcoxon = "Could not compute Wilcoxon signed-rank for the current selection.";
constexpr auto noTable = "Could not build the contingency table for the current selection.";
constexpr auto notPaired = "McNemar needs a paired binary outcome (two values) on the same cases.";

// clang-format off
const std::vector<SelectionGateCase> selectionGateCases = {
    {__LINE__, inferential, {{"cmOutcome", R"("")"}}, "Need a numeric outcome and a grouping field",
     "Confirm them in Variable Roles, then set up the test on the right."},
    {__LINE__, inferential, {{"cmGrouping", R"("pre")"}},
     "Need a numeric outcome and a grouping field", ""},
    {__LINE__, inferential, {{"cmOutcome", R"("gone")"}}, "A chosen column is missing",
     "\"gone\" among the numeric columns"},
    {__LINE__, inferential, {{"cmGrouping", R"("third")"}}, "A chosen column is missing",
     "\"third\" among the grouping columns"},
    {__LINE__, inferential, {{"cmGroup2", R"("other")"}}, "Pick two groups",
     "Pick the outcome and two groups in the Setup panel, then Run t-test. Results appear here."},
    {__LINE__, inferential, {{"cmGroup2", R"("north")"}}, "Groups must differ",
     "Group 1 and Group 2 are the same. Choose two distinct categories."},
    {__LINE__, inferential, {{"cmGroup2", R"("east")"}}, "Each group needs two or more values",
     "\"east\" has 1 value of pre."},
    {__LINE__, inferential, {{"cmTest", R"("pairedTTest")"}},
     "Need two measurements of the same cases", ""},
    {__LINE__, inferential, {{"cmTest", R"("pairedTTest")"}, {"cmPairBefore", R"("pre")"},
                             {"cmPairAfter", R"("pre")"}}, "Measurements must differ", ""},
    {__LINE__, inferential, {{"cmTest", R"("pairedTTest")"}, {"cmPairBefore", R"("pre")"},
                             {"cmPairAfter", R"("late")"}}, "Too few complete pairs", ""},
    {__LINE__, inferential, {{"cmTest", R"("anova")"}, {"cmOutcome", R"("late")"}},
     "Cannot run ANOVA", "two groups"},
    {__LINE__, inferential, {{"cmTest", R"("factorial")"}, {"cmFactors", R"(["site"])"}},
     "Need a numeric outcome and two factors", ""},
    {__LINE__, inferential, {{"cmTest", R"("factorial")"}, {"cmFactors", R"(["gone","site"])"}},
     "A chosen column is missing", "gone"},
    {__LINE__, inferential, {{"cmTest", R"("repeatedMeasures")"}, {"rmColumns", R"(["pre"])"}},
     "Pick two or more conditions", ""},
    {__LINE__, inferential,
     {{"cmTest", R"("repeatedMeasures")"}, {"rmColumns", R"(["late","pre"])"}},
     "Too few complete subjects", ""},
    {__LINE__, inferential,
     {{"cmTest", R"("repeatedMeasures")"}, {"rmColumns", R"(["gone","pre"])"}},
     "A chosen column is missing", "gone"},
    {__LINE__, inferential, {{"cmTest", R"("ancova")"}, {"cmAncovaOutcome", R"("pre")"},
                             {"cmAncovaGroup", R"("site")"}}, "Cannot run ANCOVA",
     "Need at least one covariate, two groups, and more complete cases than model terms."},
    {__LINE__, inferential, {{"cmTest", R"("ancova")"}, {"cmAncovaOutcome", R"("pre")"},
                             {"cmAncovaGroup", R"("site")"}, {"cmAncovaCovariates", R"(["late"])"}},
     "Cannot run ANCOVA", ""},
    {__LINE__, nonparametric, {{"npGroup", R"("")"}},
     "Need a numeric outcome and a grouping field", ""},
    {__LINE__, nonparametric, {{"npG2", R"("north")"}}, noMannWhitney, "Pick two different groups."},
    {__LINE__, nonparametric, {{"npG2", R"("east")"}}, noMannWhitney,
     "Each group needs 2+ values (east: 1)."},
    {__LINE__, nonparametric, {{"npTest", R"("wilcoxon")"}, {"npAfter", R"("pre")"}}, noWilcoxon,
     "Pick two different numeric fields."},
    {__LINE__, nonparametric, {{"npTest", R"("wilcoxon")"}, {"npAfter", R"("late")"}}, noWilcoxon,
     "Need 2+ complete pairs (1 found)."},
    {__LINE__, nonparametric, {{"npTest", R"("kruskalWallis")"}, {"npOutcome", R"("late")"}},
     "Could not compute Kruskal-Wallis for the current selection.",
     "Need 2+ groups with 2+ values each."},
    {__LINE__, nonparametric,
     {{"npTest", R"("friedman")"}, {"npFriedmanItems", R"(["pre","post"])"}},
     "Could not compute Friedman for the current selection.",
     "Select 3+ item columns and have 2+ complete cases."},
    {__LINE__, nonparametric, {{"npTest", R"("goodnessOfFit")"}, {"npGoFVar", R"("")"}},
     "Could not compute goodness-of-fit for the current selection.",
     "Need 2+ categories in the chosen field."},
    {__LINE__, nonparametric, {{"npTest", R"("chiSquare")"}, {"npColCat", R"("site")"}}, noTable,
     "Pick two different categorical fields."},
    {__LINE__, nonparametric, {{"npTest", R"("fisher")"}, {"npColCat", R"("")"}}, noTable,
     "Pick two different fields."},
    {__LINE__, nonparametric, {{"npTest", R"("fisher")"}},
     "Fisher exact needs a 2x2 table: both fields must be binary.",
     "site has 3 categories and sex has 2"},
    {__LINE__, nonparametric, {{"npTest", R"("mcnemar")"}}, notPaired,
     "Need paired observations on the same cases."},
    {__LINE__, nonparametric, {{"npTest", R"("mcnemar")"}, {"npRowCat", R"("passed")"}}, notPaired,
     "do not have the same two values"},
    {__LINE__, categoricalTests, {{"npColCat", R"("site")"}}, noTable,
     "Pick two different categorical fields."},
    {__LINE__, dataReduction, {{"drItems", R"(["pre"])"}}, "Cannot run PCA",
     "PCA needs variables with variance and enough complete cases."},
    {__LINE__, dataReduction, {{"drItems", R"(["late","pre"])"}}, "Cannot run PCA", ""},
    {__LINE__, dataReduction, {{"drMethod", R"("efa")"}, {"drFactorCount", "4"}}, "Cannot run EFA",
     "EFA needs more items than factors"},
    {__LINE__, dataReduction, {{"drMethod", R"("omega")"}, {"drItems", R"(["post","pre"])"}},
     "Cannot run omega", "Omega needs 3+ items with variance and enough complete cases."},
    {__LINE__, dataReduction, {{"drMethod", R"("kmeans")"}, {"drK", "9"}}, "Cannot run clustering",
     "Need at least k complete cases across the selected variables."},
    {__LINE__, multivariate, {{"mvVars", R"(["pre"])"}}, "Cannot run MANOVA",
     "MANOVA needs 2+ numeric outcomes, a grouping factor with 2+ groups, and enough complete"},
    {__LINE__, multivariate, {{"mvVars", R"(["late","pre"])"}}, "Cannot run MANOVA", ""},
    {__LINE__, multivariate, {{"mvTest", R"("canonical")"}, {"mvSetY", R"(["pre"])"}},
     "The two sets must not share a variable", "pre"},
    {__LINE__, multivariate, {{"mvTest", R"("canonical")"}, {"mvSetY", "[]"}},
     "Cannot run canonical correlation", ""},
    {__LINE__, groupPatterns, {{"selectedANOVAOutcomeName", R"("late")"}},
     "Cannot run ANOVA",
     "ANOVA needs at least two groups with two or more valid outcome values."},
    {__LINE__, relationships, {{"corrY", R"("late")"}}, "Too few complete pairs", ""},
    {__LINE__, relationships, {{"corrY", R"("pre")"}}, "Need two numeric variables", ""},
    {__LINE__, regression, {{"regModel", R"("logistic")"}}, "Need an outcome with two values",
     "exactly two values"},
    {__LINE__, regression, {{"regModel", R"("poisson")"}}, "Need an outcome of counts",
     "whole numbers from 0"},
    {__LINE__, regression, {{"regModel", R"("ordinal")"}, {"regOutcome", R"("site")"}},
     "Need an outcome of ordered levels", "3 to 100 levels"},
};
// clang-format on

TEST(SelectionScreens, GatesSayWhatIsMissingAndNothingIsMarkedAsRun) {
    for (const SelectionGateCase& each : selectionGateCases) {
        SCOPED_TRACE(each.line);
        Study study;
        study.paste();
        study.screens.appear(each.screen);
        study.set(each.given);
        Screen& screen = study.screens.at(each.screen);
        const std::optional<Gate> gate = screen.content().gate;
        ASSERT_TRUE(gate);
        EXPECT_EQ(gate->title, each.title);
        EXPECT_NE(gate->text.find(each.text), std::string::npos) << gate->text;
        EXPECT_NE(screen.run().value_or("ran").find(gate->text), std::string::npos);
        for (const char* flag : {"cmHasRun", "npHasRun", "drHasRun", "mvHasRun", "regHasRun"}) {
            EXPECT_EQ(study.value(flag), "false") << flag;
        }
    }
}

TEST(SelectionScreens, EveryModeStandsWithoutDataAndWithASingleColumn) {
    for (const bool hasColumn : {false, true}) {
        for (const FormCase& each : formCases) {
            SCOPED_TRACE(each.line);
            Study study;
            if (hasColumn) {
                study.state.importPastedData("only\n1.5\n2.5\n3.5\n");
            }
            study.setMode(each.modeField, each.mode);
            study.screens.appear(each.screen);
            Screen& screen = study.screens.at(each.screen);
            EXPECT_FALSE(screen.setup().controls.empty());
            ASSERT_TRUE(screen.content().gate);
            EXPECT_EQ(screen.content().gate->title == "No dataset loaded", !hasColumn);
            // Equal shares can be asked of any one column, and clusters be made by it.
            const bool takesOne = each.mode == "goodnessOfFit" || each.mode == "kmeans" ||
                                  each.mode == "hierarchical";
            EXPECT_EQ(screen.run().has_value(), !hasColumn || !takesOne);
            EXPECT_FALSE(screen.guide().needs.empty());
            EXPECT_GE(screen.guide().doNotClaim.size(), 2U);
        }
    }
}

}  // namespace
}  // namespace sorvane
