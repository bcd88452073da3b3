#pragma once

#include <cstdint>

#include "SorvaneCore/Analyses/Basics/OrderedClasses.h"

namespace sorvane {

/// How the pairs of cases of two variables are ordered.
struct PairConcordance {
    /// Concordant pairs less discordant pairs.
    std::int64_t balance = 0;
    /// n(n-1)/2, and how many of these are tied in x and in y.
    std::int64_t pairs = 0;
    std::int64_t tiedInX = 0;
    std::int64_t tiedInY = 0;

    /// Input      two samples of one size, below 2^32
    /// Method     sort by x, then y; count the exchanges of a merge sort of y; exact
    /// Cost       O(n log n), about 60 ms for a million cases
    /// Reference  Knight (1966), A computer method for calculating Kendall's tau
    static PairConcordance of(const OrderedClasses& x, const OrderedClasses& y);
};

}  // namespace sorvane
