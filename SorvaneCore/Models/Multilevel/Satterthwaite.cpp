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

/// The parameters and sigma, each with how far a difference goes and where it is held.
struct Point {
    std::vector<double> phi{};
    std::vector<double> steps{};
    std::vector<double> floors{};
    std::vector<bool> maySwitchSign{};
};

Point pointOf(const Parameters& parameters) {
    constexpr double relativeStep = 1e-4;
    constexpr double smallestStep = 1e-5;
    Point result{.phi = parameters.values, .maySwitchSign = parameters.maySwitchSign};
    result.phi.push_back(parameters.sigma);
    result.maySwitchSign.push_back(false);
    std::vector<double> units(parameters.values.size(), 1.0);
    // A small residual variance must not vanish under the step.
    units.push_back(std::min(parameters.sigma, 1.0));
    for (std::size_t i = 0; i < units.size(); ++i) {
        result.steps.push_back(
            std::max(std::abs(result.phi[i]) * relativeStep, units[i] * smallestStep));
        result.floors.push_back(units[i] * smallestParameter);
    }
    return result;
}

std::vector<double> devianceHessian(const Point& point, Surface& surface) {
    const std::size_t t = point.phi.size();
    const auto at = [&](std::size_t i, double signI, std::size_t j, double signJ) {
        std::vector<double> phi = point.phi;
        phi[i] += signI * point.steps[i];
        phi[j] += signJ * point.steps[j];
        return surface.deviance(phi);
    };
    const double centre = surface.deviance(point.phi);
    std::vector<double> hessian(t * t);
    for (std::size_t i = 0; i < t; ++i) {
        const double hi = point.steps[i];
        hessian[i * t + i] = (at(i, 1, i, 0) - 2.0 * centre + at(i, -1, i, 0)) / (hi * hi);
        for (std::size_t j = i + 1; j < t; ++j) {
            const double difference =
                at(i, 1, j, 1) - at(i, 1, j, -1) - at(i, -1, j, 1) + at(i, -1, j, -1);
            hessian[i * t + j] = difference / (4.0 * hi * point.steps[j]);
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
std::vector<double> varianceGradient(const Point& point, std::size_t i, Surface& surface) {
    std::vector<double> above = point.phi;
    std::vector<double> below = point.phi;
    above[i] += point.steps[i];
    below[i] -= point.steps[i];
    if (!point.maySwitchSign[i]) {
        above[i] = std::max(above[i], point.floors[i]);
        below[i] = std::max(below[i], point.floors[i]);
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
    const Point point = pointOf(parameters);
    const std::size_t t = point.phi.size();
    Surface surface(profileAt, design, criterion);
    const std::vector<double> variances = surface.variances(point.phi);
    const auto covariance = twoTimesPseudoInverse(devianceHessian(point, surface), t);
    if (variances.empty() || !covariance) {
        return std::nullopt;
    }
    std::vector<std::vector<double>> gradients;
    for (std::size_t i = 0; i < t; ++i) {
        gradients.push_back(varianceGradient(point, i, surface));
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
        // Relative to the variance, which is as small as the unit of a predictor is large.
        const bool varies = variation > noVariation * variance * variance;
        result[j] = varies && std::isfinite(variation) ? std::max(df, 1.0) : degreesWithout;
    }
    return result;
}

}  // namespace sorvane::Satterthwaite
