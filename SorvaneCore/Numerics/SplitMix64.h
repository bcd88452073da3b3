#pragma once

#include <cstdint>

namespace sorvane {

/// The one source of random numbers: a sequence that its seed settles, the same on every machine.
///
/// Method     a 64-bit counter that grows by a fixed odd number, mixed by two multiplications
/// Cost       about 1 ns a draw; a value belongs to one run and is never shared between threads
/// Reference  Steele, Lea and Flood (2014), Fast Splittable Pseudorandom Number Generators
class SplitMix64 {
public:
    constexpr explicit SplitMix64(std::uint64_t seed) : state_(seed) {}

    constexpr std::uint64_t next() {
        skip(1);
        std::uint64_t z = state_;
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9U;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebU;
        return z ^ (z >> 31);
    }

    /// Goes past that many draws, as if they had been taken.
    constexpr void skip(std::uint64_t draws) { state_ += draws * 0x9e3779b97f4a7c15U; }

    /// In [0, 1), a multiple of 2^-53.
    constexpr double nextUnitDouble() { return static_cast<double>(next() >> 11) * 0x1p-53; }

    constexpr bool operator==(const SplitMix64&) const = default;

private:
    std::uint64_t state_;
};

}  // namespace sorvane
