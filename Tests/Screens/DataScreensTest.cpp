#include <algorithm>

#include "SorvaneMac/Screens/InstrumentMapScreen.h"
#include "SorvaneMac/Screens/VariableTypesScreen.h"
#include "Tests/Screens/ScreenWorkplace.h"

namespace sorvane {
namespace {

using enum StudioScreen;
using Rows = std::vector<std::vector<std::string>>;
using Texts = std::vector<std::string>;

/// A survey of eight with gaps, an impossible answer and two equal rows.
class DataScreens : public testing::Test {
protected:
    DataScreens() {
        work_.state.importPastedData(
            "respondent_id,group,q1,q2,q3,age\n1,a,1,2,5,31\n2,b,2,,4,45\n3,a,3,3,3,38\n"
            "4,b,4,55,2,27\n5,a,5,4,1,NA\n6,b,2,2,4,52\n6,b,2,2,4,52\n7,a,4,4,2,41\n");
        work_.assign({"q1", "q2", "q3"}, VariableKind::psychometricItem);
        work_.assign({"group"}, VariableKind::grouping);
        work_.assign({"age"}, VariableKind::demographicBackground);
    }
    const Card& card(StudioScreen id, const std::string& title) {
        for (const Card& each : work_.screens.content(id).cards) {
            if (each.title == title) {
                return each;
            }
        }
        throw std::out_of_range(title);
    }
    template <typename Wanted>
    Wanted control(StudioScreen id, const std::string& label) {
        for (const Control& each : work_.screens.at(id).setup().controls) {
            const auto* found = std::get_if<Wanted>(&each);
            if (found && found->label == label) {
                return *found;
            }
        }
        throw std::out_of_range(label);
    }
    bool says(StudioScreen id, const std::string& text) {
        return std::ranges::any_of(work_.screens.at(id).setup().controls,
                                   [&text](const Control& each) {
                                       const auto* note = std::get_if<NoteControl>(&each);
                                       return note && note->text == text;
                                   });
    }

