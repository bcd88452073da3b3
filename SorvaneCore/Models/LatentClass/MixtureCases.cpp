#include "SorvaneCore/Models/LatentClass/MixtureCases.h"

#include <algorithm>
#include <cmath>

#include "SorvaneCore/Analyses/Basics/CompleteCases.h"

namespace sorvane::MixtureCases {

std::vector<std::vector<double>> finiteRows(std::span<const NumericColumn> indicators) {
    std::vector<const NumericColumn*> columns;
    for (const NumericColumn& indicator : indicators) {
        columns.push_back(&indicator);
    }
    std::vector<std::uint32_t> rows = CompleteCases::rows(columns);
    std::erase_if(rows, [&indicators](std::uint32_t row) {
        return std::ranges::any_of(indicators, [row](const NumericColumn& indicator) {
            return !std::isfinite(*indicator[row]);
        });
    });
    std::vector<std::vector<double>> result;
    for (const NumericColumn& indicator : indicators) {
        result.push_back(CompleteCases::gathered(indicator, rows));
    }
    return result;
}

std::vector<std::size_t> drawRows(SplitMix64& random, std::size_t classes, std::size_t rows) {
    constexpr int mostRedraws = 20;
    std::vector<std::size_t> chosen;
    while (chosen.size() < classes) {
        std::size_t row = random.next() % rows;
        for (int redraw = 0; redraw < mostRedraws && std::ranges::count(chosen, row) > 0;
             ++redraw) {
            row = random.next() % rows;
        }
        chosen.push_back(row);
    }
    return chosen;
}

double relativeEntropy(const std::vector<std::vector<double>>& posteriors, std::int64_t classes) {
    constexpr double smallestPosterior = 1e-15;
    double sum = 0.0;
    for (const std::vector<double>& row : posteriors) {
        for (const double posterior : row) {
            const double held = std::max(posterior, smallestPosterior);
            sum += held * std::log(held);
        }
    }
    const double scale =
        static_cast<double>(posteriors.size()) * std::log(static_cast<double>(classes));
    return std::clamp(1.0 + sum / scale, 0.0, 1.0);
}

}  // namespace sorvane::MixtureCases
