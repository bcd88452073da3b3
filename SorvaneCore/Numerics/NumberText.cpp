#include "SorvaneCore/Numerics/NumberText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <locale.h>
#include <stdlib.h>

#include "SorvaneCore/Numerics/LeadingZero.h"

namespace sorvane::NumberText {

namespace {

bool readByCRoutine(std::string_view text, double& number) {
    static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", nullptr);
    const std::string terminated(text);
    char* end = nullptr;
    number = strtod_l(terminated.c_str(), &end, cLocale);
    // A NUL inside the cell ends the routine early, so the end is compared with the whole length.
    return end == terminated.c_str() + terminated.size();
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// The number of a plain decimal such as "-12.75". With at most 15 digits it is a quotient of two
/// numbers that a double holds exactly, so one division rounds it correctly. False for any other
/// text, number or not.
bool readShortDecimal(std::string_view text, double& number) {
    constexpr std::size_t mostDigits = 15;
    static constexpr std::array<double, mostDigits + 1> powers = {
        1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    const bool isNegative = text.front() == '-';
    std::size_t position = isNegative ? 1 : 0;
    if (text.size() - position > mostDigits + 1) {
        return false;
    }
    std::int64_t digits = 0;
    const std::size_t firstDigit = position;
    for (; position < text.size() && isDigit(text[position]); ++position) {
        digits = digits * 10 + (text[position] - '0');
    }
    std::size_t digitCount = position - firstDigit;
    std::size_t decimals = 0;
    if (position < text.size() && text[position] == '.') {
        const std::size_t firstDecimal = ++position;
        for (; position < text.size() && isDigit(text[position]); ++position) {
            digits = digits * 10 + (text[position] - '0');
        }
        decimals = position - firstDecimal;
        digitCount += decimals;
    }
    if (position < text.size() || digitCount == 0 || digitCount > mostDigits) {
        return false;
    }
    const double magnitude = static_cast<double>(digits) / powers[decimals];
    number = isNegative ? -magnitude : magnitude;
    return true;
}

bool isCWhiteSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

constexpr std::array<double, 16> powersOfTen = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

/// The digits of |value| * 10^decimals, rounded; false where rounding cannot be told from one
/// product, whose last bit is in doubt.
bool scaledDigits(double value, int decimals, std::uint64_t& digits) {
    constexpr double mostDigits = 0x1p52;
    constexpr double doubt = 0x1p-52;
    const double scaled = std::fabs(value) * powersOfTen[static_cast<std::size_t>(decimals)];
    if (!(scaled < mostDigits)) {
        return false;
    }
    const double whole = std::floor(scaled);
    const double fraction = scaled - whole;
    digits = static_cast<std::uint64_t>(whole) + (fraction > 0.5 ? 1U : 0U);
    return std::fabs(fraction - 0.5) > scaled * doubt;
}

/// Digits with a point before the last `decimals` of them.
std::string pointed(bool isNegative, std::uint64_t digits, int decimals) {
    std::array<char, 32> buffer;
    char* begin = buffer.data() + buffer.size();
    for (int position = 0; digits > 0 || position <= decimals; ++position) {
        if (position == decimals && decimals > 0) {
            *--begin = '.';
        }
        *--begin = static_cast<char>('0' + digits % 10);
        digits /= 10;
    }
    if (isNegative) {
        *--begin = '-';
    }
    return {begin, buffer.data() + buffer.size()};
}

/// How many decimals "%.Ng" has before trailing zeros go; negative where it may use an exponent.
int generalDecimals(double value, int significantDigits) {
    constexpr double least = 1e-4;
    const double magnitude = std::fabs(value);
    if (!(magnitude >= least) || significantDigits > 10 ||
        !(magnitude < powersOfTen[static_cast<std::size_t>(significantDigits - 1)])) {
        return -1;
    }
    int decimals = significantDigits - 1;
    for (std::size_t power = 1; magnitude >= powersOfTen[power]; ++power) {
        --decimals;
    }
    for (double bound = 1.0; magnitude < bound && decimals < significantDigits + 3; bound /= 10.0) {
        ++decimals;
    }
    return decimals;
}

template <typename... Format>
std::string printed(double value, Format... format) {
    // 309 digits before the point and up to 300 after it is the longest fixed text asked for.
    std::array<char, 700> buffer;
    const auto result =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format...);
    return {buffer.data(), result.ptr};
}

}  // namespace

bool read(std::string_view text, double& number) {
    if (text.empty() || isCWhiteSpace(text.front())) {
        return false;
    }
    if (readShortDecimal(text, number)) {
        return true;
    }
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    return (result.ec == std::errc() && result.ptr == end) || readByCRoutine(text, number);
}

std::string fixed(double value, int decimals) {
    constexpr int mostQuickDecimals = 10;
    std::uint64_t digits = 0;
    if (decimals >= 0 && decimals <= mostQuickDecimals && scaledDigits(value, decimals, digits)) {
        return pointed(std::signbit(value), digits, decimals);
    }
    return printed(value, std::chars_format::fixed, decimals);
}

std::string general(double value, int significantDigits) {
    const int decimals = generalDecimals(value, significantDigits);
    std::uint64_t digits = 0;
    if (decimals < 0 || !scaledDigits(value, decimals, digits)) {
        return printed(value, std::chars_format::general, significantDigits);
    }
    std::string text = pointed(value < 0.0, digits, decimals);
    if (decimals > 0) {
        text.erase(text.find_last_not_of('0') + 1);
        text.erase(text.find_last_not_of('.') + 1);
    }
    return text;
}

std::string powerOfTen(double value, int decimals) {
    static constexpr std::array<std::string_view, 10> raised = {"⁰", "¹", "²", "³", "⁴",
                                                                "⁵", "⁶", "⁷", "⁸", "⁹"};
    const std::string text = printed(value, std::chars_format::scientific, decimals);
    const std::size_t mark = text.find('e');
    std::string result = text.substr(0, mark) + " × 10";
    if (text[mark + 1] == '-') {
        result += "⁻";
    }
    // The exponent has two digits at least.
    const std::size_t first = text[mark + 2] == '0' ? mark + 3 : mark + 2;
    for (const char digit : text.substr(first)) {
        result += raised[static_cast<std::size_t>(digit - '0')];
    }
    return result;
}

std::string shortest(double value) {
    if (std::isnan(value)) {
        return "nan";
    }
    return printed(value);
}

std::string integer(std::int64_t value) {
    std::array<char, 24> buffer;
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    return {buffer.data(), result.ptr};
}

std::string unsignedInteger(std::uint64_t value) {
    std::array<char, 24> buffer;
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    return {buffer.data(), result.ptr};
}

std::string derivedValue(double value) {
    if (!std::isfinite(value)) {
        return {};
    }
    if (value == std::trunc(value)) {
        return fixed(value == 0.0 ? 0.0 : value, 0);
    }
    std::string text = fixed(value, 4);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') {
        text.pop_back();
    }
    return text;
}

std::string clean(double value) {
    if (value == std::round(value)) {
        return fixed(value == 0.0 ? 0.0 : value, 0);
    }
    return fixed(value, 2);
}

std::string pValue(double p) {
    if (p < 0.001) {
        return "< .001";
    }
    return withoutLeadingZero(fixed(p, 3));
}

}  // namespace sorvane::NumberText
