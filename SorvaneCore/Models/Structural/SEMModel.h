#pragma once

#include <boost/describe/class.hpp>
#include <boost/describe/enum.hpp>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "SorvaneCore/Models/Structural/SEMModelSpecParser.h"

namespace sorvane {

enum class SEMParameterKind {
    loading,
    regression,
    latentVariance,
    latentCovariance,
    residualVariance,
    residualCovariance,
    /// Of a latent variable that regressions explain.
    structuralResidualVariance,
};
BOOST_DESCRIBE_ENUM(SEMParameterKind,
                    loading,
                    regression,
                    latentVariance,
                    latentCovariance,
                    residualVariance,
                    residualCovariance,
                    structuralResidualVariance)

/// One coefficient of a model, to be estimated or fixed.
struct SEMParameterSlot {
    SEMParameterKind kind = SEMParameterKind::loading;
    std::string lhs{};
    /// "=~", "~" or "~~".
    std::string op{};
    std::string rhs{};
    bool isFree = true;
    /// 0 where free.
    double fixedValue = 0.0;
    /// The place among the free ones, -1 where fixed.
    std::int64_t freeIndex = -1;

    bool operator==(const SEMParameterSlot&) const = default;
};
BOOST_DESCRIBE_STRUCT(SEMParameterSlot, (), (kind, lhs, op, rhs, isFree, fixedValue, freeIndex))

/// A structural model with all that its text leaves unsaid.
struct SEMModel {
    /// Columns of the data, in order of first appearance.
    std::vector<std::string> observed{};
    std::vector<std::string> latent{};
    std::vector<SEMParameterSlot> parameters{};
    std::int64_t freeCount = 0;
    SEMParsedSpec parsed{};

    bool operator==(const SEMModel&) const = default;

    /// The coefficients of a model: those written, and those that go without saying.
    ///
    /// Input      the names of the columns that the data have
    /// Method     The first indicator of a latent variable is fixed at 1 where it has no value of
    ///            its own. Free unless written: every variance; the covariances of latent
    ///            variables on which nothing acts; those of observed predictors on which nothing
    ///            acts; those of the residuals of outcomes that neither predict nor indicate
    ///            anything. A path or covariance that is written twice counts once, as written
    ///            first
    /// Failure    throws SEMSyntaxError for the first name that is neither latent nor a column, and
    ///            for a path that is written again with another value, or with one of the two free
    /// Cost       O(terms + variables^2) comparisons of names at most
    static SEMModel build(SEMParsedSpec parsed, std::span<const std::string> datasetVariables);

    /// The names of a model that are neither latent nor a column, in order of first appearance.
    static std::vector<std::string> unknownNames(const SEMParsedSpec& parsed,
                                                 std::span<const std::string> datasetVariables);
};
BOOST_DESCRIBE_STRUCT(SEMModel, (), (observed, latent, parameters, freeCount, parsed))

}  // namespace sorvane
