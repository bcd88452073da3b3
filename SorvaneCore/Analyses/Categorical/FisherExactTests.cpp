#include "SorvaneCore/Analyses/Categorical/FisherExactTests.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "SorvaneCore/Analyses/Categorical/CategoryTable.h"
#include "SorvaneCore/Analyses/Categorical/LogFactorial.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::FisherExactTests {

namespace {

/// What counts as equally probable, in logarithms.
constexpr double tieTolerance = 1e-7;
constexpr std::int64_t fewObservations = 20;

/// The tables that share the margins of one, each known by its upper left count.
class TablesOfMargins {
public:
    explicit TablesOfMargins(const FourCells& counts)
        : row1_(counts.a + counts.b),
          row2_(counts.c + counts.d),
          column1_(counts.a + counts.c),
          margins_(logFactorial(row1_) + logFactorial(row2_) + logFactorial(column1_) +
                   logFactorial(counts.b + counts.d) - logFactorial(counts.total())) {}

    std::int64_t smallest() const { return std::max<std::int64_t>(0, column1_ - row2_); }
    std::int64_t largest() const { return std::min(row1_, column1_); }

    double logProbability(std::int64_t upperLeft) const {
        return margins_ - logFactorial(upperLeft) - logFactorial(row1_ - upperLeft) -
               logFactorial(column1_ - upperLeft) - logFactorial(row2_ - column1_ + upperLeft);
    }

private:
    std::int64_t row1_;
    std::int64_t row2_;
    std::int64_t column1_;
    double margins_;
};

void setPValues(FisherExactResult& result, const FourCells& counts) {
    const TablesOfMargins tables(counts);
    const double observed = tables.logProbability(counts.a);
    double twoSided = 0.0;
    double below = 0.0;
    double above = 0.0;
    for (std::int64_t k = tables.smallest(); k <= tables.largest(); ++k) {
        const double logProbability = tables.logProbability(k);
        const double probability = std::exp(logProbability);
        twoSided += logProbability <= observed + tieTolerance ? probability : 0.0;
        below += k <= counts.a ? probability : 0.0;
        above += k >= counts.a ? probability : 0.0;
    }
    result.pValue = std::clamp(twoSided, 0.0, 1.0);
    result.oneSidedPValue = std::clamp(std::min(below, above), 0.0, 1.0);
}

std::optional<double> oddsRatio(const FourCells& counts) {
    if (counts.b < 1 || counts.c < 1) {
        return std::nullopt;
    }
    return static_cast<double>(counts.a) * static_cast<double>(counts.d) /
           (static_cast<double>(counts.b) * static_cast<double>(counts.c));
}

AnalysisReadiness readiness(const FourCells& counts, std::int64_t totalRows) {
    std::vector<AnalysisReadinessIssue> issues;
    const std::int64_t total = counts.total();
    if (total < fewObservations) {
        issues.push_back(AnalysisReadinessIssue::caution(
            "The table has only " + NumberText::integer(total) +
            " observations. Fisher's exact test stays valid on small samples, but a tiny table "
            "still carries little statistical power."));
    }
    if (counts.hasEmpty()) {
        issues.push_back(AnalysisReadinessIssue::caution(
            "At least one cell is empty, so the odds ratio is undefined or infinite. The exact "
            "p-value is still valid; interpret the effect size with care."));
    }
    return AnalysisReadiness::of("a 2x2 table with positive row and column margins", totalRows,
                                 total, std::move(issues));
}

std::optional<FisherExactResult> test(const FourCells& counts, std::int64_t totalRows) {
    const bool hasEmptyMargin = counts.a + counts.b < 1 || counts.c + counts.d < 1 ||
                                counts.a + counts.c < 1 || counts.b + counts.d < 1;
    if (counts.hasNegative() || hasEmptyMargin) {
        return std::nullopt;
    }
    FisherExactResult result{.observed = counts.rows(),
                             .oddsRatio = oddsRatio(counts),
                             .readiness = readiness(counts, totalRows)};
    setPValues(result, counts);
    return result;
}

}  // namespace

std::optional<FisherExactResult> test(const FourCells& counts) {
    return test(counts, counts.total());
}

std::optional<FisherExactResult> test(const TextColumn& exposure, const TextColumn& outcome) {
    const std::optional<CategoryTable> table = CategoryTable::of(exposure, outcome);
    if (!table || table->rowLabels.size() != 2 || table->columnLabels.size() != 2) {
        return std::nullopt;
    }
    const auto& counts = table->counts;
    return test({.a = counts[0][0], .b = counts[0][1], .c = counts[1][0], .d = counts[1][1]},
                table->grandTotal + table->excludedPairs);
}

}  // namespace sorvane::FisherExactTests
