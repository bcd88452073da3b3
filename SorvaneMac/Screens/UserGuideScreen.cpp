#include "SorvaneMac/Screens/UserGuideScreen.h"

#include <string_view>

namespace sorvane {

namespace {

using enum StudioScreen;

struct Step {
    StudioSection section;
    std::string_view title;
    std::string_view text;
    /// Where the step starts.
    StudioScreen first;
};

constexpr Step steps[] = {
    {StudioSection::project, "1. Project: bring in the data",
     "Drop a file on the window, use Import Data, paste a table from a spreadsheet, or type into a "
     "blank grid. An import that fails changes nothing and says why.",
     importData},
    {StudioSection::instrument, "2. Instrument: say what was measured",
     "Roles are guessed from names and values. Check them once: every list of variables in the "
     "program follows them.",
     instrumentMap},
    {StudioSection::evidence, "3. Evidence: look and test",
     "Choose variables under Setup on the right. Each result comes with its assumptions and "
     "cautions, and takes them along into the report.",
     descriptives},
    {StudioSection::advanced, "4. Advanced: models",
     "For data with groups, classes, times or paths in them. They ask for more cases and for a "
     "theory.",
     multilevel},
    {StudioSection::report, "5. Report: tell it",
     "\"Add to report\" stages a result. Findings makes one document of what is staged; you edit "
     "it, and export what you see.",
     findings},
};

Card stepCard(const Step& step) {
    Card card;
    card.title = std::string(step.title);
    card.paragraphs = {std::string(step.text)};
    for (const StudioScreen screen : allStudioScreens()) {
        if (section(screen) == step.section) {
            card.facts.push_back({std::string(title(screen)), std::string(purpose(screen))});
        }
    }
    card.links = {{"Go to " + std::string(title(step.first)), step.first}};
    return card;
}

Card textCard(std::string_view title, std::vector<std::string> paragraphs) {
    Card card;
    card.title = std::string(title);
    card.paragraphs = std::move(paragraphs);
    return card;
}

Card keyboardCard() {
    Card card;
    card.title = "Keyboard";
    card.subtitle = "Tab goes to the next control, the space bar presses it";
    ReportTable table;
    table.headers = {"Keys", "What they do"};
    for (const UserGuideScreen::Keys& each : UserGuideScreen::keys()) {
        table.rows.push_back({std::string(each.keys), std::string(each.action)});
    }
    card.tables = {std::move(table)};
    return card;
}

}  // namespace

const std::vector<UserGuideScreen::Keys>& UserGuideScreen::keys() {
    static const std::vector<Keys> table = {
        {"Ctrl+O", "Open a project"},
        {"Ctrl+S, Ctrl+Shift+S", "Save the project; save it somewhere else"},
        {"Ctrl+I", "Import a file; while the report is edited, italics"},
        {"Ctrl+N", "Create a blank grid"},
        {"Ctrl+Shift+V", "Paste a table as data"},
        {"Ctrl+R", "Add the first finding of the screen to the report"},
        {"Ctrl+Shift+A", "Assemble the report"},
        {"Ctrl+E", "Export the report as PDF"},
        {"Ctrl+1, Ctrl+2, Ctrl+3, Ctrl+4, Ctrl+5", "The first screens of the five sections"},
        {"Ctrl+PgUp, Ctrl+PgDown", "Former and next screen"},
        {"F6", "Next pane: navigation, screen, inspector"},
        {"Ctrl+Shift+I", "Show or hide the inspector"},
        {"Shift+F1", "The guide to this screen"},
        {"F1", "This page"},
        {"Ctrl++, Ctrl+-, Ctrl+0", "Larger, smaller and normal size"}};
    return table;
}

SetupForm UserGuideScreen::setup() {
    SetupForm form;
    form.title = "User Guide";
    form.controls = {
        NoteControl{"Guide, beside Setup, says of each screen what it answers, what it needs, what "
                    "must not be claimed from it, and how to read it.",
                    false}};
    return form;
}

ScreenContent UserGuideScreen::content() const {
    ScreenContent content;
    content.title = "User Guide";
    content.subtitle = "The road from a file to a report";
    for (const Step& step : steps) {
        content.cards.push_back(stepCard(step));
    }
    content.cards.push_back(keyboardCard());
    content.cards.push_back(textCard(
        "What the program does not do",
        {"It does not choose the analysis. It says what each one needs, and where a result does "
         "not carry a claim.",
         "It does not change the file that you imported. What is done to the table is done to a "
         "copy, and logged.",
         "It does not rewrite a report by itself. Figures in the report are text: they stay as "
         "they were when you staged them, until you stage them again."}));
    content.cards.push_back(textCard(
        "What stays on this machine",
        {"Everything. Figures are computed here, and no data leave the computer unless you "
         "export a file and pass it on."}));
    return content;
}

Guide UserGuideScreen::guide() const {
    return {.answers = "How is the program used, and in which order?",
            .needs = "Nothing.",
            .doNotClaim = {"Do not cite this page for a method; cite the method's own source."}};
}

}  // namespace sorvane
