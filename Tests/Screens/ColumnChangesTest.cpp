#include <gtest/gtest.h>

#include "Tests/Screens/TwoSiteStudy.h"

namespace sorvane {
namespace {

using enum StudioScreen;

/// A screen, its selections, one column of them, and what the screen asks for without it.
struct ColumnCase {
    int line;
    StudioScreen screen;
    Settings settings;
    std::string column;
    std::string gate;
};

constexpr auto outcomeAndGroup = "Need a numeric outcome and a grouping field";
constexpr auto twoVariables = "Need two numeric variables";

// clang-format off
const std::vector<ColumnCase> columnCases = {
    {__LINE__, inferential, {{"cmOutcome", R"("score")"}, {"cmGrouping", R"("site")"}}, "score",
     outcomeAndGroup},
    {__LINE__, inferential, {{"cmOutcome", R"("score")"}, {"cmGrouping", R"("site")"}}, "site",
     outcomeAndGroup},
    {__LINE__, inferential,
     {{"cmTest", R"("pairedTTest")"}, {"cmPairBefore", R"("score")"}, {"cmPairAfter", R"("again")"}},
     "again", "Need two measurements of the same cases"},
    {__LINE__, inferential,
     {{"cmTest", R"("factorial")"}, {"cmOutcome", R"("score")"}, {"cmFactors", R"(["site","passed"])"}},
     "passed", "Need a numeric outcome and two factors"},
    {__LINE__, inferential,
     {{"cmTest", R"("repeatedMeasures")"}, {"rmColumns", R"(["score","again"])"}}, "again",
     "Pick two or more conditions"},
    {__LINE__, inferential,
     {{"cmTest", R"("ancova")"}, {"cmAncovaOutcome", R"("score")"}, {"cmAncovaGroup", R"("site")"},
      {"cmAncovaCovariates", R"(["age"])"}}, "age", "Cannot run ANCOVA"},
    {__LINE__, nonparametric, {{"npOutcome", R"("score")"}, {"npGroup", R"("site")"}}, "site",
     outcomeAndGroup},
    {__LINE__, nonparametric,
     {{"npTest", R"("wilcoxon")"}, {"npBefore", R"("score")"}, {"npAfter", R"("again")"}}, "score",
     "Could not compute Wilcoxon signed-rank for the current selection."},
    {__LINE__, nonparametric,
     {{"npTest", R"("friedman")"}, {"npFriedmanItems", R"(["score","again","third"])"}}, "third",
     "Could not compute Friedman for the current selection."},
    {__LINE__, nonparametric,
     {{"npTest", R"("chiSquare")"}, {"npRowCat", R"("site")"}, {"npColCat", R"("band")"}}, "band",
     "Could not build the contingency table for the current selection."},
    {__LINE__, nonparametric, {{"npTest", R"("goodnessOfFit")"}, {"npGoFVar", R"("band")"}}, "band",
     "Could not compute goodness-of-fit for the current selection."},
    {__LINE__, categoricalTests, {{"npRowCat", R"("site")"}, {"npColCat", R"("band")"}}, "site",
     "Could not build the contingency table for the current selection."},
    {__LINE__, multivariate, {{"mvGroup", R"("site")"}, {"mvVars", R"(["score","third"])"}}, "site",
     "Cannot run MANOVA"},
    {__LINE__, relationships, {{"corrX", R"("score")"}, {"corrY", R"("again")"}}, "again",
     twoVariables},
    {__LINE__, correlation, {{"corrX", R"("score")"}, {"corrY", R"("again")"}}, "score",
     twoVariables},
    {__LINE__, regression, {{"regOutcome", R"("score")"}, {"regPredictors", R"(["age"])"}}, "age",
     "No predictors selected"},
    {__LINE__, regression, {{"regOutcome", R"("score")"}, {"regPredictors", R"(["age"])"}}, "score",
     "Need a numeric outcome and predictor"},
    {__LINE__, regression,
     {{"regModel", R"("logistic")"}, {"regOutcome", R"("passed")"}, {"regPredictors", R"(["age"])"}},
     "passed", "Need an outcome with two values"},
};
// clang-format on

bool names(const ScreenContent& content, const std::string& column) {
    const ReportItem& item = content.findings.front().item;
    return (item.title + " " + item.apaSummary).find(column) != std::string::npos;
}

TEST(ColumnChanges, ARenamedColumnStaysChosenUnderItsNewName) {
    for (const ColumnCase& each : columnCases) {
        SCOPED_TRACE(each.line);
        TwoSiteStudy study;
        ASSERT_TRUE(names(study.shown(each.screen, each.settings), each.column));
        const std::string renamed = "the " + each.column + " (new)";
        ASSERT_TRUE(study.state.renameVariable(each.column, renamed));
        study.screens.appear(each.screen);
        EXPECT_EQ(study.screens.at(each.screen).run(), std::nullopt);
        EXPECT_TRUE(names(study.screens.at(each.screen).content(), renamed));
    }
}

TEST(ColumnChanges, ARemovedColumnLeavesItsPlaceEmpty) {
    for (const ColumnCase& each : columnCases) {
        SCOPED_TRACE(each.line);
        TwoSiteStudy study;
        study.shown(each.screen, each.settings);
        ASSERT_TRUE(study.state.deleteVariable(each.column));
        const std::optional<Gate> gate = study.screens.at(each.screen).content().gate;
        ASSERT_TRUE(gate);
        EXPECT_EQ(gate->title, each.gate);
        EXPECT_TRUE(study.screens.at(each.screen).run().has_value());
        study.screens.at(each.screen).setup();
        study.screens.appear(each.screen);
        study.screens.at(each.screen).setup();
        study.screens.at(each.screen).content();
    }
}

TEST(ColumnChanges, AColumnThatIsTakenOutOfTheAnalysisIsSaidToBeMissing) {
    const struct {
        int line;
        StudioScreen screen;
        Settings settings;
        std::string column;
        std::string lead;
    } cases[] = {
        {__LINE__,
         inferential,
         {{"cmOutcome", R"("score")"}, {"cmGrouping", R"("site")"}},
         "score",
         "score"},
        {__LINE__,
         nonparametric,
         {{"npTest", R"("friedman")"}, {"npFriedmanItems", R"(["score","again","third"])"}},
         "third",
         "third"},
        {__LINE__,
         relationships,
         {{"corrX", R"("score")"}, {"corrY", R"("again")"}},
         "again",
         "again"},
        {__LINE__,
         groupPatterns,
         {{"selectedANOVAOutcomeName", R"("score")"}, {"selectedANOVAGroupName", R"("site")"}},
         "site",
         ""},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.line);
        TwoSiteStudy study;
        study.shown(each.screen, each.settings);
        study.assign({each.column}, VariableKind::exclude);
        const std::optional<Gate> gate = study.screens.at(each.screen).content().gate;
        if (each.lead.empty()) {
            EXPECT_NE(study.value("selectedANOVAGroupName"), "\"" + each.column + "\"")
                << "this selection falls to the next that suits";
            continue;
        }
        ASSERT_TRUE(gate);
        EXPECT_EQ(gate->lead, each.lead);
        study.assign({each.column}, VariableKind::outcome);
        EXPECT_EQ(study.screens.at(each.screen).run(), std::nullopt);
    }
}

/// What each analysis keeps goes with its data; another analysis of the screen has its own.
TEST(ColumnChanges, NewDataTakesEveryResultWithIt) {
    for (const ColumnCase& each : columnCases) {
        SCOPED_TRACE(each.line);
        TwoSiteStudy study;
        study.shown(each.screen, each.settings);
        study.state.importPastedData("a,b,c\n1,2,x\n2,1,y\n3,5,x\n4,4,y\n");
        study.screens.appear(each.screen);
        const ScreenContent content = study.screens.at(each.screen).content();
        for (const Finding& finding : content.findings) {
            EXPECT_EQ(finding.item.apaSummary.find("score"), std::string::npos);
        }
        for (const char* flag : {"cmHasRun", "npHasRun", "mvHasRun", "regHasRun"}) {
            EXPECT_EQ(study.value(flag), "false") << flag;
        }
    }
}

}  // namespace
}  // namespace sorvane
