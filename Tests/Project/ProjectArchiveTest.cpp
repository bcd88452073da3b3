#include "SorvaneCore/Project/ProjectArchive.h"

#include <csignal>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>

#include "SorvaneCore/Import/CSVImporter.h"
#include "SorvaneCore/Project/RecordJson.h"
#include "SorvaneCore/Project/SorvanePackage.h"

namespace sorvane {
namespace {

using namespace std::chrono_literals;

constexpr std::chrono::sys_seconds moment{std::chrono::sys_days{std::chrono::year(2026) / 3 / 1}};

ProjectArchive sample(std::size_t rowCount = 3) {
    std::string csv = "id,q1,remark\n";
    for (std::size_t row = 0; row < rowCount; ++row) {
        csv +=
            std::to_string(row) + "," + std::to_string(row % 5) + ",\"say \"\"ü\"\" \\ \n\tx\"\n";
    }
    ImportedDataset dataset = CSVImporter().importCSV("study.csv", csv);
    dataset.variables[1].scaleRange = ScaleRange{.minimum = 1.0, .maximum = 4.5};
    return ProjectArchive::of(dataset, {.transformationLog = {"Imported study.csv."},
                                        .settings = {{"screen", "overview"}, {"sv_weight", ""}},
                                        .reverseCodedNames = {"q1"},
                                        .createdAt = moment,
                                        .modifiedAt = moment});
}

std::string changed(std::string text, std::string_view from, std::string_view to) {
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return text.replace(at, from.size(), to);
}

std::string refusal(std::string_view bytes) {
    try {
        ProjectArchive::decode(bytes);
        return "";
    } catch (const ProjectArchiveError& error) {
        return error.what();
    }
}

class ProjectFile : public testing::Test {
protected:
    ProjectFile() { std::filesystem::create_directory(folder_); }
    ~ProjectFile() override { std::filesystem::remove_all(folder_); }

    static std::optional<std::string> save(const ProjectArchive& archive,
                                           const std::filesystem::path& file) {
        return replaceFile(file,
                           [&](const TakeBytes& take) { ProjectArchive::encode(archive, take); });
    }

