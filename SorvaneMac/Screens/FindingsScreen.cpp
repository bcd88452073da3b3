#include "SorvaneMac/Screens/FindingsScreen.h"

#include "SorvaneMac/Screens/ResultText.h"

namespace sorvane {

SetupForm FindingsScreen::setup() {
    SetupForm form;
    form.title = "Findings";
    form.controls = {
        HeadingControl{"HOW A REPORT IS MADE"},
        NoteControl{"Add results to the report on the screens that show them. They stand here in "
                    "the order in which they were added.",
                    false},
        NoteControl{"Assemble makes one document of them. Edit it as you like: what you export is "
                    "what the editor shows.",
                    false},
        NoteControl{"Assembling again replaces the document, and with it your edits.", false}};
    return form;
}

ScreenContent FindingsScreen::content() const {
    ScreenContent content;
    content.title = "Findings";
    const auto count = static_cast<std::int64_t>(state_.reportItems->size());
    content.subtitle = ResultText::count(count) + " staged";
    if (count == 0) {
        content.gate = {.title = std::string(stageFirst),
                        .lead = "A result is staged with \"Add to report\" below it.",
                        .text = ""};
    }
    return content;
}

std::optional<std::string> FindingsScreen::run() {
    if (state_.reportItems->empty()) {
        return std::string(stageFirst);
    }
    state_.assembleReport();
    return std::nullopt;
}

bool FindingsScreen::hasDocument() const {
    return state_.reportRTFData.get() && !state_.reportRTFData.get()->empty();
}

Guide FindingsScreen::guide() const {
    return {.answers = "What will the report say, in which order and with which cautions?",
            .needs = "At least one staged result.",
            .doNotClaim = {"Do not delete the cautions; they say what the result does not show.",
                           "Do not report only the findings that came out as hoped."}};
}

}  // namespace sorvane
