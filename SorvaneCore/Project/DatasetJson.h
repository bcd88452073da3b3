#pragma once

#include "SorvaneCore/Dataset/ImportedDataset.h"
#include "SorvaneCore/Project/RecordJson.h"

namespace sorvane {

/// A list of rows, each a list of its cells.
template <>
struct JsonForm<TextTable> {
    static Json to(const TextTable& table);
};

/// A list of row summaries.
template <>
struct JsonForm<ImportRowSummaries> {
    static Json to(const ImportRowSummaries& summaries);
    static ImportRowSummaries from(const Json& json);
};

/// An object of `name`, `headers`, `rows`, `variables` and `importMetadata`.
///
/// A row that is too short is padded with empty cells, one too long is cut. Metadata that is
/// absent, as in a file written before there was any, is built anew with every row at its place.
template <>
struct JsonForm<ImportedDataset> {
    static Json to(const ImportedDataset& dataset);
    static ImportedDataset from(const Json& json);
};

}  // namespace sorvane
