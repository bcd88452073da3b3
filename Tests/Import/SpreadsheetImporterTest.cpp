#include "SorvaneCore/Import/SpreadsheetImporter.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

#include "SorvaneCore/Import/DelimiterDetection.h"
#include "SorvaneCore/Import/ImportError.h"

namespace sorvane {
namespace {

const std::filesystem::path files =
    std::filesystem::path(SORVANE_SOURCE_DIR) / "Tests/Import/Files";

/// A folder that is gone after the test.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "sorvane-XXXXXX").string();
        path_ = mkdtemp(name.data());
    }
    ~TemporaryFolder() { std::filesystem::remove_all(path_); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::filesystem::path file(const std::string& name, const std::string& content) const {
        std::ofstream(path_ / name, std::ios::binary) << content;
        return path_ / name;
    }
    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

std::string fileSentence(const std::filesystem::path& file) {
    try {
        SpreadsheetImporter().importData(file);
    } catch (const ImportError& error) {
        return error.what();
    }
    return "imported";
}

void expectDataset(const ImportedDataset& dataset, const nlohmann::json& expected) {
    EXPECT_EQ(dataset.headers, expected["headers"].get<std::vector<std::string>>());
    EXPECT_EQ(dataset.rowCount(), expected["rows"].get<std::int64_t>());
    const ImportReadinessMetadata& metadata = dataset.importMetadata;
    EXPECT_EQ(metadata.missingCellCount, expected["missing_cells"].get<std::int64_t>());
    EXPECT_EQ(metadata.issues.size(), expected["issues"].get<std::size_t>());
    for (std::size_t i = 0; i < expected["first_issues"].size(); ++i) {
        EXPECT_EQ(metadata.issues[i].message, expected["first_issues"][i].get<std::string>());
    }
    const std::size_t firstRows = expected["first_rows"].size();
    for (std::size_t row = 0; row < firstRows; ++row) {
        EXPECT_EQ(dataset.rows.row(row).texts(),
                  expected["first_rows"][row].get<std::vector<std::string>>());
        EXPECT_EQ(metadata.rowSummaries[row].sourceRowNumber,
                  expected["source_rows"][row].get<std::int64_t>());
    }
    const std::size_t last = dataset.rows.rowCount() - 1;
    EXPECT_EQ(dataset.rows.row(last).texts(), expected["last_row"].get<std::vector<std::string>>());
    EXPECT_EQ(metadata.rowSummaries[last].sourceRowNumber,
              expected["source_rows"].back().get<std::int64_t>());
}

/// Labels, value labels, warnings of user-missing values and notes, where they are expected.
void expectDescriptions(const ImportedDataset& dataset, const nlohmann::json& expected) {
    const nlohmann::json nothing = nlohmann::json::object();
    for (const DataVariable& variable : dataset.variables) {
        SCOPED_TRACE(variable.name);
        if (const auto labels = expected.value("labels", nothing); labels.contains(variable.name)) {
            EXPECT_EQ(variable.label, labels[variable.name].get<std::string>());
        }
        if (const auto labels = expected.value("valueLabels", nothing);
            labels.contains(variable.name)) {
            const auto map = labels[variable.name].get<ValueLabels::Map>();
            EXPECT_EQ(variable.valueLabels, map);
        }
        if (const auto specs = expected.value("userMissing", nothing);
            specs.contains(variable.name)) {
            const std::string warning = "User-defined missing values (" +
                                        specs[variable.name].get<std::string>() +
                                        ") were imported as missing.";
            EXPECT_EQ(std::ranges::count(variable.warnings, warning), 1);
        }
    }
    if (expected.contains("notes")) {
        EXPECT_EQ(dataset.importMetadata.notes, expected["notes"].get<std::vector<std::string>>());
    }
}

TEST(SpreadsheetImporter, ReadsRealFiles) {
    const nlohmann::json cases = nlohmann::json::parse(std::ifstream(files / "expected.json"));
    ASSERT_GT(cases.size(), 15U);
    for (const nlohmann::json& expected : cases) {
        const std::string name = expected["file"];
        SCOPED_TRACE(name);
        if (expected.contains("error")) {
            EXPECT_EQ(fileSentence(files / name), expected["error"].get<std::string>());
            continue;
        }
        const ImportedDataset dataset = SpreadsheetImporter().importData(files / name);
        const std::string worksheet = expected.value("worksheet", "");
        EXPECT_EQ(dataset.name, worksheet.empty() ? name : name + " — " + worksheet);
        expectDataset(dataset, expected);
        expectDescriptions(dataset, expected);
    }
}

TEST(SpreadsheetImporter, TellsWhatItCannotRead) {
    const TemporaryFolder folder;
    const std::string unsupported = "Sorvane Studio imports .xlsx, .numbers, and .csv files, not .";
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"old.XLS",
         "Sorvane Studio imports .xlsx, .numbers, and .csv files. Save this older Excel .xls file "
         "as .xlsx, then import it again."},
        {"data.ods", unsupported + "ods files."},
        {"file", unsupported + " files."},
        {"file.", unsupported + " files."},
        {".csv", unsupported + " files."},
        {"study.sav",
         "This .sav file could not be read. Re-export it from SPSS as a standard system file, then "
         "import it again."},
        {"header.csv",
         "The file has 2 column headers but no data rows. Export the worksheet as a normal CSV "
         "with one header row followed by respondent rows."}};
    for (const auto& [name, expected] : cases) {
        EXPECT_EQ(fileSentence(folder.file(name, "a,b\n,\nNA,-\n")), expected);
    }
    EXPECT_EQ(fileSentence(folder.file("Data.TsV", "a\tb\n1\t2\n")), "imported");
    EXPECT_EQ(fileSentence(folder.path() / "gone.csv"),
              "The file \"gone.csv\" could not be found. Check that it has not been moved, renamed "
              "or deleted.");
    std::filesystem::create_directory(folder.path() / "folder.csv");
    EXPECT_EQ(fileSentence(folder.path() / "folder.csv/"),
              "\"folder.csv\" is a folder, not a file. Open the folder and choose a data file in "
              "it.");
    std::filesystem::create_symlink("/dev/zero", folder.path() / "endless.csv");
    EXPECT_EQ(fileSentence(folder.path() / "endless.csv"),
              "The file \"endless.csv\" could not be read. Check the disk or the network "
              "connection, then import it again.");
}

