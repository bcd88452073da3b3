#include "SorvaneCore/Models/Multilevel/OrdinalQuadrature.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <numeric>

#include "SorvaneCore/Numerics/OrdinalTerms.h"
#include "SorvaneCore/Numerics/ParallelFor.h"

namespace sorvane {

namespace {

using GaussHermite::nodes;
using GaussHermite::pointCount;
using GaussHermite::Points;
using GaussHermite::weights;
using Numbers = std::vector<double>;

constexpr double infinity = std::numeric_limits<double>::infinity();

/// The answers of one cluster at one setting.
struct Answers {
    const OrdinalClusters& data;
    std::span<const double> parameters;
    std::size_t first = 0;
    std::size_t size = 0;
    /// Of each answer without the random intercept.
    Numbers predictor{};

    Answers(const OrdinalClusters& all,
            std::span<const double> setting,
            std::size_t firstRow,
            std::size_t rowCount)
        : data(all), parameters(setting), first(firstRow), size(rowCount) {
        const double* slopes = parameters.data() + data.thresholdCount();
        for (std::size_t i = 0; i < size; ++i) {
            const double* x = row(i);
            predictor.push_back(std::inner_product(x, x + data.width, slopes, 0.0));
        }
    }

    const double* row(std::size_t i) const {
        return data.predictors.data() + (first + i) * data.width;
    }
    std::size_t level(std::size_t i) const { return data.levels[first + i]; }
    double sigma() const { return parameters.back(); }

    OrdinalTerms terms(std::size_t i, double intercept) const {
        const std::size_t k = level(i);
        const double sum = predictor[i] + intercept;
        return OrdinalTerms::between(k > 0 ? parameters[k - 1] - sum : -infinity,
                                     k < data.thresholdCount() ? parameters[k] - sum : infinity);
    }
};

/// Moves u, in standard deviations, to the most likely one, and finds the curvature there.
void findMode(const Answers& answers, double& u, double& curvature) {
    constexpr int stepLimit = 60;
    constexpr double smallestStep = 1e-11;
    constexpr double longestShift = 4.0;
    const double sigma = answers.sigma();
    for (int step = 0; step < stepLimit; ++step) {
        double score = 0.0;
        double information = 0.0;
        for (std::size_t i = 0; i < answers.size; ++i) {
            const OrdinalTerms terms = answers.terms(i, sigma * u);
            score += terms.score();
            information += terms.information();
        }
        curvature = 1.0 + sigma * sigma * information;
        const double move = (sigma * score - u) / curvature;
        const double longest = longestShift / std::max(std::abs(sigma), 1e-3);
        u += std::clamp(move, -longest, longest);
        if (!(std::abs(move) >= smallestStep)) {
            break;
        }
    }
}

/// The information of an answer, averaged over the points: in its cuts and in its predictor, alone
/// and times the intercept.
struct RowMeans {
    double upper = 0.0;
    double lower = 0.0;
    double cross = 0.0;
    double upperTimes = 0.0;
    double lowerTimes = 0.0;
    double all = 0.0;
    double allTimes = 0.0;
    double allTimesSquare = 0.0;

    void add(double weight, const OrdinalTerms& terms, double u) {
        const double ofUpper = weight * terms.upperInformation();
        const double ofLower = weight * terms.lowerInformation();
        const double ofCross = weight * terms.crossInformation();
        const double information = ofUpper + ofLower + 2.0 * ofCross;
        upper += ofUpper;
        lower += ofLower;
        cross += ofCross;
        upperTimes += (ofUpper + ofCross) * u;
        lowerTimes += (ofLower + ofCross) * u;
        all += information;
        allTimes += information * u;
        allTimesSquare += information * u * u;
    }
};

/// The sums over some clusters; of the Hessian its upper triangle.
class Sums {
public:
    explicit Sums(const OrdinalClusters& data)
        : thresholds_(data.thresholdCount()), width_(data.width), size_(data.parameterCount()) {
        sums_.gradient.assign(size_, 0.0);
        sums_.negativeHessian.assign(size_ * size_, 0.0);
    }

