#include <algorithm>

#include <gtest/gtest.h>

#include "Tests/Screens/ScreenWorkplace.h"

namespace sorvane {
namespace {

/// The scale of the sample study, with 20 items, four of them worded in reverse.
class ReliabilityScreens : public testing::Test {
protected:
    ReliabilityScreens() { work_.state.resetToSample(); }

    ScreenContent content() { return work_.screens.content(StudioScreen::scalesReliability); }
    template <typename Wanted>
    Wanted control(const std::string& label) {
        for (const Control& each :
             work_.screens.at(StudioScreen::scalesReliability).setup().controls) {
            const auto* found = std::get_if<Wanted>(&each);
            if (found && found->label.starts_with(label)) {
                return *found;
            }
        }
        throw std::out_of_range(label);
    }
    CheckListControl items() { return control<CheckListControl>("ITEMS"); }
    void keepOnly(std::initializer_list<std::string> names) {
        std::vector<std::string> others;
        for (const CheckListControl::Item& item : items().items) {
            if (std::find(names.begin(), names.end(), item.name) == names.end()) {
                others.push_back(item.name);
            }
        }
        items().setAll(others, false);
    }

    ScreenWorkplace work_;
};

/// Alpha and cases computed from the file by its definition, apart from this program.
TEST_F(ReliabilityScreens, FollowTheReversedItemsAndTheMissingDataRule) {
    const struct {
        int line;
        std::string rule;
        std::string completion;
        std::string alpha;
        std::string cases;
        std::string sentence;
    } cases[] = {
        {__LINE__, "listwise deletion", "0.8", "0.871", "238",
         "Internal consistency was good, Cronbach's α = .87."},
        {__LINE__, "available-item mean", "0.8", "0.875", "295",
         "Internal consistency was good, Cronbach's α = .87."},
        {__LINE__, "available-item mean", "0.95", "0.876", "289",
         "Internal consistency was good, Cronbach's α = .88."},
    };
    EXPECT_EQ(content().tiles.front().value, "0.624");
    EXPECT_EQ(content().cards[1].evidence.size(), 4U) << "four items run against the others";
    EXPECT_EQ(content().findings.front().item.caution,
              "Reliability evidence does not prove validity.");
    for (const char* item : {"sa4r", "sr3r", "mo5r", "em2r"}) {
        items().setSecond(item, true);
    }
    for (const auto& each : cases) {
        SCOPED_TRACE(each.line);
        work_.set({{"reliabilityMissingDataRule", "\"" + each.rule + "\""},
                   {"minimumItemCompletion", each.completion}});
        const ScreenContent shown = content();
        EXPECT_EQ(shown.tiles[0].value, each.alpha);
        EXPECT_EQ(shown.tiles[1].value, each.cases);
        EXPECT_EQ(shown.tiles[1].caption, each.rule);
        EXPECT_EQ(shown.tiles[2].value, "20");
        EXPECT_TRUE(shown.cards[1].evidence.empty());
        const ReportItem& item = shown.findings.front().item;
        EXPECT_NE(item.apaSummary.find("n = " + each.cases + "). " + each.sentence),
                  std::string::npos)
            << item.apaSummary;
        EXPECT_TRUE(
            item.caution->ends_with(" Reverse-coded before the analysis: sa4r, sr3r, mo5r, em2r."))
            << *item.caution;
    }
}

TEST_F(ReliabilityScreens, AnalyzeTheCheckedItemsAlone) {
    keepOnly({"sa1", "sa2", "sa3"});
    EXPECT_EQ(items().label, "ITEMS · 3 selected");
    const ScreenContent shown = content();
    EXPECT_EQ(shown.tiles[0].value, "0.744");
    EXPECT_EQ(shown.tiles[1].value, "296");
    EXPECT_EQ(shown.findings.front().item.table->rows.size(), 3U);
    EXPECT_EQ(shown.findings.front().item.table->rows[1][0], "sa2");
    items().setChecked("sa3", false);
    items().setChecked("sa2", false);
    EXPECT_EQ(content().gate->lead, "Pick at least two scale items");
    EXPECT_TRUE(content().findings.empty());
    EXPECT_EQ(work_.screens.at(StudioScreen::scalesReliability).run(),
              "Select at least two items. Check two or more items in the ITEMS list in the setup "
              "panel on the right. Items are auto-detected on import; adjust roles in Instrument "
              "Map.");
}

TEST_F(ReliabilityScreens, FlagWhatWasFoundUnreliableUntilItIsTakenInAgain) {
    work_.set({{"unreliableItemNames", R"(["sa2"])"}});
    items().setChecked("sa2", false);
    const auto item = [this](const std::string& name) {
        for (const CheckListControl::Item& each : items().items) {
            if (each.name == name) {
                return each;
            }
        }
        throw std::out_of_range(name);
    };
    EXPECT_TRUE(item("sa2").isFlagged);
    EXPECT_FALSE(item("sa2").isChecked);
    EXPECT_EQ(item("sa2").detail, "Flagged as unreliable. Re-check to include and clear the flag.");
    items().setChecked("sa2", true);
    EXPECT_FALSE(item("sa2").isFlagged);
    EXPECT_TRUE(item("sa2").isChecked);
    EXPECT_EQ(work_.value("unreliableItemNames"), "[]");
}

TEST_F(ReliabilityScreens, WriteTheScoreOfTheScaleAsAColumn) {
    keepOnly({"sa1", "sa2", "sa4r"});
    items().setSecond("sa4r", true);
    control<TextControl>("New score column name").set("Awareness");
    EXPECT_TRUE(control<ButtonControl>("Create scale score").isEnabled);
    control<ButtonControl>("Create scale score").press();
    const ImportedDataset& table = work_.state.dataset();
    const auto score = table.numericValues("Awareness");
    const auto first = table.numericValues("sa1");
    const auto second = table.numericValues("sa2");
    const auto reversed = table.numericValues("sa4r");
    std::size_t complete = 0;
    for (std::size_t row = 0; row < score.size(); ++row) {
        const bool isComplete = first[row] && second[row] && reversed[row];
        ASSERT_EQ(score[row].has_value(), isComplete) << row;
        if (isComplete) {
            EXPECT_NEAR(*score[row], (*first[row] + *second[row] + 6.0 - *reversed[row]) / 3.0,
                        5e-5);
            ++complete;
        }
    }
    EXPECT_GT(complete, 280U);
    EXPECT_EQ(content().tiles[2].value, "3") << "a score is no item of its own scale";
    control<ButtonControl>("Undo the addition of Awareness").press();
    EXPECT_FALSE(table.variable("Awareness"));
}

TEST_F(ReliabilityScreens, SlideToAWholePercent) {
    const auto slide = [this](double share) {
        control<NumberControl>("MINIMUM ITEM COMPLETION").set(share);
        return work_.value("minimumItemCompletion");
    };
    EXPECT_EQ(slide(0.5 + 7 * 0.05), "0.85");
    EXPECT_EQ(control<NumberControl>("MINIMUM ITEM COMPLETION").valueText, "85%");
    EXPECT_EQ(slide(0.5 + 3 * 0.05), "0.65");
}

}  // namespace
}  // namespace sorvane
