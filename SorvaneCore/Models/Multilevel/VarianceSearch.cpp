#include "SorvaneCore/Models/Multilevel/VarianceSearch.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "SorvaneCore/Models/Multilevel/SlopeFactor.h"
#include "SorvaneCore/Models/Multilevel/VarianceMinimizers.h"
#include "SorvaneCore/Numerics/ParallelFor.h"

namespace sorvane::VarianceSearch {

namespace {

/// Below this a relative variance is no start for its logarithm.
constexpr double smallestStart = 1e-8;

/// The best setting so far; of equal ones, up to what rounding leaves of a criterion, the earliest.
class Best {
public:
    explicit Best(const NestedProfile& profile) : profile_(profile) {}

    /// The criterion at a setting, which becomes the best if it is lower.
    double offer(const RandomCovariance& g) { return offer(g, evaluate(g)); }
    /// The same with the profile at hand.
    double offer(const RandomCovariance& g, std::optional<MultilevelProfile> candidate) {
        return takeBelow(-rounding(), g, std::move(candidate));
    }
    /// The same for the end of a search from the best, which is better however little lower.
    double refine(const RandomCovariance& g) { return takeBelow(0.0, g, evaluate(g)); }
    /// The same for a simpler setting, which is better unless it is higher.
    void simplify(const RandomCovariance& g) { takeBelow(rounding(), g, evaluate(g)); }
    /// Counts evaluations made elsewhere.
    void count(std::size_t evaluations) {
        found_.evaluations += static_cast<std::int64_t>(evaluations);
    }
    /// The criterion alone.
    double value(const RandomCovariance& g) { return valueOf(evaluate(g)); }

    bool isFound() const { return found_.profile.has_value(); }
    const RandomCovariance& g() const { return found_.g; }
    Found take() { return std::move(found_); }

private:
    /// What rounding may leave of the criterion, which where clusters have a case each is flat.
    double rounding() const {
        constexpr double share = 1e-12;
        return found_.profile ? share * std::max(1.0, std::abs(found_.profile->criterion)) : 0.0;
    }
    double takeBelow(double margin,
                     const RandomCovariance& g,
                     std::optional<MultilevelProfile> candidate) {
        const double value = valueOf(candidate);
        if (candidate && std::isfinite(value) &&
            (!found_.profile || value < found_.profile->criterion + margin)) {
            found_.g = g;
            found_.profile = std::move(candidate);
        }
        return value;
    }
    std::optional<MultilevelProfile> evaluate(const RandomCovariance& g) {
        ++found_.evaluations;
        return profile_(g);
    }
    static double valueOf(const std::optional<MultilevelProfile>& profile) {
        return profile ? profile->criterion : VarianceMinimizers::failedValue;
    }

