#include "SorvaneCore/Analyses/Reliability/PreparedItems.h"

#include <algorithm>
#include <array>

namespace sorvane {

PreparedBlock::PreparedBlock(std::size_t itemCount)
    : values(itemCount * PreparedItems::blockRows), present(itemCount * PreparedItems::blockRows) {}

double* PreparedBlock::item(std::size_t index) {
    return values.data() + index * PreparedItems::blockRows;
}

const double* PreparedBlock::item(std::size_t index) const {
    return values.data() + index * PreparedItems::blockRows;
}

PreparedItems::PreparedItems(std::span<const NumericColumn> items,
                             const ReliabilityOptions& options)
    : items_(items), codings_(items.size()), keepsWith_(items.size() + 1) {
    for (const NumericColumn& item : items) {
        inputRows_ = std::max(inputRows_, item.size());
    }
    for (const ReverseCodedItem& reversed : options.reverseCoded) {
        const auto name = std::ranges::find(options.itemNames, reversed.item);
        const auto index = static_cast<std::size_t>(name - options.itemNames.begin());
        if (index < codings_.size() && reversed.minimum && reversed.maximum) {
            codings_[index] = {.base = *reversed.minimum + *reversed.maximum, .sign = -1.0};
        }
    }
    for (std::size_t present = 0; present < keepsWith_.size(); ++present) {
        keepsWith_[present] =
            keepsRow(options.missingDataRule, present, items.size(), options.minimumItemCompletion)
                ? 1
                : 0;
    }
}

void PreparedItems::read(std::size_t firstRow, PreparedBlock& block) const {
    const std::size_t count = std::min(blockRows, inputRows_ - firstRow);
    markPresent(firstRow, count, block);
    for (std::size_t j = 0; j < items_.size(); ++j) {
        gather(j, firstRow, block);
    }
    fill(block);
}

void PreparedItems::markPresent(std::size_t firstRow,
                                std::size_t count,
                                PreparedBlock& block) const {
    std::array<std::uint32_t, blockRows> presentItems{};
    std::ranges::fill(block.present, std::uint8_t{0});
    for (std::size_t j = 0; j < items_.size(); ++j) {
        std::uint8_t* present = &block.present[j * blockRows];
        const std::span<const std::optional<double>> levels = items_[j].levels();
        const std::size_t end = std::min(firstRow + count, items_[j].size());
        items_[j].withCodes([present, levels, firstRow, end](const auto& codes) {
            for (std::size_t row = firstRow; row < end; ++row) {
                present[row - firstRow] = static_cast<std::uint8_t>(levels[codes[row]].has_value());
            }
        });
        for (std::size_t i = 0; i < count; ++i) {
            presentItems[i] += present[i];
        }
    }
    block.kept.clear();
    block.incomplete.clear();
    for (std::size_t i = 0; i < count; ++i) {
        if (keepsWith_[presentItems[i]] != 0) {
            if (presentItems[i] < items_.size()) {
                block.incomplete.push_back(static_cast<std::uint16_t>(block.kept.size()));
            }
            block.kept.push_back(static_cast<std::uint16_t>(i));
        }
    }
    block.rows = block.kept.size();
}

void PreparedItems::gather(std::size_t item, std::size_t firstRow, PreparedBlock& block) const {
    double* values = block.item(item);
    const Coding coding = codings_[item];
    const std::span<const std::optional<double>> levels = items_[item].levels();
    const std::uint8_t* present = &block.present[item * blockRows];
    items_[item].withCodes([&block, values, coding, levels, present, firstRow](const auto& codes) {
        for (std::size_t i = 0; i < block.rows; ++i) {
            const std::size_t row = block.kept[i];
            if (present[row] != 0) {
                values[i] = coding.base + coding.sign * *levels[codes[firstRow + row]];
            }
        }
    });
}

/// Absent entries of the rows that stay become the mean of the row's own answers.
void PreparedItems::fill(PreparedBlock& block) const {
    for (const std::uint16_t i : block.incomplete) {
        const std::size_t row = block.kept[i];
        double sum = 0.0;
        std::size_t answers = 0;
        for (std::size_t j = 0; j < items_.size(); ++j) {
            if (block.present[j * blockRows + row] != 0) {
                sum += block.item(j)[i];
                ++answers;
            }
        }
        const double mean = sum / static_cast<double>(answers);
        for (std::size_t j = 0; j < items_.size(); ++j) {
            if (block.present[j * blockRows + row] == 0) {
                block.item(j)[i] = mean;
            }
        }
    }
}

}  // namespace sorvane
