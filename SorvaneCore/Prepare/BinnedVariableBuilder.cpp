#include "SorvaneCore/Prepare/BinnedVariableBuilder.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include "SorvaneCore/Analyses/Basics/ValueOrder.h"
#include "SorvaneCore/Dataset/TextColumnBuilder.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneCore/Prepare/DerivedValueFormatter.h"

namespace sorvane::BinnedVariableBuilder {

namespace {

using DerivedValueFormatter::text;

constexpr std::size_t noBand = std::numeric_limits<std::size_t>::max();

bool isUsable(const std::optional<double>& value) {
    return value && std::isfinite(*value);
}

/// The column of the labels that `labelOf` gives for each row; null for an empty cell.
template <typename LabelOf>
std::shared_ptr<const TextColumn> labelled(std::size_t rows, LabelOf labelOf) {
    TextColumnBuilder builder;
    builder.expectRows(rows);
    for (std::size_t row = 0; row < rows; ++row) {
        const std::string* label = labelOf(row);
        builder.append(label ? std::string_view(*label) : std::string_view());
    }
    return builder.finish();
}

struct Bounds {
    double smallest = std::numeric_limits<double>::infinity();
    double largest = -std::numeric_limits<double>::infinity();
};

Bounds boundsOf(const NumericColumn& values) {
    Bounds bounds;
    for (const std::optional<double>& value : values.levels()) {
        if (isUsable(value)) {
            bounds.smallest = std::min(bounds.smallest, *value);
            bounds.largest = std::max(bounds.largest, *value);
        }
    }
    return bounds;
}

std::string widthLabel(const Bounds& bounds, double width, std::size_t band, std::size_t bands) {
    const double lower = bounds.smallest + static_cast<double>(band) * width;
    const double upper = band + 1 == bands
                             ? bounds.largest
                             : bounds.smallest + static_cast<double>(band + 1) * width;
    return text(lower) + " to " + text(upper);
}

}  // namespace

std::shared_ptr<const TextColumn> equalWidth(const NumericColumn& values, std::int64_t binCount) {
    const auto bands = static_cast<std::size_t>(std::max<std::int64_t>(binCount, 1));
    const Bounds bounds = boundsOf(values);
    const bool isConstant = bounds.smallest == bounds.largest;
    const double width = (bounds.largest - bounds.smallest) / static_cast<double>(bands);
    const auto bandOf = [&](double value) -> std::size_t {
        const double position = std::trunc((value - bounds.smallest) / width);
        // A width beyond the doubles leaves positions that are no numbers.
        return isConstant || !(position > 0.0)
                   ? 0
                   : static_cast<std::size_t>(std::min(position, static_cast<double>(bands - 1)));
    };
    // Only bands that hold a value have a label: far more may have been asked for.
    std::map<std::size_t, std::string> labels;
    std::vector<const std::string*> labelOfLevel;
    labelOfLevel.reserve(values.levels().size());
    for (const std::optional<double>& level : values.levels()) {
        if (!isUsable(level)) {
            labelOfLevel.push_back(nullptr);
            continue;
        }
        const std::size_t band = bandOf(*level);
        const auto [label, isNew] = labels.try_emplace(band);
        if (isNew) {
            label->second = isConstant ? text(*level) : widthLabel(bounds, width, band, bands);
        }
        labelOfLevel.push_back(&label->second);
    }
    return values.withCodes([&](const auto& codes) {
        return labelled(values.size(), [&](std::size_t row) { return labelOfLevel[codes[row]]; });
    });
}

std::shared_ptr<const TextColumn> quantile(const NumericColumn& values, std::int64_t binCount) {
    std::vector<double> present;
    std::vector<std::size_t> rowOf;
    for (std::size_t row = 0; row < values.size(); ++row) {
        const std::optional<double> value = values[row];
        if (isUsable(value)) {
            present.push_back(*value);
            rowOf.push_back(row);
        }
    }
    const std::size_t n = present.size();
    const auto wanted = static_cast<std::size_t>(std::max<std::int64_t>(binCount, 1));
    const std::size_t k = std::max<std::size_t>(std::min(wanted, n), 1);
    const std::vector<std::uint32_t> order = ValueOrder::ascending(present);
    std::vector<std::size_t> bandOfRow(values.size(), noBand);
    std::vector<Bounds> bands(k);
    for (std::size_t p = 0; p < n; ++p) {
        const std::size_t band = std::min(p * k / n, k - 1);
        const double value = present[order[p]];
        bandOfRow[rowOf[order[p]]] = band;
        bands[band].smallest = std::min(bands[band].smallest, value);
        bands[band].largest = std::max(bands[band].largest, value);
    }
    std::vector<std::string> labels;
    for (const Bounds& band : bands) {
        labels.push_back(NumberText::integer(static_cast<std::int64_t>(labels.size()) + 1) + ": " +
                         text(band.smallest) + " to " + text(band.largest));
    }
    return labelled(values.size(), [&](std::size_t row) {
        return bandOfRow[row] == noBand ? nullptr : &labels[bandOfRow[row]];
    });
}

}  // namespace sorvane::BinnedVariableBuilder
