#include "SorvaneCore/Dataset/ImportedDataset.h"

#include <algorithm>

namespace sorvane {

std::optional<std::size_t> ImportedDataset::columnIndex(std::string_view columnName) const {
    const auto found = std::find(headers.begin(), headers.end(), columnName);
    if (found == headers.end()) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(found - headers.begin());
}

const DataVariable* ImportedDataset::variable(std::string_view columnName) const {
    const auto found = std::find_if(
        variables.begin(), variables.end(),
        [columnName](const DataVariable& variable) { return variable.name == columnName; });
    return found == variables.end() ? nullptr : &*found;
}

std::vector<std::string> ImportedDataset::values(std::string_view columnName) const {
    std::vector<std::string> cells;
    if (const std::optional<std::size_t> index = columnIndex(columnName)) {
        const TextColumn& column = rows.column(*index);
        cells.reserve(column.size());
        for (std::size_t row = 0; row < column.size(); ++row) {
            cells.emplace_back(column[row]);
        }
    }
    return cells;
}

std::vector<std::optional<double>> ImportedDataset::numericValues(
    std::string_view columnName) const {
    return numericColumn(columnName).rows();
}

NumericColumn ImportedDataset::numericColumn(std::string_view columnName) const {
    if (const std::optional<std::size_t> index = columnIndex(columnName)) {
        return NumericColumn(rows.sharedColumn(*index));
    }
    return {};
}

}  // namespace sorvane
