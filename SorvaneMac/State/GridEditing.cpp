#include <algorithm>

#include "SorvaneCore/Dataset/Grid/DatasetGridEditor.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

void StudioState::syncDatasetDraftHeaders() {
    const auto wanted =
        static_cast<std::size_t>(std::max<std::int64_t>(data.datasetDraftColumns.get(), 0));
    if (data.datasetDraftHeaders->size() == wanted) {
        return;
    }
    std::vector<std::string> headers = numberedHeaders(static_cast<std::int64_t>(wanted));
    const std::size_t kept = std::min(wanted, data.datasetDraftHeaders->size());
    std::copy_n(data.datasetDraftHeaders->begin(), kept, headers.begin());
    data.datasetDraftHeaders.set(std::move(headers));
}

void StudioState::updateDatasetCell(std::int64_t row, std::int64_t column, std::string_view value) {
    const bool inRange =
        row >= 0 && row < dataset().rowCount() && column >= 0 && column < dataset().columnCount();
    if (!data.isDatasetEditable.get() || !inRange) {
        return;
    }
    data.dataset.edit([row, column, value](ImportedDataset& table) {
        DatasetGridEditor::setCell(table, static_cast<std::size_t>(row),
                                   static_cast<std::size_t>(column), value);
    });
    refreshAnalysisDefaults();
}

}  // namespace sorvane
