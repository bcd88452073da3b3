#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>

#include "SorvaneCore/Dataset/TextColumn.h"

/// How computed numbers are written into the table.
namespace sorvane::DerivedValueFormatter {

/// "3" for 3.0, "2.5", "2.3333"; the empty text for a number that is not finite.
///
/// Accuracy   four decimals, so that a value below 0.00005 reads as 0
std::string text(double value);

/// The column of these numbers, an empty cell for what is absent.
///
/// Cost       about 10 ns a row where values repeat, 150 ns where they do not
std::shared_ptr<const TextColumn> column(std::span<const std::optional<double>> values);

}  // namespace sorvane::DerivedValueFormatter
