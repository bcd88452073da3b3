#include "SorvaneMac/Screens/ScreenFields.h"

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "SorvaneCore/Project/RecordJson.h"
#include "SorvaneMac/State/CleaningFields.h"
#include "SorvaneMac/State/VariableEditorFields.h"

namespace sorvane {
namespace {

using enum ResetRule;

struct FieldCase {
    int line;
    std::string name;
    std::string start;
    /// Some value that is not the start.
    std::string other;
    ResetRule rule;
};

const std::string oneFinding =
    R"([{"check":"Normality","target":"score","statisticLabel":"Shapiro-Wilk W",)"
    R"("statistic":0.9,"severity":"caution","explanation":"","remedies":[]}])";
const std::string oneValueRule =
    R"([{"id":"00000000-0000-4000-8000-000000000001","sources":[1.0,2.0],)"
    R"("output":9.0}])";
const std::string oneRangeRule =
    R"([{"id":"00000000-0000-4000-8000-000000000002","lower":1.0,"upper":3.0,)"
    R"("lowerInclusive":true,"upperInclusive":false}])";
const std::vector<std::string> oneDraft = {
    R"({"sources":"","lower":"","upper":"","lowerInclusive":true,"upperInclusive":true,)"
    R"("output":""})",
    R"({"sources":"1, 2","lower":"","upper":"","lowerInclusive":true,"upperInclusive":true,)"
    R"("output":"9"})"};
const std::string oneProcess = R"({"variables":{"x":"a","middle":"b","y":"c","covariates":[]}})";
const std::string onePooledCoefficient =
    R"([{"name":"x","estimate":1.5,"standardError":0.5,"t":3.0,"pValue":0.0625,"ciLower":0.5,)"
    R"("ciUpper":2.5,"fractionMissingInfo":0.25,"degreesOfFreedom":12.5}])";
const std::string oneSweepRow = R"([{"k":2,"logLik":-10.5,"aic":25.0,"bic":27.5,"entropy":0.75,)"
                                R"("converged":true}])";

// clang-format off
const std::vector<FieldCase> fieldCases = {
    {__LINE__, "cmTest", R"("tTest")", R"("ancova")", kept},
    {__LINE__, "rmColumns", "[]", R"(["a","b"])", withDataset},
    {__LINE__, "cmOutcome", R"("")", R"("a")", withDataset},
    {__LINE__, "cmGrouping", R"("")", R"("a")", withDataset},
    {__LINE__, "cmGroup1", R"("")", R"("other")", withDataset},
    {__LINE__, "cmGroup2", R"("")", R"("other")", withDataset},
    {__LINE__, "cmTestType", R"("auto")", R"("student")", kept},
    {__LINE__, "cmConfidence", "95", "96", kept},
    {__LINE__, "cmHasRun", "false", "true", withDataset},
    {__LINE__, "cmResultTab", R"("result")", R"("other")", kept},
    {__LINE__, "cmAssumptionFindings", "null", oneFinding, withDataset},
    {__LINE__, "cmAssumptionsExpanded", "true", "false", kept},
    {__LINE__, "cmPairBefore", R"("")", R"("a")", withDataset},
    {__LINE__, "cmPairAfter", R"("")", R"("a")", withDataset},
    {__LINE__, "cmAncovaOutcome", R"("")", R"("a")", withDataset},
    {__LINE__, "cmAncovaGroup", R"("")", R"("a")", withDataset},
    {__LINE__, "cmAncovaCovariates", "[]", R"(["a","b"])", withDataset},
    {__LINE__, "cmFactors", "[]", R"(["a","b"])", withDataset},
    {__LINE__, "demoVars", "[]", R"(["a","b"])", withDataset},
    {__LINE__, "demoGroup", R"("")", R"("a")", withDataset},
    {__LINE__, "corrX", R"("")", R"("a")", withDataset},
    {__LINE__, "corrY", R"("")", R"("a")", withDataset},
    {__LINE__, "corrControl", R"("")", R"("a")", withDataset},
    {__LINE__, "corrMatrixVars", "[]", R"(["a","b"])", withDataset},
    {__LINE__, "regModel", R"("linear")", R"("ordinal")", kept},
    {__LINE__, "regOutcome", R"("")", R"("a")", withDataset},
    {__LINE__, "regPredictors", "[]", R"(["a","b"])", withDataset},
    {__LINE__, "regHasRun", "false", "true", withDataset},
    {__LINE__, "regLinearRun", "null", R"({"outcome":"a","predictors":["b"],"assumptions":[]})", withDataset},
    {__LINE__, "regAssumptionFindings", "null", oneFinding, withDataset},
    {__LINE__, "regAssumptionsExpanded", "true", "false", kept},
    {__LINE__, "drMethod", R"("pca")", R"("hierarchical")", kept},
    {__LINE__, "drItems", "[]", R"(["a","b"])", withDataset},
    {__LINE__, "drK", "3", "4", kept},
    {__LINE__, "drStandardize", "true", "false", kept},
    {__LINE__, "drHasRun", "false", "true", withDataset},
    {__LINE__, "drFactorCount", "2", "3", kept},
    {__LINE__, "drLinkage", R"("ward")", R"("single")", kept},
    {__LINE__, "mvTest", R"("manova")", R"("canonical")", kept},
    {__LINE__, "mvVars", "[]", R"(["a","b"])", withDataset},
    {__LINE__, "mvGroup", R"("")", R"("a")", withDataset},
    {__LINE__, "mvSetX", "[]", R"(["a","b"])", withDataset},
    {__LINE__, "mvSetY", "[]", R"(["a","b"])", withDataset},
    {__LINE__, "mvHasRun", "false", "true", withDataset},
    {__LINE__, "mvPriors", R"("proportional")", R"("equal")", kept},
    {__LINE__, "svWeight", R"("")", R"("a")", withDataset},
    {__LINE__, "svStrata", R"("")", R"("a")", withDataset},
    {__LINE__, "svCluster", R"("")", R"("a")", withDataset},
    {__LINE__, "svFpc", R"("")", R"("a")", withDataset},
    {__LINE__, "svReplicates", "[]", R"(["a","b"])", withDataset},
    {__LINE__, "svReplicateType", R"("jackknife")", R"("fayBRR")", withDataset},
    {__LINE__, "svFayRho", "0.5", "0.25", withDataset},
    {__LINE__, "svReplicateScale", R"("")", R"("0.9")", withDataset},
    {__LINE__, "svVar", R"("")", R"("a")", withDataset},
    {__LINE__, "svDenominator", R"("")", R"("a")", withDataset},
    {__LINE__, "svGroup", R"("")", R"("a")", withDataset},
    {__LINE__, "svConfidence", "95", "90", kept},
    {__LINE__, "svEstimand", R"("mean")", R"("other")", kept},
    {__LINE__, "svAnalysis", R"("estimates")", R"("ordinal")", kept},
    {__LINE__, "svOutcome", R"("")", R"("a")", withDataset},
    {__LINE__, "svPredictors", "[]", R"(["a","b"])", withDataset},
    {__LINE__, "svCorrVars", "[]", R"(["a","b"])", withDataset},
    {__LINE__, "svRowCat", R"("")", R"("a")", withDataset},
    {__LINE__, "svColCat", R"("")", R"("a")", withDataset},
    {__LINE__, "svHasRun", "false", "true", withDataset},
    {__LINE__, "surveyWeightsActive", "false", "true", withDataset},
    {__LINE__, "cvName", R"("Computed")", R"("other")", kept},
    {__LINE__, "cvKind", R"("aggregate")", R"("other")", kept},
    {__LINE__, "cvAggOp", R"("mean")", R"("maximum")", kept},
    {__LINE__, "cvSources", "[]", R"(["a","b"])", withDataset},
    {__LINE__, "cvMinCompletion", "0.0", "0.25", kept},
    {__LINE__, "cvVarA", R"("")", R"("a")", withDataset},
    {__LINE__, "cvVarB", R"("")", R"("a")", withDataset},
    {__LINE__, "cvPairOp", R"("difference")", R"("ratio")", kept},
    {__LINE__, "cvMessage", "null", R"("Said.")", withDataset},
    {__LINE__, "dvName", R"("")", R"("a")", kept},
    {__LINE__, "dvNewName", R"("")", R"("other")", kept},
    {__LINE__, "dvMessage", "null", R"("Said.")", kept},
    {__LINE__, "rcSource", R"("")", R"("a")", withDataset},
    {__LINE__, "rcName", R"("Recoded")", R"("other")", kept},
    {__LINE__, "rcReplace", "false", "true", kept},
    {__LINE__, "rcMode", R"("value")", R"("other")", kept},
    {__LINE__, "rcValueRules", "[]", oneValueRule, kept},
    {__LINE__, "rcRangeRules", "[]", oneRangeRule, kept},
    {__LINE__, "rcDraft", oneDraft[0], oneDraft[1], kept},
    {__LINE__, "prepareSection", R"("recode")", R"("imputation")", kept},
    {__LINE__, "rcCopyUnmatched", "true", "false", kept},
    {__LINE__, "rcReverseMin", "1.0", "1.25", kept},
    {__LINE__, "rcReverseMax", "5.0", "5.25", kept},
    {__LINE__, "rcMessage", "null", R"("Said.")", withDataset},
    {__LINE__, "clVar", R"("")", R"("a")", withDataset},
    {__LINE__, "clLower", R"("")", R"("other")", withDataset},
    {__LINE__, "clUpper", R"("")", R"("other")", withDataset},
    {__LINE__, "clOutlierMethod", R"("iqr")", R"("zScore")", kept},
    {__LINE__, "clMessage", "null", R"("Said.")", withDataset},
    {__LINE__, "clKeyColumns", "[]", R"(["a"])", withDataset},
    {__LINE__, "clGroup", R"("")", R"("a")", withDataset},
    {__LINE__, "clCompositionVar", R"("")", R"("a")", withDataset},
    {__LINE__, "clBenchmarks", "{}", R"({"a":"50"})", withDataset},
    {__LINE__, "impMethod", R"("mice")", R"("other")", kept},
    {__LINE__, "impM", "5", "6", kept},
    {__LINE__, "impTargets", "[]", R"(["a","b"])", withDataset},
    {__LINE__, "impPredictors", "[]", R"(["a","b"])", withDataset},
    {__LINE__, "impAnalysis", R"("regression")", R"("other")", kept},
    {__LINE__, "impTarget", R"("")", R"("a")", withDataset},
    {__LINE__, "impRegOutcome", R"("")", R"("a")", withDataset},
    {__LINE__, "impRegPredictors", "[]", R"(["a","b"])", withDataset},
    {__LINE__, "impCorrX", R"("")", R"("a")", withDataset},
    {__LINE__, "impCorrY", R"("")", R"("a")", withDataset},
    {__LINE__, "impChart", R"("")", R"("a")", withDataset},
    {__LINE__, "impPooledCoefs", "[]", onePooledCoefficient, withDataset},
    {__LINE__, "semModel", R"("")", R"("other")", withDataset},
    {__LINE__, "semHasRun", "false", "true", withDataset},
    {__LINE__, "semResult", "null", R"({"text":"f =~ a"})", withDataset},
    {__LINE__, "mlStructure", R"("nested")", R"("autoregressive")", withDataset},
    {__LINE__, "mlFamily", R"("gaussian")", R"("ordinal")", withDataset},
    {__LINE__, "mlDFMethod", R"("wald")", R"("kenwardRoger")", withDataset},
    {__LINE__, "mlOutcome", R"("")", R"("a")", withDataset},
    {__LINE__, "mlCluster", R"("")", R"("a")", withDataset},
    {__LINE__, "mlCluster2", R"("")", R"("a")", withDataset},
    {__LINE__, "mlTime", R"("")", R"("a")", withDataset},
    {__LINE__, "mlPredictors", "[]", R"(["a","b"])", withDataset},
    {__LINE__, "mlEstimator", R"("reml")", R"("ml")", kept},
    {__LINE__, "mlRandomSlope", R"("")", R"("a")", withDataset},
    {__LINE__, "mlMessage", "null", R"("Said.")", withDataset},
    {__LINE__, "mlCorrelateRandom", "true", "false", withDataset},
    {__LINE__, "mlHasRun", "false", "true", withDataset},
    {__LINE__, "lcMode", R"("profile")", R"("classAnalysis")", withDataset},
    {__LINE__, "lcItems", "[]", R"(["a","b"])", withDataset},
    {__LINE__, "lcClassCount", "2", "3", withDataset},
    {__LINE__, "lcHasRun", "false", "true", withDataset},
    {__LINE__, "lcKind", R"("profile")", R"("factorMixture")", withDataset},
    {__LINE__, "lcSweepRows", "null", oneSweepRow, withDataset},
    {__LINE__, "fmHasRun", "false", "true", withDataset},
    {__LINE__, "fmDisplayNames", "[]", R"(["a"])", withDataset},
    {__LINE__, "medMode", R"("mediation")", R"("moderation")", withDataset},
    {__LINE__, "medX", R"("")", R"("a")", withDataset},
    {__LINE__, "medM", R"("")", R"("a")", withDataset},
    {__LINE__, "medW", R"("")", R"("a")", withDataset},
    {__LINE__, "medY", R"("")", R"("a")", withDataset},
    {__LINE__, "medCovariates", "[]", R"(["a","b"])", withDataset},
    {__LINE__, "medHasRun", "false", "true", withDataset},
    {__LINE__, "medResult", "null", oneProcess, withDataset},
    {__LINE__, "modResult", "null", oneProcess, withDataset},
    {__LINE__, "invItems", "[]", R"(["a","b"])", withDataset},
    {__LINE__, "invGroup", R"("")", R"("a")", withDataset},
    {__LINE__, "invHasRun", "false", "true", withDataset},
    {__LINE__, "survMode", R"("kaplanMeier")", R"("cox")", withDataset},
    {__LINE__, "survTime", R"("")", R"("a")", withDataset},
    {__LINE__, "survEvent", R"("")", R"("a")", withDataset},
    {__LINE__, "survGroup", R"("")", R"("a")", withDataset},
    {__LINE__, "survPredictors", "[]", R"(["a","b"])", withDataset},
    {__LINE__, "survHasRun", "false", "true", withDataset},
    {__LINE__, "npTest", R"("mannWhitney")", R"("mcnemar")", kept},
    {__LINE__, "npOutcome", R"("")", R"("a")", withDataset},
    {__LINE__, "npGroup", R"("")", R"("a")", withDataset},
    {__LINE__, "npG1", R"("")", R"("other")", withDataset},
    {__LINE__, "npG2", R"("")", R"("other")", withDataset},
    {__LINE__, "npBefore", R"("")", R"("a")", withDataset},
    {__LINE__, "npAfter", R"("")", R"("a")", withDataset},
    {__LINE__, "npRowCat", R"("")", R"("a")", withDataset},
    {__LINE__, "npColCat", R"("")", R"("a")", withDataset},
    {__LINE__, "npGoFVar", R"("")", R"("a")", withDataset},
    {__LINE__, "npFriedmanItems", "[]", R"(["a","b"])", withDataset},
    {__LINE__, "npHasRun", "false", "true", withDataset},
    {__LINE__, "npResultTab", R"("result")", R"("other")", kept},
};
// clang-format on

/// The last runs of analyses: none at the start, none after a reset.
const std::vector<std::string> runFields = {"cmTTestRun",
                                            "cmPairedTTestRun",
                                            "cmOneWayRun",
                                            "cmFactorialRun",
                                            "cmRepeatedMeasuresRun",
                                            "cmAncovaRun",
                                            "mvManovaStored",
                                            "mvDiscriminantStored",
                                            "mvCanonicalStored",
                                            "npMannWhitneyRun",
                                            "npWilcoxonRun",
                                            "npKruskalWallisRun",
                                            "npFriedmanRun",
                                            "npChiSquareRun",
                                            "npGoodnessOfFitRun",
                                            "npFisherRun",
                                            "npMcNemarRun",
                                            "regLogisticRun",
                                            "regPoissonRun",
                                            "regOrdinalRun",
                                            "survKMResult",
                                            "survCoxResult",
                                            "drComponentsRun",
                                            "drFactorsRun",
                                            "drOmegaRun",
                                            "drKMeansRun",
                                            "drTreeRun",
                                            "lcSweepBasis",
                                            "lcResult",
                                            "lcClassesResult",
                                            "fmResult",
                                            "invResult",
                                            "mlOrdinalResult",
                                            "mlResult",
                                            "svResult",
                                            "svLinearResult",
                                            "svLogisticResult",
                                            "svPoissonResult",
                                            "svOrdinalResult",
                                            "svCorrelationResult",
                                            "svCrosstabResult",
                                            "impResult",
                                            "impPooledBasis",
                                            "impPooled",
                                            "impPooledCorr"};

class ScreenFieldsTest : public testing::Test {
protected:
    Json valueOf(const std::string& name) const { return registry.find(name)->json(); }

