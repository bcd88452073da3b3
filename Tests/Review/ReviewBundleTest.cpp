#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "SorvaneCore/Project/ToJson.h"
#include "SorvaneMac/Review/PacketExport.h"
#include "SorvaneMac/Review/SEMDiagramBackfill.h"
#include "SorvaneMac/Screens/StudioScreens.h"
#include "Tests/Drafting/FakeGenerator.h"

namespace sorvane {
namespace {

using ReviewBundleExporter::DataPreview;

/// A workspace with its screens, a folder of its own, and a model whose answers the test gives.
class ReviewBundleTest : public testing::Test {
protected:
    ReviewBundleTest() { std::filesystem::create_directories(folder_); }
    ~ReviewBundleTest() override { std::filesystem::remove_all(folder_); }

    void stage(const std::string& title,
               const std::string& summary,
               std::optional<ReportTable> table = std::nullopt) {
        ReportItem item;
        item.id = Uuid::fresh();
        item.title = title;
        item.apaSummary = summary;
        item.table = std::move(table);
        state_.addToReport(item);
    }
    Json build(DataPreview preview) { return toJson(ReviewBundleExporter::build(state_, preview)); }
    Json read(const std::string& name) const {
        std::ifstream stream(folder_ / name, std::ios::binary);
        return Json::parse(stream);
    }
    bool isValid(const std::string& name) const {
        const std::string command = "python3 " SORVANE_SOURCE_DIR
                                    "/Tests/Support/validate_json.py " SORVANE_SOURCE_DIR
                                    "/docs/formats/bsk.schema.json " +
                                    (folder_ / name).string();
        return std::system(command.c_str()) == 0;
    }
    std::string status() const { return state_.saveStatusMessage->value_or(""); }

