#include "SorvaneCore/Analyses/Reliability/ReliabilityAnalyzer.h"

#include <cmath>

#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Analyses/Basics/CronbachAlpha.h"
#include "SorvaneCore/Analyses/Basics/DescriptiveStatistics.h"
#include "SorvaneCore/Analyses/Basics/RelationshipTests.h"
#include "SorvaneCore/Analyses/Reliability/ItemMoments.h"
#include "SorvaneCore/Analyses/Reliability/PreparedItems.h"
#include "SorvaneCore/Analyses/Reliability/ReliabilityWording.h"

namespace sorvane::ReliabilityAnalyzer {

namespace {

constexpr std::size_t fewestPairs = 3;
/// A rest whose squares are a smaller share than this of what they are the difference of has lost
/// four digits, and is summed row by row instead.
constexpr double cancellingShare = 1e-4;

/// The sum of the other items beside one item.
struct ItemRest {
    /// Products of deviations: of the rest, and of the item with the rest.
    double squares = 0.0;
    double products = 0.0;
};

ItemRest restByRows(const PreparedItems& items, std::size_t item) {
    std::vector<double> values;
    std::vector<double> rests;
    items.forEachBlock([&](const PreparedBlock& block) {
        values.insert(values.end(), block.item(item), block.item(item) + block.rows);
        for (std::size_t i = 0; i < block.rows; ++i) {
            double rest = 0.0;
            for (std::size_t j = 0; j < items.itemCount(); ++j) {
                rest += j == item ? 0.0 : block.item(j)[i];
            }
            rests.push_back(rest);
        }
    });
    const double restMean = *DescriptiveStatistics::mean(rests);
    const double mean = *DescriptiveStatistics::mean(values);
    ItemRest result;
    for (std::size_t i = 0; i < rests.size(); ++i) {
        result.squares += (rests[i] - restMean) * (rests[i] - restMean);
        result.products += (values[i] - mean) * (rests[i] - restMean);
    }
    return result;
}

/// Without cases, zeros.
ItemRest restOf(const PreparedItems& items, const ItemMoments& moments, std::size_t item) {
    const std::size_t total = moments.itemCount;
    const double ofTotal = moments.product(total, total);
    const double ofItem = moments.product(item, item);
    const double together = moments.product(total, item);
    const ItemRest rest{.squares = ofTotal - 2.0 * together + ofItem,
                        .products = together - ofItem};
    const bool cancels = !(rest.squares >= cancellingShare * (ofTotal + ofItem));
    return cancels && moments.cases > 0 ? restByRows(items, item) : rest;
}

/// The variance of `total` with the item variances that make it up, as alpha.
std::optional<double> alphaOf(const ItemMoments& moments,
                              double totalSquares,
                              std::optional<std::size_t> deleted) {
    if (moments.cases < 2) {
        return std::nullopt;
    }
    const auto df = static_cast<double>(moments.cases - 1);
    double itemVariances = 0.0;
    for (std::size_t j = 0; j < moments.itemCount; ++j) {
        itemVariances += j == deleted ? 0.0 : moments.product(j, j) / df;
    }
    return CronbachAlpha::fromVariances(moments.itemCount - (deleted ? 1 : 0), itemVariances,
                                        totalSquares / df);
}

ReliabilityItemStatistic itemStatistic(const PreparedItems& items,
                                       const ItemMoments& moments,
                                       std::size_t item) {
    ReliabilityItemStatistic statistic{.missingCount = moments.missingCounts[item]};
    if (moments.cases == 0) {
        return statistic;
    }
    statistic.mean = moments.means[item];
    if (const std::optional<double> variance = moments.variance(item)) {
        statistic.standardDeviation = std::sqrt(*variance);
    }
    const ItemRest rest = restOf(items, moments, item);
    if (moments.cases >= fewestPairs) {
        statistic.correctedItemTotalCorrelation = RelationshipTests::correlationFromSums(
            rest.products, moments.product(item, item), rest.squares);
    }
    statistic.alphaIfDeleted = alphaOf(moments, rest.squares, item);
    return statistic;
}

std::vector<std::vector<std::optional<double>>> interItemCorrelations(const ItemMoments& moments) {
    const std::size_t count = moments.itemCount;
    std::vector<std::vector<std::optional<double>>> matrix(
        count, std::vector<std::optional<double>>(count));
    for (std::size_t i = 0; i < count; ++i) {
        matrix[i][i] = 1.0;
        for (std::size_t j = i + 1; j < count && moments.cases >= fewestPairs; ++j) {
            matrix[i][j] = RelationshipTests::correlationFromSums(
                moments.product(i, j), moments.product(i, i), moments.product(j, j));
            matrix[j][i] = matrix[i][j];
        }
    }
    return matrix;
}

std::optional<double> meanAboveDiagonal(
    const std::vector<std::vector<std::optional<double>>>& matrix) {
    std::vector<double> present;
    for (std::size_t i = 0; i < matrix.size(); ++i) {
        for (std::size_t j = i + 1; j < matrix.size(); ++j) {
            if (matrix[i][j]) {
                present.push_back(*matrix[i][j]);
            }
        }
    }
    return DescriptiveStatistics::mean(present);
}

void fillScaleScore(ReliabilityResult& result,
                    const ItemMoments& moments,
                    ScaleScoreMethod method) {
    const std::size_t total = moments.itemCount;
    if (moments.cases == 0 || total == 0) {
        return;
    }
    const double divisor = method == ScaleScoreMethod::mean ? static_cast<double>(total) : 1.0;
    result.scaleScoreMean = moments.means[total] / divisor;
    if (const std::optional<double> variance = moments.variance(total)) {
        result.scaleScoreStandardDeviation = std::sqrt(*variance) / divisor;
    }
}

ReliabilityWording::Facts factsOf(const PreparedItems& items,
                                  std::size_t casesUsed,
                                  const ReliabilityOptions& options) {
    return {.itemCount = options.itemNames.size(),
            .inputRows = static_cast<std::int64_t>(items.inputRows()),
            .casesUsed = static_cast<std::int64_t>(casesUsed),
            .missingDataRule = options.missingDataRule};
}

void fillWording(ReliabilityResult& result, const ReliabilityWording::Facts& facts) {
    result.warnings = ReliabilityWording::warnings(facts);
    result.interpretation = ReliabilityWording::interpretation(facts);
    result.recommendedAction = ReliabilityWording::recommendedAction(facts);
    result.readiness = ReliabilityWording::readiness(facts);
}

ReliabilityMethodMetadata metadataOf(const ReliabilityWording::Facts& facts,
                                     const ReliabilityOptions& options) {
    return {.missingDataRule = options.missingDataRule,
            .scaleScoreMethod = options.scaleScoreMethod,
            .minimumItemCompletion = options.minimumItemCompletion,
            .inputRows = facts.inputRows,
            .casesUsed = facts.casesUsed,
            .itemCount = static_cast<std::int64_t>(facts.itemCount)};
}

/// The items but one, or all of them.
std::vector<const NumericColumn*> pointersWithout(const std::vector<NumericColumn>& items,
                                                  std::optional<std::size_t> left) {
    std::vector<const NumericColumn*> pointers;
    for (std::size_t j = 0; j < items.size(); ++j) {
        if (j != left) {
            pointers.push_back(&items[j]);
        }
    }
    return pointers;
}

}  // namespace

ReliabilityResult analyze(std::span<const NumericColumn> items, const ReliabilityOptions& options) {
    const PreparedItems prepared(items, options);
    const ItemMoments moments = ItemMoments::of(prepared);
    ReliabilityWording::Facts facts = factsOf(prepared, moments.cases, options);
    facts.alpha =
        alphaOf(moments, moments.product(moments.itemCount, moments.itemCount), std::nullopt);

    ReliabilityResult result{.constructName = options.constructName,
                             .itemNames = options.itemNames,
                             .casesUsed = facts.casesUsed,
                             .missingDataRule = options.missingDataRule,
                             .alpha = facts.alpha};
    for (std::size_t j = 0; j < moments.itemCount; ++j) {
        result.itemStatistics.push_back(itemStatistic(prepared, moments, j));
        if (j < options.itemNames.size()) {
            result.itemStatistics[j].itemName = options.itemNames[j];
        }
    }
    result.interItemCorrelationMatrix = interItemCorrelations(moments);
    result.averageInterItemCorrelation = meanAboveDiagonal(result.interItemCorrelationMatrix);
    fillScaleScore(result, moments, options.scaleScoreMethod);
    fillWording(result, facts);
    result.methodMetadata = metadataOf(facts, options);
    return result;
}

ReliabilityResult analyze(const ItemMatrix& matrix, const ReliabilityOptions& options) {
    return analyze(matrix.columns(), options);
}

AnalysisReadiness readiness(std::span<const NumericColumn> items,
                            const ReliabilityOptions& options) {
    const PreparedItems prepared(items, options);
    std::size_t casesUsed = 0;
    prepared.forEachBlock([&casesUsed](const PreparedBlock& block) { casesUsed += block.rows; });
    return ReliabilityWording::readiness(factsOf(prepared, casesUsed, options));
}

AnalysisReadiness readiness(const ItemMatrix& matrix, const ReliabilityOptions& options) {
    return readiness(matrix.columns(), options);
}

std::optional<double> cronbachAlpha(const ItemMatrix& matrix) {
    return CronbachAlpha::of(matrix.columns());
}

std::vector<std::optional<double>> alphaIfDeleted(const ItemMatrix& matrix) {
    std::vector<std::optional<double>> result;
    const std::vector<NumericColumn> items = matrix.columns();
    for (std::size_t j = 0; j < items.size() && matrix.rows > 0; ++j) {
        result.push_back(CronbachAlpha::of(pointersWithout(items, j)));
    }
    return result;
}

std::vector<std::optional<double>> correctedItemTotalCorrelations(const ItemMatrix& matrix) {
    std::vector<std::optional<double>> result;
    const std::vector<NumericColumn> items = matrix.columns();
    const std::vector<std::uint32_t> rows =
        CompleteCases::rows(pointersWithout(items, std::nullopt));
    std::vector<std::vector<double>> values;
    for (const NumericColumn& item : items) {
        values.push_back(CompleteCases::gathered(item, rows));
    }
    for (std::size_t j = 0; j < items.size(); ++j) {
        std::vector<double> rest(rows.size(), 0.0);
        for (std::size_t other = 0; other < items.size(); ++other) {
            for (std::size_t i = 0; i < rest.size() && other != j; ++i) {
                rest[i] += values[other][i];
            }
        }
        const auto correlation = RelationshipTests::pearson(values[j], rest);
        result.push_back(correlation ? std::optional(correlation->r) : std::nullopt);
    }
    return result;
}

}  // namespace sorvane::ReliabilityAnalyzer
