#pragma once

#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"

namespace sorvane::test {

/// The messages of one kind, in order.
inline std::vector<std::string> messages(const AnalysisReadiness& readiness,
                                         AnalysisReadinessStatus status) {
    std::vector<std::string> result;
    for (const AnalysisReadinessIssue& issue : readiness.issues) {
        if (issue.status == status) {
            result.push_back(issue.message);
        }
    }
    return result;
}

inline std::vector<std::string> cautions(const AnalysisReadiness& readiness) {
    return messages(readiness, AnalysisReadinessStatus::caution);
}

inline std::vector<std::string> obstacles(const AnalysisReadiness& readiness) {
    return messages(readiness, AnalysisReadinessStatus::blocked);
}

}  // namespace sorvane::test
