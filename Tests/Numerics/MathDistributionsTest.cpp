#include "SorvaneCore/Numerics/MathDistributions.h"

#include <cmath>
#include <fstream>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>

#include <gtest/gtest.h>

#include "SorvaneCore/Numerics/NormalQuantile.h"
#include "Tests/Numerics/SpecialValues.h"
#include "Tests/Support/Closeness.h"

namespace sorvane {
namespace {

using namespace MathDistributions;
using nlohmann::json;
using test::closeTo;

using test::infinity;
using test::notANumber;

struct ReferenceTable {
    std::string file;
    std::function<double(const json& row)> compute;
};

void PrintTo(const ReferenceTable& table, std::ostream* out) {
    *out << table.file;
}

class DistributionReference : public testing::TestWithParam<ReferenceTable> {};

TEST_P(DistributionReference, Agrees) {
    std::ifstream file(SORVANE_SOURCE_DIR "/Tests/Reference/" + GetParam().file);
    ASSERT_TRUE(file);
    const json reference = json::parse(file);
    const json& allowed = reference["tolerance"]["*"];
    const test::Tolerance tolerance{.relative = allowed["rel"], .absolute = allowed["abs"]};
    ASSERT_FALSE(reference["expected"]["table"].empty());
    for (const json& row : reference["expected"]["table"]) {
        EXPECT_TRUE(closeTo(GetParam().compute(row), row["value"], tolerance)) << row;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Tables,
    DistributionReference,
    testing::Values(ReferenceTable{"dist-chisq.json",
                                   [](const json& r) {
                                       return chiSquareRightTailPValue(r["x"], r["df"]);
                                   }},
                    ReferenceTable{"dist-f-2.json",
                                   [](const json& r) {
                                       return fRightTailPValue(r["f"], r["df1"], r["df2"]);
                                   }},
                    ReferenceTable{"dist-t.json",
                                   [](const json& r) {
                                       return studentTPValue(r["t"], r["df"]);
                                   }},
                    ReferenceTable{"dist-tcrit-2.json",
                                   [](const json& r) {
                                       return studentTCritical(r["twoTailedAlpha"], r["df"]);
                                   }},
                    ReferenceTable{"dist-ptukey.json",
                                   [](const json& r) {
                                       return studentizedRangeCDF(r["q"], r["k"], r["df"]);
                                   }},
                    ReferenceTable{"dist-qtukey-2.json",
                                   [](const json& r) {
                                       return studentizedRangeQuantile(r["p"], r["k"], r["df"]);
                                   }},
                    ReferenceTable{"dist-probit.json", [](const json& r) {
                                       return inverseStandardNormalCDF(r["p"]);
                                   }}));

TEST(MathDistributions, EndsOfTheDomain) {
    const struct {
        int line;
        double got;
        double expected;
    } cases[] = {
        {__LINE__, chiSquareRightTailPValue(0, 1), 1},
        {__LINE__, chiSquareRightTailPValue(infinity, 3), 0},
        {__LINE__, chiSquareRightTailPValue(200, 1), 0},
        {__LINE__, chiSquareRightTailPValue(-1e-9, 1), notANumber},
        {__LINE__, chiSquareRightTailPValue(1, 0), notANumber},
        {__LINE__, chiSquareRightTailPValue(notANumber, 1), notANumber},
        {__LINE__, fRightTailPValue(0, 2, 5), 1},
        {__LINE__, fRightTailPValue(infinity, 2, 5), 0},
        {__LINE__, fRightTailPValue(1.7e308, 1, 1e308), 0},
        {__LINE__, fRightTailPValue(1.797e308, 1, 1e305), 0},
        {__LINE__, fRightTailPValue(1.7, 3, infinity), chiSquareRightTailPValue(1.7 * 3, 3)},
        {__LINE__, fRightTailPValue(1, 2, notANumber), notANumber},
        {__LINE__, fRightTailPValue(-1, 2, 5), notANumber},
        {__LINE__, studentTPValue(0, 10), 1},
        {__LINE__, studentTPValue(-infinity, 10), 0},
        {__LINE__, studentTPValue(1.5, infinity), 2 * (1 - standardNormalCDF(1.5))},
        {__LINE__, studentTPValue(notANumber, infinity), notANumber},
        {__LINE__, studentTPValue(1, 0), notANumber},
        {__LINE__, studentTCDF(-2.5, 7) + studentTCDF(2.5, 7), 1},
        {__LINE__, studentTCDF(-infinity, 7), 0},
        {__LINE__, studentTCritical(0, 5), notANumber},
        {__LINE__, studentTCritical(0.05, 0), notANumber},
        {__LINE__, standardRangeCDF(1, 1), 1},
        {__LINE__, standardRangeCDF(0, 1), 0},
        {__LINE__, standardRangeCDF(-1, 3), 0},
        {__LINE__, standardRangeCDF(infinity, 3), 1},
        {__LINE__, studentizedRangeCDF(notANumber, 3, 9), 1},
        {__LINE__, studentizedRangeCDF(-infinity, 3, 9), 0},
        {__LINE__, studentizedRangeCDF(3, 1, 9), notANumber},
        {__LINE__, studentizedRangeCDF(3, 3, 1.99), notANumber},
        {__LINE__, studentizedRangeCDF(3.3, 4, 25001), standardRangeCDF(3.3, 4)},
        {__LINE__, studentizedRangeQuantile(1, 3, 9), notANumber},
    };
    for (const auto& c : cases) {
        EXPECT_TRUE(closeTo(c.got, c.expected)) << "line " << c.line;
    }
    EXPECT_NE(studentizedRangeCDF(3.3, 4, 25000), standardRangeCDF(3.3, 4));
}

TEST(MathDistributions, StaysCloseForManyDegreesOfFreedom) {
    // Figures of R 4.2.2: pchisq, pf, qt, pt.
    EXPECT_NEAR(chiSquareRightTailPValue(1010, 1000), 0.406033150947736, 1e-12);
    EXPECT_NEAR(fRightTailPValue(1.1, 300, 1000), 0.147151256719403, 1e-10);
    EXPECT_NEAR(studentTCritical(0.05, 1e6), 1.95996635681411, 1e-8);
    EXPECT_NEAR(studentTPValue(2, 1e4), 0.0455272606614355, 1e-10);
}

TEST(MathDistributions, RangeOfTwoIsANormalDifference) {
    for (const double q : {1e-6, 0.3, 1.0, 2.77, 6.0, 11.0}) {
        const double expected = 2.0 * standardNormalCDF(q / std::sqrt(2.0)) - 1.0;
        EXPECT_TRUE(closeTo(standardRangeCDF(q, 2), expected, {1e-12, 1e-15})) << q;
    }
}

TEST(MathDistributions, RangeQuantileIsTheOneThatBisectionFinds) {
    const auto bisected = [](double p, int k, double df) {
        double low = 0.5;
        double high = 15.0;
        for (int i = 0; i < 26; ++i) {
            const double middle = (low + high) / 2.0;
            (studentizedRangeCDF(middle, k, df) < p ? low : high) = middle;
        }
        return (low + high) / 2.0;
    };
    for (const double p : {1e-6, 0.2, 0.95, 0.99999, 0.9999999}) {
        for (const double df : {2.0, 7.5, 120.0, 20000.0, 30000.0}) {
            EXPECT_EQ(studentizedRangeQuantile(p, 3, df), bisected(p, 3, df)) << p << ' ' << df;
        }
    }
    EXPECT_NEAR(studentizedRangeQuantile(0.999, 10, 2), 15.0, 1e-6);
    EXPECT_NEAR(studentizedRangeQuantile(1e-12, 2, 20), 0.5, 1e-6);
}

TEST(MathDistributions, AFamilyOfRangesSharesTheirValues) {
    for (const int k : {2, 5, 20, 100}) {
        StudentizedRangeFamily family(k);
        for (const double df : {2.0, 7.3, 60.0, 900.0, 30000.0}) {
            for (const double q : {-1.0, 0.01, 0.5, 1.7, 3.3, 4.999, 8.0, 20.0, 600.0}) {
                EXPECT_TRUE(closeTo(family.cdf(q, df), studentizedRangeCDF(q, k, df), {0.0, 1e-13}))
                    << q << ' ' << k << ' ' << df;
            }
            EXPECT_NEAR(family.quantile(0.95, df), studentizedRangeQuantile(0.95, k, df), 3e-7);
        }
    }
    EXPECT_TRUE(std::isnan(StudentizedRangeFamily(1).cdf(3, 9)));
    EXPECT_TRUE(std::isnan(StudentizedRangeFamily(3).cdf(3, 1.9)));
}

}  // namespace
}  // namespace sorvane
