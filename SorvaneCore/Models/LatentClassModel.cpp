#include "SorvaneCore/Models/LatentClassModel.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

#include "SorvaneCore/Models/LatentClass/ClassMixture.h"
#include "SorvaneCore/Models/LatentClass/MixtureCases.h"
#include "SorvaneCore/Models/LatentClass/ProfileMixture.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::LatentClassModel {

namespace {

using NumberText::integer;

constexpr std::size_t fewestIndicators = 2;
constexpr std::int64_t casesPerProfile = 3;
constexpr std::int64_t casesPerClass = 5;
constexpr std::int64_t comfortableCasesPerProfile = 10;
constexpr double smallProportion = 0.05;

std::string_view minimumRequired(LatentMixtureMode mode) {
    return mode == LatentMixtureMode::profile ? "≥2 indicators; n ≥ 3×K complete cases"
                                              : "≥2 indicators with ≥2 categories; n ≥ 5×K";
}

std::string tooFewForProfiles(std::int64_t classes) {
    return "Need at least " + integer(casesPerProfile * classes) + " complete cases for a " +
           integer(classes) + "-class profile model.";
}

std::string tooFewForClasses(std::int64_t classes) {
    return "Need at least " + integer(casesPerClass * classes) + " complete cases for a " +
           integer(classes) + "-class LCA.";
}

std::string unusable(LatentMixtureMode mode) {
    return std::string("The latent ") + (mode == LatentMixtureMode::profile ? "profile" : "class") +
           " model did not converge to a usable solution.";
}

std::vector<AnalysisReadinessIssue> cautions(const LatentClassResult& result) {
    std::vector<AnalysisReadinessIssue> issues;
    if (!result.converged) {
        issues.push_back(
            AnalysisReadinessIssue::caution("EM stopped without a clean convergence signal."));
    }
    const auto isSmall = [](const LatentClassProfile& profile) {
        return profile.proportion < smallProportion;
    };
    if (std::ranges::any_of(result.profiles, isSmall)) {
        issues.push_back(AnalysisReadinessIssue::caution(
            "At least one class has a small mixing proportion (<5%)."));
    }
    if (result.mode == LatentMixtureMode::profile &&
        result.n < comfortableCasesPerProfile * result.classCount) {
        issues.push_back(AnalysisReadinessIssue::caution(
            "Sample size is small relative to the number of classes."));
    }
    return issues;
}

/// The result before anything is fitted.
struct Frame {
    LatentClassResult result{};
    std::int64_t totalRows = 0;

    void conclude(std::vector<AnalysisReadinessIssue> issues) {
        result.readiness = AnalysisReadiness::of(std::string(minimumRequired(result.mode)),
                                                 totalRows, result.n, std::move(issues));
    }
    LatentClassResult blocked(std::string message) {
        conclude({AnalysisReadinessIssue::blocked(std::move(message))});
        return std::move(result);
    }
};

/// Whether the call makes sense at all.
bool isSound(const LatentClassOptions& options, std::span<const std::size_t> lengths) {
    return lengths.size() >= fewestIndicators && options.variableNames.size() == lengths.size() &&
           options.classCount >= fewestClasses && options.classCount <= mostClasses &&
           std::ranges::all_of(lengths, [&lengths](std::size_t n) { return n == lengths[0]; });
}

Frame frame(LatentMixtureMode mode, const LatentClassOptions& options, std::size_t totalRows) {
    return {.result = {.mode = mode,
                       .classCount = options.classCount,
                       .variableNames = options.variableNames},
            .totalRows = static_cast<std::int64_t>(totalRows)};
}

/// The classes in the order in which they are told: `comesBefore` compares two of them.
template <typename Compare>
std::vector<std::size_t> classOrder(std::size_t classes, const Compare& comesBefore) {
    std::vector<std::size_t> order(classes);
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::stable_sort(order, comesBefore);
    return order;
}

/// Posteriors and assignments in the order of the classes.
void fillAssignments(LatentClassResult& result,
                     const std::vector<std::vector<double>>& posteriors,
                     const std::vector<std::size_t>& order) {
    for (const std::vector<double>& found : posteriors) {
        std::vector<double> row;
        for (const std::size_t c : order) {
            row.push_back(found[c]);
        }
        result.assignments.push_back(std::ranges::max_element(row) - row.begin());
        result.assignmentPosterior.push_back(std::move(row));
    }
    result.entropy = MixtureCases::relativeEntropy(result.assignmentPosterior, result.classCount);
}

/// How the run that stands ended, and the criteria that punish its parameters.
template <typename Run>
void fillRun(LatentClassResult& result, const Run& run, std::int64_t parameters) {
    const auto count = static_cast<double>(parameters);
    result.logLikelihood = run.logLikelihood;
    result.iterations = run.iterations;
    result.converged = run.converged;
    result.aic = -2.0 * run.logLikelihood + 2.0 * count;
    result.bic = -2.0 * run.logLikelihood + count * std::log(static_cast<double>(result.n));
}

void finalizeProfile(LatentClassResult& result,
                     const ProfileMixture& mixture,
                     const ExpectationMaximization::Run<ProfileMixture::Parameters>& run) {
    const ProfileMixture::Parameters& fit = run.parameters;
    const std::size_t indicators = result.variableNames.size();
    const auto slice = [indicators](const std::vector<double>& list, std::size_t c) {
        const auto begin = list.begin() + static_cast<std::ptrdiff_t>(c * indicators);
        return std::vector<double>(begin, begin + static_cast<std::ptrdiff_t>(indicators));
    };
    const std::vector<std::size_t> order =
        classOrder(fit.proportions.size(), [&](std::size_t a, std::size_t b) {
            return fit.means[a * indicators] < fit.means[b * indicators];
        });
    for (const std::size_t c : order) {
        result.profiles.push_back({.proportion = fit.proportions[c],
                                   .means = slice(fit.means, c),
                                   .standardDeviations = slice(fit.standardDeviations, c)});
    }
    fillAssignments(result, mixture.posteriors(run.expected), order);
    fillRun(result, run,
            result.classCount - 1 + 2 * result.classCount * static_cast<std::int64_t>(indicators));
}

void finalizeClass(LatentClassResult& result,
                   const ClassMixture& mixture,
                   const ExpectationMaximization::Run<ClassMixture::Parameters>& run) {
    const ClassMixture::Parameters& fit = run.parameters;
    const std::vector<std::size_t> order = classOrder(
        fit.proportions.size(),
        [&fit](std::size_t a, std::size_t b) { return fit.proportions[a] > fit.proportions[b]; });
    for (const std::size_t c : order) {
        result.profiles.push_back({.proportion = fit.proportions[c],
                                   .responseProbs = mixture.byIndicator(fit.responses[c])});
    }
    fillAssignments(result, mixture.posteriors(run.expected), order);
    fillRun(result, run, result.classCount - 1 + result.classCount * mixture.freeResponses());
}

}  // namespace

