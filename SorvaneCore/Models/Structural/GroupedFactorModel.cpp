#include "SorvaneCore/Models/Structural/GroupedFactorModel.h"

#include <cmath>
#include <limits>

#include "SorvaneCore/Numerics/LinearAlgebra.h"

namespace sorvane {

namespace {

using Numbers = std::vector<double>;

constexpr std::int64_t fixed = -1;

double inner(std::span<const double> a, std::span<const double> b) {
    double sum = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        sum += a[i] * b[i];
    }
    return sum;
}

Numbers impliedCovariance(const GroupedFactorModel::Coefficients& all) {
    const std::size_t p = all.loadings.size();
    Numbers sigma(p * p);
    for (std::size_t i = 0; i < p; ++i) {
        for (std::size_t j = 0; j < p; ++j) {
            sigma[i * p + j] = all.factorVariance * all.loadings[i] * all.loadings[j];
        }
        sigma[i * p + i] += all.residuals[i];
    }
    return sigma;
}

Numbers meanResiduals(const GroupedFactorModel::Coefficients& all, const Numbers& means) {
    Numbers left(means.size());
    for (std::size_t j = 0; j < left.size(); ++j) {
        left[j] = means[j] - all.intercepts[j] - all.loadings[j] * all.factorMean;
    }
    return left;
}

/// What one coefficient does: to Sigma share (u v' + v u'), and to the means.
struct Direction {
    double share = 0.0;
    Numbers u{};
    Numbers v{};
    Numbers mean{};
};

std::vector<Direction> directions(const GroupedFactorModel::Coefficients& all) {
    const std::size_t p = all.loadings.size();
    const Numbers none(p, 0.0);
    const Numbers loadings(all.loadings.begin(), all.loadings.end());
    const auto unit = [&none](std::size_t j, double value) {
        Numbers result = none;
        result[j] = value;
        return result;
    };
    std::vector<Direction> result;
    for (std::size_t j = 0; j < p; ++j) {
        result.push_back({all.factorVariance, unit(j, 1.0), loadings, unit(j, all.factorMean)});
    }
    for (std::size_t j = 0; j < p; ++j) {
        result.push_back({0.0, none, none, unit(j, 1.0)});
    }
    for (std::size_t j = 0; j < p; ++j) {
        result.push_back({0.5, unit(j, 1.0), unit(j, 1.0), none});
    }
    result.push_back({0.5, loadings, loadings, none});
    result.push_back({0.0, none, none, loadings});
    return result;
}

/// The slope of F by Sigma: W - W (S + d d') W.
Numbers slopeBySigma(const Numbers& inverse, const Numbers& spread, std::size_t p) {
    Numbers slope = LinearAlgebra::multiply(LinearAlgebra::multiply(inverse, p, p, spread, p), p, p,
                                            inverse, p);
    for (std::size_t i = 0; i < p * p; ++i) {
        slope[i] = inverse[i] - slope[i];
    }
    return slope;
}

Numbers expectedInformation(const std::vector<Direction>& each, const Numbers& inverse, double n) {
    const std::size_t p = each.front().mean.size();
    const std::size_t count = each.size();
    const auto turned = [&](const Numbers& v) {
        return LinearAlgebra::multiply(inverse, p, p, v, 1);
    };
    Numbers information(count * count, 0.0);
    for (std::size_t a = 0; a < count; ++a) {
        const Numbers u = turned(each[a].u);
        const Numbers v = turned(each[a].v);
        const Numbers mean = turned(each[a].mean);
        for (std::size_t b = 0; b <= a; ++b) {
            const double covariances = each[a].share * each[b].share *
                                       (inner(u, each[b].u) * inner(v, each[b].v) +
                                        inner(u, each[b].v) * inner(v, each[b].u));
            const double value = n * (covariances + inner(mean, each[b].mean));
            information[a * count + b] = value;
            information[b * count + a] = value;
        }
    }
    return information;
}

}  // namespace

