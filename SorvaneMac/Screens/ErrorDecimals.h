#pragma once

/// How exactly an estimate is written.
namespace sorvane::ErrorDecimals {

/// The decimals that leave two digits of a standard error or of a spread, three at least, unless
/// fewer are asked for, and nine at most: 3 for 0.02, 5 for 0.0004.
int of(double spread, int fewest = 3);

}  // namespace sorvane::ErrorDecimals
