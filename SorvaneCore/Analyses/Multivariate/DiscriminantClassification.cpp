#include "SorvaneCore/Analyses/Multivariate/DiscriminantClassification.h"

#include <cmath>
#include <limits>

namespace sorvane::DiscriminantClassifications {

namespace {

using Numbers = std::vector<double>;

double product(std::span<const double> x, std::span<const double> a, std::span<const double> b) {
    double sum = 0.0;
    for (std::size_t j = 0; j < x.size(); ++j) {
        sum += (x[j] - a[j]) * (x[j] - b[j]);
    }
    return sum;
}

std::size_t nearest(const Numbers& squaredDistances, std::span<const double> priors) {
    std::size_t best = 0;
    double highest = -std::numeric_limits<double>::infinity();
    for (std::size_t g = 0; g < priors.size(); ++g) {
        const double score = std::log(priors[g]) - 0.5 * squaredDistances[g];
        if (score > highest) {
            highest = score;
            best = g;
        }
    }
    return best;
}

/// The squared distances of a case to all group means under the rule of the others.
Numbers distancesLeftOut(const WhitenedCases& all,
                         std::size_t i,
                         std::size_t own,
                         const RowPartition& partition) {
    const std::size_t groups = partition.groupCount();
    const auto n = static_cast<double>(all.cases.size() / all.width);
    const auto size = static_cast<double>(partition.groupSize(own));
    const double pooledDF = n - static_cast<double>(groups);
    const std::span<const double> x = all.caseAt(i);
    const double toOwn = product(x, all.meanOf(own), all.meanOf(own));
    const double shrink = (pooledDF - 1.0) / pooledDF;
    const double share = size / ((size - 1.0) * pooledDF);
    const double left = 1.0 - share * toOwn;
    Numbers distances(groups);
    for (std::size_t g = 0; g < groups; ++g) {
        const double toGroup = product(x, all.meanOf(g), all.meanOf(g));
        if (size == 1.0) {
            // Its group is gone, and it added nothing to the covariance.
            distances[g] = g == own ? std::numeric_limits<double>::infinity() : toGroup;
        } else if (g == own) {
            const double grown = size / (size - 1.0);
            distances[g] = toOwn * shrink * grown * grown / left;
        } else {
            const double across = product(x, all.meanOf(g), all.meanOf(own));
            distances[g] = shrink * (toGroup + across * across * share / left);
        }
    }
    return distances;
}

Numbers distances(const WhitenedCases& all, std::size_t i, std::size_t groups) {
    Numbers result(groups);
    for (std::size_t g = 0; g < groups; ++g) {
        result[g] = product(all.caseAt(i), all.meanOf(g), all.meanOf(g));
    }
    return result;
}

template <typename Place>
DiscriminantClassification placed(const RowPartition& partition, std::size_t n, Place place) {
    const std::size_t groups = partition.groupCount();
    DiscriminantClassification result{
        .counts = std::vector(groups, std::vector<std::int64_t>(groups, 0))};
    std::size_t i = 0;
    std::int64_t right = 0;
    for (std::size_t g = 0; g < groups; ++g) {
        for (std::size_t member = 0; member < partition.groupSize(g); ++member, ++i) {
            ++result.counts[g][place(i, g)];
        }
        right += result.counts[g][g];
        result.groupAccuracy.push_back(static_cast<double>(result.counts[g][g]) /
                                       static_cast<double>(partition.groupSize(g)));
    }
    result.accuracy = static_cast<double>(right) / static_cast<double>(n);
    return result;
}

}  // namespace

DiscriminantClassification resubstituted(const WhitenedCases& cases,
                                         const RowPartition& partition,
                                         std::span<const double> priors) {
    return placed(partition, cases.cases.size() / cases.width, [&](std::size_t i, std::size_t) {
        return nearest(distances(cases, i, priors.size()), priors);
    });
}

DiscriminantClassification leftOut(const WhitenedCases& cases,
                                   const RowPartition& partition,
                                   std::span<const double> priors) {
    return placed(partition, cases.cases.size() / cases.width, [&](std::size_t i, std::size_t own) {
        return nearest(distancesLeftOut(cases, i, own, partition), priors);
    });
}

}  // namespace sorvane::DiscriminantClassifications
