#include "SorvaneCore/Import/SPSS/SPSSNumbers.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::SPSSNumbers {

namespace {

/// Print formats of dates; those of times alone and of month names are not among them.
constexpr std::array dateFormatTypes = {20, 22, 23, 24, 25, 26, 27, 28, 29, 38, 39};

/// From 1582-10-14 to 1970-01-01, in seconds.
constexpr double secondsBefore1970 = 12219379200.0;
constexpr double secondsPerDay = 86400.0;
constexpr int firstYear = 1583;
constexpr int lastYear = 9998;

/// Half of the greatest double: what lies beyond stands for an open end.
constexpr double openEnd = 8.988465674311579e307;
/// Whole numbers below print without an exponent.
constexpr double plainIntegers = 1e15;

bool isDate(Format format) {
    return std::ranges::find(dateFormatTypes, format.type) != dateFormatTypes.end();
}

bool hasDecimals(int decimals) {
    return decimals >= 1 && decimals <= 10;
}

bool isPlainInteger(double value) {
    return std::fabs(value) < plainIntegers && value == std::trunc(value);
}

std::string padded(std::int64_t number, std::size_t width) {
    const std::string digits = NumberText::integer(number);
    return std::string(width - std::min(width, digits.size()), '0') + digits;
}

}  // namespace

Format effectiveFormat(Format format) {
    return {.type = isDate(format) ? dateFormatTypes.front() : 0,
            .decimals = hasDecimals(format.decimals) ? format.decimals : 0};
}

std::string cellText(double value, Format format) {
    if (isDate(format)) {
        if (std::optional<std::string> date = formatSPSSDate(value)) {
            return *std::move(date);
        }
    }
    return trimNumber(value, format.decimals);
}

std::string trimNumber(double value, int decimals) {
    if (isPlainInteger(value)) {
        return NumberText::integer(static_cast<std::int64_t>(value));
    }
    return hasDecimals(decimals) ? NumberText::fixed(value, decimals) : NumberText::shortest(value);
}

std::optional<std::string> formatSPSSDate(double seconds) {
    // The year 9998 ends before the day 3 million.
    const double day = std::floor((seconds - secondsBefore1970) / secondsPerDay);
    if (!(seconds > 0.0) || day > 3e6) {
        return std::nullopt;
    }
    const std::chrono::year_month_day date{
        std::chrono::sys_days(std::chrono::days(static_cast<int>(day)))};
    const int year = static_cast<int>(date.year());
    if (year < firstYear || year > lastYear) {
        return std::nullopt;
    }
    return padded(year, 4) + "-" + padded(static_cast<unsigned>(date.month()), 2) + "-" +
           padded(static_cast<unsigned>(date.day()), 2);
}

std::string missingText(double value) {
    if (value <= -openEnd) {
        return "LOWEST";
    }
    if (value >= openEnd) {
        return "HIGHEST";
    }
    return isPlainInteger(value) ? NumberText::integer(static_cast<std::int64_t>(value))
                                 : NumberText::shortest(value);
}

}  // namespace sorvane::SPSSNumbers
