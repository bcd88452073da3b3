#include "SorvaneCore/Import/ScaleItemValues.h"

#include <algorithm>
#include <string>
#include <vector>

#include "SorvaneCore/Dataset/ColumnProfile.h"
#include "SorvaneCore/Dataset/MissingValue.h"
#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Import/ScaleItemKeywords.h"

namespace sorvane::ScaleItemClassifier {

namespace {

constexpr double longMeanCharacters = 40.0;
constexpr std::int64_t blanksOfShortText = 3;

bool isMissingToken(std::string_view normalized) {
    return std::find(missingTokens.begin(), missingTokens.end(), normalized) != missingTokens.end();
}

/// Calls `use` with each value, trimmed, and how often it occurs.
template <typename Use>
void forEachValue(const TextColumn& column, const Use& use) {
    const std::vector<std::uint64_t> counts =
        column.hasCodes() ? column.levelCounts() : std::vector<std::uint64_t>();
    for (std::size_t code = 0; code < column.levelCount(); ++code) {
        const std::optional<std::string> marker =
            MissingValue::isMissing(column.level(code))
                ? MissingValue::normalizedMarker(column.level(code))
                : std::nullopt;
        if (!marker || !isMissingToken(*marker)) {
            const std::uint64_t times = counts.empty() ? 1 : counts[code];
            use(UnicodeText::trimmed(column.level(code)), static_cast<std::int64_t>(times));
        }
    }
}

/// Up to `most` digits at the start, of any script; how many bytes they take.
std::size_t digitsLength(std::string_view text, int most) {
    std::size_t position = 0;
    for (int digits = 0; digits < most; ++digits) {
        const std::size_t length = UnicodeText::leadingDigitLength(text.substr(position));
        if (length == 0) {
            break;
        }
        position += length;
    }
    return position;
}

/// One to four digits, a separator and a digit at the start; what follows may be anything.
bool looksLikeDate(std::string_view value) {
    const std::size_t separator = digitsLength(value, 4);
    constexpr std::string_view separators = "-/:.";
    return separator > 0 && separator < value.size() &&
           separators.find(value[separator]) != separators.npos &&
           digitsLength(value.substr(separator + 1), 1) > 0;
}

void takeNumbers(const ColumnProfile& profile, ScaleItemValues& values) {
    values.count = profile.nonMissingCount;
    values.unique = profile.uniqueCount;
    values.numbers = profile.numericSummary;
    values.hasFraction = profile.hasFraction || profile.numericCount == 0;
    std::int64_t numericCount = profile.numericCount;
    for (const auto& [marker, count] : profile.missingMarkers) {
        if (isMissingToken(marker)) {
            continue;
        }
        // Missing to the dataset, a value here; "nan" even a number, though not a whole one.
        values.count += count;
        ++values.unique;
        double number = 0.0;
        if (readTrimmedNumber(marker, number)) {
            numericCount += count;
            values.hasFraction = true;
            values.numbers = values.numbers.value_or(NumericSummary{number, number, number});
        }
    }
    values.isMostlyNumeric = values.count > 0 && static_cast<double>(numericCount) >=
                                                     0.85 * static_cast<double>(values.count);
    if (!values.numbers || values.hasFraction || numericCount < values.count) {
        return;
    }
    const double minimum = values.numbers->minimum;
    const double maximum = values.numbers->maximum;
    if (minimum >= 0.0 && maximum <= 10.0 && maximum - minimum >= 1.0) {
        values.likertRange = LikertRange{.minimum = static_cast<std::int64_t>(minimum),
                                         .maximum = static_cast<std::int64_t>(maximum)};
    }
}

struct TextTraits {
    std::int64_t withAtSign = 0;
    std::int64_t dates = 0;
    std::int64_t withBlanks = 0;
    std::uint64_t bytes = 0;
};

TextTraits textTraits(const TextColumn& column) {
    TextTraits traits;
    forEachValue(column, [&traits](std::string_view value, std::int64_t times) {
        traits.withAtSign += value.find('@') != value.npos ? times : 0;
        traits.dates += looksLikeDate(value) ? times : 0;
        const auto blanks = std::count(value.begin(), value.end(), ' ');
        traits.withBlanks += blanks > blanksOfShortText ? times : 0;
        traits.bytes += value.size() * static_cast<std::uint64_t>(times);
    });
    return traits;
}

bool isLongOnAverage(const TextColumn& column, const TextTraits& traits, double count) {
    // A text has at most as many characters as bytes.
    if (static_cast<double>(traits.bytes) <= longMeanCharacters * count) {
        return false;
    }
    std::uint64_t characters = 0;
    forEachValue(column, [&characters](std::string_view value, std::int64_t times) {
        characters += UnicodeText::characterCount(value) * static_cast<std::uint64_t>(times);
    });
    return static_cast<double>(characters) / count > longMeanCharacters;
}

bool areBooleanValues(const TextColumn& column) {
    bool all = true;
    forEachValue(column, [&all](std::string_view value, std::int64_t) {
        all = all && std::find(booleanValues.begin(), booleanValues.end(),
                               UnicodeText::lowerCased(value)) != booleanValues.end();
    });
    return all;
}

}  // namespace

ScaleItemValues ScaleItemValues::of(const TextColumn& column) {
    ScaleItemValues values;
    takeNumbers(column.profile(), values);
    if (values.count == 0) {
        return values;
    }
    const TextTraits traits = textTraits(column);
    const auto count = static_cast<double>(values.count);
    values.allHoldAtSigns = traits.withAtSign == values.count;
    values.lookLikeDates = static_cast<double>(traits.dates) >= 0.8 * count;
    values.lookLikeLongText = static_cast<double>(traits.withBlanks) >= 0.5 * count ||
                              isLongOnAverage(column, traits, count);
    values.areBoolean = values.unique <= 2 && areBooleanValues(column);
    return values;
}

}  // namespace sorvane::ScaleItemClassifier
