#include "SorvaneMac/Screens/ExportScreen.h"

#include <iterator>

#include "SorvaneMac/Report/ReportExporter.h"
#include "SorvaneMac/Screens/DatasetText.h"
#include "SorvaneMac/Screens/FindingsScreen.h"

namespace sorvane {

SetupForm ExportScreen::setup() {
    SetupForm form;
    form.title = "Share & export";
    form.controls = {
        NoteControl{"The report is exported as the editor on Findings shows it. Where nothing was "
                    "assembled yet, the staged findings are assembled for the file.",
                    false},
        NoteControl{"A file is written where you say, and nothing is sent anywhere. Findings leave "
                    "this machine only where you present them on an iPad, over the local network, "
                    "to whoever types the code that is shown.",
                    false}};
    return form;
}

ScreenContent ExportScreen::content() const {
    ScreenContent content;
    content.title = "Share & export";
    content.subtitle = "The report as a file, the findings on an iPad";
    const std::int64_t staged = std::ssize(state_.reportItems.get());
    if (!hasDocument() && staged == 0) {
        content.gate = {.title = std::string(stageFirst),
                        .lead = "A result is staged with \"Add to report\" below it.",
                        .text = ""};
    }
    content.cards = {reportCard(staged), recordCard()};
    return content;
}

bool ExportScreen::hasDocument() const {
    const std::optional<std::vector<std::uint8_t>>& stored = state_.reportRTFData.get();
    return stored && !stored->empty();
}

bool ExportScreen::canExport() const {
    return hasDocument() || !state_.reportItems->empty();
}

Card ExportScreen::reportCard(std::int64_t staged) const {
    Card card;
    card.title = "What the file will hold";
    card.links = {{"Findings", StudioScreen::findings}};
    if (hasDocument()) {
        card.evidence = {
            {EvidenceTone::met, "The report is assembled",
             "It is exported as the editor on Findings shows it. Findings staged since "
             "then come in when you assemble again."}};
    } else if (staged > 0) {
        card.evidence = {{EvidenceTone::caution, "Nothing is assembled yet",
                          DatasetText::counted(staged, "staged finding") +
                              " will be assembled for the file as " +
                              (staged == 1 ? "it stands" : "they stand") +
                              ". Assemble on Findings first to read and edit the report."}};
    } else {
        card.evidence = {
            {EvidenceTone::unavailable, "Nothing is staged", "There is no report yet."}};
    }
    return card;
}

Card ExportScreen::recordCard() const {
    Card card;
    card.title = "For the reader who wants to repeat it";
    card.paragraphs = {
        "A method file says what was run, on which variables and under which rules; "
        "it holds no data. The Technical Appendix shows and saves it."};
    card.links = {{"Technical Appendix", StudioScreen::technicalAppendix}};
    return card;
}

Guide ExportScreen::guide() const {
    return {.answers = "How does the report leave the program?",
            .needs = "An assembled report, or at least one staged result.",
            .doNotClaim = {"Do not pass a report on before you have read it as its reader will."}};
}

std::optional<RichDocument> ExportScreen::document() const {
    if (hasDocument()) {
        return decode(*state_.reportRTFData.get());
    }
    if (state_.reportItems->empty()) {
        return std::nullopt;
    }
    return ReportExporter::attributed(state_.reportItems.get(), state_.dataset().name,
                                      state_.dataset().rowCount());
}

}  // namespace sorvane