    FieldRegistry registry;
    ScreenFields fields{registry};
    VariableEditorFields editor{registry};
    CleaningFields cleaning{registry};
};

TEST_F(ScreenFieldsTest, HoldsTheFieldsOfTheTableAndNoOthers) {
    EXPECT_EQ(registry.fields().size(), fieldCases.size() + runFields.size());
    for (const std::string& name : runFields) {
        const AnyField* field = registry.find(name);
        ASSERT_NE(field, nullptr) << name;
        EXPECT_TRUE(field->json().is_null()) << name;
        EXPECT_EQ(field->resetRule(), withDataset) << name;
    }
    for (const FieldCase& field : fieldCases) {
        EXPECT_NE(registry.find(field.name), nullptr) << "line " << field.line;
    }
}

TEST_F(ScreenFieldsTest, StartsAsTheTableSays) {
    for (const FieldCase& field : fieldCases) {
        EXPECT_EQ(valueOf(field.name), Json::parse(field.start)) << "line " << field.line;
    }
}

TEST_F(ScreenFieldsTest, IsSetByNameAndKeepsAfterAResetWhatIsAPreference) {
    for (const FieldCase& field : fieldCases) {
        registry.find(field.name)->setJson(Json::parse(field.other));
        EXPECT_EQ(valueOf(field.name), Json::parse(field.other)) << "line " << field.line;
    }
    registry.resetWithDataset();
    for (const FieldCase& field : fieldCases) {
        const std::string& expected = field.rule == withDataset ? field.start : field.other;
        EXPECT_EQ(valueOf(field.name), Json::parse(expected)) << "line " << field.line;
    }
}

TEST_F(ScreenFieldsTest, NamesOfColumnsFollowARenameAndCategoriesDoNot) {
    fields.compareMeans.cmGrouping.set({"north"});
    fields.compareMeans.cmGroup1.set("north");
    editor.cvSources.set({"north", "west"});
    editor.dvNewName.set("north");
    fields.structural.semModel.set({"f =~ north + northern"});

    registry.renameVariable("north", "south");

    EXPECT_EQ(fields.compareMeans.cmGrouping->name, "south");
    EXPECT_EQ(fields.compareMeans.cmGroup1.get(), "north");
    EXPECT_EQ(editor.cvSources.get(), (NameSet{"south", "west"}));
    EXPECT_EQ(editor.dvNewName.get(), "north");
    EXPECT_EQ(fields.structural.semModel->text, "f =~ south + northern");
}

}  // namespace
}  // namespace sorvane