GroupedFactorModel::GroupedFactorModel(std::span<const GroupMomentsOfItems> groups,
                                       std::size_t items,
                                       InvarianceLevel level)
    : groups_(groups), items_(items), places_(groups.size() * (3 * items + 2), fixed) {
    const bool equalLoadings = level != InvarianceLevel::configural;
    const bool equalIntercepts = level == InvarianceLevel::scalar;
    const auto assign = [this](std::size_t group, std::size_t coefficient, bool isShared) {
        std::int64_t& place = places_[group * perGroup() + coefficient];
        place =
            isShared && group > 0 ? places_[coefficient] : static_cast<std::int64_t>(freeCount_++);
    };
    for (std::size_t g = 0; g < groups.size(); ++g) {
        for (std::size_t j = 0; j < items; ++j) {
            assign(g, j, equalLoadings);
            assign(g, items + j, equalIntercepts);
            assign(g, 2 * items + j, false);
        }
        if (g > 0 && equalLoadings) {
            assign(g, 3 * items, false);
        }
        if (g > 0 && equalIntercepts) {
            assign(g, 3 * items + 1, false);
        }
    }
}

std::int64_t GroupedFactorModel::degreesOfFreedom() const {
    const std::size_t moments = items_ + items_ * (items_ + 1) / 2;
    return static_cast<std::int64_t>(groups_.size() * moments) -
           static_cast<std::int64_t>(freeCount_);
}

std::vector<double> GroupedFactorModel::start() const {
    Numbers point(freeCount_, 0.0);
    Numbers uses(freeCount_, 0.0);
    for (std::size_t g = 0; g < groups_.size(); ++g) {
        const GroupMomentsOfItems& group = groups_[g];
        for (std::size_t k = 0; k < perGroup(); ++k) {
            const std::size_t j = k % items_;
            // An item that is keyed against the first one begins with a loading below 0.
            const double half = 0.5 * group.covariance[j * items_ + j];
            const double value = k < items_ ? std::copysign(std::sqrt(half), group.covariance[j])
                                 : k < 2 * items_  ? group.means[j]
                                 : k < 3 * items_  ? half
                                 : k == 3 * items_ ? 1.0
                                                   : 0.0;
            if (const std::int64_t place = placeOf(g, k); place != fixed) {
                point[static_cast<std::size_t>(place)] += value;
                uses[static_cast<std::size_t>(place)] += 1.0;
            }
        }
    }
    for (std::size_t i = 0; i < freeCount_; ++i) {
        point[i] /= uses[i];
    }
    return point;
}

GroupedFactorModel::Coefficients GroupedFactorModel::view(std::span<const double> all,
                                                          std::size_t items) {
    return {.loadings = all.first(items),
            .intercepts = all.subspan(items, items),
            .residuals = all.subspan(2 * items, items),
            .factorVariance = all[3 * items],
            .factorMean = all[3 * items + 1]};
}

std::vector<double> GroupedFactorModel::coefficientsOf(std::span<const double> point,
                                                       std::size_t group) const {
    Numbers all(perGroup());
    for (std::size_t k = 0; k < perGroup(); ++k) {
        const std::int64_t place = placeOf(group, k);
        all[k] =
            place != fixed ? point[static_cast<std::size_t>(place)] : (k == 3 * items_ ? 1.0 : 0.0);
    }
    return all;
}

GroupedFactorModel::Part GroupedFactorModel::partOf(std::size_t group,
                                                    std::span<const double> coefficients) const {
    const std::size_t p = items_;
    const GroupMomentsOfItems& sample = groups_[group];
    const Coefficients all = view(coefficients, p);
    const Numbers sigma = impliedCovariance(all);
    const auto logDeterminant = LinearAlgebra::logAbsDeterminant(sigma, p);
    const auto inverse = logDeterminant ? LinearAlgebra::invert(sigma, p) : std::nullopt;
    Part part;
    if (!inverse) {
        return part;
    }
    const Numbers left = meanResiduals(all, sample.means);
    const Numbers weighted = LinearAlgebra::multiply(*inverse, p, p, left, 1);
    Numbers spread = sample.covariance;
    for (std::size_t i = 0; i < p * p; ++i) {
        spread[i] += left[i / p] * left[i % p];
    }
    const Numbers slope = slopeBySigma(*inverse, spread, p);
    const std::vector<Direction> each = directions(all);
    for (const Direction& d : each) {
        const Numbers along = LinearAlgebra::multiply(slope, p, p, d.u, 1);
        part.score.push_back(sample.n * (inner(weighted, d.mean) - d.share * inner(along, d.v)));
    }
    part.information = expectedInformation(each, *inverse, sample.n);
    part.discrepancy =
        inner(spread, *inverse) + *logDeterminant - sample.logDeterminant - static_cast<double>(p);
    part.isUsable = std::isfinite(part.discrepancy);
    return part;
}

