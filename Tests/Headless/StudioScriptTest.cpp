#include "SorvaneMac/Headless/StudioScript.h"

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "SorvaneMac/Screens/ScreenFields.h"

namespace sorvane {
namespace {

const std::filesystem::path resources = SORVANE_SOURCE_DIR "/Resources";

class StudioScriptTest : public testing::Test {
protected:
    StudioScriptTest() { std::filesystem::create_directory(output_); }
    ~StudioScriptTest() override { std::filesystem::remove_all(output_); }

    StepOutcome perform(const std::string& step) { return script_.perform(Json::parse(step)); }

    const std::filesystem::path output_ =
        std::filesystem::temp_directory_path() / Uuid::fresh().text();
    StudioState state_{resources};
    StudioScreens screens_{state_};
    StudioScript script_{
        state_, screens_, {.folder = resources, .output = output_, .drawFigure = nullptr}};
};

TEST_F(StudioScriptTest, GoesFromAFileToAReport) {
    const StepOutcome imported = perform(R"({"import": "SampleEIStudy.csv"})");
    ASSERT_EQ(imported.refusal, std::nullopt);
    EXPECT_EQ(imported.report["rows"], 300);
    EXPECT_EQ(imported.report["screen"], "instrumentMap");

    const StepOutcome set = perform(
        R"({"set": {"constructName": "Calm", "regOutcome": "performance_score",
                    "regPredictors": ["sa1", "em1"]}})");
    ASSERT_EQ(set.refusal, std::nullopt);
    EXPECT_EQ(perform(R"({"run": "regression"})").report["result"]["predictorCount"], 2);
    EXPECT_EQ(perform(R"({"stage": "regression"})").report["staged"], 1);
    const StepOutcome reliability = perform(R"({"stage": "scalesReliability"})");
    EXPECT_EQ(reliability.report["stagedItems"][0]["title"], "Reliability: Calm");

    EXPECT_EQ(perform(R"({"export": {"md": "early.md"}})").refusal, "Assemble the report first.");
    ASSERT_EQ(perform(R"({"assemble": {}})").refusal, std::nullopt);
    ASSERT_EQ(perform(R"({"export": {"md": "r.md", "docx": "r.docx", "rtf": "r.rtf"}})").refusal,
              std::nullopt);
    std::ifstream markdown(output_ / "r.md");
    const std::string text{std::istreambuf_iterator<char>(markdown), {}};
    EXPECT_NE(text.find("Dataset: SampleEIStudy.csv   Cases: 300"), std::string::npos);
    EXPECT_NE(text.find("Linear regression of performance_score on sa1 and em1."),
              std::string::npos);
    EXPECT_TRUE(std::filesystem::file_size(output_ / "r.docx") > 1000);
}

TEST_F(StudioScriptTest, DrawsTheFiguresOfWhatItStages) {
    StudioScript script(
        state_, screens_,
        {.folder = resources, .output = output_, .drawFigure = [](const Chart& chart) {
             return std::vector<std::uint8_t>(chart.title.begin(), chart.title.end());
         }});
    script.perform(Json::parse(R"({"import": "SampleEIStudy.csv"})"));
    script.perform(Json::parse(R"({"stage": "descriptives"})"));
    ASSERT_EQ(state_.reportItems->size(), 1U);
    const auto& figure = state_.reportItems->front().figure;
    ASSERT_TRUE(figure);
    EXPECT_EQ(std::string(figure->begin(), figure->end()), "Histogram");
}

