#include "SorvaneMac/Drafting/LoopbackAddress.h"

#include <algorithm>
#include <charconv>

#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane {

namespace {

constexpr std::string_view scheme = "http://";
constexpr std::string_view endpoint = "/chat/completions";
constexpr std::string_view version4 = "127.0.0.1";
constexpr std::string_view version6 = "::1";
constexpr std::uint16_t httpPort = 80;

template <typename T>
std::optional<T> wholeNumber(std::string_view text) {
    T number{};
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isWhole = failure == std::errc() && end == text.data() + text.size();
    return isWhole ? std::optional(number) : std::nullopt;
}

/// Whether the text is an address of 127.0.0.0/8 in its four decimal parts.
bool isVersion4Loopback(std::string_view host) {
    std::size_t parts = 0;
    bool isLoopback = true;
    for (std::size_t start = 0; start <= host.size(); ++parts) {
        const std::size_t end = std::min(host.find('.', start), host.size());
        const std::string_view part = host.substr(start, end - start);
        // A leading zero would make some readers take the part for octal.
        const bool isPlain = part.size() == 1 || !part.starts_with('0');
        isLoopback = isLoopback && isPlain && wholeNumber<std::uint8_t>(part).has_value();
        start = end + 1;
    }
    return isLoopback && parts == 4 && host.starts_with("127.");
}

struct HostAndPort {
    std::string_view host;
    /// Empty where none is given.
    std::string_view port;
    bool isBracketed = false;
};

std::optional<HostAndPort> split(std::string_view authority) {
    HostAndPort found{.host = authority, .port = {}};
    std::size_t colon = authority.find(':');
    if (authority.starts_with('[')) {
        const std::size_t end = authority.find(']');
        if (end == std::string_view::npos) {
            return std::nullopt;
        }
        found.host = authority.substr(1, end - 1);
        found.isBracketed = true;
        colon = end + 1;
        if (colon < authority.size() && authority[colon] != ':') {
            return std::nullopt;
        }
    }
    if (colon < authority.size()) {
        if (!found.isBracketed) {
            found.host = authority.substr(0, colon);
        }
        found.port = authority.substr(colon + 1);
        if (found.port.empty()) {
            return std::nullopt;
        }
    }
    return found;
}

std::optional<std::string> loopbackHost(const HostAndPort& given) {
    if (given.isBracketed) {
        return given.host == version6 ? std::optional(std::string(version6)) : std::nullopt;
    }
    if (UnicodeText::lowerCased(given.host) == "localhost") {
        return std::string(version4);
    }
    return isVersion4Loopback(given.host) ? std::optional(std::string(given.host)) : std::nullopt;
}

/// The path without the endpoint and slashes at its end; absent where it has what no path has.
std::optional<std::string> basePath(std::string_view path) {
    const auto isUnfit = [](char each) {
        return each <= ' ' || each == '?' || each == '#' || each == 0x7F;
    };
    if (std::ranges::any_of(path, isUnfit)) {
        return std::nullopt;
    }
    const auto dropSlashes = [&path] {
        while (path.ends_with('/')) {
            path.remove_suffix(1);
        }
    };
    dropSlashes();
    if (path.ends_with(endpoint)) {
        path.remove_suffix(endpoint.size());
        dropSlashes();
    }
    return std::string(path);
}

}  // namespace

std::optional<LoopbackAddress> LoopbackAddress::parse(std::string_view text) {
    std::string_view rest = UnicodeText::trimmed(text);
    if (UnicodeText::lowerCased(rest.substr(0, scheme.size())) == scheme) {
        rest.remove_prefix(scheme.size());
    } else if (rest.find("://") != std::string_view::npos) {
        return std::nullopt;
    }
    const std::size_t slash = std::min(rest.find('/'), rest.size());
    const std::optional<HostAndPort> given = split(rest.substr(0, slash));
    const std::optional<std::string> path = basePath(rest.substr(slash));
    const std::optional<std::string> host = given ? loopbackHost(*given) : std::nullopt;
    if (!host || !path) {
        return std::nullopt;
    }
    const std::optional<std::uint16_t> port =
        given->port.empty() ? std::optional(httpPort) : wholeNumber<std::uint16_t>(given->port);
    if (!port || *port == 0) {
        return std::nullopt;
    }
    return LoopbackAddress{.host = *host, .port = *port, .path = *path};
}

std::string LoopbackAddress::authority() const {
    const std::string shown = host == version6 ? "[" + host + "]" : host;
    return shown + ":" + NumberText::integer(port);
}

}  // namespace sorvane
