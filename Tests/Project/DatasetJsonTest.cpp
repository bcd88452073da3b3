#include "SorvaneCore/Project/DatasetJson.h"

#include <limits>
#include <sstream>

#include <gtest/gtest.h>

#include "SorvaneCore/Import/CSVImporter.h"
#include "SorvaneCore/Project/ToJson.h"

namespace sorvane {
namespace {

ImportedDataset ragged() {
    return CSVImporter().importCSV("ragged.csv", "id,q1,q1\n1,2\n\n,,\n2,NA,4,5\n3,é,6\n");
}

template <typename T>
std::string text(const T& value) {
    std::ostringstream out;
    JsonTextSink sink(out);
    writeJson(sink, value);
    sink.flush();
    return out.str();
}

TEST(DatasetJson, RoundTripsWithItsMetadata) {
    const ImportedDataset dataset = ragged();
    ASSERT_EQ(dataset.importMetadata.issues.size(), 3U);
    EXPECT_EQ(fromJson<ImportedDataset>(toJson(dataset)), dataset);
}

TEST(DatasetJson, RebuildsMetadataThatIsAbsent) {
    Json json = Json::parse(R"({"name":"old","headers":["a","b"],"variables":[],
        "rows":[["1"],["2","NA","x"],["3","4"]]})");
    EXPECT_THROW(fromJson<ImportedDataset>(json), RecordJsonError) << "no variables";
    for (const char* header : {"a", "b"}) {
        DataVariable variable;
        variable.name = header;
        json["variables"].push_back(toJson(variable));
    }
    const ImportedDataset dataset = fromJson<ImportedDataset>(json);
    EXPECT_EQ(dataset.rows.cell(0, 1), "");
    const ImportReadinessMetadata& metadata = dataset.importMetadata;
    EXPECT_EQ(metadata.sourceKind, ImportSourceKind::unknown);
    EXPECT_EQ(metadata.missingCellCount, 2);
    EXPECT_EQ(metadata.rowSummaries[1].sourceRowNumber, 3);
    EXPECT_EQ(metadata.rowSummaries[1].extraFieldCount, 1);
    EXPECT_EQ(metadata.rowSummaries[0].paddedFieldCount, 1);
    EXPECT_EQ(metadata.issues.size(), 2U);
    EXPECT_THROW(fromJson<ImportedDataset>(Json::parse(R"({"name":"x","headers":[]})")),
                 RecordJsonError);
}

TEST(JsonTextSink, WritesWhatTheValueSinkKeeps) {
    const ImportedDataset dataset = ragged();
    EXPECT_EQ(Json::parse(text(dataset)), toJson(dataset));
    const std::vector<double> numbers = {1.0,   -0.0,   0.1,
                                         1e300, 5e-324, std::numeric_limits<double>::infinity()};
    EXPECT_EQ(text(numbers), R"([1.0,-0.0,0.1,1e+300,5e-324,"inf"])");
    const std::vector<std::string> texts = {"a\"b", "tab\t", "ü", "back\\", "\x01", ""};
    EXPECT_EQ(Json::parse(text(texts)), toJson(texts));
    EXPECT_EQ(text(std::string("bad\xff")), "\"bad\xEF\xBF\xBD\"");
}

}  // namespace
}  // namespace sorvane