TEST_F(StudioScriptTest, FitsAModelThatIsWrittenAsText) {
    perform(R"({"import": "SampleEIStudy.csv"})");
    ASSERT_EQ(perform(R"({"set": {"semModel": "awareness =~ sa1 + sa2 + sa3 +"}})").refusal,
              std::nullopt);
    EXPECT_TRUE(
        perform(R"({"run": "sem"})").refusal->starts_with("Model did not parse. Empty term"));
    EXPECT_TRUE(perform(R"({"stage": "sem"})").refusal);
    perform(R"({"set": {"semModel": "awareness =~ sa1 + sa2 + sa3 + sa5"}})");
    const StepOutcome fitted = perform(R"({"run": "sem"})");
    EXPECT_EQ(fitted.report["result"]["fit"]["degreesOfFreedom"], 2);
    EXPECT_EQ(fitted.report["result"]["parameters"].size(), 9U);
    EXPECT_EQ(perform(R"({"stage": "sem"})").report["staged"], 1);
    EXPECT_EQ(perform(R"({"run": "mediation"})").report["result"]["bootstrapSamples"], 5000);
    EXPECT_EQ(perform(R"({"stage": "mediation"})").report["staged"], 2);
}

TEST_F(StudioScriptTest, WritesAModelFromATemplate) {
    perform(R"({"import": "SampleEIStudy.csv"})");
    EXPECT_TRUE(perform(R"({"do": {"semApplyTemplate": {"template": "cfa3"}}})").refusal);
    EXPECT_FALSE(perform(R"({"do": {"semApplyTemplate": {"template": "cfa1"}}})").refusal);
    const auto text = [this] {
        return state_.fields.find("semModel")->json().get<std::string>();
    };
    const std::string filled = text();
    EXPECT_NE(filled.find("=~"), std::string::npos);
    EXPECT_FALSE(perform(R"({"do": {"semInsert": {"name": "two words"}}})").refusal);
    EXPECT_EQ(text(), filled + " + `two words`");
}

TEST_F(StudioScriptTest, SavesAndReopensAProjectWithItsReport) {
    for (const char* step :
         {R"({"import": "SampleEIStudy.csv"})", R"({"stage": "scalesReliability"})",
          R"({"assemble": {}})", R"({"set": {"svWeight": "age", "surveyWeightsActive": true}})",
          R"({"set": {"researcherNotes": {"regression": "Ask again."}}})"}) {
        ASSERT_EQ(perform(step).refusal, std::nullopt) << step;
    }
    EXPECT_EQ(perform(R"({"save": {}})").refusal, "The step \"save\" needs the name of a file.");
    const StepOutcome saved = perform(R"({"save": "study.svp"})");
    EXPECT_EQ(saved.report["messages"]["projectMessage"], "Saved study.svp.");
    const std::vector<ReportItem> items = state_.reportItems.get();
    perform(R"({"blank": {}})");
    const StepOutcome opened = perform(R"({"open": "study.svp"})");
    ASSERT_EQ(opened.refusal, std::nullopt);
    EXPECT_EQ(opened.report["rows"], 300);
    EXPECT_EQ(opened.report["messages"]["saveStatusMessage"], "Opened study.svp.");
    EXPECT_EQ(state_.reportItems.get(), items);
    EXPECT_EQ(screens_.fields.survey.svWeight->name, "age");
    EXPECT_TRUE(screens_.fields.survey.surveyWeightsActive.get());
    EXPECT_EQ(perform(R"({"export": {"md": "again.md"}})").refusal, std::nullopt);
    EXPECT_EQ(perform(R"({"save": {}})").refusal, std::nullopt);
    EXPECT_EQ(perform(R"({"save": "no/where.svp"})").refusal,
              "Save failed: No such file or directory.");
    EXPECT_EQ(perform(R"({"open": "SampleEIStudy.csv"})").refusal,
              "Could not read SampleEIStudy.csv: This is no project, or it is damaged: what stands "
              "at byte 0 does not belong there.");
}

