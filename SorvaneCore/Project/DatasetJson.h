#pragma once

#include "SorvaneCore/Dataset/ImportedDataset.h"
#include "SorvaneCore/Project/RecordJson.h"

namespace sorvane {

/// A list of rows, each a list of its cells.
template <>
struct JsonForm<TextTable> {
    template <typename Sink>
    static void write(Sink& sink, const TextTable& table) {
        sink.beginList();
        for (std::size_t row = 0; row < table.rowCount(); ++row) {
            writeJson(sink, table.row(row));
        }
        sink.endList();
    }
};

/// A list of row summaries.
template <>
struct JsonForm<ImportRowSummaries> {
    template <typename Sink>
    static void write(Sink& sink, const ImportRowSummaries& summaries) {
        record_json::writeList(sink, summaries);
    }
    static ImportRowSummaries from(const Json& json);
};

/// An object of `name`, `headers`, `rows`, `variables` and `importMetadata`.
///
/// A row that is too short is padded with empty cells, one too long is cut. Metadata that is
/// absent, as in a file written before there was any, is built anew with every row at its place.
template <>
struct JsonForm<ImportedDataset> {
    template <typename Sink>
    static void write(Sink& sink, const ImportedDataset& dataset) {
        sink.beginObject();
        sink.key("name");
        writeJson(sink, dataset.name);
        sink.key("headers");
        writeJson(sink, dataset.headers);
        sink.key("rows");
        writeJson(sink, dataset.rows);
        sink.key("variables");
        writeJson(sink, dataset.variables);
        sink.key("importMetadata");
        writeJson(sink, dataset.importMetadata);
        sink.endObject();
    }
    static ImportedDataset from(const Json& json);
};

}  // namespace sorvane
