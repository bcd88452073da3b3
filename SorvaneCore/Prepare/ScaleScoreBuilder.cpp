#include "SorvaneCore/Prepare/ScaleScoreBuilder.h"

#include "SorvaneCore/Prepare/RowTotals.h"

namespace sorvane::ScaleScoreBuilder {

namespace {

std::optional<double> scoreOf(const RowTotal& total,
                              std::size_t itemCount,
                              const ScaleScoreOptions& options) {
    const auto items = static_cast<double>(itemCount);
    const auto answers = static_cast<double>(total.count);
    const bool isSum = options.scaleScoreMethod == ScaleScoreMethod::sum;
    if (options.missingDataRule == ReliabilityMissingDataRule::listwiseDeletion) {
        if (total.count == 0 || total.count != itemCount) {
            return std::nullopt;
        }
        return isSum ? total.sum : total.sum / items;
    }
    if (total.count == 0 || answers / items < options.minimumItemCompletion) {
        return std::nullopt;
    }
    const double mean = total.sum / answers;
    return isSum ? mean * items : mean;
}

}  // namespace

std::optional<double> score(std::span<const std::optional<double>> row,
                            const ScaleScoreOptions& options) {
    RowTotal total;
    for (const std::optional<double>& value : row) {
        if (value) {
            total.add(*value);
        }
    }
    return scoreOf(total, row.size(), options);
}

std::vector<std::optional<double>> scores(std::span<const NumericColumn> matrix,
                                          const ScaleScoreOptions& options) {
    std::vector<std::optional<double>> result;
    result.reserve(RowTotals::rowCount(matrix));
    RowTotals::forEach(matrix, [&](const RowTotal& total) {
        result.push_back(scoreOf(total, matrix.size(), options));
    });
    return result;
}

}  // namespace sorvane::ScaleScoreBuilder
