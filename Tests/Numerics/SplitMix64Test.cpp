#include "SorvaneCore/Numerics/SplitMix64.h"

#include <cstdint>
#include <fstream>
#include <limits>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "SorvaneCore/Numerics/FastRemainder.h"

namespace sorvane {
namespace {

static_assert(SplitMix64(0).next() == 0xe220a8397b1dcdafU);

TEST(SplitMix64, DrawsThePublishedSequences) {
    const auto reference =
        nlohmann::json::parse(std::ifstream(SORVANE_SOURCE_DIR "/Tests/Reference/"
                                                               "dist-splitmix64.json"))["expected"];
    const std::vector<std::pair<std::string, std::uint64_t>> seeds = {
        {"seed0", 0},
        {"seed1", 1},
        {"seedGolden", 0x9e3779b97f4a7c15U},
        {"seed20260803", 20260803}};
    for (const auto& [key, seed] : seeds) {
        SplitMix64 random(seed);
        for (const auto& draw : reference[key]) {
            EXPECT_EQ(random.next(), std::stoull(draw.get<std::string>(), nullptr, 16)) << key;
        }
    }
    SplitMix64 remainders(20260803);
    for (const auto& draw : reference["mod123Seed20260803"]) {
        EXPECT_EQ(remainders.next() % 123, draw.get<std::uint64_t>());
    }
    SplitMix64 shares(1);
    for (const auto& draw : reference["unitSeed1"]) {
        EXPECT_NEAR(shares.nextUnitDouble(), draw.get<double>(), 1e-15);
    }
}

TEST(SplitMix64, GoesPastDraws) {
    SplitMix64 stepped(77);
    for (int i = 0; i < 1000; ++i) {
        stepped.next();
    }
    SplitMix64 skipped(77);
    skipped.skip(1000);
    EXPECT_EQ(skipped, stepped);
}

TEST(FastRemainder, EqualsTheRemainderOfTheDivision) {
    constexpr std::uint64_t largest = std::numeric_limits<std::uint64_t>::max();
    SplitMix64 draws(1);
    std::vector<std::uint64_t> divisors = {
        1, 2, 3, 7, 1000, 4096, 1U << 31U, largest, largest - 1, (largest >> 1U) + 1, largest / 3};
    for (int i = 0; i < 200; ++i) {
        divisors.push_back((draws.next() >> draws.next() % 63) | 1U);
    }
    for (const std::uint64_t divisor : divisors) {
        const FastRemainder remainder(divisor);
        std::vector<std::uint64_t> values = {0,
                                             1,
                                             divisor - 1,
                                             divisor,
                                             largest,
                                             largest - 1,
                                             largest / divisor * divisor,
                                             largest / divisor * divisor - 1};
        for (int i = 0; i < 50; ++i) {
            values.push_back(draws.next());
        }
        for (const std::uint64_t value : values) {
            ASSERT_EQ(remainder(value), value % divisor) << value << " by " << divisor;
        }
    }
}

}  // namespace
}  // namespace sorvane
