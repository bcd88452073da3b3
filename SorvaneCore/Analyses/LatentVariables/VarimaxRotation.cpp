#include "SorvaneCore/Analyses/LatentVariables/VarimaxRotation.h"

#include <cmath>
#include <cstddef>

namespace sorvane {

namespace {

using Rows = std::vector<std::vector<double>>;

/// Rows of no length are left as they are, since they have no direction.
constexpr double shortestRow = 1e-12;

std::vector<double> lengths(const Rows& rows) {
    std::vector<double> result;
    for (const std::vector<double>& row : rows) {
        double squares = 0.0;
        for (const double entry : row) {
            squares += entry * entry;
        }
        result.push_back(std::sqrt(squares));
    }
    return result;
}

double angleBetween(const Rows& rows, std::size_t a, std::size_t b) {
    double sumU = 0.0;
    double sumV = 0.0;
    double difference = 0.0;
    double product = 0.0;
    for (const std::vector<double>& row : rows) {
        const double u = row[a] * row[a] - row[b] * row[b];
        const double v = 2.0 * row[a] * row[b];
        sumU += u;
        sumV += v;
        difference += u * u - v * v;
        product += 2.0 * u * v;
    }
    const auto count = static_cast<double>(rows.size());
    return 0.25 * std::atan2(product - 2.0 * sumU * sumV / count,
                             difference - (sumU * sumU - sumV * sumV) / count);
}

void turn(Rows& rows, std::size_t a, std::size_t b, double angle) {
    const double cosine = std::cos(angle);
    const double sine = std::sin(angle);
    for (std::vector<double>& row : rows) {
        const double x = row[a];
        const double y = row[b];
        row[a] = cosine * x + sine * y;
        row[b] = cosine * y - sine * x;
    }
}

/// One pass over all pairs of factors; whether it turned any.
bool sweep(Rows& rows, double tolerance) {
    bool turned = false;
    const std::size_t factors = rows.front().size();
    for (std::size_t a = 0; a < factors; ++a) {
        for (std::size_t b = a + 1; b < factors; ++b) {
            const double angle = angleBetween(rows, a, b);
            if (std::abs(angle) > tolerance) {
                turn(rows, a, b, angle);
                turned = true;
            }
        }
    }
    return turned;
}

void makeLargestPositive(Rows& rows, std::size_t factor) {
    double largest = 0.0;
    for (const std::vector<double>& row : rows) {
        if (std::abs(row[factor]) > std::abs(largest)) {
            largest = row[factor];
        }
    }
    for (std::vector<double>& row : rows) {
        row[factor] = largest < 0.0 ? -row[factor] : row[factor];
    }
}

}  // namespace

Rows varimaxRotation(Rows loadings, const VarimaxOptions& options) {
    if (loadings.empty() || loadings.front().size() < 2) {
        return loadings;
    }
    const std::vector<double> kept = lengths(loadings);
    for (std::size_t i = 0; i < kept.size(); ++i) {
        for (double& entry : loadings[i]) {
            entry = kept[i] > shortestRow ? entry / kept[i] : entry;
        }
    }
    for (std::int64_t pass = 0; pass < options.maxIterations; ++pass) {
        if (!sweep(loadings, options.tolerance)) {
            break;
        }
    }
    for (std::size_t i = 0; i < kept.size(); ++i) {
        for (double& entry : loadings[i]) {
            entry = kept[i] > shortestRow ? entry * kept[i] : entry;
        }
    }
    for (std::size_t factor = 0; factor < loadings.front().size(); ++factor) {
        makeLargestPositive(loadings, factor);
    }
    return loadings;
}

}  // namespace sorvane
