#include "SorvaneCore/Numerics/NumberText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "Tests/Numerics/SpecialValues.h"

namespace sorvane {
namespace {

using test::infinity;

TEST(NumberText, ParsesWhatTheCRoutineParses) {
    const struct {
        int line;
        std::string_view text;
        std::optional<double> value;
    } cases[] = {
        {__LINE__, "12.5", 12.5},
        {__LINE__, "+3", 3.0},
        {__LINE__, "-.5e1", -5.0},
        {__LINE__, "5.", 5.0},
        {__LINE__, "0x1p4", 16.0},
        {__LINE__, "1e400", infinity},
        {__LINE__, "-1e400", -infinity},
        {__LINE__, "1e-400", 0.0},
        {__LINE__, "INF", infinity},
        {__LINE__, "-infinity", -infinity},
        {__LINE__, "", std::nullopt},
        {__LINE__, "+", std::nullopt},
        {__LINE__, "+-3", std::nullopt},
        {__LINE__, "1,5", std::nullopt},
        {__LINE__, "+1,5", std::nullopt},
        {__LINE__, "1 ", std::nullopt},
        {__LINE__, " 1", std::nullopt},
        {__LINE__, "\t+1", std::nullopt},
        {__LINE__, "1e", std::nullopt},
        {__LINE__, "12abc", std::nullopt},
        {__LINE__, std::string_view("+1\0", 3), std::nullopt},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(NumberText::parse(c.text), c.value) << "line " << c.line;
    }
    EXPECT_TRUE(std::isnan(NumberText::parse("NaN").value_or(0.0)));
}

TEST(NumberText, PrintsByTheRulesOfTheCRoutine) {
    EXPECT_EQ(NumberText::fixed(0.125, 2), "0.12");
    EXPECT_EQ(NumberText::fixed(-0.001, 2), "-0.00");
    EXPECT_EQ(NumberText::fixed(std::numeric_limits<double>::max(), 300).size(), 610u);
    EXPECT_EQ(NumberText::general(1234567890123.0, 10), "1.23456789e+12");
    EXPECT_EQ(NumberText::general(0.0001, 10), "0.0001");
    EXPECT_EQ(NumberText::shortest(0.1), "0.1");
    EXPECT_EQ(NumberText::shortest(1e22), "1e+22");
    EXPECT_EQ(NumberText::shortest(-infinity), "-inf");
    EXPECT_EQ(NumberText::shortest(-std::numeric_limits<double>::quiet_NaN()), "nan");
    EXPECT_EQ(NumberText::powerOfTen(2.9e-12, 1), "2.9 × 10⁻¹²");
    EXPECT_EQ(NumberText::powerOfTen(-9.997e15, 2), "-1.00 × 10¹⁶");
    EXPECT_EQ(NumberText::powerOfTen(5e-6, 0), "5 × 10⁻⁶");
    EXPECT_EQ(NumberText::powerOfTen(1.5e300, 1), "1.5 × 10³⁰⁰");
    EXPECT_EQ(NumberText::integer(std::numeric_limits<std::int64_t>::min()),
              "-9223372036854775808");
}

TEST(NumberText, RoundsAsIfFromEveryDigit) {
    std::mt19937_64 generator(3);
    const auto plain = [](double value, std::chars_format format, int digits) {
        std::array<char, 400> buffer;
        const auto end =
            std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format, digits);
        return std::string(buffer.data(), end.ptr);
    };
    for (int draw = 0; draw < 20'000; ++draw) {
        // Ties and what lies next to them, and numbers of every size.
        const double tie = std::ldexp(static_cast<double>(generator() % 100'000), -5);
        const double any = std::ldexp(static_cast<double>(generator()), -90 + draw % 60);
        const int digits = static_cast<int>(generator() % 11);
        for (const double value : {tie, -std::nextafter(tie, 0.0), any}) {
            ASSERT_EQ(NumberText::fixed(value, digits),
                      plain(value, std::chars_format::fixed, digits));
            ASSERT_EQ(NumberText::general(value, digits + 1),
                      plain(value, std::chars_format::general, digits + 1));
        }
    }
}

TEST(NumberText, WritesCellsBoundsAndPValues) {
    EXPECT_EQ(NumberText::derivedValue(-0.0), "0");
    EXPECT_EQ(NumberText::derivedValue(2.50004), "2.5");
    EXPECT_EQ(NumberText::derivedValue(-0.00001), "-0");
    EXPECT_EQ(NumberText::derivedValue(1e20), "100000000000000000000");
    EXPECT_EQ(NumberText::derivedValue(infinity), "");
    EXPECT_EQ(NumberText::clean(5.0), "5");
    EXPECT_EQ(NumberText::clean(4.5), "4.50");
    EXPECT_EQ(NumberText::pValue(0.00099999), "< .001");
    EXPECT_EQ(NumberText::pValue(0.001), ".001");
    EXPECT_EQ(NumberText::pValue(0.9996), "1.000");
}

}  // namespace
}  // namespace sorvane
