#include "SorvaneCore/Import/Numbers/NumbersImporter.h"

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "SorvaneCore/Import/ImportError.h"
#include "Tests/Import/ZipBuilder.h"

namespace sorvane {
namespace {

const std::string exportHint = "). Export it as CSV or Excel from Numbers and import that instead.";
const std::string unavailable =
    "The Numbers converter could not start. Export the file as CSV or Excel from Numbers and "
    "import that instead.";

/// Documents in a folder of their own, converted by a shell script in the converter's place.
class NumbersImport : public testing::Test {
protected:
    NumbersImport() {
        std::string name = (std::filesystem::temp_directory_path() / "sorvane-XXXXXX").string();
        folder_ = mkdtemp(name.data());
    }
    ~NumbersImport() override { std::filesystem::remove_all(folder_); }

    std::filesystem::path file(const std::string& name, const std::string& content) const {
        std::ofstream(folder_ / name, std::ios::binary) << content;
        return folder_ / name;
    }
    NumbersImporter importer(const std::string& script) const {
        NumbersImporter importer;
        importer.converter = {.program = "/bin/sh", .script = file("script", script)};
        return importer;
    }
    /// What the user reads when an archive is imported with this script.
    std::string sentence(const NumbersImporter& importer) const {
        return sentence(importer, file("a.numbers", zipArchive({{.name = "x", .bytes = "y"}})));
    }
    static std::string sentence(const NumbersImporter& importer,
                                const std::filesystem::path& document) {
        try {
            return "imported " + importer.importNumbers(document).headers.front();
        } catch (const ImportError& error) {
            return error.what();
        }
    }

    std::filesystem::path folder_;
};

TEST_F(NumbersImport, TellsHowTheConverterEnded) {
    const std::string unreadable = "This Numbers file could not be read (";
    EXPECT_EQ(sentence(importer("cat >/dev/null; printf 'first,b\\n1,2\\n'")), "imported first");
    EXPECT_EQ(
        sentence(importer("printf '\\n \\n'")),
        "The Numbers file has no table data. Check that the first sheet contains a table with "
        "your data.");
    EXPECT_EQ(sentence(importer("printf 'Error: broken'; exit 1")),
              unreadable + "Error: broken" + exportHint);
    EXPECT_EQ(sentence(importer("exit 2")), unavailable);
    EXPECT_EQ(sentence(importer("kill -SEGV $$")),
              unreadable + "the converter broke off" + exportHint);

    NumbersImporter hasty = importer("sleep 20; printf 'a,b\\n1,2\\n'");
    hasty.limits.time = std::chrono::seconds(0);
    const std::string stopped =
        unreadable + "it takes more time or memory than a table should" + exportHint;
    EXPECT_EQ(sentence(hasty), stopped);
    NumbersImporter small = importer("sleep 20");
    small.limits.memory = 1;
    EXPECT_EQ(sentence(small), stopped);
    NumbersImporter brief = importer("cat /dev/zero");
    brief.limits.output = 1000;
    EXPECT_EQ(sentence(brief), stopped);
}

TEST_F(NumbersImport, HandsOverDocumentsOfAnySize) {
    const NumbersImporter echo = importer("cat");
    const std::string large = zipArchive({{.name = "x", .bytes = std::string(3'000'000, 'y')}});
    EXPECT_EQ(echo.convertToCSV(large), large);
}

TEST_F(NumbersImport, NeedsAnArchiveAndAConverter) {
    NumbersImporter gone = importer("cat");
    EXPECT_EQ(sentence(gone, file("text.numbers", "a,b\n1,2\n")),
              "This Numbers file could not be read (it is no archive, as Numbers documents are" +
                  exportHint);
    gone.converter.program = folder_ / "none";
    EXPECT_EQ(sentence(gone), unavailable);
    gone.converter = {.program = "/bin/sh", .script = folder_ / "none"};
    EXPECT_EQ(sentence(gone), unavailable);
}

TEST_F(NumbersImport, ConvertsARealDocument) {
    const NumbersImporter installed;
    if (!std::filesystem::exists(installed.converter.program) ||
        !std::filesystem::exists(installed.converter.script)) {
        GTEST_SKIP() << "There is no converter.";
    }
    const ImportedDataset dataset = installed.importNumbers(
        std::filesystem::path(SORVANE_SOURCE_DIR) / "Tests/Import/Files/made_survey.numbers");
    EXPECT_EQ(dataset.name, "made_survey.numbers");
    EXPECT_EQ(dataset.rowCount(), 40);
    EXPECT_EQ(dataset.rows.row(0).texts(),
              (std::vector<std::string>{"1", "1", "1", "NA", "great; thanks"}));
    const std::string damaged = zipArchive({{.name = "Index/Document.iwa", .bytes = "no such"}});
    EXPECT_TRUE(sentence(installed, file("bad.numbers", damaged))
                    .starts_with("This Numbers file could not be read ("));
}

}  // namespace
}  // namespace sorvane