    void addValue(double logLikelihood) { sums_.objective += logLikelihood; }
    void addImpossible() { sums_.objective = -infinity; }

    void addRow(std::size_t level, const RowMeans& means, const double* x) {
        if (level < thresholds_) {
            addThreshold(level, means.upper, means.upper + means.cross, means.upperTimes, x);
        }
        if (level > 0) {
            addThreshold(level - 1, means.lower, means.lower + means.cross, means.lowerTimes, x);
        }
        if (level > 0 && level < thresholds_) {
            row(level - 1)[level] += means.cross;
        }
        for (std::size_t i = 0; i < width_; ++i) {
            double* to = row(thresholds_ + i) + thresholds_;
            for (std::size_t j = i; j < width_; ++j) {
                to[j] += means.all * x[i] * x[j];
            }
            to[width_] += means.allTimes * x[i];
        }
        row(size_ - 1)[size_ - 1] += means.allTimesSquare;
    }

    /// The scores of a cluster at the points, one row each, with the points' shares.
    void addScores(const Numbers& scores, const Points& shares) {
        Numbers mean(size_, 0.0);
        for (std::size_t k = 0; k < pointCount; ++k) {
            for (std::size_t i = 0; i < size_; ++i) {
                mean[i] += shares[k] * scores[k * size_ + i];
            }
        }
        for (std::size_t k = 0; k < pointCount; ++k) {
            for (std::size_t i = 0; i < size_; ++i) {
                const double left = shares[k] * (scores[k * size_ + i] - mean[i]);
                for (std::size_t j = i; j < size_; ++j) {
                    row(i)[j] -= left * (scores[k * size_ + j] - mean[j]);
                }
            }
        }
        for (std::size_t i = 0; i < size_; ++i) {
            sums_.gradient[i] += mean[i];
        }
    }

    void add(const Sums& other) {
        sums_.objective += other.sums_.objective;
        for (std::size_t i = 0; i < size_; ++i) {
            sums_.gradient[i] += other.sums_.gradient[i];
        }
        for (std::size_t i = 0; i < size_ * size_; ++i) {
            sums_.negativeHessian[i] += other.sums_.negativeHessian[i];
        }
    }

    IRLS::Evaluation finish() && {
        for (std::size_t i = 0; i < size_; ++i) {
            for (std::size_t j = i + 1; j < size_; ++j) {
                row(j)[i] = row(i)[j];
            }
        }
        return std::move(sums_);
    }

private:
    double* row(std::size_t i) { return &sums_.negativeHessian[i * size_]; }

    void addThreshold(std::size_t threshold,
                      double alone,
                      double withPredictor,
                      double withIntercept,
                      const double* x) {
        row(threshold)[threshold] += alone;
        for (std::size_t j = 0; j < width_; ++j) {
            row(threshold)[thresholds_ + j] -= withPredictor * x[j];
        }
        row(threshold)[size_ - 1] -= withIntercept;
    }

