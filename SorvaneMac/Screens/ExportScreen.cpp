#include "SorvaneMac/Screens/ExportScreen.h"

#include "SorvaneMac/Report/ReportExporter.h"
#include "SorvaneMac/Screens/FindingsScreen.h"

namespace sorvane {

SetupForm ExportScreen::setup() {
    SetupForm form;
    form.title = "Share & export";
    form.controls = {
        NoteControl{"The report is exported as the editor on Findings shows it. Where nothing was "
                    "assembled yet, the staged findings are assembled for the file.",
                    false},
        NoteControl{"Nothing is sent anywhere: a file is written where you say.", false}};
    return form;
}

ScreenContent ExportScreen::content() const {
    ScreenContent content;
    content.title = "Share & export";
    content.subtitle = "The report as a file";
    if (!document()) {
        content.gate = {.title = std::string(stageFirst),
                        .lead = "A result is staged with \"Add to report\" below it.",
                        .text = ""};
    }
    return content;
}

Guide ExportScreen::guide() const {
    return {.answers = "How does the report leave the program?",
            .needs = "An assembled report, or at least one staged result.",
            .doNotClaim = {"Do not pass a report on before you have read it as its reader will."}};
}

std::optional<RichDocument> ExportScreen::document() const {
    const std::optional<std::vector<std::uint8_t>>& stored = state_.reportRTFData.get();
    if (stored && !stored->empty()) {
        return decode(*stored);
    }
    if (state_.reportItems->empty()) {
        return std::nullopt;
    }
    return ReportExporter::attributed(state_.reportItems.get(), state_.dataset().name,
                                      state_.dataset().rowCount());
}

}  // namespace sorvane
