#pragma once

#include <optional>

/// How many decimals a figure is written with, by how exactly it is known or how far it spreads.
namespace sorvane::ReportDecimals {

/// The decimals that leave two digits of a standard error or of a spread, three at least, unless
/// fewer are asked for, and twelve at most: 3 for 0.02, 5 for 0.0004.
int of(double spread, int fewest = 3);

/// One fewer, for running text: two as a rule, and more where the effect of a small unit would
/// not differ from none.
int inSentence(double standardError);

/// For the mean or median of a sample and its spread: two at least, and two digits of the spread;
/// where no value differs from the centre, two digits of that.
int ofSample(std::optional<double> centre, std::optional<double> spread);

}  // namespace sorvane::ReportDecimals
