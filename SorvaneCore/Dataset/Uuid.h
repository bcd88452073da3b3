#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace sorvane {

/// A universally unique identifier; its text form is upper case.
struct Uuid {
    std::array<std::uint8_t, 16> bytes{};

    auto operator<=>(const Uuid&) const = default;

    /// A fresh random identifier (version 4), drawn from the operating system.
    static Uuid fresh();

    /// The identifier that a text of the form 8-4-4-4-12 spells, in either case; absent otherwise.
    static std::optional<Uuid> parse(std::string_view text);

    std::string text() const;
};

}  // namespace sorvane
