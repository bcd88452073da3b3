#include "SorvaneCore/Numerics/SplitMix64.h"

#include <cstdint>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace sorvane
