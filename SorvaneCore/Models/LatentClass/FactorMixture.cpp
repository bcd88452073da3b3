#include "SorvaneCore/Models/LatentClass/FactorMixture.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "SorvaneCore/Analyses/Basics/SampleMoments.h"
#include "SorvaneCore/Models/LatentClass/MixtureCases.h"
#include "SorvaneCore/Numerics/ColumnKernels.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"

namespace sorvane {

namespace {

using Numbers = std::vector<double>;

/// The direction in which the indicators vary most, of unit length and signed so that its sum is
/// not negative.
Numbers mainDirection(const Numbers& correlations, std::size_t p) {
    const auto eigen = LinearAlgebra::symmetricEigen(correlations, p);
    Numbers direction =
        eigen ? eigen->vectors.front() : Numbers(p, 1.0 / std::sqrt(static_cast<double>(p)));
    double sum = 0.0;
    for (const double each : direction) {
        sum += each;
    }
    for (double& each : direction) {
        each = sum < 0.0 ? -each : each;
    }
    return direction;
}

}  // namespace

/// The inverse of loadings * loadings' + residuals: diag(1 / residuals) - w w' / (1 + strength),
/// with w = loadings / residuals.
struct FactorMixture::Precision {
    Numbers weights{};
    double strength = 0.0;
    double logDeterminant = 0.0;

