#include "SorvaneMac/Report/RTFLexer.h"

#include <algorithm>

namespace sorvane {
namespace {

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::optional<std::uint8_t> hexDigit(char c) {
    if (isDigit(c)) {
        return static_cast<std::uint8_t>(c - '0');
    }
    if (c >= 'a' && c <= 'f') {
        return static_cast<std::uint8_t>(c - 'a' + 10);
    }
    if (c >= 'A' && c <= 'F') {
        return static_cast<std::uint8_t>(c - 'A' + 10);
    }
    return std::nullopt;
}

/// Beyond any number of the format; larger ones are cut to it.
constexpr int largestParameter = 100'000'000;

}  // namespace

std::vector<std::uint8_t> bytesOfHex(std::string_view text) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(text.size() / 2);
    std::optional<std::uint8_t> high;
    for (const char c : text) {
        const auto digit = hexDigit(c);
        if (digit && high) {
            bytes.push_back(static_cast<std::uint8_t>(*high * 16U + *digit));
            high.reset();
        } else if (digit) {
            high = digit;
        }
    }
    return bytes;
}

std::optional<RTFToken> RTFLexer::next() {
    while (at_ < rtf_.size() && (rtf_[at_] == '\r' || rtf_[at_] == '\n')) {
        ++at_;
    }
    if (at_ == rtf_.size()) {
        return std::nullopt;
    }
    switch (rtf_[at_]) {
        case '{':
            ++at_;
            return RTFToken{.kind = RTFTokenKind::groupStart};
        case '}':
            ++at_;
            return RTFToken{.kind = RTFTokenKind::groupEnd};
        case '\\':
            ++at_;
            return control();
        default:
            break;
    }
    const std::size_t end = std::min(rtf_.find_first_of("{}\\\r\n", at_), rtf_.size());
    const std::string_view text = rtf_.substr(at_, end - at_);
    at_ = end;
    return RTFToken{.kind = RTFTokenKind::text, .text = text};
}

RTFToken RTFLexer::control() {
    if (at_ == rtf_.size()) {
        return {};
    }
    const std::size_t start = at_;
    if (!isLetter(rtf_[at_])) {
        ++at_;
        return rtf_[start] == '\''
                   ? hexByte()
                   : RTFToken{.kind = RTFTokenKind::control, .text = rtf_.substr(start, 1)};
    }
    while (at_ < rtf_.size() && isLetter(rtf_[at_])) {
        ++at_;
    }
    RTFToken token{.kind = RTFTokenKind::control, .text = rtf_.substr(start, at_ - start)};
    token.parameter = parameter();
    if (at_ < rtf_.size() && rtf_[at_] == ' ') {
        ++at_;
    }
    if (token.text == "bin") {
        const int length = std::max(token.parameter.value_or(0), 0);
        at_ += std::min(rtf_.size() - at_, static_cast<std::size_t>(length));
    }
    return token;
}

RTFToken RTFLexer::hexByte() {
    if (at_ + 2 > rtf_.size()) {
        at_ = rtf_.size();
        return {};
    }
    const auto high = hexDigit(rtf_[at_]);
    const auto low = hexDigit(rtf_[at_ + 1]);
    if (!high || !low) {
        return {};
    }
    at_ += 2;
    return {.kind = RTFTokenKind::hexByte, .text = {}, .parameter = *high * 16 + *low};
}

std::optional<int> RTFLexer::parameter() {
    std::size_t at = at_;
    const bool negative = at < rtf_.size() && rtf_[at] == '-';
    at += negative ? 1 : 0;
    if (at == rtf_.size() || !isDigit(rtf_[at])) {
        return std::nullopt;
    }
    int value = 0;
    for (; at < rtf_.size() && isDigit(rtf_[at]); ++at) {
        value = std::min(value * 10 + (rtf_[at] - '0'), largestParameter);
    }
    at_ = at;
    return negative ? -value : value;
}

}  // namespace sorvane
