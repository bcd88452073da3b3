#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

#include "SorvaneCore/Project/RecordJson.h"
#include "SorvaneMac/Drafting/DraftBoard.h"
#include "Tests/Drafting/FakeGenerator.h"

namespace sorvane {
namespace {

/// A service, and what its listener was told.
class IntelligenceServiceTest : public testing::Test {
protected:
    DraftListener listener() {
        return {.grown = [this](const std::string& text) { shown_.push_back(text); },
                .ended =
                    [this](const std::optional<std::string>& failure) {
                        ++ends_;
                        failure_ = failure;
                    }};
    }

    FakeGenerator generator_;
    IntelligenceService service_{generator_};
    std::vector<std::string> shown_;
    int ends_ = 0;
    std::optional<std::string> failure_;
};

TEST_F(IntelligenceServiceTest, AsksWithTheInstructionsAndTheRequestForRevision) {
    const auto first = service_.interpretStream("t(3) = 2", std::nullopt, listener());
    EXPECT_TRUE(generator_.requests[0].instructions.starts_with(
        "You are a careful statistics teaching assistant inside a research app."));
    EXPECT_TRUE(generator_.requests[0].instructions.ends_with("or a list of tools used."));
    EXPECT_EQ(generator_.requests[0].prompt, "t(3) = 2");
    const auto second =
        service_.draftSummaryStream("One.\n\nTwo.", IntelligenceRefinement::shorter, listener());
    EXPECT_TRUE(generator_.requests[1].instructions.starts_with(
        "You are a research-manuscript writing assistant."));
    EXPECT_TRUE(generator_.requests[1].instructions.ends_with(
        "tools used.\n\nRevision request (keep every other rule above): Make the response "
        "noticeably shorter while keeping the key numbers and the caution."));
    EXPECT_EQ(generator_.requests[1].prompt, "Findings to synthesize:\n\nOne.\n\nTwo.");
}

TEST_F(IntelligenceServiceTest, ShowsNothingOfToolSyntaxWhileItGrows) {
    const auto run = service_.interpretStream("x", std::nullopt, listener());
    for (const char* const text :
         {"To", "Tool_call: f()", "Tool_call: f()\nA", "Tool_call: f()\nA result."}) {
        generator_.grow(text);
    }
    generator_.end();
    EXPECT_EQ(shown_, (std::vector<std::string>{"", "", "A", "A result.", "A result."}));
    EXPECT_EQ(ends_, 1);
    EXPECT_EQ(failure_, std::nullopt);
}

TEST_F(IntelligenceServiceTest, KeepsTheTextOfADraftThatBreaksOffAndTellsOfAnEmptyOne) {
    auto run = service_.interpretStream("x", std::nullopt, listener());
    generator_.grow("So far");
    generator_.end("The server broke the draft off.");
    EXPECT_EQ(shown_.back(), "So far");
    EXPECT_EQ(failure_, "The server broke the draft off.");
    run = service_.interpretStream("x", std::nullopt, listener());
    generator_.answer("```\ncode\n```");
    EXPECT_EQ(failure_, "The model gave no text.");
    run.reset();
    EXPECT_FALSE(generator_.isAsked());
}

TEST_F(IntelligenceServiceTest, IsSilentOnceItsRunIsGone) {
    std::unique_ptr<DraftRun> run;
    run = service_.interpretStream("x", std::nullopt,
                                   {.grown =
                                        [&](const std::string& text) {
                                            shown_.push_back(text);
                                            run.reset();
                                        },
                                    .ended = listener().ended});
    generator_.end("The server broke the draft off.");
    EXPECT_EQ(shown_, std::vector<std::string>{""});
    EXPECT_EQ(ends_, 0);
    generator_.grow("late");
    EXPECT_EQ(shown_.size(), 1U);
}

TEST_F(IntelligenceServiceTest, AsksNothingWhileItIsUnavailable) {
    generator_.reason = "This Mac does not support Apple Intelligence.";
    EXPECT_EQ(service_.unavailableReason(), generator_.reason);
    EXPECT_FALSE(service_.interpretStream("x", std::nullopt, listener()));
    EXPECT_TRUE(generator_.requests.empty());
}

TEST_F(IntelligenceServiceTest, TheBoardKeepsItsTextWhileNothingCanBeAsked) {
    SessionDefaults defaults;
    int changes = 0;
    DraftBoard board(service_, defaults, [&changes] { ++changes; });
    ReportItem finding;
    finding.apaSummary = "r = -.45";
    board.interpret(finding);
    generator_.answer("They rise together, r = .45.");
    EXPECT_EQ(
        board.flag(),
        "This number is not in the findings: .45. Check it and its sign before you use the text.");
    generator_.reason = "off";
    changes = 0;
    board.refine(IntelligenceRefinement::shorter);
    board.summarize({});
    EXPECT_EQ(board.text(), "They rise together, r = .45.");
    EXPECT_TRUE(board.flag());
    EXPECT_TRUE(board.isFinished());
    EXPECT_EQ(changes, 0);
}

TEST(IntelligenceFeedback, CountsRatings) {
    SessionDefaults defaults;
    defaults.set("sv.intelligence.feedback.down", "edited by hand");
    using enum IntelligenceFeedback::Rating;
    IntelligenceFeedback::rate(defaults, helpful, 10.5);
    IntelligenceFeedback::rate(defaults, helpful, 11.5);
    IntelligenceFeedback::rate(defaults, notHelpful, 12.5);
    EXPECT_EQ(defaults.value("sv.intelligence.feedback.up"), 2);
    EXPECT_EQ(defaults.value("sv.intelligence.feedback.down"), 1);
    EXPECT_EQ(defaults.value("sv.intelligence.feedback.last"), 12.5);
}

}  // namespace
}  // namespace sorvane
