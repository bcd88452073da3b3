#include "SorvaneCore/Project/RecordJson.h"

#include <array>
#include <limits>

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
    std::vector<std::uint8_t> bytes;
    std::uint32_t group = 0;
    int bits = 0;
    const std::size_t end = text.find_last_not_of('=') + 1;
    for (std::size_t i = 0; i < end; ++i) {
        const std::size_t value = alphabet.find(text[i]);
        if (value == std::string_view::npos) {
            failWanting("a base64 text");
        }
        group = group << 6 | static_cast<std::uint32_t>(value);
        bits += 6;
        if (bits >= 8) {
            bits -= 8;
            bytes.push_back(static_cast<std::uint8_t>(group >> bits & 0xFF));
        }
    }
    return bytes;
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

void failWanting(std::string_view what) {
    throw RecordJsonError("needs " + std::string(what));
}

}  // namespace record_json

}  // namespace sorvane
