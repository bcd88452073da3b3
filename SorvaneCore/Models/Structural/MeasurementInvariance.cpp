#include "SorvaneCore/Models/Structural/MeasurementInvariance.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <utility>

#include "SorvaneCore/Analyses/Basics/CategoryCodes.h"
#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Analyses/Basics/GroupedProducts.h"
#include "SorvaneCore/Analyses/Basics/SampleMoments.h"
#include "SorvaneCore/Models/Structural/GroupedFactorModel.h"
#include "SorvaneCore/Models/Structural/InvarianceWording.h"
#include "SorvaneCore/Models/Structural/SEMFitMeasures.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"
#include "SorvaneCore/Numerics/MathDistributions.h"

namespace sorvane::MeasurementInvariance {

namespace {

namespace wording = InvarianceWording;
using Numbers = std::vector<double>;
constexpr std::array levels = {InvarianceLevel::configural, InvarianceLevel::metric,
                               InvarianceLevel::scalar};

/// The groups, their items in standard deviations from the mean over all.
struct Sample {
    std::vector<GroupMomentsOfItems> groups{};
    Numbers centres{};
    Numbers deviations{};
    std::int64_t n = 0;

    std::size_t items() const { return centres.size(); }
};

GroupMomentsOfItems momentsOf(const std::vector<GroupedVariable>& items,
                              const RowPartition& partition,
                              std::size_t g,
                              const Sample& sample) {
    const std::size_t p = items.size();
    GroupMomentsOfItems result{.n = static_cast<double>(partition.groupSize(g)),
                               .covariance = Numbers(p * p)};
    for (std::size_t i = 0; i < p; ++i) {
        result.means.push_back((items[i].groupMeans[g] - sample.centres[i]) / sample.deviations[i]);
        for (std::size_t j = 0; j <= i; ++j) {
            const double products = SampleMoments::sumOfProducts(
                partition.group(std::span(items[i].values), g), items[i].groupMeans[g],
                partition.group(std::span(items[j].values), g), items[j].groupMeans[g]);
            const double value =
                products / (result.n * sample.deviations[i] * sample.deviations[j]);
            result.covariance[i * p + j] = value;
            result.covariance[j * p + i] = value;
        }
    }
    return result;
}

/// The moments of the groups, or the position of the group that has none of use.
std::optional<std::size_t> addGroups(Sample& sample,
                                     const std::vector<GroupedVariable>& items,
                                     const RowPartition& partition) {
    for (const GroupedVariable& item : items) {
        const double squares = SampleMoments::sumOfSquares(item.values, item.grandMean);
        const double deviation = std::sqrt(squares / static_cast<double>(item.values.size()));
        sample.centres.push_back(item.grandMean);
        sample.deviations.push_back(deviation > 0.0 ? deviation : 1.0);
    }
    for (std::size_t g = 0; g < partition.groupCount(); ++g) {
        GroupMomentsOfItems moments = momentsOf(items, partition, g, sample);
        const auto logDeterminant =
            LinearAlgebra::logAbsDeterminant(moments.covariance, items.size());
        if (!logDeterminant || !LinearAlgebra::invert(moments.covariance, items.size())) {
            return g;
        }
        moments.logDeterminant = *logDeterminant;
        sample.groups.push_back(std::move(moments));
    }
    return std::nullopt;
}

/// A model with where its search ended.
struct Fitted {
    GroupedFactorModel model;
    OptimizerResult end{};
};

Fitted fittedAt(const Sample& sample, InvarianceLevel level) {
    Fitted fitted{.model = GroupedFactorModel(sample.groups, sample.items(), level)};
    fitted.end = IRLS::dampedNewton(
        fitted.model.start(), {.maxIterations = 500, .tolerance = 1e-9},
        [&](std::span<const double> point) { return fitted.model.at(point); },
        [](std::span<const double> /*step*/) { return false; });
    return fitted;
}

/// In units of the data, with the loading of the first item at 1.
InvarianceGroupEstimates estimatesOf(const Sample& sample,
                                     const Numbers& coefficients,
                                     std::string name) {
    const auto all = GroupedFactorModel::view(coefficients, sample.items());
    const double marker = all.loadings[0] * sample.deviations[0];
    InvarianceGroupEstimates result{.name = std::move(name),
                                    .factorVariance = all.factorVariance * marker * marker,
                                    .factorMean = all.factorMean * marker};
    for (std::size_t j = 0; j < sample.items(); ++j) {
        const double unit = sample.deviations[j];
        result.loadings.push_back(all.loadings[j] * unit / marker);
        result.intercepts.push_back(sample.centres[j] + all.intercepts[j] * unit);
        result.residualVariances.push_back(all.residuals[j] * unit * unit);
    }
    return result;
}

/// Chi-square of independent items with free means and variances in each group.
double baselineChiSquare(const Sample& sample) {
    double sum = 0.0;
    for (const GroupMomentsOfItems& group : sample.groups) {
        sum -= group.n * group.logDeterminant;
        for (std::size_t j = 0; j < sample.items(); ++j) {
            sum += group.n * std::log(group.covariance[j * sample.items() + j]);
        }
    }
    return sum;
}

void addIndices(InvarianceFit& fit, const Sample& sample) {
    const auto n = static_cast<double>(sample.n);
    const auto p = static_cast<double>(sample.items());
    const auto groups = static_cast<double>(sample.groups.size());
    const auto df = static_cast<double>(fit.degreesOfFreedom);
    const double baseline = baselineChiSquare(sample);
    const double baselineDF = groups * p * (p - 1.0) / 2.0;
    const double excess = std::max(fit.chiSquare - df, 0.0);
    const double baselineExcess = std::max({baseline - baselineDF, excess, 0.0});
    fit.cfi = baselineExcess > 0.0 ? 1.0 - excess / baselineExcess : 1.0;
    fit.tli = df > 0.0
                  ? (baseline / baselineDF - fit.chiSquare / df) / (baseline / baselineDF - 1.0)
                  : 1.0;
    fit.rmsea = df > 0.0 ? std::sqrt(groups * excess / (df * n)) : 0.0;
    if (df > 0.0) {
        fit.pValue = MathDistributions::chiSquareRightTailPValue(fit.chiSquare, df);
        if (const auto interval = SEMFitMeasures::rmseaConfidenceInterval(
                fit.chiSquare, fit.degreesOfFreedom, sample.n)) {
            fit.rmseaLower = std::sqrt(groups) * interval->lower;
            fit.rmseaUpper = std::sqrt(groups) * interval->upper;
        }
    }
}

/// Of the model that fits every moment.
double saturatedLogLikelihood(const Sample& sample) {
    const auto p = static_cast<double>(sample.items());
    double sum = 0.0;
    for (const GroupMomentsOfItems& group : sample.groups) {
        sum -= 0.5 * group.n * (p * std::log(2.0 * std::numbers::pi) + group.logDeterminant + p);
    }
    for (const double deviation : sample.deviations) {
        sum -= static_cast<double>(sample.n) * std::log(deviation);
    }
    return sum;
}

InvarianceFit fitOf(const Fitted& fitted,
                    const Sample& sample,
                    InvarianceLevel level,
                    const std::vector<std::string>& names) {
    InvarianceFit fit{.level = level,
                      .converged = fitted.end.converged,
                      .iterations = fitted.end.iterations,
                      .degreesOfFreedom = fitted.model.degreesOfFreedom(),
                      .parameterCount = static_cast<std::int64_t>(fitted.model.freeCount())};
    if (!fit.converged) {
        return fit;
    }
    const Numbers& point = fitted.end.parameters;
    const double half = fitted.model.at(point).objective;
    const auto count = static_cast<double>(fit.parameterCount);
    fit.chiSquare = std::max(-2.0 * half, 0.0);
    addIndices(fit, sample);
    fit.srmr = fitted.model.srmr(point);
    fit.logLikelihood = saturatedLogLikelihood(sample) + half;
    fit.aic = 2.0 * (count - fit.logLikelihood);
    fit.bic = count * std::log(static_cast<double>(sample.n)) - 2.0 * fit.logLikelihood;
    for (std::size_t g = 0; g < names.size(); ++g) {
        fit.groups.push_back(estimatesOf(sample, fitted.model.coefficientsOf(point, g), names[g]));
    }
    return fit;
}

InvarianceComparison compared(const InvarianceFit& stricter, const InvarianceFit& looser) {
    InvarianceComparison result{
        .level = stricter.level,
        .against = looser.level,
        .chiSquareDifference = std::max(stricter.chiSquare - looser.chiSquare, 0.0),
        .dfDifference = stricter.degreesOfFreedom - looser.degreesOfFreedom,
        .deltaCFI = stricter.cfi - looser.cfi,
        .deltaRMSEA = stricter.rmsea - looser.rmsea};
    result.pValue = MathDistributions::chiSquareRightTailPValue(
        result.chiSquareDifference, static_cast<double>(result.dfDifference));
    result.isWithinCutoffs = result.deltaCFI >= -cfiCutoff && result.deltaRMSEA <= rmseaCutoff;
    return result;
}

void addHints(InvarianceResult& result,
              const Fitted& fitted,
              const Sample& sample,
              InvarianceLevel level) {
    std::vector<InvarianceHint> hints;
    const std::size_t offset = level == InvarianceLevel::metric ? 0 : sample.items();
    // Of two groups, freeing the one frees the other.
    const std::size_t first = sample.groups.size() == 2 ? 1 : 0;
    for (std::size_t j = 0; j < sample.items(); ++j) {
        for (std::size_t g = first; g < sample.groups.size(); ++g) {
            const auto release = fitted.model.release(
                fitted.end.parameters, fitted.end.inverseNegativeHessian, g, offset + j);
            hints.push_back({.level = level,
                             .itemName = result.itemNames[j],
                             .groupName = result.groups[g],
                             .modificationIndex = release.modificationIndex,
                             .pValue = MathDistributions::chiSquareRightTailPValue(
                                 release.modificationIndex, 1.0),
                             .expectedChange = release.expectedChange * sample.deviations[j]});
        }
    }
    std::ranges::stable_sort(hints, std::ranges::greater{}, &InvarianceHint::modificationIndex);
    result.hints.insert(result.hints.end(), hints.begin(), hints.end());
}

void addLatentMeans(InvarianceResult& result, const Fitted& fitted, const Sample& sample) {
    const std::size_t meanAt = 3 * sample.items() + 1;
    const std::size_t count = fitted.model.freeCount();
    const auto sign = std::copysign(1.0, fitted.end.parameters[0]);
    for (std::size_t g = 1; g < sample.groups.size(); ++g) {
        const auto place = static_cast<std::size_t>(fitted.model.placeOf(g, meanAt));
        const double difference = sign * fitted.end.parameters[place];
        const double error = std::sqrt(fitted.end.inverseNegativeHessian[place * count + place]);
        const double z = difference / error;
        result.latentMeans.push_back({.groupName = result.groups[g],
                                      .difference = difference,
                                      .standardError = error,
                                      .z = z,
                                      .pValue = std::erfc(std::abs(z) / std::numbers::sqrt2)});
    }
}

void addFits(InvarianceResult& result, const Sample& sample) {
    for (const InvarianceLevel level : levels) {
        const Fitted fitted = fittedAt(sample, level);
        result.fits.push_back(fitOf(fitted, sample, level, result.groups));
        if (!fitted.end.converged || level == InvarianceLevel::configural) {
            continue;
        }
        addHints(result, fitted, sample, level);
        const InvarianceFit& looser = result.fits[result.fits.size() - 2];
        if (looser.converged) {
            result.comparisons.push_back(compared(result.fits.back(), looser));
        }
        if (level == InvarianceLevel::scalar) {
            addLatentMeans(result, fitted, sample);
        }
    }
}

bool hasNegativeVariance(const InvarianceFit& fit) {
    return std::ranges::any_of(fit.groups, [](const InvarianceGroupEstimates& group) {
        return group.factorVariance < 0.0 ||
               std::ranges::any_of(group.residualVariances, [](double v) { return v < 0.0; });
    });
}

std::size_t distinctValues(Numbers values) {
    std::ranges::sort(values);
    return static_cast<std::size_t>(std::unique(values.begin(), values.end()) - values.begin());
}

std::vector<AnalysisReadinessIssue> cautions(const InvarianceResult& result,
                                             const std::vector<GroupedVariable>& items) {
    constexpr std::int64_t enoughCases = 100;
    constexpr std::size_t enoughCategories = 5;
    constexpr double poorCFI = 0.90;
    constexpr double poorRMSEA = 0.10;
    std::vector<AnalysisReadinessIssue> issues;
    const auto cautionIf = [&issues](bool holds, const std::string& message) {
        if (holds) {
            issues.push_back(AnalysisReadinessIssue::caution(message));
        }
    };
    const InvarianceFit& first = result.fits.front();
    cautionIf(first.cfi < poorCFI || first.rmsea > poorRMSEA,
              wording::poorConfiguralFit(first.cfi, first.rmsea));
    for (const InvarianceFit& fit : result.fits) {
        cautionIf(!fit.converged, wording::notConverged(fit.level));
        cautionIf(hasNegativeVariance(fit), wording::negativeVariance(fit.level));
    }
    for (std::size_t g = 0; g < result.groups.size(); ++g) {
        cautionIf(result.groupSizes[g] < enoughCases,
                  wording::smallGroup(result.groups[g], result.groupSizes[g]));
    }
    for (std::size_t j = 0; j < items.size(); ++j) {
        cautionIf(distinctValues(items[j].values) < enoughCategories,
                  wording::fewCategories(result.itemNames[j]));
    }
    return issues;
}

/// Fills in the models, or tells what stands in the way.
std::optional<std::string> fitted(InvarianceResult& result,
                                  const std::vector<GroupedVariable>& items,
                                  const RowPartition& partition) {
    constexpr std::size_t fewestItems = 3;
    const auto groups = static_cast<std::int64_t>(result.groups.size());
    const auto itemCount = static_cast<std::int64_t>(items.size());
    if (groups < 2) {
        return wording::tooFewGroups(groups);
    }
    if (items.size() < fewestItems) {
        return wording::tooFewItems();
    }
    for (std::size_t g = 0; g < result.groups.size(); ++g) {
        if (result.groupSizes[g] <= itemCount) {
            return wording::tooFewCases(result.groups[g], result.groupSizes[g], itemCount);
        }
    }
    Sample sample{.n = result.n};
    if (const auto without = addGroups(sample, items, partition)) {
        return wording::singular(result.groups[*without]);
    }
    addFits(result, sample);
    if (!result.fits.front().converged) {
        result.fits.clear();
        result.comparisons.clear();
        result.hints.clear();
        result.latentMeans.clear();
        return wording::configuralFailed();
    }
    return std::nullopt;
}

}  // namespace

std::optional<InvarianceResult> test(std::span<const NumericColumn> items,
                                     const TextColumn& groups,
                                     const InvarianceOptions& options) {
    std::vector<const NumericColumn*> numbers;
    for (const NumericColumn& column : items) {
        if (column.size() != groups.size()) {
            return std::nullopt;
        }
        numbers.push_back(&column);
    }
    if (numbers.empty() || numbers.size() != options.itemNames.size()) {
        return std::nullopt;
    }
    const std::array texts = {&groups};
    const std::vector<std::uint32_t> rows = CompleteCases::rows(numbers, texts);
    const CategoryCodes codes = CategoryCodes::of(groups, rows);
    const RowPartition partition(codes.codes, codes.labels.size());
    const std::vector<GroupedVariable> variables = GroupedVariable::of(items, rows, partition);
    InvarianceResult result{.itemNames = options.itemNames,
                            .groupFactorName = options.groupFactorName,
                            .groups = codes.labels,
                            .groupSizes = codes.counts(),
                            .n = static_cast<std::int64_t>(rows.size())};
    std::vector<AnalysisReadinessIssue> issues;
    if (const auto obstacle = fitted(result, variables, partition)) {
        issues.push_back(AnalysisReadinessIssue::blocked(*obstacle));
    } else {
        issues = cautions(result, variables);
    }
    const auto total = static_cast<std::int64_t>(groups.size());
    if (total > result.n) {
        issues.push_back(AnalysisReadinessIssue::caution(wording::rowsDropped(total - result.n)));
    }
    result.readiness =
        AnalysisReadiness::of(std::string(wording::minimumRequired), total, result.n,
                              std::move(issues), static_cast<std::int64_t>(result.groups.size()));
    return result;
}

}  // namespace sorvane::MeasurementInvariance
