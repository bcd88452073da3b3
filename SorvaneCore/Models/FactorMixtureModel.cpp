#include "SorvaneCore/Models/FactorMixtureModel.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

#include "SorvaneCore/Models/FactorMixtureWording.h"
#include "SorvaneCore/Models/LatentClass/FactorMixture.h"
#include "SorvaneCore/Models/LatentClass/MixtureCases.h"

namespace sorvane::FactorMixtureModel {

namespace {

namespace wording = FactorMixtureWording;
using Run = ExpectationMaximization::Run<FactorMixture::Parameters>;
using Columns = std::vector<std::vector<double>>;

constexpr std::size_t fewestIndicators = 3;
constexpr std::int64_t casesPerClass = 10;

bool isSound(std::span<const NumericColumn> indicators, const FactorMixtureOptions& options) {
    return !indicators.empty() && options.variableNames.size() == indicators.size() &&
           options.classCount >= fewestClasses && options.classCount <= mostClasses &&
           std::ranges::all_of(indicators, [&](const NumericColumn& column) {
               return column.size() == indicators.front().size();
           });
}

std::int64_t parameterCount(std::int64_t classes, std::size_t indicators) {
    return classes - 1 + (classes + 2) * static_cast<std::int64_t>(indicators);
}

bool isConstant(const std::vector<double>& column) {
    return std::ranges::all_of(column, [&](double value) { return value == column.front(); });
}

/// Why no fit is tried.
std::optional<std::string> obstacle(const Columns& columns, const FactorMixtureResult& result) {
    if (columns.size() < fewestIndicators) {
        return wording::tooFewIndicators();
    }
    const std::int64_t needed =
        std::max(casesPerClass * result.classCount, result.parameterCount + 1);
    if (result.n < needed) {
        return wording::tooFewCases(needed, result.classCount);
    }
    const auto constant = std::ranges::find_if(columns, isConstant);
    if (constant != columns.end()) {
        return wording::constantIndicator(
            result.variableNames[static_cast<std::size_t>(constant - columns.begin())]);
    }
    return std::nullopt;
}

/// The best start, gone on with until it stands still.
std::optional<Run> bestRun(const FactorMixture& mixture, const FactorMixtureOptions& options) {
    constexpr double tolerance = 1e-11;
    constexpr std::int64_t longer = 10;
    auto best =
        ExpectationMaximization::best(mixture, mixture.starts(options.randomStarts, options.seed),
                                      options.maxIterations, options.progress);
    if (!best) {
        return std::nullopt;
    }
    const std::int64_t before = best->iterations;
    Run end = ExpectationMaximization::fromStart(mixture, std::move(best->parameters),
                                                 longer * options.maxIterations, tolerance);
    end.iterations += before;
    return std::isfinite(end.logLikelihood) ? std::optional(std::move(end)) : std::nullopt;
}

std::vector<std::size_t> classOrder(const FactorMixture& mixture, const Run& run) {
    std::vector<std::size_t> order(run.expected.proportions.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::stable_sort(order, {},
                             [&](std::size_t c) { return mixture.mean(run.expected, c, 0); });
    return order;
}

void addClasses(FactorMixtureResult& result,
                const FactorMixture& mixture,
                const Run& run,
                const Columns& posteriors) {
    const std::vector<std::size_t> order = classOrder(mixture, run);
    for (const std::vector<double>& found : posteriors) {
        std::vector<double> row;
        for (const std::size_t c : order) {
            row.push_back(found[c]);
        }
        result.assignments.push_back(std::ranges::max_element(row) - row.begin());
        result.assignmentPosterior.push_back(std::move(row));
    }
    for (std::size_t k = 0; k < order.size(); ++k) {
        FactorMixtureClass& each = result.classes.emplace_back();
        each.proportion = run.expected.proportions[order[k]];
        for (std::size_t j = 0; j < mixture.indicators(); ++j) {
            each.intercepts.push_back(mixture.mean(run.expected, order[k], j));
        }
        double sum = 0.0;
        for (std::size_t i = 0; i < result.assignments.size(); ++i) {
            if (result.assignments[i] == static_cast<std::int64_t>(k)) {
                ++each.assigned;
                sum += result.assignmentPosterior[i][k];
            }
        }
        each.meanPosterior = sum / static_cast<double>(each.assigned);
    }
    if (result.classCount > 1) {
        result.entropy =
            MixtureCases::relativeEntropy(result.assignmentPosterior, result.classCount);
    }
}

void addFactor(FactorMixtureResult& result, const FactorMixture& mixture, const Run& run) {
    double sum = 0.0;
    for (std::size_t j = 0; j < mixture.indicators(); ++j) {
        const double loading = mixture.loading(run.expected, j);
        const double residual = mixture.residual(run.expected, j);
        sum += loading;
        result.loadings.push_back(loading);
        result.residualVariances.push_back(residual);
        result.standardizedLoadings.push_back(loading / std::sqrt(loading * loading + residual));
    }
    if (sum < 0.0) {
        for (auto* list : {&result.loadings, &result.standardizedLoadings, &result.factorScores}) {
            for (double& value : *list) {
                value = -value;
            }
        }
    }
}

void addRun(FactorMixtureResult& result, const FactorMixture& mixture, const Run& run) {
    const Columns posteriors = mixture.posteriors(run.expected);
    result.factorScores = mixture.scores(run.expected, posteriors);
    addClasses(result, mixture, run, posteriors);
    addFactor(result, mixture, run);
    const auto count = static_cast<double>(result.parameterCount);
    result.logLikelihood = run.logLikelihood + mixture.logLikelihoodShift();
    result.aic = -2.0 * result.logLikelihood + 2.0 * count;
    result.bic = -2.0 * result.logLikelihood + count * std::log(static_cast<double>(result.n));
    result.converged = run.converged;
    result.iterations = run.iterations;
}

/// BIC of the same factor without classes.
double bicOfOneClass(const Columns& columns, const FactorMixtureOptions& options) {
    FactorMixtureOptions one = options;
    one.randomStarts = 1;
    one.progress = {};
    const FactorMixture mixture(columns, 1);
    const std::optional<Run> run = bestRun(mixture, one);
    return run ? -2.0 * (run->logLikelihood + mixture.logLikelihoodShift()) +
                     static_cast<double>(parameterCount(1, columns.size())) *
                         std::log(static_cast<double>(mixture.rows()))
               : std::numeric_limits<double>::infinity();
}

std::vector<AnalysisReadinessIssue> cautions(const FactorMixtureResult& result,
                                             const FactorMixture& mixture,
                                             const Run& run,
                                             double oneClassBic) {
    constexpr double smallProportion = 0.05;
    constexpr double poorEntropy = 0.6;
    std::vector<AnalysisReadinessIssue> issues;
    const auto cautionIf = [&issues](bool holds, const std::string& message) {
        if (holds) {
            issues.push_back(AnalysisReadinessIssue::caution(message));
        }
    };
    cautionIf(!result.converged, wording::noConvergenceSignal());
    cautionIf(std::ranges::any_of(
                  result.classes,
                  [](const FactorMixtureClass& each) { return each.proportion < smallProportion; }),
              wording::smallClass());
    for (std::size_t j = 0; j < mixture.indicators(); ++j) {
        cautionIf(run.expected.residuals[j] <= 1.01 * FactorMixture::smallestResidual(),
                  wording::residualAtBound(result.variableNames[j]));
    }
    cautionIf(result.entropy < poorEntropy, wording::poorlySeparated(result.entropy));
    cautionIf(result.classCount > 1 && oneClassBic <= result.bic, wording::oneClassServesBetter());
    return issues;
}

}  // namespace

std::optional<FactorMixtureResult> fit(std::span<const NumericColumn> indicators,
                                       const FactorMixtureOptions& options) {
    if (!isSound(indicators, options)) {
        return std::nullopt;
    }
    const auto totalRows = static_cast<std::int64_t>(indicators.front().size());
    const Columns columns = MixtureCases::finiteRows(indicators);
    FactorMixtureResult result{
        .classCount = options.classCount,
        .variableNames = options.variableNames,
        .parameterCount = parameterCount(options.classCount, indicators.size()),
        .n = static_cast<std::int64_t>(columns.front().size())};
    const auto conclude = [&](std::vector<AnalysisReadinessIssue> issues) {
        result.readiness = AnalysisReadiness::of(std::string(wording::minimumRequired), totalRows,
                                                 result.n, std::move(issues));
        return result;
    };
    if (std::optional<std::string> why = obstacle(columns, result)) {
        return conclude({AnalysisReadinessIssue::blocked(std::move(*why))});
    }
    const FactorMixture mixture(columns, static_cast<std::size_t>(options.classCount));
    const std::optional<Run> run = bestRun(mixture, options);
    if (!run) {
        return conclude({AnalysisReadinessIssue::blocked(wording::unusable())});
    }
    addRun(result, mixture, *run);
    return conclude(cautions(result, mixture, *run, bicOfOneClass(columns, options)));
}

std::vector<LatentSweepRow> sweep(std::span<const NumericColumn> indicators,
                                  const FactorMixtureOptions& options,
                                  std::int64_t fewest,
                                  std::int64_t most) {
    return latentSweep(fewest, most, options.progress,
                       [&](std::int64_t k, std::function<void(double)> progress) {
                           FactorMixtureOptions each = options;
                           each.classCount = k;
                           each.progress = std::move(progress);
                           return fit(indicators, each);
                       });
}

}  // namespace sorvane::FactorMixtureModel
