#pragma once

#include <cstdint>
#include <optional>

#include "SorvaneCore/Dataset/DataVariable.h"
#include "SorvaneCore/Dataset/TextColumn.h"

namespace sorvane::ScaleItemClassifier {

struct LikertRange {
    std::int64_t minimum = 0;
    std::int64_t maximum = 0;

    bool operator==(const LikertRange&) const = default;
};

/// What the scale item classifier looks at in the cells of one column: those that are no missing
/// token of its own, trimmed.
struct ScaleItemValues {
    std::int64_t count = 0;
    /// Distinct values after lower-casing.
    std::int64_t unique = 0;
    /// Of the values that parse as numbers; absent without one.
    std::optional<NumericSummary> numbers;
    bool hasFraction = false;
    /// At least 0.85 of the values parse.
    bool isMostlyNumeric = false;
    /// All values are whole numbers from 0 to 10 that span at least 1.
    std::optional<LikertRange> likertRange;
    bool allHoldAtSigns = false;
    bool lookLikeDates = false;
    bool lookLikeLongText = false;
    /// One or two distinct values, of yes, no, true, 0 and their like.
    bool areBoolean = false;

    static ScaleItemValues of(const TextColumn& column);
};

}  // namespace sorvane::ScaleItemClassifier
