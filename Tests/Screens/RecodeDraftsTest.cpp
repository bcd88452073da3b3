#include "SorvaneMac/State/RecodeDrafts.h"

#include <gtest/gtest.h>

#include "Tests/Screens/PanelStudy.h"
#include "Tests/Screens/SetupControls.h"

namespace sorvane {
namespace {

using enum StudioScreen;

constexpr auto blankDraft =
    R"({"sources":"","lower":"","upper":"","lowerInclusive":true,"upperInclusive":true,)"
    R"("output":""})";

TEST(RecodeDrafts, AreTypedAddedAndRemoved) {
    PanelStudy workplace;
    workplace.set({{"rcDraft", R"({"sources":"1, 2","lower":"","upper":"","lowerInclusive":true,)"
                               R"("upperInclusive":true,"output":"9"})"}});
    std::get<ButtonControl>(controlOf(workplace.controls(dataPrep), "Add rule")).press();
    workplace.expectValues({{"rcDraft", blankDraft}});
    const auto& rules = workplace.state.editor.rcValueRules;
    ASSERT_EQ(rules->size(), 1U);
    EXPECT_EQ(rules->front().sources, (std::vector<double>{1.0, 2.0}));
    EXPECT_EQ(rules->front().output, 9.0);
    std::get<ButtonControl>(controlOf(workplace.controls(dataPrep), "Remove 1, 2 → 9")).press();
    EXPECT_TRUE(rules->empty());
}

TEST(RecodeDrafts, TakeOnlyWholeRules) {
    using RecodeDrafts::rangeRule;
    using RecodeDrafts::valueRule;
    EXPECT_EQ(RecodeDrafts::text(*valueRule({.sources = "-1.5"})), "-1.5 → missing");
    for (const std::string text : {"", "1,", "1, x", "nan", "1;2"}) {
        EXPECT_FALSE(valueRule({.sources = text})) << text;
    }
    EXPECT_FALSE(valueRule({.sources = "1", .output = "x"}));
    EXPECT_EQ(RecodeDrafts::text(*rangeRule(
                  {.lower = "18", .upper = "30", .upperInclusive = false, .output = "1"})),
              "18 ≤ x < 30 → 1");
    EXPECT_TRUE(rangeRule({.lower = "3", .upper = "3"}));
    EXPECT_FALSE(rangeRule({.lower = "3", .upper = "3", .lowerInclusive = false}));
    EXPECT_FALSE(rangeRule({.lower = "4", .upper = "3"}));
    EXPECT_FALSE(rangeRule({.lower = "4"}));
}

}  // namespace
}  // namespace sorvane
