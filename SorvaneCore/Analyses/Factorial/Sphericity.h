#pragma once

#include <cstdint>
#include <span>

namespace sorvane {

/// Whether the differences between conditions have one variance, and what to do about it if not.
struct Sphericity {
    /// Mauchly's test: NaN where it could not be computed.
    double mauchlyW = 1.0;
    double mauchlyChiSquare = 0.0;
    std::int64_t mauchlyDF = 0;
    double mauchlyP = 1.0;
    double greenhouseGeisserEpsilon = 1.0;
    double huynhFeldtEpsilon = 1.0;

    /// Input      the k by k covariance matrix of the conditions over n subjects, row-major
    /// Method     from the eigenvalues of the covariance of d = k - 1 orthonormal contrasts.
    ///            W = product / mean^d, chi-square of the first order on d(d+1)/2 - 1 df; with two
    ///            conditions W is 1. Epsilons are held to [1/d, 1]; Huynh-Feldt's is found from
    ///            the held Greenhouse-Geisser one
    /// Failure    contrasts that are collinear (an eigenvalue of at most 1e-12 of the largest) ->
    ///            Mauchly's test is NaN; without any variance both epsilons are 1
    /// Cost       O(k^3)
    /// Reference  Mauchly (1940); Greenhouse and Geisser (1959); Huynh and Feldt (1976)
    static Sphericity of(std::span<const double> covariance, std::int64_t k, std::int64_t n);
};

}  // namespace sorvane
