#include "SorvaneCore/Survey/SurveyCorrelation.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "SorvaneCore/Numerics/MathDistributions.h"
#include "SorvaneCore/Numerics/ParallelFor.h"
#include "SorvaneCore/Survey/SurveyReadiness.h"
#include "SorvaneCore/Survey/SurveyVariance.h"
#include "SorvaneCore/Survey/SurveyWording.h"

namespace sorvane::SurveyCorrelation {

namespace {

namespace wording = SurveyWording;
using Numbers = std::vector<double>;
using Issues = std::vector<AnalysisReadinessIssue>;
using SurveyVariance::DesignCovariance;

/// The rows that hold both numbers, as differences from the first: values that hardly differ would
/// drown in the rounding of their mean.
struct Pairs {
    std::vector<std::size_t> rows{};
    Numbers x{};
    Numbers y{};
};

Pairs pairsOf(const NumericColumn& x, const NumericColumn& y, const SurveyDesign& design) {
    Pairs pairs;
    for (std::size_t row = 0; row < x.size(); ++row) {
        const std::optional<double> a = x[row];
        const std::optional<double> b = y[row];
        if (a && b && std::isfinite(*a) && std::isfinite(*b) && design.weights[row] > 0.0) {
            pairs.rows.push_back(row);
            pairs.x.push_back(*a);
            pairs.y.push_back(*b);
        }
    }
    for (std::size_t i = pairs.rows.size(); i-- > 0;) {
        pairs.x[i] -= pairs.x.front();
        pairs.y[i] -= pairs.y.front();
    }
    return pairs;
}

/// Whether any of the values differ that have weight.
bool vary(const Pairs& pairs, const Numbers& values, std::span<const double> weights) {
    const double* first = nullptr;
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (weights[pairs.rows[i]] == 0.0) {
            continue;
        }
        first = first ? first : &values[i];
        if (values[i] != *first) {
            return true;
        }
    }
    return false;
}

bool bothVary(const Pairs& pairs, std::span<const double> weights) {
    return vary(pairs, pairs.x, weights) && vary(pairs, pairs.y, weights);
}

/// Moments with the sum of the weights in the denominator.
struct Moments {
    double sum = 0.0;
    double meanX = 0.0;
    double meanY = 0.0;
    double xx = 0.0;
    double yy = 0.0;
    double xy = 0.0;

    static Moments of(const Pairs& pairs, std::span<const double> weights) {
        Moments m;
        for (std::size_t i = 0; i < pairs.rows.size(); ++i) {
            const double w = weights[pairs.rows[i]];
            m.sum += w;
            m.meanX += w * pairs.x[i];
            m.meanY += w * pairs.y[i];
        }
        m.meanX /= m.sum;
        m.meanY /= m.sum;
        for (std::size_t i = 0; i < pairs.rows.size(); ++i) {
            const double w = weights[pairs.rows[i]] / m.sum;
            const double dx = pairs.x[i] - m.meanX;
            const double dy = pairs.y[i] - m.meanY;
            m.xx += w * dx * dx;
            m.yy += w * dy * dy;
            m.xy += w * dx * dy;
        }
        return m;
    }

