#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"

#include <algorithm>
#include <utility>

namespace sorvane {

namespace {

AnalysisReadinessStatus folded(const std::vector<AnalysisReadinessIssue>& issues) {
    using enum AnalysisReadinessStatus;
    AnalysisReadinessStatus worst = ready;
    for (const AnalysisReadinessIssue& issue : issues) {
        worst = std::max(worst, issue.status);
    }
    return worst;
}

}  // namespace

AnalysisReadinessIssue AnalysisReadinessIssue::caution(std::string message) {
    return {.status = AnalysisReadinessStatus::caution, .message = std::move(message)};
}

AnalysisReadinessIssue AnalysisReadinessIssue::blocked(std::string message) {
    return {.status = AnalysisReadinessStatus::blocked, .message = std::move(message)};
}

AnalysisReadiness AnalysisReadiness::of(std::string minimumRequired,
                                        std::int64_t totalRows,
                                        std::int64_t validCases,
                                        std::vector<AnalysisReadinessIssue> issues,
                                        std::optional<std::int64_t> usableGroups) {
    const AnalysisReadinessStatus status = folded(issues);
    return {.status = status,
            .minimumRequired = std::move(minimumRequired),
            .totalRows = totalRows,
            .validCases = validCases,
            .usableGroups = usableGroups,
            .issues = std::move(issues)};
}

}  // namespace sorvane
