#include "SorvaneCore/Project/RecordJson.h"

#include <array>
#include <limits>
#include <nlohmann/json.hpp>

namespace sorvane {

RecordJsonError RecordJsonError::within(const std::string& place) const {
    const std::string inner = what();
    const bool isVerdict = inner.starts_with("needs ") || inner.starts_with("is ");
    const std::string_view joint = isVerdict ? " " : inner.starts_with("[") ? "" : ".";
    return RecordJsonError(place + std::string(joint) + inner);
}

namespace record_json {

namespace {

constexpr std::string_view alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr std::uint8_t noValue = 0xFF;

/// By character.
std::array<std::uint8_t, 256> valuesOfAlphabet() {
    std::array<std::uint8_t, 256> values{};
    values.fill(noValue);
    for (std::size_t value = 0; value < alphabet.size(); ++value) {
        values[static_cast<std::uint8_t>(alphabet[value])] = static_cast<std::uint8_t>(value);
    }
    return values;
}

}  // namespace

std::string base64(const std::vector<std::uint8_t>& bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t count = std::min<std::size_t>(3, bytes.size() - i);
        std::uint32_t group = 0;
        for (std::size_t k = 0; k < 3; ++k) {
            group = group << 8 | (k < count ? bytes[i + k] : 0U);
        }
        for (std::size_t k = 0; k < 4; ++k) {
            text += k <= count ? alphabet[group >> (18 - 6 * k) & 0x3F] : '=';
        }
    }
    return text;
}

std::vector<std::uint8_t> bytesOfBase64(const std::string& text) {
    static const std::array<std::uint8_t, 256> values = valuesOfAlphabet();
    std::vector<std::uint8_t> bytes;
    bytes.reserve(text.size() / 4 * 3);
    std::uint32_t group = 0;
    int bits = 0;
    const std::size_t end = text.find_last_not_of('=') + 1;
    if (text.size() % 4 != 0 || text.size() - end > 2) {
        failWanting("a base64 text");
    }
    for (std::size_t i = 0; i < end; ++i) {
        const std::uint8_t value = values[static_cast<std::uint8_t>(text[i])];
        if (value == noValue) {
            failWanting("a base64 text");
        }
        group = group << 6 | value;
        bits += 6;
        if (bits >= 8) {
            bits -= 8;
            bytes.push_back(static_cast<std::uint8_t>(group >> bits & 0xFF));
        }
    }
    return bytes;
}

bool isNull(const Json& json) {
    return json.is_null();
}

bool booleanOf(const Json& json) {
    if (!json.is_boolean()) {
        failWanting("true or false");
    }
    return json.get<bool>();
}

double numberOf(const Json& json) {
    if (json.is_number()) {
        return json.get<double>();
    }
    if (json == "nan") {
        return std::numeric_limits<double>::quiet_NaN();
    }
    if (json == "inf") {
        return std::numeric_limits<double>::infinity();
    }
    if (json == "-inf") {
        return -std::numeric_limits<double>::infinity();
    }
    failWanting("a number");
}

std::optional<std::int64_t> wholeNumberOf(const Json& json) {
    // The first double beyond the range of 64 bits.
    constexpr double limit = 0x1p63;
    if (json.is_number_unsigned()) {
        const auto number = json.get<std::uint64_t>();
        return std::in_range<std::int64_t>(number)
                   ? std::optional(static_cast<std::int64_t>(number))
                   : std::nullopt;
    }
    if (json.is_number_integer()) {
        return json.get<std::int64_t>();
    }
    const double number = json.is_number_float() ? json.get<double>() : limit;
    const bool isWhole = number == std::trunc(number) && number >= -limit && number < limit;
    return isWhole ? std::optional(static_cast<std::int64_t>(number)) : std::nullopt;
}

std::optional<std::uint64_t> unsignedNumberOf(const Json& json) {
    return json.is_number_unsigned() ? std::optional(json.get<std::uint64_t>()) : std::nullopt;
}

const std::string& textOf(const Json& json, std::string_view wanted) {
    if (!json.is_string()) {
        failWanting(wanted);
    }
    return json.get_ref<const std::string&>();
}

std::vector<const Json*> elementsOf(const Json& json) {
    if (!json.is_array()) {
        failWanting("a list");
    }
    std::vector<const Json*> elements;
    elements.reserve(json.size());
    for (const Json& element : json) {
        elements.push_back(&element);
    }
    return elements;
}

std::vector<std::pair<const std::string*, const Json*>> membersOf(const Json& json) {
    if (!json.is_object()) {
        failWanting("an object");
    }
    std::vector<std::pair<const std::string*, const Json*>> members;
    members.reserve(json.size());
    for (const auto& [key, element] : json.get_ref<const Json::object_t&>()) {
        members.emplace_back(&key, &element);
    }
    return members;
}

const Json* memberOf(const Json& json, const char* name) {
    if (!json.is_object()) {
        failWanting("an object");
    }
    const auto entry = json.find(name);
    return entry == json.end() ? nullptr : &*entry;
}

void failWanting(std::string_view what) {
    throw RecordJsonError("needs " + std::string(what));
}

}  // namespace record_json

}  // namespace sorvane
