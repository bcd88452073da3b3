#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Dataset/ImportedDataset.h"
#include "SorvaneMac/State/Field.h"

/// The categories of a column: its distinct texts as they stand, in order of first appearance,
/// without those that mean a missing value.
namespace sorvane::Categories {

/// Empty for an unknown column.
std::vector<std::string> of(const ImportedDataset& dataset, std::string_view column);

/// The cells of a column that is there, with those that mean a missing value blank.
///
/// Cost       O(levels) where there are none; else O(rows)
std::shared_ptr<const TextColumn> cells(const ImportedDataset& dataset, std::string_view column);
std::shared_ptr<const TextColumn> cells(const std::shared_ptr<const TextColumn>& column);

struct Size {
    std::string category;
    /// Rows of the category that have a number in the other column, counted no further than asked.
    std::int64_t cases = 0;
};

/// How many rows of each category have a number in `numericColumn`, counted up to `most`.
///
/// Cost       O(rows until every category has so many)
std::vector<Size> sizes(const ImportedDataset& dataset,
                        std::string_view column,
                        std::string_view numericColumn,
                        std::int64_t most);

/// How many rows of each group have each category.
struct CrossCounts {
    std::vector<std::string> categories;
    /// A count for each category, and last that of the rows without one.
    std::vector<std::int64_t> all;
    /// The same for each group, in the groups' order.
    std::vector<std::vector<std::int64_t>> byGroup;
};

/// The counts of a column by the categories of another; no groups where that one is unknown.
///
/// Cost       O(rows)
CrossCounts crossCounts(const ImportedDataset& dataset,
                        std::string_view column,
                        std::string_view groupColumn);

/// Whether at least `wanted` rows have a number in every numeric column and a category in every
/// other one.
///
/// Cost       the counts that columns keep settle it in most tables; else O(rows * columns)
bool hasCompleteRows(const ImportedDataset& dataset,
                     std::int64_t wanted,
                     std::span<const std::string> numericColumns,
                     std::span<const std::string> categoryColumns = {});

/// The rows with a number in every numeric column and a category in every other one, and what
/// categories the first of these has there.
struct CompleteRows {
    std::int64_t rows = 0;
    std::vector<std::string> categories;
};

/// Input      at least one category column
/// Cost       O(rows * columns); O(levels) where no cell is missing
CompleteRows completeRows(const ImportedDataset& dataset,
                          std::span<const std::string> numericColumns,
                          std::span<const std::string> categoryColumns);

/// Gives two blank fields the first two categories; they never become the same one.
void fillPair(Field<std::string>& first,
              Field<std::string>& second,
              const std::vector<std::string>& categories);
/// As `fillPair`, and also in place of a text that is not one of the categories.
void refillPair(Field<std::string>& first,
                Field<std::string>& second,
                const std::vector<std::string>& categories);

}  // namespace sorvane::Categories
