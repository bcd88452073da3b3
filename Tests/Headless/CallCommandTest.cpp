#include <sstream>

#include <gtest/gtest.h>

#include "SorvaneMac/Headless/Commands.h"
#include "SorvaneMac/Headless/OperationTable.h"
#include "SorvaneMac/Headless/ProcedureTable.h"

namespace sorvane {
namespace {

struct Answer {
    ExitStatus status = ExitStatus::success;
    std::string out;
    std::string error;
};

Answer answer(const std::vector<std::string>& words, const std::string& input = "") {
    std::istringstream in(input);
    std::ostringstream out;
    std::ostringstream error;
    const ExitStatus status = Commands::run(words, {}, {.in = in, .out = out, .error = error});
    return {.status = status, .out = out.str(), .error = error.str()};
}

const std::string mtcars = SORVANE_SOURCE_DIR "/Tests/Reference/data/mtcars.csv";

TEST(CallCommand, TakesColumnsByNameOrAsCells) {
    const Answer byName =
        answer({"call", "RelationshipTests.pearson", "--data", mtcars}, R"({"x":"mpg","y":"wt"})");
    EXPECT_EQ(byName.status, ExitStatus::success) << byName.error;
    EXPECT_NEAR(Json::parse(byName.out)["r"].get<double>(), -0.8676593765172278, 1e-12);

    const Answer cells = answer({"call", "RelationshipTests.pearson"},
                                R"({"x":[1,2,null,4,"5"],"y":[2,4,9,"NA",10]})");
    EXPECT_EQ(cells.status, ExitStatus::success) << cells.error;
    EXPECT_EQ(Json::parse(cells.out)["n"], 3);
    EXPECT_EQ(Json::parse(cells.out)["r"], 1.0);
}

TEST(CallCommand, GivesNullForAnAbsentResultAndTextForANumberThatIsNotFinite) {
    EXPECT_EQ(answer({"call", "RelationshipTests.pearson"}, R"({"x":[1,1],"y":[2,3]})").out,
              "null\n");
    EXPECT_EQ(answer({"call", "MathDistributions.studentTPValue"}, R"({"t":1,"df":-1})").out,
              "\"nan\"\n");
}

TEST(CallCommand, ReadsAMatrixAsRowsOrAsColumnNames) {
    const std::string rows = R"({"matrix":[[1,2,3],[2,3,5],[4,4,4],[5,5,6]]})";
    const Answer given = answer({"call", "ReliabilityAnalyzer.cronbachAlpha"}, rows);
    EXPECT_EQ(given.status, ExitStatus::success) << given.error;
    EXPECT_NEAR(Json::parse(given.out).get<double>(), 12.0 / 13.0, 1e-12);

    const Answer named = answer({"call", "ReliabilityAnalyzer.analyze", "--data", mtcars},
                                R"({"itemNames":["gear","carb"]})");
    EXPECT_EQ(Json::parse(named.out)["itemNames"], Json::parse(R"(["gear","carb"])"));
    EXPECT_EQ(Json::parse(named.out)["casesUsed"], 32);
}

TEST(CallCommand, ComparesRowsOfUnevenLengthWhole) {
    const Answer uneven = answer({"call", "DataCleaning.duplicateRows"},
                                 R"({"rows":[["a","b"],["a"],["a",""],["a"]]})");
    EXPECT_EQ(Json::parse(uneven.out)["groups"], Json::parse("[[1,3]]")) << uneven.error;
}

TEST(CallCommand, TakesTestsOfCountsAndOfColumns) {
    const Answer counts =
        answer({"call", "FisherExactTests.test"}, R"({"a":6,"b":7,"c":12,"d":7})");
    const Answer columns = answer({"call", "FisherExactTests.test", "--data", mtcars},
                                  R"({"exposure":"am","outcome":"vs"})");
    EXPECT_EQ(counts.status, ExitStatus::success) << counts.error;
    EXPECT_EQ(counts.out, columns.out);
    EXPECT_EQ(answer({"call", "NonparametricTests.friedman"},
                     R"({"rowsBySubject":[[1,2,3],[2,null,4],[3,1,2]]})")
                  .out,
              answer({"call", "NonparametricTests.friedman"},
                     R"({"conditions":[[1,2,3],[2,null,1],[3,4,2]]})")
                  .out);
    EXPECT_EQ(
        answer({"call", "NonparametricTests.friedman"}, R"({"rowsBySubject":[[1,2],[3]]})").out,
        "null\n");
    const Answer named = answer({"call", "FactorialANOVATests.twoWay", "--data", mtcars},
                                R"({"outcome":"mpg","factorA":"am","factorB":"vs"})");
    EXPECT_EQ(Json::parse(named.out)["factorNames"], Json::parse(R"(["am","vs"])"));
}

TEST(CallCommand, TakesGroupsAsListsOrAsOneColumnByAnother) {
    const std::string welch = "GroupComparisonEngine.welchANOVA";
    const Answer listed = answer({"call", welch}, R"({"groups":[{"name":"a","values":[1,2,null,4]},
                                                                {"name":2,"values":[3,5,"9"]}]})");
    EXPECT_EQ(listed.status, ExitStatus::success) << listed.error;
    const Answer byColumn =
        answer({"call", welch}, R"({"groups":{"column":[1,3,2,5,"",4,9],"by":[1,2,1,2,1,1,2]}})");
    EXPECT_EQ(byColumn.out, listed.out);
    EXPECT_EQ(answer({"call", welch}, R"({"groups":[{"values":[1]}]})").error,
              "The argument \"groups\" needs groups with a name and values.\n");
    EXPECT_EQ(answer({"call", welch}, "{}").error, "The argument \"groups\" is missing.\n");

