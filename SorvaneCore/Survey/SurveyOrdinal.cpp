#include "SorvaneCore/Survey/SurveyOrdinal.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneCore/Numerics/OrdinalLikelihood.h"
#include "SorvaneCore/Numerics/OrdinalTerms.h"
#include "SorvaneCore/Survey/SurveyModels.h"
#include "SorvaneCore/Survey/SurveyWording.h"

namespace sorvane::SurveyOrdinal {

namespace {

using Numbers = std::vector<double>;

/// The outcome as positions among its distinct values.
struct Levels {
    Numbers values{};
    std::vector<std::uint32_t> codes{};

    explicit Levels(const Numbers& outcome) : values(outcome) {
        std::ranges::sort(values);
        values.erase(std::unique(values.begin(), values.end()), values.end());
        for (const double each : outcome) {
            codes.push_back(static_cast<std::uint32_t>(std::ranges::lower_bound(values, each) -
                                                       values.begin()));
        }
    }

    std::size_t thresholds() const { return values.size() - 1; }
    std::vector<std::string> thresholdNames() const {
        std::vector<std::string> names;
        for (std::size_t k = 0; k < thresholds(); ++k) {
            names.push_back(NumberText::shortest(values[k]) + "|" +
                            NumberText::shortest(values[k + 1]));
        }
        return names;
    }
};

/// The log odds of the weighted shares up to each level; absent where a level has no weight.
std::optional<Numbers> startingThresholds(const Levels& levels, std::span<const double> weights) {
    Numbers ofLevel(levels.values.size(), 0.0);
    double all = 0.0;
    for (std::size_t i = 0; i < weights.size(); ++i) {
        ofLevel[levels.codes[i]] += weights[i];
        all += weights[i];
    }
    Numbers start;
    double upTo = 0.0;
    for (std::size_t k = 0; k < levels.thresholds(); ++k) {
        upTo += ofLevel[k];
        start.push_back(std::log(upTo / (all - upTo)));
    }
    return std::ranges::all_of(ofLevel, [](double each) { return each > 0.0; })
               ? std::optional(std::move(start))
               : std::nullopt;
}

std::optional<SurveyModelEstimates> estimates(const SurveyModelFrame& frame,
                                              const Levels& levels,
                                              std::span<const double> weights) {
    std::optional<Numbers> start = startingThresholds(levels, weights);
    if (!start) {
        return std::nullopt;
    }
    const OrdinalLikelihood likelihood(frame.matrix, frame.cols, levels.codes, levels.values.size(),
                                       weights);
    start->resize(likelihood.parameterCount(), 0.0);
    const OptimizerResult end = IRLS::dampedNewton(
        *start, {.maxIterations = 60, .tolerance = 1e-10},
        [&](std::span<const double> at) { return likelihood.at(at); },
        [](std::span<const double> /*step*/) { return false; });
    if (!end.converged) {
        return std::nullopt;
    }
    return SurveyModelEstimates{.parameters = end.parameters,
                                .bread = end.inverseNegativeHessian,
                                .iterations = end.iterations};
}

/// The score of one row.
void addScores(const SurveyModelFrame& frame,
               const Levels& levels,
               std::size_t i,
               std::span<const double> parameters,
               std::span<double> scores) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const std::size_t thresholds = levels.thresholds();
    const std::size_t level = levels.codes[i];
    double sum = 0.0;
    for (std::size_t j = 1; j < frame.cols; ++j) {
        sum += frame.row(i)[j] * parameters[thresholds + j - 1];
    }
    const OrdinalTerms terms =
        OrdinalTerms::between(level > 0 ? parameters[level - 1] - sum : -infinity,
                              level < thresholds ? parameters[level] - sum : infinity);
    if (level < thresholds) {
        scores[level] += terms.upperScore();
    }
    if (level > 0) {
        scores[level - 1] += terms.lowerScore();
    }
    for (std::size_t j = 1; j < frame.cols; ++j) {
        scores[thresholds + j - 1] += terms.score() * frame.row(i)[j];
    }
}

}  // namespace

std::optional<SurveyModelResult> fit(const NumericColumn& outcome,
                                     std::span<const NumericColumn> predictors,
                                     const SurveyDesign& design,
                                     const SurveyModelOptions& options) {
    constexpr std::size_t fewestLevels = 3;
    auto result =
        SurveyModels::start(SurveyModelKind::ordinal, outcome, predictors, design, options);
    if (!result || SurveyModels::isBlocked(*result)) {
        return result;
    }
    const SurveyModelFrame frame = SurveyModelFrame::of(outcome, predictors, design);
    const Levels levels(frame.outcome);
    if (levels.values.size() < fewestLevels) {
        result->validN = static_cast<std::int64_t>(frame.rows());
        SurveyModels::block(
            *result, SurveyWording::tooFewLevels(static_cast<std::int64_t>(levels.values.size())));
        return result;
    }
    if (!SurveyModels::passes(*result, frame, levels.thresholds() + frame.cols - 1)) {
        return result;
    }
    SurveyModels::finish(
        *result, frame,
        {.kind = SurveyModelKind::ordinal,
         .leading = levels.thresholds(),
         .meanSign = 1.0,
         .leadingNames = levels.thresholdNames(),
         .fit = [&](std::span<const double> weights) { return estimates(frame, levels, weights); },
         .scores =
             [&](std::size_t i, std::span<const double> parameters, std::span<double> scores) {
                 addScores(frame, levels, i, parameters, scores);
             }},
        options);
    return result;
}

}  // namespace sorvane::SurveyOrdinal
