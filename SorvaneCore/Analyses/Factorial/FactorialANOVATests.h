#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneCore/Dataset/TextColumn.h"

namespace sorvane {

/// A main effect or an interaction. What would be divided by 0 is absent.
struct FactorialANOVAEffect {
    /// The factors' names, joined with " × ".
    std::string name{};
    double sumOfSquares = 0.0;
    std::int64_t degreesOfFreedom = 0;
    std::optional<double> meanSquare{};
    std::optional<double> f{};
    std::optional<double> pValue{};
    std::optional<double> partialEtaSquared{};

    bool operator==(const FactorialANOVAEffect&) const = default;
};
BOOST_DESCRIBE_STRUCT(
    FactorialANOVAEffect,
    (),
    (name, sumOfSquares, degreesOfFreedom, meanSquare, f, pValue, partialEtaSquared))

struct FactorialANOVAResult {
    std::vector<std::string> factorNames{};
    /// Main effects in the order of the factors, then interactions of two, of three and so on;
    /// none where the analysis is blocked.
    std::vector<FactorialANOVAEffect> effects{};
    std::int64_t n = 0;
    /// NaN where the analysis is blocked.
    double meanSquareError = 0.0;
    std::int64_t dfError = 0;
    /// Whether all cells are of one size.
    bool isBalanced = false;
    AnalysisReadiness readiness{};

    bool operator==(const FactorialANOVAResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(FactorialANOVAResult,
                      (),
                      (factorNames, effects, n, meanSquareError, dfError, isBalanced, readiness))

/// Analysis of variance by two or more factors with all their interactions.
namespace FactorialANOVATests {

/// Input      columns of one length, one name per factor; rows with a missing cell are left out.
///            Levels are the cells' texts, in order of first appearance
/// Method     Type III: each effect is the growth of the error sum of squares when its
///            effect-coded columns leave the full model. The full model fits the cell means, so
///            that the growth is found from these and the cell sizes, and nothing is subtracted
/// Returns    cautions for error df below 20 and for cells below 5 cases
/// Failure    blocked: a cell without cases, or no error df because every cell has a single case.
///            Absent: lengths or names that do not match, fewer than two factors, a factor with
///            fewer than two levels, a value that is not finite
/// Accuracy   rounding of the cell means, whatever the outcome's offset; squares that are no more
///            than that are 0
/// Cost       O(n) for factors with codes, and O(cells df^2) an effect
/// Reference  Searle (1987), Linear Models for Unbalanced Data, chapter 4
std::optional<FactorialANOVAResult> nWay(const NumericColumn& outcome,
                                         std::span<const TextColumn* const> factors,
                                         std::span<const std::string> factorNames);

/// The two factors of an analysis and their names.
struct TwoFactors {
    const TextColumn& factorA;
    const TextColumn& factorB;
    std::string factorAName{};
    std::string factorBName{};
};

std::optional<FactorialANOVAResult> twoWay(const NumericColumn& outcome, const TwoFactors& factors);

}  // namespace FactorialANOVATests

}  // namespace sorvane
