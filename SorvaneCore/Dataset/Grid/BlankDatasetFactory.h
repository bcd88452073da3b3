#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Dataset/ImportedDataset.h"

/// The empty grid that a user types data into.
namespace sorvane::BlankDatasetFactory {

constexpr std::int64_t mostRows = 10'000;
constexpr std::int64_t mostColumns = 200;

/// A dataset of empty cells.
///
/// Input      `rows` and `columns` are held to 1 to `mostRows` and 1 to `mostColumns`; `headers` of
///            any other length than the columns' are set aside for "Var1", "Var2", and so on
ImportedDataset make(const std::string& name,
                     std::int64_t rows,
                     std::int64_t columns,
                     const std::optional<std::vector<std::string>>& headers = std::nullopt);

}  // namespace sorvane::BlankDatasetFactory
