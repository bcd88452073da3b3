#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "SorvaneCore/Dataset/TextTable.h"
#include "SorvaneCore/Import/SparseTableBuilder.h"
#include "SorvaneCore/Import/Survey/PackageJson.h"

namespace sorvane {

/// Gathers the cells of a survey package by column name, columns in the order in which they are
/// named first.
class PackageTable {
public:
    /// A table out of so many bytes of package.
    explicit PackageTable(std::size_t packageBytes) : cells_(packageBytes) {}

    /// The index of the column of that name, which is made at need.
    std::size_t column(const std::string& name);
    /// A column of its own, whatever its name.
    std::size_t newColumn(const std::string& name);
    /// Begins the next row.
    void beginRow() { ++rowCount_; }
    /// Sets a cell of the current row; the first value of a cell counts.
    void set(std::size_t column, std::string_view text);
    /// Sets a cell of any row after the last one set in that column.
    void setAt(std::size_t row, std::size_t column, std::string_view text);

    const std::vector<std::string>& headers() const { return headers_; }
    std::size_t rowCount() const { return rowCount_; }
    /// The table; absent when it would have far more cells than the package can mean.
    std::optional<TextTable> finish();

private:
    std::vector<std::string> headers_;
    std::unordered_map<std::string, std::size_t> columnOf_;
    /// The row after the last one set, by column.
    std::vector<std::size_t> nextRow_;
    SparseTableBuilder cells_;
    std::size_t rowCount_ = 0;
};

/// The table that an object of a package holds.
///
/// Method     "columns", whose entries give a name under "name", "header" or "label" and values
///            under "values" or "data"; or "headers" with "rows"; or "rows" alone, of lists below a
///            list of names, or of objects
/// Failure    none of these -> absent
std::optional<PackageTable> extractRows(const PackageJson::Object& object,
                                        std::size_t packageBytes);
/// The table of a plain list of rows.
std::optional<PackageTable> extractRows(const PackageJson::Array& rows, std::size_t packageBytes);

}  // namespace sorvane
