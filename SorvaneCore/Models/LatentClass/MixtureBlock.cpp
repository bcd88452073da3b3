#include "SorvaneCore/Models/LatentClass/MixtureBlock.h"

#include <algorithm>
#include <cmath>

namespace sorvane {

namespace {

constexpr double smallestProbability = 1e-15;
/// ln(1e-15).
constexpr double smallestLogProbability = -34.538776394910684;

}  // namespace

void MixtureBlock::normalize(std::size_t count) {
    largest_ = values_.front();
    for (std::size_t c = 1; c < classes(); ++c) {
        for (std::size_t i = 0; i < count; ++i) {
            largest_[i] = std::max(largest_[i], values_[c][i]);
        }
    }
    relativeSum_.fill(0.0);
    for (std::array<double, rowCount>& values : values_) {
        for (std::size_t i = 0; i < count; ++i) {
            values[i] = std::exp(values[i] - largest_[i]);
            relativeSum_[i] += values[i];
        }
    }
    for (std::array<double, rowCount>& values : values_) {
        for (std::size_t i = 0; i < count; ++i) {
            values[i] /= relativeSum_[i];
        }
    }
}

double MixtureBlock::logLikelihood(std::size_t row) const {
    return largest_[row] + std::log(relativeSum_[row]);
}

double MixtureBlock::logLikelihoodOf(std::size_t count) const {
    // One logarithm for the block: a factor is at most the number of classes.
    double sum = 0.0;
    double product = 1.0;
    for (std::size_t i = 0; i < count; ++i) {
        sum += largest_[i];
        product *= relativeSum_[i];
    }
    return sum + std::log(product);
}

double flooredLog(double probability) {
    return probability < smallestProbability ? smallestLogProbability : std::log(probability);
}

}  // namespace sorvane
