#include "SorvaneCore/Models/LatentClass/ClassMixture.h"

#include <algorithm>
#include <numeric>

#include "SorvaneCore/Numerics/SplitMix64.h"

namespace sorvane {

namespace {

/// Before the probabilities of an indicator are made to add up to 1.
constexpr double smallestResponse = 0.001;

}  // namespace

ClassMixture::ClassMixture(const CategoryPatterns& patterns, std::size_t classes)
    : patterns_(patterns), classes_(classes), offsets_{0} {
    for (const std::vector<std::string>& labels : patterns.categories) {
        offsets_.push_back(offsets_.back() + labels.size());
    }
    for (std::size_t k = 0; k < patterns.codes.size(); ++k) {
        const std::size_t offset = offsets_[k % patterns.columns()];
        entries_.push_back(static_cast<std::uint32_t>(offset + patterns.codes[k]));
    }
}

std::vector<ClassMixture::Parameters> ClassMixture::starts(std::int64_t count,
                                                           std::uint64_t seed) const {
    SplitMix64 random(seed);
    std::vector<Parameters> starts;
    for (std::int64_t s = 0; s < count; ++s) {
        Parameters start{.proportions =
                             std::vector<double>(classes_, 1.0 / static_cast<double>(classes_))};
        for (std::size_t c = 0; c < classes_; ++c) {
            std::vector<double> weights;
            for (const std::vector<std::string>& labels : patterns_.categories) {
                for (std::size_t l = 0; l < labels.size(); ++l) {
                    const std::size_t turn = (static_cast<std::size_t>(s) + c + l) % 4;
                    weights.push_back(random.nextUnitDouble() + 0.2 +
                                      static_cast<double>(turn) * 0.05);
                }
            }
            normalize(weights);
            start.responses.push_back(std::move(weights));
        }
        starts.push_back(std::move(start));
    }
    return starts;
}

void ClassMixture::normalize(std::vector<double>& responses) const {
    for (std::size_t j = 0; j + 1 < offsets_.size(); ++j) {
        const auto begin = responses.begin() + static_cast<std::ptrdiff_t>(offsets_[j]);
        const auto end = responses.begin() + static_cast<std::ptrdiff_t>(offsets_[j + 1]);
        const double sum = std::accumulate(begin, end, 0.0);
        std::for_each(begin, end, [sum](double& entry) { entry /= sum; });
    }
}

std::vector<std::vector<double>> ClassMixture::logResponses(const Parameters& parameters) const {
    std::vector<std::vector<double>> logs = parameters.responses;
    for (std::vector<double>& list : logs) {
        std::ranges::transform(list, list.begin(), flooredLog);
    }
    return logs;
}

std::size_t ClassMixture::blockEnd(std::size_t first) const {
    return std::min(first + MixtureBlock::rowCount, patterns_.counts.size());
}

void ClassMixture::formLogDensities(const Parameters& parameters,
                                    const std::vector<std::vector<double>>& logResponses,
                                    std::size_t first,
                                    MixtureBlock& block) const {
    const std::size_t columns = patterns_.columns();
    for (std::size_t c = 0; c < classes_; ++c) {
        const double constant = flooredLog(parameters.proportions[c]);
        for (std::size_t pattern = first; pattern < blockEnd(first); ++pattern) {
            double density = constant;
            for (std::size_t j = 0; j < columns; ++j) {
                density += logResponses[c][entries_[pattern * columns + j]];
            }
            block.of(c)[pattern - first] = density;
        }
    }
}

ExpectationMaximization::Step<ClassMixture::Parameters> ClassMixture::step(
    const Parameters& parameters) const {
    const std::size_t columns = patterns_.columns();
    const std::vector<std::vector<double>> logs = logResponses(parameters);
    std::vector<double> sizes(classes_, 0.0);
    std::vector<std::vector<double>> weights(classes_, std::vector<double>(offsets_.back(), 0.0));
    MixtureBlock block(classes_);
    ExpectationMaximization::Step<Parameters> result;
    for (std::size_t first = 0; first < patterns_.counts.size(); first = blockEnd(first)) {
        formLogDensities(parameters, logs, first, block);
        block.normalize(blockEnd(first) - first);
        for (std::size_t pattern = first; pattern < blockEnd(first); ++pattern) {
            const double count = patterns_.counts[pattern];
            result.logLikelihood += count * block.logLikelihood(pattern - first);
            for (std::size_t c = 0; c < classes_; ++c) {
                const double weight = count * block.of(c)[pattern - first];
                sizes[c] += weight;
                for (std::size_t j = 0; j < columns; ++j) {
                    weights[c][entries_[pattern * columns + j]] += weight;
                }
            }
        }
    }
    result.next = maximized(sizes, std::move(weights));
    return result;
}

ClassMixture::Parameters ClassMixture::maximized(const std::vector<double>& sizes,
                                                 std::vector<std::vector<double>> weights) const {
    Parameters next;
    for (std::size_t c = 0; c < classes_; ++c) {
        next.proportions.push_back(sizes[c] / static_cast<double>(patterns_.rows()));
        const double size = std::max(sizes[c], smallestClassSize);
        for (double& weight : weights[c]) {
            weight = std::max(weight / size, smallestResponse);
        }
        normalize(weights[c]);
    }
    next.responses = std::move(weights);
    return next;
}

std::vector<std::vector<double>> ClassMixture::posteriors(const Parameters& parameters) const {
    const std::vector<std::vector<double>> logs = logResponses(parameters);
    const std::vector<std::vector<double>> ofPattern =
        MixtureBlock::posteriors(patterns_.counts.size(), classes_,
                                 [&](std::size_t first, std::size_t, MixtureBlock& block) {
                                     formLogDensities(parameters, logs, first, block);
                                 });
    std::vector<std::vector<double>> result;
    result.reserve(patterns_.rows());
    for (const std::uint32_t pattern : patterns_.patternOf) {
        result.push_back(ofPattern[pattern]);
    }
    return result;
}

std::vector<std::vector<double>> ClassMixture::byIndicator(
    const std::vector<double>& responses) const {
    std::vector<std::vector<double>> result;
    for (std::size_t j = 0; j + 1 < offsets_.size(); ++j) {
        result.emplace_back(responses.begin() + static_cast<std::ptrdiff_t>(offsets_[j]),
                            responses.begin() + static_cast<std::ptrdiff_t>(offsets_[j + 1]));
    }
    return result;
}

std::int64_t ClassMixture::freeResponses() const {
    return static_cast<std::int64_t>(offsets_.back() - patterns_.columns());
}

}  // namespace sorvane