    ScreenWorkplace work_;
};

TEST_F(DataScreens, ShowWhatARecodeWouldGiveBeforeItIsDone) {
    const struct {
        int line;
        Settings settings;
        Texts headers;
        Rows firstRows;
    } cases[] = {
        {__LINE__,
         {{"rcSource", R"("q2")"}, {"rcMode", R"("reverse")"}},
         {"Row", "q2", "New value"},
         {{"1", "2", "4"},
          {"2", "(blank)", "(missing)"},
          {"3", "3", "3"},
          {"4", "55", "(missing)"}}},
        {__LINE__,
         {{"rcSource", R"("q2")"},
          {"rcMode", R"("value")"},
          {"rcValueRules",
           R"([{"id":"00000000-0000-4000-8000-000000000001","sources":[55],"output":5}])"}},
         {"Row", "q2", "New value"},
         {{"1", "2", "2"}, {"2", "(blank)", "(missing)"}, {"3", "3", "3"}, {"4", "55", "5"}}},
        {__LINE__,
         {{"prepareSection", R"("compute")"}, {"cvSources", R"(["q2","q1"])"}},
         {"Row", "q1", "q2", "New value"},
         {{"1", "1", "2", "1.5"}, {"2", "2", "(blank)", "2"}}},
        {__LINE__,
         {{"prepareSection", R"("compute")"},
          {"cvKind", R"("pair")"},
          {"cvVarA", R"("age")"},
          {"cvVarB", R"("q1")"}},
         {"Row", "age", "q1", "New value"},
         {{"1", "31", "1", "30"}}},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.line);
        ScreenWorkplace& work = work_;
        work.screens.appear(dataPrep);
        work.set(each.settings);
        const ReportTable table = card(dataPrep, "Preview").tables.front();
        EXPECT_EQ(table.headers, each.headers);
        ASSERT_GE(table.rows.size(), each.firstRows.size());
        EXPECT_TRUE(std::equal(each.firstRows.begin(), each.firstRows.end(), table.rows.begin()));
        EXPECT_EQ(work.state.dataset().columnCount(), 6);
    }
}

TEST_F(DataScreens, DoWhatTheButtonSaysAndOfferTheWayBack) {
    work_.screens.appear(dataPrep);
    work_.set({{"rcSource", R"("q3")"}, {"rcMode", R"("reverse")"}, {"rcName", R"("q3 turned")"}});
    EXPECT_EQ(card(dataPrep, "What was done so far").paragraphs.size(), 1U);
    control<ButtonControl>(dataPrep, "Recode").press();
    EXPECT_EQ(work_.state.dataset().values("q3 turned").front(), "1");
    EXPECT_TRUE(says(dataPrep, "q3 turned was added (reverse code of q3 on 1-5)."));
    EXPECT_EQ(card(dataPrep, "What was done so far").paragraphs.back(),
              "Recoded q3 into q3 turned: reverse code of q3 on 1-5.");
    control<ButtonControl>(dataPrep, "Undo the addition of q3 turned").press();
    EXPECT_FALSE(work_.state.dataset().variable("q3 turned"));
    EXPECT_TRUE(says(dataPrep, "Reverted the addition of q3 turned."));
    EXPECT_EQ(work_.screens.at(dataPrep).run(), std::nullopt);
    EXPECT_TRUE(work_.state.dataset().variable("q3 turned"));
}

TEST_F(DataScreens, BandsAndScoresAreMadeWhereTheirSectionStands) {
    const struct {
        int line;
        Settings settings;
        std::string name;
        std::string first;
    } cases[] = {
        {__LINE__,
         {{"prepareSection", R"("bands")"},
          {"selectedBinningVariableName", R"("age")"},
          {"binningBinCount", "2"},
          {"binnedVariableName", R"("")"}},
         "age Group",
         "1: 27 to 41"},
        {__LINE__, {{"prepareSection", R"("scaleScore")"}}, "Scale score", "2.6667"},
        {__LINE__,
         {{"prepareSection", R"("compute")"},
          {"cvAggOp", R"("maximum")"},
          {"cvSources", R"(["q1","q3"])"},
          {"cvName", R"("most")"}},
         "most",
         "5"},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.line);
        work_.screens.appear(dataPrep);
        work_.set(each.settings);
        ASSERT_EQ(work_.screens.at(dataPrep).run(), std::nullopt);
        EXPECT_EQ(work_.state.dataset().headers.back(), each.name);
        EXPECT_EQ(work_.state.dataset().values(each.name).front(), each.first);
    }
}

TEST_F(DataScreens, TellOfEachVariableWhatTheTableHolds) {
    auto& types = static_cast<VariableTypesScreen&>(work_.screens.at(variableTypes));
    const std::vector<VariableTypesScreen::Row> rows = types.rows();
    ASSERT_EQ(rows.size(), 6U);
    EXPECT_EQ(rows[3].name, "q2");
    EXPECT_EQ(rows[3].valid, "7");
    EXPECT_EQ(rows[3].missing, "1");
    EXPECT_EQ(rows[3].distinct, "4");
    EXPECT_EQ(rows[3].samples.substr(0, 5), "2, 3,");
    EXPECT_TRUE(rows[3].inReliability);
    EXPECT_FALSE(rows[1].inReliability);

    types.assign({rows[2].id, rows[3].id}, VariableKind::exclude);
    EXPECT_EQ(types.rows()[2].role, VariableKind::exclude);
    EXPECT_EQ(types.rows()[3].role, VariableKind::exclude);
    EXPECT_FALSE(types.rows()[3].inDescriptives);
    EXPECT_EQ(types.rows()[4].role, VariableKind::psychometricItem);

    std::string action;
    const Subscription watching =
        work_.state.observeActions([&action](std::string_view name) { action = name; });
    work_.state.editor.dvMessage.set("An old message.");
    types.beginRename("age");
    EXPECT_EQ(action, "showInspector");
    EXPECT_FALSE(says(variableTypes, "An old message."));
    work_.set({{"dvNewName", R"("years")"}});
    control<ButtonControl>(variableTypes, "Rename").press();
    EXPECT_EQ(types.rows()[5].name, "years");
    EXPECT_TRUE(
        says(variableTypes, "age is now years. Every list and analysis uses the new name."));
    control<ButtonControl>(variableTypes, "Delete variable").press();
    EXPECT_EQ(types.rows().size(), 5U);
}

