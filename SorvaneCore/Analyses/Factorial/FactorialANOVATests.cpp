#include "SorvaneCore/Analyses/Factorial/FactorialANOVATests.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "SorvaneCore/Analyses/Basics/CategoryCodes.h"
#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Analyses/Basics/DesignCautions.h"
#include "SorvaneCore/Analyses/Basics/RowPartition.h"
#include "SorvaneCore/Analyses/Basics/SampleMoments.h"
#include "SorvaneCore/Analyses/Factorial/FactorialCells.h"
#include "SorvaneCore/Numerics/MathDistributions.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneCore/Numerics/TallLeastSquares.h"

namespace sorvane::FactorialANOVATests {

namespace {

/// The positions of the factors that an effect is about.
using FactorSet = std::vector<std::size_t>;

std::string droppedRows(std::int64_t count) {
    return NumberText::integer(count) +
           " row(s) were dropped by listwise deletion because the outcome or a factor was missing.";
}

std::string lowErrorDF(std::int64_t errorDF) {
    return DesignCautions::lowErrorDF(errorDF) +
           "; F tests and p values are imprecise on a small sample.";
}

std::string unbalanced() {
    return "The design is unbalanced (cells differ in size). This report uses Type III sums of "
           "squares, which is the appropriate choice for unbalanced data; each effect is tested "
           "with every other term already in the model.";
}

std::string thinCells(std::int64_t smallest) {
    return DesignCautions::onlyCases("cell", smallest) +
           " Cell means and the interaction test are unstable with thin cells; treat this as "
           "exploratory.";
}

std::string singleCases(std::int64_t smallest) {
    return "The smallest cell has " + NumberText::integer(smallest) +
           " case(s). The interaction cannot be estimated with single-observation cells. Collapse "
           "levels or collect more data.";
}

std::string emptyCells(std::int64_t count) {
    return NumberText::integer(count) +
           " factor-level combination(s) have no data. A factorial ANOVA with an interaction "
           "cannot estimate every cell when cells are empty. Drop the interaction, collapse "
           "levels, or collect data for the empty cells.";
}

std::vector<AnalysisReadinessIssue> issues(const FactorialANOVAResult& result,
                                           const FactorialCells& cells,
                                           std::int64_t totalRows) {
    std::vector<AnalysisReadinessIssue> issues;
    const auto caution = [&issues](std::string message) {
        issues.push_back(AnalysisReadinessIssue::caution(std::move(message)));
    };
    if (totalRows > result.n) {
        caution(droppedRows(totalRows - result.n));
    }
    if (cells.emptyCells() > 0) {
        issues.push_back(AnalysisReadinessIssue::blocked(emptyCells(cells.emptyCells())));
        return issues;
    }
    const std::int64_t smallest = *std::ranges::min_element(cells.counts());
    if (result.dfError < 1) {
        issues.push_back(AnalysisReadinessIssue::blocked(singleCases(smallest)));
        return issues;
    }
    if (DesignCautions::isLowErrorDF(result.dfError)) {
        caution(lowErrorDF(result.dfError));
    }
    if (!result.isBalanced) {
        caution(unbalanced());
    }
    if (smallest < 2) {
        caution(singleCases(smallest));
    } else if (DesignCautions::isThin(smallest)) {
        caution(thinCells(smallest));
    }
    return issues;
}

/// Every set of factors: single ones, then pairs and so on, each size by position.
std::vector<FactorSet> factorSets(std::size_t factorCount) {
    std::vector<FactorSet> sets;
    for (std::size_t size = 1; size <= factorCount; ++size) {
        std::vector<bool> isMember(factorCount, false);
        std::fill_n(isMember.begin(), size, true);
        do {
            FactorSet& set = sets.emplace_back();
            for (std::size_t factor = 0; factor < factorCount; ++factor) {
                if (isMember[factor]) {
                    set.push_back(factor);
                }
            }
        } while (std::prev_permutation(isMember.begin(), isMember.end()));
    }
    return sets;
}

std::string nameOf(const FactorSet& set, std::span<const std::string> factorNames) {
    std::string name;
    for (const std::size_t factor : set) {
        name += (name.empty() ? "" : " × ") + factorNames[factor];
    }
    return name;
}

/// 1 in a level's own column, -1 in all columns for the last level, which has none.
double effectCode(std::size_t level, std::size_t column, std::size_t levels) {
    if (level == levels - 1) {
        return -1.0;
    }
    return level == column ? 1.0 : 0.0;
}

/// The effect-coded columns of an effect, an entry per cell, products for an interaction.
std::vector<std::vector<double>> effectColumns(const FactorSet& set, const FactorialCells& cells) {
    std::vector<std::vector<double>> columns = {std::vector<double>(cells.cellCount(), 1.0)};
    for (const std::size_t factor : set) {
        std::vector<std::vector<double>> products;
        for (const std::vector<double>& column : columns) {
            for (std::size_t c = 0; c + 1 < cells.levels(factor); ++c) {
                std::vector<double>& product = products.emplace_back(column);
                for (std::size_t cell = 0; cell < product.size(); ++cell) {
                    product[cell] *= effectCode(cells.level(cell, factor), c, cells.levels(factor));
                }
            }
        }
        columns = std::move(products);
    }
    return columns;
}

/// The cells with what the effects are found from.
struct CellMeans {
    const FactorialCells& cells;
    /// As deviations from the grand mean.
    std::vector<double> means{};
    double withinSquares = 0.0;
    /// The magnitude of the largest value.
    double largest = 0.0;
};

/// The squares that the full model loses with the columns of an effect. They are what its contrasts
/// of the cell means explain: with D the cell sizes and C the columns, those of the projection of
/// sqrt(D) m on C / sqrt(D).
std::optional<double> squaresOf(const FactorSet& set, const CellMeans& table) {
    std::vector<std::vector<double>> columns = effectColumns(set, table.cells);
    std::vector<double> weighted = table.means;
    for (std::size_t cell = 0; cell < weighted.size(); ++cell) {
        const double root = std::sqrt(static_cast<double>(table.cells.counts()[cell]));
        weighted[cell] *= root;
        for (std::vector<double>& column : columns) {
            column[cell] /= root;
        }
    }
    const std::vector<std::span<const double>> spans(columns.begin(), columns.end());
    const auto reduction = TallLeastSquares::reduceColumns(spans, weighted);
    if (!reduction) {
        return std::nullopt;
    }
    double squares = 0.0;
    for (const double entry : reduction->qtb) {
        squares += entry * entry;
    }
    return SampleMoments::beyondRounding(squares, table.cells.cellOfRow().size(), table.largest);
}

FactorialANOVAEffect effectOf(double squares,
                              std::size_t df,
                              const FactorialANOVAResult& fit,
                              double errorSquares) {
    FactorialANOVAEffect effect{.sumOfSquares = squares,
                                .degreesOfFreedom = static_cast<std::int64_t>(df),
                                .meanSquare = squares / static_cast<double>(df)};
    if (fit.meanSquareError > 0.0) {
        effect.f = *effect.meanSquare / fit.meanSquareError;
        effect.pValue = MathDistributions::fRightTailPValue(*effect.f, static_cast<double>(df),
                                                            static_cast<double>(fit.dfError));
    }
    if (squares + errorSquares > 0.0) {
        effect.partialEtaSquared = squares / (squares + errorSquares);
    }
    return effect;
}

std::size_t degreesOfFreedom(const FactorSet& set, const FactorialCells& cells) {
    std::size_t df = 1;
    for (const std::size_t factor : set) {
        df *= cells.levels(factor) - 1;
    }
    return df;
}

CellMeans cellMeans(const FactorialCells& cells, std::span<const double> values) {
    const RowPartition partition(cells.cellOfRow(), cells.cellCount());
    const std::vector<double> arranged = partition.arranged(values);
    const double grandMean = SampleMoments::mean(arranged);
    CellMeans table{.cells = cells,
                    .means = partition.means(arranged),
                    .largest = SampleMoments::largestMagnitude(arranged)};
    for (std::size_t cell = 0; cell < table.means.size(); ++cell) {
        table.withinSquares += SampleMoments::sumOfSquares(
            partition.group(std::span(arranged), cell), table.means[cell]);
        table.means[cell] -= grandMean;
    }
    return table;
}

/// Fills in the error and the effects; false when one cannot be had.
bool fit(FactorialANOVAResult& result,
         const FactorialCells& cells,
         std::span<const double> values) {
    const CellMeans table = cellMeans(cells, values);
    if (!std::isfinite(table.withinSquares)) {
        return false;
    }
    result.meanSquareError = table.withinSquares / static_cast<double>(result.dfError);
    for (const FactorSet& set : factorSets(result.factorNames.size())) {
        const std::optional<double> squares = squaresOf(set, table);
        if (!squares) {
            return false;
        }
        FactorialANOVAEffect effect =
            effectOf(*squares, degreesOfFreedom(set, cells), result, table.withinSquares);
        effect.name = nameOf(set, result.factorNames);
        result.effects.push_back(std::move(effect));
    }
    return true;
}

/// The factors in the given rows; none when one of them has fewer than two levels.
std::vector<CategoryCodes> codesOf(std::span<const TextColumn* const> factors,
                                   std::span<const std::uint32_t> rows) {
    std::vector<CategoryCodes> codes;
    for (const TextColumn* factor : factors) {
        codes.push_back(CategoryCodes::of(*factor, rows));
        if (codes.back().labels.size() < 2) {
            return {};
        }
    }
    return codes;
}

}  // namespace

std::optional<FactorialANOVAResult> nWay(const NumericColumn& outcome,
                                         std::span<const TextColumn* const> factors,
                                         std::span<const std::string> factorNames) {
    const auto fits = [&outcome](const TextColumn* factor) {
        return factor->size() == outcome.size();
    };
    if (factors.size() < 2 || factors.size() != factorNames.size() ||
        !std::ranges::all_of(factors, fits)) {
        return std::nullopt;
    }
    const std::array numbers = {&outcome};
    const std::vector<std::uint32_t> rows = CompleteCases::rows(numbers, factors);
    const std::vector<CategoryCodes> codes = codesOf(factors, rows);
    if (codes.empty()) {
        return std::nullopt;
    }
    const FactorialCells cells(codes);
    const auto n = static_cast<std::int64_t>(rows.size());
    FactorialANOVAResult result{.factorNames = {factorNames.begin(), factorNames.end()},
                                .n = n,
                                .meanSquareError = std::numeric_limits<double>::quiet_NaN()};
    const bool isFilled = cells.emptyCells() == 0;
    if (isFilled) {
        result.dfError = n - static_cast<std::int64_t>(cells.cellCount());
        const auto [smallest, largest] = std::ranges::minmax_element(cells.counts());
        result.isBalanced = *smallest == *largest;
    }
    const auto totalRows = static_cast<std::int64_t>(outcome.size());
    result.readiness = AnalysisReadiness::of(
        "two or more factors with 2+ levels each, a numeric outcome, every cell filled, and more "
        "cases than model terms",
        totalRows, n, issues(result, cells, totalRows));
    const bool isFitted = result.dfError > 0;
    if (isFitted && !fit(result, cells, CompleteCases::gathered(outcome, rows))) {
        return std::nullopt;
    }
    return result;
}

std::optional<FactorialANOVAResult> twoWay(const NumericColumn& outcome,
                                           const TwoFactors& factors) {
    const std::array columns = {&factors.factorA, &factors.factorB};
    const std::array names = {factors.factorAName, factors.factorBName};
    return nWay(outcome, columns, names);
}

}  // namespace sorvane::FactorialANOVATests
