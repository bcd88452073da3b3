#include "SorvaneCore/Models/LatentClass/CategoryPatterns.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <unordered_map>

#include "SorvaneCore/Dataset/UnicodeText.h"

namespace sorvane {

namespace {

constexpr std::uint32_t unknown = 0xffffffffU;

/// The cells of a column as the positions of their trimmed texts, in the order asked for.
class ColumnCategories {
public:
    explicit ColumnCategories(const TextColumn& column)
        : column_(column), categoryOfLevel_(column.levelCount(), unknown) {
        for (std::size_t level = 0; level < column.levelCount(); ++level) {
            trimmed_.push_back(UnicodeText::trimmed(column.level(level)));
        }
    }

    bool isBlank(std::size_t row) const { return trimmed_[column_.code(row)].empty(); }

    std::uint32_t category(std::size_t row) {
        const std::size_t level = column_.code(row);
        if (categoryOfLevel_[level] == unknown) {
            const auto next = static_cast<std::uint32_t>(labels_.size());
            const auto [entry, isNew] = categories_.emplace(trimmed_[level], next);
            if (isNew) {
                labels_.emplace_back(trimmed_[level]);
            }
            categoryOfLevel_[level] = entry->second;
        }
        return categoryOfLevel_[level];
    }

    const std::vector<std::string>& labels() const { return labels_; }

private:
    const TextColumn& column_;
    std::vector<std::string_view> trimmed_;
    std::vector<std::uint32_t> categoryOfLevel_;
    std::unordered_map<std::string_view, std::uint32_t> categories_;
    std::vector<std::string> labels_;
};

}  // namespace

CategoryPatterns CategoryPatterns::of(std::span<const TextColumn* const> columns) {
    std::vector<ColumnCategories> cells;
    for (const TextColumn* column : columns) {
        cells.emplace_back(*column);
    }
    CategoryPatterns result;
    std::map<std::vector<std::uint32_t>, std::uint32_t> positions;
    std::vector<std::uint32_t> pattern(columns.size());
    for (std::size_t row = 0; row < columns.front()->size(); ++row) {
        const auto isBlank = [row](const ColumnCategories& column) {
            return column.isBlank(row);
        };
        if (std::ranges::any_of(cells, isBlank)) {
            continue;
        }
        for (std::size_t j = 0; j < cells.size(); ++j) {
            pattern[j] = cells[j].category(row);
        }
        const auto next = static_cast<std::uint32_t>(result.counts.size());
        const auto [entry, isNew] = positions.emplace(pattern, next);
        if (isNew) {
            result.codes.insert(result.codes.end(), pattern.begin(), pattern.end());
            result.counts.push_back(0.0);
        }
        result.counts[entry->second] += 1.0;
        result.patternOf.push_back(entry->second);
    }
    for (const ColumnCategories& column : cells) {
        result.categories.push_back(column.labels());
    }
    return result;
}

}  // namespace sorvane
