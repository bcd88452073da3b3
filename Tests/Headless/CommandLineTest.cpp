#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "SorvaneMac/Headless/Commands.h"

namespace sorvane {
namespace {

/// The program without a window, in a folder of its own.
class CommandLine : public testing::Test {
protected:
    CommandLine() { std::filesystem::create_directory(folder_); }
    ~CommandLine() override { std::filesystem::remove_all(folder_); }

    std::string fileHolding(const std::string& text, const std::string& name) {
        std::ofstream(folder_ / name, std::ios::binary) << text;
        return (folder_ / name).string();
    }
    ExitStatus run(const std::vector<std::string>& words) {
        std::istringstream in;
        std::ostringstream out;
        std::ostringstream error;
        const ExitStatus status = Commands::run(
            words, {.resources = SORVANE_SOURCE_DIR "/Resources", .drawFigure = nullptr},
            {.in = in, .out = out, .error = error});
        out_ = out.str();
        error_ = error.str();
        return status;
    }
    /// What was printed, a record a line.
    std::vector<Json> lines() const {
        std::istringstream stream(out_);
        std::vector<Json> found;
        for (std::string line; std::getline(stream, line);) {
            found.push_back(Json::parse(line));
        }
        return found;
    }

    const std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() / Uuid::fresh().text();
    std::string out_;
    std::string error_;
};

TEST_F(CommandLine, EndsWithAStatusAndASentence) {
    const std::string csv = fileHolding("a,b\n1,2\n3,4\n", "t.csv");
    const std::string script = fileHolding(R"({"steps": []})", "s.json");
    constexpr auto callSo =
        "Call a procedure so: sorvane call PROCEDURE [--data FILE] [--pretty] [ARGS.json]\n";
    constexpr auto describeSo = "Describe a file so: sorvane describe FILE [--rows N]\n";
    constexpr auto runSo = "Run a script so: sorvane run SCRIPT.json [--out DIR]\n";
    const struct {
        int line;
        std::vector<std::string> words;
        ExitStatus status;
        std::string error;
    } cases[] = {
        {__LINE__, {"fly"}, ExitStatus::badArguments, "There is no command \"fly\".\n"},
        {__LINE__, {"call"}, ExitStatus::badArguments, callSo},
        {__LINE__, {"call", "a", "b", "c"}, ExitStatus::badArguments, callSo},
        {__LINE__,
         {"call", "a", "--data"},
         ExitStatus::badArguments,
         "Name a file after --data.\n"},
        {__LINE__,
         {"call", "MissingValue.displayMarkers", "/nowhere/args.json"},
         ExitStatus::badArguments,
         "The file of the arguments, /nowhere/args.json, cannot be read.\n"},
        {__LINE__, {"describe"}, ExitStatus::badArguments, describeSo},
        {__LINE__, {"describe", csv, csv}, ExitStatus::badArguments, describeSo},
        {__LINE__, {"describe", csv, "--rows"}, ExitStatus::badArguments, describeSo},
        {__LINE__, {"describe", csv, "--rows", "-1"}, ExitStatus::badArguments, describeSo},
        {__LINE__, {"describe", csv, "--rows", "nan"}, ExitStatus::badArguments, describeSo},
        {__LINE__, {"describe", csv, "--rows", "inf"}, ExitStatus::badArguments, describeSo},
        {__LINE__, {"describe", csv, "--rows", "two"}, ExitStatus::badArguments, describeSo},
        {__LINE__, {"describe", csv, "--rows", "1.5"}, ExitStatus::badArguments, describeSo},
        {__LINE__, {"describe", csv, "--rows", "0"}, ExitStatus::success, ""},
        {__LINE__, {"run"}, ExitStatus::badArguments, runSo},
        {__LINE__, {"run", script, script}, ExitStatus::badArguments, runSo},
        {__LINE__,
         {"run", "/nowhere/s.json"},
         ExitStatus::badArguments,
         "The file of the script, /nowhere/s.json, cannot be read.\n"},
        {__LINE__,
         {"run", fileHolding(R"({"step": []})", "a.json")},
         ExitStatus::badArguments,
         "A script is an object with a list of \"steps\".\n"},
        {__LINE__,
         {"run", fileHolding("[]", "b.json")},
         ExitStatus::badArguments,
         "A script is an object with a list of \"steps\".\n"},
        {__LINE__,
         {"run", script, "--out", csv + "/under"},
         ExitStatus::refused,
         "The folder " + csv + "/under cannot be made: Not a directory.\n"},
        {__LINE__, {"run", script, "--out", folder_.string()}, ExitStatus::success, ""},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(run(each.words), each.status) << each.line;
        EXPECT_EQ(error_, each.error) << each.line;
        EXPECT_EQ(each.status == ExitStatus::success || out_.empty(), true) << each.line << out_;
    }
}

TEST_F(CommandLine, ToldWhatIsWrongWithGivenJson) {
    const auto nested = [](std::size_t levels) {
        return std::string(levels, '[') + std::string(levels, ']');
    };
    const struct {
        std::string text;
        std::string error;
    } cases[] = {
        {"{", "The arguments cannot be read as JSON from byte 2 on.\n"},
        {R"({"a":1e999})", "A number of the arguments is beyond all doubles.\n"},
        {R"({"a":)" + nested(100'000) + R"(,"b":1})",
         "Lists and objects of the arguments nest more than 200 levels deep.\n"},
        {R"({"a":)" + nested(200) + "}",
         "Lists and objects of the arguments nest more than 200 levels deep.\n"},
        {R"({"a":)" + nested(199) + "}", "The procedure has no argument \"a\".\n"},
        {R"({"a":[{"c":1},{"c":2,"d":{"c":3}}],"b":{"c":1,"d":2,"c":3}})",
         "The name \"c\" stands twice in one object of the arguments. Leave one of them out.\n"},
    };
    for (const auto& each : cases) {
        const std::string file = fileHolding(each.text, "given.json");
        EXPECT_EQ(run({"call", "MissingValue.displayMarkers", file}), ExitStatus::badArguments);
        EXPECT_EQ(error_, each.error);
    }
    EXPECT_EQ(run({"call", "MissingValue.displayMarkers", fileHolding(" \n", "blank.json")}),
              ExitStatus::success)
        << error_;
    const std::string folder = folder_.string();
    EXPECT_EQ(run({"call", "MissingValue.displayMarkers", folder}), ExitStatus::badArguments);
    EXPECT_EQ(error_, "The file of the arguments, " + folder + ", cannot be read.\n");
    EXPECT_EQ(run({"run", folder}), ExitStatus::badArguments);
    EXPECT_EQ(error_, "The file of the script, " + folder + ", cannot be read.\n");
    const std::string huge = fileHolding(
        R"({"merges":[],"caseCount":4611686018427387904,"k":4611686018427387904})", "huge.json");
    EXPECT_EQ(run({"call", "ClusterAnalysis.cutTree", huge}), ExitStatus::refused);
    EXPECT_EQ(error_, "The procedure needs more memory than there is; give it smaller numbers.\n");
}

TEST_F(CommandLine, DescribesAsManyRowsAsThereAre) {
    const std::string csv = fileHolding("a,b\n1,2\n3,4\n5,6\n", "t.csv");
    for (const auto& [rows, expected] :
         {std::pair("0", 0U), std::pair("2", 2U), std::pair("1e30", 3U)}) {
        ASSERT_EQ(run({"describe", csv, "--rows", rows}), ExitStatus::success) << rows << error_;
        const Json description = Json::parse(out_);
        EXPECT_EQ(description["firstRows"].size(), expected) << rows;
        EXPECT_EQ(description["lastRow"], Json::parse(R"(["5","6"])")) << rows;
    }
    ASSERT_EQ(run({"describe", csv}), ExitStatus::success);
    EXPECT_FALSE(Json::parse(out_).contains("firstRows"));
}

TEST_F(CommandLine, CallsWithTheArgumentsOfAFile) {
    const std::string csv = fileHolding("x,y\n1,2\n2,4\n3,7\n", "t.csv");
    const std::string arguments = fileHolding(R"({"x": "x", "y": "y"})", "a.json");
    ASSERT_EQ(run({"call", "RelationshipTests.pearson", "--data", csv, arguments}),
              ExitStatus::success)
        << error_;
    const std::string plain = out_;
    ASSERT_EQ(run({"call", "--pretty", arguments, "--data", csv}), ExitStatus::badArguments);
    ASSERT_EQ(run({"call", "RelationshipTests.pearson", arguments, "--data", csv, "--pretty"}),
              ExitStatus::success);
    EXPECT_TRUE(out_.starts_with("{\n  \""));
    EXPECT_EQ(Json::parse(out_), Json::parse(plain));
}

TEST_F(CommandLine, CarriesAScriptOutUpToTheFirstRefusal) {
    fileHolding("x,y\n1,2\n2,4\n3,7\n4,8\n", "t.csv");
    const std::string script = fileHolding(
        R"({"steps": [{"import": "t.csv"}, {"csv": "copy.csv"},
                      {"set": {"corrX": "x", "corrY": "x"}}, {"run": "correlation"},
                      {"csv": "never.csv"}]})",
        "s.json");
    const std::filesystem::path output = folder_ / "made" / "here";
    EXPECT_EQ(run({"run", script, "--out", output.string()}), ExitStatus::refused);
    EXPECT_EQ(error_,
              "Need two numeric variables. Choose them in the Setup panel. Numeric columns are "
              "offered; set a column numeric in Variable Types if it is missing.\n");
    ASSERT_EQ(lines().size(), 4U);
    EXPECT_EQ(lines()[0]["rows"], 4);
    EXPECT_EQ(lines()[1]["files"][0], (output / "copy.csv").string());
    EXPECT_EQ(lines()[3]["step"], "run");
    EXPECT_EQ(lines()[3]["refused"].get<std::string>() + "\n", error_);
    EXPECT_TRUE(std::filesystem::exists(output / "copy.csv"));
    EXPECT_FALSE(std::filesystem::exists(output / "never.csv"));
}

