#include "SorvaneMac/Screens/SelectionText.h"

#include <algorithm>
#include <deque>
#include <set>
#include <string_view>
#include <vector>

namespace sorvane::SelectionText {

namespace {

bool needsQuotes(std::string_view text) {
    return std::any_of(text.begin(), text.end(),
                       [](char c) { return c == '\t' || c == '\n' || c == '\r' || c == '"'; });
}

std::string quoted(std::string_view text) {
    std::string whole = "\"";
    for (const char c : text) {
        whole += c;
        if (c == '"') {
            whole += c;
        }
    }
    return whole + '"';
}

/// The fields of a column; its distinct texts are made ready first where they are fewer than rows.
class Fields {
public:
    Fields(const ShownCells& cells, std::size_t column, std::size_t rows)
        : cells_(&cells), column_(column) {
        const TextColumn& texts = cells.table().column(column);
        if (!texts.hasCodes() || texts.levelCount() > rows) {
            return;
        }
        ready_.reserve(texts.levelCount());
        for (std::size_t level = 0; level < texts.levelCount(); ++level) {
            const std::string_view text = cells.levelText(column, level);
            ready_.push_back(needsQuotes(text) ? quoted_.emplace_back(quoted(text)) : text);
        }
    }
    void append(std::size_t row, std::string& text) const {
        if (!ready_.empty()) {
            text += ready_[cells_->table().column(column_).code(row)];
            return;
        }
        const std::string_view shown = cells_->text(row, column_);
        if (needsQuotes(shown)) {
            text += quoted(shown);
        } else {
            text += shown;
        }
    }

private:
    const ShownCells* cells_;
    std::size_t column_;
    std::vector<std::string_view> ready_;
    std::deque<std::string> quoted_;
};

/// Rows in which the same columns are selected.
struct Band {
    std::size_t first = 0;
    std::size_t end = 0;
    /// Null where a column is not selected; one for each column of the whole selection.
    std::vector<const Fields*> fields;
};

std::vector<std::size_t> columnsOf(std::span<const CellBlock> blocks) {
    std::set<std::size_t> columns;
    for (const CellBlock& block : blocks) {
        for (std::size_t column = block.left; column <= block.right; ++column) {
            columns.insert(column);
        }
    }
    return {columns.begin(), columns.end()};
}

/// The rows at which the set of selected columns may change, in order.
std::vector<std::size_t> boundsOf(std::span<const CellBlock> blocks) {
    std::set<std::size_t> bounds;
    for (const CellBlock& block : blocks) {
        bounds.insert(block.top);
        bounds.insert(block.bottom + 1);
    }
    return {bounds.begin(), bounds.end()};
}

Band bandFrom(std::size_t first,
              std::size_t end,
              std::span<const CellBlock> blocks,
              const std::deque<Fields>& fields,
              const std::vector<std::size_t>& columns) {
    Band band{.first = first, .end = end, .fields = {}};
    bool isSelected = false;
    band.fields.resize(columns.size());
    for (const CellBlock& block : blocks) {
        if (block.top > first || block.bottom < first) {
            continue;
        }
        for (std::size_t at = 0; at < columns.size(); ++at) {
            if (block.left <= columns[at] && columns[at] <= block.right) {
                band.fields[at] = &fields[at];
                isSelected = true;
            }
        }
    }
    if (!isSelected) {
        band.end = first;
    }
    return band;
}

void write(const Band& band, std::string& text) {
    for (std::size_t row = band.first; row < band.end; ++row) {
        for (std::size_t at = 0; at < band.fields.size(); ++at) {
            if (at > 0) {
                text += '\t';
            }
            if (band.fields[at]) {
                band.fields[at]->append(row, text);
            }
        }
        text += '\n';
    }
}

}  // namespace

std::string tabSeparated(const ShownCells& cells, std::span<const CellBlock> blocks) {
    std::size_t rows = 0;
    for (const CellBlock& block : blocks) {
        rows += block.bottom - block.top + 1;
    }
    const std::vector<std::size_t> columns = columnsOf(blocks);
    std::deque<Fields> fields;
    for (const std::size_t column : columns) {
        fields.emplace_back(cells, column, rows);
    }
    const std::vector<std::size_t> bounds = boundsOf(blocks);
    std::string text;
    for (std::size_t at = 0; at + 1 < bounds.size(); ++at) {
        write(bandFrom(bounds[at], bounds[at + 1], blocks, fields, columns), text);
    }
    return text;
}

}  // namespace sorvane::SelectionText