    const std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() / Uuid::fresh().text();
    StudioState state_{std::filesystem::path(SORVANE_SOURCE_DIR "/Resources")};
    StudioScreens screens_{state_};
    FakeGenerator generator_;
    IntelligenceService service_{generator_};
    PacketExport export_{state_, &service_};
};

ReportTable structuralTable() {
    ReportTable table;
    table.headers = {"Parameter", "Est.", "Std.", "p"};
    table.rows = {{"visual =~ x1", "1.000", "0.772", "--"},
                  {"visual =~ x2", "0.55", ".42***", ""},
                  {"visual ~~ visual", "0.8", "1.00", ""},
                  {"y ~ visual", "0.1", "−0.08", ".2"},
                  {"y ~ 1", "2.0", "--", ""},
                  {"Residuals", "", "", ""},
                  {"ab := a*b", "0.2"}};
    table.note =
        "Maximum-likelihood estimates. Model fit: chi-square(24) = 85.31, p < .001, CFI = "
        "0.93. Treat indices as guidance. With N = 9 it is of no use.";
    return table;
}

TEST_F(ReviewBundleTest, HoldsEveryKeyInItsOrderAndOptionalOnesWhereTheyApply) {
    state_.importPastedData("site,q1,q2\nnorth,1,2\nsouth,2,3\nnorth,4,5\n");
    state_.assignVariable(state_.dataset().variable("site")->id, VariableKind::grouping);
    state_.scale.reverseCodedItemNames.set({"q2"});
    state_.fields.find("svWeight")->setJson("q1");
    state_.fields.find("surveyWeightsActive")->setJson(true);
    stage("t-test: q1 by site", "t(1) = 2.1, p = .28");
    const Json plain = build(DataPreview::none);
    std::vector<std::string> keys;
    for (const auto& [key, value] : plain.items()) {
        keys.push_back(key);
    }
    EXPECT_EQ(keys, (std::vector<std::string>{
                        "schemaVersion", "briselVersion", "exportedAt", "datasetName", "rowCount",
                        "columnCount", "variables", "constructs", "surveyDesign", "findings",
                        "transformationLog", "reviewFindings", "reliability"}));
    EXPECT_EQ(plain["schemaVersion"], "1.4");
    EXPECT_EQ(plain["briselVersion"], "0.9.92");
    EXPECT_EQ(
        plain["variables"][0].dump(),
        R"({"name":"site","role":"grouping","isReverseCoded":false,"includeInReliability":false})");
    EXPECT_EQ(plain["variables"][2]["isReverseCoded"], true);
    EXPECT_EQ(plain["surveyDesign"].dump(),
              R"({"isActive":true,"weight":"q1","strata":"","cluster":"","estimand":"mean"})");
    EXPECT_EQ(plain["reviewFindings"][0]["id"], plain["findings"][0]["id"]);
    const Json shown = build(DataPreview::leadingRows);
    EXPECT_EQ(shown["previewHeaders"].dump(), R"(["site","q1","q2"])");
    EXPECT_EQ(shown["previewRows"].dump(),
              R"([["north","1","2"],["south","2","3"],["north","4","5"]])");
}

TEST_F(ReviewBundleTest, ShowsTwentyFiveRowsAtMost) {
    state_.resetToSample();
    EXPECT_EQ(build(DataPreview::leadingRows)["previewRows"].size(), 25U);
}

TEST_F(ReviewBundleTest, TellsTheReliabilityOfEachConstruct) {
    state_.resetToSample();
    for (const DataVariable& each : state_.dataset().variables) {
        state_.setReliabilityIncluded(Uuid(each.id), each.name.starts_with("sa"));
    }
    state_.scale.constructName.set(" Self-awareness ");
    const auto scales = ReviewBundleExporter::buildReliability(state_);
    ASSERT_EQ(scales.size(), 1U);
    EXPECT_EQ(scales[0].constructName, "Self-awareness");
    EXPECT_EQ(scales[0].itemCount, std::ssize(scales[0].itemNames));
    EXPECT_EQ(scales[0].warnings.front(), "Reliability evidence does not prove validity.");
    EXPECT_EQ(ReviewBundleExporter::constructNames(state_),
              std::vector<std::string>{"Self-awareness"});
    state_.data.dataset.edit([](ImportedDataset& dataset) {
        for (DataVariable& each : dataset.variables) {
            if (each.name == "sa1" || each.name == "sa2") {
                each.assignedConstruct = "Short form";
            }
        }
    });
    const auto parted = ReviewBundleExporter::buildReliability(state_);
    ASSERT_EQ(parted.size(), 2U);
    EXPECT_EQ(parted[0].constructName, "Short form");
    EXPECT_EQ(parted[0].itemNames, (std::vector<std::string>{"sa1", "sa2"}));
    EXPECT_EQ(parted[1].itemCount, scales[0].itemCount - 2);
}

TEST_F(ReviewBundleTest, ReadsThePathDiagramBackFromItsTable) {
    stage("CFA", "Fits.", structuralTable());
    const Json diagram = build(DataPreview::none)["findings"][0]["semDiagram"];
    EXPECT_EQ(diagram["latent"].dump(), R"(["visual"])");
    EXPECT_EQ(diagram["observed"].dump(), R"(["x1","x2","y"])");
    EXPECT_EQ(diagram["fit"], "chi-square(24) = 85.31, p < .001, CFI = 0.93");
    EXPECT_EQ(diagram["parameters"][1].dump(),
              R"({"lhs":"visual","op":"=~","rhs":"x2","std":0.42})");
    EXPECT_EQ(diagram["parameters"][3]["std"], -0.08);
    EXPECT_EQ(diagram["parameters"][4].dump(), R"({"lhs":"y","op":"~","rhs":"1"})");
    EXPECT_EQ(diagram["parameters"].size(), 6U);
    ReportTable other = structuralTable();
    other.headers[2] = "Std. error";
    EXPECT_FALSE(SEMDiagramBackfill::payload(other));
    EXPECT_TRUE(state_.reportItems->front().semDiagram == std::nullopt) << "as it was staged";
}

TEST_F(ReviewBundleTest, TakesTheFitFromANote) {
    const struct {
        int line;
        const char* note;
        std::optional<std::string> fit;
    } cases[] = {
        {__LINE__, "ML. Model fit: CFI = .9. RMSEA = .05. Advice. N = 3.", "CFI = .9. RMSEA = .05"},
        {__LINE__, "Standardized. CFI = .93, SRMR = .04. Advice.", "CFI = .93, SRMR = .04"},
        {__LINE__, "Model fit: not estimated. N = 3.", std::nullopt},
        {__LINE__, "No values here.", std::nullopt},
        {__LINE__, "", std::nullopt},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(SEMDiagramBackfill::fitSummary(each.note), each.fit) << "line " << each.line;
    }
    EXPECT_EQ(SEMDiagramBackfill::fitSummary(std::nullopt), std::nullopt);
}

TEST_F(ReviewBundleTest, WritesAFileThatTheSchemaTakes) {
    EXPECT_FALSE(export_.exportToIPad(folder_ / "none.bsk", DataPreview::none));
    EXPECT_EQ(status(), "Nothing to export yet. Import data or stage at least one finding.");
    EXPECT_FALSE(export_.lastFolder());
    state_.resetToSample();
    stage("CFA", "Fits, p = .03.", structuralTable());
    generator_.reason = "off";
    const std::filesystem::path file = folder_ / "study.bsk";
    EXPECT_TRUE(export_.exportToIPad(file, DataPreview::leadingRows));
    EXPECT_EQ(status(), "Exported to " + file.string() + ". Open in Kestrin Deck on iPad.");
    EXPECT_EQ(export_.lastFolder(), folder_);
    EXPECT_TRUE(isValid("study.bsk"));
    EXPECT_FALSE(export_.exportToIPad(folder_ / "none" / "study.bsk", DataPreview::none));
    EXPECT_EQ(status(), "Export failed: No such file or directory");
}

TEST_F(ReviewBundleTest, FinishesThePlainLanguageInTheBackground) {
    stage("t-test", "t(38) = 2.1, p = .04");
    const std::filesystem::path file = folder_ / "study.bsk";
    ASSERT_TRUE(export_.exportToIPad(file, DataPreview::none));
    EXPECT_EQ(status(), "Exported to " + file.string() +
                            ". Open in Kestrin Deck on iPad. Finishing plain-language…");
    EXPECT_FALSE(read("study.bsk")["reviewFindings"][0].contains("plainLanguage"));
    generator_.answer("The groups differ, t(38) = 2.1.");
    generator_.answer("It matters to 12 people.");
    state_.clearReport();
    generator_.answer("Decide with care.");
    EXPECT_EQ(status(), "Exported to " + file.string() + ". Open in Kestrin Deck on iPad.");
    EXPECT_FALSE(export_.isFinishing());
    const Json hint = read("study.bsk")["reviewFindings"][0];
    EXPECT_EQ(hint["plainLanguage"], "The groups differ, t(38) = 2.1.");
    EXPECT_FALSE(hint.contains("practicalMeaning")) << "12 is no number of the finding";
    EXPECT_EQ(hint["decisionNote"], "Decide with care.");
    EXPECT_TRUE(isValid("study.bsk"));
    EXPECT_EQ(generator_.requests[0].prompt, "t-test\nt(38) = 2.1, p = .04");
}

TEST_F(ReviewBundleTest, KeepsWhatWasDraftedWhereTheModelBreaksOff) {
    stage("t-test", "t(38) = 2.1, p = .04");
    stage("Means", "M = 3.");
    ASSERT_TRUE(export_.exportToIPad(folder_ / "study.bsk", DataPreview::none));
    generator_.answer("They differ.");
    generator_.end("The server broke the draft off.");
    EXPECT_FALSE(generator_.isAsked());
    const Json hints = read("study.bsk")["reviewFindings"];
    EXPECT_EQ(hints[0]["plainLanguage"], "They differ.");
    EXPECT_FALSE(hints[1].contains("plainLanguage"));
    EXPECT_EQ(status(), "Exported to " + (folder_ / "study.bsk").string() +
                            ". Open in Kestrin Deck on iPad.");
}

}  // namespace
}  // namespace sorvane
