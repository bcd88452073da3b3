#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Dataset/DataVariable.h"
#include "SorvaneCore/Dataset/ImportReadiness.h"
#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneCore/Dataset/TextTable.h"

namespace sorvane {

/// The one form that every data source ends in and every analysis reads from: text cells with one
/// record per column. Columns are known by name; of two with the same name the left one is read.
struct ImportedDataset {
    std::string name;
    std::vector<std::string> headers;
    TextTable rows;
    /// One per column, in column order.
    std::vector<DataVariable> variables;
    ImportReadinessMetadata importMetadata;

    bool operator==(const ImportedDataset&) const = default;

    std::int64_t rowCount() const { return static_cast<std::int64_t>(rows.rowCount()); }
    std::int64_t columnCount() const { return static_cast<std::int64_t>(headers.size()); }

    /// The position of the left-most header that equals the name; absent without one.
    std::optional<std::size_t> columnIndex(std::string_view columnName) const;
    /// The variable record of that name; null without one.
    const DataVariable* variable(std::string_view columnName) const;

    /// The raw cells of a column, one per row; empty for an unknown name or a table without rows.
    std::vector<std::string> values(std::string_view columnName) const;
    /// The numbers of a column, one entry per row: absent where a cell is missing or no number.
    std::vector<std::optional<double>> numericValues(std::string_view columnName) const;
    /// As `numericValues`, by level; of no rows for an unknown name.
    NumericColumn numericColumn(std::string_view columnName) const;
};

}  // namespace sorvane
