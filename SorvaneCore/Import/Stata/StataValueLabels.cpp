#include "SorvaneCore/Import/Stata/StataValueLabels.h"

#include <utility>

#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane {

StataValueLabels::StataValueLabels(const StataFile& file) : order_(file.byteOrder) {
    std::optional<ByteReader> reader = file.section("value_labels");
    while (reader && reader->skipPast("<lbl>")) {
        const auto length = reader->readBytes(4);
        const auto name = reader->readBytes(file.nameSize());
        const auto padding = reader->readBytes(3);
        const std::optional<Table> table =
            length && name && padding ? readTable(*reader, order_) : std::nullopt;
        if (!table) {
            break;
        }
        tables_[StataFile::text(*name)] = *table;
        reader->skipPast("</lbl>");
    }
}

std::optional<StataValueLabels::Table> StataValueLabels::readTable(ByteReader& reader,
                                                                   ByteOrder order) {
    const auto count = reader.read<std::uint32_t>(order);
    const auto textLength = reader.read<std::uint32_t>(order);
    if (!count || !textLength) {
        return std::nullopt;
    }
    const auto offsets = reader.readBytes(std::int64_t{*count} * 4);
    const auto values = offsets ? reader.readBytes(std::int64_t{*count} * 4) : std::nullopt;
    const auto texts = values ? reader.readBytes(*textLength) : std::nullopt;
    return texts ? std::optional(Table{.offsets = *offsets, .values = *values, .texts = *texts})
                 : std::nullopt;
}

std::optional<PricedLabels> StataValueLabels::labels(const std::string& name,
                                                     ValueLabelBudget& budget) const {
    const Table& table = tables_.at(name);
    const std::size_t leftBefore = budget.left();
    ValueLabels::Map labels;
    for (std::size_t at = 0; at < table.offsets.size(); at += 4) {
        const auto offset = ByteReader::number<std::int32_t>(table.offsets.data() + at, order_);
        if (offset < 0 || static_cast<std::size_t>(offset) >= table.texts.size()) {
            continue;
        }
        const std::string_view from = table.texts.substr(static_cast<std::size_t>(offset));
        const std::string_view label = from.substr(0, from.find('\0'));
        if (!budget.take(label.size())) {
            budget.reset(leftBefore);
            return std::nullopt;
        }
        const auto value = ByteReader::number<std::int32_t>(table.values.data() + at, order_);
        labels[NumberText::integer(value)] = UnicodeText::repaired(label);
    }
    return PricedLabels{.labels = std::move(labels), .bytes = leftBefore - budget.left()};
}

}  // namespace sorvane
