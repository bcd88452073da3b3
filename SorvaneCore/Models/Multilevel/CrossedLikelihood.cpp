#include "SorvaneCore/Models/Multilevel/CrossedLikelihood.h"

#include <cmath>
#include <utility>

#include "SorvaneCore/Models/Multilevel/LevelBlock.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"

namespace sorvane {

namespace {

std::vector<double> sizesOf(const ClusterCodes& factor) {
    const std::vector<std::size_t> sizes = factor.sizes();
    return {sizes.begin(), sizes.end()};
}

/// The sums of each column of a design in each level, level after level.
std::vector<double> levelSums(std::span<const double> columns,
                              std::size_t width,
                              const ClusterCodes& factor) {
    const std::size_t n = factor.codes.size();
    std::vector<double> sums(factor.count() * width, 0.0);
    for (std::size_t j = 0; j < width; ++j) {
        for (std::size_t i = 0; i < n; ++i) {
            sums[factor.codes[i] * width + j] += columns[j * n + i];
        }
    }
    return sums;
}

}  // namespace

/// What the elimination of the larger factor leaves.
struct CrossedLikelihood::Reduced {
    /// Under the inverse of the larger factor's V: the products of the columns, of the smaller
    /// factor's indicators, and of both.
    std::vector<double> products{};
    LevelBlock indicators;
    std::vector<double> mixed{};
    double logDeterminant = 0.0;
};

CrossedLikelihood::CrossedLikelihood(const ScaledDesign& design,
                                     const MultilevelRows& rows,
                                     MultilevelCriterion criterion)
    : design_(design),
      criterion_(criterion),
      firstIsLarger_(rows.cluster.count() >= rows.cluster2.count()) {
    const ClusterCodes& larger = firstIsLarger_ ? rows.cluster : rows.cluster2;
    const ClusterCodes& smaller = firstIsLarger_ ? rows.cluster2 : rows.cluster;
    const std::size_t width = design.width();
    largerSizes_ = sizesOf(larger);
    smallerSizes_ = sizesOf(smaller);
    meetings_ = LevelMeetings::of(larger, smaller);
    std::vector<double> columns(design.columns().begin(), design.columns().end());
    largerProjections_ = levelSums(columns, width, larger);
    for (std::size_t j = 0; j < width; ++j) {
        for (std::size_t i = 0; i < rows.count(); ++i) {
            const std::uint32_t level = larger.codes[i];
            columns[j * rows.count() + i] -=
                largerProjections_[level * width + j] / largerSizes_[level];
        }
    }
    for (std::size_t i = 0; i < largerProjections_.size(); ++i) {
        largerProjections_[i] /= std::sqrt(largerSizes_[i / width]);
    }
    smallerSums_ = levelSums(columns, width, smaller);
    within_ = LinearAlgebra::gramOfColumns(columns, rows.count(), width);
}

CrossedLikelihood::Reduced CrossedLikelihood::eliminated(double lambda) const {
    const std::size_t width = design_.width();
    const std::size_t m = smallerSizes_.size();
    Reduced result{.products = within_,
                   .indicators = LevelBlock(m, meetings_.isNested()),
                   .mixed = smallerSums_};
    for (std::size_t level = 0; level < m; ++level) {
        result.indicators(level, level) = smallerSizes_[level];
    }
    for (std::size_t a = 0; a < largerSizes_.size(); ++a) {
        const double shrunk = 1.0 + lambda * largerSizes_[a];
        result.logDeterminant += std::log(shrunk);
        const double* projection = &largerProjections_[a * width];
        for (std::size_t i = 0; i < width; ++i) {
            for (std::size_t j = i; j < width; ++j) {
                result.products[i * width + j] += projection[i] * projection[j] / shrunk;
            }
        }
        const double indicatorWeight = lambda / shrunk;
        const double mixedWeight = 1.0 / (std::sqrt(largerSizes_[a]) * shrunk);
        for (std::size_t s = meetings_.starts[a]; s < meetings_.starts[a + 1]; ++s) {
            const LevelMeetings::Meeting& meeting = meetings_.meetings[s];
            for (std::size_t j = 0; j < width; ++j) {
                result.mixed[meeting.level * width + j] +=
                    mixedWeight * meeting.rows * projection[j];
            }
            const double weight = indicatorWeight * meeting.rows;
            for (std::size_t t = meetings_.starts[a]; t <= s; ++t) {
                result.indicators(meeting.level, meetings_.meetings[t].level) -=
                    weight * meetings_.meetings[t].rows;
            }
        }
    }
    return result;
}

std::optional<MultilevelProfile> CrossedLikelihood::at(double lambdaA, double lambdaB) const {
    // A factor without variance is not in the model.
    constexpr double smallestLambda = 1e-16;
    const auto held = [](double lambda) {
        return lambda < smallestLambda ? 0.0 : lambda;
    };
    const double larger = held(firstIsLarger_ ? lambdaA : lambdaB);
    const double smaller = held(firstIsLarger_ ? lambdaB : lambdaA);
    const std::size_t width = design_.width();
    Reduced reduced = eliminated(larger);
    reduced.indicators.scaleAndAddIdentity(smaller);
    if (!reduced.indicators.factor()) {
        return std::nullopt;
    }
    reduced.indicators.solveLower(reduced.mixed, width);
    reduced.logDeterminant += reduced.indicators.logDeterminant();
    for (std::size_t level = 0; level < smallerSizes_.size(); ++level) {
        const double* row = &reduced.mixed[level * width];
        for (std::size_t i = 0; i < width; ++i) {
            for (std::size_t j = i; j < width; ++j) {
                reduced.products[i * width + j] -= smaller * row[i] * row[j];
            }
        }
    }
    return profileOf(std::move(reduced.products), reduced.logDeterminant, design_, criterion_);
}

}  // namespace sorvane
