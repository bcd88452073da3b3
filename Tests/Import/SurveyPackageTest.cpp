#include <gtest/gtest.h>

#include "SorvaneCore/Import/StatPackageImportError.h"
#include "SorvaneCore/Import/StatPackageImporter.h"
#include "SorvaneCore/Import/Survey/PackageRoles.h"
#include "SorvaneCore/Import/Survey/SvmmReader.h"
#include "SorvaneCore/Import/Survey/ZipStore.h"
#include "Tests/Import/RowsOf.h"
#include "Tests/Import/ZipBuilder.h"

namespace sorvane {
namespace {

using test::Rows;
using test::rowsOf;
using Texts = std::vector<std::string>;

template <typename Import>
std::string sentence(const Import& import) {
    try {
        import();
    } catch (const StatPackageImportError& error) {
        return error.what();
    }
    return "imported";
}

std::string svmmSentence(const std::string& bytes) {
    return sentence([&bytes] { StatPackageImporter().importSvmm("file.svmm", bytes); });
}

std::string fieldSentence(const std::string& bytes) {
    return sentence([&bytes] { StatPackageImporter().importSvmmField("file.svmmfield", bytes); });
}

TEST(SvmmReader, FindsTheTableInEveryShape) {
    struct Case {
        int line;
        std::string json;
        Texts headers;
        Rows rows;
    };
    const std::vector<Case> cases = {
        {__LINE__,
         R"({"data": {"columns": [{"name": "a", "values": [1, 2.50, null]},
                                  {"header": "b", "data": ["x", true]}, {"label": "c"}]}})",
         {"a", "b", "c"},
         {{"1", "x", ""}, {"2.5", "true", ""}, {"", "", ""}}},
        {__LINE__,
         R"({"project": {}, "headers": ["a", "a"], "rows": [[1e3, "x"], {"a": -7}, []]})",
         {"a", "a"},
         {{"1000", "x"}, {"-7", ""}, {"", ""}}},
        {__LINE__,
         R"({"data": [{"b": 1, "a": [2]}, {"c": {"d": 3}, "b": 18446744073709551615}]})",
         {"b", "a", "c"},
         {{"1", "[2]", ""}, {"18446744073709551615", "", R"({"d":3})"}}},
        {__LINE__,
         R"({"app": "The SORVANE suite", "rows": [["n", "m"], [1, 2]]})",
         {"n", "m"},
         {{"1", "2"}}},
        {__LINE__,
         R"({"project": 1, "rows": [["a\"12345678901234567890", "b"],
             [1234567890123456789012, -98765432109876543210987], [12.5e20, -1.25e-7]]})",
         {"a\"12345678901234567890", "b"},
         {{"1234567890123456789012", "-98765432109876543210987"},
          {"1250000000000000000000", "-0.000000125"}}},
        {__LINE__, R"({"data": {"rows": [[1, 2]]}})", {"", ""}, {{"1", "2"}}}};
    for (const Case& each : cases) {
        SCOPED_TRACE(each.line);
        const std::optional<SvmmPackage> package = SvmmReader::read(each.json);
        ASSERT_TRUE(package);
        EXPECT_EQ(package->headers, each.headers);
        EXPECT_EQ(rowsOf(package->rows), each.rows);
    }
}

TEST(StatPackageImporter, ImportsASurveyPackageWithItsRoles) {
    const ImportedDataset dataset = StatPackageImporter().importSvmm(
        "file.svmm",
        R"({"project": {"title": "Study"}, "data": {"headers": ["q1", "team", "x"],
            "rows": [[1, "a", 2], [5, "b", 3]],
            "roles": {"q1": "Outcome", "team": "demographic", "x": "no such role"}}})");
    EXPECT_EQ(dataset.name, "Study");
    EXPECT_EQ(dataset.variables[0].assignedType, VariableKind::outcome);
    EXPECT_EQ(dataset.variables[0].inferredType, VariableKind::psychometricItem);
    EXPECT_FALSE(dataset.variables[0].includeInReliability);
    EXPECT_EQ(dataset.variables[1].assignedType, VariableKind::demographicBackground);
    EXPECT_EQ(dataset.variables[2].assignedType, dataset.variables[2].inferredType);
    EXPECT_EQ(PackageRoles::kind(" psychometric_ITEM "), VariableKind::psychometricItem);
    EXPECT_EQ(PackageRoles::kind("Ignore"), VariableKind::exclude);
}

