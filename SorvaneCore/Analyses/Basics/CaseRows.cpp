#include "SorvaneCore/Analyses/Basics/CaseRows.h"

#include "SorvaneCore/Analyses/Basics/CompleteCases.h"

namespace sorvane {

CaseRows CaseRows::complete(std::span<const NumericColumn> columns) {
    std::vector<const NumericColumn*> pointers;
    for (const NumericColumn& column : columns) {
        pointers.push_back(&column);
    }
    const std::vector<std::uint32_t> rows = CompleteCases::rows(pointers);
    CaseRows result{.count = rows.size(),
                    .width = columns.size(),
                    .cells = std::vector<double>(rows.size() * columns.size())};
    for (std::size_t j = 0; j < result.width; ++j) {
        const std::vector<double> values = CompleteCases::gathered(columns[j], rows);
        for (std::size_t i = 0; i < result.count; ++i) {
            result.cells[i * result.width + j] = values[i];
        }
    }
    return result;
}

std::optional<CaseRows> CaseRows::of(std::span<const std::vector<double>> rows) {
    CaseRows result{.count = rows.size(), .width = rows.empty() ? 0 : rows.front().size()};
    result.cells.reserve(result.count * result.width);
    for (const std::vector<double>& row : rows) {
        if (row.size() != result.width) {
            return std::nullopt;
        }
        result.cells.insert(result.cells.end(), row.begin(), row.end());
    }
    return result;
}

}  // namespace sorvane
