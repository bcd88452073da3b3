#include "SorvaneCore/Prepare/DerivedValueFormatter.h"

#include <bit>
#include <vector>

#include "SorvaneCore/Dataset/TextColumnBuilder.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::DerivedValueFormatter {

namespace {

/// Remembers the texts of values seen lately: scores and codes repeat over and over.
class RecentTexts {
public:
    const std::string& of(double value) {
        const auto bits = std::bit_cast<std::uint64_t>(value);
        Entry& entry = entries_[(bits * 0x9E3779B97F4A7C15U) >> (64 - placeBits)];
        if (!entry.isFilled || entry.bits != bits) {
            entry = {.bits = bits, .isFilled = true, .text = text(value)};
        }
        return entry.text;
    }

private:
    static constexpr int placeBits = 12;
    struct Entry {
        std::uint64_t bits = 0;
        bool isFilled = false;
        std::string text{};
    };
    std::vector<Entry> entries_ = std::vector<Entry>(std::size_t{1} << placeBits);
};

}  // namespace

std::string text(double value) {
    return NumberText::derivedValue(value);
}

std::shared_ptr<const TextColumn> column(std::span<const std::optional<double>> values) {
    TextColumnBuilder builder;
    builder.expectRows(values.size());
    RecentTexts texts;
    for (const std::optional<double>& value : values) {
        builder.append(value ? std::string_view(texts.of(*value)) : std::string_view());
    }
    return builder.finish();
}

}  // namespace sorvane::DerivedValueFormatter