TEST(StatPackageImporter, TellsWhatASurveyPackageLacks) {
    const std::string unreadable =
        "This .svmm file could not be read as a Sorvane Fenlow Studio survey package.";
    const std::string withoutData =
        "This survey package has no embedded data. Import the matching data file to continue.";
    EXPECT_EQ(svmmSentence("[1]"), unreadable);
    EXPECT_EQ(svmmSentence(R"({"app": "Another"})"), unreadable);
    EXPECT_EQ(svmmSentence(R"({"project": 1)"), unreadable);
    EXPECT_EQ(svmmSentence(std::string(100'000, '[')), unreadable);
    EXPECT_EQ(svmmSentence(R"({"app": "Another", "data": {}})"), withoutData);
    EXPECT_EQ(svmmSentence(R"({"project": {}, "source_path": "a/b.csv"})"),
              "This survey package references an external data file (a/b.csv). Import that file to "
              "continue.");
    EXPECT_EQ(svmmSentence(R"({"data": {"headers": ["a", "b"], "rows": []}})"),
              "The file has 2 variables but no data rows.");

    // Each row has a column of its own.
    std::string sparse = R"({"rows": [{"a": 1})";
    for (int row = 0; row < 20'000; ++row) {
        sparse += ",{\"c" + std::to_string(row) + "\":1}";
    }
    EXPECT_EQ(svmmSentence(R"({"project": 1, )" + sparse.substr(1) + "]}"), unreadable);
}

std::string fieldPackage(const std::string& manifest) {
    return zipArchive(
        {{.name = "readme.txt", .bytes = "x"}, {.name = "manifest.json", .bytes = manifest}});
}

const std::string items =
    R"("quantInstrument": [{"id": "i1", "itemText": "I like it"},
                           {"id": "i2", "itemText": "How often"}])";

TEST(StatPackageImporter, ImportsAFieldStudy) {
    const ImportedDataset dataset = StatPackageImporter().importSvmmField(
        "file.svmmfield",
        fieldPackage(R"({"format": "svmmfield", "study": {"title": "Schools"}, )" + items +
                     R"(, "cases": [
            {"metadata": {"groupRole": "pupil", "site": 3},
             "quantResponses": [{"itemId": "i2", "likertValue": null, "numericValue": 2.5},
                                {"itemId": "i1", "likertValue": 4}, {"itemId": "i9"}]},
            {"metadata": {"groupRole": "teacher"},
             "quantResponses": {"i1": {"choiceValue": "yes"}}}]})"));
    EXPECT_EQ(dataset.name, "Schools");
    EXPECT_EQ(dataset.headers, (Texts{"I like it", "How often", "groupRole", "site"}));
    EXPECT_EQ(rowsOf(dataset.rows), (Rows{{"4", "2.5", "pupil", "3"}, {"yes", "", "teacher", ""}}));
    EXPECT_EQ(dataset.variables[0].label, "I like it");
    EXPECT_EQ(dataset.variables[2].assignedType, VariableKind::grouping);
}

TEST(StatPackageImporter, TellsWhatAFieldPackageLacks) {
    const std::string unreadable =
        "This .svmmfield file could not be read as a Sorvane Fenlow Studio field-study package.";
    const std::string format = R"({"format": "svmmfield", )";
    const std::string oneCase = R"(, "cases": [{"quantResponses": []}]})";
    EXPECT_EQ(fieldSentence("no archive"), unreadable);
    EXPECT_EQ(fieldSentence(zipArchive({{.name = "other"}})), unreadable);
    EXPECT_EQ(fieldSentence(fieldPackage(R"({"format": "svmm"})")), unreadable);
    EXPECT_EQ(fieldSentence(fieldPackage(format + items + "}")),
              "This field package has no cases to import.");
    EXPECT_EQ(fieldSentence(fieldPackage(format + items + oneCase)),
              "This field package has no quantitative data to import.");
}

template <typename Sentence>
void expectSentences(const std::string& whole, std::size_t needed, const Sentence& sentence) {
    EXPECT_EQ(sentence(whole), "imported");
    for (std::size_t size = 0; size < needed; ++size) {
        EXPECT_NE(sentence(whole.substr(0, size)), "imported") << size;
    }
    for (std::size_t position = 0; position < whole.size(); ++position) {
        for (const char value : {'\0', '"', '[', '}', '\x7F', '\xFF'}) {
            std::string changed = whole;
            changed[position] = value;
            EXPECT_FALSE(sentence(changed).empty());
        }
    }
}

TEST(StatPackageImporter, TellsOfDamagedPackages) {
    const std::string survey = R"({"app": "Sorvane", "project": {"title": "S"}, "data":
        {"columns": [{"name": "\u00e9", "values": [1, null]}, {"name": "b", "values": ["x", 2.5]}],
         "roles": {"b": "outcome"}}})";
    expectSentences(survey, survey.size(), svmmSentence);
    const std::string field = fieldPackage(
        R"({"format": "svmmfield", )" + items +
        R"(, "cases": [{"metadata": {"site": 3}, "quantResponses": [{"itemId": "i1", "likertValue": 4}]}]})");
    expectSentences(field, field.find("PK\1\2"), fieldSentence);
}

}  // namespace
}  // namespace sorvane
