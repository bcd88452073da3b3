#include "SorvaneCore/Dataset/ColumnProfile.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "SorvaneCore/Dataset/DistinctTexts.h"
#include "SorvaneCore/Dataset/MissingValue.h"
#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneCore/Dataset/UnicodeText.h"

namespace sorvane {

namespace {

constexpr std::size_t sampleLimit = 4;

/// A sum with the rounding error of every addition and product carried along.
class CompensatedSum {
public:
    void add(double value, std::uint64_t times) {
        if (times == 1) {
            add(value);
            return;
        }
        const auto weight = static_cast<double>(times);
        const double product = value * weight;
        error_ += std::fma(value, weight, -product);
        add(product);
    }
    /// Overflow and infinities leave no error term to speak of.
    double value() const { return std::isfinite(sum_) ? sum_ + error_ : sum_; }

private:
    void add(double value) {
        const double sum = sum_ + value;
        const double shadow = sum - sum_;
        error_ += (sum_ - (sum - shadow)) + (value - shadow);
        sum_ = sum;
    }

    double sum_ = 0.0;
    double error_ = 0.0;
};

/// Takes in the levels of a column one by one.
class Profiling {
public:
    explicit Profiling(std::size_t levelCount) : distinct_(levelCount) {}

    void addLevel(std::uint32_t code, std::string_view cell, std::uint64_t times) {
        if (MissingValue::isMissing(cell)) {
            addMissing(code, cell, times);
            return;
        }
        profile_.nonMissingCount += static_cast<std::int64_t>(times);
        profile_.totalBytes += cell.size() * times;
        profile_.longestBytes = std::max<std::uint64_t>(profile_.longestBytes, cell.size());
        const std::string_view trimmed = UnicodeText::trimmed(cell);
        double number = 0.0;
        if (readTrimmedNumber(trimmed, number)) {
            addNumber(number, times);
        }
        distinct_.add(UnicodeText::lowerCased(trimmed, scratch_));
    }

    ColumnProfile finish() {
        profile_.uniqueCount = static_cast<std::int64_t>(distinct_.count());
        if (profile_.numericCount > 0) {
            profile_.numericSummary =
                NumericSummary{.minimum = minimum_,
                               .maximum = maximum_,
                               .mean = sum_.value() / static_cast<double>(profile_.numericCount)};
        }
        return std::move(profile_);
    }

private:
    void addMissing(std::uint32_t code, std::string_view cell, std::uint64_t times) {
        profile_.missingCount += static_cast<std::int64_t>(times);
        profile_.missingLevels.push_back(code);
        if (cell.empty()) {
            blankCount() += static_cast<std::int64_t>(times);
            return;
        }
        profile_.missingMarkers[MissingValue::normalizedMarker(cell).value_or(std::string())] +=
            static_cast<std::int64_t>(times);
    }
    std::int64_t& blankCount() {
        if (blankCount_ == nullptr) {
            blankCount_ = &profile_.missingMarkers[std::string()];
        }
        return *blankCount_;
    }
    void addNumber(double number, std::uint64_t times) {
        if (profile_.numericCount == 0) {
            minimum_ = number;
            maximum_ = number;
        }
        profile_.numericCount += static_cast<std::int64_t>(times);
        // A cell such as "nan" counts as a number, but has no place in an order.
        minimum_ = std::fmin(minimum_, number);
        maximum_ = std::fmax(maximum_, number);
        sum_.add(number, times);
        profile_.hasFraction = profile_.hasFraction || number != std::round(number);
    }

    ColumnProfile profile_;
    DistinctTexts distinct_;
    CompensatedSum sum_;
    double minimum_ = 0.0;
    double maximum_ = 0.0;
    /// Blank cells are the common marker: their place in the map is looked up once.
    std::int64_t* blankCount_ = nullptr;
    std::string scratch_;
};

std::vector<std::string> samples(const TextColumn& column, const ColumnProfile& profile) {
    std::vector<std::string> result;
    const auto wanted = std::min<std::size_t>(sampleLimit, profile.nonMissingCount);
    for (std::size_t row = 0; result.size() < wanted; ++row) {
        if (!MissingValue::isMissing(column[row])) {
            result.emplace_back(column[row]);
        }
    }
    return result;
}

}  // namespace

ColumnProfile ColumnProfile::of(const TextColumn& column) {
    const std::size_t levelCount = column.levelCount();
    Profiling profiling(levelCount);
    if (column.hasCodes()) {
        const std::vector<std::uint64_t> counts = column.levelCounts();
        for (std::size_t code = 0; code < levelCount; ++code) {
            profiling.addLevel(static_cast<std::uint32_t>(code), column.level(code), counts[code]);
        }
    } else {
        for (std::size_t row = 0; row < levelCount; ++row) {
            profiling.addLevel(static_cast<std::uint32_t>(row), column.level(row), 1);
        }
    }
    ColumnProfile profile = profiling.finish();
    profile.sampleValues = samples(column, profile);
    return profile;
}

CharacterCounts characterCounts(const TextColumn& column) {
    const std::vector<std::uint64_t> counts =
        column.hasCodes() ? column.levelCounts() : std::vector<std::uint64_t>();
    CharacterCounts result;
    for (std::size_t code = 0; code < column.levelCount(); ++code) {
        const std::string_view cell = column.level(code);
        if (!MissingValue::isMissing(cell)) {
            const std::uint64_t length = UnicodeText::characterCount(cell);
            result.total += length * (counts.empty() ? 1 : counts[code]);
            result.longest = std::max(result.longest, length);
        }
    }
    return result;
}

}  // namespace sorvane
