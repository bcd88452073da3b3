#include "SorvaneCore/Dataset/TextColumn.h"

#include <random>
#include <set>

#include <gtest/gtest.h>

#include "SorvaneCore/Dataset/ColumnProfile.h"
#include "SorvaneCore/Dataset/DistinctTexts.h"
#include "SorvaneCore/Dataset/NumericColumn.h"
#include "SorvaneCore/Dataset/TextColumnBuilder.h"

namespace sorvane {
namespace {

using Texts = std::vector<std::string>;

Texts numbered(std::size_t count, std::size_t distinct) {
    Texts cells;
    for (std::size_t i = 0; i < count; ++i) {
        cells.push_back("cell " + std::to_string(i % distinct));
    }
    return cells;
}

Texts cellsOf(const TextColumn& column) {
    Texts cells;
    for (std::size_t row = 0; row < column.size(); ++row) {
        cells.emplace_back(column[row]);
    }
    return cells;
}

TEST(TextColumn, HoldsAnyNumberOfLevelsInAnyCodeWidth) {
    for (const std::size_t distinct : {1U, 255U, 256U, 257U, 65'536U, 65'537U, 90'000U}) {
        // Repeats at first keep the dictionary.
        Texts cells = numbered(20'000, 100);
        const Texts more = numbered(90'000, distinct);
        cells.insert(cells.end(), more.begin(), more.end());
        const auto column = TextColumn::of(cells);
        EXPECT_TRUE(column->hasCodes());
        EXPECT_EQ(column->levelCount(), std::max<std::size_t>(distinct, 100));
        EXPECT_EQ(cellsOf(*column), cells) << distinct;
    }
}

TEST(TextColumn, TellsTextsApartThatPackAlike) {
    using namespace std::string_literals;
    Texts cells = {"",
                   "\0"s,
                   "\0\0"s,
                   "a",
                   "a\0"s,
                   "\0a"s,
                   "ab",
                   "ba",
                   "aab",
                   "aba",
                   "abcdefg",
                   "abcdefg\0"s,
                   "abcdefgh",
                   "abcdefghi",
                   "abcdefgh\0"s,
                   "abcdefghijklmno",
                   "abcdefghijklmnop",
                   "abcdefghijklmnopq"};
    const auto column = TextColumn::of(cells);
    EXPECT_EQ(column->levelCount(), cells.size());
    EXPECT_EQ(cellsOf(*column), cells);
    DistinctTexts distinct(cells.size());
    for (const std::string& cell : cells) {
        distinct.add(cell);
        distinct.add(cell);
    }
    EXPECT_EQ(distinct.count(), cells.size());
}

TEST(DistinctTexts, CountsAsASetDoes) {
    std::mt19937 generator(3);
    for (const std::size_t count : {0U, 5U, 20'000U, 200'000U}) {
        std::set<std::string> expected;
        DistinctTexts distinct(count / 2);
        for (std::size_t i = 0; i < count; ++i) {
            const std::string text =
                std::string(generator() % 3 * 8, 'x') + std::to_string(generator() % count);
            expected.insert(text);
            distinct.add(text);
        }
        EXPECT_EQ(distinct.count(), expected.size());
    }
}

TEST(TextColumn, IsEditedAsItsCellsWouldBe) {
    std::mt19937 generator(5);
    for (const std::size_t size : {1U, 3U, 50U, 20'000U}) {
        Texts cells = numbered(size, size == 50 ? 4 : size);
        auto column = TextColumn::of(cells);
        for (int edit = 0; edit < 20; ++edit) {
            const std::size_t row = generator() % size;
            cells[row] = std::to_string(generator() % 5);
            column = column->replacing(row, cells[row]);
            const auto expected = TextColumn::of(cells);
            ASSERT_EQ(*column, *expected);
            ASSERT_EQ(column->levelCount(), expected->levelCount());
            ASSERT_EQ(column->hasCodes(), expected->hasCodes());
        }
        cells.resize(size + 2);
        EXPECT_EQ(cellsOf(*column->resized(size + 2)), cells);
        cells.resize(size / 2);
        EXPECT_EQ(cellsOf(*column->resized(size / 2)), cells);
    }
}

TEST(ColumnProfile, IsTheSameInEitherForm) {
    // The same cells, repeating first and distinct first.
    Texts cells = numbered(30'000, 7);
    for (std::size_t i = 0; i < 30'000; ++i) {
        cells.push_back(i % 10 == 0 ? " NA"
                                    : std::to_string(static_cast<int>(i % 20'011) - 500) + ".1");
    }
    const auto coded = TextColumn::of(cells);
    std::reverse(cells.begin(), cells.end());
    const auto listed = TextColumn::of(cells);
    ASSERT_TRUE(coded->hasCodes());
    ASSERT_FALSE(listed->hasCodes());
    const ColumnProfile& a = coded->profile();
    const ColumnProfile& b = listed->profile();
    EXPECT_EQ(a.missingCount, 3000);
    EXPECT_EQ(a.missingCount, b.missingCount);
    EXPECT_EQ(a.nonMissingCount, b.nonMissingCount);
    EXPECT_EQ(a.uniqueCount, b.uniqueCount);
    EXPECT_EQ(a.numericCount, 27'000);
    EXPECT_EQ(a.numericCount, b.numericCount);
    EXPECT_EQ(a.numericSummary, b.numericSummary);
    EXPECT_EQ(a.missingMarkers, b.missingMarkers);
    EXPECT_EQ(a.totalBytes, b.totalBytes);
    EXPECT_EQ(characterCounts(*coded).total, characterCounts(*listed).total);
}

TEST(ColumnProfile, CountsEveryCellOfALevel) {
    const Texts cells = {"2",
                         "NA",
                         "Yes",
                         " yes",
                         "2",
                         "2.0",
                         "n/a",
                         "NA",
                         "",
                         "7",
                         "-1",
                         "YES",
                         "caf\xC3\xA9 noir",
                         "inf",
                         "2"};
    const auto column = TextColumn::of(cells);
    const ColumnProfile& profile = column->profile();
    EXPECT_EQ(profile.missingCount, 4);
    EXPECT_EQ(profile.nonMissingCount, 11);
    EXPECT_EQ(profile.uniqueCount, 7) << "2, yes, 2.0, 7, -1, the coffee, inf";
    EXPECT_EQ(profile.numericCount, 7);
    EXPECT_FALSE(profile.hasFraction);
    EXPECT_EQ(profile.missingMarkers,
              (std::map<std::string, std::int64_t>{{"", 1}, {"n/a", 1}, {"na", 2}}));
    const CharacterCounts lengths = characterCounts(*column);
    EXPECT_EQ(lengths.longest, 9U);
    EXPECT_EQ(lengths.total, 3U * 1 + 3 + 4 + 3 + 1 + 2 + 3 + 9 + 3);

    const Texts numbers = {"2", "2", "2", "5", "x", "0.5", "2"};
    const NumericSummary summary = *TextColumn::of(numbers)->profile().numericSummary;
    EXPECT_EQ(summary.minimum, 0.5);
    EXPECT_EQ(summary.maximum, 5.0);
    EXPECT_DOUBLE_EQ(summary.mean, 13.5 / 6.0);
    EXPECT_TRUE(TextColumn::of(Texts{"0.5", "1"})->profile().hasFraction);
    EXPECT_EQ(NumericColumn(TextColumn::of(numbers)).levelCounts(),
              (std::vector<std::uint64_t>{4, 1, 1, 1}));
}

TEST(ColumnProfile, ShowsTheFirstFourPresentCells) {
    Texts cells = {"", "first", " NA ", "second", "second", "fourth"};
    EXPECT_EQ(TextColumn::of(cells)->profile().sampleValues,
              (Texts{"first", "second", "second", "fourth"}));
    cells = numbered(100, 100);
    EXPECT_EQ(TextColumn::of(cells)->profile().sampleValues,
              Texts(cells.begin(), cells.begin() + 4));
    EXPECT_EQ(TextColumn::of(Texts{"NA", "x"})->profile().sampleValues, Texts{"x"});
    EXPECT_TRUE(TextColumn::of(Texts{"NA", ""})->profile().sampleValues.empty());
}

TEST(ColumnProfile, SumsWithoutLosingSmallNumbers) {
    Texts cells(1'000'000, "0.1");
    cells.push_back("1e16");
    cells.push_back("-1e16");
    EXPECT_DOUBLE_EQ(TextColumn::of(cells)->profile().numericSummary->mean, 100'000.0 / 1'000'002);
    EXPECT_EQ(TextColumn::of(Texts{"inf", "1"})->profile().numericSummary->mean,
              std::numeric_limits<double>::infinity());
}

TEST(NumericColumn, ReadsMissingFirstAndNumbersSecond) {
    const Texts cells = {"1",
                         " 2 ",
                         "x",
                         "",
                         "NaN",
                         "1e3",
                         "+4",
                         "0x10",
                         "1,5",
                         "\xC2\xA0"
                         "7"};
    const NumericColumn numbers(TextColumn::of(cells));
    const std::vector<std::optional<double>> expected = {
        1.0, 2.0, std::nullopt, std::nullopt, std::nullopt, 1000.0, 4.0, 16.0, std::nullopt, 7.0};
    EXPECT_EQ(numbers.rows(), expected);
    EXPECT_EQ(numbers.present(), (std::vector<double>{1.0, 2.0, 1000.0, 4.0, 16.0, 7.0}));
}

}  // namespace
}  // namespace sorvane
