#include "SorvaneMac/Headless/CallArguments.h"

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

#include "SorvaneCore/Import/CSVImporter.h"
#include "SorvaneMac/Headless/ProcedureTable.h"

namespace sorvane {
namespace {

/// What the arguments of a call say is wrong with them; blank where nothing is.
std::string objection(const std::string& procedure,
                      const std::string& given,
                      const std::optional<ImportedDataset>& dataset = std::nullopt) {
    try {
        ProcedureTable::find(procedure)->call({Json::parse(given), dataset});
        return {};
    } catch (const CallError& error) {
        return error.what();
    }
}

Json result(const std::string& procedure,
            const std::string& given,
            const std::optional<ImportedDataset>& dataset = std::nullopt) {
    return ProcedureTable::find(procedure)->call({Json::parse(given), dataset});
}

ImportedDataset table() {
    return CSVImporter().importCSV("table", "g,x,y\na,1,2\nb,2,4\na,3,7\nb,4,8\na,5,9\n");
}

constexpr auto pearson = "RelationshipTests.pearson";
constexpr auto alpha = "ReliabilityAnalyzer.analyze";
constexpr auto tPValue = "MathDistributions.studentTPValue";
constexpr auto bins = "BinnedVariableBuilder.equalWidth";

TEST(CallArguments, SayInOneSentenceWhatTheyNeed) {
    const struct {
        int line;
        const char* procedure;
        std::string given;
        std::string objection;
    } cases[] = {
        {__LINE__, pearson, "[]", "The arguments must be one JSON object."},
        {__LINE__, pearson, "7", "The arguments must be one JSON object."},
        {__LINE__, pearson, R"({"x":3,"y":[1]})",
         "The argument \"x\" needs a column name or a list of cells."},
        {__LINE__, pearson, R"({"x":[true],"y":[1]})",
         "The argument \"x\" needs cells that are numbers, texts or null."},
        {__LINE__, pearson, R"({"x":[[1]],"y":[1]})",
         "The argument \"x\" needs cells that are numbers, texts or null."},
        {__LINE__, pearson, R"({"x":null,"y":[1]})",
         "The argument \"x\" needs a column name or a list of cells."},
        {__LINE__, tPValue, R"({"t":null,"df":2})", "The argument \"t\" needs a number."},
        {__LINE__, tPValue, R"({"t":"1","df":2})", "The argument \"t\" needs a number."},
        {__LINE__, tPValue, R"({"t":"NaN","df":2})", "The argument \"t\" needs a number."},
        {__LINE__, tPValue, R"({"t":"nan","df":2})", ""},
        {__LINE__, tPValue, R"({"t":"-inf","df":2})", ""},
        {__LINE__, "BFGSMinimizer.identity", R"({"n":4001})",
         "A matrix of so many columns is too large; give at most 4000."},
        {__LINE__, "LinearAlgebra.gramMatrix", R"({"matrix":[],"rows":0,"cols":4294967296})",
         "A matrix of so many columns is too large; give at most 4000."},
        {__LINE__, "SurveyVariance.multiply", R"({"a":[1],"b":[1],"p":9223372036854775807})",
         "Both matrices take \"p\" times \"p\" numbers."},
        {__LINE__, "SurveyVariance.sandwich", R"({"bread":[1],"meat":[1],"p":9223372036854775807})",
         "Both matrices take \"p\" times \"p\" numbers."},
        {__LINE__, "SurveyVariance.multiply", R"({"a":[],"b":[],"p":0})", ""},
        {__LINE__, "SurveyVariance.scoreCovariance",
         R"({"u":[1,2,3,4],"weights":[1,1,1,1],"p":4611686018427387905})",
         "The scores \"u\" take one row of \"p\" numbers per row of a sound design."},
        {__LINE__, alpha, R"({"matrix":"x"})", "The argument \"matrix\" needs a list of columns."},
        {__LINE__, alpha, R"({"matrix":{"x":[1]}})",
         "The argument \"matrix\" needs a list of columns."},
        {__LINE__, alpha, R"({"matrix":[[1,2],[3]]})",
         "The argument \"matrix\" needs rows of one length."},
        {__LINE__, alpha, R"({"matrix":[[1,2],3]})",
         "The argument \"matrix\" needs rows of one length."},
        {__LINE__, alpha, R"({"matrix":[[1,2],[2,2]],"itemNames":["a",2]})",
         "The argument \"itemNames\" [1] needs a text."},
        {__LINE__, alpha, R"({"matrix":[[1,2],[2,2]],"missingDataRule":"none"})",
         "The argument \"missingDataRule\" needs one of listwise deletion, available-item mean, "
         "exclude case if missing more than threshold."},
        {__LINE__, alpha, R"({"matrix":[[1,2],[2,2]],"missingDataRule":1})",
         "The argument \"missingDataRule\" needs one of a list of names."},
        {__LINE__, alpha, R"({"matrix":[[1,2],[2,2]],"reverseCoded":[{"item":1}]})",
         "The argument \"reverseCoded\" [0].item needs a text."},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(objection(each.procedure, each.given), each.objection) << each.line;
    }
}

TEST(CallArguments, TakeWholeNumbersWithinTheirRange) {
    const auto bandCount = [](const std::string& count) {
        return objection(bins, R"({"column":[1,2,3,4],"binCount":)" + count + "}");
    };
    for (const char* count : {"2", "2.0", "3e0", "-1", "0"}) {
        EXPECT_EQ(bandCount(count), "") << count;
    }
    for (const char* count : {"2.5", "1e30", "-1e30", "18446744073709551615", "9223372036854775808",
                              "true", R"("2")", R"("inf")", "null"}) {
        EXPECT_EQ(bandCount(count), "The argument \"binCount\" needs a whole number.") << count;
    }
}

TEST(CallArguments, TakeTheStartOfASequenceInEitherBase) {
    const auto seed = [](const std::string& given) {
        return CallArguments({{"seed", Json::parse(given)}}, std::nullopt).seed("seed", 7);
    };
    EXPECT_EQ(seed("31"), 31U);
    EXPECT_EQ(seed(R"("0x1F")"), 31U);
    EXPECT_EQ(seed(R"("0X1f")"), 31U);
    EXPECT_EQ(seed(R"("31")"), 31U);
    EXPECT_EQ(seed("18446744073709551615"), ~std::uint64_t{0});
    EXPECT_EQ(seed(R"("0xffffffffffffffff")"), ~std::uint64_t{0});
    EXPECT_EQ(CallArguments(Json::object(), std::nullopt).seed("seed", 7), 7U);
    for (const char* given : {"-1", "1.5", R"("")", R"("0x")", R"("1f")",
                              R"("0x10000000000000000")", R"("12 ")", "null", "[]"}) {
        EXPECT_THROW(seed(given), CallError) << given;
    }
}

TEST(CallArguments, RestrictTheRowsOfTheTable) {
    const struct {
        int line;
        std::string rows;
        int n;
    } cases[] = {
        {__LINE__, R"("firstRows":4)", 4},  {__LINE__, R"("firstRows":99)", 5},
        {__LINE__, R"("rows":[5,1,3])", 3}, {__LINE__, R"("rows":[2,2,2,4])", 4},
        {__LINE__, R"("rows":"all")", 5},   {__LINE__, R"("firstRows":3,"rows":[5])", 3},
    };
    for (const auto& each : cases) {
        const Json found = result(pearson, R"({"x":"x","y":"y",)" + each.rows + "}", table());
        EXPECT_EQ(found["n"], each.n) << each.line;
    }
    const struct {
        int line;
        std::string rows;
        std::string objection;
    } refused[] = {
        {__LINE__, R"("firstRows":-1)",
         "The argument \"firstRows\" needs a whole number that is not negative."},
        {__LINE__, R"("firstRows":"4")", "The argument \"firstRows\" needs a whole number."},
        {__LINE__, R"("rows":[0])", "The argument \"rows\" names a row that is not there."},
        {__LINE__, R"("rows":[6])", "The argument \"rows\" names a row that is not there."},
        {__LINE__, R"("rows":[1,-2])",
         "The argument \"rows\" [1] needs a whole number that is not negative."},
        {__LINE__, R"("rows":3)", "The argument \"rows\" needs a list."},
    };
    for (const auto& each : refused) {
        EXPECT_EQ(objection(pearson, R"({"x":"x","y":"y",)" + each.rows + "}", table()),
                  each.objection)
            << each.line;
    }
}

TEST(CallArguments, ReadColumnsAndCellsSideBySide) {
    const Json found = result(alpha, R"({"matrix":["x",[2,4,7,8,null]]})", table());
    EXPECT_EQ(found["itemNames"], Json::parse(R"(["x","Column 2"])"));
    EXPECT_EQ(found["casesUsed"], 4);
    const Json mixed =
        result(pearson, R"({"x":[1," 2 ","3.0",null,"NA","n/a"],"y":[1,2,4,4,5,6]})");
    EXPECT_EQ(mixed["n"], 3);
}

TEST(CallArguments, GroupOneColumnByAnother) {
    constexpr auto welch = "GroupComparisonEngine.welchANOVA";
    const std::string listed = result(welch, R"({"groups":[{"name":"a","values":[1,3,5]},
                                                          {"name":"b","values":[2,4]}]})")
                                   .dump();
    EXPECT_EQ(result(welch, R"({"groups":{"column":"x","by":"g"}})", table()).dump(), listed);
    EXPECT_EQ(result(welch, R"({"outcome":"x","group":"g"})", table()).dump(), listed);
    const ImportedDataset withOneOfC =
        CSVImporter().importCSV("table", "g,x\na,1\nb,2\nc,9\na,3\nb,4\na,5\nNA,6\nd,NA\n");
    EXPECT_EQ(result(welch, R"({"outcome":"x","group":"g"})", withOneOfC).dump(), listed)
        << "a group of one value is none";
    const struct {
        int line;
        std::string given;
        std::string objection;
    } refused[] = {
        {__LINE__, R"({"groups":{"column":"x"}})",
         "The argument \"groups\" needs a list of groups, or the names of a column and the column "
         "by which it is grouped."},
        {__LINE__, R"({"groups":{"column":"x","by":"h"}})",
         "The argument \"groups\" names the column \"h\", which is not in the file."},
        {__LINE__, R"({"outcome":"x"})", "The argument \"group\" is missing."},
        {__LINE__, R"({"groups":[{"name":"a","values":"z"}]})",
         "The argument \"groups\" names the column \"z\", which is not in the file."},
        {__LINE__, R"({"groups":[3]})",
         "The argument \"groups\" needs groups with a name and values."},
        {__LINE__, R"({"groups":{"column":"x","by":"g"},"levels":2})",
         "The procedure has no argument \"levels\"."},
    };
    for (const auto& each : refused) {
        EXPECT_EQ(objection(welch, each.given, table()), each.objection) << each.line;
    }
}

}  // namespace
}  // namespace sorvane
