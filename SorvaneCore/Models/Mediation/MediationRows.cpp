#include "SorvaneCore/Models/Mediation/MediationRows.h"

#include <algorithm>
#include <string>
#include <utility>

#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Models/Mediation/MediationAnalysis.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane {

namespace {

constexpr std::size_t roleCount = 3;

std::int64_t fewestCases(std::size_t covariateCount) {
    return static_cast<std::int64_t>(covariateCount) + MediationAnalysis::casesBeyondCovariates;
}

}  // namespace

std::optional<MediationRows> MediationRows::of(const NumericColumn& x,
                                               const NumericColumn& middle,
                                               const NumericColumn& outcome,
                                               std::span<const NumericColumn> covariates) {
    std::vector<const NumericColumn*> columns = {&x, &middle, &outcome};
    for (const NumericColumn& covariate : covariates) {
        columns.push_back(&covariate);
    }
    const bool haveOneLength = std::ranges::all_of(
        columns, [&x](const NumericColumn* column) { return column->size() == x.size(); });
    if (!haveOneLength) {
        return std::nullopt;
    }
    const std::vector<std::uint32_t> complete = CompleteCases::rows(columns);
    if (static_cast<std::int64_t>(complete.size()) < fewestCases(covariates.size())) {
        return std::nullopt;
    }
    MediationRows rows;
    rows.totalRows_ = x.size();
    for (const NumericColumn* column : columns) {
        rows.columns_.push_back(CompleteCases::gathered(*column, complete));
    }
    return rows;
}

std::vector<const std::vector<double>*> MediationRows::covariates() const {
    std::vector<const std::vector<double>*> result;
    for (std::size_t j = roleCount; j < columns_.size(); ++j) {
        result.push_back(&columns_[j]);
    }
    return result;
}

AnalysisReadiness MediationRows::readiness(std::string_view middleName,
                                           std::vector<AnalysisReadinessIssue> issues) const {
    const std::int64_t fewest = fewestCases(columns_.size() - roleCount);
    return AnalysisReadiness::of("Numeric X, " + std::string(middleName) + ", Y with \u2265 " +
                                     NumberText::integer(fewest) + " complete cases",
                                 static_cast<std::int64_t>(totalRows_),
                                 static_cast<std::int64_t>(count()), std::move(issues));
}

}  // namespace sorvane