TEST_F(CommandLine, TakesFilesOfTheScriptsFolderAndThoseItWrote) {
    fileHolding("x,y\n1,2\n2,4\n3,7\n4,8\n", "t.csv");
    const std::string script = fileHolding(
        R"({"steps": [{"import": "t.csv"}, {"save": "p.svp"}, {"blank": {"rows": 3, "columns": 2}},
                      {"open": "p.svp"}, {"import": "none.csv"}]})",
        "s.json");
    EXPECT_EQ(run({"run", script, "--out", (folder_ / "out").string()}), ExitStatus::refused);
    ASSERT_EQ(lines().size(), 5U) << error_;
    EXPECT_EQ(lines()[2]["rows"], 3);
    EXPECT_EQ(lines()[3]["rows"], 4);
    EXPECT_TRUE(error_.starts_with("Could not import none.csv: ")) << error_;
}

TEST_F(CommandLine, RefusesStepsOfTheWrongForm) {
    const struct {
        int line;
        std::string step;
        std::string error;
    } cases[] = {
        {__LINE__, R"({"import": 3})", "The step's argument needs a text.\n"},
        {__LINE__, R"({"import": "a", "run": "b"})",
         "A step is an object with one key, the step's name.\n"},
        {__LINE__, R"({"set": ["a"]})",
         "The step \"set\" needs an object of field names and values.\n"},
        {__LINE__, R"({"do": {}})",
         "The step \"do\" needs the name of one operation, with its arguments.\n"},
        {__LINE__, R"({"do": {"resetToSample": {"now": true}}})",
         "The procedure has no argument \"now\".\n"},
        {__LINE__, R"({"blank": {"rows": 2.5}})", "The argument \"rows\" needs a whole number.\n"},
        {__LINE__, R"({"do": {"updateDatasetCell": {"row": 0, "column": 0, "value": "5"}}})",
         "The table cannot be edited; only a grid that was made blank can.\n"},
        {__LINE__, R"({"do": "undoLastDataChange"})",
         "There is no change of the data to take back.\n"},
        {__LINE__, R"({"set": {"corrMatrixVars": ["a", 1]}})",
         "The field \"corrMatrixVars\" [1] needs a text.\n"},
        {__LINE__, R"({"do": {"updateDatasetCell": {"row": 0}}})",
         "The argument \"column\" is missing.\n"},
    };
    for (const auto& each : cases) {
        const std::string script = fileHolding("{\"steps\": [" + each.step + "]}", "s.json");
        EXPECT_EQ(run({"run", script, "--out", folder_.string()}), ExitStatus::refused);
        EXPECT_EQ(error_, each.error) << each.line;
    }
}

}  // namespace
}  // namespace sorvane
