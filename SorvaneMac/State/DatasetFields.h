#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "SorvaneCore/Dataset/ImportedDataset.h"
#include "SorvaneCore/Import/ScaleItemClassifier.h"
#include "SorvaneMac/State/Field.h"

namespace sorvane {

/// What a one-step undo of a data change brings back besides the table.
struct DataChangeUndoFlags {
    std::string label;
    NameSet reverseCodedItemNames;
    NameSet unreliableItemNames;
    std::vector<ScaleItemClassification> scaleClassifications;
    /// Where the change was a renaming: the former name and the new one.
    std::optional<std::pair<std::string, std::string>> renamed{};
};

/// What was done to the table since the change that can be undone, and would go with it.
struct EditsSinceChange {
    std::int64_t typedCells = 0;
    bool sizes = false;
    bool roles = false;
    bool name = false;
};

/// The working table and what belongs to editing it.
struct DatasetFields {
    explicit DatasetFields(FieldRegistry& fields);

    Field<ImportedDataset> dataset;
    Field<std::optional<std::string>> importError;
    Field<bool> isDatasetEditable;
    Field<std::optional<std::int64_t>> selectedDatasetRow;
    Field<std::optional<std::int64_t>> selectedDatasetColumn;
    Field<std::string> datasetDraftName;
    Field<std::int64_t> datasetDraftRows;
    Field<std::int64_t> datasetDraftColumns;
    Field<std::vector<std::string>> datasetDraftHeaders;
    /// What was done to the table since it was adopted, one sentence an entry.
    Field<std::vector<std::string>> transformationLog;
    Field<std::optional<ImportedDataset>> dataChangeUndo;
    Field<std::string> dataChangeUndoLabel;
    std::optional<DataChangeUndoFlags> dataChangeUndoFlags;
    EditsSinceChange editsSinceChange;
};

/// The table before anything is loaded.
ImportedDataset emptyDataset(std::string name);

/// "Var1", "Var2" and so on.
std::vector<std::string> numberedHeaders(std::int64_t count);

}  // namespace sorvane
