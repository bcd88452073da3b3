#pragma once

#include <boost/describe/class.hpp>
#include <boost/describe/enum.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace sorvane {

enum class AnalysisReadinessStatus { ready, caution, blocked };
BOOST_DESCRIBE_ENUM(AnalysisReadinessStatus, ready, caution, blocked)

/// One thing that the user must be told before or beside a result.
struct AnalysisReadinessIssue {
    AnalysisReadinessStatus status = AnalysisReadinessStatus::caution;
    std::string message{};

    bool operator==(const AnalysisReadinessIssue&) const = default;

    static AnalysisReadinessIssue caution(std::string message);
    static AnalysisReadinessIssue blocked(std::string message);
};
BOOST_DESCRIBE_STRUCT(AnalysisReadinessIssue, (), (status, message))

/// Whether an analysis could run, on how many rows, and what the user must be told about it.
struct AnalysisReadiness {
    AnalysisReadinessStatus status = AnalysisReadinessStatus::ready;
    /// What the procedure needs, in words.
    std::string minimumRequired{};
    /// Rows given to the procedure, and rows that it can use.
    std::int64_t totalRows = 0;
    std::int64_t validCases = 0;
    /// For procedures on groups.
    std::optional<std::int64_t> usableGroups{};
    /// In the order in which the procedure found them.
    std::vector<AnalysisReadinessIssue> issues{};

    bool operator==(const AnalysisReadiness&) const = default;

    /// The record with its status folded from the issues: blocked if any issue is blocked, else
    /// caution if any is a caution, else ready.
    static AnalysisReadiness of(std::string minimumRequired,
                                std::int64_t totalRows,
                                std::int64_t validCases,
                                std::vector<AnalysisReadinessIssue> issues,
                                std::optional<std::int64_t> usableGroups = std::nullopt);
};
BOOST_DESCRIBE_STRUCT(AnalysisReadiness,
                      (),
                      (status, minimumRequired, totalRows, validCases, usableGroups, issues))

}  // namespace sorvane
