#include <gtest/gtest.h>

#include "SorvaneCore/Dataset/ImportedDataset.h"

namespace sorvane {
namespace {

TEST(ScaleRange, PrintsItsBounds) {
    EXPECT_EQ((ScaleRange{.minimum = 1.0, .maximum = 5.0}).displayText(), "1-5");
    EXPECT_EQ((ScaleRange{.minimum = 1.5, .maximum = 5.0}).displayText(), "1.50-5");
    EXPECT_EQ((ScaleRange{.minimum = -0.0, .maximum = {}}).displayText(), "0+");
    EXPECT_EQ((ScaleRange{.minimum = {}, .maximum = 4.999}).displayText(), "up to 5.00");
    EXPECT_EQ(ScaleRange().displayText(), "Not set");
}

TEST(DataVariable, IsOfferedForGroupingByItsDistinctValues) {
    const auto offered = [](VariableKind kind, std::int64_t unique, std::int64_t rows) {
        DataVariable variable;
        variable.assignedType = kind;
        variable.uniqueCount = unique;
        variable.nonMissingCount = unique;
        return variable.isGroupingSelectionCandidate(rows);
    };
    using enum VariableKind;
    EXPECT_TRUE(offered(grouping, 12, 23));
    EXPECT_FALSE(offered(grouping, 13, 23));
    EXPECT_TRUE(offered(status, 13, 26));
    EXPECT_TRUE(offered(status, 29, 59));
    EXPECT_FALSE(offered(status, 30, 59));
    EXPECT_TRUE(offered(status, 30, 60));
    EXPECT_FALSE(offered(grouping, 31, 1000));
    EXPECT_FALSE(offered(grouping, 1, 20));
    for (const VariableKind kind : {textResponse, outcome, administrative, exclude}) {
        EXPECT_FALSE(offered(kind, 2, 20));
    }
}

TEST(VariableKind, ServesWhereItsRoleIsOfUse) {
    using enum VariableKind;
    struct Case {
        VariableKind kind;
        std::string_view stored;
        std::string_view shown;
        /// Reliability, dependent variable, grouping, descriptives: a letter for each.
        std::string_view serves;
    };
    const Case cases[] = {
        {demographicBackground, "demographic_background", "Demographic/background", "gd"},
        {status, "status", "Status", "ogd"},
        {psychometricItem, "psychometric_item", "Psychometric item", "rogd"},
        {testItem, "test_item", "Test item", "rogd"},
        {rubricItem, "rubric_item", "Rubric item", "rogd"},
        {outcome, "outcome", "Outcome", "od"},
        {grouping, "grouping", "Grouping", "gd"},
        {textResponse, "text_response", "Text response", "d"},
        {administrative, "administrative", "Administrative", ""},
        {exclude, "exclude", "Ignore", ""},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(rawValue(each.kind), each.stored);
        EXPECT_EQ(displayName(each.kind), each.shown);
        std::string serves;
        serves += isReliabilityEligible(each.kind) ? "r" : "";
        serves += canServeAsDependentVariable(each.kind) ? "o" : "";
        serves += canServeAsIndependentGroupingVariable(each.kind) ? "g" : "";
        serves += includedInDescriptivesByDefault(each.kind) ? "d" : "";
        EXPECT_EQ(serves, each.serves) << each.stored;
        EXPECT_EQ(isIgnoredForAnalysis(each.kind), each.serves.empty()) << each.stored;
    }
}

TEST(DataVariable, IsOfferedAsAnOutcomeWithNumbersAlone) {
    DataVariable variable;
    variable.assignedType = VariableKind::outcome;
    variable.nonMissingCount = 3;
    EXPECT_FALSE(variable.isOutcomeSelectionCandidate());
    variable.numericSummary = NumericSummary{.minimum = 1.0, .maximum = 2.0, .mean = 1.5};
    EXPECT_TRUE(variable.isOutcomeSelectionCandidate());
    variable.assignedType = VariableKind::grouping;
    EXPECT_FALSE(variable.isOutcomeSelectionCandidate());
    variable.assignedType = VariableKind::status;
    EXPECT_TRUE(variable.isOutcomeSelectionCandidate());
    variable.nonMissingCount = 0;
    EXPECT_FALSE(variable.isOutcomeSelectionCandidate());
}

TEST(ValueLabels, AChangedCopyLeavesTheOthersAlone) {
    const ValueLabels agreement = {{"1", "no"}, {"2", "yes"}};
    ValueLabels copy = agreement;
    EXPECT_TRUE(copy.isShared());
    copy.set("2", "indeed");
    copy.emplace("1", "never");
    copy.emplace("3", "perhaps");
    EXPECT_EQ(agreement, (ValueLabels{{"1", "no"}, {"2", "yes"}}));
    EXPECT_EQ(copy, (ValueLabels{{"1", "no"}, {"2", "indeed"}, {"3", "perhaps"}}));
    EXPECT_FALSE(copy.isShared());
}

TEST(TextTable, ItsCopyKeepsWhatTheOriginalLoses) {
    TextTable table = TextTable::fromRows({{"1", "x"}, {"2", "y"}, {"3"}}, 2);
    const TextTable before = table;
    table.replaceColumn(0, TextColumn::of(std::vector<std::string>{"9", "2", "3"}));
    table.resizeRows(2);
    table.appendColumn(TextColumn::blank(2));
    EXPECT_EQ(before.row(0).texts(), (std::vector<std::string>{"1", "x"}));
    EXPECT_EQ(before.rowCount(), 3U);
    EXPECT_EQ(table.row(0).texts(), (std::vector<std::string>{"9", "x", ""}));
    EXPECT_EQ(table.sharedColumn(1)->size(), 2U);
    EXPECT_FALSE(table == before);
    table.removeColumn(2);
    table.resizeRows(3);
    EXPECT_EQ(table.row(2).texts(), (std::vector<std::string>{"", ""}));
    EXPECT_FALSE(*TextColumn::of(std::vector<std::string>{"a"}) ==
                 *TextColumn::of(std::vector<std::string>{"a", "b"}));
}

TEST(ImportedDataset, ReadsTheLeftColumnOfAName) {
    ImportedDataset dataset;
    dataset.headers = {"a", "b", "a"};
    dataset.rows = TextTable::fromRows({{"1", "x"}, {"2", "NA", "9"}}, 3);
    EXPECT_EQ(dataset.values("a"), (std::vector<std::string>{"1", "2"}));
    EXPECT_EQ(dataset.values("A"), std::vector<std::string>());
    EXPECT_EQ(dataset.numericValues("b"), std::vector<std::optional<double>>(2));
    EXPECT_EQ(dataset.rows.row(0).texts(), (std::vector<std::string>{"1", "x", ""}));
    dataset.variables.resize(2);
    dataset.variables[0].name = "ab";
    dataset.variables[1].name = "a";
    EXPECT_EQ(dataset.variable("a"), &dataset.variables[1]);
    EXPECT_EQ(dataset.variable("b"), nullptr);
}

TEST(Uuid, ReadsBackWhatItPrints) {
    const Uuid id = Uuid::fresh();
    EXPECT_EQ(Uuid::parse(id.text()), id);
    EXPECT_EQ(id.text()[14], '4');
    EXPECT_NE(id, Uuid::fresh());
    EXPECT_EQ(Uuid::parse("0011223344556677-8899-AABB-CCDDEEFF"), std::nullopt);
    EXPECT_EQ(Uuid::parse("00112233-4455-6677-8899-aabbccddeeff")->text(),
              "00112233-4455-6677-8899-AABBCCDDEEFF");
}

}  // namespace
}  // namespace sorvane
