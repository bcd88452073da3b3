#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneCore/Dataset/TextColumn.h"

/// Listwise deletion: the rows in which every column has a value.
namespace sorvane::CompleteCases {

/// The complete rows, ascending, up to the end of the shortest column.
///
/// Input      fewer than 2^32 rows; no columns have no rows
std::vector<std::uint32_t> rows(std::span<const NumericColumn* const> columns);

/// The same for rows that also need a text in each of some columns that is not a missing marker.
std::vector<std::uint32_t> rows(std::span<const NumericColumn* const> numbers,
                                std::span<const TextColumn* const> texts);

/// The numbers of a column in the given rows, in all of which it has one.
std::vector<double> gathered(const NumericColumn& column, std::span<const std::uint32_t> rows);

/// Two lists without the positions at which either is absent.
struct Pairs {
    std::vector<double> x{};
    std::vector<double> y{};
};

/// The complete pairs, up to the end of the shorter list.
Pairs pairs(std::span<const std::optional<double>> x, std::span<const std::optional<double>> y);

}  // namespace sorvane::CompleteCases
