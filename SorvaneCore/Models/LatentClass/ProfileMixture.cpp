#include "SorvaneCore/Models/LatentClass/ProfileMixture.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "SorvaneCore/Analyses/Basics/SampleMoments.h"
#include "SorvaneCore/Models/LatentClass/MixtureCases.h"
#include "SorvaneCore/Numerics/ColumnKernels.h"
#include "SorvaneCore/Numerics/SplitMix64.h"

namespace sorvane {

namespace {

constexpr double smallestVariance = 1e-8;
/// Of the indicator's overall variance, so that no class collapses on a point.
constexpr double smallestVarianceShare = 1e-6;

double overallVariance(const std::vector<double>& values) {
    const double mean = SampleMoments::mean(values);
    double squares = 0.0;
    for (const double value : values) {
        squares += (value - mean) * (value - mean);
    }
    return std::max(squares / static_cast<double>(values.size()), smallestVariance);
}

}  // namespace

ProfileMixture::ProfileMixture(std::vector<std::vector<double>> columns, std::size_t classes)
    : columns_(std::move(columns)), classes_(classes) {
    for (const std::vector<double>& column : columns_) {
        variances_.push_back(overallVariance(column));
    }
}

std::vector<ProfileMixture::Parameters> ProfileMixture::starts(std::int64_t count,
                                                               std::uint64_t seed) const {
    SplitMix64 random(seed);
    std::vector<Parameters> starts;
    for (std::int64_t s = 0; s < count; ++s) {
        Parameters start{.proportions =
                             std::vector<double>(classes_, 1.0 / static_cast<double>(classes_))};
        const std::vector<std::size_t> chosen = MixtureCases::drawRows(random, classes_, rows());
        const double shift = static_cast<double>(s % 5 - 2) * 0.01;
        for (std::size_t c = 0; c < classes_; ++c) {
            const auto width = static_cast<double>((s + static_cast<std::int64_t>(c)) % 3);
            for (std::size_t j = 0; j < columns_.size(); ++j) {
                const double deviation = std::sqrt(variances_[j]);
                start.means.push_back(columns_[j][chosen[c]] + shift * deviation);
                start.standardDeviations.push_back((width * 0.1 + 0.8) * deviation);
            }
        }
        starts.push_back(std::move(start));
    }
    return starts;
}

void ProfileMixture::formLogDensities(const Parameters& parameters,
                                      std::size_t first,
                                      std::size_t count,
                                      MixtureBlock& block) const {
    const std::size_t indicators = columns_.size();
    for (std::size_t c = 0; c < classes_; ++c) {
        double constant = flooredLog(parameters.proportions[c]);
        for (std::size_t j = 0; j < indicators; ++j) {
            constant -= MixtureCases::logNormalConstant +
                        std::log(parameters.standardDeviations[c * indicators + j]);
        }
        auto& density = block.of(c);
        density.fill(constant);
        for (std::size_t j = 0; j < indicators; ++j) {
            const double mean = parameters.means[c * indicators + j];
            const double deviation = parameters.standardDeviations[c * indicators + j];
            const double factor = 1.0 / (2.0 * deviation * deviation);
            const double* x = &columns_[j][first];
            for (std::size_t i = 0; i < count; ++i) {
                density[i] -= (x[i] - mean) * (x[i] - mean) * factor;
            }
        }
    }
}

/// The sums of a round's second half, about the means of its first.
class ProfileMixture::Moments {
public:
    Moments(const ProfileMixture& mixture, const Parameters& parameters)
        : mixture_(mixture),
          parameters_(parameters),
          sizes_(mixture.classes_, 0.0),
          sums_(parameters.means.size(), 0.0),
          squares_(parameters.means.size(), 0.0) {}

    void add(const MixtureBlock& block, std::size_t first, std::size_t count) {
        const std::size_t indicators = mixture_.columns_.size();
        std::array<double, MixtureBlock::rowCount> deviations;
        for (std::size_t c = 0; c < sizes_.size(); ++c) {
            const double* weights = block.of(c).data();
            sizes_[c] += ColumnKernels::dot(weights, ones().data(), count);
            for (std::size_t j = 0; j < indicators; ++j) {
                const std::size_t k = c * indicators + j;
                const double* x = &mixture_.columns_[j][first];
                std::array<double, MixtureBlock::rowCount> weighted;
                for (std::size_t i = 0; i < count; ++i) {
                    deviations[i] = x[i] - parameters_.means[k];
                    weighted[i] = weights[i] * deviations[i];
                }
                const auto [sum, square] = ColumnKernels::dots<2>(
                    weighted.data(), {ones().data(), deviations.data()}, count);
                sums_[k] += sum;
                squares_[k] += square;
            }
        }
    }

    Parameters maximized() const {
        const std::size_t indicators = mixture_.columns_.size();
        Parameters next;
        for (std::size_t c = 0; c < sizes_.size(); ++c) {
            next.proportions.push_back(sizes_[c] / static_cast<double>(mixture_.rows()));
            const double size = std::max(sizes_[c], smallestClassSize);
            for (std::size_t j = 0; j < indicators; ++j) {
                const std::size_t k = c * indicators + j;
                const double mean = (sizes_[c] * parameters_.means[k] + sums_[k]) / size;
                const double move = mean - parameters_.means[k];
                const double variance =
                    (squares_[k] - 2.0 * move * sums_[k] + sizes_[c] * move * move) / size;
                next.means.push_back(mean);
                next.standardDeviations.push_back(
                    std::sqrt(std::max(variance, smallestVarianceShare * mixture_.variances_[j])));
            }
        }
        return next;
    }

private:
    static const std::array<double, MixtureBlock::rowCount>& ones() {
        static const auto list = [] {
            std::array<double, MixtureBlock::rowCount> filled{};
            filled.fill(1.0);
            return filled;
        }();
        return list;
    }

    const ProfileMixture& mixture_;
    const Parameters& parameters_;
    std::vector<double> sizes_;
    std::vector<double> sums_;
    std::vector<double> squares_;
};

ExpectationMaximization::Step<ProfileMixture::Parameters> ProfileMixture::step(
    const Parameters& parameters) const {
    ExpectationMaximization::Step<Parameters> result;
    MixtureBlock block(classes_);
    Moments moments(*this, parameters);
    for (std::size_t first = 0; first < rows(); first += MixtureBlock::rowCount) {
        const std::size_t count = std::min(MixtureBlock::rowCount, rows() - first);
        formLogDensities(parameters, first, count, block);
        block.normalize(count);
        result.logLikelihood += block.logLikelihoodOf(count);
        moments.add(block, first, count);
    }
    result.next = moments.maximized();
    return result;
}

std::vector<std::vector<double>> ProfileMixture::posteriors(const Parameters& parameters) const {
    return MixtureBlock::posteriors(rows(), classes_,
                                    [&](std::size_t first, std::size_t count, MixtureBlock& block) {
                                        formLogDensities(parameters, first, count, block);
                                    });
}

}  // namespace sorvane
