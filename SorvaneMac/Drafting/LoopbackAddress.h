#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace sorvane {

/// Where a local server listens: an address of this machine that no network can be reached by.
struct LoopbackAddress {
    /// "127.0.0.1" or another address of 127.0.0.0/8, or "::1"; never a name, so that nothing has
    /// to be looked up.
    std::string host{};
    std::uint16_t port = 0;
    /// What stands before "/chat/completions", such as "/v1"; may be empty.
    std::string path{};

    bool operator==(const LoopbackAddress&) const = default;

    /// Reads "http://localhost:11434/v1" and its like; "localhost" is taken for 127.0.0.1.
    ///
    /// Input      the scheme may be left out, and is http; without a port it is 80; the path may
    ///            end in "/chat/completions"
    /// Failure    any host that is not of this machine, another scheme, a user name, a query, or a
    ///            text of another form -> absent
    static std::optional<LoopbackAddress> parse(std::string_view text);

    /// "127.0.0.1:11434", "[::1]:80".
    std::string authority() const;
};

}  // namespace sorvane