    const std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() / Uuid::fresh().text();
};

TEST(ProjectArchive, IsIndentedJsonWithSortedKeys) {
    ProjectArchive archive =
        ProjectArchive::of(CSVImporter().importCSV("s.csv", "a,b\n1,\"x\"\"\"\n"),
                           {.createdAt = moment, .modifiedAt = moment});
    archive.variableStates.resize(1);
    archive.variableStates[0].scaleRange = ScaleRange{.minimum = 1.0, .maximum = 5.0};
    archive.variableStates[0].assignedType = VariableKind::demographicBackground;
    EXPECT_EQ(ProjectArchive::encode(archive), R"({
  "createdAt": "2026-03-01T00:00:00Z",
  "datasetName": "s.csv",
  "engineVersion": "Sorvane native 0.1.0",
  "headers": [
    "a",
    "b"
  ],
  "modifiedAt": "2026-03-01T00:00:00Z",
  "rows": [
    [
      "1",
      "x\""
    ]
  ],
  "schemaVersion": "1.0",
  "settings": {},
  "transformationLog": [],
  "variableStates": [
    {
      "assignedType": "demographic_background",
      "includeInDescriptives": true,
      "includeInReliability": false,
      "isReverseCoded": false,
      "isUnreliableFlagged": false,
      "name": "a",
      "scaleRange": {
        "maximum": 5.0,
        "minimum": 1.0
      }
    }
  ]
})");
}

TEST(ProjectArchive, RoundTripsAcrossManyWindows) {
    for (const std::size_t rows : {std::size_t{1}, std::size_t{3}, std::size_t{60'000}}) {
        const ProjectArchive archive = sample(rows);
        EXPECT_EQ(ProjectArchive::decode(ProjectArchive::encode(archive)), archive) << rows;
    }
    ProjectArchive empty;
    EXPECT_EQ(ProjectArchive::decode(ProjectArchive::encode(empty)), empty);
}

TEST(ProjectArchive, ReadsWhatOthersWrite) {
    const std::string text = ProjectArchive::encode(sample());
    // Without white space, in another order, with keys of a later version.
    Json json = Json::parse(text);
    Json turned = Json::object({{"later", {{"a", {1, "]}", nullptr}}}}});
    for (const auto& [key, value] : json.items()) {
        Json first = Json::object({{key, value}});
        first.update(turned);
        turned = first;
    }
    turned["schemaVersion"] = "2.0";
    ProjectArchive expected = sample();
    expected.schemaVersion = "2.0";
    EXPECT_EQ(ProjectArchive::decode("\xEF\xBB\xBF\n" + turned.dump(-1, ' ', true)), expected);

    json["rows"] = {{"1"}, Json::array(), {"2", "\"", "", "beyond"}};
    const ProjectArchive uneven = ProjectArchive::decode(json.dump());
    EXPECT_EQ(uneven.rows.row(0).texts(), (std::vector<std::string>{"1", "", ""}));
    EXPECT_EQ(uneven.rows.row(1).texts(), (std::vector<std::string>{"", "", ""}));
    EXPECT_EQ(uneven.rows.row(2).texts(), (std::vector<std::string>{"2", "\"", ""}));
}

TEST(ProjectArchive, SaysWhatIsWrongWithAFile) {
    const std::string good = ProjectArchive::encode(sample());
    std::string manyHeaders = "[";
    for (int i = 0; i < 1'000'000; ++i) {
        manyHeaders += "\"h\",";
    }
    manyHeaders.back() = ']';
    const std::string headers = good.substr(good.find("[\n    \"id\""), 40);
    const std::string list = headers.substr(0, headers.find(']') + 1);
    const std::string beginning = "This is no project, or it is damaged: ";
    const struct {
        int line;
        std::string text;
        std::string reason;
    } cases[] = {
        {__LINE__, "", "it breaks off at byte 0."},
        {__LINE__, "id,q1\n1,2\n", "what stands at byte 0 does not belong there."},
        {__LINE__, "[]", "what stands at byte 0 does not belong there."},
        {__LINE__, "{}", "schemaVersion is missing."},
        {__LINE__, good + "x",
         "what stands at byte " + std::to_string(good.size()) + " does not belong there."},
        {__LINE__, good + std::string(1, '\0') + "x",
         "what stands at byte " + std::to_string(good.size()) + " does not belong there."},
        {__LINE__, "\xEFxx" + good, "what stands at byte 0 does not belong there."},
        {__LINE__, changed(good, "transformationLog", "log"), "transformationLog is missing."},
        {__LINE__, changed(good, "\"datasetName\"", "\"headers\": [], \"datasetName\""),
         "headers is given twice."},
        {__LINE__, changed(good, "\"study.csv\"", "7"), "datasetName needs a text."},
        {__LINE__, changed(good, "\"study.csv\"", "\"\\ud800\""),
         "datasetName is no JSON that can be read."},
        {__LINE__, changed(good, "2026-03-01T", "2026-02-30T"),
         "createdAt needs a date such as 2026-03-01T09:30:05Z."},
        {__LINE__, changed(good, "4.5", "1e400"), "variableStates is no JSON that can be read."},
        {__LINE__, changed(good, "\"isReverseCoded\": false", "\"isReverseCoded\": 0"),
         "variableStates[0].isReverseCoded needs true or false."},
        {__LINE__, changed(good, "\"screen\": \"overview\"", "\"screen\": [\"overview\"]"),
         "settings.screen needs a text."},
        {__LINE__, changed(good, "\"0\",", "0,"), "rows[0] needs a list of texts."},
        {__LINE__, changed(good, "\"0\",", "\"0\""), "rows[0] needs a list of texts."},
        {__LINE__, changed(good, "\"0\",", "\"\\udc00\","),
         "rows[0] has a text that cannot be read."},
        {__LINE__, changed(good, "\"0\",", "\"\xff\","), "rows[0] needs a list of texts."},
        {__LINE__, changed(good, "\"rows\": [", "\"rows\": [{},"),
         "rows[0] needs a list of texts."},
        {__LINE__, changed(good, "\"rows\": [", "\"rows\": 1, \"r\": ["),
         "what stands at byte 217 does not belong there."},
        {__LINE__, "{\"later\": " + std::string(100'000, '['),
         "it is nested too deeply at byte 75."},
        {__LINE__, changed(good, list, manyHeaders), "it names more than 250000 variables."},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(refusal(each.text), beginning + each.reason) << "line " << each.line;
    }
    for (std::size_t length = 0; length < good.size(); ++length) {
        EXPECT_NE(refusal(std::string_view(good).substr(0, length)), "") << length;
    }
}

TEST(ProjectArchive, RefusesATableThatPaddingWouldBlowUp) {
    Json json = Json::parse(ProjectArchive::encode(sample()));
    json["headers"] = std::vector<std::string>(100'000, "h");
    json["rows"] = Json(1000, Json::array());
    EXPECT_EQ(refusal(json.dump()),
              "This is no project, or it is damaged: its rows have far fewer cells than there are "
              "variables.");
}

TEST_F(ProjectFile, IsReadAsItWasSaved) {
    EXPECT_EQ(save(sample(20'000), folder_ / "study.svp"), std::nullopt);
    EXPECT_EQ(ProjectArchive::read(folder_ / "study.svp"), sample(20'000));
    const std::pair<std::filesystem::path, std::string> unreadable[] = {
        {folder_ / "gone.svp", "No such file or directory."}, {folder_, "Is a directory."}};
    for (const auto& [file, reason] : unreadable) {
        try {
            ProjectArchive::read(file);
            ADD_FAILURE() << file;
        } catch (const ProjectArchiveError& error) {
            EXPECT_EQ(error.what(), reason);
        }
    }
}

TEST_F(ProjectFile, IsWholeWheneverTheProgramIsKilled) {
    const std::filesystem::path file = folder_ / "study.svp";
    const ProjectArchive small = sample(500);
    const ProjectArchive large = sample(5000);
    ASSERT_EQ(save(small, file), std::nullopt);
    for (int round = 0; round < 40; ++round) {
        const pid_t child = fork();
        if (child == 0) {
            for (bool isLarge = true;; isLarge = !isLarge) {
                save(isLarge ? large : small, file);
            }
        }
        std::this_thread::sleep_for(1ms + round * 700us);
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        const ProjectArchive found = ProjectArchive::read(file);
        EXPECT_TRUE(found == small || found == large) << round;
    }
}

TEST_F(ProjectFile, StaysAsItWasWhenSavingFails) {
    const std::filesystem::path file = folder_ / "study.svp";
    ASSERT_EQ(save(sample(), file), std::nullopt);
    ProjectArchive tooWide = sample();
    tooWide.headers.resize(ProjectArchive::mostColumns + 1);
    EXPECT_THROW(save(tooWide, file), ProjectArchiveError);
    std::filesystem::permissions(file, std::filesystem::perms::owner_read);
    EXPECT_EQ(save(sample(9), file), "Permission denied");
    EXPECT_EQ(ProjectArchive::read(file), sample());
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_), {}), 1);
}

TEST_F(ProjectFile, StaysAsItWasWhenTheDiskIsFull) {
    const std::filesystem::path file = folder_ / "study.svp";
    ASSERT_EQ(save(sample(), file), std::nullopt);
    rlimit former{};
    getrlimit(RLIMIT_FSIZE, &former);
    const rlimit narrow{.rlim_cur = 100'000, .rlim_max = former.rlim_max};
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &narrow);
    const std::optional<std::string> failure = save(sample(20'000), file);
    setrlimit(RLIMIT_FSIZE, &former);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(failure, "File too large");
    EXPECT_EQ(ProjectArchive::read(file), sample());
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_), {}), 1);
}

TEST_F(ProjectFile, StandsAsAFolderToo) {
    const SorvaneProjectManifest manifest{.projectName = "Study", .createdAt = moment};
    const std::filesystem::path package = folder_ / "study.sorvane";
    ASSERT_EQ(SorvanePackageLayout::createFolderPackage(package, manifest), std::nullopt);
    for (const std::string& entry : SorvanePackageLayout::requiredEntries()) {
        EXPECT_TRUE(std::filesystem::exists(package / entry)) << entry;
    }
    const auto json = [&](const char* name) {
        return Json::parse(std::ifstream(package / name));
    };
    EXPECT_EQ(fromJson<SorvaneProjectManifest>(json("project.json")), manifest);
    EXPECT_EQ(json("project.json")["datasetMode"], "copy");
    EXPECT_TRUE(json("variable_map.json").empty());
    std::ofstream(folder_ / "taken");
    EXPECT_EQ(SorvanePackageLayout::createFolderPackage(folder_ / "taken", manifest),
              "Not a directory");
}

}  // namespace
}  // namespace sorvane
