#include "SorvaneMac/Screens/RepeatedValues.h"

#include <algorithm>

namespace sorvane {

std::vector<NamedNumericGroup> completeColumns(const ImportedDataset& dataset,
                                               const std::vector<std::string>& names) {
    std::vector<NumericColumn> columns;
    std::vector<NamedNumericGroup> complete;
    for (const std::string& name : names) {
        columns.push_back(dataset.numericColumn(name));
        complete.push_back({.name = name});
    }
    const auto rows = static_cast<std::size_t>(dataset.rowCount());
    for (std::size_t row = 0; row < rows; ++row) {
        const bool isComplete =
            std::all_of(columns.begin(), columns.end(), [row](const NumericColumn& column) {
                return row < column.size() && column[row].has_value();
            });
        for (std::size_t i = 0; isComplete && i < columns.size(); ++i) {
            complete[i].values.push_back(*columns[i][row]);
        }
    }
    return complete;
}

}  // namespace sorvane
