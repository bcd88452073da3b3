#pragma once

#include <boost/describe/class.hpp>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneCore/Models/Structural/SEMModel.h"

namespace sorvane {

struct SEMParameter {
    std::string lhs{};
    /// "=~", "~" or "~~".
    std::string op{};
    std::string rhs{};
    /// The three, with blanks between.
    std::string label{};
    double estimate = std::numeric_limits<double>::quiet_NaN();
    /// Absent where fixed or where the information leaves none.
    std::optional<double> standardError{};
    std::optional<double> z{};
    std::optional<double> pValue{};
    /// With all variables at a variance of 1.
    std::optional<double> standardized{};
    bool isFixed = false;

    bool operator==(const SEMParameter&) const = default;
};
BOOST_DESCRIBE_STRUCT(
    SEMParameter,
    (),
    (lhs, op, rhs, label, estimate, standardError, z, pValue, standardized, isFixed))

/// Numbers are NaN where the model could not be fitted.
struct SEMFitIndices {
    double chiSquare = std::numeric_limits<double>::quiet_NaN();
    std::int64_t degreesOfFreedom = 0;
    /// NaN without degrees of freedom.
    double pValue = std::numeric_limits<double>::quiet_NaN();
    double cfi = std::numeric_limits<double>::quiet_NaN();
    double tli = std::numeric_limits<double>::quiet_NaN();
    double rmsea = std::numeric_limits<double>::quiet_NaN();
    /// The 90% interval; absent without degrees of freedom.
    std::optional<double> rmseaLower{};
    std::optional<double> rmseaUpper{};
    double srmr = std::numeric_limits<double>::quiet_NaN();

    bool operator==(const SEMFitIndices&) const = default;
};
BOOST_DESCRIBE_STRUCT(
    SEMFitIndices,
    (),
    (chiSquare, degreesOfFreedom, pValue, cfi, tli, rmsea, rmseaLower, rmseaUpper, srmr))

struct SEMResult {
    /// In the order of the model's coefficients; none where there was nothing to estimate from.
    std::vector<SEMParameter> parameters{};
    SEMFitIndices fit{};
    /// Complete rows.
    std::int64_t n = 0;
    std::int64_t freeParameters = 0;
    std::vector<std::string> observed{};
    std::vector<std::string> latent{};
    /// The minimum of the fit function.
    double discrepancy = std::numeric_limits<double>::quiet_NaN();
    bool converged = false;
    std::int64_t iterations = 0;
    std::optional<AnalysisReadiness> readiness{};

    bool operator==(const SEMResult&) const = default;
};
BOOST_DESCRIBE_STRUCT(SEMResult,
                      (),
                      (parameters,
                       fit,
                       n,
                       freeParameters,
                       observed,
                       latent,
                       discrepancy,
                       converged,
                       iterations,
                       readiness))

/// Covariances of complete rows.
struct SEMSampleCovariance {
    /// Of the named columns, row-major, with n - 1.
    std::vector<double> matrix{};
    /// Complete rows.
    std::int64_t n = 0;
    std::int64_t totalRows = 0;

    bool operator==(const SEMSampleCovariance&) const = default;
};
BOOST_DESCRIBE_STRUCT(SEMSampleCovariance, (), (matrix, n, totalRows))

/// Confirmatory factor analysis and structural models by maximum likelihood.
namespace StructuralEquationModel {

/// Fits a model to the complete rows.
///
/// Input      one name per column; columns that the model does not name do not matter
/// Method     F = tr(S/Sigma) + ln|Sigma| - ln|S| - p over the free coefficients, S with n - 1, by
///            quasi-Newton with exact gradients, in units in which every observed variable has a
///            variance of 1; chi-square n F, expected information with n; CFI and TLI beside
///            variables that are all uncorrelated, predictors among themselves too. A search that
///            does not end in a minimum is tried again with loadings signed as the data are, then in
///            the units of the data
/// Returns    a fit that did not converge keeps its numbers and is blocked
/// Failure    throws SEMSyntaxError for the text; names or lengths that differ -> absent; blocked:
///            fewer than 3 complete rows, a covariance that is not positive definite, more free
///            coefficients than moments
/// Accuracy   estimates 1e-6 of a standard deviation, standard errors and indices alike
/// Cost       O(p^3) an evaluation; about 1 ms for 9 indicators, 0.1 s for 50
/// Reference  Joereskog (1969), A general approach to confirmatory maximum likelihood factor
///            analysis; McArdle and McDonald (1984), reticular action model; Steiger (1990), RMSEA
[[nodiscard]] std::optional<SEMResult> fit(std::string_view model,
                                           std::span<const NumericColumn> columns,
                                           std::span<const std::string> variableNames);

/// The covariance of the observed variables that a fitted model implies, row-major, in the order of
/// the result's `observed`.
///
/// Failure    throws SEMSyntaxError for the text; a result of another model, or one without numbers
///            -> absent
[[nodiscard]] std::optional<std::vector<double>> impliedCovariance(
    std::string_view model, const SEMResult& result, std::span<const std::string> variableNames);

/// The covariance of the named columns over the rows in which all of them have a number.
///
/// Failure    a name that no column has, columns of unequal length -> absent
/// Accuracy   deviations from the means      Cost O(rows * names^2)
[[nodiscard]] std::optional<SEMSampleCovariance> sampleCovariance(
    std::span<const std::string> observed,
    std::span<const NumericColumn> columns,
    std::span<const std::string> variableNames);

/// The log determinant of a covariance, p by p.
///
/// Failure    not positive definite -> absent; a variable of which less than 1e-12 is left beside
///            the others counts as collinear
[[nodiscard]] std::optional<double> logDeterminantSPD(std::span<const double> covariance,
                                                      std::size_t p);

}  // namespace StructuralEquationModel

}  // namespace sorvane
