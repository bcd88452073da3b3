#include "SorvaneCore/Analyses/LatentVariables/OmegaReliabilityAnalyzer.h"

#include <algorithm>
#include <cmath>

#include "SorvaneCore/Analyses/Basics/CronbachAlpha.h"
#include "SorvaneCore/Analyses/LatentVariables/LatentVariableSupport.h"
#include "SorvaneCore/Analyses/LatentVariables/PrincipalAxis.h"

namespace sorvane::OmegaReliabilityAnalyzer {

namespace {

using LatentVariableSupport::Prepared;

constexpr double loadingTolerance = 1e-9;
constexpr double sameCoefficient = 0.0001;

std::string comparisonNote(double omega, double alpha) {
    if (std::abs(omega - alpha) < sameCoefficient) {
        return "Omega and alpha agree here, consistent with near-equal loadings.";
    }
    if (omega > alpha) {
        return "Omega exceeds alpha, consistent with unequal loadings where alpha underestimates "
               "reliability.";
    }
    return "Alpha exceeds omega here; inspect dimensionality and item loadings.";
}

std::vector<std::string> reportingNotes(double omega, const std::optional<double>& alpha) {
    std::vector<std::string> notes = {
        "Omega is internal-consistency evidence, not validity.",
        "This estimate assumes a single common factor (one-factor congeneric model).",
        "Omega does not assume equal item loadings; Cronbach alpha does (tau-equivalence)."};
    if (alpha) {
        notes.push_back(comparisonNote(omega, *alpha));
    }
    return notes;
}

std::optional<std::vector<double>> singleFactorLoadings(const Prepared& prepared) {
    const auto solution =
        PrincipalAxis::extract(prepared.correlation, prepared.itemCount, 1, loadingTolerance);
    if (!solution) {
        return std::nullopt;
    }
    std::vector<double> loadings;
    for (const std::vector<double>& row : solution->loadings) {
        loadings.push_back(row.front());
    }
    const auto positive = std::ranges::count_if(loadings, [](double each) { return each > 0.0; });
    if (static_cast<std::ptrdiff_t>(loadings.size()) > 2 * positive) {
        for (double& loading : loadings) {
            loading = -loading;
        }
    }
    return loadings;
}

std::optional<double> omegaOf(const std::vector<double>& loadings) {
    double sum = 0.0;
    double uniqueVariance = 0.0;
    for (const double loading : loadings) {
        sum += loading;
        uniqueVariance += 1.0 - loading * loading;
    }
    const double denominator = sum * sum + uniqueVariance;
    return denominator > 0.0 ? std::optional(sum * sum / denominator) : std::nullopt;
}

}  // namespace

std::optional<OmegaReliabilityResult> analyze(std::span<const NumericColumn> items) {
    const std::optional<Prepared> prepared = LatentVariableSupport::prepare(items);
    if (!prepared) {
        return std::nullopt;
    }
    std::optional<std::vector<double>> loadings = singleFactorLoadings(*prepared);
    const std::optional<double> omega = loadings ? omegaOf(*loadings) : std::nullopt;
    if (!omega) {
        return std::nullopt;
    }
    const std::optional<double> alpha = CronbachAlpha::of(items);
    return OmegaReliabilityResult{
        .itemCount = static_cast<std::int64_t>(prepared->itemCount),
        .casesUsed = static_cast<std::int64_t>(prepared->casesUsed),
        .omegaTotal = *omega,
        .loadings = *std::move(loadings),
        .cronbachAlpha = alpha,
        .reportingNotes = reportingNotes(*omega, alpha),
        .readiness = LatentVariableSupport::readiness("McDonald's omega", items, *prepared)};
}

}  // namespace sorvane::OmegaReliabilityAnalyzer
