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

TEST(ImportedDataset, ReadsTheLeftColumnOfAName) {
    ImportedDataset dataset;
    dataset.headers = {"a", "b", "a"};
    dataset.rows = TextTable::fromRows({{"1", "x"}, {"2", "NA", "9"}}, 3);
    EXPECT_EQ(dataset.values("a"), (std::vector<std::string>{"1", "2"}));
    EXPECT_EQ(dataset.values("A"), std::vector<std::string>());
    EXPECT_EQ(dataset.numericValues("b"), std::vector<std::optional<double>>(2));
    EXPECT_EQ(dataset.rows.row(0).texts(), (std::vector<std::string>{"1", "x", ""}));
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