TEST_F(DataScreens, MapWhichColumnsAreItems) {
    work_.screens.appear(instrumentMap);
    auto& map = static_cast<InstrumentMapScreen&>(work_.screens.at(instrumentMap));
    const auto row = [&map](const std::string& name) {
        const auto rows = map.rows();
        return *std::ranges::find(rows, name, &InstrumentMapScreen::Row::name);
    };
    EXPECT_FALSE(row("respondent_id").isIncluded);
    EXPECT_EQ(row("q1").category, "Likely scale item");
    EXPECT_TRUE(row("q1").isIncluded);
    EXPECT_TRUE(row("q1").probability.ends_with("%"));
    EXPECT_FALSE(row("q1").reasons.empty());
    EXPECT_FALSE(row("group").canBeIncluded);
    EXPECT_TRUE(row("age").canBeIncluded);
    const auto tile = [this](std::size_t at) {
        return work_.screens.content(instrumentMap).tiles[at];
    };
    EXPECT_EQ(tile(0), (Tile{"In the item set", "3", "of 6 columns"}));

    map.setIncluded(row("q1").id, false);
    map.setIncluded(row("age").id, true);
    EXPECT_FALSE(row("q1").isIncluded);
    EXPECT_TRUE(row("age").isIncluded);
    EXPECT_EQ(tile(0).value, "3");
    work_.assign({"q1"}, VariableKind::exclude);
    EXPECT_FALSE(row("q1").canBeIncluded);
    control<ButtonControl>(instrumentMap, "Select Likert items").press();
    EXPECT_TRUE(row("q1").isIncluded);

    work_.set({{"rcSource", R"("q3")"}, {"rcName", R"("q4")"}});
    ASSERT_TRUE(work_.state.runRecode());
    EXPECT_EQ(row("q4").probability, "--");
    work_.screens.appear(instrumentMap);
    EXPECT_TRUE(row("q4").probability.ends_with("%")) << "a new column is judged like the others";
}

TEST_F(DataScreens, CheckOneVariableAndTheWholeTable) {
    work_.screens.appear(dataQuality);
    work_.set({{"clVar", R"("q2")"}, {"clLower", R"("1")"}, {"clUpper", R"("5")"}});
    const Card range = card(dataQuality, "Values out of range");
    EXPECT_EQ(range.facts, (std::vector<Fact>{{"Smallest observed", "2"},
                                              {"Largest observed", "55"},
                                              {"Below the lowest valid value", "0"},
                                              {"Above the highest valid value", "1"}}));
    EXPECT_EQ(range.tables.front().rows, (Rows{{"4", "55"}}));
    const Card outliers = card(dataQuality, "Outliers");
    EXPECT_EQ(outliers.facts.back(), (Fact{"Flagged", "1 value"}));
    EXPECT_EQ(outliers.tables.front().rows, (Rows{{"4", "55"}}));
    EXPECT_EQ(outliers.cautions.size(), 1U);
    EXPECT_EQ(card(dataQuality, "Duplicate rows").tables.front().rows, (Rows{{"1", "2", "6, 7"}}));
    work_.set({{"clKeyColumns", R"(["group","q1"])"}});
    EXPECT_EQ(card(dataQuality, "Duplicate rows").subtitle, "Rows with the same group and q1");
    EXPECT_EQ(card(dataQuality, "Duplicate rows").tables.front().rows,
              (Rows{{"1", "3", "2, 6, 7"}}));
    const std::vector<Tile> tiles = work_.screens.content(dataQuality).tiles;
    EXPECT_EQ(tiles[0].value, "2");
    EXPECT_EQ(tiles[1], (Tile{"Complete cases", "6", "75.0% of rows"}));
    EXPECT_EQ(tiles.back(), (Tile{"Duplicate rows", "3", "1 group(s)"}));

    work_.set({{"clOutlierMethod", R"("zScore")"}, {"clLower", R"("3")"}});
    EXPECT_EQ(card(dataQuality, "Outliers").facts.back(), (Fact{"Flagged", "0 values"}));
    EXPECT_EQ(card(dataQuality, "Values out of range").tables.front().rows,
              (Rows{{"1", "2"}, {"4", "55"}, {"6", "2"}, {"7", "2"}}));
}