    const std::string test = "GroupComparisonTests.independentSamplesTTest";
    const Answer samples = answer({"call", test, "--data", mtcars},
                                  R"({"outcome":"mpg","group":"cyl","groupA":8,"groupB":4})");
    EXPECT_NEAR(Json::parse(samples.out)["meanDifference"].get<double>(), -11.56363636363636,
                1e-12);
}

TEST(CallCommand, NamesTheColumnsOfAMatrixThatHasNoNames) {
    const struct {
        int line;
        std::vector<std::string> words;
        std::string input;
        std::string names;
    } cases[] = {
        {__LINE__, {}, R"({"matrix":[[1,2],[2,3],[4,4]]})", R"(["Column 1","Column 2"])"},
        {__LINE__, {}, R"({"matrix":[[1],[2],[3]],"itemNames":[]})", R"(["Column 1"])"},
        {__LINE__, {"--data", mtcars}, R"({"matrix":["mpg","wt"]})", R"(["mpg","wt"])"},
        {__LINE__, {"--data", mtcars}, R"({"matrix":["mpg"],"itemNames":[]})", R"(["mpg"])"},
        {__LINE__, {"--data", mtcars}, R"({"matrix":["mpg"],"itemNames":["m"]})", R"(["m"])"},
        {__LINE__, {}, R"({"matrix":[],"itemNames":["a","b"]})", R"(["a","b"])"},
    };
    for (const auto& each : cases) {
        std::vector<std::string> words{"call", "ReliabilityAnalyzer.analyze"};
        words.insert(words.end(), each.words.begin(), each.words.end());
        const Answer got = answer(words, each.input);
        ASSERT_EQ(got.status, ExitStatus::success) << "line " << each.line << got.error;
        EXPECT_EQ(Json::parse(got.out)["itemNames"], Json::parse(each.names)) << each.line;
    }
    const Answer oneItem =
        answer({"call", "ReliabilityAnalyzer.readiness"}, R"({"matrix":[[1],[2],[3],[4],[5]]})");
    EXPECT_EQ(Json::parse(oneItem.out)["status"], "blocked");
}

