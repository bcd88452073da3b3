#include <gtest/gtest.h>

#include "SorvaneMac/Report/APAFormat.h"
#include "Tests/Screens/ReferenceStudy.h"

namespace sorvane {
namespace {

using enum StudioScreen;
using Cells = std::vector<std::string>;

const std::string flowerParts = R"(["Petal_Length","Petal_Width","Sepal_Length","Sepal_Width"])";

class MultivariateScreenTest : public testing::Test {
protected:
    MultivariateScreenTest() {
        study.assign({"Sepal_Length", "Sepal_Width", "Petal_Length", "Petal_Width"},
                     VariableKind::outcome);
        study.assign({"Species"}, VariableKind::grouping);
    }
    ScreenContent discriminant(const std::string& group, const std::string& variables) {
        return study.shown(
            multivariate,
            {{"mvTest", R"("discriminant")"}, {"mvGroup", group}, {"mvVars", variables}});
    }

    ReferenceStudy study{"iris.csv"};
};

// The figures are those of R's MASS::lda and manova.
TEST_F(MultivariateScreenTest, FunctionsTellTheSpeciesApart) {
    const ScreenContent content = discriminant(R"("Species")", flowerParts);
    ASSERT_EQ(content.findings.size(), 1U);
    const ReportItem& item = content.findings.front().item;
    EXPECT_EQ(item.title, "Discriminant analysis: Species");
    EXPECT_TRUE(item.apaSummary.starts_with(
        "A linear discriminant analysis compared 3 groups of Species on 4 variables (n = 150), "
        "Wilks' lambda = 0.023, F(8, 288) = 199.15, p < .001."))
        << item.apaSummary;
    EXPECT_EQ(item.table->rows.front(), (Cells{"1", "32.192", "99.1", "99.1", ".985"}));
    ASSERT_EQ(item.extraTables->size(), 6U);
    EXPECT_EQ(item.extraTables->at(0).rows.back()[0], "2");
    const ReportTable& leaveOneOut = item.extraTables->at(4);
    EXPECT_EQ(leaveOneOut.title, "Classification, leaving one out");
    EXPECT_EQ(leaveOneOut.rows[1], (Cells{"versicolor", "0", "48", "2", "96.0"}));
    EXPECT_EQ(leaveOneOut.rows[2], (Cells{"virginica", "0", "1", "49", "98.0"}));
    const auto& cloud = std::get<LinePlot>(content.findings.front().figure->plot);
    ASSERT_EQ(cloud.series.size(), 3U);
    EXPECT_EQ(cloud.series[0].x.size(), 50U);
    EXPECT_EQ(cloud.join, LinePlot::Join::none);
}

TEST_F(MultivariateScreenTest, TwoGroupsHaveOneFunctionAndPriorsCanBeEqual) {
    study.state.importPastedData(
        "g,x,y\na,1,2\na,2,1\na,3,4\na,2,3\na,4,4\na,3,2\nb,5,3\nb,6,6\nb,7,4\nb,5,5\n");
    study.assign({"g"}, VariableKind::grouping);
    study.assign({"x", "y"}, VariableKind::outcome);
    ScreenContent content = discriminant(R"("g")", R"(["x","y"])");
    EXPECT_TRUE(std::holds_alternative<BoxPlot>(content.findings.front().figure->plot));
    const auto prior = [](const ScreenContent& shown) {
        return shown.findings.front().item.extraTables->at(3).rows.front()[2];
    };
    EXPECT_EQ(prior(content), ".600");
    study.set({{"mvPriors", R"("equal")"}});
    content = discriminant(R"("g")", R"(["x","y"])");
    EXPECT_EQ(prior(content), ".500");
}

TEST_F(MultivariateScreenTest, SetsAreRelatedByPairsOfVariates) {
    const ScreenContent content =
        study.shown(multivariate, {{"mvTest", R"("canonical")"},
                                   {"mvSetX", R"(["Sepal_Length","Sepal_Width"])"},
                                   {"mvSetY", R"(["Petal_Length","Petal_Width"])"}});
    const ReportItem& item = content.findings.front().item;
    // R's cancor.
    EXPECT_EQ(item.table->rows[0][1], ".941");
    EXPECT_EQ(item.table->rows[1][1], ".124");
    EXPECT_EQ(item.extraTables->at(1).title, "Set X: coefficients and loadings");
    EXPECT_EQ(item.extraTables->at(1).rows[0][0], "Sepal_Length");
    EXPECT_EQ(item.extraTables->at(2).rows[0][0], "Petal_Length");
    EXPECT_EQ(item.extraTables->at(1).headers.size(), 7U);
    EXPECT_TRUE(content.findings.front().figure);
    EXPECT_EQ(study.result(multivariate, "/n"), "150");
}

TEST_F(MultivariateScreenTest, WhatCannotBeComputedSaysWhy) {
    study.state.importPastedData(
        "g,x,y\na,1,2\na,2,4\na,3,6\na,2,4\nb,5,10\nb,6,12\nb,7,14\nb,5,10\n");
    study.assign({"g"}, VariableKind::grouping);
    study.assign({"x", "y"}, VariableKind::outcome);
    const ScreenContent content = discriminant(R"("g")", R"(["x","y"])");
    ASSERT_TRUE(content.gate);
    EXPECT_EQ(content.gate->title, "Discriminant analysis could not be computed");
    EXPECT_NE(content.gate->text.find("collinear"), std::string::npos) << content.gate->text;
    EXPECT_TRUE(content.findings.empty());
}

}  // namespace
}  // namespace sorvane
