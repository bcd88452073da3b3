#include <limits>

#include <gtest/gtest.h>

#include "SorvaneCore/Dataset/DataVariable.h"
#include "SorvaneCore/Project/ToJson.h"

namespace sorvane {
namespace {

TEST(RecordJson, WritesARecordInFieldOrderWithoutAbsentFields) {
    DataVariable variable;
    variable.name = "q1";
    variable.inferredType = VariableKind::psychometricItem;
    variable.scaleRange = ScaleRange{.minimum = 1.0, .maximum = std::nullopt};
    variable.valueLabels = ValueLabels{{"1", "Never"}};

    const std::string text = toJson(variable).dump();

    EXPECT_EQ(text,
              R"({"id":"00000000-0000-0000-0000-000000000000","name":"q1",)"
              R"("valueLabels":{"1":"Never"},"inferredType":"psychometric_item",)"
              R"("assignedType":"status","scaleRange":{"minimum":1.0},)"
              R"("includeInReliability":false,"includeInDescriptives":false,"missingCount":0,)"
              R"("nonMissingCount":0,"uniqueCount":0,"sampleValues":[],"warnings":[]})");
    EXPECT_EQ(fromJson<DataVariable>(Json::parse(text)), variable);
}

TEST(RecordJson, KeepsNumbersThatAreNotFiniteApartFromAbsentOnes) {
    const std::vector<std::optional<double>> values = {std::numeric_limits<double>::infinity(),
                                                       -std::numeric_limits<double>::infinity(),
                                                       std::nullopt, 0.1};
    const Json json = toJson(values);
    EXPECT_EQ(json.dump(), R"(["inf","-inf",null,0.1])");
    EXPECT_EQ(fromJson<std::vector<std::optional<double>>>(json), values);
    EXPECT_TRUE(std::isnan(fromJson<double>(toJson(std::numeric_limits<double>::quiet_NaN()))));
}

TEST(RecordJson, KeepsWholeNumbersOfSixtyFourBits) {
    const std::uint64_t seed = 0x9e3779b97f4a7c15;
    EXPECT_EQ(toJson(seed).dump(), "11400714819323198485");
    EXPECT_EQ(fromJson<std::uint64_t>(toJson(seed)), seed);
    EXPECT_EQ(fromJson<std::uint64_t>(Json::parse("7.0")), 7U);
    EXPECT_THROW(fromJson<std::uint64_t>(Json(-1)), RecordJsonError);
    EXPECT_THROW(fromJson<std::int64_t>(toJson(seed)), RecordJsonError);
}

TEST(RecordJson, RoundTripsBytesOfEveryLength) {
    std::vector<std::uint8_t> bytes;
    for (int length = 0; length < 7; ++length) {
        EXPECT_EQ(fromJson<std::vector<std::uint8_t>>(toJson(bytes)), bytes);
        bytes.push_back(static_cast<std::uint8_t>(250 + length));
    }
    EXPECT_EQ(toJson(std::vector<std::uint8_t>{'M', 'a'}), "TWE=");
    for (const char* text : {"TWE", "TW=", "TWE==", "T===", "TW!="}) {
        EXPECT_THROW(fromJson<std::vector<std::uint8_t>>(Json(text)), RecordJsonError) << text;
    }
}

TEST(RecordJson, SaysWhereAFormIsWrong) {
    const struct {
        int line;
        std::string json;
        std::string error;
    } cases[] = {
        {__LINE__, R"([])", "needs an object"},
        {__LINE__, R"({"minimum":"x","maximum":1,"mean":2})", "minimum needs a number"},
        {__LINE__, R"({"minimum":1,"maximum":1})", "mean is missing"},
    };
    for (const auto& each : cases) {
        try {
            fromJson<NumericSummary>(Json::parse(each.json));
            ADD_FAILURE() << "line " << each.line;
        } catch (const RecordJsonError& error) {
            EXPECT_EQ(error.what(), each.error) << "line " << each.line;
        }
    }
    try {
        fromJson<std::map<std::string, std::vector<VariableKind>>>(
            Json::parse(R"({"kinds":["status","odd"]})"));
        ADD_FAILURE();
    } catch (const RecordJsonError& error) {
        EXPECT_TRUE(std::string(error.what()).starts_with("kinds[1] needs one of demographic_"));
    }
}

TEST(RecordJson, ReadsAnEnumeratorByRawValueOrName) {
    EXPECT_EQ(fromJson<VariableKind>(Json("test_item")), VariableKind::testItem);
    EXPECT_EQ(fromJson<VariableKind>(Json("testItem")), VariableKind::testItem);
}

}  // namespace
}  // namespace sorvane