TEST(CallCommand, SaysInOneLineWhatIsWrong) {
    const struct {
        int line;
        std::vector<std::string> words;
        std::string input;
        ExitStatus status;
        std::string error;
    } cases[] = {
        {__LINE__,
         {"call", "Nothing.here"},
         "{}",
         ExitStatus::badArguments,
         "There is no procedure \"Nothing.here\"; `sorvane procedures` lists them all.\n"},
        {__LINE__,
         {"call", "RelationshipTests.pearson"},
         R"({"x":[1,2,3]})",
         ExitStatus::badArguments,
         "The argument \"y\" is missing.\n"},
        {__LINE__,
         {"call", "RelationshipTests.pearson", "--data", mtcars},
         R"({"x":"mpg","y":"weight"})",
         ExitStatus::badArguments,
         "The argument \"y\" names the column \"weight\", which is not in the file.\n"},
        {__LINE__,
         {"call", "RelationshipTests.pearson"},
         R"({"x":"mpg","y":"wt"})",
         ExitStatus::badArguments,
         "The argument \"x\" names the column \"mpg\"; give the file that holds it with "
         "--data.\n"},
        {__LINE__,
         {"call", "MathDistributions.studentTPValue"},
         R"({"t":1,"df":2,"tails":1})",
         ExitStatus::badArguments,
         "The procedure has no argument \"tails\".\n"},
        {__LINE__,
         {"call", "MathDistributions.studentTPValue"},
         R"({"t":"one","df":2})",
         ExitStatus::badArguments,
         "The argument \"t\" needs a number.\n"},
        {__LINE__,
         {"call", "ReliabilityAnalyzer.analyze"},
         R"({"matrix":[[1,2],[2,3],[4,4]],"itemNames":["a","b","c"]})",
         ExitStatus::badArguments,
         "The argument \"itemNames\" needs a name for each of the 2 columns of \"matrix\".\n"},
        {__LINE__,
         {"call", "MissingValue.displayMarkers", "--data", "/nowhere/data.ods"},
         "",
         ExitStatus::refused,
         "Sorvane Studio imports .xlsx, .numbers, and .csv files, not .ods files.\n"},
    };
    for (const auto& each : cases) {
        const Answer got = answer(each.words, each.input);
        EXPECT_EQ(got.status, each.status) << "line " << each.line;
        EXPECT_EQ(got.error, each.error) << "line " << each.line;
        EXPECT_EQ(got.out, "") << "line " << each.line;
    }
}

TEST(DescribeCommand, PrintsTheDatasetAndItsRows) {
    const Answer got = answer({"describe", mtcars, "--rows", "2"});
    ASSERT_EQ(got.status, ExitStatus::success) << got.error;
    const Json description = Json::parse(got.out);
    EXPECT_EQ(description["name"], "mtcars.csv");
    EXPECT_EQ(description["rowCount"], 32);
    EXPECT_EQ(description["variables"].size(), description["headers"].size());
    EXPECT_EQ(description["importMetadata"]["rowSummaries"].size(), 32U);
    EXPECT_EQ(description["firstRows"].size(), 2U);
    EXPECT_EQ(description["lastRow"].size(), description["headers"].size());
}

TEST(ProcedureTable, ListsEveryProcedureOnceWithItsArguments) {
    std::set<std::string> names;
    for (const Procedure& procedure : ProcedureTable::all()) {
        EXPECT_TRUE(names.insert(procedure.name).second) << procedure.name;
    }
    const std::string listed = answer({"procedures"}).out;
    EXPECT_NE(listed.find("RelationshipTests.pearson\n    x: column of numbers\n"),
              std::string::npos);
    EXPECT_NE(listed.find("    confidenceLevel: number (may be left out: 0.95)\n"),
              std::string::npos);
    EXPECT_NE(listed.find("    scaleScoreMethod: one of mean, sum (may be left out: \"mean\")\n"),
              std::string::npos);
}

TEST(OperationTable, ListsEveryOperationOnceWithItsArguments) {
    std::set<std::string> names;
    for (const Operation& operation : OperationTable::all()) {
        EXPECT_TRUE(names.insert(operation.name).second) << operation.name;
    }
    const std::string listed = answer({"operations"}).out;
    EXPECT_NE(listed.find("assignVariable\n    variable: text\n    kind: one of demographic"),
              std::string::npos)
        << listed;
}

}  // namespace
}  // namespace sorvane
