#pragma once

#include <cstdint>
#include <string>

/// What comparisons of groups say in common about designs that are too thin.
namespace sorvane::DesignCautions {

/// Whether the error degrees of freedom are too few for the tests to be precise: below 20.
bool isLowErrorDF(std::int64_t errorDF);
/// Whether a group or cell is too small for its mean to be stable: below 5 cases.
bool isThin(std::int64_t cases);

/// "Error degrees of freedom are low (12)"
std::string lowErrorDF(std::int64_t errorDF);
/// "The smallest group has only 3 cases." for "group" and 3.
std::string onlyCases(const std::string& what, std::int64_t cases);

}  // namespace sorvane::DesignCautions