std::optional<LatentClassResult> fitProfile(std::span<const NumericColumn> indicators,
                                            const LatentClassOptions& options) {
    std::vector<std::size_t> lengths;
    for (const NumericColumn& indicator : indicators) {
        lengths.push_back(indicator.size());
    }
    if (!isSound(options, lengths)) {
        return std::nullopt;
    }
    Frame fit = frame(LatentMixtureMode::profile, options, lengths.front());
    std::vector<std::vector<double>> columns = MixtureCases::finiteRows(indicators);
    fit.result.n = static_cast<std::int64_t>(columns.front().size());
    if (fit.result.n < casesPerProfile * options.classCount) {
        return fit.blocked(tooFewForProfiles(options.classCount));
    }
    const ProfileMixture mixture(std::move(columns), static_cast<std::size_t>(options.classCount));
    const auto run =
        ExpectationMaximization::best(mixture, mixture.starts(options.randomStarts, options.seed),
                                      options.maxIterations, options.progress);
    if (!run) {
        return fit.blocked(unusable(fit.result.mode));
    }
    finalizeProfile(fit.result, mixture, *run);
    fit.conclude(cautions(fit.result));
    return std::move(fit.result);
}

std::optional<LatentClassResult> fitClass(std::span<const TextColumn* const> indicators,
                                          const LatentClassOptions& options) {
    std::vector<std::size_t> lengths;
    for (const TextColumn* indicator : indicators) {
        lengths.push_back(indicator->size());
    }
    if (!isSound(options, lengths)) {
        return std::nullopt;
    }
    Frame fit = frame(LatentMixtureMode::classAnalysis, options, lengths.front());
    const CategoryPatterns patterns = CategoryPatterns::of(indicators);
    fit.result.n = static_cast<std::int64_t>(patterns.rows());
    const auto isConstant = [](const std::vector<std::string>& labels) {
        return labels.size() < 2;
    };
    if (std::ranges::any_of(patterns.categories, isConstant)) {
        return fit.blocked("Each indicator needs at least two observed categories.");
    }
    if (fit.result.n < casesPerClass * options.classCount) {
        return fit.blocked(tooFewForClasses(options.classCount));
    }
    const ClassMixture mixture(patterns, static_cast<std::size_t>(options.classCount));
    const auto run =
        ExpectationMaximization::best(mixture, mixture.starts(options.randomStarts, options.seed),
                                      options.maxIterations, options.progress);
    if (!run) {
        return fit.blocked(unusable(fit.result.mode));
    }
    fit.result.categoryLabels = patterns.categories;
    finalizeClass(fit.result, mixture, *run);
    fit.conclude(cautions(fit.result));
    return std::move(fit.result);
}

}  // namespace sorvane::LatentClassModel
