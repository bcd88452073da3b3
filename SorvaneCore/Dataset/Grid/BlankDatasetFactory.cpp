#include "SorvaneCore/Dataset/Grid/BlankDatasetFactory.h"

#include <algorithm>

#include "SorvaneCore/Dataset/Grid/DatasetGridEditor.h"
#include "SorvaneCore/Import/ImportReadinessBuilder.h"
#include "SorvaneCore/Import/VariableClassifier.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::BlankDatasetFactory {

namespace {

std::vector<std::string> numberedHeaders(std::size_t count) {
    std::vector<std::string> headers;
    for (std::size_t column = 1; column <= count; ++column) {
        headers.push_back("Var" + NumberText::integer(static_cast<std::int64_t>(column)));
    }
    return headers;
}

}  // namespace

ImportedDataset make(const std::string& name,
                     std::int64_t rows,
                     std::int64_t columns,
                     const std::optional<std::vector<std::string>>& headers) {
    const auto rowCount = static_cast<std::size_t>(std::clamp<std::int64_t>(rows, 1, mostRows));
    const auto columnCount =
        static_cast<std::size_t>(std::clamp<std::int64_t>(columns, 1, mostColumns));
    ImportedDataset dataset;
    dataset.name = name;
    dataset.headers = headers && headers->size() == columnCount
                          ? DatasetGridEditor::sanitizeHeaders(*headers)
                          : numberedHeaders(columnCount);
    dataset.rows = TextTable({columnCount, TextColumn::blank(rowCount)}, rowCount);
    dataset.variables = VariableClassifier().classify(dataset.headers, dataset.rows);
    dataset.importMetadata = ImportReadinessBuilder::metadata(
        {.sourceKind = ImportSourceKind::blank, .worksheetName = "New dataset"}, dataset.headers,
        dataset.rows, {}, {});
    return dataset;
}

}  // namespace sorvane::BlankDatasetFactory
