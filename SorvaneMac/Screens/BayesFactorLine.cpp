#include "SorvaneMac/Screens/BayesFactorLine.h"

#include <string>

#include "SorvaneMac/Report/ReportNumbers.h"

namespace sorvane::BayesFactorLine {

namespace {

/// Beyond these the digits of a factor say nothing any more.
constexpr double largest = 10000.0;
constexpr double smallest = 0.0001;
constexpr int decimals = 2;
constexpr int decimalsBelowOne = 4;

std::string factorText(double bf10) {
    if (bf10 > largest) {
        return "BF₁₀ > " + svFmt(largest, 0);
    }
    if (bf10 < smallest) {
        return "BF₁₀ < " + svFmt(smallest, decimalsBelowOne);
    }
    return "BF₁₀ = " + svFmt(bf10, bf10 < 1.0 ? decimalsBelowOne : decimals);
}

}  // namespace

std::optional<Passage> passage(const std::optional<BayesFactors::Result>& factor,
                               const Sides& sides) {
    if (!factor) {
        return std::nullopt;
    }
    return Passage{
        .label = "Bayes factor. " + std::string(sides.caption) + ".",
        .text = factorText(factor->bf10) + ": " +
                BayesFactors::evidenceLabel(factor->bf10, sides.alternative, sides.null) + "."};
}

}  // namespace sorvane::BayesFactorLine
