#include "SorvaneMac/Screens/UserGuideScreen.h"

#include <string_view>

namespace sorvane {

namespace {

Card card(std::string_view title, std::vector<std::string> paragraphs) {
    Card made;
    made.title = std::string(title);
    made.paragraphs = std::move(paragraphs);
    return made;
}

Card keyboardCard() {
    Card made = card("Keyboard", {});
    ReportTable table;
    table.headers = {"Keys", "What they do"};
    table.rows = {{"Ctrl+O", "Import a file"},
                  {"Ctrl+N", "Create a blank grid"},
                  {"Ctrl+Shift+V", "Paste a table as data"},
                  {"Ctrl+R", "Add the first finding of the screen to the report"},
                  {"Ctrl+Shift+A", "Assemble the report"},
                  {"Ctrl+1 to Ctrl+5", "A screen of each section"},
                  {"Ctrl+PageUp, Ctrl+PageDown", "Former and next screen"},
                  {"Ctrl+Shift+I", "Show or hide the inspector"},
                  {"Ctrl++, Ctrl+-, Ctrl+0", "Larger, smaller and normal size"},
                  {"F6", "Next pane: navigation, screen, inspector"}};
    made.tables = {std::move(table)};
    return made;
}

}  // namespace

SetupForm UserGuideScreen::setup() {
    SetupForm form;
    form.title = "User Guide";
    form.controls = {
        NoteControl{"The Guide tab of each screen says what the screen answers, what "
                    "it needs, and what must not be claimed from it.",
                    false}};
    return form;
}

ScreenContent UserGuideScreen::content() const {
    ScreenContent content;
    content.title = "User Guide";
    content.subtitle = "The road from a file to a report";
    content.cards = {
        card("1. Bring in the data",
             {"Drop a file anywhere on the window, or use Import Data. You can also paste a table "
              "that you copied from a spreadsheet, or type into a blank grid.",
              "A failed import leaves everything as it was and says why."}),
        card("2. Check the instrument",
             {"Instrument Map says what each column seems to be and why. Variable Types is where "
              "you decide.",
              "Every list of variables in the program follows these roles."}),
        card("3. Look at the evidence",
             {"Pick variables under Setup on the right; results follow at once.",
              "Cautions and assumption findings are part of a result. They go into the report "
              "with it."}),
        card("4. Write the report",
             {"\"Add to report\" stages a result. Findings assembles the staged results into one "
              "document, which you edit and export.",
              "Numbers in the report are text: they stay as they were when you staged them."}),
        card("What stays on this machine",
             {"Everything. Analyses run here, and no data leave the computer."}),
        keyboardCard()};
    return content;
}

Guide UserGuideScreen::guide() const {
    return {.answers = "How is the program used?", .needs = "Nothing.", .doNotClaim = {}};
}

}  // namespace sorvane
