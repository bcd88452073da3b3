#include "SorvaneMac/State/DatasetFields.h"

#include "SorvaneCore/Dataset/MissingValue.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/State/FieldJson.h"

namespace sorvane {

namespace {

constexpr std::int64_t draftRows = 20;
constexpr std::int64_t draftColumns = 10;

}  // namespace

DatasetFields::DatasetFields(FieldRegistry& fields)
    : dataset(fields, "dataset", emptyDataset("No dataset"), ResetRule::kept),
      importError(fields, "importError", std::nullopt, ResetRule::kept),
      isDatasetEditable(fields, "isDatasetEditable", false, ResetRule::kept),
      selectedDatasetRow(fields, "selectedDatasetRow", std::nullopt, ResetRule::kept),
      selectedDatasetColumn(fields, "selectedDatasetColumn", std::nullopt, ResetRule::kept),
      datasetDraftName(fields, "datasetDraftName", "My dataset", ResetRule::kept),
      datasetDraftRows(fields, "datasetDraftRows", draftRows, ResetRule::kept),
      datasetDraftColumns(fields, "datasetDraftColumns", draftColumns, ResetRule::kept),
      datasetDraftHeaders(
          fields, "datasetDraftHeaders", numberedHeaders(draftColumns), ResetRule::kept),
      transformationLog(fields, "transformationLog", {}, ResetRule::kept),
      dataChangeUndo(fields, "dataChangeUndo"),
      dataChangeUndoLabel(fields, "dataChangeUndoLabel") {}

ImportedDataset emptyDataset(std::string name) {
    ImportedDataset dataset;
    dataset.name = std::move(name);
    dataset.importMetadata.missingValueMarkers = MissingValue::displayMarkers();
    return dataset;
}

std::vector<std::string> numberedHeaders(std::int64_t count) {
    std::vector<std::string> headers;
    for (std::int64_t i = 1; i <= count; ++i) {
        headers.push_back("Var" + NumberText::integer(i));
    }
    return headers;
}

}  // namespace sorvane