    const NestedProfile& profile_;
    Found found_;
};

RandomCovariance interceptOnly(double lambda) {
    return {lambda, 0.0, 0.0, 0.0};
}

RandomCovariance diagonal(double first, double second) {
    return {first, 0.0, 0.0, second};
}

void offerGrid(Best& best, bool correlated) {
    constexpr std::array<double, 3> correlations = {-0.2, 0.0, 0.2};
    for (int a = -4; a <= 4; ++a) {
        for (int b = -4; b <= 4; ++b) {
            const double v0 = std::pow(10.0, a / 2.0);
            const double v1 = std::pow(10.0, b / 2.0);
            if (!correlated) {
                best.offer(diagonal(v0, v1));
                continue;
            }
            for (const double r : correlations) {
                best.offer(SlopeFactor::covariance(
                    std::array{std::sqrt(v0), std::sqrt(v1) * r, std::sqrt(v1)}));
            }
        }
    }
}

double logStart(double variance) {
    return std::log(std::max(variance, smallestStart));
}

void searchDiagonal(Best& best) {
    const std::array<double, 2> start = {logStart(best.g()[0]), logStart(best.g()[3])};
    const auto covariance = [](std::span<const double> t) {
        return diagonal(std::exp(t[0]), std::exp(t[1]));
    };
    const std::vector<double> end = VarianceMinimizers::simplex(
        start, [&](std::span<const double> t) { return best.value(covariance(t)); });
    best.refine(covariance(end));
}

void searchCorrelated(Best& best) {
    constexpr double smallestRoot = 1e-4;
    const RandomCovariance& g = best.g();
    const double a = std::max(std::sqrt(std::max(g[0], smallestStart)), smallestRoot);
    const double c = std::max(std::sqrt(std::max(g[3], smallestStart)), smallestRoot);
    const std::array<double, 3> start = {std::log(a), g[1] / std::max(a, smallestStart),
                                         std::log(c)};
    const auto covariance = [](std::span<const double> t) {
        return SlopeFactor::covariance(std::array{std::exp(t[0]), t[1], std::exp(t[2])});
    };
    const std::vector<double> end = VarianceMinimizers::simplex(
        start, [&](std::span<const double> t) { return best.value(covariance(t)); });
    best.refine(covariance(end));
}

using Candidates = std::vector<std::vector<double>>;

/// Relative standard deviations that searches start from.
constexpr std::array<double, 4> deviations = {0.03, 0.2, 1.0, 5.0};

Candidates grid(bool correlated) {
    constexpr std::array<double, 3> correlations = {-0.8, 0.0, 0.8};
    Candidates all;
    for (const double first : deviations) {
        for (const double second : deviations) {
            if (!correlated) {
                all.push_back({first, second});
                continue;
            }
            for (const double r : correlations) {
                all.push_back({first, r * second, second * std::sqrt(1.0 - r * r)});
            }
        }
    }
    return all;
}

/// Independent effects whose intercepts, at a zero far from all values, vary by as much as the
/// slopes do on the way there.
Candidates ridge(double distance) {
    Candidates all;
    for (const double slope : deviations) {
        all.push_back({distance * slope, slope});
    }
    return all;
}

const std::vector<double>& lowest(Best& best, const Candidates& candidates) {
    return *std::ranges::min_element(candidates, {}, [&](const std::vector<double>& entries) {
        return best.value(SlopeFactor::covariance(entries));
    });
}

/// A simplex that starts anew where it ended, as long as that helps.
void searchFactor(Best& best, std::vector<double> start) {
    constexpr int restarts = 5;
    constexpr double smallestGain = 1e-9;
    double former = best.value(SlopeFactor::covariance(start));
    for (int i = 0; i < restarts; ++i) {
        start = VarianceMinimizers::simplex(start, [&](std::span<const double> t) {
            return best.value(SlopeFactor::covariance(t));
        });
        const double reached = best.refine(SlopeFactor::covariance(start));
        if (!(former - reached > smallestGain)) {
            return;
        }
        former = reached;
    }
}

/// The best without one variance or the other, for searches that near a bound but cannot reach it.
void simplify(Best& best) {
    best.simplify(interceptOnly(best.g()[0]));
    best.simplify(diagonal(0.0, best.g()[3]));
}

/// The same with what of the slope does not go with the intercept.
void simplifyCorrelation(Best& best) {
    std::vector<double> factor = SlopeFactor::entries(best.g(), true);
    factor.back() = 0.0;
    best.simplify(SlopeFactor::covariance(factor));
}

}  // namespace

Found intercept(const NestedProfile& profile, std::optional<double> start) {
    constexpr int lowestPower = -8;
    constexpr int highestPower = 6;
    constexpr double halfWidth = 4.0;
    Best best(profile);
    best.offer(interceptOnly(0.0));
    for (int power = lowestPower; power <= highestPower; ++power) {
        best.offer(interceptOnly(std::pow(10.0, power)));
    }
    if (start) {
        best.offer(interceptOnly(*start));
    }
    if (best.isFound() && best.g()[0] > 0.0) {
        const double middle = std::log(best.g()[0]);
        const double x = VarianceMinimizers::brent(
            middle - halfWidth, middle + halfWidth,
            [&best](double logLambda) { return best.value(interceptOnly(std::exp(logLambda))); });
        best.refine(interceptOnly(std::exp(x)));
    }
    return best.take();
}

Found interceptAndSlope(const NestedProfile& profile, bool correlated, const SlopeScale& scale) {
    const NestedProfile unscaled = [&](const RandomCovariance& g) {
        return profile(scale.scaled(g));
    };
    Best first(unscaled);
    first.offer({});
    offerGrid(first, correlated);
    if (!first.isFound()) {
        return first.take();
    }
    correlated ? searchCorrelated(first) : searchDiagonal(first);
    const Found start = first.take();
    Best best(profile);
    best.count(static_cast<std::size_t>(start.evaluations));
    best.offer(scale.scaled(start.g), start.profile);
    searchFactor(best, SlopeFactor::entries(best.g(), correlated));
    searchFactor(best, lowest(best, grid(correlated)));
    if (!correlated && scale.distance() > 1.0) {
        searchFactor(best, lowest(best, ridge(scale.distance())));
    }
    simplify(best);
    if (correlated) {
        simplifyCorrelation(best);
    }
    return best.take();
}

Found crossed(const CrossedProfile& profile) {
    constexpr int lowestHalf = -6;
    constexpr int highestHalf = 4;
    std::vector<RandomCovariance> grid;
    for (int a = lowestHalf; a <= highestHalf; ++a) {
        for (int b = lowestHalf; b <= highestHalf; ++b) {
            grid.push_back(diagonal(std::pow(10.0, a / 2.0), std::pow(10.0, b / 2.0)));
        }
    }
    std::vector<std::optional<MultilevelProfile>> profiles(grid.size());
    parallelFor(grid.size(), hardwareThreads(),
                [&](std::size_t i) { profiles[i] = profile(grid[i][0], grid[i][3], 1); });
    const NestedProfile byDiagonal = [&profile](const RandomCovariance& g) {
        return profile(g[0], g[3], hardwareThreads());
    };
    Best best(byDiagonal);
    best.count(grid.size());
    for (std::size_t i = 0; i < grid.size(); ++i) {
        best.offer(grid[i], std::move(profiles[i]));
    }
    if (best.isFound()) {
        searchDiagonal(best);
        simplify(best);
    }
    return best.take();
}

std::optional<double> momentLambda(std::span<const double> outcome, const ClusterCodes& clusters) {
    const auto n = static_cast<double>(outcome.size());
    const auto k = static_cast<double>(clusters.count());
    const std::vector<std::size_t> sizes = clusters.sizes();
    std::vector<double> means(clusters.count(), 0.0);
    double grandMean = 0.0;
    for (std::size_t i = 0; i < outcome.size(); ++i) {
        means[clusters.codes[i]] += outcome[i];
        grandMean += outcome[i] / n;
    }
    double squaredSizes = 0.0;
    double between = 0.0;
    for (std::size_t c = 0; c < means.size(); ++c) {
        const auto size = static_cast<double>(sizes[c]);
        means[c] /= size;
        squaredSizes += size * size;
        between += size * (means[c] - grandMean) * (means[c] - grandMean);
    }
    double within = 0.0;
    for (std::size_t i = 0; i < outcome.size(); ++i) {
        const double deviation = outcome[i] - means[clusters.codes[i]];
        within += deviation * deviation;
    }
    const double effectiveSize = (n - squaredSizes / n) / (k - 1.0);
    const double meanWithin = within / (n - k);
    if (k < 2.0 || n - k < 1.0 || !(effectiveSize > 0.0) || !(meanWithin > 0.0)) {
        return std::nullopt;
    }
    return std::max((between / (k - 1.0) - meanWithin) / effectiveSize, 0.0) / meanWithin;
}

}  // namespace sorvane::VarianceSearch