TEST_F(StudioScriptTest, CallsOperationsByName) {
    perform(R"({"paste": "id,q1\n1,2\n2,3\n"})");
    EXPECT_EQ(
        perform(R"({"do": {"assignVariable": {"variable": "q1", "kind": "outcome"}}})").refusal,
        std::nullopt);
    EXPECT_EQ(state_.dataset().variable("q1")->assignedType, VariableKind::outcome);
    EXPECT_EQ(perform(R"({"blank": {"name": "Grid", "rows": 2, "columns": 1}})").report["rows"], 2);
    perform(R"({"do": {"updateDatasetCell": {"row": 0, "column": 0, "value": "5"}}})");
    EXPECT_EQ(state_.dataset().rows.cell(0, 0), "5");
    const std::string item =
        R"({"id": "6F0E2B7C-0000-4000-8000-000000000001", "title": "T", "apaSummary": "S."})";
    EXPECT_EQ(perform(R"({"do": {"addToReport": {"item": )" + item + "}}}").report["staged"], 1);
    perform(R"({"do": {"removeFromReport": {"id": "6F0E2B7C-0000-4000-8000-000000000001"}}})");
    EXPECT_TRUE(state_.reportItems->empty());
    EXPECT_EQ(perform(R"({"do": "resetToSample"})").report["rows"], 300);
    const std::string folder = Json(output_.string()).dump();
    EXPECT_EQ(perform(R"({"do": {"saveMethodFile": {"file": )" + folder + "}}}").refusal,
              std::nullopt);
    EXPECT_EQ(std::filesystem::directory_iterator(output_)->path().extension(), ".svmethod");
    EXPECT_EQ(perform(R"({"do": {"saveMethodFile": {"file": "/nowhere/a.svmethod"}}})").refusal,
              "Save failed: No such file or directory.");
}

TEST_F(StudioScriptTest, EndsAStepWithTheMessageOfTheWorkspace) {
    const struct {
        int line;
        std::string step;
        std::string refusal;
    } cases[] = {
        {__LINE__, R"(["import"])", "A step is an object with one key, the step's name."},
        {__LINE__, R"({"fly": {}})", "There is no step \"fly\" in this version."},
        {__LINE__, R"({"import": "nothing.ods"})",
         "Could not import nothing.ods: Sorvane Studio imports .xlsx, .numbers, and .csv files, "
         "not .ods files."},
        {__LINE__, R"({"paste": " "})", "Paste some tabular data first."},
        {__LINE__, R"({"blank": 5})",
         "The step \"blank\" needs {}, or an object of name, rows, columns and headers."},
        {__LINE__, R"({"set": {"nothing": 1}})", "There is no field \"nothing\"."},
        {__LINE__, R"({"set": {"minimumItemCompletion": "all"}})",
         "The field \"minimumItemCompletion\" needs a number."},
        {__LINE__, R"({"do": "nothing"})", "There is no operation \"nothing\"."},
        {__LINE__, R"({"do": {"assignVariable": {"variable": "x", "kind": "outcome"}}})",
         "There is no variable \"x\"."},
        {__LINE__, R"({"assemble": {}})", "Stage at least one result first."},
        {__LINE__, R"({"run": "multilevel"})",
         "No dataset loaded. This screen works on the columns of a dataset. Go to Import Data to "
         "bring in a data file or a table that you copied, or to start a blank grid."},
        {__LINE__, R"({"press": {"latentClass": "Compare 2–6 classes"}})",
         "The button \"Compare 2–6 classes\" cannot be pressed yet."},
        {__LINE__, R"({"press": {"latentClass": "Fly"}})",
         "The form of Latent Class has no button \"Fly\"."},
        {__LINE__, R"({"press": {}})",
         "The step \"press\" needs one screen and the label of a button."},
        {__LINE__, R"({"do": "setImplausibleToMissing"})",
         "The import warned of no column with implausible values."},
        {__LINE__, R"({"do": "readAgainWithEightByteReferences"})",
         "The Stata file of this table is not at hand. Import it first."},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(perform(each.step).refusal, each.refusal) << "line " << each.line;
    }
    EXPECT_EQ(state_.dataset().name, "No dataset");
}

}  // namespace
}  // namespace sorvane