TEST(CSVImporter, TakesAFileWithoutExtensionButNoOther) {
    const TemporaryFolder folder;
    EXPECT_EQ(CSVImporter().importCSV(folder.file("file.", "a\n1\n")).name, "file.");
    try {
        CSVImporter().importCSV(folder.file("data.json", "a\n1\n"));
        FAIL();
    } catch (const CSVImportError& error) {
        EXPECT_STREQ(error.what(),
                     "Sorvane Studio currently imports CSV or plain text files, not .json files.");
    }
    EXPECT_STREQ(CSVImportError::unreadableTextEncoding().what(),
                 "The file could not be read as a text-based CSV. Try exporting it as UTF-8 CSV.");
    EXPECT_STREQ(FileReadError(FileReadError::Kind::noPermission, "a.csv").what(),
                 "You do not have permission to read the file \"a.csv\". Change its permissions or "
                 "copy it to a folder of your own, then import it again.");
}

TEST(CSVImporter, StaysQuickOnHostileShapes) {
    const std::size_t wide = 100'000;
    std::string header;
    std::string row;
    for (std::size_t column = 0; column < wide; ++column) {
        header += "c,";
        row += "1,";
    }
    const ImportedDataset dataset = CSVImporter().importCSV("wide", header + "\n" + row + "\n");
    EXPECT_EQ(dataset.columnCount(), static_cast<std::int64_t>(wide) + 1);
    EXPECT_EQ(dataset.headers[1], "c 2");
    EXPECT_NE(dataset.variables[1].id, dataset.variables[2].id);

    // One cell of combining marks: no boundary is looked for twice.
    std::string marks = "a;b\n";
    for (int i = 0; i < 500'000; ++i) {
        marks += ";\xCC\x81";
    }
    EXPECT_EQ(CSVImporter().importCSV("marks", marks).rowCount(), 1);
}

}  // namespace
}  // namespace sorvane