    std::size_t thresholds_;
    std::size_t width_;
    std::size_t size_;
    IRLS::Evaluation sums_;
};

/// Adds an answer's score at one point to those of its cluster.
void addScore(
    const Answers& answers, std::size_t i, const OrdinalTerms& terms, double u, double* scores) {
    const std::size_t thresholds = answers.data.thresholdCount();
    const std::size_t level = answers.level(i);
    const double* x = answers.row(i);
    if (level < thresholds) {
        scores[level] += terms.upperScore();
    }
    if (level > 0) {
        scores[level - 1] += terms.lowerScore();
    }
    const double score = terms.score();
    for (std::size_t j = 0; j < answers.data.width; ++j) {
        scores[thresholds + j] += score * x[j];
    }
    scores[thresholds + answers.data.width] += score * u;
}

/// Turns log masses into shares of their sum, and gives its logarithm.
double normalize(Points& values) {
    const double largest = *std::ranges::max_element(values);
    double sum = 0.0;
    for (std::size_t k = 0; k < pointCount; ++k) {
        values[k] = weights[k] * std::exp(values[k] - largest);
        sum += values[k];
    }
    for (double& value : values) {
        value /= sum;
    }
    return largest + std::log(sum);
}

void integrate(const Answers& answers, double mode, double curvature, Sums& sums) {
    constexpr double halfLogTwoPi = 0.9189385332046727;
    const std::size_t size = answers.data.parameterCount();
    const double spread = std::numbers::sqrt2 / std::sqrt(curvature);
    Points at;
    Points shares;
    std::vector<OrdinalTerms> terms(answers.size * pointCount);
    Numbers scores(pointCount * size, 0.0);
    for (std::size_t k = 0; k < pointCount; ++k) {
        at[k] = mode + spread * nodes[k];
        shares[k] = nodes[k] * nodes[k] - 0.5 * at[k] * at[k];
        for (std::size_t i = 0; i < answers.size; ++i) {
            OrdinalTerms& term = terms[i * pointCount + k];
            term = answers.terms(i, answers.sigma() * at[k]);
            // Far out the probability may underflow; the score there has no weight.
            term.probability = std::max(term.probability, std::numeric_limits<double>::min());
            shares[k] += std::log(term.probability);
            addScore(answers, i, term, at[k], &scores[k * size]);
        }
    }
    sums.addValue(normalize(shares) + std::log(spread) - halfLogTwoPi);
    sums.addScores(scores, shares);
    for (std::size_t i = 0; i < answers.size; ++i) {
        RowMeans means;
        for (std::size_t k = 0; k < pointCount; ++k) {
            means.add(shares[k], terms[i * pointCount + k], at[k]);
        }
        sums.addRow(answers.level(i), means, answers.row(i));
    }
}

bool areOrdered(std::span<const double> thresholds) {
    return std::ranges::adjacent_find(thresholds, std::ranges::greater_equal{}) == thresholds.end();
}

}  // namespace

OrdinalQuadrature::OrdinalQuadrature(const OrdinalClusters& data) : data_(data) {
    std::size_t first = 0;
    for (const std::size_t size : data.sizes) {
        clusters_.push_back({.first = first, .size = size});
        first += size;
    }
}

IRLS::Evaluation OrdinalQuadrature::at(std::span<const double> parameters) {
    constexpr std::size_t clustersPerTask = 32;
    constexpr std::size_t fewestRowsForThreads = 2000;
    Sums total(data_);
    if (!areOrdered(parameters.first(data_.thresholdCount()))) {
        total.addImpossible();
        return std::move(total).finish();
    }
    const std::size_t tasks = (clusters_.size() + clustersPerTask - 1) / clustersPerTask;
    std::vector<Sums> sums(tasks, Sums(data_));
    const unsigned threads = data_.levels.size() < fewestRowsForThreads ? 1 : hardwareThreads();
    parallelFor(tasks, threads, [&](std::size_t task) {
        const std::size_t end = std::min((task + 1) * clustersPerTask, clusters_.size());
        for (std::size_t c = task * clustersPerTask; c < end; ++c) {
            Cluster& cluster = clusters_[c];
            const Answers answers(data_, parameters, cluster.first, cluster.size);
            if (!std::isfinite(cluster.mode)) {
                cluster.mode = 0.0;
            }
            findMode(answers, cluster.mode, cluster.curvature);
            integrate(answers, cluster.mode, cluster.curvature, sums[task]);
        }
    });
    for (const Sums& each : sums) {
        total.add(each);
    }
    return std::move(total).finish();
}

std::vector<OrdinalQuadrature::Mode> OrdinalQuadrature::modes(double sigma) const {
    std::vector<Mode> result;
    for (const Cluster& cluster : clusters_) {
        result.push_back({.intercept = sigma * cluster.mode,
                          .error = std::abs(sigma) / std::sqrt(cluster.curvature)});
    }
    return result;
}

}  // namespace sorvane
