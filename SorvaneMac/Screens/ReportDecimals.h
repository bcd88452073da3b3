#pragma once

#include <optional>

/// How many decimals a figure is written with, by how exactly it is known or how far it spreads:
/// the second argument of `svFigure`, which writes figures that would need too many of them with a
/// power of ten, in tables and sentences alike.
namespace sorvane::ReportDecimals {

/// The decimals that leave two digits of a standard error or of a spread, three at least, unless
/// fewer are asked for: 3 for 0.02, 5 for 0.0004, 13 for 2.9e-12. Below 0, and three digits of the
/// spread, for one so large that figures go into powers of ten: -10 for 2.9e12.
int of(double spread, int fewest = 3);

/// One fewer, for running text: two as a rule, and more where the effect of a small unit would
/// not differ from none. As many where figures go into powers of ten.
int inSentence(double standardError);

/// For the mean or median of a sample and its spread: two at least, and two digits of the spread;
/// where that is 0 or no more than rounding of the centre, two digits of the centre.
int ofSample(std::optional<double> centre, std::optional<double> spread);

}  // namespace sorvane::ReportDecimals
