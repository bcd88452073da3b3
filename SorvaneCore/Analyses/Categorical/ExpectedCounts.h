#pragma once

#include <cstdint>
#include <span>
#include <string>

/// What Pearson's chi-square tests do with counts and those that are expected.
namespace sorvane::ExpectedCounts {

/// The sum of (observed - expected)^2 / expected over the cells with expected above 0.
double chiSquare(std::span<const std::int64_t> observed, std::span<const double> expected);

/// How many cells are expected to have fewer than 5 cases.
std::int64_t small(std::span<const double> expected);

/// "2 of 6 expected cells are below 5", the beginning of every caution about such cells.
std::string smallCells(std::int64_t count, std::int64_t cells);

}  // namespace sorvane::ExpectedCounts
