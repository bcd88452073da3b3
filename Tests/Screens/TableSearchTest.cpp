#include "SorvaneMac/Screens/TableSearch.h"

#include <gtest/gtest.h>

#include "SorvaneMac/Screens/SelectionText.h"

namespace sorvane {
namespace {

using enum TableQuery::Extent;

ImportedDataset datasetOf(const std::vector<std::vector<std::string>>& rows) {
    ImportedDataset dataset;
    dataset.rows = TextTable::fromRows(rows, rows.front().size());
    dataset.variables.resize(rows.front().size());
    return dataset;
}

ShownCells cellsOf(const std::vector<std::vector<std::string>>& rows) {
    return {datasetOf(rows), CellForm::stored};
}

TEST(TableSearch, FindsWordsWhateverTheirCase) {
    const ShownCells cells = cellsOf({{"Ärger", "12", " Ja "}, {"STRASSE", "2", "ja, klar"}});
    struct Case {
        int line;
        std::string words;
        TableQuery::Extent extent;
        std::uint64_t count;
    };
    for (const Case& each :
         {Case{__LINE__, "äRG", anywhereInCell, 1}, Case{__LINE__, "2", anywhereInCell, 2},
          Case{__LINE__, "2", wholeCell, 1}, Case{__LINE__, "JA", wholeCell, 1},
          Case{__LINE__, "strasse", wholeCell, 1}, Case{__LINE__, "rx", anywhereInCell, 0},
          Case{__LINE__, "", anywhereInCell, 0}}) {
        EXPECT_EQ(TableMatches::of(cells, {each.words, each.extent}).count(), each.count)
            << "line " << each.line;
    }
}

TEST(TableSearch, GoesThroughTheMatchesInReadingOrderAndBeginsAgain) {
    // More rows than a word of bits has, so that matches stand in the first, a middle and the last.
    std::vector<std::vector<std::string>> rows(200, {"", ""});
    const std::vector<CellPlace> wanted = {{0, 1}, {63, 0}, {63, 1}, {64, 0}, {199, 0}};
    for (const CellPlace& place : wanted) {
        rows[place.row][place.column] = "x";
    }
    const TableMatches found = TableMatches::of(cellsOf(rows), {"X", anywhereInCell});
    std::optional<CellPlace> place;
    for (std::size_t at = 0; at < wanted.size(); ++at) {
        place = found.next(place);
        ASSERT_EQ(place, wanted[at]);
        EXPECT_EQ(found.rank(*place), at + 1);
        EXPECT_EQ(found.previous(*place), wanted[(at + wanted.size() - 1) % wanted.size()]);
    }
    EXPECT_EQ(found.next(place), wanted.front());
    EXPECT_EQ(found.next(CellPlace{10, 0}), wanted[1]);
    EXPECT_EQ(found.previous(CellPlace{10, 0}), wanted[0]);
    EXPECT_EQ(found.summary(CellPlace{63, 1}), "3 of 5 matches");
    EXPECT_EQ(found.summary(CellPlace{10, 0}), "5 matches");
    EXPECT_EQ(TableMatches().summary(std::nullopt), "No matches");
    EXPECT_EQ(TableMatches().next(CellPlace{3, 1}), std::nullopt);
}

TEST(TableSearch, FindsInColumnsOfDistinctTextsWhatEachCellHolds) {
    // Long enough for a column without codes; texts that meet at their ends hold no match.
    std::vector<std::vector<std::string>> rows;
    std::vector<std::vector<std::string>> capitals;
    std::uint64_t wanted = 0;
    for (int at = 0; at < 20000; ++at) {
        const std::string number = std::to_string(at * 7919 % 100003);
        rows.push_back({number});
        capitals.push_back({"A" + number});
        wanted += number.find("12") != std::string::npos ? 1U : 0U;
    }
    ASSERT_FALSE(cellsOf(rows).table().column(0).hasCodes());
    const TableMatches found = TableMatches::of(cellsOf(rows), {"12", anywhereInCell});
    EXPECT_EQ(found.count(), wanted);
    for (std::size_t row = 0; row < rows.size(); ++row) {
        ASSERT_EQ(found.contains({row, 0}), rows[row][0].find("12") != std::string::npos) << row;
    }
    EXPECT_EQ(TableMatches::of(cellsOf(capitals), {"12", anywhereInCell}).count(), wanted);
}

TEST(TableSearch, SearchesWhatIsShown) {
    ImportedDataset dataset = datasetOf({{"1"}, {"2"}, {" 1"}, {"9"}});
    dataset.variables[0].valueLabels = {{"1", "Female"}, {"2", "Male"}};
    const ShownCells labelled(dataset, CellForm::labelled);
    EXPECT_EQ(labelled.text(2, 0), "Female");
    EXPECT_EQ(labelled.text(3, 0), "9");
    EXPECT_EQ(TableMatches::of(labelled, {"female", wholeCell}).count(), 2U);
    EXPECT_EQ(TableMatches::of(labelled, {"1", anywhereInCell}).count(), 0U);
    EXPECT_EQ(TableMatches::of({dataset, CellForm::stored}, {"1", anywhereInCell}).count(), 2U);
    EXPECT_FALSE(labelled.isSameAs({dataset, CellForm::stored}));
    EXPECT_TRUE(labelled.isSameAs({dataset, CellForm::labelled}));
}

TEST(SelectionText, WritesBlocksAsASpreadsheetTakesThem) {
    const ShownCells cells =
        cellsOf({{"a", "1", "tab\there"}, {"b", "", "say \"no\""}, {"c", "3", "two\nlines"}});
    struct Case {
        int line;
        std::vector<CellBlock> blocks;
        std::string text;
    };
    for (const Case& each :
         {Case{__LINE__,
               {{0, 0, 2, 2}},
               "a\t1\t\"tab\there\"\nb\t\t\"say \"\"no\"\"\"\nc\t3\t\"two\nlines\"\n"},
          Case{__LINE__, {{1, 0, 1, 0}}, "b\n"},
          // The columns between are left out; a cell that is not selected in its row is empty.
          Case{__LINE__, {{2, 2, 2, 2}, {0, 0, 0, 0}}, "a\t\n\t\"two\nlines\"\n"},
          Case{__LINE__, {{0, 0, 1, 1}, {1, 0, 2, 0}}, "a\t1\nb\t\nc\t\n"},
          Case{__LINE__, {}, ""}}) {
        EXPECT_EQ(SelectionText::tabSeparated(cells, each.blocks), each.text)
            << "line " << each.line;
    }
}

}  // namespace
}  // namespace sorvane
