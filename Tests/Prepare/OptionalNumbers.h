#pragma once

#include <optional>
#include <vector>

/// Columns of which some cells are absent.
namespace sorvane::test {

using Numbers = std::vector<std::optional<double>>;
inline constexpr auto none = std::nullopt;

}  // namespace sorvane::test
