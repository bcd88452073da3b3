#include <algorithm>

#include <gtest/gtest.h>

#include "SorvaneCore/Dataset/CSVWriter.h"
#include "SorvaneMac/Headless/StudioScript.h"
#include "Tests/Screens/ScreenWorkplace.h"

namespace sorvane {
namespace {

/// Codes 98 and 99 for no answer, q3 worded in reverse, a typing error in q2, a respondent entered
/// twice and one who skipped the block.
constexpr auto messySurvey =
    "id,group,q1,q2,q3,q4\n1,a,4,5,2,4\n2,a,5,4,1,98\n3,b,2,2,4,2\n3,b,2,2,4,2\n4,b,1,55,5,2\n"
    "5,a,3,3,99,3\n6,b,,,,\n7,a,5,4,2,5\n8,b,2,1,4,1\n9,a,98,4,3,4\n";

const std::vector<std::string> expectedScores = {"4.25", "4.6667", "2",   "2",   "1.3333",
                                                 "3",    "",       "4.5", "1.5", "3.6667"};

constexpr auto noAnswerDraft =
    R"({"sources":"98, 99","lower":"","upper":"","lowerInclusive":true,"upperInclusive":true,)"
    R"("output":""})";

/// What a person at the window does: sets the controls of a form and presses its buttons.
class Window : public ScreenWorkplace {
public:
    void press(StudioScreen screen, const std::string& label) {
        for (const Control& control : screens.at(screen).setup().controls) {
            const auto* button = std::get_if<ButtonControl>(&control);
            if (button && button->label == label) {
                ASSERT_TRUE(button->isEnabled) << label;
                button->press();
                return;
            }
        }
        FAIL() << "no button " << label;
    }
};

void cleanInWindow(Window& window) {
    using enum StudioScreen;
    window.state.importPastedData(messySurvey);
    window.set({{"rcReplace", "true"}, {"rcDraft", noAnswerDraft}});
    window.press(dataPrep, "Add rule");
    for (const char* item : {R"("q1")", R"("q2")", R"("q3")", R"("q4")"}) {
        window.set({{"rcSource", item}});
        window.press(dataPrep, "Recode");
    }
    window.set({{"rcSource", R"("q3")"}, {"rcMode", R"("reverse")"}});
    window.press(dataPrep, "Recode");
    window.set({{"clVar", R"("q2")"}, {"clLower", R"("1")"}, {"clUpper", R"("5")"}});
    window.press(dataQuality, "Set out-of-range to missing");
    window.assign({"id", "q2"}, VariableKind::exclude);
    window.assign({"q1", "q2 Cleaned", "q3", "q4"}, VariableKind::psychometricItem);
    window.set({{"prepareSection", R"("scaleScore")"},
                {"reliabilityMissingDataRule", R"("available-item mean")"},
                {"minimumItemCompletion", "0.75"}});
    window.press(dataPrep, "Create scale score");
}

std::vector<std::string> steps() {
    std::vector<std::string> all = {
        R"({"set": {"rcReplace": true, "rcMode": "value", "rcValueRules": [{"id":)"
        R"( "00000000-0000-0000-0000-000000000001", "sources": [98, 99]}]}})"};
    for (const std::string item : {"q1", "q2", "q3", "q4"}) {
        all.push_back(R"({"set": {"rcSource": ")" + item + R"("}})");
        all.emplace_back(R"({"do": "runRecode"})");
    }
    for (const char* step :
         {R"({"set": {"rcSource": "q3", "rcMode": "reverse"}})", R"({"run": "dataPrep"})",
          R"({"set": {"clVar": "q2", "clLower": "1", "clUpper": "5"}})",
          R"({"do": "clApplyClampToMissing"})"}) {
        all.emplace_back(step);
    }
    const auto assign = [&all](const std::string& variable, const std::string& kind) {
        all.push_back(R"({"do": {"assignVariable": {"variable": ")" + variable + R"(", "kind": ")" +
                      kind + R"("}}})");
    };
    assign("id", "exclude");
    assign("q2", "exclude");
    for (const char* item : {"q1", "q2 Cleaned", "q3", "q4"}) {
        assign(item, "psychometric_item");
    }
    all.emplace_back(R"({"set": {"reliabilityMissingDataRule": "available-item mean",)"
                     R"( "minimumItemCompletion": 0.75}})");
    all.emplace_back(R"({"do": "createScaleScoreVariable"})");
    return all;
}

TEST(MessySurvey, IsCleanedAlikeInTheWindowAndByScript) {
    Window window;
    cleanInWindow(window);
    EXPECT_EQ(window.state.dataset().values("Scale score"), expectedScores);
    const Json checks = window.screens.at(StudioScreen::dataQuality).result();
    EXPECT_EQ(checks["duplicates"]["groups"], Json::parse("[[2,3]]"));

    ScreenWorkplace scripted;
    StudioScript script(scripted.state, scripted.screens,
                        {.folder = "", .output = "", .drawFigure = nullptr});
    scripted.state.importPastedData(messySurvey);
    for (const std::string& step : steps()) {
        const StepOutcome outcome = script.perform(Json::parse(step));
        ASSERT_EQ(outcome.refusal, std::nullopt) << step;
    }
    EXPECT_EQ(CSVWriter::text(scripted.state.dataset()), CSVWriter::text(window.state.dataset()));
    EXPECT_EQ(scripted.state.data.transformationLog.get(),
              window.state.data.transformationLog.get());
}

TEST(MessySurvey, AStepThatIsRefusedSaysWhy) {
    ScreenWorkplace work;
    StudioScript script(work.state, work.screens,
                        {.folder = "", .output = "", .drawFigure = nullptr});
    work.state.importPastedData(messySurvey);
    const std::vector<std::pair<std::string, std::string>> cases = {
        {R"({"do": "runRecode"})", "Choose a source variable."},
        {R"({"do": {"deleteVariable": {"named": "gone"}}})", "Choose a variable to delete."},
        {R"({"do": "undoLastDataChange"})", "There is no change of the data to take back."},
        {R"({"do": "addDatasetRow"})",
         "The table cannot be edited; only a grid that was made blank can."},
    };
    for (const auto& [step, refusal] : cases) {
        EXPECT_EQ(script.perform(Json::parse(step)).refusal, refusal);
    }
}

}  // namespace
}  // namespace sorvane
