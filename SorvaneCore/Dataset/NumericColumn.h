#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "SorvaneCore/Dataset/TextColumn.h"

namespace sorvane {

/// The numbers of a column: a number, or nothing, per row, decided once per level of its text.
///
/// Where counts can stand for rows (summaries, ranks, tables of categories), a procedure works on
/// `levels` with how often each occurs; elsewhere it gathers by row.
class NumericColumn {
public:
    NumericColumn() = default;
    /// The numbers of a text column: missing first, number second.
    explicit NumericColumn(std::shared_ptr<const TextColumn> column);
    /// Each row its own level.
    explicit NumericColumn(std::vector<std::optional<double>> rows);

    std::size_t size() const { return column_ ? column_->size() : levels_.size(); }
    std::optional<double> operator[](std::size_t row) const {
        return levels_[column_ ? column_->code(row) : row];
    }

    /// A number, or nothing, by code. Equal numbers may stand more than once ("1", "1.0").
    std::span<const std::optional<double>> levels() const { return levels_; }
    /// Whether levels are the column's distinct texts rather than its rows.
    bool hasCodes() const { return column_ && column_->hasCodes(); }
    /// How often each level occurs.
    std::vector<std::uint64_t> levelCounts() const;
    /// Calls `use` with something indexable by row that gives the codes.
    template <typename Use>
    decltype(auto) withCodes(Use&& use) const {
        if (column_) {
            return column_->withCodes(std::forward<Use>(use));
        }
        return use(Rows{});
    }

    /// One entry per row, aligned with the rows of the table.
    std::vector<std::optional<double>> rows() const;
    /// The present numbers, in row order.
    std::vector<double> present() const;

private:
    struct Rows {
        std::size_t operator[](std::size_t row) const { return row; }
    };

    std::shared_ptr<const TextColumn> column_;
    std::vector<std::optional<double>> levels_;
};

/// The number of one cell: absent when it is missing or does not parse.
std::optional<double> numericCell(std::string_view cell);

/// Whether a trimmed cell that is known not to be missing is a number, and which.
bool readTrimmedNumber(std::string_view trimmed, double& number);

}  // namespace sorvane
