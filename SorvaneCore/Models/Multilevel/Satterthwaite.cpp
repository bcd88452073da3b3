#include "SorvaneCore/Models/Multilevel/Satterthwaite.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "SorvaneCore/Numerics/LinearAlgebra.h"

namespace sorvane::Satterthwaite {

namespace {

constexpr double failedDeviance = 1e300;
constexpr double smallestSigma = 1e-10;
/// What a parameter that may not be negative is held to where the gradient is taken.
constexpr double smallestParameter = 1e-8;

/// Deviance and variances as functions of the variance parameters and sigma, the last of them.
class Surface {
public:
    Surface(const ProfileAt& profileAt,
            const ScaledDesign& design,
            const MultilevelCriterion& criterion)
        : profileAt_(profileAt), design_(design), criterion_(criterion) {}

    double deviance(std::span<const double> phi) {
        const std::optional<MultilevelProfile>& profile = profileOf(phi);
        const double sigma = std::max(phi.back(), smallestSigma);
        return profile ? criterion_.deviance(*profile, sigma * sigma) : failedDeviance;
    }

    /// Of the fixed effects; empty where there are none.
    std::vector<double> variances(std::span<const double> phi) {
        const std::optional<MultilevelProfile>& profile = profileOf(phi);
        const auto inverse =
            profile ? LinearAlgebra::invert(profile->xtwx, criterion_.p) : std::nullopt;
        if (!inverse) {
            return {};
        }
        std::vector<double> result = design_.variances(*inverse);
        for (double& variance : result) {
            variance *= phi.back() * phi.back();
        }
        return result;
    }

private:
    /// Sigma does not enter the profile, so that one serves for several points.
    const std::optional<MultilevelProfile>& profileOf(std::span<const double> phi) {
        const std::span<const double> own = phi.first(phi.size() - 1);
        const auto known = std::ranges::find_if(
            profiles_, [own](const auto& entry) { return std::ranges::equal(entry.first, own); });
        if (known != profiles_.end()) {
            return known->second;
        }
        profiles_.emplace_back(std::vector<double>(own.begin(), own.end()), profileAt_(own));
        return profiles_.back().second;
    }

    const ProfileAt& profileAt_;
    const ScaledDesign& design_;
    const MultilevelCriterion& criterion_;
    std::vector<std::pair<std::vector<double>, std::optional<MultilevelProfile>>> profiles_;
};

double stepOf(double value) {
    return std::max(std::abs(value) * 1e-4, 1e-5);
}

std::vector<double> devianceHessian(const std::vector<double>& phi, Surface& surface) {
    const std::size_t t = phi.size();
    const auto at = [&](std::size_t i, double signI, std::size_t j, double signJ) {
        std::vector<double> point = phi;
        point[i] += signI * stepOf(phi[i]);
        point[j] += signJ * stepOf(phi[j]);
        return surface.deviance(point);
    };
    const double centre = surface.deviance(phi);
    std::vector<double> hessian(t * t);
    for (std::size_t i = 0; i < t; ++i) {
        const double hi = stepOf(phi[i]);
        hessian[i * t + i] = (at(i, 1, i, 0) - 2.0 * centre + at(i, -1, i, 0)) / (hi * hi);
        for (std::size_t j = i + 1; j < t; ++j) {
            const double difference =
                at(i, 1, j, 1) - at(i, 1, j, -1) - at(i, -1, j, 1) + at(i, -1, j, -1);
            hessian[i * t + j] = difference / (4.0 * hi * stepOf(phi[j]));
            hessian[j * t + i] = hessian[i * t + j];
        }
    }
    return hessian;
}

/// Twice the inverse on the directions of positive curvature.
std::optional<std::vector<double>> twoTimesPseudoInverse(std::vector<double> hessian,
                                                         std::size_t t) {
    constexpr double smallestCurvature = 1e-8;
    double scale = 0.0;
    for (const double entry : hessian) {
        scale = std::max(scale, std::abs(entry));
    }
    if (!(scale > 0.0) || !std::isfinite(scale)) {
        return std::nullopt;
    }
    // The eigenvalues are found to an absolute tolerance.
    for (double& entry : hessian) {
        entry /= scale;
    }
    const auto eigen = LinearAlgebra::symmetricEigen(hessian, t);
    if (!eigen) {
        return std::nullopt;
    }
    std::vector<double> result(t * t, 0.0);
    for (std::size_t e = 0; e < t; ++e) {
        const double curvature = eigen->values[e] * scale;
        if (!(curvature > smallestCurvature)) {
            continue;
        }
        const std::vector<double>& u = eigen->vectors[e];
        for (std::size_t i = 0; i < t * t; ++i) {
            result[i] += 2.0 / curvature * u[i / t] * u[i % t];
        }
    }
    return result;
}

/// The derivatives of all variances in one parameter; empty where they cannot be had.
std::vector<double> varianceGradient(const std::vector<double>& phi,
                                     std::size_t i,
                                     bool maySwitchSign,
                                     Surface& surface) {
    std::vector<double> above = phi;
    std::vector<double> below = phi;
    above[i] += stepOf(phi[i]);
    below[i] -= stepOf(phi[i]);
    if (!maySwitchSign) {
        above[i] = std::max(above[i], smallestParameter);
        below[i] = std::max(below[i], smallestParameter);
    }
    std::vector<double> gradient = surface.variances(above);
    const std::vector<double> lower = surface.variances(below);
    if (gradient.empty() || lower.empty()) {
        return {};
    }
    for (std::size_t j = 0; j < gradient.size(); ++j) {
        gradient[j] = (gradient[j] - lower[j]) / (above[i] - below[i]);
    }
    return gradient;
}

}  // namespace

std::optional<std::vector<double>> degrees(const Parameters& parameters,
                                           const ProfileAt& profileAt,
                                           const ScaledDesign& design,
                                           const MultilevelCriterion& criterion) {
    constexpr double noVariation = 1e-18;
    constexpr double degreesWithout = 1e6;
    std::vector<double> phi = parameters.values;
    phi.push_back(parameters.sigma);
    const std::size_t t = phi.size();
    Surface surface(profileAt, design, criterion);
    const std::vector<double> variances = surface.variances(phi);
    const auto covariance = twoTimesPseudoInverse(devianceHessian(phi, surface), t);
    if (variances.empty() || !covariance) {
        return std::nullopt;
    }
    std::vector<std::vector<double>> gradients;
    for (std::size_t i = 0; i < t; ++i) {
        const bool maySwitchSign = i + 1 < t && parameters.maySwitchSign[i];
        gradients.push_back(varianceGradient(phi, i, maySwitchSign, surface));
        if (gradients.back().empty()) {
            return std::nullopt;
        }
    }
    std::vector<double> result(variances.size());
    for (std::size_t j = 0; j < result.size(); ++j) {
        std::vector<double> g(t);
        for (std::size_t i = 0; i < t; ++i) {
            g[i] = gradients[i][j];
        }
        const double variance = std::max(variances[j], 0.0);
        const double variation = quadraticForm(*covariance, g);
        const double df = 2.0 * variance * variance / variation;
        result[j] = variation > noVariation && std::isfinite(variation) ? std::max(df, 1.0)
                                                                        : degreesWithout;
    }
    return result;
}

}  // namespace sorvane::Satterthwaite
