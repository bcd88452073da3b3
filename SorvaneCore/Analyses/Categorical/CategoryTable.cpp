#include "SorvaneCore/Analyses/Categorical/CategoryTable.h"

#include <array>
#include <utility>

#include "SorvaneCore/Analyses/Basics/CategoryCodes.h"
#include "SorvaneCore/Analyses/Basics/CompleteCases.h"

namespace sorvane {

std::optional<CategoryTable> CategoryTable::of(const TextColumn& rowCategories,
                                               const TextColumn& columnCategories) {
    if (rowCategories.size() != columnCategories.size()) {
        return std::nullopt;
    }
    const std::array columns = {&rowCategories, &columnCategories};
    const std::vector<std::uint32_t> kept = CompleteCases::rows({}, columns);
    if (kept.empty()) {
        return std::nullopt;
    }
    CategoryCodes rows = CategoryCodes::of(rowCategories, kept);
    CategoryCodes cols = CategoryCodes::of(columnCategories, kept);
    CategoryTable table{
        .counts = std::vector(rows.labels.size(), std::vector<std::int64_t>(cols.labels.size())),
        .rowTotals = rows.counts(),
        .columnTotals = cols.counts(),
        .grandTotal = static_cast<std::int64_t>(kept.size()),
        .excludedPairs = static_cast<std::int64_t>(rowCategories.size() - kept.size())};
    for (std::size_t i = 0; i < kept.size(); ++i) {
        ++table.counts[rows.codes[i]][cols.codes[i]];
    }
    table.rowLabels = std::move(rows.labels);
    table.columnLabels = std::move(cols.labels);
    return table;
}

}  // namespace sorvane
