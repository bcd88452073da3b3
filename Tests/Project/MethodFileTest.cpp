#include "SorvaneCore/Project/MethodFile.h"

#include <gtest/gtest.h>

#include "SorvaneCore/Project/ISODate.h"
#include "SorvaneCore/Project/ToJson.h"

namespace sorvane {
namespace {

using std::chrono::seconds;
using std::chrono::sys_seconds;

TEST(ISODate, WritesAndReadsMoments) {
    const struct {
        int line;
        std::int64_t sinceEpoch;
        std::string text;
    } cases[] = {
        {__LINE__, 0, "1970-01-01T00:00:00Z"},
        {__LINE__, -1, "1969-12-31T23:59:59Z"},
        {__LINE__, 951827696, "2000-02-29T12:34:56Z"},
        {__LINE__, 253402300799, "9999-12-31T23:59:59Z"},
        {__LINE__, -62135596800, "0001-01-01T00:00:00Z"},
    };
    for (const auto& each : cases) {
        const sys_seconds moment{seconds(each.sinceEpoch)};
        EXPECT_EQ(ISODate::text(moment), each.text) << "line " << each.line;
        EXPECT_EQ(ISODate::parse(each.text), moment) << "line " << each.line;
    }
    EXPECT_EQ(ISODate::parse("2000-02-29T14:04:56+01:30"), sys_seconds{seconds(951827696)});
    EXPECT_EQ(ISODate::parse("2000-02-29T12:04:56-00:30"), sys_seconds{seconds(951827696)});
    for (const char* text : {"", "2026-03-01T09:30:05+0130", "2026-03-01", "2026-03-01T09:30:05",
                             "2026-03-01T09:30:05.5Z", "2026-02-29T09:30:05Z",
                             "2026-13-01T09:30:05Z", "2026-03-01T24:00:00Z", "2026-03-01 09:30:05Z",
                             "2026-03-01T09:30:60Z", "+026-03-01T09:30:05Z"}) {
        EXPECT_EQ(ISODate::parse(text), std::nullopt) << text;
    }
}

TEST(MethodFile, NamesItsFileAfterTheAnalysisAndTheIdentifier) {
    MethodFile record;
    record.id = *Uuid::parse("4f2a91c0-0000-4000-8000-00000000000a");
    record.analysisType = "scale reliability";
    EXPECT_EQ(record.defaultFilename(), "scale_reliability_4F2A91C0.svmethod");
    record.analysisType = "Mixed / ANOVA";
    EXPECT_EQ(record.defaultFilename(), "mixed___anova_4F2A91C0.svmethod");
}

TEST(MethodFile, StandsInJsonUnderItsFieldNames) {
    const MethodFile record{.id = *Uuid::parse("4F2A91C0-0000-4000-8000-00000000000A"),
                            .analysisType = "group comparison",
                            .variablesUsed = {"score", "group"},
                            .missingDataRule = "listwise deletion",
                            .options = {{"screen", "groupPatterns"}},
                            .timestamp = sys_seconds{seconds(951827696)},
                            .engineVersion = "Sorvane native 0.1.0"};
    const Json json = toJson(record);
    EXPECT_EQ(json.dump(),
              R"({"id":"4F2A91C0-0000-4000-8000-00000000000A","analysisType":"group comparison",)"
              R"("variablesUsed":["score","group"],"filtersUsed":[],)"
              R"("missingDataRule":"listwise deletion","options":{"screen":"groupPatterns"},)"
              R"("timestamp":"2000-02-29T12:34:56Z","engineVersion":"Sorvane native 0.1.0"})");
    EXPECT_EQ(fromJson<MethodFile>(json), record);

    Json late = json;
    late["timestamp"] = "yesterday";
    try {
        fromJson<MethodFile>(late);
        FAIL() << "a date of another form was read";
    } catch (const RecordJsonError& error) {
        EXPECT_STREQ(error.what(), "timestamp needs a date such as 2026-03-01T09:30:05Z");
    }
}

}  // namespace
}  // namespace sorvane
