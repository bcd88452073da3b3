#include "SorvaneCore/Models/Multilevel/LinkedInformation.h"

#include <utility>

namespace sorvane {

LinkedInformation::LinkedInformation(const LinkedDesign& design)
    : design_(design), sum_(design.fixedCount() * design.fixedCount(), 0.0) {}

void LinkedInformation::add(const Cluster& cluster) {
    const std::size_t p = design_.fixedCount();
    const std::size_t n = design_.rowCount();
    // What is left of each column when it is projected on the first loading, then on the rest of
    // the second.
    double first = 1.0;
    double mixed = 0.0;
    double second = 1.0;
    for (std::size_t i = 0; i < cluster.weights.size(); ++i) {
        const auto& [f, g] = cluster.loadings[i];
        first += cluster.weights[i] * f * f;
        mixed += cluster.weights[i] * f * g;
        second += cluster.weights[i] * g * g;
    }
    const double share = mixed / first;
    second -= mixed * share;
    for (std::size_t j = 0; j < p; ++j) {
        const double* column = &design_.columns()[j * n + cluster.first];
        double alongFirst = 0.0;
        double alongSecond = 0.0;
        for (std::size_t i = 0; i < cluster.weights.size(); ++i) {
            const auto& [f, g] = cluster.loadings[i];
            alongFirst += cluster.weights[i] * f * column[i];
            alongSecond += cluster.weights[i] * g * column[i];
        }
        alongSecond = (alongSecond - share * alongFirst) / second;
        alongFirst = alongFirst / first - share * alongSecond;
        for (std::size_t i = 0; i < cluster.weights.size(); ++i) {
            const auto& [f, g] = cluster.loadings[i];
            const double left = cluster.weights[i] * (column[i] - f * alongFirst - g * alongSecond);
            for (std::size_t k = 0; k <= j; ++k) {
                sum_[j * p + k] += left * design_.columns()[k * n + cluster.first + i];
            }
        }
    }
}

std::vector<double> LinkedInformation::take() {
    const std::size_t p = design_.fixedCount();
    for (std::size_t j = 0; j < p; ++j) {
        for (std::size_t k = 0; k < j; ++k) {
            sum_[k * p + j] = sum_[j * p + k];
        }
    }
    return std::move(sum_);
}

}  // namespace sorvane
