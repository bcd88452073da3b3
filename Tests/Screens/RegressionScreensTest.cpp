#include <tuple>

#include <gtest/gtest.h>

#include "Tests/Screens/TwoSiteStudy.h"

namespace sorvane {
namespace {

class RegressionScreens : public testing::Test {
protected:
    void choose(const std::string& model, const std::string& outcome, const std::string& names) {
        study_.set({{"regModel", "\"" + model + "\""},
                    {"regOutcome", "\"" + outcome + "\""},
                    {"regPredictors", names}});
    }
    Screen& screen() { return study_.screens.at(StudioScreen::regression); }

    TwoSiteStudy study_;
};

TEST_F(RegressionScreens, OfferTheOutcomesThatSuitTheModel) {
    using Names = std::vector<std::string>;
    const std::pair<const char*, Names> cases[] = {
        {"linear", {"score", "again", "third", "age"}},
        {"logistic", {"site", "passed", "later"}},
        {"poisson", {"age"}},
        {"ordinal", {"score", "again", "third", "age"}},
    };
    for (const auto& [model, outcomes] : cases) {
        choose(model, "", "[]");
        for (const Control& control : screen().setup().controls) {
            const auto* choice = std::get_if<ChoiceControl>(&control);
            if (choice && choice->label == "Outcome") {
                EXPECT_EQ(choice->choices, outcomes) << model;
            }
        }
    }
}

TEST_F(RegressionScreens, SayWhatTheOutcomeMustBe) {
    const struct {
        int line;
        std::string model;
        std::string outcome;
        std::string predictors;
        std::string answer;
    } cases[] = {
        {__LINE__, "linear", "site", R"(["age"])",
         "Need a numeric outcome and predictor. Confirm a numeric outcome and predictor in "
         "Variable "
         "Roles."},
        {__LINE__, "linear", "score", R"(["score"])",
         "No predictors selected. Pick one or more predictors in the Setup panel."},
        {__LINE__, "linear", "score", R"(["age","site"])",
         "A predictor is missing. There is no numeric column of that name. Take it out of the "
         "predictors, or change its role in Variable Types."},
        {__LINE__, "logistic", "band", R"(["age"])",
         "Need an outcome with two values. The outcome has exactly two values, such as no and yes. "
         "Pick one in the Setup panel."},
        {__LINE__, "poisson", "score", R"(["age"])",
         "Need an outcome of counts. The outcome counts something: whole numbers from 0. Pick one "
         "in the Setup panel."},
        {__LINE__, "ordinal", "passed", R"(["age"])",
         "Need an outcome of ordered levels. The outcome has 3 to 100 levels, coded as numbers in "
         "their order. Pick one in the Setup panel."},
    };
    for (const auto& each : cases) {
        choose(each.model, each.outcome, each.predictors);
        EXPECT_EQ(screen().run(), each.answer) << each.line;
        EXPECT_TRUE(screen().content().findings.empty()) << each.line;
        EXPECT_EQ(study_.result(StudioScreen::regression), "null") << each.line;
    }
}

TEST_F(RegressionScreens, KeepTheResultOfEachModelApart) {
    choose("linear", "score", R"(["age"])");
    ASSERT_EQ(screen().run(), std::nullopt);
    choose("logistic", "passed", R"(["age"])");
    EXPECT_EQ(screen().content().gate->title, "Ready to run");
    EXPECT_EQ(screen().content().gate->lead, "passed on age");
    ASSERT_EQ(screen().run(), std::nullopt);
    EXPECT_EQ(screen().content().findings.front().item.title, "Logistic Regression: passed");
    choose("linear", "third", R"(["again"])");
    EXPECT_EQ(screen().content().findings.front().item.title, "Linear Regression: score");
    ASSERT_EQ(screen().run(), std::nullopt);
    EXPECT_EQ(screen().content().findings.front().item.title, "Linear Regression: third");
}

TEST_F(RegressionScreens, TellWhichOfTheTwoValuesIsTheEvent) {
    for (const auto& [outcome, event, events] :
         {std::tuple("passed", "yes", "5"), std::tuple("later", "yes", "8")}) {
        choose("logistic", outcome, R"(["age"])");
        ASSERT_EQ(screen().run(), std::nullopt);
        const ScreenContent content = screen().content();
        EXPECT_EQ(content.tiles[2].value, events);
        EXPECT_EQ(content.tiles[2].caption, std::string(outcome) + " = " + event);
        EXPECT_EQ(content.findings.front().item.extraTables->front().note,
                  "An event is " + std::string(outcome) + " = " + event + ".");
    }
}

TEST_F(RegressionScreens, KeepTheDigitsOfAPredictorInSmallUnits) {
    study_.state.importPastedData(
        "income,bought,visits,level\n21000,0,1,1\n24500,0,0,1\n27000,1,2,2\n30000,0,1,1\n"
        "33000,0,3,2\n36500,1,2,2\n39000,0,2,1\n42000,1,4,3\n45500,1,3,2\n48000,0,2,3\n"
        "51000,1,5,3\n54000,1,4,3\n");
    study_.assign({"income", "visits", "level"}, VariableKind::outcome);
    study_.assign({"bought"}, VariableKind::grouping);
    const struct {
        std::string model;
        std::string outcome;
        /// B, its standard error, and the ratio and the sentence's part about it where there is one.
        std::vector<std::pair<std::size_t, std::string>> cells;
        std::string sentence;
    } cases[] = {
        {"linear", "visits", {{1, "0.000106"}, {2, "0.000026"}}, "R² = .62"},
        {"logistic",
         "bought",
         {{1, "0.000112"}, {2, "0.000072"}, {5, "1.000112"}},
         "OR = 1.00011,"},
        {"poisson", "visits", {{1, "0.000046"}, {2, "0.000019"}, {5, "1.000046"}}, "RR = 1.00005,"},
        {"ordinal", "level", {{1, "0.00025"}, {2, "0.00010"}, {5, "1.00025"}}, "OR = 1.0002,"},
    };
    for (const auto& each : cases) {
        choose(each.model, each.outcome, R"(["income"])");
        EXPECT_EQ(screen().run(), std::nullopt) << each.model;
        const ReportItem item = screen().content().findings.at(0).item;
        for (const auto& [column, cell] : each.cells) {
            EXPECT_EQ(item.table->rows.back().at(column), cell) << each.model;
        }
        EXPECT_NE(item.apaSummary.find(each.sentence), std::string::npos) << item.apaSummary;
    }
}

TEST_F(RegressionScreens, WarnOfAnOutcomeThatThePredictorsGiveExactly) {
    const auto note = [this](const std::string& outcome) {
        study_.state.importPastedData(
            "x,exact,close,one\n1.1,4.4,4.4,2\n2.7,10.8,10.8,2\n1.3,5.2,5.3,2\n4.9,19.6,19.6,2\n"
            "3.3,13.2,13.2,2\n6.1,24.4,24.4,2\n");
        study_.assign({"x", "exact", "close", "one"}, VariableKind::outcome);
        choose("linear", outcome, R"(["x"])");
        EXPECT_FALSE(screen().run());
        return *screen().content().findings.front().item.table->note;
    };
    const std::string warning = "rest on rounding alone and mean nothing";
    EXPECT_NE(note("exact").find(warning), std::string::npos);
    EXPECT_EQ(note("close").find(warning), std::string::npos);
    EXPECT_NE(note("one").find("The outcome does not vary"), std::string::npos);
}

TEST_F(RegressionScreens, SayWhyAModelCannotBeEstimated) {
    study_.state.importPastedData(
        "y,level,count,x,double,same\n0,1,3,1,2,5\n0,2,4,2,4,5\n0,1,2,3,6,5\n1,3,5,4,8,5\n"
        "1,2,6,5,10,5\n1,3,9,6,12,5\n");
    study_.assign({"level", "count", "x", "double", "same"}, VariableKind::outcome);
    study_.assign({"y"}, VariableKind::grouping);
    const struct {
        int line;
        std::string model;
        std::string outcome;
        std::string predictors;
    } cases[] = {
        {__LINE__, "linear", "count", R"(["x","double"])"},
        {__LINE__, "linear", "count", R"(["same"])"},
        {__LINE__, "logistic", "y", R"(["same"])"},
        {__LINE__, "poisson", "count", R"(["x","double"])"},
        {__LINE__, "ordinal", "level", R"(["same"])"},
    };
    for (const auto& each : cases) {
        choose(each.model, each.outcome, each.predictors);
        EXPECT_EQ(screen().run(), std::nullopt) << each.line;
        const ScreenContent content = screen().content();
        ASSERT_TRUE(content.gate) << each.line;
        EXPECT_EQ(content.gate->title, "The model could not be estimated") << each.line;
        EXPECT_FALSE(content.gate->text.empty()) << each.line;
        EXPECT_TRUE(content.findings.empty()) << each.line;
        EXPECT_TRUE(content.tiles.empty()) << each.line;
    }
}

}  // namespace
}  // namespace sorvane
