#include "SorvaneCore/Models/Multilevel/CrossedLikelihood.h"

#include <cmath>
#include <utility>

#include "SorvaneCore/Models/Multilevel/LevelBlock.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"
#include "SorvaneCore/Numerics/ParallelFor.h"

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

/// Outcome less fixed effects in a row of sums over both.
double residualOf(const double* row, std::span<const double> beta) {
    double result = row[beta.size()];
    for (std::size_t j = 0; j < beta.size(); ++j) {
        result -= row[j] * beta[j];
    }
    return result;
}

/// A factor with less variance is not in the model.
double heldLambda(double lambda) {
    constexpr double smallestLambda = 1e-16;
    return lambda < smallestLambda ? 0.0 : lambda;
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
        result.indicators.row(level)[level] = smallerSizes_[level];
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
            double* row = result.indicators.row(meeting.level);
            for (std::size_t t = meetings_.starts[a]; t <= s; ++t) {
                row[meetings_.meetings[t].level] -= weight * meetings_.meetings[t].rows;
            }
        }
    }
    return result;
}

std::optional<MultilevelProfile> CrossedLikelihood::at(double lambdaA,
                                                       double lambdaB,
                                                       unsigned threads) const {
    const double larger = heldLambda(firstIsLarger_ ? lambdaA : lambdaB);
    const double smaller = heldLambda(firstIsLarger_ ? lambdaB : lambdaA);
    const std::size_t width = design_.width();
    Reduced reduced = eliminated(larger);
    reduced.indicators.scaleAndAddIdentity(smaller);
    if (!reduced.indicators.factor(threads)) {
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

std::vector<CrossedLikelihood::Departure> CrossedLikelihood::departures(
    double lambdaA, double lambdaB, std::span<const double> beta) const {
    const double larger = heldLambda(firstIsLarger_ ? lambdaA : lambdaB);
    const double smaller = heldLambda(firstIsLarger_ ? lambdaB : lambdaA);
    const std::size_t m = smallerSizes_.size();
    Reduced reduced = eliminated(larger);
    reduced.indicators.scaleAndAddIdentity(smaller);
    if (!reduced.indicators.factor(hardwareThreads())) {
        return {};
    }
    if (firstIsLarger_) {
        return largerDepartures(larger, smaller, reduced, beta);
    }
    std::vector<double> means(m);
    for (std::size_t level = 0; level < m; ++level) {
        means[level] = smaller * residualOf(&reduced.mixed[level * design_.width()], beta);
    }
    reduced.indicators.solveLower(means, 1);
    reduced.indicators.solveLowerTransposed(means, 1);
    // The columns of L^-1, whose squares add up to the diagonal of the inverse.
    std::vector<double> columns(m * m, 0.0);
    for (std::size_t level = 0; level < m; ++level) {
        columns[level * m + level] = 1.0;
    }
    reduced.indicators.solveLower(columns, m);
    std::vector<Departure> result(m);
    for (std::size_t level = 0; level < m; ++level) {
        result[level].mean = means[level];
        for (std::size_t row = 0; row < m; ++row) {
            result[level].variance += smaller * columns[row * m + level] * columns[row * m + level];
        }
    }
    return result;
}

std::vector<CrossedLikelihood::Departure> CrossedLikelihood::largerDepartures(
    double lambda,
    double smallerLambda,
    const Reduced& reduced,
    std::span<const double> beta) const {
    const std::size_t width = design_.width();
    const std::size_t m = smallerSizes_.size();
    const std::size_t levels = largerSizes_.size();
    std::vector<double> smallerMeans(m);
    for (std::size_t s = 0; s < m; ++s) {
        smallerMeans[s] = smallerLambda * residualOf(&reduced.mixed[s * width], beta);
    }
    reduced.indicators.solveLower(smallerMeans, 1);
    reduced.indicators.solveLowerTransposed(smallerMeans, 1);
    std::vector<double> meetingRows(m * levels, 0.0);
    std::vector<Departure> result(levels);
    for (std::size_t a = 0; a < levels; ++a) {
        const double share = lambda / (1.0 + lambda * largerSizes_[a]);
        double residual =
            std::sqrt(largerSizes_[a]) * residualOf(&largerProjections_[a * width], beta);
        for (std::size_t s = meetings_.starts[a]; s < meetings_.starts[a + 1]; ++s) {
            const LevelMeetings::Meeting& meeting = meetings_.meetings[s];
            residual -= meeting.rows * smallerMeans[meeting.level];
            meetingRows[meeting.level * levels + a] = share * meeting.rows;
        }
        result[a] = {.mean = share * residual, .variance = share};
    }
    reduced.indicators.solveLower(meetingRows, levels);
    for (std::size_t s = 0; s < m; ++s) {
        for (std::size_t a = 0; a < levels; ++a) {
            const double entry = meetingRows[s * levels + a];
            result[a].variance += smallerLambda * entry * entry;
        }
    }
    return result;
}

}  // namespace sorvane