IRLS::Evaluation GroupedFactorModel::at(std::span<const double> point) const {
    IRLS::Evaluation sum{.objective = 0.0,
                         .gradient = Numbers(freeCount_, 0.0),
                         .negativeHessian = Numbers(freeCount_ * freeCount_, 0.0)};
    for (std::size_t g = 0; g < groups_.size(); ++g) {
        const Part part = partOf(g, coefficientsOf(point, g));
        if (!part.isUsable) {
            sum.objective = -std::numeric_limits<double>::infinity();
            return sum;
        }
        sum.objective -= 0.5 * groups_[g].n * part.discrepancy;
        for (std::size_t a = 0; a < perGroup(); ++a) {
            const std::int64_t row = placeOf(g, a);
            if (row == fixed) {
                continue;
            }
            sum.gradient[static_cast<std::size_t>(row)] += part.score[a];
            for (std::size_t b = 0; b < perGroup(); ++b) {
                if (const std::int64_t column = placeOf(g, b); column != fixed) {
                    sum.negativeHessian[static_cast<std::size_t>(row) * freeCount_ +
                                        static_cast<std::size_t>(column)] +=
                        part.information[a * perGroup() + b];
                }
            }
        }
    }
    return sum;
}

GroupedFactorModel::Release GroupedFactorModel::release(std::span<const double> point,
                                                        std::span<const double> inverse,
                                                        std::size_t group,
                                                        std::size_t coefficient) const {
    const Part part = partOf(group, coefficientsOf(point, group));
    // With the free coefficients: only those of the group share information with its own.
    Numbers shared(freeCount_, 0.0);
    for (std::size_t b = 0; b < perGroup(); ++b) {
        if (const std::int64_t place = placeOf(group, b); place != fixed) {
            shared[static_cast<std::size_t>(place)] +=
                part.information[coefficient * perGroup() + b];
        }
    }
    const Numbers turned = LinearAlgebra::multiply(inverse, freeCount_, freeCount_, shared, 1);
    const double own =
        part.information[coefficient * perGroup() + coefficient] - inner(turned, shared);
    const double score = part.score[coefficient];
    return {.modificationIndex = score * score / own, .expectedChange = score / own};
}

double GroupedFactorModel::srmr(std::span<const double> point) const {
    double total = 0.0;
    double cases = 0.0;
    for (std::size_t g = 0; g < groups_.size(); ++g) {
        const GroupMomentsOfItems& sample = groups_[g];
        const Numbers coefficients = coefficientsOf(point, g);
        const Coefficients all = view(coefficients, items_);
        const Numbers sigma = impliedCovariance(all);
        const Numbers left = meanResiduals(all, sample.means);
        double squares = 0.0;
        for (std::size_t i = 0; i < items_; ++i) {
            const double variance = sample.covariance[i * items_ + i];
            squares += left[i] * left[i] / variance;
            for (std::size_t j = 0; j <= i; ++j) {
                const double difference = sample.covariance[i * items_ + j] - sigma[i * items_ + j];
                squares += difference * difference / (variance * sample.covariance[j * items_ + j]);
            }
        }
        const auto moments = static_cast<double>(items_ + items_ * (items_ + 1) / 2);
        total += sample.n * std::sqrt(squares / moments);
        cases += sample.n;
    }
    return total / cases;
}

}  // namespace sorvane
