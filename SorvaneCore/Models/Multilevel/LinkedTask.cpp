#include "SorvaneCore/Models/Multilevel/LinkedTask.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "SorvaneCore/Models/Multilevel/FixedEffectTable.h"
#include "SorvaneCore/Models/Multilevel/MultilevelWording.h"

namespace sorvane {

namespace {

/// Levels of two factors together.
constexpr std::size_t mostLevels = 4000;
/// From this many clusters on nothing is said about their number.
constexpr std::int64_t enoughClusters = 10;

std::string minimumOf(LinkedFamily family, LinkedStructure structure) {
    const bool isLogistic = family == LinkedFamily::logistic;
    switch (structure) {
        case LinkedStructure::intercept:
            return isLogistic ? MultilevelWording::shareMinimum()
                              : MultilevelWording::countMinimum();
        case LinkedStructure::slope:
            return isLogistic ? MultilevelWording::shareSlopeMinimum()
                              : MultilevelWording::countSlopeMinimum();
        case LinkedStructure::twoFactors:
            return MultilevelWording::factorsMinimum();
    }
    return {};
}

bool isSeparated(const std::vector<MultilevelFixedEffect>& effects) {
    constexpr double extremeEstimate = 8.0;
    constexpr double extremeError = 20.0;
    return std::ranges::any_of(effects, [](const MultilevelFixedEffect& effect) {
        return std::abs(effect.estimate) > extremeEstimate || effect.standardError > extremeError ||
               !std::isfinite(effect.standardError);
    });
}

std::vector<AnalysisReadinessIssue> issuesOf(const LinkedTask& task,
                                             const MultilevelResult& result) {
    std::vector<AnalysisReadinessIssue> issues;
    const auto caution = [&issues](std::string message) {
        issues.push_back(AnalysisReadinessIssue::caution(std::move(message)));
    };
    if (!result.converged) {
        caution(task.structure == LinkedStructure::intercept ? MultilevelWording::optimizerSignal()
                                                             : MultilevelWording::laplaceSignal());
    }
    const std::int64_t fewest =
        std::min(result.nClusters, result.nClustersSecondary.value_or(result.nClusters));
    if (fewest < enoughClusters) {
        caution(task.structure == LinkedStructure::intercept
                    ? MultilevelWording::fewInterceptClusters(fewest)
                : task.structure == LinkedStructure::slope
                    ? MultilevelWording::fewSlopeClusters(fewest)
                    : MultilevelWording::fewFactorLevels(fewest));
    }
    if (task.family == LinkedFamily::logistic && isSeparated(result.fixedEffects)) {
        caution(MultilevelWording::separation());
    }
    return issues;
}

/// The issues of a result, with what is said of the way it was or would have been found.
std::vector<AnalysisReadinessIssue> withMethod(const LinkedTask& task,
                                               std::vector<AnalysisReadinessIssue> issues) {
    if (task.structure == LinkedStructure::slope) {
        issues.push_back(AnalysisReadinessIssue::caution(MultilevelWording::slopeUsesLaplace()));
    } else if (task.structure == LinkedStructure::twoFactors) {
        issues.push_back(AnalysisReadinessIssue::caution(MultilevelWording::factorsUseLaplace()));
    }
    return issues;
}

AnalysisReadiness readinessOf(const LinkedTask& task,
                              const MultilevelResult& result,
                              std::vector<AnalysisReadinessIssue> issues) {
    return AnalysisReadiness::of(minimumOf(task.family, task.structure),
                                 static_cast<std::int64_t>(task.totalRows), result.n,
                                 withMethod(task, std::move(issues)), result.nClusters);
}

}  // namespace

bool LinkedTask::isCoded(const MultilevelRows& rows, LinkedFamily family) {
    return std::ranges::all_of(rows.outcome, [family](double outcome) {
        return family == LinkedFamily::logistic ? outcome == 0.0 || outcome == 1.0
                                                : outcome >= 0.0 && outcome == std::floor(outcome);
    });
}

std::string LinkedTask::obstacle() const {
    if (structure == LinkedStructure::twoFactors) {
        if (std::min(rows.cluster.count(), rows.cluster2.count()) < 2) {
            return MultilevelWording::needsTwoLevels();
        }
        if (rows.cluster.count() + rows.cluster2.count() > mostLevels) {
            return MultilevelWording::tooManyLevels();
        }
    } else if (rows.cluster.count() < 2) {
        return MultilevelWording::needsTwoClusters();
    }
    const auto [least, most] = std::ranges::minmax(rows.outcome);
    if (least < most) {
        return {};
    }
    if (family == LinkedFamily::logistic) {
        return MultilevelWording::allOneShare();
    }
    return most == 0.0 ? MultilevelWording::noEvents() : MultilevelWording::noCountVariation();
}

MultilevelResult LinkedTask::started() const {
    MultilevelResult result{.logLikelihood = std::numeric_limits<double>::quiet_NaN(),
                            .estimator = MultilevelEstimator::ml,
                            .n = static_cast<std::int64_t>(rows.count()),
                            .nClusters = static_cast<std::int64_t>(rows.cluster.count()),
                            .predictorCount = static_cast<std::int64_t>(rows.predictors.size())};
    if (structure == LinkedStructure::twoFactors) {
        result.nClustersSecondary = static_cast<std::int64_t>(rows.cluster2.count());
    }
    if (structure == LinkedStructure::slope) {
        result.randomSlopeName = options.randomSlopeName;
    }
    return result;
}

MultilevelResult LinkedTask::blocked(std::string why) const {
    MultilevelResult result = started();
    result.fixedEffects = FixedEffectTable::blank(options.fixedNames);
    result.readiness =
        readinessOf(*this, result, {AnalysisReadinessIssue::blocked(std::move(why))});
    return result;
}

void LinkedTask::setReadiness(MultilevelResult& result) const {
    result.readiness = readinessOf(*this, result, issuesOf(*this, result));
}

}  // namespace sorvane
