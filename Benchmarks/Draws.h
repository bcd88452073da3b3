#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <vector>

namespace sorvane {

/// Random draws that stay the same for as long as this file does.
class Draws {
public:
    explicit Draws(std::uint64_t seed) : state_(seed) {}

    std::uint64_t bits() {
        state_ += 0x9E3779B97F4A7C15U;
        std::uint64_t mixed = state_;
        mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9U;
        mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBU;
        return mixed ^ (mixed >> 31);
    }
    /// In (0, 1].
    double share() { return static_cast<double>((bits() >> 11) + 1) * 0x1p-53; }
    std::size_t below(std::size_t count) { return bits() % count; }
    double normal() {
        return std::sqrt(-2.0 * std::log(share())) * std::cos(2.0 * std::numbers::pi * share());
    }
    /// One row of items answered 1 to 5, the item j on the factor j modulo the number of factors;
    /// one in fifty is missing, which is 0.
    std::vector<int> likertAnswers(std::size_t items, std::size_t factorCount) {
        constexpr double loading = 0.7;
        constexpr std::array<double, 4> cuts = {-1.5, -0.5, 0.5, 1.5};
        const double uniqueness = std::sqrt(1.0 - loading * loading);
        std::vector<double> factors(factorCount);
        for (double& factor : factors) {
            factor = normal();
        }
        std::vector<int> answers(items, 1);
        for (std::size_t j = 0; j < items; ++j) {
            const double position = loading * factors[j % factorCount] + uniqueness * normal();
            for (const double cut : cuts) {
                answers[j] += position >= cut ? 1 : 0;
            }
            answers[j] = share() < 0.02 ? 0 : answers[j];
        }
        return answers;
    }

private:
    std::uint64_t state_;
};

}  // namespace sorvane