    explicit Precision(const Parameters& parameters) {
        for (std::size_t j = 0; j < parameters.loadings.size(); ++j) {
            weights.push_back(parameters.loadings[j] / parameters.residuals[j]);
            strength += weights[j] * parameters.loadings[j];
            logDeterminant += std::log(parameters.residuals[j]);
        }
        logDeterminant += std::log1p(strength);
    }
};

double FactorMixture::smallestResidual() {
    return 1e-4;
}

FactorMixture::FactorMixture(std::vector<std::vector<double>> columns, std::size_t classes)
    : columns_(std::move(columns)), classes_(classes) {
    const auto n = static_cast<double>(rows());
    for (Numbers& column : columns_) {
        const double centre = SampleMoments::mean(column);
        const double deviation = std::sqrt(SampleMoments::sumOfSquares(column, centre) / n);
        for (double& value : column) {
            value = (value - centre) / deviation;
        }
        centres_.push_back(centre);
        deviations_.push_back(deviation);
    }
    for (const Numbers& a : columns_) {
        for (const Numbers& b : columns_) {
            correlations_.push_back(ColumnKernels::dot(a.data(), b.data(), rows()) / n);
        }
    }
}

std::vector<FactorMixture::Parameters> FactorMixture::starts(std::int64_t count,
                                                             std::uint64_t seed) const {
    SplitMix64 random(seed);
    const Numbers direction = mainDirection(correlations_, indicators());
    const double unit = std::sqrt(static_cast<double>(indicators()));
    std::vector<Parameters> starts;
    for (std::int64_t s = 0; s < count; ++s) {
        Parameters start{.proportions = Numbers(classes_, 1.0 / static_cast<double>(classes_))};
        const std::vector<std::size_t> chosen = MixtureCases::drawRows(random, classes_, rows());
        const double shift = static_cast<double>(s % 5 - 2) * 0.01;
        for (const std::size_t row : chosen) {
            for (const Numbers& column : columns_) {
                start.means.push_back(column[row] + shift);
            }
        }
        const double share = 0.2 + 0.25 * static_cast<double>(s % 3);
        for (const double entry : direction) {
            const double loading = std::sqrt(share) * std::clamp(entry * unit, -1.2, 1.2);
            start.loadings.push_back(loading);
            start.residuals.push_back(std::max(1.0 - loading * loading, 0.2));
        }
        starts.push_back(std::move(start));
    }
    return starts;
}

void FactorMixture::formLogDensities(const Parameters& parameters,
                                     std::size_t first,
                                     std::size_t count,
                                     MixtureBlock& block) const {
    const Precision precision(parameters);
    const double constant = -MixtureCases::logNormalConstant * static_cast<double>(indicators()) -
                            0.5 * precision.logDeterminant;
    std::array<double, MixtureBlock::rowCount> along;
    for (std::size_t c = 0; c < classes_; ++c) {
        auto& density = block.of(c);
        density.fill(constant + flooredLog(parameters.proportions[c]));
        along.fill(0.0);
        for (std::size_t j = 0; j < indicators(); ++j) {
            const double mean = parameters.means[c * indicators() + j];
            const double half = 0.5 / parameters.residuals[j];
            const double* x = &columns_[j][first];
            for (std::size_t i = 0; i < count; ++i) {
                const double left = x[i] - mean;
                density[i] -= half * left * left;
                along[i] += precision.weights[j] * left;
            }
        }
        const double share = 0.5 / (1.0 + precision.strength);
        for (std::size_t i = 0; i < count; ++i) {
            density[i] += share * along[i] * along[i];
        }
    }
}

/// Rounds of factor analysis on the covariance pooled within classes, which the means of all rows
/// and of the classes settle: X'X / n - sum of shares times m m'.
void FactorMixture::updateFactor(Parameters& next, std::span<const double> sizes) const {
    constexpr int mostRounds = 40;
    constexpr double stillMoves = 1e-10;
    const std::size_t p = indicators();
    Numbers pooled = correlations_;
    for (std::size_t c = 0; c < classes_; ++c) {
        const double share = sizes[c] / static_cast<double>(rows());
        const double* mean = &next.means[c * p];
        for (std::size_t i = 0; i < p; ++i) {
            for (std::size_t j = 0; j < p; ++j) {
                pooled[i * p + j] -= share * mean[i] * mean[j];
            }
        }
    }
    for (int round = 0; round < mostRounds; ++round) {
        const Precision precision(next);
        // The regression of the factor on the indicators, and what it leaves.
        const double variance = 1.0 / (1.0 + precision.strength);
        Numbers shared(p, 0.0);
        double squared = variance;
        for (std::size_t i = 0; i < p; ++i) {
            for (std::size_t j = 0; j < p; ++j) {
                shared[i] += pooled[i * p + j] * precision.weights[j] * variance;
            }
            squared += shared[i] * precision.weights[i] * variance;
        }
        double move = 0.0;
        for (std::size_t j = 0; j < p; ++j) {
            const double loading = shared[j] / squared;
            move = std::max(move, std::abs(loading - next.loadings[j]));
            next.loadings[j] = loading;
            next.residuals[j] =
                std::max(pooled[j * p + j] - loading * shared[j], smallestResidual());
        }
        if (move < stillMoves) {
            return;
        }
    }
}

ExpectationMaximization::Step<FactorMixture::Parameters> FactorMixture::step(
    const Parameters& parameters) const {
    const std::size_t p = indicators();
    ExpectationMaximization::Step<Parameters> result;
    MixtureBlock block(classes_);
    Numbers sizes(classes_, 0.0);
    Numbers sums(classes_ * p, 0.0);
    for (std::size_t first = 0; first < rows(); first += MixtureBlock::rowCount) {
        const std::size_t count = std::min(MixtureBlock::rowCount, rows() - first);
        formLogDensities(parameters, first, count, block);
        block.normalize(count);
        result.logLikelihood += block.logLikelihoodOf(count);
        for (std::size_t c = 0; c < classes_; ++c) {
            const double* weights = block.of(c).data();
            sizes[c] += SampleMoments::sum(std::span(weights, count));
            for (std::size_t j = 0; j < p; ++j) {
                sums[c * p + j] += ColumnKernels::dot(weights, &columns_[j][first], count);
            }
        }
    }
    result.next = parameters;
    for (std::size_t c = 0; c < classes_; ++c) {
        result.next.proportions[c] = sizes[c] / static_cast<double>(rows());
        for (std::size_t j = 0; j < p; ++j) {
            result.next.means[c * p + j] = sums[c * p + j] / std::max(sizes[c], smallestClassSize);
        }
    }
    updateFactor(result.next, sizes);
    return result;
}

std::vector<Numbers> FactorMixture::posteriors(const Parameters& parameters) const {
    return MixtureBlock::posteriors(rows(), classes_,
                                    [&](std::size_t first, std::size_t count, MixtureBlock& block) {
                                        formLogDensities(parameters, first, count, block);
                                    });
}

Numbers FactorMixture::scores(const Parameters& parameters,
                              std::span<const Numbers> posteriors) const {
    const Precision precision(parameters);
    const std::size_t p = indicators();
    Numbers result;
    for (std::size_t i = 0; i < rows(); ++i) {
        double along = 0.0;
        for (std::size_t j = 0; j < p; ++j) {
            double expected = 0.0;
            for (std::size_t c = 0; c < classes_; ++c) {
                expected += posteriors[i][c] * parameters.means[c * p + j];
            }
            along += precision.weights[j] * (columns_[j][i] - expected);
        }
        result.push_back(along / (1.0 + precision.strength));
    }
    return result;
}

double FactorMixture::mean(const Parameters& parameters, std::size_t c, std::size_t j) const {
    return centres_[j] + deviations_[j] * parameters.means[c * indicators() + j];
}

double FactorMixture::loading(const Parameters& parameters, std::size_t j) const {
    return deviations_[j] * parameters.loadings[j];
}

double FactorMixture::residual(const Parameters& parameters, std::size_t j) const {
    return deviations_[j] * deviations_[j] * parameters.residuals[j];
}

double FactorMixture::logLikelihoodShift() const {
    double sum = 0.0;
    for (const double deviation : deviations_) {
        sum -= std::log(deviation) * static_cast<double>(rows());
    }
    return sum;
}

}  // namespace sorvane
