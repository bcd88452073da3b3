#include "SorvaneCore/Numerics/NumberText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <locale.h>
#include <stdlib.h>

namespace sorvane::NumberText {

namespace {

std::optional<double> parseByCRoutine(std::string_view text) {
    static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", nullptr);
    const std::string terminated(text);
    char* end = nullptr;
    const double value = strtod_l(terminated.c_str(), &end, cLocale);
    // A NUL inside the cell ends the routine early, so the end is compared with the whole length.
    if (end != terminated.c_str() + terminated.size()) {
        return std::nullopt;
    }
    return value;
}

bool isCWhiteSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
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

std::optional<double> parse(std::string_view text) {
    if (text.empty() || isCWhiteSpace(text.front())) {
        return std::nullopt;
    }
    double value = 0.0;
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    if (result.ec == std::errc() && result.ptr == end) {
        return value;
    }
    return parseByCRoutine(text);
}

std::string fixed(double value, int decimals) {
    return printed(value, std::chars_format::fixed, decimals);
}

std::string general(double value, int significantDigits) {
    return printed(value, std::chars_format::general, significantDigits);
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
    const std::string text = fixed(p, 3);
    return text.starts_with("0.") ? text.substr(1) : text;
}

}  // namespace sorvane::NumberText
