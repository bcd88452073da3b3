#include "SorvaneCore/Import/ProfiledColumns.h"

#include <algorithm>

#include "SorvaneCore/Dataset/ColumnProfile.h"
#include "SorvaneCore/Numerics/ParallelFor.h"

namespace sorvane {

namespace {

/// Tables below are done before another thread has started.
constexpr std::size_t cellsWorthThreads = 200'000;
/// Rows whose counts stay in the first cache while column after column adds to them.
constexpr std::size_t rowsPerBlock = 8192;

unsigned threadsFor(const TextTable& table) {
    return table.rowCount() * table.columnCount() < cellsWorthThreads ? 1 : hardwareThreads();
}

struct RowRange {
    std::size_t begin = 0;
    std::size_t end = 0;
};

/// Adds the missing cells of a column with codes, where a few levels are missing.
template <typename Codes>
void addByCode(const Codes& codes,
               const ColumnProfile& profile,
               RowRange rows,
               std::vector<std::uint32_t>& counts) {
    for (const std::uint32_t missing : profile.missingLevels) {
        for (std::size_t row = rows.begin; row < rows.end; ++row) {
            counts[row] += codes[row] == missing ? 1U : 0U;
        }
    }
}

/// Adds the missing cells of a column whose rows are its levels: they are listed.
void addByRow(const ColumnProfile& profile, RowRange rows, std::vector<std::uint32_t>& counts) {
    const std::vector<std::uint32_t>& missing = profile.missingLevels;
    auto next = std::lower_bound(missing.begin(), missing.end(), rows.begin);
    for (; next != missing.end() && *next < rows.end; ++next) {
        ++counts[*next];
    }
}

void addMissing(const TextColumn& column, RowRange rows, std::vector<std::uint32_t>& counts) {
    const ColumnProfile& profile = column.profile();
    if (profile.missingLevels.empty()) {
        return;
    }
    if (!column.hasCodes()) {
        addByRow(profile, rows, counts);
        return;
    }
    column.withCodes([&](const auto& codes) { addByCode(codes, profile, rows, counts); });
}

}  // namespace

void profileColumns(const TextTable& table) {
    parallelFor(table.columnCount(), threadsFor(table),
                [&table](std::size_t column) { table.column(column).profile(); });
}

std::vector<std::uint32_t> missingCellsPerRow(const TextTable& table) {
    profileColumns(table);
    const std::size_t rowCount = table.rowCount();
    std::vector<std::uint32_t> counts(rowCount, 0);
    const std::size_t blocks = (rowCount + rowsPerBlock - 1) / rowsPerBlock;
    parallelFor(blocks, threadsFor(table), [&](std::size_t block) {
        const RowRange rows{.begin = block * rowsPerBlock,
                            .end = std::min(rowCount, (block + 1) * rowsPerBlock)};
        for (std::size_t column = 0; column < table.columnCount(); ++column) {
            addMissing(table.column(column), rows, counts);
        }
    });
    return counts;
}

}  // namespace sorvane
