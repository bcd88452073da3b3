#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "SorvaneCore/Analyses/Basics/AnalysisReadiness.h"
#include "SorvaneCore/Dataset/NumericColumn.h"

namespace sorvane {

/// Below this, either analysis cautions.
inline constexpr std::int64_t fewCasesBelow = 50;

/// The complete rows of X, M or W, Y and the covariates, by columns.
class MediationRows {
public:
    /// Failure    lengths that differ, or too few complete rows -> absent
    static std::optional<MediationRows> of(const NumericColumn& x,
                                           const NumericColumn& middle,
                                           const NumericColumn& outcome,
                                           std::span<const NumericColumn> covariates);

    std::size_t count() const { return columns_[0].size(); }
    const std::vector<double>& x() const { return columns_[0]; }
    /// The mediator or the moderator.
    const std::vector<double>& middle() const { return columns_[1]; }
    const std::vector<double>& outcome() const { return columns_[2]; }
    std::vector<const std::vector<double>*> covariates() const;

    /// Input      what the middle column is called in the sentence, "M" or "W"
    AnalysisReadiness readiness(std::string_view middleName,
                                std::vector<AnalysisReadinessIssue> issues) const;

private:
    std::size_t totalRows_ = 0;
    std::vector<std::vector<double>> columns_{};
};

}  // namespace sorvane
