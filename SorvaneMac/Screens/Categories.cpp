#include "SorvaneMac/Screens/Categories.h"

#include <algorithm>
#include <map>
#include <optional>

#include "SorvaneCore/Dataset/ColumnProfile.h"
#include "SorvaneCore/Dataset/MissingValue.h"

namespace sorvane::Categories {

namespace {

/// The categories, and which of them each level of the column is; absent for a missing one.
struct Levels {
    std::vector<std::string> categories;
    std::vector<std::optional<std::size_t>> categoryOf;

    Levels() = default;
    explicit Levels(const TextColumn& column) {
        std::map<std::string_view, std::size_t> known;
        for (std::size_t code = 0; code < column.levelCount(); ++code) {
            const std::string_view text = column.level(code);
            if (MissingValue::isMissing(text)) {
                categoryOf.emplace_back();
                continue;
            }
            const auto [entry, isNew] = known.try_emplace(text, categories.size());
            if (isNew) {
                categories.emplace_back(text);
            }
            categoryOf.emplace_back(entry->second);
        }
    }
};

const TextColumn* columnOf(const ImportedDataset& dataset, std::string_view name) {
    const std::optional<std::size_t> index = dataset.columnIndex(name);
    return index ? &dataset.rows.column(*index) : nullptr;
}

/// Rows that may lack a value: the sum over the columns of the cells that do.
std::int64_t mostIncomplete(const ImportedDataset& dataset,
                            std::span<const std::string> numericColumns,
                            std::span<const std::string> categoryColumns) {
    std::int64_t lacking = 0;
    for (const std::string& name : numericColumns) {
        const TextColumn* column = columnOf(dataset, name);
        lacking += dataset.rowCount() - (column ? column->profile().numericCount : 0);
    }
    for (const std::string& name : categoryColumns) {
        const TextColumn* column = columnOf(dataset, name);
        lacking += dataset.rowCount() - (column ? column->profile().nonMissingCount : 0);
    }
    return lacking;
}

/// Strikes out the rows in which the column has no value.
void strikeMissing(std::vector<bool>& isComplete, const TextColumn* column) {
    for (std::size_t row = 0; row < isComplete.size(); ++row) {
        if (!column || MissingValue::isMissing((*column)[row])) {
            isComplete[row] = false;
        }
    }
}

/// Which rows have a number in every numeric column and a category in every other one.
std::vector<bool> completeMask(const ImportedDataset& dataset,
                               std::span<const std::string> numericColumns,
                               std::span<const std::string> categoryColumns) {
    std::vector<bool> isComplete(static_cast<std::size_t>(dataset.rowCount()), true);
    for (const std::string& name : numericColumns) {
        const NumericColumn numbers = dataset.numericColumn(name);
        for (std::size_t row = 0; row < isComplete.size(); ++row) {
            if (row >= numbers.size() || !numbers[row]) {
                isComplete[row] = false;
            }
        }
    }
    for (const std::string& name : categoryColumns) {
        strikeMissing(isComplete, columnOf(dataset, name));
    }
    return isComplete;
}

/// Adds each row to the count of its category, and of its group's.
void countRows(CrossCounts& counts,
               const TextColumn& column,
               const Levels& levels,
               const TextColumn* groups) {
    const std::size_t missing = levels.categories.size();
    const Levels groupLevels = groups ? Levels(*groups) : Levels();
    counts.byGroup.assign(groupLevels.categories.size(), counts.all);
    for (std::size_t row = 0; row < column.size(); ++row) {
        const std::size_t category = levels.categoryOf[column.code(row)].value_or(missing);
        ++counts.all[category];
        const std::optional<std::size_t> group =
            groups ? groupLevels.categoryOf[groups->code(row)] : std::nullopt;
        if (group) {
            ++counts.byGroup[*group][category];
        }
    }
}

template <typename IsOpen>
void seedPair(Field<std::string>& first,
              Field<std::string>& second,
              const std::vector<std::string>& categories,
              IsOpen isOpen) {
    const auto take = [&](Field<std::string>& field, const Field<std::string>& other) {
        const auto free =
            std::find_if(categories.begin(), categories.end(),
                         [&other](const std::string& each) { return each != other.get(); });
        if (isOpen(field.get()) && free != categories.end()) {
            field.set(*free);
        }
    };
    take(first, second);
    take(second, first);
}

}  // namespace

std::vector<std::string> of(const ImportedDataset& dataset, std::string_view column) {
    const TextColumn* texts = columnOf(dataset, column);
    return texts ? Levels(*texts).categories : std::vector<std::string>();
}

std::shared_ptr<const TextColumn> cells(const ImportedDataset& dataset, std::string_view column) {
    return cells(dataset.rows.sharedColumn(dataset.columnIndex(column).value()));
}

std::shared_ptr<const TextColumn> cells(const std::shared_ptr<const TextColumn>& column) {
    bool hasMarkers = false;
    for (std::size_t code = 0; code < column->levelCount() && !hasMarkers; ++code) {
        hasMarkers = MissingValue::isMissing(column->level(code));
    }
    if (!hasMarkers) {
        return column;
    }
    std::vector<std::string> texts;
    texts.reserve(column->size());
    for (std::size_t row = 0; row < column->size(); ++row) {
        const std::string_view text = (*column)[row];
        texts.emplace_back(MissingValue::isMissing(text) ? std::string_view() : text);
    }
    return TextColumn::of(texts);
}

std::vector<Size> sizes(const ImportedDataset& dataset,
                        std::string_view column,
                        std::string_view numericColumn,
                        std::int64_t most) {
    const TextColumn* texts = columnOf(dataset, column);
    const TextColumn* numbers = columnOf(dataset, numericColumn);
    if (!texts || !numbers) {
        return {};
    }
    const Levels levels(*texts);
    std::vector<Size> result;
    for (const std::string& category : levels.categories) {
        result.push_back({.category = category});
    }
    std::size_t unfinished = result.size();
    for (std::size_t row = 0; row < texts->size() && unfinished > 0; ++row) {
        const std::optional<std::size_t> category = levels.categoryOf[texts->code(row)];
        if (!category || result[*category].cases == most || !numericCell((*numbers)[row])) {
            continue;
        }
        if (++result[*category].cases == most) {
            --unfinished;
        }
    }
    return result;
}

CrossCounts crossCounts(const ImportedDataset& dataset,
                        std::string_view column,
                        std::string_view groupColumn) {
    CrossCounts counts;
    if (const TextColumn* counted = columnOf(dataset, column)) {
        const Levels levels(*counted);
        counts.categories = levels.categories;
        counts.all.assign(levels.categories.size() + 1, 0);
        countRows(counts, *counted, levels, columnOf(dataset, groupColumn));
    }
    return counts;
}

bool hasCompleteRows(const ImportedDataset& dataset,
                     std::int64_t wanted,
                     std::span<const std::string> numericColumns,
                     std::span<const std::string> categoryColumns) {
    const std::int64_t rowCount = dataset.rowCount();
    if (rowCount - mostIncomplete(dataset, numericColumns, categoryColumns) >= wanted) {
        return true;
    }
    const std::vector<bool> isComplete = completeMask(dataset, numericColumns, categoryColumns);
    return std::count(isComplete.begin(), isComplete.end(), true) >= wanted;
}

CompleteRows completeRows(const ImportedDataset& dataset,
                          std::span<const std::string> numericColumns,
                          std::span<const std::string> categoryColumns) {
    const TextColumn* column = columnOf(dataset, categoryColumns.front());
    if (!column) {
        return {};
    }
    const Levels levels(*column);
    if (mostIncomplete(dataset, numericColumns, categoryColumns) == 0) {
        return {.rows = dataset.rowCount(), .categories = levels.categories};
    }
    const std::vector<bool> isComplete = completeMask(dataset, numericColumns, categoryColumns);
    CompleteRows result;
    std::vector<bool> isPresent(levels.categories.size(), false);
    for (std::size_t row = 0; row < isComplete.size(); ++row) {
        if (isComplete[row]) {
            ++result.rows;
            isPresent[*levels.categoryOf[column->code(row)]] = true;
        }
    }
    for (std::size_t i = 0; i < isPresent.size(); ++i) {
        if (isPresent[i]) {
            result.categories.push_back(levels.categories[i]);
        }
    }
    return result;
}

void fillPair(Field<std::string>& first,
              Field<std::string>& second,
              const std::vector<std::string>& categories) {
    seedPair(first, second, categories, [](const std::string& text) { return text.empty(); });
}

void refillPair(Field<std::string>& first,
                Field<std::string>& second,
                const std::vector<std::string>& categories) {
    seedPair(first, second, categories, [&categories](const std::string& text) {
        return std::find(categories.begin(), categories.end(), text) == categories.end();
    });
}

}  // namespace sorvane::Categories