TEST_F(DataScreens, CompareTheGapsOfEachVariableBetweenGroups) {
    work_.set({{"clGroup", R"("group")"}});
    const ReportTable table = card(dataQuality, "Missing values by group").tables.front();
    EXPECT_EQ(table.headers, (Texts{"group", "Rows", "All variables", "q2", "age"}));
    EXPECT_EQ(table.rows, (Rows{{"a", "4", "6.2%", "0.0%", "25.0%"},
                                {"b", "4", "6.2%", "25.0%", "0.0%"},
                                {"Spread (points)", "", "0.0", "25.0", "25.0"}}));
}

TEST_F(DataScreens, StageWhatIsMissing) {
    work_.screens.appear(dataQuality);
    const Finding missing = work_.screens.content(dataQuality).findings.front();
    EXPECT_EQ(missing.item.title, "Missing data");
    EXPECT_TRUE(missing.item.apaSummary.starts_with(
        "Of 32 values of 4 numeric variables, 2 (6.2%) were missing; 6 of 8 cases (75.0%) were "
        "complete."))
        << missing.item.apaSummary;
    EXPECT_EQ(missing.item.table->rows[1], (Texts{"q2", "1", "12.5%"}));
    EXPECT_TRUE(missing.item.caution);
    EXPECT_EQ(missing.item.extraTables->size(), 1U);
    work_.state.importPastedData("x,y\n1,2\n2,1\n1,2\n");
    const Finding whole = work_.screens.content(dataQuality).findings.front();
    EXPECT_FALSE(whole.item.caution);
    EXPECT_FALSE(whole.item.extraTables);
}

TEST_F(DataScreens, BenchmarksThatAreNoSharesAreRefused) {
    for (const char* share : {"", "0", "-5", "nan", "inf", "half"}) {
        work_.set({{"clCompositionVar", R"("group")"},
                   {"clBenchmarks", R"({"a":"50","b":")" + std::string(share) + "\"}"}});
        const Card& composition = card(dataQuality, "Sample composition");
        EXPECT_TRUE(composition.tables.empty()) << share;
        EXPECT_FALSE(composition.cautions.empty()) << share;
        EXPECT_EQ(work_.screens.content(dataQuality).findings.size(), 1U) << share;
    }
    control<TextControl>(dataQuality, "b").set("50");
    EXPECT_EQ(card(dataQuality, "Sample composition").tables.front().rows.back(),
              (Texts{"b", "4", "50.0", "50.0", "0.0"}));
    EXPECT_EQ(work_.screens.content(dataQuality).findings.size(), 2U);
}

TEST_F(DataScreens, CountOnTheOverviewWhatThereIs) {
    const std::vector<Tile> tiles = work_.screens.content(overview).tiles;
    EXPECT_EQ(tiles, (std::vector<Tile>{{"Rows", "8", "cases in the table"},
                                        {"Variables", "6", "columns"},
                                        {"Missing", "4.2%", "of all cells"},
                                        {"Scale items", "3", "in the item set"},
                                        {"Findings", "0", "staged for the report"}}));
    EXPECT_EQ(card(overview, "Variables by role").tables.front().rows,
              (Rows{{"Demographic/background", "1"},
                    {"Psychometric item", "3"},
                    {"Grouping", "1"},
                    {"Administrative", "1"}}));
}

}  // namespace
}  // namespace sorvane