    double r() const { return std::clamp(xy / (std::sqrt(xx) * std::sqrt(yy)), -1.0, 1.0); }
    bool areNumbers() const { return std::isfinite(xx) && std::isfinite(yy) && std::isfinite(r()); }
};

double linearizedVariance(const Pairs& pairs, const Moments& m, const SampledDesign& sampled) {
    const SurveyDesign& design = sampled.design;
    Numbers scores(design.weights.size(), 0.0);
    for (std::size_t i = 0; i < pairs.rows.size(); ++i) {
        const double zx = (pairs.x[i] - m.meanX) / std::sqrt(m.xx);
        const double zy = (pairs.y[i] - m.meanY) / std::sqrt(m.yy);
        scores[pairs.rows[i]] =
            design.weights[pairs.rows[i]] / m.sum * (zx * zy - 0.5 * m.r() * (zx * zx + zy * zy));
    }
    return SurveyVariance::scoreCovariance(scores, sampled, 1, pairs.rows).front();
}

/// Absent where no replicate has an estimate.
std::optional<DesignCovariance> varianceOf(const Pairs& pairs,
                                           const Moments& m,
                                           const SampledDesign& sampled) {
    if (!sampled.design.replicateWeights) {
        return DesignCovariance{.values = {linearizedVariance(pairs, m, sampled)}};
    }
    const auto& replicates = *sampled.design.replicateWeights;
    std::vector<std::optional<Numbers>> estimates(replicates.weights.size());
    parallelFor(estimates.size(), hardwareThreads(), [&](std::size_t r) {
        const Moments each = Moments::of(pairs, replicates.weights[r]);
        if (!(each.sum <= 0.0) && bothVary(pairs, replicates.weights[r])) {
            estimates[r] = Numbers{each.r()};
        }
    });
    const double full = m.r();
    return SurveyVariance::replicateCovariance(estimates, replicates, std::span(&full, 1));
}

void addInference(SurveyCorrelationResult& result, double variance) {
    // Values on a line leave some rounding about 0, against an r of about 1.
    const auto df = static_cast<double>(result.designDegreesOfFreedom);
    result.standardError = variance > SurveyVariance::roundingOfSums ? std::sqrt(variance) : 0.0;
    if (result.standardError == 0.0) {
        return;
    }
    result.t = result.r / result.standardError;
    result.pValue = MathDistributions::studentTPValue(result.t, df);
    const double reach = MathDistributions::studentTCritical(1.0 - result.confidenceLevel, df) *
                         result.standardError / (1.0 - result.r * result.r);
    result.confidenceIntervalLower = std::tanh(std::atanh(result.r) - reach);
    result.confidenceIntervalUpper = std::tanh(std::atanh(result.r) + reach);
}

AnalysisReadiness readiness(const SurveyCorrelationResult& result, Issues issues) {
    return AnalysisReadiness::of(std::string(wording::pairMinimumRequired), result.totalN,
                                 result.validN, std::move(issues));
}

void block(SurveyCorrelationResult& result, std::string message) {
    result.readiness = readiness(result, {AnalysisReadinessIssue::blocked(std::move(message))});
}

Issues cautions(const SurveyCorrelationResult& result,
                const SampledCounts& counts,
                std::int64_t replicatesWithoutEstimates) {
    Issues issues = SurveyReadiness::cautions(counts, replicatesWithoutEstimates);
    if (result.standardError == 0.0) {
        issues.push_back(AnalysisReadinessIssue::caution(wording::zeroErrors()));
    }
    if (result.totalN > result.validN) {
        issues.push_back(
            AnalysisReadinessIssue::caution(wording::rowsDropped(result.totalN - result.validN)));
    }
    return issues;
}

void fill(SurveyCorrelationResult& result, const Pairs& pairs, const SampledDesign& sampled) {
    constexpr std::int64_t fewestRows = 3;
    const SurveyDesign& design = sampled.design;
    result.validN = std::ssize(pairs.rows);
    result.effectiveSampleSize = design.effectiveSampleSize(pairs.rows);
    if (result.validN < fewestRows) {
        block(result, wording::tooFewPairs(result.validN));
        return;
    }
    if (!bothVary(pairs, design.weights)) {
        block(result, wording::noVariance());
        return;
    }
    const Moments m = Moments::of(pairs, design.weights);
    result.sumOfWeights = m.sum;
    const std::optional<DesignCovariance> found = varianceOf(pairs, m, sampled);
    if (!found) {
        block(result, wording::noUsableReplicate());
        return;
    }
    if (!m.areNumbers() || !std::isfinite(found->values.front())) {
        block(result, wording::beyondNumbers());
        return;
    }
    const auto n = static_cast<double>(result.validN);
    result.r = m.r();
    result.covariance = m.xy * n / (n - 1.0);
    result.xVariance = m.xx * n / (n - 1.0);
    result.yVariance = m.yy * n / (n - 1.0);
    const SampledCounts counts = sampled.countsAmong(pairs.rows);
    result.stratumCount = counts.strata;
    result.psuCount = counts.units;
    result.designDegreesOfFreedom = counts.degreesOfFreedom;
    addInference(result, found->values.front());
    result.readiness =
        readiness(result, cautions(result, counts, found->replicatesWithoutEstimates));
}

/// A pair before anything is computed of it.
SurveyCorrelationResult start(const std::string& xName,
                              const std::string& yName,
                              const SurveyDesign& design) {
    return {.xName = xName,
            .yName = yName,
            .confidenceLevel = design.confidenceLevel,
            .varianceMethod = WeightedEstimators::varianceMethod(design),
            .totalN = design.observationCount()};
}

/// Input      columns of one entry per row of the design
void correlate(SurveyCorrelationResult& result,
               const NumericColumn& x,
               const NumericColumn& y,
               const SampledDesign& sampled) {
    const std::array lengths = {x.size(), y.size()};
    if (Issues issues = SurveyReadiness::obstacles(sampled.design, lengths); !issues.empty()) {
        result.readiness = readiness(result, std::move(issues));
        return;
    }
    fill(result, pairsOf(x, y, sampled.design), sampled);
}

}  // namespace

SurveyCorrelationResult pearson(const NumericColumn& x,
                                const NumericColumn& y,
                                const SurveyDesign& design,
                                const std::string& xName,
                                const std::string& yName) {
    SurveyCorrelationResult result = start(xName, yName, design);
    correlate(result, x, y, SampledDesign::of(design));
    return result;
}

std::optional<std::vector<SurveyCorrelationResult>> matrix(
    std::span<const NumericColumn> variables,
    const SurveyDesign& design,
    std::span<const std::string> names,
    const std::function<void(double)>& progress) {
    if (names.size() != variables.size()) {
        return std::nullopt;
    }
    const SampledDesign sampled = SampledDesign::of(design);
    const auto pairs = static_cast<double>(names.size() * (names.size() - 1)) / 2.0;
    std::vector<SurveyCorrelationResult> result;
    for (std::size_t i = 0; i < variables.size(); ++i) {
        for (std::size_t j = i + 1; j < variables.size(); ++j) {
            result.push_back(start(names[i], names[j], design));
            correlate(result.back(), variables[i], variables[j], sampled);
            if (progress) {
                progress(static_cast<double>(result.size()) / pairs);
            }
        }
    }
    return result;
}

}  // namespace sorvane::SurveyCorrelation
